#!/usr/bin/env bash
# SPDX-License-Identifier: GPL-3.0-or-later
# Starts the built program while a drive does not answer: the start gives up the drive and loses
# nothing.
#
# Usage: dead_share.sh PROGRAM INTERPOSED_LIBRARY FOLDER
set -euo pipefail

program=$1 library=$2 folder=$3
rm -rf "$folder"
mkdir -p "$folder"/{app,local,share}
unset DISPLAY WAYLAND_DISPLAY QT_QPA_PLATFORM
for k in 1 2 3; do
  head -c 400 /dev/zero > "$folder/local/local $k.mp3"
  head -c 400 /dev/zero > "$folder/share/share $k.mp3"
done
start=("$program" --app-folder "$folder/app" --drive "$folder/local" --drive "$folder/share"
  --exit-after-startup)
"${start[@]}"
songs=$folder/app/Grouping/FileLocNames.lmz
cp "$songs" "$folder/before"

# The start waits at most 30 s for a drive unless the user cancels.
TALLOW_DEAD_FOLDER="$folder/share/" LD_PRELOAD="$library" timeout 120 "${start[@]}" \
  2> "$folder/errors.txt"
cmp "$songs" "$folder/before"

# When the drive answers again, no song is missing.
"${start[@]}" 2> "$folder/errors.txt"
cmp "$songs" "$folder/before"
if grep -q missing "$folder/errors.txt"; then
  cat "$folder/errors.txt"
  exit 1
fi
