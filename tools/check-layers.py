#!/usr/bin/env python3
"""Checks that the layers of src/ know only the ones before them.

The layers are platform/, then the engines (every other folder but programs/), then the windows/ folders of the
engines, then programs/. The link parts them as well, but a header alone links nothing, so this reads the #include
lines:

- the headers of the machine (<unistd.h>, <sys/...>, <windows.h> ...) are for the folders of platform/ that answer for
  one system, such as platform/posix/. Elsewhere in src/ a file includes in <> the C++ standard library and the
  libraries of its layer, nothing else; programs/ may include what it likes;
- the toolkit's headers (<QWidget>, <QtGui/...>) are for windows/ folders and programs/;
- platform/ includes in "" only platform/; an engine includes no windows/ and nothing of one system's folder; nobody
  includes programs/.

Ends with status 1 and one line a fault: file, line number, what is wrong.
"""

import argparse
import re
import sys
from pathlib import Path

SUFFIXES = {".cpp", ".h", ".inl"}
INCLUDE = re.compile(r'^\s*#\s*include\s*([<"])([^>"]+)[>"]')
TOOLKIT = re.compile(r"^(Qt?[A-Z][A-Za-z]*)(/.*)?$|^q[a-z]+\.h$")
ENGINE_LIBRARIES = {"libdeflate.h", "utf8proc.h"}

STANDARD_LIBRARY = set(
    """algorithm any array atomic barrier bit bitset cassert cctype cerrno cfenv cfloat charconv chrono cinttypes
    climits clocale cmath codecvt compare complex concepts condition_variable coroutine csetjmp csignal cstdarg cstddef
    cstdint cstdio cstdlib cstring ctime cuchar cwchar cwctype deque exception execution filesystem format forward_list
    fstream functional future initializer_list iomanip ios iosfwd iostream istream iterator latch limits list locale
    map memory memory_resource mutex new numbers numeric optional ostream queue random ranges ratio regex
    scoped_allocator semaphore set shared_mutex source_location span sstream stack stdexcept stop_token streambuf
    string string_view strstream syncstream system_error thread tuple type_traits typeindex typeinfo unordered_map
    unordered_set utility valarray variant vector version""".split()
)


def layer_of(folders):
    """Names the layer of a file by the folders it lies in below src/."""
    if "programs" in folders[:1]:
        return "programs"
    if "windows" in folders:
        return "windows"
    if "platform" in folders[:1]:
        return "platform" if len(folders) == 1 else "host"
    return "engine"


def angle_fault(layer, name):
    """Gives what is wrong with including <name> in the layer, or nothing."""
    if layer == "programs":
        return None
    if TOOLKIT.match(name):
        return None if layer == "windows" else f"<{name}> is the toolkit's; only windows/ includes it"
    if layer == "host" or name in STANDARD_LIBRARY:
        return None
    if layer in ("engine", "windows") and name in ENGINE_LIBRARIES:
        return None
    return f"<{name}> is neither the standard library nor a library of this layer; ask platform/ for what it gives"


def quote_fault(layer, name):
    """Gives what is wrong with including "name" in the layer, or nothing."""
    target = layer_of(name.split("/")[:-1])
    if "/" not in name:
        return f'"{name}" does not tell its folder below src/'
    if target == "programs" and layer != "programs":
        return f'"{name}": nobody includes programs/'
    if layer in ("platform", "host"):
        if target not in ("platform", "host"):
            return f'"{name}": platform/ knows no layer above it'
        if layer == "platform" and target == "host":
            return f'"{name}": the services\' headers know no single system'
        return None
    if target == "host":
        return f'"{name}" belongs to one system; include the service\'s header in platform/'
    if layer == "engine" and target == "windows":
        return f'"{name}": an engine runs without windows'
    return None


def faults_of(path, folders):
    layer = layer_of(folders)
    for number, line in enumerate(path.read_text(encoding="utf-8").splitlines(), 1):
        match = INCLUDE.match(line)
        if not match:
            continue
        kind, name = match.groups()
        fault = angle_fault(layer, name) if kind == "<" else quote_fault(layer, name)
        if fault:
            yield number, fault


def main():
    parser = argparse.ArgumentParser(description="Checks that the layers of src/ know only the ones before them.")
    parser.add_argument("--root", type=Path, default=Path(__file__).resolve().parent.parent, help="the top folder")
    source = parser.parse_args().root / "src"
    files = sorted(path for path in source.rglob("*") if path.suffix in SUFFIXES)
    if not files:
        print(f"{source}: no sources found", file=sys.stderr)
        return 1
    wrong = 0
    for path in files:
        relative = path.relative_to(source)
        for number, fault in faults_of(path, relative.parts[:-1]):
            print(f"src/{relative}:{number}: {fault}")
            wrong += 1
    print(f"{len(files)} files, {wrong} includes against the layers")
    return 1 if wrong else 0


if __name__ == "__main__":
    sys.exit(main())
