#!/usr/bin/env bash
# SPDX-License-Identifier: GPL-3.0-or-later
# Uses the two styles of Tallow on Windows as a user would, on a virtual display: unpacks the zip
# archive, starts the program on two disks with newer tags, songs of one file name, other formats
# and a long path; the bar that tells of them; the modern style by one click; a share that is ticked
# in "Where My Music Is"; a kill; the classic style again. Checks the resulting files, and keeps a
# picture of each step.
#
# Usage: windows_styles.sh ZIP FOLDER
set -euo pipefail

archive=$(realpath "$1")
here=$(cd "$(dirname "$0")" && pwd)
rm -rf "$2"
mkdir -p "$2/pictures"
folder=$(realpath "$2")

# shellcheck source=tests/wine_prefix.sh
. "$here/wine_prefix.sh"
# shellcheck source=packaging/virtual-display.sh
. "$here/../packaging/virtual-display.sh"
trap 'end_processes; end_windows' EXIT
# shellcheck source=tests/program.sh
. "$here/program.sh"
start_window_manager
# shellcheck source=tests/screen_user.sh
. "$here/screen_user.sh"

# Wine cannot start in a folder outside its drives.
mkdir -p "$WINEPREFIX/drive_c"
cd "$WINEPREFIX/drive_c"
# The drives: C: with the system, D: with most of the music, S: a network share; no Z:.
make_windows
reg_add() { "$wine" reg add "$@" /f > /dev/null; }
reg_add 'HKCU\Software\Wine\Fonts\Replacements' /v 'Tahoma' /d 'DejaVu Sans'
reg_add 'HKCU\Software\Wine\Fonts\Replacements' /v 'MS Shell Dlg' /d 'DejaVu Sans'
reg_add 'HKLM\Software\Wine\Drives' /v 'd:' /d hd
reg_add 'HKLM\Software\Wine\Drives' /v 's:' /d network
# No tip at the start, which would wait for the user.
reg_add 'HKCU\Software\Tallow\tallow\Options' /v 'Show Tips at Startup' /t REG_DWORD /d 0
"$wineserver" -w
c=$WINEPREFIX/drive_c
d=$folder/d
s=$folder/s
mkdir -p "$d" "$s"
ln -s "$d" "$WINEPREFIX/dosdevices/d:"
ln -s "$s" "$WINEPREFIX/dosdevices/s:"
# Wine reads the serial number of a folder that is mounted as a disk from this file.
printf '1A2B3C4D\n' > "$d/.windows-serial"

is_in() { grep -qaF -- "$1" "$2"; }
# One second of sound in each format. place FILE: the file, whose folder is made
sox -q -n -r 44100 -c 2 -b 16 "$folder/sound.wav" synth 1 sine 440
place() {
  mkdir -p "$(dirname "$1")"
  printf '%s' "$1"
}
mp3() { lame --quiet -b 64 "${@:2}" "$folder/sound.wav" "$(place "$1")"; }
long=$(printf 'a folder with a long name, %.0s' 1 2 3 4 5)end
far=$long/$long/$long/far\ down.flac
mp3 "$c/Music/Seaside.mp3" --id3v1-only --tt Seaside --ta Queen --ty 1975
mp3 "$d/Queens/Lullabies/Song.mp3" --id3v2-only --tt Song --ta 'Queens of the Stone Age' --ty 2024
mp3 "$d/Ada/One/01 Intro.mp3" --id3v1-only --tt Intro --ta 'Ada Quill' --ty 1999
mp3 "$d/Ada/Two/01 Intro.mp3" --id3v1-only --tt Intro --ta 'Ada Quill' --ty 2001
# Names that differ in case are two names in both styles.
mp3 "$d/Ada/Three/01 INTRO.MP3" --id3v1-only --tt Intro --ta 'Ada Quill' --ty 2003
flac --silent -T 'TITLE=Группа крови' -T 'ARTIST=Кино' -T 'ALBUM=Группа крови' -T 'DATE=1988' \
  -o "$(place "$d/Кино/Группа крови.flac")" "$folder/sound.wav"
oggenc --quiet -t '丸の内サディスティック' -a '椎名林檎' -d 1999 -o "$(place "$d/Ringo/丸の内.ogg")" \
  "$folder/sound.wav"
flac --silent -T 'TITLE=Far Down' -T 'ARTIST=Copper Rails' -T 'DATE=2015' \
  -o "$(place "$d/$far")" "$folder/sound.wav"
mp3 "$s/Shared.mp3" --id3v2-only --tt Shared --ta 'The Lanterns' --ty 1983
[ ${#far} -gt 300 ] || fail "The long path is not long."

# Where the user unpacks the archive, the program keeps its data. It needs no other file: the
# libraries of tags and song details are in it.
cmake -E tar xf "$archive"
own=$(basename "$archive" -win64.zip)
[ -s "$c/$own/tallow.exe" ] || fail "The archive does not contain tallow.exe."
program="C:\\$own\\tallow.exe"
grouping=$c/$own/Grouping
library=$grouping/FileLocNames.lmz
jukebox=$grouping/mix.juk
preferences=$grouping/System/Preferences.json
details=$grouping/System/SongDetails.db

# The program as the child that reads song details: a message is its length in four bytes, the
# lowest first, and its content: "a" for all details, and the path. It answers each request in turn,
# and ends with its input.
# message TEXT: prints a message of fewer than 256 bytes
message() { printf "\\x$(printf '%02x' "$(printf '%s' "$1" | wc -c)")\\0\\0\\0%s" "$1"; }
{
  message 'aD:\Кино\Группа крови.flac'
  message 'aD:\Queens\Lullabies\Song.mp3'
  message 'aD:\away.mp3'
} | timeout 60 "$wine" "$program" --serve-song-details > "$folder/answers.bin" ||
  fail "The child that reads song details exited with code $?."
for text in 'song details' 'Группа крови' 'Кино' 'Queens of the Stone Age'; do
  is_in "$text" "$folder/answers.bin" || fail "The child does not answer '$text'."
done

start() {
  "$wine" "$program" 2>> "$folder/errors.txt" &
  tallow=$!
  processes+=("$tallow")
}
# The window manager does not restore the focus after a system dialog closes.
activate() {
  xdotool search --onlyvisible --name '(^| - )Tallow - ' windowactivate --sync > /dev/null 2>&1 || :
  sleep 0.3
}
# in_jukebox TEXT...: whether the jukebox file has folders with these texts
in_jukebox() {
  local text
  for text in "$@"; do grep -qF -- "\"text\":\"$text\"" "$jukebox" || return 1; done
}
saved_with() {
  keys ctrl+s
  in_jukebox "$@"
}
saved_without() {
  keys ctrl+s
  ! in_jukebox "$1"
}
has_style() { grep -q "\"style\": \"$1\"" "$preferences"; }
# opens KEY TITLE: presses a key of the frame, and looks for a window
opens() {
  keys "$1"
  window_named "$2"
}
# has_songs PATH...: whether these are the songs of the library; other fields are not compared
has_songs() {
  perl -e '
    local $/; my $bytes = <STDIN>;
    while (length $bytes) {
      my @texts = unpack("(v/a)12", $bytes);
      substr($bytes, 0, 24 + length join("", @texts)) = "";
      print "$texts[1]$texts[0]\n" if $texts[0] ne "0";
    }' < "$library" | sort > "$folder/songs.txt"
  printf '%s\n' "$@" | sort | diff - "$folder/songs.txt"
}
# The songs of the disks in each style.
classic=('C:\Music\Seaside.mp3' 'D:\Queens\Lullabies\Song.mp3' 'D:\Ada\One\01 Intro.mp3'
  'D:\Ada\Three\01 INTRO.MP3')
modern=("${classic[@]}" 'D:\Ada\Two\01 Intro.mp3' 'D:\Кино\Группа крови.flac' 'D:\Ringo\丸の内.ogg'
  "D:\\${far//\//\\}")
modern_folders=('Queens of the Stone Age' 'Кино' '椎名林檎' 'Copper Rails' '2024' "2020's")

# First start, in the classic style: four songs, and a bar that tells what is left out.
start
until_true 120 "the sample jukebox" window_named '(^| - )Tallow - \[Jukebox One'
until_true 60 "the song details" is_in 'Queens of the Stone Age' "$details"
sleep 0.5
until_true 30 "the details of the bar" opens alt+d '^What the Classic Style Leaves Out$'
sleep 0.5
picture 2-details
keys Escape
until_true 10 "the end of the details" no_window_named '^What the Classic'
picture 1-bar
has_songs "${classic[@]}" || fail "The classic style has other songs."

# One click, and all songs of the disks are there, under their artists, years, decades and albums.
keys alt+u
until_true 60 "the modern style" has_style modern
until_true 60 "the songs of the modern style" has_songs "${modern[@]}"
# The frame takes no keys while it works.
until_true 30 "the file dialog" opens ctrl+s '^Save'
xdotool type --delay 60 'Mix'
keys Return
until_true 20 "the name of the jukebox" window_named '(^| - )Tallow - \[MIX\]$'
activate
for text in "${modern_folders[@]}" 'Album' 'Группа крови (Кино)'; do
  in_jukebox "$text" || fail "The modern style has no folder $text."
done
picture 3-modern

# The share is not searched until the user ticks it.
keys alt+t w
until_true 20 "the places with music" window_named '^Where My Music Is$'
sleep 1
picture 4-places
keys End space alt+s
until_true 60 "the song of the share" has_songs "${modern[@]}" 'S:\Shared.mp3'
sleep 1
picture 5-ticked-share
keys Escape
until_true 20 "the end of the places" no_window_named '^Where My Music Is$'
activate
until_true 5 "the folder of the song of the share" saved_with 'The Lanterns'

# A kill loses nothing.
kill -9 "$tallow"
until_true 20 "the end of the killed program" has_ended
start
until_true 120 "the jukebox after the kill" window_named '(^| - )Tallow - \[MIX\]'
activate
sleep 0.5
picture 6-after-the-kill
has_songs "${modern[@]}" 'S:\Shared.mp3' || fail "The kill has lost songs."
until_true 5 "the modern folders" saved_with "${modern_folders[@]}"

# Back to the classic style by the keyboard. The songs that are set aside stay in the library.
keys ctrl+comma
until_true 20 "the preferences" window_named '^Preferences$'
sleep 0.5
picture 7-preferences
keys alt+l
until_true 60 "the classic style" has_style classic
sleep 1
keys Escape
until_true 20 "the end of the preferences" no_window_named '^Preferences$'
activate
until_true 5 "the classic folders" saved_without 'Queens of the Stone Age'
picture 8-classic
in_jukebox 'Queen' 'Ada Quill' || fail "The classic folders are lost."
has_songs "${modern[@]}" 'S:\Shared.mp3' || fail "The classic style has lost songs."

# And forth again, which also finds a file that was added meanwhile.
flac --silent -T 'TITLE=Late' -T 'ARTIST=Late Comers' -o "$d/Late.flac" "$folder/sound.wav"
modern+=('S:\Shared.mp3' 'D:\Late.flac')
keys ctrl+comma
until_true 20 "the preferences" window_named '^Preferences$'
keys alt+m
until_true 60 "the modern style" has_style modern
# Escape would cancel the search.
until_true 60 "the added song" has_songs "${modern[@]}"
sleep 1
keys Escape
until_true 20 "the end of the preferences" no_window_named '^Preferences$'
activate
until_true 5 "the modern folders" saved_with "${modern_folders[@]}" 'The Lanterns' 'Late Comers'
picture 9-modern-again
xdotool key --delay 100 alt+F4
until_true 30 "the end of the program" has_ended
for text in 'Far Down' 'Группа крови' '丸の内サディスティック'; do
  is_in "$text" "$details" || fail "The song details do not have '$text'."
done
echo "All steps passed; the pictures are in $folder/pictures."
