# shellcheck shell=bash
# SPDX-License-Identifier: GPL-3.0-or-later
# To be sourced. Starts a virtual display that runs until the script ends, and sets DISPLAY.
# Processes whose ids the script adds to the array `processes` are killed when it ends.

processes=()
display_number=$(mktemp)
end_processes() {
  # In reverse order, so that no process loses its display.
  local k
  for ((k = ${#processes[@]} - 1; k >= 0; --k)); do
    kill "${processes[k]}" 2> /dev/null || :
    wait "${processes[k]}" 2> /dev/null || :
  done
  rm -f "$display_number"
}
trap end_processes EXIT

# The server picks a free display number and writes it to fd 3 once it accepts connections. Without
# -noreset it starts over when its last client leaves, and refuses the client that comes just then.
Xvfb -displayfd 3 -screen 0 1100x760x24 -noreset -nolisten tcp 3> "$display_number" 2> /dev/null &
processes+=($!)
for _ in $(seq 100); do [ -s "$display_number" ] && break; sleep 0.1; done
[ -s "$display_number" ] || { echo "The virtual display did not start." >&2; exit 1; }
DISPLAY=:$(cat "$display_number")
export DISPLAY
unset WAYLAND_DISPLAY
