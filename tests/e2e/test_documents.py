"""Documents that are shown as they are written: the texts of well-known licences, by the packager and on the console."""

import licences
from harness import EndToEndTest, main
from licences import letters

WIDTHS = (40, 80, 200)
ASSUMED_WIDTH = 78
PAUSE = "Press Enter to continue..."


class Licences(EndToEndTest):
    def setUp(self):
        super().setUp()
        self.texts = licences.texts()

    def assert_whole(self, shown, name, width):
        """Each line is there as it was written, in the order of the document, and broken only where it is too wide."""
        shown = shown.split("\n")
        for line in licences.lines_of(self.texts[name]):
            if len(line) <= width:
                self.assertEqual(shown.pop(0), line)
                continue
            parts = [shown.pop(0)]
            while len(letters(parts)) < len(letters([line])):
                parts.append(shown.pop(0))
            self.assertLessEqual(max(map(len, parts)), width)
            self.assertEqual(letters(parts), letters([line]))
            words = " ".join(parts).split()
            self.assertEqual([w for w in line.split() if w not in words and len(w) <= width // 2], [])
        self.assertEqual(shown, [""])

    def test_the_packager_shows_them_at_every_width(self):
        for name, text in self.texts.items():
            self.write(name, text)
            for width in WIDTHS:
                with self.subTest(name, width=width):
                    result = self.packager("text", self.native(name), "--verbatim", "--width", width)
                    self.assertEqual((result.code, result.err), (0, ""))
                    self.assert_whole(result.out, name, width - 2)

    def test_the_console_shows_them_with_each_element(self):
        for element in licences.ELEMENTS:
            with self.subTest(element):
                result = self.run_program(licences.build_setup(self, element), "-gui=0", stdin="\n" * 20)
                self.assertEqual(result.code, 0, result)
                self.assertIn("It worked.", result.out)
                shown = result.out.split(PAUSE)[1:]
                self.assertEqual(len(shown), len(self.texts))
                shown[-1] = shown[-1][:shown[-1].index(licences.AFTER)]
                for name, text in zip(self.texts, shown):
                    self.assert_whole(text, name, ASSUMED_WIDTH)


if __name__ == "__main__":
    main()
