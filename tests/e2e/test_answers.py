"""A manual run leaves an answers file, and the file repeats the run on a fresh machine."""

import shutil
import xml.etree.ElementTree

from descriptions import description
from harness import EXE, WINDOWS, EndToEndTest, main

NAMES = ("DIR", "OPTIONAL", "KIND", "OWNER", "NOTE", "SECRET", "MODE", "PLACE", "RUNS", "OTHER", "SETTING", "FOUND",
         "DERIVED", "LATE", "UNLOGGED", "LOCAL", "PRIVATE")
EXCLUSIONS = """
<InstallerExcludeVariables>
 <Variable ExcludeFrom="log">UNLOGGED</Variable>
 <Variable ExcludeFrom="config">LOCAL</Variable>
 <Variable>PRIVATE</Variable>
</InstallerExcludeVariables>
"""
VALUES = """
<Value Name="OPTIONAL" DataType="value">0</Value>
<Value Name="KIND" DataType="value">0</Value>
<Value Name="OWNER" DataType="value">nobody</Value>
<Value Name="NOTE" DataType="value"></Value>
<Value Name="SECRET" DataType="value"></Value>
<Value Name="MODE" DataType="cmdlinearg">slow</Value>
<Value Name="PLACE" DataType="envvar" Default="nowhere">E2E_PLACE</Value>
<Value Name="RUNS" DataType="checkproc">no-such-program</Value>
<Value Name="OTHER" DataType="install_app" Default="none">No Such Product</Value>
<Value Name="SETTING" DataType="registry" RegPlace="HKEY_LOCAL_MACHINE" RegKey="SOFTWARE/No/Such" Default="preset">Value</Value>
<Value Name="FOUND" DataType="checkfile" Default="missing">{present}</Value>
<Value Name="DERIVED" DataType="value" Recalculate="1">$DIR/derived</Value>
<Value Name="LATE" DataType="value">early</Value>
<Value Name="UNLOGGED" DataType="value">start</Value>
<Value Name="LOCAL" DataType="envvar" Default="none">E2E_LOCAL</Value>
<Value Name="PRIVATE" DataType="value">hidden</Value>
"""
PAGES = """
<Ask>
 <Field Type="Directory" Label="Where to" x="1" y="1">DIR</Field>
 <Field Type="CheckBox" Label="Optional files" x="1" y="1">OPTIONAL</Field>
 <Field Type="RadioButtons" Label="Kind" Content="small;large" Description="one;two" x="1" y="1">KIND</Field>
 <Field Type="EditBox" Label="Owner" x="1" y="1">OWNER</Field>
 <Field Type="EditBox" Label="Note" x="1" y="1">NOTE</Field>
 <Field Type="Password" Label="Password" x="1" y="1">SECRET</Field>
 <Field Type="EditBox" Label="Unlogged" x="1" y="1">UNLOGGED</Field>
 <Field Type="EditBox" Label="Private" x="1" y="1">PRIVATE</Field>
</Ask>
"""
# Variables set after the copying belong to the log and to the answers, too.
LATE = """
<PostInstall>
 <Trigger EvaluateOn="Start" Type="VarChange" Variable="LATE" Value="[KIND] late"/>
</PostInstall>
"""
SETS = """
<FileSet Name="Core">
 <FN Dest="[DIR]">readme.txt</FN>
 <FN Dest="[DIR]/conf" ExpandVarsInFile="1">settings.ini</FN>
</FileSet>
<FileSet Name="Optional" Condition="[OPTIONAL]==1"><FN Dest="[DIR]/opt">optional.txt</FN></FileSet>
"""
FILES = {
    "readme.txt": "readme\n",
    "settings.ini": "".join(f"{name}=[{name}]\n" for name in NAMES),
    "optional.txt": "optional\n",
}
OWNER = "Zoë <zoe@söhne.example> & \"Söhne\" 'AG' €"
SECRET = "p<w>&'\"ß"
LOG = "elsewhere/un/install.log"
CREATED = "Successfully created configuration file:"
REFUSED = "The installer could not create configuration file!"


class Answers(EndToEndTest):
    def setUp(self):
        super().setUp()
        self.write("present.txt", "here")
        values = VALUES.format(present=self.native("present.txt"))
        self.setup = self.build_package(
            description(self.native("opt/product"), SETS, PAGES, values, LATE, EXCLUSIONS), FILES)

    def run_by_hand(self, *arguments, local="first", directory="elsewhere"):
        answers = [self.native(directory), "yes", "2", OWNER, "", SECRET, "only here", "mine"]
        return self.run_program(self.setup, "-gui=0", *arguments, stdin="\n".join(answers) + "\n",
                                env={"E2E_PLACE": "here & there", "E2E_LOCAL": local})

    def run_from(self, answers, *arguments, local="first"):
        return self.run_program(self.setup, "-configFile=" + self.native(answers), *arguments,
                                env={"E2E_PLACE": "elsewhere", "E2E_LOCAL": local})

    def forget(self):
        """Removes everything that the previous run left except the answers, so that the machine is fresh again."""
        for name in ("elsewhere", "opt", "state"):
            shutil.rmtree(self.host(name), ignore_errors=True)
        if not WINDOWS:
            self.host("state").mkdir()

    def values(self, path="config.xml"):
        """The variables of an answers file, as any reader of XML sees them."""
        root = xml.etree.ElementTree.fromstring(self.read(path).decode("utf-8"))
        self.assertEqual(root.tag, "DefValues")
        for value in root:
            kind = ({"Name", "DataType"}, "value") if value.get("DataType") == "value" else (
                {"Name", "DataType", "Default"}, "envvar")
            self.assertEqual((value.tag, set(value.attrib), value.get("DataType")), ("Value", *kind))
        return {value.get("Name"): value.get("Default") or value.text or "" for value in root}

    def settings(self):
        text = self.read("elsewhere/conf/settings.ini").decode("utf-8")
        return dict(line.split("=", 1) for line in text.splitlines())

    def test_a_manual_run_leaves_its_answers_and_says_how_to_use_them(self):
        result = self.run_by_hand("-MODE=fast")
        self.assertEqual(result.code, 0, result)
        self.assertIn("It worked.\n", result.out)
        path = self.native("config.xml")
        self.assertIn(f'{CREATED}\n\t"{path}"\n'
                      "You can use the file to automatically install the same product on different machine with the "
                      "same settings, by running the installer with the following arguments:\n"
                      f' -configFile="{path}" {{-ignoreErrors=1}}\n', result.out)
        self.assertNotIn(SECRET, result.out)
        directory = self.native("elsewhere").replace("/", "\\")
        values = self.values()
        # What was detected on this machine, and what follows another variable, is no answer.
        self.assertEqual(list(values.items()), [
            ("DIR", directory), ("OPTIONAL", "1"), ("KIND", "1"), ("OWNER", OWNER), ("NOTE", ""), ("SECRET", SECRET),
            ("MODE", "fast"), ("LATE", "1 late"), ("UNLOGGED", "only here")])
        self.assertEqual([p.name for p in self.machine.root.glob("config.xml*")], ["config.xml"])
        if not WINDOWS:
            self.assertEqual(self.host("config.xml").stat().st_mode & 0o777, 0o600)

    def test_the_answers_repeat_the_run_on_a_fresh_machine(self):
        self.assertEqual(self.run_by_hand("-MODE=fast").code, 0)
        tree = self.tree("elsewhere")
        self.assertEqual(set(tree), {"readme.txt", "conf/settings.ini", "opt/optional.txt", "un/install.xml",
                                     "un/install.log", "un/backup.bin"})
        lines = self.action_log(LOG)
        settings = self.settings()
        self.assertEqual((settings["OWNER"], settings["SECRET"], settings["PRIVATE"], settings["LOCAL"]),
                         (OWNER, SECRET, "mine", "first"))
        self.assertIn("VAR\tLATE\t1 late", lines)
        self.assertIn("VAR\tSECRET\t" + SECRET, lines)
        self.assertIn("VAR\tLOCAL\tfirst", lines)
        self.assertFalse([x for x in lines if x.startswith(("VAR\tUNLOGGED", "VAR\tPRIVATE"))])

        self.host("config.xml").rename(self.host("answers.xml"))
        self.forget()
        result = self.run_from("answers.xml", local="second")
        self.assertEqual(result.code, 0, result)
        self.assertNotIn(CREATED, result.out)
        self.assertFalse(self.host("config.xml").exists())

        # What isn't in the answers is read from the machine again.
        again = {"VAR\tLOCAL\tfirst": "VAR\tLOCAL\tsecond", "VAR\tPLACE\there & there": "VAR\tPLACE\telsewhere"}
        self.assertEqual(self.action_log(LOG), [again.get(x, x) for x in lines])
        repeated = self.settings()
        # The first run sets LATE after the copying; the second knows it from the start.
        self.assertEqual(repeated, {**settings, "LOCAL": "second", "PLACE": "elsewhere", "PRIVATE": "hidden",
                                    "LATE": "1 late"})
        changing = ("conf/settings.ini", "un/install.log")
        self.assertEqual({k: v for k, v in self.tree("elsewhere").items() if k not in changing},
                         {k: v for k, v in tree.items() if k not in changing})

    def test_an_answer_that_looks_like_a_reference_is_repeated(self):
        self.assertEqual(self.run_by_hand(directory="else$where").code, 0)
        tree = self.tree("else$where")
        self.assertIn("readme.txt", tree)
        shutil.rmtree(self.host("else$where"))
        result = self.run_from("config.xml")
        self.assertEqual((result.code, result.err), (0, ""), result)
        self.assertEqual(set(self.tree("else$where")), set(tree))
        settings = self.read_text("else$where/conf/settings.ini")
        self.assertIn("DIR=" + self.native("else$where") + "\n", settings)

    def test_a_variable_follows_answers_that_somebody_edited(self):
        self.assertEqual(self.run_by_hand().code, 0)
        first, second = (self.native(name).replace("/", "\\") for name in ("elsewhere", "other"))
        self.write("answers.xml", self.read_text("config.xml").replace(first, second))
        result = self.run_from("answers.xml")
        self.assertEqual(result.code, 0, result)
        self.assertIn(f"DERIVED={self.on_screen(second)}/derived\n", self.read_text("other/conf/settings.ini"))

    def test_a_run_from_answers_leaves_none_even_with_normal_output(self):
        self.assertEqual(self.run_by_hand().code, 0)
        self.host("config.xml").rename(self.host("answers.xml"))
        answers = self.read("answers.xml")
        result = self.run_from("answers.xml", "-quiet=0")
        self.assertIn("It worked.\n", result.out)
        self.assertNotIn(CREATED, result.out)
        self.assertFalse(self.host("config.xml").exists())
        self.assertEqual(self.read("answers.xml"), answers)

    def test_the_same_machine_gives_the_same_bytes(self):
        self.assertEqual(self.run_by_hand().code, 0)
        first = self.read("config.xml")
        log = self.read(LOG)
        self.forget()
        self.assertEqual(self.run_by_hand().code, 0)
        self.assertEqual(self.read("config.xml"), first)
        self.assertEqual(self.read(LOG), log)

    def test_an_unattended_run_leaves_no_answers(self):
        for arguments in (("-auto",), ("-auto=0", "-quiet=0"), ("-gui=1", "-auto")):
            result = self.run_program(self.setup, *arguments)
            self.assertIn("It worked.\n", result.out)
            self.assertNotIn(CREATED, result.out)
            self.assertNotIn(REFUSED, result.out)
            self.assertFalse(self.host("config.xml").exists(), arguments)
            self.assertIn("VAR\tLATE\t0 late", self.action_log("opt/product/un/install.log"))

    def test_a_log_that_cannot_be_updated_fails_the_run(self):
        text = description(self.native("opt/product"), SETS, late=LATE,
                           values='<Value Name="OPTIONAL" DataType="value">0</Value>')
        start, end = text.index("<InstallLogFile>"), text.index("<InstallBackupFile>")
        setup = self.build_package(text[:start] + text[end:], FILES, "nolog" + EXE)
        for arguments, stdin in ((("-auto",), ""), (("-gui=0",), "\n")):
            result = self.run_program(setup, *arguments, stdin=stdin)
            self.assertEqual(result.code, 0, result)
            self.assertIn("ERROR: Obtaining install actionlog filename\n", result.out)
            self.assertNotIn("It worked.", result.out)
            self.assertNotIn(CREATED, result.out)
            self.assertNotIn("successful!\n", result.out)
            self.assertFalse(self.host("config.xml").exists())

    def test_a_quiet_manual_run_leaves_answers_without_a_message(self):
        result = self.run_by_hand("-quiet=1")
        self.assertEqual(result.code, 0, result)
        self.assertNotIn(CREATED, result.out)
        self.assertEqual(self.values()["OWNER"], OWNER)

    def test_the_file_of_another_program_stays_and_is_reported(self):
        self.write("config.xml", "<configuration/>")
        result = self.run_by_hand()
        self.assertEqual(result.code, 0, result)
        self.assertIn(REFUSED + "\n", result.out)
        self.assertNotIn(CREATED, result.out)
        self.assertIn("It worked.\n", result.out)
        self.assertEqual(self.read("config.xml"), b"<configuration/>")
        self.assertTrue(self.host("elsewhere/opt/optional.txt").exists())


if __name__ == "__main__":
    main()
