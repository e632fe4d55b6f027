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

import argparse
import os
import pathlib
import random
import shutil
import statistics
import subprocess
import sys
import time

HERE = pathlib.Path(__file__).resolve().parent
PEERS = {"rsync": "rsync", "rclone": "rclone", "FreeFileSync": "freefilesync", "strace": "strace", "xvfb-run": "xvfb"}


# --- data ---------------------------------------------------------------------------------------------------------


def make_tree(folder, folders, files, size_of):
    """`files` files in `folders` folders; `size_of(random)` gives each one's size. The same bytes on every machine."""
    if folder.exists():
        return folder
    # In a process of its own: a child's peak memory as the system tells it begins with its parent's.
    child = os.fork()
    if child == 0:
        fill_tree(folder, folders, files, size_of)
        os._exit(0)
    if os.waitpid(child, 0)[1] != 0:
        sys.exit(f"{folder} could not be made")
    os.sync()
    return folder


def fill_tree(folder, folders, files, size_of):
    rng = random.Random(42)
    block = rng.randbytes(8 << 20)
    part = folder.with_suffix(".part")
    shutil.rmtree(part, ignore_errors=True)
    per_folder = files // folders
    for d in range(folders):
        file_path(part, d, 0).parent.mkdir(parents=True)
        for f in range(per_folder):
            size = size_of(rng)
            start = rng.randrange(len(block) - size) if 0 < size < len(block) else 0
            with open(file_path(part, d, f), "wb") as out:
                while size > 0:
                    size -= out.write(block[start : start + min(size, len(block))])
                    start = 0
    part.rename(folder)


def file_path(tree, folder, file):
    return tree / f"group {folder // 100:02d}" / f"folder {folder:05d}" / f"file {file:04d}.dat"


def trees(data):
    return {
        "small": lambda: make_tree(data / "small", 2000, 100_000, lambda r: r.randrange(8193)),
        "few": lambda: make_tree(data / "few", 200, 10_000, lambda r: r.randrange(8193)),
        "mixed": lambda: make_tree(data / "mixed", 200, 10_000, lambda r: int(5 * 2**20 * r.random() ** 40)),
        "big": lambda: make_tree(data / "big", 1, 2, lambda r: 2560 * 2**20),
        "million": lambda: make_tree(data / "million", 2000, 1_000_000, lambda r: 0),
    }


def read_all(tree):
    subprocess.run(["find", str(tree), "-type", "f", "-exec", "cat", "{}", "+"], stdout=subprocess.DEVNULL, check=True)


# --- programs -----------------------------------------------------------------------------------------------------


class Failed(Exception):
    pass


class Result:
    def __init__(self, seconds, peak_kb):
        self.seconds, self.peak_mb = seconds, peak_kb / 1024


def timed(command, env=None):
    os.sync()
    begin = time.perf_counter()
    pid = os.posix_spawnp(
        command[0],
        command,
        {**os.environ, **(env or {})},
        file_actions=[
            (os.POSIX_SPAWN_OPEN, 1, "/dev/null", os.O_WRONLY, 0),
            (os.POSIX_SPAWN_OPEN, 2, "/dev/null", os.O_WRONLY, 0),
        ],
    )
    _, status, usage = os.wait4(pid, 0)
    seconds = time.perf_counter() - begin
    if os.waitstatus_to_exitcode(status) != 0:
        raise Failed(f"status {os.waitstatus_to_exitcode(status)} from {' '.join(command)}")
    return Result(seconds, usage.ru_maxrss)


class Tandemize:
    name = "tandemize-run"

    def __init__(self, program):
        self.program = str(program)

    def profile(self, home, source, target):
        """A program folder whose profile copies `source` to `target`."""
        target.mkdir(parents=True, exist_ok=True)
        subprocess.run([self.program, "--folder", str(home), "init"], check=True)
        paths = subprocess.run(
            [self.program, "--folder", str(home), "path", str(source), str(target)],
            check=True, capture_output=True, text=True,
        ).stdout.splitlines()
        lines = (home / "Config.cfg").read_text().splitlines()
        for number, (name, other, path) in enumerate(
            [("Source", "Target", paths[0]), ("Target", "Source", paths[1])], start=1
        ):
            lines += [
                f"{number}BackIndice = {number}", f"{number}BackTipoOggetto = 0",
                f"{number}BackTipoTrasferimento = {number - 1}", f"{number}BackLinkTo0 = {other}",
                f"{number}BackDescrizione = {name}", f"{number}BackPath = {path}", f"{number}Files0 = ",
                f"{number}BackTop = 0", f"{number}BackLeft = 0", f"{number}BackHeight = 0",
                f"{number}BackWidth = 0", f"{number}BackFigura = 0", f"{number}BackFtpServerDescription = ",
            ]
        (home / "Config.cfg").write_text("".join(line + "\r\n" for line in lines), newline="")

    def command(self, home, *words):
        return [self.program, "--folder", str(home), *words]

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


class Bench:
    def __init__(self, arguments):
        self.data = pathlib.Path(arguments.data)
        self.data.mkdir(parents=True, exist_ok=True)
        self.runs = arguments.runs
        self.settle_time = arguments.settle
        self.cleared = -1e9
        self.clear()
        self.tandemize = Tandemize(arguments.program)
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

    def table(self, title, results, goals=""):
        ours = statistics.median(r.seconds for r in results[self.tandemize.name])
        print(f"\n### {title}\n\n| program | median s | best s | peak MB | tandemize-run / it |\n|---|---|---|---|---|")
        for name, runs in results.items():
            median = statistics.median(r.seconds for r in runs)
            best = min(r.seconds for r in runs)
            peak = max(r.peak_mb for r in runs)
            print(f"| {name} | {median:.2f} | {best:.2f} | {peak:.0f} | {ours / median:.2f} |")
        if goals:
            print(f"\nGoal: {goals}.")
        sys.stdout.flush()

    def first_backup(self, tree_name, title, goals):
        source = self.trees[tree_name]()
        read_all(source)
        self.settle()
        results = {p.name: [] for p in self.programs}
        for run in range(self.runs):
            for p in self.programs[run % len(self.programs) :] + self.programs[: run % len(self.programs)]:
                target = self.fresh(p.name)
                target.parent.mkdir(exist_ok=True)
                command, env = p.first(source, target)
                results[p.name].append(timed(command, env))
                if tree_name == "big":  # two files: their removal costs the next run nothing
                    shutil.rmtree(target)
        self.table(title, results, goals)
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
        self.table(title, results, goals)
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
        self.table("Planning alone, 100,000 files", results)
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
        self.table("CRC of a cached file of 2.5 GiB", results, "1.3 x the time of reading it")

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


def offer_peers(install, peers):
    missing = [package for command, package in peers.items() if not shutil.which(command)]
    if not missing:
        return
    if install:
        print("Installing for comparison:", " ".join(missing))
        subprocess.run(["apt-get", "install", "-y", "-q", *missing], check=True, stdout=subprocess.DEVNULL)
    else:
        print("Not installed, so not compared with (--install brings them):", " ".join(missing))


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("questions", nargs="*", metavar="QUESTION")
    parser.add_argument("--runs", type=int, default=5)
    parser.add_argument("--data", default=HERE.parent / "build" / "bench", help="where data and targets lie (40 GB)")
    parser.add_argument("--program", default=HERE.parent / "build" / "release" / "src" / "tandemize-run")
    parser.add_argument("--settle", type=float, default=90, help="seconds to wait after a removal of targets")
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
