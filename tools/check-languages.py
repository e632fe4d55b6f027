#!/usr/bin/env python3
"""Checks the two language files, by themselves and against the C++ sources.

A message is named by its number alone, so a wrong number or an empty text shows up only as a
blank caption on somebody's screen. This check finds it first:

- both files are UTF-8 with CR LF line ends, have one line a message and carry the line's number
  in the four digits and the blank in front of the text;
- both files give a text to the same numbers, and where one text begins or ends in a blank, which
  the callers rely on when they join it to a path, so does the other;
- every number that the sources name has a text. A source names a number by Messaggio(123), by a
  constant "inline constexpr int Name = 123;" of src/shell/Messaggi.h (of its namespace messaggio,
  if it has one), or by a comment that says "messaggio::Name = 123".

Numbers that are only computed while the program runs cannot be seen here.
"""

import argparse
import re
import sys
from pathlib import Path

LANGUAGE_FILES = ("Lang_Ita.Dat", "Lang_Eng.Dat")
MESSAGES_HEADER = Path("shell/Messaggi.h")
SOURCE_SUFFIXES = {".cpp", ".h", ".hpp", ".cc", ".hh", ".inl"}
LAST_MESSAGE = 461
COMMENT_MARK = "=%!%="

CALL = re.compile(r"\bMessaggio\s*\(\s*(\d+)\s*\)")
MARKED = re.compile(r"\bmessaggio::\w+\s*=\s*(\d+)\b")
CONSTANT = re.compile(r"\binline\s+constexpr\s+[\w:]+\s+\w+\s*(?:=\s*|\{\s*)(\d+)\s*\}?\s*;")
NAMESPACE = re.compile(r"\bnamespace\s+(?:\w+::)*messaggio\s*\{")


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


def namespace_body(content):
    """Gives the inside of the namespace messaggio, or all of the text if there is none."""
    start = NAMESPACE.search(content)
    if not start:
        return content
    depth = 1
    for position in range(start.end(), len(content)):
        depth += {"{": 1, "}": -1}.get(content[position], 0)
        if depth == 0:
            return content[start.end():position]
    return content[start.end():]


def numbers_of(content, is_messages_header):
    """Gives pairs of a line and a message number that it names."""
    found = []
    for pattern in (CALL, MARKED):
        found += [(content.count("\n", 0, m.start()) + 1, int(m.group(1)))
                  for m in pattern.finditer(content)]
    if is_messages_header:
        body = namespace_body(content)
        offset = content.index(body)
        found += [(content.count("\n", 0, offset + m.start()) + 1, int(m.group(1)))
                  for m in CONSTANT.finditer(body)]
    return found


def used_numbers(source_folder):
    """Gives the places by message number, each place as 'file:line'."""
    used = {}
    for path in sorted(source_folder.rglob("*")):
        if path.suffix not in SOURCE_SUFFIXES or not path.is_file():
            continue
        relative = path.relative_to(source_folder)
        content = path.read_text(encoding="utf-8", errors="replace")
        for line, number in numbers_of(content, relative == MESSAGES_HEADER):
            used.setdefault(number, []).append(f"{source_folder.name}/{relative}:{line}")
    return used


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
    used = used_numbers(arguments.src)
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
