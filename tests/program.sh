# shellcheck shell=bash
# SPDX-License-Identifier: GPL-3.0-or-later
# To be sourced: functions that set up and watch the built program in a test with the folder
# $folder.

# The script that sources this sets it.
: "${folder:?}"

# Turns off the tip at the start, which would wait for the user.
turn_tips_off() {
  mkdir -p "$folder/config/Tallow"
  printf '[Options]\nShow%%20Tips%%20at%%20Startup=0\n' > "$folder/config/Tallow/tallow.conf"
}
# Separates the program from the user's session: it stores its options in $folder/config, has no
# session bus, and has a temporary runtime folder, which the script removes. The path of that folder
# is short, because the length of a socket path is limited.
separate_session() {
  XDG_RUNTIME_DIR=$(mktemp -d)
  export XDG_RUNTIME_DIR XDG_CONFIG_HOME=$folder/config DBUS_SESSION_BUS_ADDRESS=unix:path=/nonexistent
}
# Starts a window manager on the display of packaging/virtual-display.sh.
start_window_manager() {
  openbox > /dev/null 2>&1 &
  processes+=($!)
  for _ in $(seq 100); do xdotool get_num_desktops > /dev/null 2>&1 && break; sleep 0.05; done
}
# Whether the process $tallow has ended.
has_ended() { ! kill -0 "${tallow:?}"; }
# Whether the file $library differs from its checksum $before.
library_has_changed() { [ "$(cksum "${library:?}")" != "${before:?}" ]; }
