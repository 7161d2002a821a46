#!/usr/bin/env bash
# SPDX-License-Identifier: GPL-3.0-or-later
# Compares the Windows program under Wine with the Linux program on the same folders: the code
# without windows, and a start until the jukebox is on screen. Only the ratios are meaningful,
# because the times include Wine itself. See ../bench.sh --windows.
set -euo pipefail
cd "$(dirname "$0")/.."

packaging/install-dependencies.sh run demo test windows bench
packaging/build-windows-preset.sh
cmake --preset release -DTALLOW_BENCHMARKS=ON > build.log 2>&1 || { cat build.log; rm build.log; exit 1; }
rm build.log
cmake --build --preset release -- --quiet

size=20000
folder=$PWD/build/bench
mkdir -p "$folder"
if [ ! -s "$folder/tone.mp3" ]; then
  sox -q -n -r 22050 -c 1 "$folder/tone.wav" synth 0.5 sine 440
  lame --quiet -b 32 "$folder/tone.wav" "$folder/tone.mp3"
fi
music=$folder/music-$size
if [ ! -e "$music.complete" ]; then
  rm -rf "$music"
  build/release/tallow_collection "$folder/tone.mp3" "$music" "$size"
  touch "$music.complete"
fi

# shellcheck source=tests/wine_prefix.sh
. tests/wine_prefix.sh
# shellcheck source=packaging/virtual-display.sh
. packaging/virtual-display.sh
trap 'end_processes; end_windows' EXIT
openbox > /dev/null 2>&1 &
processes+=($!)
make_windows
ln -s "$folder" "$WINEPREFIX/dosdevices/d:"
c=$WINEPREFIX/drive_c
cp build/windows/tallow{,_startup_benchmark,_jukebox_benchmark}.exe "$c/"
XDG_RUNTIME_DIR=$windows/run
export XDG_RUNTIME_DIR
mkdir -m 700 "$XDG_RUNTIME_DIR"

# best TIMES WHAT COMMAND...: runs the command TIMES times and prints the fewest seconds of the
# output lines that begin with WHAT.
best() {
  local times=$1 what=$2
  shift 2
  for _ in $(seq "$times"); do "$@" 2> /dev/null; done | tr -d '\r' | awk -v w="$what" '$1 == w { print $2 }' |
    sort -g | head -n 1
}
row() {
  printf '%-28s %10s %10s %8s\n' "$1" "$2" "$3" "$(awk -v a="$3" -v b="$2" 'BEGIN { printf "%.2f", a / b }')"
}
fresh() {
  rm -rf "$folder/app" && mkdir -p "$folder/app"
  "$@"
}
# timed COMMAND...: prints the run time of a command.
timed() {
  local before after
  before=$(date +%s.%N)
  "$@" > /dev/null 2>&1
  after=$(date +%s.%N)
  awk -v a="$before" -v b="$after" 'BEGIN { printf "time %.6f\n", b - a }'
}

cd "$c"
run=("$wine" 'C:\tallow_startup_benchmark.exe' "D:\\music-$size" 'D:\app')
native=("$OLDPWD/build/release/tallow_startup_benchmark" "$music" "$folder/app")
printf '%-28s %10s %10s %8s\n' "$size files" Linux Wine ratio
"${native[@]}" first > /dev/null 2>&1 || :
row "first run, no windows" "$(best 3 first fresh "${native[@]}" first)" "$(best 3 first fresh "${run[@]}" first)"
fresh "${native[@]}" first > /dev/null 2>&1
linux=$(best 3 second "${native[@]}" second)
fresh "${run[@]}" first > /dev/null 2>&1
row "second run, no windows" "$linux" "$(best 3 second "${run[@]}" second)"
program=("$OLDPWD/build/release/tallow" --app-folder "$folder/app" --drive "$music" --exit-after-startup)
fresh timed "${program[@]}" > /dev/null
linux=$(best 3 time timed "${program[@]}")
program=("$wine" 'C:\tallow.exe' --app-folder 'D:\app' --drive "D:\\music-$size" --exit-after-startup)
fresh timed "${program[@]}" > /dev/null
row "start to the window" "$linux" "$(best 3 time timed "${program[@]}")"

linux=$("$OLDPWD/build/release/tallow_jukebox_benchmark" "$folder" 2> /dev/null)
wine_figures=$("$wine" 'C:\tallow_jukebox_benchmark.exe' 'D:\' 2> /dev/null | tr -d '\r')
for what in save load find click_1 click_2 click_3 click_4; do
  figure() { awk -v w="$what" '$1 == w { print $2 }' <<< "$1"; }
  row "$what" "$(figure "$linux")" "$(figure "$wine_figures")"
done
