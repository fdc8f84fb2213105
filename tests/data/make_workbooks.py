#!/usr/bin/python3
"""Usage: make_workbooks.py
Makes the workbooks in the folder beside it, and for each a text of what its cells hold as openpyxl reads them,
corrected where openpyxl is known to read something else. soffice makes one of the workbooks, if it is there."""

import datetime
import pathlib
import re
import shutil
import subprocess
import tempfile
import zipfile

import openpyxl
import xlsxwriter

FOLDER = pathlib.Path(__file__).parent / "workbooks"
MAIN = "http://schemas.openxmlformats.org/spreadsheetml/2006/main"
REFERENCES = "http://schemas.openxmlformats.org/officeDocument/2006/relationships"
STRICT_MAIN = "http://purl.oclc.org/ooxml/spreadsheetml/main"
STRICT_REFERENCES = "http://purl.oclc.org/ooxml/officeDocument/relationships"
PACKAGE = "http://schemas.openxmlformats.org/package/2006/relationships"
TYPES = '<Types xmlns="http://schemas.openxmlformats.org/package/2006/content-types">%s</Types>' % "".join(
    f'<Override PartName="/xl/{part}.xml" ContentType="application/vnd.openxmlformats-officedocument.'
    f'spreadsheetml.{kind}+xml"/>' for part, kind in
    (("workbook", "sheet.main"), ("worksheets/sheet1", "worksheet"), ("sharedStrings", "sharedStrings")))
ERRORS = {"#NULL!": 2000, "#DIV/0!": 2007, "#VALUE!": 2015, "#REF!": 2023, "#NAME?": 2029, "#NUM!": 2036,
          "#N/A": 2042, "#GETTING_DATA": 2043}

# Where openpyxl reads something else: cells of the first worksheet.
CORRECTIONS = {
    "byhand": {  # it leaves escapes and blanks at the ends as they are and takes an empty text for no cell
        "A3": ("t", "a\r\n_x0041_"), "B3": ("t", "rs"), "C1": ("t", "too"), "C2": ("t", ""), "A6": ("t", "")},
}
# openpyxl knows neither the strict namespace nor ISO dates that count from 1904, nor true for 1.
STRICT = [("Strict", {"A1": ("n", 42735.0), "B1": ("t", "\u00e4\u20ac\U0001f600"), "C1": ("n", 0.25), "D1": ("b", 1),
                      "XFD1048576": ("n", -1.5e-300)})]


def relationships(base, *entries):
    return f'<Relationships xmlns="{PACKAGE}">' + "".join(
        f'<Relationship Id="r{index}" Type="{base}/{kind}" Target="{target}"/>'
        for index, (kind, target) in enumerate(entries, 1)) + "</Relationships>"


def write(name, parts):
    with zipfile.ZipFile(FOLDER / name, "w", zipfile.ZIP_DEFLATED) as archive:
        for part, content in parts.items():
            info = zipfile.ZipInfo(part, (2024, 1, 1, 0, 0, 0))
            info.compress_type = zipfile.ZIP_DEFLATED
            with archive.open(info, "w", force_zip64=True) as file:
                file.write(content if isinstance(content, bytes) else content.encode())


def make_byhand():
    """Prefixes, cells that do not say where they are, texts in all their forms, foreign elements in between."""
    rows = (
        '<x:row r="1"><x:c r="A1" t="s"><x:v>0</x:v></x:c><x:c r="B1" t="s"><x:v> 1 </x:v></x:c>'
        '<x:c t="s"><x:v>2</x:v></x:c><x:c r="XFD1"><x:v>1</x:v></x:c></x:row>'
        '<x:row><x:c><x:v>-1.5E3</x:v></x:c><x:c/><x:c t="s"><x:v>3</x:v></x:c></x:row>'
        '<!-- a comment --><x:row r="3"><x:c r="A3" t="inlineStr"><x:is><x:t>a_x000D_\n_x005F_x0041_</x:t></x:is>'
        '</x:c><x:c t="inlineStr"><x:is><x:r><x:rPr><x:b/></x:rPr><x:t>r</x:t></x:r><x:r><x:t> s</x:t></x:r>'
        '<x:rPh sb="0" eb="1"><x:t>no</x:t></x:rPh></x:is></x:c>'
        '<x:c t="inlineStr"><x:is><x:t><![CDATA[<&>]]>&lt;&#65;</x:t></x:is></x:c></x:row>'
        '<x:row r="4"><x:c r="A4" t="b"><x:v>1</x:v></x:c><x:c t="b"><x:v>0</x:v></x:c><x:c t="e"><x:v>#N/A</x:v>'
        '</x:c></x:row>'
        '<f:row r="9"><f:c r="A9"><f:v>9</f:v></f:c></f:row>'
        '<x:row r="6"><x:c r="A6" t="str"><x:v></x:v></x:c><x:c r="B6" t="d"><x:v>2021-01-01T12:00:00Z</x:v></x:c>'
        '<x:c r="C6" t="d"><x:v>18:00</x:v></x:c><x:c r="D6"><x:v/></x:c></x:row>'
        '<x:row r="5"><x:c r="B5"><x:v>0.1</x:v></x:c><x:c r="A5"><x:v>12345678901234567</x:v></x:c></x:row>')
    strings = ('<si><t>plain</t></si><si><t xml:space="preserve"> kept </t></si><si><t> too </t></si>'
               '<si><t/></si>')
    write("byhand.xlsx", {
        "[Content_Types].xml": TYPES,
        "_rels/.rels": relationships(REFERENCES, ("officeDocument", "/xl/workbook.xml")),
        "xl/workbook.xml": f'<w:workbook xmlns:w="{MAIN}" xmlns:q="{REFERENCES}"><w:sheets>'
                           '<w:sheet name="A &amp; &#228;" sheetId="7" q:id="r1"/></w:sheets></w:workbook>',
        "xl/_rels/workbook.xml.rels": relationships(REFERENCES, ("worksheet", "/xl/worksheets/sheet1.xml"),
                                                    ("sharedStrings", "sharedStrings.xml")),
        "xl/sharedStrings.xml": f'<sst xmlns="{MAIN}">{strings}</sst>'.encode("utf-16"),
        "xl/worksheets/sheet1.xml": f'<x:worksheet xmlns:x="{MAIN}" xmlns:f="urn:foreign"><x:dimension ref="A1"/>'
                                    f"<x:sheetData>{rows}</x:sheetData></x:worksheet>"})


def make_strict():
    rows = ('<row r="1"><c r="A1" t="d"><v>2021-01-01</v></c><c r="B1" t="s"><v>0</v></c><c r="C1" t="d">'
            '<v>06:00:00</v></c><c t="b"><v>true</v></c></row><row r="1048576"><c r="XFD1048576"><v>-1.5E-300</v></c></row>')
    write("strict.xlsx", {
        "_rels/.rels": relationships(STRICT_REFERENCES, ("officeDocument", "./xl\\workbook.xml")),
        "XL/Workbook.xml": f'<workbook xmlns="{STRICT_MAIN}" xmlns:r="{STRICT_REFERENCES}">'
                           '<workbookPr date1904="true"/><sheets><sheet name="Strict" sheetId="1" r:id="r1"/>'
                           "</sheets></workbook>",
        "xl/_rels/workbook.xml.rels": relationships(STRICT_REFERENCES, ("worksheet", "../xl/sheet%201.xml"),
                                                    ("sharedStrings", "strings.xml")),
        "xl/strings.xml": f'<sst xmlns="{STRICT_MAIN}"><si><t>\u00e4\u20ac\U0001f600</t></si></sst>',
        "xl/sheet 1.xml": f'<worksheet xmlns="{STRICT_MAIN}"><sheetData>{rows}</sheetData></worksheet>'})


def make_openpyxl():
    book = openpyxl.Workbook()
    sheet = book.active
    sheet.append(["DTC", 1, -0.1, 1e300, True, False, datetime.datetime(2024, 2, 29, 12), "#REF!", " b ", "ä€😀"])
    sheet["C5"], sheet["D5"] = "=1+1", "line\nline"
    sheet.column_dimensions["A"].width = 20
    book.create_sheet("Hidden").sheet_state = "hidden"
    book["Hidden"]["ZZ700"] = 7
    book.create_chartsheet("Chart").add_chart(openpyxl.chart.BarChart())
    book.create_sheet("Empty")
    book.save(FOLDER / "openpyxl.xlsx")


def make_xlsxwriter():
    with xlsxwriter.Workbook(FOLDER / "xlsxwriter.xlsx") as book:
        book.set_properties({"created": datetime.datetime(2024, 1, 1)})
        sheet = book.add_worksheet("Formulas")
        for column, result in enumerate([42, 0.1, "text", True, "#DIV/0!", ""]):
            sheet.write_formula(3, column, "=A1", None, result)
        sheet.write_rich_string(0, 0, "one ", book.add_format({"bold": True}), "two", " three")
        book.add_worksheet("O'Neil <&>").write(1, 1, "x")


def make_libreoffice():
    with tempfile.TemporaryDirectory() as folder:
        table = pathlib.Path(folder) / "libreoffice.csv"
        table.write_text('DTC,Text,Wert\nP0123,"a,b ",1.5\n,ä€,TRUE\n', encoding="utf-8")
        subprocess.run(["soffice", f"-env:UserInstallation=file://{folder}/user", "--headless", "--convert-to", "xlsx",
                        "--infilter=CSV:44,34,76", "--outdir", FOLDER, table], check=True, capture_output=True)


def value_of(cell, epoch):
    value = cell.value
    if isinstance(value, bool):
        return "b", int(value)
    if isinstance(value, (int, float)):
        return "n", float(value)
    if isinstance(value, (datetime.date, datetime.time)):
        return "n", float(openpyxl.utils.datetime.to_excel(value, epoch))
    return ("e", ERRORS[value]) if cell.data_type == "e" else ("t", value)


def read(path):
    book = openpyxl.load_workbook(path, data_only=True)
    return [(sheet.title, {cell.coordinate: value_of(cell, book.epoch)
                           for cell in sheet._cells.values() if cell.value is not None})
            for sheet in book.worksheets]


def place(name):
    return openpyxl.utils.cell.coordinate_to_tuple(name)


def describe(path):
    sheets = STRICT if path.stem == "strict" else read(path)
    sheets[0][1].update(CORRECTIONS.get(path.stem, {}))
    lines = []
    for name, cells in sheets:
        lines.append("sheet: " + name)
        for cell in sorted(cells, key=place):
            kind, value = cells[cell]
            shown = "%.17g" % value if kind == "n" else re.sub(r"[\r\n]", lambda m: f"\\{ord(m[0])}", str(value))
            lines.append(f"{cell} {kind} {shown}")
    path.with_suffix(".cells").write_text("\n".join(lines) + "\n", encoding="utf-8")


def main():
    FOLDER.mkdir(exist_ok=True)
    make_byhand()
    make_strict()
    make_openpyxl()
    make_xlsxwriter()
    if shutil.which("soffice"):
        make_libreoffice()
    for path in sorted(FOLDER.glob("*.xlsx")):
        describe(path)


main()
