"""The full texts of well-known licences, as documents that are shown as they are written."""

import pathlib

from descriptions import description

# Debian's package base-files has them on every machine.
PLACE = pathlib.Path("/usr/share/common-licenses")
LICENCES = ("GPL-2", "GPL-3", "LGPL-2.1", "Apache-2.0", "MPL-2.0", "Artistic")
ELEMENTS = ("RichEditText", "PlainEditText", "HtmlEditText")
AFTER = "These were all."


def texts():
    return {name: (PLACE / name).read_text("utf-8") for name in LICENCES}


def lines_of(text):
    """The lines that a document has, with its TABs filled."""
    return [line.expandtabs(8) for line in text.removesuffix("\n").replace("\f", "\n").split("\n")]


def letters(lines):
    return "".join("".join(lines).split())


def next_page(number):
    """The caption of the button on the page of a licence."""
    return f"To page {number + 1}"


def build_setup(test, element):
    """A package that shows each licence on a page of its own."""
    pages = "".join(
        f'<Read{i} w="600" h="400"><{element} x="10" y="10" w="-10" h="-80" Format="TandrelText">{name}</{element}>'
        f'<Button Name="Next" x="420" y="350" w="120" h="32">{next_page(i)}</Button></Read{i}>' for i, name in enumerate(LICENCES))
    pages += f'<After><Text x="1" y="1">{AFTER}</Text></After>'
    sets = '<FileSet Name="Texts" Condition="1==0">' + "".join(f"<FN>{name}</FN>" for name in LICENCES) + "</FileSet>"
    return test.build_package(description(test.native("opt"), sets, pages), texts())
