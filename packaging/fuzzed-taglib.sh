#!/usr/bin/env bash
# SPDX-License-Identifier: GPL-3.0-or-later
# Builds TagLib for the fuzzer of tags, from Debian's source of the installed version, and prints its
# folder: with the address sanitizer and the counters by which libFuzzer finds new paths. The result is
# cached in the user's cache folder by version, so a second call only prints the folder. The first call
# takes a few minutes.
set -euo pipefail
here=$(cd "$(dirname "$0")" && pwd)
# shellcheck source=packaging/debian-source.sh
. "$here/debian-source.sh"

version=$(dpkg-query -W -f='${source:Version}' libtag1-dev)
folder=$(cache_folder fuzzed-taglib "${version}_clang-$(clang -dumpversion)")
if [ -f "$folder/complete" ]; then
  printf '%s\n' "$folder"
  exit 0
fi

work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
fetch_source "$work" "taglib=$version"

echo "Building TagLib for the fuzzer" >&2
# log COMMAND...: shows the output of a command only on failure.
log() { "$@" > "$work/log" 2>&1 || { tail -n 60 "$work/log" >&2; exit 1; }; }
log cmake -S "$(find "$work" -mindepth 1 -maxdepth 1 -type d -name 'taglib-*')" -B "$work/build" -G Ninja \
  -DCMAKE_C_COMPILER=clang -DCMAKE_CXX_COMPILER=clang++ -DCMAKE_INSTALL_PREFIX="$work/out" \
  -DCMAKE_INSTALL_LIBDIR=lib -DCMAKE_BUILD_TYPE=None -DBUILD_SHARED_LIBS=OFF -DBUILD_TESTING=OFF \
  -DBUILD_EXAMPLES=OFF -DBUILD_BINDINGS=OFF \
  -DCMAKE_CXX_FLAGS='-O1 -g1 -fno-omit-frame-pointer -fsanitize=address,fuzzer-no-link'
log cmake --build "$work/build"
log cmake --install "$work/build"

mkdir -p "$(dirname "$folder")"
rm -rf "$folder"
mv "$work/out" "$folder"
touch "$folder/complete"
printf '%s\n' "$folder"
