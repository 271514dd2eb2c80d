"""What is known of a machine's last runs without a debug log."""

import os
import re
import shutil
import unittest

from descriptions import description
from harness import EXE, WINDOWS, EndToEndTest, main

SETS = f"""
<FileSet Name="Uninstaller"><FN Dest="[DIR]/un" Executable="1">installer{EXE}</FN></FileSet>
<FileSet Name="Core"><FN Dest="[DIR]">data.txt</FN></FileSet>
<UninstallWildcards>
 <File Dest="[DIR]/un">install.log</File><File Dest="[DIR]/un">backup.bin</File>
</UninstallWildcards>
"""
REFUSE = '<Refuse Special="Finish"><Text x="1" y="1">Not here.</Text></Refuse>'
BANNER = "TANDREL RUNS 1"


class RunRecords(EndToEndTest):
    def build(self, output, directory, **parts):
        text = description(self.native(directory), SETS, farewell='<CopyProgress Special="AutoNext"/>', **parts)
        self.build_package(text, {"data.txt": "data\n"}, output + EXE)
        shutil.rmtree(self.host("stage"))
        return output + EXE

    def setUp(self):
        super().setUp()
        self.product = self.build("setup", "opt/product")

    def file(self):
        return self.machine.state / "runs.txt"

    def runs(self):
        banner, *lines = self.file().read_text("utf-8").splitlines()
        self.assertEqual(banner, BANNER)
        for line in lines:
            self.assertRegex(line, r"^\d{4}-\d\d-\d\d \d\d:\d\d:\d\d\t(un)?install\t[a-z-]+\t\d+\t[^\t]*\t[^\t]*$")
        return [line.split("\t")[1:] for line in lines]

    def uninstall(self):
        result = self.run_program(f"opt/product/un/installer{EXE}", "-exitCodes=1", "-gui=0", "-uninstallApp=Test Product",
                                  "-uninstall=" + self.native("opt/product/un/install.log"))
        self.assertEqual(result.code, 0, result)
        self.assertFalse(self.host("opt/product").exists())

    def test_the_last_ten_runs_are_recorded(self):
        refusing = self.build("refusing", "opt/other", pages=REFUSE)
        self.run_program(self.product, "-auto")
        self.assertEqual(self.runs()[-1], ["install", "done", "0", "Test Product", ""])
        result = self.run_program(refusing, "-auto")
        self.assertEqual(result.code, 0, result)
        self.assertEqual(self.runs()[-1], ["install", "refused", "7", "Test Product", "Refuse"])
        for _ in range(11):
            self.run_program(refusing, "-auto")
        self.assertEqual(self.runs(), 10 * [["install", "refused", "7", "Test Product", "Refuse"]])
        before = self.file().read_bytes()
        self.run_program(self.product, "-help")
        self.assertEqual(self.file().read_bytes(), before, "a question is no run")
        self.uninstall()

    def test_nothing_of_a_product_stays_because_of_them(self):
        self.run_program(self.product, "-auto")
        self.uninstall()
        if WINDOWS:  # the directory was made for the product, and goes with the last one
            self.assertFalse(self.file().exists())
        else:  # it has the machine's registry as well
            self.assertEqual(self.runs()[-1], ["uninstall", "done", "0", "Test Product", ""])

    @unittest.skipIf(WINDOWS, "there are no such links and modes")
    def test_the_file_is_private_and_no_link_is_followed(self):
        self.machine.state.mkdir(exist_ok=True)
        precious = self.write("precious.txt", "mine")
        os.symlink(precious, self.file())
        self.run_program(self.product, "-auto")
        self.assertEqual(precious.read_text(), "mine")
        self.assertFalse(self.file().is_symlink())
        self.assertEqual(self.file().stat().st_mode & 0o777, 0o600)
        self.assertEqual(len(self.runs()), 1)

    def test_a_record_that_cannot_be_written_costs_nothing_else(self):
        self.run_program(self.product, "-auto")
        self.file().unlink()
        self.file().mkdir()
        result = self.run_program(self.product, "-auto", "-exitCodes=1")
        self.assertEqual((result.code, result.err), (0, ""), result)
        self.assertTrue(re.search("successful", result.out), result)
        self.file().rmdir()
        self.uninstall()


if __name__ == "__main__":
    main()
