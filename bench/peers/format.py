#!/usr/bin/python3
"""The import document of a table of SAE codes by formatting alone, without a tree: format.py INPUT OUTPUT"""

import csv
import sys

SYSTEMS = {"P": 0, "C": 1, "B": 2, "U": 3}

HEAD = ('<?xml version="1.0" encoding="utf-8" ?>\r\n'
        '<TAMRISKIMPORT dtdfilevers="1.5.2" xmlns:xsi="http://www.w3.org/2001/XMLSchema-instance" >'
        '<IMPORTDOC><DTCCOLLECTION>'
        '<SERVICEMAPPING diaginstance="Emission_Related_Trouble_Codes" variant="COMMON_DIAGNOSTICS" />\r\n')
TAIL = '</DTCCOLLECTION>\r\n</IMPORTDOC>\r\n</TAMRISKIMPORT>\r\n'


def escape(text):
    return text.replace("&", "&amp;").replace("<", "&lt;").replace(">", "&gt;")


def number(code):
    """P0123 is 291: two bits of system above the hexadecimal digits."""
    return int(code[1:], 16) | SYSTEMS[code[0]] << 4 * len(code) - 6


def element(name, content):
    return f"<{name}>{content}</{name}>\r\n" if content else f"<{name}/>\r\n"


def mappings(titles):
    return "".join(f'<ITEMMAPPING id="_{n}" type="RI" >{escape(title.strip())}</ITEMMAPPING>\r\n'
                   for n, title in enumerate(titles, 1))


def dtcs(rows, starts):
    for code, description, *items in rows:
        record = "".join([f"{start}{escape(item)}</RECORDITEM>\r\n"
                          for start, item in zip(starts, items) if item])
        yield (f'<DTC number="{number(code)}" >{element("ERRORTEXT", escape(description))}'
               f'{element("RECORD", record)}</DTC>\r\n')


def main():
    with open(sys.argv[1], encoding="utf-8", newline="") as table, \
         open(sys.argv[2], "w", encoding="utf-8", newline="") as output:
        rows = csv.reader(table, delimiter=";")
        titles = next(rows)[2:]
        starts = [f'<RECORDITEM itemmappingref="_{n}" >' for n in range(1, len(titles) + 1)]
        output.write(HEAD + element("RECORDTEMPLATEMAPPING", mappings(titles)) + "<DTCS>")
        output.writelines(dtcs(rows, starts))
        output.write("</DTCS>\r\n" + TAIL)


if __name__ == "__main__":
    main()
