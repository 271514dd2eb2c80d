"""With whose rights files are kept, programs are started and documents are opened."""

import os
import pathlib
import unittest

from descriptions import description
from harness import EXE, WINDOWS, EndToEndTest, main

SETS = '<FileSet Name="A"><FN Dest="[DIR]">a.txt</FN></FileSet>'
# What a setup may need on Windows, or the system on its behalf. Without what Wine, which has no list of known libraries,
# loads for the system's own ones before the program starts.
LIBRARIES = ("bcrypt", "bcryptprimitives", "gdiplus", "hnetcfg", "ieframe", "msimg32", "netapi32", "oleacc", "propsys", "rsaenh",
             "secur32", "uxtheme", "winmm")


class Rights(EndToEndTest):
    def install(self, actions="", env=None):
        more = f"<AdditionalInstall>{actions}</AdditionalInstall>" if actions else ""
        setup = self.build_package(description(self.native("product"), SETS, more=more), {"a.txt": "content"})
        result = self.run_program(setup, "-gui=0", "-auto", env=env)
        self.assertEqual(result.code, 0, result)
        self.assertEqual(self.read_text("product/a.txt"), "content", result)
        return result

    @unittest.skipUnless(WINDOWS, "libraries don't come from the current directory on Linux")
    def test_libraries_beside_the_setup_are_not_loaded(self):
        for name in LIBRARIES:
            self.write(name + ".dll", "planted")
        self.install()

    def test_a_program_of_the_current_directory_is_not_started_by_its_name(self):
        # If it were started, it would take the files out of this package; the tests run where it lies.
        planted = self.build_package(description("/x", SETS), {"a.txt": "planted"}, output="planted" + EXE)
        self.host("out").mkdir()
        self.install(f'<RunProgram Wait="1" Arguments="extract {self.native(planted)} --to {self.native("out")}">'
                     f"packager{EXE}</RunProgram>")
        self.assertEqual(list(self.tree("out")), [])

    @unittest.skipUnless(WINDOWS, "on Linux root is the same for every administrator")
    def test_the_records_have_the_rights_of_their_directory(self):
        self.install()
        # Wine shows in the mode who may read; the directory lets everybody.
        for name in ("install.log", "backup.bin", "install.xml"):
            self.assertEqual(oct(self.host("product/un/" + name).stat().st_mode & 0o444), "0o444", name)

    @unittest.skipIf(WINDOWS, "the desktop's own affair there")
    @unittest.skipUnless(os.geteuid() == 0, "only root has raised rights")
    def test_a_page_is_opened_with_the_rights_of_the_user(self):
        self.host(".").chmod(0o755)
        opened = self.host("opened")
        opened.mkdir()
        os.chown(opened, 65534, 65534)
        opener = self.write("bin/xdg-open", f'#!/bin/sh\nid -u >"{opened}/new"\necho "$1" >>"{opened}/new"\n'
                                            f'mv "{opened}/new" "{opened}/by"\n')
        opener.chmod(0o755)
        opener.parent.chmod(0o755)
        self.install("<OpenURL>https://test.example/page</OpenURL>",
                     env={"SUDO_UID": "65534", "PATH": f"{opener.parent}:{os.environ['PATH']}"})
        self.wait_until(pathlib.Path(opened, "by").exists)
        self.assertEqual(self.read_text("opened/by"), "65534\nhttps://test.example/page\n")


if __name__ == "__main__":
    main()
