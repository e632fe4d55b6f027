#!/usr/bin/env python3
"""Times backups of deterministic trees beside other programs, in one run on one machine.

    bench/bench.py                  all questions, medians of 5
    bench/bench.py small crc        some of them
    bench/bench.py --install        installs the peers that are missing first
    bench/bench.py --runs 3 --data DIR --program FILE

Questions: small mixed big (first full backup), same changed (incremental), plan, crc, memory, calls, million.
Every timed first backup goes to a fresh target: on ext4, files made within some minutes of a mass deletion nearby cost
many times more. Targets are removed when a question has been answered, and the next one waits (--settle) until that
has been forgotten. The source is read once before, so caches are warm.
"""

import os
import pathlib
import shutil
import subprocess
import time

from common import (
    Failed, Questions, Tandemize, answer, command_line, file_path, read_all, table, timed, trees, turns,
)

PEERS = {"rsync": "rsync", "rclone": "rclone", "FreeFileSync": "freefilesync", "strace": "strace", "xvfb-run": "xvfb"}


# --- programs -----------------------------------------------------------------------------------------------------


class TandemizeBackup(Tandemize):
    def profile(self, home, source, target):
        """A program folder whose profile copies `source` to `target`."""
        target.mkdir(parents=True, exist_ok=True)
        self.start(home)
        self.backup_profile(home, *self.path(home, source, target))

    def first(self, source, target):
        home = target.parent / (target.name + " home")
        self.profile(home, source, target)
        return self.command(home, "backup", "--type", "full"), None

    def again(self, source, target):
        return self.command(target.parent / (target.name + " home"), "backup", "--type", "incremental"), None


class Cp:
    name = "cp -a"

    def first(self, source, target):
        return ["cp", "-a", str(source), str(target)], None

    def again(self, source, target):
        return ["cp", "-au", f"{source}/.", str(target)], None


class Rsync:
    name = "rsync -a"

    def first(self, source, target):
        return ["rsync", "-a", f"{source}/", f"{target}/"], None

    again = first


class Rclone:
    name = "rclone"

    def first(self, source, target):
        return ["rclone", "copy", "--quiet", str(source), str(target)], {"RCLONE_CONFIG": "/dev/null"}

    again = first


class FreeFileSync:
    name = "FreeFileSync"

    def first(self, source, target):
        target.mkdir(parents=True, exist_ok=True)
        batch = target.parent / (target.name + ".ffs_batch")
        batch.write_text(
            f"""<?xml version="1.0" encoding="utf-8"?>
<FreeFileSync XmlType="BATCH" XmlFormat="17">
 <Compare><Variant>TimeAndSize</Variant><Symlinks>Exclude</Symlinks><IgnoreTimeShift/></Compare>
 <Synchronize><Variant>Update</Variant><DetectMovedFiles>false</DetectMovedFiles><DeletionPolicy>Permanent</DeletionPolicy><VersioningFolder Style="Replace"/></Synchronize>
 <Filter><Include><Item>*</Item></Include><Exclude/><SizeMin Unit="None">0</SizeMin><SizeMax Unit="None">0</SizeMax><TimeSpan Type="None">0</TimeSpan></Filter>
 <FolderPairs><Pair><Left>{source}</Left><Right>{target}</Right></Pair></FolderPairs>
 <PostSyncCommand Condition="Completion"/><LogFolder/><EmailNotification Condition="Always"/>
 <Errors Ignore="false" Retry="0" Delay="0"/>
 <Batch><ProgressDialog Minimized="true" AutoClose="true"/><ErrorDialog>Cancel</ErrorDialog><PostSyncAction>None</PostSyncAction></Batch>
</FreeFileSync>
"""
        )
        home = target.parent / "ffs-home"
        home.mkdir(exist_ok=True)
        return ["xvfb-run", "-a", "FreeFileSync", str(batch)], {"HOME": str(home)}

    again = first


def works(peer, folder):
    """Whether a peer copies one file here; one that cannot is left out and said so."""
    source, target = folder / "try source", folder / f"try {peer.name}"
    source.mkdir(parents=True, exist_ok=True)
    (source / "file").write_text("x")
    try:
        timed(*peer.first(source, target))
        return True
    except Failed as failure:
        print(f"{peer.name} does not work here and is left out: {failure}")
        return False


def peers():
    found = [Cp()]
    if shutil.which("rsync"):
        found.append(Rsync())
    if shutil.which("rclone"):
        found.append(Rclone())
    if shutil.which("FreeFileSync") and shutil.which("xvfb-run"):
        found.append(FreeFileSync())
    return found


# --- questions ----------------------------------------------------------------------------------------------------


class Bench(Questions):
    def __init__(self, arguments):
        self.data = pathlib.Path(arguments.data)
        self.data.mkdir(parents=True, exist_ok=True)
        self.runs = arguments.runs
        self.settle_time = arguments.settle
        self.cleared = -1e9
        self.clear()
        self.tandemize = TandemizeBackup(arguments.program)
        self.peers = [peer for peer in peers() if works(peer, self.data / "targets")]
        self.programs = [self.tandemize, *self.peers]
        self.trees = trees(self.data)
        self.number = 0

    def fresh(self, name):
        self.number += 1
        return self.data / "targets" / f"{self.number:03d} {name}"

    def clear(self):
        targets = self.data / "targets"
        if targets.exists():
            shutil.rmtree(targets, ignore_errors=True)
            os.sync()
            self.cleared = time.monotonic()

    def settle(self):
        time.sleep(max(0.0, self.cleared + self.settle_time - time.monotonic()))

    def first_backup(self, tree_name, title, goals):
        source = self.trees[tree_name]()
        read_all(source)
        self.settle()
        results = {p.name: [] for p in self.programs}
        for _, p in turns(self.programs, self.runs):
            target = self.fresh(p.name)
            target.parent.mkdir(exist_ok=True)
            command, env = p.first(source, target)
            results[p.name].append(timed(command, env))
            if tree_name == "big":  # two files: their removal costs the next run nothing
                shutil.rmtree(target)
        table(title, results, goals)
        self.clear()

    def small(self):
        self.first_backup("small", "First full backup, 100,000 small files", "1.2 x cp, 0.9 x rsync, 0.5 x FreeFileSync")

    def mixed(self):
        self.first_backup("mixed", "First full backup, 10,000 mixed files", "1.1 x cp")

    def big(self):
        self.first_backup("big", "First full backup, two files of 2.5 GiB", "1.05 x cp")

    def saved_targets(self, source):
        self.settle()
        targets = {}
        for p in self.programs:
            target = targets[p.name] = self.fresh(p.name)
            target.parent.mkdir(exist_ok=True)
            timed(*p.first(source, target))
        return targets

    def incremental(self, title, goals, change):
        source = self.trees["small"]()
        if change:  # the changes go to a copy, so that the tree stays what it is
            source = self.fresh("source")
            source.parent.mkdir(exist_ok=True)
            subprocess.run(["cp", "-a", str(self.data / "small"), str(source)], check=True)
        read_all(source)
        targets = self.saved_targets(source)
        results = {p.name: [] for p in self.programs}
        for run in range(self.runs):
            for folder in range(run % 2, 2000, 2) if change else []:
                path = file_path(source, folder, run)
                path.write_bytes(path.read_bytes() + b"changed")
                os.utime(path, (run * 10, 1_700_000_000 + run * 10))
            for p in self.programs:
                results[p.name].append(timed(*p.again(source, targets[p.name])))
        table(title, results, goals)
        self.clear()

    def same(self):
        self.incremental("Incremental, nothing changed, 100,000 files", "0.8 x rsync", False)

    def changed(self):
        self.incremental("Incremental, 1 % changed, 100,000 files", "0.9 x rsync", True)

    def plan(self):
        source = self.trees["small"]()
        target = self.fresh("plan")
        self.tandemize.profile(target.parent / "plan home", source, target)
        command = self.tandemize.command(target.parent / "plan home", "backup", "--type", "full", "--preview")
        results = {self.tandemize.name: [timed(command) for _ in range(self.runs)]}
        results["find -size +1G (a bare walk)"] = [timed(["find", str(source), "-size", "+1G"]) for _ in range(self.runs)]
        table("Planning alone, 100,000 files", results)
        self.clear()

    def crc(self):
        big = next(p for p in self.trees["big"]().rglob("*") if p.is_file())
        read_all(big.parent)
        command = [self.tandemize.program, "crc", str(big)]
        reading = ["dd", f"if={big}", "of=/dev/null", "bs=1M"]
        results = {self.tandemize.name: [], "dd bs=1M (reading)": []}
        for _ in range(self.runs):
            results[self.tandemize.name].append(timed(command))
            results["dd bs=1M (reading)"].append(timed(reading))
        table("CRC of a cached file of 2.5 GiB", results, "1.3 x the time of reading it")

    def memory_of(self, tree_name, files, goal):
        source = self.trees[tree_name]()
        target = self.fresh("memory")
        target.parent.mkdir(exist_ok=True)
        first = timed(*self.tandemize.first(source, target))
        second = timed(*self.tandemize.again(source, target))
        print(f"| {files} | {first.peak_mb:.0f} | {second.peak_mb:.0f} | {goal} | {first.seconds:.2f} | {second.seconds:.2f} |")
        self.clear()

    def memory(self):
        print("\n### Peak memory\n\n| files | first full MB | nothing changed MB | goal MB | first s | second s |\n|---|---|---|---|---|---|")
        self.memory_of("small", "100,000", 60)

    def million(self):
        print("\n### 1,000,000 empty files\n\n| files | first full MB | nothing changed MB | goal MB | first s | second s |\n|---|---|---|---|---|---|")
        self.memory_of("million", "1,000,000", 400)

    def calls(self):
        if not shutil.which("strace"):
            return print("\nstrace is not installed: system calls were not counted.")
        source = self.trees["few"]()
        print("\n### System calls a file, 10,000 small files\n\n| program | first run | nothing changed |\n|---|---|---|")
        for p in [self.tandemize, *[q for q in self.peers if q.name in ("cp -a", "rsync -a")]]:
            target = self.fresh(p.name)
            target.parent.mkdir(exist_ok=True)
            counts = [self.count_calls(p.first(source, target)), self.count_calls(p.again(source, target))]
            print(f"| {p.name} | {counts[0] / 10_000:.1f} | {counts[1] / 10_000:.1f} |")
        print("\nGoal: 20 and 4.")
        self.clear()

    def count_calls(self, how):
        command, env = how
        out = self.data / "strace.txt"
        timed(["strace", "-f", "-c", "-o", str(out), *command], env)
        return int(next(line.split()[3] for line in reversed(out.read_text().splitlines()) if line.endswith("total")))


QUESTIONS = ["small", "mixed", "big", "same", "changed", "plan", "crc", "memory", "calls", "million"]


def main():
    parser = command_line(
        __doc__, "build/release/src/tandemize-run", "40 GB, targets too", "seconds to wait after a removal of targets"
    )
    answer(parser, Bench, QUESTIONS, PEERS)


if __name__ == "__main__":
    main()
