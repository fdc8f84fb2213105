#!/usr/bin/python3
"""The import document of a workbook of SAE codes through openpyxl, as little of it as it can hold in memory, and
the standard library's tree: workbook_tree.py INPUT OUTPUT"""

import sys

from openpyxl import load_workbook

from tree import document


def rows(path):
    """The first worksheet's rows as texts; its numbers have to be whole."""
    workbook = load_workbook(path, read_only=True)
    for row in workbook.worksheets[0].iter_rows(values_only=True):
        yield ["" if value is None else str(value) for value in row]


def main():
    document(rows(sys.argv[1])).write(sys.argv[2], encoding="utf-8", xml_declaration=True)


if __name__ == "__main__":
    main()
