"""A window, a console and a run that asks nothing do the same with the same answers."""

import shutil
import xml.etree.ElementTree

import descriptions
from harness import WINDOWS, main
from held_setup import BUTTONS, page
from window import Window, WindowTest

VALUES = """
<Value Name="EXTRA" DataType="value">0</Value>
<Value Name="KIND" DataType="value">0</Value>
<Value Name="OWNER" DataType="value">nobody</Value>
<Value Name="SECRET" DataType="value"></Value>
"""
ASK = f"""
<Ask w="480" h="360">
 <Field Type="Directory" Label="Where to" x="24" y="24" w="432">DIR</Field>
 <Field Type="CheckBox" Label="Extra files" x="24" w="432">EXTRA</Field>
 <Field Type="RadioButtons" Label="Kind" Content="small;medium;large" x="24" w="432">KIND</Field>
 <Field Type="EditBox" Label="Owner" x="24" w="432">OWNER</Field>
 <Field Type="Password" Label="Secret" x="24" w="432">SECRET</Field>
 {BUTTONS}
</Ask>
"""
SETS = """
<FileSet Name="Core">
 <FN Dest="[DIR]">data.txt</FN>
 <FN Dest="[DIR]" ExpandVarsInFile="1">answers.txt</FN>
 <FN Dest="[DIR]/kind">kind[KIND].txt</FN>
</FileSet>
<FileSet Name="Extra" Condition="[EXTRA]==1"><FN Dest="[DIR]">extra.txt</FN></FileSet>
<IniFiles><Add FileName="[DIR]/own.ini" Section="people" Key="owner">[OWNER]</Add></IniFiles>
<AdditionalInstall><Registry>
 <AddValue Place="HKEY_LOCAL_MACHINE" Path="Software\\Answered" Value="Owner" Expand="1">[OWNER]</AddValue>
</Registry></AdditionalInstall>
<UninstallWildcards>
 <File Dest="[DIR]/un">install.log</File><File Dest="[DIR]/un">backup.bin</File><File Dest="[DIR]">own.ini</File>
</UninstallWildcards>
"""
FILES = {"data.txt": "data\n", "extra.txt": "extra\n", "answers.txt": "[DIR] [EXTRA] [KIND] [OWNER] [SECRET]\n",
         "kind2.txt": "large\n"}
ANSWERS = {"EXTRA": "1", "KIND": "2", "OWNER": "Ada Lovelace", "SECRET": "sesame"}


class SameAnswers(WindowTest):
    def setUp(self):
        super().setUp()
        self.target = self.native("opt/elsewhere")
        text = descriptions.description(self.native("opt/product"), SETS.replace("kind[KIND]", "kind2"), ASK, VALUES,
                                        late='<PostInstall Special="AutoNext"/>',
                                        farewell='<CopyProgress Special="AutoNext"/>')
        text = text.replace('<Finish Special="Finish"><Text x="1" y="1">It worked.</Text></Finish>',
                            page("Finish", "It worked.", special="Finish"))
        self.setup = self.build_package(text, {**FILES, "install.xml": text})
        shutil.rmtree(self.host("stage"))

    def answer_in_the_window(self):
        setup = Window(self, self.setup)
        setup.page("Where to", "Next")
        setup.fill("Where to", self.target)
        setup.choose("Extra files")
        setup.choose("Kind: large", role="radio button")
        setup.fill("Owner", ANSWERS["OWNER"])
        setup.fill("Secret", ANSWERS["SECRET"], "password box")
        setup.click("Next")
        setup.page("It worked.")
        setup.click("Next")
        self.assertEqual(setup.end()[0], 0)

    def answer_on_the_console(self):
        terminal = self.open_terminal(self.setup, "-gui=0")
        for question, answer in (("Where to [", self.target), ("Extra files", "yes"), ("Enter your choice", "3"),
                                 ("Owner [nobody]:", ANSWERS["OWNER"]), ("Secret:", ANSWERS["SECRET"])):
            terminal.expect(question)
            terminal.type(answer + "\r")
        code, rest = terminal.rest()
        self.assertEqual(code, 0, rest)

    def answer_nothing(self):
        arguments = [f"-VARIABLE_{name}={value}" for name, value in {**ANSWERS, "DIR": self.target}.items()]
        result = self.run_program(self.setup, "-auto", *arguments)
        self.assertEqual(result.code, 0, result)

    def take_outcome(self):
        """What a run has left, which is removed."""
        log = self.action_log("opt/elsewhere/un/install.log")
        files = {name: data for name, data in self.tree("opt").items() if not name.startswith("elsewhere/un/")}
        records = sorted(name for name in self.tree("opt") if name.startswith("elsewhere/un/"))
        found = {"files": files, "records": records, "log": log, "registry": self.registry("HKLM", "Software\\Answered")}
        left = self.run_program("installer.exe" if WINDOWS else "installer", "-uninstall=" +
                                self.native("opt/elsewhere/un/install.log"), "-uninstallApp=Test Product", "-auto")
        self.assertEqual(left.code, 0, left)
        self.wait_until(lambda: not self.host("opt").exists())
        return found

    def take_config(self):
        """The answers file of a run on a console; the other ones leave none."""
        root = xml.etree.ElementTree.fromstring(self.read("config.xml").decode("utf-8"))
        self.host("config.xml").unlink()
        return {value.get("Name"): value.text for value in root}

    def test_have_the_same_outcome_in_all_three(self):
        self.answer_in_the_window()
        self.assertFalse(self.host("config.xml").exists())
        window = self.take_outcome()
        expected = f"{self.target} 1 2 Ada Lovelace sesame\n"
        self.assertEqual(window["files"]["elsewhere/answers.txt"].decode().replace("\\", "/"), expected.replace("\\", "/"))
        self.assertIn("elsewhere/extra.txt", window["files"])
        self.assertIn("VAR\tOWNER\tAda Lovelace", window["log"])
        self.answer_on_the_console()
        config = self.take_config()
        self.assertEqual({name: config[name] for name in ANSWERS}, ANSWERS)
        self.assertEqual(self.take_outcome(), window)
        self.answer_nothing()
        self.assertFalse(self.host("config.xml").exists())
        self.assertEqual(self.take_outcome(), window)


if __name__ == "__main__":
    main()
