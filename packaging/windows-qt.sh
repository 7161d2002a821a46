#!/usr/bin/env bash
# SPDX-License-Identifier: GPL-3.0-or-later
# Builds the part of Qt that Tallow needs for Windows, statically, from Debian's source of the
# installed Qt version, and prints its folder. The result is cached in the user's cache folder by
# version and options, so a second call only prints the folder. The first call takes about a quarter
# of an hour.
set -euo pipefail
here=$(cd "$(dirname "$0")" && pwd)
# shellcheck source=packaging/debian-source.sh
. "$here/debian-source.sh"

# Build options: host tools come from this system, third-party libraries from the Qt source. Leaves
# out what Tallow does not use, and what lacks headers in the source package or the compiler:
# tablets, DirectWrite 3.
options=(
  -DCMAKE_BUILD_TYPE=MinSizeRel
  -DBUILD_SHARED_LIBS=OFF
  -DQT_HOST_PATH=/usr
  -DQT_QMAKE_TARGET_MKSPEC=win32-g++
  -DQT_BUILD_EXAMPLES=OFF
  -DQT_BUILD_TESTS=OFF
  -DINPUT_opengl=dynamic
)
bundled=(zlib jpeg png freetype harfbuzz pcre2 doubleconversion)
left_out=(concurrent dbus direct2d direct2d1_1 directwrite3 glib icu pkg_config printsupport schannel sql ssl
  tabletevent vulkan xml zstd brotli)
bundled_folders=(zlib libjpeg libpng freetype harfbuzz-ng pcre2 double-conversion md4c)
for feature in "${bundled[@]}"; do options+=("-DFEATURE_system_$feature=OFF"); done
for feature in "${left_out[@]}"; do options+=("-DFEATURE_$feature=OFF"); done

version=$(dpkg-query -W -f='${source:Version}' qt6-base-dev)
compiler=$(x86_64-w64-mingw32-g++-posix -dumpfullversion)
key="qt-${version}_${compiler}_$(cat "$here/mingw-toolchain.cmake" <(echo "${options[*]} notices") |
  sha256sum | head -c 12)"
folder=$(cache_folder windows-qt "$key")
if [ -f "$folder/complete" ]; then
  printf '%s\n' "$folder"
  exit 0
fi

work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
if ! fetch_source "$work" "qt6-base=$version"; then
  echo "There is no source of the installed Qt $version. Update the Qt packages" \
    "(apt-get install --only-upgrade qt6-base-dev) and try again." >&2
  exit 1
fi
source=$(find "$work" -mindepth 1 -maxdepth 1 -type d -name 'qt6-base-*' | head -n 1)

echo "Building Qt $version for Windows" >&2
rm -rf "$folder"
# log FILE COMMAND...: writes the output of a command to FILE; shows it only on failure.
log() {
  local file=$1
  shift
  "$@" > "$file" 2>&1 || { tail -n 60 "$file" >&2; exit 1; }
}
log "$work/configure.log" cmake -S "$source" -B "$work/build" -G Ninja \
  -DCMAKE_TOOLCHAIN_FILE="$here/mingw-toolchain.cmake" -DCMAKE_INSTALL_PREFIX="$folder" \
  -DQT_HOST_PATH_CMAKE_DIR="/usr/lib/$(dpkg-architecture -qDEB_HOST_MULTIARCH)/cmake" "${options[@]}"
log "$work/build.log" cmake --build "$work/build"
log "$work/install.log" cmake --install "$work/build"
# The license notices for programs that contain Qt.
mkdir -p "$folder/notices"
cp "$source/debian/copyright" "$folder/notices/qt6-base.txt"
for part in "${bundled_folders[@]}"; do
  find "$source/src/3rdparty/$part" -maxdepth 1 -iname '*licen[cs]e*' -o -maxdepth 1 -name COPYING |
    sort | xargs -d '\n' cat > "$folder/notices/$part.txt"
done
touch "$folder/complete"
printf '%s\n' "$folder"
