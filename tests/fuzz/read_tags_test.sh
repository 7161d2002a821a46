#!/usr/bin/env bash
# SPDX-License-Identifier: GPL-3.0-or-later
# Runs read_tags.sh with a stand-in for the fuzzer, which finds a failure of ours, one inside TagLib
# and one that does not occur again, and checks what becomes of each.
#
# Usage: read_tags_test.sh FOLDER
set -euo pipefail

here=$(cd "$(dirname "$0")" && pwd)
folder=$1
rm -rf "$folder"
mkdir -p "$folder/run/corpus"
# With these, read_tags.sh makes no songs.
for extension in mp3 flac ogg oga opus spx m4a aac wma wav aiff ape wv mpc; do
  touch "$folder/run/corpus/$extension"
done
cat > "$folder/fuzzer" << 'END'
#!/bin/sh
# Finds inputs in a fork run; else fails by the name of the input, the last argument.
for last; do :; done
case "$*" in
  *-fork=1*)
    found=$(dirname "$last")/found
    touch "$found/crash-ours" "$found/crash-taglib" "$found/oom-none"
    echo '#10 done'
    exit 0 ;;
  *ours) echo '    #0 0x1234 in tallow::ReadSongTags read.cpp:1' ;;
  *taglib) echo '    #0 0x1234 in TagLib::File::read tfile.cpp:1' ;;
  *) exit 0 ;;
esac
exit 1
END
chmod +x "$folder/fuzzer"

fail() {
  echo "$1"
  cat "$folder/said.txt"
  exit 1
}
if "$here/read_tags.sh" "$folder/fuzzer" "$folder/run" 1 > "$folder/said.txt" 2>&1; then
  fail "A failure of ours is not reported."
fi
[ -f "$folder/run/ours/crash-ours" ] || fail "The input of a failure of ours is not kept."
[ -f "$folder/run/taglib/crash-taglib" ] || fail "The input of a failure inside TagLib is not kept."
[ -f "$folder/run/passed_alone/oom-none" ] || fail "The input that passes alone is not kept."
grep -qF '1 failures, 1 inside TagLib, and 1 that did not occur again alone' "$folder/said.txt" ||
  fail "The numbers are wrong."
grep -q 'did not occur again: .*/oom-none$' "$folder/said.txt" ||
  fail "The input that passes alone is not named."

rm -r "$folder/run/found" "$folder/run/ours"
sed -i 's/crash-ours/crash-taglib/' "$folder/fuzzer"
"$here/read_tags.sh" "$folder/fuzzer" "$folder/run" 1 > "$folder/said.txt" 2>&1 ||
  fail "It fails without a failure of ours."
