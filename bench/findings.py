"""The command with findings against itself without, on a table that has none and on one that has two in every row."""

import csv

from runs import BUILD, COMMAND, FOLDER, OUTPUT, TABLE, WANTED, Program, make_table

INPUT = FOLDER / "clean.csv"
FAULTY = FOLDER / "faulty.csv"
GOAL_ROWS = 100_000

WITHOUT = "without findings"
EVERY_ROW = "faults in every row"
EVERY_ROW_WITHOUT = "they without findings"


def make_input(rows):
    """The usual table with a number of its own for each row; in the other one a control character behind each
    description, and each number twice."""
    make_table(rows)
    with (open(TABLE, encoding="utf-8", newline="") as table, open(INPUT, "w", encoding="utf-8", newline="") as clean,
          open(FAULTY, "w", encoding="utf-8", newline="") as faulty):
        header, *cells = csv.reader(table, delimiter=";")
        for output, numbers_each, mark in (clean, 1, ""), (faulty, 2, "\x85"):
            writer = csv.writer(output, delimiter=";")
            writer.writerow(header)
            writer.writerows([f"0x{row // numbers_each:X}", text + mark, *items]
                             for row, (_, text, *items) in enumerate(cells))


def converting(table, *options):
    return [BUILD / "bin" / "xls2tki", *options, table, OUTPUT]


def command():
    return converting(INPUT)


def peers(_rows):
    return {
        WITHOUT: Program(converting(INPUT, "--no-findings"), lambda: OUTPUT.read_bytes() == WANTED.read_bytes()),
        EVERY_ROW: Program(converting(FAULTY), None),
        EVERY_ROW_WITHOUT: Program(converting(FAULTY, "--no-findings"), None),
    }


def goals(measurements):
    largest = measurements[-1]
    for words, most, name, without in [("on a clean table", 1.1, COMMAND, WITHOUT),
                                       ("with faults in every row", 1.2, EVERY_ROW, EVERY_ROW_WITHOUT)]:
        times = largest.seconds(name, min) / largest.seconds(without, min)
        yield f"at most {most} times as long with findings {words}", f"{times:.2f} times", times <= most
        memory = largest.megabytes(name) / largest.megabytes(without)
        yield f"at most 1.05 times the memory {words}", f"{memory:.2f} times", memory <= 1.05
