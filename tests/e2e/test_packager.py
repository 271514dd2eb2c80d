"""The packager's commands on real files."""

import hashlib

from descriptions import description
from harness import EXE, WINDOWS, EndToEndTest, main

SETS = ('<FileSet Name="A"><FN Dest="[DIR]">a/b/c.txt</FN><FN Dest="[DIR]" Alias="Pic">pic.png</FN>'
        '<FN Dest="[DIR]" Executable="1">installer.exe</FN><FN Dest="[DIR]">empty</FN>'
        '<FN Dest="[DIR]">\u00fcml\u00e4ut \u4e2d.txt</FN></FileSet>')
FILES = {"a/b/c.txt": "content of c\n", "pic.png": b"\x89PNG\r\n\x1a\n1234", "empty": b"",
         "\u00fcml\u00e4ut \u4e2d.txt": "UTF-8"}


class Packager(EndToEndTest):
    def setUp(self):
        super().setUp()
        self.text = description("/x", SETS)
        self.package = self.build_package(self.text, FILES)

    def test_list_shows_every_entry(self):
        result = self.packager("list", self.native(self.package))
        self.assertEqual(result.code, 0, result)
        for text in ("install.xml", "abc.txt", "Pic", "UninstallXml", "installer.exe", "empty",
                     hashlib.md5(b"content of c\n").hexdigest()):
            self.assertIn(text, result.out)

    def test_list_shows_where_files_are_installed(self):
        result = self.packager("list", self.native(self.package))
        rows = [line.split("\t") for line in result.out.splitlines()]
        self.assertEqual(rows[0], ["size", "stored", "MD5", "name", "alias", "destination", "condition"])
        places = {row[4]: row[5:] for row in rows[1:]}
        self.assertEqual(places["Pic"], ["[DIR]", ""])
        self.assertEqual(places["install.xml"], ["", ""])
        self.assertEqual(places["UninstallXml"], ["[DIR]/un", ""])

    def test_verify_accepts_a_good_package_and_rejects_a_bad_one(self):
        self.assertEqual(self.packager("verify", self.native(self.package)).code, 0)
        data = bytearray(self.read(self.package))
        data[-200] ^= 0x40
        self.write("bad" + EXE, bytes(data))
        result = self.packager("verify", self.native("bad" + EXE))
        self.assertEqual(result.code, 1, result)
        self.assertNotEqual(result.err, "", result)

    def test_extract_gives_the_files_back(self):
        self.host("out").mkdir()
        result = self.packager("extract", self.native(self.package), "--to", self.native("out"))
        self.assertEqual(result.code, 0, result)
        tree = self.tree("out")
        self.assertEqual(tree["c.txt"], b"content of c\n")
        self.assertEqual(tree["pic.png"], FILES["pic.png"])
        self.assertEqual(tree["empty"], b"")
        self.assertEqual(tree["install.xml"], self.text.encode())
        self.assertEqual(tree["\u00fcml\u00e4ut \u4e2d.txt"], b"UTF-8")

    def test_extract_rebuilds_the_tree(self):
        result = self.packager("extract", self.native(self.package), "--to", self.native("out"), "--tree")
        self.assertEqual((result.code, result.err), (0, ""), result)
        tree = self.tree("out")
        names = ("c.txt", "pic.png", "installer.exe", "empty", "\u00fcml\u00e4ut \u4e2d.txt", "un/install.xml")
        self.assertEqual(set(tree), {"DIR/" + name for name in names} | {"(packed only)/install.xml"})
        self.assertEqual(tree["DIR/c.txt"], b"content of c\n")
        if not WINDOWS:
            self.assertEqual(self.host("out/DIR/installer.exe").stat().st_mode & 0o111, 0o111)
            self.assertEqual(self.host("out/DIR/c.txt").stat().st_mode & 0o111, 0)

    def test_a_tree_stays_below_its_directory(self):
        sets = '<FileSet Name="A"><FN Dest="../../[DIR]/..">one.txt</FN><FN Dest="/sub">two.txt</FN></FileSet>'
        package = self.build_package(description("/x", sets), {"one.txt": "1", "two.txt": "2"})
        before = self.tree(".")
        result = self.packager("extract", self.native(package), "--to", self.native("deep/out"), "--tree", "one.txt",
                               "two.txt")
        self.assertEqual(result.code, 0, result)
        self.assertEqual(self.tree("deep/out"), {"__/__/DIR/__/one.txt": b"1", "sub/two.txt": b"2"})
        self.assertEqual({k: v for k, v in self.tree(".").items() if not k.startswith("deep/")}, before)

    def test_extract_takes_aliases(self):
        self.host("out").mkdir()
        result = self.packager("extract", self.native(self.package), "--to", self.native("out"), "Pic")
        self.assertEqual(result.code, 0, result)
        self.assertEqual(set(self.tree("out")), {"pic.png"})

    def test_the_named_bare_image_is_the_image_itself(self):
        self.host("out").mkdir()
        self.packager("extract", self.native(self.package), "--to", self.native("out"), "installer.exe")
        self.assertEqual(self.read("out/installer.exe"), self.read("installer" + EXE))

    def test_mistakes_are_reported_and_leave_no_output(self):
        cases = {
            "a missing file": '<FileSet Name="A"><FN Dest="x">nowhere.txt</FN></FileSet>',
            "a duplicate alias": '<FileSet Name="A"><FN Alias="P">pic.png</FN><FN Alias="P">empty</FN></FileSet>',
            "a path out of the root": '<FileSet Name="A"><FN>../../install.xml</FN></FileSet>',
        }
        for name, sets in cases.items():
            self.write("stage/install.xml", description("/x", sets))
            result = self.build_allowing("--description", self.native("stage/install.xml"), "--root",
                                   self.native("stage/root"), "--image", self.native("installer" + EXE), "--output",
                                   self.native("wrong" + EXE))
            self.assertEqual(result.code, 1, f"{name}: {result}")
            self.assertEqual(result.err.count("\npackager: "), 1, f"{name}: {result}")
            self.assertFalse(self.host("wrong" + EXE).exists(), name)

    def test_a_package_is_not_accepted_as_a_bare_image(self):
        result = self.build_allowing("--description", self.native("stage/install.xml"), "--root",
                               self.native("stage/root"), "--image", self.native(self.package), "--output",
                               self.native("twice" + EXE))
        self.assertEqual(result.code, 1, result)
        self.assertFalse(self.host("twice" + EXE).exists())

    def test_the_reason_of_the_system_is_said(self):
        reason = "(No such file or directory|The system cannot find the file specified|File not found)"
        for arguments in (("list", self.native("none")), ("text", self.native("none.md")), ("verify", self.native("none"))):
            result = self.packager(*arguments)
            self.assertEqual(result.code, 1, result)
            self.assertRegex(result.err, r"^packager: [^\n]* can't be read: " + reason)

    def test_wrong_use_gets_exit_code_2(self):
        for arguments in ((), ("frobnicate",), ("build",), ("list",), ("build", "--level", "10")):
            self.assertEqual(self.packager(*arguments).code, 2, arguments)

    def test_help_is_available(self):
        result = self.packager("--help")
        self.assertEqual(result.code, 0, result)
        for word in ("build", "list", "extract", "verify", "text"):
            self.assertIn(word, result.out)


class Documents(EndToEndTest):
    MARKDOWN = "# Agreement\n\nYou may *use* it, \u00fcberall.\n\n- here\n- there\n"
    RICH_TEXT = b"{\\rtf1{\\fonttbl{\\f0 Arial;}}\\pard\\b Note\\b0\\par Two  words \\'a9\\par}\r\n\0"

    def text(self, name, *options):
        return self.packager("text", self.native(name), *options)

    def test_markdown_is_shown_in_three_forms(self):
        self.write("agreement.md", self.MARKDOWN)
        plain = self.text("agreement.md")
        self.assertEqual(plain.code, 0, plain)
        self.assertIn("You may use it, \u00fcberall.\n", plain.out)
        html = self.text("agreement.md", "--html")
        self.assertEqual(html.code, 0, html)
        self.assertIn("<p>You may <em>use</em> it, \u00fcberall.</p>\n", html.out)
        self.assertTrue(html.out.endswith("</html>\n"), html)
        tree = self.text("agreement.md", "--tree")
        self.assertEqual(tree.code, 0, tree)
        self.assertIn("+[ITAL] : use\n", tree.out)

    def test_rich_text_is_shown_in_the_width_of_a_console(self):
        self.write("note.rtf", self.RICH_TEXT)
        result = self.text("note.rtf", "--width", "12")
        self.assertEqual((result.code, result.out), (0, "Note\nTwo  words\n(c)\n"), result)

    def test_a_broken_document_is_reported_with_its_line(self):
        self.write("note.rtf", "{\\rtf1\n}}")
        self.write("note.md", "fine\n\na ** b\n")
        for name, line in (("note.rtf", 2), ("note.md", 3)):
            result = self.text(name)
            self.assertEqual((result.code, result.out), (1, ""), result)
            self.assertIn(f"line {line}: ", result.err)

    def test_a_document_that_cannot_be_shown_is_reported(self):
        self.write("note.rtf", self.RICH_TEXT)
        self.assertEqual(self.text("nowhere.md").code, 1)
        self.assertEqual(self.text("note.rtf", "--html").code, 1)
        self.assertEqual(self.text("note.rtf", "--tree", "--html").code, 2)


if __name__ == "__main__":
    main()
