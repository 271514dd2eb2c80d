"""What is on a screen, in the same words on both systems, and the probes that know it."""

import atexit
import contextlib
import dataclasses
import json
import os
import pathlib
import signal
import subprocess
import sys

from harness import HELPERS, TIMEOUT, TOP, WINDOWS, WinePrefix

HERE = pathlib.Path(__file__).resolve().parent
os.environ.setdefault("TANDREL_DISPLAY_SIZE", "2560x1600")  # pages in large letters need room
DISPLAY = TOP / "scripts" / "run-with-display"


@dataclasses.dataclass(frozen=True)
class Widget:
    """A control that is shown. Places are pixels of the screen; `place` tells one control of a window from another."""

    role: str
    name: str
    text: str
    description: str
    rectangle: tuple
    enabled: bool
    focused: bool
    checked: bool
    value: int | None
    place: tuple

    def is_called(self, role, name):
        return self.role == role and self.name == name

    def __str__(self):
        states = [name for name in ("focused", "checked") if getattr(self, name)] + ([] if self.enabled else ["disabled"])
        value = [] if self.value is None else [f"{self.value} %"]
        return f"{self.role} {self.name!r} {self.text!r} {self.rectangle} {' '.join(states + value)} ({self.description!r})"


@dataclasses.dataclass(frozen=True)
class View:
    """A window. `widgets` are in the order in which they are read."""

    title: str
    is_box: bool
    active: bool
    handle: int
    process: int
    rectangle: tuple
    client: tuple
    widgets: tuple

    def all(self, role=None, name=None):
        return [w for w in self.widgets if role in (None, w.role) and name in (None, w.name)]

    def one(self, role=None, name=None):
        found = self.all(role, name)
        if len(found) != 1:
            raise AssertionError(f"{len(found)} of {role} {name!r} in\n{self}")
        return found[0]

    def has(self, role, name=None):
        return bool(self.all(role, name))

    def texts(self):
        return [w.text if w.role == "label" else w.name for w in self.widgets]

    def shows(self, name):
        return any(name in (w.name, w.text) or w.text.startswith(name) for w in self.widgets)

    def focused(self):
        found = [w for w in self.widgets if w.focused]
        return found[0] if len(found) == 1 else None

    def __str__(self):
        kind = ("box" if self.is_box else "window") + (" in front" if self.active else "")
        return "\n  ".join([f"{kind} {self.title!r} {self.rectangle}", *(str(w) for w in self.widgets)])


class Probe:
    """A program that answers line by line, in JSON."""

    def __init__(self, command):
        self.command = command
        self.environment = {}
        self.start()
        atexit.register(self.close)

    def start(self):
        self.process = subprocess.Popen(self.command, stdin=subprocess.PIPE, stdout=subprocess.PIPE, text=True,
                                        encoding="utf-8")

    def answer(self):
        line = self.process.stdout.readline()
        if not line:
            raise RuntimeError(f"the probe has ended with {self.process.wait(timeout=TIMEOUT)}")
        return json.loads(line)

    def ask(self, command):
        self.process.stdin.write(command + "\n")
        self.process.stdin.flush()
        return self.answer()

    def act(self, command):
        answer = self.ask(command)
        if "error" in answer:
            raise AssertionError(f"{command}: {answer['error']}")
        return answer

    def close(self):
        with contextlib.suppress(BrokenPipeError):
            self.process.stdin.close()
        self.process.stdout.close()
        self.process.wait(timeout=TIMEOUT)


# --- Linux

LINUX_ROLES = {"push button": "button", "toggle button": "button", "link": "button", "check box": "check box",
               "radio button": "radio button", "label": "label", "progress bar": "bar", "separator": "line",
               "icon": "picture", "image": "picture", "list": "list", "document text": "document",
               "password text": "password box"}
LINUX_BOXES = ("alert", "dialog")


def linux_widget(node, place):
    states = node["states"]
    role = LINUX_ROLES.get(node["role"])
    if node["role"] == "text":
        role = "text box" if "single-line" in states else "lines"
    # What has no place has gone while it was looked at.
    if role is None or "showing" not in states or node["rectangle"] is None:
        return None
    value = node["value"]
    return Widget(role, node["name"], node["text"] or "", node["description"], tuple(node["rectangle"]),
                  "sensitive" in states, "focused" in states, "checked" in states,
                  round(value * 100) if role == "bar" and value is not None else None, place)


def linux_widgets(node, place=()):
    """What is within a control is its own matter, such as the bars by which it is scrolled."""
    widget = linux_widget(node, place)
    if widget is None:
        for index, child in enumerate(node["children"]):
            yield from linux_widgets(child, (*place, index))
        return
    yield dataclasses.replace(widget, focused=True) if has_focus(node) else widget


def has_focus(node):
    return "focused" in node["states"] or any(has_focus(child) for child in node["children"])


def client_of(node):
    """The innermost of the panels that fill a frame."""
    while len(node["children"]) == 1 and node["children"][0]["rectangle"] is not None:
        node = node["children"][0]
    return tuple(node["rectangle"])


def linux_view(node):
    return View(node["title"], node["role"] in LINUX_BOXES, "active" in node["states"], 0, node["process"],
                tuple(node["rectangle"]), client_of(node), tuple(linux_widgets(node)))


class LinuxProbe(Probe):
    def __init__(self):
        super().__init__([DISPLAY, "--readable", "/usr/bin/python3", "-B", HERE / "window_probe.py"])
        self.environment = self.answer()
        if os.environ.get("TANDREL_E2E_KIND") == "sanitized":  # the desktop's libraries leave what they allocate
            self.environment["ASAN_OPTIONS"] = "detect_leaks=0:" + os.environ.get("ASAN_OPTIONS", "")

    def views(self):
        return [linux_view(node) for node in self.act("tree")["windows"] if node["rectangle"] is not None]

    def end_programs(self):
        for process in {view.process for view in self.views()}:
            try:
                os.kill(process, signal.SIGKILL)
            except ProcessLookupError:
                pass


# --- Windows

MOST_PROBES = 5
BOX_CLASS = "#32770"
BUTTON_ROLES = {2: "check box", 3: "check box", 4: "radio button", 7: "border", 9: "radio button"}  # by BS_TYPEMASK
STATIC_ROLES = {0xE: "picture", 0x5: "line"}  # SS_BITMAP, SS_GRAYRECT
MULTI_LINE, PASSWORD = 0x4, 0x20
# By ROLE_SYSTEM_... of what this system draws itself.
DRAWN_ROLES = {15: "document", 30: "button", 43: "button", 44: "check box", 45: "radio button", 48: "bar"}


def windows_role(node):
    """Wine gives screen readers no roles of the system's own controls, so these come from their classes."""
    name, style = node["class"], node["style"]
    if name == "Button":
        return BUTTON_ROLES.get(style & 0xF, "button")
    if name == "Static":
        return STATIC_ROLES.get(style & 0x1F, "label")
    if name == "Edit":
        return "password box" if style & PASSWORD else "lines" if style & MULTI_LINE else "text box"
    if name == "SysListView32":
        return "list"
    if name == "msctls_progress32":
        return "bar"
    return DRAWN_ROLES.get(node.get("accessible", {}).get("role_number"))


def windows_rectangle(node):
    rectangle = node["rect"]
    return rectangle["x"], rectangle["y"], rectangle["width"], rectangle["height"]


def percent_of(node):
    if "highest" not in node:
        return None
    return round((node["value"] - node["lowest"]) * 100 / (node["highest"] - node["lowest"]))


def windows_widget(node):
    accessible = node.get("accessible", {})
    states = accessible.get("states", [])
    role = windows_role(node)
    # What is only read out is as large as a dot.
    if role is None or node["rect"]["width"] <= 1:
        return None
    # Wine shows the texts of password boxes to any program, but not to a screen reader.
    text = accessible.get("value", "") if role == "password box" else node["text"].replace("\r\n", "\n")
    name = accessible.get("name", "") if accessible and role != "label" else text
    # The rows of a list are read one by one.
    description = "\n".join(row.get("name", "") for row in accessible.get("children", ())) if role == "list" \
        else accessible.get("description", "")
    return Widget(role, name.replace("&", ""), text, description, windows_rectangle(node),
                  node["enabled"], node["focused"], node.get("checked", False) or "checked" in states,
                  percent_of(node), (node["hwnd"],))


def windows_widgets(node):
    widget = windows_widget(node)
    if widget is not None:
        yield widget
        return
    for child in node["children"]:
        yield from windows_widgets(child)


def windows_view(node):
    rectangle = windows_rectangle(node)
    client = windows_rectangle(node["children"][0]) if node["children"] else rectangle
    widgets = tuple(widget for child in node["children"] for widget in windows_widgets(child))
    return View(node["text"], node["class"] == BOX_CLASS, node["active"], node["hwnd"], node["process"], rectangle, client,
                widgets)


class WindowsDisplay(Probe):
    """A display for the whole prefix: Wine's desktop, which serves all its programs, starts with the first of them."""

    def __init__(self):
        super().__init__([DISPLAY, "--unmanaged", "bash", "-c", 'echo "{\\"TANDREL_DISPLAY\\": \\"$DISPLAY\\"}"; exec cat'])
        # A window manager that is late would leave Wine in the belief that a window is where it isn't, and take the keys
        # from a window that has just come to the front.
        self.environment = {**self.answer(), "TANDREL_TOOLKIT_ASSERTS": "1", "TANDREL_WINE_OWN_WINDOWS": "1"}


class WindowsProbe(Probe):
    def __init__(self, display):
        os.environ.update(display.environment)
        prefix = WinePrefix.get()
        super().__init__(["bash", "-c", '. "$0"/lib/wine.sh; tandrel_wine_enter "$1"; exec wine "$2"', str(prefix.scripts),
                          str(prefix.directory), HELPERS / "window_probe.exe"])
        self.environment = display.environment

    def views(self):
        return [windows_view(node) for node in self.act("tree")["windows"]]

    def log_on(self, dots):
        """Begins another session on the display, whose screen has so many dots per inch: a session keeps them to its end."""
        prefix = WinePrefix.get()
        environment = {**os.environ, "TANDREL_WINE_PREFIX": str(prefix.directory)}
        # Windows has one number for both; Wine asks the one for windows and the other for memory that is drawn into.
        for key in ("HKCU\\Control Panel\\Desktop", "HKCC\\Software\\Fonts"):
            subprocess.run([prefix.scripts / "run-under-wine", "reg", "add", key, "/v", "LogPixels", "/t", "REG_DWORD", "/d",
                            str(dots), "/f"], check=True, timeout=TIMEOUT, stdout=subprocess.DEVNULL, env=environment)
        self.close()
        prefix.restart()
        self.start()

    def end_programs(self):
        for process in {view.process for view in self.views()}:
            subprocess.run([TOP / "scripts/run-under-wine", "taskkill", "/f", "/pid", str(process)], check=False,
                           timeout=TIMEOUT, env={**os.environ, "TANDREL_WINE_PREFIX": str(WinePrefix.get().directory)},
                           stdout=subprocess.DEVNULL)


PROBES = []


def probe():
    """The one of this program, with a display of its own. To be called before any other program runs in Wine's prefix."""
    if not PROBES:
        PROBES.append(WindowsProbe(WindowsDisplay()) if WINDOWS else LinuxProbe())
    return PROBES[0]
