"""Documents that are shown as they are written: the texts of well-known licences, by the packager and on the console."""

import json
import re

import licences
from descriptions import description
from harness import EndToEndTest, main
from licences import letters

WIDTHS = (40, 80, 200)
ASSUMED_WIDTH = 78
PAUSE = "Press Enter to continue..."
# An item of a list in markdown: its number or letter, and its text.
ITEM = re.compile(r"^\s*(\d+|[a-z])\.[ \t]+(\S.*)$")
LABEL = re.compile(r"(\d+|[a-z])\.")


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


class LicencesInOtherFormats(EndToEndTest):
    """The same texts in the formats that aren't meant for them: `check` names each place that isn't shown as it is written."""

    def findings(self, name, text, file_format=""):
        """Code -> lines of the document, and how many more places there are."""
        page = f'<Read><RichEditText x="1" y="1"{file_format}>Text</RichEditText></Read>'
        self.write("check/install.xml", description("/opt/product", f'<FileSet Name="T"><FN Alias="Text">{name}</FN></FileSet>', page))
        self.write("check/root/" + name, text)
        result = self.packager("check", self.native("check/install.xml"), "--root", self.native("check/root"), "--format", "json")
        found, more = {}, 0
        for finding in json.loads(result.out):
            if finding["code"].startswith("document-"):
                place = re.search(r": (?:line (?P<line>\d+): |(?P<more>\d+) more places aren't shown)", finding["message"])
                found.setdefault(finding["code"], set()).update([int(place["line"])] if place["line"] else [])
                more += int(place["more"] or 0)
        return found, more

    def shown(self, name, *options):
        result = self.packager("text", self.native("check/root/" + name), "--width", "1000", *options)
        self.assertEqual(result.code, 0, result)
        return result.out.split("\n")

    @staticmethod
    def words(lines):
        """Without markup and without numbers of items."""
        return [word for line in lines for word in re.sub(r"[*_\\>#]", "", line).split() if not LABEL.fullmatch(word)]

    @staticmethod
    def items(lines):
        """Line -> label and text of each item, in the order of the lines."""
        found = {number: ITEM.match(line) for number, line in enumerate(lines, 1)}
        return {number: (item[1], item[2].split()) for number, item in found.items() if item}

    def lost_items(self, lines, shown):
        """The lines of the items that aren't there with their own numbers, and which of them directly follow another one."""
        starts = [line.split() for line in shown]
        lost, following, before = set(), set(), None
        for number, (label, text) in self.items(lines).items():
            if [label + ".", *text] not in [start[:len(text) + 1] for start in starts]:
                lost.add(number)
                if before and before.isdigit() and label == str(int(before) + 1):
                    following.add(number)
                before = label
            else:
                before = None
        return lost, following

    def test_markdown_keeps_the_words_and_each_number_that_it_changes_is_found(self):
        changed = 0
        for name, text in licences.texts().items():
            with self.subTest(name):
                found, _ = self.findings(name, text, ' Format="TandrelMarkdown"')
                if "document-broken" in found:
                    broken, = found["document-broken"]
                    self.assertIn("***", text.split("\n")[broken - 1])
                    text = text.replace("*", "\\*")
                    found, _ = self.findings(name, text, ' Format="TandrelMarkdown"')
                self.assertLessEqual(set(found), {"document-loss"})
                lines, shown = text.split("\n"), self.shown(name)
                self.assertEqual(" ".join(self.words(shown)), " ".join(self.words(lines)))
                named = found.get("document-loss", set())
                lost, following = self.lost_items(lines, shown)
                self.assertLessEqual(named, lost)
                self.assertLessEqual(lost - named, following)
                changed += len(named)
        self.assertGreater(changed, 20)

    def test_rich_text_keeps_the_words_and_each_control_character_is_found(self):
        changed = 0
        for name, text in licences.texts().items():
            with self.subTest(name):
                escaped = re.sub(r"([\\{}])", r"\\\1", text)
                document = "{\\rtf1\\ansi\n" + escaped.replace("\n", "\\par\n") + "}\n"
                lines = document.split("\n")
                control = {number for number, line in enumerate(lines, 1) if "\t" in line or "\f" in line}
                self.assertEqual(self.findings(name + ".rtf", document.replace("\t", "\\tab ").replace("\f", "")), ({}, 0))
                self.assertEqual(" ".join(self.shown(name + ".rtf")).split(), text.split())
                found, more = self.findings(name + ".rtf", document)
                self.assertLessEqual(set(found), {"document-loss"})
                named = found.get("document-loss", set())
                self.assertLessEqual(named, control)
                self.assertEqual(len(named) + more, len(control))
                changed += len(control)
        self.assertGreater(changed, 5)


if __name__ == "__main__":
    main()
