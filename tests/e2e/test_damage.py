"""Uninstallations that can't do all of it: from damaged archives and logs, with things in the way, asked to end. What the
user has stays, what is said is true, and the same uninstallation succeeds once the cause is gone."""

import os
import re
import shutil
import subprocess
import unittest

from harness import TIMEOUT, WINDOWS, main
from test_uninstall import FAILED, OWN, UNINSTALL_KEY, UninstallTest

ARCHIVE = "opt/product/un/backup.bin"
LOG = "opt/product/un/install.log"
FORMER = b"as it was before"
INSTALLED = b"the product's\n"
SUCCESS = "Automatic uninstallation was successful!\n"
ERROR = "The automatic uninstaller has encountered an ERROR!\n"
DAMAGED_HEAD = "The variables of the install log are missing or damaged."


class DamageTest(UninstallTest):
    def reinstall(self):
        """The machine as after the first installation, whatever was left of it."""
        shutil.rmtree(self.host("opt/product"), ignore_errors=True)
        self.write("shared/shared.txt", FORMER)
        result = self.run_program(self.setup, "-auto")
        self.assertIn("The installation was successful.", result.out, result)

    def forget_sums(self):
        for path in self.machine.state.glob("written-*"):
            path.unlink()

    def assert_can_be_repeated(self, result):
        self.assertEqual(result.code, FAILED, result)
        self.assertTrue(result.out.endswith(ERROR), result)
        self.assertIn("The uninstallation is not complete.", result.err)
        self.assertLessEqual(OWN, set(self.tree("opt/product")), result)
        self.assertIsNotNone(self.registry("HKLM", UNINSTALL_KEY + "\\Test Product"), result)

    def assert_repeats(self):
        result = self.uninstall()
        self.assertEqual(result.code, 0, result)
        self.assertTrue(result.out.endswith(SUCCESS), result)
        self.assert_nothing_left()


class DamagedArchive(DamageTest):
    def break_and_repair(self, damaged, context):
        """Uninstalls with a damaged archive. If that fails, it is done again with the good one."""
        good = self.read(ARCHIVE)
        self.write(ARCHIVE, damaged)
        result = self.uninstall()
        self.assertIn(self.read("shared/shared.txt"), (FORMER, INSTALLED), (context, result))
        if result.code != 0:
            self.assert_can_be_repeated(result)
            self.assertIn(f"The backup archive {self.native(ARCHIVE)} can't be read to its end.".replace("\\", "/"),
                          result.err.replace("\\", "/"), (context, result))
            self.write(ARCHIVE, good)
            self.assert_repeats()
        return result

    def test_an_archive_that_is_cut_fails_the_walk_and_loses_nothing(self):
        self.install()
        good = self.read(ARCHIVE)
        size = len(good)
        header = size - 1 - len(FORMER)
        # After the banner, and after the content: such an archive is that of an installation that was killed, of which
        # nothing is remembered.
        ends = (41, size - 1)
        cuts = (0, 1, 40, 41, 42, header - 12, header - 1, header, header + 1, size - 2, size - 1)
        for cut in cuts if not WINDOWS else (0, header, size - 1):
            self.reinstall()
            if cut in ends:
                self.forget_sums()
            result = self.break_and_repair(good[:cut], cut)
            self.assertEqual(result.code == 0, cut in ends, (cut, result))
            if cut == size - 1:
                self.assertEqual(self.read("shared/shared.txt"), FORMER)

    def test_a_flipped_bit_never_costs_the_file(self):
        self.install()
        good = self.read(ARCHIVE)
        header = len(good) - 1 - len(FORMER)
        # Banner, size and end byte; a name or a check sum that was changed says that the file is another one.
        for place in (0, 39, header - 12, header - 11, header - 5, len(good) - 1):
            self.reinstall()
            damaged = bytearray(good)
            damaged[place] ^= 0x04
            result = self.break_and_repair(bytes(damaged), place)
            self.assertEqual(result.code, FAILED, (place, result))
            if WINDOWS:
                break

    def test_a_changed_byte_of_a_content_is_named(self):
        self.install()
        damaged = bytearray(self.read(ARCHIVE))
        damaged[-2] ^= 0x04
        self.write(ARCHIVE, bytes(damaged))
        result = self.uninstall()
        self.assert_can_be_repeated(result)
        self.assertIn("backup.bin has been changed since the installation. What was restored from it may be damaged.",
                      result.err, result)
        self.assertEqual(self.read("shared/shared.txt")[:-1], FORMER[:-1])
        self.host(ARCHIVE).unlink()
        result = self.uninstall()
        self.assertEqual(result.code, 0, result)
        self.assertFalse(self.host("opt/product").exists())

    def test_the_users_file_comes_back_although_the_log_was_lost(self):
        self.install()
        self.host(LOG).unlink()
        result = self.run_program(self.setup, "-auto")
        self.assertIn("The installation was successful.", result.out, result)
        self.uninstall()
        self.assertEqual(self.read("shared/shared.txt"), FORMER)

    def test_another_file_or_nothing_in_the_place_of_the_archive_fails_the_walk(self):
        self.install()
        for content in (b"", b"not an archive", b"\x00" * 1000):
            self.reinstall()
            self.assertEqual(self.break_and_repair(content, content[:5]).code, FAILED)

    def test_a_directory_in_the_place_of_the_archive_fails_the_walk(self):
        self.install()
        good = self.read(ARCHIVE)
        self.host(ARCHIVE).unlink()
        self.write(ARCHIVE + "/mine.txt", "mine")
        result = self.uninstall()
        self.assertEqual(result.code, FAILED, result)
        self.assertEqual(self.read(ARCHIVE + "/mine.txt"), b"mine")
        self.assertEqual(self.read("shared/shared.txt"), INSTALLED)
        shutil.rmtree(self.host(ARCHIVE))
        self.write(ARCHIVE, good)
        self.assert_repeats()

    def test_without_the_archive_a_changed_file_stays_and_is_named(self):
        self.install()
        self.host(ARCHIVE).unlink()
        self.write("shared/shared.txt", "edited after the installation")
        result = self.uninstall()
        self.assertEqual(result.code, 0, result)
        self.assertIn("Left " + self.native("shared") + "\\shared.txt\n", result.out)
        self.assertEqual(self.read("shared/shared.txt"), b"edited after the installation")
        self.assertFalse(self.host("opt/product").exists())

    def test_a_restored_file_is_complete_before_it_takes_its_place(self):
        self.install()
        link = self.host("shared/other-name.txt")
        os.link(self.host("shared/shared.txt"), link)
        self.assertEqual(self.uninstall().code, 0)
        self.assertEqual(self.read("shared/shared.txt"), FORMER)
        self.assertEqual(link.read_bytes(), INSTALLED)


class SomethingInTheWay(DamageTest):
    def test_a_file_that_cannot_be_restored_fails_the_walk(self):
        self.install()
        self.host("shared/shared.txt").unlink()
        self.write("shared/shared.txt/mine.txt", "mine")
        result = self.uninstall()
        self.assert_can_be_repeated(result)
        self.assertIn("FAILED to restore " + self.on_screen(self.native("shared") + "\\shared.txt") + "\n", result.out)
        self.assertIn("1 file could not be restored.", result.err)
        self.assertEqual(self.read("shared/shared.txt/mine.txt"), b"mine")
        self.assertFalse(self.host("opt/product/data.txt").exists())
        shutil.rmtree(self.host("shared/shared.txt"))
        self.assert_repeats()

    def test_foreign_files_in_a_directory_are_waited_for(self):
        self.install()
        self.write("opt/product/un/mine.log", "mine")
        self.assert_can_be_repeated(self.uninstall())
        self.assert_can_be_repeated(self.uninstall())
        self.host("opt/product/un/mine.log").unlink()
        self.assert_repeats()

    def test_the_entry_goes_last_wherever_its_page_is(self):
        late = re.sub(r'<UnregisterApplication[^/]*/>', "", self.farewell()) + \
            '<UnregisterApplication Special="AutoNext"/>'
        self.install(farewell=late)
        self.write("opt/product/mine.txt", "mine")
        self.assert_can_be_repeated(self.uninstall())
        self.host("opt/product/mine.txt").unlink()
        self.assert_repeats()

    @staticmethod
    def farewell():
        return '<PreUninstall Special="AutoNext"/><CopyProgress Special="AutoNext"/>'

    def test_changes_of_the_system_are_undone_once(self):
        changes = (f'<Environment><Append VarName="PATH">{self.native("opt/product/bin")}</Append></Environment>'
                   f'<IniFiles><Add FileName="{self.native("shared/a.ini")}" Section="s" Key="k">v</Add></IniFiles>')
        self.write("shared/a.ini", "[s]\nother=1\n")
        self.install(changes=changes)
        self.write("opt/product/mine.txt", "mine")
        self.assert_can_be_repeated(self.uninstall())
        self.assertNotIn(b"k=v", self.read("shared/a.ini"))
        self.host("opt/product/mine.txt").unlink()
        result = self.uninstall()
        self.assertEqual(result.code, 0, result)
        self.assertFalse(self.host("opt/product").exists())


class ChosenDirectory(DamageTest):
    """DIR has a default that doesn't build on the earlier value, so the session's value isn't what was chosen."""

    def install_elsewhere(self):
        self.build()
        self.write(LOG, "of another product")
        self.write("opt/product/un/backup.bin", "of another product")
        self.before = self.snapshot()
        self.chosen = self.native("opt/chosen")
        result = self.run_program(self.setup, "-auto", "-VARIABLE_DIR=" + self.chosen)
        self.assertIn("The installation was successful.", result.out, result)
        self.assertTrue(self.host("opt/chosen/un/install.log").exists())

    def test_the_chosen_directory_is_cleaned_and_not_the_default_one(self):
        self.install_elsewhere()
        result = self.uninstall("opt/chosen/un/install.log")
        self.assertEqual(result.code, 0, result)
        self.assert_nothing_left()


class DamagedHead(DamageTest):
    def test_a_log_with_a_broken_count_is_undone_by_its_records(self):
        self.install()
        for count in (b"NUMVARS\t9999", b"NUMVARS\tx", b"NUMVARS", b"NUMVARS\t-7", b"NUMVARS\t1"):
            self.reinstall()
            self.rewrite_log(lambda log: re.sub(rb"NUMVARS\t\d+", count, log))
            result = self.uninstall()
            self.assertEqual(result.code, 0, (count, result))
            self.assertIn(DAMAGED_HEAD, result.err, (count, result))
            self.assert_nothing_left()
            if WINDOWS:
                break

    def test_without_the_variables_nothing_is_cleaned_and_the_rest_is_undone(self):
        self.install()
        self.rewrite_log(lambda log: re.sub(rb"(NUMVARS|VAR)\t[^\n]*\n", b"", log))
        result = self.uninstall()
        self.assert_can_be_repeated(result)
        self.assertIn(DAMAGED_HEAD, result.err)
        self.assertIn('Nothing is cleaned in "[DIR]/un" by "install.log"', result.err)
        self.assertFalse(self.host("opt/product/data.txt").exists())
        self.assertFalse(self.host("opt/product/bin").exists())
        self.assertEqual(self.read("shared/shared.txt"), FORMER)

    def test_a_log_with_plain_line_ends_is_undone(self):
        self.install()
        self.rewrite_log(lambda log: log.replace(b"\r\n", b"\n"))
        self.assert_repeats()


@unittest.skipIf(WINDOWS, "there only a console's own programs can be interrupted")
class AskedToEnd(DamageTest):
    def test_it_ends_at_the_next_record_and_can_be_repeated(self):
        # The walk is held before its first record until the request has arrived.
        script = self.write("ask.sh", "#!/bin/sh\n[ -e \"$1.done\" ] && exit 0\nkill -TERM $PPID\n"
                            "while [ ! -e \"$1\" ]; do sleep 0.02; done\n")
        script.chmod(0o755)
        go = self.native("go")
        self.install(changes=f'<PreUninstall><RunProgram Wait="1" Arguments="{go}">{self.native("ask.sh")}'
                             '</RunProgram></PreUninstall>',
                     farewell='<UnregisterApplication Special="AutoNext"/><CopyProgress Special="AutoNext"/>')
        shutil.copyfile(self.host(LOG), self.host("copy.log"))
        command = self.machine.command(self.host("installer")) + \
            ["-uninstallFile=" + self.native("copy.log"), "-uninstallApp=Test Product", "-gui=0"]
        with subprocess.Popen(command, stdin=subprocess.DEVNULL, stdout=subprocess.PIPE, stderr=subprocess.PIPE,
                              env=self.machine.environment({}), cwd=self.machine.root) as process:
            out = b""
            while b"Aborting" not in out:
                byte = process.stdout.read(1)
                self.assertTrue(byte, out)
                out += byte
            self.write("go", "")
            rest, err = process.communicate(timeout=TIMEOUT)
        out = (out + rest).decode()
        self.assertEqual(process.returncode, FAILED, (out, err))
        self.assertTrue(out.endswith(ERROR), out)
        self.assertNotIn("Delete ", out)
        self.assertEqual(self.read("opt/product/data.txt"), b"data\n")
        self.assertLessEqual(OWN, set(self.tree("opt/product")))
        self.assertIsNotNone(self.registry("HKLM", UNINSTALL_KEY + "\\Test Product"))
        self.host("go").unlink()
        self.host("copy.log").unlink(missing_ok=True)
        self.write("go.done", "")
        self.before["go.done"] = b""
        self.assert_repeats()


if __name__ == "__main__":
    main()
