#!/usr/bin/env bash
# SPDX-License-Identifier: GPL-3.0-or-later
# Plays songs with the built program as a user would, on a virtual display, in the modern style: a
# folder from one of its songs on, the player bar, the queue, a file that cannot be played, a kill in
# the middle of a song, and the end. Asks the player what it does, and keeps a picture of each step.
#
# Usage: playing.sh PROGRAM FOLDER
set -euo pipefail
export LC_ALL=C.UTF-8

program=$1
folder=$2
here=$(cd "$(dirname "$0")" && pwd)

rm -rf "$folder"
mkdir -p "$folder/app" "$folder/bin" "$folder/config" "$folder/pictures" "$folder/music"
cp "$program" "$folder/bin/tallow"
printf '#!/bin/sh\nexec "%s/tallow-player" --silent --log "%s" "$@"\n' "$(dirname "$program")" \
  "$folder/log" > "$folder/bin/tallow-player"
chmod +x "$folder/bin/tallow-player"
# shellcheck source=tests/program.sh
. "$here/program.sh"
# shellcheck source=packaging/virtual-display.sh
. "$here/../packaging/virtual-display.sh"
separate_session
# A player that a failed test leaves behind must not go on.
end_player() { ask 273 40001 0 > /dev/null 2>&1 || :; }
trap 'end_player; end_processes; rm -rf "$XDG_RUNTIME_DIR"' EXIT
export QT_QPA_PLATFORM=xcb
start_window_manager
turn_tips_off
# shellcheck source=tests/screen_user.sh
. "$here/screen_user.sh"
# shellcheck source=tests/playing_steps.sh
. "$here/playing_steps.sh"

# Six songs of a minute; the fourth is damaged.
sox -q -n -r 44100 -c 2 -b 16 "$folder/sound.wav" synth 60 sine 330 gain -12
number=0
for title in Amber Birch Cedar Dogwood Elm Fir; do
  number=$((number + 1))
  lame --quiet -b 64 --tt "$title" --ta "The Trees" --tl Forest --tn "$number" --ty 2004 \
    "$folder/sound.wav" "$folder/music/0$number $title.mp3"
done
broken="$folder/music/04 Dogwood.mp3"
head -c 60000 /dev/zero > "$broken"

# A list of file names can be sorted before the details of the songs are read.
mkdir -p "$folder/app/Grouping/System"
echo '{"columns": {"modern": ["name", "key"]}}' > "$folder/app/Grouping/System/Preferences.json"
start() {
  "$folder/bin/tallow" --app-folder "$folder/app" --drive "$folder/music" --style modern \
    2>> "$folder/errors.txt" &
  tallow=$!
  processes+=("$tallow")
}
player_socket() { find "$XDG_RUNTIME_DIR/tallow" -type s -name 'player-*' | grep .; }
# ask REQUEST: what the player answers to a message or to a request in JSON
ask() { "$here/ask_player.pl" "$(player_socket)" "$@"; }
# The socket of a player that has ended remains, but accepts no connection.
no_player() { ! ask 1024 0 104; }

# The folder from its second song on.
start
until_true 60 "the sample jukebox" window_named '(^| - )Tallow - \[Jukebox One'
picture 1-bar-without-song
# A click on the header sorts the list by name, and the keys go to the list then.
frame=$(window_named '^Tallow - ' | tail -n 1)
xdotool mousemove --window "$frame" 450 68 click 1
keys Home Down Return
until_true 20 "the player" player_socket
until_true 20 "the whole folder in the player" state_has '"count":6'
until_true 20 "the second song" state_has '"place":1'
until_true 20 "the title of the window" title_begins Birch
sleep 1
picture 2-playing
save_mix() {
  keys ctrl+s
  until_true 10 "the file dialog" window_named '^Save'
  xdotool type --delay 40 Mix
  keys Return
  until_true 10 "the saved jukebox" test -s "$folder/app/Grouping/mix.juk"
}
save_mix

use_player_by_keys

# A kill: the player goes on, and the next start plays with it.
kill -9 "$tallow"
until_true 10 "the end of the killed program" has_ended
plays || fail "The player has ended with the program."
start
until_true 60 "the jukebox after the kill" window_named 'Tallow - \[MIX\]$'
keys Tab Home Return
until_true 20 "the first song after the kill" title_begins Amber
until_true 20 "its place" state_has '"place":0'
keys ctrl+t
until_true 20 "the second song after the kill" title_begins Birch
until_true 20 "the folder in the player" state_has '"count":6'
picture 7-after-the-kill

# The end closes the player, and the next start has the queue again, paused.
end_program() {
  keys alt+F4
  sleep 1
  if window_named '^Tallow$' > /dev/null; then keys alt+n; fi
  until_true 20 "the end of the program" has_ended
  until_true 10 "the end of the player" no_player
}
end_program
start
until_true 60 "the jukebox at the next start" window_named 'Tallow - \[MIX\]$'
until_true 30 "the song with those that follow" state_has '"count":5'
until_true 10 "the waiting song" is_paused
picture 8-restored
keys Tab space
until_true 10 "the restored song" title_begins Birch
end_program
