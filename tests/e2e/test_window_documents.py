"""Documents that are shown as they are written: the texts of well-known licences, in a window."""

import licences
from harness import main
from window import Window, WindowTest


class LicencesInWindow(WindowTest):
    def shown_in(self, view):
        documents = view.all("document")
        return documents[0].description if documents else view.one("lines").text

    def test_each_element_shows_them(self):
        for element in licences.ELEMENTS:
            with self.subTest(element):
                window = Window(self, licences.build_setup(self, element))
                for i, text in enumerate(licences.texts().values()):
                    view = window.page(licences.next_page(i))
                    self.assertEqual(licences.letters([self.shown_in(view)]), licences.letters([text]))
                    window.click(licences.next_page(i))
                window.close()


if __name__ == "__main__":
    main()
