"""Bad input is reported and does no damage."""

import os
import subprocess
import unittest

from descriptions import description
from harness import EXE, WINDOWS, EndToEndTest, main

SETS = '<FileSet Name="A"><FN Dest="[DIR]">one.txt</FN><FN Dest="[DIR]">two.txt</FN></FileSet>'
FILES = {"one.txt": "1" * 5000, "two.txt": "2" * 5000}
CHECKSUM_TEXT = ("The checksum of the installer doesn't match. This could indicate a broken download.\n"
                 "Please, try downloading again!\n")


class BrokenPackage(EndToEndTest):
    def setUp(self):
        super().setUp()
        self.dir = self.native("opt/product")
        self.setup = self.build_package(description(self.dir, SETS), FILES)

    def test_a_changed_byte_stops_the_run_with_exit_code_0(self):
        data = bytearray(self.read(self.setup))
        data[-100] ^= 1
        self.host(self.setup).write_bytes(data)
        result = self.run_program(self.setup, "-auto")
        self.assertEqual((result.code, result.out), (0, CHECKSUM_TEXT), result)
        self.assertFalse(self.host("opt").exists())

    def test_a_truncated_package_stops_the_run(self):
        data = self.read(self.setup)
        image = len(self.read("installer" + EXE))
        for length in (image + 10, image + 64, image + 200, len(data) - 17, len(data) - 1):
            self.host(self.setup).write_bytes(data[:length])
            result = self.run_program(self.setup, "-auto")
            self.assertEqual((result.code, result.out), (0, CHECKSUM_TEXT), f"{length}: {result}")
        self.assertFalse(self.host("opt").exists())

    def test_the_bare_image_says_that_it_has_no_package(self):
        result = self.run_program("installer" + EXE, "-auto")
        self.assertEqual((result.code, result.err), (0, ""), result)
        self.assertIn("without a package", result.out)
        self.assertIn("-bin=FILE", result.out)
        self.assertNotIn("broken download", result.out)

    def test_a_broken_binary_file_is_reported(self):
        for content in (b"", b"short", b"\0" * 1000, b"\x27\x63\x27\x63" + b"\0" * 500):
            self.write("payload.bin", content)
            result = self.run_program("installer" + EXE, "-bin=" + self.native("payload.bin"), "-auto")
            self.assertEqual(result.code, 0, result)
            self.assertEqual(result.out, "The installer failed to initialize with the supplied binary file!\n")

    def test_a_malformed_command_line_is_refused(self):
        result = self.run_program(self.setup, "-gui=0", "alpha", "beta")
        self.assertEqual(result.out, "ERROR: Command line couldn't be parsed. Exiting!\n")
        self.assertEqual(result.code, 255, result)
        self.assertFalse(self.host("opt").exists())

    def test_an_uninstallation_without_its_log_fails(self):
        result = self.run_program("installer" + EXE, "-uninstallFile=" + self.native("missing.log"), "-gui=0")
        self.assertEqual(result.code, 255, result)

    def test_a_relaunch_without_its_log_fails(self):
        result = self.run_program("installer" + EXE, "-uninstall=" + self.native("missing.log"), "-gui=0")
        self.assertEqual(result.code, 255, result)


class BrokenDescription(EndToEndTest):
    def run_description(self, text):
        self.build_package(description("/x", SETS), FILES)  # for the stage
        self.write("stage/install.xml", text)
        built = self.build_allowing("--description", self.native("stage/install.xml"), "--root",
                              self.native("stage/root"), "--image", self.native("installer" + EXE), "--output",
                              self.native("broken" + EXE))
        if built.code != 0:
            self.assertEqual(built.code, 1, built)
            self.assertNotEqual(built.err, "", built)
            return None
        return self.run_program("broken" + EXE, "-auto", timeout=100)

    def test_a_file_that_is_no_description_installs_nothing(self):
        for text in ("", "not xml at all", "<", "<TandrelGroupInstallation>", "<A><B></A>"):
            result = self.run_description(text)
            if result is not None:
                self.assertEqual(result.code, 0, result)

    def test_a_description_without_dialogs_ends_before_the_first_page(self):
        result = self.run_description(
            "<TandrelGroupInstallation><ProductDesc/><DefValues/></TandrelGroupInstallation>")
        if result is not None:
            self.assertEqual(result.code, 0, result)
            self.assertNotIn("*****", result.out)

    def test_endless_nesting_does_no_damage(self):
        result = self.run_description("<TandrelGroupInstallation>" + "<a>" * 100000)
        if result is not None:
            self.assertEqual(result.code, 0, result)


class Disk(EndToEndTest):
    def setUp(self):
        super().setUp()
        self.dir = self.native("opt/product")
        self.setup = self.build_package(description(self.dir, SETS), FILES)

    def install(self):
        result = self.run_program(self.setup, "-auto")
        self.assertEqual(result.code, 0, result)
        return result

    def test_a_directory_in_place_of_a_file_fails_only_that_file(self):
        self.host("opt/product/one.txt").mkdir(parents=True)
        result = self.install()
        self.assertIn("FAILED to Create " + self.on_screen(self.dir + "\\one.txt") + "\n", result.out)
        self.assertIn("Create " + self.on_screen(self.dir + "\\two.txt") + "\n", result.out)
        self.assertIn("It failed.\n", result.out)
        self.assertIn("The automatic installer has encountered an ERROR!\n", result.out)
        self.assertEqual(self.read("opt/product/two.txt"), FILES["two.txt"].encode())

    def test_a_file_in_place_of_a_directory_is_reported(self):
        self.write("opt", "a file")
        result = self.install()
        self.assertIn("FAILED to Create ", result.out)
        self.assertEqual(self.read("opt"), b"a file")
        self.assertIn("It failed.\n", result.out)

    @unittest.skipIf(WINDOWS, "there are no such pipes there")
    def test_a_pipe_in_place_of_a_file_does_not_hang_the_run(self):
        self.host("opt/product").mkdir(parents=True)
        os.mkfifo(self.host("opt/product/one.txt"))
        result = self.run_program(self.setup, "-auto", timeout=60)
        self.assertIn("FAILED to ", result.out)
        self.assertEqual(self.read("opt/product/two.txt"), FILES["two.txt"].encode())

    @unittest.skipIf(WINDOWS, "needs a file system of its own")
    def test_a_disk_that_fills_up_in_the_middle_of_a_file_is_reported(self):
        mount = self.host("small")
        mount.mkdir()
        if subprocess.run(["mount", "-t", "tmpfs", "-o", "size=64k", "none", mount], check=False).returncode != 0:
            self.skipTest("this user can't mount a tmpfs")
        self.addCleanup(subprocess.run, ["umount", str(mount)], check=False)
        # Each small file takes a block of 4 KiB, which its size doesn't tell beforehand.
        target = self.native("small/product")
        files = {"last.txt": "a", "big.bin": os.urandom(20000)} | {f"{number}.txt": "z" for number in range(11)}
        sets = "".join(f'<FN Dest="[DIR]">{name}</FN>' for name in files)
        setup = self.build_package(description(target, f'<FileSet Name="A">{sets}</FileSet>'), files)
        result = self.run_program(setup, "-auto")
        self.assertEqual(result.code, 0, result)
        self.assertIn("FAILED to Create " + self.on_screen(target + "\\big.bin") + "\n", result.out)
        self.assertIn("It failed.\n", result.out)
        self.assertFalse(self.host("small/product/big.bin").exists())
        self.assertEqual(self.read("small/product/last.txt"), b"a")

    @unittest.skipIf(WINDOWS, "a running program can't be replaced there")
    def test_a_running_program_is_replaced_and_goes_on(self):
        sets = '<FileSet Name="A"><FN Dest="[DIR]">sleeper</FN><FN Dest="[DIR]">two.txt</FN></FileSet>'
        with open("/bin/sleep", "rb") as program:
            sleeper = program.read()
        target = self.write("opt/product/sleeper", sleeper)
        target.chmod(0o755)
        running = subprocess.Popen([target, "100"])
        self.addCleanup(running.wait)
        self.addCleanup(running.kill)
        setup = self.build_package(description(self.dir, sets), {**FILES, "sleeper": "new"})
        result = self.run_program(setup, "-auto")
        self.assertIn("\nOverwrite " + self.on_screen(self.dir + "\\sleeper") + "\n", result.out)
        self.assertEqual(self.read("opt/product/two.txt"), FILES["two.txt"].encode())
        self.assertEqual(target.read_bytes(), b"new")
        self.assertIsNone(running.poll())
        with open(f"/proc/{running.pid}/exe", "rb") as image:
            self.assertEqual(image.read(), sleeper)

    @unittest.skipIf(WINDOWS or os.geteuid() == 0, "root writes everywhere")
    def test_a_destination_without_write_access_is_reported(self):
        self.host("opt").mkdir(mode=0o555)
        self.assertIn("FAILED to Create ", self.install().out)

    @unittest.skipIf(WINDOWS, "a closed output is the shell's business there")
    def test_an_output_that_closes_early_does_not_stop_the_installation(self):
        command = self.machine.command(self.host(self.setup)) + ["-auto"]
        reader, writer = os.pipe()
        os.close(reader)
        done = subprocess.run(command, stdin=subprocess.DEVNULL, stdout=writer, stderr=subprocess.DEVNULL, timeout=60,
                              env=self.machine.environment({}), check=False)
        os.close(writer)
        self.assertEqual(done.returncode, 0)
        self.assertEqual(self.read("opt/product/one.txt"), FILES["one.txt"].encode())


if __name__ == "__main__":
    main()
