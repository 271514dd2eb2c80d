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
        setup = self.build_package(description(self.native("opt"), f'<FileSet Name="A"><FN Dest="x">{name}</FN></FileSet>'),
                                   {name: "1"})
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
        result = self.packager("build", "--description", self.native("stage/install.xml"), "--root",
                               self.native("stage/root"), "--bin", "--output", self.native("out.bin"))
        self.assertEqual(result.code, 0, result)
        self.assert_named(result.err)


if __name__ == "__main__":
    main()
