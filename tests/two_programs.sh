#!/usr/bin/env bash
# SPDX-License-Identifier: GPL-3.0-or-later
# Starts the built program twice on one application folder whose lock file is broken in some way,
# before the first program starts or while it runs. The second program must not touch the library,
# and nothing may be lost.
#
# Usage: two_programs.sh PROGRAM FOLDER
set -euo pipefail

program=$1
folder=$2
rm -rf "$folder"
mkdir -p "$folder/app" "$folder/music"
# shellcheck source=tests/program.sh
. "$(dirname "$0")/program.sh"
turn_tips_off
for song in a b c; do head -c 5000 /dev/zero > "$folder/music/$song.mp3"; done
separate_session
export QT_QPA_PLATFORM=offscreen
first=
trap '[ -z "$first" ] || kill -KILL "$first" 2> /dev/null; rm -rf "$XDG_RUNTIME_DIR"' EXIT

fail() {
  echo "$1" >&2
  exit 1
}
system=$folder/app/Grouping/System
arguments=(--app-folder "$folder/app" --drive "$folder/music")
"$program" "${arguments[@]}" --exit-after-startup || fail "The first start failed."
before=$(cd "$folder/app/Grouping" && cksum FileLocNames.lmz)

break_file() {
  rm -rf "$1"
  case $2 in
    folder) mkdir "$1" ;;
    mode) : > "$1"; chmod 000 "$1" ;;
    dangling) ln -s no/where "$1" ;;
    loop) ln -s "$1" "$1" ;;
    fifo) mkfifo "$1" ;;
    device) ln -s /dev/zero "$1" ;;
    removed) ;;
  esac
}
# Starts the first program and waits until it listens on its socket, which happens after it has
# locked the folder.
start_first() {
  rm -rf "$XDG_RUNTIME_DIR/tallow"
  "$program" "${arguments[@]}" 2>> "$folder/errors.txt" &
  first=$!
  for _ in $(seq 200); do
    [ -z "$(find "$XDG_RUNTIME_DIR/tallow" -type s 2> /dev/null)" ] || return 0
    sleep 0.1
  done
  fail "The first program does not listen."
}
hand_over() { timeout 10 "$program" "${arguments[@]}" > /dev/null 2>&1; }

for how in folder mode dangling loop fifo device removed; do
  for when in before meanwhile both; do
    what="lock: $how, $when"
    rm -rf "$system/tallow.lock" "$system"/tallow.owner*
    [ "$when" != before ] || break_file "$system/tallow.lock" "$how"
    start_first
    for tried in 1 2 3 4 5 6; do
      [ "$tried" -lt 6 ] || fail "$what: the first program does not answer"
      ! hand_over || break
    done
    [ "$when" = before ] || break_file "$system/tallow.lock" "$how"
    [ "$when" != both ] || break_file "$system/tallow.owner" "$how"
    got=0
    timeout 20 "$program" "${arguments[@]}" --exit-after-startup > "$folder/out" 2>&1 || got=$?
    [ "$got" = 1 ] || fail "$what: the second program exited with code $got"
    grep -q 'is in use by another Tallow' "$folder/out" || fail "$what: the second program printed: $(cat "$folder/out")"
    hand_over || fail "$what: the first program no longer answers"
    kill -TERM "$first"
    wait "$first" || fail "$what: the first program exited with code $?"
    first=
    [ "$(cd "$folder/app/Grouping" && cksum FileLocNames.lmz)" = "$before" ] || fail "$what: the library has changed"
    [ "$when" = both ] || [ ! -e "$system/tallow.owner" ] || fail "$what: the owner file is still there"
  done
done

# A killed program must not block the next start, with or without a lock file.
for how in removed folder; do
  rm -rf "$system/tallow.lock" "$system"/tallow.owner*
  break_file "$system/tallow.lock" "$how"
  start_first
  kill -KILL "$first"
  wait "$first" 2> /dev/null || :
  first=
  [ -s "$system/tallow.owner" ] || fail "A killed program has left no owner file."
  timeout 20 "$program" "${arguments[@]}" --exit-after-startup || fail "After a kill ($how) the program does not start."
done
[ "$(cd "$folder/app/Grouping" && cksum FileLocNames.lmz)" = "$before" ] || fail "The library has changed."
