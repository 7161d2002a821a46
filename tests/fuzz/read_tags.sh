#!/usr/bin/env bash
# SPDX-License-Identifier: GPL-3.0-or-later
# Runs the fuzzer of the tag reader on short songs of all formats, which it makes with ffmpeg. Fails if
# the fuzzer finds an input at which code of ours fails. Failures inside TagLib are counted, but do
# not fail: the program reads the details of songs in a child process. Inputs at which the fuzzer
# failed, but a run with them alone does not, are counted, kept and named: a long run may take too much
# time or memory.
#
# Usage: read_tags.sh FUZZER FOLDER SECONDS
#   FOLDER gets the songs, to which the fuzzer adds files; the inputs of failures of ours in ours/,
#   those inside TagLib in taglib/, those that do not fail alone in passed_alone/
set -euo pipefail

fuzzer=$(realpath "$1")
mkdir -p "$2"
folder=$(realpath "$2")
seconds=$3

# The order of kExtensions in read_tags.cpp: the first byte of an input is the index.
extensions=(mp3 flac ogg oga opus spx m4a aac wma wav aiff ape wv mpc)
options=("" "" "-c:a libvorbis" "-c:a flac -f ogg" "" "-c:a libspeex -ar 16000 -ac 1" "" "-f adts" "-c:a wmav2"
  "" "" "-c:a wavpack -f wv" "" "-c:a wavpack -f wv")
mkdir -p "$folder/corpus" "$folder/found"
for index in "${!extensions[@]}"; do
  extension=${extensions[index]}
  song=$folder/corpus/$extension
  if [ -f "$song" ]; then continue; fi
  # ffmpeg cannot write .ape and .mpc files; their start is that of the format, their tag of WavPack.
  # shellcheck disable=SC2086
  ffmpeg -nostdin -v error -y -f lavfi -i sine=frequency=440:duration=0.1 -ac 2 ${options[index]} \
    -write_id3v2 1 -metadata title=Title -metadata artist=Кино -metadata album_artist=Цой \
    -metadata date=1988 -metadata track=1/12 -metadata disc=1/2 -metadata genre=Rock \
    "$folder/song.$extension" 2> "$folder/ffmpeg.log" || { cat "$folder/ffmpeg.log" >&2; exit 1; }
  # shellcheck disable=SC2059
  {
    printf "\\x$(printf %02x "$index")"
    case $extension in
      ape) printf 'MAC \226\017' ;;
      mpc) printf 'MP+\007' ;;
    esac
    cat "$folder/song.$extension"
  } > "$song"
  rm "$folder/song.$extension"
done

# The fuzzer runs in child processes, and goes on after a failure. TagLib does not free everything when
# an exception passes through it, so leaks are not counted.
export ASAN_OPTIONS=detect_leaks=0 UBSAN_OPTIONS=print_stacktrace=1
# Each input is read twice, for at most five seconds each, and longer with sanitizers.
common=(-timeout=30 -rss_limit_mb=2048 -max_len=30000)
"$fuzzer" "${common[@]}" -fork=1 -ignore_crashes=1 -ignore_timeouts=1 -ignore_ooms=1 \
  -max_total_time="$seconds" -artifact_prefix="$folder/found/" "$folder/corpus" > "$folder/fuzzer.log" 2>&1 || {
  tail -n 60 "$folder/fuzzer.log" >&2
  exit 1
}
grep -a '^#' "$folder/fuzzer.log" | tail -n 1

# The innermost function of TagLib or Tallow decides whose failure it is.
ours=0
theirs=0
passed=()
for input in "$folder"/found/*; do
  [ -f "$input" ] || continue
  if "$fuzzer" "${common[@]}" "$input" > "$folder/failure.log" 2>&1; then
    mkdir -p "$folder/passed_alone"
    mv "$input" "$folder/passed_alone/"
    passed+=("$folder/passed_alone/$(basename "$input")")
    continue
  fi
  innermost=$(grep -aoE '^ *#[0-9]+ 0x[0-9a-f]+ in .*' "$folder/failure.log" |
    grep -oE '(TagLib|tallow)::' | head -n 1 || true)
  if [ "$innermost" = TagLib:: ]; then
    theirs=$((theirs + 1))
    mkdir -p "$folder/taglib"
    mv "$input" "$folder/taglib/"
  else
    ours=$((ours + 1))
    mkdir -p "$folder/ours"
    cp "$input" "$folder/ours/"
    cat "$folder/failure.log" >&2
  fi
done
echo "$ours failures, $theirs inside TagLib, and ${#passed[@]} that did not occur again alone"
for input in "${passed[@]}"; do echo "  did not occur again: $input"; done
[ "$ours" = 0 ]
