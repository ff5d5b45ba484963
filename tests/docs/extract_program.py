#!/usr/bin/env python3
"""Writes the pieces of C in a Markdown file, in their order, as one program.

usage: extract_program.py PAGE.md PROGRAM.c
"""
import re
import sys


def main(page, program):
    with open(page, encoding="utf-8") as file:
        pieces = re.findall(r"^```c\n(.*?)^```$", file.read(), re.MULTILINE | re.DOTALL)
    if not pieces:
        sys.exit(f"{page}: no C in it")
    with open(program, "w", encoding="utf-8") as file:
        file.write("\n".join(pieces))


if __name__ == "__main__":
    if len(sys.argv) != 3:
        sys.exit(__doc__)
    main(*sys.argv[1:])
