"""A person at the window of a setup: what is on the screen, and what is clicked and typed.

What is shown comes from the system: from what windows tell screen readers on Linux, and from the windows themselves on
Windows. A probe beside the program under test reads it, and moves the real pointer and keys. Nothing here waits for a fixed
time or acts twice: an action follows when its control is shown, enabled and at rest, and its effect is waited for.
"""

import subprocess
import tempfile
import time

import screen_reader
from harness import TIMEOUT, EndToEndTest

PATIENCE = 60  # seconds for what has to be shown
MOST_STOPS = 60  # of Tab on one page


class WindowTest(EndToEndTest):
    def setUp(self):
        screen_reader.probe()
        super().setUp()


class Window:
    """The windows of one run of a program, and of those that it leaves behind."""

    def __init__(self, test, path, *arguments, env=None):
        self.test = test
        self.probe = screen_reader.probe()
        self.seen = None  # the last look, until something is done
        self.out = tempfile.TemporaryFile()
        command = test.machine.direct_command(test.host(path)) + [str(a) for a in arguments]
        variables = {**test.machine.environment(env or {}), **self.probe.environment}
        self.process = subprocess.Popen(command, stdin=subprocess.DEVNULL, stdout=self.out, stderr=self.out,
                                        env=variables, cwd=test.machine.root)
        test.addCleanup(self.close)

    def close(self):
        """Ends what a failed test left."""
        if self.process.poll() is None:
            self.process.kill()
            self.process.wait()
        self.probe.end_programs()
        self.out.close()

    def end(self):
        """Waits for the end of the program and of its windows; the exit code and what it printed."""
        code = self.process.wait(timeout=TIMEOUT)
        self.wait(lambda views: not views or None, "the end of all windows", alive=False)
        self.out.seek(0)
        return code, self.out.read().decode("utf-8", "replace").replace("\r\n", "\n")

    # --- what is shown

    def wait(self, find, what, alive=True):
        """The first result of find(views) that isn't None."""
        end = time.monotonic() + PATIENCE
        while True:
            views = self.seen = self.probe.views()
            found = find(views)
            if found is not None:
                return found
            if time.monotonic() > end:
                shown = "\n".join(str(view) for view in views)
                state = f"the program ended with {self.process.poll()}" if alive and self.process.poll() is not None else ""
                raise AssertionError(f"waited in vain for {what}; {state}\n{shown}")
            time.sleep(0.02)

    def wait_at_rest(self, find, what):
        """As `wait`, for what is the same twice in a row: a page is seen in the middle of its change as well."""
        last = [] if self.seen is None else [find(self.seen)]

        def twice(views):
            found = find(views)
            last.append(found)
            return found if found is not None and len(last) > 1 and found == last[-2] else None

        return self.wait(twice, what)

    def front(self, views):
        active = [view for view in views if view.active]
        return active[0] if len(active) == 1 else None

    def page(self, *names):
        """The page in the active window that shows all these names or texts."""
        def find(views):
            view = self.front(views)
            return view if view is not None and all(view.shows(name) for name in names) else None

        return self.wait_at_rest(find, f"a page with {names}")

    def box(self, text):
        """The message box in front, with exactly this text."""
        def find(views):
            view = self.front(views)
            return view if view is not None and view.is_box and text in view.texts() else None

        return self.wait_at_rest(find, f"a box that says {text!r}")

    def control(self, role, name):
        """The one control of this role and name in the active window, when it can be used."""
        return self.control_that(lambda widget: widget.enabled, role, name, f"the {role} {name!r}")

    def control_that(self, is_wanted, role, name, what):
        """The one control of this role and name in the active window for which that is true."""
        def find(views):
            view = self.front(views)
            found = [] if view is None else [w for w in view.all(role, name) if is_wanted(w)]
            return found[0] if len(found) == 1 else None

        return self.wait_at_rest(find, what)

    def focused(self):
        def find(views):
            view = self.front(views)
            return None if view is None else view.focused()

        return self.wait_at_rest(find, "the focus")

    def act(self, command):
        self.seen = None
        self.probe.act(command)

    # --- the mouse

    def click_on(self, widget):
        x, y, width, height = widget.rectangle
        self.act(f"click {x + width // 2} {y + height // 2}")

    def click(self, name, role="button"):
        self.click_on(self.control(role, name))

    def choose(self, name, checked=True, role="check box"):
        """Clicks on a check box or radio button and waits until it shows the choice."""
        before = self.control(role, name)
        self.test.assertNotEqual(before.checked, checked, before)
        self.click_on(before)
        self.wait_until_checked(role, name, checked)

    def wait_until_checked(self, role, name, checked):
        return self.control_that(lambda widget: widget.checked == checked, role, name,
                                 f"the {role} {name!r} to be {'' if checked else 'not '}chosen")

    def press_close_box(self):
        view = self.wait(self.front, "a window in front")
        self.act(f"close {view.handle}")

    def answer(self, text, button):
        """Answers the box that says this."""
        self.box(text)
        self.click(button)

    # --- the keyboard

    def key(self, *names):
        self.act("key " + " ".join(names))

    def type(self, text):
        self.act("type " + text)

    def next_stop(self, before, key="Tab"):
        """Presses the key where the focus is at rest, and returns the control that has it then."""
        self.key(key)

        def find(views):
            view = self.front(views)
            now = None if view is None else view.focused()
            return now if now is not None and now.place != before.place else None

        return self.wait_at_rest(find, f"another focus than that of {before}")

    def stops(self):
        """All controls that Tab reaches, from the one that has the focus."""
        found = [self.focused()]
        for _ in range(MOST_STOPS):
            stop = self.next_stop(found[-1])
            if stop.place == found[0].place:
                return found
            found.append(stop)
        raise AssertionError(f"Tab doesn't come back to {found[0]}")

    def tab_to(self, role, name, key="Tab"):
        self.control(role, name)
        focus = self.focused()
        for _ in range(MOST_STOPS):
            if focus.is_called(role, name):
                return focus
            focus = self.next_stop(focus, key)
        raise AssertionError(f"Tab never reaches the {role} {name!r}")

    def wait_for_focus(self, role, name):
        def find(views):
            view = self.front(views)
            focus = None if view is None else view.focused()
            return focus if focus is not None and focus.is_called(role, name) else None

        return self.wait_at_rest(find, f"the {role} {name!r} to have the focus")

    def toggle_by_key(self, name, checked):
        self.test.assertNotEqual(self.tab_to("check box", name).checked, checked)
        self.key("space")
        self.wait_until_checked("check box", name, checked)

    def press_by_key(self, name, key="space"):
        """Goes to the button and presses it."""
        self.tab_to("button", name)
        self.key(key)

    def fill(self, name, text, role="text box"):
        """Replaces the content of a box, by keys."""
        self.tab_to(role, name)
        self.key("ctrl+a")
        self.type(text)
        if role == "text box":
            self.wait_for_text(role, name, text)

    def wait_for_text(self, role, name, text):
        return self.control_that(lambda widget: widget.text == text, role, name, f"{text!r} in the {role} {name!r}")
