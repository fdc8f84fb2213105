#!/usr/bin/python3
"""Usage: command_test.py COMMAND ODBC_DRIVER
Runs the command in Wine, as users of Windows do. What does not depend on the system is tested on Linux. The driver is
that of SQLite for Linux, to which Wine's driver manager hands on."""

import contextlib
import os
import sqlite3
import subprocess
import sys
import tempfile
from pathlib import Path

COMMAND, ODBC_DRIVER = sys.argv[1:]
EXAMPLES = Path(__file__).resolve().parents[2] / "examples"
TABLE = (EXAMPLES / "powertrain.csv").read_bytes()
DOCUMENT = (EXAMPLES / "powertrain.xml").read_bytes()
OLD = b"an older document"
NO_EXCEL = "xls2tki: The application MS Excel 2000 or higher is not installed on this system. Aborting data transformation.\n"
# Arguments, standard input, exit status, standard error, standard output, and what is in out.xml.
CASES = [
    ("in.csv out.xml", b"", 0, "", b"", DOCUMENT),
    ("-c - -", TABLE, 0, "", DOCUMENT, OLD),
    ("--utf8 --vsg Sch\u00e4den \u00e4\u4e2d\U0001f600.csv out.xml", b"", 0, "", b"", DOCUMENT),
    ("-v in.csv -", b"", 0, "ends with\nWriting to file completed.\n", DOCUMENT, OLD),
    ("missing\u00e4.csv out.xml", b"", 1, "xls2tki: Error opening inputfile:\n'missing\u00e4.csv'\n", b"", OLD),
    ("in.csv missing/out.xml", b"", 1, "xls2tki: Could not create a file in the folder \"missing\": No such file or directory\n",
     b"", OLD),
    ("in.csv in.csv", b"", 2, "xls2tki: The output \"in.csv\" is the input itself.\n", b"", OLD),
    ("-x in.csv out.xml", b"", 1, NO_EXCEL, b"", OLD),
    ("-o in.csv out.xml", b"", 1, "xls2tki: \"in.csv\": No Excel ODBC driver found\n", b"", OLD),
    ("--json in.csv in.csv", b"", 2, "xls2tki: The output \"in.csv\" is the input itself.\n",
     b'{"input":"in.csv","output":"in.csv","kind":"csv","layout":null,"hexadecimal":null,"sae_codes":null,"rows":null,'
     b'"columns":null,"item_columns":null,"items":null,"skipped_columns":null,"messages":[],'
     b'"failure":"The output \\"in.csv\\" is the input itself."}\n', OLD),
    ("--check --jobs 2 in.csv \u00e4\u4e2d\U0001f600.csv", b"", 0, "xls2tki: 2 files: 2 in order, 0 failed.\n",
     "in.csv: done\n\u00e4\u4e2d\U0001f600.csv: done\n".encode(), OLD),
    ('--output-dir . --variant=a"b\\\\ --diag-instance=\\"\\ missing.csv out.csv', b"", 1, "xls2tki: 2 files: 1 converted, 1 failed.\n",
     b"missing.csv: failed: Error opening inputfile: 'missing.csv'\nout.csv: done\n",
     DOCUMENT.replace(b"Emission_Related_Trouble_Codes", b"\\&quot;\\").replace(b"COMMON_DIAGNOSTICS", b"a&quot;b\\\\")),
    ("--output-dir o in.csv missing/IN.csv", b"", 2, "xls2tki: \"in.csv\" and \"missing/IN.csv\" would both become \"o\\IN.xml\"."
     " (xls2tki --help shows the options.)\n", b"", OLD),
    ("/csv", b"", 2, "xls2tki: INPUT and OUTPUT are needed. (xls2tki --help shows the options.)\n", b"", OLD),
]


# The same where the driver is installed and finds a table, and one where it finds none.
ODBC_CASES = [
    ("-o table.xlsx -", b"", 0, "", b"starts with\n" + DOCUMENT[:DOCUMENT.index(b"<RECORDTEMPLATE")], OLD),
    ("-o table.xlsx out.xml", b"", 1, "xls2tki: \"table.xlsx\": Database error: [SQLite]no such table: DTC (1)\n", b"", OLD),
]


def run(*command, **options):
    return subprocess.run(["wine", *command], capture_output=True, check=False, **options)


@contextlib.contextmanager
def odbc_driver(folder):
    """Installs the driver. It finds its tables under the data source's name ''."""
    key = r"HKLM\Software\ODBC\ODBCINST.INI\ODBC Drivers"
    (folder / "odbcinst.ini").write_text(f"[An Excel Driver]\nDriver={ODBC_DRIVER}\n")
    (folder / "odbc.ini").write_text(f"['']\nStepAPI=1\nDatabase={folder}/tables\n")
    os.environ.update(ODBCSYSINI=str(folder), ODBCINI=str(folder / "odbc.ini"))
    run("reg", "add", key, "/v", "An Excel Driver", "/d", "Installed", "/f")
    yield sqlite3.connect(folder / "tables", isolation_level=None)
    run("reg", "delete", key, "/f")


def check(case, folder):
    arguments, given, status, error, output, document = case
    for name in ("in.csv", "out.csv", "\u00e4\u4e2d\U0001f600.csv"):
        (folder / name).write_bytes(TABLE)
    (folder / "out.xml").write_bytes(OLD)
    before = sorted(folder.iterdir())
    done = run(COMMAND, *arguments.split(), input=given, cwd=folder)
    said, written = done.stderr.decode(), done.stdout
    if error.startswith("ends with\n") and said.endswith(error[10:]):
        said = error
    if output.startswith(b"starts with\n") and written.startswith(output[12:]):
        written = output
    found = (done.returncode, said, written, (folder / "out.xml").read_bytes())
    complaints = [f"{is_!r}, expected {should!r}" for is_, should in zip(found, (status, error, output, document)) if is_ != should]
    if sorted(folder.iterdir()) != before:
        complaints.append("files were left")
    return "".join(f"{arguments}: {complaint}\n" for complaint in complaints)


def main():
    with tempfile.TemporaryDirectory() as name:
        folder = Path(name)
        complaints = "".join(check(case, folder) for case in CASES)
        with odbc_driver(folder) as tables:
            tables.execute("CREATE TABLE DTC(DTC, Description)")
            complaints += check(ODBC_CASES[0], folder)
            tables.execute("DROP TABLE DTC")
            complaints += check(ODBC_CASES[1], folder)
    print(complaints, end="")
    return 1 if complaints else 0


sys.exit(main())
