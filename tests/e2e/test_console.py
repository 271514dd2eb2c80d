"""The console front end in real terminals: prompts, passwords, interrupts, windows of several sizes."""

import os
import pathlib
import shutil
import signal
import unittest

from descriptions import description
from harness import EXE, WINDOWS, EndToEndTest, main
from terminal import DELETE, END, INTERRUPT, LEFT, QUIT, SUSPEND

BANNER = "*******************************\n* Tandrel Group installer     *\n*******************************\n"
ABORTING = "\n[CTRL-C] Aborting installation...\n"
RUNNING = "\n[CTRL-C] The installation is running and can not be aborted!\n"
BUSY = "\n[CTRL-C] The installer is busy and cannot be interrupted\n"
SETS = '<FileSet Name="Core"><FN Dest="[DIR]" ExpandVarsInFile="1">answers.txt</FN></FileSet>'
FILES = {"answers.txt": "dir=[DIR]\nextra=[EXTRA]\nkind=[KIND]\nowner=[OWNER]\nsecret=[SECRET]\n"}
VALUES = """
<Value Name="EXTRA" DataType="value">2</Value>
<Value Name="KIND" DataType="value">1</Value>
<Value Name="OWNER" DataType="value">nobody</Value>
<Value Name="SECRET" DataType="value"></Value>
"""
ASK = """
<Welcome><Text x="1" y="1">Welcome to the test.</Text></Welcome>
<Ask>
 <Field Type="Directory" Label="Where to" x="1" y="1">DIR</Field>
 <Field Type="CheckBox" Label="Extra files" x="1" y="1">EXTRA</Field>
 <Field Type="RadioButtons" Label="Kind" Content="small;medium;large" Description="one;two;three"
  Enable="1==1|1==2" x="1" y="1">KIND</Field>
 <Field Type="EditBox" Label="Owner" x="1" y="1">OWNER</Field>
 <Field Type="Password" Label="Secret" x="1" y="1">SECRET</Field>
</Ask>
"""
ASK_SECRET = """
<Ask>
 <Field Type="Password" Label="Secret" x="1" y="1">SECRET</Field>
 <Field Type="EditBox" Label="Owner" x="1" y="1">OWNER</Field>
</Ask>
"""


class ConsoleTest(EndToEndTest):
    def setUp(self):
        super().setUp()
        self.dir = self.native("opt")

    def build(self, pages, sets=SETS, files=None):
        self.setup = self.build_package(description(self.dir, sets, pages, VALUES), files or FILES)

    def start(self, *arguments, **options):
        return self.open_terminal(self.setup, "-gui=0", *arguments, **options)

    def start_as_job(self):
        """In a shell that says when the program has stopped, reads a line, and lets the program go on."""
        shell = ["bash", "--norc", "-c", 'set -m; "$@"; echo "[stopped]"; read -r line; fg >/dev/null; echo "[$line]"',
                 "bash"]
        self.machine.direct_command = lambda program: shell + [str(program)]
        return self.start()

    def assert_shown(self, shown, expected):
        if WINDOWS:  # the console drops spaces at line ends, and shows those at the end of a prompt late
            shown, expected = ("\n".join(x.rstrip(" ") for x in t.lstrip(" ").split("\n")) for t in (shown, expected))
        self.assertEqual(shown, expected)

    def assert_settings_restored(self, terminal):
        if WINDOWS:  # Wine's console ends a moment after the program
            self.wait_until(lambda: terminal.current_settings() == terminal.settings)
        self.assertEqual(terminal.current_settings(), terminal.settings)

    def assert_aborted(self, terminal, code=0):
        """The run has ended and has left nothing on the disk."""
        result, rest = terminal.rest()
        self.assertEqual(result, code, terminal.text())
        self.assertNotIn("It worked.", terminal.text())
        self.assertFalse(self.host("opt").exists())
        self.assertEqual([f.name for f in self.machine.temp.iterdir() if f.name.startswith("ori")], [])
        self.assert_settings_restored(terminal)
        return rest


class Prompts(ConsoleTest):
    def test_each_field_is_asked_and_its_answer_is_used(self):
        self.build(ASK)
        terminal = self.start()
        shown = terminal.expect(f"Where to [{self.dir}]:")
        self.assert_shown(shown, BANNER + f"Welcome to the test.\nWhere to [{self.dir}]:")
        terminal.type(f" {self.dir}/ \r")
        self.assert_shown(terminal.expect("(no or yes): "), f" {self.dir}/ \nExtra files (no or yes): ")
        terminal.type("Yes\r")
        self.assert_shown(terminal.expect("[1-3]: "), "Yes\nKind\n  1) small one\n  2) medium two\n  3) large three\n"
                                                     "Enter your choice [1-3]: ")
        terminal.type("3\r")
        self.assert_shown(terminal.expect("]:"), "3\nOwner [nobody]:")
        terminal.type("  Ada Lovelace\t\r")
        terminal.expect("\nSecret:")
        terminal.type("sesame\r")
        code, rest = terminal.rest()
        self.assertEqual(code, 0, rest)
        self.assertTrue(rest.startswith("\nCreate "), rest)
        self.assertIn("It worked.\n", rest)
        self.assertNotIn("sesame", terminal.text())
        self.assert_settings_restored(terminal)
        answers = self.read_text("opt/answers.txt")
        self.assertTrue(answers.endswith("extra=1\nkind=2\nowner=Ada Lovelace\nsecret=sesame\n"), answers)

    def test_cursor_keys_edit_an_answer_and_never_end_up_in_it(self):
        self.build(ASK_SECRET)
        terminal = self.start()
        terminal.expect("Secret:")
        terminal.type("\r")
        terminal.expect("Owner [nobody]:")
        for key in ("A", "a", LEFT, "d", END, "!", LEFT, DELETE, "\r"):
            terminal.type(key)
        self.assertEqual(terminal.rest()[0], 0)
        self.assertIn("owner=Ada\n", self.read_text("opt/answers.txt"))

    @unittest.skipIf(WINDOWS, "the console of Windows completes nothing")
    def test_a_directory_is_completed_and_understood_as_people_type_it(self):
        self.build(ASK)
        home = self.host("home")
        (home / "my programs").mkdir(parents=True)
        terminal = self.start(env={"HOME": str(home)})
        terminal.expect(f"Where to [{self.dir}]:")
        terminal.type("~/my\t")
        terminal.expect("programs/")
        terminal.type("sub/../here\r")
        for question in ("(no or yes): ", "[1-3]: ", "]:", "Secret:"):
            terminal.expect(question)
            terminal.type({"(no or yes): ": "no", "[1-3]: ": "1"}.get(question, "") + "\r")
        code, rest = terminal.rest()
        self.assertEqual(code, 0, rest)
        self.assertTrue((home / "my programs" / "here").is_dir())

    @unittest.skipIf(WINDOWS, "this key suspends the program under Wine")
    def test_the_key_that_suspends_works_while_an_answer_is_edited(self):
        self.build(ASK_SECRET)
        terminal = self.start_as_job()
        terminal.expect("Secret:")
        terminal.type("\r")
        terminal.expect("Owner [nobody]:")
        terminal.type("Ad")
        terminal.expect("Ad")
        terminal.type(SUSPEND)
        terminal.expect("[stopped]\n")
        self.assertTrue(terminal.has_echo())
        terminal.type("visible\r")
        self.wait_until(lambda: not terminal.has_echo())
        terminal.type("a\r")
        terminal.expect("It worked.")
        self.assertEqual(terminal.rest()[0], 0)
        # A terminal may drop what was typed before the key that stops a program.
        self.assertRegex(self.read_text("opt/answers.txt"), r"owner=(Ad)?a\n")

    def test_the_question_is_repeated_after_an_invalid_answer(self):
        self.build(ASK)
        terminal = self.start()
        terminal.expect(f"Where to [{self.dir}]:")
        terminal.type("\r")
        terminal.expect("Extra files (no or yes): ")
        for answer in ("", "Y", "ye", "maybe"):  # only whole words count
            terminal.type(answer + "\r")
            self.assert_shown(terminal.expect(": "), answer + "\nPlease, answer with no or yes: ")
        terminal.type("NO\r")
        # The variable is the number of a disabled item, so there is no default.
        terminal.expect("Enter your choice [1-3]: ")
        terminal.type("2\r")
        self.assert_shown(terminal.expect("]: "), "2\nChoice 2 is disabled, choose something else!\n"
                                                 "Enter your choice [1-3]: ")
        terminal.type("\r")
        self.assert_shown(terminal.expect("]: "), "\nEnter your choice [1-3]: ")
        for answer in ("0", "4", "x"):
            terminal.type(answer + "\r")
            self.assert_shown(terminal.expect("]: "), answer + "\nPlease, answer with a number (1 to 3)\n"
                                                              "Enter your choice [1-3]: ")
        terminal.type("1\r")
        terminal.expect("Owner [nobody]:")
        terminal.type("\r")
        terminal.expect("Secret:")
        terminal.type("\r")
        code, rest = terminal.rest()
        self.assertEqual(code, 0, rest)
        answers = self.read_text("opt/answers.txt")
        self.assertTrue(answers.endswith("extra=0\nkind=0\nowner=nobody\nsecret=\n"), answers)

    def test_characters_of_a_password_can_be_deleted(self):
        self.build(ASK_SECRET)
        terminal = self.start()
        terminal.expect("Secret:")
        terminal.type("sesamx\x7fe\r")
        shown = terminal.expect("Owner [nobody]:")
        self.assert_shown(shown, "\nOwner [nobody]:")
        terminal.type("\r")
        self.assertEqual(terminal.rest()[0], 0)
        self.assertIn("secret=sesame\n", self.read_text("opt/answers.txt"))

    @unittest.skipIf(WINDOWS, "this key suspends the program under Wine")
    def test_the_key_that_suspends_ends_a_password(self):
        self.build(ASK_SECRET)
        terminal = self.start()
        terminal.expect("Secret:")
        terminal.type(b"sesame" + SUSPEND)
        terminal.expect("Owner [nobody]:")
        terminal.type("Ada\r")
        terminal.expect("Ada\n")
        self.assertEqual(terminal.rest()[0], 0)
        self.assertIn("owner=Ada\nsecret=sesame\n", self.read_text("opt/answers.txt"))
        self.assertNotIn("sesame", terminal.text())


@unittest.skipIf(WINDOWS, "Wine's console is a process of its own, which no signal to the program reaches")
class Signals(ConsoleTest):
    """Whatever ends, stops or continues a program, the terminal gets its settings back."""

    def bytes_read(self, terminal):
        counters = pathlib.Path(f"/proc/{terminal.process.pid}/io").read_text(encoding="ascii")
        return int(counters.split("rchar: ")[1].split()[0])

    def test_each_signal_that_ends_the_run_at_a_password_restores_the_terminal(self):
        self.build(ASK_SECRET)
        for event in (signal.SIGINT, signal.SIGTERM, signal.SIGHUP):
            terminal = self.start()
            terminal.expect("Secret:")
            self.assertFalse(terminal.has_echo())
            before = self.bytes_read(terminal)
            terminal.type("sesame")
            # What the terminal handed on after the settings came back would be shown.
            self.wait_until(lambda: self.bytes_read(terminal) >= before + len("sesame"))
            terminal.process.send_signal(event)
            self.assertEqual(self.assert_aborted(terminal), ABORTING + "\n\n")

    def test_a_quit_key_ends_the_program_as_the_system_does_and_restores_the_terminal(self):
        self.build(ASK_SECRET)
        terminal = self.start()
        terminal.expect("Secret:")
        terminal.type(QUIT)
        self.assert_aborted(terminal, -signal.SIGQUIT)

    def test_a_terminal_that_hangs_up_ends_the_run(self):
        self.build(ASK)
        terminal = self.start()
        terminal.expect("Where to")
        os.close(terminal.device)
        os.close(terminal.person)
        terminal.person, terminal.device = os.openpty()
        self.assertEqual(terminal.process.wait(60), 0)
        self.assertFalse(self.host("opt").exists())

    def test_a_stopped_program_leaves_the_terminal_to_the_shell_and_takes_it_back(self):
        self.build(ASK_SECRET)
        terminal = self.start_as_job()
        terminal.expect("Secret:")
        os.kill(os.tcgetpgrp(terminal.person), signal.SIGTSTP)
        terminal.expect("[stopped]\n")
        self.assertTrue(terminal.has_echo())
        terminal.type("visible\r")
        self.wait_until(lambda: not terminal.has_echo())
        terminal.type("sesame\r")
        terminal.expect("Owner [nobody]:")
        terminal.type("Ada\r")
        terminal.expect("Ada\n")
        terminal.expect("It worked.")
        code, _ = terminal.rest()
        self.assertEqual(code, 0)
        self.assertIn("[visible]", terminal.text())
        self.assertNotIn("sesame", terminal.text())
        self.assertIn("secret=sesame\n", self.read_text("opt/answers.txt"))
        self.assert_settings_restored(terminal)


MANY = [f"{number:03}-" + "long" * 58 + ".txt" for number in range(800)]
AFTER = ('<CopyProgress Special="AutoNext"/>', '<CopyProgress Special="AutoNext"/><After><Field Type="EditBox" '
         'Label="Anything else" x="1" y="1">OWNER</Field></After>')


class Interrupts(ConsoleTest):
    """A terminal buffers about 70 KB that nobody reads; a program that writes more waits. The programs of these tests
    print more than 200 KB, so they stop as long as the test doesn't read."""

    def interrupt_while_it_is_held(self, terminal):
        # Wine's console only reads keys while it isn't blocked itself.
        if WINDOWS:
            terminal.process.send_signal(signal.SIGINT)
        else:
            terminal.type(INTERRUPT)
        self.wait_until(lambda: self.has_taken_the_signal(terminal.process.pid))

    def has_taken_the_signal(self, process):
        """Whether the process has no pending signal and each of its threads waits for something."""
        for thread in os.listdir(f"/proc/{process}/task"):
            with open(f"/proc/{process}/task/{thread}/status", encoding="utf-8") as file:
                fields = dict(line.rstrip("\n").split(":\t", 1) for line in file)
            if fields["State"][0] != "S" or int(fields["ShdPnd"], 16) | int(fields["SigPnd"], 16):
                return False
        return True

    def build_many(self, *replacements):
        self.dir = self.native("opt/product")
        text = description(self.dir, '<FileSet Name="Many">' + "".join(
            f'<FN Dest="[DIR]/files">{name}</FN>' for name in MANY) + "</FileSet>", "<Welcome/>", VALUES)
        for old, new in replacements:
            text = text.replace(old, new)
        self.setup = self.build_package(text, {name: name for name in MANY})

    def assert_many_installed(self):
        tree = self.tree("opt/product")
        self.assertEqual({name: tree.get("files/" + name) for name in MANY}, {name: name.encode() for name in MANY})
        log = self.action_log("opt/product/un/install.log")
        self.assertEqual(len([line for line in log if line.startswith("FILE\tCREATE\t")]), len(MANY) + 1)

    def test_an_interrupt_at_a_prompt_ends_the_run(self):
        self.build(ASK)
        terminal = self.start()
        terminal.expect(f"Where to [{self.dir}]:")
        terminal.type(self.native("elsewhere") + "\r")
        terminal.expect("(no or yes): ")
        terminal.type(INTERRUPT)
        rest = self.assert_aborted(terminal)
        self.assertIn(ABORTING, rest)
        self.assertFalse(self.host("elsewhere").exists())

    def test_an_interrupt_in_the_middle_of_copying_is_refused(self):
        self.build_many(AFTER)
        terminal = self.start()
        terminal.expect("Create ")
        self.interrupt_while_it_is_held(terminal)
        terminal.expect(RUNNING)
        terminal.expect("Anything else [nobody]:")
        self.assert_many_installed()
        terminal.type("\r")
        code, rest = terminal.rest()
        self.assertEqual(code, 0, rest)
        self.assertIn("It worked.\n", rest)
        self.assertNotIn("Aborting", terminal.text())
        self.assertEqual([f.name for f in self.machine.temp.iterdir() if f.name.startswith("ori")], [])
        self.assert_settings_restored(terminal)

    def test_an_interrupt_after_the_copying_leaves_a_complete_product(self):
        text = description(self.dir, SETS, "<Welcome/>", VALUES).replace(*AFTER)
        self.setup = self.build_package(text, FILES)
        terminal = self.start()
        terminal.expect("Anything else [nobody]:")
        terminal.type(INTERRUPT)
        code, rest = terminal.rest()
        self.assertEqual(code, 0, rest)
        self.assertIn(ABORTING, rest)
        self.assertNotIn("It worked.", rest)
        self.assertTrue(self.host("opt/answers.txt").exists())
        self.assertEqual(len([x for x in self.action_log("opt/un/install.log") if x.startswith("FILE\t")]), 2)
        self.assert_settings_restored(terminal)

    def test_an_interrupt_while_the_installer_is_busy_is_refused(self):
        self.write("opt/product/files", "in the way")
        self.build_many(('Special="BadFinish;Finish"', 'Special="BadFinish;Finish;Busy"'))
        terminal = self.start()
        terminal.expect("Installation errors summary:\n")
        self.interrupt_while_it_is_held(terminal)
        terminal.expect(BUSY)
        code, rest = terminal.rest()
        self.assertEqual(code, 0, rest)
        self.assertNotIn("Aborting", terminal.text())
        self.assertEqual(self.read("opt/product/files"), b"in the way")
        self.assert_settings_restored(terminal)


NEXT_PAGE = "\nPress ENTER for the next page..."
LINES = [f"Line {number:02} of the notes" for number in range(1, 31)]
NOTES = "{\\rtf1\\ansi " + "\\par\n".join(LINES) + "\\par\n}"
TERMS = "# Terms\n\n" + "".join(f"Paragraph {number} of the terms has {number} words too many for a line of any "
                               "window that is used here, and so it is broken.\n\n" for number in range(1, 9))


def pages(text, windows):
    """What is shown before each question for the next page, and after the last one. `windows` are the rows of the
    window: at the start, after the first question, ...; the last number applies to the rest."""
    windows = list(windows)
    rows, lines, shown, start = windows.pop(0), 0, [], 0
    if rows < 3:
        return [text]
    for at, character in enumerate(text):
        lines += character == "\n"
        if character == "\n" and lines % (rows - 2) == 0:
            shown.append(text[start:at + 1])
            start, rows = at + 1, windows.pop(0) if windows else rows
            if rows < 3:
                return shown + [text[at:]]
    shown.append(text[start:])
    return shown + [""] if (len(text) - 1) % (rows - 2) != 0 else shown


class Documents(ConsoleTest):
    def build_document(self, document, attributes="", page="Read"):
        self.dir = self.native("opt")
        sets = SETS + '<FileSet Name="Texts" Condition="1==0"><FN Alias="Document">document</FN></FileSet>'
        element = f'<RichEditText x="1" y="1" w="9" h="9" {attributes}>Document</RichEditText>'
        self.build(f"<{page}>{element}</{page}>" if page == "Read" else page.format(element), sets,
                   {**FILES, "document": document})

    def open_document(self, columns, rows, *arguments):
        terminal = self.start(*arguments, columns=columns, rows=rows)
        self.assert_shown(terminal.expect("Press Enter to continue..."), BANNER + "Press Enter to continue...")
        terminal.type("\r")
        terminal.expect("\n")
        return terminal

    def assert_pages(self, terminal, expected, resize=None):
        for number, page in enumerate(expected[:-1]):
            shown = terminal.expect(NEXT_PAGE)
            self.assert_shown(shown, ("\n\n\n" if number else "") + page + NEXT_PAGE)
            if resize and number == 0:
                terminal.resize(*resize)
            terminal.type("\r")
            terminal.expect("\n")
        code, rest = terminal.rest()
        self.assertEqual(code, 0, rest)
        start = ("\n\n\n" if len(expected) > 1 else "") + expected[-1] + "Create "
        self.assert_shown(rest[:len(start)], start)
        self.assertTrue(self.host("opt/answers.txt").exists())
        self.assert_settings_restored(terminal)

    def assert_window(self, text, columns, rows):
        self.assert_pages(self.open_document(columns, rows), pages(text, [rows]))

    def test_a_rich_text_is_shown_page_by_page(self):
        self.build_document(NOTES)
        text = "\n".join(LINES) + "\n"
        self.assertEqual([page.count("\n") for page in pages(text, [24])[:2]], [22, 8])
        for columns, rows in ((80, 24), (40, 10), (80, 2), (132, 50), (80, 3)):
            self.assert_window(text, columns, rows)

    def test_markdown_is_wrapped_for_the_window_and_shown_page_by_page(self):
        self.build_document(TERMS, 'Format="TandrelMarkdown"')
        for columns, rows in ((80, 24), (40, 10), (132, 50)):
            text = self.packager("text", self.native("stage/root/document"), "--width", columns).out
            widths = [len(line) for line in text.split("\n")]
            self.assertLessEqual(max(widths), columns - 2)
            self.assertGreater(max(widths), min(columns - 2, 110) - 15)
            self.assertEqual(text.split().count("broken."), 8)
            self.assert_window(text, columns, rows)

    def test_the_closing_pause_depends_on_the_count_of_bytes(self):
        for line in ("a" * 22, "a" * 21):  # 22 bytes and the line feed fill pages of 22 lines exactly
            self.build_document("{\\rtf1 " + line + "\\par}")
            expected = [line + "\n"] if len(line) == 22 else [line + "\n", ""]
            self.assertEqual(pages(line + "\n", [24]), expected)
            self.assert_pages(self.open_document(80, 24), expected)

    @unittest.skipIf(WINDOWS, "Wine's console keeps the size that its window had at the start")
    def test_a_window_that_changes_changes_the_pages(self):
        self.build_document(NOTES)
        text = "\n".join(LINES) + "\n"
        for first, then in ((10, 24), (24, 10), (10, 2)):
            terminal = self.open_document(80, first)
            self.assert_pages(terminal, pages(text, [first, then]), resize=(80, then))

    def test_one_key_goes_back_and_one_to_the_end(self):
        self.build_document(NOTES)
        terminal = self.open_document(80, 10)
        for key, start in (("\r", "Line 01"), ("b", "Line 09"), ("e", "Line 01")):
            terminal.expect(start)
            terminal.expect(NEXT_PAGE + " (b goes back, e to the end)")
            terminal.type(key)
        terminal.expect(LINES[-1])
        code, rest = terminal.rest()
        self.assertEqual(code, 0, rest)
        self.assertNotIn(NEXT_PAGE, rest)

    def test_an_interrupt_in_the_middle_of_a_document_ends_the_run(self):
        self.build_document(NOTES)
        terminal = self.open_document(80, 10)
        terminal.expect(NEXT_PAGE)
        terminal.type(INTERRUPT)
        rest = self.assert_aborted(terminal)
        self.assertIn(ABORTING, rest)
        self.assertNotIn("Line 09", terminal.text())

    def test_an_interrupt_before_a_document_ends_the_run(self):
        self.build_document(NOTES)
        terminal = self.start()
        terminal.expect("Press Enter to continue...")
        terminal.type(INTERRUPT)
        self.assertIn(ABORTING, self.assert_aborted(terminal))
        self.assertNotIn("Line 01", terminal.text())

    def test_an_unattended_run_does_not_stop_at_any_page(self):
        self.build_document(NOTES)
        terminal = self.open_terminal(self.setup, "-auto", rows=10)
        code, rest = terminal.rest()
        self.assertEqual(code, 0, rest)
        self.assertNotIn("Press", rest)
        self.assertEqual([line for line in rest.split("\n") if line.startswith("Line ")], LINES)

    def test_a_quiet_run_shows_no_document_and_does_not_stop(self):
        self.build_document(NOTES)
        terminal = self.start("-quiet=1", rows=10)
        code, rest = terminal.rest()
        self.assertEqual((code, rest.strip()), (0, ""))
        self.assertTrue(self.host("opt/answers.txt").exists())

    def test_the_pages_of_a_quiet_run_never_stop(self):
        # A page that waits for a program is shown even in a quiet run.
        ask = '<Ask><Field Type="EditBox" Label="Anything" x="1" y="1">NOTE</Field></Ask>'
        self.build_package(description(self.dir, SETS, ask).replace("Test Product", "Other"), FILES, "other" + EXE)
        shutil.rmtree(self.host("stage"))
        self.build_document(NOTES, page="<RunningApps><TestApp>other" + EXE + "</TestApp>{}</RunningApps>")
        self.open_terminal("other" + EXE, "-gui=0").expect("Anything:")
        terminal = self.start("-quiet=1", rows=10)
        terminal.expect("Press Enter to continue...")
        terminal.type("\r")
        code, rest = terminal.rest()
        self.assertEqual(code, 0, rest)
        held = 'Nothing was installed: the run was held on the page "RunningApps"\n'
        self.assert_shown(rest, "\n" + "".join(line + "\n" for line in LINES) + held)
        self.assertFalse(self.host("opt").exists())


if __name__ == "__main__":
    main()
