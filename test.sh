#!/usr/bin/env bash
# SPDX-License-Identifier: GPL-3.0-or-later
# Installs missing packages, builds Tallow, and runs every test: on Linux, and the code without
# windows as a Windows program under Wine.
#
#   ./test.sh             all tests
#   ./test.sh --windows   the whole Windows program under Wine, including its windows and its
#                         installer; builds what ./build-windows.sh builds
#   ./test.sh --faults    every system call of a save fails once, in every way, and more files are
#                         damaged than in a test without option; docs/reliability.md. 10,000 damaged
#                         songs are read
#   ./test.sh --sanitize  all tests under the address and undefined behaviour sanitizers, and the
#                         tests of the code without windows under the thread sanitizer; without the
#                         fault tests, which intercept the same calls as the sanitizers
set -euo pipefail
cd "$(dirname "$0")"

faults=false
sanitize=false
windows=false
case "${1:-}" in
  "") ;;
  --faults) faults=true ;;
  --sanitize) sanitize=true ;;
  --windows) windows=true ;;
  *) echo "Usage: ./test.sh [--faults|--sanitize|--windows]" >&2; exit 2 ;;
esac

packaging/install-dependencies.sh run demo test

if $windows; then
  ./build-windows.sh
  ctest --test-dir build/windows --output-on-failure
  exit
fi

# build PRESET [CMake options]
build() {
  local preset=$1
  shift
  echo "Building the preset $preset"
  cmake --preset "$preset" -DTALLOW_BENCHMARKS=OFF "$@" > "build-$preset.log" 2>&1 ||
    { cat "build-$preset.log"; rm "build-$preset.log"; exit 1; }
  rm "build-$preset.log"
  cmake --build --preset "$preset" -- --quiet
}

mutated_files=10000
if $faults; then
  build release
  failed=false
  LD_PRELOAD=$PWD/build/release/fail_call.so build/release/tallow_fault_tests faults || failed=true
  build/release/tallow_fault_tests damage --big || failed=true
  TALLOW_MUTATED_FILES=$mutated_files build/release/tallow_core_tests --gtest_filter='MutatedFiles.*' ||
    failed=true
  if $failed; then exit 1; fi
  exit
fi

if $sanitize; then
  suppressions=$PWD/tests/sanitizers
  build tsan
  TSAN_OPTIONS="halt_on_error=1:suppressions=$suppressions/tsan.txt" \
    ctest --test-dir build/tsan --output-on-failure -j "$(nproc)"
  build asan
  # With TLS interception on, this compiler's leak check fails on the thread-local data of plug-ins.
  ASAN_OPTIONS="detect_stack_use_after_return=1:intercept_tls_get_addr=0" \
    LSAN_OPTIONS="suppressions=$suppressions/lsan.txt" UBSAN_OPTIONS="print_stacktrace=1" \
    TALLOW_MUTATED_FILES=$mutated_files \
    ctest --test-dir build/asan --output-on-failure -j "$(nproc)"
  exit
fi

libraries=$(packaging/windows-libraries.sh)
mpv=$(packaging/windows-mpv.sh)
build windows-core -DTALLOW_WINDOWS_LIBRARIES="$libraries" -DTALLOW_WINDOWS_MPV="$mpv"
taglib=$(packaging/fuzzed-taglib.sh)
build fuzz -DTALLOW_FUZZED_TAGLIB="$taglib"
build release -DTALLOW_WINDOWS_TESTS="$PWD/build/windows-core/tallow_core_tests.exe" \
  -DTALLOW_LOAD_FUZZER="$PWD/build/fuzz/tallow_load_fuzzer" \
  -DTALLOW_TAGS_FUZZER="$PWD/build/fuzz/tallow_tags_fuzzer"
ctest --test-dir build/release --output-on-failure -j "$(nproc)"
