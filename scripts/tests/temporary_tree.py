"""A tree of files for the tests of the checks."""

import pathlib
import subprocess
import tempfile

SCRIPTS = pathlib.Path(__file__).resolve().parent.parent


def run_check(script, files):
    """Runs the script over a tree of files (path -> text) and returns its exit code and its lines of output."""
    with tempfile.TemporaryDirectory() as root:
        for name, text in files.items():
            path = pathlib.Path(root, name)
            path.parent.mkdir(parents=True, exist_ok=True)
            path.write_text(text, encoding="utf-8")
        done = subprocess.run([SCRIPTS / script, root], stdout=subprocess.PIPE, stderr=subprocess.STDOUT,
                              text=True, check=False)
        return done.returncode, done.stdout.splitlines()
