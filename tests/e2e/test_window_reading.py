"""What somebody hears who can't see the window: names, roles, states, and the order of reading and of the focus."""

from harness import main
from held_setup import HeldSetup
from sample_window import SampleInWindow

FRAME = [("button", "Help"), ("picture", ""), ("list", "TaskList")]
ORNAMENTS = ("border", "line")
TASKS = ["Agreement", "Notes", "Settings", "Parts", "Earlier version", "Summary", "Running programs"]
STOPS = ("button", "check box", "radio button", "text box", "password box", "document", "lines")


def buttons(forward="Next"):
    return [("button", "Back"), ("button", forward), ("button", "Cancel")]


def field(name, role="text box"):
    return [("label", name), (role, name)]


class Reading(SampleInWindow):
    def read(self, view):
        """A page as it is read out, without what only decorates it."""
        return [(w.role, w.name if w.role != "document" else "") for w in view.widgets
                if w.role not in ORNAMENTS and (w.role, w.text) != ("label", "")]

    def assert_reads(self, view, *parts):
        self.assertEqual(self.read(view), [item for part in parts for item in part])

    def assert_tasks(self, view, current, inactive=(), last="Install"):
        done = TASKS.index(current)
        states = ["inactive" if name in inactive else "finished" if i < done else "current" if i == done else "not started"
                  for i, name in enumerate(TASKS)]
        rows = [f"{name}: {state}" for name, state in zip(TASKS, states)] + [f"{last}: not started"]
        self.assertEqual(view.one("list").description.split("\n"), rows)

    def assert_focus_follows_reading(self, window, view):
        """Of a group of radio buttons, Tab reaches the chosen one."""
        stops = [w.place for w in view.widgets if w.role in STOPS and w.enabled and (w.role != "radio button" or w.checked)]
        reached = [stop.place for stop in window.stops()]
        start = stops.index(reached[0])
        self.assertEqual(reached, stops[start:] + stops[:start])

    def test_the_pages_of_the_installation_and_of_the_removal(self):
        before = self.state()
        setup = self.open_setup("-VARIABLE_SHARE_SETUPS=1", "-VARIABLE_SHARE_PASSWORD=secret")
        self.read_welcome(setup)
        self.read_documents(setup)
        self.read_settings(setup)
        self.read_parts(setup)
        self.read_summary(setup)
        setup.click("Install")
        view = self.at_end(setup)
        self.assert_reads(view, [("button", "Finish"), ("picture", ""), ("label", "Tandrel Installer Tools are installed."),
                                 ("document", "")])
        self.assertIn("Thank you for trying them.", view.one("document").description)
        setup.click("Finish")
        self.assert_ended_well(setup)
        removal = self.open_removal()
        self.read_removal(removal)
        self.assert_removed(removal, before)

    def read_welcome(self, setup):
        view = self.at_welcome(setup)
        self.assert_reads(view, [("button", "Next"), ("button", "Cancel"), ("picture", "")],
                          [("label", w.name) for w in view.all("label")])
        self.assertTrue(view.shows("Tandrel Installer Tools 1.0.0"))
        self.assert_focus_follows_reading(setup, view)
        setup.click("Next")

    def read_documents(self, setup):
        view = self.at_agreement(setup)
        self.assert_reads(view, FRAME, buttons("I agree"), [("document", "")])
        self.assert_tasks(view, "Agreement", ("Parts", "Earlier version"))
        self.assertIn("It is short, and it was written for people, not for lawyers.", view.one("document").description)
        self.assert_focus_follows_reading(setup, view)
        setup.click("I agree")
        view = self.at_notes(setup)
        self.assert_reads(view, FRAME, buttons(), [("document", "")])
        self.assert_tasks(view, "Notes", ("Parts", "Earlier version"))
        self.assertGreater(len(view.one("document").description), 100)
        setup.click("Next")

    def read_settings(self, setup):
        view = self.at_settings(setup)
        self.assert_reads(view, FRAME, buttons(), [("label", "What should be installed, and where?")],
                          field("Installation directory"), [("button", "Installation directory"), ("label", "Set-up")],
                          [("radio button", "Set-up: Everything"), ("radio button", "Set-up: Choose the parts")])
        self.assertEqual(view.one("text box").text, self.native("opt/tandrel"))
        self.assertTrue(view.one("radio button", "Set-up: Everything").checked)
        self.assertFalse(view.one("radio button", "Set-up: Choose the parts").checked)
        self.assert_tasks(view, "Settings", ("Parts", "Earlier version"))
        self.assert_focus_follows_reading(setup, view)
        setup.choose("Set-up: Choose the parts", role="radio button")
        setup.click("Next")

    def read_parts(self, setup):
        view = self.at_parts(setup)
        boxes = ["Install the packager and the images", "Install the samples", "Make a first package of the sample",
                 "Stop a running packager", "Show the first steps at the end", "Visit the web site at the end"]
        share = "Let other machines fetch setups from port 8317"
        self.assert_reads(view, FRAME, buttons(), [("check box", name) for name in boxes],
                          field("Contact for the settings file"), [("check box", share)],
                          field("Password for them", "password box"))
        self.assertEqual([w.name for w in view.all("check box") if w.checked], [*boxes[:3], share])
        self.assertNotIn("secret", view.one("password box").text)
        self.assert_tasks(view, "Parts", ("Earlier version",))
        self.assert_focus_follows_reading(setup, view)
        setup.choose(share, checked=False)  # Wine can't take an open port back
        setup.click("Next")

    def read_summary(self, setup):
        view = self.at_summary(setup)
        values = [("Installation directory", self.native("opt/tandrel")), ("Set-up", "Chosen parts"),
                  ("Packager and images", "Yes"), ("Samples", "Yes"), ("Contact", "nobody"),
                  ("To take it off again", "Remove Tandrel, in the menu")]
        self.assert_reads(view, FRAME, buttons("Install"), [("label", "Everything is ready to be installed.")],
                          [("label", text) for pair in values for text in pair])
        self.assert_tasks(view, "Summary", ("Earlier version",))
        self.assert_focus_follows_reading(setup, view)

    def read_removal(self, removal):
        view = self.at_farewell(removal)
        self.assert_reads(view, [("button", "Remove"), ("button", "Cancel")], [("label", view.one("label").name)])
        self.assert_focus_follows_reading(removal, view)
        removal.click("Remove")
        view = self.at_removed(removal)
        self.assert_reads(view, [("button", "Finish"), ("label", "Tandrel Installer Tools are removed.")])
        removal.click("Finish")


class ThemedReading(Reading):
    description = "install-themed.xml"


class ReadingTheWork(HeldSetup):
    def test_bars_have_names_and_values(self):
        self.walk_to_the_installation()
        view = self.setup.page("Copying.")
        self.assertEqual([bar.name for bar in view.all("bar")], ["Current", "Overall"])
        for bar in view.all("bar"):
            self.assertIn(bar.value, range(101))
        self.release("AdditionalInstall")
        self.setup.page("It worked.")
        self.setup.click("Next")
        self.setup.end()


if __name__ == "__main__":
    main()
