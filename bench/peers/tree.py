#!/usr/bin/python3
"""The import document of a table of SAE codes through the standard library's tree: tree.py INPUT OUTPUT

The tree's writer decides on the blanks inside tags and the declaration's quotes; all else is as asked for."""

import csv
import sys
from xml.etree.ElementTree import Element, ElementTree, SubElement

SYSTEMS = {"P": 0, "C": 1, "B": 2, "U": 3}


def number(code):
    """P0123 is 291: two bits of system above the hexadecimal digits."""
    return int(code[1:], 16) | SYSTEMS[code[0]] << 4 * len(code) - 6


def add(parent, name, text=None, **attributes):
    child = SubElement(parent, name, attributes)
    child.text = text
    child.tail = "\r\n"
    return child


def document(rows):
    root = Element("TAMRISKIMPORT", {"dtdfilevers": "1.5.2",
                                     "xmlns:xsi": "http://www.w3.org/2001/XMLSchema-instance"})
    root.tail = "\r\n"
    collection = add(add(root, "IMPORTDOC"), "DTCCOLLECTION")
    add(collection, "SERVICEMAPPING", diaginstance="Emission_Related_Trouble_Codes",
        variant="COMMON_DIAGNOSTICS")
    mappings = add(collection, "RECORDTEMPLATEMAPPING")
    for n, title in enumerate(next(rows)[2:], 1):
        add(mappings, "ITEMMAPPING", title.strip(), id=f"_{n}", type="RI")
    dtcs = add(collection, "DTCS")
    for code, description, *items in rows:
        dtc = add(dtcs, "DTC", number=str(number(code)))
        add(dtc, "ERRORTEXT", description)
        record = add(dtc, "RECORD")
        for n, item in enumerate(items, 1):
            if item:
                add(record, "RECORDITEM", item, itemmappingref=f"_{n}")
    return ElementTree(root)


def main():
    with open(sys.argv[1], encoding="utf-8", newline="") as table:
        tree = document(csv.reader(table, delimiter=";"))
    tree.write(sys.argv[2], encoding="utf-8", xml_declaration=True)


if __name__ == "__main__":
    main()
