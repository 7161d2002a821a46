#!/usr/bin/env bash
# SPDX-License-Identifier: GPL-3.0-or-later
# Finds songs with the field of the built program as a user would, with the keyboard alone on a
# virtual display: by plain letters for a name with accents, in a wide and a narrow window; copies a
# song found into a folder, and shows it there. Checks titles of windows and the jukebox file, and
# keeps a picture of each step.
#
# Usage: find_while_typing.sh PROGRAM FOLDER
set -euo pipefail
export LC_ALL=C.UTF-8

program=$1
folder=$2
here=$(cd "$(dirname "$0")" && pwd)

rm -rf "$folder"
mkdir -p "$folder/app" "$folder/bin" "$folder/config" "$folder/pictures" "$folder/music"
cp "$program" "$folder/bin/tallow"
# shellcheck source=tests/program.sh
. "$here/program.sh"
# shellcheck source=packaging/virtual-display.sh
. "$here/../packaging/virtual-display.sh"
separate_session
trap 'end_processes; rm -rf "$XDG_RUNTIME_DIR"' EXIT
export QT_QPA_PLATFORM=xcb
start_window_manager
turn_tips_off
# shellcheck source=tests/screen_user.sh
. "$here/screen_user.sh"

sox -q -n -r 44100 -c 2 -b 16 "$folder/sound.wav" synth 1 sine 440
mp3() { lame --quiet -b 64 "${@:2}" "$folder/sound.wav" "$folder/music/$1"; }
mp3 "03 Halo.mp3" --id3v2-only --tt Halo --ta Beyoncé --ty 2008
mp3 "01 Seaside.mp3" --id3v2-only --tt Seaside --ta Queen --ty 1975
mp3 "02 Bicycle.mp3" --id3v2-only --tt Bicycle --ta Queen --ty 1978

jukebox=$folder/app/Grouping/mix.juk
"$folder/bin/tallow" --style modern --app-folder "$folder/app" --drive "$folder/music" \
  2>> "$folder/errors.txt" &
processes+=("$!")
until_true 60 "the sample jukebox" window_named '(^| - )Tallow - \[Jukebox One'
save_as Mix "$jukebox"

# finds TEXT TITLE: types a text into the field, and looks whether the first hit has this title, in
# the properties of the hit. The details of the songs are read in the background, so the first tries
# may find nothing.
finds() {
  keys ctrl+e
  xdotool type --delay 40 "$1"
  keys Down alt+Return
  sleep 0.5
  local found=1
  window_named "^Properties of \"$2\"\$" && found=0
  [ "$found" = 1 ] || keys Escape
  return "$found"
}
until_true 30 "Beyoncé by plain letters" finds beyonce Halo
picture 1-hits

# Copied into a folder of the user's own.
keys ctrl+c Escape alt+e a
sleep 0.5
xdotool type --delay 40 Mine
keys Return ctrl+v ctrl+s
until_true 10 "the song in its new folder" \
  sh -c "'$here/jukebox_songs.pl' '$jukebox' | grep -qx 'Mine: 03 Halo.mp3'"
picture 2-copied

# Show In Folder, from the pop-up menu: cut from there, the song is in no folder of the user's.
until_true 10 "the song once more" finds halo Halo
keys shift+F10 s
sleep 0.5
picture 3-in-folder
keys ctrl+x ctrl+s
until_true 10 "the folder without the song" \
  sh -c "! '$here/jukebox_songs.pl' '$jukebox' | grep -q '^Mine: 0'"

# In a narrow window, where the toolbar has no place for the field.
xdotool search --onlyvisible --name '(^| - )Tallow - \[MIX' windowsize --sync 520 480
sleep 0.5
until_true 10 "a song in a narrow window" finds "queen bic" Bicycle
picture 4-narrow
keys Escape
[ ! -s "$folder/errors.txt" ] || ! grep -i "error\|warning" "$folder/errors.txt" ||
  fail "The program has written errors."
