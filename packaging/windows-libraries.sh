#!/usr/bin/env bash
# SPDX-License-Identifier: GPL-3.0-or-later
# Builds utf8proc, TagLib, SQLite and GoogleTest for Windows from Debian's sources and prints their
# folder. The result is cached in the user's cache folder by version, so a second call only prints the
# folder. The first call takes a few minutes.
set -euo pipefail
here=$(cd "$(dirname "$0")" && pwd)
# shellcheck source=packaging/debian-source.sh
. "$here/debian-source.sh"

sources=/usr/src/googletest
compiler=x86_64-w64-mingw32-g++-posix
archiver=x86_64-w64-mingw32-ar

version() { dpkg-query -W -f='${Version}' "$1"; }
key="utf8proc-$(version libutf8proc-dev)_taglib-$(version libtag1-dev)_sqlite3-$(version libsqlite3-dev)"
key+="_googletest-$(version googletest)_$($compiler -dumpfullversion)"
folder=$(cache_folder windows-libraries "$key")
if [ -f "$folder/complete" ]; then
  printf '%s\n' "$folder"
  exit 0
fi

work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
mkdir -p "$work/out/lib" "$work/out/include"

# The sources of the installed versions.
source_version() { dpkg-query -W -f='${source:Version}' "$1"; }
fetch_source "$work" utf8proc "taglib=$(source_version libtag1-dev)" \
  "sqlite3=$(source_version libsqlite3-dev)"
# source_folder NAME: the folder of a fetched source package
source_folder() { find "$work" -mindepth 1 -maxdepth 1 -type d -name "$1-*" | head -n 1; }
# log FILE COMMAND...: writes the output of a command to FILE; shows it only on failure.
log() {
  local file=$1
  shift
  "$@" > "$file" 2>&1 || { tail -n 60 "$file" >&2; exit 1; }
}

echo "Building utf8proc, TagLib, SQLite and GoogleTest for Windows" >&2
flags=(-O2 -std=c++17 '-Wa,-mbig-obj')
utf8proc=$(source_folder utf8proc)
x86_64-w64-mingw32-gcc-posix -O2 -DUTF8PROC_STATIC -c "$utf8proc/utf8proc.c" -o "$work/utf8proc.o"
"$archiver" rcs "$work/out/lib/libutf8proc.a" "$work/utf8proc.o"
cp "$utf8proc/utf8proc.h" "$work/out/include/"

# Debian's TagLib uses the headers of a package of their own, which are the same on every system.
log "$work/taglib.log" cmake -S "$(source_folder taglib)" -B "$work/taglib" -G Ninja \
  -DCMAKE_TOOLCHAIN_FILE="$here/mingw-toolchain.cmake" -DCMAKE_INSTALL_PREFIX="$work/out" \
  -DCMAKE_BUILD_TYPE=Release -DCMAKE_CXX_FLAGS=-I/usr/include/utf8cpp -DBUILD_SHARED_LIBS=OFF -DWITH_ZLIB=OFF -DBUILD_TESTING=OFF \
  -DBUILD_EXAMPLES=OFF -DBUILD_BINDINGS=OFF
log "$work/taglib.log" cmake --build "$work/taglib"
log "$work/taglib.log" cmake --install "$work/taglib"

# The source package has SQLite in many files; its script joins them into the one that is compiled.
# Options: the program locks the database itself, and loads no extensions.
sqlite=$(source_folder sqlite3)
(cd "$sqlite" && log "$work/sqlite.log" ./configure --disable-tcl --disable-readline &&
  log "$work/sqlite.log" make sqlite3.c)
x86_64-w64-mingw32-gcc-posix -O2 -DSQLITE_OMIT_LOAD_EXTENSION -DSQLITE_OMIT_DEPRECATED \
  -c "$sqlite/sqlite3.c" -o "$work/sqlite3.o"
"$archiver" rcs "$work/out/lib/libsqlite3.a" "$work/sqlite3.o"
cp "$sqlite/sqlite3.h" "$work/out/include/"

"$compiler" "${flags[@]}" -I"$sources/googletest/include" -I"$sources/googletest" \
  -c "$sources/googletest/src/gtest-all.cc" -o "$work/gtest.o"
"$archiver" rcs "$work/out/lib/libgtest.a" "$work/gtest.o"
cp -r "$sources/googletest/include/gtest" "$work/out/include/"

mkdir -p "$(dirname "$folder")"
rm -rf "$folder"
mv "$work/out" "$folder"
touch "$folder/complete"
printf '%s\n' "$folder"
