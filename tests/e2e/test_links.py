"""What belongs to somebody else stays as it is: links, second names of a file, devices and names that lead out of their
directory, in every place that is written, restored or cleaned. And the rights of what is made."""

import os
import shutil
import stat
import unittest

from descriptions import description
from harness import EXE, WINDOWS, EndToEndTest, main

SETS = f"""
<FileSet Name="Core">
 <FN Dest="[DIR]/un" Executable="1">installer{EXE}</FN>
 <FN Dest="[DIR]/bin" Executable="1">tool.sh</FN>
 <FN Dest="[DIR]">plain.txt</FN>
 <FN Dest="[DIR]" BackupExisting="1">kept.txt</FN>
</FileSet>
<IniFiles><Add FileName="[OTHER]/made.ini" Section="S" Key="K">v</Add></IniFiles>
<UninstallWildcards>
 <File Dest="[DIR]/un">*.*</File>
 <File Dest="[DIR]/cache" DeleteDirs="1==1">*</File>
</UninstallWildcards>
"""
EDITS = """
<IniFiles><Add FileName="[OTHER]/settings.ini" Section="Paths" Key="Root">new</Add></IniFiles>
<ModifyFiles><File Path="[OTHER]/menu.txt" Command="AddAfter">[DIR]/menu.changes</File></ModifyFiles>
"""
FILES = {"tool.sh": "#!/bin/sh\n", "plain.txt": "new plain\n", "kept.txt": "new kept\n"}
PRECIOUS = b"somebody else's\n"


class ProductTest(EndToEndTest):
    def setUp(self):
        super().setUp()
        self.write("outside/precious.txt", PRECIOUS)
        self.precious = self.host("outside/precious.txt")
        self.host("opt/product").mkdir(parents=True)
        self.host("other").mkdir()

    def build(self, sets=SETS, files=None):
        values = ('<Value Name="UNINSTALL_ERROR" DataType="value">0</Value>'
                  f'<Value Name="OTHER" DataType="value">{self.native("other")}</Value>')
        text = description(self.native("opt/product"), sets, values=values,
                           farewell='<CopyProgress Special="AutoNext"/>')
        self.setup = self.build_package(text, files or FILES)
        shutil.rmtree(self.host("stage"))

    def install(self, **options):
        return self.run_program(self.setup, "-auto", **options)

    def uninstall(self, **options):
        shutil.copyfile(self.host("opt/product/un/install.log"), self.host("copy.log"))
        return self.run_program("installer" + EXE, "-uninstallFile=" + self.native("copy.log"), "-gui=0", **options)

    def mode(self, path):
        return oct(stat.S_IMODE(os.lstat(self.host(path)).st_mode))

    def assert_untouched(self):
        status = self.precious.stat()
        self.assertEqual(self.precious.read_bytes(), PRECIOUS)
        self.assertEqual(stat.S_IMODE(status.st_mode), 0o640)

    def protect(self):
        self.precious.chmod(0o640)


@unittest.skipIf(WINDOWS, "the other system has no modes")
class RightsTest(ProductTest):
    def test_rights_do_not_depend_on_the_mask(self):
        for umask in (0o077, 0o000, 0o022):
            with self.subTest(umask=oct(umask)):
                self.build()
                self.write("opt/product/kept.txt", "old kept\n").chmod(0o600)
                result = self.install(umask=umask)
                self.assertIn("The installation was successful.", result.out, result)
                self.assertEqual(self.mode("opt/product/plain.txt"), "0o644")
                self.assertEqual(self.mode("opt/product/bin/tool.sh"), "0o755")
                self.assertEqual(self.mode("opt/product/bin"), "0o755")
                self.assertEqual(self.mode("opt/product/un/installer"), "0o755")
                self.assertEqual(self.mode("other/made.ini"), "0o644")
                # What replaces a file has its rights, and gives them back.
                self.assertEqual(self.mode("opt/product/kept.txt"), "0o600")
                result = self.uninstall(umask=umask)
                self.assertIn("The uninstall was successful.", result.out, result)
                self.assertEqual(self.read("opt/product/kept.txt"), b"old kept\n")
                self.assertEqual(self.mode("opt/product/kept.txt"), "0o600")

    def test_what_the_packager_writes_does_not_depend_on_the_mask(self):
        self.build()
        self.packager("extract", self.native(self.setup), "--to", self.native("taken"), umask=0o077)
        self.assertEqual(self.mode("taken"), "0o755")
        self.assertEqual(self.mode("taken/plain.txt"), "0o644")
        self.packager("extract", self.native(self.setup), "--to", self.native("open"), umask=0)
        self.assertEqual(self.mode("open/plain.txt"), "0o644")


class WrittenPlacesTest(ProductTest):
    def test_a_second_name_of_a_file_keeps_its_content(self):
        self.build()
        self.protect()
        os.link(self.precious, self.host("opt/product/plain.txt"))
        os.link(self.precious, self.host("opt/product/kept.txt"))
        self.host("opt/product/bin").mkdir()
        os.link(self.precious, self.host("opt/product/bin/tool.sh"))
        result = self.install()
        self.assertIn("The installation was successful.", result.out, result)
        self.assertEqual(self.read("opt/product/plain.txt"), b"new plain\n")
        self.assertEqual(self.read("opt/product/kept.txt"), b"new kept\n")
        self.assert_untouched()
        self.uninstall()
        self.assertEqual(self.read("opt/product/kept.txt"), PRECIOUS)
        self.assert_untouched()

    @unittest.skipIf(WINDOWS, "the modes of the host don't count there")
    def test_a_program_that_is_there_under_two_names_is_written_anew(self):
        self.build()
        outside = self.write("outside/tool.sh", FILES["tool.sh"])
        outside.chmod(0o640)
        self.host("opt/product/bin").mkdir()
        os.link(outside, self.host("opt/product/bin/tool.sh"))
        self.install()
        self.assertEqual(stat.S_IMODE(outside.stat().st_mode), 0o640)
        self.assertEqual(self.mode("opt/product/bin/tool.sh"), "0o750")

    @unittest.skipIf(WINDOWS, "a link of the host isn't one there")
    def test_a_link_in_the_place_of_a_file_is_replaced(self):
        self.build()
        self.protect()
        self.host("opt/product/plain.txt").symlink_to(self.precious)
        self.host("opt/product/bin").mkdir()
        outside = self.write("outside/tool.sh", FILES["tool.sh"])
        outside.chmod(0o600)
        # Even one with the right content: its target would be made a program.
        self.host("opt/product/bin/tool.sh").symlink_to(outside)
        result = self.install()
        self.assertIn("The installation was successful.", result.out, result)
        for name in ("plain.txt", "bin/tool.sh"):
            self.assertFalse(self.host("opt/product/" + name).is_symlink())
        self.assertEqual(self.mode("opt/product/bin/tool.sh"), "0o755")
        self.assertEqual(stat.S_IMODE(outside.stat().st_mode), 0o600)
        self.assert_untouched()
        self.uninstall()
        self.assertFalse(self.host("opt/product/plain.txt").exists())
        self.assert_untouched()

    @unittest.skipIf(WINDOWS, "a link of the host isn't one there")
    def test_a_link_to_a_device_neither_fills_nor_hangs(self):
        self.build()
        self.host("opt/product/plain.txt").symlink_to("/dev/full")
        result = self.install(timeout=60)
        self.assertIn("The installation was successful.", result.out, result)
        self.assertEqual(self.read("opt/product/plain.txt"), b"new plain\n")

    @unittest.skipIf(WINDOWS, "the other system has no such files")
    def test_a_pipe_or_directory_in_the_place_of_a_file_is_refused_and_named(self):
        self.build()
        os.mkfifo(self.host("opt/product/plain.txt"))
        self.host("opt/product/bin/tool.sh").mkdir(parents=True)
        result = self.install(timeout=60)
        self.assertIn("FAILED to Create " + self.on_screen(self.native("opt/product") + "\\plain.txt"), result.out + result.err, result)
        self.assertTrue(stat.S_ISFIFO(os.lstat(self.host("opt/product/plain.txt")).st_mode))
        self.assertTrue(self.host("opt/product/bin/tool.sh").is_dir())
        self.assertEqual(self.read("opt/product/kept.txt"), b"new kept\n")

    @unittest.skipIf(WINDOWS, "a link of the host isn't one there")
    def test_a_link_in_the_place_of_an_edited_file_is_left_and_named(self):
        self.build(SETS.replace("<IniFiles>", "<Old>").replace("</IniFiles>", "</Old>").replace(
            "Core\">", "Core\"><FN Dest=\"[DIR]\">menu.changes</FN>") + EDITS,
                   {**FILES, "menu.changes": "1\nFile\n1\nGreeter\n"})
        self.write("outside/settings.ini", "[Paths]\nRoot=old\n")
        self.write("outside/menu.txt", "File\n")
        for name in ("settings.ini", "menu.txt"):
            self.host("other/" + name).symlink_to(self.host("outside/" + name))
        result = self.install()
        self.assertNotIn("The installation was successful.", result.out, result)
        for name in ("settings.ini", "menu.txt"):
            self.assertIn(name, result.out + result.err, result)
            self.assertTrue(self.host("other/" + name).is_symlink())
        self.assertEqual(self.read("outside/settings.ini"), b"[Paths]\nRoot=old\n")
        self.assertEqual(self.read("outside/menu.txt"), b"File\n")

    def test_a_temporary_file_of_somebody_else_is_left(self):
        self.build()
        for directory in ("opt/product", "opt/product/un", "opt/product/bin"):
            self.write(directory + "/.tandrel-1.tmp", "mine")
        self.write("opt/product/un/templog.log", "mine")
        temp = self.machine.temp
        names = [f"ori{number:x}.tmp" for number in range(1, 20)]
        for name in names:
            (temp / name).write_bytes(b"mine")
        result = self.install()
        self.assertIn("The installation was successful.", result.out, result)
        for directory in ("opt/product", "opt/product/un", "opt/product/bin"):
            self.assertEqual(self.read(directory + "/.tandrel-1.tmp"), b"mine")
        self.assertEqual(self.read("opt/product/un/templog.log"), b"mine")
        for name in names:
            self.assertEqual((temp / name).read_bytes(), b"mine", name)


class CleanedPlacesTest(ProductTest):
    def setUp(self):
        super().setUp()
        self.build()
        result = self.install()
        self.assertIn("The installation was successful.", result.out, result)
        self.protect()

    @unittest.skipIf(WINDOWS, "a link of the host isn't one there")
    def test_a_link_in_the_place_of_a_cleaned_directory_is_not_entered(self):
        self.host("opt/product/cache").symlink_to(self.host("outside"))
        self.uninstall()
        self.assert_untouched()

    @unittest.skipIf(WINDOWS, "a link of the host isn't one there")
    def test_links_below_a_cleaned_directory_go_and_their_targets_stay(self):
        self.write("opt/product/cache/sub/mine.txt", "x")
        self.host("opt/product/cache/sub/dir").symlink_to(self.host("outside"))
        self.host("opt/product/cache/file").symlink_to(self.precious)
        result = self.uninstall()
        self.assertIn("The uninstall was successful.", result.out, result)
        self.assertFalse(self.host("opt/product/cache").exists())
        self.assert_untouched()

    @unittest.skipIf(WINDOWS, "the other system has no such names")
    def test_names_that_lead_out_of_a_cleaned_directory_stay_and_delete_nothing(self):
        self.host("opt/product/cache").mkdir()
        self.write("opt/victim.txt", "precious")
        self.write("opt/all/below.txt", "precious")
        self.write("opt/product/cache/plain.txt", "x")
        cache = os.fsencode(self.host("opt/product/cache"))
        with open(cache + b"/..\\..\\victim.txt", "wb"):
            pass
        os.mkdir(cache + b"/..\\..\\all")
        os.mkdir(cache + b"/..\\..\\..")
        os.mkdir(cache + b"/..\\")
        self.uninstall()
        self.assertEqual(self.read("opt/victim.txt"), b"precious")
        self.assertEqual(self.read("opt/all/below.txt"), b"precious")
        self.assert_untouched()
        # They stay, and so does their directory; the others have gone.
        self.assertEqual(set(os.listdir(cache)), {b"..\\..\\victim.txt", b"..\\..\\all", b"..\\..\\..", b"..\\"})

    @unittest.skipIf(WINDOWS, "a link of the host isn't one there")
    def test_a_link_in_the_place_of_an_installed_file_goes_alone(self):
        self.host("opt/product/plain.txt").unlink()
        self.host("opt/product/plain.txt").symlink_to(self.precious)
        self.uninstall()
        self.assertFalse(os.path.lexists(self.host("opt/product/plain.txt")))
        self.assert_untouched()


class RestoredPlacesTest(ProductTest):
    def setUp(self):
        super().setUp()
        self.write("opt/product/kept.txt", "old kept\n")
        self.build()
        result = self.install()
        self.assertIn("The installation was successful.", result.out, result)
        self.protect()

    @unittest.skipIf(WINDOWS, "a link of the host isn't one there")
    def test_nothing_is_restored_through_a_link(self):
        for content in (PRECIOUS, b"new kept\n"):
            self.precious.write_bytes(content)
            self.host("opt/product/kept.txt").unlink(missing_ok=True)
            self.host("opt/product/kept.txt").symlink_to(self.precious)
            shutil.copytree(self.host("opt/product"), self.host("again"), symlinks=True)
            self.uninstall()
            self.assertEqual(self.precious.read_bytes(), content)
            self.assertEqual(stat.S_IMODE(self.precious.stat().st_mode), 0o640)
            shutil.rmtree(self.host("opt/product"), ignore_errors=True)
            self.host("again").rename(self.host("opt/product"))

    def test_a_second_name_keeps_its_content(self):
        os.link(self.host("opt/product/kept.txt"), self.host("outside/second.txt"))
        result = self.uninstall()
        self.assertIn("The uninstall was successful.", result.out, result)
        self.assertEqual(self.read("opt/product/kept.txt"), b"old kept\n")
        self.assertEqual(self.read("outside/second.txt"), b"new kept\n")


class ExtractTest(ProductTest):
    def setUp(self):
        super().setUp()
        self.build()
        self.protect()
        self.host("taken").mkdir()

    def extract(self):
        return self.packager("extract", self.native(self.setup), "--to", self.native("taken"), timeout=60)

    def test_a_second_name_keeps_its_content(self):
        os.link(self.precious, self.host("taken/plain.txt"))
        result = self.extract()
        self.assertEqual(result.code, 0, result)
        self.assertEqual(self.read("taken/plain.txt"), b"new plain\n")
        self.assert_untouched()

    @unittest.skipIf(WINDOWS, "a link of the host isn't one there")
    def test_links_are_replaced_and_devices_refused(self):
        self.host("taken/plain.txt").symlink_to(self.precious)
        self.host("taken/kept.txt").symlink_to("/dev/full")
        result = self.extract()
        self.assertEqual(result.code, 0, result)
        self.assertEqual(self.read("taken/kept.txt"), b"new kept\n")
        self.assert_untouched()
        self.host("taken/plain.txt").unlink()
        os.mkfifo(self.host("taken/plain.txt"))
        result = self.extract()
        self.assertEqual(result.code, 1, result)
        self.assertIn("plain.txt can't be written", result.err)


if __name__ == "__main__":
    main()
