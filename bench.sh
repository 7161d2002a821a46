#!/usr/bin/env bash
# SPDX-License-Identifier: GPL-3.0-or-later
# Measures Tallow on collections of real MP3 files against a floor that is measured in the same run:
# one thread that walks the tree and reads the last 128 bytes of every MP3 file. The cache is warm
# in every run.
#
#   ./bench.sh            20,000 and 100,000 files
#   ./bench.sh --million  1,000,000 files too (needs about 8 GB of disk)
#   ./bench.sh --windows  the Windows program under Wine against the Linux program, 20,000 files
set -euo pipefail
cd "$(dirname "$0")"

sizes=(20000 100000)
case "${1:-}" in
  "") ;;
  --million) sizes+=(1000000) ;;
  --windows) exec benchmarks/windows.sh ;;
  *) echo "Usage: ./bench.sh [--million|--windows]" >&2; exit 2 ;;
esac

packaging/install-dependencies.sh run demo bench
cmake --preset release -DTALLOW_BENCHMARKS=ON > build.log 2>&1 || { cat build.log; rm build.log; exit 1; }
rm build.log
cmake --build --preset release -- --quiet
programs=build/release
folder=build/bench
mkdir -p "$folder"
if [ ! -s "$folder/tone.mp3" ]; then
  sox -q -n -r 22050 -c 1 "$folder/tone.wav" synth 0.5 sine 440
  lame --quiet -b 32 "$folder/tone.wav" "$folder/tone.mp3"
fi

if [ -z "${XDG_RUNTIME_DIR:-}" ]; then
  export XDG_RUNTIME_DIR=$PWD/$folder/run
  mkdir -p "$XDG_RUNTIME_DIR"
  chmod 700 "$XDG_RUNTIME_DIR"
fi

# best TIMES WHAT COMMAND...: runs the command TIMES times and prints, of the output lines that
# begin with WHAT, the line with the fewest seconds.
best() {
  local times=$1 what=$2
  shift 2
  for _ in $(seq "$times"); do "$@"; done | grep "^$what" | sort -k2,2g | head -n 1
}
divide() { awk -v a="$1" -v b="$2" -v f="${3:-%.2f}" 'BEGIN { printf f, a / b }'; }
row() { printf '%-9s %-20s %10s %8s %6s   %s\n' "$@"; }
first_run() {
  rm -rf "$folder/app"
  mkdir -p "$folder/app"
  "$programs/tallow_startup_benchmark" "$PWD/$music" "$PWD/$folder/app" first
}

declare -A a_song
row files what seconds ratio goal memory
for size in "${sizes[@]}"; do
  music=$folder/music-$size
  if [ ! -e "$music.complete" ]; then
    rm -rf "$music"
    "$programs/tallow_collection" "$folder/tone.mp3" "$music" "$size"
    touch "$music.complete"
  fi
  if [ "$size" -ge 1000000 ]; then most=400; else most=40; fi
  "$programs/tallow_floor" "$music" > /dev/null # warms the cache
  read -r _ floor _ < <(best 5 "" "$programs/tallow_floor" "$music")
  row "$size" floor "$floor" 1.00 "" ""

  read -r _ seconds memory _ < <(best 5 first first_run)
  row "$size" "first run" "$seconds" "$(divide "$seconds" "$floor")" 1.0 \
    "$(divide "$memory" 1024 %.1f) MB"
  a_song[$size]=$(divide "$seconds" "$size" %.9f)

  window=("$programs/tallow_window_benchmark" "$PWD/$music" "$PWD/$folder/app")
  read -r _ seconds memory _ < <(best 5 start "${window[@]}")
  row "$size" "second start" "$seconds" "$(divide "$seconds" "$floor")" 1.5 \
    "$(divide "$memory" 1024 %.1f) MB (goal: $most)"
  for what in show scroll; do
    read -r _ seconds _ < <(best 1 $what "${window[@]}")
    row "$size" "$what" "$seconds" "$(divide "$seconds" 0.016)" 1.0 "ratio to one frame, 16 ms"
  done

  # The same with the jukebox saved and reopened. Floor: walk the tree, stat each file, read the
  # jukebox.
  jukebox=$PWD/$folder/app/Grouping/bench.juk
  "${window[@]}" "$jukebox" > /dev/null
  read -r _ floor _ < <(best 5 "" "$programs/tallow_floor" "$music" "$jukebox")
  row "$size" "floor, stat" "$floor" 1.00 "" "$(wc -c < "$jukebox") bytes of jukebox"
  read -r _ seconds memory _ < <(best 5 start "${window[@]}")
  row "$size" "start, saved" "$seconds" "$(divide "$seconds" "$floor")" 1.5 \
    "$(divide "$memory" 1024 %.1f) MB (goal: $most)"
  edits=$("${window[@]}")
  for what in cut paste undo_paste undo_cut; do
    for parts in "half quarter" "every_2nd every_4th"; do
      read -r half quarter <<< "$parts"
      name="$what $half"
      half=$(awk -v w="${what}_$half" '$1 == w { print $2 }' <<< "$edits")
      quarter=$(awk -v w="${what}_$quarter" '$1 == w { print $2 }' <<< "$edits")
      row "$size" "${name//_/ }" "$half" "$(divide "$half" 0.1)" 1.0 \
        "ratio to 100 ms; to half as many songs: $(divide "$half" "$quarter")"
    done
  done
done
if [ -n "${a_song[1000000]:-}" ]; then
  row 1000000 "a song's time" "${a_song[1000000]}" \
    "$(divide "${a_song[1000000]}" "${a_song[100000]}")" 1.3 "ratio to a song's at 100000, first run"
fi

echo
echo "The jukebox file and its lists, 100000 songs in all automatic folders"
figures=$("$programs/tallow_jukebox_benchmark" "$PWD/$folder")
figure() { awk -v w="$1" -v n="${2:-2}" '$1 == w { print $n }' <<< "$figures"; }
floor=$(awk -v a="$(figure write)" -v b="$(figure read_and_parse)" 'BEGIN { print a + b }')
row 100000 "floor" "$floor" 1.00 "" "writing the bytes, reading them and parsing them with the JSON library"
for what in save load; do
  row 100000 $what "$(figure $what)" "$(divide "$(figure $what)" "$floor")" 2.0 ""
done
row 100000 "bytes an entry" "$(figure bytes_an_entry)" "" 12 "$(figure bytes_an_entry 3) entries"
row 100000 "find nothing" "$(figure find)" "$(divide "$(figure find)" 0.1)" 1.0 "ratio to 100 ms"
for state in 1 2 3 4; do
  row 100000 "click $state" "$(figure "click_$state")" \
    "$(divide "$(figure "click_$state")" "$(figure "sort_$state")")" 3.0 "ratio to std::sort of the same keys"
done

# The player is this script, which starts tallow-player without sound.
printf '#!/bin/sh\nexec "%s/tallow-player" --silent "$@"\n' "$PWD/$programs" > "$folder/player"
chmod +x "$folder/player"
hand_off=("$programs/tallow_hand_off_benchmark" "$PWD/$folder/player" "$PWD/$folder/music-20000" 10000)
echo
echo "Handing 10000 songs to the player; floor: checking each file and one message round trip"
read -r _ floor _ < <(best 3 floor "${hand_off[@]}")
row 10000 floor "$floor" 1.00 "" ""
for what in hand_off start_and_hand_off; do
  read -r _ seconds _ < <(best 3 $what "${hand_off[@]}")
  row 10000 "${what//_/ }" "$seconds" "$(divide "$seconds" "$floor")" "" "goal: below 1 s"
done

echo
echo "Sorting 100000 rows (argument: the column), against std::sort of the same keys; goal: 3.0"
"$programs/tallow_sort_benchmark" --benchmark_format=csv 2> /dev/null | awk -F, '
  /^"StandardSort/ { split($1, n, /[\/"]/); standard[n[3]] = $3 }
  /^"TallowSort/ {
    split($1, n, /[\/"]/)
    printf "column %s   std::sort %7.2f ms   Sort %7.2f ms   ratio %.2f\n", n[3], standard[n[3]], $3, $3 / standard[n[3]]
  }'
