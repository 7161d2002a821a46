#!/usr/bin/env bash
# SPDX-License-Identifier: GPL-3.0-or-later
# Runs a Windows program under Wine in a prefix of its own, without the drive Z: that would stand for the
# whole machine, and passes its exit code on.
set -euo pipefail
# Wine names files on the disk in the locale's encoding, and the tests use all alphabets.
export LC_ALL=C.UTF-8

wine=$(command -v wine64 || command -v wine || ls /usr/lib/wine/wine64)
wineserver=$(command -v wineserver || ls /usr/lib/wine/wineserver64 /usr/lib/wine/wineserver \
  2> /dev/null | head -n 1)
prefix=$(mktemp -d)
export WINEPREFIX="$prefix" WINEDEBUG=-all WINEDLLOVERRIDES="mscoree,mshtml=" DISPLAY=
trap '"$wineserver" -k || true; "$wineserver" -w || true; rm -rf "$prefix"' EXIT

"$wine" wineboot --init > "$prefix.log" 2>&1 || { cat "$prefix.log"; exit 1; }
rm -f "$prefix.log"
"$wineserver" -w
program=$(realpath "$1")
shift
# The program has to lie on a drive that exists.
cp "$program" "$prefix/drive_c/program.exe"
cp "$(dirname "$program")/winamp_stand_in.exe" "$prefix/drive_c/"
# Windows without a screen, which Wine makes only when it is told to.
"$wine" reg add 'HKCU\Software\Wine\Drivers' /v Graphics /d null /f > /dev/null
"$wineserver" -w
rm -f "$prefix/dosdevices/z:"
cd "$prefix/drive_c"
"$wine" 'C:\program.exe' "$@"
