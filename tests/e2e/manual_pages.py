"""Reads the manual: its fenced blocks, and the words after their fences, which say what to do with them.

    ```xml file=NAME      the whole content of a file
    ```xml section=NAME   one section of install.xml: it replaces the section of that name, or is added at the end
    ```text file=NAME     as above, for files of other kinds
    ```sh run             commands; followed by "exit=N" if their exit code isn't 0
    ```text output        the output of the commands before it: "…" matches any text in a line or, alone in a line,
                          any lines; text between « and » is typed, «Enter» is an empty line

Blocks with other words are examples that are not run here; recipes.py reads those with `recipe=NAME`.
"""

import re

FENCE = re.compile(r"^```([^\n`]*)\n(.*?)^```$", re.M | re.S)


class Block:
    def __init__(self, info, text, line):
        words = info.split()
        self.language = words[0] if words else ""
        self.words = [w for w in words[1:] if "=" not in w]
        self.values = dict(w.split("=", 1) for w in words[1:] if "=" in w)
        self.text, self.line = text, line


def blocks(page):
    """The fenced blocks of the text of a page, in order."""
    return [Block(m.group(1), m.group(2), page.count("\n", 0, m.start()) + 1) for m in FENCE.finditer(page)]


def with_section(description, section):
    """The description with this section in the place of the one with its name."""
    name = re.match(r"\s*<(\w+)", section).group(1)
    old = re.compile(rf"[ \t]*<{name}>.*</{name}>\n", re.S)
    if old.search(description):
        return old.sub(lambda _: section, description, count=1)
    end = description.rindex("</")
    return description[:end] + section + description[end:]


def answers(output):
    """What is typed in a stated output, as the input of the program, and the output without it."""
    typed = re.findall(r"«(.*?)»", output)
    stated = re.sub(r"«.*?»\n?", "", output)  # the line ends where Enter was pressed, which no pipe repeats
    return "".join(("" if a == "Enter" else a) + "\n" for a in typed), stated


def pattern_of(stated):
    """A regular expression for a stated output."""
    lines = [re.escape(line).replace("…", "[^\n]*") for line in stated.rstrip("\n").split("\n")]
    text = "".join("(?:[^\n]*\n)*" if line == "[^\n]*" else line + "\n" for line in lines)
    return re.compile(text)
