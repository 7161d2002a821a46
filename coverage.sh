#!/usr/bin/env bash
# SPDX-License-Identifier: GPL-3.0-or-later
# Runs all tests of this system and prints which share of the lines of each folder they ran.
# build/coverage/html/index.html shows the lines.
#
#   ./coverage.sh             all tests
#   ./coverage.sh REGEX       the tests whose names match, see ctest -R
#
# Afterwards "checks/coverage.py build/coverage/trace.info FOLDER" prints the lines of a folder that
# no test has run.
set -euo pipefail
cd "$(dirname "$0")"

packaging/install-dependencies.sh run demo test check

cmake --preset coverage > build-coverage.log 2>&1 ||
  { cat build-coverage.log; rm build-coverage.log; exit 1; }
rm build-coverage.log
# Counts of an earlier build do not fit, and those of an earlier run would be added to these.
drop_counts() { find build/coverage -name '*.gcda' -delete; }
drop_counts
cmake --build --preset coverage -- --quiet
drop_counts
failed=false
# The fault tests run the same saves again, in processes that may not write their counts.
ctest --test-dir build/coverage --output-on-failure -j "$(nproc)" -R "${1:-.}" -E '^faults\.' || failed=true

root=$PWD
cd build/coverage
lcov --quiet --capture --no-external --base-directory "$root" --directory . --output-file all.info 2> lcov.log ||
  { cat lcov.log; exit 1; }
folders=()
for folder in util library details jukebox player app ui; do folders+=("$root/$folder/*"); done
lcov --quiet --extract all.info "${folders[@]}" "$root/main.cpp" --output-file tests.info
lcov --quiet --remove tests.info '*_test.cpp' --output-file trace.info
genhtml --quiet --prefix "$root" --output-directory html trace.info
cd "$root"
checks/coverage.py build/coverage/trace.info
if $failed; then
  echo "Some tests failed, so the figures are too low." >&2
  exit 1
fi
