"""What the tests of the command share on every system."""

import contextlib
import os
import sys
import tempfile
from pathlib import Path

SOURCES = Path(__file__).resolve().parents[2]
EXAMPLES = SOURCES / "examples"
WORKBOOK = (EXAMPLES / "powertrain.xlsx").read_bytes()
DOCUMENT, J1939 = ((EXAMPLES / f"{name}.xml").read_bytes() for name in ("powertrain", "j1939"))
OLD = b'<?xml version="1.0"?>\n<TAMRISKIMPORT>an older document</TAMRISKIMPORT>\n'
NAMES = b"Powertrain\nJ1939\nBody\n"
HINT = " (xls2tki --help shows the options.)\n"

failures = 0


def check(name, expected, actual):
    global failures
    if expected != actual:
        failures += 1
        print(f"{name}:\n  expected {expected!r}\n  actual   {actual!r}")


@contextlib.contextmanager
def folder(table):
    """The working folder, a fresh one with the table in.csv, an older out.xml and the folder for temporary files."""
    with tempfile.TemporaryDirectory() as path:
        os.chdir(path)
        os.mkdir("tmp")
        Path("in.csv").write_bytes(table)
        Path("out.xml").write_bytes(OLD)
        yield dict(os.environ, TMPDIR=os.path.join(path, "tmp"))
        os.chdir("/")


def files():
    return sorted(os.path.join(parent, name) for parent, _, names in os.walk(".") for name in names)


def run_tests(names):
    """Runs the tests among these names, and ends the program."""
    for test in [test for name, test in list(names.items()) if name.startswith("test_")]:
        test()
    sys.exit(failures > 0)
