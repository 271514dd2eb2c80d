#!/usr/bin/env python3
"""Proves how scripts/toolkit keeps what it builds, with a recipe that builds nothing."""

import os
import pathlib
import shutil
import subprocess
import tempfile
import time
import unittest

SCRIPTS = pathlib.Path(__file__).resolve().parent.parent
RECIPE = ("scripts/lib/make-toolkit", "cmake/toolkit/CMakeLists.txt", "cmake/toolkit/WxOptions.cmake", "cmake/toolkit/png.dfa",
          "cmake/mingw-w64.cmake")
WORKING = """#!/bin/bash
[ "$(ls -A "$2")" = "" ] || exit 1
echo "made $1"
echo made >>"$LOG"
echo content >"$2/library"
"""
FAILING = """#!/bin/bash
echo half >"$2/library"
exit 1
"""


class ToolkitTest(unittest.TestCase):
    def setUp(self):
        directory = tempfile.TemporaryDirectory()
        self.addCleanup(directory.cleanup)
        self.root = pathlib.Path(directory.name)
        self.tools = self.root / "tools"
        self.tools.mkdir()
        # What the machine has installed decides about the key; here it is always the same.
        for name, output in {"g++": "g++ 1", "x86_64-w64-mingw32-g++-posix": "g++ 1", "dpkg-query": "headers 1"}.items():
            self.write_program(self.tools / name, f"#!/bin/sh\necho {output}\n")
        (self.root / "scripts/lib").mkdir(parents=True)
        shutil.copy(SCRIPTS / "toolkit", self.root / "scripts/toolkit")
        shutil.copy(SCRIPTS / "lib/cache.sh", self.root / "scripts/lib/cache.sh")
        for name in RECIPE:
            (self.root / name).parent.mkdir(parents=True, exist_ok=True)
            (self.root / name).write_text(name)
        self.write_program(self.root / "scripts/lib/make-toolkit", WORKING)
        self.kept = self.root / "cache/toolkit"

    @staticmethod
    def write_program(path, text):
        path.write_text(text)
        path.chmod(0o755)

    def command(self, *arguments):
        environment = {**os.environ, "PATH": f"{self.tools}:{os.environ['PATH']}", "LOG": str(self.root / "log"),
                       "TANDREL_CACHE": str(self.root / "cache")}
        return subprocess.Popen([self.root / "scripts/toolkit", *arguments], env=environment, text=True,
                                stdout=subprocess.PIPE, stderr=subprocess.PIPE)

    def toolkit(self, *arguments):
        process = self.command(*arguments)
        output, errors = process.communicate()
        return process.returncode, output.strip(), errors

    def key(self, system="linux"):
        return self.toolkit("--key", system)[1]

    def builds(self):
        log = self.root / "log"
        return len(log.read_text().splitlines()) if log.exists() else 0

    def directories(self):
        return sorted(path.name for path in self.kept.iterdir() if path.is_dir())

    def test_the_key_follows_each_part_of_the_recipe(self):
        keys = {self.key(), self.key("windows")}
        self.assertEqual(len(keys), 2)
        for number, name in enumerate(RECIPE):
            with (self.root / name).open("a") as file:
                file.write("# changed\n")
            keys.add(self.key())
            self.assertEqual(len(keys), number + 3, name)

    def test_the_key_follows_the_compiler_and_the_headers(self):
        keys = {self.key()}
        for number, name in enumerate(("g++", "dpkg-query")):
            self.write_program(self.tools / name, "#!/bin/sh\necho 2\n")
            keys.add(self.key())
            self.assertEqual(len(keys), number + 2, name)

    def test_the_key_does_not_follow_other_files(self):
        key = self.key()
        (self.root / "cmake/Other.cmake").write_text("other")
        self.assertEqual(self.key(), key)

    def test_builds_once(self):
        code, first, errors = self.toolkit("linux")
        self.assertEqual((code, first), (0, str(self.kept / f"linux-{self.key()}")))
        self.assertIn("made linux", errors)
        self.assertEqual((pathlib.Path(first) / "library").read_text(), "content\n")
        self.assertEqual(self.toolkit("linux"), (0, first, ""))
        self.assertEqual(self.builds(), 1)

    def test_systems_do_not_share(self):
        self.assertNotEqual(self.toolkit("linux")[1], self.toolkit("windows")[1])
        self.assertEqual(self.builds(), 2)

    def test_a_failed_build_leaves_nothing(self):
        self.write_program(self.root / "scripts/lib/make-toolkit", FAILING)
        code, output, _ = self.toolkit("linux")
        self.assertEqual((code, output, self.directories()), (1, "", []))

    def test_a_half_made_directory_is_not_taken(self):
        half = self.kept / "linux.new.killed"
        half.mkdir(parents=True)
        (half / "library").write_text("half")
        code, output, _ = self.toolkit("linux")
        self.assertEqual((code, self.builds()), (0, 1))
        self.assertEqual(self.directories(), [pathlib.Path(output).name])

    def test_parallel_callers_build_once(self):
        callers = [self.command("linux") for _ in range(8)]
        outputs = {caller.communicate()[0] for caller in callers}
        self.assertEqual([caller.returncode for caller in callers], [0] * 8)
        self.assertEqual((len(outputs), self.builds()), (1, 1))

    def test_what_nobody_asks_for_is_removed_when_another_is_made(self):
        old, recent, other = (self.kept / name for name in ("linux-old", "linux-recent", "windows-old"))
        for directory in (old, recent, other):
            directory.mkdir(parents=True)
        long_ago = time.time() - 8 * 24 * 60 * 60
        for directory in (old, other):
            os.utime(directory, (long_ago, long_ago))
        made = pathlib.Path(self.toolkit("linux")[1])
        self.assertEqual(self.directories(), sorted([made.name, recent.name, other.name]))

    def test_asking_keeps_it(self):
        made = pathlib.Path(self.toolkit("linux")[1])
        os.utime(made, (0, 0))
        self.toolkit("linux")
        with (self.root / "cmake/toolkit/WxOptions.cmake").open("a") as file:
            file.write("# changed\n")
        self.toolkit("linux")
        self.assertIn(made.name, self.directories())

    def test_refuses_other_words(self):
        for arguments in ([], ["macos"], ["linux", "windows"], ["--key"]):
            with self.subTest(arguments):
                self.assertEqual(self.toolkit(*arguments)[0], 2)


if __name__ == "__main__":
    unittest.main()
