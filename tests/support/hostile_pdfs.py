# SPDX-License-Identifier: Apache-2.0
"""PDFs that are built to hurt their reader: small files, the same at each run, that ask for endless time, memory or depth.

`DOCUMENTS` has the functions that make them, each with what becomes of its document: it is read as a whole, in part or not
at all. Readers find the objects without a cross-reference table, unless the table is the point.
"""

import random
import struct
import zlib

CATALOG = b"<</Type /Catalog /Pages 2 0 R>>"
ONE_PAGE = b"<</Type /Pages /Kids [3 0 R] /Count 1 /MediaBox [0 0 612 792]>>"
FONT = b"<</Type /Font /Subtype /Type1 /BaseFont /Helvetica>>"
WORD = b"BT /F 12 Tf 20 700 Td (found) Tj ET\n"
MEBIBYTE = 1 << 20


def stream(content, entries=b""):
    return b"<<%b /Length %d>>\nstream\n%b\nendstream" % (entries, len(content), content)


def deflated(content, times=1, entries=b""):
    for _ in range(times):
        content = zlib.compress(content, 9)
    return stream(content, b"/Filter [%b] %b" % (b" /FlateDecode" * times, entries))


def deflated_run(head, unit, size, tail=b"", entries=b"", times=1):
    """`head`, `unit` again and again up to `size` bytes in all, and `tail`. The run is one compressed block, again and
    again; so the checksum in the end is wrong, which readers of PDF do not mind."""
    compressor = zlib.compressobj(9)
    start = compressor.compress(head) + compressor.flush(zlib.Z_FULL_FLUSH)
    run = unit * (MEBIBYTE // len(unit))
    block = compressor.compress(run) + compressor.flush(zlib.Z_FULL_FLUSH)
    end = compressor.compress(tail) + compressor.flush()
    content = start + block * (size // len(run)) + end
    for _ in range(times - 1):
        content = zlib.compress(content, 9)
    return stream(content, b"/Filter [%b] %b" % (b" /FlateDecode" * times, entries))


def pdf(objects, trailer=b"/Root 1 0 R", version=b"1.7"):
    """Of a list, the objects 1, 2 ...; or of a dictionary by number."""
    numbered = objects if isinstance(objects, dict) else dict(enumerate(objects, 1))
    body = b"".join(b"%d 0 obj\n%b\nendobj\n" % item for item in numbered.items())
    return b"%%PDF-%b\n%btrailer\n<<%b>>\n%%%%EOF\n" % (version, body, trailer)


def page(content, *more, resources=b"/Font <</F 5 0 R>>", entries=b""):
    """One page; `content` is object 4, the font 5, and `more` are the objects from 6 on."""
    if not content.startswith(b"<<"):
        content = stream(content)
    leaf = b"<</Type /Page /Parent 2 0 R /Contents 4 0 R /Resources <<%b>> %b>>" % (resources, entries)
    return pdf([CATALOG, ONE_PAGE, leaf, content, FONT, *more])


# Page trees


def deep_page_tree(depth=30_000):
    objects = {1: CATALOG}
    for number in range(2, depth + 2):
        objects[number] = b"<</Type /Pages /Count 1 /Kids [%d 0 R]>>" % (number + 1)
    objects[depth + 2] = b"<</Type /Page /MediaBox [0 0 9 9]>>"
    return pdf(objects)


def shared_page_tree(depth=40):
    """Each node has the next one as both its kids, down to one that has none: 2^40 ways."""
    objects = {1: CATALOG}
    for level in range(depth):
        objects[level + 2] = b"<</Type /Pages /Count 0 /Kids [%d 0 R %d 0 R]>>" % (level + 3, level + 3)
    objects[2] = objects[2].replace(b"/Count 0", b"/Count 9")
    objects[depth + 2] = b"<</Type /Pages /Count 0 /Kids []>>"
    return pdf(objects)


def shared_pages(depth=30):
    """2^30 pages, all of them the same one."""
    objects = {1: CATALOG}
    for level in range(depth):
        kids = b"[%d 0 R %d 0 R]" % (level + 3, level + 3)
        objects[level + 2] = b"<</Type /Pages /Count %d /Kids %b /MediaBox [0 0 612 792]>>" % (1 << depth - level, kids)
    objects[depth + 2] = (
        b"<</Type /Page /Contents %d 0 R /Resources <</Font <</F %d 0 R>>>>>>" % (depth + 3, depth + 4)
    )
    objects[depth + 3] = stream(WORD)
    objects[depth + 4] = FONT
    return pdf(objects)


def looped_page_tree():
    return pdf([CATALOG, b"<</Type /Pages /Count 5 /Kids [3 0 R]>>", b"<</Type /Pages /Count 5 /Kids [2 0 R 3 0 R]>>"])


def looped_parents():
    return pdf(
        [
            CATALOG,
            b"<</Type /Pages /Count 1 /Kids [3 0 R] /Parent 4 0 R>>",
            b"<</Type /Page /Parent 4 0 R /Contents 5 0 R>>",
            b"<</Type /Pages /Parent 2 0 R>>",
            stream(WORD),
        ]
    )


def pages_without_end():
    return pdf([CATALOG, b"<</Type /Pages /Count 2147483647 /Kids [3 0 R]>>", b"<</Type /Page>>"])


# Streams


def content_of_spaces():
    return page(deflated_run(WORD, b" ", 2048 * MEBIBYTE, times=2))


def content_of_operators():
    return page(deflated_run(WORD, b"q Q ", 200 * MEBIBYTE, times=2))


def many_slow_pages(pages=30):
    leaf = b"<</Type /Page /Parent 2 0 R /Contents 3 0 R /Resources <</Font <</F 4 0 R>>>>>>"
    kids = b" ".join(b"%d 0 R" % number for number in range(5, 5 + pages))
    tree = b"<</Type /Pages /Kids [%b] /Count %d /MediaBox [0 0 612 792]>>" % (kids, pages)
    return pdf([CATALOG, tree, deflated_run(WORD, b"q Q ", 100 * MEBIBYTE), FONT, *[leaf] * pages])


def content_of_text():
    return page(deflated_run(WORD, b"BT /F 9 Tf 1 1 Td (much text) Tj ET\n", 800 * MEBIBYTE, times=2))


def content_of_strings():
    return page(deflated_run(WORD + b"BT /F 12 Tf (", b"a", 1024 * MEBIBYTE, b") Tj ET", times=2))


def content_of_comments():
    return page(deflated_run(WORD + b"%", b"comment", 2048 * MEBIBYTE, times=2))


def run_length_bomb():
    content = deflated_run(b"", b"\x81 ", 64 * MEBIBYTE, times=2)
    return page(content.replace(b"/FlateDecode]", b"/FlateDecode /RunLengthDecode]"))


def lzw_bomb():
    """Runs of blanks: each code stands for one blank more than the one before, up to the code that starts anew."""
    codes = [32, *range(258, 4090), 256]
    widths = [9] * 254 + [10] * 512 + [11] * 1024 + [12] * (len(codes) - 1790)
    bits = "".join(f"{code:0{width}b}" for code, width in zip(codes, widths)) * 8
    packed = int(bits, 2).to_bytes(len(bits) // 8, "big")
    content = zlib.compress(packed * 500, 9)
    return page(stream(content, b"/Filter [/FlateDecode /LZWDecode]"))


def thousand_filters():
    return page(stream(zlib.compress(WORD), b"/Filter [%b]" % (b"/ASCIIHexDecode " * 20_000 + b"/FlateDecode")))


def content_in_pieces():
    leaf = b"<</Type /Page /Parent 2 0 R /Contents [%b] /Resources <</Font <</F 5 0 R>>>>>>" % (b"4 0 R " * 500_000)
    return pdf([CATALOG, ONE_PAGE, leaf, stream(WORD), FONT])


# Objects


def million_entries():
    generator = random.Random(1)
    names = [b"/K%d 0" % generator.randrange(10**9) for _ in range(1_000_000)]
    return page(WORD, b"<<%b>>" % b" ".join(names), resources=b"/Font <</F 5 0 R>> /Properties 6 0 R")


def nested_arrays(depth=1_000_000):
    return page(WORD, b"[" * depth, resources=b"/Font <</F 5 0 R>> /XObject 6 0 R")


def nested_dictionaries(depth=300_000):
    return page(WORD, b"<</A " * depth, resources=b"/Font <</F 5 0 R>> /XObject 6 0 R")


def nested_arrays_in_content():
    return page(deflated(WORD + b"[" * 5_000_000))


def chained_references(count=200_000):
    links = {number: b"%d 0 R" % (number + 1) for number in range(6, count)}
    leaf = b"<</Type /Page /Parent 2 0 R /Contents 6 0 R>>"
    return pdf({1: CATALOG, 2: ONE_PAGE, 3: leaf, **links, count: b"6 0 R"})


def looped_object_streams():
    inner = b"4 0 5 20 <</Type /ObjStm>>     <</A 1>>"
    entries = b"/Type /ObjStm /N 2 /First 9 /Extends 5 0 R"
    return pdf({1: CATALOG, 2: ONE_PAGE, 3: b"<</Type /Page>>", 4: stream(inner, entries), 5: stream(inner, entries)})


def object_stream_bomb():
    entries = b"/Type /ObjStm /N 8000000 /First 100000000"
    return pdf([CATALOG, ONE_PAGE, b"<</Type /Page>>", deflated_run(b"", b"7 0 ", 256 * MEBIBYTE, entries=entries)])


def looped_xrefs():
    body = b"%PDF-1.7\n1 0 obj\n<</Type /Catalog /Pages 2 0 R>>\nendobj\n"
    first = len(body)
    table = b"xref\n0 1\n0000000000 65535 f \ntrailer\n<</Root 1 0 R /Size 3 /Prev %d>>\n"
    second = first + len(table % first) + 2
    body += table % second
    body += b" " * (second - len(body))
    return body + table % first + b"startxref\n%d\n%%%%EOF\n" % second


def long_chain_of_xrefs(count=10_000):
    body = bytearray(b"%PDF-1.7\n1 0 obj\n<</Type /Catalog /Pages 2 0 R>>\nendobj\n2 0 obj\n<</Kids [] /Count 0>>\nendobj\n")
    previous = b""
    for _ in range(count):
        start = len(body)
        body += b"xref\n0 1\n0000000000 65535 f \ntrailer\n<</Root 1 0 R /Size 3 %b>>\n" % previous
        previous = b"/Prev %d" % start
    return bytes(body) + b"startxref\n%d\n%%%%EOF\n" % start


def huge_xref_section():
    body = b"%PDF-1.7\n1 0 obj\n<</Type /Catalog /Pages 2 0 R>>\nendobj\n"
    table = b"xref\n0 8388600\n" + b"0000000009 00000 n \n" * 5 + b"trailer\n<</Root 1 0 R /Size 8388607>>\n"
    return body + table + b"startxref\n%d\n%%%%EOF\n" % len(body)


def objects_without_end(count=400_000):
    return b"%PDF-1.7\n" + b"".join(b"%d 0 obj\n0\nendobj\n" % (number % 8_000_000) for number in range(1, count))


def unended_strings(count=2_000):
    return pdf([CATALOG, ONE_PAGE]) + b"(" * (4 * MEBIBYTE) + b"1 0 obj (" * count


def name_tree_of_links(depth=40):
    """Links to a name that has to be looked for on 2^40 ways."""
    link = b"<</Type /Annot /Subtype /Link /Rect [0 0 9 9] /Dest (nowhere)>>"
    leaf = b"<</Type /Page /Parent 2 0 R /Contents 4 0 R /Resources <</Font <</F 5 0 R>>>> /Annots [%b]>>" % (link * 9)
    objects = [b"<</Type /Catalog /Pages 2 0 R /Names <</Dests 6 0 R>>>>", ONE_PAGE, leaf, stream(WORD), FONT]
    for level in range(depth):
        number = len(objects) + 2
        objects.append(b"<</Limits [(a) (z)] /Kids [%d 0 R %d 0 R]>>" % (number, number))
    return pdf([*objects, b"<</Limits [(a) (z)] /Names [(a) 0]>>"])


# What pages draw


def doubled_forms(depth=40):
    """Each form draws the next one twice."""
    forms = []
    for level in range(depth):
        more = b"/Resources <</XObject <</X %d 0 R>>>>" % (level + 7)
        forms.append(stream(b"/X Do /X Do", b"/Type /XObject /Subtype /Form /BBox [0 0 9 9] " + more))
    last = stream(b"q Q", b"/Type /XObject /Subtype /Form /BBox [0 0 9 9]")
    return page(WORD + b"/X Do", *forms, last, resources=b"/Font <</F 5 0 R>> /XObject <</X 6 0 R>>")


def deep_forms(depth=20_000):
    forms = []
    for level in range(depth):
        more = b"/Resources <</XObject <</X %d 0 R>>>>" % (level + 7)
        forms.append(stream(b"/X Do", b"/Type /XObject /Subtype /Form /BBox [0 0 9 9] " + more))
    return page(WORD + b"/X Do", *forms, resources=b"/Font <</F 5 0 R>> /XObject <</X 6 0 R>>")


def soft_masks(depth=40):
    """Each mask's group needs the next mask, twice."""
    forms = []
    for level in range(depth):
        state = b"<</SMask <</S /Luminosity /G %d 0 R>>>>" % (level + 7)
        more = b"/Group <</S /Transparency>> /Resources <</ExtGState <</G %b>>>>" % state
        forms.append(
            stream(b"q /G gs 0 0 9 9 re f Q /G gs 0 0 9 9 re f", b"/Type /XObject /Subtype /Form /BBox [0 0 9 9] " + more)
        )
    start = b"/ExtGState <</G <</SMask <</S /Luminosity /G 6 0 R>>>>>>"
    return page(WORD + b"/G gs 0 0 9 9 re f", *forms, resources=b"/Font <</F 5 0 R>> " + start)


def patterns(depth=40):
    """Each tile is filled with the next pattern, twice."""
    tiles = []
    for level in range(depth):
        more = b"/Resources <</Pattern <</P %d 0 R>>>>" % (level + 7)
        shape = b"/Type /Pattern /PatternType 1 /PaintType 1 /TilingType 1 /BBox [0 0 9 9] /XStep 9 /YStep 9 "
        tiles.append(stream(b"/Pattern cs /P scn 0 0 9 9 re f 0 0 9 9 re f", shape + more))
    start = b"/Font <</F 5 0 R>> /Pattern <</P 6 0 R>>"
    return page(WORD + b"/Pattern cs /P scn 0 0 600 700 re f", *tiles, resources=start)


def tiny_tiles():
    shape = b"/Type /Pattern /PatternType 1 /PaintType 1 /TilingType 1 /BBox [0 0 1 1] /XStep 1e-30 /YStep 1e-30"
    tile = stream(b"0 0 1 1 re f", shape)
    start = b"/Font <</F 5 0 R>> /Pattern <</P 6 0 R>>"
    return page(WORD + b"/Pattern cs /P scn 0 0 1e9 1e9 re f", tile, resources=start)


def shadings():
    function = b"/FunctionType 4 /Domain [0 1 0 1] /Range [0 1 0 1 0 1]"
    program = deflated_run(b"{", b" dup pop", MEBIBYTE, b" 0 }", entries=function)
    shading = b"<</ShadingType 1 /ColorSpace /DeviceRGB /Function 6 0 R>>"
    start = b"/Font <</F 5 0 R>> /Shading <</S %b>>" % shading
    return page(WORD + b"/S sh " * 1000, program, resources=start)


def color_of_many_inputs():
    """A colour of 32 parts by a table: 2^32 values go into each."""
    names = b" ".join(b"/N%d" % number for number in range(32))
    shape = b"/FunctionType 0 /BitsPerSample 8 /Domain [%b] /Range [0 1 0 1 0 1] /Size [%b]" % (b"0 1 " * 32, b"1 " * 32)
    space = b"[/DeviceN [%b] /DeviceRGB 6 0 R]" % names
    content = b"/C cs %b scn " % (b"0.5 " * 32) + WORD * 10
    return page(content, stream(b"abc", shape), resources=b"/Font <</F 5 0 R>> /ColorSpace <</C %b>>" % space)


def color_by_long_program():
    shape = b"/FunctionType 4 /Domain [0 1] /Range [0 1 0 1 0 1]"
    program = deflated_run(b"{ dup dup ", b" dup pop", 2 * MEBIBYTE, b"}", entries=shape)
    space = b"[/Separation /N /DeviceRGB 6 0 R]"
    content = WORD + b"/C cs 0.5 scn\n" + WORD * 5000
    return page(content, program, resources=b"/Font <</F 5 0 R>> /ColorSpace <</C %b>>" % space)


def nested_color_spaces(depth=200_000):
    space = b"[/Indexed " * depth
    return page(WORD + b"/C cs", resources=b"/Font <</F 5 0 R>> /ColorSpace <</C %b>>" % space)


def saved_states():
    return page(deflated_run(WORD, b"q ", 100 * MEBIBYTE, times=2))


def divided_words(count=400_000):
    """Each line ends with a hyphen."""
    parts = b"(a-)-9999" * count
    return page(deflated(WORD + b"BT /F 12 Tf 20 20 Td [%b] TJ ET" % parts))


def given_texts(count=100_000):
    """A long text in place of each of many glyphs."""
    content = deflated(WORD + b"BT /F 1 Tf 20 20 Td %b ET" % (b"/S /N BDC (x) Tj EMC " * count))
    text = b"<</ActualText (%b)>>" % (b"A" * 200_000)
    return page(content, text, resources=b"/Font <</F 5 0 R>> /Properties <</N 6 0 R>>")


def looped_structure(count=200_000):
    """The elements to which marked content belongs are within each other, and so are the nodes of their tree."""
    content = deflated(WORD + b"BT /F 1 Tf 20 20 Td %b ET" % (b"/S <</MCID 0>> BDC (x) Tj EMC " * count))
    objects = [b"<</ParentTree 7 0 R>>", b"<</Kids [7 0 R 8 0 R]>>", b"<</Nums [0 [9 0 R]] /Limits [0 0]>>",
               b"<</P 10 0 R>>", b"<</P 9 0 R>>"]
    data = page(content, *objects, entries=b"/StructParents 0")
    return data.replace(CATALOG, b"<</Type /Catalog /Pages 2 0 R /StructTreeRoot 6 0 R>>")


def combining_marks(count=260_000):
    """Marks behind one letter, never in the order that a normal form puts them in."""
    to_unicode = stream(
        b"/CIDInit /ProcSet findresource begin 12 dict begin begincmap\n1 begincodespacerange <00> <ff> endcodespacerange\n"
        b"3 beginbfchar <41> <0061> <42> <0323> <43> <0301> endbfchar\nendcmap end end"
    )
    font = b"<</Type /Font /Subtype /Type1 /BaseFont /Helvetica /ToUnicode 7 0 R>>"
    content = deflated(b"BT /G 12 Tf 20 20 Td (A%b) Tj ET" % (b"BC" * (count // 2)))
    return page(content, font, to_unicode, resources=b"/Font <</G 6 0 R>>")


def huge_boxes():
    box = b"/MediaBox [-1e38 -1e38 1e38 1e38] /CropBox [0 0 1e38 1e38] /UserUnit 1e30 /Rotate 2147483647"
    return page(WORD, entries=box)


# Pictures


def inline_images():
    image = b"BI /W 60000 /H 8000 /BPC 8 /CS /G /F /Fl ID " + zlib.compress(b"") + b" EI\n"
    return page(deflated(WORD + image * 2000))


def jbig2_bomb():
    page_information = struct.pack(">IBBI", 0, 0x30, 1, 19) + struct.pack(">IIIIBH", 65535, 65535, 0, 0, 0, 0)
    region = struct.pack(">IIIIBB", 65535, 65535, 0, 0, 0, 0) + bytes([3, 255, 253, 255, 2, 254, 254, 254])
    segment = struct.pack(">IBBI", 1, 38, 1, len(region)) + region
    shape = b"/Type /XObject /Subtype /Image /Width 65535 /Height 65535 /BitsPerComponent 1 /ColorSpace /DeviceGray "
    image = stream(page_information + segment * 500, shape + b"/Filter /JBIG2Decode")
    start = b"/Font <</F 5 0 R>> /XObject <</X 6 0 R>>"
    return page(b"/X Do " * 50 + WORD, image, resources=start)


def jbig2_content():
    page_information = struct.pack(">IBBI", 0, 0x30, 1, 19) + struct.pack(">IIIIBH", 65535, 65535, 0, 0, 0, 0)
    return page(stream(page_information, b"/Filter /JBIG2Decode"))


def jpx_bomb():
    size = struct.pack(">HHHIIIIIIIIH", 0xFF51, 47, 0, 60000, 60000, 0, 0, 60000, 60000, 0, 0, 3) + bytes([7, 1, 1] * 3)
    coding = struct.pack(">HHBBHBBBBBB", 0xFF52, 12, 0, 0, 1, 0, 5, 4, 4, 0, 0)
    quantization = struct.pack(">HHB", 0xFF5C, 19, 0x40) + bytes([0x40] * 16)
    tile = struct.pack(">HHHIBB", 0xFF90, 10, 0, 0, 0, 1)
    codestream = b"\xff\x4f" + size + coding + quantization + tile + b"\xff\x93\xff\xd9"
    shape = b"/Type /XObject /Subtype /Image /Width 60000 /Height 60000 /Filter /JPXDecode"
    start = b"/Font <</F 5 0 R>> /XObject <</X 6 0 R>>"
    return page(b"/X Do " * 50 + WORD, stream(codestream, shape), resources=start)


# Fonts


def type3_operators():
    procedure = deflated_run(b"500 0 d0 ", b"q Q ", 200 * MEBIBYTE, times=2)
    names = b" ".join(b"/g%d 7 0 R" % number for number in range(200))
    differences = b" ".join(b"/g%d" % number for number in range(200))
    font = (
        b"<</Type /Font /Subtype /Type3 /FontBBox [0 0 9 9] /FontMatrix [1 0 0 1 0 0] /CharProcs <<%b>> "
        b"/Encoding <</Differences [0 %b]>> /FirstChar 0 /LastChar 199 /Widths [%b]>>" % (names, differences, b"1 " * 200)
    )
    content = WORD + b"BT /G 12 Tf 20 20 Td (\\000\\001) Tj ET"
    return page(content, font, procedure, resources=b"/Font <</F 5 0 R /G 6 0 R>>")


def recursive_type3():
    """Each glyph's drawing shows the font's other glyphs."""
    procedure = stream(b"500 0 d0 BT /G 12 Tf (aaaabbbb) Tj ET")
    font = (
        b"<</Type /Font /Subtype /Type3 /FontBBox [0 0 9 9] /FontMatrix [1 0 0 1 0 0] /CharProcs <</a 7 0 R /b 7 0 R>> "
        b"/Encoding <</Differences [97 /a /b]>> /FirstChar 97 /LastChar 98 /Widths [1 1] "
        b"/Resources <</Font <</G 6 0 R>>>>>>"
    )
    content = WORD + b"BT /G 12 Tf 20 20 Td (ab) Tj ET"
    return page(content, font, procedure, resources=b"/Font <</F 5 0 R /G 6 0 R>>")


def composite_font(encoding, to_unicode):
    font = (
        b"<</Type /Font /Subtype /Type0 /BaseFont /Odd /Encoding 7 0 R /ToUnicode 8 0 R /DescendantFonts [<</Type /Font "
        b"/Subtype /CIDFontType2 /BaseFont /Odd /CIDSystemInfo <</Registry (Adobe) /Ordering (Identity) /Supplement 0>> "
        b"/FontDescriptor <</Type /FontDescriptor /FontName /Odd /Flags 4>>>>]>>"
    )
    content = WORD + b"BT /G 12 Tf 20 20 Td <00410042> Tj ET"
    return page(content, font, encoding, to_unicode, resources=b"/Font <</F 5 0 R /G 6 0 R>>")


SMALL_CMAP = stream(
    b"begincmap 1 begincodespacerange <0000> <ffff> endcodespacerange 1 beginbfchar <0041> <0061> endbfchar endcmap"
)


def wide_cmap():
    """An encoding of 2^32 codes, each of which is looked up in the map of meanings."""
    codes = b"1 begincodespacerange <00000000> <ffffffff> endcodespacerange "
    ranges = b"1 begincidrange <00000000> <ffffffff> 0 endcidrange "
    return composite_font(stream(b"begincmap " + codes + ranges + b"endcmap", b"/Type /CMap /CMapName /Odd"), SMALL_CMAP)


def looped_cmaps():
    encoding = stream(
        b"begincmap 1 begincidrange <0000> <ffff> 0 endcidrange endcmap", b"/Type /CMap /CMapName /Odd /UseCMap 7 0 R"
    )
    return composite_font(encoding, SMALL_CMAP)


def many_fonts(count=300):
    fonts = b" ".join(b"/F%d %d 0 R" % (number, number + 6) for number in range(count))
    objects = [b"<</Type /Font /Subtype /TrueType /BaseFont /Odd%d>>" % number for number in range(count)]
    content = b"".join(b"/F%d 9 Tf (x) Tj " % number for number in range(count))
    return page(deflated(b"BT " + content + b"ET"), *objects, resources=b"/Font <</F 5 0 R %b>>" % fonts)


def wide_widths():
    font = (
        b"<</Type /Font /Subtype /Type0 /BaseFont /Odd /Encoding /Identity-H /DescendantFonts [<</Type /Font /Subtype "
        b"/CIDFontType2 /BaseFont /Odd /DW 9 /W 7 0 R /FontDescriptor <</Type /FontDescriptor /FontName /Odd /Flags 4>>>>]>>"
    )
    widths = b"[%b]" % (b"0 65535 500 " * 500_000)
    content = WORD + b"BT /G 12 Tf 20 20 Td <00410042> Tj ET"
    return page(content, font, widths, resources=b"/Font <</F 5 0 R /G 6 0 R>>")


# Annotations, layers, encryption


def annotations(count=20_000):
    items = b"<</Type /Annot /Subtype /Square /Rect [0 0 9 9] /C [1 0 0]>>" * count
    return page(WORD, entries=b"/Annots [%b]" % items)


def long_field(length=200_000):
    shape = b"/Type /Annot /Subtype /Widget /FT /Tx /Ff 4096 /T (a) /DA (/Helv 9 Tf) /Rect [0 0 99 99]"
    field = b"<<%b /V (%b)>>" % (shape, b"wi " * (length // 3))
    leaf = b"<</Type /Page /Parent 2 0 R /Contents 4 0 R /Resources <</Font <</F 5 0 R>>>> /Annots [6 0 R]>>"
    form = b"/AcroForm <</NeedAppearances true /Fields [6 0 R]>>"
    catalog = b"<</Type /Catalog /Pages 2 0 R %b>>" % form
    return pdf([catalog, ONE_PAGE, leaf, stream(WORD), FONT, field])


def field_tree(depth=40):
    """2^40 ways through a form's fields."""
    objects = [
        b"<</Type /Catalog /Pages 2 0 R /AcroForm <</NeedAppearances true /Fields [6 0 R]>>>>",
        ONE_PAGE,
        b"<</Type /Page /Parent 2 0 R /Contents 4 0 R /Resources <</Font <</F 5 0 R>>>> /Annots [6 0 R]>>",
        stream(WORD),
        FONT,
    ]
    for level in range(depth):
        number = len(objects) + 2
        objects.append(b"<</Subtype /Widget /Rect [0 0 9 9] /FT /Tx /T (a) /Kids [%d 0 R %d 0 R]>>" % (number, number))
    return pdf([*objects, b"<</FT /Tx /V (x)>>"])


def layers(depth=40):
    """Whether a layer shows depends on 2^40 others."""
    objects = []
    for level in range(depth):
        number = level + 7
        objects.append(b"<</Type /OCMD /P /AllOn /OCGs [%d 0 R %d 0 R]>>" % (number, number))
    content = b"/OC /L BDC\n" + WORD + b"EMC\n"
    start = b"/Font <</F 5 0 R>> /Properties <</L 6 0 R>>"
    data = page(content, *objects, b"<</Type /OCG /Name (x)>>", resources=start)
    return data.replace(CATALOG, b"<</Type /Catalog /Pages 2 0 R /OCProperties <</OCGs [46 0 R] /D <</ON [46 0 R]>>>>>>")


def broken_encryption():
    keys = b"/O <> /U <> /OE <> /UE <> /Perms <>"
    lock = b"<</Filter /Standard /V 5 /R 6 /Length 2147483647 /P -1 %b /CF <</StdCF 6 0 R>>>>" % keys
    return pdf([CATALOG, ONE_PAGE, b"<</Type /Page>>"], b"/Root 1 0 R /Encrypt %b /ID [<> <>]" % lock)


def dead_root():
    return pdf([b"2 0 R", b"3 0 R", b"1 0 R"])


def nothing_but_noise():
    return b"%PDF-1.7\n" + random.Random(3).randbytes(8 * MEBIBYTE)


def long_length_reference():
    """A stream whose length is itself."""
    return page(b"<</Length 4 0 R>>\nstream\n" + WORD + b"endstream")


WHOLE, PART, NOTHING = "whole", "part", "nothing"
DOCUMENTS = {
    deep_page_tree: NOTHING,
    shared_page_tree: NOTHING,
    shared_pages: PART,
    looped_page_tree: NOTHING,
    looped_parents: NOTHING,
    pages_without_end: NOTHING,
    content_of_spaces: PART,
    content_of_operators: PART,
    many_slow_pages: PART,
    content_of_text: PART,
    content_of_strings: PART,
    content_of_comments: PART,
    run_length_bomb: NOTHING,
    lzw_bomb: NOTHING,
    thousand_filters: NOTHING,
    content_in_pieces: NOTHING,
    million_entries: NOTHING,
    nested_arrays: WHOLE,
    nested_dictionaries: WHOLE,
    nested_arrays_in_content: PART,
    chained_references: NOTHING,
    looped_object_streams: NOTHING,
    object_stream_bomb: NOTHING,
    looped_xrefs: NOTHING,
    long_chain_of_xrefs: NOTHING,
    huge_xref_section: NOTHING,
    objects_without_end: NOTHING,
    unended_strings: NOTHING,
    name_tree_of_links: WHOLE,
    doubled_forms: PART,
    deep_forms: PART,
    soft_masks: PART,
    patterns: PART,
    tiny_tiles: WHOLE,
    shadings: WHOLE,
    color_of_many_inputs: WHOLE,
    color_by_long_program: PART,
    nested_color_spaces: NOTHING,
    saved_states: PART,
    given_texts: PART,
    looped_structure: WHOLE,
    divided_words: WHOLE,
    combining_marks: WHOLE,
    huge_boxes: WHOLE,
    inline_images: PART,
    jbig2_bomb: WHOLE,
    jbig2_content: NOTHING,
    jpx_bomb: WHOLE,
    type3_operators: WHOLE,
    recursive_type3: WHOLE,
    wide_cmap: PART,
    looped_cmaps: PART,
    many_fonts: WHOLE,
    wide_widths: PART,
    annotations: WHOLE,
    long_field: WHOLE,
    field_tree: WHOLE,
    layers: NOTHING,
    broken_encryption: NOTHING,
    dead_root: NOTHING,
    nothing_but_noise: NOTHING,
    long_length_reference: WHOLE,
}


def outcome(answer, reason):
    """What became of a document, of what the helper answered and said about it."""
    if reason is None:
        return WHOLE
    return PART if answer and answer.get("String") else NOTHING
