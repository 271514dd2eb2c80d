"""A setup whose connection to the display breaks."""

import subprocess
import unittest

from harness import EXE, TIMEOUT, WINDOWS, main
from held_setup import HeldRemoval, HeldSetup

GONE = "The display has gone: the window can't be shown any more\n"
CANCELLED = "The installation was cancelled\n"


class LostDisplay:
    def lose_display(self, window):
        """The server ends the connection of the program with the window in front, which it doesn't ask."""
        title = window.wait(window.front, "a window in front").title
        subprocess.run(["xdotool", "search", "--onlyvisible", "--name", f"^{title}$", "windowkill"], check=True,
                       timeout=TIMEOUT, stdout=subprocess.DEVNULL, env=self.machine.environment(window.probe.environment))

    def remove(self):
        for container in ("LookingBack", "PreUninstall"):
            self.release(container)
        result = self.run_program("installer" + EXE, "-uninstall=" + self.native("opt/un/install.log"),
                                  "-uninstallApp=Test Product", "-auto")
        self.assertEqual(result.code, 0, result)
        self.wait_until(lambda: not self.host("opt").exists())


@unittest.skipIf(WINDOWS, "the display belongs to the system there")
class InAnInstallation(LostDisplay, HeldSetup):
    arguments = ("-debug=1",)

    def debug_log(self):
        return (self.machine.temp / "installer_debug.log").read_text("utf-8")

    def test_before_the_work_cancels(self):
        self.setup.page("Before.")
        self.lose_display(self.setup)
        code, output = self.setup.end()
        self.assertEqual((code, output[output.index(GONE):]), (0, GONE + CANCELLED))
        self.assertFalse(self.host("opt").exists())
        self.assertIn("ERROR: The display has gone", self.debug_log())

    def test_while_a_box_asks_is_no_answer_and_cancels(self):
        self.setup.page("Before.")
        self.setup.press_close_box()
        self.setup.box("This will cancel the installation of\nTest Product\nAre you sure?")
        self.lose_display(self.setup)
        code, output = self.setup.end()
        self.assertEqual((code, output[output.index(GONE):]), (0, GONE + CANCELLED))

    def test_during_the_work_lets_it_be_finished(self):
        self.walk_to_the_installation()
        self.setup.page("Copying.")
        self.lose_display(self.setup)
        self.release("AdditionalInstall")
        code, output = self.setup.end()
        self.assertEqual((code, output[output.index(GONE):]), (0, GONE))
        self.assertIn("Installation finished (res=0)", self.debug_log())
        self.assertEqual(self.read_text("opt/data.txt"), "data\n")
        self.remove()

    def test_on_the_last_page_changes_nothing(self):
        self.walk_to_the_installation()
        self.release("AdditionalInstall")
        self.setup.page("It worked.")
        self.lose_display(self.setup)
        code, output = self.setup.end()
        self.assertEqual((code, output[output.index(GONE):]), (0, GONE))
        self.assertEqual(self.read_text("opt/data.txt"), "data\n")


@unittest.skipIf(WINDOWS, "the display belongs to the system there")
class InARemoval(LostDisplay, HeldRemoval):
    def test_before_the_work_cancels(self):
        self.removal.page("Leaving.")
        installed = self.tree("opt")
        self.lose_display(self.removal)
        self.wait_for_the_uninstaller()
        self.assertEqual(self.removal.end(), (0, GONE + CANCELLED))
        self.assertEqual(self.tree("opt"), installed)
        self.remove()

    def test_during_the_work_lets_it_be_finished(self):
        self.walk_to_the_removal()
        self.lose_display(self.removal)
        self.release("PreUninstall")
        self.wait_for_the_uninstaller()
        self.assertEqual(self.removal.end(), (0, GONE))
        self.assertFalse(self.host("opt").exists())


if __name__ == "__main__":
    main()
