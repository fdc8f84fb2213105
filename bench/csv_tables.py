"""CSV tables, against the floor and against what one would write instead."""

import filecmp
import sys

from runs import (BUILD, COMMAND, OUTPUT, PEERS, TABLE, WANTED, Program, at_least_as_fast, has_same_elements,
                  make_table)

INPUT = TABLE
GOAL_ROWS = 1_000_000

PUGIXML = "libcsv and pugixml"
FORMAT = "Python, formatting"
TREE = "Python, tree"
FLOOR = "floor"

# To be compared, the documents of some are parsed, up to so many rows.
MOST_ROWS_PARSED = 100_000

make_input = make_table


def command():
    return [BUILD / "bin" / "xls2tki", "--utf8", "--variant", "COMMON_DIAGNOSTICS",
            "--diag-instance", "Emission_Related_Trouble_Codes", TABLE, OUTPUT]


def peers(rows):
    size = WANTED.stat().st_size
    parsed = has_same_elements if rows <= MOST_ROWS_PARSED else None
    return {
        FLOOR: Program([BUILD / "bench" / "floor", TABLE, OUTPUT, size], lambda: OUTPUT.stat().st_size == size),
        PUGIXML: Program([BUILD / "bench" / "pugixml", TABLE, OUTPUT], parsed),
        FORMAT: Program([sys.executable, PEERS / "format.py", TABLE, OUTPUT],
                        lambda: filecmp.cmp(OUTPUT, WANTED, shallow=False)),
        TREE: Program([sys.executable, PEERS / "tree.py", TABLE, OUTPUT], parsed, every=4),
    }


def goals(measurements):
    largest = measurements[-1]
    yield from at_least_as_fast(largest, {PUGIXML: 2, TREE: 20, FORMAT: 3.5})
    # On the table where it looks worse.
    floors = max(each.best_over(FLOOR) for each in measurements[-2:])
    yield "at most 2.3 times the floor", f"{floors:.2f} times", floors <= 2.3
    own, other = largest.megabytes(COMMAND), largest.megabytes(PUGIXML)
    yield f"less memory than {PUGIXML}", f"{own:.0f} MB against {other:.0f} MB", own < other
    if len(measurements) > 1:
        before = measurements[-2]
        growth = largest.seconds(COMMAND) / before.seconds(COMMAND) / (largest.rows / before.rows)
        yield f"time a row within 1.3 times that at {before.rows} rows", f"{growth:.2f} times", growth <= 1.3
