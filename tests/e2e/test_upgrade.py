"""Versions of a product that follow each other: what an upgrade removes and keeps, and what a revert brings back."""

import os
import shutil
import stat
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
 <Value Name="INSTALL_ERROR" DataType="value">0</Value>
 <Value Name="UNINSTALL_ERROR" DataType="value">0</Value>
 <Value Name="SHOULD_UNINSTALL" DataType="value">0</Value>
 <Value Name="DIR" DataType="value" UseOld="1">{directory}</Value>
 <Value Name="SHARED" DataType="value">{shared}</Value>
 <Value Name="COLOUR" DataType="value" UseOld="1">grey</Value>
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

    def build(self, version, *, name="Product", directory="opt/product", more="", pages=REVERT, output=None, **texts):
        texts = {"former": "", "before": "", "logs": "", "overrides": "", **texts}
        sets = SETS.format(version=version, link=LINK) + more
        text = DESCRIPTION.format(name=name, version=version, directory=self.native(directory), exe=EXE,
                                  shared=self.native("shared"), sets=sets, pages=pages, **texts)
        setup = self.build_package(text, files_of(version), output=(output or f"setup{version}") + EXE)
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
                                   if not p.name.startswith("registry.db") and p.is_file()}

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
        self.wait_until(lambda: not list(self.machine.temp.glob("ormeluninst-*/ormeluninst.log")))
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


if __name__ == "__main__":
    main()
