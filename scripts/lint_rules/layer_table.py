"""The table of the layers, src/layers.txt."""

import pathlib
import re
from typing import NamedTuple

LINE = re.compile(r"(?P<folder>[a-z_/]+) *\| *(?P<may_include>[a-z_/ ]*?) *\| *(?P<purpose>[^|;\[\]\s][^|;\[\]]*)")


class Row(NamedTuple):
    line: int
    may_include: list


class LayerTable:
    """Reads the table and reports its faults; a faulty line is left out."""

    def __init__(self, path, violations):
        self.path = path
        self.violations = violations
        self.rows = {}
        for number, line in enumerate(path.read_text(encoding="utf-8").splitlines(), 1):
            if line.strip() and not line.startswith("#"):
                self._read(number, line)
        self._check_names()

    def _read(self, number, line):
        # The build reads the same lines, and there a semicolon or a bracket would split them.
        columns = LINE.fullmatch(line.rstrip())
        if columns is None:
            self.violations.add(self.path, number, 'not "folder | folders | purpose" without ; [ ]')
        elif columns["folder"] in self.rows:
            self.violations.add(self.path, number, f"{columns['folder']} has a line already")
        else:
            self.rows[columns["folder"]] = Row(number, columns["may_include"].split())

    def _check_names(self):
        for folder, row in self.rows.items():
            for name in row.may_include:
                target = self.rows.get(name)
                if target is None:
                    self.violations.add(self.path, row.line, f"{folder} names {name}, which has no line")
                elif layer_of(name) != layer_of(folder) and target.line > row.line:
                    self.violations.add(self.path, row.line, f"{folder} names {name}, which is a higher layer")

    def allows(self, folder, target):
        return target == folder or target in self.rows[folder].may_include

    def folder_of(self, relative):
        """The folder of the table that the path (relative to src/ or tests/) belongs to, or None."""
        parts = pathlib.PurePosixPath(relative).parts[:-1]
        for depth in (4, 3, 2, 1):
            name = "/".join(parts[:depth])
            if len(parts) >= depth and name in self.rows:
                return name
        return None


def layer_of(folder):
    """ui for ui/gui."""
    return folder.split("/")[0]
