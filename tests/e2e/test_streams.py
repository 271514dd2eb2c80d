"""Standard streams that aren't terminals, are closed, or close early: nothing hangs, no output ends up in a file."""

import os
import shutil
import subprocess

from descriptions import description
from harness import WINDOWS, EndToEndTest, main

PAGES = """
<Welcome><Text x="1" y="1">Welcome to the test.</Text></Welcome>
<Ask>
 <Field Type="EditBox" Label="Owner" x="1" y="1">OWNER</Field>
 <Field Type="Password" Label="Secret" x="1" y="1">SECRET</Field>
 <Field Type="CheckBox" Label="Extra" x="1" y="1">EXTRA</Field>
 <Field Type="RadioButtons" Label="Kind" Content="a;b" x="1" y="1">KIND</Field>
</Ask>
"""
VALUES = """
<Value Name="OWNER" DataType="value">nobody</Value>
<Value Name="SECRET" DataType="value">sesame</Value>
<Value Name="EXTRA" DataType="value">1</Value>
<Value Name="KIND" DataType="value">1</Value>
"""
SETS = '<FileSet Name="A"><FN Dest="[DIR]" ExpandVarsInFile="1">a.txt</FN><FN Dest="[DIR]">b.txt</FN></FileSet>'
FILES = {"a.txt": "[OWNER] [SECRET] [EXTRA] [KIND]\n", "b.txt": "b" * 5000}
# If two streams are closed, Wine replaces them by connections of its own.
ALL_CLOSED = ">&- 2>&-" if WINDOWS else "<&- >&- 2>&-"
ENDED = "\nThe input has ended. Aborting installation...\n"


class Streams(EndToEndTest):
    def setUp(self):
        super().setUp()
        self.setup = self.build_package(description(self.native("opt"), SETS, PAGES, VALUES), FILES)

    def start(self, *arguments, redirections="", **streams):
        """Starts the installer from a shell that redirects its streams; the other streams are open pipes."""
        command = ["bash", "-c", 'exec "$@" ' + redirections, "bash"]
        command += self.machine.direct_command(self.host(self.setup)) + list(arguments)
        pipe = subprocess.PIPE
        process = subprocess.Popen(command, cwd=self.machine.root, env=self.machine.environment({}),
                                   **{"stdin": pipe, "stdout": pipe, "stderr": pipe, **streams})
        self.addCleanup(self.end, process)
        return process

    def end(self, process):
        if process.poll() is None:
            process.kill()
            process.wait()
        for stream in (process.stdin, process.stdout, process.stderr):
            if stream is not None:
                stream.close()

    def output(self, process):
        """Waits for the end of a program that gets no more input, although its input stays open."""
        self.assertEqual(process.wait(60), 0)
        return process.stdout.read().decode("utf-8", "surrogateescape").replace("\r\n", "\n") if process.stdout else ""

    def nobody_reads(self):
        reader, writer = os.pipe()
        os.close(reader)
        self.addCleanup(os.close, writer)
        return writer

    def assert_installed(self, context=None):
        tree = self.tree("opt")
        self.assertEqual(set(tree), {"a.txt", "b.txt", "un/install.xml", "un/install.log", "un/backup.bin"}, context)
        self.assertEqual(tree["a.txt"], b"nobody sesame 1 1\n", context)
        self.assertEqual(tree["b.txt"], FILES["b.txt"].encode(), context)
        self.assertEqual(len([x for x in self.action_log("opt/un/install.log") if x.startswith("FILE\t")]), 3, context)

    # --- unattended runs

    def test_an_unattended_run_needs_no_streams(self):
        for redirections in ("", "<&-", "</dev/null", ">&-", "2>&-", ">/dev/full", ALL_CLOSED):
            self.output(self.start("-auto", redirections=redirections))
            self.assert_installed(redirections)
            shutil.rmtree(self.host("opt"))

    def test_an_unattended_run_continues_when_nobody_reads_its_output(self):
        self.output(self.start("-auto", stdout=self.nobody_reads(), stderr=self.nobody_reads()))
        self.assert_installed()

    def test_a_run_from_an_answers_file_needs_no_streams(self):
        self.write("answers.xml", '<DefValues><Value Name="OWNER" DataType="value">nobody</Value></DefValues>')
        for redirections in ("", ALL_CLOSED):
            self.output(self.start("-configFile=" + self.native("answers.xml"), redirections=redirections))
            self.assert_installed(redirections)
            shutil.rmtree(self.host("opt"))

    def test_no_output_ends_up_in_a_file_that_got_the_number_of_a_closed_stream(self):
        self.output(self.start("-auto", "-debug=1", redirections=ALL_CLOSED))
        self.assert_installed()
        log = (self.machine.temp / "installer_debug.log").read_text("utf-8")
        self.assertIn("Installation finished (res=0)", log)
        for line in log.splitlines():
            self.assertRegex(line, r"^ *\d+:  \[")

    # --- manual runs

    def test_an_input_that_is_closed_or_ends_at_a_prompt_ends_the_run_with_a_message(self):
        for redirections in ("<&-", "</dev/null"):
            printed = self.output(self.start("-gui=0", redirections=redirections))
            self.assertIn("Owner [nobody]:" + ENDED, printed, redirections)
            self.assertNotIn("It worked.", printed)
            self.assertFalse(self.host("opt").exists())

    def test_an_input_that_ends_at_any_later_prompt_does_the_same(self):
        for answers, prompt in (("Ada\n", "Secret [sesame]:"), ("Ada\nx\n", "Extra (no or [yes]): "),
                                ("Ada\nx\nno\n", "Enter your choice [1-2, default is 2]: ")):
            process = self.start("-gui=0")
            process.stdin.write(answers.encode())
            process.stdin.close()
            printed = self.output(process)
            self.assertIn(prompt, printed)
            self.assertIn(ENDED, printed[printed.index(prompt):])
            self.assertFalse(self.host("opt").exists())

    def test_answers_come_from_a_pipe_that_stays_open(self):
        process = self.start("-gui=0")
        process.stdin.write(b"nobody\r\nsesame\r\nyes\r\n2\r\n")
        process.stdin.flush()
        self.assertIn("It worked.\n", self.output(process))
        self.assert_installed()

    def test_a_question_that_reaches_nobody_ends_the_run(self):
        for options in ({"stdout": self.nobody_reads()}, {"redirections": ">&-"}, {"redirections": ">/dev/full"}):
            self.output(self.start("-gui=0", **options))
            self.assertFalse(self.host("opt").exists(), options)


if __name__ == "__main__":
    main()
