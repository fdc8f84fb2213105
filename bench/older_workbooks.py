"""Workbooks of the older kind (.xls), against the same table as .xlsx and against a program that reads them."""

import subprocess
import sys

from runs import (BUILD, COMMAND, FOLDER, OUTPUT, PEERS, ROOT, TABLE, WANTED, Program, at_least_as_fast,
                  has_same_elements, make_table)

INPUT = FOLDER / "table.xls"
GOAL_ROWS = 60_000  # such a worksheet has at most 65,536

NEWER = "the same as .xlsx"
XLRD = "xlrd, tree"


def make_input(rows):
    make_table(rows)
    for workbook in INPUT, newer():
        subprocess.run([sys.executable, ROOT / "bench" / "make_workbook.py", TABLE, workbook], check=True)


def newer():
    return INPUT.with_suffix(".xlsx")


def command(workbook=INPUT):
    return [BUILD / "bin" / "xls2tki", workbook, OUTPUT]


def peers(_rows):
    return {
        NEWER: Program(command(newer()), lambda: OUTPUT.read_bytes() == WANTED.read_bytes()),
        XLRD: Program([sys.executable, PEERS / "older_workbook_tree.py", INPUT, OUTPUT], has_same_elements, every=2),
    }


def goals(measurements):
    largest = measurements[-1]
    yield from at_least_as_fast(largest, {NEWER: 2, XLRD: 10})
    ours, theirs = (largest.megabytes(name) for name in (COMMAND, NEWER))
    yield f"no more memory than {NEWER}", f"{ours:.0f} MB, {theirs:.0f} MB", ours <= theirs
