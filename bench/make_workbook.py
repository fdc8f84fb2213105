#!/usr/bin/python3
"""Writes a CSV table of make_table.py as a workbook, the same bytes for the same table: make_workbook.py TABLE OUTPUT

The texts are shared strings, as spreadsheet programs write them; an empty cell is left out. A cell of digits
alone becomes a number: such are whole and below a hundred, so that all programs write them the same way."""

import csv
import datetime
import sys

import xlsxwriter


def main():
    with open(sys.argv[1], encoding="utf-8", newline="") as table, xlsxwriter.Workbook(sys.argv[2]) as workbook:
        workbook.set_properties({"created": datetime.datetime(2024, 1, 1)})
        sheet = workbook.add_worksheet("DTCs")
        for row, cells in enumerate(csv.reader(table, delimiter=";")):
            for column, text in enumerate(cells):
                if text.isdecimal():
                    sheet.write_number(row, column, int(text))
                elif text:
                    sheet.write_string(row, column, text)


if __name__ == "__main__":
    main()
