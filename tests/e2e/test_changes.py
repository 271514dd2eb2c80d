"""Every change to the system is there after the installation and gone after the uninstallation.

Checked without the help of the programs under test.
"""

import re
import shutil
import sqlite3
import subprocess
import unittest

from harness import EXE, WINDOWS, main
from test_uninstall import FAILED, LINK, URL, UninstallTest

ENVIRONMENT_KEY = "SYSTEM\\CurrentControlSet\\Control\\Session Manager\\Environment"


class ChangesTest(UninstallTest):
    def in_registry(self, content, expand=True):
        """The content of a Registry element below a group of actions."""
        return f"<AdditionalInstall><Registry>{content}</Registry></AdditionalInstall>"

    def tearDown(self):
        # All tests of this file share one Wine prefix.
        if WINDOWS:
            for key in ("HKCU\\Software\\Tandrel Test", "HKLM\\Software\\Tandrel Test"):
                self.reg("delete", key, "/f")
            for name in ("TANDREL_TEST_HOME", "TANDREL_TEST_LIST"):
                self.reg("delete", "HKLM\\" + ENVIRONMENT_KEY, "/v", name, "/f")

    def reg(self, *arguments):
        subprocess.run([str(self.machine.prefix.scripts / "run-under-wine"), "reg", *arguments], check=False,
                       stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL, env=self.machine.environment({}),
                       cwd=self.machine.prefix.directory)

    def variables(self):
        """The system's variables: name -> (type, text)."""
        found = self.registry("HKLM", ENVIRONMENT_KEY)
        return found[""] if found else {}

    def environment(self):
        """The system's variables: name -> text."""
        return {name: text for name, (_, text) in self.variables().items()}

    def database(self, *statements):
        """Changes the registry of Linux directly, without the programs under test."""
        connection = sqlite3.connect(self.host("state/registry.db"))
        for statement in statements:
            connection.execute(statement)
        connection.commit()
        connection.close()

    def fails_to_install(self, **build):
        self.build(**build)
        result = self.run_program(self.setup, "-auto")
        self.assertIn("There were errors during the installation.", result.out, result)
        return result


class RegistryChanges(ChangesTest):
    def test_values_of_all_types_come_and_go_with_the_keys_that_were_created(self):
        self.install(changes=self.in_registry(
            '<AddValue Place="HKEY_CURRENT_USER" Path="Software/Tandrel Test/Deep/Key" Value="Text" Expand="1">in [DIR]</AddValue>'
            '<AddValue Place="HKEY_CURRENT_USER" Path="Software/Tandrel Test/Deep/Key" Value="Plain" Type="REG_SZ">[DIR]</AddValue>'
            '<AddValue Place="HKEY_CURRENT_USER" Path="Software/Tandrel Test/Deep/Key" Value="Number" Type="REG_DWORD">ff</AddValue>'
            '<AddValue Place="HKEY_CURRENT_USER" Path="Software/Tandrel Test/Deep/Key" Value="Bytes" Type="REG_BINARY">00aF10</AddValue>'
            '<AddKey Place="HKEY_LOCAL_MACHINE" Path="Software/Tandrel Test/Empty"/>'))
        self.assertEqual(self.registry("HKCU", "Software\\Tandrel Test\\Deep\\Key"), {"": {
            "Text": ("REG_SZ", "in " + self.dir), "Plain": ("REG_SZ", "[DIR]"), "Number": ("REG_DWORD", "0xff"),
            "Bytes": ("REG_BINARY", "00AF10")}})
        self.assertIsNotNone(self.registry("HKLM", "Software\\Tandrel Test\\Empty"))
        result = self.uninstall()
        self.assertEqual(result.code, 0, result)
        self.assertIsNone(self.registry("HKCU", "Software\\Tandrel Test"))
        self.assertIsNone(self.registry("HKLM", "Software\\Tandrel Test"))
        self.assert_nothing_left()

    def test_changes_that_are_kept_out_of_the_log_stay(self):
        self.install(changes=self.in_registry(
            '<AddValue Place="HKEY_CURRENT_USER" Path="Software/Tandrel Test/Kept" Value="A" ActionLog="1==0">a</AddValue>'
            '<AddValue Place="HKEY_CURRENT_USER" Path="Software/Tandrel Test/Kept" Value="B">b</AddValue>'))
        result = self.uninstall()
        self.assertEqual(result.code, 0, result)
        self.assertEqual(self.registry("HKCU", "Software\\Tandrel Test\\Kept"), {"": {"A": ("REG_SZ", "a")}})
        self.assert_nothing_left()

    def test_values_and_keys_are_removed_on_request(self):
        self.install(changes=self.in_registry(
            '<AddValue Place="HKEY_CURRENT_USER" Path="Software/Tandrel Test/Old/Older" Value="A" ActionLog="1==0">a</AddValue>'
            '<AddValue Place="HKEY_CURRENT_USER" Path="Software/Tandrel Test/New" Value="A" ActionLog="1==0">a</AddValue>'
            '<RemoveValue Place="HKEY_CURRENT_USER" Path="Software/Tandrel Test/New" Value="A"/>'
            '<RemoveKey Place="HKEY_CURRENT_USER" Path="Software/Tandrel Test/Old/Older" KeyCount="2"/>'))
        self.assertEqual(self.registry("HKCU", "Software\\Tandrel Test"), {"": {}, "New": {}})


    def test_the_default_value_of_a_key_comes_and_goes(self):
        place = 'Place="HKEY_CURRENT_USER" Path="Software/Tandrel Test/Default"'
        self.install(changes=self.in_registry(f'<AddValue {place} Value="Kept" ActionLog="1==0">a</AddValue>'
                                              f'<AddValue {place} Value="">mine</AddValue>'))
        values = self.registry("HKCU", "Software\\Tandrel Test\\Default")[""]
        self.assertIn(("REG_SZ", "mine"), values.values())
        result = self.uninstall()
        self.assertEqual(result.code, 0, result)
        self.assertEqual(self.registry("HKCU", "Software\\Tandrel Test\\Default"), {"": {"Kept": ("REG_SZ", "a")}})
        self.assert_nothing_left()

    def test_a_value_that_cannot_be_written_fails_the_installation_and_is_named(self):
        result = self.fails_to_install(changes=self.in_registry(
            '<AddValue Place="HKEY_NOWHERE" Path="Software/Tandrel Test" Value="Name">a</AddValue>'
            '<AddValue Place="HKEY_CURRENT_USER" Path="Software/Tandrel Test/After" Value="A">a</AddValue>'))
        self.assertIn("FAILED to write the value HKEY_NOWHERE\\Software\\Tandrel Test: Name", result.err)
        self.assertEqual(self.registry("HKCU", "Software\\Tandrel Test\\After"), {"": {"A": ("REG_SZ", "a")}})

    @unittest.skipIf(WINDOWS, "its registry can't be made to refuse a change")
    def test_a_value_that_cannot_be_deleted_fails_the_uninstallation_and_is_named(self):
        self.install(changes=self.in_registry(
            '<AddValue Place="HKEY_CURRENT_USER" Path="Software/Tandrel Test/A" Value="Name">a</AddValue>'))
        self.database("PRAGMA user_version = 99")  # that of a later program
        result = self.uninstall()
        self.assertIn("FAILED to delete the value HKEY_CURRENT_USER\\Software\\Tandrel Test\\A: Name", result.err)
        self.assertIn("There were errors during the uninstall.", result.out)
        self.assertEqual(result.code, FAILED, result)

    def test_a_value_that_the_user_deleted_is_no_failure(self):
        place = 'Place="HKEY_CURRENT_USER" Path="Software/Tandrel Test/A"'
        self.install(changes=self.in_registry(f'<AddValue {place} Value="Name">a</AddValue>'
                                              f'<RemoveValue {place} Value="Name"/>'))
        result = self.uninstall()
        self.assertEqual(result.code, 0, result)
        self.assert_nothing_left()


class Programs(ChangesTest):
    def test_the_code_of_a_program_that_was_started_is_in_the_log(self):
        packager = self.native("packager" + EXE)
        self.install("-debug=1", changes=f"""<AdditionalInstall>
          <RunProgram Wait="1" Arguments="nonsense">{packager}</RunProgram>
          <RunProgram Wait="1" Asynchronous="1" Arguments="nonsense">{packager}</RunProgram>
          <RunProgram Wait="1">[DIR]/none</RunProgram></AdditionalInstall>""")
        log = (self.machine.temp / "installer_debug.log").read_text("utf-8", "replace")
        self.assertEqual(len(re.findall(r"packager\S* nonsense ended with the code 2\b", log)), 2, log)
        self.assertEqual(len(re.findall(r"[^:] ?Program was started : \".*packager\S* nonsense\"", log)), 2, log)
        self.assertEqual(len(re.findall(r"ERROR: Program was NOT started", log)), 1, log)


class EmptyTexts(ChangesTest):
    def test_elements_that_need_their_text_are_left_out_when_it_is_empty(self):
        self.write("shared/tool.ini", "[main]\nk=1\n")
        before = self.variables()
        self.install(changes="""<Environment><Replace VarName="PATH"></Replace><Append VarName="PATH"/>
            <Insert VarName="TANDREL_TEST_HOME"> </Insert></Environment>
          <IniFiles><Add FileName="[SHARED]/tool.ini" Section="main" Key="k"></Add></IniFiles>
          <ModifyFiles><File Path="[SHARED]/shared.txt" Command="AddAfter"></File></ModifyFiles>
          <Shortcuts><Add Type="File" Dest="[DIR]/menu" Target="[DIR]/data.txt"></Add></Shortcuts>
          <Firewall><Port Port="8317"></Port></Firewall>""" + self.in_registry(
              '<AddValue Place="HKEY_CURRENT_USER" Path="Software/Tandrel Test/A" Value="Name"></AddValue>'))
        self.assertEqual(self.variables(), before)
        self.assertEqual(self.read_text("shared/tool.ini"), "[main]\nk=1\n")
        self.assertIsNone(self.registry("HKCU", "Software\\Tandrel Test"))
        self.assertFalse(self.host("opt/product/menu").exists())
        self.assertEqual(self.uninstall().code, 0)
        self.assert_nothing_left()


class Links(ChangesTest):
    CHANGES = f"""<Shortcuts>
      <Add Type="File" Dest="[DIR]/../menu/deep" Target="[DIR]/bin/tool{EXE}" Arguments="-x 1" StartPath="[DIR]"
       Description="A tool">Tool{LINK}</Add>
      <Add Type="URL" Dest="[DIR]/../menu" Target="https://test.example/a?b=c">Site{URL}</Add>
      <Add Type="Uninstall" Dest="[DIR]/../menu">Remove{LINK}</Add>
    </Shortcuts>"""

    def shown(self, name):
        """The content of a shortcut as searchable text."""
        return self.read(name).replace(b"\0", b"").decode("latin-1")

    def test_they_lead_to_their_targets_and_are_removed(self):
        self.install(changes=self.CHANGES)
        self.assertEqual(set(self.tree("opt/menu")), {f"deep/Tool{LINK}", f"Site{URL}", f"Remove{LINK}"})
        tool = self.shown(f"opt/menu/deep/Tool{LINK}")
        for text in ("tool" + EXE, "-x 1", "A tool"):
            self.assertIn(text, tool)
        self.assertIn("URL=https://test.example/a?b=c", self.shown(f"opt/menu/Site{URL}"))
        remove = self.shown(f"opt/menu/Remove{LINK}")
        for text in ("installer" + EXE, "-uninstall=", "install.log", "-uninstallApp=", "Test Product"):
            self.assertIn(text, remove)
        result = self.uninstall()
        self.assertEqual(result.code, 0, result)
        self.assert_nothing_left()

    def test_a_link_that_the_user_removed_is_no_failure_and_one_of_somebody_else_stays(self):
        self.install(changes=self.CHANGES)
        self.host(f"opt/menu/Site{URL}").unlink()
        self.write(f"opt/menu/Mine{LINK}", "mine")
        result = self.uninstall()
        self.assertIn("FAILED to remove  shortcut ", result.out)
        self.assertEqual(self.tree("opt/menu"), {f"Mine{LINK}": b"mine"})
        self.assertEqual(result.code, FAILED, result)  # for the directory that stays

    def test_a_link_that_cannot_be_removed_fails_the_uninstallation(self):
        self.install(changes=f"""<Shortcuts><Add Type="URL" Dest="[SHARED]" Target="https://test.example/">Site{URL}</Add>
          </Shortcuts>""")
        link = self.host(f"shared/Site{URL}")
        link.unlink()
        link.mkdir()
        result = self.uninstall()
        self.assertIn("FAILED to remove  shortcut ", result.out)
        self.assertIn("There were errors during the uninstall.", result.out)
        self.assertEqual(result.code, FAILED, result)
        self.assertTrue(link.is_dir())

    @unittest.skipIf(WINDOWS, "the desktop's own format of entries")
    def test_the_uninstall_link_contains_a_command_that_uninstalls(self):
        self.install(changes=self.CHANGES)
        line = re.search(r"^Exec=(.*)$", self.shown(f"opt/menu/Remove{LINK}"), re.M)[1]
        # The escapes of the value are removed first, then those of the quoted words.
        command = line.replace("\\\\", "\\")
        words = [re.sub(r"\\(.)", r"\1", quoted) or plain for quoted, plain in
                 re.findall(r'"((?:[^"\\]|\\.)*)"|(\S+)', command)]
        words.append("-gui=0")  # a desktop would show a window
        done = subprocess.run(words, env=self.machine.environment({}), capture_output=True, timeout=60, check=False)
        self.assertEqual(done.returncode, 0, (words, done))
        self.wait_until(lambda: not self.host("opt/product").exists() and not list(self.machine.temp.iterdir()))
        self.assert_nothing_left()


class FirewallChanges(ChangesTest):
    def test_a_missing_firewall_fails_nothing(self):
        result = self.install(changes="""<Firewall><Port Port="8317" Protocol="TCP">Test rule</Port>
          <Application Target="[DIR]/bin/tool">Test tool</Application></Firewall>""")
        message = "Firewall: Service is NOT switched on and no exceptions can be added!"
        log = "\n".join(self.action_log("opt/product/un/install.log"))
        if not WINDOWS:
            self.assertEqual(result.out.count(message + "\n"), 4, result)  # each line, and again in the summary
            self.assertNotIn("FIREWALL", log)
        elif message not in result.out:
            self.assertIn("FIREWALL", log)

    def test_the_removal_of_a_port_is_reported(self):
        self.install()
        self.rewrite_log(lambda log: log + b"FIREWALL\tPORT\t8317\tTCP\tTest rule\r\n")
        result = self.uninstall()
        if WINDOWS:  # Wine's firewall accepts exceptions and can't remove them
            self.assertIn("FAILED to remove port from firewall: 8317\n", result.out)
            self.assertEqual(result.code, FAILED, result)
            self.assertTrue(self.host("opt/product/un/install.log").exists())  # so that it can be repeated
        else:
            self.assertIn("Firewall: Service is NOT switched on and no exceptions can be removed!\n", result.out)
            self.assertEqual(result.code, 0, result)
            self.assert_nothing_left()


class EnvironmentChanges(ChangesTest):
    VALUES = """<Environment>
      <Replace VarName="TANDREL_TEST_HOME">[DIR]</Replace>
      <Append VarName="TANDREL_TEST_LIST" IsPath="1">[DIR]/bin</Append>
      <Insert VarName="TANDREL_TEST_LIST" IsPath="1">[SHARED]</Insert>
    </Environment>"""

    def earlier(self, text):
        """Sets up an environment of somebody else, with a product that keeps its changes out of the log."""
        place = 'Place="HKEY_LOCAL_MACHINE" Path="' + ENVIRONMENT_KEY + '"'
        directory, self.dir = self.dir, self.native("earlier")
        self.build(self.in_registry("".join(f'<AddValue {place} Value="{name}" ActionLog="1==0">{value}</AddValue>'
                                            for name, value in text.items())), late="")
        result = self.run_program(self.setup, "-auto")
        self.assertIn("The installation was successful.", result.out, result)
        shutil.rmtree(self.host("earlier"))
        self.dir = directory

    def test_new_variables_come_and_go(self):
        before = self.environment()
        self.install(changes=self.VALUES)
        present = self.environment()
        self.assertEqual(present.pop("TANDREL_TEST_HOME"), self.dir)
        self.assertEqual(present.pop("TANDREL_TEST_LIST"), self.native("shared") + ";" + self.dir + "/bin")
        self.assertEqual(present, before)
        result = self.uninstall()
        self.assertEqual(result.code, 0, result)
        self.assertEqual(self.environment(), before)
        self.assert_nothing_left()

    def make_expandable(self, name):
        if WINDOWS:
            self.reg("add", "HKLM\\" + ENVIRONMENT_KEY, "/v", name, "/t", "REG_EXPAND_SZ", "/d",
                     self.environment()[name], "/f")
        else:
            self.database(f"UPDATE entries SET type = 2 WHERE name = CAST('{name}' AS BLOB)")

    def test_a_variable_with_references_keeps_its_type(self):
        self.earlier({"TANDREL_TEST_HOME": "%SystemRoot%\\home", "TANDREL_TEST_LIST": "%SystemRoot%;two"})
        for name in ("TANDREL_TEST_HOME", "TANDREL_TEST_LIST"):
            self.make_expandable(name)
        before = self.variables()
        self.assertEqual(before["TANDREL_TEST_LIST"], ("REG_EXPAND_SZ", "%SystemRoot%;two"))
        self.install(changes=self.VALUES)
        present = self.variables()
        self.assertEqual(present["TANDREL_TEST_HOME"], ("REG_EXPAND_SZ", self.dir))
        self.assertEqual(present["TANDREL_TEST_LIST"], (
            "REG_EXPAND_SZ", f'{self.native("shared")};%SystemRoot%;two;{self.dir}/bin'))
        result = self.uninstall()
        self.assertEqual(result.code, 0, result)
        self.assertEqual(self.variables(), {**before, "TANDREL_TEST_LIST": ("REG_EXPAND_SZ", "%SystemRoot%;two;")})
        self.assert_nothing_left()

    def test_only_whole_entries_are_taken_out_of_a_list(self):
        self.earlier({"TANDREL_TEST_LIST": f"{self.dir}/bin2;{self.dir}/bin/x", "TANDREL_TEST_HOME": f"x{self.dir};y"})
        before = self.environment()
        self.install(changes="""<Environment><Append VarName="TANDREL_TEST_LIST">[DIR]/bin</Append>
          <Insert VarName="TANDREL_TEST_HOME">[DIR]</Insert></Environment>""")
        result = self.uninstall()
        self.assertEqual(result.code, 0, result)
        self.assertEqual(self.environment(), {**before, "TANDREL_TEST_LIST": before["TANDREL_TEST_LIST"] + ";"})
        self.assert_nothing_left()

    def test_an_entry_that_has_gone_is_reported_and_the_list_stays(self):
        self.earlier({"TANDREL_TEST_LIST": "one"})
        self.install(changes="""<Environment><Append VarName="TANDREL_TEST_LIST">[DIR]/bin</Append></Environment>""" +
                     self.in_registry(f'<AddValue Place="HKEY_LOCAL_MACHINE" Path="{ENVIRONMENT_KEY}"'
                                      ' Value="TANDREL_TEST_LIST" Expand="1" ActionLog="1==0">one;[DIR]/bin2</AddValue>'))
        result = self.uninstall()
        self.assertIn("FAILED to erase from TANDREL_TEST_LIST\n", result.out)
        self.assertEqual(result.code, 0, result)
        self.assertEqual(self.environment()["TANDREL_TEST_LIST"], f"one;{self.dir}/bin2")

    @unittest.skipIf(WINDOWS, "its registry can't be made to refuse a change")
    def test_a_variable_that_cannot_be_written_back_fails_the_uninstallation(self):
        self.earlier({"TANDREL_TEST_LIST": "one"})
        self.install(changes="""<Environment><Append VarName="TANDREL_TEST_LIST">[DIR]/bin</Append></Environment>""")
        self.database("PRAGMA user_version = 99")  # that of a later program
        result = self.uninstall()
        self.assertIn("FAILED to erase from TANDREL_TEST_LIST\n", result.out)
        self.assertIn("There were errors during the uninstall.", result.out)
        self.assertEqual(result.code, FAILED, result)

    @unittest.skipIf(WINDOWS, "programs read the registry there")
    def test_an_environment_script_that_cannot_be_written_fails_the_installation(self):
        self.write("state/environment.sh/in the way", "")
        self.fails_to_install(changes=self.VALUES)

    @unittest.skipIf(WINDOWS, "the system reads its own registry there")
    def test_a_login_shell_sees_them_as_long_as_the_product_is_installed(self):
        self.install(changes="""<Environment>
          <Replace VarName="TANDREL_TEST_HOME">it's [DIR]; $(touch [SHARED]/ran)</Replace>
          <Append VarName="PATH" IsPath="1">[DIR]/bin</Append></Environment>""")
        script = self.host("state/environment.sh")
        done = subprocess.run(["sh", "-c", f'. "{script}"; printf "%s\\n%s" "$TANDREL_TEST_HOME" "$PATH"'],
                              env={"PATH": "/usr/bin:/bin"}, capture_output=True, timeout=60, check=True)
        home, path = done.stdout.decode().split("\n")
        self.assertEqual(home, f"it's {self.dir}: $(touch {self.native('shared')}/ran)")
        self.assertEqual(path, f"/usr/bin:/bin:{self.dir}/bin")
        self.assertEqual(self.uninstall().code, 0)
        self.assertFalse(script.exists())
        self.assert_nothing_left()

    def test_earlier_values_are_restored(self):
        self.earlier({"TANDREL_TEST_HOME": "earlier home", "TANDREL_TEST_LIST": "one;two"})
        before = self.environment()
        self.install(changes=self.VALUES)
        present = self.environment()
        self.assertEqual(present["TANDREL_TEST_HOME"], self.dir)
        self.assertEqual(present["TANDREL_TEST_LIST"], f'{self.native("shared")};one;two;{self.dir}/bin')
        result = self.uninstall()
        self.assertEqual(result.code, 0, result)
        # The separator before the appended value stays.
        self.assertEqual(self.environment(), {**before, "TANDREL_TEST_LIST": "one;two;"})
        self.assert_nothing_left()

    def test_a_directory_that_is_in_the_list_is_not_added_again(self):
        self.earlier({"TANDREL_TEST_LIST": f'one;{self.native("shared")}'})
        before = self.environment()
        self.install(changes='<Environment><Append VarName="TANDREL_TEST_LIST" IsPath="1">[SHARED]/</Append></Environment>')
        self.assertEqual(self.environment(), before)
        self.assertIn("ENV\tNONE", self.action_log("opt/product/un/install.log"))
        self.assertEqual(self.uninstall().code, 0)
        self.assertEqual(self.environment(), before)
        self.assert_nothing_left()


class FileEdits(ChangesTest):
    INI = """<IniFiles>
      <Add FileName="[SHARED]/tool.ini" Section="paths" Key="new" BeforeKey="old">[DIR]</Add>
      <Add FileName="[SHARED]/tool.ini" Section="paths" Key="level">9</Add>
      <Add FileName="[SHARED]/tool.ini" Section="more" Key="where" IsPath="1">[DIR]</Add>
      <Add FileName="[SHARED]/none/tool.ini" Section="more" Key="x" IgnoreErrors="1">y</Add>
    </IniFiles>"""

    def test_keys_of_an_ini_file_come_and_go_and_earlier_values_are_restored(self):
        before = "; mine\n[paths]\nold=1\nlevel=3\n[last]\na=b\n"
        self.write("shared/tool.ini", before)
        self.install(changes=self.INI)
        self.assertEqual(self.read_text("shared/tool.ini"),
                         f"; mine\n[paths]\nnew={self.dir}\nold=1\nlevel=9\n[last]\na=b\n[more]\nwhere={self.dir}\n")
        result = self.uninstall()
        self.assertEqual(result.code, 0, result)
        # The section that was created stays, empty.
        self.assertEqual(self.read_text("shared/tool.ini"), before + "[more]\n")

    def test_another_spelling_of_a_key_stays_as_it_was(self):
        before = "[Main]\nlevel = 3\nWhere=there\n[main]\nlevel=4\n"
        self.write("shared/tool.ini", before)
        self.install(changes="""<IniFiles><Add FileName="[SHARED]/tool.ini" Section="Main" Key="level">9</Add>
          <Add FileName="[SHARED]/tool.ini" Section="Main" Key="where">[DIR]</Add></IniFiles>""")
        self.assertEqual(self.read_text("shared/tool.ini"),
                         f"[Main]\nlevel = 3\nWhere=there\nlevel=9\nwhere={self.dir}\n[main]\nlevel=4\n")
        result = self.uninstall()
        self.assertEqual(result.code, 0, result)
        self.assertEqual(self.read_text("shared/tool.ini"), before)

    def test_an_earlier_value_comes_back_into_a_file_that_has_gone_and_a_new_one_makes_none(self):
        self.write("shared/old.ini", "[main]\nlevel=3\n")
        self.write("shared/new.ini", "[main]\n")
        self.install(changes="""<IniFiles><Add FileName="[SHARED]/old.ini" Section="main" Key="level">9</Add>
          <Add FileName="[SHARED]/new.ini" Section="main" Key="level">9</Add></IniFiles>""")
        for name in ("old", "new"):
            self.host(f"shared/{name}.ini").unlink()
        result = self.uninstall()
        self.assertEqual(result.code, 0, result)
        self.assertIn(f'Restore [main]/level in {self.native("shared")}/old.ini\n', result.out)
        self.assertEqual(self.read_text("shared/old.ini"), "[main]\nlevel=3\n")
        self.assertFalse(self.host("shared/new.ini").exists())

    def test_nothing_comes_back_into_a_file_of_the_product_itself(self):
        self.install(changes="""<FileSet Name="Settings"><FN Dest="[DIR]">tool.ini</FN></FileSet>
          <IniFiles><Add FileName="[DIR]\\tool.ini" Section="main" Key="level">9</Add></IniFiles>""",
                     files={"tool.ini": "[main]\nlevel=3\n"})
        self.assertIn("REPLACE", "\n".join(self.action_log("opt/product/un/install.log")))
        result = self.uninstall()
        self.assertEqual(result.code, 0, result)
        self.assert_nothing_left()

    def test_a_file_that_cannot_be_written_back_fails_the_uninstallation(self):
        self.write("shared/tool.ini", "[main]\nlevel=3\n")
        self.install(changes="""<IniFiles><Add FileName="[SHARED]/tool.ini" Section="main" Key="level">9</Add></IniFiles>""")
        self.host("shared/tool.ini").unlink()
        self.host("shared/tool.ini").mkdir()
        result = self.uninstall()
        self.assertIn(f'FAILED to restore [main]/level in {self.native("shared")}/tool.ini\n', result.out)
        self.assertEqual(result.code, FAILED, result)

    def test_lines_are_added_to_a_file_and_removed_again_and_those_of_the_user_stay(self):
        self.write("shared/list.txt", "one\ntwo\nthree\n")
        self.install(changes="""<ModifyFiles><File Path="[SHARED]/list.txt" Command="AddAfter">[DIR]/list.change</File>
          </ModifyFiles><FileSet Name="Changes"><FN Dest="[DIR]">list.change</FN></FileSet>""",
                     files={"list.change": "1\ntwo\n2\ntwo and a half\nalmost three\n"})
        self.assertEqual(self.read_text("shared/list.txt"), "one\ntwo\ntwo and a half\nalmost three\nthree\n")
        self.write("shared/list.txt", self.read_text("shared/list.txt").replace("\nthree\n", "\nthree\nfour\n"))
        result = self.uninstall()
        self.assertEqual(result.code, 0, result)
        self.assertEqual(self.read_text("shared/list.txt").split(), ["one", "two", "three", "four"])

    def test_a_broken_change_description_changes_nothing_and_fails_the_installation(self):
        self.write("shared/list.txt", "one\ntwo\n")
        self.build(changes="""<ModifyFiles><File Path="[SHARED]/list.txt" Command="AddAfter">[DIR]/list.change</File>
          </ModifyFiles><FileSet Name="Changes"><FN Dest="[DIR]">list.change</FN></FileSet>""",
                   files={"list.change": "1\ntwo\n5\nnot so many\n"})
        result = self.run_program(self.setup, "-auto")
        self.assertIn("There were errors during the installation.", result.out)
        self.assertEqual(self.read_text("shared/list.txt"), "one\ntwo\n")


if __name__ == "__main__":
    main()
