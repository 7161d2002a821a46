#!/usr/bin/env bash
# SPDX-License-Identifier: GPL-3.0-or-later
# Builds Tallow for Windows on a Debian machine, and packs it: build/windows/Tallow-VERSION-win64.zip to
# be unpacked, and build/windows/Tallow-VERSION-setup.exe to be installed. The first call builds Qt for
# Windows, which takes a quarter of an hour.
set -euo pipefail
cd "$(dirname "$0")"

packaging/install-dependencies.sh run windows
packaging/build-windows-preset.sh

build=build/windows
version=$(sed -n 's/^CMAKE_PROJECT_VERSION:STATIC=//p' "$build/CMakeCache.txt")
name=Tallow-$version
rm -rf "$build/$name"
mkdir "$build/$name"
x86_64-w64-mingw32-strip -o "$build/$name/tallow.exe" "$build/tallow.exe"
# Windows' own editors know lines by both characters.
sed 's/$/\r/' README.md > "$build/$name/readme.txt"
sed 's/$/\r/' LICENSE > "$build/$name/license.txt"
sed 's/$/\r/' TIPOFDAY.TXT > "$build/$name/TIPOFDAY.TXT"

rm -f "$build/$name-win64.zip" "$build/$name-setup.exe"
(cd "$build" && cmake -E tar cf "$name-win64.zip" --format=zip "$name")
makensis -V2 -DVERSION="$version" -DPROGRAM="$PWD/$build/$name" \
  -DOUTPUT="$PWD/$build/$name-setup.exe" packaging/windows/tallow.nsi
ls -l "$build/$name/tallow.exe" "$build/$name-win64.zip" "$build/$name-setup.exe" |
  awk '{ printf "%s: %.1f MB\n", $NF, $5 / 1e6 }'
