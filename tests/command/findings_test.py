#!/usr/bin/python3
"""Usage: findings_test.py COMMAND ODBC_DRIVER
Runs the command on tables in which something is wrong or left open: how a CSV text is read, what helps after a failure,
and what is found in tables that convert, for people,
scripts and review tools."""

import json
import os
import re
import subprocess
from pathlib import Path

from checks import OLD, SOURCES, WORKBOOK, check, files, folder, run_tests
from command import BEFORE, COMMAND, HEAD, HELP, IO, KEPT, NO_FILE, ROW, TABLE, run
from workbooks import make_workbook, zipped

COMMAS, TABS, PIPES = (f"with {name} between the cells" for name in ("commas", "tabs", "pipes"))
UMLAUT = "P0123;\u00fc\n"
# The name of the table, the table, how the note says it is read, and options that say the same.
READINGS = [
    ("a.csv", "DTC;a,b|c\td\nP0123;x\n", None, "-s ;"),
    ("a.csv", "DTC,a|b\tc\nP0123\tx\n", TABS, "-s tab"),
    ("a.csv", "DTC|a,b\nP0123|x,y\n", COMMAS, "-s comma"),
    ("a.csv", "DTC|a\nP0123|x;y\n", PIPES, "-s pipe"),
    ("a.csv", '"DTC;a",b\nP0123,x\n', COMMAS, "-s comma"),
    ("a.csv", '"D""\n;TC"\r\n,a;b\n', None, "-s ;"),
    ("a.csv", 'DTC,"a;b"\nP0123,"x;y"\n', None, "-s ;"),  # only the first quote of a cell counts
    ("a.csv", "DTC,a" + "x" * (1 << 20) + "\nP0123,x\n", None, "-s ;"),
    ("a.TSV", "DTC\ta;b\nP0123\tx\n", TABS, "-s tab"),
    ("a.tsv", "DTC;a\nP0123;x\n", None, "-s ;"),
    ("a.csv", "DTC;a\n" + UMLAUT, "as UTF-8", "-u"),
    ("a.csv", "DTC,\U0010ffff\ud7ff\ue000\u0800\n", "as UTF-8, " + COMMAS, "-u -s comma"),
    ("a.csv", "\ufeff\"DTC\",a\nP0123,x\n", "as UTF-8, " + COMMAS, "-u -s comma"),
    ("a.csv", "DTC\ta\r\nP0123\t\u4e2d\r\n".encode("utf-16"), "as UTF-16, " + TABS, "-u -s tab"),
    *[("a.csv", "DTC;" + "a" * (65523 + size) + "\n" + UMLAUT, "as UTF-8", "-u") for size in range(3)],
    *[("a.csv", ("DTC;a\n" + UMLAUT).encode() + wrong, None, "--encoding 8-bit") for wrong in
      (b"1;\xfc\n", b"1;\xc3", b"1;\xc0\x80\n", b"1;\xe0\x9f\x80\n", b"1;\xed\xa0\x80\n", b"1;\xf4\x90\x80\x80\n", b"\x80;\n")],
]


def test_readings():
    for name, table, reading, options in READINGS:
        with folder(TABLE) as environment:
            Path(name).write_bytes(table if isinstance(table, bytes) else table.encode())
            found, told = (run(arguments.replace("in.csv", name), environment) for arguments in (IO, f"{options} in.csv told.xml"))
            outcome = Path("out.xml").read_bytes() if found.returncode == 0 else None
            check(options, Path("told.xml").read_bytes() if told.returncode == 0 else None, outcome)
            note = f'xls2tki: Note: "{name}" is read {reading}.\n' if reading else ""
            said = found.stderr.decode()
            check(options, True, said.startswith(note) if note else "xls2tki: Note:" not in said)


def sheet(cells, styles=""):
    """A workbook with one worksheet. A cell is a text, or attributes and what is in the cell."""
    made = {cell: value if isinstance(value, tuple) else ('t="inlineStr"', f"<is><t>{value}</t></is>") for cell, value in cells.items()}
    return make_workbook({"S": "".join(f'<row r="{cell[1:]}"><c r="{cell}" {attributes}>{content}</c></row>'
                                       for cell, (attributes, content) in made.items())}, styles)


OLDER = (b"\xd0\xcf\x11\xe0\xa1\xb1\x1a\xe1".ljust(30, b"\0") + b"\x09".ljust(18, b"\0") + b"\1").ljust(1024, b"\0") + "Workbook\0".encode("utf-16-le")
OPEN_DOCUMENT = zipped({"mimetype": "application/vnd.oasis.opendocument.spreadsheet"})
PAGE = b"\xef\xbb\xbf \r\n<HTML><table>"
# A file that is not what its name says, and the hint; None where there is nothing to say.
FORMATS = [
    ("in.csv", WORKBOOK, '"in.csv" is a workbook. Give --excel.'),
    ("in.dat", WORKBOOK, '"in.dat" is a workbook. Give --excel.'),
    ("-", WORKBOOK, "Standard input is a workbook. Save it as a file, for --excel."),
    ("in.csv", OLDER, '"in.csv" is a workbook. Give --excel.'),
    ("in.ods", OPEN_DOCUMENT, '"in.ods" is an OpenDocument spreadsheet (.ods). Save it as .xlsx.'),
    ("in.txt", zipped({"xl/workbook.bin": b""}), '"in.txt" is a binary workbook (.xlsb). Save it as .xlsx.'),
    ("in.numbers", zipped({"Index/Document.iwa": b""}), '"in.numbers" is a document of Numbers or one of its sister programs. '
     "Export the table as .xlsx."),
    ("in.csv", zipped({"word/document.xml": b""}), None),
    ("in.xls", PAGE, '"in.xls" is HTML or XML. Open it in a spreadsheet program and save it as .xlsx.'),
    ("in.xlsx", b"%PDF-1.4, and more\n", '"in.xlsx" is text with separators. Give --csv.'),
    ("in.xlsx", b"\x7fELF;\0", None),
    ("in.xlsx", b"no table", None),
    ("in.xlsx", b"", '"in.xlsx" is empty.'),
    ("in.xlsx", "DTC\ta\n".encode("utf-16"), '"in.xlsx" is text with separators. Give --csv.'),
    ("in.txt", WORKBOOK[:1000] + WORKBOOK[:-2000], None),
    # What keeps a table from being read.
    ("in.csv", b'D;"a\nb"\n1;x\n2\n', ROW % (4, "in.csv", 3)),
    ("in.csv", b"D;T\r\n\r\n1;x\r\n", 'Line 2 of "in.csv" is empty. Delete it.'),
    ("in.csv", b"Sep=;\r\nD;T;L\r\n1;2;3\r\n", 'The first line of "in.csv" only names the separator, and is read as the header. Delete it.'),
    ("in.csv", b'D;T\n"a\nb";x\n1;"say "hi" x"\n', 'The character is behind the double quote that closes cell B3 of "in.csv", in line 4. '
     "A double quote that belongs to the cell is written twice."),
    ("in.csv", b'D;T;"L\n1;2;"', None),
    ("in.csv", b'D;T;"L\n1;2;3', 'The double quote with which cell C1 of "in.csv", in line 1, begins is not closed, so the first row does not end.'),
    ("in.csv", b"\xef\xbb\xbf", '"in.csv" has a byte order mark and nothing else.'),
    ("in.csv", b"\xff\xfe", '"in.csv" has a byte order mark and nothing else.'),
    ("in.csv", "DTC;T\n1;x\n".encode("utf-16-le"), '"in.csv" is UTF-16 without a byte order mark. Save it as UTF-8.'),
    ("in.csv", b"D\r1\r", 'The lines of "in.csv" end in carriage returns alone. Save it with other line ends.'),
    ("in.csv", b"D;T\r" + b"1;x\r" * 1000000, 'The lines of "in.csv" end in carriage returns alone. Save it with other line ends.'),
    ("in.xlsx", sheet({}), 'Cell A1 of the worksheet that was read from "in.xlsx" is empty. The header has to begin there: delete the empty rows '
     "and columns in front of it, or choose another worksheet with --worksheet."),
    ("in.xlsx", sheet({"A1": "Codes", "A3": "DTC", "B3": "T"}), 'Row 1 of the worksheet that was read from "in.xlsx" has one filled cell, and the '
     "header has to be there. Delete a title and the empty rows above the header."),
]


def test_hints_at_formats():
    for name, content, hint in FORMATS:
        with folder(TABLE) as environment:
            Path(name).write_bytes(content)
            result = run(f"--check {name}", environment, input=content)
            hints = [line for line in result.stderr.decode().splitlines() if line.startswith("xls2tki: Hint: ")]
            check(name, [HELP.strip() % hint] if hint else [], hints)
            check(name, True, result.returncode in (1, 2))


def test_no_permission():
    with folder(TABLE) as environment:
        os.chmod(".", 0o777)
        os.chmod("in.csv", 0)
        user = dict(user=65534, group=65534, extra_groups=[]) if os.geteuid() == 0 else {}
        said = run("--check in.csv", environment, **user).stderr.decode()
        check("no permission", NO_FILE % "in.csv" + HELP % '"in.csv" cannot be opened: Permission denied.', said)


REPORT = {"input": "in.csv", "output": "out.xml", "kind": "csv", "encoding": None, "separator": None, "layout": None, "hexadecimal": None, "sae_codes": None,
          "rows": None, "columns": None, "item_columns": None, "items": None, "skipped_columns": None, "skipped_column_count": None, "findings": None,
          "finding_counts": None, "failure": None}
READING = {"encoding": "8-bit", "separator": ";", "findings": [], "finding_counts": {}}
FACTS = READING | {"layout": "single-number", "hexadecimal": False, "sae_codes": True, "rows": 1, "columns": 3, "item_columns": 1,
         "items": 1, "skipped_columns": [], "skipped_column_count": 0}
SKIPPING = b"SPN;FMI;Text;;Lamp;;Reaction\n91;26;Stuck;x;;;y\n94;3;Low;;red;;\n"
# Table, arguments, exit status, what differs from the report above, and the last of the messages.
REPORTS = [
    (TABLE, IO, 0, FACTS, "Writing to file completed."),
    (TABLE, "--check in.csv", 0, dict(FACTS, output=None), "Writing to file completed."),
    (TABLE, "--no-findings " + IO, 0, FACTS | {"findings": None, "finding_counts": None}, "Writing to file completed."),
    (TABLE + b";Stuck;red\n", "--strict --type-a x " + IO, 1, FACTS | {"rows": 2, "items": 2, "findings": [
        {"rule": "number-empty", "severity": "error", "cell": "A3", "line": 3, "text":
         "The cell is empty; the number becomes 0. Fill it in, or delete the row."},
        {"rule": "item-header", "severity": "warning", "cell": None, "line": None, "text":
         'No item column has the header "x", so none gets the type A from it.'}],
        "finding_counts": {"number-empty": {"errors": 1, "warnings": 0}, "item-header": {"errors": 0, "warnings": 1}},
        "failure": "--strict: 1 error, 1 warning, so nothing was written."}, "Writing to file completed."),
    (TABLE, "--check -c -", 1, READING | {"input": "-", "output": None, "failure": "Empty data given ?!"},
     "Hint: standard input is empty."),
    (b"DTC\tText\xc3\xbc\nP0001\tx\n", IO, 0, FACTS | {"encoding": "utf-8", "separator": "\t", "columns": 2, "item_columns": 0,
                                                     "items": 0}, "Writing to file completed."),
    (SKIPPING, "--no-findings " + IO, 0, READING | {"findings": None, "finding_counts": None, "layout": "spn-fmi", "hexadecimal": False, "sae_codes": False, "rows": 2, "columns": 7,
                       "item_columns": 1, "items": 1, "skipped_columns": [
                           {"index": 3, "reason": "no header"}, {"index": 5, "reason": "empty"},
                           {"index": 6, "reason": "behind the end"}], "skipped_column_count": 3}, "Writing to file completed."),
    (b"DTC;T" + b";" * 3000 + b"\n", "--no-findings " + IO, 0, READING | {"findings": None, "finding_counts": None, "layout": "single-number",
     "hexadecimal": False, "sae_codes": False, "rows": 0, "columns": 3002, "item_columns": 0, "items": 0, "skipped_column_count": 3000,
     "skipped_columns": [{"index": 2, "reason": "empty"}] + [{"index": index, "reason": "behind the end"} for index in range(3, 1002)]},
     "Writing to file completed."),
    (TABLE + b'P"45;x;\n', "--no-findings " + IO, 1, READING | {"findings": None, "finding_counts": None, "failure": 'Given SAE DTC number P"45 has invalid length, '
                                   'expected 3, 5, 7 or 9 characters'},
     'Hint: The code is in cell A3 of "in.csv", in line 3.'),
    (WORKBOOK, "-x -w \u202e\\ " + IO, 1, {"kind": "excel", "failure":
     '"in.csv" has no worksheet "?\\". Its worksheets are:\n  Powertrain\n  J1939\n  Body'}, None),
    (TABLE, b"-w x in.csv \xff/\xc3\xa4", 1, {"output": "\ufffd/\u00e4", "failure":
     'Could not create a file in the folder "\ufffd": No such file or directory'},
     "Note: --worksheet is for --excel only and has no effect here."),
    (TABLE, "--output-dir none/x in.csv", 1, {"output": "none/x/in.xml", "failure":
     'Could not create the folder "none/x": No such file or directory'}, None),
    (TABLE, "-c out.xml in.csv", 2, {"input": "out.xml", "output": "in.csv", "failure": KEPT[9:-1] % "in.csv"}, None),
    (TABLE, "in.csv in.csv", 2, {"output": "in.csv", "failure": 'The output "in.csv" is also the input.'}, None),
]


def test_reports():
    for table, arguments, status, differences, last in REPORTS:
        with folder(table) as environment:
            json_option = b"--json " if isinstance(arguments, bytes) else "--json "
            result = run(json_option + arguments, environment, stdin=subprocess.DEVNULL)
            check(arguments, (status, 1), (result.returncode, result.stdout.count(b"\n")))
            report = json.loads(result.stdout.decode())
            messages = [None] + report.pop("messages")
            check(arguments, len(messages) - 1, min(report.pop("message_count"), 1000))
            check(arguments, (dict(REPORT, **differences), last), (report, messages[-1]))
            check(arguments, BEFORE, files())
    with folder(TABLE) as environment, open("/dev/full", "wb") as full:
        result = subprocess.run([COMMAND, "--json", "in.csv", "out.xml"], stdout=full, stderr=subprocess.PIPE)
        check("report to nowhere", (1, b"xls2tki: Could not write the result: No space left on device\n"),
              (result.returncode, result.stderr))


EMPTY = 'in.csv: A%s (line %s): error: The cell is empty; the number becomes 0. Fill it in, or delete the row. [number-empty]\n'
MANY_EMPTY = "".join(EMPTY % (row, row + 1) for row in (2, 3, 4)) + "in.csv: error: The same in %s. [number-empty]\n"
MULTI_HEAD, GOOD = b'DTC;"Te\nxt";Lamp\n', b"P0123;t;r\n"
# Table, arguments, exit status, standard error, standard output, and whether there is a new document.
FINDINGS = [
    (TABLE, "--check in.csv", 0, "", "in.csv: 1 DTC, SAE codes, 0x0123 to 0x0123, 1 item: Lamp\n", False),
    (TABLE, "--strict " + IO, 0, "", "", True),
    (MULTI_HEAD + b";t;r\n" * 4 + GOOD, IO, 0, "".join(EMPTY % (row, row + 1) for row in (2, 3, 4, 5)) + "4 errors in 5 rows\n", "", True),
    (MULTI_HEAD + b";t;r\n" * 5 + GOOD, IO, 0, MANY_EMPTY % "A5 and A6" + "5 errors in 6 rows\n", "", True),
    (MULTI_HEAD + b";t;r\n" * 5000 + GOOD, "--strict " + IO, 1, MANY_EMPTY % (", ".join(f"A{row}" for row in range(5, 17)) + " and 4985 more")
     + "5000 errors in 5001 rows\nxls2tki: --strict: 5000 errors, so nothing was written.\n", "", False),
    (TABLE + b";t;r\n", "-c --check -", 1, EMPTY.replace("in.csv", "standard input") % (3, 3)
     + "1 error in 2 rows\nxls2tki: --check: 1 error.\n",
     "standard input: 2 DTCs, SAE codes, 0x0000 to 0x0123, 1 item: Lamp\n", False),
    (b";T\nP0123;x\n", "--check --no-findings in.csv", 0, "", "in.csv: 1 DTC without numbers, 0 items\n", False),
    (TABLE + b";t;r\n", "--check --no-findings in.csv", 0, "", "in.csv: 2 DTCs, SAE codes, 0x0000 to 0x0123, 1 item: Lamp\n", False),
    (b"SPN;FMI;Text;\x1b[1m\x9b\n1;2;t;\n", "--check in.csv", 1, 'in.csv: D1 (line 1): error: "<U+001B>[1m<U+009B>" has the '
     "character U+001B, with which no XML reader takes the document. Remove it. [text-not-xml]\n1 error in 1 row\n"
     "xls2tki: --check: 1 error.\n", "in.csv: 1 DTC, SPN and FMI, 0x10002 to 0x10002, 1 item: ?[1m?\n", False),
    (b"DTC;Text" + b"".join(b";h%d" % number for number in range(22)) + b"\n0xFFFFFFFF;t" + b";" * 22 + b"\n1;t" + b";" * 22 + b"\n",
     "--check in.csv", 0, "", "in.csv: 2 DTCs, hexadecimal numbers, 0x0001 to 0xFFFFFFFF, 22 items: "
     + ", ".join(f"h{number}" for number in range(20)) + " and 2 more\n", False),
    (sheet({"A1": "DTC", "B1": "Text", "C1": "Since", "A2": ('s="1"', "<v>45597</v>"), "B2": "x", "C2": ('s="2"', "<v>0.5</v>"), "A3": ("", "<v>7</v>"),
            "B3": ('t="str"', "<f>A1</f>"), "C3": ('s="3"', "<v>5</v>"), "A4": ("", "<f>B1</f><v></v>"), "B4": "y", "A7": ("", "<v>8</v>")},
           '<numFmts><numFmt numFmtId="164" formatCode="[$-407]hh:mm"/><numFmt numFmtId="165" formatCode="0 &quot;days&quot;"/></numFmts>'
           '<cellXfs><xf/><xf numFmtId="14"/><xf numFmtId="164"/><xf numFmtId="165"/></cellXfs>'), "-x --check in.csv", 1,
     "in.csv: A4: error: The cell holds a formula without a saved result, which is read as an empty cell; the number becomes 0. "
     "Open the workbook in Excel and save it. [number-empty]\n"
     "in.csv: A7: error: The table ends with row 4, because row 5 has no text and no number in its first cells: the row of A7 \"8\" is not read. "
     "If this belongs to the table, delete the empty rows between. [row-lost]\n"
     'in.csv: A2: error: The cell holds a date or a time, but is read as "45597". Format the cell as text and enter it again. [value-rounded]\n'
     'in.csv: C2: error: The cell holds a date or a time, but is read as "0.5". Format the cell as text and enter it again. [value-rounded]\n'
     "in.csv: B3: error: The cell holds a formula without a saved result, but is read as empty. Open the workbook in Excel and save it. "
     "[value-rounded]\nin.csv: B3: warning: The DTC has no description. Fill it in. [description-empty]\n"
     "5 errors, 1 warning in 3 rows\nxls2tki: --check: 5 errors, 1 warning.\n",
     "in.csv: 3 DTCs, decimal numbers, 0x0000 to 0xB21D, 1 item: Since\n", False),
]


def test_findings():
    for table, arguments, status, said, printed, is_new in FINDINGS:
        with folder(table) as environment:
            result = run(arguments, environment, input=table)
            check(arguments, (status, said, printed), (result.returncode, result.stderr.decode(), result.stdout.decode()))
            check(arguments, (is_new, BEFORE), (Path("out.xml").read_bytes() != OLD, files()))


# What becomes of --sarif, by the other arguments: exit status, and where nothing is written, what standard error says.
SARIF = [
    ("s.sarif in.csv out.xml", 0, None), ("s.sarif --strict in.csv out.xml", 1, None), ("s.sarif in.csv none/out.xml", 1, None),
    ("s.sarif none.csv out.xml", 1, None), ("- --check in.csv", 1, None),
    ("- in.csv -", 2, "and the document cannot both go"), ("- --json in.csv out.xml", 2, "and the JSON output cannot both go"),
    ("in.csv --force in.csv out.xml", 2, 'would overwrite "in.csv"'), ("./new.xml in.csv new.xml", 2, 'would overwrite "new.xml"'),
    ("out.xml in.csv new.xml", 2, '"out.xml" exists and is not a SARIF file'), ("s.sarif --no-findings in.csv out.xml", 2, "together"),
    ("- --check in.csv in.csv", 2, "and the results cannot both go"), ("none/s.sarif in.csv out.xml", 1, 'in the folder "none"'),
    ("/dev/full in.csv out.xml", 1, 'Could not write "/dev/full": No space left'),
]


def test_sarif():
    table = HEAD + b"1234;{0}](x\xe2\x80\xae;r\nTBD;[a\\](b)\x01;r\n"
    rules = re.findall("^## ([a-z]+-[a-z-]+)$", (SOURCES / "docs/findings.md").read_text(), re.MULTILINE)
    for arguments, status, refusal in SARIF:
        with folder(table) as environment:
            result = run("--sarif " + arguments, environment)
            check(arguments, (status, True), (result.returncode, (refusal or "") in result.stderr.decode()))
            is_there = os.path.exists("s.sarif")
            check(arguments, (refusal is None and "s.sarif" in arguments, True), (is_there, (refusal is None) >= (result.stdout != b"")))
            if refusal is not None:
                continue
            text = Path("s.sarif").read_bytes() if is_there else result.stdout
            only_run, = json.loads(text)["runs"]
            check("rules", rules, [rule["id"] for rule in only_run["tool"]["driver"]["rules"]])
            check(arguments, "none" not in arguments, only_run["invocations"][0]["executionSuccessful"])
            check(arguments, status, int(bool(only_run["invocations"][0]["toolExecutionNotifications"])))
            shown = [(found["ruleId"], rules[found["ruleIndex"]], found["level"], found["message"]["text"].split(" ")[:2],
                      found["locations"][0]["physicalLocation"].get("region"), found["locations"][0].get("logicalLocations"))
                     for found in only_run["results"]]
            cell = {"fullyQualifiedName": "A3", "kind": "cell"}
            check(arguments, [] if "none" in arguments else [
                ("number-unreadable",) * 2 + ("error", ["A3:", '"TBD"'], {"startLine": 3}, [cell]),
                ("notation-mixed",) * 2 + ("error", ["Cell", "A3"], None, None),
                ("text-not-xml",) * 2 + ("error", ["B3:", '"[a\\\\\\](b)<U+0001>"'], {"startLine": 3}, [dict(cell, fullyQualifiedName="B3")]),
            ], shown)
    with folder(table) as environment:
        names = [b"a #%:\\\xc3\xa4\xff\x1b.csv", os.path.abspath("in.csv").encode()]
        os.rename("in.csv", names[0])
        os.link(names[0], "in.csv")
        for name, uri in zip(names, ["a%20%23%25%3A%5C%C3%A4%FF%1B.csv", "file://" + os.path.abspath("in.csv")]):
            for content, is_replaced in (b"", True), (b'\xef\xbb\xbf\n{"version": "2.1.0", "runs"', True), (b'{"name":"sarif","version":"2.1.0"', False), (b"sarif", False):
                Path("s.json").write_bytes(content)
                status = subprocess.run([COMMAND, "--sarif", "s.json", name, "out.xml"], env=environment, capture_output=True).returncode
                check(f"{content} is replaced", (0 if is_replaced else 2, is_replaced), (status, Path("s.json").read_bytes() != content))
                if is_replaced:
                    result = json.loads(Path("s.json").read_bytes())["runs"][0]["results"][0]
                    check("uri", uri, result["locations"][0]["physicalLocation"]["artifactLocation"]["uri"])


def test_findings_of_many_files():
    for options, end, status in [("--output-dir out", "done: 1 error", 0), ("--check", "failed: 2 DTCs, SAE codes, 0x0000 to 0x0123, 1 item: Lamp. --check: 1 error.", 1),
                                 ("--strict --output-dir out", "failed: --strict: 1 error, so nothing was written.", 1)]:
        with folder(TABLE + b";t;r\n") as environment:
            Path("b.csv").write_bytes(TABLE)
            Path("c.csv").write_bytes(HEAD + b"P4123;t;r\nP0123;t;r\n")
            for last, summary in ("b.csv", (2, 1)), ("c.csv", (2, 2)):
                result = run(f"{options} in.csv {last}", environment)
                lines = result.stdout.decode().splitlines()
                check(options, f"in.csv: {end}", lines[0])
                passed = "b.csv: done" + ": 1 DTC, SAE codes, 0x0123 to 0x0123, 1 item: Lamp." * (options == "--check")
                check(options, passed if last == "b.csv" else "c.csv: failed: 1 error. Given SAE DTC 'P4123'", lines[1][:len(passed) if last == "b.csv" else 45])
                check(options, (status if last == "b.csv" else 1, f"{summary[1]} with errors."),
                      (result.returncode, result.stderr.decode().strip().split(", ")[-1]))
            for form in "--json", "":
                result = run(f"{options} {form} --force --sarif s.sarif --jobs 2 in.csv b.csv c.csv none.csv", environment)
                if form:
                    check(options, [1, 0, 1, 0], [len(report["findings"] or []) for report in map(json.loads, result.stdout.splitlines())])
                log, = json.loads(Path("s.sarif").read_bytes())["runs"]
                check(options, [("in.csv", 3), ("c.csv", 2)], [(place["artifactLocation"]["uri"], place["region"]["startLine"]) for found in log["results"]
                                                               for place in [found["locations"][0]["physicalLocation"]]])
                check(options, [True, True, False, False], [invocation["executionSuccessful"] for invocation in log["invocations"]])


run_tests(globals())
