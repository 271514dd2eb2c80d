"""Products of other vendors: their uninstallers, which are small programs here, and what a setup makes of them."""

import os
import shutil
import signal
import subprocess
import unittest

from descriptions import description
from harness import EXE, HELPERS, TIMEOUT, WINDOWS, EndToEndTest, main

UNINSTALL_KEY = "Software\\Microsoft\\Windows\\CurrentVersion\\Uninstall"
SUCCESS, FAILURE = "Automatic installation was successful!\n", "The automatic installer has encountered an ERROR!\n"
SETS = '<FileSet Name="Core"><FN Dest="[DIR]">data.txt</FN></FileSet>'
START, END = "OrmelUninstallerStart", "OrmelUninstallerEnd"
OLD = "Old Tool"
HELD = 'Nothing was installed: the run was held on the page "ExternalUninstall"\n'
FOREIGN = "foreign" + EXE


class ExternalTest(EndToEndTest):
    def setUp(self):
        super().setUp()
        shutil.copy2(HELPERS / ("foreign_uninstaller" + EXE), self.host(FOREIGN))
        self.data = self.native("opt/new/data.txt")

    def foreign(self, *steps):
        """The command of an uninstaller that takes these steps."""
        return " ".join(f'"{word}"' for word in (self.native(FOREIGN), *steps))

    def register(self, command, name=OLD, view="native"):
        result = self.run_program(FOREIGN, "register", name, view, command)
        self.assertEqual(result.code, 0, result)
        self.addCleanup(lambda: self.run_program(FOREIGN, "remove", name, view))

    def is_registered(self, name=OLD):
        return self.registry("HKLM", UNINSTALL_KEY + "\\" + name) is not None

    def build(self, products=f"<ExternalLegacyApplication>{OLD}</ExternalLegacyApplication>", special=""):
        pages = f"<Welcome/><ExternalUninstall{special}>{products}</ExternalUninstall>"
        self.setup = self.build_package(description(self.native("opt/new"), SETS, pages), {"data.txt": "data\n"})

    def install(self, *arguments):
        return self.run_program(self.setup, "-auto", *arguments)

    def assert_installed(self, result):
        self.assertTrue(result.out.endswith(SUCCESS), result)
        self.assertTrue(self.host("opt/new/data.txt").exists())

    def assert_held(self, result, reason):
        self.assertTrue(result.out.endswith(FAILURE), result)
        self.assertEqual(result.err, reason + HELD)
        self.assertFalse(self.host("opt/new/data.txt").exists())


class Removals(ExternalTest):
    def test_a_product_that_takes_itself_off_the_list_makes_room(self):
        self.register(self.foreign("refuse-if", self.data, "remove", OLD, "native"))
        self.build()
        result = self.install()
        self.assert_installed(result)
        self.assertIn(f'\nUninstalling "{OLD}" ...\n', result.out)
        self.assertEqual(result.err, "")
        self.assertFalse(self.is_registered())

    def test_arguments_come_after_the_registered_command(self):
        self.register(self.foreign("remove", OLD))
        self.build(f'<ExternalLegacyApplication Arguments="native mark {self.native("asked")}">{OLD}'
                   "</ExternalLegacyApplication>")
        self.assert_installed(self.install())
        self.assertTrue(self.host("asked").exists())

    def test_a_second_program_is_waited_for_until_it_signals_its_end(self):
        # The entry goes early, so that only the signal shows the end.
        self.register(self.foreign("second", "signal", START, "remove", OLD, "native", "refuse-if", self.data,
                                   "mark", self.native("first"), "signal", END))
        self.build()
        result = self.install()
        self.assert_installed(result)
        self.assertTrue(self.host("first").exists())
        self.assertEqual(result.err, "")

    def test_a_second_program_without_signals_is_waited_for_until_it_is_off_the_list(self):
        self.register(self.foreign("second", "refuse-if", self.data, "mark", self.native("first"),
                                   "remove", OLD, "native"))
        self.build()
        self.assert_installed(self.install())
        self.assertTrue(self.host("first").exists())

    def install_old(self, farewell=""):
        """An old product of this system, as far as the new one doesn't know."""
        sets = (f'<FileSet Name="Uninstaller"><FN Dest="[DIR]/un" Executable="1">installer{EXE}</FN></FileSet>{SETS}'
                f'<FileSet Name="Tools"><FN Dest="[DIR]/bin" Executable="1">{FOREIGN}</FN></FileSet>'
                '<UninstallWildcards><File Dest="[DIR]/un">install.log</File><File Dest="[DIR]/un">backup.bin</File>'
                "</UninstallWildcards>")
        old = description(self.native("opt/old"), sets, late='<RegisterApplication Special="AutoNext"/>',
                          farewell=farewell + '<CopyProgress Special="AutoNext"/><UnregisterApplication Special="AutoNext"/>')
        files = {"data.txt": "data\n", FOREIGN: self.read(FOREIGN)}
        package = self.build_package(old.replace("Test Product", OLD), files, "old" + EXE)
        self.assertIn("was successful!", self.run_program(package, "-auto").out)
        shutil.rmtree(self.host("stage"))
        self.assertTrue(self.is_registered())

    # Nobody is there to see a window of the uninstaller.
    OWN = f'<ExternalLegacyApplication Arguments="-gui=0">{OLD}</ExternalLegacyApplication>'

    def test_a_product_of_this_system_is_removed_before_the_new_one_comes(self):
        self.install_old()
        self.build(self.OWN)
        result = self.install()
        self.assert_installed(result)
        self.assertEqual(result.err, "")
        self.assertFalse(self.is_registered())
        self.assertFalse(self.host("opt/old/data.txt").exists())
        self.assertNotIn("/opt/new", result.out[:result.out.index("uninstallation was successful!")].replace("\\", "/"))

    def start(self, program, *arguments, out=subprocess.DEVNULL):
        """Runs a program beside the test."""
        running = subprocess.Popen([*self.machine.command(self.host(program)), *arguments], stdin=subprocess.DEVNULL,
                                   stdout=out, stderr=out, env=self.machine.environment({}), cwd=self.machine.root)
        self.addCleanup(running.kill)
        return running

    def test_an_uninstaller_that_a_running_program_holds_is_waited_for(self):
        self.install_old(f'<RunningApps Special="Automated"><TestApp Directory="[DIR]">{FOREIGN}</TestApp></RunningApps>')
        tool = self.start("opt/old/bin/" + FOREIGN, "mark", self.native("runs"), "await", self.native("go"))
        self.wait_until(self.host("runs").exists)
        self.build(self.OWN)
        with open(self.host("shown"), "wb") as shown:
            setup = self.start(self.setup, "-auto", out=shown)
        held = "because the processes listed above are running"
        self.wait_until(lambda: held in self.read_text("shown"))
        self.assertTrue(self.host("opt/old/data.txt").exists())
        self.assertFalse(self.host("opt/new/data.txt").exists())
        self.host("go").mkdir()
        tool.wait(timeout=TIMEOUT)
        setup.wait(timeout=TIMEOUT)
        self.assertTrue(self.read_text("shown").endswith(SUCCESS), self.read_text("shown"))
        self.assertTrue(self.host("opt/new/data.txt").exists())
        self.assertFalse(self.host("opt/old/data.txt").exists())
        self.assertFalse(self.is_registered())


class Failures(ExternalTest):
    def test_the_code_of_an_uninstaller_that_fails_is_shown(self):
        self.register(self.foreign("exit", "3"))
        self.build()
        for quiet in ((), ("-quiet=1",)):
            self.assert_held(self.install(*quiet), f'The uninstaller of "{OLD}" ended with the code 3\n'
                                                   f'"{OLD}" is still installed\n')

    def test_the_reason_why_an_uninstaller_does_not_start_is_shown(self):
        self.register(f'"{self.native("gone" + EXE)}" /x')
        self.build()
        result = self.install()
        first, rest = result.err.split("\n", 1)
        start = f'The uninstaller of "{OLD}" does not start: "{self.native("gone" + EXE)}" /x: '
        self.assertEqual(first[:len(start)], start)
        self.assertRegex(first[len(start):], "^[A-Z][a-z]+ .*[a-z]{4}")
        self.assertEqual(rest, f'"{OLD}" is still installed\n' + HELD)

    def test_a_page_that_holds_nobody_back_goes_on_with_the_product(self):
        self.register(self.foreign("exit", "3"))
        self.build(special=' Special="WeakCondition"')
        result = self.install()
        self.assert_installed(result)
        self.assertIn("ended with the code 3\n", result.err)
        self.assertTrue(self.is_registered())

    def test_each_product_is_looked_for_in_its_own_view(self):
        wide, narrow = "Wide Tool", "Narrow Tool"
        self.register(self.foreign("exit", "3"), wide)
        self.register(self.foreign("remove", narrow, "x86"), narrow, "x86")
        self.build(f"<ExternalLegacyApplication>{wide}</ExternalLegacyApplication>"
                   f'<ExternalLegacyApplication Details="x86">{narrow}</ExternalLegacyApplication>')
        self.assert_held(self.install(), f'The uninstaller of "{wide}" ended with the code 3\n'
                                         f'"{wide}" is still installed\n')

    @unittest.skipIf(WINDOWS, "no signal reaches a program under Wine")
    def test_an_uninstaller_that_never_ends_can_be_left_by_an_interrupt(self):
        self.register(self.foreign("mark", self.native("runs"), "await", self.native("go"), "mark", self.native("over")))
        self.build()
        # No terminal, whose end would end the uninstaller as well.
        with open(self.host("shown"), "wb") as shown:
            setup = subprocess.Popen([self.host(self.setup), "-auto"], stdout=shown, stderr=shown,
                                     stdin=subprocess.DEVNULL, env=self.machine.environment({}))
        self.wait_until(self.host("runs").exists)
        setup.send_signal(signal.SIGINT)
        setup.wait(timeout=TIMEOUT)
        lines = self.read_text("shown").splitlines()
        self.assertIn("[CTRL-C] Aborting installation...", lines)
        self.assertIn(f'The uninstaller of "{OLD}" is not waited for any longer', lines)
        self.assertEqual(lines[-1], FAILURE.strip())
        self.assertFalse(self.host("opt/new/data.txt").exists())
        self.assertFalse([name for name in os.listdir("/dev/shm") if name in (f"sem.{START}", f"sem.{END}")])
        self.host("go").mkdir()  # it was left, not ended
        self.wait_until(self.host("over").exists)


if __name__ == "__main__":
    main()
