#!/usr/bin/env python3
"""Proves that check-shapes accepts a good tree and finds each kind of violation in a bad one."""

import unittest

from temporary_tree import run_check


def includes(count):
    return "".join(f'#include "base/h{number}.h"\n' for number in range(count))


GOOD = {
    "src/base/many.h": includes(16),
    "src/base/many.cpp": includes(17),
    "src/contracts/input_provider.h": "virtual int askText(const char* question, char* buffer, int size) = 0;\n",
    "src/session/installer.h": "int getTitle(char* buffer, int size);\nint run(PConsole* debugLog);\n",
    "src/session/installer.cpp": "int Installer::getTitle(char* buffer, int size) {}\n",
    "src/session/installer_texts.cpp": "void give(const std::string& text, char* buffer, int size);\n",
    "src/platform/windows/wide.cpp": "int toUtf8(char* out, std::int64_t capacity);\n",
    "src/ui/console/user.h": "int askText(const char* question,\n            char* buffer, int size) override;\n",
    "src/ui/console/user.cpp": "int User::askText(const char* question, char* buffer, int size) {}\n",
    "src/text/reader.h": "int read(const char* text, int length, unsigned char* out, int size);\n"
                         "int next(char* text, Kind kind, char& last, int size);\n// int old(char* buffer, int size);\n",
    "src/support/debug_log.h": "PConsole* console_;\nvoid print() { if (console_ != nullptr) console_->print(text); }\n",
    "src/installer/log_set_up.h": "std::unique_ptr<PConsole> log_;\nPConsole* log();\n",
    "src/engine/walk.cpp": "if (log_ != nullptr) { log_->readLine(); }\ndebugLog_.print(text);\n"
                           "if (page == nullptr) { out->print(text); }\nif (out->isOpen() && ready) {}\n",
    "src/engine/c_str.cpp": "x.c_str();\n" * 199 + "// x.c_str()\n",
}
SUMMARY = "199 uses of .c_str() in src/, at most 199 are allowed"
PAIR = "buffer with a size"
GUARD = "null guard of the log"

# (file, its text, what the message must contain; the line is the last one of the text)
BAD = [
    ("src/base/wide.h", includes(17), "17 includes in a header; at most 16"),
    ("src/base/a.h", "int give(char* out, std::int64_t capacity);", PAIR + " (char* out, std::int64_t capacity) in give"),
    ("src/engine/b.h", "int give(int a,\n    char *buffer, const size_t size = 1);", PAIR),
    ("src/support/c.h", "int read(char* buffer, std::uint16_t& inOutCapacity);", PAIR),
    ("src/wini/d.cpp", "int Product::name(int (*f)(int), char* buffer, unsigned long size) {", PAIR),
    ("src/wini/e.cpp", "using Getter = int (Product::*)(char*, int);", PAIR),
    ("src/session/state.h", "int title(char* buffer, int size);", PAIR),
    ("src/ui/other.h", "int give(char* buffer, int size) override;", PAIR),
    ("src/ui/other.cpp", "int Other::askText(const char* question, char* buffer, int size) {", PAIR),
    ("src/ui/console/user2.h", "int askText(const char* question, char* buffer, int size);", PAIR),
    ("src/ui/f.cpp", "log->print(x);\nif (log != nullptr)", GUARD + " log;"),
    ("src/ui/g.cpp", "console_->printText(x);\n} else if (console_ != nullptr) {", GUARD + " console_;"),
    ("src/ui/h.cpp", "a.log->print(x);\nif (a.log == NULL) {", GUARD + " a.log;"),
    ("src/ui/i.cpp", "log()->print(x);\nif (nullptr != log()) {", GUARD + " log();"),
    ("src/ui/j.cpp", "log->print(x);\nif (log) {", GUARD),
    ("src/ui/k.cpp", "log->print(x);\nif (!log || done) {", GUARD),
    ("src/ui/l.cpp", "log->print(x);\nif (count > 0 && log) {", GUARD),
    ("src/ui/m.cpp", "return log ? log->print(x) : 0;", GUARD),
    ("src/session/installer_log.cpp", "log->print(x);\nif (log != nullptr) {", GUARD),
    ("src/package/n.h", "void setConsole(PConsole* console);", "pointer to a PConsole"),
    ("src/engine/o.h", "PConsole *& console_;", "pointer to a PConsole"),
    ("src/session/p.h", "const PConsole* const console_;", "pointer to a PConsole"),
]


def check(files):
    return run_check("check-shapes", files)


class CheckShapesTest(unittest.TestCase):
    def test_accepts_a_good_tree(self):
        self.assertEqual(check(GOOD), (0, [SUMMARY]))

    def test_finds_each_violation_at_its_line(self):
        for name, text, message in BAD:
            with self.subTest(name):
                code, lines = check({**GOOD, name: text.rstrip("\n") + "\n"})
                self.assertEqual((code, len(lines)), (1, 2), lines)
                self.assertTrue(lines[0].startswith(f"{name}:{len(text.splitlines())}: "), lines)
                self.assertIn(message, lines[0])

    def test_reports_all_violations_of_a_tree(self):
        code, lines = check({**GOOD, **{name: text + "\n" for name, text, _ in BAD}})
        self.assertEqual((code, len(lines)), (1, len(BAD) + 1))

    def test_200_uses_of_c_str_are_too_many(self):
        code, lines = check({**GOOD, "src/base/one_more.h": "x->c_str();\n"})
        self.assertEqual((code, lines), (1, ["200 uses of .c_str() in src/, at most 199 are allowed; pass text as it is"]))

    def test_a_tree_without_sources_is_an_error(self):
        self.assertEqual(check({"tests/x.h": ""})[0], 2)


if __name__ == "__main__":
    unittest.main()
