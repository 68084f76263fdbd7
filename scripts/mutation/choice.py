# SPDX-License-Identifier: Apache-2.0
"""Which faults are made: chosen at random from a seed, over the product's files by their lines."""

import random
import re
from collections import namedtuple
from pathlib import PurePosixPath

from mutation.faults import faults_of

FLOORS = ("platform", "Classes", "helper", "tools", "clients", "importers")
SUFFIXES = (".c", ".cpp", ".h", ".hpp")

# What handles processes, files and sockets, or wires the parts together.
WIRING = ("helper/", "tools/", "clients/", "importers/")
WIRING_NAME = re.compile(r"Connection|RunLoop|Task|File|Bundle|PlugIn")
SYSTEM_HEADER = re.compile(
    r"^#include <((fcntl|unistd|signal|spawn|poll|dlfcn|dirent|syslog)\.h|sys/.*|filesystem|fstream|thread)>", re.MULTILINE
)
# A named number, where it is made.
LIMIT = re.compile(r"\bconstexpr [\w:<> ]+ (k[A-Z]\w*)(?: = |\{)")
NAME = re.compile(r"\w+")
INCLUDE = re.compile(r'^[ \t]*#[ \t]*include[ \t]*"([^"]+)"', re.MULTILINE)

Choice = namedtuple("Choice", "path fault")


def is_product(path):
    return PurePosixPath(path).suffix in SUFFIXES and path.startswith(tuple(floor + "/" for floor in FLOORS))


def is_named(path, line, names):
    """Whether one of the names, FILE, FOLDER or FILE:LINE, means this line."""
    return any(name in (path, f"{path}:{line}") or path.startswith(name.rstrip("/") + "/") for name in names)


def dependents(sources):
    """How many translation units of {path: text} include each file, directly or through another one."""
    users = {path: set() for path in sources}
    for path, text in sources.items():
        for header in INCLUDE.findall(text):
            beside = str(PurePosixPath(path).parent / header)
            users.setdefault(header if header in sources else beside, set()).add(path)
    counts = {}
    for path in sources:
        reached, waiting = set(), [path]
        while waiting:
            one = waiting.pop()
            if one not in reached:
                reached.add(one)
                waiting.extend(users.get(one, ()))
        counts[path] = sum(one.endswith((".c", ".cpp")) for one in reached)
    return counts


def aimed(path, sources, faults, limits):
    """The faults of a file that are aimed at errors, limits (whose names are given), processes, files or wiring."""
    text = sources[path]
    stem = path.rpartition(".")[0]
    pair = [sources.get(stem + suffix, "") for suffix in SUFFIXES]
    is_wiring = path.startswith(WIRING) or WIRING_NAME.search(stem)
    if is_wiring or any(SYSTEM_HEADER.search(one) for one in pair):
        return faults
    limited = {number for number, line in enumerate(text.split("\n"), 1) if not limits.isdisjoint(NAME.findall(line))}
    return [fault for fault in faults if fault.kind == "error" or fault.line in limited]


def candidates(sources, only=(), exclude=(), is_aimed=False, most_dependents=None):
    """The faults that may be made, {path: [Fault]}, and the headers left out because too much includes them."""
    found, too_wide = {}, []
    counts = dependents(sources)
    limits = {name for path in filter(is_product, sources) for name in LIMIT.findall(sources[path])}
    for path in sorted(filter(is_product, sources)):
        faults = [
            fault
            for fault in faults_of(sources[path])
            if (not only or is_named(path, fault.line, only)) and not is_named(path, fault.line, exclude)
        ]
        if is_aimed:
            faults = aimed(path, sources, faults, limits)
        if faults and most_dependents is not None and counts[path] > most_dependents:
            too_wide.append(path)
        elif faults:
            found[path] = faults
    return found, too_wide


def choose(found, count, seed):
    """`count` different faults of {path: [Fault]}, at most all: a file by its lines, then a kind, then one of these."""
    chance = random.Random(seed)
    left = {path: list(faults) for path, faults in found.items()}
    weights = {path: len({fault.line for fault in faults}) for path, faults in found.items()}
    while left and count > 0:
        path = chance.choices(list(left), [weights[one] for one in left])[0]
        kind = chance.choice(sorted({fault.kind for fault in left[path]}))
        fault = chance.choice([fault for fault in left[path] if fault.kind == kind])
        left[path].remove(fault)
        if not left[path]:
            del left[path]
        count -= 1
        yield Choice(path, fault)
