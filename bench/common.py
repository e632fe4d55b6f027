"""What the benchmarks have in common: trees of test data, timed runs of programs, tables, and the command line."""

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


# --- runs of programs -------------------------------------------------------------------------------------------------


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


def turns(programs, runs):
    """The programs, `runs` times over; each run begins with another one."""
    for run in range(runs):
        first = run % len(programs)
        for program in programs[first:] + programs[:first]:
            yield run, program


class Tandemize:
    name = "tandemize-run"

    def __init__(self, program):
        self.program = str(program)

    def start(self, home):
        """Makes a new program folder."""
        subprocess.run(self.command(home, "init"), check=True)

    def path(self, home, *folders):
        """The folders in the program's notation."""
        command = self.command(home, "path", *map(str, folders))
        return subprocess.run(command, check=True, capture_output=True, text=True).stdout.splitlines()

    def write_profile(self, home, lines):
        (home / "Config.cfg").write_text("".join(line + "\r\n" for line in lines), newline="")

    def backup_profile(self, home, source, target, on_server=(False, False)):
        """Adds two objects to the profile, linked as source and target of a backup, given as paths in its notation."""
        lines = (home / "Config.cfg").read_text().splitlines()
        for k, (name, other, path, remote) in enumerate(
            [("Source", "Target", source, on_server[0]), ("Target", "Source", target, on_server[1])], start=1
        ):
            lines += [
                f"{k}BackIndice = {k}", f"{k}BackTipoOggetto = 0", f"{k}BackTipoTrasferimento = {k - 1}",
                f"{k}BackLinkTo0 = {other}", f"{k}BackDescrizione = {name}", f"{k}BackPath = {path}", f"{k}Files0 = ",
                f"{k}BackTop = 0", f"{k}BackLeft = 0", f"{k}BackHeight = 0", f"{k}BackWidth = 0",
                f"{k}BackFigura = {2 if remote else 0}",
                f"{k}BackFtpServerDescription = {'Server' if remote else ''}",
            ]
        self.write_profile(home, lines)

    def sync_profile(self, home, left, right, method=0, server=""):
        """A profile that synchronises `left` to `right`, which lies on the server if one is named."""
        self.write_profile(home, [
            f"Backup_Path_0 = {left}", f"Backup_Path_1 = {right}", "Backup_FTP_0 = ", f"Backup_FTP_1 = {server}",
            "FixFileOption = 2", "FixScanAfterFix = 0", f"FtpEnabled = {1 if server else 0}",
            f"CompareMethod = {method}", "TandemMode = 1", "SourceNotChange = 1", "EraseFile = 0", "AutoTandemize = 0",
        ])

    def command(self, home, *words):
        return [self.program, "--folder", str(home), *words]


# --- questions ----------------------------------------------------------------------------------------------------


class Questions:
    """A benchmark: a method for each question."""

    def end(self):
        """Comes last, whatever has happened."""


def table(title, results, goal=""):
    """Prints what `results` holds by program, and the ratio to ours."""
    ours = statistics.median(r.seconds for r in results[Tandemize.name])
    print(f"\n### {title}\n\n| program | median s | best s | peak MB | {Tandemize.name} / it |\n|---|---|---|---|---|")
    for name, runs in results.items():
        median = statistics.median(r.seconds for r in runs)
        best, peak = min(r.seconds for r in runs), max(r.peak_mb for r in runs)
        print(f"| {name} | {median:.2f} | {best:.2f} | {peak:.0f} | {ours / median:.2f} |")
    if goal:
        print(f"\nGoal: {goal}.")
    sys.stdout.flush()


def offer_peers(install, peers):
    missing = [package for command, package in peers.items() if not shutil.which(command)]
    if not missing:
        return
    if install:
        print("Installing for comparison:", " ".join(missing))
        subprocess.run(["apt-get", "install", "-y", "-q", *missing], check=True, stdout=subprocess.DEVNULL)
    else:
        print("Not installed, so not compared with (--install brings them):", " ".join(missing))


def command_line(description, program, data_size, settle=None):
    """The options that every benchmark has; `program` is its default, from the repository's root."""
    parser = argparse.ArgumentParser(description=description, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("questions", nargs="*", metavar="QUESTION")
    parser.add_argument("--runs", type=int, default=5)
    parser.add_argument("--data", default=HERE.parent / "build" / "bench", help=f"where the data lies ({data_size})")
    parser.add_argument("--program", default=HERE.parent / program)
    if settle:
        parser.add_argument("--settle", type=float, default=90, help=settle)
    parser.add_argument("--install", action="store_true", help="install missing peers with apt-get")
    return parser


def answer(parser, kind, questions, peers):
    """Reads the command line, makes a `kind` of its options, and asks it what was asked."""
    arguments = parser.parse_args()
    unknown = [q for q in arguments.questions if q not in questions]
    if unknown:
        parser.error(f"unknown question: {unknown[0]}")
    if not pathlib.Path(arguments.program).exists():
        sys.exit(f"{arguments.program} is not there: ./run builds it, or name one with --program")
    offer_peers(arguments.install, peers)
    bench = kind(arguments)
    try:
        for question in arguments.questions or questions:
            getattr(bench, question)()
    finally:
        bench.end()
