#!/usr/bin/env python3
"""Times the start of the desktop program up to its first window on the screen, beside an empty window of the toolkit.

A display of its own (Xvfb) with a window manager (openbox) is started. A window counts from the moment at which the
window manager lists it. Both programs take turns, each with one start before that is not counted; printed are medians,
best and worst in milliseconds.

    cmake --preset release -B build/bench -DTANDEMIZE_BENCH=ON -DTANDEMIZE_TESTS=OFF && cmake --build build/bench
    bench/startup.py --build build/bench [--runs 15]
"""

import argparse
import os
import re
import shutil
import statistics
import subprocess
import sys
import tempfile
import time
from pathlib import Path

GOAL = 500  # milliseconds
PATIENCE = 20  # seconds
WINDOW = re.compile(r"0x[0-9a-f]+")


class Display:
    """A display with a window manager, and what the manager says of the windows on it."""

    def __enter__(self):
        read, write = os.pipe()
        self.server = subprocess.Popen(
            ["Xvfb", "-displayfd", str(write), "-screen", "0", "1280x800x24", "-nolisten", "tcp"],
            pass_fds=[write], stderr=subprocess.DEVNULL)
        os.close(write)
        with os.fdopen(read) as lines:
            number = lines.readline().strip()
        if not number:
            sys.exit("Xvfb does not start")
        self.environment = {**os.environ, "DISPLAY": f":{number}", "QT_QPA_PLATFORM": "xcb"}
        self.manager = subprocess.Popen(["openbox", "--sm-disable"], env=self.environment, stderr=subprocess.DEVNULL)
        begin = time.monotonic()
        while "window id" not in self.ask("-root", "_NET_CLIENT_LIST"):
            if time.monotonic() - begin > PATIENCE:
                sys.exit("openbox does not start")
        # Tells each change of the list in a line, without being asked.
        self.watcher = subprocess.Popen(["xprop", "-root", "-spy", "_NET_CLIENT_LIST"], env=self.environment,
                                        stdout=subprocess.PIPE, text=True)
        self.read()
        return self

    def __exit__(self, *_):
        for process in (self.watcher, self.manager, self.server):
            process.terminate()
            process.wait()

    def read(self):
        return self.watcher.stdout.readline()

    def ask(self, *words):
        return subprocess.run(["xprop", *words], env=self.environment, capture_output=True, text=True,
                              check=False).stdout

    def name(self, window):
        return self.ask("-id", window, "WM_NAME").partition('"')[2].rstrip('"\n')

    def wait_for(self, some):
        """Waits until there are windows, or none; gives the last line's windows."""
        while True:
            windows = WINDOW.findall(self.read())
            if bool(windows) == some:
                return windows

    def start(self, command, title, environment):
        """Milliseconds from the start of a program to its first window."""
        begin = time.perf_counter()
        process = subprocess.Popen(command, env={**self.environment, **environment}, stderr=subprocess.DEVNULL)
        windows = self.wait_for(True)
        taken = (time.perf_counter() - begin) * 1000
        name = self.name(windows[0])
        process.terminate()
        try:
            process.wait(PATIENCE)
        except subprocess.TimeoutExpired:
            process.kill()
            process.wait()
        self.wait_for(False)
        if title not in name:
            sys.exit(f"the first window of {command[0]} is '{name}'")
        return taken


def filled_home(build, folder):
    home = Path(folder) / "home"
    subprocess.run([build / "src/tandemize-run", "--folder", home, "init"], check=True, stdout=subprocess.DEVNULL)
    return home


def report(name, times):
    print(f"{name:16} median {statistics.median(times):6.0f}   best {min(times):6.0f}   worst {max(times):6.0f}")


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("--build", type=Path, required=True, help="build folder with -DTANDEMIZE_BENCH=ON")
    parser.add_argument("--runs", type=int, default=15)
    arguments = parser.parse_args()
    for program in ("Xvfb", "openbox", "xprop"):
        if shutil.which(program) is None:
            sys.exit(f"{program} is not installed (packages xvfb, openbox, x11-utils)")
    build = arguments.build.resolve()
    with tempfile.TemporaryDirectory() as folder, Display() as display:
        own = {"TANDEMIZE_HOME": str(filled_home(build, folder)), "HOME": folder}
        candidates = {
            "tandemize": ([build / "src/tandemize"], "Tandemize Backup", own),
            "empty window": ([build / "bench/tandemize-emptywindow"], "Empty window", {"HOME": folder}),
        }
        times = {name: [] for name in candidates}
        for turn in range(arguments.runs + 1):
            for name, candidate in candidates.items():
                taken = display.start(*candidate)
                if turn > 0:
                    times[name].append(taken)
    for name, values in times.items():
        report(name, values)
    print(f"goal {GOAL} ms: {'reached' if statistics.median(times['tandemize']) <= GOAL else 'missed'}")


if __name__ == "__main__":
    main()
