"""An installation changes environment variables, INI files and text files; the uninstallation changes them back."""

import shutil
import subprocess
import unittest

from descriptions import description
from harness import EXE, WINDOWS, EndToEndTest, main

ENVIRONMENT_KEY = "SYSTEM\\CurrentControlSet\\Control\\Session Manager\\Environment"
# The tests share one registry under Wine, so each has its own variables: V is replaced by their prefix.
SETS = f"""
<FileSet Name="Core"><FN Dest="[DIR]/un" Executable="1">installer{EXE}</FN><FN Dest="[DIR]">menu.changes</FN></FileSet>
<Environment>
 <Replace VarName="V_DEMO">it's; $(touch mark)</Replace>
 <Append VarName="V_LIST">[DIR]/bin</Append>
 <Insert VarName="V_LIST">first</Insert>
 <Append VarName="V_DIRS" IsPath="1">[DIR]</Append>
 <Append VarName="V_DIRS" IsPath="1">[DIR]/</Append>
</Environment>
<IniFiles>
 <Add FileName="[OTHER]/settings.ini" Section="Paths" Key="Root">[DIR]</Add>
 <Add FileName="[OTHER]/settings.ini" Section="Paths" Key="New" BeforeKey="Last">yes</Add>
</IniFiles>
<ModifyFiles><File Path="[OTHER]/menu.txt" Command="AddAfter">[DIR]/menu.changes</File></ModifyFiles>
<UninstallWildcards><File Dest="[DIR]/un">*.*</File></UninstallWildcards>
"""
INI = "; mine\n[Paths]\nRoot=/before\nLast=1\n\n[Other]\nx=1\n"
MENU = "[Menu]\nFile\nEdit\n"


class EditsTest(EndToEndTest):
    def setUp(self):
        super().setUp()
        self.write("other/settings.ini", INI)
        self.write("other/menu.txt", MENU)
        values = (f'<Value Name="UNINSTALL_ERROR" DataType="value">0</Value>'
                  f'<Value Name="OTHER" DataType="value">{self.native("other")}</Value>')
        self.prefix = "V" + self.machine.root.name.replace("-", "_")
        text = description(self.native("opt/product"), SETS.replace('"V_', f'"{self.prefix}_'), values=values, farewell='<CopyProgress Special="AutoNext"/>')
        self.setup = self.build_package(text, {"menu.changes": "1\nFile\n1\nGreeter\n"})
        shutil.rmtree(self.host("stage"))

    def install(self):
        result = self.run_program(self.setup, "-auto")
        self.assertIn("The installation was successful.", result.out, result)

    def uninstall(self):
        shutil.copyfile(self.host("opt/product/un/install.log"), self.host("copy.log"))
        result = self.run_program("installer" + EXE, "-uninstallFile=" + self.native("copy.log"), "-gui=0")
        self.assertIn("The uninstall was successful.", result.out, result)

    def variable(self, name):
        key = self.registry("HKLM", ENVIRONMENT_KEY) or {"": {}}
        return key[""].get(f"{self.prefix}_{name}")

    def lines(self, name):
        return self.read(name).decode().replace("\r\n", "\n")

    def login(self, name):
        """The variable in a shell that has sourced the environment script."""
        script = self.machine.root / "state" / "environment.sh"
        found = subprocess.run(["/bin/sh", "-c", f'. "{script}"; printf %s "${self.prefix}_{name}"'], cwd=self.machine.root,
                               capture_output=True, check=True, timeout=60)
        return found.stdout.decode()

    def test_the_variables_are_set_for_the_whole_system(self):
        self.install()
        directory = self.native("opt/product")
        self.assertEqual(self.variable("DEMO"), ("REG_SZ", "it's; $(touch mark)"))
        self.assertEqual(self.variable("LIST"), ("REG_SZ", f"first;{directory}/bin"))
        self.assertEqual(self.variable("DIRS"), ("REG_SZ", directory))

    @unittest.skipIf(WINDOWS, "programs read the registry there")
    def test_a_login_sees_the_variables(self):
        self.install()
        self.assertEqual(self.login("DEMO"), "it's: $(touch mark)")
        self.assertEqual(self.login("LIST"), "first:" + self.native("opt/product") + "/bin")
        self.assertFalse(self.host("mark").exists())
        self.uninstall()
        self.assertFalse((self.machine.root / "state" / "environment.sh").exists())

    @unittest.skipIf(WINDOWS, "programs read the registry there")
    def test_a_login_sees_what_others_have_added_after_the_product_has_gone(self):
        self.install()
        text = description(self.native("other/second"), SETS.split("<Environment>")[0] + f"""<Environment>
          <Append VarName="{self.prefix}_LIST">{self.native("opt/product")}/bin2</Append></Environment>""",
                           farewell='<CopyProgress Special="AutoNext"/>')
        second = self.build_package(text, {"menu.changes": "1\nFile\n1\nGreeter\n"}, output="second" + EXE)
        self.assertIn("The installation was successful.", self.run_program(second, "-auto").out)
        self.assertEqual(self.login("LIST"), ":".join(
            ["first", self.native("opt/product") + "/bin", self.native("opt/product") + "/bin2"]))
        self.uninstall()
        self.assertEqual(self.login("LIST"), self.native("opt/product") + "/bin2")

    def test_the_files_contain_what_was_added(self):
        self.install()
        self.assertEqual(self.lines("other/settings.ini"),
                         INI.replace("/before\n", self.native("opt/product") + "\nNew=yes\n"))
        self.assertEqual(self.lines("other/menu.txt"), MENU.replace("File\n", "File\nGreeter\n"))

    def test_everything_is_undone_with_the_product(self):
        self.install()
        self.uninstall()
        self.assertEqual(self.lines("other/settings.ini"), INI)
        self.assertEqual(self.lines("other/menu.txt"), MENU)
        self.assertIsNone(self.variable("DEMO"))
        self.assertIsNone(self.variable("LIST"))
        self.assertIsNone(self.variable("DIRS"))
        self.assertFalse(self.host("opt/product").exists())

    def test_changes_of_the_user_stay(self):
        self.install()
        self.write("other/menu.txt", "Mine\n" + self.lines("other/menu.txt").replace("Greeter", "Greeter!"))
        self.write("other/settings.ini", self.lines("other/settings.ini") + "y=2\n")
        self.uninstall()
        self.assertEqual(self.lines("other/menu.txt"), "Mine\n" + MENU.replace("File\n", "File\nGreeter!\n"))
        self.assertEqual(self.lines("other/settings.ini"), INI + "y=2\n")


if __name__ == "__main__":
    main()
