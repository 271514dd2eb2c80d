"""What the end-to-end tests share: one place to run the real programs, natively or under Wine.

A Machine is a directory that plays the target machine. Paths in tests are relative to its root; `native` gives
the path as the program under test sees it, `host` the path on this machine.
"""

import os
import pathlib
import shutil
import subprocess
import tempfile
import unittest

TOP = pathlib.Path(__file__).resolve().parents[2]
WINDOWS = os.environ.get("TANDREL_E2E_SYSTEM", "linux") == "windows"
BIN = pathlib.Path(os.environ.get("TANDREL_E2E_BIN", TOP / "build" / ("windows" if WINDOWS else "linux") / "bin"))
EXE = ".exe" if WINDOWS else ""
TIMEOUT = 240


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
        for name in ("tmp", "state"):
            (self.root / name).mkdir()

    def host(self, path):
        return self.root / path

    def native(self, path):
        return str(self.root / path)

    def environment(self, extra):
        return {**os.environ, "TMPDIR": str(self.root / "tmp"), "TANDREL_STATE_DIR": str(self.root / "state"),
                "LC_ALL": "C.UTF-8", **extra}

    def command(self, program):
        return [str(program)]

    def wait_idle(self):
        pass

    def close(self):
        shutil.rmtree(self.root, ignore_errors=True)


class WindowsMachine:
    def __init__(self):
        self.prefix = pathlib.Path(tempfile.mkdtemp(prefix="tandrel-e2e-"))
        self.scripts = TOP / "scripts"
        subprocess.run([self.scripts / "wine-prefix", "create", self.prefix], check=True, timeout=TIMEOUT)
        self.root = self.prefix / "prefix" / "drive_c" / "t"
        self.root.mkdir()

    def host(self, path):
        return self.root / path

    def native(self, path):
        return "C:\\t\\" + str(path).replace("/", "\\")

    def environment(self, extra):
        return {**os.environ, "TANDREL_WINE_PREFIX": str(self.prefix), "TANDREL_WINE_TIMEOUT": str(TIMEOUT), **extra}

    def command(self, program):
        relative = pathlib.Path(program).relative_to(self.root)
        return [str(self.scripts / "run-under-wine"), self.native(relative)]

    def wait_idle(self):
        subprocess.run([self.scripts / "wine-prefix", "wait", self.prefix], check=False, timeout=TIMEOUT)

    def close(self):
        subprocess.run([self.scripts / "wine-prefix", "destroy", self.prefix], check=False, timeout=TIMEOUT)
        shutil.rmtree(self.prefix, ignore_errors=True)


class EndToEndTest(unittest.TestCase):
    """A test case with a machine of its own and the two programs on it."""

    maxDiff = None

    def setUp(self):
        self.machine = WindowsMachine() if WINDOWS else LinuxMachine()
        self.addCleanup(self.machine.close)
        for name in ("packager", "installer"):
            shutil.copy2(BIN / (name + EXE), self.host(name + EXE))

    # --- paths and files of the machine

    def host(self, path):
        return self.machine.host(path)

    def native(self, path):
        return self.machine.native(path)

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

    # --- programs

    def run_program(self, path, *arguments, stdin="", env=None, timeout=TIMEOUT):
        command = self.machine.command(self.host(path)) + [str(a) for a in arguments]
        done = subprocess.run(command, input=stdin.encode("utf-8"), capture_output=True, timeout=timeout, check=False,
                              env=self.machine.environment(env or {}), cwd=self.machine.root)
        return Result(done.returncode, _text(done.stdout), _text(done.stderr))

    def packager(self, *arguments, **options):
        return self.run_program("packager" + EXE, *arguments, **options)

    def build_package(self, description, files, output="setup" + EXE, extra=()):
        """Packs `files` (name -> content) with `description` (text) and returns the package's relative path."""
        self.write("stage/install.xml", description)
        self.host("stage/root").mkdir(parents=True, exist_ok=True)
        for name, content in files.items():
            self.write("stage/root/" + name, content)
        image = () if "--bin" in extra else ("--image", self.native("installer" + EXE))
        result = self.packager("build", "--description", self.native("stage/install.xml"),
                               "--root", self.native("stage/root"), *image,
                               "--output", self.native(output), *extra)
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
