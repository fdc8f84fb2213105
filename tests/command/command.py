"""What the tests of the command share where it runs as the program that they are given."""

import os
import subprocess
import sys

COMMAND = os.path.abspath(sys.argv[1])
BEFORE = ["./in.csv", "./out.xml"]
HEAD = b"DTC;Text;Lamp\n"
TABLE = HEAD + b"P0123;Stuck;red\n"
KEPT = 'xls2tki: The output "%s" exists and is not an import document; use --force to replace it.\n'
NO_FILE = "xls2tki: Error opening inputfile:\n'%s'\n"
HELP = "xls2tki: Hint: %s\n"
ROW = ('The row begins in line %s of "%s", with cell A%s. It needs as many separators as the header has; a cell with a separator in it '
       "needs double quotes around it.")
IO = "in.csv out.xml"


def run(arguments, environment, **options):
    if arguments[:2] == "-o":  # the leak sanitizer fails once a driver was unloaded
        environment = dict(environment, ASAN_OPTIONS="detect_leaks=0")
    return subprocess.run([COMMAND, *arguments.split(b" " if isinstance(arguments, bytes) else " ")],
                          env=environment, capture_output=True, timeout=300, **options)
