"""What the rules share: how sources are found and read, and how violations are reported."""

import re

INCLUDE = re.compile(r'\s*#\s*include\s*(["<])([^">]+)[">]')

# A comment, or a literal in which the start of a comment means nothing. A character literal is matched only with one
# character or an escape, because the apostrophe also separates digits.
COMMENT_OR_LITERAL = re.compile(
    r'//[^\n]*|/\*.*?\*/'
    r'|R"(?P<mark>[^\s()\\"]{0,16})\(.*?\)(?P=mark)"'
    r'|"(?:\\.|[^"\\\n])*"'
    r"|'(?:\\[^\n']{1,8}|[^'\\\n]|\\')'", re.S)


def cpp_files(folder):
    return sorted(p for p in folder.rglob("*") if p.suffix in (".h", ".cpp") and p.is_file())


def code_of(path):
    """The text of the file without its comments; line numbers stay as they are."""
    def without_comment(match):
        token = match.group(0)
        return "\n" * token.count("\n") if token[0] == "/" else token

    return COMMENT_OR_LITERAL.sub(without_comment, path.read_text(encoding="utf-8", errors="replace"))


def lines_of(code):
    """(number, line) of each line."""
    return enumerate(code.split("\n"), 1)


def includes_of(code):
    """(number, '"' or '<', header) of each include line."""
    for number, line in lines_of(code):
        include = INCLUDE.match(line)
        if include:
            yield number, include.group(1), include.group(2)


def line_at(code, position):
    return code.count("\n", 0, position) + 1


class Violations:
    """Lines of the form "file:line: message", with the path of the file relative to root."""

    def __init__(self, root):
        self.root = root
        self.lines = []

    def add(self, path, number, message):
        self.lines.append(f"{path.relative_to(self.root)}:{number}: {message}")
