#!/usr/bin/env bash
# SPDX-License-Identifier: GPL-3.0-or-later
# Measures Tallow on collections of real MP3 files against a floor that is measured in the same run:
# one thread that walks the tree and reads the last 128 bytes of every MP3 file. The cache is warm
# but for the rows of slow disks: there each call takes a millisecond longer (benchmarks/slow_disk.cpp),
# or the caches are dropped before each run, which needs root; the floor then has 32 threads. The
# modern style is measured on files with ID3v2.4 tags and covers (4 GB of disk), and compared with
# MPD if that is installed.
#
#   ./bench.sh            20,000 and 100,000 files
#   ./bench.sh --million  1,000,000 files too (needs about 8 GB of disk)
#   ./bench.sh --long     50,000 changes of the track with random commands too (about ten minutes)
#   ./bench.sh --windows  the Windows program under Wine against the Linux program, 20,000 files
set -euo pipefail
cd "$(dirname "$0")"

sizes=(20000 100000)
long=
case "${1:-}" in
  "") ;;
  --million) sizes+=(1000000) ;;
  --long) long=1 ;;
  --windows) exec benchmarks/windows.sh ;;
  *) echo "Usage: ./bench.sh [--million|--long|--windows]" >&2; exit 2 ;;
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
row() { printf '%-9s %-21s %10s %8s %6s   %s\n' "$@"; }
first_run() {
  rm -rf "$folder/app"
  mkdir -p "$folder/app"
  "$programs/tallow_startup_benchmark" "$PWD/$music" "$PWD/$folder/app" first
}

# drop_caches: makes the next reads come from the disk. Fails without root.
drop_caches() { sync && { echo 3 > /proc/sys/vm/drop_caches; } 2> /dev/null; }
cold_floor() {
  drop_caches
  "$programs/tallow_floor" --threads 32 "$1" "$music"
}
cold_first_run() {
  rm -rf "$folder/app"
  mkdir -p "$folder/app"
  drop_caches
  "$programs/tallow_startup_benchmark" "$PWD/$music" "$PWD/$folder/app" first
}
cold_second_start() {
  drop_caches
  "$programs/tallow_startup_benchmark" "$PWD/$music" "$PWD/$folder/app" second
}
# slow_disk_start WHAT: a start while each file call takes a millisecond longer.
slow_disk_start() {
  if [ "$1" = first ]; then rm -rf "$folder/app"; fi
  mkdir -p "$folder/app"
  rm -f "$folder/calls"
  SLOW_DISK_REPORT="$folder/calls" LD_PRELOAD="$PWD/$programs/libtallow_slow_disk.so" \
    "$programs/tallow_startup_benchmark" "$PWD/$music" "$PWD/$folder/app" "$1"
}
# slow_disk_row NAME WHAT: the row of such a start.
slow_disk_row() {
  read -r _ seconds _ < <(best 3 "$2" slow_disk_start "$2")
  read -r calls sum highest < "$folder/calls"
  row 5000 "$1" "$seconds" "$(awk -v s="$seconds" -v a="$sum" 'BEGIN { printf "%.2f", s / (a / 20 + 0.3) }')" 1.0 \
    "$calls calls of 1 ms, up to $highest at a time"
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

echo
echo "Slow disks: 1 ms for each file call (ratio to a 20th of the calls' sum plus 0.3 s); cold caches"
music=$folder/music-5000
if [ ! -e "$music.complete" ]; then
  rm -rf "$music"
  "$programs/tallow_collection" "$folder/tone.mp3" "$music" 5000
  touch "$music.complete"
fi
slow_disk_row "first run, 1 ms" first
slow_disk_row "second start, 1 ms" second
music=$folder/music-100000
if drop_caches; then
  read -r _ floor _ < <(best 3 "" cold_floor tails)
  row 100000 "floor, cold" "$floor" 1.00 "" "32 threads"
  read -r _ seconds _ < <(best 3 first cold_first_run)
  row 100000 "first run, cold" "$seconds" "$(divide "$seconds" "$floor")" 1.3 ""
  read -r _ floor _ < <(best 3 "" cold_floor names)
  row 100000 "floor, cold names" "$floor" 1.00 "" "32 threads that list the folders"
  "$programs/tallow_startup_benchmark" "$PWD/$music" "$PWD/$folder/app" save > /dev/null
  read -r _ seconds _ < <(best 3 second cold_second_start)
  row 100000 "second start, cold" "$seconds" "$(divide "$seconds" "$floor")" 1.3 ""
else
  echo "The rows of cold caches were left out: only root may drop the caches."
fi
if [ -n "${a_song[1000000]:-}" ]; then
  row 1000000 "a song's time" "${a_song[1000000]}" \
    "$(divide "${a_song[1000000]}" "${a_song[100000]}")" 1.3 "ratio to a song's at 100000, first run"
fi

echo
echo "Modern style: MP3s with ID3v2.4 tags and covers of 30 kB; floor: one thread that walks the tree"
echo "and reads the bytes of the tags"
# start: a start of the whole program in a style, which saves its jukebox.
start() {
  "$programs/tallow_window_benchmark" "${style[@]}" "$PWD/$music" "$app" "$app/Grouping/bench.juk"
}
first_start() {
  rm -rf "$app"
  mkdir -p "$app"
  start
}
for size in 20000 100000; do
  music=$folder/newer-$size
  if [ ! -e "$music.complete" ]; then
    rm -rf "$music"
    "$programs/tallow_collection" "$folder/tone.mp3" "$music" "$size" 30000
    touch "$music.complete"
  fi
  app=$PWD/$folder/app-modern
  style=(--modern)
  newer_floor=("$programs/tallow_floor" --threads 1 newer "$music")
  "${newer_floor[@]}" > /dev/null # warms the cache
  read -r _ floor _ < <(best 3 "" "${newer_floor[@]}")
  row "$size" floor "$floor" 1.00 "" ""
  read -r _ modern memory _ < <(best 3 start first_start)
  row "$size" "first run, modern" "$modern" "$(divide "$modern" "$floor")" 4.0 \
    "$(divide "$memory" 1024 %.1f) MB"
  if command -v mpd > /dev/null; then
    read -r _ seconds < <(best 1 "" benchmarks/mpd.sh "$music")
    row "$size" "MPD, new database" "$seconds" "$(divide "$seconds" "$modern")" "" \
      "ratio to the first run, goal: at least 8"
  fi
  read -r _ seconds memory _ < <(best 5 start start)
  app=$PWD/$folder/app-classic
  style=()
  first_start > /dev/null
  read -r _ classic _ < <(best 5 start start)
  row "$size" "start, saved, classic" "$classic" 1.00 "" ""
  row "$size" "start, saved, modern" "$seconds" "$(divide "$seconds" "$classic")" 1.1 \
    "$(divide "$memory" 1024 %.1f) MB"
  rm -f "$folder/details.db"*
  read -r _ seconds memory longest stop _ < \
    <("$programs/tallow_details_benchmark" "$music" "$folder/details.db")
  row "$size" "details" "$seconds" "" "" "$(divide "$memory" 1024 %.1f) MB (goal: 60)"
  row "$size" "longest call" "$longest" "$(divide "$longest" 0.016)" 1.0 "ratio to 16 ms"
  row "$size" "stop" "$stop" "$(divide "$stop" 0.1)" 1.0 "ratio to 100 ms"
done

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
echo
echo "Handing songs to the player; floor: checking each file and one message round trip"
for size in 10000 100000; do
  hand_off=("$programs/tallow_hand_off_benchmark" "$PWD/$folder/player" "$PWD/$folder/music-$size" "$size")
  if [ "$size" = 10000 ]; then hand_off[2]=$PWD/$folder/music-20000; fi
  # Each figure is the best of three runs.
  figures=$(for _ in 1 2 3; do "${hand_off[@]}"; done)
  smallest() { awk -v w="$1" '$1 == w && (n++ == 0 || $2 < s) { s = $2 } END { print s }' <<< "$figures"; }
  floor=$(smallest floor)
  row "$size" floor "$floor" 1.00 "" ""
  for what in hand_off start_and_hand_off; do
    seconds=$(smallest $what)
    row "$size" "${what//_/ }" "$seconds" "$(divide "$seconds" "$floor")" 2.0 ""
    seconds=$(smallest longest_$what)
    row "$size" "- longest stop" "$seconds" "$(divide "$seconds" 0.05)" 1.0 "ratio to 50 ms without window events"
    seconds=$(smallest sound_$what)
    row "$size" "- first sound" "$seconds" "$(divide "$seconds" 0.3)" 1.0 "ratio to 0.3 s"
  done
done

if [ -n "$long" ]; then
  echo
  echo "50000 changes of the track with random commands from three clients; goal: at most 5120 KiB of growth"
  "$programs/player_soak" "$programs/tallow-player" 50000
fi

echo
echo "Searching while a text is typed, and sorting by a column; floor: one pass over as many bytes of"
echo "memory as the index has"
for size in 100000 1000000; do
  figures=$("$programs/tallow_find_benchmark" "$PWD/$folder/" "$size"
    "$programs/tallow_find_window_benchmark" "$PWD/$folder/" "$size")
  floor=$(figure floor)
  row "$size" floor "$floor" 1.00 "" ""
  if [ "$size" = 100000 ]; then first_goal=0.1 search_goal=0.016; else first_goal=1 search_goal=0.1; fi
  first_painted_goal=$(awk -v a="$first_goal" -v b="$search_goal" 'BEGIN { print a + b }')
  row "$size" "first key" "$(figure first)" "$(divide "$(figure first)" "$first_goal")" 1.0 \
    "ratio to $first_goal s; $(divide "$(figure first)" "$floor" %.0f) x the floor; $(figure memory) MB, of these $(figure index) MB index, $(figure details) MB details"
  row "$size" "search, slowest key" "$(figure search)" "$(divide "$(figure search)" "$search_goal")" 1.0 \
    "ratio to $search_goal s; $(divide "$(figure search)" "$floor" %.1f) x the floor"
  row "$size" "first key, on screen" "$(figure first_painted)" \
    "$(divide "$(figure first_painted)" "$first_painted_goal")" 1.0 \
    "ratio to $first_painted_goal s; until the list is painted"
  row "$size" "key, on screen" "$(figure painted)" "$(divide "$(figure painted)" "$search_goal")" 1.0 \
    "ratio to $search_goal s; the slowest key until the list is painted"
  for what in title artist length folder; do
    row "$size" "sort by $what" "$(figure "sort_$what")" "$(divide "$(figure "sort_$what")" "$floor" %.0f)" "" \
      "ratio to the floor"
  done
done

echo
echo "Sorting 100000 rows (argument: the column), against std::sort of the same keys; goal: 3.0"
"$programs/tallow_sort_benchmark" --benchmark_format=csv 2> /dev/null | awk -F, '
  /^"StandardSort/ { split($1, n, /[\/"]/); standard[n[3]] = $3 }
  /^"TallowSort/ {
    split($1, n, /[\/"]/)
    printf "column %s   std::sort %7.2f ms   Sort %7.2f ms   ratio %.2f\n", n[3], standard[n[3]], $3, $3 / standard[n[3]]
  }'
