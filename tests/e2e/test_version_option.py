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


if __name__ == "__main__":
    main()
