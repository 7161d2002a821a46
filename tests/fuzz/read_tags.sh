#!/usr/bin/env bash
# SPDX-License-Identifier: GPL-3.0-or-later
# Runs the fuzzer of the tag reader on short songs of all formats, which it makes with ffmpeg.
#
# Usage: read_tags.sh FUZZER FOLDER SECONDS
#   FOLDER gets the songs, to which the fuzzer adds files, and the input of a failure
set -euo pipefail

fuzzer=$1
folder=$2
seconds=$3

# The order of kExtensions in read_tags.cpp: the first byte of an input is the index.
extensions=(mp3 flac ogg oga opus spx m4a aac wma wav aiff)
options=("" "" "-c:a libvorbis" "-c:a flac -f ogg" "" "-c:a libspeex -ar 16000 -ac 1" "" "-f adts" "-c:a wmav2" "" "")
mkdir -p "$folder/corpus"
for index in "${!extensions[@]}"; do
  extension=${extensions[index]}
  song=$folder/corpus/$extension
  if [ -f "$song" ]; then continue; fi
  # shellcheck disable=SC2086
  ffmpeg -v error -y -f lavfi -i sine=frequency=440:duration=0.1 -ac 2 ${options[index]} -write_id3v2 1 \
    -metadata title=Title -metadata artist=Кино -metadata album_artist=Цой -metadata date=1988 \
    -metadata track=1/12 -metadata disc=1/2 -metadata genre=Rock "$folder/song.$extension" 2> /dev/null ||
    ffmpeg -v error -y -f lavfi -i sine=frequency=440:duration=0.1 -ac 2 ${options[index]} \
      -metadata title=Title -metadata artist=Кино "$folder/song.$extension"
  { printf "\\x$(printf %02x "$index")"; cat "$folder/song.$extension"; } > "$song"
  rm "$folder/song.$extension"
done
# TagLib does not free everything when its memory allocation throws, so leaks are not counted.
exec "$fuzzer" -max_total_time="$seconds" -timeout=10 -rss_limit_mb=2048 -max_len=30000 -detect_leaks=0 \
  -artifact_prefix="$folder/" -print_final_stats=1 -verbosity=1 "$folder/corpus" 2> >(grep -v -e '^#' >&2)
