"""The product that packager new writes: checked, packed, installed twice, and removed without a trace."""

from harness import EXE, EndToEndTest, main


class Template(EndToEndTest):
    def test_goes_from_the_first_command_to_an_empty_directory(self):
        result = self.packager("new", self.native("product"))
        self.assertEqual(result.code, 0, result)
        description = self.native("product/install.xml")
        result = self.packager("check", description, "--root", self.native("product/files"), "--strict")
        self.assertEqual((result.code, result.out.strip()), (0, f"{description}: 0 errors, 0 warnings"), result)
        result = self.packager("build", "--description", description, "--root", self.native("product/files"),
                               "--image", self.native("installer" + EXE), "--output", self.native("setup" + EXE))
        self.assertEqual((result.code, result.err), (0, ""), result)

        self.write("machine/somebody's", b"")
        places = [f"-VARIABLE_{name}={self.native('machine/' + place)}"
                  for name, place in (("INSTALL_DIR", "product"), ("MENU_DIR", "menu"))]
        for _ in range(2):
            result = self.run_program("setup" + EXE, "-auto", *places)
            self.assertIn("The installation was successful.", result.out, result)
        installed = set(self.tree("machine/product"))
        self.assertIn("README.txt", installed)
        self.assertEqual(len(self.tree("machine/menu")), 1)

        directory = "machine/product/uninstall/"
        result = self.run_program(directory + "installer" + EXE, "-uninstall=" + self.native(directory + "install.log"),
                                  "-uninstallApp=Example Product", "-gui=0")
        self.assertEqual(result.code, 0, result)
        self.wait_until(lambda: set(self.tree("machine")) == {"somebody's"})
        self.wait_until(lambda: len(list(self.host("machine").iterdir())) == 1)
        self.wait_for_the_uninstaller()

    def test_never_replaces_a_file(self):
        self.write("product/install.xml", b"mine")
        result = self.packager("new", self.native("product"))
        self.assertEqual(result.code, 1, result)
        self.assertIn("is there already", result.err)
        self.assertEqual(self.read("product/install.xml"), b"mine")
        self.assertEqual(set(self.tree("product")), {"install.xml"})


if __name__ == "__main__":
    main()
