#!/usr/bin/python3
"""Times whole conversions as a user sees them, against what one would write instead, on the same tables.

Every table is first converted once by each program and what they write is compared. The timed runs follow in
rounds, one run of every program a round, so that all share the machine's moods; a ratio is the median over
the rounds. The slowest programs take part in some rounds only."""

import argparse

import csv_tables
import findings
import older_workbooks
import workbooks
from runs import FOLDER, Measurement, report


# What is measured, by the option that chooses it alone.
CONTESTS = {"csv": csv_tables, "findings": findings, "workbooks": workbooks, "xls": older_workbooks}


def sizes(options, contest):
    if options.rows:
        return sorted(options.rows)
    usual = [rows for rows in (10_000, 100_000, 1_000_000) if rows < contest.GOAL_ROWS] + [contest.GOAL_ROWS]
    return usual[:2] if options.quick else usual


def measurements(options, contest):
    return [Measurement(contest, rows, options.rounds or (13 if rows <= 100_000 else 7))
            for rows in sizes(options, contest)]


def main():
    parser = argparse.ArgumentParser(description=__doc__, prog="scripts/bench")
    parser.add_argument("--quick", action="store_true", help="10 and 100 thousand rows only")
    parser.add_argument("--rows", type=int, nargs="+", help="tables of so many rows instead")
    parser.add_argument("--rounds", type=int, help="so many rounds a table, instead of more for smaller ones")
    only = parser.add_mutually_exclusive_group()
    for name in CONTESTS:
        only.add_argument(f"--{name}", action="store_const", dest="only", const=name, help=f"{name} only")
    options = parser.parse_args()
    FOLDER.mkdir(parents=True, exist_ok=True)
    with open(FOLDER / "result.txt", "w", encoding="utf-8") as results:
        for name in [options.only] if options.only else CONTESTS:
            text = "\n".join(report(CONTESTS[name], measurements(options, CONTESTS[name]))) + "\n"
            results.write(text)
            print(text, flush=True)


if __name__ == "__main__":
    main()
