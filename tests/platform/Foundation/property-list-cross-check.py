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


def value(rng, depth):
    kind = rng.randrange(10 if depth < 5 else 8)
    size = rng.choice([0, 1, 3, 14, 15, 40, 300])
    if kind == 0:
        return rng.random() < 0.5
    if kind == 1:
        return rng.choice([-1, 1]) * rng.getrandbits(rng.choice([1, 8, 9, 16, 17, 32, 33, 63]))
    if kind == 2:
        return rng.choice([rng.gauss(0, 1), rng.gauss(0, 1e300), 0.1, 1e22, float("inf"), 5e-324])
    if kind == 3:
        return datetime.datetime(rng.randint(1, 9999), rng.randint(1, 12), rng.randint(1, 28), rng.randrange(24),
                                 rng.randrange(60), rng.randrange(60))
    if kind == 4:
        return rng.randbytes(size)
    if kind < 8:
        return "".join(rng.choice("ab<&>\"' \t\né€\u2028\U0001f600") for _ in range(size))
    if kind == 8:
        return [value(rng, depth + 1) for _ in range(size % 20)]
    return {"%s %d" % (rng.choice("aé"), i): value(rng, depth + 1) for i in range(size % 20)}


def same(a, b):
    """Equal values of equal types in equal order."""
    return repr(a) == repr(b)


def main():
    rng = random.Random(2001)
    lists = [value(rng, 0) for _ in range(20)]
    lists.append({str(i): {"key": i, "text": "x" * i} for i in range(700)})
    for original in lists:
        theirs = {form: plistlib.dumps(original, fmt=form, sort_keys=False) for form in (BINARY, XML)}
        for form, data in theirs.items():
            assert same(plistlib.loads(convert(data, "binary"), fmt=BINARY), original), original
            # The same XML, to the byte.
            assert convert(data, "xml") == theirs[XML], original
    units = [None, "\0\x1f", {"\0": [True]}]
    assert same(plistlib.loads(convert(plistlib.dumps(units, fmt=BINARY), "binary")), units)


main()
