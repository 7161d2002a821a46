#!/usr/bin/env bash
# SPDX-License-Identifier: GPL-3.0-or-later
# Creates a small collection of encoded MP3 files: 60 short melodies by many artists, from all
# decades and many genres, some without a tag, some with awkward names.
#
# Usage: make-demo-collection.sh FOLDER
set -euo pipefail
# lame converts the tag texts from the encoding of the locale to the encoding of the tag.
export LC_ALL=C.UTF-8

folder=$1
if [ -f "$folder/.complete" ]; then exit 0; fi
mkdir -p "$folder"
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
count=0
# The steps of the scale relative to its first note, in 24ths.
scale=(24 27 30 36 40 48)

# encode PITCH FILE [lame options for the tag]
encode() {
  local pitch=$1 file=$2
  shift 2
  count=$((count + 1))
  mkdir -p "$(dirname "$folder/$file")"
  # Eight plucked notes of a pentatonic scale, a different melody for each song.
  local notes=() step
  for step in 0 1 2 3 4 5 6 7; do
    notes+=("|sox -n -p synth 1.1 pluck $((pitch * ${scale[(count * 7 + step * (count % 4 + 1)) % 6]} / 24)) fade q 0 1.1 0.2")
  done
  sox -q "${notes[@]}" -r 44100 -c 2 "$work/$count.wav" gain -6
  lame --quiet -b 64 --id3v1-only "$@" "$work/$count.wav" "$folder/$file"
  rm "$work/$count.wav"
}

artists=("The Lanterns" "Ada Quill" "Northern Harbour" "Los Vientos" "Mira & the Tides" "Copper Rails"
  "Étienne Duval" "Old Mill Quartet" "The Paper Boats" "Sunday Orchard" "DJ Meridian" "Björk Ólafs")
songs=("Morning Train" "Paper Moon Road" "Seven Rivers" "Lighthouse" "Slow Snow")
years=(1924 1931 1938 1947 1952 1959 1963 1968 1971 1977 1979 1983 1986 1988 1991 1994 1997 1999 2001 2004)
genres=(Jazz Blues Rock Pop Country Folk Classical Techno Reggae Soul Ambient Swing)

n=0
for a in "${!artists[@]}"; do
  for s in 0 1 2 3; do
    artist=${artists[$a]}
    title="${songs[$(((a + s) % 5))]}"
    year=${years[$(((a * 4 + s) % 20))]}
    n=$((n + 1))
      encode $((220 + (n * 37) % 660)) "$artist/$title ($year)/$(printf '%02d' $((s + 1))) $title - $artist.mp3" \
      --tt "$title" --ta "$artist" \
      --tl "$title" --ty "$year" --tg "${genres[$a]}"
  done
done

# Songs without a tag.
for t in 1 2 3 4; do encode $((300 + t * 40)) "Tapes/side A take $t.mp3"; done

# Awkward names.
encode 330 "Awkward/100% [live].mp3" --tt "100%" --ta "[Live] Band" --ty 1985 --tg Rock
encode 340 "Awkward/demo [unclosed.mp3" --tt Demo --ta "Sunday Orchard" --ty 2003 --tg Pop
encode 350 "Awkward/B# minor?.mp3" --tt "B#" --ta "Ada Quill" --ty 1958 --tg Jazz
encode 360 "Awkward/  two leading blanks.MP3" --tt Blanks --ta "The Lanterns" --ty 1966 --tg Pop
encode 370 "Awkward/Ünïcödé 曲 Ж.mp3" --tt Unicode --ta "Northern Harbour" --ty 1973 --tg Folk
encode 380 "Awkward/$(printf 'caf\351 latin-1').mp3" --tt Cafe --ta "Los Vientos" --ty 1949 --tg Soul
encode 390 "Awkward/$(printf 'x%.0s' {1..240}).mp3" --tt Long --ta "Copper Rails" --ty 2002 --tg Blues
encode 400 "Awkward/a 'quoted' \"name\" & more.mp3" --tt Quoted --ta "The Paper Boats" --ty 1992 --tg Rock

touch "$folder/.complete"
