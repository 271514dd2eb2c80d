#!/usr/bin/env python3
"""Proves what debian-source takes for a source, with an apt that has no network."""

import hashlib
import os
import pathlib
import subprocess
import tempfile
import unittest

SCRIPT = pathlib.Path(__file__).resolve().parent.parent / "lib/debian-source"
CONTENT = "the archive\n"
DIGEST = hashlib.sha256(CONTENT.encode()).hexdigest()
APT_CONFIG = """#!/bin/sh
echo "list='$MACHINE/sources.list'"
echo "parts='$MACHINE/sources.list.d/'"
"""
# Leaves its entries and its arguments to the test, and downloads, but fails as if a small file had gone.
APT_GET = """#!/bin/sh
echo "$@" >>"$MACHINE/commands"
case "$*" in
    *update*) eval "$(sed -n 's/^Dir::Etc::sourceparts "\\(.*\\)";/cp -r \\1 "$MACHINE\\/seen"/p' "$2")" ;;
    *source*) printf '%s' "$DOWNLOAD" >name.orig.tar.gz ;;
esac
exit 100
"""


class DebianSourceTest(unittest.TestCase):
    def setUp(self):
        directory = tempfile.TemporaryDirectory()
        self.addCleanup(directory.cleanup)
        self.machine = pathlib.Path(directory.name)
        (self.machine / "sources.list.d").mkdir()
        (self.machine / "bin").mkdir()
        for name, text in {"apt-config": APT_CONFIG, "apt-get": APT_GET}.items():
            (self.machine / "bin" / name).write_text(text)
            (self.machine / "bin" / name).chmod(0o755)
        self.target = self.machine / "target"

    def fetch(self, download=CONTENT, wanted=("name", "name.orig.tar.gz", DIGEST)):
        environment = {**os.environ, "PATH": f"{self.machine}/bin:{os.environ['PATH']}", "MACHINE": str(self.machine),
                       "DOWNLOAD": download}
        done = subprocess.run([SCRIPT, self.target, *wanted], env=environment, stdout=subprocess.PIPE,
                              stderr=subprocess.PIPE, text=True, check=False)
        return done.returncode, done.stderr

    def files(self):
        return [path.name for path in self.target.iterdir()]

    def test_takes_an_archive_though_apt_reports_a_failure(self):
        self.assertEqual(self.fetch(), (0, ""))
        self.assertEqual(self.files(), ["name.orig.tar.gz"])
        self.assertEqual((self.target / "name.orig.tar.gz").read_text(), CONTENT)

    def test_refuses_another_digest(self):
        code, errors = self.fetch("another archive\n")
        self.assertEqual((code, self.files()), (1, []))
        self.assertIn(f"name.orig.tar.gz has another digest than {DIGEST}", errors)

    def test_reports_a_missing_archive(self):
        code, errors = self.fetch(wanted=("name", "other.orig.tar.gz", DIGEST))
        self.assertEqual((code, self.files()), (1, []))
        self.assertIn("the source package name doesn't come with other.orig.tar.gz", errors)

    def test_does_not_ask_for_what_is_there(self):
        self.fetch()
        (self.machine / "commands").unlink()
        self.assertEqual(self.fetch(), (0, ""))
        self.assertFalse((self.machine / "commands").exists())

    def test_replaces_a_damaged_archive(self):
        self.fetch()
        (self.target / "name.orig.tar.gz").write_text("half")
        self.assertEqual(self.fetch(), (0, ""))
        self.assertEqual((self.target / "name.orig.tar.gz").read_text(), CONTENT)

    def test_makes_source_entries_of_the_machines_entries(self):
        (self.machine / "sources.list").write_text("# deb of old\ndeb http://one bookworm main\ndeb-src http://two x main\n")
        (self.machine / "sources.list.d/a.list").write_text("deb [signed-by=/key] http://three bookworm main\n")
        (self.machine / "sources.list.d/b.sources").write_text("Types: deb\nURIs: http://four\nSigned-By: /key\n")
        (self.machine / "sources.list.d/c.disabled").write_text("deb http://five x main\n")
        self.fetch()
        seen = {path.name: path.read_text() for path in (self.machine / "seen").iterdir()}
        self.assertEqual(seen, {
            "sources.list": "# deb of old\ndeb-src http://one bookworm main\ndeb-src http://two x main\n",
            "a.list": "deb-src [signed-by=/key] http://three bookworm main\n",
            "b.sources": "Types: deb-src\nURIs: http://four\nSigned-By: /key\n"})

    def test_leaves_the_machines_entries_alone(self):
        entry = self.machine / "sources.list"
        entry.write_text("deb http://one bookworm main\n")
        self.fetch()
        self.assertEqual(entry.read_text(), "deb http://one bookworm main\n")


if __name__ == "__main__":
    unittest.main()
