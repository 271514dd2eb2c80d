"""Walks through a setup's pages in a window with the keys, and takes a picture of each. Runs on a display of its own."""

import os
import pathlib
import re
import signal
import subprocess
import sys
import time

PATIENCE = 120  # s
PAGE = re.compile(r'Setting dialog "(\w+)"')


class Missing(Exception):
    """What was awaited didn't come."""


def wait_for(what, condition):
    """Returns the first true value of `condition`."""
    end = time.monotonic() + PATIENCE
    while not (value := condition()):
        if time.monotonic() > end:
            raise Missing(what)
        time.sleep(0.02)
    return value


def output_of(*command):
    """Empty when the command fails."""
    result = subprocess.run(command, stdout=subprocess.PIPE, stderr=subprocess.DEVNULL, timeout=60)
    return result.stdout if result.returncode == 0 else b""


class Screen:
    """Windows on the display, and a hand on its keyboard."""

    def window(self, title):
        """The one whose title has this word, or None."""
        found = output_of("xdotool", "search", "--onlyvisible", "--name", title).split()
        return found[0].decode() if found else None

    def is_gone(self, title):
        """Whether the window goes within some seconds."""
        end = time.monotonic() + 5
        while self.window(title) is not None and time.monotonic() < end:
            time.sleep(0.1)
        return self.window(title) is None

    def framed(self, window):
        """The window with what the window manager put around it."""
        found = re.search(rb"Parent window id: (0x[0-9a-f]+)", output_of("xwininfo", "-children", "-id", window))
        return found.group(1).decode() if found else None

    def pixels(self, title):
        window = self.window(title)
        frame = window and self.framed(window)
        return output_of("import", "-silent", "-window", frame, "ppm:-") if frame else b""

    def picture(self, title):
        """The window when it has stopped changing, as PPM."""
        last = b""

        def is_still():
            nonlocal last
            before, last = last, self.pixels(title)
            return last and last == before

        wait_for(f"a picture of the window {title!r} that stays", lambda: is_still() or time.sleep(0.1))
        return last

    def press(self, *keys):
        subprocess.run(["xdotool", "key", "--clearmodifiers", *keys], check=True, timeout=60)


class Walk:
    """A run of a program that shows pages, until its end."""

    def __init__(self, screen, command, machine, output):
        """The program writes its debug log."""
        self.screen, self.machine, self.output = screen, machine, output
        self.program = subprocess.Popen(command, stdin=subprocess.DEVNULL, stdout=subprocess.DEVNULL)

    def pages(self):
        """The names of the pages that came, in order."""
        texts = (path.read_text("utf-8", "replace") for path in sorted(self.machine.logs.glob("installer_debug_*.log")))
        return PAGE.findall("".join(texts))

    def await_page(self, name):
        try:
            wait_for(name, lambda: self.pages()[-1:] == [name])
        except Missing:
            raise Missing(f"the page {name}; those that came: {', '.join(self.pages())}") from None

    def keep(self, name, title="Tandrel"):
        """Takes the picture of the window that is called `title`, and returns it as PPM."""
        pixels = self.screen.picture(title)
        subprocess.run(["convert", "ppm:-", "-dither", "None", "-colors", "256", "-strip", "-define",
                        "png:compression-level=9", "-define", "png:compression-filter=0", "-define",
                        "png:compression-strategy=0", f"png8:{self.output / name}.png"], input=pixels, check=True, timeout=60)
        return pixels

    def take(self, page):
        self.await_page(page)
        return self.keep(page.lower())

    def leave(self, page):
        self.take(page)
        self.screen.press("Return")

    def pass_by(self, *pages):
        """Without pictures."""
        for page in pages:
            self.await_page(page)
            self.screen.picture("Tandrel")
            self.screen.press("Return")

    def await_end(self):
        if self.program.wait(PATIENCE) != 0:
            raise Missing(f"a good end: exit code {self.program.returncode}")


class Catch:
    """Holds a program as soon as it starts, so that the page which waits for it stays."""

    def __init__(self, word, place):
        """From now on it may start. `word` is in its command line, `place` in its environment, which tells it from others."""
        self.word, self.place = word.encode(), str(place).encode()
        self.before = set(os.listdir("/proc"))
        self.pid = None

    def hold(self):
        # It runs for a tenth of a second, so this takes no rest.
        end = time.monotonic() + PATIENCE
        while self.pid is None:
            if time.monotonic() > end:
                raise Missing(f"a program with {self.word.decode()}")
            self.pid = program_with(self.word, self.place, self.before)
        os.kill(self.pid, signal.SIGSTOP)

    def release(self):
        if self.pid is not None:
            os.kill(self.pid, signal.SIGCONT)


def program_with(word, place, others=frozenset()):
    """A process with these bytes in its command line and its environment, or None."""
    for name in os.listdir("/proc"):
        if name.isdecimal() and name not in others:
            path = pathlib.Path("/proc", name)
            try:
                if word in (path / "cmdline").read_bytes() and place in (path / "environ").read_bytes():
                    return int(name)
            except OSError:  # it has ended, or is somebody else's
                continue
    return None


def walk_or_exit(walk):
    try:
        walk()
    except (Missing, subprocess.SubprocessError) as problem:
        sys.exit(f"window walk: didn't come: {problem}")
