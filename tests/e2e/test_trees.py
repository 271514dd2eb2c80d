"""Whole trees in a description: what is packed for them, what a setup makes of them, and what an uninstallation leaves."""

import os
import shutil
import stat
import unittest

from descriptions import description
from harness import EXE, WINDOWS, EndToEndTest, main

SETS = f"""
<FileSet Name="Core">
 <FN Dest="[DIR]/un" Executable="1">installer{EXE}</FN>
 <Tree From="product" Dest="[DIR]" KeepModes="1" Exclude="*.bak;/doc/draft"/>
</FileSet>
<FileSet Name="Never" Condition="1==2">
 <Tree From="product" Dest="[DIR]/never"/>
</FileSet>
<UninstallWildcards><File Dest="[DIR]/un">*.*</File></UninstallWildcards>
"""
FILES = {
    "product/bin/run.sh": "#!/bin/sh\necho run\n",
    "product/lib/libx.so.1": "library\n",
    "product/lib/copy of x": "library\n",
    "product/doc/a & 'b'.txt": "text\n",
    "product/doc/\u00fc.txt": "umlaut\n",
    "product/doc/empty": "",
    "product/doc/old.bak": "old\n",
    "product/doc/draft/x.txt": "draft\n",
}
INSTALLED = {name.removeprefix("product/"): text.encode() for name, text in FILES.items()
             if not name.endswith(".bak") and "/draft/" not in name}


class TreeTest(EndToEndTest):
    def setUp(self):
        super().setUp()
        self.host("opt/product").mkdir(parents=True)

    def describe(self, sets=SETS):
        return description(self.native("opt/product"), sets,
                           values='<Value Name="UNINSTALL_ERROR" DataType="value">0</Value>',
                           farewell='<CopyProgress Special="AutoNext"/>')

    def add_files(self, files=None):
        for name, content in (files or FILES).items():
            self.write("stage/root/" + name, content)
        self.host("stage/root/product/bin/run.sh").chmod(0o755)

    def build(self, text=None, output="setup" + EXE):
        return self.build_package(text or self.describe(), {}, output)

    def expand(self, text, *more):
        self.write("stage/install.xml", text)
        return self.packager("expand", "--description", self.native("stage/install.xml"), "--root",
                             self.native("stage/root"), *more)

    def refuse(self, text, *more):
        """What the packager says, after its name."""
        result = self.expand(text, *more)
        self.assertEqual(result.code, 1, result)
        self.assertEqual(result.out, "")
        return result.err.replace("\\", "/")

    def install(self, setup="setup" + EXE):
        result = self.run_program(setup, "-auto")
        self.assertIn("The installation was successful.", result.out, result)

    def uninstall(self):
        shutil.copyfile(self.host("opt/product/un/install.log"), self.host("copy.log"))
        result = self.run_program("installer" + EXE, "-uninstallFile=" + self.native("copy.log"), "-gui=0")
        self.assertIn("The uninstall was successful.", result.out, result)

    def product(self):
        return {name: content for name, content in self.tree("opt/product").items() if not name.startswith("un/")}


class InstallationTest(TreeTest):
    def test_a_tree_is_installed_and_taken_away(self):
        self.add_files()
        self.build()
        self.install()
        self.assertEqual(self.product(), INSTALLED)
        if not WINDOWS:
            modes = {name: oct(stat.S_IMODE(os.lstat(self.host("opt/product/" + name)).st_mode)) for name in INSTALLED}
            self.assertEqual([name for name, mode in modes.items() if mode != "0o644"], ["bin/run.sh"])
            self.assertEqual(modes["bin/run.sh"], "0o755")
        self.uninstall()
        self.assertEqual(self.tree("opt"), {})

    def test_equal_files_are_in_the_package_once(self):
        self.add_files()
        self.build()
        listed = self.packager("list", self.native("setup" + EXE))
        digests = [line.split("\t")[2] for line in listed.out.splitlines()[1:]]
        # The description is there a second time, for the uninstallation.
        self.assertEqual(len(digests) - len(set(digests)), 1, listed)

    def test_the_order_of_the_disk_does_not_count(self):
        self.add_files()
        self.build(output="first")
        shutil.rmtree(self.host("stage/root"))
        self.add_files(dict(reversed(FILES.items())))
        self.build(output="second")
        self.assertEqual(self.read("first"), self.read("second"))

    def test_what_expand_prints_gives_the_same_package(self):
        self.add_files()
        self.build(output="first")
        printed = self.expand(self.describe(), "--image", self.native("installer" + EXE))
        self.assertEqual(printed.code, 0, printed)
        self.assertNotIn("<Tree", printed.out)
        self.assertIn('<FN Dest="[DIR]/doc">product/doc/a &amp; &apos;b&apos;.txt</FN>', printed.out)
        self.build(printed.out, output="second")
        for name in ("first", "second"):
            self.packager("extract", self.native(name), "--to", self.native("of " + name))
        self.assertEqual(self.tree("of first"), self.tree("of second"))
        self.assertEqual(self.read("of first/install.xml").decode(), printed.out)

    def test_the_output_of_an_earlier_run_is_not_packed(self):
        self.add_files()
        text = self.describe('<FileSet Name="All"><Tree From="." Dest="[DIR]"/></FileSet>')
        self.build(text, "stage/root/setup")
        result = self.build_allowing("--description", self.native("stage/install.xml"), "--root", self.native("stage/root"),
                               "--bin", "--output", self.native("stage/./root/setup"))
        self.assertEqual(result.code, 1, result)
        self.assertIn("is to be packed itself: choose another output", result.err)


class RefusalTest(TreeTest):
    def setUp(self):
        super().setUp()
        self.host("stage/root").mkdir(parents=True)
        self.add_files({"product/bin/run.sh": ""})

    def one_tree(self, leave_out=""):
        return f'<R><FileSet Name="S"><Tree From="product" Dest="[DIR]" Exclude="{leave_out}"/></FileSet></R>'

    def test_what_is_missing_is_named(self):
        self.assertIn("/stage/root/none: no such directory",
                      self.refuse('<R><FileSet Name="S"><Tree From="none" Dest="D"/></FileSet></R>'))
        self.assertIn('needs Dest', self.refuse('<R><FileSet Name="S"><Tree From="product"/></FileSet></R>'))

    def test_a_directory_that_looks_like_a_reference_is_named(self):
        self.write("stage/root/product/[id]/x", "")
        self.assertIn('the name "[id]" has a [', self.refuse(self.one_tree()))

    @unittest.skipIf(WINDOWS, "the other system has no such names")
    def test_names_that_cannot_be_packed_are_named_and_can_be_left_out(self):
        for name in (b"a\\b", b"tab\there", b"no utf-8 \xff", b"colon:x", b"blank "):
            with self.subTest(name=name):
                path = os.fsencode(self.host("stage/root/product/bin")) + b"/" + name
                with open(path, "wb"):
                    pass
                self.assertIn("leave it out with Exclude", self.refuse(self.one_tree()))
                self.assertEqual(self.expand(self.one_tree(name[:1].decode() + "*")).code, 0)
                os.remove(path)

    @unittest.skipIf(WINDOWS, "a link of the host isn't one there")
    def test_nothing_is_packed_through_a_link(self):
        self.write("outside/secret", "secret")
        self.host("stage/root/product/way").symlink_to(self.host("outside"))
        self.assertIn("isn't relative", self.refuse(self.one_tree()))
        self.host("stage/root/product/way").unlink()
        self.host("stage/root/product/way").symlink_to("../../../outside")
        self.assertIn("leads out of the tree", self.refuse(self.one_tree()))
        self.host("stage/root/linked").symlink_to("../../outside")
        for place in ("linked", "product/way"):
            text = f'<R><FileSet Name="S"><Tree From="{place}" Dest="D"/></FileSet></R>'
            self.assertIn(f"/stage/root/{place}: a Tree doesn't follow links", self.refuse(text))

    @unittest.skipIf(WINDOWS, "the other system has no pipes of this kind")
    def test_a_pipe_is_refused_without_waiting(self):
        os.mkfifo(self.host("stage/root/product/pipe"))
        self.assertIn("product/pipe: this is neither", self.refuse(self.one_tree()))


@unittest.skipIf(WINDOWS, "the other system makes no links")
class LinkTest(TreeTest):
    LINKS = {"lib/libx.so": "libx.so.1", "lib64": "lib", "doc/run": "../bin/run.sh", "doc/dangling": "nowhere/at/all"}

    def setUp(self):
        super().setUp()
        self.add_files()
        self.add_links(self.LINKS)

    def add_links(self, links):
        for name, target in links.items():
            self.host("stage/root/product/" + name).unlink(missing_ok=True)
            self.host("stage/root/product/" + name).symlink_to(target)

    def links(self):
        base = self.host("opt/product")
        return {str(path.relative_to(base)): os.readlink(path) for path in base.rglob("*") if path.is_symlink()}

    def test_links_are_made_recorded_and_taken_away(self):
        self.build()
        self.install()
        self.assertEqual(self.links(), self.LINKS)
        self.assertEqual(self.read("opt/product/lib64/libx.so"), b"library\n")
        log = self.action_log("opt/product/un/install.log")
        for name in self.LINKS:
            path = self.native("opt/product") + "\\" + name.replace("/", "\\")
            self.assertIn("SHORTCUT\tCREATE\t" + path.replace("/", "\\"), log)
        self.uninstall()
        self.assertEqual(list(self.host("opt").rglob("*")), [])

    def test_a_second_installation_makes_them_anew(self):
        self.build()
        self.install()
        self.host("opt/product/lib64").unlink()
        self.host("opt/product/lib/libx.so").unlink()
        self.host("opt/product/lib/libx.so").symlink_to("elsewhere")
        self.install()
        self.assertEqual(self.links(), self.LINKS)
        self.uninstall()
        self.assertEqual(list(self.host("opt").rglob("*")), [])

    def test_a_link_in_the_place_of_one_of_these_is_replaced_and_not_followed(self):
        self.write("outside/mine", "mine")
        self.host("opt/product/lib").mkdir()
        self.host("opt/product/lib/libx.so").symlink_to(self.host("outside/mine"))
        self.host("opt/product/lib64").symlink_to(self.host("outside"))
        self.build()
        self.install()
        self.assertEqual(self.links(), self.LINKS)
        self.assertEqual(self.tree("outside"), {"mine": b"mine"})
        self.uninstall()
        self.assertEqual(self.tree("outside"), {"mine": b"mine"})

    def test_a_directory_in_the_place_of_a_link_stays_and_fails(self):
        self.write("opt/product/lib64/mine", "mine")
        self.build()
        result = self.run_program("setup", "-auto")
        self.assertIn("FAILED to create  shortcut " + self.native("opt/product") + "/lib64", result.out + result.err, result)
        self.assertEqual(self.read("opt/product/lib64/mine"), b"mine")

    def test_conditions_hold_for_links_as_well(self):
        self.write("stage/root/one/file", "x")
        self.host("stage/root/one/link").symlink_to("file")
        self.build(self.describe(SETS + '<FileSet Name="A" Condition="1==2"><Tree From="one" Dest="[DIR]/a"/></FileSet>'
                                 '<FileSet Name="B"><Tree From="one" Dest="[DIR]/b" Condition="1==2"/></FileSet>'
                                 '<FileSet Name="C" Condition="1==1"><Tree From="one" Dest="[DIR]/c" Condition="1==1"/></FileSet>'))
        self.install()
        self.assertEqual({name for name in self.links() if name.endswith("/link")}, {"c/link"})



if __name__ == "__main__":
    main()
