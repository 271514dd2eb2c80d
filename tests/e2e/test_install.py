"""Installations: unattended, manual, from an answers file, from a separate binary file."""

import hashlib
import os
import signal
import struct
import subprocess
import unittest

from descriptions import description
from harness import EXE, WINDOWS, EndToEndTest, main

SETS = """
<FileSet Name="Core">
 <FN Dest="[DIR]/bin" Executable="1">bin/tool.sh</FN>
 <FN Dest="[DIR]" BackupExisting="1">readme.txt</FN>
 <FN Dest="[DIR]/conf" ExpandVarsInFile="1">settings.ini</FN>
 <FN Dest="[DIR]/conf" Condition="[EXTRA]==1">extra.txt</FN>
</FileSet>
<FileSet Name="Optional" Condition="[OPTIONAL]==1"><FN Dest="[DIR]/opt">optional.txt</FN></FileSet>
"""
PAGES = """
<Welcome><Text x="1" y="1">Welcome to the test.</Text></Welcome>
<Ask>
 <Field Type="Directory" Label="Where to" x="1" y="1">DIR</Field>
 <Field Type="CheckBox" Label="Optional files" x="1" y="1">OPTIONAL</Field>
 <Field Type="RadioButtons" Label="Kind" Content="small;large" Description="one;two" x="1" y="1">KIND</Field>
 <Field Type="EditBox" Label="Owner" x="1" y="1">OWNER</Field>
</Ask>
"""
VALUES = """
<Value Name="EXTRA" DataType="value">0</Value>
<Value Name="OPTIONAL" DataType="value">0</Value>
<Value Name="KIND" DataType="value">0</Value>
<Value Name="OWNER" DataType="value">nobody</Value>
"""
FILES = {
    "bin/tool.sh": "#!/bin/sh\necho hello\n",
    "readme.txt": "new readme\n",
    "settings.ini": "owner=[OWNER]\nkind=[KIND]\n[section]\n",
    "extra.txt": "extra\n",
    "optional.txt": "optional\n",
}
BANNER = "*******************************\n* Tandrel Group installer     *\n*******************************\n"


def archive_entries(data):
    """Reads a backup archive: (name, checksum, content) of each entry."""
    banner = b"Tandrel Software installer backup file.\n\0"
    assert data.startswith(banner), data[:50]
    at, entries = len(banner), []
    while data[at] != 0:
        end = data.index(b"\0", at)
        size, check = struct.unpack_from("<qI", data, end + 1)
        entries.append((data[at:end].decode(), check, data[end + 13:end + 13 + size]))
        at = end + 13 + size
    assert at == len(data) - 1, "bytes after the end mark"
    return entries


def folded(content):
    value = len(content)
    whole = len(content) // 4 * 4
    for i in range(0, whole, 4):
        value ^= struct.unpack_from("<I", content, i)[0]
    for byte in content[whole:]:
        value ^= byte
    return value


class Install(EndToEndTest):
    def setUp(self):
        super().setUp()
        self.dir = self.native("opt/product")
        self.setup = self.build_package(description(self.dir, SETS, PAGES, VALUES), FILES)

    def assert_installed(self, owner="nobody", kind="0", optional=False):
        tree = self.tree("opt/product")
        expected = {"bin/tool.sh", "readme.txt", "conf/settings.ini", "un/install.xml", "un/install.log",
                    "un/backup.bin"} | ({"opt/optional.txt"} if optional else set())
        self.assertEqual(set(tree), expected)
        self.assertEqual(tree["bin/tool.sh"], FILES["bin/tool.sh"].encode())
        self.assertEqual(tree["readme.txt"], b"new readme\n")
        self.assertIn(f"owner={owner}\nkind={kind}\n".encode(), tree["conf/settings.ini"])

    def path(self, name):
        """A path as the installer writes it: the normalised directory, followed by what the description says."""
        directory, separator, base = name.rpartition("/")
        return self.dir.replace("/", "\\") + (separator + directory if directory else "") + "\\" + base

    def test_an_unattended_run_installs_the_files(self):
        result = self.run_program(self.setup, "-auto")
        self.assertEqual(result.code, 0, result)
        self.assertTrue(result.out.startswith(BANNER), result)
        self.assertIn("Create " + self.on_screen(self.path("bin/tool.sh")) + "\n", result.out)
        self.assertIn("The installation was successful.", result.out)
        self.assertIn("It worked.\n", result.out)
        self.assertTrue(result.out.endswith("Automatic installation was successful!\n"), result)
        self.assert_installed()

    def test_programs_are_executable_on_systems_that_have_such_a_mark(self):
        self.run_program(self.setup, "-auto")
        if EXE == "":
            self.assertTrue(self.host("opt/product/bin/tool.sh").stat().st_mode & 0o111)
            self.assertFalse(self.host("opt/product/readme.txt").stat().st_mode & 0o111)

    def test_the_action_log_is_exact(self):
        self.run_program(self.setup, "-auto", "-VARIABLE_OPTIONAL=1")
        lines = self.action_log("opt/product/un/install.log")
        self.assertEqual(lines[0], self.dir.replace("/", "\\") + "/un/install.xml")
        self.assertEqual(lines[1], self.dir.replace("/", "\\") + "/un/backup.bin")
        count = int(lines[2].split("\t")[1])
        variables = lines[3:3 + count]
        self.assertEqual(lines[2], f"NUMVARS\t{count}")
        self.assertEqual([v.split("\t")[:2] for v in variables],
                         [["VAR", n] for n in ("INSTALL_ERROR", "DIR", "EXTRA", "OPTIONAL", "KIND", "OWNER")])
        self.assertIn("VAR\tOPTIONAL\t1", variables)
        # Within a set the last file is installed first.
        self.assertEqual(lines[3 + count:], [
            "DIR\t3\t" + self.path("un/"),
            "FILE\tCREATE\t" + self.path("un/install.xml"),
            "DIR\t1\t" + self.path("conf/"),
            "FILE\tCREATE\t" + self.path("conf/settings.ini"),
            "FILE\tOVER\t" + self.path("readme.txt"),
            "DIR\t1\t" + self.path("bin/"),
            "FILE\tCREATE\t" + self.path("bin/tool.sh"),
            "DIR\t1\t" + self.path("opt/"),
            "FILE\tCREATE\t" + self.path("opt/optional.txt"),
        ])

    def test_no_temporary_file_remains(self):
        self.run_program(self.setup, "-auto")
        self.assertEqual([f.name for f in self.machine.temp.iterdir() if f.name.startswith("ori")], [])

    def test_a_second_run_changes_nothing_on_the_disk(self):
        self.run_program(self.setup, "-auto")
        names = ["bin/tool.sh", "readme.txt", "un/install.xml"]
        before = [self.host("opt/product/" + n).stat() for n in names]
        log = self.read("opt/product/un/install.log")
        result = self.run_program(self.setup, "-auto")
        self.assertEqual(result.code, 0, result)
        self.assertNotIn("Overwrite " + self.on_screen(self.path("readme.txt")), result.out)
        after = [self.host("opt/product/" + n).stat() for n in names]
        self.assertEqual([(s.st_ino, s.st_mtime_ns) for s in before], [(s.st_ino, s.st_mtime_ns) for s in after])
        self.assertEqual(archive_entries(self.read("opt/product/un/backup.bin")), [])
        # The records of the first run are carried over, so that one uninstallation undoes both.
        lines = self.read("opt/product/un/install.log").decode().split("\r\n")
        self.assertEqual(sorted(lines), sorted(log.decode().split("\r\n")))

    def test_a_changed_file_is_backed_up_before_it_is_replaced(self):
        self.write("opt/product/readme.txt", "the user's own words")
        result = self.run_program(self.setup, "-auto")
        path = self.path("readme.txt")
        self.assertIn("Back up " + self.on_screen(path) + "\n", result.out)
        self.assertIn("Overwrite " + self.on_screen(path) + "\n", result.out)
        self.assertEqual(archive_entries(self.read("opt/product/un/backup.bin")),
                         [(path, folded(b"new readme\n"), b"the user's own words")])
        self.assert_installed()

    def test_a_manual_run_asks_its_questions_and_uses_the_answers(self):
        other = self.native("elsewhere")
        result = self.run_program(self.setup, "-gui=0", stdin=f"{other}\nyes\n2\nAda\n")
        self.assertEqual(result.code, 0, result)
        self.assertTrue(result.out.startswith(
            BANNER + "Welcome to the test.\n"
            f"Where to [{self.dir}]:Optional files ([no] or yes): Kind\n  1) small one\n  2) large two\n"
            "Enter your choice [1-2, default is 1]: Owner [nobody]:"), result)
        self.assertEqual(self.read_text("elsewhere/conf/settings.ini"), "owner=Ada\nkind=1\n[section]\n")
        self.assertTrue(self.host("elsewhere/opt/optional.txt").exists())

    def test_empty_answers_take_the_defaults(self):
        result = self.run_program(self.setup, "-gui=0", stdin="\n\n\n\n")
        self.assertEqual(result.code, 0, result)
        self.assert_installed()

    def test_an_input_that_ends_at_a_prompt_ends_the_run(self):
        result = self.run_program(self.setup, "-gui=0", stdin="", timeout=60)
        self.assertEqual(result.code, 0, result)
        self.assertFalse(self.host("opt/product").exists())
        self.assertNotIn("It worked.", result.out)

    @unittest.skipIf(WINDOWS, "a signal reaches only the wrapper that starts Wine")
    def test_an_interrupt_at_a_prompt_ends_the_run_at_once(self):
        for event in (signal.SIGINT, signal.SIGTERM, signal.SIGHUP):
            process = subprocess.Popen([self.host(self.setup), "-gui=0"], stdin=subprocess.PIPE, stdout=subprocess.PIPE,
                                       env=self.machine.environment({}))
            printed = b""
            while b"Where to [" not in printed:
                printed += os.read(process.stdout.fileno(), 1000)
            process.send_signal(event)
            # The input stays open, because its end would be another reason to stop.
            printed += process.stdout.read()
            process.wait(timeout=60)
            process.stdin.close()
            process.stdout.close()
            self.assertEqual(process.returncode, 0, printed)
            self.assertIn(b"\n[CTRL-C] Aborting installation...\n", printed)
            self.assertNotIn(b"It worked.", printed)
        self.assertFalse(self.host("opt").exists())

    def test_an_answers_file_runs_silently(self):
        self.write("answers.xml", '<DefValues><Value Name="OWNER" DataType="value">Grace</Value>'
                                  '<Value Name="OPTIONAL" DataType="value">1</Value></DefValues>')
        result = self.run_program(self.setup, "-configFile=" + self.native("answers.xml"))
        self.assertEqual(result.code, 0, result)
        self.assertNotIn("Create ", result.out)
        self.assert_installed(owner="Grace", optional=True)

    def test_a_missing_answers_file_is_reported_and_nothing_is_installed(self):
        path = self.native("nowhere.xml")
        result = self.run_program(self.setup, "-configFile=" + path)
        self.assertEqual(result.code, 0, result)
        self.assertIn(f'The file "{path}" does not exist! Please specify existing file!\n', result.out)
        self.assertFalse(self.host("opt").exists())

    def test_an_answers_file_without_values_is_reported_and_the_user_is_asked(self):
        self.write("answers.xml", "<Other/>")
        path = self.native("answers.xml")
        result = self.run_program(self.setup, "-configFile=" + path, "-quiet=0", stdin="\n\n\n\n")
        self.assertIn(f'The file "{path}" is not a propper XML installation config file. '
                      "The installation can not continue!\n", result.out)

    def test_a_separate_binary_file_installs_the_same(self):
        self.build_package(description(self.dir, SETS, PAGES, VALUES), FILES, "payload.bin", ("--bin",))
        result = self.run_program("installer" + EXE, "-bin=" + self.native("payload.bin"), "-auto")
        self.assertEqual(result.code, 0, result)
        self.assert_installed()

    def test_variables_of_the_command_line_override_defaults(self):
        self.run_program(self.setup, "-auto", "-VARIABLE_OWNER=Linus", "-variable_kind=1")
        self.assert_installed(owner="Linus", kind="1")

    def test_the_debug_log_describes_the_steps(self):
        result = self.run_program(self.setup, "-auto", "-debug=1")
        line = [x for x in result.out.split("\n") if x.endswith("installer_debug.log")]
        self.assertEqual(len(line), 1, result)
        log = (self.machine.temp / "installer_debug.log").read_text("utf-8")
        position = -1
        for text in ("Installer version revision: ", "Parsing command line arguments", "Installation started",
                 "Checksum successfuly verified", "Decompressing installation file", "Parsing installation file",
                 "Getting product description", "Getting file sets", "Getting UI dialogs",
                 "Getting control variables names", "Checking for previous and legacy installations",
                 "Initializing default values", "Starting installation UI", "Ending installation UI",
                 "Installation finished (res=0)"):
            found = log.find(text)
            self.assertGreater(found, position, text + "\n" + log)
            position = found


class Package(EndToEndTest):
    def test_the_same_input_gives_the_same_bytes(self):
        text = description("/x", SETS)
        self.build_package(text, FILES, "a.bin", ("--bin", "--stripes", "4", "--level", "9"))
        first = self.read("a.bin")
        for threads in ("1", "7"):
            self.build_allowing("--description", self.native("stage/install.xml"), "--root",
                          self.native("stage/root"), "--output", self.native("b.bin"), "--bin", "--stripes", "4",
                          env={"ORMEL_NUM_THREADS": threads})
            self.assertEqual(hashlib.md5(self.read("b.bin")).hexdigest(), hashlib.md5(first).hexdigest())


if __name__ == "__main__":
    main()
