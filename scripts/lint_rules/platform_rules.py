"""What only some places may know: the operating system, and the machine that the program really runs on."""

import re

from lint_rules.cpp_sources import line_at, lines_of

# The only places that may include headers of the operating system and ask which platform it is. The last two know its window
# system; the module of the window can't call the platform's code.
SYSTEM_FOLDERS = {"platform/posix", "platform/windows", "ui/gui/wx/gtk", "ui/gui/wx/msw"}

# Functions of one system that the standard headers of its compiler also declare, so that the code compiles there and
# nowhere else. Only names that nobody would give to a function of their own.
SYSTEM_CALLS = re.compile(
    r"(?<![\w.:>])(?:std::|::)?(setenv|unsetenv|putenv|mkstemp|mkdtemp|mkfifo|unlink|symlink|readlink|chmod|fchmod|l?chown|"
    r"getpid|getppid|gete?[ug]id|fork|vfork|exec[lv]p?e?|posix_spawnp?|waitpid|nanosleep|usleep|popen|pclose|dup2|fileno|"
    r"isatty|ftruncate|fsync|pread|pwrite|mmap|munmap|realpath|strcasecmp|strncasecmp|strndup|stpcpy|strsep|v?asprintf|"
    r"memmem|fmemopen|open_memstream|gettimeofday|clock_gettime|(?:local|gm)time_r|strtok_r|srandom|drand48|"
    r"pthread_\w+|sigaction|_wputenv\w*|_putenv\w*|_?stricmp|_?strnicmp|_getch|_kbhit|_wfopen|_setmode|"
    r"Get(?:LastError|TempPathW|ModuleFileNameW)|CreateFileW|CloseHandle)\s*\(")

CONDITIONAL = re.compile(r"\s*#\s*(?:if|ifdef|ifndef|elif|elifdef|elifndef)\b(.*)")
PLATFORM_MACRO = re.compile(
    r"\b(?:_?WIN(?:32|64)\w*|_WIN(?:32|64)__|__WIN\w+|WINVER|_WIN32_WINNT|__MINGW\w+|_MSC_VER|__CYGWIN__|"
    r"(?:__)?linux(?:__)?|__gnu_linux__|(?:__)?unix(?:__)?|_POSIX_\w+|__APPLE__|__FreeBSD__|__GLIBC__|__has_include)\b")

# The entries of the programs ask for the real machine and hand it down.
MAY_REACH_THE_MACHINE = ("platform/", "installer/")
ENTRIES_OF_TOOLS = {"packager/main.cpp", "previewer/main.cpp"}
QUALIFIED_MACHINE = re.compile(r"\bplatform\s*::\s*(system[A-Z]\w*)")
MACHINE_DECLARATION = re.compile(r"^[\w:]+ ?&? ?(system[A-Z]\w*)\(\);", re.M)


def check_system_knowledge(path, code, violations):
    """No platform conditional and no call of one system. For all files outside SYSTEM_FOLDERS."""
    for number, line in lines_of(code):
        conditional = CONDITIONAL.match(line)
        macro = conditional and PLATFORM_MACRO.search(conditional.group(1))
        if macro:
            violations.add(path, number, f"platform conditional ({macro.group(0)}) outside platform/posix and "
                                         "platform/windows")
        call = SYSTEM_CALLS.search(line)
        if call:
            violations.add(path, number, f"{call.group(1)}() is a call of one system; only platform/posix and "
                                         "platform/windows may make it")


def machine_functions(source):
    """Names of the functions of platform/ that give the real machine or a part of it."""
    headers = sorted((source / "platform").glob("*.h"))
    return {name for header in headers for name in MACHINE_DECLARATION.findall(header.read_text(encoding="utf-8"))}


def check_real_machine(source, path, code, functions, violations):
    """Everything below the entries works on the machine that it is given: no call, no default argument, no alias."""
    relative = path.relative_to(source).as_posix()
    if relative.startswith(MAY_REACH_THE_MACHINE) or relative in ENTRIES_OF_TOOLS:
        return
    found = {(line_at(code, match.start(1)), match.group(1)) for match in machine_uses(code, functions)}
    for number, name in sorted(found):
        violations.add(path, number, f"{name}() reaches for the real machine; take the interface as a parameter")


def machine_uses(code, functions):
    yield from QUALIFIED_MACHINE.finditer(code)
    if functions:
        # Without the namespace, or with another name for it. A member of the same name is something else.
        yield from re.finditer(rf"(?<![\w.>])(?:\w+\s*::\s*)?\b({'|'.join(sorted(functions))})\s*\(", code)
