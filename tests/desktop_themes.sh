#!/bin/bash
# SPDX-License-Identifier: GPL-3.0-or-later
# Runs the tests of the find dialog's keys under the platform themes of several desktops, on a
# virtual display: under some themes Enter presses the focused button.
#
# Usage: desktop_themes.sh WINDOW_TESTS
set -euo pipefail
tests=$1
here=$(dirname "$(readlink -f "$0")")
# shellcheck source=packaging/virtual-display.sh
. "$here/../packaging/virtual-display.sh"
export QT_QPA_PLATFORM=xcb DBUS_SESSION_BUS_ADDRESS=unix:path=/nonexistent
unset KDE_FULL_SESSION KDE_SESSION_VERSION
for theme in gnome kde generic; do
  echo "Desktop theme: $theme"
  QT_QPA_PLATFORMTHEME=$theme "$tests" --gtest_filter='FrmFind.Enter*:FrmFind.OnlyTheFindButton*'
done
