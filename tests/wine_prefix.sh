# shellcheck shell=bash
# SPDX-License-Identifier: GPL-3.0-or-later
# To be sourced: a temporary Windows installation, made by Wine in $WINEPREFIX, with its own home
# folder and without the drive Z:, which would expose the whole machine. It is removed when the
# script ends; the script may redefine `at_end` for more cleanup. Sets wine and wineserver, the
# paths of the programs.

# Wine encodes file names in the locale's encoding, and the tests use all alphabets.
export LC_ALL=C.UTF-8
wine=$(command -v wine64 || command -v wine || echo /usr/lib/wine/wine64)
wineserver=$(command -v wineserver || find /usr/lib/wine -name 'wineserver*' | sort -r | head -n 1)
windows=$(mktemp -d)
export WINEPREFIX="$windows/prefix" WINEDEBUG=-all WINEDLLOVERRIDES="mscoree,mshtml=,winemenubuilder.exe="
# Windows' folders for documents and the like are links into the home folder.
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
