#!/usr/bin/env python3
# SPDX-License-Identifier: GPL-3.0-or-later
"""Runs clang-tidy over the sources that have changed since they last passed.

Usage: checks/tidy.py BUILD_FOLDER [PATH...]

BUILD_FOLDER contains compile_commands.json. With paths, only the sources below them are checked.
The cache contains an empty file for each source that passed. Its name is the hash of everything
that the result depends on: the source, the project's headers that it includes directly and
indirectly, the command that compiles it, .clang-tidy, this script, and the versions of clang-tidy
and of the libraries.
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
# The commands are written for GCC; clang-tidy's own compiler does not know all of their options.
# Compiler warnings are GCC's task.
OPTIONS = ["--quiet", "--extra-arg=-Wno-unknown-warning-option", "--extra-arg=-w"]
# A test consists mostly of the headers of its framework, on which most checks take long.
TEST_OPTIONS = ["--checks=-*,misc-include-cleaner,bugprone-use-after-move,bugprone-unused-*"]
# misc-include-cleaner of this version cannot be configured to report only unused headers.
IGNORED = "no header providing"


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
    """The versions of clang-tidy and of the libraries, according to Debian's packages."""
    tidy = subprocess.run([TIDY, "--version"], capture_output=True, text=True, check=True).stdout
    packages = subprocess.run(
        ["dpkg-query", "-W", "-f=${Package} ${Version}\n", "qt6-base-dev", "libstdc++-12-dev",
         "libgtest-dev", "nlohmann-json3-dev", "libmpv-dev"],
        capture_output=True, text=True, check=False).stdout
    return tidy + packages


def is_test(source):
    return source.stem.endswith("_test") or (ROOT / "tests") in source.parents


def warnings(run):
    """The warnings in the output of clang-tidy, or why it failed."""
    found = []
    for line in run.stdout.splitlines():
        if re.search(r": (warning|error): ", line) and IGNORED not in line:
            found.append(line)
    if run.returncode != 0 and not found:
        found.append(run.stdout.strip() or run.stderr.strip())
    return found


def main():
    build = Path(sys.argv[1])
    below = [str(ROOT / path) for path in sys.argv[2:]]
    cache = Path(os.environ.get("XDG_CACHE_HOME", Path.home() / ".cache")) / "tallow" / "tidy"
    cache.mkdir(parents=True, exist_ok=True)
    common = (versions() + (ROOT / ".clang-tidy").read_text(encoding="utf-8") +
              Path(__file__).read_text(encoding="utf-8")).encode()
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
        # The result does not depend on the folder of the project.
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
        options = OPTIONS + (TEST_OPTIONS if is_test(source) else [])
        run = subprocess.run([TIDY, "-p", str(build)] + options + [str(source)],
                             capture_output=True, text=True, check=False)
        found = warnings(run)
        if not found:
            passed.touch()
        return found

    failed = 0
    printed = set()
    with concurrent.futures.ThreadPoolExecutor(os.cpu_count()) as pool:
        for found in pool.map(check, todo):
            failed += bool(found)
            for warning in found:
                # A warning about a header appears with every source that includes it.
                if warning not in printed:
                    print(warning)
                    printed.add(warning)
    print(f"clang-tidy: {count} sources, {len(todo)} of them new or changed, {failed} with warnings")
    sys.exit(1 if failed else 0)


if __name__ == "__main__":
    main()
