"""A setup for the tests of the window whose work waits for the test."""

import shutil

import descriptions
from harness import EXE, HELPERS
from window import Window, WindowTest

BUTTONS = ('<Button Name="Next" x="248" y="48" w="104" h="32" HAlign="right" VAlign="bottom" Disableable="1">&amp;Next</Button>'
           '<Button Name="Cancel" x="128" y="48" w="104" h="32" HAlign="right" VAlign="bottom">&amp;Cancel</Button>')
BARS = '<Progress Name="Current" x="24" y="56" w="-24" h="20"/><Progress Name="Overall" x="24" y="88" w="-24" h="20"/>'
LOOK = '<Trigger EvaluateOn="DlgEval" Type="RunActions" Value="Looking"/>'
FILES = '<FileSet Name="All"><FN Dest="[DIR]">data.txt</FN></FileSet>'


def page(name, text, content="", special=""):
    return f'<{name} Special="{special}" w="480" h="240"><Text x="24" y="24">{text}</Text>{content}{BUTTONS}</{name}>'


class HeldSetup(WindowTest):
    """Its second page is busy, and its third one installs, until the test lets them go on."""

    def setUp(self):
        super().setUp()
        shutil.copy2(HELPERS / ("foreign_uninstaller" + EXE), self.host("helper" + EXE))
        pages = page("Welcome", "Before.") + page("Look", "Looking.", LOOK, "Busy")
        groups = self.held("Looking") + self.held("AdditionalInstall")
        text = descriptions.description(self.native("opt"), FILES + groups, pages)
        for plain, full in (('<CopyProgress Special="AutoNext"/>', page("CopyProgress", "Copying.", BARS, "AutoNext")),
                            ('<Finish Special="Finish"><Text x="1" y="1">It worked.</Text></Finish>',
                             page("Finish", "It worked.", special="Finish"))):
            self.assertIn(plain, text)
            text = text.replace(plain, full)
        self.build_package(text, {"data.txt": "data\n", "install.xml": text})
        shutil.rmtree(self.host("stage"))
        self.setup = Window(self, "setup" + EXE)

    def held(self, container):
        """A group of actions that waits for the test."""
        arguments = f"mark {self.native('in-' + container)} await {self.native('go-' + container)}"
        return (f'<{container}><RunProgram Wait="1" Arguments="{arguments}">{self.native("helper" + EXE)}</RunProgram>'
                f'</{container}>')

    def wait_until_held(self, container):
        self.wait_until(self.host("in-" + container).exists)

    def release(self, container):
        self.write("go-" + container, "")

    def walk_to_the_installation(self):
        self.setup.page("Before.")
        self.setup.click("Next")
        self.wait_until_held("Looking")
        self.release("Looking")
        self.setup.page("Looking.")
        self.setup.click("Next")
        self.wait_until_held("AdditionalInstall")
