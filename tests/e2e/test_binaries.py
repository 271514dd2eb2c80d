"""What was built, by its headers: protections, libraries, resources. And that a setup survives being signed."""

import os
import re
import struct
import unittest
import xml.etree.ElementTree as ElementTree

from descriptions import description
from harness import BIN, EXE, WINDOWS, EndToEndTest, main
from images import ElfImage, PeImage, signed

PROGRAMS = ("installer", "packager")
KIND = os.environ.get("TANDREL_E2E_KIND", "")
# Of the oldest system that the Linux programs run on.
NEWEST_GLIBC = (2, 34)
LINUX_LIBRARIES = {"libc.so.6", "libm.so.6", "libdl.so.2", "libpthread.so.0", "ld-linux-x86-64.so.2"}
# Windows takes these from its own directory, whatever lies beside the program: its list of known libraries, and the one
# that is in each process before any other.
KNOWN_LIBRARIES = {"advapi32.dll", "comdlg32.dll", "gdi32.dll", "kernel32.dll", "msvcrt.dll", "ntdll.dll", "ole32.dll",
                   "oleaut32.dll", "rpcrt4.dll", "shell32.dll", "shlwapi.dll", "user32.dll"}
# Those of the window that aren't on the list. They are loaded when they are called, and then from the system's directory.
DELAYED_LIBRARIES = {"comctl32.dll", "gdiplus.dll", "msimg32.dll", "oleacc.dll", "uxtheme.dll", "version.dll", "winmm.dll"}
# Windows 7, 8, 8.1, 10 and later.
SYSTEMS = {"{35138b9a-5d96-4fbd-8e2d-a2440225f93a}", "{4a2f28e3-53b9-4441-ba9c-d69d4a4a6e38}",
           "{1f676c76-80e1-4239-95bb-83d0f6d0da78}", "{8e0f7a12-bfb3-4fe8-b9a5-48fd50a15a9a}"}
END_OF_BRANCH = b"\xf3\x0f\x1e\xfa"  # what control-flow protection puts where an indirect call may end
STACK_GUARD = re.compile(rb"\x64\x48(?:\x8b|\x2b|\x33).\x25\x28\0\0\0", re.DOTALL)  # where threads keep it

hardened = unittest.skipUnless(KIND == "hardened", "built without optimization or with sanitizers")


class ImageTest(unittest.TestCase):
    image = None

    def images(self):
        return [(name, self.image((BIN / (name + EXE)).read_bytes())) for name in PROGRAMS]


@unittest.skipIf(WINDOWS, "the form of programs on Linux")
class LinuxPrograms(ImageTest):
    image = ElfImage

    @unittest.skipIf(KIND == "sanitized", "relocations would double the size of a sanitized program")
    def test_lie_at_random_addresses(self):
        for _, image in self.images():
            self.assertEqual(image.kind, 3)  # ET_DYN
            self.assertEqual(len(image.of_type(ElfImage.INTERPRETER)), 1)

    def test_have_no_memory_that_can_be_written_and_run(self):
        both = ElfImage.EXECUTABLE | ElfImage.WRITABLE
        for _, image in self.images():
            for segment in image.of_type(ElfImage.LOAD) + image.of_type(ElfImage.STACK):
                self.assertNotEqual(segment["flags"] & both, both, segment)
            self.assertEqual(len(image.of_type(ElfImage.STACK)), 1)

    @hardened
    def test_have_tables_of_addresses_that_cannot_be_written(self):
        bind_now, now = 8, 1
        for _, image in self.images():
            self.assertEqual(len(image.of_type(ElfImage.RELRO)), 1)
            self.assertTrue(image.flags(ElfImage.FLAGS) & bind_now or image.flags(ElfImage.FLAGS_1) & now)

    @hardened
    def test_check_their_stack(self):
        for _, image in self.images():
            self.assertIn("__stack_chk_fail", image.imported())
            # Libraries that are linked statically have some of their own.
            self.assertGreater(len(STACK_GUARD.findall(image.code())), len(image.functions()) // 10)

    @hardened
    def test_use_the_checked_functions_of_the_library(self):
        for _, image in self.images():
            self.assertIn("__memcpy_chk", image.imported())

    @hardened
    def test_mark_where_indirect_calls_may_end(self):
        for _, image in self.images():
            functions = [image.offset_of(address) for address in image.functions()]
            marked = sum(image.data[offset:offset + 4] == END_OF_BRANCH for offset in functions)
            self.assertGreater(marked, len(functions) // 4)

    @unittest.skipIf(KIND == "sanitized", "the sanitizers bring libraries of their own")
    def test_run_with_an_old_c_library_and_nothing_else(self):
        for _, image in self.images():
            self.assertLessEqual(set(image.libraries()), LINUX_LIBRARIES)
            for version in image.versions():
                number = re.fullmatch(r"GLIBC_([\d.]+)", version)
                self.assertIsNotNone(number, version)
                self.assertLessEqual(tuple(int(part) for part in number[1].split(".")), NEWEST_GLIBC, version)


@unittest.skipUnless(WINDOWS, "the form of programs on Windows")
class WindowsPrograms(ImageTest):
    image = PeImage

    def test_lie_at_random_addresses(self):
        for _, image in self.images():
            for flag in (PeImage.HIGH_ENTROPY, PeImage.DYNAMIC_BASE):
                self.assertTrue(image.dll_characteristics & flag, hex(image.dll_characteristics))
            self.assertFalse(image.characteristics & PeImage.RELOCATIONS_STRIPPED)
            self.assertGreater(image.directory(PeImage.RELOCATIONS)[1], 0)

    def test_have_no_memory_that_can_be_written_and_run(self):
        both = PeImage.EXECUTABLE | PeImage.WRITABLE
        for _, image in self.images():
            self.assertTrue(image.dll_characteristics & PeImage.NO_EXECUTION_OF_DATA)
            for section in image.sections:
                self.assertNotEqual(section["flags"] & both, both, section)

    @hardened
    def test_check_their_stack_and_use_the_checked_functions(self):
        # All of the library is in the program, so what it would say shows that it is called.
        for name, image in self.images():
            for text in (b"stack smashing detected", b"buffer overflow detected"):
                self.assertTrue(text in image.data, f"{name} doesn't have {text}")

    def test_load_libraries_from_the_directory_of_the_system_alone(self):
        for _, image in self.images():
            self.assertLessEqual(set(image.libraries()), KNOWN_LIBRARIES)
            self.assertLessEqual(set(image.delayed_libraries()), DELAYED_LIBRARIES)

    def test_say_what_rights_they_need(self):
        levels = {"installer": "requireAdministrator", "packager": "asInvoker"}
        for name, image in self.images():
            level, = self.manifest(image).iter("{urn:schemas-microsoft-com:asm.v3}requestedExecutionLevel")
            self.assertEqual(level.get("level"), levels[name])
            self.assertEqual(level.get("uiAccess"), "false")

    def test_take_long_paths(self):
        for _, image in self.images():
            aware, = self.manifest(image).iter("{http://schemas.microsoft.com/SMI/2016/WindowsSettings}longPathAware")
            self.assertEqual(aware.text, "true")

    def test_name_the_systems_that_they_run_on(self):
        for _, image in self.images():
            systems = self.manifest(image).iter("{urn:schemas-microsoft-com:compatibility.v1}supportedOS")
            self.assertEqual({system.get("Id") for system in systems}, SYSTEMS)

    def test_carry_their_version(self):
        for name, image in self.images():
            version = image.resource(PeImage.VERSION)
            start = version.index(struct.pack("<I", 0xfeef04bd))
            self.assertEqual(struct.unpack_from("<II", version, start + 8), (0x10000, 0))
            for text in ("Tandrel", "1.0.0", name + ".exe", "FileDescription"):
                self.assertIn(text.encode("utf-16-le"), version)

    def manifest(self, image):
        return ElementTree.fromstring(image.resource(PeImage.MANIFEST))


@unittest.skipUnless(WINDOWS, "programs carry their signature in themselves on Windows only")
class SignedSetup(EndToEndTest):
    def setUp(self):
        super().setUp()
        self.text = description(self.native("product"), '<FileSet Name="A"><FN Dest="[DIR]">a.txt</FN></FileSet>')

    def sign(self, path):
        self.write(path, signed(self.read(path)))

    def test_installs(self):
        setup = self.build_package(self.text, {"a.txt": "content"})
        self.sign(setup)
        self.assertEqual(self.packager("verify", self.native(setup)).code, 0)
        result = self.run_program(setup, "-gui=0", "-auto")
        self.assertEqual(result.code, 0, result)
        self.assertEqual(self.read_text("product/a.txt"), "content")

    def test_is_refused_when_it_was_damaged(self):
        setup = self.build_package(self.text, {"a.txt": "content"})
        data = bytearray(self.read(setup))
        data[-200] ^= 1
        self.write(setup, bytes(data))
        self.sign(setup)
        self.assertNotEqual(self.packager("verify", self.native(setup)).code, 0)
        self.run_program(setup, "-gui=0", "-auto")
        self.assertFalse(self.host("product").exists())

    def test_is_not_made_from_a_signed_image(self):
        self.sign("installer" + EXE)
        self.write("stage/install.xml", self.text)
        self.write("stage/root/a.txt", "content")
        result = self.build_allowing("--description", self.native("stage/install.xml"),
                               "--root", self.native("stage/root"), "--image", self.native("installer" + EXE),
                               "--output", self.native("setup" + EXE))
        self.assertNotEqual(result.code, 0, result)
        self.assertIn("installer" + EXE, result.err)


if __name__ == "__main__":
    main()
