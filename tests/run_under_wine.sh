#!/usr/bin/env bash
# SPDX-License-Identifier: GPL-3.0-or-later
# Runs a Windows program under Wine in a temporary prefix, and returns its exit code.
set -euo pipefail

program=$(realpath "$1")
shift
export DISPLAY=
# shellcheck source=tests/wine_prefix.sh
. "$(dirname "$0")/wine_prefix.sh"
make_windows
# The program must be on a drive that exists in the prefix.
cp "$program" "$WINEPREFIX/drive_c/program.exe"
cp "$(dirname "$program")/winamp_stand_in.exe" "$WINEPREFIX/drive_c/"
# Wine runs without a display only if the graphics driver is set to null.
"$wine" reg add 'HKCU\Software\Wine\Drivers' /v Graphics /d null /f > /dev/null
"$wineserver" -w
# Fonts for the offscreen platform.
mkdir -p "$WINEPREFIX/drive_c/fonts"
cp /usr/share/fonts/truetype/dejavu/*.ttf "$WINEPREFIX/drive_c/fonts/" 2> /dev/null || :
export TALLOW_TEST_FONTS='C:\fonts'
cd "$WINEPREFIX/drive_c"
"$wine" 'C:\program.exe' "$@"
