"""Where the second stage of an uninstallation runs: hostile directories for temporary files, two at once, kills."""

import os
import re
import shutil
import signal
import subprocess
import unittest

from descriptions import description
from harness import EXE, WINDOWS, EndToEndTest, main

FAILED = 255
NOBODY = 65534
SHARED_MEMORY = "/dev/shm"
EVENTS = ("OrmelUninstallerStart", "OrmelUninstallerEnd")
SETS = f"""
<FileSet Name="Uninstaller"><FN Dest="[DIR]/un" Executable="1">installer{EXE}</FN></FileSet>
<FileSet Name="Core"><FN Dest="[DIR]">data.txt</FN></FileSet>
<UninstallWildcards>
 <File Dest="[DIR]/un">install.log</File>
 <File Dest="[DIR]/un">backup.bin</File>
</UninstallWildcards>
"""
FAREWELL = '<PreUninstall Special="AutoNext"/><CopyProgress Special="AutoNext"/>'


def is_root():
    return not WINDOWS and os.geteuid() == 0


class RelaunchTest(EndToEndTest):
    def install(self, name="product", changes=""):
        self.host("opt").mkdir(exist_ok=True)
        text = description(self.native("opt/" + name), SETS + changes, farewell=FAREWELL)
        setup = self.build_package(text, {"data.txt": "data\n"}, f"{name}-setup{EXE}")
        shutil.rmtree(self.host("stage"))
        result = self.run_program(setup, "-auto")
        self.assertIn("The installation was successful.", result.out, result)

    def command(self, name="product"):
        directory = self.native("opt/" + name)
        return [f"opt/{name}/un/installer{EXE}", f"-uninstall={directory}/un/install.log", "-uninstallApp=Test Product",
                "-gui=0"]

    def uninstall(self, *arguments, name="product", env=None):
        """The first stage, and the wait for the second one."""
        result = self.run_program(*self.command(name), *arguments, env=env)
        if result.code == 0:
            self.wait_until(lambda: not self.host("opt/" + name).exists())
        return result

    def copies(self, place=None):
        place = place or self.machine.temp
        return sorted(p.name for p in place.iterdir() if p.name.startswith("ormeluninst-"))

    def assert_no_copies(self):
        # Windows keeps the image of a running program until it starts the next time.
        if WINDOWS:
            self.wait_until(lambda: all(os.listdir(self.machine.temp / name) in ([], ["ormeluninst.dll"])
                                        for name in self.copies()))
        else:
            self.wait_until(lambda: not self.copies())


class HostileTemporaryDirectory(RelaunchTest):
    def test_names_that_somebody_took_before_are_left_alone(self):
        self.install()
        precious = self.write("precious.txt", "mine")
        os.symlink(precious, self.machine.temp / "ormeluninst.dll")
        (self.machine.temp / "ormeluninst.log").mkdir()
        self.addCleanup(shutil.rmtree, self.machine.temp / "ormeluninst.log", True)
        self.addCleanup((self.machine.temp / "ormeluninst.dll").unlink)
        result = self.uninstall()
        self.assertEqual(result.code, 0, result)
        self.assertEqual(precious.read_text(), "mine")
        self.assertTrue((self.machine.temp / "ormeluninst.log").is_dir())
        self.assert_no_copies()

    @unittest.skipUnless(is_root(), "only root gives directories away")
    def test_a_directory_of_another_user_is_not_used(self):
        self.install()
        os.chown(self.machine.temp, NOBODY, NOBODY)
        self.assert_uninstalls_from_elsewhere()

    @unittest.skipIf(WINDOWS, "sets the bits of the mode")
    def test_a_directory_in_which_others_can_exchange_files_is_not_used(self):
        self.install()
        self.machine.temp.chmod(0o777)
        self.assert_uninstalls_from_elsewhere()

    def assert_uninstalls_from_elsewhere(self):
        """With a debug log the copies stay. The test removes them, because they are not in its own directory."""
        result = self.uninstall("-debug=2")
        self.assertEqual((result.code, result.err), (0, ""), result)
        self.wait_until(lambda: "Ending installation UI" in self.debug_logs())
        directory = os.path.dirname(re.search('-uninstallFile="(.*?)"', self.debug_logs())[1].replace("\\", "/"))
        self.assertTrue(os.path.basename(directory).startswith("ormeluninst-"), directory)
        self.addCleanup(shutil.rmtree, directory)
        self.assertEqual(sorted(os.listdir(directory)), ["ormeluninst.dll", "ormeluninst.log"])
        self.assertFalse(directory.startswith(str(self.machine.temp)), directory)
        self.assertEqual(self.copies(), [])

    def debug_logs(self):
        return "".join(log.read_text("utf-8", "replace") for log in self.machine.temp.glob("installer_debug*"))

    def test_without_a_log_it_says_so_and_leaves_nothing(self):
        self.install()
        missing = self.native("none.log")
        result = self.run_program("installer" + EXE, "-uninstall=" + missing, "-gui=0")
        self.assertEqual(result.code, FAILED, result)
        self.assertIn("ERROR: The uninstallation can't start: ", result.err)
        self.assertIn("none.log", result.err)
        self.assertEqual(result.out, "")
        self.assertEqual(self.copies(), [])

    @unittest.skipUnless(is_root(), "only root mounts")
    def test_where_no_program_may_run_another_place_is_taken(self):
        self.install()
        probe = subprocess.run(["unshare", "-m", "mount", "-t", "tmpfs", "-o", "noexec", "none", self.machine.temp],
                               capture_output=True, check=False)
        if probe.returncode != 0:
            self.skipTest("no private mounts here: " + probe.stderr.decode())
        # The second stage outlives the shell, and the mount lives as long as one of its processes.
        script = 'mount -t tmpfs -o noexec none "$1" && shift && "$@"; code=$?; ls "$TMPDIR" >&2; exit $code'
        program, *arguments = self.command()
        done = subprocess.run(["unshare", "-m", "sh", "-c", script, "sh", str(self.machine.temp),
                               str(self.host(program)), *arguments], capture_output=True, check=False, timeout=60,
                              env=self.machine.environment({}), text=True)
        self.assertEqual(done.returncode, 0, done)
        self.assertEqual(done.stderr, "", done)
        self.wait_until(lambda: not self.host("opt/product").exists())

    @unittest.skipUnless(is_root(), "counts on an owner's rights")
    def test_its_own_copies_have_the_rights_of_one_user_whatever_the_mask(self):
        self.install()
        mask = os.umask(0)
        try:
            result = self.uninstall("-debug=1")
        finally:
            os.umask(mask)
        self.assertEqual(result.code, 0, result)
        directory = self.machine.temp / self.copies()[0]
        self.assertEqual(directory.stat().st_mode & 0o777, 0o700)
        self.assertEqual((directory / "ormeluninst.log").stat().st_mode & 0o777, 0o600)
        self.assertEqual((directory / "ormeluninst.dll").stat().st_mode & 0o777, 0o700)

    @unittest.skipUnless(WINDOWS, "elsewhere the image goes at once")
    def test_the_image_that_windows_keeps_goes_at_its_next_start(self):
        self.install()
        self.assertEqual(self.uninstall().code, 0)
        self.assert_no_copies()
        manager = self.registry("HKLM", "System\\CurrentControlSet\\Control\\Session Manager")
        pending = manager[""].get("PendingFileRenameOperations", ("", ""))[1]
        for name in self.copies():
            self.assertIn(name + "\\ormeluninst.dll", pending)


class TwoUninstallations(RelaunchTest):
    def second_stage(self, name):
        copy = self.host(name + ".log")
        shutil.copyfile(self.host(f"opt/{name}/un/install.log"), copy)
        command = self.machine.command(self.host("installer" + EXE))
        process = subprocess.Popen(command + ["-uninstallFile=" + self.native(name + ".log"), "-gui=0"],
                                   stdin=subprocess.DEVNULL, stdout=subprocess.PIPE, stderr=subprocess.PIPE,
                                   env=self.machine.environment({}), cwd=self.machine.root, text=True)
        self.addCleanup(process.stdout.close)
        self.addCleanup(process.stderr.close)
        self.addCleanup(process.wait, 60)
        return process

    @unittest.skipIf(WINDOWS, "holds the first one up with a shell script")
    def test_the_second_one_waits_for_the_first(self):
        script = '#!/bin/sh\ntouch "$0.started"\nwhile [ ! -e "$0.go" ]; do sleep 0.05; done\n'
        self.write("hold.sh", script).chmod(0o755)
        hold = f'<PreUninstall><RunProgram Wait="1">{self.native("hold.sh")}</RunProgram></PreUninstall>'
        self.install("first", hold)
        self.install("second")
        first = self.second_stage("first")
        self.wait_until(lambda: self.host("hold.sh.started").exists())
        second = self.second_stage("second")
        self.assertEqual(second.stderr.readline(), "Another uninstallation is at work. Waiting for its end ...\n")
        self.assertTrue(self.host("opt/second/data.txt").exists())
        self.write("hold.sh.go", "")
        self.assertEqual(first.communicate(timeout=60)[1], "")
        out, _ = second.communicate(timeout=60)
        self.assertEqual((first.returncode, second.returncode), (0, 0), out)
        self.assertFalse(self.host("opt/first").exists())
        self.assertFalse(self.host("opt/second").exists())

    def test_two_at_once_both_do_their_work(self):
        self.install("first")
        self.install("second")
        both = [self.second_stage(name) for name in ("first", "second")]
        for process in both:
            out, err = process.communicate(timeout=120)
            self.assertEqual(process.returncode, 0, out + err)
        self.assertFalse(self.host("opt/first").exists())
        self.assertFalse(self.host("opt/second").exists())

    @unittest.skipIf(WINDOWS, "sends a signal")
    def test_one_that_was_killed_holds_nobody_up(self):
        self.write("hold.sh", '#!/bin/sh\necho $$ >"$0.started"\nexec sleep 60\n').chmod(0o755)
        hold = f'<PreUninstall><RunProgram Wait="1">{self.native("hold.sh")}</RunProgram></PreUninstall>'
        self.install("first", hold)
        self.install("second")
        first = self.second_stage("first")
        self.wait_until(lambda: self.host("hold.sh.started").exists() and self.read("hold.sh.started").endswith(b"\n"))
        self.addCleanup(os.kill, int(self.read("hold.sh.started")), signal.SIGTERM)
        first.send_signal(signal.SIGKILL)
        first.wait(timeout=60)
        second = self.second_stage("second")
        _, err = second.communicate(timeout=60)
        self.assertEqual((second.returncode, err), (0, ""))


@unittest.skipIf(WINDOWS, "the events are files only there")
class SharedNames(RelaunchTest):
    """The events have one name on the whole machine, so these tests run alone with those that wait for them."""

    def occupy(self, make):
        for event in EVENTS:
            path = f"{SHARED_MEMORY}/sem.{event}"
            self.assertFalse(os.path.lexists(path), "somebody waits for an uninstallation now")
            make(path)
            self.addCleanup(self.remove, path)

    @staticmethod
    def remove(path):
        if os.path.isdir(path):
            os.rmdir(path)
        elif os.path.lexists(path):
            os.unlink(path)

    def assert_uninstalls(self):
        self.install()
        shutil.copyfile(self.host("opt/product/un/install.log"), self.host("copy.log"))
        result = self.run_program("installer", "-uninstallFile=" + self.native("copy.log"), "-gui=0")
        self.assertEqual(result.code, 0, result)
        self.assertFalse(self.host("opt/product").exists())

    def test_an_empty_file_does_not_end_an_uninstallation(self):
        self.occupy(lambda path: open(path, "wb").close())
        self.assert_uninstalls()

    def test_a_file_of_any_content_does_not_end_an_uninstallation(self):
        def make(path):
            with open(path, "wb") as file:
                file.write(b"\xff" * 7)
        self.occupy(make)
        self.assert_uninstalls()

    def test_a_directory_does_not_hold_an_uninstallation_up(self):
        self.occupy(os.mkdir)
        self.assert_uninstalls()

    def test_a_pipe_does_not_hold_an_uninstallation_up(self):
        self.occupy(os.mkfifo)
        self.assert_uninstalls()

    @unittest.skipUnless(is_root(), "only root gives files away")
    def test_a_semaphore_of_another_user_does_not_hold_an_uninstallation_up(self):
        def make(path):
            with open(path, "wb") as file:
                file.write(bytes(32))
            os.chown(path, NOBODY, NOBODY)
        self.occupy(make)
        self.assert_uninstalls()


if __name__ == "__main__":
    main()
