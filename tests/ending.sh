#!/usr/bin/env bash
# SPDX-License-Identifier: GPL-3.0-or-later
# Ends the built program after its player has died and no other player can start, on a virtual
# display: by SIGTERM, with and without an open message box, and by closing the window with its
# panel. The program must end without waiting. Finally a program is killed and started again; it
# must be able to stop the player that kept playing.
#
# Usage: ending.sh PROGRAM FOLDER
set -euo pipefail

program=$1
folder=$2
here=$(cd "$(dirname "$0")" && pwd)
rm -rf "$folder"
mkdir -p "$folder/app" "$folder/bin" "$folder/pictures"
"$here/../packaging/make-demo-collection.sh" "$folder/music"
# shellcheck source=tests/program.sh
. "$here/program.sh"
turn_tips_off
cp "$program" "$folder/bin/tallow"
cp "$(dirname "$program")/TIPOFDAY.TXT" "$folder/bin/"
# shellcheck source=packaging/virtual-display.sh
. "$here/../packaging/virtual-display.sh"
separate_session
trap 'end_processes; rm -rf "$XDG_RUNTIME_DIR"' EXIT
export QT_QPA_PLATFORM=xcb
start_window_manager
# shellcheck source=tests/screen_user.sh
. "$here/screen_user.sh"

start() {
  "$folder/bin/tallow" --app-folder "$folder/app" --drive "$folder/music" 2>> "$folder/errors.txt" &
  tallow=$!
  processes+=("$tallow")
  until_true 60 "the window" window_named '(^| - )Tallow - '
}
player_runs() { [ -s "$folder/log" ]; }
# Makes a player that records its process ID and every message.
make_player() {
  rm -f "$folder/log" "$folder/pid"
  printf '#!/bin/sh\necho $$ > "%s"\nexec "%s/tallow-player" --silent --log "%s" "$@"\n' \
    "$folder/pid" "$(dirname "$program")" "$folder/log" > "$folder/bin/tallow-player"
  chmod +x "$folder/bin/tallow-player"
}
# Plays, kills the player, and plays again when no other player can start.
lose_player() {
  make_player
  start
  keys ctrl+l
  until_true 20 "the player" player_runs
  printf '#!/bin/sh\nexit 1\n' > "$folder/bin/tallow-player"
  kill -KILL "$(cat "$folder/pid")"
  sleep 1
  for _ in $(seq 20); do
    keys ctrl+l
    # The player may seem to start, and then end.
    if window_named '^(Tallow|Error)$' > /dev/null; then return 0; fi
  done
  fail "No message says that the player is gone."
}

lose_player
picture 1-no-player
keys Return
until_true 10 "the end of the message" no_window_named '^(Tallow|Error)$'
kill -TERM "$tallow"
until_true 10 "the end after SIGTERM" has_ended
picture 2-after-sigterm

lose_player
kill -TERM "$tallow"
until_true 10 "the end after SIGTERM with a message open" has_ended

lose_player
keys Return
until_true 10 "the end of the message" no_window_named '^(Tallow|Error)$'
keys alt+F4
until_true 10 "the question about the sample jukebox" window_named '^Tallow$'
keys alt+n
until_true 10 "the end after the window was closed" has_ended

# After a kill of the program the music continues, and Stop of the next start reaches the player.
make_player
start
keys ctrl+l
until_true 20 "the player" player_runs
until_true 20 "the songs" grep -q '^273 40045 0$' "$folder/log"
kill -KILL "$tallow"
until_true 10 "the kill" has_ended
start
keys alt+s s
stopped() { [ "$(grep -c '^273 40047 0$' "$folder/log")" -ge 2 ]; }
until_true 10 "Stop at the player" stopped
no_window_named '^WinAMP Not Found$' || fail "The player was not found."
picture 3-stopped
kill "$(cat "$folder/pid")"
