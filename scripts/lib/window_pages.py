"""The sample product's pages in a window, from the first one of the installation to the last one of the uninstallation."""

import contextlib
import shutil
import subprocess

from window_walk import Catch, Missing, Walk, program_with, wait_for

PRODUCT = "Tandrel Installer Tools"
QUESTION = "Cancel confirmation"
VARIANT_TITLES = {"plain": "in the colours of the system", "themed": "with a theme"}
# Picture -> what it shows.
TITLES = {
    "welcome": "Welcome",
    "agreement": "Agreement",
    "notes": "Notes",
    "settings": "Settings",
    "parts": "Parts",
    "earlier": "Another version is there",
    "summary": "Summary",
    "cancel": "Cancelling",
    "runningapps": "A program must end first",
    "copyprogress": "Installing",
    "finish": "Finish",
    "badfinish": "After a failure",
    "farewell": "Uninstalling",
    "removed": "Uninstalled",
}
# The user has chosen the parts, so that there is a page of them.
CHOICES = ("-VARIABLE_TOOL_SETUP=1", "-debug=4")
CHOOSING = ("Welcome", "Agreement", "Notes", "Settings", "Parts")


def walk_all(screen, machine, setup, output):
    """An installation that fails, one that works, another one over it, and the uninstallation."""
    output.mkdir(parents=True)
    command = [*machine.install_command(setup), *CHOICES]
    for part in (fail, install, install_again):
        part(Walk(screen, command, machine, output), machine)
        forget(machine)
    command = [*machine.uninstall_command(), f"-uninstallApp={PRODUCT}", "-debug=4"]
    uninstall(Walk(screen, command, machine, output), machine)


def forget(machine):
    """The pages of the next run are told by its own log."""
    for log in machine.logs.glob("installer_debug_*.log"):
        log.unlink()


def fail(walk, machine):
    # A file of the product can't take the place of a directory.
    (machine.target / "README.md/in the way").mkdir(parents=True)
    walk.pass_by(*CHOOSING, "Summary")
    walk.leave("BadFinish")
    walk.await_end()
    shutil.rmtree(machine.target)


def install(walk, machine):
    for page in CHOOSING:
        walk.leave(page)
    refuse_to_cancel(walk, walk.take("Summary"))
    # The last step of the work is a program.
    program = Catch("hello.xml", machine.place)
    walk.screen.press("Return")
    try:
        program.hold()
        walk.take("CopyProgress")
    finally:
        program.release()
    walk.leave("Finish")
    walk.await_end()
    if not (machine.target / "uninstall").is_dir():
        raise Missing("the installed product")


def install_again(walk, machine):
    with running_program(machine):
        walk.pass_by(*CHOOSING)
        walk.leave("Earlier")
        walk.pass_by("Summary")
        walk.take("RunningApps")
        cancel(walk)


@contextlib.contextmanager
def running_program(machine):
    """One that is called as the packager is, and waits for an answer."""
    path, command = machine.program("samples/packager")
    shutil.copy2(machine.program("samples/hello-setup")[0], path)
    program = subprocess.Popen([*command, "-gui=0"], stdin=subprocess.PIPE, stdout=subprocess.PIPE)
    try:
        program.stdout.readline()
        yield
    finally:
        program.communicate()
        path.unlink()


def cancel(walk):
    walk.screen.press("Escape")
    wait_for("the question", lambda: walk.screen.window(QUESTION))
    wait_for("the end of the question", lambda: walk.screen.press("alt+y") or walk.screen.is_gone(QUESTION))
    walk.await_end()


def refuse_to_cancel(walk, before):
    walk.screen.press("Escape")
    walk.keep("cancel", QUESTION)
    # Wine loses a key now and then, and on the page below this one does nothing.
    wait_for("the end of the question",
             lambda: walk.screen.press("alt+n") or walk.screen.is_gone(QUESTION))
    # With the focus on its button: before that, keys get lost.
    wait_for("the page as it was before the question", lambda: walk.screen.pixels("Tandrel") == before)


def uninstall(walk, machine):
    walk.leave("Farewell")
    walk.await_page("Finish")
    walk.keep("removed")
    walk.screen.press("Return")
    walk.await_end()
    wait_for("the end of the uninstaller's copy", lambda: not program_with(b"ormeluninst", str(machine.place).encode()))
    if machine.target.exists():
        raise Missing("the removal of the installed product")
