"""Runs the programs to compare on one input, in rounds, and tells what they took.

What is compared is a module with
  INPUT            the path of the file that the programs read
  GOAL_ROWS        the size of the table that the goals are meant for
  make_input(rows) writes it
  command()        the command line of xls2tki
  peers(rows)      the other programs, name -> Program; called when the command has written WANTED
  goals(all)       for each goal its words, the figure reached, and whether that does
"""

import csv
import os
import statistics
import subprocess
import sys
import time
from dataclasses import dataclass
from itertools import zip_longest
from pathlib import Path
from typing import Callable, Optional
from xml.etree import ElementTree

ROOT = Path(__file__).resolve().parent.parent
BUILD = ROOT / "build" / "release"
FOLDER = ROOT / "build" / "bench"
PEERS = ROOT / "bench" / "peers"
TABLE = FOLDER / "table.csv"
OUTPUT = FOLDER / "output"
WANTED = FOLDER / "document.xml"

COMMAND = "xls2tki"


@dataclass
class Program:
    """A program to time, in one round of so many."""
    arguments: list
    # Whether OUTPUT is what it should be; None if that is not looked at.
    is_right: Optional[Callable[[], bool]]
    every: int = 1


def make_table(rows):
    subprocess.run([sys.executable, ROOT / "bench" / "make_table.py", str(rows), TABLE], check=True)


def run(arguments):
    """Runs a program to its end; the seconds it took and the megabytes it held at its peak."""
    arguments = [str(argument) for argument in arguments]
    OUTPUT.unlink(missing_ok=True)
    start = time.perf_counter()
    process = os.posix_spawnp(arguments[0], arguments, os.environ)
    _, status, usage = os.wait4(process, 0)
    seconds = time.perf_counter() - start
    if status != 0:
        sys.exit(f"{' '.join(arguments)}: exit status {os.waitstatus_to_exitcode(status)}")
    return seconds, usage.ru_maxrss * 1024 / 1e6


def same(ours, theirs):
    return all(one == other for one, other in zip_longest(ours, theirs))


def content(path):
    """The elements in document order: name, attributes, number of children, text."""
    for element in ElementTree.parse(path).iter():
        text = element.text or ""
        yield element.tag, element.attrib, len(element), text.strip() if len(element) else text


def has_same_elements():
    """For programs that decide on blanks and line breaks themselves."""
    return same(content(WANTED), content(OUTPUT))


def has_same_cells():
    """For programs that write CSV."""
    with open(TABLE, encoding="utf-8", newline="") as table, open(OUTPUT, encoding="utf-8", newline="") as output:
        return same(csv.reader(table, delimiter=";"), csv.reader(output))


def in_a_process_of_its_own(check):
    """The system counts the peak memory of the process that starts a program as the program's, so this one has to
    stay small."""
    process = os.fork()
    if process == 0:
        os._exit(0 if check() else 1)
    return os.waitpid(process, 0)[1] == 0


def prepare(contest, rows):
    """Makes the input and the document to expect, checks the programs on it, returns them."""
    contest.make_input(rows)
    command = Program(contest.command(), None)
    run(command.arguments)
    OUTPUT.replace(WANTED)
    peers = contest.peers(rows)
    for name, program in peers.items():
        if program.is_right is not None:
            run(program.arguments)
            if not in_a_process_of_its_own(program.is_right):
                sys.exit(f"{name}: {OUTPUT} is not what it should be beside the document of {COMMAND}, {WANTED}")
    return {COMMAND: command, **peers}


class Measurement:
    """What the runs on one input gave: for each program one (seconds, megabytes) a round it took part in."""

    def __init__(self, contest, rows, rounds):
        print(f"{contest.INPUT.name}, {rows} rows ...", file=sys.stderr)
        self.programs = prepare(contest, rows)
        self.rows = rows
        self.input_size, self.output_size = contest.INPUT.stat().st_size, WANTED.stat().st_size
        self.runs = {name: [] for name in self.programs}
        for turn in range(rounds):
            # What ran before matters, by the memory and the disk it leaves behind: every other round runs backwards.
            for name, program in list(self.programs.items())[:: 1 if turn % 2 == 0 else -1]:
                if turn % program.every == 0:
                    self.runs[name].append(run(program.arguments))

    def seconds(self, name, choose=statistics.median):
        return choose([seconds for seconds, _ in self.runs[name]])

    def megabytes(self, name):
        return statistics.median(megabytes for _, megabytes in self.runs[name])

    def ratio(self, name):
        """How many times as long as the command; runs of one round are compared with each other."""
        own = self.runs[COMMAND][:: self.programs[name].every]
        return statistics.median(theirs[0] / ours[0] for theirs, ours in zip(self.runs[name], own))

    def best_over(self, name):
        """The command at best over the other at best: what disturbs a short run must not flatter the command."""
        return self.seconds(COMMAND, min) / self.seconds(name, min)


def at_least_as_fast(measured, wanted):
    """Goals of so many times as fast as each of these programs."""
    for name, times in wanted.items():
        ratio = measured.ratio(name)
        yield f"at least {times} times as fast as {name}", f"{ratio:.2f} times", ratio >= times


def table(measurements):
    ratio = f"ratio to {COMMAND}"
    yield f"{'rows':>9}  {'command':<22} {'seconds':>8} {'at best':>8} {ratio:>17} {'MB peak':>8}"
    for measured in measurements:
        for name in measured.runs:
            seconds = f"{measured.seconds(name):>8.3f} {measured.seconds(name, min):>8.3f}"
            yield (f"{measured.rows:>9}  {name:<22} {seconds} {measured.ratio(name):>17.2f}"
                   f" {measured.megabytes(name):>8.0f}")
        yield f"{'':>9}  ({measured.input_size / 1e6:.1f} MB in, {measured.output_size / 1e6:.1f} MB out)"


def report(contest, measurements):
    yield from table(measurements)
    yield ""
    yield f"Goals, which are meant for {contest.GOAL_ROWS} rows, at {measurements[-1].rows} rows:"
    for words, figure, reached in contest.goals(measurements):
        yield f"  {'reached' if reached else 'NOT reached':<12} {words}: {figure}"
