# SPDX-License-Identifier: Apache-2.0
"""Office documents and books that are built to hurt their reader: small files, the same at each run, that ask for endless
time, memory or depth.

`DOCUMENTS` has the functions that make them, each with the extension of its document, the code of the helper's reason, and a
word that has to be read all the same, if any.
"""

import struct
import zlib

from quiverleaf import ErrorCode

MEBIBYTE = 1 << 20
MAXIMUM_CHECKED_BYTES = 256 * MEBIBYTE
WORD = "http://schemas.openxmlformats.org/wordprocessingml/2006/main"
RELATIONSHIPS = "http://schemas.openxmlformats.org/officeDocument/2006/relationships"
TYPE = "application/vnd.openxmlformats-officedocument."


def deflated(*pieces):
    """Text as deflated bytes; a piece may be a pair of text and a number of times, which costs no time to pack."""
    compressor = zlib.compressobj(9, zlib.DEFLATED, -15)
    packed = b""
    for piece in pieces:
        text, times = piece if isinstance(piece, tuple) else (piece, 1)
        block = compressor.compress(text.encode()) + compressor.flush(zlib.Z_FULL_FLUSH)
        packed += block * times
    return packed + compressor.flush()


def checked(pieces):
    """The checksum and the size of pieces; wrong ones for too many, which nobody unpacks to the end."""
    checksum = size = 0
    for piece in pieces:
        text, times = piece if isinstance(piece, tuple) else (piece, 1)
        if len(text) * times > MAXIMUM_CHECKED_BYTES:
            return 0, 0xFFFFFFFE
        for _ in range(times):
            checksum = zlib.crc32(text.encode(), checksum)
        size += len(text.encode()) * times
    return checksum, size


def archive(parts):
    """A zip archive of {name: pieces}."""
    local, central = [], []
    place = 0
    for name, pieces in parts.items():
        pieces = [pieces] if isinstance(pieces, str) else pieces
        packed = deflated(*pieces)
        checksum, size = checked(pieces)
        facts = struct.pack("<HHHHHIIIHH", 20, 0, 8, 0, 0, checksum, len(packed), size, len(name), 0)
        central.append(b"PK\1\2" + struct.pack("<H", 20) + facts + struct.pack("<HHHII", 0, 0, 0, 0, place) + name.encode())
        local.append(b"PK\3\4" + facts + name.encode() + packed)
        place += len(local[-1])
    count = min(len(parts), 0xFFFF)
    end = struct.pack("<HHHHIIH", 0, 0, count, count, sum(map(len, central)), place, 0)
    return b"".join(local + central) + b"PK\5\6" + end


def overrides(types):
    parts = "".join(f'<Override PartName="/{part}" ContentType="{TYPE}{kind}+xml"/>' for part, kind in types.items())
    return f"<Types>{parts}</Types>"


def references(*targets):
    listed = "".join(f'<Relationship Id="r{i}" Target="{target}"/>' for i, target in enumerate(targets, 1))
    return f"<Relationships>{listed}</Relationships>"


def docx(*body, **others):
    """A text; `body` are the pieces of its main part."""
    types = overrides({"word/document.xml": "wordprocessingml.document.main"})
    return archive({"[Content_Types].xml": types, "_rels/.rels": references("word/document.xml"), "word/document.xml": body, **others})


def xlsx(sheet, strings):
    types = {"xl/workbook.xml": "spreadsheetml.sheet.main", "xl/sheet.xml": "spreadsheetml.worksheet", "xl/s.xml": "spreadsheetml.sharedStrings"}
    return archive(
        {
            "[Content_Types].xml": overrides(types),
            "_rels/.rels": references("xl/workbook.xml"),
            "xl/workbook.xml": '<workbook><sheets><sheet name="found" r:id="r1"/></sheets></workbook>',
            "xl/_rels/workbook.xml.rels": references("sheet.xml", "s.xml"),
            "xl/sheet.xml": sheet,
            "xl/s.xml": strings,
        }
    )


def odt(*content):
    return archive({"mimetype": "application/vnd.oasis.opendocument.text", "content.xml": content})


def paragraph(text):
    return f"<w:p><w:r><w:t>{text}</w:t></w:r></w:p>"


START = f'<w:document xmlns:w="{WORD}"><w:body>' + paragraph("found")


def ten_gigabytes_of_blanks():
    return docx(START, (" " * MEBIBYTE, 10_000))


def ten_gigabytes_of_text():
    return docx(START, (paragraph("text " * 200_000), 10_000))


def ten_gigabytes_beside_the_document():
    part = (" " * MEBIBYTE, 10_000)
    return docx(START + "</w:body></w:document>", **{"word/media/image.png": [part], "_rels/other.rels": ["<Relationships>", part]})


def gigabyte_of_cells():
    row = "<row>" + '<c t="s"><v>0</v></c><c><v>3.5</v></c>' * 1000 + "</row>"
    return xlsx(["<worksheet><sheetData>", (row * 20, 1300)], "<sst><si><t>text</t></si></sst>")


def long_text_in_many_cells():
    row = "<row>" + '<c t="s"><v>0</v></c>' * 100 + "</row>"
    return xlsx(["<worksheet><sheetData>", (row, 10_000)], ["<sst><si><t>", ("x" * MEBIBYTE, 50), "</t></si></sst>"])


def shared_texts_without_end():
    return xlsx("<worksheet/>", ["<sst>", ("<si><t>x</t></si>" * 60_000, 200)])


def deep_elements():
    return docx(START, ("<w:sdt>" * 100_000, 100))


def deep_elements_of_open_document():
    return odt("<office><p>found</p>", ("<text:p>" * 100_000, 100))


def names_without_end():
    names = "".join(f"<n{i}/>" for i in range(3_000_000))
    return docx(START, names)


def long_tag():
    return docx(START, "<w:p ", ("a" * MEBIBYTE, 400))


def long_attribute():
    return docx(START, '<w:p a="', ("a" * MEBIBYTE, 400))


def many_attributes():
    return docx(START, "<w:p " + " ".join(f'a{i}="b"' for i in range(2_000_000)) + "/>")


def nested_entities():
    entities = "".join(f'<!ENTITY e{i} "{f"&e{i - 1};" * 10}">' for i in range(1, 20))
    return docx(f'<!DOCTYPE d [<!ENTITY e0 "x">{entities}]>' + START + paragraph("&e19;"))


def external_entity():
    return docx('<!DOCTYPE d [<!ENTITY e SYSTEM "file:///etc/passwd">]>' + START + paragraph("&e;"))


def slides_that_refer_to_each_other():
    count = 3000
    names = [f"ppt/slides/s{i}.xml" for i in range(count)]
    types = {"ppt/p.xml": "presentationml.presentation.main", **dict.fromkeys(names, "presentationml.slide")}
    order = "".join(f'<sldId id="{i}" r:id="r{i}"/>' for i in range(1, count + 1))
    parts = {"[Content_Types].xml": overrides(types), "_rels/.rels": references("ppt/p.xml"), "ppt/p.xml": f"<p>{order}</p>"}
    parts["ppt/_rels/p.xml.rels"] = references(*(f"slides/s{i}.xml" for i in range(count)))
    for i, name in enumerate(names):
        parts[name] = f"<sld><a:p><a:t>{'found' if i == 0 else i}</a:t></a:p></sld>"
        parts[f"ppt/slides/_rels/s{i}.xml.rels"] = references(f"s{(i + 1) % count}.xml", f"s{i - 1}.xml")
    return archive(parts)


def parts_without_end():
    return docx(START + "</w:body></w:document>", **{f"{i}": "" for i in range(70_000)})


def epub(chapters, spine):
    items = "".join(f'<item id="c{i}" href="{name}"/>' for i, name in enumerate(chapters))
    order = "".join(f'<itemref idref="c{i}"/>' for i in spine)
    book = f"<package><manifest>{items}</manifest><spine>{order}</spine></package>"
    return archive({"META-INF/container.xml": '<container><rootfile full-path="b.opf"/></container>', "b.opf": book, **chapters})


def chapter_named_a_million_times():
    return epub({"a.xhtml": "<p>found</p>" + "<p>text</p>" * 100_000}, [0] * 1_000_000)


def long_chapter():
    return epub({"a.xhtml": ["<p>found</p>", ("<p>text</p>" * 100_000, 1000)]}, [0])


def text_with_a_password():
    """As an office writes it: a compound file, not an archive."""
    return b"\xd0\xcf\x11\xe0\xa1\xb1\x1a\xe1" + bytes(4096) + "EncryptedPackage".encode("utf-16-le") + bytes(4096)


def open_document_with_a_password():
    manifest = '<manifest><file-entry full-path="content.xml"><encryption-data/></file-entry></manifest>'
    return archive({"META-INF/manifest.xml": manifest, "content.xml": "noise"})


def encrypted_book():
    book = {"META-INF/encryption.xml": '<e><EncryptedData><CipherReference URI="a.xhtml"/></EncryptedData></e>', "a.xhtml": "noise"}
    return epub(book, [1])


DOCUMENTS = {
    text_with_a_password: ("docx", ErrorCode.LOCKED, None),
    open_document_with_a_password: ("odt", ErrorCode.LOCKED, None),
    encrypted_book: ("epub", ErrorCode.LOCKED, None),
    ten_gigabytes_of_blanks: ("docx", ErrorCode.INCOMPLETE, "found"),
    ten_gigabytes_of_text: ("docx", ErrorCode.INCOMPLETE, "found"),
    ten_gigabytes_beside_the_document: ("docx", ErrorCode.INCOMPLETE, None),
    gigabyte_of_cells: ("xlsx", ErrorCode.INCOMPLETE, "found"),
    long_text_in_many_cells: ("xlsx", ErrorCode.INCOMPLETE, "found"),
    shared_texts_without_end: ("xlsx", ErrorCode.DAMAGED, "found"),
    deep_elements: ("docx", ErrorCode.MEMORY_LIMIT, "found"),
    deep_elements_of_open_document: ("odt", ErrorCode.MEMORY_LIMIT, "found"),
    names_without_end: ("docx", ErrorCode.MEMORY_LIMIT, "found"),
    long_tag: ("docx", ErrorCode.MEMORY_LIMIT, "found"),
    long_attribute: ("docx", ErrorCode.MEMORY_LIMIT, "found"),
    many_attributes: ("docx", ErrorCode.MEMORY_LIMIT, "found"),
    nested_entities: ("docx", ErrorCode.DAMAGED, None),
    external_entity: ("docx", ErrorCode.DAMAGED, None),
    slides_that_refer_to_each_other: ("pptx", None, "found"),
    parts_without_end: ("docx", ErrorCode.INCOMPLETE, "found"),
    chapter_named_a_million_times: ("epub", None, "found"),
    long_chapter: ("epub", ErrorCode.INCOMPLETE, "found"),
}
