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

import argparse
import os
import pathlib
import shutil
import statistics
import subprocess
import sys
import time

from bench import (
    HERE, Cp, FreeFileSync, Rclone, Rsync, Tandemize, file_path, offer_peers, read_all, timed, trees, works,
)

PEERS = {
    "rsync": "rsync", "rclone": "rclone", "unison": "unison", "FreeFileSync": "freefilesync", "xvfb-run": "xvfb",
}


# --- programs: compare(left, right, by_content) gives a command and its environment --------------------------------


class TandemizeSync(Tandemize):
    def home(self, left, right, method):
        """A program folder whose profile synchronises `left` to `right`."""
        home = right.parent / f"{right.name} home {method}"
        if not home.exists():
            subprocess.run([self.program, "--folder", str(home), "init"], check=True)
            paths = subprocess.run(
                [self.program, "--folder", str(home), "path", str(left), str(right)],
                check=True, capture_output=True, text=True,
            ).stdout.splitlines()
            lines = [f"Backup_Path_{n} = {path}\\" for n, path in enumerate(paths)]
            lines += ["Backup_FTP_0 =", "Backup_FTP_1 =", "FixFileOption = 2", "FixScanAfterFix = 0", "FtpEnabled = 0"]
            lines += [f"CompareMethod = {method}", "TandemMode = 1", "SourceNotChange = 1", "EraseFile = 0"]
            lines += ["AutoTandemize = 0"]
            (home / "Config.cfg").write_text("".join(line + "\r\n" for line in lines), newline="")
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


class Bench:
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

    def table(self, title, results, goal):
        ours = statistics.median(r.seconds for r in results[self.tandemize.name])
        print(f"\n### {title}\n\n| program | median s | best s | peak MB | tandemize-run / it |\n|---|---|---|---|---|")
        for name, runs in results.items():
            median = statistics.median(r.seconds for r in runs)
            best, peak = min(r.seconds for r in runs), max(r.peak_mb for r in runs)
            print(f"| {name} | {median:.2f} | {best:.2f} | {peak:.0f} | {ours / median:.2f} |")
        print(f"\nGoal: {goal}.")
        sys.stdout.flush()

    def compare(self, title, goal, left, right, by_content, programs=None, runs=None):
        programs = programs or self.programs
        for p in programs:  # the first comparison of a program that keeps an archive is another one
            timed(*p.compare(left, right, by_content))
        results = {p.name: [] for p in programs}
        for run in range(runs or self.runs):
            for p in programs[run % len(programs) :] + programs[: run % len(programs)]:
                results[p.name].append(timed(*p.compare(left, right, by_content)))
        self.table(title, results, goal)

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
        for run in range(self.runs):
            for p in programs[run % len(programs) :] + programs[: run % len(programs)]:
                results[p.name].append(timed(*p.fill(left, self.targets / f"{run} {p.name}")))
        self.table("First fill of an empty side, 100,000 files", results, "1.2 x cp, 0.9 x rsync, 0.5 x FreeFileSync")

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
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("questions", nargs="*", metavar="QUESTION")
    parser.add_argument("--runs", type=int, default=5)
    parser.add_argument("--data", default=HERE.parent / "build" / "bench", help="where the trees lie (10 GB)")
    parser.add_argument("--program", default=HERE.parent / "build" / "run" / "src" / "tandemize-run")
    parser.add_argument("--settle", type=float, default=90, help="seconds to wait before files are made")
    parser.add_argument("--install", action="store_true", help="install missing peers with apt-get")
    arguments = parser.parse_args()
    unknown = [q for q in arguments.questions if q not in QUESTIONS]
    if unknown:
        parser.error(f"unknown question: {unknown[0]}")
    if not pathlib.Path(arguments.program).exists():
        sys.exit(f"{arguments.program} is not there: ./run builds it, or name one with --program")
    offer_peers(arguments.install, PEERS)
    bench = Bench(arguments)
    for question in arguments.questions or QUESTIONS:
        getattr(bench, question)()


if __name__ == "__main__":
    main()
