"""What the programs print of texts that others wrote."""

import unittest

from descriptions import description
from harness import WINDOWS, EndToEndTest, main

# Clears the screen, sets the title of the window, a control character of one byte and of two, and reads backwards.
HOSTILE = "a\x1b[2Jb\x1b]0;title\x07c\x7fd\u009b1mE\u202ef\u2066g\u200fh"
SHOWN = "a?[2Jb?]0;title?c?d?1mE?f?g?h"
FORBIDDEN = [chr(c) for c in (*range(0, 9), 11, 12, *range(14, 32), *range(0x7F, 0xA0), 0x61C, 0x200E, 0x200F,
                              *range(0x2028, 0x202F), *range(0x2066, 0x206A))]
SETS = '<FileSet Name="A"><FN Dest="[DIR]">one.txt</FN><FN Alias="Doc">doc.md</FN></FileSet>'
PAGES = ('<Welcome><Text x="1" y="1">Text {0}</Text><PlainEditText x="1" y="1" Format="TandrelMarkdown">Doc'
         '</PlainEditText></Welcome><Ask><Field Type="EditBox" Label="Label {0}" x="1" y="1">NAME</Field></Ask>')


class Screen(EndToEndTest):
    def assert_harmless(self, text):
        self.assertEqual([c for c in FORBIDDEN if c in text], [], repr(text))

    def build(self):
        # An XML document can't hold every control character as such; this reader takes them all.
        pages = PAGES.format(HOSTILE)
        values = f'<Value Name="NAME" DataType="value">{HOSTILE}</Value>'
        return self.build_package(description(self.native("opt"), SETS, pages, values),
                                  {"one.txt": "1", "doc.md": f"Document {HOSTILE} end\n\n"})

    def test_a_setup_shows_hostile_texts_harmlessly_in_a_pipe(self):
        setup = self.build()
        result = self.run_program(setup, "-gui=0", stdin="\n" * 20)
        self.assert_harmless(result.out + result.err)
        for text in (f"Text {SHOWN}\n", f"Document {SHOWN} end\n", f"Label {SHOWN} [{SHOWN}]:"):
            self.assertIn(text, result.out, result)
        self.assertIn("It worked.", result.out, result)

    @unittest.skipIf(WINDOWS, "Wine's console adds sequences of its own")
    def test_a_setup_shows_hostile_texts_harmlessly_on_a_terminal(self):
        terminal = self.open_terminal(self.build(), "-gui=0")
        for prompt in ("Press Enter to continue...", "Press ENTER for the next page..."):
            terminal.expect(prompt)
            terminal.type("\n")
        terminal.expect(f"Label {SHOWN} [{SHOWN}]:")
        terminal.type("\n")
        terminal.rest()
        self.assert_harmless(terminal.text().replace("\r" + " " * 78 + "\r", ""))
        self.assertIn(f"Document {SHOWN} end\n", terminal.text())

    def test_the_packager_shows_hostile_documents_and_names_harmlessly(self):
        self.write("doc.md", f"Document {HOSTILE} end\n\nx ** y {HOSTILE}\n")
        result = self.packager("text", self.native("doc.md"), "--tree")
        self.assertEqual(result.code, 1, result)
        self.assert_harmless(result.out + result.err)
        self.assertIn(f"Document {SHOWN} end\n", result.out)
        result = self.packager("text", f"no {HOSTILE}")
        self.assert_harmless(result.out + result.err)
        self.assertIn(f"no {SHOWN}", result.err)

    @unittest.skipIf(WINDOWS, "no file has such a name there")
    def test_the_packager_lists_hostile_names_harmlessly(self):
        name = "n\x1b[2J\u202exe.txt"
        sets = f'<FileSet Name="A"><FN Dest="x">{name}</FN></FileSet>'
        setup = self.build_package(description(self.native("opt"), sets), {name: "1"})
        result = self.packager("list", self.native(setup))
        self.assert_harmless(result.out)
        self.assertIn("n?[2J?xe.txt", result.out)


class Losses(EndToEndTest):
    """What a setup leaves out of documents is said to their author."""

    RICH_TEXT = "{\\rtf1 caf\\'e9\\par\n{\\b bold} text\\par}"
    MARKDOWN = "3. three\n4. four\n\ntext\n# Heading\n\n"
    FOUND = {"doc.rtf": ["line 1: left out: \\'e9: ", "line 2: left out: {\\b bold}: "],
             "doc.md": ["line 1: this item isn't shown with its own number", "line 5: this heading is shown as text"]}

    def assert_named(self, err):
        for name, places in self.FOUND.items():
            for place in places:
                self.assertRegex(err, r"packager: warning: [^\n]*" + name.replace(".", r"\.") + ": ")
                self.assertIn(f"{name}: {place}", err)

    def test_text_and_build_name_each_loss_with_its_line(self):
        files = {"doc.rtf": self.RICH_TEXT, "doc.md": self.MARKDOWN}
        texts = []
        for name, content in files.items():
            self.write(name, content)
            result = self.packager("text", self.native(name))
            self.assertEqual(result.code, 0, result)
            texts.append(result)
        self.assert_named(texts[0].err + texts[1].err)
        self.assertEqual(texts[0].out, "caf\ntext\n")
        self.assertIn("1. three\n", texts[1].out)

        self.write("stage/install.xml", description(
            self.native("opt"), '<FileSet Name="A"><FN>doc.rtf</FN><FN>doc.md</FN></FileSet>',
            '<A><RichEditText x="1" y="1">doc.rtf</RichEditText>'
            '<RichEditText x="1" y="1" Format="TandrelMarkdown">doc.md</RichEditText></A>'))
        for name, content in files.items():
            self.write("stage/root/" + name, content)
        result = self.build_allowing("--description", self.native("stage/install.xml"), "--root",
                               self.native("stage/root"), "--bin", "--output", self.native("out.bin"))
        self.assertEqual(result.code, 0, result)
        self.assert_named(result.err)


PATH_SETS = """
<FileSet Name="A"><FN Dest="[DIR]" ExpandVarsInFile="1">one.conf</FN><FN Dest="[BIN]" Executable="1">show.sh</FN>
</FileSet>
<IniFiles><Add FileName="[DIR]/x.ini" Section="S" Key="dir">[BIN]</Add>
<Add FileName="[DIR]/x.ini" Section="S" Key="text">a\\nb \\d [RE]</Add></IniFiles>
<AdditionalInstall><RunProgram Wait="1==1" Arguments="[DIR]/out.txt [BIN]/x [RE] \\n" Log="Run in [DIR]">[BIN]/show.sh
</RunProgram></AdditionalInstall>
"""
PATH_VALUES = ('<Value Name="BIN" DataType="value" Recalculate="1">$DIR\\bin</Value>'
               '<Value Name="RE" DataType="value">\\w\\s</Value>')
PATH_PAGES = '<Ask><Field Type="Directory" Label="Where" x="1" y="1">DIR</Field></Ask>'
PATH_FILES = {"one.conf": "dir=[DIR]\nbin=[BIN]\nre=[RE]\ntext=\\n \\\\server\\share\n",
              "show.sh": '#!/bin/sh\nfile=$1\nprintf "%s\\n" "$0" "$@" > "$file"\n'}


@unittest.skipIf(WINDOWS, "the form of paths there is the program's own")
class Paths(EndToEndTest):
    """What leaves the program is written as Linux writes paths."""

    def install(self):
        text = description(self.native("opt"), PATH_SETS, PATH_PAGES, PATH_VALUES,
                           late="<RegisterApplication/>", farewell='<CopyProgress Special="AutoNext"/>')
        self.setup = self.build_package(text, PATH_FILES)
        return self.run_program(self.setup, "-gui=0", stdin="\n" * 5)

    def test_what_leaves_has_slashes_and_what_is_no_path_stays(self):
        result = self.install()
        directory = self.native("opt")
        self.assertIn("It worked.", result.out, result)
        self.assertEqual(self.read_text("opt/one.conf"),
                         f"dir={directory}\nbin={directory}/bin\nre=\\w\\s\ntext=\\n \\\\server\\share\n")
        ini = self.read_text("opt/x.ini")
        self.assertIn(f"dir={directory}/bin\n", ini)
        self.assertIn("text=a\\nb \\d \\w\\s\n", ini)
        self.assertEqual(self.read_text("opt/out.txt").split("\n"),
                         [f"{directory}/bin/show.sh", f"{directory}/out.txt", f"{directory}/bin/x", "\\w\\s",
                          "\\n", ""])
        self.assertNotIn("\\", result.out, result)
        for line in (f"Where [{directory}]:", f"Create {directory}/one.conf\n", f"Run in {directory}\n"):
            self.assertIn(line, result.out, result)

    def test_the_log_keeps_its_form_and_the_registered_command_does_not(self):
        self.install()
        own = self.native("opt").replace("/", "\\")
        log = "\n".join(self.action_log("opt/un/install.log"))
        self.assertIn(f"FILE\tCREATE\t{own}\\one.conf", log)
        entry = self.registry("HKLM", r"Software\Microsoft\Windows\CurrentVersion\Uninstall\Test Product")[""]
        directory = self.native("opt")
        self.assertEqual(entry["UninstallString"][1],
                         f'"{directory}/un/installer" -uninstall="{directory}/un/install.log"'
                         ' -uninstallApp="Test Product"')

    def test_an_uninstallation_shows_paths_in_the_same_form(self):
        self.install()
        self.write("copy.log", self.read("opt/un/install.log"))
        result = self.run_program("installer", f"-uninstallFile={self.native('copy.log')}",
                                  "-uninstallApp=Test Product", "-gui=0")
        self.assertIn(f"Delete {self.native('opt/one.conf')}\n", result.out, result)
        self.assertNotIn("\\", result.out, result)


if __name__ == "__main__":
    main()
