"""A product with a brand of its own: its words on the screen, its properties in a Windows setup, and that setup signed."""

import struct
import subprocess
import unittest

from descriptions import description
from harness import EXE, TIMEOUT, WINDOWS, EndToEndTest, main
from images import PeImage

ICON_TYPE, ICON_GROUP_TYPE = 3, 14

BRAND = ("<Publisher>Grüße &amp; Co</Publisher><Copyright>© 2026 Grüße</Copyright><Icon>SetupIcon</Icon>"
         "<Banner>Grüße installiert</Banner><UninstallBanner>Grüße geht</UninstallBanner>")
WORDS = """<Words>
 <Word Name="AskChoice">%1 (%2 oder %3)</Word>
 <Word Name="AskChoiceAgain">Bitte %1 oder %2</Word>
 <Word Name="AnswerYes">ja</Word><Word Name="AnswerNo">nein</Word>
 <Word Name="AskNumberWithDefault">Welche [1-%1, sonst %2]</Word>
 <Word Name="AskNumberAgain">Eine Zahl von 1 bis %1</Word>
 <Word Name="StatusDone">Es ist installiert.</Word>
 <Word Name="UninstallStatusDone">Es ist entfernt.</Word>
 <Word Name="AutomaticDone">Fertig!</Word>
</Words>"""
PAGES = """<Ask>
 <Field Type="CheckBox" Label="Sure?">SURE</Field>
 <Field Type="RadioButtons" Label="Which?" Content="one;two">WHICH</Field>
</Ask>"""
VALUES = '<Value Name="SURE" DataType="value">0</Value><Value Name="WHICH" DataType="value">1</Value>'


def bitmap(side):
    """A picture of an icon: 32 bits for each pixel, and a mask."""
    rows = side * (side * 4 + (side + 31) // 32 * 4)
    return struct.pack("<IIIHHIIIIII", 40, side, 2 * side, 1, 32, 0, 0, 0, 0, 0, 0) + bytes([side]) * rows


def icon(*sides):
    pictures = [bitmap(side) for side in sides]
    result, place = struct.pack("<HHH", 0, 1, len(sides)), 6 + 16 * len(sides)
    for side, picture in zip(sides, pictures):
        result += struct.pack("<BBBBHHII", side, side, 0, 0, 1, 32, len(picture), place)
        place += len(picture)
    return result + b"".join(pictures)


def version_texts(resource):
    """The texts of a version resource: each block of StringFileInfo has sizes, a kind, a name and a text."""
    texts = {}

    def walk(start, end):
        while start + 6 <= end:
            size, value_size, kind = struct.unpack_from("<HHH", resource, start)
            if size == 0:
                return
            name_end = start + 6
            while resource[name_end:name_end + 2] != b"\0\0":
                name_end += 2
            name = resource[start + 6:name_end].decode("utf-16-le")
            value = (name_end + 2 + 3) // 4 * 4
            length = value_size * (2 if kind == 1 else 1)
            if kind == 1 and value_size:
                texts[name] = resource[value:value + length].decode("utf-16-le").rstrip("\0")
            walk((value + length + 3) // 4 * 4, start + size)
            start = (start + size + 3) // 4 * 4

    walk(0, len(resource))
    return texts


class BrandTest(EndToEndTest):
    def build(self, output="setup" + EXE, brand=BRAND, words=WORDS, late=""):
        text = description(self.native("product"),
                           '<FileSet Name="A"><FN Dest="[DIR]">a.txt</FN><FN Alias="SetupIcon">setup.ico</FN></FileSet>'
                           '<FileSet Name="U"><FN Dest="[DIR]/un" Executable="1">installer' + EXE + "</FN></FileSet>"
                           '<UninstallWildcards><File Dest="[DIR]/un">*</File></UninstallWildcards>',
                           pages=PAGES, values=VALUES, late=late, more=words,
                           farewell='<CopyProgress Special="AutoNext"/>')
        text = text.replace("<Website>", brand + "<Website>", 1)
        self.write("stage/install.xml", text)
        self.write("stage/root/a.txt", "content")
        self.write("stage/root/setup.ico", icon(16, 32))
        result = self.build_allowing("--description", self.native("stage/install.xml"), "--root", self.native("stage/root"),
                                     "--image", self.native("installer" + EXE), "--level", "1",
                                     "--output", self.native(output))
        self.assertEqual(result.code, 0, result)
        return output


class OwnWords(BrandTest):
    def test_are_what_a_setup_says(self):
        setup = self.build()
        result = self.run_program(setup, "-gui=0", stdin="vielleicht\nja\n9\n\n")
        self.assertEqual(result.code, 0, result)
        stars = "*" * 31
        self.assertTrue(result.out.startswith(f"{stars}\n* Grüße installiert           *\n{stars}\n"), result)
        self.assertIn("Sure? ([nein] oder ja): Bitte nein oder ja: "
                      "Which?\n  1) one\n  2) two\nWelche [1-2, sonst 2]: Eine Zahl von 1 bis 2\nWelche [1-2, sonst 2]: ", result.out)
        self.assertIn("Es ist installiert.\n", result.out)
        self.assertEqual(self.read_text("product/a.txt"), "content")

    def test_are_what_an_unattended_run_and_an_uninstallation_say(self):
        setup = self.build()
        self.assertIn("Fertig!\n", self.run_program(setup, "-gui=0", "-auto").out)
        self.write("copy.log", self.read("product/un/install.log"))
        result = self.run_program("installer" + EXE, "-uninstallFile=" + self.native("copy.log"), "-gui=0")
        stars = "*" * 31
        self.assertIn(f"{stars}\n* Grüße geht                  *\n{stars}\n", result.out)
        self.assertIn("Es ist entfernt.\n", result.out, result)
        self.assertFalse(self.host("product/a.txt").exists())

    def test_are_not_there_without_being_asked_for(self):
        setup = self.build(brand="", words="")
        result = self.run_program(setup, "-gui=0", "-auto")
        self.assertIn("Automatic installation was successful!\n", result.out)
        self.assertTrue(result.out.startswith("*" * 31 + "\n* Tandrel Group installer     *\n"), result)

    def test_register_the_publisher(self):
        # Windows' own tool prints letters of its old code page.
        setup = self.build(brand=BRAND.replace("Grüße", "Greeter"), late='<RegisterApplication Special="AutoNext"/>')
        self.run_program(setup, "-gui=0", "-auto")
        key = self.registry("HKLM", "Software\\Microsoft\\Windows\\CurrentVersion\\Uninstall\\Test Product")
        self.assertEqual(key[""]["Publisher"], ("REG_SZ", "Greeter & Co"))


@unittest.skipUnless(WINDOWS, "programs for Linux have no properties")
class Properties(BrandTest):
    def test_are_those_of_the_product(self):
        image = PeImage(self.read(self.build("greet.exe")))
        version = image.resource(PeImage.VERSION)
        self.assertEqual(version_texts(version), {
            "CompanyName": "Grüße & Co", "FileDescription": "Test Product", "FileVersion": "1.2.3",
            "LegalCopyright": "© 2026 Grüße", "OriginalFilename": "greet.exe", "ProductName": "Test Product",
            "ProductVersion": "1.2.3"})
        fixed = version.index(struct.pack("<I", 0xfeef04bd))
        self.assertEqual(struct.unpack_from("<IIII", version, fixed + 8), (0x10002, 0x30000, 0x10002, 0x30000))
        self.assertEqual(image.resource(ICON_TYPE), bitmap(16))
        self.assertEqual(struct.unpack_from("<HHH", image.resource(ICON_GROUP_TYPE)), (0, 1, 2))

    def test_leave_the_manifest_and_the_uninstaller_alone(self):
        setup = self.build()
        bare = self.read("installer.exe")
        self.assertEqual(PeImage(self.read(setup)).resource(PeImage.MANIFEST), PeImage(bare).resource(PeImage.MANIFEST))
        self.run_program(setup, "-gui=0", "-auto")
        self.assertEqual(self.read("product/un/installer.exe"), bare)

    def test_are_the_same_bytes_each_time(self):
        for directory in ("a", "b"):
            self.host(directory).mkdir()
        self.assertEqual(self.read(self.build("a/setup.exe")), self.read(self.build("b/setup.exe")))

    def test_are_those_of_the_image_where_nothing_asks_for_others(self):
        setup = self.read(self.build(brand="", words=""))
        bare = bytearray(self.read("installer.exe"))
        marker = bare.index(b"_BINARYIMAGEOFFSET_\0")
        struct.pack_into("<I", bare, marker, len(bare))
        self.assertEqual(setup[:len(bare)], bytes(bare))


@unittest.skipUnless(WINDOWS, "setups for Linux have no signature in their file")
class Signed(BrandTest):
    """With a certificate made for the test, on this machine, as an author on Linux does it."""

    def tool(self, *command, expected=0):
        done = subprocess.run([str(part) for part in command], capture_output=True, timeout=TIMEOUT, check=False)
        self.assertEqual(done.returncode, expected, (command, done.stdout, done.stderr))
        return done.stdout.decode()

    def sign(self, setup, signed):
        self.tool("openssl", "req", "-x509", "-newkey", "rsa:2048", "-nodes", "-days", "2", "-subj", "/CN=Greeter Ltd",
                  "-addext", "extendedKeyUsage=codeSigning", "-keyout", self.host("key.pem"), "-out", self.host("certificate.pem"))
        self.tool("osslsigncode", "sign", "-h", "sha256", "-certs", self.host("certificate.pem"), "-key", self.host("key.pem"),
                  "-n", "Greeter", "-in", self.host(setup), "-out", self.host(signed))

    def verify(self, signed, expected=0):
        return self.tool("osslsigncode", "verify", "-CAfile", self.host("certificate.pem"), "-in", self.host(signed),
                         expected=expected)

    def test_installs_and_is_whole(self):
        self.sign(self.build("plain.exe"), "setup.exe")
        self.assertIn("Signature verification: ok", self.verify("setup.exe"))
        verified = self.packager("verify", self.native("setup.exe"))
        self.assertEqual(verified.code, 0, verified)
        self.assertIn("checksum: right", verified.out)
        self.assertIn("a.txt", self.packager("list", self.native("setup.exe")).out)
        result = self.run_program("setup.exe", "-gui=0", "-auto")
        self.assertEqual(result.code, 0, result)
        self.assertEqual(self.read_text("product/a.txt"), "content")
        self.assertEqual(version_texts(PeImage(self.read("setup.exe")).resource(PeImage.VERSION))["CompanyName"], "Grüße & Co")

    def test_is_no_longer_whole_after_a_change(self):
        self.sign(self.build("plain.exe"), "setup.exe")
        data = bytearray(self.read("setup.exe"))
        data[len(self.read("plain.exe")) // 2] ^= 1
        self.write("setup.exe", bytes(data))
        self.verify("setup.exe", expected=1)
        self.assertNotEqual(self.packager("verify", self.native("setup.exe")).code, 0)

    def test_is_possible_without_a_brand(self):
        self.sign(self.build("plain.exe", brand="", words=""), "setup.exe")
        self.verify("setup.exe")
        self.assertIn("Automatic installation was successful!\n", self.run_program("setup.exe", "-gui=0", "-auto").out)


if __name__ == "__main__":
    main()
