#!/usr/bin/env python3
"""Proves that check-layers accepts a good tree and finds each kind of violation in a bad one."""

import unittest

from temporary_tree import SCRIPTS, run_check

# The real table is what the cases below prove.
LAYERS = (SCRIPTS.parent / "src" / "layers.txt").read_text(encoding="utf-8")

GOOD = {
    "src/layers.txt": LAYERS,
    "src/base/errors.h": "#include <string>\n",
    "src/base/errors.cpp": '#include "base/errors.h"\n\n#include <vector>\n',
    "src/contracts/installer_ui.h": '#include "base/errors.h"\n',
    "src/platform/file_system.h": '#include "base/errors.h"\n',
    "src/platform/posix/file_system.cpp": '#include "platform/file_system.h"\n#include <unistd.h>\n#ifdef __linux__\n#endif\n',
    "src/platform/windows/file_system.cpp": '#include "platform/file_system.h"\n#include <windows.h>\n',
    "src/platform/platform.h": "#pragma once\nstruct Platform {};\n\nPlatform systemPlatform();\n",
    "src/platform/registry.h": "class Registry;\nRegistry& systemRegistry();\n",
    "src/package/cabinet.h": "#include <zlib.h>\n",
    "src/package/low.h": '#include "platform/file_system.h"\n',
    "src/engine/uninstaller.h": "",
    "src/engine/uninstaller.cpp": '#include "engine/uninstaller.h"\n\n#include "engine/changes/registry_change.h"\n',
    "src/engine/records.h": "",
    "src/engine/changes/registry_change.h": '#include "engine/records.h"\n#include "platform/registry.h"\n',
    "src/ui/navigator.h": '#include "contracts/installer_ui.h"\n',
    "src/ui/console/prompt.h": '#include "ui/navigator.h"\n',
    "src/ui/gui/images/picture.h": "#include <jpeglib.h>\n#include <png.h>\n",
    "src/ui/gui/frame.h": '#include "ui/gui/images/picture.h"\n',
    "src/ui/gui/wx/frame.h": "#include <wx/frame.h>\n",
    "src/ui/gui/wx/gtk/display.cpp": '#include <gtk/gtk.h>\n#include "ui/gui/wx/frame.h"\n',
    "src/session/installer.h": '#include "ui/navigator.h"\n#include "platform/registry.h"\n',
    "src/wini/wini.h": '#include "session/installer.h"\n#include "engine/changes/registry_change.h"\n',
    "src/installer/main.cpp": '#include "session/installer.h"\n#include "ui/console/prompt.h"\n'
                              "auto system = platform::systemPlatform();\n",
    "src/packager/main.cpp": '#include "package/cabinet.h"\n// #include <windows.h>\n/* #ifdef _WIN32 */\n'
                             "auto& registry = platform::systemRegistry();\n",
    "src/ui/names.h": "bool systemName(int);\nint a = machine.systemRegistry() + machine->systemRegistry();\n"
                      "// platform::systemRegistry()\nplatform::Registry& systemRegistry_;\n",
    "tests/base/errors_test.cpp": '#include "base/errors.h"\n#include <gtest/gtest.h>\n',
    "tests/ui/gui/images/picture_test.cpp": "#include <png.h>\n#include <jpeglib.h>\n",
    "tests/platform/posix/file_system_test.cpp": "#include <unistd.h>\nint x = getpid();\n",
    "tests/platform/windows/file_system_test.cpp": "#include <windows.h>\nint x = GetLastError();\n",
    "tests/support/names_test.cpp": "// unlink(x)\nint a = files.unlink(x) + p->fork() + Files::chmod(x) + myfork(x) + unlink_all(x);\n",
}

# (file, its text, what the message must contain; the line is the last one of the text)
BAD = [
    ("src/base/up.h", '#include "platform/file_system.h"', "base must not include platform"),
    ("src/contracts/up.h", '#include "platform/file_system.h"', "contracts must not include platform"),
    ("src/text/side.h", '#include "contracts/installer_ui.h"', "text must not include contracts"),
    ("src/text/low.h", '\n#include "platform/file_system.h"', "text must not include platform"),
    ("src/package/up.h", '#include "engine/uninstaller.h"', "package must not include engine"),
    ("src/ui/side.h", '#include "engine/uninstaller.h"', "ui must not include engine"),
    ("src/ui/part.h", '#include "engine/changes/registry_change.h"', "ui must not include engine/changes"),
    ("src/engine/changes/up.h", '#include "session/installer.h"', "engine/changes must not include session"),
    ("src/ui/front.h", '#include "ui/console/prompt.h"', "ui must not include ui/console"),
    ("src/ui/console/side.h", '#include "ui/gui/frame.h"', "ui/console must not include ui/gui"),
    ("src/session/front.h", '#include "ui/console/prompt.h"', "session must not include ui/console"),
    ("src/session/low.h", '#include "platform/windows/x.h"', "session must not include platform/windows"),
    ("src/packager/side.h", '#include "session/installer.h"', "packager must not include session"),
    ("src/platform/posix/side.h", '#include "platform/windows/x.h"', "platform/posix must not include platform/windows"),
    ("src/installer/low.h", '#include "platform/windows/x.h"', "installer must not include platform/windows"),
    ("src/base/relative.h", '#include "errors.h"', "not a header below src/"),
    ("src/base/missing.h", '#include "base/nothing.h"', "not a header below src/"),
    ("src/base/system.h", "#include <windows.h>", "<windows.h> is not a C++ standard header"),
    ("src/engine/system.h", "#include <sys/stat.h>", "<sys/stat.h> is not a C++ standard header"),
    ("src/platform/system.h", "#include <unistd.h>", "<unistd.h> is not a C++ standard header"),
    ("src/engine/library.h", "#include <zlib.h>", "<zlib.h> is only for package"),
    ("src/ui/toolkit.h", "#include <wx/string.h>", "<wx/string.h> is only for ui/gui/wx"),
    ("src/ui/console/picture.h", "#include <png.h>", "<png.h> is only for ui/gui/images"),
    ("src/ui/gui/page.h", "#include <wx/string.h>", "<wx/string.h> is only for ui/gui/wx"),
    ("src/ui/gui/wx/system.h", "#include <gtk/gtk.h>", "<gtk/gtk.h> is not a C++ standard header"),
    ("src/ui/gui/picture.h", "#include <jpeglib.h>", "<jpeglib.h> is only for ui/gui/images"),
    ("src/ui/gui/images/toolkit.h", "#include <wx/image.h>", "<wx/image.h> is only for ui/gui/wx"),
    ("src/ui/gui/images/up.h", '#include "ui/gui/frame.h"', "ui/gui/images must not include ui/gui"),
    ("src/ui/up.h", '#include "ui/gui/images/picture.h"', "ui must not include ui/gui/images"),
    ("tests/ui/console/picture_test.cpp", "#include <png.h>", "not for tests outside tests/platform"),
    ("src/base/ask1.cpp", "#ifdef _WIN32", "platform conditional (_WIN32)"),
    ("src/base/ask2.cpp", "#if defined(__linux__)", "platform conditional (__linux__)"),
    ("src/base/ask3.cpp", "#if 1\n#elif defined(__MINGW32__)", "platform conditional (__MINGW32__)"),
    ("src/base/ask4.cpp", "#ifndef __unix__", "platform conditional (__unix__)"),
    ("src/platform/ask5.h", "  #  if defined(_WIN64)", "platform conditional (_WIN64)"),
    ("src/wini/own.cpp", '#include <string>', "the first include must be the own header"),
    ("src/platform/posix/own.cpp", "#include <unistd.h>", "the first include must be the own header"),
    ("src/stray/x.h", "", "is in no known layer"),
    ("src/x.h", "", "is in no known layer"),
    ("tests/base/system_test.cpp", "#include <unistd.h>", "not for tests outside tests/platform"),
    ("tests/platform/system_test.cpp", "#include <unistd.h>", "not for tests outside tests/platform/posix"),
    ("tests/platform/ask_test.cpp", "#ifdef _WIN32", "platform conditional (_WIN32)"),
    ("tests/platform/call_test.cpp", "int x = getpid();", "getpid() is a call of one system"),
    ("tests/base/call_test.cpp", "int x = ::setenv(a, b, 1);", "setenv() is a call of one system"),
    ("src/engine/call.cpp", "int x = strcasecmp (a, b);", "strcasecmp() is a call of one system"),
    ("src/base/call.cpp", "int x = _stricmp(a, b);", "_stricmp() is a call of one system"),
    ("src/support/wait.cpp", "#include <semaphore>", "<semaphore> can lose a wake-up"),
    ("tests/support/wait_test.cpp", "#include <barrier>", "<barrier> can lose a wake-up"),
    ("tests/base/ask_test.cpp", "#ifdef _WIN32", "platform conditional (_WIN32)"),
    ("src/wini/call.h", "auto& r = platform::systemRegistry();", "systemRegistry() reaches for the real machine"),
    ("src/support/default.h", "void run(\n    platform::X& x = platform :: systemX());", "systemX() reaches for"),
    ("src/engine/using.h", "using platform::systemRegistry;", "systemRegistry() reaches for the real machine"),
    ("src/ui/using.h", "using namespace platform;\nauto& r = systemRegistry ();", "systemRegistry() reaches for"),
    ("src/session/alias.h", "namespace p = platform;\nauto s = p::systemPlatform();", "systemPlatform() reaches for"),
    ("src/packager/other.cpp", "auto& r = platform::systemRegistry();", "systemRegistry() reaches for the real machine"),
]
# Faults of the table: (a line that is added to it, what the message must contain).
BAD_LINES = [
    ("text | base | markdown", "text has a line already"),
    ("extra | base", "not \"folder | folders | purpose\""),
    ("extra | base |", "not \"folder | folders | purpose\""),
    ("extra | base | one; two", "not \"folder | folders | purpose\""),
    ("extra | nothing | a layer", "extra names nothing, which has no line"),
    ("base/part | ui | a part", "base/part names ui, which is a higher layer"),
]
HELPERS = {"src/platform/windows/x.h": "", "src/wini/own.h": "", "src/platform/own.h": ""}


def check(files):
    return run_check("check-layers", files)


class CheckLayersTest(unittest.TestCase):
    def test_accepts_a_good_tree(self):
        self.assertEqual(check(GOOD), (0, []))

    def test_finds_each_violation_at_its_line(self):
        for name, text, message in BAD:
            with self.subTest(name):
                code, lines = check({**GOOD, **HELPERS, name: text + "\n"})
                self.assertEqual(code, 1)
                self.assertEqual(len(lines), 1, lines)
                self.assertTrue(lines[0].startswith(f"{name}:{text.count(chr(10)) + 1}: "), lines)
                self.assertIn(message, lines[0])

    def test_reports_all_violations_of_a_tree(self):
        code, lines = check({**GOOD, **HELPERS, **{name: text + "\n" for name, text, _ in BAD}})
        self.assertEqual((code, len(lines)), (1, len(BAD)))

    def test_finds_each_fault_of_the_table(self):
        for line, message in BAD_LINES:
            with self.subTest(line):
                # A line for "base/part" has to be above that of "ui".
                table = f"{line}\n{LAYERS}" if line.startswith("base/") else f"{LAYERS}{line}\n"
                code, lines = check({**GOOD, "src/layers.txt": table})
                self.assertEqual((code, len(lines)), (1, 1), lines)
                self.assertTrue(lines[0].startswith(f"src/layers.txt:{table.splitlines().index(line) + 1}: "), lines)
                self.assertIn(message, lines[0])

    def test_a_tree_without_the_table_is_an_error(self):
        self.assertEqual(check({"src/base/x.h": ""})[0], 2)


class UnitCycleTest(unittest.TestCase):
    def cycles(self, includes):
        """The cycles that are reported for units of base/, each given as file -> headers that it includes."""
        texts = {f"src/base/{name}": "".join(f'#include "base/{header}"\n' for header in headers)
                 for name, headers in includes.items()}
        code, lines = check({"src/layers.txt": LAYERS, **texts})
        self.assertEqual(code, 1 if lines else 0)
        return lines

    def test_accepts_units_in_a_row(self):
        self.assertEqual(self.cycles({"a.h": ["b.h", "c.h"], "a.cpp": ["a.h"], "b.h": ["c.h"], "c.h": []}), [])

    def test_finds_headers_that_include_each_other(self):
        self.assertEqual(self.cycles({"a.h": ["b.h"], "b.h": ["a.h"]}),
                         ["src/base/a.h:1: cycle of units: base/a -> base/b -> base/a"])

    def test_counts_the_source_to_its_header(self):
        self.assertEqual(self.cycles({"a.h": [], "a.cpp": ["a.h", "b.h"], "b.h": ["c.h"], "c.h": ["a.h"]}),
                         ["src/base/a.cpp:2: cycle of units: base/a -> base/b -> base/c -> base/a"])

    def test_reports_one_shortest_cycle_of_each_knot(self):
        knots = {"a.h": ["b.h"], "b.h": ["c.h", "a.h"], "c.h": ["a.h"], "x.h": ["y.h"], "y.h": ["x.h"], "z.h": ["x.h"]}
        self.assertEqual(self.cycles(knots),
                         ["src/base/a.h:1: cycle of units: base/a -> base/b -> base/a",
                          "src/base/x.h:1: cycle of units: base/x -> base/y -> base/x"])


if __name__ == "__main__":
    unittest.main()
