#!/usr/bin/env python3
"""Writes resources/SAE OBD II CODES.dat from the title lists beside this script.

One record a line: "P", the four digits, six blanks, the title. A title holding a comma is written
with the whole field in double quotes, since the loader would otherwise split it there.
Run: python3 scripts/dtc/make_dtc_file.py
"""
import pathlib
import sys

import common
import p0000  # noqa: F401  (each list module fills common.TITLES when imported)
import p0300  # noqa: F401
import p0600  # noqa: F401
import p2000  # noqa: F401
import p2300  # noqa: F401
import p3400  # noqa: F401

RANGES = (range(0, 1000), range(2000, 3000), range(3400, 3500))
OUTPUT = pathlib.Path(__file__).resolve().parents[2] / "resources" / "SAE OBD II CODES.dat"


def record(number, title):
    field = f"P{number:04d}      {title}"
    if "," in title:
        if '"' in title:
            raise ValueError(f"P{number:04d}: a title with a comma cannot also hold a double quote")
        return f'"{field}"'
    return field


def main():
    titles = common.TITLES
    outside = [n for n in titles if not any(n in r for r in RANGES)]
    if outside:
        sys.exit(f"codes outside the generic ranges: {outside}")
    if any(not t for t in titles.values()):
        sys.exit("an empty title would be counted but show no description")
    lines = [record(n, titles[n]) for n in sorted(titles)]
    OUTPUT.write_text("\n".join(lines) + "\n", encoding="ascii")
    print(f"{len(lines)} titles written to {OUTPUT}")


if __name__ == "__main__":
    main()
