"""The sample product in its window: installed and removed by somebody with a mouse, and by somebody with a keyboard."""

from harness import WINDOWS, main
from sample_window import SampleInWindow


class Sample(SampleInWindow):
    def test_is_installed_and_removed_with_the_mouse(self):
        before = self.state()
        setup = self.open_setup()
        self.walk_with_the_mouse(setup)
        self.assert_ended_well(setup)
        self.assert_installed()
        self.remove_with_the_mouse(before)

    def test_is_installed_and_removed_with_the_keyboard(self):
        before = self.state()
        setup = self.open_setup()
        self.walk_by_keys(setup)
        self.assert_ended_well(setup)
        self.assert_installed()
        settings = self.read_text("opt/tandrel/tools.ini")
        self.assertIn("contact=keys@tandrel.example", settings)
        removal = self.open_removal()
        self.at_farewell(removal)
        removal.key("alt+r")
        self.at_removed(removal)
        removal.key("Return")
        self.assert_removed(removal, before)

    def walk_by_keys(self, setup):
        self.at_welcome(setup)
        setup.key("Return")
        self.at_agreement(setup)
        setup.key("alt+a")
        self.at_notes(setup)
        setup.press_by_key("Next")
        self.at_settings(setup)
        setup.fill("Installation directory", self.native("opt/elsewhere"))
        setup.fill("Installation directory", self.native("opt/tandrel"))
        self.choose_the_parts_by_keys(setup)
        setup.key("alt+n")
        self.at_parts(setup)
        setup.toggle_by_key("Install the samples", checked=False)
        setup.toggle_by_key("Install the samples", checked=True)
        setup.fill("Contact for the settings file", "keys@tandrel.example")
        setup.press_by_key("Next", "Return")
        view = self.at_summary(setup)
        self.assertTrue(view.has("label", "keys@tandrel.example"), view)
        setup.press_by_key("Back")
        self.at_parts(setup)
        setup.key("alt+n")
        self.at_summary(setup)
        setup.key("alt+i")
        self.at_end(setup)
        setup.key("Return")

    def choose_the_parts_by_keys(self, setup):
        """Arrows go from one button of a group to the next; where they don't choose it, the space bar does."""
        setup.tab_to("radio button", "Set-up: Everything")
        setup.key("Down")
        setup.wait_for_focus("radio button", "Set-up: Choose the parts")
        if WINDOWS:
            setup.key("space")
        setup.wait_until_checked("radio button", "Set-up: Choose the parts", True)


class ThemedSample(SampleInWindow):
    description = "install-themed.xml"

    def test_is_installed_and_removed_by_mouse_and_keys(self):
        before = self.state()
        setup = self.open_setup()
        self.at_welcome(setup)
        setup.key("alt+n")
        self.at_agreement(setup)
        setup.click("I agree")
        self.at_notes(setup)
        setup.press_by_key("Next")
        self.at_settings(setup)
        setup.choose("Set-up: Choose the parts", role="radio button")
        setup.choose("Set-up: Everything", role="radio button")
        setup.choose("Set-up: Choose the parts", role="radio button")
        setup.click("Next")
        self.at_parts(setup)
        setup.choose("Stop a running packager")
        setup.toggle_by_key("Stop a running packager", checked=False)
        setup.key("alt+n")
        self.at_summary(setup)
        setup.click("Install")
        self.at_end(setup)
        setup.key("Return")
        self.assert_ended_well(setup)
        self.assert_installed()
        removal = self.open_removal()
        self.at_farewell(removal)
        removal.click("Remove")
        self.at_removed(removal)
        removal.key("alt+f")
        self.assert_removed(removal, before)


if __name__ == "__main__":
    main()
