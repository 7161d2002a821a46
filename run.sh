#!/usr/bin/env bash
# SPDX-License-Identifier: GPL-3.0-or-later
# Builds Tallow and starts it. Arguments are passed on to the program.
#
#   ./run.sh          searches the drives of this computer at the first start
#   ./run.sh --demo   makes a small demo collection and uses it, with a separate data folder
set -euo pipefail
cd "$(dirname "$0")"

demo=false
arguments=()
for argument in "$@"; do
  if [ "$argument" = --demo ]; then demo=true; else arguments+=("$argument"); fi
done

purposes=(run)
if $demo; then purposes+=(demo); fi
packaging/install-dependencies.sh "${purposes[@]}"

cmake --preset release -DTALLOW_BENCHMARKS=OFF > build.log 2>&1 ||
  { cat build.log; rm build.log; exit 1; }
rm build.log
cmake --build --preset release --target tallow tallow-player

program=$PWD/build/release/tallow
if ! $demo; then exec "$program" "${arguments[@]}"; fi

echo "Making the demo collection in build/demo"
packaging/make-demo-collection.sh build/demo/music
packaging/add-newer-demo-songs.sh build/demo/music
mkdir -p build/demo/app
arguments=(--app-folder build/demo/app --drive build/demo/music "${arguments[@]}")
if [ -n "${DISPLAY:-}${WAYLAND_DISPLAY:-}" ]; then exec "$program" "${arguments[@]}"; fi

echo "There is no display here, so Tallow runs on a virtual one; see build/tallow.png."
packaging/picture-of-window.sh build/tallow.png "$program" "${arguments[@]}"
