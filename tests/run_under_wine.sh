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
cp "$(dirname "$program")"/{winamp_stand_in,tallow-player}.exe "$WINEPREFIX/drive_c/"
# The songs that the tests use, because no encoder runs under Wine.
mkdir -p "$WINEPREFIX/drive_c/songs"
while IFS=';' read -r synth channels lame; do
  case $synth in '#'*) continue ;; esac
  name=$(tr ' :' '__' <<< "$synth $channels $lame")
  # shellcheck disable=SC2086 # Each has several words.
  sox -q -n -r 44100 -c "$channels" -t wav - synth $synth gain -6 2> /dev/null |
    lame --quiet $lame - "$WINEPREFIX/drive_c/songs/$name.mp3"
done < "$(dirname "$0")/windows_songs.txt"
export TALLOW_TEST_SONGS='C:\songs'
# Wine runs without a display only if the graphics driver is set to null.
"$wine" reg add 'HKCU\Software\Wine\Drivers' /v Graphics /d null /f > /dev/null
# A crash ends the program with a backtrace, instead of waiting in a dialog.
"$wine" reg add 'HKCU\Software\Wine\WineDbg' /v ShowCrashDialog /t REG_DWORD /d 0 /f > /dev/null
"$wineserver" -w
# Fonts for the offscreen platform.
mkdir -p "$WINEPREFIX/drive_c/fonts"
cp /usr/share/fonts/truetype/dejavu/*.ttf "$WINEPREFIX/drive_c/fonts/" 2> /dev/null || :
export TALLOW_TEST_FONTS='C:\fonts'
cd "$WINEPREFIX/drive_c"
"$wine" 'C:\program.exe' "$@"
