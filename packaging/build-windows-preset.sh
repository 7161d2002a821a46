#!/usr/bin/env bash
# SPDX-License-Identifier: GPL-3.0-or-later
# Builds Tallow and its tests for Windows in build/windows, with the libraries that
# windows-libraries.sh, windows-mpv.sh and windows-qt.sh build.
set -euo pipefail
cd "$(dirname "$0")/.."

libraries=$(packaging/windows-libraries.sh)
mpv=$(packaging/windows-mpv.sh)
qt=$(packaging/windows-qt.sh)
# CMake caches where it found a library, so the cache is deleted when Qt's folder has changed.
if ! grep -qsxF "TALLOW_WINDOWS_QT:UNINITIALIZED=$qt" build/windows/CMakeCache.txt &&
  ! grep -qsxF "TALLOW_WINDOWS_QT:PATH=$qt" build/windows/CMakeCache.txt; then
  rm -f build/windows/CMakeCache.txt
fi
echo "Building the preset windows"
cmake --preset windows -DTALLOW_WINDOWS_LIBRARIES="$libraries" -DTALLOW_WINDOWS_MPV="$mpv" \
  -DTALLOW_WINDOWS_QT="$qt" \
  -DCMAKE_PREFIX_PATH="$qt" -DQT_HOST_PATH=/usr \
  -DQT_HOST_PATH_CMAKE_DIR="/usr/lib/$(dpkg-architecture -qDEB_HOST_MULTIARCH)/cmake" \
  > build-windows.log 2>&1 || { cat build-windows.log; rm build-windows.log; exit 1; }
rm build-windows.log
cmake --build --preset windows -- --quiet
