#!/usr/bin/env python3
# SPDX-License-Identifier: Apache-2.0
"""make_documents.py EXTENSION SEED COUNT: documents of random content in this folder, COUNT files SEED-NUMBER.EXTENSION."""

import pathlib
import sys

from makers.chance import RANDOM
from makers.feeds import feed, json_feed
from makers.packages import open_document, open_xml
from makers.pages import page
from makers.rich_text import rtf
from makers.strings import date, encoded, header_date, url

MAKERS = {"html": page, "rtf": rtf, "xml": feed, "json": json_feed, "docx": open_xml, "odt": open_document, "htm": encoded,
          "dates": lambda: "".join(date() + "\n" for _ in range(200)),
          "header-dates": lambda: "".join(header_date() + "\n" for _ in range(60)), "urls": lambda: "".join(url() + "\n" for _ in range(100))}  # fmt: skip

extension, seed, count = sys.argv[1:]
RANDOM.seed(f"{extension} {seed}")
for number in range(int(count)):
    data = MAKERS[extension]()
    pathlib.Path(f"{seed}-{number}.{extension}").write_bytes(data if isinstance(data, bytes) else data.encode())
