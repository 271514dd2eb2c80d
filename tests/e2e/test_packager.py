"""The packager's four commands on real files."""

import hashlib

from descriptions import description
from harness import EXE, EndToEndTest, main

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

    def test_verify_finds_a_good_package_good_and_a_bad_one_bad(self):
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

    def test_extract_takes_aliases(self):
        self.host("out").mkdir()
        result = self.packager("extract", self.native(self.package), "--to", self.native("out"), "Pic")
        self.assertEqual(result.code, 0, result)
        self.assertEqual(set(self.tree("out")), {"pic.png"})

    def test_the_named_bare_image_is_the_image_itself(self):
        self.host("out").mkdir()
        self.packager("extract", self.native(self.package), "--to", self.native("out"), "installer.exe")
        self.assertEqual(self.read("out/installer.exe"), self.read("installer" + EXE))

    def test_mistakes_are_told_and_leave_no_output(self):
        cases = {
            "a missing file": '<FileSet Name="A"><FN Dest="x">nowhere.txt</FN></FileSet>',
            "a duplicate alias": '<FileSet Name="A"><FN Alias="P">pic.png</FN><FN Alias="P">empty</FN></FileSet>',
            "a path out of the root": '<FileSet Name="A"><FN>../../install.xml</FN></FileSet>',
        }
        for name, sets in cases.items():
            self.write("stage/install.xml", description("/x", sets))
            result = self.packager("build", "--description", self.native("stage/install.xml"), "--root",
                                   self.native("stage/root"), "--image", self.native("installer" + EXE), "--output",
                                   self.native("wrong" + EXE))
            self.assertEqual(result.code, 1, f"{name}: {result}")
            self.assertEqual(len(result.err.strip().split("\n")), 1, f"{name}: {result}")
            self.assertFalse(self.host("wrong" + EXE).exists(), name)

    def test_a_package_is_no_bare_image(self):
        result = self.packager("build", "--description", self.native("stage/install.xml"), "--root",
                               self.native("stage/root"), "--image", self.native(self.package), "--output",
                               self.native("twice" + EXE))
        self.assertEqual(result.code, 1, result)
        self.assertFalse(self.host("twice" + EXE).exists())

    def test_wrong_use_gets_exit_code_2(self):
        for arguments in ((), ("frobnicate",), ("build",), ("list",), ("build", "--level", "10")):
            self.assertEqual(self.packager(*arguments).code, 2, arguments)

    def test_help_is_there(self):
        result = self.packager("--help")
        self.assertEqual(result.code, 0, result)
        for word in ("build", "list", "extract", "verify"):
            self.assertIn(word, result.out)


if __name__ == "__main__":
    main()
