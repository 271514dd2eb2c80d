"""A setup for the tests of the window whose work waits for the test."""

import shutil

import descriptions
from harness import EXE, HELPERS
from window import Window, WindowTest

BUTTONS = ('<Button Name="Next" x="248" y="48" w="104" h="32" HAlign="right" VAlign="bottom" Disableable="1">&amp;Next</Button>'
           '<Button Name="Cancel" x="128" y="48" w="104" h="32" HAlign="right" VAlign="bottom">&amp;Cancel</Button>')
BARS = '<Progress Name="Current" x="24" y="56" w="-24" h="20"/><Progress Name="Overall" x="24" y="88" w="-24" h="20"/>'
FILES = f"""
<FileSet Name="All"><FN Dest="[DIR]">data.txt</FN><FN Dest="[DIR]/un" Executable="1">installer{EXE}</FN></FileSet>
<UninstallWildcards>
 <File Dest="[DIR]/un">install.log</File><File Dest="[DIR]/un">backup.bin</File>
</UninstallWildcards>
"""


def page(name, text, content="", special=""):
    return f'<{name} Special="{special}" w="480" h="240"><Text x="24" y="24">{text}</Text>{content}{BUTTONS}</{name}>'


def look(container):
    """The page runs it when it is entered."""
    return f'<Trigger EvaluateOn="DlgEval" Type="RunActions" Value="{container}"/>'


def last_page(text):
    """Of the plain descriptions."""
    return f'<Finish Special="Finish"><Text x="1" y="1">{text}</Text></Finish>'


class HeldPackage(WindowTest):
    """Both ways the second page is busy, and the third one works, until the test lets them go on."""

    def setUp(self):
        super().setUp()
        shutil.copy2(HELPERS / ("foreign_uninstaller" + EXE), self.host("helper" + EXE))
        pages = page("Welcome", "Before.") + page("Look", "Looking.", look("Looking"), "Busy")
        farewell = (page("Farewell", "Leaving.") + page("LookBack", "Looking back.", look("LookingBack"), "Busy") +
                    page("CopyProgress", "Removing.", BARS, "AutoNext"))
        groups = "".join(map(self.held, ("Looking", "AdditionalInstall", "LookingBack", "PreUninstall")))
        text = descriptions.description(self.native("opt"), FILES + groups, pages, farewell=farewell)
        for plain, full in (('<CopyProgress Special="AutoNext"/>', page("CopyProgress", "Copying.", BARS, "AutoNext")),
                            (last_page("It worked."), page("Finish", "It worked.", special="Finish")),
                            (last_page("Bye."), page("Finish", "Bye.", special="Finish"))):
            self.assertIn(plain, text)
            text = text.replace(plain, full)
        self.build_package(text, {"data.txt": "data\n", "install.xml": text})
        shutil.rmtree(self.host("stage"))

    def held(self, container):
        """A group of actions that waits for the test."""
        arguments = f"mark {self.native('in-' + container)} await {self.native('go-' + container)}"
        return (f'<{container}><RunProgram Wait="1" Arguments="{arguments}">{self.native("helper" + EXE)}</RunProgram>'
                f'</{container}>')

    def wait_until_held(self, container):
        self.wait_until(self.host("in-" + container).exists)

    def release(self, container):
        self.write("go-" + container, "")


class HeldSetup(HeldPackage):
    """`setup` is the window of an installation."""

    arguments = ()

    def setUp(self):
        super().setUp()
        self.setup = Window(self, "setup" + EXE, *self.arguments)

    def walk_to_the_installation(self):
        self.setup.page("Before.")
        self.setup.click("Next")
        self.wait_until_held("Looking")
        self.release("Looking")
        self.setup.page("Looking.")
        self.setup.click("Next")
        self.wait_until_held("AdditionalInstall")


class HeldRemoval(HeldPackage):
    """`removal` is the window of a removal of what was installed without one."""

    def setUp(self):
        super().setUp()
        for container in ("Looking", "AdditionalInstall"):
            self.release(container)
        result = self.run_program("setup" + EXE, "-auto")
        self.assertIn("The installation was successful.", result.out, result)
        self.removal = Window(self, "opt/un/installer" + EXE, "-uninstall=" + self.native("opt/un/install.log"),
                              "-uninstallApp=Test Product")

    def walk_to_the_removal(self):
        self.removal.page("Leaving.")
        self.removal.click("Next")
        self.wait_until_held("LookingBack")
        self.release("LookingBack")
        self.removal.page("Looking back.")
        self.removal.click("Next")
        self.wait_until_held("PreUninstall")
