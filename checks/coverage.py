#!/usr/bin/env python3
# SPDX-License-Identifier: GPL-3.0-or-later
"""Prints the share of lines that tests have run, by folder.

Usage: checks/coverage.py SUMMARY   (the JSON summary that gcovr writes)
"""

import collections
import json
import sys


def main():
    with open(sys.argv[1], encoding="utf-8") as summary:
        files = json.load(summary)["files"]
    lines = collections.defaultdict(lambda: [0, 0])
    for file in files:
        parts = file["filename"].split("/")
        folders = ["/".join(parts[:-1]) or "main.cpp", "all"]
        for folder in folders:
            lines[folder][0] += file["line_covered"]
            lines[folder][1] += file["line_total"]
    print("| Folder | Lines | Run by tests | Share |")
    print("|---|---:|---:|---:|")
    for folder in sorted(lines, key=lambda name: (name == "all", name)):
        run, total = lines[folder]
        print(f"| {folder} | {total} | {run} | {100 * run / total:.1f} % |")


if __name__ == "__main__":
    main()
