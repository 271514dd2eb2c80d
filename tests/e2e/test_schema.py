"""packager schema: what it prints is a schema, right descriptions are valid by it, and wrong ones aren't."""

import re
import subprocess

import manual_pages
from harness import TIMEOUT, TOP, EndToEndTest, main

SAMPLES = [TOP / "samples/tandrel/install.xml", TOP / "samples/tandrel/files/samples/hello.xml"]
HEAD = "<ProductDesc><Fullname>A</Fullname></ProductDesc>"


class Schema(EndToEndTest):
    def setUp(self):
        super().setUp()
        result = self.packager("schema")
        self.assertEqual(result.code, 0, result)
        self.schema = self.write("install.xsd", result.out)

    def validation(self, text):
        """What xmllint says about a description; empty when it is valid."""
        path = self.write("description.xml", text)
        done = subprocess.run(["xmllint", "--noout", "--schema", str(self.schema), str(path)], timeout=TIMEOUT,
                              capture_output=True, text=True, check=False)
        self.assertIn(done.returncode, (0, 3), done.stderr)  # 3: invalid; others: no schema, no XML
        return "" if done.returncode == 0 else done.stderr

    def of_content(self, content):
        return self.validation(f"<TandrelGroupInstallation>{HEAD}{content}</TandrelGroupInstallation>")

    def of_page(self, content):
        return self.of_content(f"<Dialogs><Mine>{content}</Mine></Dialogs>")

    def test_the_samples_are_valid(self):
        for sample in SAMPLES:
            with self.subTest(sample.name):
                self.assertEqual(self.validation(sample.read_text("utf-8")), "")

    def test_whole_descriptions_of_the_manual_are_valid(self):
        count = 0
        for page in sorted((TOP / "docs/manual").glob("*.md")):
            for block in manual_pages.blocks(page.read_text("utf-8")):
                whole = block.text.startswith("<TandrelGroupInstallation>") and "finding" not in block.values
                if block.language == "xml" and whole and "<ProductDesc>" in block.text:
                    count += 1
                    with self.subTest(f"{page.name}:{block.line}"):
                        self.assertEqual(self.validation(block.text), "")
        self.assertGreaterEqual(count, 4)

    def test_examples_of_sections_are_valid(self):
        count = 0
        sections = ("DefValues", "Dialogs", "Installation", "FileSet", "Environment", "IniFiles", "Shortcuts",
                    "ColourTheme", "ModifyFiles", "Firewall", "UninstallWildcards", "AdditionalInstall")
        for page in sorted((TOP / "docs/manual").glob("*.md")):
            for block in manual_pages.blocks(page.read_text("utf-8")):
                name = re.match(r"\s*<(\w+)", block.text)
                if block.language == "xml" and "finding" not in block.values and name and name.group(1) in sections:
                    count += 1
                    with self.subTest(f"{page.name}:{block.line}"):
                        self.assertEqual(self.of_content(block.text), "")
        self.assertGreaterEqual(count, 12)

    def test_a_description_can_name_its_schema(self):
        self.assertEqual(self.validation(
            '<TandrelGroupInstallation xmlns:xsi="http://www.w3.org/2001/XMLSchema-instance" '
            f'xsi:noNamespaceSchemaLocation="install.xsd">{HEAD}</TandrelGroupInstallation>'), "")

    def test_names_of_authors_are_free(self):
        self.assertEqual(self.of_content("<Dialogs><Mine><Text x='1' y='2'>a</Text></Mine></Dialogs>"), "")
        self.assertEqual(self.of_content("<Dialogs><F Special='HasSubDialogs'><TaskList><CopyProgress CurrentLabel='a'/>"
                                         "</TaskList><SubDialogs><CopyProgress/></SubDialogs></F></Dialogs>"), "")
        self.assertEqual(self.of_content("<Installation><Mine><RunProgram>[A]/b</RunProgram></Mine></Installation>"), "")
        self.assertEqual(self.of_content("<InstallerExcludeVariables><Any ExcludeFrom='log'>A</Any>"
                                         "</InstallerExcludeVariables>"), "")
        self.assertEqual(self.of_content("<UninstallWildcards><Any Dest='[A]'>*.tmp</Any></UninstallWildcards>"), "")

    def test_words_may_have_any_case_where_a_setup_takes_any(self):
        for content in ("<Field Type='editbox'>A</Field>", "<Text x='1' y='2' HAlign='LEFT'>a</Text>",
                        "<Trigger EvaluateOn='start;End' Type='varreset' Variable='A'/>"):
            with self.subTest(content):
                self.assertEqual(self.of_page(content), "")

    def test_mistakes_are_not_valid(self):
        for content in ("<Dialog/>", "<FileSet/>", "<FileSet Name='a' Sort='1'/>", "<FileSet Name='a'>text</FileSet>",
                        "<FileSet Name='a'><FN/></FileSet>", "<FileSet Name='a'><File>b</File></FileSet>",
                        "<Firewall><Port Port='70000'>a</Port></Firewall>",
                        "<Firewall><Port Port='80' Protocol='tcp'>a</Port></Firewall>",
                        "<ColourTheme><ButtonsText>red</ButtonsText></ColourTheme>",
                        "<DefValues><Value Name='A' DataType='text'>b</Value></DefValues>",
                        "<Installation><FileSet/></Installation>", "<Dialogs><Finish Spezial='Finish'/></Dialogs>"):
            with self.subTest(content):
                self.assertNotEqual(self.of_content(content), "")
        for content in ("<Field Type='Tickbox'>A</Field>", "<Text x='left' y='2'>a</Text>", "<Text y='2'>a</Text>",
                        "<Trigger EvaluateOn='Often' Variable='A'/>", "<Button x='1' y='2' Name='Nxt'>a</Button>"):
            with self.subTest(content):
                self.assertNotEqual(self.of_page(content), "")


if __name__ == "__main__":
    main()
