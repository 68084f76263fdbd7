# SPDX-License-Identifier: Apache-2.0
"""Compares property lists with Python's own: property-list-cross-check.py CONVERTER"""

import datetime
import plistlib
import random
import subprocess
import sys

BINARY, XML = plistlib.FMT_BINARY, plistlib.FMT_XML


def convert(data, name):
    return subprocess.run([sys.argv[1], name], input=data, check=True, capture_output=True).stdout


def main():
    rng = random.Random(2001)
    lists = [
        [sign * (1 << bits) + near for bits in range(63) for sign in (-1, 1) for near in (-1, 0, 1)],
        [0.1, 1e22, float("inf"), 5e-324, True, False, *(rng.gauss(0, 10.0**power) for power in range(-300, 300, 30))],
        [datetime.datetime(year, 12, 28, year % 24, 59, 58) for year in (1, 1582, 1969, 2000, 2001, 9999)],
        ["".join(rng.choice("ab<&>\"' \t\né€\u2028\U0001f600") for _ in range(size)) for size in range(60)],
        *([["x" * size, "€" * size, rng.randbytes(size), [True] * size] for size in (0, 14, 15, 255, 256, 65535, 65536)]),
        {str(i): {"key": i, "text": "x" * i, "é": [{}, [[]]]} for i in range(700)},
    ]
    for original in lists:
        theirs = {form: plistlib.dumps(original, fmt=form, sort_keys=False) for form in (BINARY, XML)}
        for form, data in theirs.items():
            # Equal values of equal types in equal order.
            assert repr(plistlib.loads(convert(data, "binary"), fmt=BINARY)) == repr(original), original
            # The same XML, to the byte.
            assert convert(data, "xml") == theirs[XML], original
    units = [None, "\0\x1f", {"\0": [True]}]
    assert repr(plistlib.loads(convert(plistlib.dumps(units, fmt=BINARY), "binary"))) == repr(units)


main()
