#!/usr/bin/env python3
"""Checks the two language files, by themselves and against the C++ sources.

A message is named by its number alone, so a wrong number or an empty text shows up only as a
blank caption on somebody's screen. This check finds it first:

- both files are UTF-8 with CR LF line ends, have one line a message and carry the line's number
  in the four digits and the blank in front of the text;
- both files give a text to the same numbers, and where one text begins or ends in a blank, which
  the callers rely on when they join it to a path, so does the other;
- every number that the sources name has a text. A source names a number by Messaggio(123), by Messaggio(x ? 1 : 2), or
  by a constant MessaggioName = 123. Any other call is a fault, because its number could not be read here.
"""

import argparse
import re
import sys
from pathlib import Path

LANGUAGE_FILES = ("Lang_Ita.Dat", "Lang_Eng.Dat")
SOURCE_SUFFIXES = {".cpp", ".h", ".hpp", ".cc", ".hh", ".inl"}
LAST_MESSAGE = 461
COMMENT_MARK = "=%!%="

CALL = re.compile(r"\bMessaggio\s*\(([^()]*)\)")
NESTED = re.compile(r"\bMessaggio\s*\([^()]*\(")
CONSTANT = re.compile(r"\b(Messaggio\w+)\s*=\s*(\d+)\b")
# What a call may hold, so that this check can read it: a number, one of two numbers, or a constant named Messaggio...
READABLE = re.compile(r"\s*(?:\d+|Messaggio\w+|[^?]*\?\s*\d+\s*:\s*\d+)\s*")
DECLARATION = re.compile(r"\s*(?:int|std::int\w+)\s+\w+\s*")


def check_line(number, line):
    """Gives the text of one line without its end, and what is wrong with the line."""
    prefix = f"{number:04d} "
    if not line.startswith(prefix):
        return "", [f"line {number}: does not begin with '{prefix}'"]
    text = line[len(prefix):]
    if text.startswith(COMMENT_MARK):
        return "", [f"line {number}: a comment directly behind the number is shown as the text"]
    text = text.split(COMMENT_MARK, 1)[0]
    if text and not text.strip():
        return "", [f"line {number}: the text holds nothing but blanks"]
    return text, []


def read_language(path):
    """Gives the texts by number, without the empty ones, and the list of faults of the file."""
    try:
        content = path.read_bytes().decode("utf-8")
    except OSError as error:
        return {}, [f"cannot be read: {error.strerror}"]
    except UnicodeDecodeError as error:
        return {}, [f"is not UTF-8 at byte {error.start}"]
    faults = []
    lines = content.split("\r\n")
    if lines.pop() != "":
        faults.append("the last line does not end in CR LF")
    if len(lines) != LAST_MESSAGE:
        faults.append(f"has {len(lines)} lines that end in CR LF, not {LAST_MESSAGE}")
    texts = {}
    for number, line in enumerate(lines, 1):
        if "\r" in line or "\n" in line:
            faults.append(f"line {number}: holds a CR or LF of its own")
        text, wrong = check_line(number, line)
        faults += wrong
        if text:
            texts[number] = text
    return texts, faults


def outer_blanks(text):
    return text.startswith(" "), text.endswith(" ")


def compare_languages(first, second):
    """Gives the faults that show only when the two tables, each a name and its texts, meet."""
    faults = []
    for (name, texts), (_, others) in ((first, second), (second, first)):
        faults += [f"{name}: message {n} is empty, but not in the other language"
                   for n in sorted(others.keys() - texts.keys())]
    for number in sorted(first[1].keys() & second[1].keys()):
        if outer_blanks(first[1][number]) != outer_blanks(second[1][number]):
            faults.append(f"message {number}: a blank at one end stands in one language only")
    return faults


def numbers_of(content):
    """Gives pairs of a line and a message number that it names, and the lines whose number cannot be read."""
    found, hidden = [], []
    for call in CALL.finditer(content):
        line = content.count("\n", 0, call.start()) + 1
        if DECLARATION.fullmatch(call.group(1)):
            continue
        if not READABLE.fullmatch(call.group(1)):
            hidden.append(line)
        found += [(line, int(number)) for number in re.findall(r"\b\d+\b", call.group(1).split("?")[-1])]
    hidden += [content.count("\n", 0, m.start()) + 1 for m in NESTED.finditer(content)]
    found += [(content.count("\n", 0, m.start()) + 1, int(m.group(2))) for m in CONSTANT.finditer(content)]
    return found, hidden


def used_numbers(source_folder):
    """Gives the places by message number, each place as 'file:line', and the places that name none."""
    used, hidden = {}, []
    for path in sorted(source_folder.rglob("*")):
        if path.suffix not in SOURCE_SUFFIXES or not path.is_file():
            continue
        relative = path.relative_to(source_folder)
        content = path.read_text(encoding="utf-8", errors="replace")
        found, unreadable = numbers_of(content)
        for line, number in found:
            used.setdefault(number, []).append(f"{source_folder.name}/{relative}:{line}")
        hidden += [f"{source_folder.name}/{relative}:{line}" for line in unreadable]
    return used, hidden


def check_use(used, tables):
    faults = []
    for number in sorted(used):
        places = ", ".join(used[number])
        if not 1 <= number <= LAST_MESSAGE:
            faults.append(f"message {number} lies outside 1 to {LAST_MESSAGE} ({places})")
            continue
        faults += [f"{name}: message {number} has no text, but is used ({places})"
                   for name, texts in tables if number not in texts]
    return faults


def parse_arguments():
    root = Path(__file__).resolve().parent.parent
    parser = argparse.ArgumentParser(description=__doc__,
                                     formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("--data", type=Path, default=root / "data",
                        help="folder of the language files (default: data/ of this tree)")
    parser.add_argument("--src", type=Path, default=root / "src",
                        help="folder of the C++ sources (default: src/ of this tree)")
    return parser.parse_args()


def main():
    arguments = parse_arguments()
    faults = []
    tables = []
    for name in LANGUAGE_FILES:
        texts, wrong = read_language(arguments.data / name)
        faults += [f"{name}: {fault}" for fault in wrong]
        tables.append((name, texts))
    if all(texts for _, texts in tables):
        faults += compare_languages(*tables)
    if not arguments.src.is_dir():
        faults.append(f"{arguments.src}: no such folder")
    used, hidden = used_numbers(arguments.src)
    faults += [f"{place}: a message without a number that can be read here" for place in hidden]
    faults += check_use(used, tables)
    for fault in faults:
        print(fault, file=sys.stderr)
    if faults:
        print(f"check-languages: {len(faults)} faults", file=sys.stderr)
        return 1
    print(f"check-languages: {len(tables[0][1])} messages, {len(used)} of them named by the sources")
    return 0


if __name__ == "__main__":
    sys.exit(main())
