#!/usr/bin/env bash
# SPDX-License-Identifier: GPL-3.0-or-later
# Installs the missing packages, and prints each package with its purpose.
#
# Usage: install-dependencies.sh PURPOSE...   (see dependencies.txt)
set -euo pipefail

list="$(dirname "$0")/dependencies.txt"
missing=()
reasons=()
while read -r purpose package reason; do
  case " $* " in *" $purpose "*) ;; *) continue ;; esac
  case " ${missing[*]-} " in *" $package "*) continue ;; esac
  if command -v dpkg-query > /dev/null &&
    dpkg-query -W -f='${Status}' "$package" 2> /dev/null | grep -q 'install ok installed'; then
    continue
  fi
  missing+=("$package")
  reasons+=("$package ($reason)")
done < <(grep -v '^#' "$list")

[ ${#missing[@]} -eq 0 ] && exit 0

if ! command -v apt-get > /dev/null; then
  echo "This is not a Debian system, so nothing is installed. Tallow needs these Debian packages, or their equivalents:"
  printf '  %s\n' "${reasons[@]}"
  exit 0
fi

echo "Installing missing packages:"
printf '  %s\n' "${reasons[@]}"
as_root=()
if [ "$(id -u)" -ne 0 ]; then
  if ! command -v sudo > /dev/null; then
    echo "Only root may install packages, and there is no sudo. As root: apt-get install ${missing[*]}" >&2
    exit 1
  fi
  as_root=(sudo)
fi
"${as_root[@]}" env DEBIAN_FRONTEND=noninteractive apt-get -qq update
"${as_root[@]}" env DEBIAN_FRONTEND=noninteractive apt-get -qq install -y --no-install-recommends \
  "${missing[@]}" > /dev/null
