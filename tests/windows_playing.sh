#!/usr/bin/env bash
# SPDX-License-Identifier: GPL-3.0-or-later
# Plays songs with Tallow for Windows and its own player as a user would, on a virtual display, in
# the modern style: a folder from one of its songs on, the player bar, the queue, a file that cannot
# be played, a kill of the program and of the player, and the end. Asks the player what it does, and
# keeps a picture of each step.
#
# Usage: windows_playing.sh ZIP ASK_PLAYER FOLDER
set -euo pipefail

archive=$(realpath "$1")
ask_player=$(realpath "$2")
here=$(cd "$(dirname "$0")" && pwd)
rm -rf "$3"
mkdir -p "$3/pictures"
folder=$(realpath "$3")

# shellcheck source=tests/wine_prefix.sh
. "$here/wine_prefix.sh"
# shellcheck source=packaging/virtual-display.sh
. "$here/../packaging/virtual-display.sh"
trap 'end_processes; end_windows' EXIT
# shellcheck source=tests/program.sh
. "$here/program.sh"
start_window_manager
# shellcheck source=tests/screen_user.sh
. "$here/screen_user.sh"
# shellcheck source=tests/playing_steps.sh
. "$here/playing_steps.sh"

# Wine cannot start in a folder outside its drives.
mkdir -p "$WINEPREFIX/drive_c"
cd "$WINEPREFIX/drive_c"
make_windows
reg_add() { "$wine" reg add "$@" /f > /dev/null; }
reg_add 'HKCU\Software\Wine\Fonts\Replacements' /v 'Tahoma' /d 'DejaVu Sans'
reg_add 'HKCU\Software\Wine\Fonts\Replacements' /v 'MS Shell Dlg' /d 'DejaVu Sans'
# No tip at the start, which would wait for the user.
reg_add 'HKCU\Software\Tallow\tallow\Options' /v 'Show Tips at Startup' /t REG_DWORD /d 0
"$wineserver" -w
c=$WINEPREFIX/drive_c
cp "$ask_player" "$c/ask_player.exe"

# Six songs of a minute, with names of several alphabets; the fourth is damaged.
mkdir -p "$c/Music"
sox -q -n -r 44100 -c 2 -b 16 "$folder/sound.wav" synth 60 sine 330 gain -12
number=0
for title in Amber Береза Cedar Dogwood 榆树 Fir; do
  number=$((number + 1))
  lame --quiet -b 64 --id3v2-only --id3v2-utf16 --tt "$title" --ta 'The Trees' --tn "$number" \
    "$folder/sound.wav" "$c/Music/0$number $title.mp3"
done
head -c 60000 /dev/zero > "$c/Music/04 Dogwood.mp3"

cmake -E tar xf "$archive"
name=$(basename "$archive" -win64.zip)
own="C:\\$name\\"
start() {
  "$wine" "${own}tallow.exe" --drive 'C:\Music' --style modern 2>> "$folder/errors.txt" &
  tallow=$!
  processes+=("$tallow")
}
# ask REQUEST: what the player answers to a message or to a request in JSON
ask() { "$wine" 'C:\ask_player.exe' "$own" "$@" 2> /dev/null | tr -d '\r'; }
no_player() { ! pgrep -f '[t]allow-player.exe' > /dev/null; }
activate() {
  xdotool search --onlyvisible --name 'Tallow - ' windowactivate --sync > /dev/null 2>&1 || :
  sleep 0.3
}

# The folder from its second song on. A path with letters of another alphabet reaches the player.
start
until_true 120 "the sample jukebox" window_named '(^| - )Tallow - \[Jukebox One'
activate
picture 1-bar-without-song
frame=$(window_named 'Tallow - ' | tail -n 1)
# A click beside the songs, which are in the order of the folder, gives the keys to the list.
xdotool mousemove --window "$frame" 450 400 click 1
keys Home Down Return
until_true 30 "the whole folder in the player" state_has '"count":6'
until_true 20 "the second song" state_has '"place":1'
until_true 20 "the title of the window" title_begins Береза
sleep 1
picture 2-playing

activate
use_player_by_keys

# The jukebox is saved, so that the next start opens it.
keys ctrl+s
until_true 20 "the file dialog" window_named '^Save'
xdotool type --delay 60 'Mix'
keys Return
until_true 20 "the name of the jukebox" window_named 'Tallow - \[MIX\]$'
activate

# A kill of the program: the player goes on, and the next start plays with it and closes it.
kill -9 "$tallow"
until_true 20 "the end of the killed program" has_ended
plays || fail "The player has ended with the program."
start
until_true 120 "the jukebox after the kill" window_named 'Tallow - \[MIX\]'
activate
keys Tab Home Return
until_true 20 "the first song after the kill" title_begins Amber
until_true 20 "its place" state_has '"place":0'
picture 7-after-the-kill

# A kill of the player: the next play command starts it again.
pkill -9 -f '[t]allow-player.exe'
until_true 10 "the end of the killed player" no_player
sleep 2
picture 8-player-killed
activate
keys Home Down Down Return
until_true 30 "the third song in a new player" state_has '"place":2'
until_true 20 "its title" title_begins Cedar
until_true 20 "the folder in the new player" state_has '"count":6'

# The end closes the player, and the next start has the queue again, paused.
end_program() {
  activate
  xdotool key --delay 100 alt+F4
  sleep 1
  if window_named '^Tallow$' > /dev/null; then keys alt+n; fi
  until_true 30 "the end of the program" has_ended
  until_true 20 "the end of the player" no_player
}
end_program
start
until_true 120 "the jukebox at the next start" window_named 'Tallow - \[MIX\]'
until_true 30 "the song with those that follow" state_has '"count":4'
until_true 10 "the waiting song" is_paused
picture 9-restored
activate
keys Tab space
until_true 10 "the restored song" title_begins Cedar
end_program
echo "All steps passed; the pictures are in $folder/pictures."
