"""Verifications of installed products, and the receipts of uninstallations."""

import json
import os
import unittest

from harness import EXE, WINDOWS, main
from test_changes import ChangesTest
from test_uninstall import FAILED

ALL = """
<Environment>
 <Replace VarName="TANDREL_TEST_HOME">[DIR]</Replace>
 <Append VarName="TANDREL_TEST_LIST">one</Append><Insert VarName="TANDREL_TEST_LIST">two</Insert>
</Environment>
<IniFiles><Add FileName="[SHARED]/settings.ini" Section="Main" Key="Colour">red</Add></IniFiles>
<ModifyFiles><File Command="AddAfter" Path="[SHARED]/hosts">[DIR]/script.txt</File></ModifyFiles>
<Shortcuts><Add Type="File" Dest="[SHARED]" Target="[DIR]/bin/tool">Tool.link</Add></Shortcuts>
<FileSet Name="Script"><FN Dest="[DIR]">script.txt</FN></FileSet>
<AdditionalInstall><Registry>
 <AddValue Place="HKEY_CURRENT_USER" Path="Software/Tandrel Test/Receipt" Value="Text">text</AddValue>
</Registry></AdditionalInstall>
"""
SCRIPT = "1\nfirst\n1\nadded\n"
STATES = ["complete", "changed", "missing", "unknown"]
OUTCOMES = ["gone", "put back", "changed and left", "foreign and left", "failed"]


class ReceiptTest(ChangesTest):
    log = "opt/product/un/install.log"

    def setUp(self):
        super().setUp()
        self.write("shared/hosts", "first\nlast\n")
        self.write("shared/settings.ini", "[Main]\n")
        self.host("receipts").mkdir()

    def install_all(self):
        return self.install(changes=ALL, files={"script.txt": SCRIPT})

    def verify(self, *arguments, log=None, program="opt/product/un/installer" + EXE):
        return self.run_program(program, "-verify=" + (self.native(self.log) if log is None else log), *arguments)

    def json_of(self, name):
        document = json.loads(self.host(name).read_bytes().decode("utf-8"))
        self.assertEqual(document["version"], 1)
        self.assertEqual({row["state"] for row in document["records"]} - set(document["summary"]), set())
        for state, count in document["summary"].items():
            self.assertEqual(sum(row["state"] == state for row in document["records"]), count, state)
        return document

    def states_of(self, document):
        """By the last part of the name."""
        return {row["name"].replace("\\", "/").rpartition("/")[2]: row["state"] for row in document["records"]}


class Verification(ReceiptTest):
    def test_a_product_as_it_was_installed_is_complete_and_nothing_is_changed(self):
        self.install_all()
        before = self.snapshot()
        result = self.verify()
        self.assertEqual(result.code, 0, result)
        self.assertRegex(result.out, r"\Averification: \d\d complete, 0 changed, 0 missing, 0 unknown\n")
        for kind in ("file", "directory", "environment", "ini", "edit", "shortcut", "registry key", "registry value"):
            self.assertIn(f"\ncomplete  {kind} ", result.out)
        self.assertNotIn("note:", result.out)
        self.assertEqual(result.err, "")
        self.assertEqual(self.snapshot(), before)

    def test_the_setup_verifies_as_well_as_the_installed_uninstaller(self):
        self.install_all()
        of_setup = self.verify(program=self.setup)
        self.assertEqual((of_setup.code, of_setup.out), (0, self.verify().out), of_setup)

    def test_a_product_that_was_installed_twice_is_complete_and_goes_whole(self):
        self.install_all()
        again = self.run_program(self.setup, "-auto")
        self.assertIn("The installation was successful.", again.out, again)
        result = self.verify()
        self.assertEqual(result.code, 0, result)
        result = self.uninstall(self.log, "-receipt=" + self.native("receipts/r.json"),
                                "-receiptLog=" + self.native(self.log))
        self.assertEqual(result.code, 0, result)
        self.assertEqual(self.json_of("receipts/r.json")["summary"],
                         {"gone": self.json_of("receipts/r.json")["summary"]["gone"], "put back": 1,
                          "changed and left": 0, "foreign and left": 0, "failed": 0})

    def test_what_was_damaged_is_changed_and_what_was_removed_is_missing(self):
        self.install_all()
        self.write("opt/product/data.txt", "damaged")
        self.host("opt/product/bin/tool" + EXE).unlink()
        self.write("shared/hosts", "first\nlast\n")
        self.write("shared/settings.ini", "[Main]\nColour=blue\n")
        result = self.verify("-receipt=" + self.native("receipts/r.json"))
        self.assertEqual(result.code, 1, result)
        document = self.json_of("receipts/r.json")
        self.assertEqual(list(document["summary"]), STATES)
        self.assertFalse(document["good"])
        states = self.states_of(document)
        self.assertEqual({name: state for name, state in states.items() if state != "complete"},
                         {"data.txt": "changed", "tool" + EXE: "missing", "hosts": "missing", "Colour": "changed"})
        self.assertIn("2 changed, 2 missing, 0 unknown\n", result.out)

    def test_a_receipt_in_text_is_what_is_printed(self):
        self.install_all()
        result = self.verify("-receipt=" + self.native("receipts/r.txt"))
        self.assertEqual(self.host("receipts/r.txt").read_text(encoding="utf-8"), result.out)
        quiet = self.verify("-quiet=1")
        self.assertEqual((quiet.code, quiet.out, quiet.err), (0, "", ""))

    def test_what_is_no_log_is_refused_with_a_clear_message(self):
        self.install()
        self.host("garbage").write_bytes(bytes(range(256)) * 50)
        self.host("empty").write_bytes(b"")
        for path, reason in (("missing", "there is no such file"), ("shared", "it is a directory"),
                             ("garbage", "it is no action log"), ("empty", "it is no action log")):
            path = self.native(path)
            result = self.verify(log=path)
            self.assertEqual((result.code, result.out, result.err),
                             (FAILED, "", f"ERROR: The installation can't be verified: {path}: {reason}\n"))
        result = self.verify(log="")
        self.assertEqual((result.code, result.err), (FAILED, "ERROR: The installation can't be verified: no file is named\n"))

    def test_a_log_that_is_cut_is_read_as_far_as_it_goes(self):
        self.install_all()
        whole = self.host(self.log).read_bytes()
        start = whole.index(b"NUMVARS")
        for length in range(start, len(whole) - 1, max(1, (len(whole) - start) // 12)):
            self.host("cut.log").write_bytes(whole[:length])
            result = self.verify(log=self.native("cut.log"))
            self.assertIn(result.code, (0, 1, FAILED), result)
            self.assertNotEqual(result.out + result.err, "")
        self.host("cut.log").write_bytes(whole[:-3])
        result = self.verify(log=self.native("cut.log"))
        self.assertEqual(result.code, 1, result)
        self.assertIn("note: The last record of the install log is not complete.", result.out)

    def test_a_receipt_that_cannot_be_is_said(self):
        self.install()
        result = self.verify("-receipt=" + self.native("none/r.txt"))
        self.assertEqual((result.code, result.out), (FAILED, ""), result)
        self.assertIn("there is no directory " + self.native("none") + " for the receipt", result.err)


class Receipts(ReceiptTest):
    def test_an_uninstallation_says_what_became_of_each_record(self):
        self.install_all()
        result = self.uninstall(self.log, "-receipt=" + self.native("receipts/r.json"),
                                "-receiptLog=" + self.native(self.log))
        self.assertEqual(result.code, 0, result)
        document = self.json_of("receipts/r.json")
        self.assertEqual(list(document["summary"]), OUTCOMES)
        self.assertTrue(document["good"])
        self.assertEqual(document["log"], self.native(self.log))
        states = self.states_of(document)
        self.assertEqual({name: state for name, state in states.items() if state != "gone"}, {"shared.txt": "put back"})
        self.assertEqual(document["summary"]["put back"], 1)
        self.assertRegex(result.out, r"\nuninstallation: \d\d gone, 1 put back, 0 changed and left, 0 foreign and left, "
                                     r"0 failed\n\Z")

    def test_what_the_user_changed_and_what_is_not_the_products_is_left(self):
        self.install_all()
        self.write("shared/shared.txt", "the user's own")
        self.write("opt/product/notes.txt", "the user's own")
        result = self.uninstall(self.log, "-receipt=" + self.native("receipts/r.txt"),
                                "-receiptLog=" + self.native(self.log))
        self.assertEqual(result.code, FAILED, result)
        text = self.host("receipts/r.txt").read_text(encoding="utf-8")
        self.assertRegex(text, r"\nchanged and left +file +\S*shared\.txt\n")
        self.assertRegex(text, r"\nforeign and left +directory +\S*product  \(it holds what isn't the product's\)\n")
        self.assertRegex(text, r"\nfailed +file +\S*install\.xml\n")
        self.assertRegex(text, r"\ngone +file +\S*data\.txt\n")
        self.assertEqual(self.read_text("opt/product/notes.txt"), "the user's own")

    def test_the_registered_command_hands_the_receipt_on(self):
        self.install_all()
        result = self.run_program("opt/product/un/installer" + EXE, "-uninstall=" + self.native(self.log),
                                  "-uninstallApp=Test Product", "-gui=0", "-receipt=receipts/r.json")
        self.assertEqual(result.code, 0, result)
        self.wait_until(lambda: self.host("receipts/r.json").exists())
        document = self.json_of("receipts/r.json")
        self.assertTrue(document["good"])
        self.assertEqual(self.states_of(document)["shared.txt"], "put back")
        self.assertEqual(document["notes"], [])

    def test_one_that_would_go_with_the_product_is_refused_before_anything_is_done(self):
        self.install_all()
        before = self.snapshot()
        receipt = self.native("opt/product/r.txt")
        result = self.run_program("opt/product/un/installer" + EXE, "-uninstall=" + self.native(self.log),
                                  "-uninstallApp=Test Product", "-gui=0", "-receipt=" + receipt)
        self.assertEqual(result.code, FAILED, result)
        self.assertIn(f"The uninstallation can't start: the receipt {receipt} would lie in ", result.err)
        self.assertEqual(self.snapshot(), before)

    def test_without_the_option_nothing_new_is_printed(self):
        self.install_all()
        self.assertNotIn("uninstallation: ", self.uninstall().out)

    @unittest.skipIf(WINDOWS, "there are no such links there")
    def test_a_link_in_its_place_is_replaced_and_not_followed(self):
        self.install()
        os.symlink(self.host("opt/other/precious.txt"), self.host("receipts/r.txt"))
        result = self.uninstall(self.log, "-receipt=" + self.native("receipts/r.txt"))
        self.assertEqual(result.code, 0, result)
        self.assertEqual(self.read_text("opt/other/precious.txt"), "the user's own")
        self.assertFalse(self.host("receipts/r.txt").is_symlink())


if __name__ == "__main__":
    main()
