#!/usr/bin/python3
"""Usage: command_test.py COMMAND ODBC_DRIVER
Runs the command as users do, above all on what it has to refuse. Each run has a fresh folder with the table
in.csv, an older out.xml and the folder for temporary files; afterwards nothing else may have changed there. The
ODBC driver is installed for the test alone."""

import contextlib
import io
import json
import os
import pty
import resource
import signal
import stat
import struct
import subprocess
import sys
import tempfile
import time
import zipfile
from pathlib import Path

from checks import DOCUMENT, EXAMPLES, HINT, J1939, NAMES, OLD, SOURCES, WORKBOOK, check, files, folder, run_tests
from command import BEFORE, COMMAND, HEAD, HELP, IO, NO_FILE, ROW, TABLE, run

ODBC_DRIVER = os.path.abspath(sys.argv[2])
INSTALL_DRIVER = SOURCES / "scripts" / "install-odbc-driver"
ONE_COLUMN = ("xls2tki: The Header (first row in excel sheet) does not define enough columns. It should define at "
              "least two columns containing DTC and Description. (Data-Area in Excel is assumed as 'Z1S1:%s')\n")
MARK = 'xls2tki: "in.csv" begins with the byte order mark of %s\n'
UTF16 = TABLE.decode().encode("utf-16")
EVERY_BYTE = b'P0123;"' + bytes(set(range(256)) - {ord('"')}) + b'";red\n'
NO_WORKBOOK = "xls2tki: '%s' is not a workbook.\n"
NOT_OPENED = "xls2tki: '%s' cannot be opened.\n"
NO_EXCEL = ("xls2tki: The application MS Excel 2000 or higher is not installed on this system. Aborting data "
            'transformation.\nxls2tki: Hint: XLS2TKI_REGISTRY names the registry file "%s", which cannot be read or has no '
            "entry for Excel.\n")
NO_LIST = "xls2tki: On using Excel 2003, it is not possible to detect contained Worksheets!\n"
NOT_NAMED = "xls2tki: Note: --worksheet has no effect with Excel 2003, which reads the first worksheet.\n"
NO_DRIVER = ('xls2tki: "in.csv": No Excel ODBC driver found\n'
             "xls2tki: Hint: --excel needs no such driver. On Linux, the package odbc-xls2tki has one.\n")
READ = 'xls2tki: Note: "in.csv" is read %s.\n'
NO_SUCH_FILE = HELP % 'There is no file "%s".'
NO_CODE = ('in.csv: A%s: error: "%s" is not an SAE code; the conversion fails. An SAE code is P, C, B or U and 2, 4, 6 or 8 '
           "hexadecimal digits, the first of them 0 to 3. [number-unreadable]\n1 error\n")
IS_TEXT = HELP % '"in.csv" is text with separators. Give --csv.'
DATABASE_ERROR = "xls2tki: Database error: [xls2tki][Excel Driver]"


def change_part(workbook, end, change):
    """The workbook with another content of the part whose name has this end."""
    changed = io.BytesIO()
    with zipfile.ZipFile(io.BytesIO(workbook)) as whole, zipfile.ZipFile(changed, "w") as parts:
        for name in whole.namelist():
            part = whole.read(name)
            parts.writestr(name, change(part) if name.endswith(end) else part)
    return changed.getvalue()


def cut_worksheet(workbook):
    return change_part(workbook, "sheet1.xml", lambda part: part[:1000])


def name_worksheets(*names):
    """A workbook of worksheets with these names, as XML, which are one and the same worksheet."""
    named = io.BytesIO()
    sheets = "".join(f'<sheet name="{name}" sheetId="{number}" r:id="rId1"/>' for number, name in enumerate(names, 1))
    with zipfile.ZipFile(io.BytesIO(WORKBOOK)) as whole, zipfile.ZipFile(named, "w") as parts:
        for name in set(whole.namelist()) - {"xl/workbook.xml"}:
            parts.writestr(name, whole.read(name))
        parts.writestr("xl/workbook.xml", '<workbook xmlns="http://schemas.openxmlformats.org/spreadsheetml/2006/main" '
                       'xmlns:r="http://schemas.openxmlformats.org/officeDocument/2006/relationships">'
                       f"<sheets>{sheets}</sheets></workbook>")
    return named.getvalue()


def encrypt():
    """What a workbook with a password looks like from outside."""
    name = "EncryptedPackage".encode("utf-16-le")
    header = b"\xd0\xcf\x11\xe0\xa1\xb1\x1a\xe1".ljust(30, b"\0") + b"\x09".ljust(46, b"\0")
    root = b"\1".rjust(77, b"\0").ljust(128, b"\0")
    return header.ljust(512, b"\xff") + root + name.ljust(64, b"\0") + b"\x22\0\2".ljust(320, b"\0")


CONTROLS = name_worksheets("a_x0000_b&#10;c_x001B_[1m&#x7F;", "&#x9F;&#x2028;&#x202E;&#x2066;&#x2069;&#x61C;&#x200B;&#xFEFF;&#xE0041;|&#xA0;&#x202F;")
BROKEN = change_part(name_worksheets("Gone", "Whole"), "workbook.xml", lambda part: part.replace(b"rId1", b"none", 1))
CONTROLS_SHOWN = "a?b?c?[1m?", "?????????|\u00a0\u202f"
# Name, table, arguments, exit status, standard error, and what the document has; None: the older one is still there.
CASES = [
    ("empty table", b"", IO, 1, "xls2tki: Empty data given ?!\n" + HELP % '"in.csv" is empty.', None),
    ("another separator", TABLE, "-s tab " + IO, 1, ONE_COLUMN % "Z2S1" + HELP %
     "The header has semicolons between its cells. Give --separator semicolon, or leave --separator out.", None),
    ("row of another length", HEAD + b"P0123;Stuck\n", IO, 1,
     "xls2tki: Row [1] defines 2 columns. Header defines 3\nValues:\nP0123\nStuck\n" + HELP % ROW % (2, "in.csv", 2), None),
    ("unfinished quoted cell", HEAD + b'P0123;"Stuck;red\n', IO, 0, 'in.csv: B2 (line 2): error: The double quote at the '
     'beginning of this cell is never closed: "Stuck;red<U+000A>". This row and all rows after it, 1 line, are left out. Close the quote, or remove it. '
     "[row-lost]\n1 error in 0 rows\n", b"<DTCS/>"),
    ("SAE code of another length", b"DTC,\"a\nb\"\r\n\"P0123\",x\r\nP01x ,y\r\n", IO, 1, READ % "with commas between the cells"
     + NO_CODE % ("3 (line 4)", "P01x ") + "xls2tki: Given SAE DTC number P01x has invalid length, expected 3, 5, 7 or 9 characters\n"
     + HELP % 'The code is in cell A3 of "in.csv", in line 4.', None),
    ("a line of 100 MB", b"x" * 100_000_000, IO, 1, ONE_COLUMN % "Z1S1", None),
    ("a document that is too large", HEAD + b"P0123;" + b"&" * 144_000_000 + b";red\n", IO, 1,
     "xls2tki: The import document is too large, at most 715827882 characters can be written. "
     "Row [1] does not fit.\n", None),
    ("every byte", HEAD + EVERY_BYTE, "--no-findings " + IO, 0, "", "\x7f\x80".encode()),
    ("bytes that are not UTF-8", HEAD + EVERY_BYTE, "--no-findings -u " + IO, 0, "", "\x7f\ufffd\ufffd".encode()),
    ("UTF-16", UTF16, "-u " + IO, 0, "", b"<ERRORTEXT>Stuck<"),
    ("no names", TABLE, "--variant= --diag-instance= " + IO, 0, "", b"<SERVICEMAPPING/>"),
    ("UTF-16 as 8-bit", UTF16, "--encoding 8-bit " + IO, 1, MARK % "UTF-16. Leave out --encoding 8-bit.", None),
    ("big-endian UTF-16", b"\xfe\xff\0D", "-u " + IO, 1, MARK % "big-endian UTF-16. Save it as UTF-8.", None),
    ("UTF-8 as 8-bit", b"\xef\xbb\xbf" + TABLE, "--encoding 8-bit " + IO, 1, MARK % "UTF-8. Leave out --encoding 8-bit.",
     None),
    ("a file that cannot be read", TABLE, "-c /proc/self/mem out.xml", 1,
     'xls2tki: Could not read "/proc/self/mem": the system reported an error\n', None),
    ("missing input", TABLE, "none.csv out.xml", 1, NO_FILE % "none.csv" + NO_SUCH_FILE % "none.csv", None),
    ("endless device as input", TABLE, "-c /dev/zero out.xml", 1, NO_FILE % "/dev/zero" + HELP % '"/dev/zero" is a device or a pipe, not a file.',
     None),
    ("file of another length than it says", TABLE, "-c /proc/self/status out.xml", 1,
     'xls2tki: Note: "/proc/self/status" is read with tabs between the cells.\n'
     "xls2tki: Error reading inputfile:\n'/proc/self/status'\n", None),
    ("missing output folder", TABLE, "in.csv none/out.xml", 1,
     'xls2tki: Could not create a file in the folder "none": No such file or directory\n', None),
    ("folder as output", TABLE, "in.csv tmp", 1, 'xls2tki: Could not write "tmp": Is a directory\n', None),
    ("full device", TABLE, "in.csv /dev/full", 1,
     'xls2tki: Could not write "/dev/full": No space left on device\n', None),
    ("output is the input", TABLE, "in.csv ./in.csv", 2,
     'xls2tki: The output "./in.csv" is also the input.\n', None),
    ("no output", TABLE, "in.csv", 2, "xls2tki: INPUT and OUTPUT are required." + HINT, None),
    ("three files", TABLE, "in.csv out.xml b", 2, "xls2tki: More than two files require --output-dir or --check." + HINT,
     None),
    ("strict without findings", TABLE, "--strict --no-findings " + IO, 2,
     "xls2tki: --strict and --no-findings cannot be used together." + HINT, None),
    ("check without a table", TABLE, "--check", 2, "xls2tki: INPUT is required." + HINT, None),
    ("check of an output", TABLE, "--check in.csv out.xml", 2, 'xls2tki: The kind of "out.xml" is not known from its '
     "extension; use --csv, --excel or --odbc." + HINT, None),
    ("one document of two tables", TABLE, "--output-dir tmp in.csv tmp/in.xlsx", 2,
     'xls2tki: "in.csv" and "tmp/in.xlsx" would both become "tmp/in.xml".' + HINT, None),
    ("one table twice", TABLE, "--output-dir tmp in.csv ./in.csv", 2, 'xls2tki: "./in.csv" is given twice.' + HINT, None),
    ("no folder", TABLE, "--output-dir= in.csv", 2, "xls2tki: --output-dir requires a folder." + HINT, None),
    ("no jobs", TABLE, "--check --jobs 0 in.csv", 2, "xls2tki: --jobs takes a number from 1 to 64." + HINT, None),
    ("jobs in hex", TABLE, "--check --jobs 0x4 in.csv", 2, "xls2tki: --jobs takes a number from 1 to 64." + HINT, None),
    ("steps of several", TABLE, "--check -v in.csv in.csv", 2,
     "xls2tki: --verbose works with one file only; for several, use --json." + HINT, None),
    ("standard input among several", TABLE, "--check -c in.csv -", 2,
     "xls2tki: Standard input cannot be one of several files." + HINT, None),
    ("two things on standard output", TABLE, "--json in.csv -", 2,
     "xls2tki: The document and the JSON output cannot both go to standard output." + HINT, None),
    ("worksheets as JSON", TABLE, "--json --list-worksheets in.csv", 2,
     "xls2tki: --list-worksheets cannot be used with --check, --json or --sarif." + HINT, None),
    ("unknown option", TABLE, "--cvs " + IO, 2,
     "xls2tki: There is no option --cvs; did you mean --csv?" + HINT, None),
    ("cut option", TABLE, "--work=x " + IO, 2, "xls2tki: There is no option --work; did you mean --worksheet?" + HINT, None),
    ("no option at all", TABLE, "--xyzzy\n\x9b " + IO, 2, "xls2tki: There is no option --xyzzy??." + HINT, None),
    ("unknown kind", TABLE, "in.dat out.xml", 2, 'xls2tki: The kind of "in.dat" is not known from its extension; '
     "use --csv, --excel or --odbc." + HINT, None),
    ("two kinds", TABLE, "-c -x " + IO, 2, "xls2tki: --csv, --excel and --odbc cannot be used together." + HINT, None),
    ("long separator", TABLE, "-s ;; " + IO, 2,
     "xls2tki: --separator takes one character up to U+FFFF, or tab, comma, semicolon or pipe." + HINT, None),
    ("argument not UTF-8", TABLE, b"--variant \xed\xb2\x80 in.csv out.xml", 2,
     "xls2tki: The value of --variant is not UTF-8." + HINT, None),
    ("workbook", WORKBOOK, "-x " + IO, 0, "", DOCUMENT),
    ("missing worksheet", WORKBOOK, "-x -w j1939 " + IO, 1,
     'xls2tki: "in.csv" has no worksheet "j1939". Its worksheets are:\n  Powertrain\n  J1939\n  Body\n', None),
    ("control characters", CONTROLS, "-x -w \x1b\n " + IO, 1, 'xls2tki: "in.csv" has no worksheet "??". Its worksheets are:\n'
     "  %s\n  %s\n" % CONTROLS_SHOWN, None),
    ("many worksheets", name_worksheets("\U0001f600" * 15, *["x" + "\U0001f600" * 15] * 22),
     "-x -w x " + IO, 1, 'xls2tki: "in.csv" has no worksheet "x". Its worksheets are:\n  ' + "\U0001f600" * 15 + "\n"
     + ("  x" + "\U0001f600" * 15 + "\n") * 19 + "  ... and 3 more\n", None),
    ("no worksheets", name_worksheets(), "-x " + IO, 1,
     "xls2tki: Excel file does not contain a data sheet!\n", None),
    ("a worksheet without its part", BROKEN, "-x -w Gone " + IO, 1,
     "xls2tki: 'in.csv' is damaged: part 'xl/workbook.xml': worksheet 'Gone' refers to no part.\n", None),
    ("a worksheet beside it", BROKEN, "-x -w Whole " + IO, 0, "", b'number="135"'),
    ("damaged worksheet", cut_worksheet(WORKBOOK), "-x " + IO, 1,
     "xls2tki: 'in.csv' is damaged: part 'xl/worksheets/sheet1.xml', line 1: unclosed token.\n", None),
    ("missing workbook", TABLE, "IN.XLSX out.xml", 1, NOT_OPENED % "IN.XLSX" + NO_SUCH_FILE % "IN.XLSX", None),
    ("folder as workbook", TABLE, "-x tmp out.xml", 1, NOT_OPENED % "tmp" + HELP % '"tmp" is a folder.', None),
    ("worksheets of no workbook", TABLE, "--list-worksheets in.csv", 1, NO_WORKBOOK % "in.csv" + IS_TEXT, None),
    ("table of another range", change_part(WORKBOOK, "workbook.xml", lambda part: part.replace(
        b"Powertrain!$A$1:$F$13", b"J1939!$A:$E")), "-o " + IO, 0, "", J1939),
    ("worksheet as a table", name_worksheets("dtc"), "-o " + IO, 0, "", DOCUMENT),
    ("no table of a workbook", name_worksheets("A", "Ä"), "-o " + IO, 1, 'xls2tki: "in.csv": Database error: '
     '[xls2tki][Excel Driver]The workbook has no table "DTC"; it has: A$, Ä$.\n', None),
    ("no workbook with tables", TABLE, "-o " + IO, 1, DATABASE_ERROR + "'in.csv' is not a workbook.\n" + IS_TEXT, None),
    ("encrypted workbook", encrypt(), "-o " + IO, 1,
     DATABASE_ERROR + "'in.csv' is encrypted: a password is needed to open it.\n", None),
    ("column types", b"DTC;Text;[a,b];{}\nP0123;x;1;2\n", "--vsg {} --type-a [a,b] --type-a c " + IO, 0,
     'in.csv: warning: No item column has the header "c", so none gets the type A from it. [item-header]\n1 warning in 1 row\n',
     b'"_1" type="A" >[a,b]</ITEMMAPPING>\r\n<ITEMMAPPING id="_2" type="VSG" >{}<'),
    ("service mapping", TABLE, "--variant \U0001f600 --diag-instance \u00fc " + IO, 0, "",
     'diaginstance="\u00fc" variant="\U0001f600"'.encode()),
]


def check_document(name, part, document):
    check(name + ": document", (True, True), (part in document, document.endswith(b"</TAMRISKIMPORT>\r\n")))


def test_tables():
    for name, table, arguments, status, message, part in CASES:
        with folder(table) as environment:
            result = run(arguments, environment)
            check(name, (status, message, b""), (result.returncode, result.stderr.decode(), result.stdout))
            check(name + ": files", (BEFORE, True), (files(), Path("in.csv").read_bytes() == table))
            if part is None:
                check(name + ": output", OLD, Path("out.xml").read_bytes())
            else:
                check_document(name, part, Path("out.xml").read_bytes())


def test_installed_excels():
    for excel, listing, note, sheet in [("10", (0, NAMES, ""), "", "j1939"),
                                        ("11", (1, b"", NO_LIST), NOT_NAMED, "powertrain"),
                                        *[(version, (0, NAMES, ""), "", "j1939") for version in ("12", "14", "15")],
                                        ("", (1, b"", NO_EXCEL % "registry"), NO_EXCEL % "registry", None)]:
        with folder(WORKBOOK) as environment:
            key = "REGEDIT4\n[HKEY_LOCAL_MACHINE\\SOFTWARE\\Classes\\Excel.Application\\CurVer]\n"
            Path("registry").write_text(key + f'@="Excel.Application.{excel}"' if excel else "")
            environment["XLS2TKI_REGISTRY"] = "registry"
            result = run("--list-worksheets in.csv", environment)
            check("list with " + excel, listing, (result.returncode, result.stdout, result.stderr.decode()))
            result = run("-x -w J1939 " + IO, environment)
            check("convert with " + excel, (note, 0 if sheet else 1), (result.stderr.decode(), result.returncode))
            check("document with " + excel, (EXAMPLES / (sheet + ".xml")).read_bytes() if sheet else OLD,
                  Path("out.xml").read_bytes())
            reason = b"registry' is not a workbook." if excel else b"is not installed"
            check("reason with " + excel, True, reason in run("-x registry out.xml", environment).stderr)


def test_unreadable_registries():
    with folder(WORKBOOK) as environment:
        os.mkfifo("pipe")
        for registry in "pipe", "tmp", "missing", "in.csv":
            environment["XLS2TKI_REGISTRY"] = registry
            check(registry, NO_EXCEL % registry, run("-x " + IO, environment).stderr.decode())


def test_control_characters():
    with folder(CONTROLS) as environment:
        check("list", "%s\n%s\n" % CONTROLS_SHOWN, run("--list-worksheets in.csv", environment).stdout.decode())
        steps = run("-v -x -w \x9f\u2028\u202e\u2066\u2069\u061c\u200b\ufeff\U000e0041|\xa0\u202f " + IO, environment).stderr.decode()
        check("verbose", True, "\nUsing sheet: '%s'\n" % CONTROLS_SHOWN[1] in steps)


def test_many_files():
    for jobs in "1", "3":
        with folder(TABLE) as environment:
            Path("a b.csv").write_bytes(TABLE)
            Path("b.txt").write_bytes(HEAD + b"P\n")
            Path("-c\n.csv").write_bytes(TABLE)
            command = [COMMAND, "--jobs", jobs, *"-w x --output-dir out -- none.xls".split(), "a b.csv", "b.txt", "-c\n.csv"]
            note = "Note: --worksheet is for --excel only and has no effect here."
            lines = ["none.xls: failed: 'none.xls' cannot be opened. Hint: There is no file \"none.xls\".", f"a b.csv: done: {note}",
                     f"b.txt: failed: {note} Row [1] defines 1 columns. Header defines 3 Values: P Hint: " + ROW % (2, "b.txt", 2), f"-c?.csv: done: {note}"]
            result = subprocess.run(command, env=environment, capture_output=True, text=True,  # as under some daemons:
                                    preexec_fn=lambda: signal.signal(signal.SIGCHLD, signal.SIG_IGN))
            check("many", (1, lines, "xls2tki: 4 files: 2 converted, 2 failed.\n"),
                  (result.returncode, result.stdout.splitlines(), result.stderr))
            check("many: files", ["-c\n.xml", "a b.xml"], sorted(os.listdir("out")))
            result = run(f"--jobs {jobs} --json --check b.txt in.csv", environment)
            check("many: reports", [("b.txt", None), ("in.csv", 1)],
                  [(report["input"], report["rows"]) for report in map(json.loads, result.stdout.splitlines())])
            check("many: summary", (1, b"xls2tki: 2 files: 1 passed, 1 failed.\n"), (result.returncode, result.stderr))


def wait_until(condition):
    deadline = time.monotonic() + 60
    while not condition() and time.monotonic() < deadline:
        time.sleep(0.01)


def children_of(process):
    return [int(number) for number in Path(f"/proc/{process.pid}/task/{process.pid}/children").read_text().split()]


def is_running(process):
    with contextlib.suppress(OSError):
        return Path(f"/proc/{process}/stat").read_text().rsplit(")", 1)[1].split()[0] != "Z"
    return False


def test_ending_many_files():
    with folder(TABLE) as environment:
        for pipe in "a.csv", "b.csv":
            os.mkfifo(pipe)
        arguments = "-c --jobs 2 --output-dir . a.csv b.csv in.csv"
        streams = dict(env=environment, stdout=subprocess.PIPE, stderr=subprocess.PIPE, text=True)
        for number in signal.SIGTERM, signal.SIGUSR1, signal.SIGKILL:
            command = subprocess.Popen([COMMAND, *arguments.split()], **streams)
            wait_until(lambda: len(files()) == 8)
            children = children_of(command)
            check("processes and their files", (2, 8), (len(children), len(files())))
            if number == signal.SIGUSR1:
                os.kill(children[1], signal.SIGSTOP)
            command.send_signal(number)
            check("end of all", (("", ""), -number), (command.communicate(timeout=60), command.returncode))
            if number == signal.SIGKILL:
                wait_until(lambda: not any(map(is_running, children)))
            check("end of processes", [], list(filter(is_running, children)))
            check("end: files", ["./a.csv", "./b.csv"] + BEFORE, files())
        command = subprocess.Popen([COMMAND, *arguments.split(), "--sarif", "log"], **streams)
        wait_until(lambda: len(children_of(command)) == 2)
        for child, number in zip(children_of(command), (signal.SIGKILL, signal.SIGTERM)):
            os.kill(child, number)
        lines, summary = command.communicate(timeout=60)
        ended = "failed: The process ended unexpectedly, with status"
        check("end of processes alone", ([f"a.csv: {ended} 137", f"b.csv: {ended} 143", "in.csv: done"],
                                         "xls2tki: 3 files: 1 converted, 2 failed.\n"), (lines.splitlines(), summary))
        check("log of processes that ended", 3, len(json.loads(Path("log").read_text())["runs"][0]["invocations"]))


def test_order_of_many_files():
    with folder(TABLE) as environment:
        os.mkfifo("pipe")
        command = subprocess.Popen([COMMAND, "-c", "--jobs", "2", "--output-dir", ".", "pipe", "in.csv"], env=environment,
                                   stdout=subprocess.PIPE, stderr=subprocess.DEVNULL)
        wait_until(lambda: os.path.exists("in.xml"))
        Path("pipe").write_bytes(TABLE)
        check("order", b"pipe: done\nin.csv: done\n", command.communicate(timeout=60)[0])


def test_progress_of_many_files():
    with folder(TABLE) as environment:
        try:
            terminal, end = pty.openpty()
        except OSError as error:
            return print("not tested: progress on a terminal,", error)  # such as in a bare chroot
        result = subprocess.run([COMMAND, "--check", "in.csv", "in.csv"], env=environment, stdout=subprocess.PIPE, stderr=end)
        os.close(end)
        shown = b""
        with contextlib.suppress(OSError), open(terminal, "rb", buffering=0) as all_that:  # its end is an error
            while piece := all_that.read(10000):
                shown += piece
        check("progress", (b"in.csv: done: 1 DTC, SAE codes, 0x0123 to 0x0123, 1 item: Lamp.\n" * 2, True, True),
              (result.stdout, shown.startswith(b"0 of 2 files \r"), b"\r1 of 2 files \r" in shown))


def test_streams_and_pipes():
    with folder(TABLE) as environment:
        result = run("-u - -", dict(environment, TMPDIR=""), input=TABLE)
        check("streams", (0, b"", BEFORE), (result.returncode, result.stderr, files()))
        check_document("streams", b"Stuck", result.stdout)
        with open("/dev/full", "wb") as full:
            result = subprocess.run([COMMAND, "in.csv", "-"], stdout=full, stderr=subprocess.PIPE, env=environment)
        check("full standard output", (1, b"xls2tki: Could not write standard output: No space left on device\n"),
              (result.returncode, result.stderr))
        os.mkfifo("in")
        os.mkfifo("out")
        with subprocess.Popen([COMMAND, "-c", "in", "out"], env=environment):
            with open("out", "rb") as out:
                Path("in").write_bytes(TABLE)
                check_document("pipes", b"Stuck", out.read())
        check("pipes", ["./in", "./in.csv", "./out", "./out.xml"], files())


def test_no_room():
    def limit_file_size():
        resource.setrlimit(resource.RLIMIT_FSIZE, (500, 500))

    with folder(TABLE) as environment:  # nor for as many processes as are wanted
        result = run("--check --jobs 16" + " in.csv" * 40, environment,
                     preexec_fn=lambda: resource.setrlimit(resource.RLIMIT_NOFILE, (12, 12)))
        check("open files", b"xls2tki: 40 files: 40 passed, 0 failed.\n", result.stderr)
    for arguments, name in [("in.csv out.xml", '"out.xml"'), ("in.csv -", '"%s"')]:
        with folder(TABLE) as environment:
            result = run(arguments, environment, preexec_fn=limit_file_size)
            message = f"xls2tki: Could not write {name}: File too large\n".replace("%s", environment["TMPDIR"])
            check(arguments, (1, message, b""), (result.returncode, result.stderr.decode(), result.stdout))
            check(arguments, (BEFORE, OLD), (files(), Path("out.xml").read_bytes()))


# What an output begins with, and whether it is replaced.
OUTPUTS = [(b"", True), (b"<TAMRISKIMPORT>", False), (b"\xef\xbb\xbf<?xml version='1.0'?>\n\r\n <TAMRISKIMPORT\nx", True),
           (b"<?xml?><!-- a --> <!-- b -->\n<TAMRISKIMPORT>", True),
           (b"<TAMRISKIMPORTS>", False), (b"<?xml version='1.0'?><dtcs>", False), (b"<?xml", False), (TABLE, False)]


def test_outputs_that_are_kept():
    with folder(TABLE) as environment:
        Path("b.csv").write_bytes(TABLE)
        for content, is_replaced in OUTPUTS:
            for arguments in "in.csv in.xml", "--output-dir . b.csv in.csv":
                Path("in.xml").write_bytes(content)
                result = run(arguments, environment)
                changed, refused = Path("in.xml").read_bytes() != content, b'in.xml" exists and is not' in result.stderr
                check(f"{content} {arguments}", (0, True, False) if is_replaced else (2, False, True),
                      (result.returncode, changed, refused))
                check(f"{content}: nothing converted", is_replaced and "b.csv" in arguments, os.path.exists("b.xml"))
                result = run("--force " + arguments, environment)
                check("with --force", (0, True), (result.returncode, b"Stuck" in Path("in.xml").read_bytes()))
                Path("b.xml").unlink(missing_ok=True)


def test_replacing():
    with folder(TABLE) as environment:
        os.chmod("out.xml", 0o640)
        os.symlink("out.xml", "link")
        os.symlink("new.xml", "dangling")
        for output in "link", "dangling":
            check(output, 0, run("in.csv " + output, environment).returncode)
            check(output, True, os.path.islink(output))
        os.mkdir("dir")
        for name, target in ("a.xml", "../c.xml"), ("b.xml", "../c.xml"):
            os.symlink(target, "dir/" + name)
        refused = run("--output-dir dir a.csv b.csv", environment).stderr
        check("links to one missing file", True, b'"a.csv" and "b.csv" would both become "dir/b.xml".' in refused)
        os.symlink("in.csv", "table.xml")
        refused = run("--output-dir . table.csv in.csv", environment).stderr
        check("behind a link to a table", True, b'"table.csv" would overwrite "in.csv".' in refused)
        check_document("behind a link", b"Stuck", Path("out.xml").read_bytes())
        check("permissions", 0o640, stat.S_IMODE(os.stat("out.xml").st_mode))
        check("behind a dangling link", Path("out.xml").read_bytes(), Path("new.xml").read_bytes())


def replace_by_link(name):
    os.remove(name)
    os.symlink("in.csv", name)


# What another does with the temporary file of the document during the run, and why that is refused.
CHANGES = [(replace_by_link, "its temporary file was replaced"), (os.remove, "No such file or directory"),
           (lambda _: os.link("in.csv", "new.xml"), "it was created during the conversion; use --force to replace it.")]


def test_changes_during_the_run():
    for change, reason in CHANGES:
        with folder(TABLE) as environment:
            command = subprocess.Popen([COMMAND, "-", "new.xml"], env=environment, stdin=subprocess.PIPE, stderr=subprocess.PIPE)
            wait_until(lambda: len(files()) == 4)
            change(*Path(".").glob(".new.xml.*"))
            said = command.communicate(TABLE, timeout=60)[1].decode()
            check(reason, f'xls2tki: Could not write "new.xml": {reason}\n', said)
            Path("new.xml").unlink("appeared" not in reason)
            check(reason, (BEFORE, TABLE), (files(), Path("in.csv").read_bytes()))


ACCESS_LIST = "system.posix_acl_access"
OWNER, GROUP, NAMED_GROUP, MASK, OTHERS = 1, 4, 8, 16, 32
# Permissions of the document, and the access list of the older one, of another group: who, what, and their number.
ACCESS_LISTS = [(0o644, (OWNER, 6, 0), (GROUP, 7, 0), (MASK, 4, 0), (OTHERS, 6, 0)),
                (0o600, (OWNER, 6, 0), (GROUP, 6, 0), (NAMED_GROUP, 0, 65534), (MASK, 6, 0), (OTHERS, 6, 0))]


def test_other_users():
    """Nobody may do more with a document than before, and links of others are not followed where all may put links."""
    if os.geteuid() != 0:
        return print("not tested: other users, who need root")
    other = dict(user=65534, group=65534, extra_groups=[])
    with folder(TABLE) as environment:
        os.chmod(".", 0o1777)
        os.symlink("new.xml", "link")
        os.lchown("link", 1, 1)
        refused = run("in.csv link", environment).stderr
        check("link of another", b'xls2tki: Could not write "link": Permission denied\n', refused)
        try:
            for group, before, after in (65534, 0o6754, 0o754), (0, 0o664, 0o644), (0, 0o606, 0o600):
                os.chown("out.xml", 65534, group)
                os.chmod("out.xml", before)
                run(IO, environment, **other)
                status = os.stat("out.xml")
                check(f"rights {before:o}", (after, 65534), (stat.S_IMODE(status.st_mode), status.st_gid))
            for after, *entries in ACCESS_LISTS:
                os.chown("out.xml", 65534, 0)
                os.setxattr("out.xml", ACCESS_LIST, struct.pack("<I", 2) + b"".join(struct.pack("<HHI", *entry) for entry in entries))
                run(IO, environment, **other)
                check(f"access list {entries}", (after, False), (stat.S_IMODE(os.stat("out.xml").st_mode), ACCESS_LIST in os.listxattr("out.xml")))
        except PermissionError as error:
            print("not tested: rights of other groups,", error)  # the command is in a folder of root's
        except OSError as error:
            print("not tested: access lists,", error)  # the file system has none


def test_signals():
    for number, umask in (signal.SIGINT, 0), (signal.SIGTERM, 0), (signal.SIGALRM, 0o277), (signal.SIGRTMAX, 0o777):
        with folder(TABLE) as environment:
            def choose():
                signal.signal(number, signal.SIG_DFL)
                signal.signal(signal.SIGHUP, signal.SIG_IGN)
            command = subprocess.Popen([COMMAND, "-", "new.xml"], env=environment, stdin=subprocess.PIPE, umask=umask,
                                       preexec_fn=choose)
            wait_until(lambda: len(files()) == 4)
            check("temporary files", [0o600] * 2,
                  [stat.S_IMODE(os.stat(name).st_mode) for name in files() if name not in BEFORE])
            command.send_signal(signal.SIGHUP)
            command.send_signal(number)
            check("signal", -number, command.wait())
            check("signal: files", BEFORE, files())


def test_signals_at_any_time():
    with folder(HEAD + b"P0123;Stuck;red\n" * 100_000) as environment:
        begin = time.monotonic()
        check("without a signal", 0, run(IO, environment).returncode)
        duration = time.monotonic() - begin
        document = Path("out.xml").read_bytes()
        for part in range(20):
            Path("out.xml").write_bytes(OLD)
            command = subprocess.Popen([COMMAND, *IO.split()], env=environment, stderr=subprocess.DEVNULL)
            time.sleep(duration * part / 20)
            command.terminate()
            is_done = command.wait() == 0
            output = Path("out.xml").read_bytes()
            check(f"part {part}", (True, BEFORE), (output == document or not is_done and output == OLD, files()))


def test_what_it_shows():
    with folder(TABLE) as environment:
        check("short forms", [b"xls2tki ", b"Turns a "], [run(option, environment).stdout[:8] for option in ("-V", "-h")])
        result = run("--help", environment)
        lines = result.stdout.splitlines()
        check("help", (0, b"", True, True),
              (result.returncode, result.stderr, len(lines) <= 30, max(map(len, lines)) <= 80))
        result = run("--version", environment)
        check("version", (0, b"xls2tki "), (result.returncode, result.stdout[:8]))
        steps = run("-v in.csv out.xml", environment).stderr.decode().splitlines()
        check("verbose", (True, "Writing to file completed."), ("Parsing CSV file ... done" in steps, steps[-1]))


def test_names_among_settings():
    for name in "in.csv;v=2", "{in.csv}":
        with folder(WORKBOOK) as environment:
            os.link("in.csv", name)
            result = run(f"-o {name} out.xml", environment)
            check(name, (1, True, OLD), (result.returncode, b"would take" in result.stderr, Path("out.xml").read_bytes()))


def install_driver(argument, words):
    result = subprocess.run([INSTALL_DRIVER, argument], capture_output=True, text=True)
    check(f"install {argument}", (0, "", True), (result.returncode, result.stderr, words in result.stdout))


def test_installing_twice_and_removing():
    install_driver(ODBC_DRIVER, "is installed.")
    install_driver("--remove", "is not installed any more.")
    with folder(WORKBOOK) as environment:
        check("without a driver", (NO_DRIVER, OLD), (run("-o " + IO, environment).stderr.decode(),
                                                     Path("out.xml").read_bytes()))
        check("files", ["odbcinst.ini"], os.listdir(environment["ODBCSYSINI"]))
    registration = "[xls2tki Excel Driver (*.xlsx, *.xlsm)]\nDriver=/of/the/package.so\n"
    Path(os.environ["ODBCSYSINI"], "odbcinst.ini").write_text(registration)
    install_driver("--remove", "remains installed, as /of/the/package.so")
    check("of the package", registration, Path(os.environ["ODBCSYSINI"], "odbcinst.ini").read_text())


with tempfile.TemporaryDirectory() as system:
    os.environ.update(ODBCSYSINI=system, ODBCINI="/dev/null")
    install_driver(ODBC_DRIVER, "is installed.")
    run_tests(globals())
