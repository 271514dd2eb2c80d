"""Another version of the sample product over an earlier one, in its window, and an installation that fails."""

from harness import EXE, main
from sample_window import SampleInWindow

# No record can hold a path of this length, so the installation fails after everything else was done.
FAILING = ('<AddKey Place="HKEY_LOCAL_MACHINE" Path="Software/Tandrel/Installer Tools/Products"/>',
           '<AddKey Place="HKEY_LOCAL_MACHINE" Path="Software/Tandrel/' + "long" * 300 + '"/>')


def replaced(text, *pairs):
    for old, new in pairs:
        assert old in text, old
        text = text.replace(old, new, 1)
    return text


def earlier_version(text, root):
    """One file more, and one that changes later."""
    (root / "old.txt").write_text("Only the earlier version has this.\n")
    (root / "samples/hello.sh").write_text("# of the earlier version\n")
    return replaced(text, ("<MajorVersion>1<", "<MajorVersion>0<"), ("<MinorVersion>0<", "<MinorVersion>9<"),
                    ('<FN Dest="[INSTALL_DIR]">THIRD-PARTY-LICENCES.md</FN>',
                     '<FN Dest="[INSTALL_DIR]">THIRD-PARTY-LICENCES.md</FN><FN Dest="[INSTALL_DIR]">old.txt</FN>'))


def failing_version(text, root):
    return replaced(text, FAILING)


class Upgrading(SampleInWindow):
    def setUp(self):
        super().setUp()
        self.before = self.state()

    def install_the_earlier_version(self):
        self.pack(self.description, "earlier", earlier_version)
        result = self.run_program("earlier" + EXE, "-auto", *self.settings)
        self.assertEqual(result.code, 0, result)
        self.assertTrue(self.host("opt/tandrel/old.txt").exists())
        self.host("earlier" + EXE).unlink()

    def walk_over_it(self, setup):
        """To the page of the earlier version, which is shown only because there is one, and on."""
        self.walk_to(setup, "settings")
        setup.click("Next")
        view = self.at_earlier(setup)
        self.assertIn("Earlier version: current", view.one("list").description.split("\n"))
        self.assertTrue(view.one("check box", "Remove the earlier version first").checked)
        setup.click("Next")
        self.at_summary(setup)
        setup.click("Install")

    def product(self):
        """What counts for its user: the records of an installation differ from those of another one."""
        files, keys = self.state()
        records = ("uninstall/install.log", "uninstall/backup.bin", "samples/hello-setup" + EXE)
        return {name: data for name, data in files.items() if not name.endswith(records)}, keys

    def test_the_new_version_takes_the_place_of_the_earlier_one(self):
        self.install_the_earlier_version()
        setup = self.open_setup()
        self.walk_over_it(setup)
        self.at_end(setup)
        setup.click("Finish")
        self.assert_ended_well(setup)
        self.assert_installed()
        self.assertFalse(self.host("opt/tandrel/old.txt").exists())
        self.assertNotIn("of the earlier version", self.read_text("opt/tandrel/samples/hello.sh"))
        self.assertEqual(self.state()[1][0][""]["DisplayVersion"], ("REG_SZ", "1.0.0"))
        self.remove_with_the_mouse(self.before)

    def test_a_failed_installation_is_taken_back_and_says_why(self):
        self.write("opt/tandrel/README.md/in the way", "")
        self.before = self.state()
        setup = self.open_setup()
        self.walk_to(setup, "summary")
        setup.click("Install")
        view = self.leave_after_the_failure(setup)
        self.assertIn("README.md", view.one("lines").text)
        self.assertEqual(self.state(), self.before)

    def test_after_a_failed_upgrade_the_earlier_version_is_back(self):
        self.pack(self.description, edit=failing_version)
        self.before = self.state()
        self.install_the_earlier_version()
        installed = self.product()
        setup = self.open_setup()
        self.walk_over_it(setup)
        self.leave_after_the_failure(setup)
        self.assertEqual(self.product(), installed)
        self.remove_with_the_mouse(self.before)

    def leave_after_the_failure(self, setup):
        view = setup.page("There were errors during the installation.", "Close")
        self.assertFalse(view.has("button", "Finish"))
        setup.click("Close")
        self.assertEqual(setup.end()[0], 0)
        return view


if __name__ == "__main__":
    main()
