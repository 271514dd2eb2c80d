"""The recipes of the manual, taken from their pages: checked, installed, looked at, uninstalled without a trace."""

import hashlib
import shutil
import subprocess
import unittest

import recipes
from descriptions import description
from harness import EXE, HELPERS, TOP, WINDOWS, EndToEndTest, main

MANUAL = TOP / "docs" / "manual"
PAGES = [*sorted(MANUAL.glob("recipes*.md")), MANUAL / "upgrading.md"]
SUCCESS = "The installation was successful."
PRODUCT = "Example Product"
TEMPLATE = TOP / "samples" / "template"


def all_recipes():
    return {name: recipe for page in PAGES for name, recipe in recipes.recipes_of(page.read_text("utf-8")).items()}


class RecipeTest(EndToEndTest):
    """A machine on which somebody has a file in each of the directories that the recipes share with others."""

    SHARED = ("menu", "conf", "units")

    def setUp(self):
        super().setUp()
        for place in self.SHARED:
            self.write(f"machine/{place}/somebody's", "")
        self.before = self.everything()

    def everything(self):
        """Each file, link and directory of the machine; directories of the setups' own records are elsewhere."""
        base = self.host("machine")
        return {str(p.relative_to(base)): hashlib.md5(p.read_bytes()).hexdigest() if p.is_file() else None
                for p in sorted(base.rglob("*"))}

    def installed(self):
        return {name: content for name, content in self.tree("machine/product").items() if not name.startswith("uninstall/")}

    def pack(self, *names, files=(), version="1"):
        """Packs the template with recipes; nothing is found in it."""
        shutil.rmtree(self.host("product"), ignore_errors=True)
        shutil.copytree(TEMPLATE / "files", self.host("product/files"))
        text = (TEMPLATE / "install.xml").read_text("utf-8").replace("<MajorVersion>1<", f"<MajorVersion>{version}<")
        for recipe in (all_recipes()[name] for name in names):
            text = recipe.added_to(text)
            for name, content in recipe.files.items():
                self.write("product/files/" + name, content)
        for name, content in dict(files).items():
            self.write("product/files/" + name, content)
        self.write("product/install.xml", text)
        self.build_strictly("product/install.xml", "product/files", "setup" + EXE)

    def build_strictly(self, path, root, output):
        checked = self.packager("check", self.native(path), "--root", self.native(root), "--strict")
        self.assertEqual((checked.code, checked.out.strip()), (0, f"{self.native(path)}: 0 errors, 0 warnings"), checked)
        built = self.packager("build", "--description", self.native(path), "--root", self.native(root), "--level", "1",
                              "--image", self.native("installer" + EXE), "--output", self.native(output))
        self.assertEqual((built.code, built.err), (0, ""), built)

    def run_setup(self, *variables, env=None):
        places = {"INSTALL_DIR": "product", "MENU_DIR": "menu", "CONF_DIR": "conf/example", "UNIT_DIR": "units"}
        text = self.read_text("product/install.xml")
        given = [f"-VARIABLE_{name}={self.native('machine/' + place)}" for name, place in places.items() if f'"{name}"' in text]
        return self.run_program("setup" + EXE, "-auto", *given, *(f"-VARIABLE_{v}" for v in variables), env=env)

    def install(self, *variables, env=None):
        result = self.run_setup(*variables, env=env)
        self.assertIn(SUCCESS, result.out, result)
        return result

    def uninstall(self, env=None):
        """The second stage: its exit code is the outcome."""
        shutil.copyfile(self.host("machine/product/uninstall/install.log"), self.host("copy.log"))
        result = self.run_program("installer" + EXE, "-uninstallFile=" + self.native("copy.log"),
                                  f"-uninstallApp={PRODUCT}", "-gui=0", env=env)
        self.assertEqual(result.code, 0, result)

    def assert_nothing_left(self):
        self.assertEqual(self.everything(), self.before)
        key = "Software\\Microsoft\\Windows\\CurrentVersion\\Uninstall\\" + PRODUCT
        self.assertIsNone(self.registry("HKLM", key))


class Settings(RecipeTest):
    OWN = "machine/conf/example/own.conf"

    def install_and_use(self, *variables):
        self.pack("settings", "choice-of-removal")
        self.install("COLOUR=red", *variables)
        self.assertIn(b"colour=red", self.installed()["defaults.conf"])
        self.assertIn(self.native("machine/conf/example").replace("\\", "/").encode(),
                      self.installed()["defaults.conf"].replace(b"\\", b"/"))
        self.write(self.OWN, "the user's\n")  # which the product does

    def test_they_outlive_an_upgrade_and_an_uninstallation(self):
        for remove_first in ("0", "1"):
            with self.subTest(remove_first=remove_first):
                self.install_and_use()
                self.pack("settings", "choice-of-removal", version="2")
                result = self.install("REMOVE_FIRST=" + remove_first)
                self.assertEqual("\nDelete " in result.out, remove_first == "1", result)
                self.assertIn(b"colour=red", self.installed()["defaults.conf"])
                self.assertEqual(self.read_text(self.OWN), "the user's\n")
                self.uninstall()
                self.assertEqual(self.read_text(self.OWN), "the user's\n")
                shutil.rmtree(self.host("machine/conf/example"))
                self.assert_nothing_left()

    def test_they_go_with_the_last_version_if_the_user_wants_that(self):
        self.install_and_use("KEEP_SETTINGS=0")
        self.write("machine/conf/example/other.txt", "")
        self.pack("settings", version="2")
        self.install()
        self.assertEqual(self.read_text(self.OWN), "the user's\n")
        self.uninstall()
        self.assertEqual(self.tree("machine/conf/example"), {"other.txt": b""})
        shutil.rmtree(self.host("machine/conf/example"))
        self.assert_nothing_left()

    def test_their_directory_goes_when_it_is_empty(self):
        self.install_and_use("KEEP_SETTINGS=0")
        self.uninstall()
        self.assert_nothing_left()


class Parts(RecipeTest):
    def installed_for(self, *variables):
        self.install(*variables)
        parts = set(self.installed()) & {"examples/first.exm", "tools/convert.txt"}
        self.uninstall()
        self.assert_nothing_left()
        return {part.split("/")[0] for part in parts}

    def test_each_kind_installs_its_parts(self):
        self.pack("parts")
        self.assertEqual(self.installed_for(), {"examples"})
        self.assertEqual(self.installed_for("KIND=1", "EXAMPLES=0"), {"examples", "tools"})
        self.assertEqual(self.installed_for("KIND=2", "EXAMPLES=0", "TOOLS=1"), {"tools"})
        self.assertEqual(self.installed_for("KIND=2", "EXAMPLES=0"), set())

    def test_only_the_custom_kind_asks_for_parts(self):
        self.pack("parts")
        answers = [self.native("machine/product"), "no"]
        for kind, asked in (("1", False), ("3", True)):
            result = self.run_program("setup" + EXE, "-gui=0", f"-VARIABLE_MENU_DIR={self.native('machine/menu')}",
                                      stdin="\n".join([*answers, kind, "no", "no"]) + "\n")
            self.assertEqual("Install the tools" in result.out, asked, result)
            self.assertEqual("examples/first.exm" in self.installed(), not asked)
            self.uninstall()


class Requirement(RecipeTest):
    def runtime(self, version, output):
        """The setup of what is required."""
        value = ('<AdditionalInstall><Registry><AddValue Place="HKEY_LOCAL_MACHINE" Path="SOFTWARE/Example/Runtime" '
                 f'Value="Version">{version}</AddValue></Registry></AdditionalInstall>')
        text = description(self.native("machine/runtime"), value + f"""
            <FileSet Name="Image"><FN Dest="[DIR]/un" Executable="1">installer{EXE}</FN></FileSet>
            <UninstallWildcards><R Dest="[DIR]/un">install.log</R><R Dest="[DIR]/un">backup.bin</R></UninstallWildcards>""",
            farewell='<CopyProgress Special="AutoNext"/>')
        self.build_package(text, {}, output)

    def version(self):
        values = self.registry("HKLM", "SOFTWARE\\Example\\Runtime")
        return values and values[""]["Version"][1]

    def remove_runtime(self):
        log = self.host("machine/runtime/un/install.log")
        shutil.copyfile(log, self.host("copy.log"))
        result = self.run_program("installer" + EXE, "-uninstallFile=" + self.native("copy.log"), "-gui=0")
        self.assertEqual(result.code, 0, result)
        self.assertIsNone(self.version())

    def test_a_run_without_it_changes_nothing_and_says_what_is_missing(self):
        self.pack("requirement")
        for version in (None, "1.9", "1.10.1"):
            with self.subTest(version=version):
                if version:
                    self.runtime(version, "runtime" + EXE)
                    self.assertIn(SUCCESS, self.run_program("runtime" + EXE, "-auto").out)
                    self.assertEqual(self.version(), version)
                result = self.run_setup()
                self.assertIn("Welcome to Example Product.", result.out)
                self.assertIn("Example Product needs Example Runtime 1.10.2 or later.", result.out)
                self.assertIn("Nothing was installed: the run ended on the page \"NoRuntime\"", result.err)
                self.assertFalse(self.host("machine/product").exists())
                if version:
                    self.remove_runtime()
        self.assert_nothing_left()

    def test_a_run_with_it_or_a_later_one_installs(self):
        self.pack("requirement")
        for version in ("1.10.2", "1.11", "2"):
            with self.subTest(version=version):
                self.runtime(version, "runtime" + EXE)
                self.assertIn(SUCCESS, self.run_program("runtime" + EXE, "-auto").out)
                self.install()
                self.uninstall()
                self.remove_runtime()
        self.assert_nothing_left()

    def test_one_that_comes_along_is_installed_if_there_is_need(self):
        self.runtime("1.10.2", "runtime" + EXE)
        self.pack("requirement-included", files={"runtime-setup" + EXE: self.read("runtime" + EXE)})
        result = self.install()
        self.assertIn("Installing Example Runtime", result.out)
        self.assertEqual(self.version(), "1.10.2")
        self.assertIn("runtime/runtime-setup" + EXE, self.installed())
        self.install()
        self.assertNotIn("runtime/runtime-setup" + EXE, self.installed())
        self.uninstall()
        self.assertEqual(self.version(), "1.10.2")
        self.remove_runtime()
        self.assert_nothing_left()


class Licence(RecipeTest):
    def test_without_an_agreement_nothing_is_installed(self):
        self.pack("licence")
        result = self.run_setup()
        self.assertIn("Nothing was installed.", result.out)
        self.assert_nothing_left()

    def test_the_text_is_shown_as_it_is_written_and_installed(self):
        self.pack("licence")
        text = all_recipes()["licence"].files["LICENCE.txt"]
        result = self.install("AGREED=1")
        self.assertIn(text, result.out)
        self.assertEqual(self.installed()["LICENCE.txt"].decode(), text)
        self.assertNotIn("AGREED", self.read_text("machine/product/uninstall/install.log"))
        self.uninstall()
        self.assert_nothing_left()


class Path(RecipeTest):
    KEY = "SYSTEM\\CurrentControlSet\\Control\\Session Manager\\Environment"

    def entries(self):
        """The directories that the system's PATH has."""
        values = (self.registry("HKLM", self.KEY) or {"": {}})[""]
        found = next((text for name, (_, text) in values.items() if name.lower() == "path"), "")
        return [entry.replace("\\", "/") for entry in found.split(";") if entry]

    def test_the_directory_comes_once_and_goes(self):
        self.pack("path")
        before = self.entries()
        own = self.native("machine/product").replace("\\", "/") + "/bin"
        for _ in range(2):
            self.install()
            self.assertEqual(self.entries(), before + [own])
        if not WINDOWS:
            script = f". {self.host('state')}/environment.sh; example"
            shell = subprocess.run(["sh", "-c", script], capture_output=True, check=True, text=True)
            self.assertEqual(shell.stdout, subprocess.run([own + "/example"], capture_output=True, check=True, text=True).stdout)
        self.uninstall()
        self.assertEqual(self.entries(), before)
        self.assert_nothing_left()

    def test_a_user_can_decline(self):
        self.pack("path")
        before = self.entries()
        self.install("ADD_TO_PATH=0")
        self.assertEqual(self.entries(), before)
        self.uninstall()
        self.assert_nothing_left()


class WithTools(RecipeTest):
    """Programs of the system that a recipe runs: on Linux others of these names, which write down how they are called."""

    TOOLS = ()

    def setUp(self):
        super().setUp()
        self.calls = self.host("calls")
        for tool in () if WINDOWS else self.TOOLS:
            self.write("tools/" + tool, f'#!/bin/sh\necho "$(basename "$0")" "$@" >> {self.calls}\n').chmod(0o755)

    def with_tools(self):
        return {} if WINDOWS else {"PATH": f"{self.host('tools')}:/usr/bin:/bin"}

    def take_calls(self):
        called = self.calls.read_text("utf-8").splitlines() if self.calls.exists() else []
        self.calls.unlink(missing_ok=True)
        return called


class FileType(WithTools):
    TOOLS = ("xdg-mime", "xdg-desktop-menu")
    CLASSES = "Software\\Classes\\"

    @unittest.skipUnless(WINDOWS, "the other system keeps file types elsewhere")
    def test_windows_opens_it_with_the_product(self):
        self.pack("file-type")
        for _ in range(2):
            self.install()
            self.assertIn("Example.Document", [text for _, text in self.registry("HKLM", self.CLASSES + ".exm")[""].values()])
            command = self.registry("HKLM", self.CLASSES + "Example.Document\\shell\\open\\command")[""].values()
            program = self.native("machine/product") + "\\bin\\example.cmd"
            self.assertEqual([text for _, text in command], [f'"{program}" "%1"'])
            self.assertTrue(self.host("machine/product/bin/example.cmd").is_file())
        self.uninstall()
        for key in (".exm", "Example.Document"):
            self.assertIsNone(self.registry("HKLM", self.CLASSES + key))
        self.assert_nothing_left()

    @unittest.skipIf(WINDOWS, "the other system keeps file types in its registry")
    def test_the_tools_of_the_desktop_are_told(self):
        self.pack("file-type")
        self.install(env=self.with_tools())
        self.assertEqual(self.take_calls(), ["xdg-mime install --mode system example-document.xml",
                                             "xdg-desktop-menu install --mode system example-document.desktop"])
        entry = self.installed()["share/example-document.desktop"].decode()
        self.assertIn(f'\nExec="{self.native("machine/product")}/bin/example" %f\n', entry)
        self.assertIn("share/example-document.xml", self.installed())
        self.uninstall(env=self.with_tools())
        self.assertEqual(self.take_calls(), ["xdg-desktop-menu uninstall --mode system example-document.desktop",
                                             "xdg-mime uninstall --mode system example-document.xml"])
        self.assert_nothing_left()

    @unittest.skipIf(WINDOWS, "the other system needs no tools")
    def test_a_machine_without_the_tools_gets_the_product(self):
        self.pack("file-type")
        self.install(env={"PATH": "/nowhere"})
        self.uninstall(env={"PATH": "/nowhere"})
        self.assert_nothing_left()


class Service(WithTools):
    TOOLS = ("systemctl",)
    COMING = ["systemctl daemon-reload", "systemctl enable --now example.service"]
    GOING = ["systemctl disable --now example.service", "systemctl daemon-reload"]
    STOPPING = ["systemctl stop example.service"]
    KEY = "SYSTEM\\CurrentControlSet\\Services\\ExampleService"

    def pack_service(self, **options):
        program = HELPERS.joinpath("run_uninstaller.exe").read_bytes() if WINDOWS else "#!/bin/sh\n"
        self.pack("service", "choice-of-removal", files={"bin/exampled" + EXE: program}, **options)

    @unittest.skipIf(WINDOWS, "the other system has a list of services")
    def test_systemd_is_told(self):
        self.pack_service()
        self.install(env=self.with_tools())
        self.assertEqual(self.take_calls(), self.COMING)
        unit = self.read_text("machine/units/example.service")
        self.assertIn(f'\nExecStart="{self.native("machine/product")}/bin/exampled"\n', unit)
        self.assertTrue(self.host("machine/product/bin/exampled").stat().st_mode & 0o111)
        self.install("REMOVE_FIRST=0", env=self.with_tools())
        self.assertEqual(self.take_calls(), self.STOPPING + self.COMING)
        self.install("REMOVE_FIRST=1", env=self.with_tools())
        self.assertEqual(self.take_calls(), self.STOPPING + self.GOING[:1] + self.COMING)
        self.uninstall(env=self.with_tools())
        self.assertEqual(self.take_calls(), self.GOING)
        self.assert_nothing_left()

    @unittest.skipIf(WINDOWS, "the other system has a list of services")
    def test_a_version_that_comes_back_is_started_again(self):
        self.pack_service()
        self.install(env=self.with_tools())
        self.take_calls()
        self.pack_service(version="2")
        text = self.read_text("product/install.xml").replace("</FileSet>", '<FN Dest="[MENU_DIR]/somebody\'s">README.txt</FN></FileSet>', 1)
        self.write("product/install.xml", text)
        self.build_strictly("product/install.xml", "product/files", "setup")
        result = self.run_setup(env=self.with_tools())
        self.assertNotIn(SUCCESS, result.out)
        self.assertEqual(self.take_calls(), self.STOPPING + 2 * self.GOING[:1] + self.COMING)
        self.assertIn("bin/exampled", self.installed())
        self.uninstall(env=self.with_tools())
        self.assert_nothing_left()

    @unittest.skipUnless(WINDOWS, "the other system has unit files")
    def test_windows_lists_it(self):
        self.pack_service()
        for _ in range(2):
            self.install()
            values = self.registry("HKLM", self.KEY)[""]
            program = self.native("machine/product") + "\\bin\\exampled.exe"
            self.assertEqual(values["ImagePath"][1], f'"{program}"')
            self.assertEqual(values["Start"], ("REG_DWORD", "0x2"))
        self.uninstall()
        self.wait_until(lambda: self.registry("HKLM", self.KEY) is None)
        self.assert_nothing_left()


class Pages(unittest.TestCase):
    def test_every_recipe_has_a_test(self):
        source = (TOP / "tests" / "e2e" / "test_recipes.py").read_text("utf-8")
        source += (TOP / "tests" / "e2e" / "test_large_product.py").read_text("utf-8")
        for name in all_recipes():
            self.assertIn(f'"{name}"', source)
        self.assertGreaterEqual(len(all_recipes()), 9)


if __name__ == "__main__":
    main()
