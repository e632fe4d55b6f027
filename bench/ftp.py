#!/usr/bin/env python3
"""Times transfers to and from one vsftpd on this machine beside other programs, in one run.

    bench/ftp.py                      all questions, medians of 5
    bench/ftp.py small big            some of them
    bench/ftp.py --install            installs the peers and the server that are missing first
    bench/ftp.py --runs 3 --data DIR --program FILE

Questions: small big compare commands. `small` moves 2,000 small files up and down, `big` one file of 1 GiB, `compare`
looks at 10,000 files of which none has changed, `commands` counts what each program says on the control connection.
Every program has one connection for its transfers; rclone and lftp are told so. Every upload goes to a fresh folder of
the server and every download to a fresh one here, and caches are warm.
"""

import getpass
import os
import pathlib
import shutil
import socket
import subprocess
import sys
import threading
import time

from common import (
    Failed, Questions, Tandemize, answer, command_line, make_tree, read_all, table, timed, trees, turns,
)

PEERS = {"lftp": "lftp", "rclone": "rclone", "curl": "curl", "vsftpd": "vsftpd"}
USER, PASSWORD = "anonymous", "bench@example.org"


# --- the server ---------------------------------------------------------------------------------------------------


def free_port():
    with socket.socket() as s:
        s.bind(("127.0.0.1", 0))
        return s.getsockname()[1]


class Server:
    """vsftpd without rights of its own. Its paths are this machine's, since it changes no root."""

    def __init__(self, folder):
        self.folder, self.port = folder, free_port()
        shutil.rmtree(folder, ignore_errors=True)
        (folder / "empty").mkdir(parents=True)
        self.files = folder / "files"
        self.files.mkdir()
        root = folder / "root"
        root.mkdir()
        root.chmod(0o555)
        settings = folder / "vsftpd.conf"
        settings.write_text("".join(f"{key}={value}\n" for key, value in {
            "listen": "YES", "listen_address": "127.0.0.1", "listen_port": self.port, "background": "NO",
            "run_as_launching_user": "YES", "seccomp_sandbox": "NO", "anonymous_enable": "YES",
            "no_anon_password": "YES", "anon_upload_enable": "YES", "anon_mkdir_write_enable": "YES",
            "anon_other_write_enable": "YES", "anon_umask": "022", "write_enable": "YES",
            "ftp_username": getpass.getuser(), "anon_root": root, "secure_chroot_dir": folder / "empty",
        }.items()))
        program = shutil.which("vsftpd") or "/usr/sbin/vsftpd"
        self.process = subprocess.Popen([program, str(settings)], stderr=subprocess.DEVNULL)
        for _ in range(100):
            with socket.socket() as s:
                if s.connect_ex(("127.0.0.1", self.port)) == 0:
                    return
            time.sleep(0.05)
        sys.exit("vsftpd did not start")

    def end(self):
        self.process.terminate()
        self.process.wait()


class CountingProxy:
    """Passes control connections on to the server and counts the lines that the clients send."""

    def __init__(self, port):
        self.target, self.lines = port, 0
        self.listener = socket.create_server(("127.0.0.1", 0))
        self.port = self.listener.getsockname()[1]
        threading.Thread(target=self.accept, daemon=True).start()

    def accept(self):
        while True:
            client, _ = self.listener.accept()
            server = socket.create_connection(("127.0.0.1", self.target))
            for s in (client, server):
                s.setsockopt(socket.IPPROTO_TCP, socket.TCP_NODELAY, 1)
            threading.Thread(target=self.pass_on, args=(client, server, True), daemon=True).start()
            threading.Thread(target=self.pass_on, args=(server, client, False), daemon=True).start()

    def pass_on(self, source, target, count):
        try:
            while data := source.recv(65536):
                self.lines += data.count(b"\n") if count else 0
                target.sendall(data)
        except OSError:
            pass
        for s in (source, target):
            try:
                s.shutdown(socket.SHUT_RDWR)
            except OSError:
                pass


# --- programs: up(port, local, remote), down(port, remote, local), compare(port, local, remote) --------------------


class TandemizeFtp(Tandemize):
    number = 0

    def home(self, port, folder):
        self.number += 1
        home = folder.parent / f"{self.number:03d} home"
        self.start(home)
        with open(home / "GlobalSetting.dat", "a", newline="") as out:
            out.write(f"Ftp_Description0 = Server\r\nFtp_Server_Name0 = 127.0.0.1:{port}\r\nFtp_User0 = {USER}\r\n")
            out.write(f"Ftp_Password0 = {PASSWORD}\r\nFtp_PassiveMode0 = 1\r\n")
        return home

    def backup(self, home, source, target, on_server):
        self.backup_profile(home, source, target, on_server)
        return self.command(home, "backup"), {"TANDEMIZE_NETWORK": "up"}

    def up(self, port, local, remote):
        home = self.home(port, remote)
        return self.backup(home, *self.path(home, local), remote, (False, True))

    def down(self, port, remote, local):
        home = self.home(port, local)
        return self.backup(home, remote, *self.path(home, local), (True, False))

    def compare(self, port, local, remote):
        home = self.home(port, remote)
        self.sync_profile(home, self.path(home, local)[0] + "\\", f"{remote}/", server="Server")
        return self.command(home, "sync", "--preview"), {"TANDEMIZE_NETWORK": "up"}


class Lftp:
    name = "lftp"

    def script(self, port, words):
        settings = "set net:connection-limit 1; set mirror:parallel-transfer-count 1; set cmd:fail-exit true; "
        return ["lftp", "-u", f"{USER},{PASSWORD}", "-p", str(port), "127.0.0.1", "-e", f"{settings}{words}; quit"], None

    def up(self, port, local, remote):
        return self.script(port, f'mirror -R "{local}" "{remote}"')

    def down(self, port, remote, local):
        return self.script(port, f'mirror "{remote}" "{local}"')

    def compare(self, port, local, remote):
        return self.script(port, f'mirror -R --dry-run "{local}" "{remote}"')


class Rclone:
    name = "rclone"

    def __init__(self):
        command = ["rclone", "obscure", PASSWORD]
        self.password = subprocess.run(command, check=True, capture_output=True, text=True).stdout.strip()

    def run(self, port, words, source, target):
        env = {
            "RCLONE_CONFIG": "/dev/null", "RCLONE_CONFIG_BENCH_TYPE": "ftp", "RCLONE_CONFIG_BENCH_HOST": "127.0.0.1",
            "RCLONE_CONFIG_BENCH_PORT": str(port), "RCLONE_CONFIG_BENCH_USER": USER,
            "RCLONE_CONFIG_BENCH_PASS": self.password,
        }
        return ["rclone", *words, "--quiet", "--transfers", "1", str(source), str(target)], env

    def up(self, port, local, remote):
        return self.run(port, ["copy"], local, f"bench:{remote}")

    def down(self, port, remote, local):
        return self.run(port, ["copy"], f"bench:{remote}", local)

    def compare(self, port, local, remote):
        return self.run(port, ["sync", "--dry-run", "--size-only"], local, f"bench:{remote}")


class Curl:
    """Is told every file by name and finds the folders made, so it says nothing about trees: the big file alone."""

    name = "curl"

    def run(self, port, pairs, home, upload):
        lines = ["silent", "fail", f'user = "{USER}:{PASSWORD}"', 'ftp-method = "nocwd"', "create-dirs"]
        for remote, local in pairs:
            url = f"ftp://127.0.0.1:{port}/%2F{str(remote).lstrip('/')}".replace(" ", "%20")
            lines += [f'{"upload-file" if upload else "output"} = "{local}"', f'url = "{url}"']
        settings = home.parent / (home.name + ".curl")
        settings.write_text("\n".join(lines) + "\n")
        return ["curl", "-q", "-K", str(settings)], None

    def up(self, port, local, remote):
        for folder in [p.relative_to(local) for p in sorted(local.rglob("*")) if p.is_dir()]:
            (remote / folder).mkdir(parents=True)
        files = [p.relative_to(local) for p in sorted(local.rglob("*")) if p.is_file()]
        return self.run(port, [(remote / f, local / f) for f in files], remote, True)

    def down(self, port, remote, local):
        files = [p.relative_to(remote) for p in sorted(remote.rglob("*")) if p.is_file()]
        return self.run(port, [(remote / f, local / f) for f in files], local, False)


# --- questions ----------------------------------------------------------------------------------------------------


class Bench(Questions):
    def __init__(self, arguments):
        data = pathlib.Path(arguments.data).absolute()
        data.mkdir(parents=True, exist_ok=True)
        self.data, self.runs, self.number = data, arguments.runs, 0
        self.server = Server(data / "ftp server")
        self.local = data / "ftp local"
        shutil.rmtree(self.local, ignore_errors=True)
        self.local.mkdir()
        self.tandemize = TandemizeFtp(pathlib.Path(arguments.program).absolute())
        found = [(Lftp, "lftp"), (Rclone, "rclone"), (Curl, "curl")]
        self.programs = [self.tandemize, *[kind() for kind, command in found if shutil.which(command)]]
        self.walkers = [p for p in self.programs if not isinstance(p, Curl)]
        self.small_tree = make_tree(data / "ftp small", 20, 2000, lambda r: r.randrange(8193))
        self.big_tree = make_tree(data / "ftp big", 1, 1, lambda r: 1 << 30)

    def fresh(self, below, name):
        self.number += 1
        folder = below / f"{self.number:03d} {name}"
        folder.mkdir()
        return folder

    def in_turns(self, measure, programs):
        results = {p.name: [] for p in programs}
        for _, p in turns(programs, self.runs):
            try:
                results[p.name].append(measure(p))
            except Failed as failure:
                print(f"{p.name} has failed, which does not count: {failure}")
        return {name: runs for name, runs in results.items() if runs}

    def upload(self, p, tree, port=None):
        target = self.fresh(self.server.files, p.name)
        result = timed(*p.up(port or self.server.port, tree, target))
        self.check(tree, target)
        return result

    def download(self, p, tree, port=None):
        target = self.fresh(self.local, p.name)
        result = timed(*p.down(port or self.server.port, tree, target))
        self.check(tree, target)
        return result

    def check(self, tree, target):
        """What arrived is what was sent; a big target then goes, a small one stays until the end."""
        if subprocess.run(["diff", "-rq", str(tree), str(target)], stdout=subprocess.DEVNULL).returncode != 0:
            raise Failed(f"{target} differs from {tree}")
        if tree == self.big_tree:
            shutil.rmtree(target)

    def both_ways(self, tree, title, goal):
        read_all(tree)
        programs = self.programs if tree == self.big_tree else self.walkers
        table(f"{title} up", self.in_turns(lambda p: self.upload(p, tree), programs), goal)
        table(f"{title} down", self.in_turns(lambda p: self.download(p, tree), programs), goal)

    def small(self):
        self.both_ways(self.small_tree, "2,000 small files", "0.8 x lftp, 0.5 x rclone")

    def big(self):
        self.both_ways(self.big_tree, "One file of 1 GiB", "1.0 x lftp, 1.1 x curl")

    def compare(self):
        tree = trees(self.data)["few"]()
        remote = self.fresh(self.server.files, "unchanged")
        subprocess.run(["cp", "-a", f"{tree}/.", str(remote)], check=True)
        table(
            "10,000 remote files of which none has changed",
            self.in_turns(lambda p: timed(*p.compare(self.server.port, tree, remote)), self.walkers),
            "1.0 x lftp mirror --dry-run",
        )

    def commands(self):
        print("\n### Commands on the control connection a file, 2,000 small files\n\n| program | up | down |\n|---|---|---|")
        for p in self.walkers:
            proxy = CountingProxy(self.server.port)
            self.upload(p, self.small_tree, proxy.port)
            up = proxy.lines
            self.download(p, self.small_tree, proxy.port)
            print(f"| {p.name} | {up / 2000:.2f} | {(proxy.lines - up) / 2000:.2f} |", flush=True)

    def end(self):
        self.server.end()
        for folder in (self.local, self.server.folder):
            subprocess.run(["chmod", "-R", "u+w", str(folder)], check=False)
            shutil.rmtree(folder, ignore_errors=True)


QUESTIONS = ["small", "big", "compare", "commands"]


def main():
    os.environ["PATH"] += ":/usr/sbin"
    answer(command_line(__doc__, "build/run/src/tandemize-run", "5 GB"), Bench, QUESTIONS, PEERS)


if __name__ == "__main__":
    main()
