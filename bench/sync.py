#!/usr/bin/env python3
"""Times synchronisations of deterministic trees beside other programs, in one run on one machine.

    bench/sync.py                     all questions, medians of 5
    bench/sync.py equal crc           some of them
    bench/sync.py --install           installs the peers that are missing first
    bench/sync.py --runs 3 --data DIR --program FILE

Questions: equal crc different fill memory million. The two sides are copies of one tree with the dates kept, and both
are read once before, so caches are warm. Comparisons change nothing: every program is asked for its dry run, or has
nothing to do.
"""

import os
import pathlib
import shutil
import subprocess
import time

from bench import Cp, FreeFileSync, Rclone, Rsync, works
from common import Questions, Tandemize, answer, command_line, file_path, read_all, table, timed, trees, turns

PEERS = {
    "rsync": "rsync", "rclone": "rclone", "unison": "unison", "FreeFileSync": "freefilesync", "xvfb-run": "xvfb",
}


# --- programs: compare(left, right, by_content) gives a command and its environment --------------------------------


class TandemizeSync(Tandemize):
    def home(self, left, right, method):
        """A program folder whose profile synchronises `left` to `right`."""
        home = right.parent / f"{right.name} home {method}"
        if not home.exists():
            self.start(home)
            paths = [path + "\\" for path in self.path(home, left, right)]
            self.sync_profile(home, *paths, method)
        return home

    def compare(self, left, right, by_content):
        return self.command(self.home(left, right, 3 if by_content else 0), "sync", "--preview"), None

    def fill(self, left, right):
        right.mkdir(parents=True)
        return self.command(self.home(left, right, 0), "sync"), None


class RsyncDry(Rsync):
    name = "rsync -a"

    def compare(self, left, right, by_content):
        return ["rsync", "-anc" if by_content else "-an", f"{left}/", f"{right}/"], None

    fill = Rsync.first


class RcloneCheck(Rclone):
    name = "rclone"

    def compare(self, left, right, by_content):
        words = ["check"] if by_content else ["sync", "--dry-run"]
        return ["rclone", *words, "--quiet", str(left), str(right)], {"RCLONE_CONFIG": "/dev/null"}

    fill = Rclone.first


class Unison:
    """Keeps an archive of its own, so it compares each side with what it saw last; the content only when told."""

    name = "unison"

    def command(self, left, right, *words):
        home = right.parent / "unison home"
        home.mkdir(exist_ok=True)
        options = ["-batch", "-silent", "-ui", "text", "-times", "-confirmbigdel=false", "-fastcheck", *words]
        return ["unison", str(left), str(right), *options], {"UNISON": str(home), "HOME": str(home)}

    def compare(self, left, right, by_content):
        return self.command(left, right, "false" if by_content else "true")

    def fill(self, left, right):
        right.mkdir(parents=True)
        return self.command(left, right, "true")

    def first(self, source, target):
        target.mkdir(parents=True, exist_ok=True)
        return self.command(source, target, "true")


class FreeFileSyncCompare(FreeFileSync):
    def compare(self, left, right, by_content):
        command, env = self.first(left, right)
        batch = pathlib.Path(command[-1])
        if by_content:
            batch.write_text(batch.read_text().replace("<Variant>TimeAndSize</Variant>", "<Variant>Content</Variant>"))
        return command, env

    fill = FreeFileSync.first


class CpFill(Cp):
    fill = Cp.first


def peers(folder):
    found = [(RsyncDry, "rsync"), (RcloneCheck, "rclone"), (Unison, "unison"), (FreeFileSyncCompare, "FreeFileSync")]
    made = [kind() for kind, command in found if shutil.which(command)]
    return [peer for peer in made if works(peer, folder)]


# --- questions ----------------------------------------------------------------------------------------------------


class Bench(Questions):
    def __init__(self, arguments):
        self.data = pathlib.Path(arguments.data)
        self.targets = self.data / "sync targets"
        shutil.rmtree(self.targets, ignore_errors=True)
        self.targets.mkdir(parents=True)
        self.runs, self.settle = arguments.runs, arguments.settle
        self.tandemize = TandemizeSync(arguments.program)
        self.programs = [self.tandemize, *peers(self.targets)]
        self.trees = trees(self.data)

    def two_sides(self, tree_name):
        """The tree and a copy of it with the same dates."""
        left = self.trees[tree_name]()
        right = self.targets / f"{tree_name} right"
        if not right.exists():
            subprocess.run(["cp", "-a", str(left), str(right)], check=True)
        read_all(left)
        read_all(right)
        return left, right

    def compare(self, title, goal, left, right, by_content, programs=None, runs=None):
        programs = programs or self.programs
        for p in programs:  # the first comparison of a program that keeps an archive is another one
            timed(*p.compare(left, right, by_content))
        results = {p.name: [] for p in programs}
        for _, p in turns(programs, runs or self.runs):
            results[p.name].append(timed(*p.compare(left, right, by_content)))
        table(title, results, goal)

    def equal(self):
        left, right = self.two_sides("small")
        goal = "1.0 x rsync, 0.5 x FreeFileSync, 80 MB"
        self.compare("Two equal trees of 100,000 files, by date and size", goal, left, right, False)

    def crc(self):
        left, right = self.two_sides("small")
        self.compare("The same by content", "2 x rsync, 0.6 x FreeFileSync", left, right, True)

    def different(self):
        left, _ = self.two_sides("small")
        right = self.targets / "different"
        subprocess.run(["cp", "-a", str(left), str(right)], check=True)
        for folder in range(0, 2000, 2):
            path = file_path(right, folder, 7)
            path.write_bytes(path.read_bytes() + b"changed")
            os.utime(path, (1_500_000_000, 1_500_000_000))
        read_all(right)
        # A dry run of unison does not exist, and the batch of FreeFileSync would copy.
        dry = [p for p in self.programs if not isinstance(p, (Unison, FreeFileSync))]
        self.compare("1 % different, 100,000 files, by date and size", "1.0 x rsync", left, right, False, dry)

    def fill(self):
        left, _ = self.two_sides("small")
        programs = [*self.programs, CpFill()]
        results = {p.name: [] for p in programs}
        time.sleep(self.settle)
        for run, p in turns(programs, self.runs):
            results[p.name].append(timed(*p.fill(left, self.targets / f"{run} {p.name}")))
        table("First fill of an empty side, 100,000 files", results, "1.2 x cp, 0.9 x rsync, 0.5 x FreeFileSync")

    def memory(self):
        left, right = self.two_sides("small")
        goal = "80 MB, whatever is found"
        self.compare("Peak memory, 100,000 files a side", goal, left, right, False, [self.tandemize])
        empty = self.targets / "empty"
        empty.mkdir()
        self.compare("The same with one empty side", goal, left, empty, False, [self.tandemize], 1)

    def million(self):
        left, right = self.two_sides("million")
        goal = "600 MB, linear"
        programs = [p for p in self.programs if isinstance(p, (TandemizeSync, RsyncDry))]
        self.compare("Two equal trees of 1,000,000 empty files, by date and size", goal, left, right, False, programs, 3)
        self.compare("The same by content", goal, left, right, True, programs, 3)
        empty = self.targets / "empty million"
        empty.mkdir()
        self.compare("1,000,000 files against an empty side", goal, left, empty, False, programs, 1)


QUESTIONS = ["equal", "crc", "different", "fill", "memory", "million"]


def main():
    parser = command_line(__doc__, "build/run/src/tandemize-run", "10 GB", "seconds to wait before files are made")
    answer(parser, Bench, QUESTIONS, PEERS)


if __name__ == "__main__":
    main()
