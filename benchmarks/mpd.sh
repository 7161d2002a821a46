#!/usr/bin/env bash
# SPDX-License-Identifier: GPL-3.0-or-later
# Measures how long MPD needs to read a collection into a new database: prints the number of songs
# and the seconds. MPD runs without sound and without other plug-ins, in a folder of its own.
#
# Usage: benchmarks/mpd.sh MUSIC
set -euo pipefail

music=$(realpath "$1")
folder=$(mktemp -d)
trap 'kill "$mpd" 2> /dev/null || :; rm -rf "$folder"' EXIT
mkdir "$folder/playlists"
port=$((20000 + RANDOM % 10000))
cat > "$folder/mpd.conf" << END
music_directory "$music"
playlist_directory "$folder/playlists"
db_file "$folder/database"
log_file "$folder/log"
bind_to_address "127.0.0.1"
port "$port"
zeroconf_enabled "no"
auto_update "no"
audio_output {
  type "null"
  name "none"
}
END
mpd --no-daemon "$folder/mpd.conf" > "$folder/output" 2>&1 &
mpd=$!

# ask COMMAND: sends a command and prints the lines of the answer.
ask() {
  local line
  printf '%s\n' "$1" >&3
  while read -r line <&3; do
    case $line in
      OK*) return ;;
      ACK*) echo "mpd: $line" >&2; exit 1 ;;
      *) echo "$line" ;;
    esac
  done
}
for _ in $(seq 100); do
  if { exec 3<> "/dev/tcp/127.0.0.1/$port"; } 2> /dev/null; then break; fi
  sleep 0.1
done
read -r _ <&3
begin=$(date +%s.%N)
ask update > /dev/null
while [[ $(ask status) == *updating_db* ]]; do sleep 0.05; done
end=$(date +%s.%N)
songs=$(ask stats | awk '$1 == "songs:" { print $2 }')
awk -v s="$songs" -v a="$begin" -v b="$end" 'BEGIN { printf "%d %.6f\n", s, b - a }'
