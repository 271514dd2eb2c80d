#!/usr/bin/python3
"""Eyes and hands on a display of Linux, for the tests of the window: commands line by line on standard input, a line of JSON as
answer to each. Run by Debian's own Python, which has the bindings, as `scripts/run-with-display --readable window_probe.py`.

    tree            all windows with what they tell a screen reader
    key NAME...     keys by their names of xdotool, pressed one after the other
    type TEXT       the text, typed
    click X Y       the left button, at a pixel of the screen
    close           the close box of the window with the focus

The first line is the environment in which programs appear on the display.
"""

import json
import os
import subprocess
import sys

import gi

gi.require_version("Atspi", "2.0")
from gi.repository import Atspi, GLib  # noqa: E402

LIMIT = 30  # seconds for an answer of a program that is busy
ATTEMPTS = 20


def drain():
    """Handles what the bus has told since."""
    context = GLib.MainContext.default()
    while context.pending():
        context.iteration(False)


def text_of(node):
    if "Text" not in Atspi.Accessible.get_interfaces(node):
        return None
    return Atspi.Text.get_text(node, 0, Atspi.Text.get_character_count(node))


def value_of(node):
    return Atspi.Value.get_current_value(node) if "Value" in Atspi.Accessible.get_interfaces(node) else None


def rectangle_of(node):
    if "Component" not in Atspi.Accessible.get_interfaces(node):
        return None
    extents = Atspi.Component.get_extents(node, Atspi.CoordType.SCREEN)
    return [extents.x, extents.y, extents.width, extents.height]


def describe(node):
    states = node.get_state_set()
    children = []
    for i in range(node.get_child_count()):
        child = node.get_child_at_index(i)
        if child is not None and child.get_state_set().contains(Atspi.StateType.VISIBLE):
            children.append(describe(child))
    return {"role": node.get_role_name(), "name": node.get_name(), "description": node.get_description(),
            "text": text_of(node), "value": value_of(node), "rectangle": rectangle_of(node),
            "states": [state.value_nick for state in states.get_states()], "children": children}


def windows():
    found = []
    desktop = Atspi.get_desktop(0)
    desktop.clear_cache()
    for i in range(desktop.get_child_count()):
        program = desktop.get_child_at_index(i)
        if program is None:
            continue
        program.clear_cache()
        for j in range(program.get_child_count()):
            window = program.get_child_at_index(j)
            if window is not None and window.get_state_set().contains(Atspi.StateType.SHOWING):
                found.append({**describe(window), "process": program.get_process_id(), "title": title_of(window)})
    return found


def title_of(window):
    """That of a message box is known to the window manager alone."""
    if window.get_role() == Atspi.Role.FRAME:
        return window.get_name()
    if not window.get_state_set().contains(Atspi.StateType.ACTIVE):
        return ""
    done = subprocess.run(["xdotool", "getactivewindow", "getwindowname"], capture_output=True, text=True, timeout=LIMIT,
                          check=False)
    return done.stdout.rstrip("\n")


def tree():
    for attempt in range(ATTEMPTS):
        drain()
        try:
            return {"windows": windows()}
        except GLib.Error as error:  # what was listed has gone meanwhile
            if attempt == ATTEMPTS - 1:
                return {"error": str(error)}
    return None


def act(*arguments):
    done = subprocess.run(["xdotool", *arguments], capture_output=True, text=True, timeout=LIMIT, check=False)
    return {"error": done.stderr} if done.returncode else {}


def click(x, y):
    # A pointer that rests where a control appeared hasn't entered it.
    return act("mousemove", "0", "0", "mousemove", x, y, "click", "1")


def answer(line):
    command, _, rest = line.partition(" ")
    if command == "tree":
        return tree()
    if command == "key":
        return act("key", "--clearmodifiers", *rest.split())
    if command == "type":
        return act("type", "--clearmodifiers", "--", rest)
    if command == "click":
        return click(*rest.split())
    if command == "close":
        return act("key", "super+F4")
    return {"error": f"no such command: {command}"}


def main():
    os.environ["NO_AT_BRIDGE"] = "1"  # the probe itself isn't to be read
    Atspi.init()
    Atspi.set_timeout(LIMIT * 1000, LIMIT * 1000)
    names = ("DISPLAY", "TANDREL_DISPLAY", "DBUS_SESSION_BUS_ADDRESS", "GSETTINGS_BACKEND", "GIO_USE_VFS", "XDG_RUNTIME_DIR",
             "TANDREL_TOOLKIT_ASSERTS")
    print(json.dumps({name: os.environ[name] for name in names}), flush=True)
    for line in sys.stdin:
        print(json.dumps(answer(line.rstrip("\n"))), flush=True)


main()
