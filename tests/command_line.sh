#!/usr/bin/env bash
# SPDX-License-Identifier: GPL-3.0-or-later
# Checks the exit codes and the output of the built program's command line.
#
# Usage: command_line.sh PROGRAM
set -euo pipefail

program=$1
folder=$(mktemp -d)
trap 'rm -rf "$folder"' EXIT
mkdir "$folder/app" "$folder/music"
unset DISPLAY WAYLAND_DISPLAY QT_QPA_PLATFORM

# expect CODE PATTERN ARGUMENT...: checks the exit code, and that the output has a line with PATTERN
expect() {
  local code=$1 pattern=$2 got=0
  shift 2
  "$program" "$@" > "$folder/out" 2>&1 || got=$?
  if [ "$got" -ne "$code" ] || ! grep -qF -- "$pattern" "$folder/out"; then
    echo "tallow $* exited with code $got (expected $code) and printed:"
    cat "$folder/out"
    exit 1
  fi
}
usual=(--app-folder "$folder/app" --drive "$folder/music" --exit-after-startup)
expect 0 "--exit-after-startup" --help
expect 0 "tallow 0." --version
expect 2 "'--fast' is not an option of Tallow." --fast
expect 2 "does not exist" --app-folder "$folder/app" --drive "$folder/none" --exit-after-startup
expect 2 "does not exist" --app-folder "$folder/none"
expect 2 "does not exist" --app-folder "$folder/none" --exit-after-startup
expect 2 "requires a folder" --app-folder
expect 1 "requires a display" --app-folder "$folder/app" --drive "$folder/music"
expect 0 "" "${usual[@]}"
expect 0 "" "${usual[@]}"
# A style for one run is not stored, and a run without windows does not change what the next one
# opens.
system=$folder/app/Grouping/System
open='{"format":"Tallow open jukeboxes","version":1,"jukeboxes":[
{"file":"'$folder'/none.juk","active":true,"state":"normal","place":[11,12,713,414],"shown":[],"expanded":[]}]}'
preferences='{"bar":{"hidden":true}}'
for stored in "" "$preferences"; do
  [ -z "$stored" ] || printf '%s\n' "$stored" > "$system/Preferences.json"
  [ -z "$stored" ] || chmod a-w "$system/Preferences.json"
  printf '%s\n' "$open" > "$system/OpenJukeboxes.json"
  expect 0 "" "${usual[@]}" --style modern
  if [ "$(cat "$system/OpenJukeboxes.json")" != "$open" ] ||
    [ "$(cat "$system/Preferences.json" 2> /dev/null)" != "$stored" ]; then
    echo "A run with --style modern and --exit-after-startup has changed one of these:"
    head "$system/OpenJukeboxes.json" "$system/Preferences.json"
    exit 1
  fi
done
# The files shipped with the program are in its folder.
program_folder=$(dirname "$program")
if [ "$(grep -c . "$program_folder/TIPOFDAY.TXT")" -lt 30 ] || [ ! -s "$program_folder/readme.txt" ]; then
  echo "The folder of the program has fewer than 30 tips, or no readme.txt."
  exit 1
fi
printf 'a\r\nb\r\nabc\r\n' > "$folder/app/Grouping/System/TallowOrganizer.ini"
expect 1 "TallowOrganizer.ini, line 3: 'abc' is not a number" "${usual[@]}"

# A child that reads song details greets its parent, answers, and ends when its parent does. A message
# is its length in four bytes and its content: here "a" for all details, and the path.
song=$folder/song.mp3
{
  head -c 400 /dev/zero
  printf 'TAG%-30s%-30s%-30s%-4s%-30s\021' 'A title' Queen Album 1975 ''
} > "$song"
# shellcheck disable=SC2059
{
  printf "\\x$(printf %02x $((${#song} + 1)))\\0\\0\\0"
  printf %s "a$song"
} > "$folder/request"
if ! timeout 60 "$program" --serve-song-details < "$folder/request" > "$folder/answer" ||
  ! head -c 18 "$folder/answer" | grep -qaF 'song details' || ! grep -qaF 'A title' "$folder/answer"; then
  echo "tallow --serve-song-details did not answer:"
  od -c "$folder/answer"
  exit 1
fi
