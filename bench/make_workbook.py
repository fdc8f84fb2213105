#!/usr/bin/python3
"""Writes a CSV table of make_table.py as a workbook, the same bytes for the same table: make_workbook.py TABLE OUTPUT

The texts are shared strings, as spreadsheet programs write them; an empty cell is left out. A cell of digits
alone becomes a number: such are whole and below a hundred, so that all programs write them the same way. The
workbook is .xls if its name says so, else .xlsx."""

import csv
import datetime
import sys

import xlsxwriter
import xlwt


def fill(sheet, table):
    for row, cells in enumerate(csv.reader(table, delimiter=";")):
        for column, text in enumerate(cells):
            if text:
                sheet.write(row, column, int(text) if text.isdecimal() else text)


def main():
    with open(sys.argv[1], encoding="utf-8", newline="") as table:
        if sys.argv[2].endswith(".xls"):
            workbook = xlwt.Workbook()
            fill(workbook.add_sheet("DTCs"), table)
            workbook.save(sys.argv[2])
            return
        with xlsxwriter.Workbook(sys.argv[2], {"strings_to_formulas": False, "strings_to_urls": False}) as workbook:
            workbook.set_properties({"created": datetime.datetime(2024, 1, 1)})
            fill(workbook.add_worksheet("DTCs"), table)


if __name__ == "__main__":
    main()
