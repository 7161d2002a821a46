#!/usr/bin/env bash
# SPDX-License-Identifier: GPL-3.0-or-later
# Runs Tallow on a virtual display, waits for its frame window, plays a song, takes a screenshot and
# closes the window.
#
# Usage: picture-of-window.sh PICTURE PROGRAM [ARGUMENT...]
set -euo pipefail

picture=$1
shift
# shellcheck source=packaging/virtual-display.sh
. "$(dirname "$0")/virtual-display.sh"
unset QT_QPA_PLATFORM
# Turns off the tip at start, which would cover the window.
XDG_CONFIG_HOME=$(mktemp -d)
export XDG_CONFIG_HOME
mkdir -p "$XDG_CONFIG_HOME/Tallow"
printf '[Options]\nShow%%20Tips%%20at%%20Startup=0\n' > "$XDG_CONFIG_HOME/Tallow/tallow.conf"
openbox > /dev/null 2>&1 &
processes+=($!)
# Waits for the window manager: a window opened while it starts may never be shown.
for _ in $(seq 100); do xdotool get_num_desktops > /dev/null 2>&1 && break; sleep 0.05; done

"$@" &
program=$!
processes+=("$program")
opened=false
for _ in $(seq 600); do
  # Identifies the frame window by its width; the splash window is narrower.
  for window in $(xdotool search --onlyvisible --name '(^| - )Tallow' 2> /dev/null); do
    eval "$(xdotool getwindowgeometry --shell "$window" 2> /dev/null || echo WIDTH=0)"
    if [ "$WIDTH" -ge 900 ]; then opened=true; break 2; fi
  done
  kill -0 "$program" 2> /dev/null || { echo "Tallow ended before its window opened." >&2; exit 1; }
  sleep 0.1
done
if ! $opened; then
  import -window root "$picture" || :
  echo "Tallow's window did not open within a minute; $picture shows what there was." >&2
  exit 1
fi
# Waits until the splash window is gone and the list is painted, then plays a song of the list, and
# waits until the song is playing.
sleep 2
xdotool mousemove --window "$window" 500 230 click --repeat 2 --delay 60 1 mousemove 20 740
sleep 4
mkdir -p "$(dirname "$picture")"
import -window root "$picture"
mogrify -bordercolor black -border 1 -trim +repage "$picture"
# Closing the window also closes the player. Tallow asks whether to save the sample jukebox: No.
xdotool key alt+F4
sleep 1
xdotool key alt+n
for _ in $(seq 50); do
  kill -0 "$program" 2> /dev/null || break
  sleep 0.1
done
echo "The picture is in $picture"
