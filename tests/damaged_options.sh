#!/usr/bin/env bash
# SPDX-License-Identifier: GPL-3.0-or-later
# Replaces the program's settings file, which holds the window geometry and whether tips are shown,
# by something else and starts the built program. Each start must succeed without delay and must
# keep whatever was there in place of the settings file.
#
# Usage: damaged_options.sh PROGRAM
set -euo pipefail

program=$1
folder=$(mktemp -d)
trap 'rm -rf "$folder"' EXIT
mkdir -p "$folder/app" "$folder/music" "$folder/config/Tallow"
options=$folder/config/Tallow/tallow.conf
export XDG_CONFIG_HOME=$folder/config QT_QPA_PLATFORM=offscreen
failed=0

# start NAME: checks that the program starts and ends by itself. At most 2 s of processor time and
# 30 s of waiting are allowed, which is generous on a busy machine.
start() {
  local got=0
  (
    ulimit -t 2
    exec timeout --signal=KILL 30 "$program" --app-folder "$folder/app" --drive "$folder/music" \
      --exit-after-startup
  ) > "$folder/out" 2>&1 || got=$?
  if [ "$got" -ne 0 ]; then
    echo "With $1 as settings file the program exited with code $got and printed:"
    cat "$folder/out"
    failed=1
  fi
}
# keeps NAME TEST: checks that the replaced file is still there, or in its backup
keeps() {
  if ! test "$2" "$options" && ! test "$2" "$options.bak"; then
    echo "The settings file was replaced by $1, which is gone."
    failed=1
  fi
  rm -rf "$options" "$options.bak"
}

printf '[Options]\nShow%%20Tips%%20at%%20Startup=0\n' > "$options"
start "a sound file"
keeps "a sound file" -s
mkfifo "$options"
start "a FIFO"
keeps "a FIFO" -p
mkdir "$options"
start "a folder"
keeps "a folder" -d
for target in /dev/zero /dev/full "$options" "$folder/nowhere"; do
  ln -s "$target" "$options"
  start "a link to $target"
  keeps "a link to $target" -L
done
: > "$options"
start "an empty file"
keeps "an empty file" -e
printf '[Options]\nShow%%20Tips' > "$options"
start "a file that is cut off"
keeps "a file that is cut off" -s
head -c 5000 /dev/urandom > "$options"
start "random bytes"
keeps "random bytes" -s
printf '[Options]\n' > "$options"
chmod 000 "$options"
start "a file without permissions"
keeps "a file without permissions" -e
truncate -s 2G "$options"
start "2 GiB of nothing"
keeps "2 GiB of nothing" -s
exit "$failed"
