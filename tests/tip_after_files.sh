#!/usr/bin/env bash
# SPDX-License-Identifier: GPL-3.0-or-later
# Starts the built program with a jukebox file that is damaged and with tips turned on, on a virtual
# display: the tip comes only after the file, whose message the user has to close first; it leaves
# the keyboard to the frame window, and Esc there closes it.
#
# Usage: tip_after_files.sh PROGRAM FOLDER
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
# shellcheck source=tests/screen_user.sh
. "$here/screen_user.sh"

usual=(--app-folder "$folder/app" --drive "$folder/music")
"$folder/bin/tallow" "${usual[@]}" --exit-after-startup > /dev/null 2>&1 || :
echo "not a jukebox" > "$folder/damaged.juk"
"$folder/bin/tallow" "${usual[@]}" "$folder/damaged.juk" 2>> "$folder/errors.txt" &
processes+=("$!")
until_true 60 "the message on the file" window_named '^Tallow$'
sleep 0.5
picture 1-message
no_window_named '^Tip of the Day$' || fail "The tip comes before the file."
keys Return
until_true 10 "the tip" window_named '^Tip of the Day$'
sleep 0.5
picture 2-tip
xdotool getactivewindow getwindowname | grep -q '^Tallow - ' || fail "The tip has the keyboard."
keys Escape
until_true 10 "the end of the tip" no_window_named '^Tip of the Day$'
