"""One product installed again: repaired, in a new version, over damaged records. One uninstallation gives all back."""

import shutil
import unittest

from descriptions import description
from harness import EXE, WINDOWS, EndToEndTest, main

ENVIRONMENT = "SYSTEM\\CurrentControlSet\\Control\\Session Manager\\Environment"
CLEANING = ('<UninstallWildcards><File Dest="[DIR]/un">install.log</File>'
            '<File Dest="[DIR]/un">backup.bin</File></UninstallWildcards>')
FAREWELL = '<CopyProgress Special="AutoNext"/>'

FIRST = """
<FileSet Name="Image"><FN Dest="[DIR]/un" Executable="1">installer{exe}</FN></FileSet>
<FileSet Name="Core">
 <FN Dest="[DIR]">data.txt</FN>
 <FN Dest="[DIR]/old">dropped.txt</FN>
 <FN Dest="[DIR]">script.txt</FN>
 <FN Dest="[SHARED]" BackupExisting="1">shared.txt</FN>
 <FN Dest="[SHARED]" BackupExisting="1" ExpandVarsInFile="1">mine.txt</FN>
</FileSet>
<Environment><Replace VarName="TANDREL_MODE">first</Replace></Environment>
<IniFiles><Add FileName="[SHARED]/conf.ini" Section="s" Key="known">first</Add></IniFiles>
<ModifyFiles><File Command="AddAfter" Path="[SHARED]/list.txt">[DIR]/script.txt</File></ModifyFiles>
<Shortcuts><Add Type="File" Dest="[DIR]/menu" Target="[DIR]/data.txt">Data{link}</Add></Shortcuts>
<AdditionalInstall><Registry>
 <AddValue Place="HKEY_LOCAL_MACHINE" Path="Software\\Reinstalled" Value="Name">first</AddValue>
</Registry></AdditionalInstall>
"""
SECOND = """
<FileSet Name="Image"><FN Dest="[DIR]/un" Executable="1">installer{exe}</FN></FileSet>
<FileSet Name="Core">
 <FN Dest="[DIR]">data.txt</FN>
 <FN Dest="[DIR]/new">added.txt</FN>
 <FN Dest="[DIR]">script.txt</FN>
 <FN Dest="[SHARED]" BackupExisting="1">shared.txt</FN>
</FileSet>
<Environment><Replace VarName="TANDREL_MODE">second</Replace></Environment>
<IniFiles><Add FileName="[SHARED]/conf.ini" Section="s" Key="known">second</Add></IniFiles>
<ModifyFiles><File Command="AddAfter" Path="[SHARED]/list.txt">[DIR]/script.txt</File></ModifyFiles>
"""
FIRST_FILES = {"data.txt": "data 1\n", "dropped.txt": "dropped\n", "script.txt": "1\nanchor\n1\nadded 1\n",
               "shared.txt": "the product's 1\n", "mine.txt": "in [DIR]\n"}
SECOND_FILES = {"data.txt": "data 2\n", "added.txt": "added\n", "script.txt": "1\nanchor\n2\nadded 2\nand more\n",
                "shared.txt": "the product's 2\n"}


class ReinstallTest(EndToEndTest):
    """Two versions of a product on a machine with files of its user."""

    def setUp(self):
        super().setUp()
        self.dir = self.native("opt/product")
        self.write("shared/shared.txt", "the user's\n")
        self.write("shared/mine.txt", "mine\n")
        self.write("shared/conf.ini", "[s]\nknown=before\n".replace("\n", "\r\n" if WINDOWS else "\n"))
        self.write("shared/list.txt", "anchor\nend\n".replace("\n", "\r\n" if WINDOWS else "\n"))
        self.first = self.build("first", FIRST, FIRST_FILES)
        self.second = self.build("second", SECOND, SECOND_FILES)
        self.before = self.snapshot()

    def build(self, name, sets, files):
        sets = sets.replace("{exe}", EXE).replace("{link}", ".lnk" if WINDOWS else ".desktop")
        values = (f'<Value Name="UNINSTALL_ERROR" DataType="value">0</Value>'
                  f'<Value Name="SHARED" DataType="value">{self.native("shared")}</Value>')
        text = description(self.dir, sets + CLEANING, values=values, farewell=FAREWELL)
        setup = self.build_package(text, files, output=name + EXE)
        shutil.rmtree(self.host("stage"))
        return setup

    def snapshot(self):
        """Every file and directory except those in which the system keeps its own records."""
        found = {}
        for path in sorted(self.machine.root.rglob("*")):
            name = str(path.relative_to(self.machine.root))
            if not name.startswith(("tmp/", "state/")):
                found[name] = path.read_bytes() if path.is_file() else None
        return found

    def environment(self):
        return (self.registry("HKLM", ENVIRONMENT) or {}).get("TANDREL_MODE")

    def install(self, setup, *arguments):
        result = self.run_program(setup, "-auto", *arguments)
        self.assertIn("The installation was successful.", result.out, result)
        self.assertEqual(result.code, 0, result)
        return result

    def uninstall(self):
        copy = self.host("copy.log")
        shutil.copyfile(self.host("opt/product/un/install.log"), copy)
        result = self.run_program("installer" + EXE, "-uninstallFile=" + self.native("copy.log"),
                                  "-uninstallApp=Test Product", "-gui=0")
        copy.unlink(missing_ok=True)
        self.assertIn("The uninstall was successful.", result.out, result)
        return result

    def expect_nothing_left(self):
        self.assertEqual(self.snapshot(), self.before)
        self.assertIsNone(self.environment())
        # The undo of a value may leave its key, empty.
        self.assertIn(self.registry("HKLM", "Software\\Reinstalled"), (None, {"": {}}))

    def test_a_repair_gives_back_what_was_there_before(self):
        self.install(self.first)
        self.host("opt/product/data.txt").write_text("damaged")
        self.install(self.first)
        self.assertEqual(self.read_text("opt/product/data.txt"), "data 1\n")
        self.assertEqual(self.read_text("shared/list.txt").split(), ["anchor", "added", "1", "end"])
        self.uninstall()
        self.expect_nothing_left()

    def test_a_new_version_continues_the_records_of_the_old_one(self):
        self.install(self.first)
        self.install(self.second)
        self.assertEqual(self.read_text("shared/shared.txt"), "the product's 2\n")
        self.assertEqual(self.read_text("shared/list.txt").split(), ["anchor", "added", "2", "and", "more", "end"])
        self.install(self.second)
        self.uninstall()
        self.expect_nothing_left()

    def test_an_old_version_over_a_new_one(self):
        self.install(self.second)
        self.install(self.first)
        self.uninstall()
        self.expect_nothing_left()

    def test_a_damaged_log_is_taken_over_as_far_as_it_can_be_read(self):
        self.install(self.first)
        log = self.host("opt/product/un/install.log")
        log.write_bytes(log.read_bytes().replace(b"NUMVARS", b"NUMXXXX") + b"FILE\tCREATE\t/shared/li")
        result = self.install(self.second)
        self.assertIn("are damaged; what can be read of them is kept", result.err)
        self.uninstall()
        self.assertFalse(self.host("opt").exists())
        self.assertEqual(self.read_text("shared/shared.txt"), "the user's\n")
        self.assertTrue(self.host("shared/list.txt").exists())

    def test_a_log_that_cannot_be_opened_stops_the_run(self):
        self.install(self.first)
        log = self.host("opt/product/un/install.log")
        log.rename(self.host("kept.log"))
        log.mkdir()
        before = self.snapshot()
        result = self.run_program(self.second, "-auto")
        self.assertIn("can't be read", result.err)
        self.assertNotIn("The installation was successful.", result.out)
        self.assertEqual(self.snapshot(), before)

    @unittest.skipIf(WINDOWS, "the directory isn't given by the environment there")
    def test_records_that_cannot_be_opened_stop_the_run(self):
        blocked = self.host("none")
        blocked.write_text("a file")
        before = self.snapshot()
        result = self.run_program(self.first, "-auto", env={"TANDREL_STATE_DIR": self.native("none/state")})
        self.assertIn("Nothing was installed: there is no way to note down that the installation is at work", result.err)
        self.assertIn(self.native("none/state"), result.err)
        self.assertEqual(self.snapshot(), before)

    def test_a_directory_that_no_log_can_hold_stops_the_run(self):
        for value, fault in (("relative", "it is relative"), (self.dir + "\tx", "it holds control characters")):
            result = self.run_program(self.first, "-auto", "-VARIABLE_SHARED=" + value)
            self.assertIn(fault, result.err, result)
            self.assertIn("Nothing was installed.", result.err)
            self.assertNotIn("The installation was successful.", result.out)
            self.assertEqual(self.snapshot(), self.before)


if __name__ == "__main__":
    main()
