"""Recipes of the manual: a page's fragments, put into the template that packager new writes, as the page says.

    ```xml recipe=NAME             sections that are added to those of the template
    ```text recipe=NAME file=PATH  a file of the product, below the packager's root

What a section has is added at its end. Where an element of the template is shown again, what follows it on the page comes
directly after it; pages before the first such one come at the beginning.
"""

from xml.etree import ElementTree

import manual_pages

PAGED = ("Dialogs", "UninstallDialogs")
# Of these the first one counts, so what others would have belongs to it.
ONLY_ONCE = ("Uninstall", "UninstallWildcards")


class Recipe:
    def __init__(self, fragments, files):
        self.fragments, self.files = fragments, files

    def added_to(self, template):
        """The description that has the sections of this recipe, too."""
        root = ElementTree.fromstring(template)
        for fragment in self.fragments:
            for section in ElementTree.fromstring(f"<Fragment>{fragment}</Fragment>"):
                add_section(root, section)
        ElementTree.indent(root)
        return ElementTree.tostring(root, encoding="unicode")


def add_section(root, section):
    there = root.find(section.tag)
    if there is None:
        root.append(section)
    elif section.tag in PAGED:
        add_pages(there, section)
    else:
        for element in section:
            once = there.find(element.tag) if element.tag in ONLY_ONCE else None
            if once is None:
                there.append(element)
            else:
                once.extend(element)


def add_pages(pages, section):
    place = 0
    for page in section:
        anchor = pages.find(page.tag)
        if anchor is None:
            pages.insert(place, page)
            place += 1
        else:
            anchor.extend(page)
            place = list(pages).index(anchor) + 1


def recipes_of(page):
    """The recipes on the text of a page, by their names."""
    found = {}
    for block in manual_pages.blocks(page):
        name = block.values.get("recipe")
        if name is None:
            continue
        recipe = found.setdefault(name, Recipe([], {}))
        if "file" in block.values:
            recipe.files[block.values["file"]] = block.text
        else:
            recipe.fragments.append(block.text)
    return found
