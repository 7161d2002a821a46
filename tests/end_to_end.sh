#!/usr/bin/env bash
# SPDX-License-Identifier: GPL-3.0-or-later
# Uses the built program as a user would, on a virtual display, with keyboard and mouse only: first
# start, ranking, a folder, saving, playing, closing, second start, new songs, finding, two
# jukeboxes, exit, and closing while minimized. Checks the resulting files, and keeps a picture of
# each step.
#
# Usage: end_to_end.sh PROGRAM FOLDER
set -euo pipefail

program=$1
folder=$2
here=$(cd "$(dirname "$0")" && pwd)

rm -rf "$folder"
mkdir -p "$folder/app" "$folder/bin" "$folder/config" "$folder/pictures"
"$here/../packaging/make-demo-collection.sh" "$folder/music"
cp "$program" "$folder/bin/tallow"
cp "$(dirname "$program")/TIPOFDAY.TXT" "$folder/bin/"
printf '#!/bin/sh\nexec "%s/tallow-player" --silent "$@"\n' "$(dirname "$program")" \
  > "$folder/bin/tallow-player"
chmod +x "$folder/bin/tallow-player"
# shellcheck source=tests/program.sh
. "$here/program.sh"
# shellcheck source=packaging/virtual-display.sh
. "$here/../packaging/virtual-display.sh"
separate_session
trap 'end_processes; rm -rf "$XDG_RUNTIME_DIR"' EXIT
export QT_QPA_PLATFORM=xcb
start_window_manager

library=$folder/app/Grouping/FileLocNames.lmz
jukebox=$folder/app/Grouping/mix.juk

# shellcheck source=tests/screen_user.sh
. "$here/screen_user.sh"
start() {
  "$folder/bin/tallow" --app-folder "$folder/app" --drive "$folder/music" "$@" 2>> "$folder/errors.txt" &
  tallow=$!
  processes+=("$tallow")
}

# First start: the user reads the tip and the next tip, and turns the tips off.
start
until_true 60 "the tip at the start" window_named '^Tip of the Day$'
picture 1-tip
# The tip leaves the keyboard to the main window.
go_to '^Tip of the Day$'
keys alt+n alt+s Return
until_true 10 "the end of the tip" no_window_named '^Tip of the Day$'
until_true 10 "the sample jukebox" window_named '(^| - )Tallow - \[Jukebox One'
go_to '(^| - )Tallow - '
grep -q 'Show%20Tips%20at%20Startup=0' "$folder/config/Tallow/tallow.conf" || fail "The tip's option is not saved."

# Three songs get the highest rank.
before=$(cksum "$library")
keys Tab Home shift+Down shift+Down shift+F10 r
picture 2-ranks
keys Return
until_true 10 "the saved ranks" library_has_changed

# The three songs are copied into a new folder.
keys ctrl+c alt+e a
xdotool type --delay 40 'Road trip'
keys Return ctrl+v
picture 3-folder

# The jukebox is saved under a name.
save_as Mix "$jukebox"
grep -q '"text":"Road trip"[^]]*"songs":\[[0-9]*,[0-9]*,[0-9]*\]' "$jukebox" || fail "The folder is not in the file."

player_socket_exists() { [ -n "$(find "$XDG_RUNTIME_DIR/tallow" -name 'player-*' -type s)" ]; }
# Songs are played until the panel and the player are there.
keys ctrl+l
until_true 20 "the player" player_socket_exists
sleep 2
picture 4-playing

# Closing asks no question, because everything is saved.
keys alt+F4
until_true 20 "the end of the program" has_ended

# The second start opens the saved jukebox, without a tip.
start
until_true 30 "the saved jukebox at the start" window_named '(^| - )Tallow - \[MIX\]$'
no_window_named '^Tip of the Day$' || fail "The tip is shown again."

# A new song is added by a search.
cp "$folder/music"/*/*.mp3 "$folder/" 2> /dev/null || cp "$(find "$folder/music" -name '*.mp3' | head -n 1)" "$folder/"
first=$(find "$folder" -maxdepth 1 -name '*.mp3' | sort | head -n 1)
target=$(dirname "$(find "$folder/music" -name '*.mp3' | sort | head -n 1)")
cp "$first" "$target/Zebra crossing.mp3"
keys alt+s b
sleep 1
keys ctrl+s
until_true 10 "the new song in the jukebox" grep -q 'Zebra crossing.mp3' "$jukebox"
picture 5-new-song

# The new song is found.
keys ctrl+f
until_true 10 "the find dialog" window_named '^Find$'
xdotool type --delay 40 'zebra'
keys Return
picture 6-found
keys Escape

# A second jukebox is opened and both are cascaded.
keys ctrl+n shift+F4
picture 7-cascade

# A second program hands its files over to the running program.
cp "$jukebox" "$folder/handed over.juk"
"$folder/bin/tallow" --app-folder "$folder/app" --drive "$folder/music" "$folder/handed over.juk" ||
  fail "The second start did not hand over."
until_true 10 "the file of the second start" window_named '(^| - )Tallow - .*HANDED OVER'
picture 8-handed-over
# The jukebox is unchanged since it was loaded, so closing it asks no question.
keys alt+f c
until_true 10 "the end of the handed-over jukebox" no_window_named 'HANDED OVER'

# Exit. Only the new, empty jukebox is unsaved, which asks no question.
keys alt+f x
until_true 20 "the end of the program" has_ended
picture 9-end
[ -z "$(find "$folder/app/Grouping/System" -name '*.unsaved')" ] || fail "Unsaved changes were stored."

# Closing the minimized window, with a new song in each of two jukeboxes: the window is restored for
# the questions, and each Yes saves the jukebox that the question names.
cp "$first" "$target/Yellow bricks.mp3"
start "$jukebox"
# The start opens the last jukebox, which was handed over, and then the jukebox on its command line.
until_true 30 "both jukeboxes" window_named '(^| - )Tallow - \[MIX\*?\]$'
frame=$(window_named '(^| - )Tallow - ' | tail -n 1)
xdotool windowminimize "$frame"
until_true 10 "the minimized window" no_window_named '(^| - )Tallow - '
wmctrl -i -c "$frame"
for question in first second; do
  until_true 10 "the $question question" window_named '^Tallow$'
  picture "10-$question-question"
  keys alt+y
  sleep 1
done
until_true 20 "the end of the program" has_ended
for saved in "$jukebox" "$folder/handed over.juk"; do
  grep -q 'Yellow bricks.mp3' "$saved" || fail "Not saved: $saved"
done
