#!/usr/bin/env bash
# SPDX-License-Identifier: GPL-3.0-or-later
# Controls the player over a private session bus, with a standard remote control.
#
# Usage: mpris.sh PLAYER
set -euo pipefail

player=$1
if [ -z "${TALLOW_BUS:-}" ]; then
  exec env TALLOW_BUS=own dbus-run-session -- "$0" "$player"
fi
# lame converts the tag texts from the locale's encoding to the encoding of the tag.
export LC_ALL=C.UTF-8

work=$(mktemp -d)
processes=()
end() {
  for process in "${processes[@]}"; do kill "$process" 2> /dev/null || :; done
  for process in "${processes[@]}"; do wait "$process" 2> /dev/null || :; done
  rm -rf "$work"
}
trap end EXIT
chmod 700 "$work"
export XDG_RUNTIME_DIR=$work

# song FILE [OPTION...]: makes a song; the options of lame set the tag
song() {
  local file=$1
  shift
  sox -q -n -r 44100 -c 2 -t wav - synth 30 sine 440 2> /dev/null |
    lame --quiet -b 64 "$@" - "$work/$file"
}
song 'one & two.mp3' --tt 'Grüne Straße' --ta 'Étienne Duval' --id3v1-only
song 'two.mp3' --tt 'Second' --ta 'Ada Quill' --id3v2-only
song 'no tag.mp3'
# A name with a noncharacter code point, which the bus does not accept.
song $'odd \xEF\xBF\xBF.mp3'

failed=false
# expect TEXT COMMAND...: waits until the command's output is TEXT
expect() {
  local expected=$1 got=
  shift
  for _ in $(seq 200); do
    got=$("$@" 2> /dev/null || :)
    [ "$got" = "$expected" ] && return
    sleep 0.05
  done
  echo "$*: expected '$expected', got '$got'"
  failed=true
}
control() { playerctl --player=tallow "$@" 2> /dev/null || :; }
# get PROPERTY [NAME [INTERFACE]]: prints a property of the player from the bus
get() {
  dbus-send --session --print-reply=literal --dest="${2:-org.mpris.MediaPlayer2.tallow}" \
    /org/mpris/MediaPlayer2 org.freedesktop.DBus.Properties.Get \
    string:"${3:-org.mpris.MediaPlayer2.Player}" string:"$1" | sed 's/^ *variant *//; s/ *$//'
}
# get_list PROPERTY: prints a list of the player on one line
get_list() { get "$1" "${root[@]}" | tr -s '\n ' ' ' | sed 's/ $//'; }
# send MESSAGE WPARAM LPARAM [PATH]: sends a message as Tallow does, and prints the answer
send() {
  perl -MSocket -e '
    my ($socket, $message, $w, $l, $path) = @ARGV;
    my $payload = defined $path ? "$path\0" : "";
    socket(my $s, PF_UNIX, SOCK_STREAM, 0) or die;
    connect($s, sockaddr_un($socket)) or die "no player\n";
    syswrite($s, pack("LLqq", $message, length $payload, $w, $l) . $payload);
    sysread($s, my $answer, 8) == 8 or die "no answer\n";
    print unpack("q", $answer), "\n";' "$work/tallow/player" "$@"
}

"$player" --silent & processes+=($!)
expect tallow playerctl --list-all
expect Stopped control status
root=(org.mpris.MediaPlayer2.tallow org.mpris.MediaPlayer2)
expect Tallow get Identity "${root[@]}"
expect 'boolean true' get CanQuit "${root[@]}"
# The player has no window, no list on the bus, and opens nothing on request.
expect 'boolean false' get CanRaise "${root[@]}"
expect 'boolean false' get HasTrackList "${root[@]}"
expect 'array [ ]' get_list SupportedUriSchemes
expect 'array [ ]' get_list SupportedMimeTypes
if ! dbus-send --session --print-reply --dest=org.mpris.MediaPlayer2.tallow \
  /org/mpris/MediaPlayer2 org.mpris.MediaPlayer2.Raise > /dev/null; then
  echo "Raise was refused"
  failed=true
fi
expect 'boolean false' get CanPlay
# All signals of the player go to a file.
dbus-monitor --session --monitor \
  "type='signal',sender='org.mpris.MediaPlayer2.tallow',path='/org/mpris/MediaPlayer2'" \
  > "$work/signals" 2> /dev/null & processes+=($!)
# shellcheck disable=SC2016 # The inner shell expands them.
# expect_signal TEXT: waits until a signal contains TEXT
expect_signal() {
  expect "signal $1" sh -c 'grep -qF -- "$1" "$2" && echo "signal $1"' sh "$1" "$work/signals"
}
for _ in $(seq 100); do [ -s "$work/signals" ] && break; sleep 0.05; done
for file in 'one & two.mp3' two.mp3 'no tag.mp3' $'odd \xEF\xBF\xBF.mp3'; do send 74 0 100 "$work/$file" > /dev/null; done
expect 'boolean true' get CanPlay
expect 'boolean true' get CanGoNext
expect 'boolean false' get CanGoPrevious

control play
expect Playing control status
expect 1 send 1024 0 104
expect "Étienne Duval: Grüne Straße" control metadata --format '{{artist}}: {{title}}'
expect "file://$work/one%20%26%20two.mp3" control metadata xesam:url
expect 0:30 control metadata --format '{{duration(mpris:length)}}'

control pause
expect Paused control status
expect 3 send 1024 0 104
control pause
expect Paused control status
control play-pause
expect Playing control status
control play-pause
control position 20
expect 20000 send 1024 0 105
control position 5-
expect 15000 send 1024 0 105
control position 12
expect 12000 send 1024 0 105
expect 'int64 12000000' get Position

control next
expect "Ada Quill: Second" control metadata --format '{{artist}}: {{title}}'
expect Paused control status
control play
expect Playing control status
control previous
expect "Étienne Duval: Grüne Straße" control metadata --format '{{artist}}: {{title}}'
expect 'boolean false' get CanGoPrevious
control previous
expect "Étienne Duval: Grüne Straße" control metadata --format '{{artist}}: {{title}}'
control next
control next
expect 'no tag.mp3' control metadata --format '{{artist}}{{title}}'
control next
expect 'odd ?.mp3' control metadata --format '{{artist}}{{title}}'
expect 'boolean false' get CanGoNext
control next
expect 'odd ?.mp3' control metadata --format '{{artist}}{{title}}'
for property in PlaybackStatus Metadata CanGoNext CanGoPrevious CanPlay CanPause CanSeek; do
  expect_signal "string \"$property\""
done
expect_signal 'string "odd ?.mp3"'

# call METHOD ARGUMENT...: calls a method of the player
call() {
  dbus-send --session --print-reply --dest=org.mpris.MediaPlayer2.tallow /org/mpris/MediaPlayer2 \
    "org.mpris.MediaPlayer2.Player.$1" "${@:2}" > /dev/null
}
expect_signal member=Seeked
# A position behind the end is refused only when the length is known.
has_length() { [ -n "$(control metadata mpris:length)" ] && echo true; }
expect true has_length
track=$(control metadata mpris:trackid | tr -d "'")
call SetPosition objpath:"$track" int64:7000000
send 273 40046 0 > /dev/null
expect Paused control status
[ "$(send 1024 0 105)" -ge 7000 ] || { echo "SetPosition had no effect"; failed=true; }
# The exact position of the pause is unknown, so the following calls start from a fixed position.
call SetPosition objpath:"$track" int64:9000000
expect 9000 send 1024 0 105
call SetPosition objpath:/org/other/track int64:1000000
call SetPosition objpath:"$track" int64:-5
call SetPosition objpath:"$track" int64:3600000000
expect 9000 send 1024 0 105
control play
expect Playing control status
dbus-send --session --print-reply --dest=org.mpris.MediaPlayer2.tallow /org/mpris/MediaPlayer2 \
  org.freedesktop.DBus.Properties.Set string:org.mpris.MediaPlayer2.Player string:Rate \
  variant:double:0 > /dev/null
expect Paused control status
expect 'double 1' get Rate
control play
expect Playing control status
if call OpenUri string:file:///etc/hostname 2> /dev/null; then
  echo "OpenUri was accepted"
  failed=true
fi

expect 'double 1' get Volume
control volume 0.5
expect 'double 0.501961' get Volume
expect_signal 'string "Volume"'
control volume 7
expect 'double 1' get Volume
send 1024 51 122 > /dev/null
expect 'double 0.2' get Volume

# A listener gets every change of the status.
playerctl --player=tallow --follow status > "$work/followed" & processes+=($!)
expect Playing cat "$work/followed"
send 273 40046 0 > /dev/null
expect $'Playing\nPaused' cat "$work/followed"
control stop
expect Stopped control status
expect 0 send 1024 0 104
expect -1 send 1024 0 105
expect $'Playing\nPaused\nStopped' cat "$work/followed"

# If the bus name is taken, the player uses a second name.
mkdir -m 700 "$work/other"
XDG_RUNTIME_DIR=$work/other "$player" --silent & processes+=($!)
second=$!
expect "tallow tallow.instance$second" sh -c 'playerctl --list-all | sort | tr "\n" " " | sed "s/ $//"'

# Any program on the bus can end the player.
dbus-send --session --print-reply --dest=org.mpris.MediaPlayer2.tallow /org/mpris/MediaPlayer2 \
  org.mpris.MediaPlayer2.Quit > /dev/null
expect "tallow.instance$second" playerctl --list-all

if $failed; then exit 1; fi
