#!/usr/bin/env bash
# SPDX-License-Identifier: GPL-3.0-or-later
# Adds what the classic style leaves out to the demo collection: songs that have only newer tags, a
# second song of a file name, and files of another format.
#
# Usage: add-newer-demo-songs.sh FOLDER
set -euo pipefail
# lame converts the tag texts from the encoding of the locale to the encoding of the tag.
export LC_ALL=C.UTF-8

folder=$1
if [ -f "$folder/.newer-complete" ]; then exit 0; fi
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
count=0

# melody FILE: eight plucked notes, a different melody for each call.
melody() {
  count=$((count + 1))
  mkdir -p "$(dirname "$1")"
  local notes=() step
  for step in 0 1 2 3 4 5 6 7; do
    notes+=("|sox -n -p synth 0.9 pluck $((220 + (count * 50 + step * (count % 3 + 2) * 40) % 500)) fade q 0 0.9 0.2")
  done
  sox -q "${notes[@]}" -r 44100 -c 2 "$1" gain -6
}

# tagged FILE [lame options for the tag]
tagged() {
  local file=$folder/$1
  shift
  melody "$work/melody.wav"
  mkdir -p "$(dirname "$file")"
  lame --quiet -b 64 --id3v2-only --id3v2-utf16 "$@" "$work/melody.wav" "$file"
}

for track in 1 2 3; do
  tagged "Северный Ветер/Ночной трамвай/0$track Ночной трамвай $track.mp3" --tt "Ночной трамвай $track" \
    --ta "Северный Ветер" --tl "Ночной трамвай" --ty 1986 --tn "$track/3" --tg Rock
  tagged "坂本 花/春の道/0$track 春の道 $track.mp3" --tt "春の道 $track" --ta "坂本 花" \
    --tl "春の道" --ty 2024 --tn "$track/3" --tg Pop
done
tagged "Copper Rails/Best of Copper Rails/01 Intro.mp3" --tt Intro --ta "Copper Rails" \
  --tl "Best of Copper Rails" --ty 2019 --tg Country
tagged "Ada Quill/Best of Ada Quill/01 Intro.mp3" --tt Intro --ta "Ada Quill" \
  --tl "Best of Ada Quill" --ty 2021 --tg Blues
for track in 1 2; do melody "$folder/Old Mill Quartet/Live/0$track Encore $track.flac"; done

touch "$folder/.newer-complete"
