"""The pages of the sample product in its window: forwards, backwards and away."""

import shutil

import descriptions
from harness import EXE, main
from sample_window import NAME, SampleInWindow

QUESTION = f"This will cancel the installation of\n{NAME}\nAre you sure?"


class CancelTest(SampleInWindow):
    def cancel(self, window, page):
        """Declines once, and then not."""
        window.click("Cancel")
        window.answer(QUESTION, "No")
        self.at(page, window)
        window.click("Cancel")
        window.answer(QUESTION, "Yes")

    def start_packager(self):
        """A program that must not run: one of the same name in the directory, which asks its first question."""
        ask = '<Ask><Field Type="EditBox" Label="Anything" x="1" y="1">NOTE</Field></Ask>'
        self.host("opt/tandrel/own").mkdir(parents=True, exist_ok=True)
        self.build_package(descriptions.description(self.native("other"), "", ask), {}, "opt/tandrel/own/packager" + EXE)
        program = self.open_terminal("opt/tandrel/own/packager" + EXE, "-gui=0")
        program.expect("Anything:")
        shutil.rmtree(self.host("stage"))
        return program.process

    def end(self, program):
        program.kill()
        program.wait()

    def assert_held(self, window, forward):
        view = self.at_running(window)
        self.assertFalse(view.one("button", forward).enabled)
        self.assertIn("packager" + EXE, view.one("lines").text)
        # The button that had the focus can't be used, but keys still reach the window.
        window.key("Escape")
        window.answer(QUESTION, "No")
        self.at_running(window)


class Cancelling(CancelTest):
    def setUp(self):
        super().setUp()
        self.before = self.state()

    def test_every_page_of_the_installation_can_be_cancelled_and_then_nothing_has_changed(self):
        for page, _ in self.PAGES:
            with self.subTest(page):
                setup = self.open_setup()
                self.walk_to(setup, page, chooses=True)
                self.cancel(setup, page)
                self.assertEqual(setup.end(), (0, ""))
                self.assertEqual(self.state(), self.before)

    def test_a_running_program_holds_the_installation_until_it_ends(self):
        program = self.start_packager()
        before = self.state()
        setup = self.open_setup()
        self.walk_to(setup, "summary")
        setup.click("Install")
        self.assert_held(setup, "Install")
        setup.click("Back")
        self.at_summary(setup)
        setup.click("Install")
        self.at_running(setup)
        self.end(program)
        setup.control("button", "Install")
        self.cancel(setup, "running")
        self.assertEqual(setup.end(), (0, ""))
        self.assertEqual(self.state(), before)

    def test_every_page_has_a_way_back_and_the_answers_stay(self):
        setup = self.open_setup()
        self.walk_to(setup, "parts", chooses=True)
        setup.choose("Stop a running packager")
        setup.click("Next")
        pages = [page for page, _ in self.PAGES]
        for page, earlier in zip(pages[:0:-1], pages[-2::-1]):
            self.at(page, setup)
            setup.click("Back")
            self.at(earlier, setup)
        self.assertFalse(self.at("welcome", setup).has("button", "Back"))
        for page, forward in self.PAGES[:-1]:
            view = self.at(page, setup)
            if page == "settings":
                self.assertTrue(view.one("radio button", "Set-up: Choose the parts").checked)
            if page == "parts":
                self.assertTrue(view.one("check box", "Stop a running packager").checked)
            setup.click(forward)
        self.cancel(setup, "summary")
        self.assertEqual(setup.end(), (0, ""))
        self.assertEqual(self.state(), self.before)


class CancellingTheRemoval(CancelTest):
    def setUp(self):
        super().setUp()
        self.before_all = self.state()
        result = self.run_program("setup" + EXE, "-auto", *self.settings)
        self.assertEqual(result.code, 0, result)
        self.program = self.start_packager()
        self.before = self.state()

    def walk_to(self, page):
        removal = self.open_removal()
        self.at_farewell(removal)
        if page == "running":
            removal.click("Remove")
            self.at_running(removal)
        return removal

    def test_every_page_can_be_cancelled_and_then_nothing_has_changed(self):
        for page in ("farewell", "running"):
            with self.subTest(page):
                removal = self.walk_to(page)
                self.cancel(removal, page)
                self.assert_removed(removal, self.before)

    def test_a_running_program_holds_the_removal_until_it_ends(self):
        removal = self.walk_to("running")
        removal.click("Back")
        self.at_farewell(removal)
        removal.click("Remove")
        self.assert_held(removal, "Next")
        self.end(self.program)
        shutil.rmtree(self.host("opt/tandrel/own"))
        removal.click("Next")
        self.at_removed(removal)
        removal.click("Finish")
        self.assert_removed(removal, self.before_all)


if __name__ == "__main__":
    main()
