"""Workbooks for the tests, with as few parts as a workbook can have."""

import io
import zipfile

OFFICE = "http://schemas.openxmlformats.org/officeDocument/2006/relationships"
PACKAGE = "http://schemas.openxmlformats.org/package/2006/relationships"
MAIN = "http://schemas.openxmlformats.org/spreadsheetml/2006/main"


def zipped(parts):
    archive = io.BytesIO()
    with zipfile.ZipFile(archive, "w") as whole:
        for name, content in parts.items():
            whole.writestr(name, content)
    return archive.getvalue()


def make_workbook(sheets, styles=""):
    """The names of its worksheets and the rows of each, all as XML."""
    def relations(*kinds):
        return f'<Relationships xmlns="{PACKAGE}">' + "".join(
            f'<Relationship Id="r{id}" Type="{OFFICE}/{kind}" Target="{id}.xml"/>' for kind, id in kinds) + "</Relationships>"

    return zipped({
        "_rels/.rels": relations(("officeDocument", "w")), "styles.xml": f'<styleSheet xmlns="{MAIN}">{styles}</styleSheet>',
        "_rels/w.xml.rels": relations(("styles", "styles"), *(("worksheet", id) for id in range(len(sheets)))),
        "w.xml": f'<workbook xmlns="{MAIN}" xmlns:r="{OFFICE}"><sheets>' + "".join(
            f'<sheet name="{name}" sheetId="{id + 1}" r:id="r{id}"/>' for id, name in enumerate(sheets)) + "</sheets></workbook>",
        **{f"{id}.xml": f'<worksheet xmlns="{MAIN}"><sheetData>{rows}</sheetData></worksheet>' for id, rows in enumerate(sheets.values())}})
