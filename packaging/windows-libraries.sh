#!/usr/bin/env bash
# SPDX-License-Identifier: GPL-3.0-or-later
# Builds utf8proc and GoogleTest for Windows from Debian's sources and prints their folder. The
# result is cached in the user's cache folder by version, so a second call only prints the folder.
set -euo pipefail
# shellcheck source=packaging/debian-source.sh
. "$(dirname "$0")/debian-source.sh"

sources=/usr/src/googletest
compiler=x86_64-w64-mingw32-g++-posix
archiver=x86_64-w64-mingw32-ar

version() { dpkg-query -W -f='${Version}' "$1"; }
key="utf8proc-$(version libutf8proc-dev)_googletest-$(version googletest)_$($compiler -dumpfullversion)"
folder=$(cache_folder windows-libraries "$key")
if [ -f "$folder/complete" ]; then
  printf '%s\n' "$folder"
  exit 0
fi

work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
mkdir -p "$work/out/lib" "$work/out/include"

fetch_source "$work" utf8proc

echo "Building utf8proc and GoogleTest for Windows" >&2
flags=(-O2 -std=c++17 '-Wa,-mbig-obj')
utf8proc=$(find "$work" -mindepth 1 -maxdepth 1 -type d -name 'utf8proc-*' | head -n 1)
x86_64-w64-mingw32-gcc-posix -O2 -DUTF8PROC_STATIC -c "$utf8proc/utf8proc.c" -o "$work/utf8proc.o"
"$archiver" rcs "$work/out/lib/libutf8proc.a" "$work/utf8proc.o"
cp "$utf8proc/utf8proc.h" "$work/out/include/"

"$compiler" "${flags[@]}" -I"$sources/googletest/include" -I"$sources/googletest" \
  -c "$sources/googletest/src/gtest-all.cc" -o "$work/gtest.o"
"$archiver" rcs "$work/out/lib/libgtest.a" "$work/gtest.o"
cp -r "$sources/googletest/include/gtest" "$work/out/include/"

mkdir -p "$(dirname "$folder")"
rm -rf "$folder"
mv "$work/out" "$folder"
touch "$folder/complete"
printf '%s\n' "$folder"
