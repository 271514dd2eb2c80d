"""Who may include what: layers, libraries, system headers, the own header first, no cycle of units."""

import pathlib
import re

from lint_rules.cpp_sources import includes_of
from lint_rules.platform_rules import SYSTEM_FOLDERS

# Headers of libraries, by pattern, and the folders that may include them.
LIBRARIES = [
    (re.compile(r"zlib\.h"), {"package", "previewer", "ui/gui/start"}),
    (re.compile(r"wx/.*"), {"ui/gui/wx", "ui/gui/wx/gtk", "ui/gui/wx/msw"}),
    (re.compile(r"expat\.h"), {"checking"}),
    (re.compile(r"png\.h|jpeglib\.h"), {"ui/gui/images"}),
]
TEST_LIBRARIES = re.compile(r"(gtest|gmock)/.*|zlib\.h")

STANDARD_HEADERS = set("""
algorithm any array atomic barrier bit bitset cassert cctype cerrno cfenv cfloat charconv chrono cinttypes climits
clocale cmath codecvt compare complex concepts condition_variable coroutine csetjmp csignal cstdarg cstddef cstdint
cstdio cstdlib cstring ctime cuchar cwchar cwctype deque exception execution filesystem format forward_list fstream
functional future initializer_list iomanip ios iosfwd iostream istream iterator latch limits list locale map memory
memory_resource mutex new numbers numeric optional ostream queue random ranges ratio regex scoped_allocator semaphore
set shared_mutex source_location span sstream stack stdexcept stop_token streambuf string string_view strstream
syncstream system_error thread tuple type_traits typeindex typeinfo unordered_map unordered_set utility valarray
variant vector version
""".split())

# In the library of the cross-compiler (GCC 12 without the Linux futex), threads that wait for these, or for the value of
# an atomic, can miss the wake-up and wait for ever.
UNSAFE_HEADERS = {"barrier", "latch", "semaphore"}


def check_includes(table, source, path, code, violations):
    """The include lines of one file of src/."""
    folder = table.folder_of(path.relative_to(source).as_posix())
    check_own_header(source, path, code, violations)
    check_unsafe_headers(path, code, violations)
    for number, kind, header in includes_of(code):
        if kind == '"':
            check_arrow(table, source, folder, (path, number, header), violations)
        elif folder not in SYSTEM_FOLDERS:
            check_library(folder, (path, number, header), violations)


def check_arrow(table, source, folder, include, violations):
    path, number, target = include
    target_folder = table.folder_of(target)
    if target_folder is None or not (source / target).is_file():
        violations.add(path, number, f'"{target}" is not a header below src/; includes are written from there')
    elif not table.allows(folder, target_folder):
        violations.add(path, number, f'{folder} must not include {target_folder} ("{target}")')


def check_library(folder, include, violations):
    path, number, header = include
    if header in STANDARD_HEADERS:
        return
    for pattern, folders in LIBRARIES:
        if pattern.fullmatch(header):
            if folder not in folders:
                violations.add(path, number, f"<{header}> is only for {', '.join(sorted(folders))}")
            return
    violations.add(path, number, f"<{header}> is not a C++ standard header; only platform/posix and "
                                 "platform/windows may include headers of the system")


def check_unsafe_headers(path, code, violations):
    for number, kind, header in includes_of(code):
        if kind == "<" and header in UNSAFE_HEADERS:
            violations.add(path, number, f"<{header}> can lose a wake-up with one of our compilers; "
                                         "use a condition variable")


def check_own_header(source, path, code, violations):
    if path.suffix != ".cpp":
        return
    own = path.relative_to(source).with_suffix(".h")
    # The twins of the platform share the header of the folder above.
    candidates = [own.as_posix(), (own.parent.parent / own.name).as_posix()]
    own_header = next((c for c in candidates if (source / c).is_file()), None)
    if own_header is None:
        return
    number, _, first = next(includes_of(code), (1, "", None))
    if first is None:
        violations.add(path, 1, f'does not include its own header, "{own_header}"')
    elif first != own_header:
        violations.add(path, number, f'the first include must be the own header, "{own_header}"')


def check_test_includes(folder, path, code, violations):
    """The include lines of a test that runs on every platform; folder is that of the sources that it is for."""
    check_unsafe_headers(path, code, violations)
    for number, kind, header in includes_of(code):
        if kind == "<" and header not in STANDARD_HEADERS and not is_test_library(folder, header):
            violations.add(path, number, f"<{header}> is not for tests outside tests/platform/posix "
                                         "and tests/platform/windows")


def is_test_library(folder, header):
    """Whether the header is of a library for all tests, or of one that only the sources under test may use too."""
    return bool(TEST_LIBRARIES.fullmatch(header)) or any(
        pattern.fullmatch(header) for pattern, folders in LIBRARIES if folder in folders)


def check_unit_cycles(source, codes, violations):
    """Units (x.h with x.cpp) must not include each other in a circle. One circle is reported for each knot."""
    edges = unit_edges(source, codes)
    done = set()
    for unit in sorted(edges):
        cycle = None if unit in done else shortest_cycle(edges, unit)
        if cycle:
            path, number = edges[cycle[0]][cycle[1]]
            violations.add(path, number, f"cycle of units: {' -> '.join(cycle)}")
            done |= knot_of(edges, unit)


def unit_edges(source, codes):
    """Unit -> {unit that it includes: (file, line) of an include}."""
    edges = {}
    for path, code in codes.items():
        unit = path.relative_to(source).with_suffix("").as_posix()
        targets = edges.setdefault(unit, {})
        for number, kind, header in includes_of(code):
            target = pathlib.PurePosixPath(header).with_suffix("").as_posix()
            if kind == '"' and target != unit and (source / header).is_file():
                targets.setdefault(target, (path, number))
    return edges


def shortest_cycle(edges, start):
    """The units of a shortest way from start back to it, both ends included, or None."""
    came_from = {start: None}
    waiting = [start]
    for unit in waiting:
        for target in sorted(edges.get(unit, {})):
            if target == start:
                return [*way_to(came_from, unit), start]
            if target not in came_from:
                came_from[target] = unit
                waiting.append(target)
    return None


def way_to(came_from, unit):
    way = []
    while unit is not None:
        way.insert(0, unit)
        unit = came_from[unit]
    return way


def knot_of(edges, unit):
    """All units that the unit reaches and that reach it."""
    reverse = {}
    for start, targets in edges.items():
        for target in targets:
            reverse.setdefault(target, {})[start] = None
    return reachable(edges, unit) & reachable(reverse, unit)


def reachable(edges, start):
    seen = {start}
    waiting = [start]
    for unit in waiting:
        for target in edges.get(unit, {}):
            if target not in seen:
                seen.add(target)
                waiting.append(target)
    return seen
