"""The close box of a window in each state of a run."""

from harness import main
from held_setup import HeldRemoval, HeldSetup

QUESTION = "This will cancel the installation of\nTest Product\nAre you sure?"
RUNNING = "The installation is running and can not be aborted!"
BUSY = "The installer is busy and cannot be interrupted"


class CloseBox:
    """What it does to `window`."""

    def assert_refused(self, window, text):
        """By the close box, and by the key that means the same."""
        for ask in (window.press_close_box, lambda: window.key("Escape")):
            ask()
            box = window.box(text)
            self.assertEqual(box.title, "Cancel information")
            self.assertEqual([button.name for button in box.all("button")], ["OK"])
            window.click("OK")

    def assert_at_work(self, window, text):
        view = window.page(text, "Cancel")
        self.assertFalse(view.one("button", "Next").enabled)
        current, overall = (bar.value for bar in view.all("bar"))
        self.assertLessEqual(current, 100)
        self.assertLess(overall, 100)

    def assert_asks(self, window, page):
        """Declined at first: by the close box, and by the key that means the same."""
        for ask in (window.press_close_box, lambda: window.key("Escape")):
            ask()
            box = window.box(QUESTION)
            self.assertEqual(box.title, "Cancel confirmation")
            self.assertEqual({button.name for button in box.all("button")}, {"Yes", "No"})
            window.click("No")
            window.page(page)
        window.press_close_box()
        window.answer(QUESTION, "Yes")
        self.assertEqual(window.end()[0], 0)


class AnInstallation(CloseBox, HeldSetup):
    def test_before_the_installation_it_asks_and_a_yes_leaves_nothing(self):
        self.setup.page("Before.")
        self.assert_asks(self.setup, "Before.")
        self.assertFalse(self.host("opt").exists())

    def test_while_the_installer_is_busy_it_is_refused(self):
        self.setup.page("Before.")
        self.setup.click("Next")
        self.wait_until_held("Looking")
        self.setup.page("Looking.")
        self.assert_refused(self.setup, BUSY)
        self.release("Looking")
        self.setup.control("button", "Next")
        self.assert_asks(self.setup, "Looking.")
        self.assertFalse(self.host("opt").exists())

    def test_while_the_installation_runs_it_is_refused_and_the_work_is_finished(self):
        self.walk_to_the_installation()
        self.assert_at_work(self.setup, "Copying.")
        self.assert_refused(self.setup, RUNNING)
        self.release("AdditionalInstall")
        self.setup.page("It worked.")
        self.setup.click("Next")
        self.assertEqual(self.setup.end()[0], 0)
        self.assertEqual(self.read_text("opt/data.txt"), "data\n")

    def test_on_the_last_page_it_asks_and_what_is_installed_stays(self):
        self.walk_to_the_installation()
        self.release("AdditionalInstall")
        self.setup.page("It worked.")
        self.assert_asks(self.setup, "It worked.")
        self.assertEqual(self.read_text("opt/data.txt"), "data\n")


class ARemoval(CloseBox, HeldRemoval):
    """The words are those of an installation."""

    def assert_nothing_is_removed(self):
        self.wait_for_the_uninstaller()
        self.assertEqual(self.tree("opt"), self.installed)

    def assert_all_is_removed(self):
        self.wait_for_the_uninstaller()
        self.assertFalse(self.host("opt").exists())

    def setUp(self):
        super().setUp()
        self.removal.page("Leaving.")
        self.installed = self.tree("opt")

    def test_before_the_removal_it_asks_and_a_yes_leaves_everything(self):
        self.assert_asks(self.removal, "Leaving.")
        self.assert_nothing_is_removed()

    def test_while_the_installer_is_busy_it_is_refused(self):
        self.removal.click("Next")
        self.wait_until_held("LookingBack")
        self.removal.page("Looking back.")
        self.assert_refused(self.removal, BUSY)
        self.release("LookingBack")
        self.removal.control("button", "Next")
        self.assert_asks(self.removal, "Looking back.")
        self.assert_nothing_is_removed()

    def test_while_the_removal_runs_it_is_refused_and_the_work_is_finished(self):
        self.walk_to_the_removal()
        self.assert_at_work(self.removal, "Removing.")
        self.assert_refused(self.removal, RUNNING)
        self.release("PreUninstall")
        self.removal.page("Bye.")
        self.removal.click("Next")
        self.assertEqual(self.removal.end(), (0, ""))
        self.assert_all_is_removed()

    def test_on_the_last_page_it_asks_and_nothing_comes_back(self):
        self.walk_to_the_removal()
        self.release("PreUninstall")
        self.removal.page("Bye.")
        self.assert_asks(self.removal, "Bye.")
        self.assert_all_is_removed()


if __name__ == "__main__":
    main()
