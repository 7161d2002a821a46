#!/usr/bin/env bash
# SPDX-License-Identifier: GPL-3.0-or-later
# Runs all tests of this system and prints which share of the lines of each folder they ran.
# build/coverage/html/index.html shows the lines.
#
#   ./coverage.sh             all tests
#   ./coverage.sh REGEX       the tests whose names match, see ctest -R
set -euo pipefail
cd "$(dirname "$0")"

packaging/install-dependencies.sh run demo test check

cmake --preset coverage > build-coverage.log 2>&1 ||
  { cat build-coverage.log; rm build-coverage.log; exit 1; }
rm build-coverage.log
cmake --build --preset coverage -- --quiet

# Counts of an earlier run would be added to those of this one.
find build/coverage -name '*.gcda' -delete
failed=false
ctest --test-dir build/coverage --output-on-failure -j "$(nproc)" -R "${1:-.}" || failed=true

mkdir -p build/coverage/html
gcovr --root . --object-directory build/coverage -j "$(nproc)" \
  --filter '(util|library|jukebox|player|app|ui)/' --filter 'main\.cpp' --exclude '.*_test\.cpp' \
  --exclude-unreachable-branches --exclude-throw-branches \
  --json-summary build/coverage/summary.json \
  --html-details build/coverage/html/index.html
checks/coverage.py build/coverage/summary.json
if $failed; then
  echo "Some tests failed, so the figures are too low." >&2
  exit 1
fi
