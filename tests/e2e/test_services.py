"""Services that a setup ends: which of them are started with "-stop" before, with all rights of the setup."""

import os
import shutil
import subprocess
import unittest

from descriptions import description
from harness import WINDOWS, EndToEndTest, main

NOBODY = 65534
# The name of no other process. It sleeps, and started with "-stop" it fails, which the debug log shows.
NAME = "tandrel-e2e-service"


@unittest.skipIf(WINDOWS or os.geteuid() != 0, "only root has services here")
class Services(EndToEndTest):
    def setUp(self):
        super().setUp()
        self.machine.root.chmod(0o755)
        self.program = self.host("opt/product/bin/" + NAME)
        self.program.parent.mkdir(parents=True)
        shutil.copy2(shutil.which("sleep"), self.program)
        self.program.chmod(0o755)

    def end_service(self, directory, user=None):
        """Runs a setup that ends the service; gives the lines of the debug log that speak of services."""
        service = subprocess.Popen([self.program, "60"], user=user)
        self.addCleanup(service.wait)
        self.addCleanup(service.kill)
        page = f'<RunningApps><TerminateApp Service="true" Directory="{directory}">{NAME}</TerminateApp></RunningApps>'
        setup = self.build_package(description(self.native("opt/new"), "", page), {})
        result = self.run_program(setup, "-auto", "-debug=1")
        self.assertEqual(result.code, 0, result)
        service.wait(timeout=60)
        log = (self.machine.temp / "installer_debug.log").read_text("utf-8")
        return [line.split("WARNING: ")[1] for line in log.splitlines() if "The service " in line]

    def assert_asked(self, lines):
        self.assertEqual(lines, [f'The service "{os.path.realpath(self.program)}" did not stop itself'])

    def assert_only_ended(self, lines):
        self.assertEqual(lines, [f'The service "{os.path.realpath(self.program)}" is not asked to stop, only ended'])

    def test_a_service_of_the_named_directory_is_asked(self):
        self.assert_asked(self.end_service(self.native("opt/product")))

    def test_a_service_beside_the_named_directory_is_only_ended(self):
        self.host("opt/prod").mkdir()
        self.assert_only_ended(self.end_service(self.native("opt/prod")))

    def test_a_service_that_only_has_the_text_in_its_path_is_only_ended(self):
        self.assert_only_ended(self.end_service("/opt/product"))

    def test_a_service_of_another_user_is_only_ended(self):
        self.assert_only_ended(self.end_service(self.native("opt/product"), user=NOBODY))

    def test_a_service_whose_program_others_can_change_is_only_ended(self):
        for path in (self.program, self.program.parent, self.program.parent.parent):
            mode = path.stat().st_mode
            path.chmod(0o777)
            self.assert_only_ended(self.end_service(self.native("opt/product")))
            path.chmod(mode & 0o7777)

    def test_a_service_whose_program_another_user_owns_is_only_ended(self):
        os.chown(self.program, NOBODY, NOBODY)
        self.assert_only_ended(self.end_service(self.native("opt/product")))


if __name__ == "__main__":
    main()
