"""Versions 1, 2 and 3 of the sample product: upgrades, a downgrade, and what becomes of each on the machine."""

import hashlib
import pathlib
import shutil
import subprocess
import tempfile

from harness import BIN, EXE, HELPERS, TOP, EndToEndTest, main

NAME = "Tandrel Installer Tools"
UNINSTALL_KEY = "Software\\Microsoft\\Windows\\CurrentVersion\\Uninstall\\" + NAME
PRODUCT_KEY = "Software\\Tandrel\\Installer Tools"
ENVIRONMENT_KEY = "SYSTEM\\CurrentControlSet\\Control\\Session Manager\\Environment"
# No record can hold a path of this length, so the installation fails after everything else was done.
FAILING = ('<AdditionalInstall><Registry><AddValue Place="HKEY_LOCAL_MACHINE" Path="Software/Tandrel/'
           + "long" * 200 + '" Value="v">x</AddValue></Registry></AdditionalInstall>')


class SampleVersions(EndToEndTest):
    setups = {}  # of all tests: the packages that were made, by their names

    def setUp(self):
        super().setUp()
        self.before = self.state()

    # --- packages

    def build(self, version, fails=False):
        """The sample as a later version of itself: other numbers, other contents, a file that only this one has."""
        name = f"setup{version}{'-failing' if fails else ''}{EXE}"
        if name not in self.setups:
            self.make(name, version, fails)
            kept = pathlib.Path(tempfile.mkdtemp(prefix="tandrel-e2e-"))
            self.addClassCleanup(shutil.rmtree, kept, ignore_errors=True)
            self.setups[name] = shutil.copy2(self.host(name), kept)
        elif not self.host(name).exists():
            shutil.copy2(self.setups[name], self.host(name))
        return name

    def make(self, name, version, fails):
        subprocess.run([TOP / "scripts/stage-sample", BIN, self.host("stage")], check=True, timeout=60)
        text = self.read_text("stage/install.xml")
        for old, new in ((">1</MajorVersion>", f">{version}</MajorVersion>"), (">010000<", f">0{version}0000<"),
                         ("Tools 1.0.0", f"Tools {version}.0.0"),
                         ("</FileSet>", f'<FN Dest="[INSTALL_DIR]/docs">docs/news-{version}.md</FN></FileSet>'),
                         ("<StopTools>", (FAILING if fails else "") + "<StopTools>")):
            self.assertIn(old, text)
            text = text.replace(old, new, 1)
        self.write("stage/install.xml", text)
        self.write(f"stage/root/docs/news-{version}.md", f"News of version {version}\n")
        self.write("stage/root/README.md", self.readme(version))
        result = self.build_allowing("--description", self.native("stage/install.xml"), "--root",
                               self.native("stage/root"), "--image", self.native("installer" + EXE), "--output",
                               self.native(name))
        self.assertEqual(result.code, 0, result)
        shutil.rmtree(self.host("stage"))

    @staticmethod
    def readme(version):
        return f"# Version {version}\n\n" + (TOP / "README.md").read_text("utf-8")

    # --- what a user does

    def run_setup(self, name, *arguments):
        return self.run_program(name, "-auto", "-debug=1", "-VARIABLE_INSTALL_DIR=" + self.native("opt/tandrel"),
                                "-VARIABLE_MENU_DIR=" + self.native("menu"), *arguments)

    def install(self, version, *arguments):
        result = self.run_setup(self.build(version), *arguments)
        self.assertIn("The installation was successful.", result.out, result)
        self.assertEqual((result.code, result.err), (0, ""), result)
        return result

    def uninstall(self):
        helper = "run_uninstaller" + EXE
        shutil.copy2(HELPERS / helper, self.host(helper))
        result = self.run_program(helper, NAME)
        self.host(helper).unlink()
        self.wait_for_the_uninstaller()
        return result

    # --- the state of the machine

    def state(self):
        files = {}
        for top in ("opt", "menu"):
            for path in sorted(self.host(top).rglob("*")):
                name = str(path.relative_to(self.machine.root))
                files[name] = hashlib.md5(path.read_bytes()).hexdigest() if path.is_file() else None
        environment = (self.registry("HKLM", ENVIRONMENT_KEY) or {"": {}})[""]
        return {"files": files,
                "environment": {name: text for name, (_, text) in environment.items() if text and name != "PATH"},
                "path": environment.get("PATH", ("", ""))[1].strip(";"),
                "keys": [self.registry(root, key) for root, key in (
                    ("HKLM", UNINSTALL_KEY), ("HKLM", PRODUCT_KEY), ("HKCU", "Software\\Tandrel Tools"))]}

    def expect_version(self, version):
        self.assertEqual(self.read_text("opt/tandrel/README.md"), self.readme(version))
        self.assertEqual([p.name for p in sorted(self.host("opt/tandrel/docs").glob("news-*"))], [f"news-{version}.md"])
        self.assertEqual(self.registry("HKLM", UNINSTALL_KEY)[""]["DisplayVersion"], ("REG_SZ", f"{version}.0.0"))
        self.assertEqual(self.registry("HKLM", PRODUCT_KEY)[""]["Version"], ("REG_DWORD", f"0x{version}0000"))
        log = self.action_log("opt/tandrel/uninstall/install.log")
        self.assertTrue(any(f"news-{version}.md" in line for line in log), log)
        self.assertEqual([line for line in log if "news-" in line and f"news-{version}.md" not in line], [])
        setup = self.packager("verify", self.native(f"opt/tandrel/samples/hello-setup{EXE}"))
        self.assertEqual(setup.code, 0, setup)

    def expect_as_before(self):
        self.assertEqual(self.state(), self.before)
        self.assertEqual([p.name for p in self.machine.temp.iterdir() if p.name.startswith(("orin", "ori"))], [])

    def debug_log(self):
        return (self.machine.temp / "installer_debug.log").read_text("utf-8")

    # --- the tests

    def test_each_version_replaces_the_one_before_it(self):
        self.install(1)
        self.expect_version(1)
        for version in (2, 3):
            result = self.install(version)
            self.expect_version(version)
            self.assertIn("\nBack up ", result.out)
            self.assertIn(f'Uninstalling "{NAME}"', self.debug_log())
        result = self.uninstall()
        self.assertIn("The uninstall was successful.\n", result.out)
        self.expect_as_before()

    def test_a_downgrade_replaces_the_later_version(self):
        self.install(3)
        self.install(1)
        self.expect_version(1)
        self.uninstall()
        self.expect_as_before()

    def test_a_version_that_fails_leaves_the_one_before_it(self):
        self.install(2)
        self.write("opt/tandrel/README.md", "the user's own words\n")
        second = self.state()
        result = self.run_setup(self.build(3, fails=True))
        self.assertIn("There were errors during the installation.", result.out, result)
        self.assertNotIn("The installation was successful.", result.out)
        self.assertEqual(self.state(), second, result)
        self.install(3)
        self.expect_version(3)
        self.uninstall()
        self.expect_as_before()

    def test_what_the_user_added_stays_through_all_versions(self):
        self.install(1)
        self.write("opt/tandrel/docs/mine.md", "mine\n")
        for version in (2, 3):
            result = self.run_setup(self.build(version))
            self.assertIn("The installation was successful.", result.out, result)
            self.expect_contents_of(version)
        result = self.uninstall()
        self.assertEqual(self.read_text("opt/tandrel/docs/mine.md"), "mine\n")
        self.assertIn("docs", result.out + result.err)
        self.host("opt/tandrel/docs/mine.md").unlink()
        self.uninstall()
        self.expect_as_before()

    def expect_contents_of(self, version):
        self.assertEqual(self.read_text("opt/tandrel/README.md"), self.readme(version))
        self.assertEqual([p.name for p in sorted(self.host("opt/tandrel/docs").glob("news-*"))], [f"news-{version}.md"])
        self.assertEqual(self.read_text("opt/tandrel/docs/mine.md"), "mine\n")

    def test_an_upgrade_without_a_backup(self):
        self.install(1)
        result = self.install(2, "-backup=0")
        self.assertNotIn("\nBack up ", result.out)
        self.expect_version(2)
        self.uninstall()
        self.expect_as_before()


if __name__ == "__main__":
    main()
