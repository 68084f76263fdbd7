#!/usr/bin/python3
# SPDX-License-Identifier: Apache-2.0
"""Makes the PDFs of the tests, in the folder "pdf" beside this script.

Needs python3-cairo, the DejaVu fonts and qpdf; the tests themselves need none of them.
"""

import pathlib
import subprocess

import cairo

FOLDER = pathlib.Path(__file__).resolve().parent / "pdf"

LEFT = ["A catalogue of docu-", "ments, each with its", "own efﬁcient summary", "and naïve words."]
RIGHT = ["The second column", "of the ﬁrst page", "knows “quotes”."]


def columns():
    """Two pages by cairo: columns, words divided at line ends, ligatures, decomposed accents, a letter beyond U+FFFF."""
    path = FOLDER / "columns.pdf"
    surface = cairo.PDFSurface(str(path), 420, 300)
    surface.set_metadata(cairo.PDFMetadata.CREATE_DATE, "2021-02-03T04:05:06Z")
    context = cairo.Context(surface)
    context.select_font_face("DejaVu Sans")
    context.set_font_size(12)
    for left, lines in ((30, LEFT), (230, RIGHT)):
        for index, line in enumerate(lines):
            context.move_to(left, 40 + 15 * index)
            context.show_text(line)
    context.show_page()
    for index, line in enumerate(["Page two: Cafe\u0301 Zoe\u0308 \U0001d538", "ends here."]):
        context.move_to(30, 40 + 15 * index)
        context.show_text(line)
    surface.finish()
    return path


def write(name, objects, trailer):
    """A PDF of numbered objects (without their "obj" lines), with a classic cross-reference table."""
    data = b"%PDF-1.4\n"
    offsets = []
    for number, body in enumerate(objects, 1):
        offsets.append(len(data))
        data += b"%d 0 obj\n%s\nendobj\n" % (number, body)
    start = len(data)
    data += b"xref\n0 %d\n0000000000 65535 f \n" % (len(objects) + 1)
    data += b"".join(b"%010d 00000 n \n" % offset for offset in offsets)
    data += b"trailer\n<</Size %d /Root 1 0 R %s>>\nstartxref\n%d\n%%%%EOF\n" % (len(objects) + 1, trailer, start)
    (FOLDER / name).write_bytes(data)


def stream(text, entries=b""):
    return b"<</Length %d %s>>\nstream\n%s\nendstream" % (len(text), entries, text)


def words(text):
    return stream(b"BT /F 12 Tf 72 72 Td (%s) Tj ET" % text)


CATALOG = b"<</Type /Catalog /Pages 2 0 R>>"
FONT = b"<</Type /Font /Subtype /Type1 /BaseFont /Helvetica /Encoding /WinAnsiEncoding>>"


def metadata():
    title = "Žluťoučký \U0001d11e kůň".encode("utf-16-be")
    information = b"<<%s>>" % b" ".join([
        b"/Title <feff%s>" % title.hex().encode(),
        b"/Author (Ren\\351e\\222)",
        b"/Subject (\\357\\273\\277na\\303\\257ve)",
        b"/Keywords (alpha, beta gamma;; delta ;)",
        b"/Creator ()",
        b"/Producer (Ghostscript 9.99)",
        b"/CreationDate (D:20010203040506+01'30')",
        b"/ModDate (D:20010230)",
        b"/Trapped /False",
    ])
    objects = [CATALOG, b"<</Type /Pages /Kids [4 0 R] /Count 1>>", information,
               b"<</Type /Page /Parent 2 0 R /MediaBox [0 0 200 200]>>"]
    write("metadata.pdf", objects, b"/Info 3 0 R")


def no_pages():
    write("no-pages.pdf", [CATALOG, b"<</Type /Pages /Kids [] /Count 0>>"], b"")


def boxes():
    """Boxes that are inherited, reversed, missing, cut and scaled."""
    objects = [
        CATALOG,
        b"<</Type /Pages /Kids [3 0 R 6 0 R 7 0 R] /Count 4>>",
        b"<</Type /Pages /Parent 2 0 R /Kids [4 0 R 5 0 R] /Count 2 /MediaBox [10 20 310 420] /Rotate 90>>",
        b"<</Type /Page /Parent 3 0 R /CropBox [0 100 110 500]>>",
        b"<</Type /Page /Parent 3 0 R /MediaBox [200 300 0 0] /Rotate -90 /UserUnit 2.5>>",
        b"<</Type /Page /Parent 2 0 R /CropBox [700 0 900 100]>>",
        b"<</Type /Page /Parent 2 0 R /MediaBox [5 5 5 5] /Rotate 1000 /UserUnit -1>>",
    ]
    write("boxes.pdf", objects, b"")


def huge_count():
    page = b"<</Type /Page /Parent 2 0 R /MediaBox [0 0 200 200] /Contents 5 0 R /Resources <</Font <</F 6 0 R>>>>>>"
    objects = [CATALOG, b"<</Type /Pages /Kids [3 0 R 4 0 R] /Count 1410065407>>", page, page, words(b"Few pages"), FONT]
    write("huge-count.pdf", objects, b"")


def recursion():
    """A form that draws itself, between two words."""
    resources = b"/Resources <</Font <</F 5 0 R>> /XObject <</X 6 0 R>>>>"
    contents = b"BT /F 12 Tf 20 150 Td (before) Tj ET /X Do BT /F 12 Tf 20 20 Td (after) Tj ET"
    form = b"BT /F 12 Tf 20 80 Td (within) Tj ET /X Do /X Do"
    objects = [CATALOG, b"<</Type /Pages /Kids [3 0 R] /Count 1>>",
               b"<</Type /Page /Parent 2 0 R /MediaBox [0 0 200 200] /Contents 4 0 R %s>>" % resources,
               stream(contents), FONT,
               stream(form, b"/Type /XObject /Subtype /Form /BBox [0 0 200 200] " + resources)]
    write("recursion.pdf", objects, b"")


def qpdf(name, source, *options):
    subprocess.run(["qpdf", "--static-id", *options, str(source), str(FOLDER / name)], check=True)


def main():
    FOLDER.mkdir(exist_ok=True)
    source = columns()
    metadata()
    no_pages()
    boxes()
    huge_count()
    recursion()
    qpdf("object-streams.pdf", source, "--object-streams=generate", "--linearize")
    secured = FOLDER / "metadata.pdf"
    qpdf("locked.pdf", secured, "--static-aes-iv", "--encrypt", "user", "owner", "256", "--")
    qpdf("owner-password.pdf", source, "--allow-weak-crypto", "--encrypt", "", "owner", "128", "--extract=n", "--")


if __name__ == "__main__":
    main()
