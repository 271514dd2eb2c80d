"""What the end-to-end tests share: running the real programs, natively or under Wine.

A Machine is a directory that represents the target machine. Paths in tests are relative to its root; `native` returns
the path as the program under test sees it, `host` the path on this machine.
"""

import atexit
import getpass
import os
import pathlib
import re
import shutil
import sqlite3
import subprocess
import tempfile
import time
import unittest

from terminal import Terminal

TOP = pathlib.Path(__file__).resolve().parents[2]
WINDOWS = os.environ.get("TANDREL_E2E_SYSTEM", "linux") == "windows"
BIN = pathlib.Path(os.environ.get("TANDREL_E2E_BIN", TOP / "build" / ("windows" if WINDOWS else "linux") / "bin"))
EXE = ".exe" if WINDOWS else ""
HELPERS = BIN.parent / "tests"
TIMEOUT = 240
# How the system names its roots; on Linux, how the registry's database numbers them.
ROOTS = {"HKCU": ("HKEY_CURRENT_USER", -3), "HKLM": ("HKEY_LOCAL_MACHINE", -5)}


class Result:
    def __init__(self, code, out, err):
        self.code, self.out, self.err = code, out, err

    def __repr__(self):
        return f"exit code {self.code}\n--- standard output\n{self.out}\n--- standard error\n{self.err}"


def _text(data):
    return data.decode("utf-8", "surrogateescape").replace("\r\n", "\n")


class LinuxMachine:
    def __init__(self):
        self.root = pathlib.Path(tempfile.mkdtemp(prefix="tandrel-e2e-"))
        self.temp = self.root / "tmp"
        self.state = self.root / "state"  # what the installer remembers of its products
        for name in ("tmp", "state"):
            (self.root / name).mkdir()

    def native(self, path):
        return str(self.root / path)

    def environment(self, extra):
        # Whoever calls the tests with sudo is not who sees the documents that a setup opens.
        return {**os.environ, "TMPDIR": str(self.temp), "TANDREL_STATE_DIR": str(self.root / "state"),
                "LC_ALL": "C.UTF-8", "SUDO_UID": "", "PKEXEC_UID": "", **extra}

    def command(self, program):
        return [str(program)]

    direct_command = command

    def registry(self, root, path):
        """Reads the database directly, without the programs under test."""
        database = self.root / "state" / "registry.db"
        if not database.exists():
            return None
        connection = sqlite3.connect(f"file:{database}?mode=ro", uri=True)
        try:
            key = ROOTS[root][1]
            for name in path.lower().split("\\"):
                row = connection.execute("SELECT id FROM keys WHERE parent = ? AND folded = ?",
                                         (key, name.encode())).fetchone()
                if row is None:
                    return None
                key = row[0]
            return self._keys_below(connection, key, "")
        finally:
            connection.close()

    def _keys_below(self, connection, key, name):
        entries = connection.execute("SELECT name, type, data FROM entries WHERE key = ?", (key,))
        found = {name: {n.decode(): _registry_data(t, d) for n, t, d in entries}}
        for child, child_name in connection.execute("SELECT id, name FROM keys WHERE parent = ?", (key,)).fetchall():
            found.update(self._keys_below(connection, child, (name + "\\" if name else "") + child_name.decode()))
        return found

    def close(self):
        shutil.rmtree(self.root, ignore_errors=True)


def _registry_data(kind, data):
    """In the form that Windows' own tool prints."""
    if kind == 4:
        return "REG_DWORD", hex(int.from_bytes(data, "little"))
    if kind == 3:
        return "REG_BINARY", data.hex().upper()
    return {1: "REG_SZ", 2: "REG_EXPAND_SZ"}[kind], data.decode()


def was_never_started(code, out, err):
    """Now and then, on a busy machine, Wine ends with 1 before it starts a program, its own ones too. No program here ends
    with 1 and says nothing."""
    return WINDOWS and code == 1 and not out and not err


class WinePrefix:
    """One prefix for all tests of a file: creating and ending one takes seconds."""

    shared = None

    def __init__(self):
        self.directory = pathlib.Path(tempfile.mkdtemp(prefix="tandrel-e2e-"))
        self.scripts = TOP / "scripts"
        subprocess.run([self.scripts / "wine-prefix", "create", self.directory], check=True, timeout=TIMEOUT)
        atexit.register(self.destroy)
        self.anchor = self.start_anchor()

    def start_anchor(self):
        """One program stays, because Wine's server ends with the last one, and starting it takes a second."""
        anchor = subprocess.Popen(["bash", "-c", '. "$0"/lib/wine.sh; tandrel_wine_enter "$1"; exec wine cmd',
                                   str(self.scripts), str(self.directory)], stdin=subprocess.PIPE,
                                  stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL, cwd=self.directory)
        # Services of the prefix keep the output of the program that started them open, so it must be this program. The
        # desktop is one of them, started by the first program that uses windows.
        anchor.stdin.write(b"rundll32 user32.dll,MessageBeep & echo up >C:\\anchor.txt\r\n")
        anchor.stdin.flush()
        end = time.monotonic() + TIMEOUT
        while not (self.directory / "prefix/drive_c/anchor.txt").exists():
            if time.monotonic() > end:
                raise TimeoutError("the first program of the Wine prefix doesn't run")
            time.sleep(0.02)
        return anchor

    def restart(self):
        """What the registry says of a session as a whole counts from the next one on."""
        self.anchor.stdin.close()
        self.anchor.wait(timeout=TIMEOUT)
        (self.directory / "prefix/drive_c/anchor.txt").unlink()
        subprocess.run(["bash", "-c", '. "$0"/lib/wine.sh; tandrel_wine_stop "$1"', str(self.scripts), str(self.directory)],
                       check=True, timeout=TIMEOUT)
        self.anchor = self.start_anchor()

    @classmethod
    def get(cls):
        if cls.shared is None:
            cls.shared = cls()
        return cls.shared

    def destroy(self):
        self.anchor.stdin.close()
        self.anchor.wait(timeout=TIMEOUT)
        subprocess.run([self.scripts / "wine-prefix", "destroy", self.directory], check=False, timeout=TIMEOUT)
        shutil.rmtree(self.directory, ignore_errors=True)


class WindowsMachine:
    """A new directory on drive C: and an empty directory for temporary files."""

    number = 0

    def __init__(self):
        self.prefix = WinePrefix.get()
        WindowsMachine.number += 1
        self.name = f"t{WindowsMachine.number}"
        drive = self.prefix.directory / "prefix" / "drive_c"
        self.root = drive / self.name
        self.root.mkdir()
        self.temp = drive / "users" / getpass.getuser() / "Temp"
        self.state = drive / "ProgramData" / "Tandrel"  # of all tests of a file
        for left in self.temp.iterdir() if self.temp.exists() else ():
            if left.is_file():
                left.unlink()
            elif left.name.startswith("ormeluninst"):  # Windows keeps the image of a running program
                shutil.rmtree(left, ignore_errors=True)

    def native(self, path):
        return f"C:\\{self.name}\\" + str(path).replace("/", "\\")

    def environment(self, extra):
        return {**os.environ, "TANDREL_WINE_PREFIX": str(self.prefix.directory), "TANDREL_WINE_TIMEOUT": str(TIMEOUT),
                **extra}

    def command(self, program):
        return [str(self.prefix.scripts / "run-under-wine"), self.native(pathlib.Path(program).relative_to(self.root))]

    def direct_command(self, program):
        """As `command`, without a process in between: for keys typed at a terminal, and for signals."""
        return ["bash", "-c", '. "$0"/lib/wine.sh; tandrel_wine_enter "$1"; shift; exec wine "$@"',
                str(self.prefix.scripts), str(self.prefix.directory), self.command(program)[1]]

    def registry(self, root, path):
        """Asks Windows' own tool."""
        command = [str(self.prefix.scripts / "run-under-wine"), "reg", "query", f"{ROOTS[root][0]}\\{path}", "/s"]
        for _ in range(5):
            done = subprocess.run(command, capture_output=True, timeout=TIMEOUT, check=False, cwd=self.prefix.directory,
                                  env=self.environment({}))
            if done.returncode == 0 or b"nable to find" in done.stdout + done.stderr:
                break
        else:  # or a test would take a key for missing that nobody has looked for
            raise RuntimeError(f"reg query ended with {done.returncode}: {done.stdout} {done.stderr}")
        if done.returncode != 0:
            return None
        found, key, front = {"": {}}, "", f"{ROOTS[root][0]}\\{path}"
        for line in _text(done.stdout).split("\n"):
            value = re.match(r"    (.*?)    (REG_\w+)    (.*)$", line)
            if value:
                found[key][value[1]] = (value[2], value[3])
            elif line.lower().startswith(front.lower()):
                key = line[len(front) + 1:]
                found[key] = {}
        return found

    def close(self):
        shutil.rmtree(self.root, ignore_errors=True)


class EndToEndTest(unittest.TestCase):
    """A test case with its own machine and the two programs on it."""

    maxDiff = None

    def setUp(self):
        self.machine = WindowsMachine() if WINDOWS else LinuxMachine()
        self.addCleanup(self.machine.close)
        for name in ("packager", "installer"):
            shutil.copy2(BIN / (name + EXE), self.host(name + EXE))

    # --- paths and files of the machine

    def host(self, path):
        return self.machine.root / path

    def native(self, path):
        return self.machine.native(path)

    def on_screen(self, path):
        """How a path of a record leaves the programs, as on the screen."""
        return path if WINDOWS else path.replace("\\", "/")

    def write(self, path, content):
        target = self.host(path)
        target.parent.mkdir(parents=True, exist_ok=True)
        target.write_bytes(content if isinstance(content, bytes) else content.encode("utf-8"))
        return target

    def read(self, path):
        return self.host(path).read_bytes()

    def read_text(self, path):
        return _text(self.read(path))

    def tree(self, path):
        """Every file below `path`: its relative name and content."""
        base = self.host(path)
        return {str(p.relative_to(base)): p.read_bytes() for p in sorted(base.rglob("*")) if p.is_file()}

    def registry(self, root, path):
        """The keys at and below `path`: relative name -> {value: (type, data)}; None if there is no such key."""
        return self.machine.registry(root, path)

    # --- programs

    def run_program(self, path, *arguments, **options):
        result = self.run_once(path, *arguments, **options)
        return self.run_once(path, *arguments, **options) if was_never_started(result.code, result.out, result.err) else result

    def run_once(self, path, *arguments, stdin="", env=None, timeout=TIMEOUT, umask=-1):
        command = self.machine.command(self.host(path)) + [str(a) for a in arguments]
        # Files instead of pipes: a pipe stays open as long as any program has it, and Wine's desktop, started by the
        # first program that needs it, never closes it.
        with tempfile.TemporaryFile() as out, tempfile.TemporaryFile() as err:
            done = subprocess.run(command, input=stdin.encode("utf-8"), stdout=out, stderr=err, timeout=timeout,
                                  check=False, env=self.machine.environment(env or {}), cwd=self.machine.root, umask=umask)
            texts = []
            for file in (out, err):
                file.seek(0)
                texts.append(_text(file.read()))
        return Result(done.returncode, *texts)

    def open_terminal(self, path, *arguments, columns=80, rows=24, env=None):
        """Runs a program in its own terminal."""
        command = self.machine.direct_command(self.host(path)) + [str(a) for a in arguments]
        terminal = Terminal(command, self.machine.environment(env or {}), self.machine.root, columns, rows,
                            foreign=WINDOWS)
        self.addCleanup(terminal.close)
        return terminal

    def wait_until(self, condition, seconds=60):
        """Waits for an effect of a program that is still running; fails if it doesn't happen."""
        end = time.monotonic() + seconds
        while not condition():
            self.assertLess(time.monotonic(), end, "the expected effect didn't happen")
            time.sleep(0.05)

    def wait_for_the_uninstaller(self):
        """The first program starts the one that removes, and doesn't wait for it."""
        self.wait_until(lambda: not list(self.machine.temp.glob("ormeluninst-*/ormeluninst.log")))

    def packager(self, *arguments, **options):
        return self.run_program("packager" + EXE, *arguments, **options)

    def build_allowing(self, *arguments, **options):
        """Runs packager build. The descriptions of tests lack much of what a product needs, and some are wrong on purpose:
        all of that is allowed."""
        result = self.packager("build", *arguments, **options)
        errors = sorted(set(re.findall(r": error: .* \[([a-z-]+)\]$", result.err, re.M)))
        allowed = [f"--allow={code}" for code in errors]
        return self.packager("build", *arguments, *allowed, **options) if errors else result

    def build_package(self, description, files, output="setup" + EXE, extra=()):
        """Packs `files` (name -> content) with `description` (text) and returns the package's relative path."""
        self.write("stage/install.xml", description)
        self.host("stage/root").mkdir(parents=True, exist_ok=True)
        for name, content in files.items():
            self.write("stage/root/" + name, content)
        image = () if "--bin" in extra else ("--image", self.native("installer" + EXE))
        # Nearly every test packs the uninstaller, and how small it gets says nothing.
        level = () if "--level" in extra else ("--level", "1")
        result = self.build_allowing("--description", self.native("stage/install.xml"), "--root", self.native("stage/root"), *image,
                            *level, "--output", self.native(output), *extra)
        self.assertEqual(result.code, 0, result)
        return output

    def action_log(self, path):
        """The lines of an action log; every one must end in CR LF."""
        data = self.read(path)
        self.assertTrue(data.endswith(b"\r\n"), data[-40:])
        lines = data.decode("utf-8").split("\r\n")[:-1]
        for line in lines:
            self.assertNotIn("\n", line)
        return lines


def main():
    unittest.main(verbosity=2)
