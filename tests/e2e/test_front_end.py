"""Which front end a run gets when the command line leaves that open."""

import os
import re
import shutil
import socket
import subprocess
import threading
import unittest

from descriptions import description
from harness import EXE, WINDOWS, EndToEndTest, main

SETS = '<FileSet Name="All"><FN Dest="[DIR]" Alias="Data">data.txt</FN></FileSet>'
REFUSED = 255


@unittest.skipIf(WINDOWS, "a window is always tried on Windows")
class WithoutADisplay(EndToEndTest):
    environment = {"DISPLAY": "", "WAYLAND_DISPLAY": ""}
    reason = "no display: neither DISPLAY nor WAYLAND_DISPLAY is set"

    def setUp(self):
        super().setUp()
        self.setup = self.build_package(description(self.native("opt/product"), SETS), {"data.txt": "data\n"})

    def installed(self):
        return self.host("opt/product/data.txt").exists()

    def test_a_person_at_a_terminal_is_asked_on_the_console(self):
        terminal = self.open_terminal(self.setup, env=self.environment)
        self.assertEqual(terminal.expect("\n"), f"No window can be shown, so the console is used: {self.reason}\n")
        terminal.expect("* Tandrel Group installer")
        terminal.expect("It worked.")

    def test_without_a_terminal_one_line_says_why_nothing_is_done(self):
        result = self.run_program(self.setup, env=self.environment)
        self.assertEqual(result.code, REFUSED, result)
        self.assertEqual(result.err, f"No window can be shown ({self.reason}), and standard input is no terminal: nothing was "
                                     "done. The option -gui=0 uses the console all the same.\n")
        self.assertEqual(result.out, "")
        self.assertFalse(self.installed())

    def test_unattended_runs_need_neither(self):
        result = self.run_program(self.setup, "-auto", env=self.environment)
        self.assertEqual((result.code, result.err), (0, ""), result)
        self.assertTrue(self.installed())

    def test_an_uninstallation_that_nobody_can_watch_does_not_start(self):
        self.run_program(self.setup, "-auto", env=self.environment)
        log = self.native("opt/product/un/install.log")
        result = self.run_program("installer" + EXE, "-uninstall=" + log, "-uninstallApp=Test Product", env=self.environment)
        self.assertEqual(result.code, REFUSED, result)
        self.assertIn("-gui=0", result.err)
        self.assertEqual(list(self.machine.temp.glob("ormeluninst*")), [])
        self.assertTrue(self.installed())


class WithADisplayThatIsNotThere(WithoutADisplay):
    environment = {"DISPLAY": ":59999", "WAYLAND_DISPLAY": ""}
    reason = 'the display ":59999" can\'t be opened'


class WithADisplayThatHangsUp(WithoutADisplay):
    def setUp(self):
        super().setUp()
        self.server = socket.create_server(("127.0.0.1", 0))
        self.addCleanup(self.server.close)
        threading.Thread(target=self.hang_up, daemon=True).start()
        # Displays are numbered from this port on.
        name = f"127.0.0.1:{self.server.getsockname()[1] - 6000}"
        self.environment = {"DISPLAY": name, "WAYLAND_DISPLAY": ""}
        self.reason = f'the display "{name}" can\'t be opened'

    def hang_up(self):
        try:
            while True:
                self.server.accept()[0].close()
        except OSError:  # the test is over
            pass


class WithoutGtk(WithoutADisplay):
    """In a root directory that has the libraries of the C library's kind, and no desktop."""

    environment = {"DISPLAY": ":0"}
    reason = "libgtk-3.so.0: cannot open shared object file: No such file or directory"

    def setUp(self):
        super().setUp()
        if WINDOWS:
            return
        listed = subprocess.run(["ldd", self.host(self.setup)], capture_output=True, text=True, check=True, timeout=60).stdout
        for library in re.findall(r"(/\S+) \(0x", listed):
            self.write("bare" + library, b"")
            shutil.copy(library, self.host("bare" + library))
        # The directory of the test is where it is outside, too; setups look for those of products.
        for directory in ("proc", "dev", "opt", "usr/local", str(self.machine.root).lstrip("/")):
            self.host("bare/" + directory).mkdir(parents=True, exist_ok=True)
        self.machine.command = self.machine.direct_command = self.enter

    def enter(self, program):
        """The command that runs the program in that root directory."""
        rights = [] if os.geteuid() == 0 else ["--map-root-user"]
        script = ('root=$0/bare; mount --rbind /proc "$root/proc"; mount --rbind /dev "$root/dev"; '
                  'mount --bind "$0" "$root$0"; cd "$0"; exec chroot "$root" "$@"')
        return ["unshare", "--mount", *rights, "sh", "-ec", script, str(self.machine.root), str(program)]


if __name__ == "__main__":
    main()
