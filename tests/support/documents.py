# SPDX-License-Identifier: Apache-2.0
"""Small documents, made for the tests that drive whole programs."""

import struct
import zlib


def pdf(pages=("Hello",), title=None, locked=False):
    """A PDF with one line of text a page; a locked one asks for a password that nobody knows. Readers find the objects
    without a cross-reference table."""
    kids = " ".join(f"{5 + 2 * index} 0 R" for index in range(len(pages)))
    objects = [
        "<< /Type /Catalog /Pages 2 0 R >>",
        f"<< /Type /Pages /Kids [{kids}] /Count {len(pages)} /MediaBox [0 0 612 792] >>",
        "<< /Type /Font /Subtype /Type1 /BaseFont /Helvetica >>",
        f"<< /Title ({title}) >>" if title else "<< >>",
    ]
    for text in pages:
        content = f"BT /F1 24 Tf 72 720 Td ({text}) Tj ET"
        resources = f"/Resources << /Font << /F1 3 0 R >> >> /Contents {len(objects) + 2} 0 R"
        objects.append(f"<< /Type /Page /Parent 2 0 R {resources} >>")
        objects.append(f"<< /Length {len(content)} >>\nstream\n{content}\nendstream")
    lock = f"/Filter /Standard /V 1 /R 2 /P -4 /O <{'5a' * 32}> /U <{'a5' * 32}>"
    extra = f"/ID [<00112233> <00112233>] /Encrypt << {lock} >>" if locked else ""
    body = "".join(f"{number} 0 obj\n{text}\nendobj\n" for number, text in enumerate(objects, 1))
    return f"%PDF-1.4\n{body}trailer\n<< /Root 1 0 R /Info 4 0 R {extra} >>\n%%EOF\n".encode()


def png(width, height, colour=(200, 30, 30)):
    """A picture of one colour."""

    def chunk(kind, data):
        return struct.pack(">I", len(data)) + kind + data + struct.pack(">I", zlib.crc32(kind + data))

    rows = (b"\0" + bytes(colour) * width) * height
    header = struct.pack(">IIBBBBB", width, height, 8, 2, 0, 0, 0)
    return b"\x89PNG\r\n\x1a\n" + chunk(b"IHDR", header) + chunk(b"IDAT", zlib.compress(rows)) + chunk(b"IEND", b"")


def size_of_png(path):
    return struct.unpack(">II", path.read_bytes()[16:24])
