#!/usr/bin/env python3
"""Finds numbers in the tables of one page that another page, which is the place for them, does not have.

usage: check_numbers.py README.md QUALITY.md

Whole numbers below 100 are let pass: most of them are settings or sizes.
"""
import re
import sys

NUMBER = re.compile(r"\d+(?:[.,]\d+)*")


def numbers_of(text):
    return {number for number in NUMBER.findall(text) if len(number) > 2}


def main(page, place):
    with open(page, encoding="utf-8") as file:
        rows = [line for line in file if line.startswith("|") and "](" not in line]
    with open(place, encoding="utf-8") as file:
        known = numbers_of(file.read())
    wrong = [(number, row) for row in rows for number in sorted(numbers_of(row) - known)]
    for number, row in wrong:
        print(f"{number} is not in {place}: {row.strip()}")
    if not rows:
        print(f"{page}: no table")
    return 1 if wrong or not rows else 0


if __name__ == "__main__":
    if len(sys.argv) != 3:
        sys.exit(__doc__)
    sys.exit(main(*sys.argv[1:]))
