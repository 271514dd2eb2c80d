"""The close box of a window in each state of a run."""

from harness import main
from held_setup import HeldSetup

QUESTION = "This will cancel the installation of\nTest Product\nAre you sure?"
RUNNING = "The installation is running and can not be aborted!"
BUSY = "The installer is busy and cannot be interrupted"


class Closing(HeldSetup):
    def assert_refused(self, text):
        self.setup.press_close_box()
        box = self.setup.box(text)
        self.assertEqual(box.title, "Cancel information")
        self.assertEqual([button.name for button in box.all("button")], ["OK"])
        self.setup.click("OK")

    def assert_asks(self, page):
        """Declined at first: by the close box, and by the key that means the same."""
        for ask in (self.setup.press_close_box, lambda: self.setup.key("Escape")):
            ask()
            box = self.setup.box(QUESTION)
            self.assertEqual(box.title, "Cancel confirmation")
            self.assertEqual({button.name for button in box.all("button")}, {"Yes", "No"})
            self.setup.click("No")
            self.setup.page(page)
        self.setup.press_close_box()
        self.setup.answer(QUESTION, "Yes")
        code, _ = self.setup.end()
        self.assertEqual(code, 0)

    def test_before_the_installation_it_asks_and_a_yes_leaves_nothing(self):
        self.setup.page("Before.")
        self.assert_asks("Before.")
        self.assertFalse(self.host("opt").exists())

    def test_while_the_installer_is_busy_it_is_refused(self):
        self.setup.page("Before.")
        self.setup.click("Next")
        self.wait_until_held("Looking")
        self.setup.page("Looking.")
        self.assert_refused(BUSY)
        self.release("Looking")
        self.setup.control("button", "Next")
        self.assert_asks("Looking.")
        self.assertFalse(self.host("opt").exists())

    def test_while_the_installation_runs_it_is_refused_and_the_work_is_finished(self):
        self.walk_to_the_installation()
        self.setup.page("Copying.")
        self.assert_refused(RUNNING)
        self.release("AdditionalInstall")
        self.setup.page("It worked.")
        self.setup.click("Next")
        self.assertEqual(self.setup.end()[0], 0)
        self.assertEqual(self.read_text("opt/data.txt"), "data\n")

    def test_on_the_last_page_it_asks_and_what_is_installed_stays(self):
        self.walk_to_the_installation()
        self.release("AdditionalInstall")
        self.setup.page("It worked.")
        self.assert_asks("It worked.")
        self.assertEqual(self.read_text("opt/data.txt"), "data\n")


if __name__ == "__main__":
    main()
