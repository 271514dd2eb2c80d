"""The systems on which the sample product's window is shown, each with a machine that it is installed on."""

import os
import pathlib
import subprocess
from dataclasses import dataclass

from window_walk import output_of, wait_for

TOP = pathlib.Path(__file__).resolve().parents[2]


class LinuxMachine:
    """Directories of a native run, and the settings that a desktop with this resolution has."""

    # What a desktop's settings daemon tells GTK: text of this many dots per inch, and nothing that moves by itself.
    SETTINGS = "Xft/DPI {dpi}\nXft/Antialias 1\nXft/Hinting 1\nXft/HintStyle \"hintslight\"\nXft/RGBA \"none\"\n" \
               "Net/CursorBlink 0\nGtk/EnableAnimations 0\n"

    def __init__(self, place, dpi):
        self.place, self.dpi = place, dpi
        self.daemon = None
        # Seen in the pictures, so it is the same for all.
        self.target = place.parent / "opt/tandrel"

    def start(self):
        for name in ("state", "tmp"):
            (self.place / name).mkdir(parents=True)
        settings = self.place / "xsettings"
        settings.write_text(self.SETTINGS.format(dpi=self.dpi * 1024))
        self.daemon = subprocess.Popen(["xsettingsd", "-c", settings], stderr=subprocess.DEVNULL)
        wait_for("the settings daemon", lambda: output_of("dump_xsettings"))
        os.environ.update(TANDREL_STATE_DIR=str(self.place / "state"), TMPDIR=str(self.place / "tmp"))

    def end(self):
        if self.daemon is not None:
            self.daemon.kill()
            self.daemon.wait()

    @property
    def logs(self):
        return self.place / "tmp"

    def install_command(self, setup):
        # With a password. Not under Wine, which can't take back what this adds to its firewall.
        return [setup, f"-VARIABLE_INSTALL_DIR={self.target}", f"-VARIABLE_MENU_DIR={self.place}/menu",
                "-VARIABLE_SHARE_SETUPS=1", "-VARIABLE_SHARE_PASSWORD=secret"]

    def program(self, name):
        """The file of a program of the installed product, and the command that starts it."""
        return self.target / name, [self.target / name]

    def uninstall_command(self):
        return [*self.program("uninstall/installer")[1], f"-uninstall={self.target}/uninstall/install.log"]


class WindowsMachine:
    """A Wine prefix with this resolution."""

    TARGET = "C:\\Program Files\\tandrel"
    DESKTOP = "HKCU\\Control Panel\\Desktop"
    # Letters without steps, as on every machine of today, and nothing that moves by itself.
    SETTINGS = (("FontSmoothing", "REG_SZ", "2"), ("FontSmoothingType", "REG_DWORD", "1"),
                ("FontSmoothingGamma", "REG_DWORD", "1400"), ("FontSmoothingOrientation", "REG_DWORD", "1"),
                ("CursorBlinkRate", "REG_SZ", "-1"))

    def __init__(self, place, dpi):
        self.place, self.dpi = place, dpi
        self.drive = place / "prefix/drive_c"
        self.target = self.drive / "Program Files/tandrel"

    def start(self):
        subprocess.run([TOP / "scripts/wine-prefix", "create", self.place], check=True)
        os.environ["TANDREL_WINE_PREFIX"] = str(self.place)
        for value, kind, data in (("LogPixels", "REG_DWORD", str(self.dpi)), *self.SETTINGS):
            self.run("reg.exe", "add", self.DESKTOP, "/v", value, "/t", kind, "/d", data, "/f")
        # The resolution counts from the next start of the system on.
        subprocess.run([TOP / "scripts/wine-prefix", "stop", self.place], check=True)

    @staticmethod
    def run(*command):
        subprocess.run([TOP / "scripts/run-under-wine", *command], check=True, stdout=subprocess.DEVNULL,
                       stdin=subprocess.DEVNULL)

    def end(self):
        subprocess.run([TOP / "scripts/wine-prefix", "destroy", self.place], check=True)

    @property
    def logs(self):
        return next(iter(self.drive.glob("users/*/Temp")), self.drive)

    def install_command(self, setup):
        return [TOP / "scripts/run-under-wine", setup]

    def program(self, name):
        """The file of a program of the installed product, and the command that starts it."""
        path = self.TARGET + "\\" + name.replace("/", "\\") + ".exe"
        return self.target / (name + ".exe"), [TOP / "scripts/run-under-wine", path]

    def uninstall_command(self):
        return [*self.program("uninstall/installer")[1], f"-uninstall={self.TARGET}\\uninstall\\install.log"]


@dataclass
class System:
    name: str
    title: str
    machine: type
    image: pathlib.Path

    @property
    def programs(self):
        return self.image.parent


SYSTEMS = {
    "linux": System("linux", "Linux with GTK", LinuxMachine, TOP / "build/linux/bin/installer"),
    "windows": System("windows", "Windows programs under Wine", WindowsMachine, TOP / "build/windows/bin/installer.exe"),
}
