#!/usr/bin/python3
"""The import document of an .xls workbook of SAE codes through xlrd and the standard library's tree:
older_workbook_tree.py INPUT OUTPUT"""

import sys

from xlrd import open_workbook

from tree import document


def rows(path):
    """The first worksheet's rows as texts; its numbers have to be whole."""
    for row in open_workbook(path).sheet_by_index(0).get_rows():
        yield [cell.value if isinstance(cell.value, str) else str(int(cell.value)) for cell in row]


def main():
    document(rows(sys.argv[1])).write(sys.argv[2], encoding="utf-8", xml_declaration=True)


if __name__ == "__main__":
    main()
