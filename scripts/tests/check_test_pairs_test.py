#!/usr/bin/env python3
"""Proves that check-test-pairs finds sources without tests and tests without sources."""

import unittest

from temporary_tree import run_check

GOOD = [
    "src/base/errors.h", "src/base/errors.cpp", "tests/base/errors_test.cpp",
    "src/base/p_list.h", "tests/base/p_list_test.cpp", "tests/base/errors_at_limits_test.cpp",
    "src/platform/clock.h", "src/platform/posix/clock.cpp", "src/platform/windows/clock.cpp", "tests/platform/clock_test.cpp",
    "src/platform/posix/system_calls.cpp", "src/platform/posix/system_calls.h",
    "src/ui/console/prompt.cpp", "tests/ui/console/prompt_test.cpp",
    "src/ui/gui/toolkit/toolkit.h", "src/ui/gui/wx/frame.cpp", "src/ui/gui/start/start.cpp", "tests/ui/gui/wx/toolkit_frame_test.cpp",
    "src/installer/main.cpp", "src/platform/posix/entry.cpp", "tests/fakes/memory_disk.cpp", "tests/e2e/install_test.cpp",
]


def check(files):
    return run_check("check-test-pairs", dict.fromkeys(files, ""))


class CheckTestPairsTest(unittest.TestCase):
    def test_accepts_a_paired_tree(self):
        self.assertEqual(check(GOOD), (0, []))

    def test_finds_a_source_without_test(self):
        for name in ("src/base/alone.cpp", "src/platform/posix/alone.cpp", "src/ui/console/alone.cpp"):
            with self.subTest(name):
                code, lines = check([*GOOD, "src/platform/alone.h", name])
                self.assertEqual((code, len(lines)), (1, 1))
                self.assertIn(f"{name}:1: has no tests/{name.split('/')[1]}/alone_test.cpp", lines[0])

    def test_a_test_of_another_layer_does_not_count(self):
        self.assertEqual(check([*GOOD, "src/ui/alone.cpp", "src/text/alone.h", "tests/text/alone_test.cpp"])[0], 1)

    def test_finds_a_test_without_source(self):
        code, lines = check([*GOOD, "tests/base/err_test.cpp"])
        self.assertEqual((code, lines), (1, ["tests/base/err_test.cpp:1: tests nothing that is in src/base"]))


if __name__ == "__main__":
    unittest.main()
