"""packager try on real files: the sample product on its machines, with the same expectations on both systems."""

import shutil
import subprocess

from harness import BIN, TOP, EndToEndTest, main

STAND_INS = ("bin/packager", "bin/packager.exe", "bin/previewer", "bin/previewer.exe", "images/installer-linux",
             "images/installer-windows.exe")
SAMPLE_TESTS = TOP / "samples/tandrel/tests"

PRODUCT = """<TandrelGroupInstallation>
  <ProductDesc><Fullname>Many Files</Fullname><MajorVersion>1</MajorVersion><MinorVersion>0</MinorVersion>
    <MinestVersion>0</MinestVersion><Website>https://product.example</Website></ProductDesc>
  <InstallerControlVariables><InstallError>INSTALL_ERROR</InstallError></InstallerControlVariables>
  <DefValues><Value Name="INSTALL_ERROR" DataType="value">0</Value>
    <Value Name="INSTALL_DIR" DataType="value">/opt/many</Value></DefValues>
  <Dialogs><CopyProgress Special="AutoNext"/><Finish Special="Finish"/></Dialogs>
  <Installation><FileSet Name="All">%s</FileSet></Installation>
</TandrelGroupInstallation>
"""


class Try(EndToEndTest):
    def build(self, description, root):
        """A package without an image, which is the same on both systems."""
        self.write("image", "stands in for a program\n")
        result = self.packager("build", "--bin", "--description", self.native(description), "--root", self.native(root),
                               "--image", self.native("image"), "--output", self.native("package"))
        self.assertEqual(result.code, 0, result)

    def build_sample(self):
        subprocess.run([TOP / "scripts/stage-sample", BIN, self.host("stage")], check=True, timeout=60)
        for name in STAND_INS:
            self.write("stage/root/" + name, "stands in for a program\n")
        self.build("stage/install.xml", "stage/root")
        shutil.copytree(SAMPLE_TESTS, self.host("tests"))

    def attempt(self, machine, *options):
        return self.packager("try", self.native("package"), "--machine", self.native(machine), *options)

    def test_the_sample_does_what_its_expectations_say(self):
        self.build_sample()
        count = 0
        for machine in sorted(SAMPLE_TESTS.glob("*.machine")):
            count += 1
            expected = self.native(f"tests/{machine.stem}.expected")
            result = self.attempt(f"tests/{machine.name}", "--expect", expected)
            self.assertEqual((result.code, result.out, result.err), (0, "as expected\n", ""), machine.name)
            before = self.read(f"tests/{machine.stem}.expected")
            result = self.attempt(f"tests/{machine.name}", "--expect", expected, "--update")
            self.assertEqual((result.code, result.err), (0, ""), result)
            self.assertEqual(self.read(f"tests/{machine.stem}.expected"), before, machine.name)
        self.assertEqual(count, 3)

    def test_a_difference_is_shown_and_fails(self):
        self.build_sample()
        self.write("wrong.expected", "[install environment]\nTANDREL_HOME = string /elsewhere\n")
        result = self.attempt("tests/linux.machine", "--expect", self.native("wrong.expected"))
        self.assertEqual((result.code, result.err), (1, ""), result)
        self.assertIn("@@ [install environment] @@\n", result.out)
        self.assertIn("-TANDREL_HOME = string /elsewhere\n", result.out)
        self.assertIn("+TANDREL_HOME = string \\opt\\tandrel\n", result.out)

    def test_nothing_of_this_machine_is_changed(self):
        self.build_sample()
        before = self.files()
        result = self.attempt("tests/linux.machine")
        self.assertEqual((result.code, result.err), (0, ""), result)
        self.assertIn("[install result]\nsuccess\n", result.out)
        self.assertEqual(self.files(), before)

    def files(self):
        return {str(p.relative_to(self.machine.root)): p.read_bytes() if p.is_file() else None
                for p in sorted(self.machine.root.rglob("*"))}

    def test_a_package_of_many_files(self):
        names = [f"f{number}.txt" for number in range(900)]
        for name in names:
            self.write("in/" + name, f"content of {name}\n")
        self.write("many.xml", PRODUCT % "".join(f'<FN Dest="[INSTALL_DIR]">{name}</FN>' for name in names))
        self.build("many.xml", "in")
        self.write("m.machine", "[machine]\nsystem = windows\n")
        result = self.attempt("m.machine")
        self.assertEqual((result.code, result.err), (0, ""), result)
        for name in names:
            self.assertIn(f'\\opt\\many\\{name} = "content of {name}\\n"\n', result.out)

    def test_wrong_use_and_wrong_files_are_told_apart(self):
        result = self.packager("try", self.native("package"))
        self.assertEqual((result.code, result.out), (2, ""), result)
        self.write("m.machine", "[machine]\nsystem = windows\n[fils]\n")
        self.write("package", "none")
        result = self.attempt("m.machine")
        self.assertEqual((result.code, result.out), (1, ""), result)
        self.assertIn("m.machine: line 3: a machine has no section [fils]", result.err)


if __name__ == "__main__":
    main()
