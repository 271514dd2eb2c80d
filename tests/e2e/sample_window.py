"""The sample product for the tests of the window: its pages, and what it changes on a machine."""

import pathlib
import shutil
import subprocess
import tempfile

from harness import BIN, EXE, TIMEOUT, TOP
from window import Window, WindowTest

NAME = "Tandrel Installer Tools"
UNINSTALL_KEY = "Software\\Microsoft\\Windows\\CurrentVersion\\Uninstall\\" + NAME
KEYS = (("HKLM", UNINSTALL_KEY), ("HKLM", "Software\\Tandrel"), ("HKCU", "Software\\Tandrel Tools"))
FOLDER = tempfile.TemporaryDirectory(prefix="tandrel-e2e-")
SETUPS = {}  # made once for all tests of a file


class SampleInWindow(WindowTest):
    description = "install.xml"

    def setUp(self):
        super().setUp()
        self.pack(self.description)
        self.addCleanup(self.remove_what_is_left)
        self.settings = ("-VARIABLE_INSTALL_DIR=" + self.native("opt/tandrel"), "-VARIABLE_MENU_DIR=" + self.native("menu"))

    def pack(self, description, output="setup", edit=None):
        """Puts the setup of one of the sample's descriptions on the machine. `edit` changes the description (text to text) and
        the product's files (a directory) before, and makes another setup of it."""
        name = description if edit is None else edit.__name__
        if name not in SETUPS:
            subprocess.run([TOP / "scripts/stage-sample", BIN, self.host("stage")], check=True, timeout=TIMEOUT)
            if edit is not None:
                text = self.read("stage/" + description).decode("utf-8")
                self.write("stage/" + description, edit(text, self.host("stage/root")))
            result = self.build_allowing("--description", self.native("stage/" + description), "--root",
                                   self.native("stage/root"), "--image", self.native("installer" + EXE), "--level", "1",
                                   "--output", self.native("packed" + EXE))
            self.assertEqual(result.code, 0, result)
            shutil.rmtree(self.host("stage"))
            SETUPS[name] = shutil.move(self.host("packed" + EXE), pathlib.Path(FOLDER.name) / name)
        shutil.copy2(SETUPS[name], self.host(output + EXE))

    def open_setup(self, *arguments, env=None, name="setup"):
        return Window(self, name + EXE, *self.settings, *arguments, env=env)

    def open_removal(self, *arguments, env=None):
        """As its link in the menu does."""
        return Window(self, "opt/tandrel/uninstall/installer" + EXE,
                      "-uninstall=" + self.native("opt/tandrel/uninstall/install.log"), "-uninstallApp=" + NAME, *arguments,
                      env=env)

    def remove_what_is_left(self):
        """The tests of a file share what Windows knows of its products."""
        if self.host("opt/tandrel/uninstall/install.log").exists():
            self.run_program("opt/tandrel/uninstall/installer" + EXE,
                             "-uninstall=" + self.native("opt/tandrel/uninstall/install.log"), "-uninstallApp=" + NAME, "-auto")
            self.wait_for_the_uninstaller()

    def state(self):
        """What the product may change."""
        files = {str(p.relative_to(self.machine.root)): p.read_bytes() if p.is_file() else None
                 for p in sorted(self.machine.root.rglob("*"))
                 if not str(p.relative_to(self.machine.root)).startswith(("tmp", "state"))}
        return files, [self.registry(root, key) for root, key in KEYS]

    def assert_installed(self):
        tree = self.tree("opt/tandrel")
        for name in (f"bin/packager{EXE}", "README.md", "docs/agreement.md", "samples/hello.xml", "uninstall/install.log",
                     f"samples/hello-setup{EXE}", f"uninstall/installer{EXE}", "tools.ini", "tandrel.conf.default"):
            self.assertIn(name, tree)
        self.assertEqual(tree["docs/agreement.md"], (TOP / "samples/tandrel/files/texts/agreement.md").read_bytes())
        self.assertIsNotNone(self.registry("HKLM", UNINSTALL_KEY))
        self.assertEqual(len(self.tree("menu")), 3)
        self.assertEqual(self.packager("verify", self.native(f"opt/tandrel/samples/hello-setup{EXE}")).code, 0)

    def assert_ended_well(self, setup):
        code, output = setup.end()
        self.assertEqual(code, 0)
        # The only program that the installation runs.
        self.assertRegex(output, r"\Ahello-setup(\.exe)?: 2 files, \d+ bytes packed into \d+\n\Z")

    def assert_removed(self, removal, before):
        self.assertEqual(removal.end(), (0, ""))
        self.wait_for_the_uninstaller()
        self.assertEqual(self.state(), before)

    def remove_with_the_mouse(self, before):
        """Afterwards the machine is as it was in the state `before`."""
        removal = self.open_removal()
        self.at_farewell(removal)
        removal.click("Remove")
        self.at_removed(removal)
        removal.click("Finish")
        self.assert_removed(removal, before)

    # --- the pages

    # Names of the pages of the installation, and the button that leads from each to the next.
    PAGES = (("welcome", "Next"), ("agreement", "I agree"), ("notes", "Next"), ("settings", "Next"), ("parts", "Next"),
             ("summary", "Install"))

    def at(self, page, window):
        return getattr(self, "at_" + page)(window)

    def walk_to(self, setup, end, chooses=False):
        """With the mouse, up to a page. The one with the parts is shown only to those who choose them."""
        for page, forward in self.PAGES:
            if page == "parts" and not chooses:
                continue
            self.at(page, setup)
            if page == end:
                return
            if page == "settings" and chooses:
                setup.choose("Set-up: Choose the parts", role="radio button")
            setup.click(forward)

    def walk_with_the_mouse(self, setup):
        self.walk_to(setup, "summary")
        setup.click("Install")
        self.at_end(setup)
        setup.click("Finish")

    def at_welcome(self, setup):
        return setup.page("Nothing on it is changed before you press Install.", "Next")

    def at_agreement(self, setup):
        return setup.page("I agree")

    def at_notes(self, setup):
        return setup.page("Next", "Back", "TaskList")

    def at_settings(self, setup):
        return setup.page("What should be installed, and where?")

    def at_parts(self, setup):
        return setup.page("Install the samples")

    def at_earlier(self, setup):
        return setup.page("Remove the earlier version first")

    def at_summary(self, setup):
        return setup.page("Everything is ready to be installed.")

    def at_running(self, window):
        """In an installation as well as in a removal."""
        return window.page("The packager must not be running.")

    def at_end(self, setup):
        return setup.page("Tandrel Installer Tools are installed.", "Finish")

    def at_farewell(self, removal):
        return removal.page("This removes Tandrel Installer Tools\nand undoes everything that they changed on this machine.")

    def at_removed(self, removal):
        return removal.page("Tandrel Installer Tools are removed.", "Finish")
