"""What the programs say of themselves."""

from descriptions import description
from harness import EXE, EndToEndTest, main

LINE = r"^Tandrel {} [0-9]+\.[0-9]+\.[0-9]+, revision [0-9a-f]{{12}}\n$"


class VersionOption(EndToEndTest):
    def assert_version(self, program, result):
        self.assertEqual((result.code, result.err), (0, ""), result)
        self.assertRegex(result.out, LINE.format(program))

    def test_the_packager_says_its_version(self):
        self.assert_version("packager", self.packager("--version"))

    def test_an_installer_says_its_version_and_leaves_nothing(self):
        setup = self.build_package(description(self.native("opt"), ""), {})
        before = self.tree(".")
        for program in (setup, "installer" + EXE):
            for option in ("-version", "--version"):
                self.assert_version("installer", self.run_program(program, option, "-debug=4"))
        self.assertEqual(self.tree("."), before)

    def test_a_product_may_have_an_option_of_that_name(self):
        values = '<Value Name="VERSION" DataType="cmdlinearg">none</Value>'
        sets = '<FileSet Name="A"><FN Dest="[DIR]" ExpandVarsInFile="1">note.txt</FN></FileSet>'
        setup = self.build_package(description(self.native("opt"), sets, values=values), {"note.txt": "[VERSION]"})
        result = self.run_program(setup, "-version", "-auto")
        self.assertEqual(result.code, 0, result)
        self.assertEqual(self.read_text("opt/note.txt"), "1")


class HelpOption(EndToEndTest):
    def test_a_setup_explains_itself_and_leaves_nothing(self):
        values = '<Value Name="SPEED" DataType="value">\u009b1m12</Value><Value Name="SECRET" DataType="value">xyzzy</Value>'
        pages = ('<Ask><Field Type="EditBox" Label="How fast" x="1" y="1">SPEED</Field>'
                 '<Field Type="Password" Label="Password" x="1" y="9">SECRET</Field></Ask>')
        setup = self.build_package(description(self.native("opt"), "", pages, values=values), {})
        before = self.tree(".")
        for option in ("-help", "--help", "-h", "-?"):
            result = self.run_program(setup, option, "-debug=4")
            self.assertEqual((result.code, result.err), (0, ""), result)
            self.assertIn("This is the setup of Test Product", result.out)
            self.assertIn("  -configFile=FILE\n", result.out)
            self.assertIn('  SPEED\n      How fast\n      default: "?1m12"\n', result.out)
            self.assertIn("  SECRET\n      Password\n", result.out)
            self.assertNotIn("xyzzy", result.out)
        self.assertEqual(self.tree("."), before)

    def test_the_bare_image_explains_itself(self):
        result = self.run_program("installer" + EXE, "-help")
        self.assertEqual((result.code, result.err), (0, ""), result)
        self.assertIn("without a package", result.out)


if __name__ == "__main__":
    main()
