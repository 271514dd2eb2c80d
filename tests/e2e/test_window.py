"""The sample product in its window: installed and removed by somebody with a mouse, and by somebody with a keyboard."""

from harness import EXE, EndToEndTest, main
from sample_window import SampleInWindow


class Sample(SampleInWindow):
    def test_is_installed_and_removed_with_the_mouse(self):
        before = self.state()
        setup = self.open_setup()
        self.walk_with_the_mouse(setup)
        self.assert_ended_well(setup)
        self.assert_installed()
        removal = self.open_removal()
        self.at_farewell(removal)
        removal.click("Remove")
        self.at_removed(removal)
        removal.click("Finish")
        self.assert_removed(removal, before)


if __name__ == "__main__":
    main()
