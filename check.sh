#!/usr/bin/env bash
# SPDX-License-Identifier: GPL-3.0-or-later
# Checks what can be checked without running Tallow: formats, warnings of clang-tidy, the order of
# the folders, scripts, spelling, licences and the links of the documents. Installs what is missing.
# Results of clang-tidy are cached, so that a second run takes seconds.
#
#   ./check.sh          everything
#   ./check.sh --fast   without clang-tidy
set -euo pipefail
cd "$(dirname "$0")"

fast=false
case "${1:-}" in
  "") ;;
  --fast) fast=true ;;
  *) echo "Usage: ./check.sh [--fast]" >&2; exit 2 ;;
esac

packaging/install-dependencies.sh run check

failed=()
# check NAME COMMAND...: runs a check, and continues after a failure
check() {
  local name=$1
  shift
  if "$@"; then
    echo "passed: $name"
  else
    echo "FAILED: $name"
    failed+=("$name")
  fi
}

# The files of the project: those that git tracks, and new ones that it does not ignore.
mapfile -t files < <(git ls-files --cached --others --exclude-standard | while read -r file; do
  if [ -f "$file" ]; then echo "$file"; fi
done)
# matching PATTERN...: prints the files whose names match one of the patterns
matching() {
  local file pattern
  for file in "${files[@]}"; do
    for pattern in "$@"; do
      # shellcheck disable=SC2053 # It is a pattern.
      if [[ $file == $pattern ]]; then echo "$file"; break; fi
    done
  done
}
mapfile -t sources < <(matching '*.cpp' '*.h')
mapfile -t cmake_files < <(matching '*CMakeLists.txt' '*.cmake')
mapfile -t scripts < <(matching '*.sh' '.ci/run')

formats() { clang-format --dry-run -Werror "${sources[@]}"; }
cmake_formats() { cmake-format --check "${cmake_files[@]}"; }
line_lengths() {
  # The formatter does not wrap comments.
  ! grep -nE '^.{101,}$' "${sources[@]}" | grep -E '^[^:]*:[0-9]+: *//'
}
shell_scripts() { shellcheck --severity=style --external-sources "${scripts[@]}"; }
spelling() {
  # Accepts fixed names, and the "n" of "\n" before a word.
  codespell --ignore-words checks/known-words.txt --ignore-regex '\\n' \
    --skip '*.juk,*.svg,*.png,*.jpg,*.ico,LICENSE,TIPOFDAY.TXT' "${files[@]}"
}
licences() {
  local file missing=0
  for file in "${files[@]}"; do
    case $file in
      # Formats without comments, the licence itself, texts for readers, and a generated picture.
      *.gif | *.ico | *.jpg | *.png | *.json | *.juk | *.md | LICENSE | TIPOFDAY.TXT | docs/layers.svg)
        continue ;;
    esac
    if ! head -n 5 "$file" | grep -q 'SPDX-License-Identifier: GPL-3.0-or-later'; then
      echo "$file has no SPDX-License-Identifier"
      missing=1
    fi
  done
  return $missing
}
links() { checks/links.py "${files[@]}"; }
layers() {
  cmake -DSOURCES="$PWD" -DLAYERS="$PWD/build/check/layers.txt" -P tests/layers/check.cmake
}
configured() {
  cmake --preset check > build-check.log 2>&1 || { cat build-check.log; rm build-check.log; return 1; }
  rm build-check.log
}
tidy() {
  # Headers that Qt's tools make are included like others.
  cmake --build --preset check --target check_generated -- --quiet
  checks/tidy.py build/check
}

check "clang-format" formats
check "comment lines end at column 100" line_lengths
check "cmake-format" cmake_formats
check "shellcheck" shell_scripts
check "codespell" spelling
check "SPDX lines" licences
check "links of the documents" links
check "configuring" configured
check "order of the folders" layers
if ! $fast; then check "clang-tidy" tidy; fi

if [ ${#failed[@]} -gt 0 ]; then
  printf 'Failed: %s\n' "${failed[@]}" >&2
  exit 1
fi
