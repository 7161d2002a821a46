# shellcheck shell=bash
# SPDX-License-Identifier: GPL-3.0-or-later
# To be sourced: functions that use a program on the virtual display as a user does, with keys and
# pictures. Pictures go to $folder/pictures.

# The script that sources this sets it.
: "${folder:?}"

fail() {
  echo "$1"
  import -window root "$folder/pictures/failed.png" || :
  exit 1
}
# until_true SECONDS WHAT COMMAND...: waits until the command succeeds; fails with WHAT in the
# message
until_true() {
  local seconds=$1 what=$2
  shift 2
  for _ in $(seq $((seconds * 10))); do
    "$@" > /dev/null 2>&1 && return
    sleep 0.1
  done
  fail "Not seen within $seconds seconds: $what"
}
window_named() { xdotool search --onlyvisible --name "$1"; }
no_window_named() { ! window_named "$1"; }
# go_to NAME: gives a window the keyboard focus
go_to() { xdotool search --onlyvisible --name "$1" windowactivate --sync > /dev/null 2>&1 || :; }
# Presses keys, with a delay after each for a menu or a window to open.
keys() {
  local key
  for key in "$@"; do
    xdotool key "$key"
    sleep 0.3
  done
}
# save_as NAME JUKEBOX: saves the jukebox that is shown under a name in the application folder, where
# JUKEBOX is then its file
save_as() {
  keys ctrl+s
  until_true 10 "the file dialog" window_named '^Save'
  xdotool type --delay 40 "$1"
  keys Return
  until_true 10 "the saved jukebox" test -s "$2"
  until_true 10 "its name" window_named "(^| - )Tallow - \\[${1^^}\\]\$"
}
picture() { import -window root "$folder/pictures/$1.png"; }
