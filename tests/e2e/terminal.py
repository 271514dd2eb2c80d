"""A person at a terminal: a program in its own pseudo-terminal, what it shows, and what is typed.

The pseudo-terminal is the controlling terminal of the program's session, so that keys send signals and job control
works. Nothing here waits for a fixed time, only for what the program or the system shows; the deadline only ends a
test that fails.
"""

import fcntl
import os
import re
import select
import struct
import subprocess
import termios
import time

DEADLINE = 60  # seconds in which nothing happens
# What Wine's console adds to lines. It drops the spaces at their end.
SEQUENCE = re.compile(r"\x1b\[[0-9;?]*[A-Za-z]")
LINE_BLANKS = re.compile(r" +(?=\n)")
# How a program clears a line; how lines end.
BLANKED = re.compile(r"\r {78}(?=\r)")
LINE_END = re.compile(r"\r*\n")
LEFT, END, DELETE = b"\x1b[D", b"\x1b[F", b"\x1b[3~"
INTERRUPT, SUSPEND, END_OF_INPUT, QUIT = b"\x03", b"\x1a", b"\x04", b"\x1c"


class Terminal:
    def __init__(self, command, environment, directory, columns=80, rows=24, foreign=False):
        self.foreign = foreign  # a Windows program, whose console is drawn by Wine
        self.person, self.device = os.openpty()
        self.resize(columns, rows)
        self.settings = self.current_settings()
        self.output = b""
        self.lines, self.finished = "", 0  # the text of whole lines, and their end in the output
        self.position = 0  # in the text: everything before it has been expected already
        self.process = subprocess.Popen(command, stdin=self.device, stdout=self.device, stderr=self.device,
                                        env={**environment, "TERM": "xterm"}, cwd=directory, start_new_session=True,
                                        preexec_fn=lambda: fcntl.ioctl(0, termios.TIOCSCTTY, 0))
        self.ended = os.pidfd_open(self.process.pid)

    def close(self):
        if self.process.poll() is None:
            self.process.kill()
            self.process.wait()
        for descriptor in (self.person, self.device, self.ended):
            os.close(descriptor)

    # --- the window and the settings

    def resize(self, columns, rows):
        fcntl.ioctl(self.device, termios.TIOCSWINSZ, struct.pack("HHHH", rows, columns, 0, 0))

    def current_settings(self):
        return termios.tcgetattr(self.device)

    def has_echo(self):
        flags = self.current_settings()[3]
        return bool(flags & termios.ECHO) and bool(flags & termios.ICANON)

    # --- what the program shows

    def _read(self):
        """Reads what is available; False if there is nothing and the program has ended."""
        ready, _, _ = select.select([self.person, self.ended], [], [], DEADLINE)
        if self.person in ready:
            self.output += os.read(self.person, 4096)
            return True
        if not ready:
            raise AssertionError(f"nothing more was shown, not even the end:\n{self.text()}")
        return False

    def _read_rest(self):
        """Reads everything shown so far, up to a mark that this function writes into the terminal's buffer."""
        mark = b"\x00end of what was shown\x00"
        os.write(self.device, mark)
        while not self.output.endswith(mark):
            self.output += os.read(self.person, 65536)
        self.output = self.output[:-len(mark)]

    def expect(self, text):
        """Waits until the text is shown after what was expected before, and returns everything up to its end."""
        more = True
        text = text.rstrip(" ") if self.foreign else text
        while (found := self.text().find(text, self.position)) < 0:
            if not more:
                raise AssertionError(f"the program ended before it showed {text!r}:\n{self.text()}")
            more = self._read()
            if not more:
                self._read_rest()
        start, self.position = self.position, found + len(text)
        return self.text()[start:self.position]

    def text(self):
        """Everything that was shown, without the sequences that move the cursor within a line."""
        end = self.output.rfind(b"\n", self.finished) + 1
        if end > 0:
            self.lines += self._plain(self.output[self.finished:end])
            self.finished = end
        return self.lines + self._plain(self.output[self.finished:])

    def _plain(self, output):
        text = LINE_END.sub("\n", BLANKED.sub("", output.decode("utf-8", "backslashreplace")))
        return LINE_BLANKS.sub("", SEQUENCE.sub("", text)) if self.foreign else text

    def rest(self):
        """Waits for the end of the program. Returns its exit code and the output that hasn't been expected yet."""
        while self._read():
            pass
        self._read_rest()
        start, self.position = self.position, len(self.text())
        return self.process.wait(), self.text()[start:]

    # --- what the person does

    def type(self, keys):
        # Wine's console only takes over the terminal when the program is about to read from it.
        deadline = time.monotonic() + DEADLINE
        while self.foreign and self.has_echo() and time.monotonic() < deadline:
            select.select([self.ended], [], [], 0.01)
        os.write(self.person, keys if isinstance(keys, bytes) else keys.encode("utf-8"))
