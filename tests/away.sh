#!/usr/bin/env bash
# SPDX-License-Identifier: GPL-3.0-or-later
# Removes a drive and connects it again, as a user would, on a virtual display: between two starts,
# during a run, before both searches for new songs, and before answering No or Yes to the closing
# question, with two jukeboxes open. In the end every rank and every entry must be unchanged.
#
# When run as root, the drive is a real mount in a separate mount namespace. Otherwise it is a
# folder that is moved away, passed to the program as a drive.
#
# Usage: away.sh PROGRAM FOLDER
set -euo pipefail

if [ "${TALLOW_OWN_MOUNTS:-}" = "" ]; then
  if [ "$(id -u)" -eq 0 ] && unshare -m true 2> /dev/null; then
    TALLOW_OWN_MOUNTS=yes exec unshare -m "$0" "$@"
  fi
  export TALLOW_OWN_MOUNTS=no
fi

program=$1
folder=$2
here=$(cd "$(dirname "$0")" && pwd)

rm -rf "$folder"
mkdir -p "$folder/app" "$folder/pictures" "$folder/stick" "$folder/content"
folder=$(cd "$folder" && pwd -P)
# shellcheck source=tests/program.sh
. "$here/program.sh"
turn_tips_off
"$here/../packaging/make-demo-collection.sh" "$folder/all"
mv "$folder/all" "$folder/home"
# Half of the folders are on the stick.
find "$folder/home" -mindepth 1 -maxdepth 1 -type d | sort | awk 'NR % 2' | while read -r part; do
  mv "$part" "$folder/content/"
done

if [ "$TALLOW_OWN_MOUNTS" = yes ]; then
  echo "The drive is a real mount."
  plug_in() { mount --bind "$folder/content" "$folder/stick"; }
  pull_out() { umount "$folder/stick"; }
else
  echo "The drive is a folder that is moved away."
  plug_in() { rmdir "$folder/stick" && mv "$folder/content" "$folder/stick"; }
  pull_out() { mv "$folder/stick" "$folder/content" && mkdir "$folder/stick"; }
fi

# shellcheck source=packaging/virtual-display.sh
. "$here/../packaging/virtual-display.sh"
separate_session
trap 'end_processes; rm -rf "$XDG_RUNTIME_DIR"' EXIT
export QT_QPA_PLATFORM=xcb
start_window_manager
# shellcheck source=tests/screen_user.sh
. "$here/screen_user.sh"

library=$folder/app/Grouping/FileLocNames.lmz
mix=$folder/app/Grouping/mix.juk
second=$folder/app/Grouping/second.juk
start() {
  "$program" --app-folder "$folder/app" --drive "$folder/home" --drive "$folder/stick" "$@" \
    2>> "$folder/errors.txt" &
  tallow=$!
  processes+=("$tallow")
}
# Prints number, rank, flag and name of every song of the library, one song per line.
songs() {
  perl -e '
    local $/; open my $file, "<:raw", $ARGV[0] or die; my $bytes = <$file>;
    for (my $at = 0; $at < length $bytes;) {
      my @text;
      for (1 .. 12) { my $n = unpack "v", substr $bytes, $at, 2; push @text, substr $bytes, $at + 2, $n; $at += 2 + $n }
      print "$text[2] $text[4] $text[3] $text[0]\n";
    }' "$library"
}
# Prints the songs of the folder "Road trip", which this script makes, in a jukebox file.
entries() { grep -o '"text":"Road trip".*' "$1" | grep -o '"songs":\[[0-9,]*\]'; }
# Checks that all songs of before.txt are still in the library, unchanged. $1 names the step.
expect_songs() {
  songs > "$folder/now.txt"
  head -n "$(wc -l < "$folder/before.txt")" "$folder/now.txt" | diff "$folder/before.txt" - ||
    fail "Songs of the library have changed $1."
}
expect_entries() {
  for jukebox in "$mix" "$second"; do
    [ "$(entries "$jukebox")" = "$folder_songs" ] || fail "Songs of $jukebox have changed $1."
  done
}
exit_with() { # exit_with [KEY...]: exits the program and answers each question with a KEY
  keys alt+f x
  local key
  for key in "$@"; do
    until_true 10 "a question at the end" window_named '^Tallow$'
    keys "$key"
    sleep 0.5
  done
  until_true 20 "the end of the program" has_ended
}
new_song() { # new_song NAME: adds a song to a folder that has known songs
  local like
  like=$(find "$folder/home" -name '*.mp3' | sort | head -n 1)
  cp "$like" "$(dirname "$like")/$1.mp3"
}
two_jukeboxes() { # waits for the first jukebox, which the start opens itself
  until_true 30 "the first jukebox" window_named '(^| - )Tallow - \['
}

# Songs get ranks and are copied into a new folder, in two jukeboxes.
plug_in
start
until_true 60 "the sample jukebox" window_named '(^| - )Tallow - \[Jukebox One'
before=$(cksum "$library")
keys Tab Home shift+End shift+F10 r Return
until_true 10 "the saved ranks" library_has_changed
keys ctrl+c alt+e a
xdotool type --delay 40 'Road trip'
keys Return ctrl+v
keys ctrl+s
until_true 10 "the file dialog" window_named '^Save'
xdotool type --delay 40 'second'
keys Return
until_true 10 "the saved jukebox" test -s "$second"
keys alt+f a
until_true 10 "the file dialog" window_named '^Save'
xdotool type --delay 40 'mix'
keys Return
until_true 10 "the saved jukebox" test -s "$mix"
exit_with
songs > "$folder/before.txt"
folder_songs=$(entries "$mix")
grep -q ' 7 1 ' "$folder/before.txt" || fail "No song has a rank."
[ "$(grep -o '[0-9]*' <<< "$folder_songs" | wc -l)" -eq "$(wc -l < "$folder/before.txt")" ] ||
  fail "The folder does not hold every song."

# A start without the drive, with both jukeboxes: no file changes, and no question is asked.
pull_out
before=$(cksum "$library" "$mix" "$second")
start "$mix" "$second"
two_jukeboxes
until_true 10 "the second jukebox" window_named 'SECOND'
keys Tab End
picture 1-away
# A click on the status bar opens the list of unavailable places.
frame=$(window_named '(^| - )Tallow - ' | tail -n 1)
height=$(xdotool getwindowgeometry --shell "$frame" | sed -n 's/^HEIGHT=//p')
xdotool mousemove --window "$frame" 200 $((height - 12)) click 1
until_true 10 "the list of unavailable places" window_named '^Away and Left Out$'
picture 2-list
keys Escape
exit_with
[ "$(cksum "$library" "$mix" "$second")" = "$before" ] || fail "A start without the drive has changed a file."

# Both searches for new songs run without the drive; both questions about changes are answered No.
new_song "Zebra crossing"
start "$mix" "$second"
two_jukeboxes
until_true 10 "the second jukebox" window_named 'SECOND'
keys alt+s b
sleep 1
keys alt+s r Return
sleep 2
picture 2b-searched
exit_with alt+n alt+n
expect_songs "after a search without the drive"
expect_entries "after a search without the drive"

# The drive disappears during a run, before both searches; both questions are answered Yes.
plug_in
new_song "Yellow bricks"
start "$mix" "$second"
two_jukeboxes
until_true 10 "the second jukebox" window_named 'SECOND'
pull_out
keys alt+s b
sleep 1
keys alt+s r Return
sleep 2
picture 3-gone-during-a-run
exit_with alt+y alt+y
expect_songs "after the drive was removed during a run"
expect_entries "after the drive was removed during a run"

# The drive comes back during a run, and the program starts again.
start
two_jukeboxes
plug_in
keys alt+s b
sleep 1
picture 4-back
exit_with
expect_songs "after the drive came back"
start
two_jukeboxes
keys Tab Home
picture 5-as-before
exit_with
expect_songs "in the end"
expect_entries "in the end"
for song in "Zebra crossing" "Yellow bricks"; do
  [ "$(grep -c " 1 $song.mp3" "$folder/now.txt")" -eq 1 ] || fail "$song is not in the library once."
done
[ "$TALLOW_OWN_MOUNTS" = no ] || pull_out
