"""Setups that are killed, and what the next run makes of it: the same setup, or the registered uninstallation."""

import shutil
import signal
import subprocess

import test_upgrade
from harness import EXE, HELPERS, TIMEOUT, WINDOWS, main

AT_WORK, NOT_RECOVERED = 2, 3


class RecoveryTest(test_upgrade.UpgradeTest):
    # The tests of the base class are its own.
    locals().update({name: None for name in dir(test_upgrade.UpgradeTest) if name.startswith("test_")})

    def setUp(self):
        super().setUp()
        self.helper = "helper" + EXE
        shutil.copy2(HELPERS / ("foreign_uninstaller" + EXE), self.host(self.helper))

    def hold(self, container):
        """A group of actions that waits for the test."""
        arguments = f"leave-if {self.native('go')} mark {self.native('reached')} await {self.native('go')}"
        return (f'<{container}><RunProgram Wait="1" Arguments="{arguments}">{self.native(self.helper)}</RunProgram>'
                f'</{container}>')

    def start(self, setup, *arguments):
        """A setup that has come to the group of actions that waits."""
        command = self.machine.direct_command(self.host(setup)) + ["-auto", *arguments]
        output = open(self.host("held.txt"), "wb")
        self.addCleanup(output.close)
        process = subprocess.Popen(command, stdin=subprocess.DEVNULL, stdout=output, stderr=subprocess.STDOUT,
                                   env=self.machine.environment({}), cwd=self.machine.root)
        self.addCleanup(self.end, process)
        self.wait_until(self.host("reached").exists)
        return process

    def end(self, process):
        self.write("go", "")
        if process.poll() is None:
            process.kill()
        process.wait(timeout=TIMEOUT)

    def kill(self, setup, *arguments):
        process = self.start(setup, *arguments)
        process.send_signal(signal.SIGKILL)
        process.wait(timeout=TIMEOUT)
        self.write("go", "")
        self.host("reached").rmdir()

    def unfinished(self):
        found = sorted(p.name for p in self.machine.state.glob("removal-*"))
        return found if not WINDOWS else [name for name in found if name not in self.there_before]

    def forget(self):
        """The state directory of a Wine prefix is that of all tests."""
        self.there_before = {p.name for p in self.machine.state.glob("removal-*")} if self.machine.state.exists() else set()

    def expect_recovered(self, result):
        self.assertIn("An earlier run of the setup of Product was interrupted.", result.err, result)
        self.assertIn("What it had changed has been taken back.", result.err, result)
        self.assertEqual(self.unfinished(), [])

    # --- the tests

    def test_the_same_setup_goes_on_after_a_kill_between_removal_and_end(self):
        self.forget()
        self.install(self.build(1))
        setup = self.build(2, more=self.hold("AdditionalInstall"))
        self.kill(setup)
        self.assertEqual(len(self.unfinished()), 1)
        self.expect_recovered(self.install(setup))
        self.expect_version(2)
        self.uninstall()
        self.expect_as_before()

    def test_another_version_finds_the_earlier_one_as_it_was(self):
        self.forget()
        self.install(self.build(1))
        first = self.state()
        self.kill(self.build(2, more=self.hold("AdditionalInstall")))
        self.assertNotEqual(self.files(), first["files"])
        result = self.fail_to_install(self.build(3, more=test_upgrade.FAILING))
        self.expect_recovered(result)
        self.assertEqual(self.state(), first)
        self.uninstall()
        self.expect_as_before()

    def test_the_registered_uninstallation_takes_the_interrupted_upgrade_with_it(self):
        self.forget()
        self.install(self.build(1))
        self.kill(self.build(2, more=self.hold("AdditionalInstall")))
        self.assertFalse(self.host("opt/product/un/install.log").exists())
        self.uninstall()
        self.expect_as_before()
        self.assertEqual(self.unfinished(), [])
        self.assertEqual(self.temporary(), [])

    def test_an_installation_that_was_killed_is_taken_back(self):
        self.forget()
        setup = self.build(1, more=self.hold("AdditionalInstall"))
        self.kill(setup)
        self.assertTrue(self.host("opt/product/data.txt").exists())
        self.expect_recovered(self.fail_to_install(self.build(2, more=test_upgrade.FAILING)))
        self.expect_as_before()
        self.install(setup)
        self.expect_version(1)
        self.uninstall()
        self.expect_as_before()

    def test_a_kill_before_the_removal_costs_nothing(self):
        self.forget()
        self.install(self.build(1, more=self.hold("PreUninstall")))
        first = self.state()
        setup = self.build(2)
        self.kill(setup)
        self.assertEqual(self.state(), {**first, "sums": self.state()["sums"]})
        result = self.install(setup)
        self.assertEqual(self.unfinished(), [], result)
        self.expect_version(2)
        self.uninstall()
        self.expect_as_before()

    def test_a_person_is_asked(self):
        self.forget()
        self.install(self.build(1))
        first = self.state()
        setup = self.build(2, more=self.hold("AdditionalInstall"))
        self.kill(setup)
        interrupted = self.files()
        result = self.run_program(setup, "-gui=0", stdin="no\n")
        self.assertIn("Should what it changed be taken back?", result.out, result)
        self.assertEqual(result.code, NOT_RECOVERED, result)
        self.assertEqual(self.files(), interrupted)
        result = self.run_program(self.build(3, more=test_upgrade.FAILING), "-gui=0", stdin="yes\n" + "\n" * 20)
        self.expect_recovered(result)
        self.assertEqual(self.state(), first)
        self.uninstall()
        self.expect_as_before()

    def test_a_second_upgrade_waits_for_its_turn(self):
        self.forget()
        self.install(self.build(1))
        first = self.start(self.build(2, more=self.hold("AdditionalInstall")))
        reached = self.files()
        result = self.run_program(self.build(3), "-auto")
        self.assertEqual(result.code, AT_WORK, result)
        self.assertIn("Another setup or uninstallation of Product is at work. Nothing was changed", result.err, result)
        self.assertEqual(self.files(), reached)
        self.write("go", "")
        self.assertEqual(first.wait(timeout=TIMEOUT), 0)
        self.expect_version(2)
        self.install(self.build(3))
        self.expect_version(3)
        self.uninstall()
        self.expect_as_before()


if __name__ == "__main__":
    main()
