#!/usr/bin/env python3
"""Proves that check-documents finds paths in the documents that don't exist, and takes nothing else for a path."""

import unittest

from temporary_tree import run_check

FILES = {
    "src/engine/walk.h": "", "src/engine/walk.cpp": "", "src/text/markdown.md": "", "docs/manual/README.md": "",
    "scripts/lint": "", ".ci/run": "", "Makefile": "", "CONTRIBUTING.md": "",
}
GOOD = """
`src/engine/walk.h`, `engine/walk.cpp`, `walk.cpp:12`, `engine/walk.{h,cpp}`, `src/engine/*.h`, `src/engine/`, `.ci/run`
`scripts/lint --all src/text`, ``docs/manual``, [the manual](docs/manual/README.md#top), [`lint`](scripts/lint "Lint")
[away](https://example.org/none.md) [mail](mailto:none@example.org) [here](#none) (`src/text`)
`src/<layer>/none.h` `x_<subject>_test.cpp` `build/linux/none.txt` `~/.cache/none.md` `/opt/none.h` `<none.h>` `.md`
`install.xml` `make none` `either/or` `None::none` `-none=none.x` none.md src/none.h
```text
src/none.h
```
```sh
scripts/lint src/text   # src/none.h
build/linux/bin/none
```
"""
# (a line, the path that is missing)
BAD = [
    ("`src/engine/none.h`", "src/engine/none.h"),
    ("see `engine/none` there", "engine/none"),
    ("`none.cpp:12`", "none.cpp"),
    ("`none/walk.h`", "none/walk.h"),
    ("`src/engine/walk.{h,py}`", "src/engine/walk.{h,py}"),
    ("`src/text/*.h`", "src/text/*.h"),
    ("`scripts/lint src/none`", "src/none"),
    ("``docs/none/``", "docs/none/"),
    ("[none](docs/none.md#top)", "docs/none.md"),
    ("[`lint`](lint)", "lint"),
    ("(`.ci/none`)", ".ci/none"),
    ("```sh\nscripts/none", "scripts/none"),
]


def check(files):
    return run_check("check-documents", {**FILES, **files})


class CheckDocumentsTest(unittest.TestCase):
    def test_accepts_what_exists_and_what_is_no_path(self):
        self.assertEqual(check({"README.md": GOOD}), (0, ["2 documents"]))

    def test_finds_each_missing_path_at_its_line(self):
        for text, path in BAD:
            with self.subTest(text):
                line = (GOOD + text).count("\n") + 1
                self.assertEqual(check({"README.md": GOOD + text}), (1, [f"README.md:{line}: {path} does not exist"]))

    def test_checks_each_document(self):
        for name in ("CONTRIBUTING.md", "docs/architecture.md", "docs/adding-a-change.md"):
            with self.subTest(name):
                self.assertEqual(check({"README.md": "", name: "`none.md`"}),
                                 (1, [f"{name}:1: none.md does not exist"]))

    def test_links_and_names_start_at_the_document(self):
        self.assertEqual(check({"README.md": "", "docs/architecture.md": "[manual](manual/README.md) `manual/README.md`"}),
                         (0, ["3 documents"]))

    def test_a_missing_readme_is_an_error(self):
        self.assertEqual(check({})[0], 2)


if __name__ == "__main__":
    unittest.main()
