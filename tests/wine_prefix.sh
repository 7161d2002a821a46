# shellcheck shell=bash
# SPDX-License-Identifier: GPL-3.0-or-later
# To be sourced: a Windows of its own for a script, made by Wine in $WINEPREFIX, without the drive Z: that
# would stand for the whole machine and with a home folder of its own. It ends with the script, which may
# add to `at_end`. Sets wine and wineserver, the programs.

# Wine names files on the disk in the locale's encoding, and the tests use all alphabets.
export LC_ALL=C.UTF-8
wine=$(command -v wine64 || command -v wine || echo /usr/lib/wine/wine64)
wineserver=$(command -v wineserver || find /usr/lib/wine -name 'wineserver*' | sort -r | head -n 1)
windows=$(mktemp -d)
export WINEPREFIX="$windows/prefix" WINEDEBUG=-all WINEDLLOVERRIDES="mscoree,mshtml=,winemenubuilder.exe="
# Its folders for documents and the like are links into the home folder.
export HOME="$windows/home"
mkdir -p "$WINEPREFIX" "$HOME"
at_end() { :; }
end_windows() {
  at_end || :
  "$wineserver" -k || :
  "$wineserver" -w || :
  rm -rf "$windows"
}
trap end_windows EXIT

make_windows() {
  "$wine" wineboot --init > "$windows/boot.log" 2>&1 || { cat "$windows/boot.log"; exit 1; }
  "$wineserver" -w
  rm -f "$WINEPREFIX/dosdevices/z:"
}
