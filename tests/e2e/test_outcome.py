"""What a run says of itself: its last line, its exit code, and why it didn't do what was asked."""

import shutil
import signal
import unittest

from descriptions import description
from harness import EXE, WINDOWS, EndToEndTest, main

SUCCESS, FAILURE = "Automatic installation was successful!\n", "The automatic installer has encountered an ERROR!\n"
UNINSTALLED = "Automatic uninstallation was successful!\n"
NOT_UNINSTALLED = "The automatic uninstaller has encountered an ERROR!\n"
GOOD = '<FileSet Name="Core"><FN Dest="[DIR]">data.txt</FN></FileSet>'
BAD = '<FileSet Name="Core"><FN Dest="[DIR]">data.txt</FN><FN Dest="[DIR]">blocked.txt</FN></FileSet>'
FILES = {"data.txt": "data\n", "blocked.txt": "never written\n"}
RECORDS = """
<UninstallWildcards>
 <File Dest="[DIR]/un">install.log</File>
 <File Dest="[DIR]/un">backup.bin</File>
</UninstallWildcards>
"""


class OutcomeTest(EndToEndTest):
    def setUp(self):
        super().setUp()
        self.write("opt/product/blocked.txt/kept", "the user's own")  # no file can be written over a directory

    def build(self, sets=GOOD, **parts):
        self.setup = self.build_package(description(self.native("opt/product"), sets, **parts), FILES)

    def install(self, *arguments):
        result = self.run_program(self.setup, *(arguments or ("-auto",)))
        self.assertEqual(result.code, 0, result)
        return result

    def assert_failed(self, result):
        self.assertTrue(result.out.endswith(FAILURE), result)
        self.assertNotIn("successful", result.out)


class Installations(OutcomeTest):
    def test_a_clean_run_was_successful_and_has_nothing_else_to_say(self):
        self.build(late="<PostInstall/>")
        result = self.install()
        self.assertTrue(result.out.endswith(SUCCESS), result)
        self.assertEqual(result.err, "")

    def test_a_later_page_does_not_make_up_for_a_failed_one(self):
        self.build(BAD, late="<PostInstall/>")
        self.assert_failed(self.install())

    def test_ignored_errors_are_no_success(self):
        self.build(BAD, late="<PostInstall/>")
        result = self.install("-auto", "-ignoreErrors=1")
        self.assertIn("It worked.\n", result.out)
        self.assertTrue(result.out.endswith(FAILURE), result)
        self.assertNotIn("installation was successful", result.out)

    def test_a_run_that_never_came_to_install_is_no_success(self):
        self.build(pages='<Refuse Special="Finish"><Text x="1" y="1">Not on this machine.</Text></Refuse>')
        result = self.install()
        self.assertIn("Not on this machine.\n", result.out)
        self.assert_failed(result)
        self.assertEqual(result.err, 'Nothing was installed: the run ended on the page "Refuse"\n')
        self.assertFalse(self.host("opt/product/data.txt").exists())

    def test_a_quiet_run_says_why_it_cannot_start(self):
        self.build()
        self.write("setup.bin", "no package at all")
        result = self.install("-auto", "-quiet=1", "-bin=" + self.native("setup.bin"))
        self.assertRegex(result.err, r"^[^\n]*setup\.bin: the package can't be read \(-[0-9]+\)\n$")
        self.assertNotIn("successful", result.out)

    def test_a_description_without_default_values_is_named_as_the_reason(self):
        text = description(self.native("opt/product"), GOOD)
        start, end = text.index("<DefValues>"), text.index("</DefValues>") + len("</DefValues>")
        self.setup = self.build_package(text[:start] + text[end:], FILES)
        result = self.install()
        self.assertEqual(result.err, "The installation can't start: the description has no default values\n")
        self.assertNotIn("successful", result.out)


class Reasons(OutcomeTest):
    """Why something failed comes once, on standard error, whatever else is silent."""

    def assert_one_reason(self, result, path):
        lines = [line for line in result.err.splitlines() if "blocked.txt: " in line]
        self.assertEqual(len(lines), 1, result)
        self.assertRegex(lines[0].replace("\\", "/"), "^" + path.replace("\\", "/") + ": .*[a-z]{4}")
        self.assertNotRegex(lines[0], "error -?[0-9]")

    def test_a_file_that_cannot_be_written_has_its_reason(self):
        self.build(BAD)
        result = self.install()
        self.assertEqual(result.out.count("FAILED to Create"), 3, result)  # the step and two lists
        self.assert_one_reason(result, self.native("opt/product/blocked.txt"))
        self.assertNotIn("blocked.txt: ", result.out)

    def test_a_quiet_run_has_it_too(self):
        self.build(BAD)
        result = self.install("-auto", "-quiet=1")
        self.assert_one_reason(result, self.native("opt/product/blocked.txt"))
        self.assertEqual(result.out, FAILURE)


class HeldInstallations(OutcomeTest):
    """A page waits for the end of a program, which is another run that asks its first question."""

    def hold(self, special):
        ask = '<Ask><Field Type="EditBox" Label="Anything" x="1" y="1">NOTE</Field></Ask>'
        self.build_package(description(self.native("opt"), GOOD, ask).replace("Test Product", "Other"), FILES,
                           "other" + EXE)
        shutil.rmtree(self.host("stage"))
        self.build(pages=f'<RunningApps{special}><TestApp>other{EXE}</TestApp></RunningApps>')
        self.open_terminal("other" + EXE, "-gui=0").expect("Anything:")

    def test_a_page_that_refuses_to_be_left_ends_the_run_with_a_failure(self):
        self.hold("")
        result = self.install()
        self.assertIn("The installation can not continue, because the processes listed above are running.", result.out)
        self.assert_failed(result)
        self.assertEqual(result.err, 'Nothing was installed: the run was held on the page "RunningApps"\n')

    def test_a_quiet_run_names_what_holds_it(self):
        self.hold("")
        result = self.install("-auto", "-quiet=1")
        self.assertEqual(result.out, FAILURE)
        self.assertEqual(result.err, f'Still running: other{EXE}\n'
                                     'Nothing was installed: the run was held on the page "RunningApps"\n')

    @unittest.skipIf(WINDOWS, "Wine's console is a process of its own, which no signal to the program reaches")
    def test_a_run_that_is_interrupted_while_it_waits_is_no_success(self):
        self.hold(' Special="Automated"')
        for event in (signal.SIGINT, signal.SIGTERM, signal.SIGHUP):
            terminal = self.open_terminal(self.setup, "-auto")
            terminal.expect("because the processes listed above are running.")
            terminal.process.send_signal(event)
            terminal.expect("[CTRL-C] Aborting installation...")
            code, rest = terminal.rest()
            self.assertEqual(code, 0, rest)
            self.assertIn(FAILURE.strip(), rest)
            self.assertNotIn("successful", rest)
            self.assertFalse(self.host("opt/product/data.txt").exists())


class Names(OutcomeTest):
    def test_names_that_nobody_knows_are_reported_and_change_nothing_else(self):
        self.build(values='<Value Name="MODE" DataType="cmdlinearg">slow</Value>')
        plain = self.install("-auto", "-MODE=fast")
        self.assertEqual(plain.err, "")
        result = self.install("-auto", "-MODE=fast", "-VARIABLE_DIRECTORY=/elsewhere", "-verbose", "-Quiet=1")
        self.assertEqual(result.out, plain.out)
        self.assertEqual(result.err.splitlines(), [
            "-VARIABLE_DIRECTORY: the description has no variable DIRECTORY",
            "-verbose: there is no such option, and it has no effect",
            "-Quiet: there is no such option, and it has no effect"])

    def test_an_empty_value_that_counts_as_one_is_reported(self):
        self.build(values='<Value Name="NOTE" DataType="value"></Value>')
        result = self.install("-auto", "-VARIABLE_NOTE=")
        self.assertEqual(result.err, "-VARIABLE_NOTE= has no value and counts as 1\n")
        self.assertEqual(self.install("-auto", "-VARIABLE_NOTE").err, "")

    def test_answers_to_nobodys_questions_are_reported(self):
        self.build()
        self.write("answers.xml", '<DefValues><Value Name="DIRECTORY" DataType="value">/elsewhere</Value></DefValues>')
        path = self.native("answers.xml")
        result = self.install("-configFile=" + path)
        self.assertEqual(result.err, f"{path}: the description has no variable DIRECTORY\n")
        self.assertEqual(result.out, SUCCESS)


class Uninstallations(OutcomeTest):
    def uninstall(self, farewell):
        self.build(GOOD + RECORDS, farewell=farewell)
        self.install()
        shutil.copyfile(self.host("opt/product/un/install.log"), self.host("copy.log"))
        return self.run_program("installer" + EXE, "-uninstallFile=" + self.native("copy.log"),
                                "-uninstallApp=Test Product", "-gui=0")

    def test_the_exit_code_agrees_with_the_last_line(self):
        result = self.uninstall('<Welcome/><CopyProgress Special="AutoNext"/>')
        self.assertTrue(result.out.endswith(UNINSTALLED), result)
        self.assertEqual((result.code, result.err), (0, ""), result)

    def test_a_failed_page_before_the_work_fails_the_run(self):
        result = self.uninstall('<Welcome/><RegisterApplication Special="AutoNext"/><CopyProgress Special="AutoNext"/>')
        self.assertFalse(self.host("opt/product/data.txt").exists())
        self.assertTrue(result.out.endswith(NOT_UNINSTALLED), result)
        self.assertEqual(result.code, 255, result)

    def test_a_run_that_never_came_to_uninstall_is_no_success(self):
        result = self.uninstall("<Welcome/>")
        self.assertTrue(self.host("opt/product/data.txt").exists())
        self.assertTrue(result.out.endswith(NOT_UNINSTALLED), result)
        self.assertEqual(result.code, 255, result)
        self.assertEqual(result.err, 'Nothing was uninstalled: the run ended on the page "Finish"\n')

    def test_a_log_that_is_not_there_is_named(self):
        path = self.native("gone.log")
        result = self.run_program("installer" + EXE, "-uninstallFile=" + path, "-gui=0")
        self.assertEqual(result.code, 255, result)
        self.assertRegex(result.err, r"^The uninstallation can't start: [^\n]*gone\.log: [^\n]+\n$")


if __name__ == "__main__":
    main()
