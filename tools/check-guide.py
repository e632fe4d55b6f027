#!/usr/bin/env python3
"""Checks the user guide: every picture and file that it links to exists, every picture is used, both languages show
the same pictures and have the same headings' levels.

Ends with status 1 and one line a fault.
"""

import argparse
import re
import sys
from pathlib import Path

LINK = re.compile(r"(!?)\[([^\]]*)\]\(([^)#\s]+)(?:#[^)]*)?\)")
HEADING = re.compile(r"^(#+) ", re.M)
LANGUAGES = ("en", "it")


class Guide:
    def __init__(self, docs, language):
        self.file = docs / "guide" / f"{language}.md"
        self.pictures = docs / "pictures" / language
        self.text = self.file.read_text(encoding="utf-8") if self.file.is_file() else ""
        self.links = LINK.findall(self.text)
        self.shown = {Path(target).name for mark, _, target in self.links if mark}

    def faults(self):
        if not self.text:
            yield "is missing or empty"
        for mark, words, target in self.links:
            if "://" in target:
                continue
            if not (self.file.parent / target).exists():
                yield f"there is no {target}"
            elif mark and (self.file.parent / target).resolve().parent != self.pictures.resolve():
                yield f"{target} is not a picture of this language"
            if mark and not words.strip():
                yield f"the picture {target} has no words for who cannot see it"
        for picture in sorted(self.pictures.glob("*")):
            if picture.name not in self.shown:
                yield f"does not show {picture.name}"

    def levels(self):
        return [len(mark) for mark in HEADING.findall(self.text)]


def main():
    parser = argparse.ArgumentParser(description="Checks docs/guide and docs/pictures.")
    parser.add_argument("--root", type=Path, default=Path(__file__).resolve().parent.parent, help="the top folder")
    docs = parser.parse_args().root / "docs"
    guides = [Guide(docs, language) for language in LANGUAGES]
    faults = [f"docs/guide/{guide.file.name}: {fault}" for guide in guides for fault in guide.faults()]
    first, second = guides
    for picture in sorted(first.shown ^ second.shown):
        faults.append(f"docs/guide: only one language shows {picture}")
    if first.levels() != second.levels():
        faults.append("docs/guide: the languages have different headings")
    for fault in faults:
        print(fault)
    print(f"{sum(len(guide.shown) for guide in guides)} pictures, {len(faults)} faults")
    return 1 if faults else 0


if __name__ == "__main__":
    sys.exit(main())
