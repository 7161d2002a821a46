#!/usr/bin/env bash
# SPDX-License-Identifier: GPL-3.0-or-later
# Uses the two styles of the built program as a user would, on a virtual display: a collection with
# newer tags, tags of both paddings, songs of one file name and other formats; the bar that tells of
# them; the modern style by one click; a kill; the classic style again. Checks the text of the bar and
# the resulting files, and keeps a picture of each step.
#
# Usage: modern_style.sh PROGRAM PLUGINS FOLDER
set -euo pipefail
export LC_ALL=C.UTF-8

program=$1
plugins=$2
folder=$3
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
export QT_QPA_PLATFORM=xcb QT_PLUGIN_PATH="$plugins" QT_QPA_GENERIC_PLUGINS=tallowprobe
export TALLOW_PROBE_BAR=$folder/bar.txt
start_window_manager
turn_tips_off
# shellcheck source=tests/screen_user.sh
. "$here/screen_user.sh"

# One second of sound in each format.
sox -q -n -r 44100 -c 2 -b 16 "$folder/sound.wav" synth 1 sine 440
# song FILE: the folder of a song is made
song() { mkdir -p "$(dirname "$folder/music/$1")"; printf '%s' "$folder/music/$1"; }
mp3() { lame --quiet -b 64 "${@:2}" "$folder/sound.wav" "$(song "$1")"; }
mp3 "Queen/A Night/Seaside.mp3" --id3v1-only --tt Seaside --ta Queen --ty 1975
# lame pads with NULs, unless told to use blanks.
mp3 "Queen/Jazz/Bicycle.mp3" --id3v1-only --space-id3v1 --tt Bicycle --ta Queen --ty 1978
mp3 "Queens/Lullabies/Song.mp3" --id3v2-only --tt Song --ta "Queens of the Stone Age" --ty 2024
mp3 "Ada/One/01 Intro.mp3" --id3v1-only --tt Intro --ta "Ada Quill" --ty 1999
mp3 "Ada/Two/01 Intro.mp3" --id3v1-only --tt Intro --ta "Ada Quill" --ty 2001
flac --silent -T "TITLE=Группа крови" -T "ARTIST=Кино" -T "ALBUM=Группа крови" -T "DATE=1988" \
  -o "$(song "Kino/Gruppa.flac")" "$folder/sound.wav"
oggenc --quiet -t "丸の内サディスティック" -a "椎名林檎" -d 1999 -o "$(song "Ringo/Marunouchi.ogg")" \
  "$folder/sound.wav"

jukebox=$folder/app/Grouping/mix.juk
start() {
  "$folder/bin/tallow" --app-folder "$folder/app" --drive "$folder/music" 2>> "$folder/errors.txt" &
  tallow=$!
  processes+=("$tallow")
}
# in_jukebox TEXT...: whether the jukebox file has folders with these texts
in_jukebox() {
  local text
  for text in "$@"; do grep -qF -- "\"text\":\"$text\"" "$jukebox" || return 1; done
}
save() {
  keys ctrl+s
  sleep 1
}
# songs_in PATH: the names of the songs of a folder of the jukebox file, such as Artist/Queen, sorted
songs_in() { "$here/jukebox_songs.pl" "$jukebox" | sed -n "s|^$1: ||p"; }
bar_says() { [ "$(cat "$folder/bar.txt")" = "$1" ]; }
preferences=$folder/app/Grouping/System/Preferences.json
has_style() { grep -q "\"style\": \"$1\"" "$preferences"; }
# saved_with TEXT...: saves the jukebox and looks whether it has folders with these texts
saved_with() { save; in_jukebox "$@"; }
saved_without() { save; ! in_jukebox "$1"; }

# First start, in the classic style: four songs, and a bar that tells what is left out.
start
until_true 60 "the sample jukebox" window_named '(^| - )Tallow - \[Jukebox One'
bar="1 of 4 songs carries only newer tags, 1 was left out because a song of that file name is there, "
bar+="2 are of other formats."
until_true 20 "the bar with its counts" bar_says "$bar"
picture 1-bar
library=$folder/app/Grouping/FileLocNames.lmz
grep -qa 'Seaside' "$library" || fail "The library has no songs."
grep -qa 'Gruppa' "$library" && fail "The classic style finds other formats."

# The jukebox of the classic style.
save_as Mix "$jukebox"
[ "$(songs_in Artist/Queen)" = "Bicycle.mp3 Seaside.mp3" ] ||
  fail "The classic Queen has other songs: $(songs_in Artist/Queen)"
"$here/jukebox_songs.pl" "$jukebox" > "$folder/classic.txt"
[ "$(grep -c '^Artist/' "$folder/classic.txt")" = 2 ] ||
  fail "The classic style has other artists: $(grep '^Artist/' "$folder/classic.txt")"

# The detail window of the bar.
keys alt+d
until_true 10 "the details of the bar" window_named '^What the Classic Style Leaves Out$'
picture 2-details
keys Escape
until_true 10 "the end of the details" no_window_named '^What the Classic Style Leaves Out$'

# One click, and all songs are there, under their artists, years, decades and albums.
keys alt+u
until_true 60 "the modern style" has_style modern
until_true 60 "the songs of the modern style" grep -qa 'Marunouchi' "$library"
until_true 10 "the end of the bar" bar_says ""
sleep 2
picture 3-modern
until_true 10 "the modern folders" saved_with "Queens of the Stone Age" "Кино"
# holds FOLDER SONGS
holds() { [ "$(songs_in "$1")" = "$2" ] || fail "$1 holds: $(songs_in "$1")"; }
holds "Artist/Queen" "Bicycle.mp3 Seaside.mp3"
holds "Artist/Queens of the Stone Age" "Song.mp3"
holds "Artist/Ada Quill" "01 Intro.mp3 01 Intro.mp3"
holds "Artist/Кино" "Gruppa.flac"
holds "Artist/椎名林檎" "Marunouchi.ogg"
holds "Year/2024" "Song.mp3"
holds "Decades/2020's" "Song.mp3"
holds "All Songs" "01 Intro.mp3 01 Intro.mp3 Bicycle.mp3 Gruppa.flac Marunouchi.ogg Seaside.mp3 Song.mp3"
songs=$(grep -ao 'Intro.mp3' "$library" | wc -l)
[ "$songs" = 2 ] || fail "$songs songs of one file name instead of two."

# A kill loses nothing.
kill -9 "$tallow"
until_true 10 "the end of the killed program" has_ended
start
until_true 60 "the jukebox after the kill" window_named '(^| - )Tallow - \[MIX\]'
sleep 1
picture 4-after-the-kill
until_true 3 "the modern folders after the kill" saved_with "Queens of the Stone Age" "Кино"

# Back to the classic style by the keyboard.
keys ctrl+comma
until_true 10 "the preferences" window_named '^Preferences$'
picture 5-preferences
keys alt+l
until_true 60 "the classic style" has_style classic
sleep 2
keys Escape
until_true 10 "the end of the preferences" no_window_named '^Preferences$'
# The songs of other formats keep their entries, which are not shown.
until_true 3 "the classic folders" saved_without "Queens of the Stone Age"
picture 6-classic
# Without the entries that the classic style does not show, it is the jukebox of before.
"$here/jukebox_songs.pl" "$jukebox" --classic > "$folder/classic-again.txt"
diff "$folder/classic.txt" "$folder/classic-again.txt" || fail "The classic jukebox has changed."

# And forth again.
keys ctrl+comma
until_true 10 "the preferences" window_named '^Preferences$'
keys alt+m
until_true 60 "the modern style" has_style modern
sleep 2
keys Escape
until_true 3 "the modern folders" saved_with "Queens of the Stone Age" "Кино" "椎名林檎"
picture 7-modern-again
[ "$(grep -ao 'Intro.mp3' "$library" | wc -l)" = 2 ] || fail "A song of an equal file name is lost."
keys alt+f x
until_true 20 "the end of the program" has_ended
