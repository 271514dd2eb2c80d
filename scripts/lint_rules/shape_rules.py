"""The shape of declarations: text as values, one log that is never null, headers that know few others."""

import re
from typing import NamedTuple

from lint_rules.cpp_sources import includes_of, line_at

MOST_INCLUDES = 16
MOST_C_STR = 199

# The contracts fix buffers with a size; the facade implements them, and the platform's calls need them.
BUFFERS_ALLOWED = ("contracts/", "platform/", "session/installer")
CONSOLES_ALLOWED = ("contracts/", "support/", "session/installer", "installer/")
GUARDS_ALLOWED = ("support/",)

INTEGER = (r"(?:(?:std\s*::\s*)?(?:u?int(?:_fast|_least)?(?:8|16|32|64|max|ptr)_t|s?size_t|ptrdiff_t|streamsize)|"
           r"(?:unsigned|signed|short|long|int)(?:\s+(?:unsigned|signed|short|long|int))*)")
# "char* name, int name" as parameters. Text to read (const char*) and bytes (unsigned char*) don't count.
BUFFER_AND_SIZE = re.compile(
    rf"(?<!const )(?<!unsigned )(?<!signed )\bchar\s*\*\s*(?:const\s+)?\w*\s*,"
    rf"\s*(?:const\s+)?{INTEGER}\s*&?\s*\w*\s*(?=[,)=])")
FUNCTION_NAME = re.compile(r"(?:(\w+)\s*::\s*)?(\w+)\s*$")
OVERRIDES = re.compile(r"\s*(?:const\s*)?(?:noexcept\s*)?(?:override|final)\b")

CONSOLE_POINTER = re.compile(r"\bPConsole\s*(?:const\s*)?\*")
PRINTED_THROUGH_POINTER = re.compile(r"((?:\w+(?:\(\))?(?:\.|->))*\w+(?:\(\))?)->v?print\w*\(")


def check_include_count(path, code, violations):
    includes = list(includes_of(code))
    if path.suffix == ".h" and len(includes) > MOST_INCLUDES:
        violations.add(path, includes[MOST_INCLUDES][0],
                       f"{len(includes)} includes in a header; at most {MOST_INCLUDES} are allowed")


class Pair(NamedTuple):
    """A buffer and its size as parameters of a function."""

    line: int
    text: str
    function: str
    is_qualified: bool  # as in the definition of a member, User::askText(...)
    is_override: bool


class BufferRule:
    """Finds pairs of buffer and size outside the places where they are allowed.

    An override of a function of the contracts has no choice: it is allowed in its class and where it is defined.
    """

    def __init__(self, source, codes):
        self.source = source
        self.pairs = {path: list(buffer_pairs(code)) for path, code in codes.items()}
        contracts = {pair.function for path in self.pairs if self.is_below(path, "contracts/")
                     for pair in self.pairs[path]}
        self.overrides = {(path, pair.function) for path, pairs in self.pairs.items() for pair in pairs
                          if pair.is_override and pair.function in contracts}

    def is_below(self, path, folders):
        return path.relative_to(self.source).as_posix().startswith(folders)

    def check(self, path, violations):
        if self.is_below(path, BUFFERS_ALLOWED):
            return
        for pair in self.pairs[path]:
            if not self.is_prescribed(path, pair):
                violations.add(path, pair.line, f"buffer with a size ({pair.text}) in {pair.function}; text goes in as "
                                                "std::string_view and out as std::string")

    def is_prescribed(self, path, pair):
        header = path.with_suffix(".h") if pair.is_qualified else path
        return (header, pair.function) in self.overrides and (pair.is_override or pair.is_qualified)


def buffer_pairs(code):
    for match in BUFFER_AND_SIZE.finditer(code):
        opening, closing = enclosing_parentheses(code, match.start(), match.end())
        name = FUNCTION_NAME.search(code, max(opening - 200, 0), opening)
        yield Pair(line=line_at(code, match.start()),
                   text=" ".join(match.group(0).split()),
                   function=name.group(2) if name else "a function type",
                   is_qualified=bool(name and name.group(1)),
                   is_override=OVERRIDES.match(code, closing + 1) is not None)


def enclosing_parentheses(code, start, end):
    """Where the parentheses around code[start:end] open and close."""
    def walk(position, step, opening, closing):
        depth = 0
        while 0 <= position < len(code):
            depth += (code[position] == opening) - (code[position] == closing)
            if depth < 0:
                break
            position += step
        return max(position, 0)

    return walk(start - 1, -1, ")", "("), walk(end, 1, "(", ")")


def check_log_guards(source, path, code, violations):
    """A log is never null, so nobody asks whether it is before printing through it."""
    if path.relative_to(source).as_posix().startswith(GUARDS_ALLOWED):
        return
    logs = set(PRINTED_THROUGH_POINTER.findall(code))
    found = {(line_at(code, match.start(1)), match.group(1))
             for log in logs for guard in null_guards(log) for match in guard.finditer(code)}
    for number, log in sorted(found):
        violations.add(path, number, f"null guard of the log {log}; a debug log is a value and never null")


def null_guards(log):
    """Comparisons with null, and the pointer itself as a condition."""
    name = rf"(?<![\w.>])({re.escape(log)})"
    null = r"\b(?:nullptr|NULL)\b"
    return [re.compile(pattern) for pattern in (
        rf"{name}\s*[!=]=\s*{null}",
        rf"{null}\s*[!=]=\s*{name}(?![\w(.-])",
        rf"\b(?:if|while)\s*\(\s*!?\s*{name}\s*\)",
        rf"!\s*{name}\s*(?:\)|&&|\|\|)",
        rf"(?:&&|\|\|)\s*{name}\s*(?:\)|&&|\|\|)",
        rf"{name}\s*(?:&&|\|\||\?)",
    )]


def check_console_pointers(source, path, code, violations):
    if path.relative_to(source).as_posix().startswith(CONSOLES_ALLOWED):
        return
    for match in CONSOLE_POINTER.finditer(code):
        violations.add(path, line_at(code, match.start()), "pointer to a PConsole; hold a DebugLog by value")


def count_c_str(codes):
    return sum(len(re.findall(r"(?:\.|->)\s*c_str\s*\(", code)) for code in codes.values())
