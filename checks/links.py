#!/usr/bin/env python3
# SPDX-License-Identifier: GPL-3.0-or-later
"""Finds broken links in Markdown documents: to a file or a heading that does not exist.

Usage: checks/links.py FILE...   (files that are not Markdown are skipped)
"""

import re
import sys
from pathlib import Path

LINK = re.compile(r"!?\[[^\]]*\]\(([^)\s]+)\)")
HEADING = re.compile(r"^#+\s+(.*?)\s*#*$", re.MULTILINE)
CODE = re.compile(r"```.*?```|`[^`\n]*`", re.DOTALL)


def anchors(document):
    """The names under which the headings of a document are linked to."""
    names = set()
    for heading in HEADING.findall(document.read_text(encoding="utf-8")):
        plain = re.sub(r"[`*_]|\[([^\]]*)\]\([^)]*\)", r"\1", heading).lower()
        names.add(re.sub(r"[^\w\- ]", "", plain).replace(" ", "-"))
    return names


def main():
    broken = []
    for name in sys.argv[1:]:
        document = Path(name)
        if document.suffix != ".md":
            continue
        for target in LINK.findall(CODE.sub("", document.read_text(encoding="utf-8"))):
            if re.match(r"[a-z]+:", target):
                continue
            path, _, anchor = target.partition("#")
            linked = (document.parent / path) if path else document
            if not linked.exists():
                broken.append(f"{name}: {target} does not exist")
            elif anchor and linked.suffix == ".md" and anchor not in anchors(linked):
                broken.append(f"{name}: {target} has no such heading")
    print("\n".join(broken), end="\n" if broken else "")
    sys.exit(1 if broken else 0)


if __name__ == "__main__":
    main()
