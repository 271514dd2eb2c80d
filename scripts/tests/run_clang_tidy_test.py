#!/usr/bin/env python3
"""Proves that run-clang-tidy reports findings each time, and forgets a clean result when anything it rests on changes."""

import json
import os
import pathlib
import shutil
import subprocess
import tempfile
import unittest

SCRIPT = pathlib.Path(__file__).resolve().parent.parent / "run-clang-tidy"
CLEAN = '#include "base/x.h"\nint* x() {\n    return nullptr;\n}\n'
DIRTY = '#include "base/x.h"\nint* x() {\n    return 0;\n}\n'


class RunClangTidyTest(unittest.TestCase):
    def setUp(self):
        self.root = pathlib.Path(tempfile.mkdtemp())
        self.addCleanup(shutil.rmtree, self.root)
        for folder in ("scripts", "src/base", "build/linux"):
            (self.root / folder).mkdir(parents=True)
        shutil.copy(SCRIPT, self.root / "scripts")
        self.write(".clang-tidy", "Checks: '-*,modernize-use-nullptr'\nWarningsAsErrors: '*'\nHeaderFilterRegex: 'src/.*'\n")
        self.write("src/base/x.h", '#include "base/deep.h"\nint* x();\n')
        self.write("src/base/deep.h", "")
        self.write("src/base/x.cpp", CLEAN)
        source = self.root / "src/base/x.cpp"
        command = f"g++ -I{self.root}/src -c {source}"
        self.write("build/linux/compile_commands.json",
                   json.dumps([{"directory": str(self.root), "file": str(source), "command": command}]))

    def write(self, name, text):
        (self.root / name).write_text(text)

    def run_tidy(self):
        """(exit code, the last line of the output)"""
        done = subprocess.run([self.root / "scripts/run-clang-tidy"], capture_output=True, text=True, check=False,
                              env={**os.environ, "TANDREL_CACHE": str(self.root / "cache")})
        return done.returncode, (done.stdout.splitlines() or [done.stderr])[-1]

    def test_a_clean_source_is_looked_at_once(self):
        self.assertEqual(self.run_tidy(), (0, "1 sources, 1 of them changed, 0 with findings"))
        self.assertEqual(self.run_tidy(), (0, "1 sources, 0 of them changed, 0 with findings"))

    def test_findings_are_reported_every_time(self):
        self.write("src/base/x.cpp", DIRTY)
        for _ in range(2):
            self.assertEqual(self.run_tidy(), (1, "1 sources, 1 of them changed, 1 with findings"))

    def test_a_changed_source_header_or_configuration_is_looked_at_again(self):
        self.run_tidy()
        self.write("src/base/deep.h", "inline int* deep() {\n    return 0;\n}\n")
        self.assertEqual(self.run_tidy(), (1, "1 sources, 1 of them changed, 1 with findings"))
        self.write("src/base/deep.h", "")
        self.assertEqual(self.run_tidy(), (0, "1 sources, 0 of them changed, 0 with findings"))
        self.write(".clang-tidy", "Checks: '-*,modernize-use-trailing-return-type'\nWarningsAsErrors: '*'\n")
        self.assertEqual(self.run_tidy(), (1, "1 sources, 1 of them changed, 1 with findings"))

    def test_a_source_that_does_not_compile_is_a_finding(self):
        self.write("src/base/x.cpp", "no source\n")
        self.assertEqual(self.run_tidy(), (1, "1 sources, 1 of them changed, 1 with findings"))

    def test_a_tree_without_a_build_cannot_be_checked(self):
        (self.root / "build/linux/compile_commands.json").unlink()
        self.assertEqual(self.run_tidy()[0], 2)


if __name__ == "__main__":
    unittest.main()
