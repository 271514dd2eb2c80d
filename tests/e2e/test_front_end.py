"""Which front end a run gets when the command line leaves that open."""

import unittest

from descriptions import description
from harness import EXE, WINDOWS, EndToEndTest, main

NO_DISPLAY = {"DISPLAY": "", "WAYLAND_DISPLAY": ""}
SETS = '<FileSet Name="All"><FN Dest="[DIR]" Alias="Data">data.txt</FN></FileSet>'
REFUSED = 255


@unittest.skipIf(WINDOWS, "a window is always tried on Windows")
class WithoutADisplay(EndToEndTest):
    def setUp(self):
        super().setUp()
        self.setup = self.build_package(description(self.native("opt/product"), SETS), {"data.txt": "data\n"})

    def installed(self):
        return self.host("opt/product/data.txt").exists()

    def test_a_person_at_a_terminal_is_asked_on_the_console(self):
        terminal = self.open_terminal(self.setup, env=NO_DISPLAY)
        terminal.expect("No window can be shown, so the console is used: ")
        terminal.expect("* Tandrel Group installer")
        terminal.expect("It worked.")

    def test_without_a_terminal_one_line_says_why_nothing_is_done(self):
        result = self.run_program(self.setup, env=NO_DISPLAY)
        self.assertEqual(result.code, REFUSED, result)
        self.assertRegex(result.err, r"\ANo window can be shown \(.+\), and standard input is no terminal: nothing was done\. "
                                     r"The option -gui=0 uses the console all the same\.\n\Z")
        self.assertEqual(result.out, "")
        self.assertFalse(self.installed())

    def test_unattended_runs_need_neither(self):
        result = self.run_program(self.setup, "-auto", env=NO_DISPLAY)
        self.assertEqual((result.code, result.err), (0, ""), result)
        self.assertTrue(self.installed())

    def test_an_uninstallation_that_nobody_can_watch_does_not_start(self):
        self.run_program(self.setup, "-auto", env=NO_DISPLAY)
        log = self.native("opt/product/un/install.log")
        result = self.run_program("installer" + EXE, "-uninstall=" + log, "-uninstallApp=Test Product", env=NO_DISPLAY)
        self.assertEqual(result.code, REFUSED, result)
        self.assertIn("-gui=0", result.err)
        self.assertEqual(list(self.machine.temp.glob("ormeluninst*")), [])
        self.assertTrue(self.installed())


if __name__ == "__main__":
    main()
