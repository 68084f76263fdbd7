# SPDX-License-Identifier: Apache-2.0
"""Small documents, made for the tests that drive whole programs."""


def pdf(pages=("Hello",), title=None, locked=False):
    """A PDF with one line of text a page; a locked one asks for a password that nobody knows."""
    font = b"<< /Type /Font /Subtype /Type1 /BaseFont /Helvetica >>"
    numbers = [5 + 2 * index for index in range(len(pages))]
    kids = " ".join(f"{number} 0 R" for number in numbers)
    objects = [
        b"<< /Type /Catalog /Pages 2 0 R >>",
        f"<< /Type /Pages /Kids [{kids}] /Count {len(pages)} >>".encode(),
        font,
        f"<< /Title ({title}) >>".encode() if title else b"<< >>",
    ]
    for number, text in zip(numbers, pages):
        content = f"BT /F1 24 Tf 72 720 Td ({text}) Tj ET".encode()
        objects.append(
            b"<< /Type /Page /Parent 2 0 R /MediaBox [0 0 612 792] /Resources << /Font << /F1 3 0 R >> >> "
            b"/Contents %d 0 R >>" % (number + 1)
        )
        objects.append(b"<< /Length %d >>\nstream\n%s\nendstream" % (len(content), content))
    out = bytearray(b"%PDF-1.4\n")
    offsets = []
    for number, body in enumerate(objects, 1):
        offsets.append(len(out))
        out += b"%d 0 obj\n%s\nendobj\n" % (number, body)
    table = len(out)
    out += b"xref\n0 %d\n0000000000 65535 f \n" % (len(objects) + 1)
    out += b"".join(b"%010d 00000 n \n" % offset for offset in offsets)
    extra = b"/ID [<00112233> <00112233>] /Encrypt << /Filter /Standard /V 1 /R 2 /P -4 /O <%s> /U <%s> >>" % (
        b"5a" * 32,
        b"a5" * 32,
    )
    out += b"trailer\n<< /Size %d /Root 1 0 R /Info 4 0 R %s >>\n" % (len(objects) + 1, extra if locked else b"")
    out += b"startxref\n%d\n%%%%EOF\n" % table
    return bytes(out)
