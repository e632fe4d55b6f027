#!/usr/bin/env python3
"""Checks docs/promises.md: every promise names tests, and every test that it names exists.

Tests are named in the last column as `Suite.Name`. Ends with status 1 and one line a fault.
"""

import argparse
import re
import sys
from pathlib import Path

TEST = re.compile(r"^\s*TEST(?:_F|_P)?\(\s*(\w+)\s*,\s*(\w+)\s*\)", re.M)
ROW = re.compile(r"^\|\s*(\d+)\s*\|(.*)\|([^|]*)\|\s*$", re.M)
NAME = re.compile(r"`(\w+\.\w+)`")


def tests_of(folder):
    names = set()
    for path in folder.rglob("*_test.cpp"):
        names.update(".".join(match) for match in TEST.findall(path.read_text(encoding="utf-8")))
    return names


def main():
    parser = argparse.ArgumentParser(description="Checks that the tests named in docs/promises.md exist.")
    parser.add_argument("--root", type=Path, default=Path(__file__).resolve().parent.parent, help="the top folder")
    root = parser.parse_args().root
    known = tests_of(root / "tests")
    rows = ROW.findall((root / "docs" / "promises.md").read_text(encoding="utf-8"))
    wrong = 0
    for number, _, cell in rows:
        named = NAME.findall(cell)
        faults = [f"there is no test {name}" for name in named if name not in known]
        if not named:
            faults.append("no test is named")
        for fault in faults:
            print(f"docs/promises.md: promise {number}: {fault}")
        wrong += len(faults)
    print(f"{len(rows)} promises, {wrong} faults")
    return 1 if wrong or not rows else 0


if __name__ == "__main__":
    sys.exit(main())
