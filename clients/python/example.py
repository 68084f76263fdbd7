#!/usr/bin/env python3
# SPDX-License-Identifier: Apache-2.0
"""Prints how many pages a PDF has, and its first words:  example.py FILE"""

import sys

from quiverleaf import Helper, HelperError


def main() -> None:
    if len(sys.argv) != 2:
        sys.exit("usage: example.py FILE")
    with open(sys.argv[1], "rb") as file:
        pdf = file.read()
    try:
        with Helper() as helper:
            answer = helper.attributedStringWithPDF(False, pdf)
    except HelperError as error:
        sys.exit(f"example: {error}")
    if answer is None:
        sys.exit(f"example: {sys.argv[1]} is no PDF that can be read")
    print(f"{answer['PageCount']} pages")
    print(" ".join(answer.get("String", "").split()[:12]))


if __name__ == "__main__":
    main()
