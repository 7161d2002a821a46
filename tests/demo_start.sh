#!/usr/bin/env bash
# SPDX-License-Identifier: GPL-3.0-or-later
# Starts the built program twice on a virtual display over the demo collection, each time with the
# probe loaded, and compares the reports of the probe. Keeps a picture of each start. Then adds the
# newer songs, as ./run.sh --demo does, and checks the bar that tells of them.
#
# Usage: demo_start.sh PROGRAM PLUGINS FOLDER
set -euo pipefail

program=$1
plugins=$2
folder=$3
here=$(cd "$(dirname "$0")" && pwd)

mkdir -p "$folder"
"$here/../packaging/make-demo-collection.sh" "$folder/music"
rm -rf "$folder/app" "$folder/config"
mkdir -p "$folder/app"

# A copy of the program with a silent player in its folder.
rm -rf "${folder:?}/bin"
mkdir -p "$folder/bin"
cp "$program" "$folder/bin/tallow"
printf '#!/bin/sh\nexec "%s" --silent "$@"\n' "$(dirname "$program")/tallow-player" \
  > "$folder/bin/tallow-player"
chmod +x "$folder/bin/tallow-player"
program=$folder/bin/tallow
# shellcheck source=packaging/virtual-display.sh
. "$here/../packaging/virtual-display.sh"
# shellcheck source=tests/program.sh
. "$here/program.sh"
separate_session
trap 'end_processes; rm -rf "$XDG_RUNTIME_DIR"' EXIT
turn_tips_off
export QT_QPA_PLATFORM=xcb QT_PLUGIN_PATH="$plugins" QT_QPA_GENERIC_PLUGINS=tallowprobe

for start in first second; do
  rm -f "$folder/$start"*.txt "$folder/$start"*.png
  TALLOW_PROBE_REPORT="$folder/$start.txt" TALLOW_PROBE_PICTURE="$folder/$start.png" \
    TALLOW_PROBE_PLAYING_PICTURE="$folder/$start-playing.png" \
    timeout 60 "$program" --app-folder "$folder/app" --drive "$folder/music"
  [ -s "$folder/$start.png" ] || { echo "The $start start left no picture."; exit 1; }
  # One socket for each application folder.
  if perl -MSocket -e 'for (@ARGV) {
      socket(S, PF_UNIX, SOCK_STREAM, 0); exit 0 if connect(S, sockaddr_un($_)); } exit 1;' \
    "$XDG_RUNTIME_DIR"/tallow/player-*; then
    echo "The player of the $start start is still running."
    exit 1
  fi
done

# On SIGTERM the program asks no question, although the sample jukebox is not saved.
env -u QT_QPA_GENERIC_PLUGINS "$program" --app-folder "$folder/app" --drive "$folder/music" &
tallow=$!
for _ in $(seq 300); do
  xdotool search --onlyvisible --name '(^| - )Tallow - ' > /dev/null 2>&1 && break
  sleep 0.1
done
kill -TERM "$tallow"
for _ in $(seq 100); do
  kill -0 "$tallow" 2> /dev/null || break
  sleep 0.1
done
if kill -0 "$tallow" 2> /dev/null; then
  echo "Tallow did not end on SIGTERM."
  kill -9 "$tallow"
  exit 1
fi

# The collection of ./run.sh --demo, with the newer songs, in folders of its own.
rm -rf "$folder/app-with-newer" "$folder/bar.txt"
mkdir -p "$folder/app-with-newer"
"$here/../packaging/make-demo-collection.sh" "$folder/music-with-newer"
"$here/../packaging/add-newer-demo-songs.sh" "$folder/music-with-newer"
bar="7 of 67 songs carry only newer tags, 1 was left out because a song of that file name is there, "
bar+="2 are of other formats."
TALLOW_PROBE_BAR=$folder/bar.txt \
  "$program" --app-folder "$folder/app-with-newer" --drive "$folder/music-with-newer" &
tallow=$!
for _ in $(seq 1200); do
  [ "$(cat "$folder/bar.txt" 2> /dev/null)" != "$bar" ] || break
  sleep 0.1
done
import -window root "$folder/bar.png"
kill -TERM "$tallow"
wait "$tallow" || :
if [ "$(cat "$folder/bar.txt")" != "$bar" ]; then
  echo "The bar over the demo collection says: $(cat "$folder/bar.txt")"
  exit 1
fi

failed=false
expect() {
  grep -qxF -- "$1" "$folder/first.txt" || { echo "Not seen: $1"; failed=true; }
}
# The mark of changes that are not saved is shown in place of the asterisk in brackets.
expect "window: Jukebox One  (sample Jukebox you can use as a starting point)[*]"
expect "header: Name    --        (click to sort)"
expect "shown: All Songs 60"
expect "folder: All Songs 0"
expect "folder: New 0"
expect "folder: Decades 9"
expect "folder: By Mood 8"
expect "folder: Seasonal 4"
expect "folder: Best friend's favorites 0"
expect "sorted: Name    --   "
expect "first: 1.    two leading blanks.MP3"
expect "panel: WinAMP Version# $("$program" --version | sed -E 's/.* ([0-9]+)\.([0-9]+)/printf 1.%d%02d \1 \2/' | sh)"
expect "seconds: 8"
expect "artist: Étienne Duval 4"
expect "artist: The Lanterns 5"
expect "artist: Live  Band 1"
expect "asked: You should save this initial Jukebox to speed up the program.  Do you want to save this Jukebox?"
cmp "$folder/first.txt" "$folder/second.txt" || failed=true
if $failed; then
  cat "$folder/first.txt"
  exit 1
fi
