"""packager preview: the pages of a package as pictures and texts, what is marked on them, and what has changed."""

import contextlib
import os
import pathlib
import re
import shutil
import struct
import subprocess
import unittest

import screen_reader
from harness import BIN, EXE, WINDOWS, EndToEndTest, main

TOP = pathlib.Path(__file__).resolve().parents[2]
DESCRIPTION = """<?xml version="1.0" encoding="UTF-8"?>
<TandrelGroupInstallation>
  <ProductDesc><Fullname>Preview</Fullname><MajorVersion>1</MajorVersion></ProductDesc>
  <DefValues><Value Name="KIND" DataType="value">0</Value>
    <Value Name="PROGRAMS" DataType="envvar" Default="/opt">ProgramFiles</Value>
    <Value Name="WHERE" DataType="value">$PROGRAMS/preview</Value></DefValues>
  <Dialogs>
    <Welcome w="400" h="200"><Text x="16" y="16" w="300">@WELCOME@</Text>@MORE@
      <Button Name="Next" x="120" y="48" w="96" h="32" HAlign="right" VAlign="bottom">@CAPTION@</Button></Welcome>@PAGES@
    <Extra Condition="[KIND]==1" w="400" h="200"><Text x="16" y="16" w="300">Only for some.</Text></Extra>
    <CopyProgress Special="AutoNext" w="400" h="200"><List Name="Destfilelist" x="16" y="16" w="300" h="100"/></CopyProgress>
    <End Special="Finish" w="400" h="200"><Text x="16" y="16" w="300">Done.</Text></End>
  </Dialogs>
  <Installation>
    <Uninstall>
      <InstallLogFile>/opt/preview/install.log</InstallLogFile>
      <InstallBackupFile>/opt/preview/backup.bin</InstallBackupFile>
      <UninstallCmd>/opt/preview/installer</UninstallCmd>
      <UninstallXmlFile>/opt/preview/install.xml</UninstallXmlFile>
    </Uninstall>
    <FileSet Name="All"><FN Dest="/opt/preview">a.txt</FN><FN Dest="/opt/preview">install.xml</FN></FileSet>
  </Installation>
</TandrelGroupInstallation>
"""
ANSWERS = '<R><DefValues><Value Name="KIND" DataType="value">1</Value></DefValues></R>'


# The desktop's libraries leave what they allocate.
ENVIRONMENT = {}
if os.environ.get("TANDREL_E2E_KIND") == "sanitized":
    ENVIRONMENT["ASAN_OPTIONS"] = "detect_leaks=0:" + os.environ.get("ASAN_OPTIONS", "")


def setUpModule():
    if WINDOWS:
        screen_reader.probe()


class PreviewTest(EndToEndTest):
    def setUp(self):
        super().setUp()
        shutil.copy(BIN / ("previewer" + EXE), self.host("previewer" + EXE))

    def packager(self, *arguments, env=None, **options):
        return super().packager(*arguments, env={**ENVIRONMENT, **(env or {})}, **options)

    def preview(self, *options, to="out", welcome="Hello.", caption="&amp;Next", more="", pages="", env=None):
        description = DESCRIPTION.replace("@WELCOME@", welcome).replace("@CAPTION@", caption).replace("@MORE@", more)
        description = description.replace("@PAGES@", pages)
        self.write("in/install.xml", description.encode())
        self.write("in/a.txt", b"a")
        return self.packager("preview", self.native("in/install.xml"), "--root", self.native("in"), "--to",
                             self.native(to), *options, env=env)

    def size_of(self, path):
        data = self.read(path)
        self.assertEqual(data[:8], b"\x89PNG\r\n\x1a\n")
        return struct.unpack(">II", data[16:24])

    def files(self, directory):
        return {path: self.read(f"{directory}/{path}") for path in self.tree(directory)}


def windows_image():
    """The headers of a program for Windows, as far as a packager looks at them, and one section."""
    image = bytearray(1024)
    image[:2] = b"MZ"
    for place, form, value in ((0x3C, "<I", 0x80), (0x80, "<I", 0x4550), (0x84, "<H", 0x8664), (0x86, "<H", 1),
                               (0x94, "<H", 240), (0x98 + 60, "<I", 1024), (0x188 + 16, "<I", 512),
                               (0x188 + 20, "<I", 1024)):
        struct.pack_into(form, image, place, value)
    return bytes(image) + bytes(512)


@contextlib.contextmanager
def own_display():
    """A display as a user has one; gives its name."""
    reader, writer = os.pipe()
    server = subprocess.Popen(["Xvfb", "-displayfd", str(writer), "-screen", "0", "1024x768x24", "-nolisten", "tcp"],
                              pass_fds=[writer], stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
    os.close(writer)
    try:
        with os.fdopen(reader) as number:
            yield ":" + number.readline().strip()
    finally:
        server.terminate()
        server.wait()


class Preview(PreviewTest):
    def test_the_console_shows_all_pages(self):
        result = self.preview()
        self.assertEqual(result.code, 0, result)
        self.assertIn("Hello.", self.read_text("out/default-console/install-01-Welcome.txt"))
        self.assertRegex(self.read_text("out/default-console/install-03-CopyProgress.txt"),
                         r"Create /opt/preview[/\\]a\.txt\n")
        self.assertNotIn("out/default-console/install-02-Extra.txt", self.tree("out"))
        self.assertIn("install-01-Welcome", self.read_text("out/index.html"))
        self.assertFalse(os.path.exists("/opt/preview"))

    def test_a_setup_for_windows_is_shown_on_windows(self):
        self.write("image.exe", windows_image())
        field = '<Field Type="EditBox" Label="Where" x="16" y="48" w="300">WHERE</Field>'
        result = self.preview("--image", self.native("image.exe"), more=field)
        self.assertEqual(result.code, 0, result)
        self.assertIn(r"Where [C:\Program Files/preview]:", self.read_text("out/default-console/install-01-Welcome.txt"))
        self.assertRegex(self.read_text("out/default-console/install-03-CopyProgress.txt"),
                         r"Create .opt.preview\\a\.txt\n")

    def test_keeps_what_no_preview_wrote(self):
        self.write("out/mine.txt", b"mine")
        result = self.preview()
        self.assertEqual(result.code, 1, result)
        self.assertIn("is neither empty nor an earlier preview", result.err)
        self.assertEqual(set(self.tree("out")), {"mine.txt"})

    def test_says_what_cant_be_shown(self):
        self.write("broken", b"no package")
        result = self.packager("preview", self.native("broken"), "--to", self.native("out"))
        self.assertEqual((result.code, result.out), (1, ""), result)
        self.assertEqual(self.packager("preview").code, 2)
        result = self.preview("--answers", self.native("none.xml"))
        self.assertEqual(result.code, 1, result)
        self.assertIn("the answers can't be read", result.err)

    @unittest.skipUnless(WINDOWS, "Linux draws pictures")
    def test_says_that_there_are_no_pictures(self):
        result = self.preview()
        self.assertIn("no pictures: there are no displays in memory on this system", result.err)
        self.assertEqual(self.preview("--strict").code, 1)


@unittest.skipUnless(WINDOWS, "Linux has a display in memory")
class PicturesOnAScreen(PreviewTest):
    def test_each_page_is_drawn_on_the_users_own_display(self):
        result = self.preview("--display", "--strict")
        self.assertEqual((result.code, result.err), (0, ""), result)
        self.assertRegex(result.out, r": 3 pictures, 0 faults\r?\n$")
        width, height = self.size_of("out/default-100/install-01-Welcome.png")
        self.assertGreaterEqual(width, 400)
        self.assertAlmostEqual(width / height, 2, delta=0.05)
        # The words and the button are on it, so it isn't of one colour.
        self.assertGreater(len(self.read("out/default-100/install-01-Welcome.png")), 1000)

    def test_what_has_changed_is_shown(self):
        self.assertEqual(self.preview("--display", to="before").code, 0)
        result = self.preview("--display", "--compare", self.native("before"), caption="&amp;Forward")
        self.assertIn(": 1 changed, 0 new, 0 gone", result.out, result)

    def test_words_that_are_cut_are_marked(self):
        result = self.preview("--display", "--strict", caption="A caption that no button of this width can hold")
        self.assertEqual(result.code, 1, result)
        self.assertIn("install-01-Welcome.png: cut: ", result.out)

    def test_letters_have_the_size_of_the_desktop(self):
        result = self.preview("--display", "--sizes", "150")
        self.assertEqual(result.code, 1, result)
        self.assertIn("letters of 150 % can't be had: on this system the desktop's setting counts", result.err)


@unittest.skipIf(WINDOWS, "letters have sizes, and displays can be in memory, on Linux alone")
class Pictures(PreviewTest):
    def test_each_page_is_a_picture_for_each_size_of_letters(self):
        result = self.preview("--sizes", "100,200", "--strict")
        self.assertEqual((result.code, result.err), (0, ""), result)
        self.assertRegex(result.out, r"index\.html: 6 pictures, 0 faults\n$")
        width, height = self.size_of("out/default-100/install-01-Welcome.png")
        self.assertGreaterEqual(width, 400)
        self.assertAlmostEqual(width / height, 2, delta=0.05)
        large, _ = self.size_of("out/default-200/install-01-Welcome.png")
        self.assertGreater(large, width * 1.5)

    def test_the_same_package_gives_the_same_bytes(self):
        self.assertEqual(self.preview().code, 0)
        self.assertEqual(self.preview(to="again").code, 0)
        self.assertEqual(self.files("out"), self.files("again"))
        self.assertEqual(self.preview().code, 0)
        self.assertEqual(self.files("out"), self.files("again"))

    def test_answers_lead_to_further_pages(self):
        self.write("answers.xml", ANSWERS.encode())
        result = self.preview("--answers", self.native("answers.xml"))
        self.assertEqual(result.code, 0, result)
        self.assertIn("answers1-100/install-02-Extra.png", self.tree("out"))
        self.assertIn("answers1-console/install-02-Extra.txt", self.tree("out"))
        self.assertNotIn("default-100/install-02-Extra.png", self.tree("out"))

    def test_marks_words_that_are_cut(self):
        for problem in ({"caption": "A caption that no button of this width can hold"},
                        {"welcome": "W" * 100},
                        {"more": '<Text x="16" y="190" w="300">On the edge.</Text>'}):
            result = self.preview("--strict", **problem)
            self.assertEqual(result.code, 1, result)
            self.assertRegex(result.out, r"install-01-Welcome\.png: (cut|outside): ")
            self.assertRegex(result.out, r": 3 pictures, 1 fault\n$")
            self.assertIn('class="fault"', self.read_text("out/index.html"))
            self.assertEqual(self.preview(**problem).code, 0)

    def test_marks_a_box_that_doesnt_show_all_that_is_in_it(self):
        field = '<Field Type="EditBox" x="16" y="48" w="%d">WHERE</Field>'
        result = self.preview(more=field % 60)
        self.assertIn("install-01-Welcome.png: cut: /opt/preview\n", result.out, result)
        result = self.preview("--strict", more=field % 200)
        self.assertEqual(result.code, 0, result)

    def test_marks_tasks_that_are_cut(self):
        frame = ('<Main Special="HasSubDialogs" w="400" h="200"><TaskLB Name="TaskList" x="16" y="16" w="%d" h="100"/>'
                 '<TaskList><Notes CurrentLabel="A task with a long name"/></TaskList>'
                 '<SubDialogs><Notes x="0" y="120" w="400" h="80"/></SubDialogs></Main>')
        result = self.preview(pages=frame % 60)
        self.assertIn("install-02-Notes.png: cut: A task with a long name\n", result.out, result)
        result = self.preview("--strict", pages=frame % 300)
        self.assertEqual(result.code, 0, result)

    def test_marks_what_lies_on_one_another(self):
        result = self.preview(more='<Text x="20" y="18" w="300">Over it.</Text>')
        self.assertIn("install-01-Welcome.png: overlap: ", result.out, result)

    def test_shows_what_has_changed(self):
        self.assertEqual(self.preview(to="before").code, 0)
        result = self.preview("--compare", self.native("before"))
        self.assertIn(": 0 changed, 0 new, 0 gone", result.out, result)
        result = self.preview("--compare", self.native("before"), caption="&amp;Forward")
        self.assertIn(": 1 changed, 0 new, 0 gone", result.out, result)
        self.assertIn("compared/difference-0.png", self.tree("out"))
        self.assertIn("default-100/install-01-Welcome.png has changed", self.read_text("out/index.html"))
        result = self.preview("--compare", self.native("before"), welcome="Good morning.")
        self.assertIn(": 2 changed, 0 new, 0 gone", result.out, result)

    def test_shows_the_sample_without_a_fault(self):
        subprocess.run([TOP / "scripts/stage-sample", BIN, self.host("stage")], check=True)
        result = self.packager("preview", self.native("stage/install.xml"), "--root", self.native("stage/root"),
                               "--image", str(pathlib.Path(BIN) / "installer"), "--to", self.native("out"), "--strict")
        self.assertEqual((result.code, result.err), (0, ""), result)
        self.assertRegex(result.out, r": 12 pictures, 0 faults\n$")
        names = [re.sub(r"-\d+", "", path) for path in self.tree("out") if path.startswith("default-100/uninstall")]
        self.assertEqual(len(names), 4, names)

    def test_needs_a_display_in_memory_for_pictures_alone(self):
        result = self.preview(env={"PATH": "/nowhere"})
        self.assertEqual(result.code, 0, result)
        self.assertIn("the program Xvfb is missing; on Debian it is in the package xvfb", result.err)
        self.assertIn("default-console/install-01-Welcome.txt", self.tree("out"))

    def test_draws_on_the_users_own_display(self):
        elsewhere = {"PATH": "/nowhere"}
        self.assertEqual(self.preview(to="memory").code, 0)
        with own_display() as name:
            result = self.preview("--display", env={**elsewhere, "DISPLAY": name})
        self.assertEqual((result.code, result.err), (0, ""), result)
        self.assertRegex(result.out, ": 3 pictures, 0 faults\n$")
        self.assertEqual(self.files("out"), self.files("memory"))
        result = self.preview("--display", env={**elsewhere, "DISPLAY": name})
        self.assertEqual(result.code, 1, result)
        self.assertIn("previewer: no window can be shown: ", result.err)

    def test_leaves_no_display_behind(self):
        self.write("tools/Xvfb", b'#!/bin/sh\necho $$ >"$0.id"\nexec /usr/bin/Xvfb "$@"\n')
        self.host("tools/Xvfb").chmod(0o755)
        result = self.preview(env={"PATH": f"{self.host('tools')}:{os.environ['PATH']}"})
        self.assertEqual(result.code, 0, result)
        self.assertRegex(result.out, ": 3 pictures")
        self.assertFalse(pathlib.Path("/proc", self.read_text("tools/Xvfb.id").strip()).exists())


if __name__ == "__main__":
    main()
