#!/usr/bin/env python3
"""The sample product's description, pictures and colours: what a window shows of them is whole and legible."""

import html
import itertools
import pathlib
import re
import struct
import unittest
import xml.etree.ElementTree

SAMPLE = pathlib.Path(__file__).resolve().parents[2] / "samples/tandrel"
FILES = SAMPLE / "files"
DESCRIPTION = xml.etree.ElementTree.parse(SAMPLE / "install.xml").getroot()
GRID = 8
MARGIN = 24
FORMS = {"": 1, "@2x": 2, "@3x": 3}
ICONS = ("icon_not_started", "icon_current", "icon_good_finish", "icon_bad_finish", "icon_inactive")
# What a letter needs on average in the font that positions are measured in, and how much longer other languages are.
LETTER_WIDTH = 237 / 43
OTHER_LANGUAGES = 1.3


def aliases():
    return {file.get("Alias"): FILES / file.text for file in DESCRIPTION.iter("FN") if file.get("Alias")}


def jpeg_size(data):
    at = 2
    while data[at + 1] not in (0xC0, 0xC1, 0xC2):
        at += 2 + struct.unpack(">H", data[at + 2:at + 4])[0]
    height, width = struct.unpack(">HH", data[at + 5:at + 9])
    return width, height


def picture(path):
    """The kind and the size of a picture."""
    data = path.read_bytes()
    if data.startswith(b"\x89PNG"):
        return "png", struct.unpack(">II", data[16:24])
    if data.startswith(b"\xff\xd8"):
        return "jpeg", jpeg_size(data)
    width, height = struct.unpack("<II", data[:8])
    assert len(data) == 8 + 4 * width * height, f"{path} is no picture"
    return "raw", (width, height)


def drawing_size(name):
    root = xml.etree.ElementTree.parse(SAMPLE / "pictures" / f"{name}.svg").getroot()
    return int(root.get("width")), int(root.get("height"))


class Pictures(unittest.TestCase):
    def test_each_drawing_has_its_forms_at_one_two_and_three_times_its_size(self):
        names = [path.stem for path in (SAMPLE / "pictures").glob("*.svg") if path.stem != "appicon"]
        self.assertGreater(len(names), 0)
        for name, (suffix, factor) in itertools.product(names, FORMS.items()):
            found = list((FILES / "gui").glob(f"{name}{suffix}.*"))
            self.assertEqual(len(found), 1, f"{name}{suffix}")
            width, height = drawing_size(name)
            self.assertEqual(picture(found[0])[1], (width * factor, height * factor), found[0])

    def test_the_package_has_all_forms_of_each_picture_that_a_page_shows(self):
        known = aliases()
        shown = {element.text for element in DESCRIPTION.iter("Image")} | set(ICONS)
        for show in DESCRIPTION.iter("SlideShow"):
            shown |= {show.get("Name") + str(number) for number in range(int(show.text))}
        for alias, suffix in itertools.product(shown, FORMS):
            self.assertIn(alias + suffix, known)
            self.assertEqual(known[alias + suffix].stem, known[alias].stem + suffix)

    def test_all_kinds_of_pictures_are_used(self):
        kinds = {picture(path)[0] for path in (FILES / "gui").iterdir()}
        self.assertEqual(kinds, {"png", "jpeg", "raw"})

    def test_pictures_fill_their_places(self):
        for element in DESCRIPTION.iter("Image"):
            self.assertEqual(picture(aliases()[element.text])[1], (int(element.get("w")), int(element.get("h"))))
        for element in DESCRIPTION.iter("SlideShow"):
            self.assertEqual(picture(aliases()["Slide0"])[1], (int(element.get("w")), int(element.get("h"))))

    def test_the_icon_is_square_and_installed(self):
        width, height = picture(aliases()["AppIcon"])[1]
        self.assertEqual(width, height)
        installed = [file for file in DESCRIPTION.iter("FN") if file.get("Alias") == "AppIcon"]
        self.assertTrue(installed[0].get("Dest"))

    def test_pictures_stay_small(self):
        self.assertLess(sum(path.stat().st_size for path in (FILES / "gui").iterdir()), 400_000)


class Page:
    """The places of a page's elements, fields and buttons: left, top, right, bottom, or None where it has none."""

    def __init__(self, page, frame):
        self.name = page.tag
        self.width, self.height = int(frame.get("w")), int(frame.get("h"))
        parts = list(frame) + ([] if page is frame else list(page))
        self.parts = [part for part in parts if part.get("x") and part.tag != "Field"]

    def place(self, part):
        x, y, w, h = (int(part.get(name, 0)) for name in ("x", "y", "w", "h"))
        left = self.width - x if part.get("HAlign") == "right" else x
        top = self.height - y if part.get("VAlign") == "bottom" else y
        right = self.width + w if w < 0 else left + w
        bottom = self.height + h if h < 0 else top + (h or 16 * (part.text or "").count("\\n") + 16)
        return left, top, right, bottom


def pages():
    for frame in itertools.chain(DESCRIPTION.find("Dialogs"), DESCRIPTION.find("UninstallDialogs")):
        inner = frame.find("SubDialogs")
        for page in inner if inner is not None else [frame]:
            yield Page(page, frame)


class Places(unittest.TestCase):
    def test_pages_and_places_are_on_the_grid(self):
        for page in pages():
            self.assertEqual((page.width % GRID, page.height % GRID), (0, 0), page.name)
            for part in page.parts:
                numbers = [int(part.get(name, 0)) for name in ("x", "y", "w", "h") if part.tag != "HLine"]
                # Bars are slim: half a step.
                self.assertTrue(all(n % (GRID // 2 if part.tag == "Progress" else GRID) == 0 for n in numbers),
                                (page.name, part.tag, part.attrib))

    def test_everything_is_inside_of_the_page_and_its_margins(self):
        for page in pages():
            for part in page.parts:
                left, top, right, bottom = page.place(part)
                edge = 0 if part.tag in ("Image", "HLine") else MARGIN
                self.assertGreaterEqual(left, edge, (page.name, part.attrib))
                self.assertLessEqual(right, page.width - edge, (page.name, part.attrib))
                self.assertLess(top, bottom, (page.name, part.attrib))
                self.assertLessEqual(bottom, page.height, (page.name, part.attrib))

    def test_nothing_overlaps(self):
        for page in pages():
            shown = [part for part in page.parts if part.tag != "Border" and not part.get("Condition")]
            for one, other in itertools.combinations(shown, 2):
                a, b = page.place(one), page.place(other)
                apart = a[2] <= b[0] or b[2] <= a[0] or a[3] <= b[1] or b[3] <= a[1]
                self.assertTrue(apart, (page.name, one.tag, one.attrib, other.tag, other.attrib))

    def test_buttons_are_at_the_bottom_right_in_the_usual_order(self):
        for page in pages():
            named = {part.get("Name"): page.place(part) for part in page.parts if part.tag == "Button"}
            order = [named[name] for name in ("Back", "Next", "Cancel") if name in named]
            self.assertGreater(len(order), 0, page.name)
            self.assertEqual(order, sorted(order), page.name)
            self.assertEqual(order[-1][2], page.width - MARGIN, page.name)
            self.assertEqual({place[3] for place in order}, {page.height - 16}, page.name)

    def test_texts_have_room_for_longer_languages(self):
        for page in pages():
            for part in page.parts:
                if part.tag in ("Text", "Button"):
                    left, _, right, _ = page.place(part)
                    longest = max(len(line) for line in part.text.replace("&", "").split("\\n"))
                    self.assertLessEqual(longest * LETTER_WIDTH * OTHER_LANGUAGES, right - left, part.text)

    def test_pages_of_an_uninstallation_have_no_resources(self):
        for tag in ("Image", "SlideShow", "RichEditText", "HtmlEditText", "PlainEditText", "TaskLB"):
            self.assertEqual(list(DESCRIPTION.find("UninstallDialogs").iter(tag)), [])


class Fields(unittest.TestCase):
    def test_every_type_of_field_and_every_element_is_shown(self):
        self.assertEqual({field.get("Type") for field in DESCRIPTION.iter("Field")},
                         {"Directory", "EditBox", "Password", "CheckBox", "RadioButtons", "InstallParameter"})
        for tag in ("Text", "Image", "HLine", "RichEditText", "Progress", "List", "TaskLB", "Border", "SlideShow",
                    "HtmlEditText", "PlainEditText"):
            self.assertIsNotNone(DESCRIPTION.find(f"Dialogs//{tag}"), tag)


class Theme(unittest.TestCase):
    def setUp(self):
        root = xml.etree.ElementTree.fromstring((SAMPLE / "theme.xml").read_text("utf-8"))
        self.colours = {colour.get("Name") or colour.tag: colour.text for colour in root}

    def contrast(self, one, other):
        lighter, darker = sorted((self.luminance(one), self.luminance(other)), reverse=True)
        return (lighter + 0.05) / (darker + 0.05)

    def luminance(self, name):
        shares = [int(self.colours[name][at:at + 2], 16) / 255 for at in (0, 2, 4)]
        linear = [s / 12.92 if s <= 0.04045 else ((s + 0.055) / 1.055) ** 2.4 for s in shares]
        return 0.2126 * linear[0] + 0.7152 * linear[1] + 0.0722 * linear[2]

    def test_texts_are_legible(self):
        for text, ground in (("DialogForeground", "DialogBackground"), ("ActiveText", "DialogBackground"),
                             ("ActiveText", "ListBackground"), ("InactiveText", "DialogBackground"),
                             ("InactiveText", "ListBackground"), ("HighlightedText", "DialogBackground"),
                             ("InputBoxText", "InputBoxBackground"), ("LinkButtons", "DialogBackground"),
                             ("LinkButtons", "ButtonsBackground"), ("ButtonsText", "ButtonsBackground"),
                             ("ActiveButtonsText", "ActiveButtonsBackground"), ("OnPrimary", "Primary"),
                             ("OnPrimary", "PrimaryActive"), ("InvalidFieldForeground", "InvalidFieldBackground")):
            self.assertGreaterEqual(self.contrast(text, ground), 4.5, (text, ground))

    def test_bars_are_visible(self):
        self.assertGreaterEqual(self.contrast("ProgressBarForeground", "ProgressBarBackground"), 3)

    def test_every_group_that_the_description_uses_is_there(self):
        used = set(re.findall(r'"Group:(\w+)"', (SAMPLE / "install.xml").read_text("utf-8")))
        self.assertGreater(len(used), 0)
        self.assertLessEqual(used, set(self.colours))


class Agreement(unittest.TestCase):
    """The three forms of the agreement say the same."""

    @staticmethod
    def words(text):
        # Without the markers of lists, which HTML doesn't have.
        return [word for word in re.findall(r"[^\W_]+", text.replace("’", "'")) if len(word) > 1]

    def text(self, form):
        return (FILES / "texts" / f"agreement.{form}").read_text("utf-8")

    def test_html(self):
        body = self.text("html").partition("<body>")[2]
        self.assertEqual(self.words(html.unescape(re.sub(r"<[^>]+>", " ", body))), self.words(self.text("md")))

    def test_rich_text(self):
        body = self.text("rtf").partition(";}}")[2].replace(r"\rquote ", "'")
        self.assertEqual(self.words(re.sub(r"\\[a-z]+[0-9]* ?|\\~", " ", body)), self.words(self.text("md")))


if __name__ == "__main__":
    unittest.main()
