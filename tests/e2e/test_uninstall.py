"""Uninstallations: by the registered command, manual, repeated, from damaged logs, with files in the way."""

import os
import re
import shutil
import subprocess
import unittest

from descriptions import description
from harness import EXE, HELPERS, WINDOWS, EndToEndTest, main

UNINSTALL_KEY = "Software\\Microsoft\\Windows\\CurrentVersion\\Uninstall"
BANNER = "*******************************\n* Tandrel Group uninstaller   *\n*******************************\n"
LINK = ".lnk" if WINDOWS else ".desktop"
URL = ".url" if WINDOWS else ".desktop"
FAILED = 255
# What stays of the product until everything else is undone.
OWN = {"un/" + name for name in ("backup.bin", "install.log", "install.xml", "installer" + EXE)}
SETS = f"""
<FileSet Name="Uninstaller"><FN Dest="[DIR]/un" Executable="1">installer{EXE}</FN></FileSet>
<FileSet Name="Core">
 <FN Dest="[DIR]/bin" Executable="1">tool{EXE}</FN>
 <FN Dest="[DIR]">data.txt</FN>
 <FN Dest="[SHARED]" BackupExisting="1">shared.txt</FN>
</FileSet>
<UninstallWildcards>
 <File Dest="[DIR]/un">install.log</File>
 <File Dest="[DIR]/un">backup.bin</File>
</UninstallWildcards>
"""
LATE = '<RegisterApplication Special="AutoNext" Condition="[INSTALL_ERROR]==0"/>'
FAREWELL = """
<Welcome><Text x="1" y="1">The product goes.</Text></Welcome>
<PreUninstall Special="AutoNext"/>
<UnregisterApplication Special="AutoNext"/>
<CopyProgress Special="AutoNext"/>
<BadFinish Special="BadFinish;Finish" Condition="[UNINSTALL_ERROR]==1"><Text x="1" y="1">Not all.</Text></BadFinish>
"""


class UninstallTest(EndToEndTest):
    """Verbs for the tests below: a small product in opt/product on a machine with files of its own."""

    product = "Test Product"

    def setUp(self):
        super().setUp()
        self.dir = self.native("opt/product")
        self.write("opt/other/precious.txt", "the user's own")
        self.write("shared/shared.txt", "as it was before")

    def build(self, changes="", late=LATE, files=None, farewell=FAREWELL):
        values = (f'<Value Name="UNINSTALL_ERROR" DataType="value">0</Value>'
                  f'<Value Name="SHARED" DataType="value">{self.native("shared")}</Value>')
        text = description(self.dir, SETS + changes, values=values, late=late, farewell=farewell)
        text = text.replace("Test Product", self.product)
        self.setup = self.build_package(text, {"data.txt": "data\n", "shared.txt": "the product's\n",
                                               "tool" + EXE: "a tool\n", **(files or {})})
        shutil.rmtree(self.host("stage"))

    def install(self, *arguments, **build):
        self.build(**build)
        self.before = self.snapshot()
        result = self.run_program(self.setup, "-auto", *arguments)
        self.assertIn("The installation was successful.", result.out, result)
        self.assertIsNotNone(self.registry("HKLM", UNINSTALL_KEY + "\\" + self.product))
        return result

    def snapshot(self):
        """Every file and directory of the machine except those in which the system keeps its own records."""
        skipped = ("tmp/", "state/")
        found = {}
        for path in sorted(self.machine.root.rglob("*")):
            name = str(path.relative_to(self.machine.root))
            if not name.startswith(skipped):
                found[name] = path.read_bytes() if path.is_file() else None
        return found

    def uninstall(self, log="opt/product/un/install.log", *arguments):
        """Only the second stage, on copies like those of the first: its exit code is the outcome."""
        copy = self.host("copy.log")
        shutil.copyfile(self.host(log), copy)
        result = self.run_program("installer" + EXE, "-uninstallFile=" + self.native("copy.log"),
                                  "-uninstallApp=Test Product", "-gui=0", *arguments)
        copy.unlink(missing_ok=True)
        return result

    def assert_nothing_left(self):
        self.assertEqual(self.snapshot(), self.before)
        self.assertIsNone(self.registry("HKLM", UNINSTALL_KEY + "\\" + self.product))

    def log_path(self, name):
        """A path of the product as in the log: the directory as it was given, then a backslash."""
        directory, _, base = name.rpartition("/")
        return self.native("opt/product") + ("/" + directory if directory else "") + "\\" + base

    def rewrite_log(self, change):
        path = self.host("opt/product/un/install.log")
        path.write_bytes(change(path.read_bytes()))


class RegisteredCommand(UninstallTest):
    def temporary_copies(self):
        return sorted(p.name for p in self.machine.temp.glob("ormeluninst-*/*"))

    def registered_uninstall(self, *arguments):
        helper = "run_uninstaller" + EXE
        shutil.copy2(HELPERS / helper, self.host(helper))
        result = self.run_program(helper, self.product, *arguments)
        self.host(helper).unlink()
        return result

    def test_the_list_of_applications_names_the_product_and_its_uninstaller(self):
        self.install()
        entry = self.registry("HKLM", UNINSTALL_KEY + "\\Test Product")[""]
        command = f'"{self.dir}/un/installer{EXE}"'
        self.assertEqual(entry, {name: ("REG_SZ", text) for name, text in {
            "DisplayIcon": command, "DisplayName": "Test Product", "DisplayVersion": "1.2.3",
            "HelpLink": "https://test.example", "Publisher": "Tandrel Software Ltd",
            "UninstallString": f'{command} -uninstall="{self.dir}/un/install.log" -uninstallApp="Test Product"',
        }.items()})

    def test_it_removes_the_product_and_itself_and_signals_whoever_waits(self):
        self.install()
        result = self.registered_uninstall("-quiet=1")
        self.assertEqual(result.code, 0, result)
        self.assertEqual(re.findall(r"OrmelUninstaller\w+ \d", result.out),
                         ["OrmelUninstallerStart 1", "OrmelUninstallerEnd 1"], result)
        self.wait_until(lambda: "ormeluninst.log" not in self.temporary_copies())
        self.assert_nothing_left()
        # Windows keeps the image of a running program, here the copy of the uninstaller.
        self.wait_until(lambda: self.temporary_copies() == (["ormeluninst.dll"] if WINDOWS else []))
        self.assertEqual(len(list(self.machine.temp.glob("ormeluninst*"))), 1 if WINDOWS else 0)

    def test_a_double_quote_in_the_name_ends_no_option(self):
        self.product = 'Big 12" Screen'
        self.install()
        result = self.registered_uninstall("-quiet=1")
        self.assertEqual(result.code, 0, result)
        self.wait_until(lambda: not self.host("opt/product").exists())
        self.assert_nothing_left()

    def test_the_first_stage_ends_at_once_and_leaves_the_work_to_its_copy(self):
        self.install()
        result = self.run_program("opt/product/un/installer" + EXE, "-uninstall=" + self.dir + "/un/install.log",
                                  "-uninstallApp=Test Product", "-gui=0", "-debug=1")
        self.assertEqual(result.code, 0, result)
        self.wait_until(lambda: not self.host("opt/product").exists())
        self.wait_until(lambda: "Ending installation UI" in self.debug_log())
        self.assert_nothing_left()
        # With a debug log both copies stay, for inspection.
        self.assertEqual(self.temporary_copies(), ["ormeluninst.dll", "ormeluninst.log"])

    def debug_log(self):
        path = self.machine.temp / "installer_debug.log"
        return path.read_text("utf-8", "replace") if path.exists() else ""

    def test_without_a_log_the_first_stage_fails_and_nothing_happens(self):
        self.install()
        before = self.snapshot()
        result = self.run_program("installer" + EXE, "-uninstall=" + self.native("none.log"), "-gui=0")
        self.assertEqual(result.code, FAILED, result)
        self.assertIn("ERROR: The uninstallation can't start: ", result.err)
        self.assertEqual(self.snapshot(), before)
        self.assertEqual(list(self.machine.temp.glob("ormeluninst*")), [])


class SecondStage(UninstallTest):
    def test_it_reports_its_steps_asks_nothing_and_ends_with_success(self):
        self.install()
        result = self.uninstall()
        self.assertEqual(result.code, 0, result)
        self.assertTrue(result.out.startswith(BANNER + "The product goes.\n"), result)
        self.assertIn("Delete " + self.on_screen(self.log_path("bin/tool" + EXE)) + "\n", result.out)
        self.assertIn("The uninstall was successful.\nBye.\n", result.out)
        self.assertTrue(result.out.endswith("Automatic uninstallation was successful!\n"), result)
        self.assertFalse(self.host("copy.log").exists())
        self.assert_nothing_left()

    def test_a_quiet_uninstallation_prints_no_files(self):
        self.install()
        result = self.uninstall("opt/product/un/install.log", "-quiet=1")
        self.assertEqual(result.code, 0, result)
        self.assertNotIn("Delete ", result.out)
        self.assertNotIn("* Tandrel Group", result.out)
        self.assert_nothing_left()

    def test_a_second_uninstallation_fails_and_touches_nothing(self):
        self.install()
        shutil.copyfile(self.host("opt/product/un/install.log"), self.host("kept.log"))
        self.before["kept.log"] = self.read("kept.log")
        self.assertEqual(self.uninstall("kept.log").code, 0)
        self.assert_nothing_left()
        result = self.uninstall("kept.log")
        self.assertEqual(result.code, FAILED, result)
        self.assert_nothing_left()

    def test_files_of_somebody_else_stay_and_are_reported(self):
        self.install()
        self.write("opt/product/mine.txt", "mine")
        self.write("opt/product/un/mine.log", "mine as well")
        result = self.uninstall()
        self.assertEqual(result.code, FAILED, result)
        self.assertEqual(set(self.tree("opt/product")), OWN | {"mine.txt", "un/mine.log"})
        self.assertIn("FAILED to remove " + self.dir + "\n", result.out)
        self.assertIn("There were errors during the uninstall.\n", result.out)
        self.assertIn("Not all.\n", result.out)
        self.assertIn("Uninstallation errors summary:\n", result.out)
        self.assertEqual(self.read("shared/shared.txt"), b"as it was before")

    def test_missing_files_are_reported_and_are_no_error(self):
        self.install()
        self.host("opt/product/data.txt").unlink()
        shutil.rmtree(self.host("opt/product/bin"))
        result = self.uninstall()
        self.assertEqual(result.code, 0, result)
        self.assertIn("Missing " + self.on_screen(self.log_path("data.txt")) + "\n", result.out)
        self.assertIn("Missing " + self.on_screen(self.log_path("bin/tool" + EXE)) + "\n", result.out)
        self.assert_nothing_left()

    def test_changed_files_of_the_product_are_deleted_but_a_changed_shared_file_stays(self):
        self.install()
        self.write("opt/product/data.txt", "edited by the user")
        self.write("shared/shared.txt", "edited after the installation")
        result = self.uninstall()
        self.assertFalse(self.host("opt/product").exists(), result)
        self.assertEqual(self.read("shared/shared.txt"), b"edited after the installation")

    def test_a_directory_in_place_of_a_file_stays_with_its_content(self):
        self.install()
        self.host("opt/product/data.txt").unlink()
        self.write("opt/product/data.txt/mine.txt", "mine")
        result = self.uninstall()
        self.assertEqual(result.code, FAILED, result)
        self.assertIn("FAILED to delete " + self.on_screen(self.log_path("data.txt")) + "\n", result.out)
        self.assertEqual(set(self.tree("opt/product")), OWN | {"data.txt/mine.txt"})
        self.assertEqual(self.read("opt/product/data.txt/mine.txt"), b"mine")

    def start_waiting(self, program):
        """Runs a copy of the installer, which asks a question, until the returned function is called or the test ends."""
        page = '<Ask><Field Type="EditBox" Label="Owner" x="1" y="1">DIR</Field></Ask>'
        other = description(self.native("never"), "", page).replace("Test Product", "Another Product")
        self.build_package(other, {}, "asks.bin", ("--bin",))
        shutil.rmtree(self.host("stage"))
        command = self.machine.command(self.host(program)) + ["-gui=0", "-bin=" + self.native("asks.bin")]
        process = subprocess.Popen(command, stdin=subprocess.PIPE, stdout=subprocess.PIPE, stderr=subprocess.DEVNULL,
                                   env=self.machine.environment({}), cwd=self.machine.root)

        def stop():
            process.stdin.close()
            process.wait(timeout=60)
            process.stdout.close()

        self.addCleanup(stop)
        self.assertIn(b"*", process.stdout.read(1))
        return stop

    def test_a_running_program_of_the_product_is_stopped_to_delete_its_file(self):
        self.install(files={"tool" + EXE: self.read("installer" + EXE)})
        self.start_waiting("opt/product/bin/tool" + EXE)
        result = self.uninstall()
        self.assertEqual(result.code, 0, result)
        self.assertFalse(self.host("opt/product").exists())

    def test_a_program_that_must_not_run_prevents_the_uninstallation_until_it_ends(self):
        page = f'<RunningApps><TestApp Directory="[DIR]">tool{EXE}</TestApp></RunningApps>'
        self.install(files={"tool" + EXE: self.read("installer" + EXE)}, farewell=page + FAREWELL)
        stop = self.start_waiting("opt/product/bin/tool" + EXE)
        before = self.snapshot()
        result = self.uninstall()
        self.assertEqual(result.code, FAILED, result)
        self.assertIn("The installation can not continue, because the processes listed above are running.", result.out)
        self.assertEqual(self.snapshot(), before)
        self.assertIsNotNone(self.registry("HKLM", UNINSTALL_KEY + "\\Test Product"))
        stop()
        result = self.uninstall()
        self.assertEqual(result.code, 0, result)
        self.host("asks.bin").unlink()
        self.assert_nothing_left()

    @unittest.skipIf(not WINDOWS, "only there a file in use can't be deleted")
    def test_a_file_in_use_without_a_program_name_stays_and_is_reported(self):
        self.install(files={"data.txt": self.read("installer" + EXE)})
        self.start_waiting("opt/product/data.txt")
        result = self.uninstall()
        self.assertEqual(result.code, FAILED, result)
        self.assertIn("FAILED to delete " + self.on_screen(self.log_path("data.txt")) + "\n", result.out)
        self.assertEqual(set(self.tree("opt/product")), OWN | {"data.txt"})


class DamagedLog(UninstallTest):
    """Whatever a log contains, the run ends with one of the two codes and undoes only what the log names."""

    def run_log(self, content):
        """Uninstalls with a log of that content."""
        self.write("bad.log", content)
        result = self.uninstall("bad.log")
        self.assertIn(result.code, (0, FAILED), result)
        self.assertEqual(self.read("opt/other/precious.txt"), b"the user's own", content)
        return result

    def test_a_truncated_log_undoes_what_it_still_names(self):
        self.install()
        lines = self.read("opt/product/un/install.log").splitlines(keepends=True)
        first = next(i for i, line in enumerate(lines) if line.startswith((b"DIR", b"FILE")))
        installed = self.host("kept")
        shutil.copytree(self.host("opt/product"), installed)
        cuts = range(len(lines)) if not WINDOWS else (0, 1, first - 1, first, first + 2, len(lines) - 1)
        for count in cuts:
            shutil.rmtree(self.host("opt/product"), ignore_errors=True)
            shutil.copytree(installed, self.host("opt/product"))
            # Every second cut goes through the middle of a line.
            result = self.run_log(b"".join(lines[:count]) + (lines[count][:7] if count % 2 else b""))
            left = set(self.tree("opt/product"))
            for line in lines[first:]:
                fields = line.decode().split()
                if fields[:2] == ["FILE", "CREATE"]:
                    name = fields[2].replace("\\", "/").split("opt/product/")[-1]
                    # What a repetition needs goes only with everything else.
                    is_named = lines.index(line) < count and (name not in OWN or result.code == 0)
                    self.assertEqual(name not in left, is_named, (count, name))

    def test_unknown_and_damaged_records_are_skipped(self):
        self.install()
        log = self.read("opt/product/un/install.log")
        junk = ["", "\t\t\t", "FILE", "FILE\t", "FILE\tCREATE", "FILE\tCREATE\t", "FILE\tMOVE\t" + self.native("opt/other"),
                "DIR", "DIR\t", "DIR\tx\ty", "DIR\t-5\t" + self.native("opt/other/"), "DIR\t99999999999\t\\",
                "REGKEY\t1\tHKEY_LOCAL_MACHINE", "REGVAL", "REGVAL\tNO_ROOT\tx\ty", "REGKEY\t99\tHKEY_LOCAL_MACHINE\tx",
                "ENV", "ENV\tNONE", "ENV\tCREATE", "INI\tCREATE", "INI\tREPLACE\t\t\t", "MODIFYFILE\tADDAFTER",
                "SHORTCUT", "SHORTCUT\tMOVE\t" + self.native("opt/other/precious.txt"), "FIREWALL\tNOTHING", "WHAT\tIS\tTHIS",
                "x" * 5000, "FILE\tCREATE\t" + "\\" * 3000, "\x00\x01\xff" * 20]
        result = self.run_log(log + "\r\n".join(junk).encode("latin-1") + b"\r\n")
        self.assertEqual(result.code, FAILED, result)
        self.assertEqual(set(self.tree("opt/product")), OWN)
        self.host("bad.log").unlink()
        self.assertEqual(self.uninstall().code, 0)
        self.assert_nothing_left()

    def test_paths_of_directories_or_missing_files_are_not_deleted_as_files(self):
        self.install()
        log = self.read("opt/product/un/install.log")
        self.write("opt/full/inner.txt", "inner")
        more = [f"FILE\tCREATE\t{self.native('opt/full')}", f"FILE\tCREATE\t{self.native('no/such/file')}",
                f"DIR\t2\t{self.native('opt/full')}\\", f"DIR\t1\t{self.native('no/such')}\\",
                f"SHORTCUT\tCREATE\t{self.native('opt/full')}"]
        result = self.run_log(log + "\r\n".join(more).encode() + b"\r\n")
        self.assertEqual(result.code, FAILED, result)
        self.assertEqual(self.read("opt/full/inner.txt"), b"inner")
        self.assertEqual(set(self.tree("opt/product")), OWN)

    @unittest.skipIf(WINDOWS, "Wine deletes the target of a link of the host")
    def test_links_are_deleted_and_their_targets_and_devices_stay(self):
        self.install()
        log = self.read("opt/product/un/install.log")
        self.host("opt/link").symlink_to(self.host("opt/other/precious.txt"))
        self.host("opt/linked").symlink_to(self.host("opt/other"))
        more = [f"FILE\tCREATE\t{self.native('opt/link')}", f"DIR\t1\t{self.native('opt/linked')}\\",
                "FILE\tCREATE\t/dev/full/x"]
        self.run_log(log + "\r\n".join(more).encode() + b"\r\n")
        self.assertFalse(os.path.lexists(self.host("opt/link")))
        self.assertTrue(self.host("opt/other").is_dir())

    def test_wildcards_never_clean_a_root_or_a_relative_directory(self):
        self.install(changes='<UninstallWildcards><File Dest="PLACE" DeleteDirs="1==1">*</File></UninstallWildcards>')
        # Only the first group counts, so it is removed and the second one is used.
        text = re.sub(r"<UninstallWildcards>.*?</UninstallWildcards>", "", self.read_text("opt/product/un/install.xml"),
                      count=1, flags=re.S)
        self.host("opt/product").rename(self.host("kept"))
        for place in ("", "/", "\\", "opt", "..", "C:", "C:\\", "[NO_SUCH_VARIABLE]"):
            shutil.copytree(self.host("kept"), self.host("opt/product"))
            self.write("opt/product/un/install.xml", text.replace("PLACE", place))
            self.uninstall()
            self.assertEqual(set(self.tree("opt/product")), OWN, place)
            self.assertEqual(self.read("opt/other/precious.txt"), b"the user's own", place)
            shutil.rmtree(self.host("opt/product"))

    def test_a_log_whose_description_is_gone_or_broken_undoes_nothing(self):
        self.install()
        path = self.host("opt/product/un/install.xml")
        text = path.read_bytes()
        for content in (None, b"", b"<", text[:len(text) // 2], b"\x00" * 100):
            path.unlink(missing_ok=True)
            if content is not None:
                path.write_bytes(content)
            result = self.uninstall()
            self.assertEqual(result.code, FAILED, result)
            self.assertEqual(self.read("opt/product/data.txt"), b"data\n")


if __name__ == "__main__":
    main()
