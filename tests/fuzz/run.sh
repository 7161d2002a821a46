#!/usr/bin/env bash
# SPDX-License-Identifier: GPL-3.0-or-later
# Runs the fuzzer for jukebox files on a copy of its corpus.
#
# Usage: run.sh FUZZER FOLDER SECONDS
#   FOLDER gets the copy, to which the fuzzer adds files, and the input of a failure
set -euo pipefail

fuzzer=$1
folder=$2
seconds=$3
here=$(cd "$(dirname "$0")" && pwd)

mkdir -p "$folder/corpus"
cp "$here"/jukebox_corpus/* "$folder/corpus/"
exec "$fuzzer" -max_total_time="$seconds" -timeout=10 -rss_limit_mb=2048 -max_len=20000 \
  -dict="$here/jukebox.dict" -artifact_prefix="$folder/" -print_final_stats=1 -verbosity=1 \
  "$folder/corpus" 2> >(grep -v -e '^#' >&2)
