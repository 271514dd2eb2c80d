"""How runs end with -exitCodes=1: each code of the table, reached by a real program, and the same run without the option."""

import os
import re
import shutil
import signal
import subprocess
import unittest

from descriptions import description
from harness import EXE, HELPERS, TIMEOUT, TOP, WINDOWS, EndToEndTest, main

DONE, NOT_STARTED, ANOTHER_RUN, NOT_RECOVERED, NOTHING_TO_DO, RESTART, CANCELLED, REFUSED, PROGRAM_RUNS = range(9)
NO_RIGHTS, NO_SPACE, DAMAGED, BAD_ANSWERS, TAKEN_BACK, FAILED, BAD_COMMAND_LINE, NO_FRONT_END = range(9, 17)
NOBODY = 65534
USUAL, COULD_NOT = 0, 255  # without the option
ASK = "-exitCodes=1"
SETS = f"""
<FileSet Name="Uninstaller"><FN Dest="[DIR]/un" Executable="1">installer{EXE}</FN></FileSet>
<FileSet Name="Core"><FN Dest="[DIR]">data.txt</FN></FileSet>
<UninstallWildcards>
 <File Dest="[DIR]/un">install.log</File><File Dest="[DIR]/un">backup.bin</File>
</UninstallWildcards>
"""
BAD = '<FileSet Name="Bad"><FN Dest="[DIR]">blocked.txt</FN></FileSet>'
# No record can hold a path of this length, so the installation fails after everything else was done.
FAILING = ('<AdditionalInstall><Registry><AddValue Place="HKEY_LOCAL_MACHINE" Path="Software\\Ends\\' + "long" * 200
           + '" Value="v">x</AddValue></Registry></AdditionalInstall>')
FILES = {"data.txt": "data\n", "blocked.txt": "never written\n"}
FAREWELL = '<PreUninstall Special="AutoNext"/><CopyProgress Special="AutoNext"/>'
REVERT = '<RevertInstallation Special="AutoNext" Condition="[INSTALL_ERROR]==1"/>'
TABLE = TOP / "src" / "support" / "run_outcome.h"


class ExitCodes(EndToEndTest):
    def setUp(self):
        super().setUp()
        self.host("opt").mkdir()

    def build(self, sets="", output="setup" + EXE, product="Test Product", directory="opt/product", extra=(), **parts):
        parts.setdefault("farewell", FAREWELL)
        text = description(self.native(directory), SETS + sets, **parts).replace("Test Product", product)
        self.build_package(text, FILES, output, extra)
        shutil.rmtree(self.host("stage"))
        return output

    def helper(self):
        name = "helper" + EXE
        shutil.copy2(HELPERS / ("foreign_uninstaller" + EXE), self.host(name))
        return name

    def expect(self, code, usual, program, *arguments, again=lambda: None, **options):
        """The same run with the option and without it. `again` puts the machine back between the two."""
        asked = self.run_program(program, *arguments, ASK, **options)
        self.assertEqual(asked.code, code, asked)
        again()
        plain = self.run_program(program, *arguments, **options)
        self.assertEqual(plain.code, usual, plain)
        return asked

    def uninstaller(self, directory="opt/product"):
        return [f"{directory}/un/installer{EXE}", "-uninstall=" + self.native(directory + "/un/install.log"),
                "-uninstallApp=Test Product", "-gui=0"]

    def block(self):
        self.write("opt/product/blocked.txt/kept", "the user's own")  # no file can be written over a directory

    # --- one test for each code

    def test_0_done(self):
        self.expect(DONE, USUAL, self.build(), "-auto")
        self.assertTrue(self.host("opt/product/data.txt").exists())

    def test_0_an_uninstallation_is_waited_for(self):
        self.run_program(self.build(), "-auto")
        result = self.run_program(*self.uninstaller(), ASK)
        self.assertEqual(result.code, DONE, result)
        self.assertFalse(self.host("opt/product").exists(), sorted(self.tree("opt")))

    def test_1_not_started(self):
        self.write("copy.log", "no action log\n")
        self.expect(NOT_STARTED, COULD_NOT, "installer" + EXE, "-uninstallFile=" + self.native("copy.log"), "-gui=0",
                    again=lambda: self.write("copy.log", "no action log\n"))

    def test_2_another_run(self):
        helper = self.helper()
        arguments = f"mark {self.native('reached')} await {self.native('go')}"
        wait = f'<PreInstall><RunProgram Wait="1" Arguments="{arguments}">{self.native(helper)}</RunProgram></PreInstall>'
        hold = '<Hold><Trigger EvaluateOn="Start" Type="RunActions" Value="PreInstall"/></Hold>'
        setup = self.build(wait, pages=hold)
        held = self.start(setup, "-auto")
        self.wait_until(self.host("reached").exists)
        self.expect(ANOTHER_RUN, ANOTHER_RUN, setup, "-auto")
        self.write("go", "")
        held.wait(timeout=TIMEOUT)

    def start(self, setup, *arguments):
        command = self.machine.direct_command(self.host(setup)) + list(arguments)
        process = subprocess.Popen(command, stdin=subprocess.DEVNULL, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL,
                                   env=self.machine.environment({}), cwd=self.machine.root)
        self.addCleanup(self.end, process)
        return process

    def end(self, process):
        self.write("go", "")
        if process.poll() is None:
            process.kill()
        process.wait(timeout=TIMEOUT)

    def test_3_not_recovered(self):
        helper = self.helper()
        arguments = f"leave-if {self.native('go')} mark {self.native('reached')} await {self.native('go')}"
        wait = (f'<AdditionalInstall><RunProgram Wait="1" Arguments="{arguments}">{self.native(helper)}</RunProgram>'
                '</AdditionalInstall>')
        setup = self.build(wait)
        held = self.start(setup, "-auto")
        self.wait_until(self.host("reached").exists)
        held.send_signal(signal.SIGKILL)
        held.wait(timeout=TIMEOUT)
        self.write("go", "")
        self.expect(NOT_RECOVERED, NOT_RECOVERED, setup, "-gui=0", stdin="no\n")
        self.run_program(setup, "-auto")  # takes it back

    def test_4_nothing_to_do(self):
        self.run_program(self.build(), "-auto")
        self.host("opt/product/un/install.log").unlink()
        self.expect(NOTHING_TO_DO, COULD_NOT, *self.uninstaller())

    @unittest.skipUnless(WINDOWS, "a program of Linux can't end with such a code")
    def test_5_restart_wanted(self):
        wish = (f'<AdditionalInstall><RunProgram Wait="1" Arguments="exit 3010">{self.native(self.helper())}</RunProgram>'
                '</AdditionalInstall>')
        self.expect(RESTART, USUAL, self.build(wish), "-auto")

    def test_6_cancelled(self):
        ask = '<Ask><Field Type="EditBox" Label="Anything" x="1" y="1">NOTE</Field></Ask>'
        setup = self.build(pages=ask)
        self.expect(CANCELLED, USUAL, setup, "-gui=0")  # the input ends at the question
        self.assertFalse(self.host("opt/product").exists())

    def test_7_refused_by_a_page(self):
        setup = self.build(pages='<Refuse Special="Finish"><Text x="1" y="1">Not here.</Text></Refuse>')
        self.expect(REFUSED, USUAL, setup, "-auto")

    def test_7_an_uninstallation_can_be_refused_too(self):
        self.run_program(self.build(farewell='<Refuse Special="Finish"/>'), "-auto")
        result = self.run_program(*self.uninstaller(), ASK)
        self.assertEqual(result.code, REFUSED, result)
        self.assertTrue(self.host("opt/product/data.txt").exists())

    def test_8_a_running_program(self):
        ask = '<Ask><Field Type="EditBox" Label="Anything" x="1" y="1">NOTE</Field></Ask>'
        self.build(output="other" + EXE, product="Other", directory="opt/other", pages=ask)
        setup = self.build(pages=f"<RunningApps><TestApp>other{EXE}</TestApp></RunningApps>")
        self.open_terminal("other" + EXE, "-gui=0").expect("Anything:")
        self.expect(PROGRAM_RUNS, USUAL, setup, "-auto")

    def test_9_no_rights(self):
        setup = self.build()
        if WINDOWS:
            self.set_programs_directory("C:\\NoSuchDirectory")
            self.addCleanup(self.set_programs_directory, "C:\\Program Files")
            self.expect(NO_RIGHTS, COULD_NOT, setup, "-auto")
            return
        self.host(".").chmod(0o755)
        identity = {"user": NOBODY, "group": NOBODY} if os.geteuid() == 0 else {}
        for arguments, code in (((ASK,), NO_RIGHTS), ((), COULD_NOT)):
            done = subprocess.run([self.host(setup), "-auto", *arguments], capture_output=True, check=False, timeout=TIMEOUT,
                                  cwd="/", env=self.machine.environment({}), **identity)
            self.assertEqual(done.returncode, code, done)

    def set_programs_directory(self, path):
        command = [str(self.machine.prefix.scripts / "run-under-wine"), "reg", "add",
                   "HKLM\\Software\\Microsoft\\Windows\\CurrentVersion", "/v", "ProgramFilesDir", "/d", path, "/f"]
        subprocess.run(command, check=True, capture_output=True, timeout=TIMEOUT, env=self.machine.environment({}),
                       cwd=self.machine.prefix.directory)

    @unittest.skipIf(not shutil.which("mount") or os.geteuid() != 0, "no volume can be mounted here")
    def test_10_no_space(self):
        small = self.host("small")
        small.mkdir()
        command = ["mount", "-t", "tmpfs", "-o", "size=200k", "none", small]
        if subprocess.run(command, capture_output=True, check=False).returncode != 0:
            self.skipTest("no volume can be mounted here")
        self.addCleanup(subprocess.run, ["umount", small], check=False)
        setup = self.build(directory="small/product")
        result = self.expect(NO_SPACE, USUAL, setup, "-auto")
        self.assertIn("There is too little space", result.err)

    def test_11_a_damaged_package(self):
        setup = self.build()
        data = bytearray(self.read(setup))
        data[-100] ^= 1
        self.host(setup).write_bytes(data)
        self.expect(DAMAGED, USUAL, setup, "-auto")

    def test_11_no_package(self):
        self.expect(DAMAGED, USUAL, "installer" + EXE, "-auto")
        self.write("payload.bin", "no package")
        self.expect(DAMAGED, USUAL, "installer" + EXE, "-auto", "-bin=" + self.native("payload.bin"))

    def test_12_bad_answers(self):
        self.expect(BAD_ANSWERS, USUAL, self.build(), "-configFile=" + self.native("missing.xml"))
        self.assertFalse(self.host("opt/product").exists())

    def test_13_taken_back(self):
        setup = self.build(FAILING, late=REVERT)
        self.expect(TAKEN_BACK, USUAL, setup, "-auto")
        self.assertFalse(self.host("opt/product").exists())

    def test_14_what_cannot_be_taken_back_entirely_has_failed(self):
        self.block()
        self.expect(FAILED, USUAL, self.build(BAD, late=REVERT), "-auto")

    def test_14_failed(self):
        self.block()
        self.expect(FAILED, USUAL, self.build(BAD), "-auto")
        self.assertTrue(self.host("opt/product/data.txt").exists())

    def test_14_an_uninstallation_that_fails(self):
        self.run_program(self.build(), "-auto")
        self.host("opt/product/data.txt").unlink()
        self.write("opt/product/data.txt/kept", "the user's own")
        result = self.run_program(*self.uninstaller(), ASK)
        self.assertEqual(result.code, FAILED, result)

    def test_15_a_bad_command_line(self):
        result = self.run_program(self.build(), ASK, "-auto", "-gui=0", "alpha")
        self.assertEqual(result.code, BAD_COMMAND_LINE, result)
        self.assertEqual(self.run_program("setup" + EXE, "-gui=0", "alpha").code, COULD_NOT)

    @unittest.skipIf(WINDOWS, "there windows can always be shown")
    def test_16_no_front_end(self):
        self.expect(NO_FRONT_END, COULD_NOT, self.build(), env={"DISPLAY": "", "WAYLAND_DISPLAY": ""})

    # --- the table

    def test_each_code_of_the_table_has_a_test(self):
        codes = {int(code) for code in re.findall(r"^    k\w+ = (\d+),$", TABLE.read_text(), re.M)}
        tested = {int(name.split("_")[1]) for name in dir(self) if re.match(r"test_\d+_", name)}
        self.assertEqual(tested, codes)
        self.assertGreater(len(codes), 10)


if __name__ == "__main__":
    main()
