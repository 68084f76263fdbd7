#!/usr/bin/env python3
# SPDX-License-Identifier: Apache-2.0
"""Makes documents of random content in this folder, the files SEED-NUMBER.EXTENSION; the same each time."""

import argparse
import pathlib

from makers.chance import RANDOM
from makers.feeds import feed, json_feed
from makers.packages import open_document, open_xml
from makers.pages import page
from makers.rich_text import rtf
from makers.strings import date, encoded, header_date, url

MAKERS = {"html": page, "rtf": rtf, "xml": feed, "json": json_feed, "docx": open_xml, "odt": open_document, "htm": encoded,
          "dates": lambda: "".join(date() + "\n" for _ in range(200)),
          "header-dates": lambda: "".join(header_date() + "\n" for _ in range(60)), "urls": lambda: "".join(url() + "\n" for _ in range(100))}  # fmt: skip

parser = argparse.ArgumentParser(description=__doc__)
parser.add_argument("extension", metavar="EXTENSION", choices=MAKERS, help=", ".join(MAKERS))
parser.add_argument("seed", metavar="SEED", help="what the choices start from")
parser.add_argument("count", metavar="COUNT", type=int, help="how many files are made")
options = parser.parse_args()
RANDOM.seed(f"{options.extension} {options.seed}")
for number in range(options.count):
    data = MAKERS[options.extension]()
    pathlib.Path(f"{options.seed}-{number}.{options.extension}").write_bytes(data if isinstance(data, bytes) else data.encode())
