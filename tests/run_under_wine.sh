#!/usr/bin/env bash
# SPDX-License-Identifier: GPL-3.0-or-later
# Runs a Windows program under Wine in a prefix of its own, and passes its exit code on.
set -euo pipefail

program=$(realpath "$1")
shift
export DISPLAY=
# shellcheck source=tests/wine_prefix.sh
. "$(dirname "$0")/wine_prefix.sh"
make_windows
# The program has to lie on a drive that exists.
cp "$program" "$WINEPREFIX/drive_c/program.exe"
cp "$(dirname "$program")/winamp_stand_in.exe" "$WINEPREFIX/drive_c/"
# Windows without a screen, which Wine makes only when it is told to.
"$wine" reg add 'HKCU\Software\Wine\Drivers' /v Graphics /d null /f > /dev/null
"$wineserver" -w
# The display in memory has these letters.
mkdir -p "$WINEPREFIX/drive_c/fonts"
cp /usr/share/fonts/truetype/dejavu/*.ttf "$WINEPREFIX/drive_c/fonts/" 2> /dev/null || :
export TALLOW_TEST_FONTS='C:\fonts'
cd "$WINEPREFIX/drive_c"
"$wine" 'C:\program.exe' "$@"
