#!/usr/bin/env python3
# SPDX-License-Identifier: GPL-3.0-or-later
"""Prints the share of lines that tests have run, by folder.

Usage: checks/coverage.py TRACE [FOLDER]   (a trace file that lcov writes)

With a folder, prints the lines of its files that no test has run.
"""

import collections
import os
import sys


def lines_by_file(trace):
    """Returns for each source file, relative to the current folder, the runs of each line."""
    files = {}
    with open(trace, encoding="utf-8") as records:
        for record in records:
            kind, _, value = record.strip().partition(":")
            if kind == "SF":
                runs = files.setdefault(os.path.relpath(value), {})
            elif kind == "DA":
                line, count = value.split(",")[:2]
                runs[int(line)] = runs.get(int(line), 0) + int(count)
    return files


def print_missed(files, folder):
    """Prints the lines in a folder that did not run."""
    for name, runs in sorted(files.items()):
        if os.path.dirname(name) != folder.rstrip("/"):
            continue
        missed = sorted(line for line, count in runs.items() if count == 0)
        if not missed:
            continue
        print(f"{name}: {len(missed)} of {len(runs)} lines")
        with open(name, encoding="utf-8") as source:
            text = source.read().split("\n")
        for line in missed:
            print(f"  {line}: {text[line - 1]}")


def main():
    files = lines_by_file(sys.argv[1])
    if len(sys.argv) > 2:
        print_missed(files, sys.argv[2])
        return
    lines = collections.defaultdict(lambda: [0, 0])
    for name, runs in files.items():
        for folder in (os.path.dirname(name) or "main.cpp", "all"):
            lines[folder][0] += sum(count > 0 for count in runs.values())
            lines[folder][1] += len(runs)
    print("| Folder | Lines | Run by tests | Share |")
    print("|---|---:|---:|---:|")
    for folder in sorted(lines, key=lambda name: (name == "all", name)):
        run, total = lines[folder]
        print(f"| {folder} | {total} | {run} | {100 * run / total:.1f} % |")


if __name__ == "__main__":
    main()
