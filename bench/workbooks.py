"""Workbooks, against the floor and against programs that read them. Those that write CSV do less than the
command: no document."""

import subprocess
import sys
import zipfile

from runs import (BUILD, COMMAND, FOLDER, OUTPUT, PEERS, ROOT, TABLE, Program, at_least_as_fast, has_same_cells,
                  has_same_elements, make_table)

INPUT = FOLDER / "table.xlsx"
GOAL_ROWS = 100_000

FLOOR = "libzip and expat alone"
XLSX2CSV = "xlsx2csv"
SSCONVERT = "ssconvert"
OPENPYXL = "openpyxl, tree"


def make_input(rows):
    make_table(rows)
    subprocess.run([sys.executable, ROOT / "bench" / "make_workbook.py", TABLE, INPUT], check=True)


def command():
    return [BUILD / "bin" / "xls2tki", INPUT, OUTPUT]


def has_seen_all():
    """The floor's first number is how many bytes it has inflated."""
    with zipfile.ZipFile(INPUT) as workbook:
        return int(OUTPUT.read_text().split()[0]) == sum(part.file_size for part in workbook.infolist())


def peers(_rows):
    return {
        FLOOR: Program([BUILD / "bench" / "inflate", INPUT, OUTPUT], has_seen_all),
        XLSX2CSV: Program(["xlsx2csv", INPUT, OUTPUT], has_same_cells),
        SSCONVERT: Program(["ssconvert", "--export-type=Gnumeric_stf:stf_csv", INPUT, OUTPUT], has_same_cells),
        OPENPYXL: Program([sys.executable, PEERS / "workbook_tree.py", INPUT, OUTPUT], has_same_elements, every=2),
    }


def goals(measurements):
    largest = measurements[-1]
    yield from at_least_as_fast(largest, {XLSX2CSV: 3, OPENPYXL: 10})
    floor = largest.best_over(FLOOR)
    yield f"at most 2.3 times {FLOOR}", f"{floor:.2f} times", floor <= 2.3
    megabytes = largest.megabytes(COMMAND)
    yield "less than 200 MB", f"{megabytes:.0f} MB", megabytes < 200
