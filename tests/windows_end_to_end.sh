#!/usr/bin/env bash
# SPDX-License-Identifier: GPL-3.0-or-later
# shellcheck disable=SC2119 # Tallow is started without files, too.
# Installs Tallow in a temporary Windows installation, on a virtual display, and uses it as a user
# would: first start, playing, ranking, saving, tips, a second start, two programs at once, file
# errors, and uninstalling. Checks the files, the registry and the messages to the player, and keeps
# a picture of each step.
#
# Usage: windows_end_to_end.sh SETUP STAND_IN HOLD_FILE FOLDER
set -euo pipefail

setup=$(realpath "$1")
stand_in=$(realpath "$2")
hold_file=$(realpath "$3")
here=$(cd "$(dirname "$0")" && pwd)
rm -rf "$4"
mkdir -p "$4/pictures"
folder=$(realpath "$4")

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
# The window manager does not restore the focus after a system dialog closes.
activate() {
  xdotool search --onlyvisible --name '(^| - )Tallow - ' windowactivate --sync > /dev/null 2>&1 || :
  sleep 0.3
}
# value KEY [NAME]: prints a value from the user's registry; without NAME the key's default value
value() {
  local which=(/ve)
  [ $# -eq 1 ] || which=(/v "$2")
  "$wine" reg query "HKCU\\$1" "${which[@]}" 2> /dev/null | tr -d '\r' | sed -n 's/^ .*REG_[A-Z]* *//p'
}
is_in() { grep -qaF -- "$1" "$2"; }

# The drives: C: with the system, D: with most of the music; no Z:.
make_windows
"$wine" reg add 'HKCU\Software\Wine\Fonts\Replacements' /v 'Tahoma' /d 'DejaVu Sans' /f > /dev/null
"$wine" reg add 'HKCU\Software\Wine\Fonts\Replacements' /v 'MS Shell Dlg' /d 'DejaVu Sans' /f > /dev/null
"$wine" reg add 'HKLM\Software\Wine\Drives' /v 'd:' /d hd /f > /dev/null
# E: is a disk that is read-only and not searched.
"$wine" reg add 'HKLM\Software\Wine\Drives' /v 'e:' /d cdrom /f > /dev/null
"$wineserver" -w
c=$WINEPREFIX/drive_c
d=$folder/d
mkdir -p "$c/Music" "$d/Winamp" "$c/bin"
ln -s "$d" "$WINEPREFIX/dosdevices/d:"
# Wine reads the serial number of a folder that is mounted as a disk from this file.
printf '1A2B3C4D\n' > "$d/.windows-serial"
ln -s /proc "$WINEPREFIX/dosdevices/e:"
cp "$setup" "$c/bin/setup.exe"
cp "$hold_file" "$c/bin/hold_file.exe"
# The player's name is found in any letter case and is stored in lower case.
cp "$stand_in" "$d/Winamp/WINAMP.EXE"
printf '1024 0 0=0x2081\n1024 0 104=1\n' > "$c/bin/answers.txt"
export TALLOW_STAND_IN_LOG='C:\bin\player.txt' TALLOW_STAND_IN_ANSWERS='C:\bin\answers.txt'

# song FILE [OPTION...]: makes a song; the options are passed to lame
song() {
  mkdir -p "$(dirname "$1")"
  sox -q -n -r 44100 -c 2 -t wav - synth 1 sine 440 2> /dev/null |
    lame --quiet -b 64 --id3v1-only "${@:2}" - "$1"
}
long=$(printf 'a folder with a long name, %.0s' 1 2 3 4 5)end
song "$c/Music/On C.mp3" --ta 'Ada Quill' --ty 1968 --tg Jazz
song "$d/Musik/one.mp3" --ta 'Ada Quill' --ty 1971
song "$d/Musik/two.mp3" --ta 'The Lanterns' --ty 1983
song "$d/Ελλάδα/песня 日本語.mp3" --ta 'Copper Rails'
song "$d/$long/$long/$long/far down.mp3" --ta 'Copper Rails'
# A stand-in for a junction that points at its parent.
ln -s .. "$d/Musik/loop"
[ ${#long} -gt 100 ] || fail "The long path is not long."

# Silent installation for one user.
cd "$c/bin"
"$wine" 'C:\bin\setup.exe' /S || fail "The setup exited with code $?."
installed=$c/users/$(id -un)/AppData/Local/Programs/Tallow
program='C:\users\'$(id -un)'\AppData\Local\Programs\Tallow\tallow.exe'
for file in tallow.exe tallow-player.exe readme.txt license.txt third-party.txt TIPOFDAY.TXT uninstall.exe; do
  [ -s "$installed/$file" ] || fail "$file is not installed."
done
[ -s "$c/users/$(id -un)/AppData/Roaming/Microsoft/Windows/Start Menu/Programs/Tallow.lnk" ] ||
  fail "Tallow is not in the start menu."
[ "$(value 'Software\Classes\Tallow.Jukebox\shell\open\command')" = "\"$program\" \"%1\"" ] ||
  fail "A double click does not open jukeboxes."

# start [FILE...]: starts Tallow.
# shellcheck disable=SC2120 # Files are optional.
start() {
  "$wine" "$program" "$@" 2>> "$folder/errors.txt" &
  tallow=$!
  processes+=("$tallow")
}
grouping=$installed/Grouping
library=$grouping/FileLocNames.lmz
settings=$grouping/System/TallowOrganizer.ini

# The first start searches both drives for songs, and takes the player beside the program.
start
until_true 120 "the tip at the start" window_named '^Tip of the Day$'
sleep 0.5
picture 1-first-start
# The tip leaves the keyboard to the main window.
go_to '^Tip of the Day$'
keys alt+s
[ "$(value 'Software\Tallow\tallow\Options' 'Show Tips at Startup')" = 0x0 ] ||
  fail "The tip's option is not in the registry."
keys Return
until_true 10 "the end of the tip" no_window_named '^Tip of the Day$'
until_true 10 "the sample jukebox" window_named '(^| - )Tallow - \[Jukebox One'
activate
picture 2-sample

# Compares the settings byte for byte.
own=${program%tallow.exe}
printf '%s\r\n' "$own"'Grouping\System\LocOfMainTargetFiles.lmz' "$own"'Grouping\' ' 5 ' \
  "$(tr '[:upper:]' '[:lower:]' <<< "${own}tallow-player.exe")" '' '' '' False False '' > "$folder/expected.ini"
cmp "$folder/expected.ini" "$settings" || fail "The settings are not the expected ones."
# Checks every record of the library: name, folder, number, flag, rank, and seven empty texts;
# nothing else.
perl -e '
  local $/; my $bytes = <STDIN>; my $number = 0;
  while (length $bytes) {
    my @texts = unpack("(v/a)12", $bytes);
    substr($bytes, 0, 24 + length join("", @texts)) = "";
    ++$number;
    die "record $number\n" unless $texts[2] eq $number && $texts[3] eq "1" && $texts[4] eq "2"
      && join("", @texts[5 .. 11]) eq "";
    print "$texts[1]$texts[0]\n";
  }' < "$library" | sort > "$folder/songs.txt" || fail "The library is damaged."
printf '%s\n' 'C:\Music\On C.mp3' 'D:\Musik\one.mp3' 'D:\Musik\two.mp3' 'D:\Ελλάδα\песня 日本語.mp3' \
  "D:\\$long\\$long\\$long\\far down.mp3" | sort | diff - "$folder/songs.txt" ||
  fail "Other songs were found."

# A selection is played by Tallow's own player. A Winamp that runs meanwhile gets no message. Closing
# Tallow closes the player.
player_runs() { pgrep -f '[t]allow-player.exe' > /dev/null; }
player_has_ended() { ! player_runs; }
"$wine" 'D:\Winamp\WINAMP.EXE' &
winamp=$!
processes+=("$winamp")
until_true 20 "the Winamp of the user" is_in started "$c/bin/player.txt"
activate
keys Tab Home shift+Down ctrl+p
until_true 20 "Tallow's own player" player_runs
sleep 3
picture 3-own-player
activate
xdotool key --delay 100 alt+F4
until_true 20 "the question whether to save" window_named '^Tallow$'
keys alt+n
until_true 30 "the end of the program" has_ended
until_true 30 "the end of Tallow's own player" player_has_ended
grep -v '^started' "$c/bin/player.txt" && fail "A Winamp that was not chosen got messages."
kill "$winamp"
rm "$c/bin/player.txt"

# The user chooses Winamp. A selection is played: the program starts the player and waits for its
# window, which gets the songs, with full paths.
sed -i 's/^.*tallow-player\.exe/d:\\winamp\\winamp.exe/' "$settings"
start
until_true 60 "the sample jukebox" window_named '^Tallow - \[Jukebox One'
activate
keys Tab Home shift+Down ctrl+p
until_true 20 "the player" is_in '273 40045 0' "$c/bin/player.txt"
picture 3-winamp
sleep 1
tr -d '\r' < "$c/bin/player.txt" > "$folder/player.txt"
head -n 1 "$folder/player.txt" | grep -qx 'started 7' || fail "The player was not started minimized."
grep -v '^1024 0 10[45]\|^1024 1 105\|^started' "$folder/player.txt" | sed -n '/40047/,$p' > "$folder/messages.txt"
first=$(perl -e 'local $/; my @t = unpack("(v/a)12", <STDIN>); print "$t[1]$t[0]"' < "$library")
grep -qxF "74 0 100 \"$first\\0\"" "$folder/messages.txt" || fail "The player was not given $first."
sed -n 's/^\(273 40047 0\|1024 0 101\|74 0 100\|273 40045 0\).*/\1/p' "$folder/messages.txt" > "$folder/order.txt"
printf '%s\n' '273 40047 0' '1024 0 101' '74 0 100' '273 40045 0' '74 0 100' |
  diff - <(head -n 5 "$folder/order.txt") || fail "The player received other messages."
# The player's menu keys.
keys ctrl+t
until_true 10 "the next track" is_in '273 40048 0' "$c/bin/player.txt"
keys ctrl+u
until_true 10 "the pause" is_in '273 40046 0' "$c/bin/player.txt"

# A rank is saved. While another program holds the library, saving fails with a message, and nothing
# is lost.
keys Tab Tab Home
before=$(cksum "$library")
"$wine" 'C:\bin\hold_file.exe' "${own}Grouping\\FileLocNames.lmz" 'C:\bin\release.txt' &
processes+=($!)
sleep 1
keys shift+F10 r Return
until_true 20 "the message that the ranks could not be saved" window_named '^Tallow$'
picture 4-held
library_has_changed && fail "The library was replaced while another program held it."
touch "$c/bin/release.txt"
sleep 1
keys Return shift+F10 r Return
until_true 20 "the saved rank" library_has_changed
[ -z "$(find "$installed" -name '*.new')" ] || fail "A temporary file is left."

# The jukebox is saved under a name; a read-only file is not overwritten.
keys ctrl+s
until_true 20 "the file dialog" window_named '^Save'
xdotool type --delay 60 'Mix'
keys Return
until_true 20 "its name" window_named '(^| - )Tallow - \[MIX\]$'
[ -s "$grouping/mix.juk" ] || fail "The jukebox is not saved."
activate
chmod a-w "$grouping/mix.juk"
before_juk=$(cksum "$grouping/mix.juk")
keys alt+e a
xdotool type --delay 60 'Road trip'
keys Return ctrl+s
until_true 20 "the message that the file cannot be written" window_named '^Tallow$'
picture 5-read-only
keys Return
activate
[ "$(cksum "$grouping/mix.juk")" = "$before_juk" ] || fail "A read-only file was overwritten."
chmod u+w "$grouping/mix.juk"
keys ctrl+s
sleep 1
grep -q '"text":"Road trip"' "$grouping/mix.juk" || fail "The folder is not saved."

# Saving in a folder where no file can be created.
keys alt+f a
until_true 20 "the file dialog" window_named '^Save'
xdotool type --delay 60 'E:\mix.juk'
keys Return
until_true 20 "the message that no file can be created there" window_named '^Tallow$'
picture 6-no-folder-for-files
keys Return
activate
window_named '(^| - )Tallow - \[MIX\]$' > /dev/null || fail "The jukebox has the name of a file that was not created."

# A second program hands its file over and ends.
cp "$grouping/mix.juk" "$d/other.juk"
timeout 30 "$wine" "$program" 'D:\other.juk' || fail "The second start exited with code $?."
until_true 20 "the file of the second start" window_named '(^| - )Tallow - \[OTHER\]$'
picture 7-handed-over
activate
xdotool key --delay 100 alt+F4
until_true 30 "the end of the program" has_ended
until_true 10 "the end of the player" is_in '273 40001 0' "$c/bin/player.txt"

# The second start opens the last jukebox, without a search or a tip, and changes no file.
song "$d/Elsewhere/never.mp3"
before=$(cksum "$library")
start
until_true 60 "the previous jukebox at the start" window_named '(^| - )Tallow - \[OTHER\]$'
no_window_named '^Tip of the Day$' || fail "The tip is shown again."
library_has_changed && fail "The second start has changed the library."
is_in 'never.mp3' "$library" && fail "The second start has searched the drives."
sleep 0.5
picture 8-second-start
activate
xdotool key --delay 100 alt+F4
until_true 30 "the end of the program" has_ended

# Drive D: disappears: no song becomes missing, and the jukebox file on it is not forgotten.
remove_drive() {
  "$wineserver" -k || :
  "$wineserver" -w
  rm "$WINEPREFIX/dosdevices/$1"
}
before=$(cksum "$library")
remove_drive d:
start
until_true 60 "the sample jukebox" window_named '(^| - )Tallow - \[Jukebox One'
sleep 1
picture 9-away
library_has_changed && fail "A start without D: has changed the library."
grep -q '"root":"D:' "$grouping/System/Drives.json" || fail "D: is not remembered."
activate
xdotool key --delay 100 alt+F4
until_true 20 "the question whether to save" window_named '^Tallow$'
keys alt+n
until_true 30 "the end of the program" has_ended
# The drive comes back as F: and is recognised by its serial number.
"$wine" reg add 'HKLM\Software\Wine\Drives' /v 'f:' /d hd /f > /dev/null
"$wineserver" -w
ln -s "$d" "$WINEPREFIX/dosdevices/f:"
start
until_true 60 "the sample jukebox" window_named '(^| - )Tallow - \[Jukebox One'
until_true 20 "the songs of D: on F:" is_in 'F:\Musik\' "$library"
is_in 'D:\Musik\' "$library" && fail "Songs still have paths on D:."
picture 10-another-letter
activate
xdotool key --delay 100 alt+F4
until_true 20 "the question whether to save" window_named '^Tallow$'
keys alt+n
until_true 30 "the end of the program" has_ended
# The drive comes back as D:.
remove_drive f:
ln -s "$d" "$WINEPREFIX/dosdevices/d:"
start
until_true 60 "the previous jukebox at the start" window_named '(^| - )Tallow - \[OTHER\]$'
until_true 20 "the songs of F: on D:" is_in 'D:\Musik\' "$library"
activate
xdotool key --delay 100 alt+F4
until_true 30 "the end of the program" has_ended

# The setup and the uninstaller change nothing while the program runs. A setup after the program has
# ended keeps tips that the user added.
start
until_true 60 "the previous jukebox" window_named '(^| - )Tallow - '
if "$wine" 'C:\bin\setup.exe' /S; then fail "The setup installed over a running program."; fi
if "$wine" "${own}uninstall.exe" /S _?="${own%\\}"; then fail "A running program was uninstalled."; fi
[ -s "$installed/tallow.exe" ] || fail "A running program was uninstalled."
# When the user logs off, no question is asked, and unsaved changes are kept.
activate
keys alt+e a Return
"$wine" wineboot --end-session > /dev/null 2>&1 &
until_true 30 "the end of the program as the user logs off" has_ended
wait $! || :
ls "$grouping"/System/Jukebox-*.unsaved > /dev/null || fail "Changes made before the user logged off are lost."
rm "$grouping"/System/Jukebox-*.unsaved
printf 'A tip of my own.\r\n' >> "$installed/TIPOFDAY.TXT"
"$wine" 'C:\bin\setup.exe' /S || fail "The setup over an older version exited with code $?."
grep -q 'A tip of my own' "$installed/TIPOFDAY.TXT" || fail "A tip of the user's own is gone."

# Uninstalling removes the program and keeps the user's files.
"$wine" "${own}uninstall.exe" /S || fail "The uninstaller exited with code $?."
until_true 30 "the removal of the program file" test ! -e "$installed/tallow.exe"
until_true 10 "the removal of the start menu entry" \
  test ! -e "$c/users/$(id -un)/AppData/Roaming/Microsoft/Windows/Start Menu/Programs/Tallow.lnk"
if ! [ -s "$library" ] || ! [ -s "$grouping/mix.juk" ]; then
  fail "The library or the jukebox was removed with the program."
fi
[ -z "$(value 'Software\Classes\Tallow.Jukebox\shell\open\command')" ] ||
  fail "The file type is still registered."
grep -q 'A tip of my own' "$installed/TIPOFDAY.TXT" || fail "A tip of the user's own is gone."
for file in readme.txt license.txt third-party.txt uninstall.exe; do
  [ ! -e "$installed/$file" ] || fail "$file is still there."
done
echo "All steps passed; the pictures are in $folder/pictures."
