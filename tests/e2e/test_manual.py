"""The manual is correct: its examples do what it says, and its descriptions can be packed."""

import re
import shutil
import subprocess
import unittest
from xml.etree import ElementTree

import manual_pages
from harness import EXE, TIMEOUT, TOP, WINDOWS, EndToEndTest, main

MANUAL = TOP / "docs" / "manual"
# What the console writes to clear one of its lines.
CLEARED = re.compile(r"\r {78}\r?")


class ManualTest(EndToEndTest):
    """The manual describes a Linux machine: /opt, and programs without an extension."""

    def localized(self, text):
        """A file or an example of the manual, adapted to the machine of the test."""
        return text.replace("/opt/", self.native("opt").replace("\\", "/") + "/")

    def as_stated(self, text):
        """What a program printed, in the words of the manual."""
        if WINDOWS:  # when one of Wine's services crashes, the message goes to whichever program runs at the time
            text = re.sub(r"^wine: Unhandled page fault .*\n", "", text, flags=re.M)
        text = CLEARED.sub("", text).replace(str(self.machine.root) + "/", "/")
        if WINDOWS:
            return text.replace("\\", "/").replace(self.native("").replace("\\", "/"), "/").replace(".exe", "")
        root = self.native("")
        return text.replace(root, "").replace(root.replace("/", "\\"), "")

    def assert_prints(self, stated, printed, where):
        expected = stated.replace("\\", "/") if WINDOWS else stated
        printed = self.as_stated(printed).rstrip("\n") + "\n"
        if not manual_pages.pattern_of(expected).fullmatch(printed):
            self.fail(f"{where}: the manual says\n{expected}\nand this is what came:\n{printed}")


class Commands(ManualTest):
    def setUp(self):
        super().setUp()
        self.add_wrapper("bin/packager", "packager" + EXE)
        if WINDOWS:
            self.add_wrapper("setup", "setup.exe")
            self.write("bin/run", "#!/bin/bash\n" + self.translation() + "exec " + self.quoted(self.machine.command(self.host("any"))[:-1]) +
                       " \"${arguments[@]}\"\n").chmod(0o755)

    def add_wrapper(self, name, program):
        """A command for the shell that passes paths to the program in the form of its own system."""
        command = self.quoted(self.machine.command(self.host(program)))
        self.write(name, "#!/bin/bash\n" + self.translation() + f"exec {command} \"${{arguments[@]}}\"\n").chmod(0o755)

    @staticmethod
    def quoted(command):
        return " ".join(f"'{part}'" for part in command)

    def translation(self):
        return ("arguments=()\n"
                f"for a; do arguments+=(\"${{a//'{self.host('')}/'/'{self.native('')}'}}\"); done\n")

    def in_shell(self, commands, typed):
        commands = commands.replace("/opt/", str(self.host("opt")) + "/")
        if WINDOWS:
            commands = re.sub(r"(?<= )(setup|installer)\b(?!\.)", r"\1.exe", commands)
            commands = re.sub(r"^(\S+/installer)(?= )", r"run \1", commands, flags=re.M)
        environment = self.machine.environment({})
        environment["LC_ALL"] = "C.UTF-8"
        environment["PATH"] = f"{self.host('bin')}:{environment['PATH']}"
        done = subprocess.run(["bash", "-e", "-c", commands], input=typed.encode("utf-8"), stdout=subprocess.PIPE,
                              stderr=subprocess.STDOUT, timeout=TIMEOUT, check=False, env=environment,
                              cwd=self.machine.root)
        return done.returncode, done.stdout.decode("utf-8").replace("\r\n", "\n")

    def take(self, block):
        """Writes the file or section that a block contains; commands are run by `follow`."""
        if "file" in block.values:
            self.write(block.values["file"], self.localized(block.text))
        elif "section" in block.values:
            description = self.read("install.xml").decode("utf-8")
            self.write("install.xml", manual_pages.with_section(description, self.localized(block.text)))

    def follow(self, page):
        """Does what a page says, from start to end; returns the number of blocks that were run."""
        page_blocks = manual_pages.blocks((MANUAL / page).read_text("utf-8"))
        runs = 0
        for block, following in zip(page_blocks, page_blocks[1:] + [None]):
            self.take(block)
            if "run" not in block.words:
                continue
            runs += 1
            where = f"{page}:{block.line}"
            has_output = following is not None and "output" in following.words
            typed, stated = manual_pages.answers(following.text) if has_output else ("", "")
            code, printed = self.in_shell(block.text, self.localized(typed))
            self.assertEqual(code, int(block.values.get("exit", 0)), f"{where}: {block.text}{printed}")
            if has_output:
                self.assert_prints(stated, printed, where)
        return runs

    def test_every_step_of_the_tutorial_does_what_the_page_says(self):
        self.assertGreaterEqual(self.follow("tutorial.md"), 10)

    def test_the_examples_of_the_packager_do_what_the_page_says(self):
        self.assertGreaterEqual(self.follow("packager.md"), 3)

    def test_the_examples_of_documents_look_as_the_page_says(self):
        self.assertGreaterEqual(self.follow("documents.md"), 2)

    def test_the_examples_of_testing_do_what_the_page_says(self):
        self.assertGreaterEqual(self.follow("testing.md"), 3)

    def test_no_other_page_has_commands_to_run(self):
        for page in MANUAL.glob("*.md"):
            if page.name not in ("tutorial.md", "packager.md", "documents.md", "testing.md"):
                runs = [b for b in manual_pages.blocks(page.read_text("utf-8")) if "run" in b.words]
                self.assertEqual(runs, [], page.name)


@unittest.skipIf(WINDOWS, "the jobs of the page run on Linux")
class Jobs(ManualTest):
    """The jobs for continuous integration, with the template as the product and the shell as the service."""

    COMMAND = re.compile(r"^ *- (?:run: )?((?:packager|mkdir|\./|grep) ?.*)$|^ *run: (.*)$", re.M)
    VARIABLE = re.compile(r"^ *([A-Z_]+): (.*)$", re.M)

    def setUp(self):
        super().setUp()
        shutil.copytree(TOP / "samples" / "template", self.host("checkout"))
        self.host("checkout/tools").mkdir()
        for image in ("installer", "installer.exe"):  # the one for Windows isn't on each machine, so the other stands for it
            shutil.copy2(self.host("installer"), self.host("checkout/tools/" + image))

    def jobs(self):
        page = (MANUAL / "continuous-integration.md").read_text("utf-8")
        return [block for block in manual_pages.blocks(page) if block.language == "yaml"]

    def do(self, job):
        """What the commands of a job print."""
        commands = "\n".join(run or step for run, step in self.COMMAND.findall(job.text))
        environment = self.machine.environment(dict(self.VARIABLE.findall(job.text)))
        environment["PATH"] = f"{self.machine.root}:{environment['PATH']}"
        # Where the template would go on the machine of this test.
        commands = re.sub(r"-auto\b", f"-auto -VARIABLE_INSTALL_DIR={self.native('opt/product')} "
                          f"-VARIABLE_MENU_DIR={self.native('opt/menu')}", commands)
        done = subprocess.run(["bash", "-e", "-o", "pipefail", "-c", commands], capture_output=True, text=True, check=False,
                              timeout=TIMEOUT, env=environment, cwd=self.host("checkout"))
        self.assertEqual(done.returncode, 0, f"{commands}\n{done.stdout}\n{done.stderr}")
        return done.stdout

    def test_each_job_does_its_work(self):
        jobs = self.jobs()
        self.assertEqual(len(jobs), 4)
        self.do(jobs[0])
        self.assertIn('"version": "2.1.0"', self.read_text("checkout/findings.sarif"))
        for job in jobs[1:3]:
            shutil.rmtree(self.host("checkout/setups"), ignore_errors=True)
            self.assertEqual(self.do(job).count("all right"), 2)
            self.assertEqual(set(self.tree("checkout/setups")), {"product-setup", "product-setup.exe"})
        self.assertIn("Automatic installation was successful!", self.do(jobs[3]))
        self.assertIn("README.txt", self.tree("opt/product"))

    def test_a_mistake_fails_the_job(self):
        text = self.read_text("checkout/install.xml")
        self.write("checkout/install.xml", text.replace("<CopyProgress ", "<CopyProgres ", 1))
        for job in self.jobs()[:3]:
            with self.assertRaisesRegex(AssertionError, "page-no-copy|findings"):
                self.do(job)


class Examples(ManualTest):
    @staticmethod
    def xml_blocks():
        for page in sorted(MANUAL.glob("*.md")):
            for block in manual_pages.blocks(page.read_text("utf-8")):
                if block.language == "xml" and "finding" not in block.values:  # those have mistakes on purpose
                    yield f"{page.name}:{block.line}", block

    def test_every_example_is_well_formed(self):
        count = 0
        for where, block in self.xml_blocks():
            count += 1
            with self.subTest(where):
                ElementTree.fromstring("<Examples>" + re.sub(r"<\?.*?\?>", "", block.text) + "</Examples>")
        self.assertGreater(count, 20)

    def test_every_whole_description_can_be_packed_and_installs(self):
        count = 0
        for where, block in self.xml_blocks():
            text = block.text
            # Recipes are installed with files of their own by other tests.
            if "<ProductDesc>" not in text or "<Dialogs>" not in text or "recipe" in block.values:
                continue
            count += 1
            with self.subTest(where):
                names = [n.text for n in ElementTree.fromstring(text).iter("FN") if n.text]
                files = {n: "content\n" for n in names if n not in ("install.xml", "installer")}
                package = self.build_package(self.localized(text), files)
                result = self.run_program(package, "-auto", "-VARIABLE_AGREED=1")
                self.assertIn("The installation was successful.\n", result.out)
        self.assertGreaterEqual(count, 2)


class Links(unittest.TestCase):
    @staticmethod
    def anchors(page):
        """The anchors of the headings, as common viewers generate them."""
        headings = re.findall(r"^#+ (.*)$", page.read_text("utf-8"), re.M)
        return {re.sub(r"[^\w\- ]", "", h.lower()).replace(" ", "-") for h in headings}

    def test_every_link_leads_somewhere(self):
        count = 0
        for page in MANUAL.glob("*.md"):
            for target in re.findall(r"\]\(([^)]+)\)", page.read_text("utf-8")):
                count += 1
                with self.subTest(page=page.name, target=target):
                    name, _, anchor = target.partition("#")
                    linked = MANUAL / name if name else page
                    self.assertTrue(linked.is_file())
                    if anchor:
                        self.assertIn(anchor, self.anchors(linked))
        self.assertGreater(count, 20)

    def test_the_contents_name_every_page(self):
        contents = (MANUAL / "README.md").read_text("utf-8")
        for page in MANUAL.glob("*.md"):
            if page.name != "README.md":
                self.assertIn(f"]({page.name})", contents)


if __name__ == "__main__":
    main()
