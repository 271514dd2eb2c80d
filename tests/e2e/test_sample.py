"""The sample product uses every element that changes the system: each effect is there, and none remains."""

import configparser
import hashlib
import shutil
import subprocess

from harness import BIN, EXE, HELPERS, TOP, WINDOWS, EndToEndTest, main

UNINSTALL_KEY = "Software\\Microsoft\\Windows\\CurrentVersion\\Uninstall\\Tandrel Installer Tools"
ENVIRONMENT_KEY = "SYSTEM\\CurrentControlSet\\Control\\Session Manager\\Environment"
LINK = ".lnk" if WINDOWS else ".desktop"
URL = ".url" if WINDOWS else ".desktop"
IMAGE = "installer-windows.exe" if WINDOWS else "installer-linux"


class Sample(EndToEndTest):
    def setUp(self):
        super().setUp()
        subprocess.run([TOP / "scripts/stage-sample", BIN, self.host("stage")], check=True, timeout=60)
        self.pack("install.xml")
        self.settings = ("-VARIABLE_INSTALL_DIR=" + self.native("opt/tandrel"), "-VARIABLE_MENU_DIR=" + self.native("menu"))
        # The directory in the installer's normalised form.
        self.dir = self.native("opt/tandrel").replace("/", "\\")

    def pack(self, description):
        """Makes the setup of the staged product, which is gone afterwards."""
        result = self.packager("build", "--description", self.native("stage/" + description), "--root",
                               self.native("stage/root"), "--image", self.native("installer" + EXE), "--output",
                               self.native("setup" + EXE))
        self.assertEqual(result.code, 0, result)
        shutil.rmtree(self.host("stage"))

    def install(self, *arguments):
        result = self.run_program("setup" + EXE, "-auto", *self.settings, *arguments)
        self.assertIn("The installation was successful.", result.out, result)
        return result

    def uninstall(self):
        helper = "run_uninstaller" + EXE
        shutil.copy2(HELPERS / helper, self.host(helper))
        result = self.run_program(helper, "Tandrel Installer Tools")
        self.host(helper).unlink()
        self.wait_for_the_uninstaller()
        return result

    def environment(self):
        found = self.registry("HKLM", ENVIRONMENT_KEY)
        return {name: text for name, (_, text) in found[""].items()} if found else {}

    def machine_state(self):
        """What the product may change: files and directories, and its registry keys."""
        files = {str(p.relative_to(self.machine.root)): hashlib.md5(p.read_bytes()).hexdigest() if p.is_file() else None
                 for p in sorted(self.machine.root.rglob("*"))
                 if not str(p.relative_to(self.machine.root)).startswith(("tmp/", "state/"))}
        return files, [self.registry(root, key) for root, key in (
            ("HKLM", UNINSTALL_KEY), ("HKLM", "Software\\Tandrel"), ("HKCU", "Software\\Tandrel Tools"))]

    def shown(self, name):
        return self.read(name).replace(b"\0", b"").decode("latin-1")

    def assert_environment_as_before(self, before):
        after = self.environment()
        # The separator before the appended value stays; a variable that didn't exist before stays, empty.
        for name in ("PATH", "TANDREL_SAMPLES"):
            self.assertEqual(after.pop(name, "").rstrip(";"), before.get(name, "").rstrip(";"))
        self.assertEqual(after, {n: v for n, v in before.items() if n not in ("PATH", "TANDREL_SAMPLES")})

    def test_everything_is_there_after_the_installation_and_gone_after_the_uninstallation(self):
        before, environment = self.machine_state(), self.environment()
        result = self.install()
        self.assert_files()
        self.assert_registry()
        self.assert_links()
        self.assert_variables(environment)
        self.assertIn("Noting where the tools are\n", result.out)
        self.assertIn("Making a first package of the sample\n", result.out)
        result = self.uninstall()
        self.assertIn("Removing what was made after the installation\n", result.out)
        self.assertIn("The uninstall was successful.\n", result.out)
        self.assertEqual(self.machine_state(), before)
        self.assert_environment_as_before(environment)

    def assert_files(self):
        tree = self.tree("opt/tandrel")
        hello = ["samples/hello.cmd"] if WINDOWS else []
        self.assertEqual(sorted(tree), sorted([
            "README.md", "THIRD-PARTY-LICENCES.md", f"bin/packager{EXE}", f"bin/previewer{EXE}",
            "docs/agreement.md", "docs/banner.png", "docs/getting-started.md", f"images/{IMAGE}", "samples/hello.sh",
            "samples/hello.xml", f"samples/hello-setup{EXE}", *hello, "tandrel.conf", "tandrel.conf.default",
            "tools.ini", "uninstall/appicon.png", "uninstall/backup.bin", "uninstall/getting-started.change", "uninstall/install.log",
            "uninstall/install.xml", f"uninstall/installer{EXE}"]))
        self.assertEqual(tree["tandrel.conf"], tree["tandrel.conf.default"])
        self.assertEqual(tree["THIRD-PARTY-LICENCES.md"], (TOP / "THIRD-PARTY-LICENCES.md").read_bytes())
        self.assertEqual(tree["docs/agreement.md"], (TOP / "samples/tandrel/files/texts/agreement.md").read_bytes())
        guide = self.read_text("opt/tandrel/docs/getting-started.md")
        packager = self.on_screen(self.dir) + "/bin/packager"
        self.assertTrue(guide.startswith(f"# Getting started\n\nThe packager of this machine is {packager}"), guide)
        self.assertEqual(self.packager("verify", self.native(f"opt/tandrel/samples/hello-setup{EXE}")).code, 0)
        settings = configparser.ConfigParser()
        settings.read_string(self.read_text("opt/tandrel/tools.ini"))
        self.assertEqual({name: dict(settings[name]) for name in settings.sections()}, {
            "build": {"image": f"{self.on_screen(self.dir)}/images/{IMAGE}", "level": "6"},
            "search": {"samples": f"{self.on_screen(self.dir)}/samples"}, "people": {"contact": "nobody"}})
        self.assertEqual(list(settings["build"]), ["image", "level"])

    def assert_registry(self):
        self.assertEqual(self.registry("HKLM", "Software\\Tandrel"), {"": {}, "Installer Tools": {
            "InstallDir": ("REG_SZ", self.dir), "Version": ("REG_DWORD", "0x10000"), "Formats": ("REG_BINARY", "0102"),
        }, "Installer Tools\\Products": {}})
        self.assertEqual(self.registry("HKCU", "Software\\Tandrel Tools\\Recent"), {"": {"Last": ("REG_SZ", "none")}})
        entry = self.registry("HKLM", UNINSTALL_KEY)[""]
        self.assertEqual(entry["DisplayVersion"], ("REG_SZ", "1.0.0"))
        self.assertIn(f'{self.on_screen(self.dir)}/uninstall/installer{EXE}"', entry["UninstallString"][1])

    def assert_links(self):
        self.assertEqual(set(self.tree("menu")), {f"Tandrel packager{LINK}", f"Tandrel help{URL}", f"Remove Tandrel{LINK}"})
        self.assertIn("build --help", self.shown(f"menu/Tandrel packager{LINK}"))
        self.assertIn("URL=https://tandrel.example/help", self.shown(f"menu/Tandrel help{URL}"))
        self.assertIn("-uninstall=", self.shown(f"menu/Remove Tandrel{LINK}"))

    def assert_variables(self, before):
        present = self.environment()
        self.assertEqual(present["TANDREL_HOME"], self.dir)
        self.assertEqual(present["TANDREL_SAMPLES"], self.dir + "/samples")
        earlier = before.get("PATH", "")
        self.assertEqual(present["PATH"], (earlier.rstrip(";") + ";" if earlier else "") + self.dir + "/bin")

    def test_the_variant_with_colours_of_its_own_differs_in_nothing_else(self):
        before = self.machine_state()
        self.install()
        plain = self.tree("opt/tandrel")
        self.uninstall()
        self.assertEqual(self.machine_state()[0].keys(), before[0].keys())
        subprocess.run([TOP / "scripts/stage-sample", BIN, self.host("stage")], check=True, timeout=60)
        self.pack("install-themed.xml")
        before = self.machine_state()
        self.install()
        themed = self.tree("opt/tandrel")
        self.assertEqual(themed.keys(), plain.keys())
        # The times and the size of the package differ as well.
        records = ("uninstall/install.log", "uninstall/backup.bin", f"samples/hello-setup{EXE}")
        self.assertEqual([name for name in plain if themed[name] != plain[name] and name not in records],
                         ["uninstall/install.xml"])
        self.assertIn(b"<ColourTheme>", themed["uninstall/install.xml"])
        self.uninstall()
        self.assertEqual(self.machine_state(), before)

    def test_an_unchanged_file_of_answers_installs_the_same(self):
        answers = self.native("answers.xml")
        written = self.packager("answers", self.native("setup" + EXE), "--output", answers)
        self.assertEqual((written.code, written.out, written.err), (0, "", ""))
        self.assertIn(b'<Value Name="', self.read("answers.xml"))
        states = []
        for option in ("-auto", "-configFile=" + answers):
            result = self.run_program("setup" + EXE, option, *self.settings)
            self.assertIn("nstallation was successful", result.out, result)
            self.assertEqual(result.err, "")
            log = self.action_log("opt/tandrel/uninstall/install.log")
            files, registry = self.machine_state()
            states.append(([line for line in log if line.startswith("VAR")], list(files), registry))
            self.uninstall()
        self.assertNotEqual(states[0][0], [])
        self.assertEqual(*states)

    def test_files_of_somebody_else_stay_or_are_restored(self):
        self.write("opt/tandrel/tandrel.conf", "somebody else's settings")
        self.write("opt/tandrel/README.md", "somebody else's words")
        before = self.machine_state()
        self.install()
        self.assertEqual(self.read_text("opt/tandrel/tandrel.conf"), "somebody else's settings")
        self.assertEqual(self.read("opt/tandrel/README.md"), (TOP / "README.md").read_bytes())
        self.uninstall()
        self.assertEqual(self.machine_state(), before)

    def test_no_document_and_no_port_is_opened_unless_requested(self):
        result = self.install("-debug=1")
        self.assertNotIn("Firewall", result.out)
        log = (self.machine.temp / "installer_debug.log").read_text("utf-8")
        self.assertNotIn(" opened : ", log)
        self.uninstall()


if __name__ == "__main__":
    main()
