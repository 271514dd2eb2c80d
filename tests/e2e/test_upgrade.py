"""Versions of a product that follow each other: what an upgrade removes and keeps, and what a revert brings back."""

import os
import shutil
import stat
import subprocess
import unittest

from harness import EXE, HELPERS, WINDOWS, EndToEndTest, main

UNINSTALL_KEY = "Software\\Microsoft\\Windows\\CurrentVersion\\Uninstall"
ENVIRONMENT_KEY = "SYSTEM\\CurrentControlSet\\Control\\Session Manager\\Environment"
LINK = ".lnk" if WINDOWS else ".desktop"

DESCRIPTION = """<TandrelGroupInstallation>
<ProductDesc>
 <Fullname>{name}</Fullname>
 <MajorVersion>{version}</MajorVersion><MinorVersion>0</MinorVersion><MinestVersion>0</MinestVersion>
 <Website>https://product.example/{version}</Website>
 {former}
</ProductDesc>
<InstallerControlVariables>
 <PreviousInstallation>PREVIOUS</PreviousInstallation><LegacyInstallation>LEGACY</LegacyInstallation>
 <ShouldUninstall>SHOULD_UNINSTALL</ShouldUninstall>
 <InstallError>INSTALL_ERROR</InstallError><UninstallError>UNINSTALL_ERROR</UninstallError>
</InstallerControlVariables>
<DefValues>
 <Value Name="PREVIOUS" DataType="value">0</Value>
 <Value Name="LEGACY" DataType="value">0</Value>
 <Value Name="INSTALL_ERROR" DataType="value">0</Value>
 <Value Name="UNINSTALL_ERROR" DataType="value">0</Value>
 <Value Name="SHOULD_UNINSTALL" DataType="value" UseOld="1">0</Value>
 <Value Name="DIR" DataType="value" UseOld="1">{directory}</Value>
 <Value Name="SHARED" DataType="value">{shared}</Value>
 <Value Name="COLOUR" DataType="value" UseOld="1">grey</Value>
 {values}
</DefValues>
<Dialogs>
 <Welcome/>
 {before}
 <CopyProgress Special="AutoNext"/>
 {pages}
 <RegisterApplication Special="AutoNext" Condition="[INSTALL_ERROR]==0"/>
 <BadFinish Special="BadFinish;Finish" Condition="[INSTALL_ERROR]==1"><Text x="1" y="1">It failed.</Text></BadFinish>
 <Finish Special="Finish"><Text x="1" y="1">It worked.</Text></Finish>
</Dialogs>
<UninstallDialogs>
 <UnregisterApplication Special="AutoNext"/>
 <CopyProgress Special="AutoNext"/>
 <Finish Special="Finish"><Text x="1" y="1">Bye.</Text></Finish>
</UninstallDialogs>
<Installation>
 <Uninstall>
  <InstallLogFile>[DIR]/un/install.log</InstallLogFile>
  <InstallBackupFile>[DIR]/un/backup.bin</InstallBackupFile>
  <UninstallXmlFile>[DIR]/un/install.xml</UninstallXmlFile>
  <UninstallCmd>[DIR]/un/installer{exe}</UninstallCmd>
  {logs}
 </Uninstall>
 {overrides}
 <FileSet Name="Uninstaller">
  <FN Dest="[DIR]/un" Executable="1">installer{exe}</FN>
  <FN Dest="[DIR]/un">install.xml</FN>
 </FileSet>
 {sets}
 <UninstallWildcards>
  <File Dest="[DIR]/un">install.log</File><File Dest="[DIR]/un">backup.bin</File><File Dest="[DIR]">*.ini</File>
 </UninstallWildcards>
</Installation>
</TandrelGroupInstallation>
"""

SETS = """
<FileSet Name="Core">
 <FN Dest="[DIR]">data.txt</FN>
 <FN Dest="[DIR]/only{version}">part{version}.txt</FN>
 <FN Dest="[DIR]/bin" Executable="1">tool.sh</FN>
 <FN Dest="[DIR]">settings.txt</FN>
 <FN Dest="[DIR]">script.txt</FN>
 <FN Dest="[SHARED]" BackupExisting="1">shared.txt</FN>
</FileSet>
<Environment>
 <Replace VarName="PRODUCT_MODE">version {version}</Replace>
 <Append VarName="PRODUCT_PATH" IsPath="1">[DIR]/only{version}</Append>
</Environment>
<IniFiles>
 <Add FileName="[SHARED]/conf.ini" Section="s" Key="known">{version}</Add>
 <Add FileName="[SHARED]/conf.ini" Section="s" Key="key{version}">{version}</Add>
 <Add FileName="[DIR]/own.ini" Section="s" Key="key{version}">{version}</Add>
</IniFiles>
<ModifyFiles><File Command="AddAfter" Path="[SHARED]/list.txt">[DIR]/script.txt</File></ModifyFiles>
<Shortcuts><Add Type="File" Dest="[DIR]/menu" Target="[DIR]/data.txt">Data {version}{link}</Add></Shortcuts>
<AdditionalInstall><Registry>
 <AddValue Place="HKEY_LOCAL_MACHINE" Path="Software\\Upgraded" Value="Version">{version}</AddValue>
 <AddValue Place="HKEY_LOCAL_MACHINE" Path="Software\\Upgraded\\Only{version}" Value="Number" Type="REG_DWORD">{version}</AddValue>
</Registry></AdditionalInstall>
"""

# No record can hold a path of this length, so the installation fails after everything else was done.
FAILING = ('<AdditionalInstall><Registry><AddValue Place="HKEY_LOCAL_MACHINE" Path="Software\\Upgraded\\'
           + "long" * 200 + '" Value="v">x</AddValue></Registry></AdditionalInstall>')
# A page that declines the removal.
KEEP = ('<Keep><Trigger EvaluateOn="Start" Type="VarChange" Variable="SHOULD_UNINSTALL" Value="0"/></Keep>')
# A page that removes a former name although only its log shows it.
REMOVE = ('<Old><Trigger EvaluateOn="Start" Type="VarChange" Variable="SHOULD_UNINSTALL" Value="1" Condition="[LEGACY]==1"/>'
          '</Old>')
# What a description needs that refuses to replace a newer version.
VERSION_RULE = ('<Value Name="BUILD" DataType="value">{version}</Value>'
                '<Value Name="PRESENT_BUILD" DataType="installvar" AppName="Product" Default="0">BUILD</Value>')
NEWER_PAGE = ('<Newer Special="Finish" Condition="[PRESENT_BUILD]&gt;[BUILD]"><Text x="1" y="1">A newer version is '
              'installed.</Text></Newer>')
REVERT = '<RevertInstallation Special="AutoNext" Condition="[INSTALL_ERROR]==1"/>'


def files_of(version):
    return {"data.txt": f"data {version}\n" * 40, f"part{version}.txt": f"part {version}\n", "tool.sh": f"#!/bin/sh\n# {version}\n",
            "settings.txt": f"colour=[COLOUR] {version}\n", "script.txt": f"1\nanchor\n1\nadded {version}\n",
            "shared.txt": f"the product's {version}\n"}


class UpgradeTest(EndToEndTest):
    def setUp(self):
        super().setUp()
        end = "\r\n" if WINDOWS else "\n"
        self.write("shared/shared.txt", "the user's\n")
        self.write("shared/conf.ini", f"[s]{end}known=before{end}")
        self.write("shared/list.txt", f"anchor{end}end{end}")
        self.before = self.state()

    def build(self, version, *, name="Product", directory="opt/product", more="", pages=REVERT, output=None, files=None,
              **texts):
        texts = {"former": "", "before": "", "logs": "", "overrides": "", "values": "", **texts}
        texts["values"] = texts["values"].format(version=version)
        sets = SETS.format(version=version, link=LINK) + more
        text = DESCRIPTION.format(name=name, version=version, directory=self.native(directory), exe=EXE,
                                  shared=self.native("shared"), sets=sets, pages=pages, **texts)
        setup = self.build_package(text, {**files_of(version), **(files or {})}, output=(output or f"setup{version}") + EXE)
        shutil.rmtree(self.host("stage"))
        return setup

    # --- the state of the machine

    def files(self):
        """Files with their rights and contents, directories, without those of the tests and of the system."""
        found = {}
        for path in sorted(self.machine.root.rglob("*")):
            name = str(path.relative_to(self.machine.root))
            if name.startswith(("opt", "shared")):
                mode = None if WINDOWS else stat.S_IMODE(path.lstat().st_mode)
                found[name] = (mode, path.read_bytes() if path.is_file() else None)
        return found

    def environment(self):
        found = (self.registry("HKLM", ENVIRONMENT_KEY) or {"": {}})[""]
        return {name: value for name, value in found.items() if name.startswith("PRODUCT_") and value[1]}

    def state(self):
        entries = self.registry("HKLM", UNINSTALL_KEY) or {}
        return {"files": self.files(), "environment": self.environment(),
                "registry": self.registry("HKLM", "Software\\Upgraded") or None,
                "applications": {name: values for name, values in entries.items() if "roduct" in name},
                "sums": self.sums()}

    def sums(self):
        """What the installer remembers of its products, beside the registry's database; lines in any order."""
        return {} if WINDOWS else {p.name: sorted(p.read_bytes().splitlines()) for p in self.machine.state.rglob("*")
                                   if not p.name.startswith(("registry.db", "runs.txt")) and p.is_file()}

    def temporary(self):
        return sorted(p.name for p in self.machine.temp.iterdir() if p.name.startswith(("orin", "ori")))

    # --- what a user does

    def install(self, setup, *arguments):
        result = self.run_program(setup, "-auto", *arguments)
        self.assertIn("The installation was successful.", result.out, result)
        self.assertEqual(result.code, 0, result)
        return result

    def fail_to_install(self, setup, *arguments):
        result = self.run_program(setup, "-auto", *arguments)
        self.assertNotIn("The installation was successful.", result.out, result)
        return result

    def uninstall(self, name="Product"):
        helper = "run_uninstaller" + EXE
        shutil.copy2(HELPERS / helper, self.host(helper))
        result = self.run_program(helper, name)
        self.host(helper).unlink()
        self.wait_for_the_uninstaller()
        return result

    def expect_version(self, version):
        self.assertEqual(self.read_text("opt/product/data.txt"), f"data {version}\n" * 40)
        self.assertEqual([p.name for p in sorted(self.host("opt/product").glob("only*"))], [f"only{version}"])
        self.assertEqual(self.read_text("shared/shared.txt"), f"the product's {version}\n")
        self.assertEqual(self.environment()["PRODUCT_MODE"][1], f"version {version}")
        self.assertEqual(self.registry("HKLM", "Software\\Upgraded")[""]["Version"][1], str(version))
        self.assertEqual(self.registry("HKLM", UNINSTALL_KEY)["Product"]["DisplayVersion"][1], f"{version}.0.0")

    def expect_as_before(self):
        self.assertEqual(self.without_traces(self.state()), self.without_traces(self.before))

    @staticmethod
    def without_traces(state):
        """The undo of a value may leave its key, empty."""
        return {**state, "registry": None if state["registry"] in (None, {"": {}}) else state["registry"]}

    # --- the tests

    def test_an_upgrade_removes_the_earlier_version(self):
        self.install(self.build(1))
        result = self.install(self.build(2))
        self.expect_version(2)
        self.assertIn("Back up " + self.on_screen(self.native("opt/product").replace("/", "\\") + "\\data.txt"), result.out)
        self.assertEqual(self.temporary(), [])
        self.uninstall()
        self.expect_as_before()

    def test_a_new_version_that_fails_leaves_the_earlier_one(self):
        self.install(self.build(1))
        first = self.state()
        result = self.fail_to_install(self.build(2, more=FAILING))
        self.assertEqual(self.state(), first, result)
        self.assertEqual(self.temporary(), [])
        self.uninstall()
        self.expect_as_before()

    def links(self):
        base = self.host("opt/product")
        return {path.name: os.readlink(path) for path in base.iterdir() if path.is_symlink()}

    @unittest.skipIf(WINDOWS, "the other system makes no links")
    def test_symbolic_links_follow_their_version(self):
        links = ('<Shortcuts><Add Type="Symlink" Dest="[DIR]" Target="only{0}">now</Add>'
                 '<Add Type="Symlink" Dest="[DIR]" Target="data.txt">of{0}</Add></Shortcuts>')
        self.install(self.build(1, more=links.format(1)))
        self.assertEqual(self.links(), {"now": "only1", "of1": "data.txt"})
        first = self.state()
        self.fail_to_install(self.build(2, more=links.format(2) + FAILING, output="failing"))
        self.assertEqual(self.links(), {"now": "only1", "of1": "data.txt"})
        self.assertEqual(self.state(), first)
        self.install(self.build(2, more=links.format(2)))
        self.assertEqual(self.links(), {"now": "only2", "of2": "data.txt"})
        self.uninstall()
        self.expect_as_before()

    def test_a_chain_of_versions_ends_where_it_began(self):
        for version in (1, 2, 3, 1):
            self.install(self.build(version))
            self.expect_version(version)
        before = self.state()
        self.fail_to_install(self.build(2, more=FAILING, output="failing"))
        self.assertEqual(self.state(), before)
        self.install("setup3" + EXE)
        self.expect_version(3)
        self.uninstall()
        self.expect_as_before()
        self.assertEqual(self.temporary(), [])

    def test_what_the_user_changed_comes_back_with_the_earlier_version(self):
        self.install(self.build(1))
        self.write("opt/product/data.txt", "the user's own data\n")
        self.write("opt/product/settings.txt", "colour=red\n")
        changed = self.state()
        result = self.fail_to_install(self.build(2, more=FAILING))
        self.assertEqual(self.state(), changed, result)
        self.install(self.build(3))
        self.expect_version(3)
        self.assertEqual(self.read_text("opt/product/settings.txt"), "colour=[COLOUR] 3\n")
        self.uninstall()
        self.expect_as_before()

    def test_a_file_of_the_user_in_the_way_is_left_and_named(self):
        self.install(self.build(1))
        self.write("opt/product/only1/mine.txt", "mine\n")
        result = self.run_program(self.build(2), "-auto")
        self.assertIn("The installation was successful.", result.out, result)
        self.assertEqual(self.read_text("opt/product/only1/mine.txt"), "mine\n")
        self.assertEqual(self.read_text("opt/product/data.txt"), "data 2\n" * 40)
        self.assertFalse(self.host("opt/product/only1/part1.txt").exists())
        self.assertIn("only1", result.err)
        self.host("opt/product/only1/mine.txt").unlink()
        self.uninstall()
        self.expect_as_before()

    def test_without_a_backup_the_earlier_version_is_gone_for_good(self):
        self.install(self.build(1))
        result = self.install(self.build(2), "-backup=0")
        self.expect_version(2)
        self.assertNotIn("Back up " + self.on_screen(self.native("opt/product").replace("/", "\\") + "\\data.txt"), result.out)
        result = self.fail_to_install(self.build(3, more=FAILING), "-backup=0")
        self.assertEqual(self.state()["files"], self.before["files"], result)
        self.assertEqual(self.state()["applications"], {})
        self.install("setup2" + EXE)  # and nothing is in its way
        self.expect_version(2)
        self.uninstall()
        self.expect_as_before()

    def test_without_a_removal_the_records_are_continued(self):
        for version in (1, 2):
            self.install(self.build(version, before=KEEP))
        self.assertEqual(self.read_text("opt/product/data.txt"), "data 2\n" * 40)
        self.assertEqual(sorted(p.name for p in self.host("opt/product").glob("only*")), ["only1", "only2"])
        self.uninstall()
        self.expect_as_before()

    def test_a_new_version_over_the_earlier_one_is_taken_back_with_it_and_says_so(self):
        self.install(self.build(1, before=KEEP))
        result = self.fail_to_install(self.build(2, before=KEEP, more=FAILING))
        self.assertIn("The earlier version, over which the new one was installed, has been taken back with it.", result.err)
        self.assertEqual(self.files(), self.before["files"])
        self.assertEqual(self.state()["applications"], {})

    def test_a_version_that_only_its_log_shows_is_removed(self):
        self.install(self.build(1))
        self.forget("Product")
        debug = self.install(self.build(2), "-debug=1")
        log = (self.machine.temp / "installer_debug.log").read_text("utf-8")
        self.assertIn("WARNING: Uninstalling previous installation using fallback logic : Product (", log, debug)
        self.expect_version(2)
        self.uninstall()
        self.expect_as_before()

    def test_a_version_that_only_its_log_shows_comes_back(self):
        self.install(self.build(1))
        self.forget("Product")
        first = self.state()
        result = self.fail_to_install(self.build(2, more=FAILING))
        self.assertEqual(self.state(), first, result)
        self.install(self.build(3))
        self.uninstall()
        self.expect_as_before()

    def test_a_former_name_goes_with_its_entry_and_comes_back(self):
        self.install(self.build(1, name="Old Product", directory="opt/old", output="old"))
        first = self.state()
        self.assertIn("Old Product", first["applications"])
        former = "<LegacyApplication>Old Product</LegacyApplication>"
        result = self.fail_to_install(self.build(2, former=former, more=FAILING))
        self.assertEqual(self.state(), first, result)
        self.install(self.build(2, former=former))
        self.expect_version(2)
        self.assertFalse(self.host("opt/old").exists())
        self.assertNotIn("Old Product", self.state()["applications"])
        self.uninstall()
        self.expect_as_before()

    def test_a_former_name_that_the_list_has_lost_is_found_by_its_log(self):
        self.install(self.build(1, name="Old Product", directory="opt/old", output="old"))
        self.forget("Old Product")
        logs = f'<LegacyInstallLogFile AppName="Old Product">{self.native("opt/old/un/install.log")}</LegacyInstallLogFile>'
        self.install(self.build(2, logs=logs, before=REMOVE))
        self.expect_version(2)
        self.assertFalse(self.host("opt/old").exists())
        self.uninstall()
        self.expect_as_before()

    def test_an_older_version_refuses_where_its_description_says_so(self):
        rule = {"values": VERSION_RULE, "before": NEWER_PAGE}
        self.install(self.build(1, **rule))
        self.install(self.build(2, **rule))
        second = self.state()
        result = self.fail_to_install("setup1" + EXE)
        self.assertIn("A newer version is installed.", result.out)
        self.assertIn('Nothing was installed: the run ended on the page "Newer"', result.err)
        self.assertEqual(self.state(), second)
        self.install("setup2" + EXE)  # the same one repairs
        self.expect_version(2)
        self.uninstall()
        self.expect_as_before()

    @unittest.skipIf(WINDOWS, "the registry is the system's")
    def test_nothing_is_left_of_the_registry(self):
        self.install(self.build(1))
        self.install(self.build(2))
        self.uninstall()
        self.assertIsNone(self.registry("HKLM", "Software"))

    def test_a_volume_that_is_too_small_refuses_the_new_version(self):
        small = self.small_volume(600)
        values = f'<Value Name="SMALL" DataType="value">{self.native("small")}</Value>'
        sets = '<FileSet Name="Large"><FN Dest="[SMALL]/product">large.bin</FN></FileSet>'
        self.install(self.build(1))
        first = self.state()
        setup = self.build(2, more=sets, values=values, files={"large.bin": os.urandom(1000000)})
        result = self.fail_to_install(setup)
        self.assertIn("Nothing was installed.\n", result.err)
        self.assertRegex(result.err, r"There is too little space for \S*small\S* on the volume \S+: "
                                     r"1\d{6} bytes are needed, \d{6} are free\.")
        self.assertEqual(self.state(), first, result)
        self.assertEqual(list(small.iterdir()), [])
        self.assertEqual(self.temporary(), [])
        self.uninstall()
        self.expect_as_before()

    def small_volume(self, kilobytes):
        """A volume of its own, as far as this machine lets us mount one."""
        place = self.host("small")
        place.mkdir()
        command = ["mount", "-t", "tmpfs", "-o", f"size={kilobytes}k", "none", place]
        if not shutil.which("mount") or subprocess.run(command, capture_output=True, check=False).returncode != 0:
            self.skipTest("no volume can be mounted here")
        self.addCleanup(subprocess.run, ["umount", place], check=False)
        return place

    def forget(self, name):
        """Takes an application off the list, as a user does who tidies up by hand."""
        helper = "foreign" + EXE
        shutil.copy2(HELPERS / ("foreign_uninstaller" + EXE), self.host(helper))
        self.assertEqual(self.run_program(helper, "remove", name, "native").code, 0)
        self.host(helper).unlink()


if __name__ == "__main__":
    main()
