#!/usr/bin/env bash
# SPDX-License-Identifier: GPL-3.0-or-later
# Draws docs/layers.svg from CMake's own graph of the targets.
set -euo pipefail
cd "$(dirname "$0")/.."

packaging/install-dependencies.sh run check
cmake --preset release -DTALLOW_BENCHMARKS=OFF --graphviz=build/layers.dot > /dev/null
# The folders' names in place of the targets', without the legend; a folder uses what its arrows
# lead to.
sed -E -e '/clusterLegend/,/^}/d' -e 's/tallow_ui_/ui\//' -e 's/"tallow_/"/' -e 's/"tallow"/"main.cpp"/' \
  -e 's/"tallow-player"/"player\/substitute"/' -e 's/shape = [a-z]+/shape = box/' build/layers.dot |
  dot -Tsvg -Nfontname=sans-serif -o docs/layers.svg
