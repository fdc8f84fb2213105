#!/usr/bin/python3
"""Usage: command_test.py COMMAND LOADING_HOST LINUX_BUILD OTHER_COMPILER
Runs the command in Wine, as users of Windows do, above all with what is another process or another library there. What
does not depend on the system is tested on Linux. Of the build for Linux it takes the command, to compare documents
with, the Excel that answers in a process of its own, and the ODBC driver, to which Wine's driver manager hands on. Also
runs the host that loads the library again and again, and the one that another compiler built: both need the Excel."""

import contextlib
import functools
import os
import re
import shutil
import subprocess
import sys
import tempfile
import time
import zipfile
from pathlib import Path

sys.path.append(str(Path(__file__).resolve().parents[1] / "command"))
from checks import DOCUMENT, EXAMPLES, HINT, J1939, NAMES, OLD, SOURCES, WORKBOOK, check, files, folder, run_tests

COMMAND, LOADING_HOST = sys.argv[1:3]
LINUX_BUILD = Path(sys.argv[3]).resolve()
OTHER_COMPILER = Path(sys.argv[4]).resolve()
# There Wine can keep a file hidden, which it cannot in every folder for temporary files.
tempfile.tempdir = str(LINUX_BUILD.parent)
LINUX_COMMAND = LINUX_BUILD / "bin/xls2tki"
SERVER = LINUX_BUILD / "bin/excel_server.exe.so"
SHARE = Path(os.environ["WINEPREFIX"]) / "dosdevices/unc/srv/share"
ODBC_DRIVER = LINUX_BUILD / "lib/libxls2tki-odbc.so"
DRIVER_NAME = "xls2tki Excel Driver (*.xlsx, *.xlsm)"
TABLE = (EXAMPLES / "powertrain.csv").read_bytes()
BODY = (EXAMPLES / "base-and-failure-type.xml").read_bytes()
HELP = "xls2tki: Hint: %s\n"
CHECKED = "%s.csv: done: 12 DTCs, SAE codes, 0x0016 to 0xC121, 4 items: Severity, Lamp, Reaction, Workshop note.\n"
NO_FILE = 'xls2tki: The output "%s" cannot be a file: %s.' + HINT
NO_SUCH_FILE = HELP % 'There is no file "%s".'
IS_TEXT = HELP % '"in.csv" is text with separators. Give --csv.'
UNKNOWN_KIND = 'xls2tki: The kind of "%s" is not known from its extension; use --csv, --excel or --odbc.' + HINT
LONG = "/".join(["ein langer Name \u4e2d\u6587"] * 16)
NO_EXCEL = "xls2tki: The application MS Excel 2000 or higher is not installed on this system. Aborting data transformation.\n"
# Arguments, standard input, exit status, standard error, standard output, and what is in out.xml. In what is expected
# on standard error, three dots stand for any text.
CASES = [
    ("in.csv out.xml", b"", 0, "", b"", DOCUMENT),
    ("-c - -", TABLE, 0, "", DOCUMENT, OLD),
    ("--utf8 --vsg Sch\u00e4den \u00e4\u4e2d\U0001f600.csv out.xml", b"", 0, "\u00e4\u4e2d\U0001f600.csv: warning: No item column has "
     "the header \"Sch\u00e4den\", so none gets the type VSG from it. [item-header]\n1 warning in 12 rows\n", b"", DOCUMENT),
    ("-v in.csv -", b"", 0, "...\nWriting to file completed.\n", DOCUMENT, OLD),
    ("missing\u00e4.csv out.xml", b"", 1, "xls2tki: Error opening inputfile:\n'missing\u00e4.csv'\n"
     + NO_SUCH_FILE % "missing\u00e4.csv", b"", OLD),
    ("in.csv NUL", b"", 0, "", b"", OLD),
    ("in.csv missing/out.xml", b"", 1, "xls2tki: Could not create a file in the folder \"missing\": No such file or directory\n",
     b"", OLD),
    ("-x in.csv out.xml", b"", 1, NO_EXCEL + IS_TEXT, b"", OLD),
    ("-o in.csv out.xml", b"", 1, "xls2tki: \"in.csv\": No Excel ODBC driver found\n" + HELP %
     "--excel needs no such driver. The Microsoft Access Database Engine, of 64 bits, has one.", b"", OLD),
    ("--json in.csv in.csv", b"", 2, "xls2tki: The output \"in.csv\" is also the input.\n",
     b'{"input":"in.csv","output":"in.csv","kind":"csv","encoding":null,"separator":null,"layout":null,"hexadecimal":null,"sae_codes":null,"rows":null,'
     b'"columns":null,"item_columns":null,"items":null,"skipped_columns":null,"skipped_column_count":null,"messages":[],"message_count":0,"findings":null,"finding_counts":null,'
     b'"failure":"The output \\"in.csv\\" is also the input."}\n', OLD),
    ("--check --jobs 2 in.csv \u00e4\u4e2d\U0001f600.csv", b"", 0, "xls2tki: 2 files: 2 passed, 0 failed.\n",
     (CHECKED % "in" + CHECKED % "\u00e4\u4e2d\U0001f600").encode(), OLD),
    ('--output-dir . --variant=a"b\\\\ --diag-instance=\\"\\ missing.csv out.csv', b"", 1, "xls2tki: 2 files: 1 converted, 1 failed.\n",
     b"missing.csv: failed: Error opening inputfile: 'missing.csv' Hint: There is no file \"missing.csv\".\nout.csv: done\n",
     DOCUMENT.replace(b"Emission_Related_Trouble_Codes", b"\\&quot;\\").replace(b"COMMON_DIAGNOSTICS", b"a&quot;b\\\\")),
    ("--output-dir o in.csv missing/IN.csv", b"", 2, "xls2tki: \"in.csv\" and \"missing/IN.csv\" would both become \"o\\IN.xml\"."
     + HINT, b"", OLD),
    ("--check --strict *.csv ?n.csv", b"", 0, "xls2tki: 4 files: 4 passed, 0 failed.\n",
     "".join(CHECKED % name for name in ("in", "out", "\u00e4\u4e2d\U0001f600", "in")).encode(), OLD),
    ("--output-dir o *.tsv", b"", 2, 'xls2tki: No file matches "*.tsv".\n', b"", OLD),
    ("in.csv *.xml", b"", 2, NO_FILE % ("*.xml", 'a file name cannot contain "*"'), b"", OLD),
    ("in.csv out.xml:stream", b"", 2, NO_FILE % ("out.xml:stream", 'a file name cannot contain ":"'), b"", OLD),
    ("in.csv Z:aux.xml", b"", 2, NO_FILE % ("Z:aux.xml", '"aux.xml" is a device'), b"", OLD),
    ("in.csv tmp\\con", b"", 2, NO_FILE % ("tmp\\con", '"con" is a device'), b"", OLD),
    ("in.csv lpt\u00b2/out.xml", b"", 2, NO_FILE % ("lpt\u00b2/out.xml", '"lpt\u00b2" is a device'), b"", OLD),
    ("in.csv //?/Z:/nul.xml", b"", 2, NO_FILE % ("//?/Z:/nul.xml", '"nul.xml" is a device'), b"", OLD),
    ("in.csv out.xml.", b"", 2, NO_FILE % ("out.xml.", "a file name cannot end with a dot or a blank"), b"", OLD),
    ("in.csv missing\\", b"", 2, NO_FILE % ("missing\\", "it is the name of a folder"), b"", OLD),
    ("--output-dir o< in.csv", b"", 2, NO_FILE % ("o<\\in.xml", 'a file name cannot contain "<"'), b"", OLD),
    ("--sarif com1.json in.csv out.xml", b"", 2, NO_FILE % ("com1.json", '"com1.json" is a device'), b"", OLD),
    ("/csv", b"", 2, "xls2tki: INPUT and OUTPUT are required." + HINT, b"", OLD),
]
ODBC_CASES = [
    ("-o table.xlsx out.xml", b"", 0, "", b"", DOCUMENT),
    ("-o in.csv out.xml", b"", 1, "xls2tki: Database error: [xls2tki][Excel Driver]'in.csv' is not a workbook.\n" + IS_TEXT,
     b"", OLD),
]

OPEN_2000, OPEN, VALUE = "0x2AA", "0x783", "0x56C"
REASON = "Excel cannot do that: \u4e2d\u6587."
FAILED = f'xls2tki: "table.xlsx": {REASON}\n'
EXPLAINED = ("...\nCould not read out existing sheets of excel file. (Code: ' 0x000003ec')\n"
             f"Reason: {REASON}\nSource: Microsoft Excel\nHelpfile: xlmain.chm\n...")
DIED = 'xls2tki: "table.xlsx": ...RPC...\n'
BUSY = 'xls2tki: "table.xlsx": The application is busy: finish what is open in it, such as a cell or a dialog.\n'
NOT_STARTED = 'xls2tki: "table.xlsx": Excel could not be started: Error 0x8....\n'
LINGER = "--linger 4000"
CONVERSION = "table.xlsx out.xml"
# The number of the version that the registry names, what goes wrong there (see server/faults.h), arguments, exit status,
# standard error, standard output, and what is in out.xml.
EXCEL_CASES = [
    ("10", "", CONVERSION, 0, "", b"", DOCUMENT),
    ("10", "", "-w J1939 table.xlsx out.xml", 0, "", b"", J1939),
    ("10", "", "--list-worksheets table.xlsx", 0, "", NAMES, OLD),
    ("11", "", CONVERSION, 0, "", b"", DOCUMENT),
    ("11", "", "--list-worksheets table.xlsx", 1,
     "xls2tki: On using Excel 2003, it is not possible to detect contained Worksheets!\n", b"", OLD),
    ("12", "", "-w Body table.xlsx out.xml", 0, "", b"", BODY),
    ("12", "", "--list-worksheets table.xlsx", 0, "", NAMES, OLD),
    ("14", "", CONVERSION, 0, "", b"", DOCUMENT),
    ("14", "", "-w J1939 table.xlsx out.xml", 0, "", b"", J1939),
    ("14", "", "-w j1939 table.xlsx out.xml", 1,
     'xls2tki: "table.xlsx" has no worksheet "j1939". Its worksheets are:\n  Powertrain\n  J1939\n  Body\n', b"", OLD),
    ("16", "", CONVERSION, 0, "", b"", DOCUMENT),
    ("16", "", "--list-worksheets table.xlsx", 0, "", NAMES, OLD),
    ("14", "", "\u00e4\u4e2d\U0001f600.xlsx out.xml", 0, "", b"", DOCUMENT),
    ("12", "", "missing.xlsx out.xml", 1, "xls2tki: Error opening inputfile:\n'...missing.xlsx'\n" + NO_SUCH_FILE % "missing.xlsx",
     b"", OLD),
    ("14", "", "missing.xlsx out.xml", 1, "xls2tki: '...missing.xlsx' cannot be opened.\n" + NO_SUCH_FILE % "missing.xlsx",
     b"", OLD),
    ("10", "--fail " + OPEN_2000, CONVERSION, 1, FAILED, b"", OLD),
    ("11", "--fail " + OPEN, CONVERSION, 1, f"xls2tki: {REASON} Please use -o (=ODBC) to convert file to tki.\n", b"", OLD),
    ("14", "--fail " + OPEN, "-v " + CONVERSION, 1, EXPLAINED, b"", OLD),
    ("14", "--fail " + OPEN, "--list-worksheets table.xlsx", 1, FAILED, b"", OLD),
    ("14", "--fail " + VALUE, CONVERSION, 1, FAILED, b"", OLD),
    ("11", "--fail " + VALUE, CONVERSION, 1, FAILED, b"", OLD),
    ("14", f"--busy {OPEN} 2", CONVERSION, 0, "", b"", DOCUMENT),
    ("14", f"--busy {OPEN} 1000", CONVERSION, 1, BUSY, b"", OLD),
    ("12", "--die " + OPEN, CONVERSION, 1, DIED, b"", OLD),
    ("11", "--die " + VALUE, CONVERSION, 1, DIED, b"", OLD),
    ("14", "--die " + VALUE, "--list-worksheets table.xlsx", 0, "", NAMES, OLD),
    ("14", "--refuse", CONVERSION, 1, NOT_STARTED, b"", OLD),
    ("11", "--refuse", CONVERSION, 1, NOT_STARTED, b"", OLD),
    # While the one is quitting, the next is started.
    ("14", LINGER, CONVERSION, 0, "", b"", DOCUMENT),
    ("14", LINGER, CONVERSION, 0, "", b"", DOCUMENT),
]
# What is compared with Linux, of tests/data.
TABLES = {"base_failure_type": "-s ,", "every_byte": "", "example": "", "header_only": "-s |", "spn_fmi": "--utf8 -s tab"}
WITHOUT_TABLE = ["xlsxwriter.xlsx"]
CLASSES = r"HKEY_LOCAL_MACHINE\SOFTWARE\Classes"
EXCEL_CLASS = "{00024500-0000-0000-C000-000000000046}"
WITHOUT_EXCEL = f"REGEDIT4\n\n[-{CLASSES}\\Excel.Application]\n\n[-{CLASSES}\\CLSID\\{EXCEL_CLASS}]\n"


def run(*command, **options):
    """Exit status, standard output and standard error. In Wine, Excel inherits these two; at pipes one would wait for it."""
    with tempfile.TemporaryFile() as output, tempfile.TemporaryFile() as error:
        done = subprocess.run(command, stdout=output, stderr=error, check=False, **options)
        output.seek(0)
        error.seek(0)
        return done.returncode, output.read(), error.read()


def write_registry(text):
    with tempfile.NamedTemporaryFile("w", suffix=".reg") as file:
        file.write(text)
        file.flush()
        assert run("wine", "reg", "import", "Z:" + file.name)[0] == 0


@functools.lru_cache(maxsize=1)
def register_excel(version, faults):
    """Takes its time, and so leaves a registration as it is that is the last one again."""
    server = f"Z:{SERVER} {faults}".replace("/", r"\\")
    write_registry(f"""{WITHOUT_EXCEL}
[{CLASSES}\\Excel.Application\\CurVer]
@="Excel.Application.{version}"

[{CLASSES}\\Excel.Application\\CLSID]
@="{EXCEL_CLASS}"

[{CLASSES}\\CLSID\\{EXCEL_CLASS}\\LocalServer32]
@="{server}"
""")


def servers():
    """The processes of Excel; those that have ended have no command line any more."""
    found = []
    for process in Path("/proc").glob("[0-9]*"):
        with contextlib.suppress(OSError):
            if SERVER.name.encode() in (process / "cmdline").read_bytes().split(b"\0")[0]:
                found.append(process.name)
    return found


def await_servers():
    """For those that are quitting. None may be left for long."""
    end = time.monotonic() + 10
    while servers() and time.monotonic() < end:
        time.sleep(0.1)
    check("processes of Excel", [], servers())


@contextlib.contextmanager
def odbc_driver():
    key = r"HKLM\Software\ODBC\ODBCINST.INI\ODBC Drivers"
    with tempfile.TemporaryDirectory() as system:
        (Path(system) / "odbcinst.ini").write_text(f"[{DRIVER_NAME}]\nDriver={ODBC_DRIVER}\n")
        before = dict(os.environ)
        os.environ.update(ODBCSYSINI=system, ODBCINI=os.devnull)
        run("wine", "reg", "add", key, "/v", DRIVER_NAME, "/d", "Installed", "/f")
        try:
            yield
        finally:
            run("wine", "reg", "delete", key, "/f")
            os.environ.clear()
            os.environ.update(before)


def is_said(said, expected):
    return re.fullmatch(".*".join(map(re.escape, expected.split("..."))), said, re.DOTALL)


def check_case(case, name=""):
    arguments, given, status, error, output, document = case
    with folder(TABLE):
        for table in "out.csv", "\u00e4\u4e2d\U0001f600.csv":
            Path(table).write_bytes(TABLE)
        for workbook in "table.xlsx", "\u00e4\u4e2d\U0001f600.xlsx":
            Path(workbook).write_bytes(WORKBOOK)
        before = files()
        returned, written, said = run("wine", COMMAND, *arguments.split(), input=given)
        said = said.decode()
        check(f"{name} {arguments}", (status, error, output, document, before),
              (returned, error if is_said(said, error) else said, written, Path("out.xml").read_bytes(), files()))


def test_tables():
    write_registry(WITHOUT_EXCEL)
    for case in CASES:
        check_case(case)
    with odbc_driver():
        for case in ODBC_CASES:
            check_case(case)


def test_excel():
    for version, faults, arguments, *expected in EXCEL_CASES:
        register_excel(version, faults)
        check_case((arguments, b"", *expected), f"Excel.Application.{version} {faults}")
        if faults == LINGER:
            check("Excel that is quitting", True, servers() != [])
        else:
            await_servers()
    await_servers()


def test_loading_again_and_again():
    register_excel("14", "")
    status, output, _ = run("wine", LOADING_HOST)
    check("loading", (0, b""), (status, output if status else b""))
    await_servers()


def make_workbook(path, sheets):
    names = ["S" + str(number) * (number > 0) + "x" * (number % 20) for number in range(sheets)]
    office, package = "http://schemas.openxmlformats.org/officeDocument/2006/relationships", "http://schemas.openxmlformats.org/package/2006"
    main = "http://schemas.openxmlformats.org/spreadsheetml/2006/main"
    with zipfile.ZipFile(path, "w") as file:
        file.writestr("_rels/.rels", f'<Relationships xmlns="{package}/relationships"><Relationship Id="r" Type="{office}/officeDocument" Target="xl/workbook.xml"/></Relationships>')
        file.writestr("xl/workbook.xml", f'<workbook xmlns="{main}" xmlns:r="{office}"><sheets>'
                      + "".join(f'<sheet name="{name}" sheetId="{index + 1}" r:id="r{index}"/>' for index, name in enumerate(names)) + "</sheets></workbook>")
        file.writestr("xl/_rels/workbook.xml.rels", f'<Relationships xmlns="{package}/relationships">'
                      + "".join(f'<Relationship Id="r{index}" Type="{office}/worksheet" Target="sheet.xml"/>' for index in range(sheets)) + "</Relationships>")
        file.writestr("xl/sheet.xml", f'<worksheet xmlns="{main}"><sheetData/></worksheet>')


def test_other_compiler():
    """Which sets and lists the host makes is in its source."""
    register_excel("14", "")
    columns = ["0" * number if number < 4 else "%04d" % number + "x" * (number % 97) for number in range(1, 1000)]
    counts = [1, 127, 128, 0, 1000]
    with folder(TABLE):
        for library in OTHER_COMPILER / "ZoLogging.dll", Path(COMMAND).with_name("xls2tki.dll"), OTHER_COMPILER / "host.exe":
            shutil.copy(library, ".")
        Path("set.csv").write_text(";".join(["DTC", "Text", *columns]) + "\nP0123;t" + ";v" * len(columns))
        for count in filter(None, counts):
            make_workbook(f"{count}.xlsx", count)
        workbooks = [f"Z:{os.getcwd()}/{count}.xlsx".replace("/", "\\") for count in counts]
        check("host of another compiler", (0, b"", b""), run("wine", "host.exe", *workbooks))
        check("sets", [0, 0, 6, 7, 999] * 3 + [0, 2, 2],
              [Path(f"{name}.xml").read_bytes().count(b'type="VSG"') for name in
               [f"{shape}_{size}" for shape in range(3) for size in range(5)] + ["short", "two", "three"]])
        messages = Path("log.txt").read_bytes().decode("utf-16-le").splitlines()
        check("messages", (True, "28Writing to file completed."), (all(line.startswith("28") for line in messages), messages[-1]))
    await_servers()


def test_options_of_many_files():
    """There, each process reads them anew."""
    for options, separator in [('-u --vsg {} --type-a x --type-a [a,b] --variant= --diag-instance \u00fc" -s =', "="),
                               ("--variant=-- --diag-instance=--json --vsg x --vsg=[a,b] -s -", "-")]:
        with folder("DTC=Text={}=[a,b]=x\nP0123=\u00e4=1=2=3\n".replace("=", separator).encode()):
            for rest in "in.csv one.xml", "--output-dir many in.csv":
                check(options, 0, run("wine", COMMAND, *options.split(), *rest.split())[0])
            check(options, Path("one.xml").read_bytes(), Path("many/in.xml").read_bytes())


def test_paths():
    """All ways to write one, as each kind of path, in folders with short and with long names."""
    register_excel("14", "")
    SHARE.parent.mkdir(parents=True, exist_ok=True)
    with folder(TABLE), contextlib.ExitStack() as stack:
        SHARE.symlink_to(os.getcwd())
        stack.callback(SHARE.unlink)
        here = "Z:" + os.getcwd().replace("/", "\\") + "\\"
        for place in "tmp", LONG:
            os.makedirs(place, exist_ok=True)
            for name, content in ("in.csv", TABLE), ("table.xlsx", WORKBOOK), ("out.xml", OLD):
                Path(place, name).write_bytes(content)
            before = files()
            made = {f"./{place}/{name}": DOCUMENT for name in ("new.xml", "new/in.xml", "in.xml")}
            if place != LONG:  # which is too long for Excel
                made[f"./{place}/excel.xml"] = DOCUMENT
            for start in ["", "tmp\\..\\", "Z:", here[2:], here, here.replace("\\", "/"), "\\\\srv\\share\\", "//srv/share/",
                          "\\\\?\\" + here, "//?/" + here.replace("\\", "/"), "\\\\?\\UNC\\srv\\share\\"]:
                at = start + place.replace("/", "\\")
                done = f"{at}/in.csv: done\n".encode(), b"xls2tki: 1 file: 1 converted, 0 failed.\n"
                rows = [((f"{at}\\in.csv", f"{at}/new.xml"), (0, b"", b"")),
                        (("--output-dir", f"{at}/new", f"{at}/in.csv"), (0, *done)),
                        (("--output-dir", f"{at}\\", f"{at}/in.csv"), (0, *done)),
                        ((f"{at}\\in.csv\\", f"{at}\\out.xml"), (2, b"", (UNKNOWN_KIND % f"{at}\\in.csv\\").encode())),
                        ((f"{at}/in.csv", f"{at}\\in.csv"), (2, b"", f'xls2tki: The output "{at}\\in.csv" is also the input.\n'.encode()))]
                if place != LONG:
                    rows += [((f"{at}\\table.xlsx", f"{at}\\excel.xml"), (0, b"", b"")), (("--list-worksheets", f"{at}/table.xlsx"), (0, NAMES, b""))]
                for command, expected in rows:
                    check(" ".join(command), expected, run("wine", COMMAND, *command))
                new = {path: Path(path).read_bytes() for path in files() if path not in before}
                check("documents by " + at, made, new)
                for path in new:
                    Path(path).unlink()
        check("twice", (2, b"", f'xls2tki: "in.csv" is given twice.{HINT}'.encode()),
              run("wine", COMMAND, "--output-dir", "o", "\\\\srv\\share\\in.csv", "in.csv"))
        run("wine", COMMAND, "--vsg", "x", "--sarif", "new.sarif", "//srv/share/in.csv", "NUL")
        check("URI", True, b'"file://srv/share/in.csv"' in Path("new.sarif").read_bytes())
    await_servers()


def test_hidden_output():
    with folder(TABLE):
        run("wine", "attrib", "+h", "out.xml")
        check("hidden output", (0, b"", b""), run("wine", COMMAND, "in.csv", "out.xml"))
        check("hidden document", (["user.DOSATTRIB"], DOCUMENT), (os.listxattr("out.xml"), Path("out.xml").read_bytes()))


def compare(name, content, arguments="", converts=True, **linux):
    """Converts on both systems, which have to write the same bytes and to say the same."""
    Path(name).write_bytes(content)
    outcomes = []
    for command in ("wine", COMMAND), (LINUX_COMMAND,):
        Path("out.xml").unlink(missing_ok=True)
        done = run(*command, *arguments.split(), name, "out.xml", env={**os.environ, **linux})
        outcomes.append((done, Path("out.xml").read_bytes() if done[0] == 0 else None))
    check(f"{name} {arguments}", (converts, outcomes[1]), (outcomes[0][1] is not None, outcomes[0]))


def test_tables_as_on_linux():
    with folder(TABLE):
        for separator, name in zip(b";\t,|", ("semicolon", "tab", "comma", "pipe")):
            table = b"DTC~Text~\xc3\xa4\nP0123~a;b,c|d\te~\xc3\xa4\xe4\n".replace(bytes([separator]), b" ").replace(b"~", bytes([separator]))
            for encoding in "", "--utf8":
                compare("in.csv", table, f"-s {name} {encoding}")
        for name, arguments in TABLES.items():
            compare("in.csv", (SOURCES / f"tests/data/{name}.csv").read_bytes(), arguments)


def test_workbooks_as_on_linux():
    with folder(TABLE):
        for version in "10", "11", "12", "14", "16":
            registry = f'Windows Registry Editor Version 5.00\n\n[{CLASSES}\\Excel.Application\\CurVer]\n@="Excel.Application.{version}"\n'
            Path("excel.reg").write_text(registry)
            register_excel(version, "")
            for path in sorted((SOURCES / "tests/data/workbooks").glob("*.xlsx")):
                compare(path.name, path.read_bytes(), converts=path.name not in WITHOUT_TABLE, XLS2TKI_REGISTRY="excel.reg")
    await_servers()


try:
    run_tests(globals())
finally:
    write_registry(WITHOUT_EXCEL)
