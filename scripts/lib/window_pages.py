"""The sample product's pages in a window, from the first one of the installation to the last one of the uninstallation."""

from window_walk import Catch, Missing, Walk, program_with, wait_for

PRODUCT = "Tandrel Installer Tools"
VARIANT_TITLES = {"plain": "in the colours of the system", "themed": "with a theme"}
# Picture -> what it shows.
TITLES = {
    "welcome": "Welcome",
    "agreement": "Agreement",
    "notes": "Notes",
    "settings": "Settings",
    "parts": "Parts",
    "summary": "Summary",
    "cancel": "Cancelling",
    "copyprogress": "Installing",
    "finish": "Finish",
    "farewell": "Uninstalling",
    "removed": "Uninstalled",
}
# The user has chosen the parts, so that there is a page of them.
CHOICES = ("-VARIABLE_TOOL_SETUP=1", "-debug=4")


def walk_all(screen, machine, setup, output):
    output.mkdir(parents=True)
    install(Walk(screen, [*machine.install_command(setup), *CHOICES], machine, output), machine)
    for log in machine.logs.glob("installer_debug_*.log"):
        log.unlink()
    command = [*machine.uninstall_command(), f"-uninstallApp={PRODUCT}", "-debug=4"]
    uninstall(Walk(screen, command, machine, output), machine)


def install(walk, machine):
    for page in ("Welcome", "Agreement", "Notes", "Settings", "Parts"):
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


def refuse_to_cancel(walk, before):
    question = "Cancel confirmation"
    walk.screen.press("Escape")
    walk.keep("cancel", question)
    # Wine loses a key now and then, and on the page below this one does nothing.
    wait_for("the end of the question",
             lambda: walk.screen.press("alt+n") or walk.screen.is_gone(question))
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
