#!/usr/bin/env python3
"""The words of the description that stand in the sources as literals are in the manual.

    source_words.py [--list]

Tables of words are held against the manual by manual_test.cpp. Names of elements and attributes are mostly asked for
where they are needed; this finds those places. --list shows what was found, with its place. Exit code 0: all words
are in the manual; 1: some are not, one line each.
"""

import pathlib
import re
import sys

ROOT = pathlib.Path(__file__).resolve().parents[2]
LAYERS = ("description", "engine", "ui", "session", "wini", "installer", "packager", "package", "support", "platform")
WORD = r'"([A-Za-z][A-Za-z0-9]*)"'
# A call, what comes ahead of the word among its arguments, and what kind of word it is.
LOOKUPS = [
    (rf'\b(?:getAttribute|attribute|numberOr|colour|cutAttribute)\(\s*[\w.>\-\[\]()]+,\s*(?:\w+,\s*)?{WORD}', "attribute"),
    (rf'\bhas\({WORD}\)', "attribute"),
    (rf'\b(?:hasAttribute|expandAttribute|isSet)\([\w.]+,\s*{WORD}', "attribute"),
    (rf'\b(?:nextGroup|firstOf|applyGroups)\((?:\w+,\s*)?{WORD}', "element"),
    (rf'\bstrcmp\([^;"]*?,\s*{WORD}', "word"),
    (rf'\b(?:name|word|kind) == {WORD}', "word"),
    (rf'\{{{WORD}, ShortcutType::', "word"),
    (rf'\bfind(?:ByName|Child|Relative)\((?:[\w.>\-]+,\s*)?{WORD}', "element"),
    (rf'\bchildrenOf\(\w+,\s*{WORD}', "element"),
    (r'(?:getenv|\.get)\("([A-Z_]+)"|kLevelVariable\[\] = "([A-Z_]+)"', "environment variable"),
    (r'"TandrelGroupInstallation((?:/\w+)+)"', "path"),
    (rf'\b(?:equalsIgnoreCase|startsWithIgnoreCase)\([^;"]*?,\s*{WORD}', "word"),
    (r'\b(?:refuse|runActions|runAdditionalActions)\((?:[&\w.]+,\s*)?"([A-Z][A-Za-z]*)"\s*[,)]', "element"),
]
# Levels of paths that no description has: the look-up passes over them; and inputs that only the program names.
SKIPPED = {"Desc", "autoInstall", "autoUninstall"}


def words_of_sources():
    """(word, kind, file:line) for every look-up of a literal in the sources."""
    for layer in LAYERS:
        for path in sorted((ROOT / "src" / layer).rglob("*.cpp")):
            text = path.read_text("utf-8")
            for pattern, kind in LOOKUPS:
                for match in re.finditer(pattern, text):
                    place = f"{path.relative_to(ROOT)}:{text.count(chr(10), 0, match.start()) + 1}"
                    for word in next(g for g in match.groups() if g).split("/"):
                        if word and word not in SKIPPED:
                            yield word, kind, place


def code_of_manual():
    """Everything in the manual that is written as code."""
    code = []
    for page in sorted((ROOT / "docs" / "manual").glob("*.md")):
        text = page.read_text("utf-8")
        code += re.findall(r"^```.*?^```", text, re.M | re.S)
        code += re.findall(r"`([^`\n]+)`", re.sub(r"^```.*?^```", "", text, flags=re.M | re.S))
    return "\n".join(code)


def main(arguments):
    found = sorted(set(words_of_sources()))
    if arguments == ["--list"]:
        for word, kind, place in found:
            print(f"{word}\t{kind}\t{place}")
        return 0
    known = set(re.findall(r"\w+", code_of_manual()))
    missing = [f'{place}: the {kind} "{word}" is in no page of docs/manual: describe it there, as `{word}`'
               for word, kind, place in found if word not in known]
    print("\n".join(missing) if missing else f"{len({word for word, _, _ in found})} words, all in the manual")
    if len(found) < 100:
        print("source_words.py finds too few words: its patterns don't fit the sources any more")
        return 1
    return 1 if missing else 0


if __name__ == "__main__":
    sys.exit(main(sys.argv[1:]))
