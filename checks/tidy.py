#!/usr/bin/env python3
# SPDX-License-Identifier: GPL-3.0-or-later
"""Runs clang-tidy over the sources, and skips those that it has passed before.

Usage: checks/tidy.py BUILD_FOLDER [PATH...]

BUILD_FOLDER holds compile_commands.json. With paths, only the sources below them are checked. A source passes
for good: the name of an empty file in the cache is the hash of everything that clang-tidy sees of it, which is
the source, the project's headers that it includes over any number of headers, the command that compiles it,
.clang-tidy, and the versions of clang-tidy and of the libraries.
"""

import concurrent.futures
import hashlib
import json
import os
import re
import subprocess
import sys
from pathlib import Path

TIDY = "clang-tidy-19"
ROOT = Path(__file__).resolve().parent.parent
INCLUDE = re.compile(r'^#include "([^"]+)"', re.MULTILINE)
# Written for GCC; clang-tidy's own compiler does not know all of them.
EXTRA = ["--extra-arg=-Wno-unknown-warning-option"]


def included(source, known):
    """The project's headers that a source includes, over any number of headers."""
    found = set()
    open_files = [source]
    while open_files:
        file = open_files.pop()
        if file not in known:
            names = INCLUDE.findall(file.read_text(encoding="utf-8"))
            known[file] = [ROOT / name for name in names if (ROOT / name).is_file()]
        for header in known[file]:
            if header not in found:
                found.add(header)
                open_files.append(header)
    return sorted(found)


def versions():
    """What the libraries' headers are, as far as Debian's packages tell."""
    tidy = subprocess.run([TIDY, "--version"], capture_output=True, text=True, check=True).stdout
    packages = subprocess.run(
        ["dpkg-query", "-W", "-f=${Package} ${Version}\n", "qt6-base-dev", "libstdc++-12-dev",
         "libgtest-dev", "nlohmann-json3-dev", "libmpv-dev"],
        capture_output=True, text=True, check=False).stdout
    return tidy + packages


def main():
    build = Path(sys.argv[1])
    below = [str(ROOT / path) for path in sys.argv[2:]]
    cache = Path(os.environ.get("XDG_CACHE_HOME", Path.home() / ".cache")) / "tallow" / "tidy"
    cache.mkdir(parents=True, exist_ok=True)
    common = (versions() + (ROOT / ".clang-tidy").read_text(encoding="utf-8")).encode()
    known = {}
    todo = []
    count = 0
    for entry in json.loads((build / "compile_commands.json").read_text(encoding="utf-8")):
        source = Path(entry["file"])
        if build.resolve() in source.resolve().parents or ROOT not in source.resolve().parents:
            continue
        if below and not any(str(source).startswith(path) for path in below):
            continue
        count += 1
        key = hashlib.sha256(common)
        # The place of the project is no part of what is checked.
        key.update(entry["command"].replace(str(ROOT), ".").encode())
        for file in [source] + included(source, known):
            key.update(str(file.relative_to(ROOT)).encode() + b"\0" + file.read_bytes() + b"\0")
        passed = cache / key.hexdigest()
        if passed.exists():
            passed.touch()
        else:
            todo.append((source, passed))

    def check(job):
        source, passed = job
        run = subprocess.run([TIDY, "--quiet", "-p", str(build), "--warnings-as-errors=*"] + EXTRA +
                             [str(source)], capture_output=True, text=True, check=False)
        if run.returncode == 0:
            passed.touch()
        return source, run

    failed = 0
    with concurrent.futures.ThreadPoolExecutor(os.cpu_count()) as pool:
        for source, run in pool.map(check, todo):
            if run.returncode != 0:
                failed += 1
                print(run.stdout.strip() or run.stderr.strip())
    print(f"clang-tidy: {count} sources, {len(todo)} of them new or changed, {failed} with warnings")
    sys.exit(1 if failed else 0)


if __name__ == "__main__":
    main()
