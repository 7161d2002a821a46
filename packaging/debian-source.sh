# shellcheck shell=bash
# SPDX-License-Identifier: GPL-3.0-or-later
# To be sourced. fetch_source FOLDER PACKAGE... unpacks Debian's source packages, with Debian's
# patches applied, into FOLDER. Uses temporary package lists for this call only: the system's own
# lists with "deb" replaced by "deb-src".

fetch_source() {
  local folder=$1
  shift
  mkdir -p "$folder/lists/partial" "$folder/parts"
  local list
  for list in /etc/apt/sources.list.d/*.sources; do
    [ -f "$list" ] && sed 's/^Types:.*/Types: deb-src/' "$list" > "$folder/parts/$(basename "$list")"
  done
  for list in /etc/apt/sources.list /etc/apt/sources.list.d/*.list; do
    [ -f "$list" ] && sed -n 's/^deb /deb-src /p' "$list" > "$folder/parts/$(basename "$list")"
  done
  local apt=(apt-get -qq -o Dir::Etc::SourceList=/dev/null -o "Dir::Etc::SourceParts=$folder/parts"
    -o "Dir::State::Lists=$folder/lists" -o APT::Sandbox::User=root -o Debug::NoLocking=1
    -o "Dir::Cache=$folder")
  echo "Fetching the sources of $*" >&2
  (cd "$folder" && "${apt[@]}" update >&2 && "${apt[@]}" source "$@" >&2)
}

# cache_folder KIND KEY: prints the user's cache folder for libraries built from source.
cache_folder() {
  printf '%s\n' "${XDG_CACHE_HOME:-${HOME:-/tmp}/.cache}/tallow/$1/$2"
}
