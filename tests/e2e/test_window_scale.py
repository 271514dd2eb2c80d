"""Pages in larger letters: they grow, and nothing on them meets or leaves them."""

import itertools

import descriptions
import screen_reader
from harness import EXE, WINDOWS, main
from held_setup import BUTTONS
from sample_window import SampleInWindow
from window import Window

SENTENCE = "The quick brown fox jumps over the lazy dog"
REFERENCE = 237  # its width in the letters for which descriptions are written
WIDTH, HEIGHT = 480, 240
SCALES = (96, 144, 192)


class Scaled(SampleInWindow):
    def letters(self, dots):
        """Programs that start now, with this environment, show their texts for a screen of so many dots per inch."""
        if WINDOWS:
            screen_reader.probe().log_on(dots)
            return {}
        self.write("resources", f"Xft.dpi: {dots}\n")
        return {"XENVIRONMENT": self.native("resources")}

    def assert_tidy(self, view):
        """All controls are inside, and none lies on another one, frames around others aside."""
        left, top, width, height = view.client
        shown = [w for w in view.widgets if w.role != "border" and w.rectangle[2] > 1 and w.rectangle[3] > 1]
        for widget in shown:
            x, y, w, h = widget.rectangle
            self.assertTrue(left <= x and top <= y and x + w <= left + width and y + h <= top + height, f"{widget} in\n{view}")
        for one, other in itertools.combinations(shown, 2):
            self.assertFalse(meet(one.rectangle, other.rectangle), f"{one} and {other} in\n{view}")

    def test_a_page_grows_with_the_width_of_the_letters(self):
        page = (f'<Welcome w="{WIDTH}" h="{HEIGHT}"><Text x="8" y="24">{SENTENCE}</Text>{BUTTONS}</Welcome>')
        text = descriptions.description(self.native("opt"), "", page)
        self.build_package(text, {"install.xml": text}, output="measure" + EXE)
        widths = []
        for dots in SCALES:
            with self.subTest(dots):
                window = Window(self, "measure" + EXE, env=self.letters(dots))
                view = window.page(SENTENCE)
                sentence = view.one("label").rectangle[2]
                widths.append(sentence)
                # Labels may be a pixel wider than their text.
                allowed = [(int(WIDTH * scale), int(HEIGHT * scale))
                           for scale in (max(1.0, (sentence - extra) / REFERENCE) for extra in (0, 1))]
                self.assertIn(view.client[2:], allowed)
                self.assert_tidy(view)
                window.click("Cancel")
                window.answer("This will cancel the installation of\nTest Product\nAre you sure?", "Yes")
                window.end()
        for width, dots in zip(widths, SCALES):
            self.assertAlmostEqual(width / widths[0], dots / 96, delta=0.1)

    def test_the_pages_of_the_sample_stay_tidy(self):
        for dots in SCALES[1:]:
            with self.subTest(dots):
                setup = self.open_setup("-VARIABLE_SHARE_SETUPS=1", env=self.letters(dots))
                for page, forward in self.PAGES:
                    self.assert_tidy(self.at(page, setup))
                    if page == "settings":
                        setup.choose("Set-up: Choose the parts", role="radio button")
                    if page == "parts":
                        setup.choose("Let other machines fetch setups from port 8317", checked=False)
                    if page != "summary":
                        setup.click(forward)
                setup.click("Cancel")
                setup.answer("This will cancel the installation of\nTandrel Installer Tools\nAre you sure?", "Yes")
                setup.end()


def meet(one, other):
    return all(a < b + length and b < a + own
               for a, own, b, length in ((one[0], one[2], other[0], other[2]), (one[1], one[3], other[1], other[3])))


if __name__ == "__main__":
    main()
