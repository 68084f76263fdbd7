# SPDX-License-Identifier: Apache-2.0
"""Packages of word processors in which any element stands in any other."""

import io
import zipfile

from makers.chance import WORDS, number, pick, several

OPEN_XML = """document body p p p r r r t t t tab br cr noBreakHyphen hyperlink tbl tr tc pPr instrText delText ins del moveFrom sdt txbxContent
footnoteReference fldSimple softHyphen ptab""".split()
OPEN_DOCUMENT = """p p h span span s tab line-break list list-item note note-body tracked-changes a section soft-page-break ruby ruby-text hidden-text
script""".split()
MAIN = "application/vnd.openxmlformats-officedocument.wordprocessingml.document.main+xml"


def elements(prefix, names, depth):
    made = ""
    for name in several(names, number(1, 4)):
        attribute = pick(["", "", f" {prefix}:c='3'", " xml:space='preserve'"])
        inner = elements(prefix, names, depth - 1) if depth else pick(["", " "]) + pick(WORDS)
        made += f"<{prefix}:{name}{attribute}>{inner}</{prefix}:{name}>"
    return made


def package(parts):
    data = io.BytesIO()
    with zipfile.ZipFile(data, "w") as archive:
        for name, text in parts.items():
            archive.writestr(name, text)
    return data.getvalue()


def open_xml():
    return package({
        "[Content_Types].xml": f"<Types><Override PartName='/word/document.xml' ContentType='{MAIN}'/></Types>",
        "_rels/.rels": "<Relationships><Relationship Id='r1' Type='http://x/officeDocument' Target='word/document.xml'/></Relationships>",
        "word/document.xml": f"<w:document><w:body>{elements('w', OPEN_XML, 4)}</w:body></w:document>",
    })  # fmt: skip


def open_document():
    return package({
        "mimetype": "application/vnd.oasis.opendocument.text",
        "meta.xml": f"<m><dc:title>{pick(WORDS)}</dc:title><meta:keyword>{pick(WORDS)}</meta:keyword><dc:creator>b</dc:creator></m>",
        "content.xml": f"<office:body><office:text>{elements('text', OPEN_DOCUMENT, 4)}</office:text></office:body>",
    })  # fmt: skip
