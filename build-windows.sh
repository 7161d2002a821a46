#!/usr/bin/env bash
# SPDX-License-Identifier: GPL-3.0-or-later
# Builds Tallow for Windows on a Debian machine and packages it: a zip archive
# build/windows/Tallow-VERSION-win64.zip and an installer build/windows/Tallow-VERSION-setup.exe.
# The first run builds Qt and libmpv for Windows, which takes half an hour.
set -euo pipefail
cd "$(dirname "$0")"

packaging/install-dependencies.sh run windows
packaging/build-windows-preset.sh

build=build/windows
version=$(sed -n 's/^CMAKE_PROJECT_VERSION:STATIC=//p' "$build/CMakeCache.txt")
name=Tallow-$version
rm -rf "${build:?}/$name"
mkdir "$build/$name"
for program in tallow tallow-player; do
  x86_64-w64-mingw32-strip -o "$build/$name/$program.exe" "$build/$program.exe"
done
# The license notices of the linked libraries, and where their source code is.
qt=$(sed -n 's/^TALLOW_WINDOWS_QT:[A-Z]*=//p' "$build/CMakeCache.txt")
mpv=$(sed -n 's/^TALLOW_WINDOWS_MPV:[A-Z]*=//p' "$build/CMakeCache.txt")
{
  echo "tallow.exe and tallow-player.exe $version contain the libraries below. readme.txt describes where their own source and the"
  echo "build scripts are. The libraries are those of Debian $(. /etc/os-release; echo "$VERSION_ID"), whose source packages are public:"
  for package in qt6-base-dev libutf8proc-dev libtag1-dev libsqlite3-dev nlohmann-json3-dev libxxhash-dev g++-mingw-w64-x86-64-posix mingw-w64-x86-64-dev; do
    dpkg-query -W -f='  ${source:Package} ${source:Version}\n' "$package"
  done
  sed 's/^/  /' "$mpv/sources.txt"
  echo "tallow-player.exe contains FFmpeg and mpv under the terms of the GNU General Public License."
  echo "Portions of this software are copyright The FreeType Project (www.freetype.org). All rights reserved."
  echo "This software is based in part on the work of the Independent JPEG Group."
  for notice in "$qt"/notices/*.txt "$mpv"/notices/*.txt /usr/share/doc/{libutf8proc-dev,libtag1-dev,libsqlite3-dev,nlohmann-json3-dev,libxxhash-dev,g++-mingw-w64-x86-64-posix,mingw-w64-x86-64-dev}/copyright; do
    printf '\n\n======== %s\n\n' "$(sed 's|.*/notices/||; s|/usr/share/doc/||; s|/copyright$||; s|\.txt$||' <<< "$notice")"
    cat "$notice"
  done
} | sed 's/\r$//; s/$/\r/' > "$build/$name/third-party.txt"
# Text editors of Windows expect CR LF at the end of a line.
sed 's/$/\r/' README.md > "$build/$name/readme.txt"
sed 's/$/\r/' LICENSE > "$build/$name/license.txt"
sed 's/$/\r/' TIPOFDAY.TXT > "$build/$name/TIPOFDAY.TXT"

rm -f "$build/$name-win64.zip" "$build/$name-setup.exe"
(cd "$build" && cmake -E tar cf "$name-win64.zip" --format=zip "$name")
# Windows versions have four numbers.
four=$(awk -F. '{ printf "%d.%d.%d.%d", $1, $2, $3, $4 }' <<< "$version")
makensis -V2 -DVERSION="$version" -DFOUR_NUMBERS="$four" -DPROGRAM="$PWD/$build/$name" \
  -DOUTPUT="$PWD/$build/$name-setup.exe" packaging/windows/tallow.nsi
stat --format='%s %n' "$build/$name"/tallow{,-player}.exe | awk '{ printf "%s: %.1f MB\n", $2, $1 / 1e6 }'
# print_size FILE LIMIT: prints the size of a file and its ratio to a limit, both in MB; fails above it
print_size() {
  stat --format='%s %n' "$1" | awk -v limit="$2" '{
    printf "%s: %.1f MB, %.2f x the limit of %d MB\n", $2, $1 / 1e6, $1 / 1e6 / limit, limit
    exit $1 > limit * 1e6 }'
}
print_size "$build/$name-win64.zip" 18
print_size "$build/$name-setup.exe" 14
