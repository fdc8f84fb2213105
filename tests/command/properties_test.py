#!/usr/bin/python3
"""Usage: properties_test.py COMMAND ODBC_DRIVER
Random tables, the same in every run, written by Python's csv, its zip archives and xlwt: the documents, read back by
expat, have the cells of the tables and the numbers that the codes stand for, whatever the cells hold, and are the same
for every kind of input. Run it by hand with a number behind the others for that many tables."""

import csv
import io
import os
import random
import re
import struct
import subprocess
import sys
import tempfile
from pathlib import Path
from xml.etree import ElementTree
from xml.sax.saxutils import escape

import xlwt

from workbooks import make_workbook

COMMAND, ODBC_DRIVER = map(os.path.abspath, sys.argv[1:3])
TABLES = int(sys.argv[3]) if len(sys.argv) > 3 else 60
BLANKS = " \t\n\v\f\r"
LATIN = ["a", "Z", "0", " ", "\t", "\r", "\n", "\r\n", ";", ",", '"', "'", "<", ">", "&", "&lt;", "]]>", "=", "\xa0",
         "\xe4", "\xff", "\x7f", "\x80"]
WIDE = LATIN + ["\u20ac", "\u3042", "\ufffd", "\ufeff", "\u2028", "\ud7ff", "\ue000", "\U00010000", "\U0010ffff"]
FORBIDDEN = WIDE + [chr(unit) for unit in range(32)] + ["\ufffe", "\uffff"]

random = random.Random(20261123)


def signed(number):
    return struct.unpack("<i", struct.pack("<I", number & 0xFFFFFFFF))[0]


def sae_code(digits):
    letter, value = random.randrange(4), random.randrange(1 << (4 * digits - 2))
    return f"{'PCBU'[letter]}{value:0{digits}X}", (letter << (4 * digits - 2)) + value


def sae():
    code, number = sae_code(random.choice([4, 6]))
    return [random.choice([code, code.lower()])], number


def decimal():
    number = random.randrange(1 << 31)
    return [str(number)], number


def hexadecimal():
    number = random.randrange(1 << 32)
    return [f"0x{number:X}"], number


def spn_and_fmi():
    spn, fmi = random.randrange(1 << 19), random.randrange(32)
    return [str(spn), str(fmi)], (spn & 0xFF) << 16 | (spn >> 8 & 0xFF) << 8 | spn >> 16 << 5 | fmi


def base_and_type():
    code, base = sae_code(4)
    failure = random.randrange(256)
    return [code, random.choice([str(failure), hex(failure)])], base << 8 | failure


LAYOUTS = [(["Code"], sae), (["DTC"], decimal), (["dtc"], hexadecimal), (["SPN", "FMI"], spn_and_fmi),
           (["BaseDTC", "FTB"], base_and_type), (["DTC", "Failure Type"], base_and_type)]


def text(characters):
    return "".join(random.choices(characters, k=random.choice([0, 1, 3, 10])))


def make_table(characters):
    """The rows, the header among them, and what the document has to have: of each item its id and its text, of each
    DTC its number, its description and its items."""
    names, code = random.choice(LAYOUTS)
    columns = random.randrange(6)
    headers = [random.choice(["", " ", "\n"]) + f"h{text(characters)}{column}" + random.choice(["", " \t"])
               for column in range(columns)]
    rows, dtcs = [[*names, "Text", *headers]], []
    for _ in range(random.choice([0, 1, 20])):
        codes, number = code()
        description, *items = (text(characters) for _ in range(columns + 1))
        rows.append([*codes, description, *items])
        dtcs.append((str(signed(number)), description, [(f"_{id}", item) for id, item in enumerate(items, 1) if item]))
    return rows, [(f"_{id}", header.strip(BLANKS)) for id, header in enumerate(headers, 1)], dtcs


def write_csv(rows, separator, encoding):
    """Python leaves out quotes that we need where lines end with a line feed alone."""
    end, quoting = random.choice([("\r\n", csv.QUOTE_MINIMAL), ("\n", csv.QUOTE_ALL)])
    table = io.StringIO(newline="")
    csv.writer(table, delimiter=separator, lineterminator=end, quoting=quoting).writerows(rows)
    Path("in.csv").write_bytes(table.getvalue().encode(encoding))


def may_be_number(text):
    """A whole number that every source writes alike is now and then a number in the workbook."""
    return re.fullmatch("0|[1-9][0-9]{0,5}", text) and random.choice([True, False])


def workbook_cell(text):
    if not text:
        return "<c/>"
    if may_be_number(text):
        return f"<c><v>{text}</v></c>"
    escaped = escape(text, {"\r": "&#13;"})
    return f'<c t="inlineStr"><is><t xml:space="preserve">{escaped}</t></is></c>'


def write_workbook(rows):
    Path("in.xlsx").write_bytes(make_workbook({"DTC": "".join("<row>" + "".join(map(workbook_cell, row)) + "</row>" for row in rows)}))


def write_older_workbook(rows):
    workbook = xlwt.Workbook()
    sheet = workbook.add_sheet("DTC")
    for place, row in enumerate(rows):
        for column, text in enumerate(row):
            if text:
                sheet.write(place, column, int(text) if may_be_number(text) else text)
    workbook.save("in.xls")


def convert(*arguments):
    options = {"ASAN_OPTIONS": "detect_leaks=0"} if "-o" in arguments else {}  # which fails once a driver was unloaded
    subprocess.run([COMMAND, *arguments, "out.xml"], check=True, timeout=60, stderr=subprocess.DEVNULL, env=dict(os.environ, **options))
    return Path("out.xml").read_bytes()


def read_xml(document):
    """What an XML reader finds in the document: ids and texts of items; numbers, descriptions and items of DTCs."""
    root = ElementTree.fromstring(document)
    items = [(item.get("id"), item.text or "") for item in root.iter("ITEMMAPPING")]
    return items, [(dtc.get("number"), *(text.text or "" for text in dtc.iter("ERRORTEXT")),
                    [(item.get("itemmappingref"), item.text or "") for item in dtc.iter("RECORDITEM")])
                   for dtc in root.iter("DTC")]


def in_xml(cell):
    """What reaches an XML reader of a cell."""
    return cell.replace("\n", "\r\n").replace("\r\n", "\n").replace("\r", "\n")


def each_text(items, dtcs, change):
    return ([(id, change(item)) for id, item in items],
            [(number, change(description), [(id, change(item)) for id, item in record])
             for number, description, record in dtcs])


def check(number, table, name, expected, actual):
    if expected != actual:
        sys.exit(f"Table {number}, {name}:\n  table    {table!r}\n  expected {expected!r}\n  actual   {actual!r}")


def read_texts(document):
    """The texts as they are written, in their order."""
    return re.findall("(?s)<(?:ITEMMAPPING|ERRORTEXT|RECORDITEM)(?: [^>]*)?>(.*?)</(?:I|E|R)", document)


def test_table(number):
    encoding, option, characters = random.choice([("latin-1", [], LATIN), ("utf-8", ["-u"], WIDE),
                                                  ("utf-8-sig", ["-u"], WIDE), ("utf-8", ["-u"], FORBIDDEN)])
    separator, name = random.choice([(";", "semicolon"), (",", "comma"), ("\t", "tab"), ("|", "|")])
    rows, *expected = make_table(characters)
    write_csv(rows, separator, encoding)
    document = convert(*option, "-s", name, "in.csv")
    # A carriage return before a line feed is dropped when a text is read.
    items, dtcs = each_text(*expected, lambda cell: cell.replace("\r\n", "\n"))
    texts = [item for _, item in items]
    for _, description, record in dtcs:
        texts += ([description] if description else []) + [item for _, item in record]
    check(number, rows, "texts", [escape(cell).replace("\n", "\r\n") for cell in texts],
          read_texts(document.decode()))
    if characters is FORBIDDEN:
        return
    check(number, rows, "XML", each_text(items, dtcs, in_xml), read_xml(document))
    rows = [[cell.replace("\r\n", "\n") for cell in row] for row in rows]
    write_workbook(rows)
    write_older_workbook(rows)
    for kind in "-x", "-o":
        for name in "in.xlsx", "in.xls":
            check(number, rows, f"{kind} {name}", document, convert(kind, name))


with tempfile.TemporaryDirectory() as folder:
    os.chdir(folder)
    Path("odbcinst.ini").write_text(f"[Excel]\nDriver={ODBC_DRIVER}\n")
    os.environ.update(ODBCSYSINI=folder, ODBCINI="/dev/null")
    for number in range(TABLES):
        test_table(number)
    os.chdir("/")
