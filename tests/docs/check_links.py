#!/usr/bin/env python3
"""Finds links in Markdown files that lead nowhere: to files that are not there, to headings that no page has.

usage: check_links.py ROOT PAGE.md...

Links to other hosts are left alone.
"""
import re
import sys
from pathlib import Path

CODE = re.compile(r"^```.*?^```$|`[^`\n]*`", re.MULTILINE | re.DOTALL)
LINK = re.compile(r"\]\(\s*<?([^)\s>]+)>?[^)]*\)|(?:src|href)=\"([^\"]+)\"")
OUTSIDE = re.compile(r"[a-z][a-z0-9+.-]*:", re.IGNORECASE)


def anchor(heading):
    """The name that a heading gets: lower case, no punctuation, a dash for each space."""
    text = re.sub(r"\[([^\]]*)\]\([^)]*\)", r"\1", heading.strip()).lower()
    return re.sub(r"[^\w\- ]", "", text).replace(" ", "-")


def anchors_of(page):
    text = re.sub(r"^```.*?^```$", "", page.read_text(encoding="utf-8"), flags=re.MULTILINE | re.DOTALL)
    names, seen = set(), {}
    for heading in re.findall(r"^#{1,6} +(.*?)#*$", text, re.MULTILINE):
        name = anchor(heading)
        names.add(f"{name}-{seen[name]}" if name in seen else name)
        seen[name] = seen.get(name, 0) + 1
    return names


def faults_of(page, root):
    for groups in LINK.findall(CODE.sub("", page.read_text(encoding="utf-8"))):
        link = groups[0] or groups[1]
        if OUTSIDE.match(link):
            continue
        path, _, name = link.partition("#")
        target = (page.parent / path).resolve() if path else page
        if root not in target.parents and target != root:
            yield link, "leaves the tree"
        elif not target.exists():
            yield link, "is not there"
        elif name and target.suffix == ".md" and name not in anchors_of(target):
            yield link, "has no such heading"


def main(root, pages):
    count = 0
    for page in pages:
        for link, fault in faults_of(page.resolve(), root):
            print(f"{page}: {link} {fault}")
            count += 1
    return 1 if count else 0


if __name__ == "__main__":
    if len(sys.argv) < 3:
        sys.exit(__doc__)
    sys.exit(main(Path(sys.argv[1]).resolve(), [Path(name) for name in sys.argv[2:]]))
