"""Runs kxmath many times, each time with one fault, in a folder that is set up once and then restored."""
import os
import pathlib
import re
import shutil
import signal
import subprocess
import time

CALLS = ["allocate", "open", "read", "write", "seek", "sync", "close", "rename", "truncate", "mkdir", "link", "remove",
         "stat", "list", "change"]  # in the order of injection.h
SECONDS = 30  # until a run counts as a hang; a loop without an end uses up its processor time before
SEPARATOR = "\x1f"


class Run:
    """What one run did."""

    def __init__(self, status, has_failed, path, counts, out, err, seconds):
        self.signal = os.WTERMSIG(status) if os.WIFSIGNALED(status) else 0
        self.code = os.WEXITSTATUS(status) if os.WIFEXITED(status) else None
        self.has_failed, self.path, self.counts = has_failed, path, counts
        self.out, self.err, self.seconds = out, err, seconds


class Server:
    """A process with kxmath loaded that runs its main() in children (preload.cpp), and the folder of these runs."""

    def __init__(self, kxmath, preload, folder):
        self.folder = pathlib.Path(folder) / "run"
        self.out, self.err = self.folder.parent / "out", self.folder.parent / "err"
        self.folder.mkdir(parents=True)
        self.environment = dict(os.environ, TMPDIR=f"{self.folder}/tmp", LC_ALL="C.UTF-8", HOME=str(self.folder.parent),
                                SOURCE_DATE_EPOCH="1700000000")  # pages say when they were made
        self.environment.pop("LD_PRELOAD", None)
        self.process = subprocess.Popen([kxmath], cwd=self.folder.parent, stdin=subprocess.PIPE, text=True,
                                        stdout=subprocess.PIPE,
                                        env=dict(self.environment, LD_PRELOAD=str(preload), KXFAULTS="serve"))
        self.known = {}  # path: (what stat() says, its entry)

    def close(self):
        self.process.stdin.close()
        self.process.wait()

    def run(self, case, fault="none", kill_after=0):
        """Runs the case in the folder as it is."""
        fields = [self.folder, case.stdin or "/dev/null", self.out, self.err, fault, int(kill_after * 1e6), SECONDS,
                  *case.arguments]
        start = time.monotonic()
        self.process.stdin.write(SEPARATOR.join(map(str, fields)) + "\n")
        self.process.stdin.flush()
        reply = self.process.stdout.readline().rstrip("\n").split(SEPARATOR)
        seconds = time.monotonic() - start
        if len(reply) != 3 + len(CALLS):
            raise SystemExit(f"the server ended: {case.name} {fault}: {reply}")
        return Run(int(reply[0]), reply[1] == "1", reply[2], dict(zip(CALLS, map(int, reply[3:]))),
                   self.plain(self.out.read_bytes()), self.plain(self.err.read_bytes()), seconds)

    def plain(self, content):
        """Without what differs between servers."""
        return content.replace(bytes(self.folder), b"RUN")

    def tree(self):
        """All below the folder: mode and content of files, also of those that links lead to, None for a folder."""
        tree, known = {}, {}

        def look(folder, prefix):
            with os.scandir(folder) as entries:
                for entry in entries:
                    name = prefix + entry.name
                    if entry.is_dir():
                        tree[name] = None
                        look(entry.path, name + "/")
                    else:
                        stat = entry.stat()
                        state = (stat.st_ino, stat.st_size, stat.st_mtime_ns, stat.st_mode)
                        before = self.known.get(name)
                        if before is None or before[0] != state:
                            before = (state, (stat.st_mode, self.plain(pathlib.Path(entry.path).read_bytes())))
                        known[name] = before
                        tree[name] = before[1]

        look(self.folder, "")
        self.known = known
        return tree

    def restore(self, wanted, source):
        """Makes the folder what `source` holds, whose tree is `wanted`."""
        found = self.tree()
        for name in sorted(found, reverse=True):  # what is in a folder goes before it
            if found[name] != wanted.get(name, ""):
                path = self.folder / name
                if found[name] is None:
                    path.rmdir()
                else:
                    path.unlink()
        for name in sorted(wanted):
            if found.get(name, "") != wanted[name]:
                path = self.folder / name
                if wanted[name] is None:
                    path.mkdir()
                else:
                    shutil.copy2(source / name, path)
        self.known = {name: state for name, state in self.known.items() if found.get(name) == wanted.get(name)}


def kxmath(program, folder, line):
    subprocess.run([program, *line.split()], cwd=folder, check=True, stdout=subprocess.DEVNULL)


def signal_name(number):
    return signal.Signals(number).name


def final_name(path):
    """The name under which a user knows a file."""
    return re.sub(r"^incomplete-(.*?)(-\d+)?$", r"\1", os.path.basename(path))
