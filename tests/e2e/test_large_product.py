"""A product of 900 files for both systems by the manual alone: one short description, packed for each system, installed,
upgraded, and uninstalled to an empty directory."""

import os
import pathlib
import random
import shutil
import stat
import struct

import recipes
from harness import EXE, TOP, WINDOWS, EndToEndTest, main

PAGE = TOP / "docs" / "manual" / "recipes-both-systems.md"
RECIPE = "both-systems"
FILES = 900
LINKS = {"lib/libexample.so": "libexample.so.1", "current": "data/group1", "doc/start": "../bin/example", "doc/later": "not/there/yet"}
LARGEST_DESCRIPTION = 100


# What package_layout.md says that an image has: its mark, and the place for the package's offset.
MARKS = b"SupportsSolidZlib\0_BINARYIMAGEOFFSET_\0".ljust(512, b"\0")


def linux_image():
    """The headers of a program of the other system with the marks of an installer, which is all that a packager asks for."""
    header = struct.pack("<16sHHIQQQIHHHHHH", b"\177ELF\2\1\1", 3, 62, 1, 0, 64, 0, 0, 64, 56, 1, 0, 0, 0)
    size = len(header) + 56 + len(MARKS)
    return header + struct.pack("<IIQQQQQQ", 1, 5, 0, 0, 0, size, size, 1) + MARKS


def windows_image():
    headers = struct.pack("<2s58xI", b"MZ", 64) + struct.pack("<4sHHIIIHH", b"PE\0\0", 0x8664, 1, 0, 0, 0, 240, 0x22)
    headers += struct.pack("<H58xI", 0x20b, 512).ljust(240, b"\0") + struct.pack("<8sIIII16x", b".text", 512, 0x1000, 512, 512)
    return headers.ljust(512, b"\0") + MARKS


def product_files(version):
    """Name -> content: programs, libraries, data of many sizes in nested directories, empty and equal ones."""
    chance = random.Random(900)
    files = {f"bin/tool{i}": f"#!/bin/sh\necho tool {i} of version {version}\n".encode() for i in range(9)}
    files["bin/example" + EXE] = b"#!/bin/sh\necho example\n"
    files["lib/libexample.so.1"] = chance.randbytes(300_000)
    files["doc/licence.txt"] = files["doc/copy of licence.txt"] = b"the same text\n" * 50
    files["doc/Grüße & more 'quoted'.txt"] = b"a name with all kinds of letters\n"
    number = 0
    while len(files) < FILES:
        depth = chance.randint(0, 5)
        directory = "/".join(["data", f"group{number % 12}", *(f"level{chance.randint(1, 3)}" for _ in range(depth))])
        name = f"item {number}.{version if number % 15 == 0 else 'bin'}"
        content = chance.randbytes(chance.choice((0, 10, 700, 5_000, 20_000)))
        files[f"{directory}/{name}"] = content + (version.encode() if number % 4 == 0 else b"")
        number += 1
    return files


class LargeProduct(EndToEndTest):
    def setUp(self):
        super().setUp()
        self.description = recipes.recipes_of(PAGE.read_text("utf-8"))[RECIPE].files["install.xml"]
        self.write("product/install.xml", self.description)

    def make_build(self, version):
        """What a build for the system of this test leaves; returns the files that are to be installed."""
        root = self.host("product/own/product")
        shutil.rmtree(root, ignore_errors=True)
        files = product_files(version)
        for name, content in files.items():
            self.write("product/own/product/" + name, content)
        for tool in root.glob("bin/*"):
            tool.chmod(0o755)
        for name, target in {} if WINDOWS else LINKS.items():
            (root / name).symlink_to(target)
        return files

    def pack(self, output):
        description, root = self.native("product/install.xml"), self.native("product/own")
        checked = self.packager("check", description, "--root", root, "--strict")
        self.assertEqual((checked.code, checked.out.strip()), (0, f"{description}: 0 errors, 0 warnings"), checked)
        built = self.packager("build", "--description", description, "--root", root, "--level", "1",
                              "--image", self.native("installer" + EXE), "--output", self.native(output + EXE))
        self.assertEqual((built.code, built.err), (0, ""), built)
        return output + EXE

    def install(self, setup):
        places = [f"-VARIABLE_{name}={self.native('machine/' + place)}"
                  for name, place in (("INSTALL_DIR", "product"), ("MENU_DIR", "menu"))]
        result = self.run_program(setup, "-auto", *places)
        self.assertIn("The installation was successful.", result.out, result)
        return result

    def installed(self):
        """Name -> content of each file, not through links."""
        base = self.host("machine/product")
        return {str(path.relative_to(base)): path.read_bytes() for path in self.entries()
                if path.is_file() and not path.is_symlink() and "uninstall" not in path.relative_to(base).parts[:1]}

    def entries(self):
        return [pathlib.Path(place, name) for place, directories, files in os.walk(self.host("machine/product"))
                for name in directories + files]

    def links(self):
        base = self.host("machine/product")
        return {str(path.relative_to(base)): os.readlink(path) for path in self.entries() if path.is_symlink()}

    def assert_installed(self, files):
        self.assertEqual(set(self.installed()), set(files))
        self.assertEqual([name for name, content in self.installed().items() if content != files[name]], [])
        if not WINDOWS:
            self.assertEqual(self.links(), LINKS)
            marked = {name for name in files if os.stat(self.host("machine/product/" + name)).st_mode & stat.S_IXUSR}
            self.assertEqual(marked, {name for name in files if name.startswith("bin/")})

    def test_the_description_is_short(self):
        self.assertLess(len(self.description.splitlines()), LARGEST_DESCRIPTION)

    def test_is_installed_upgraded_and_uninstalled_to_an_empty_directory(self):
        self.write("machine/somebody's", b"")
        first = self.make_build("1")
        self.assertEqual(len(first), FILES)
        setup = self.pack("setup1")
        for _ in range(2):
            self.install(setup)
            self.assert_installed(first)
        self.assertEqual(len(self.tree("machine/menu")), 1)

        second = self.make_build("2")
        self.assertGreater(len(first.keys() - second.keys()), 50)
        self.write("product/install.xml", self.description.replace("<MajorVersion>1<", "<MajorVersion>2<"))
        self.install(self.pack("setup2"))
        self.assert_installed(second)

        own = "machine/product/uninstall/"
        shutil.copyfile(self.host(own + "install.log"), self.host("copy.log"))
        result = self.run_program("installer" + EXE, "-uninstallFile=" + self.native("copy.log"),
                                  "-uninstallApp=Example Product", "-gui=0")
        self.assertEqual(result.code, 0, result)
        self.assertEqual([path.name for path in self.host("machine").iterdir()], ["somebody's"])

    def test_one_description_gives_packages_for_both_systems(self):
        """These images are no programs, so their packages are looked at and not run."""
        files = product_files("1")
        for system, image in (("linux", linux_image()), ("windows", windows_image())):
            with self.subTest(system):
                for name, content in files.items():
                    self.write(f"product/{system}/product/{name}", content)
                self.write(f"product/image-{system}", image)
                setup = self.native("product/setup-" + system)
                result = self.packager("build", "--description", self.native("product/install.xml"), "--level", "1",
                                       "--root", self.native("product/" + system), "--output", setup,
                                       "--image", self.native("product/image-" + system))
                self.assertEqual((result.code, result.err), (0, ""), result)
                self.assertEqual(self.packager("verify", setup).code, 0)
                listed = self.packager("list", setup).out.splitlines()[1:]
                places = [place for line in listed for place in line.split("\t")[5::2] if place.startswith("[INSTALL_DIR]")]
                self.assertEqual(len(places), FILES)
        self.assertEqual(self.packager("extract", self.native("product/setup-windows"), "--tree", "--to", self.native("out")).code, 0)
        extracted = self.tree("out/INSTALL_DIR")
        self.assertEqual({name: extracted[name] for name in files}, files)


if __name__ == "__main__":
    main()
