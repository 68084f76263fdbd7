# SPDX-License-Identifier: Apache-2.0
"""The single faults that can be made in the product's sources, and a choice of them.

They are found in the text alone, so that some do not compile; the choice is none the worse for these.
"""

import pathlib
import random
import re
from collections import namedtuple

# `text[start:end]` becomes `replacement`; `line` counts from 1.
Fault = namedtuple("Fault", "kind path line start end replacement")

FLOORS = ("platform", "Classes", "helper", "tools", "clients", "importers")
# A fault in a header that so many sources include takes minutes.
MOST_USERS = 15
# What handles processes, files and sockets, or wires the parts together; and a named limit.
WIRING = re.compile(r"^(helper|tools|clients|importers)/|Connection|RunLoop|Task|File|Bundle|PlugIn")
SYSTEM = re.compile(r"^#include <((fcntl|unistd|signal|spawn|poll|dlfcn|dirent)\.h|sys/.*|filesystem|fstream|thread)>", re.M)
LIMIT = re.compile(r"\bk(Max|Min|Large|Most)\w*|\bk\w+(Seconds|Bytes|Limit)\b")

NO_CODE = re.compile(
    r"//[^\n]*|/\*.*?\*/|^[ \t]*#(?:[^\\\n]|\\.)*|\bstatic_assert\(.*?\);"
    r'|R"(\w*)\(.*?\)\1"|"(?:[^"\\\n]|\\.)*"|\'(?:[^\'\\\n]|\\[^\n]{1,9})\'',
    re.M | re.S,
)
COMPARISONS = {"<": "<=", "<=": "<", ">": ">=", ">=": ">", "==": "!=", "!=": "=="}
INTEGER = re.compile(r"(?<![\w.'])(0[xX][\dA-Fa-f']+|\d[\d']*)(?=[uUlLzZ]*\b)(?!\.\d)")
INDEX = re.compile(r"(?<=[\w\])]\[)\w+(?=\])")
# A key, a name, an option: not what people read.
WORD = re.compile(r"[\w./:=~-]*[\w./:=~-]")
# What a function answers when it cannot do its work.
FAILURE = re.compile(r'[\s{]*(return( (nil|false|nullptr|[\w:]*nullopt|-1|\{\}|u?" *"\w*|\w+(\(\)|\{\})))?|throw [^;]*);')
CALL = re.compile(r"^ +[^\s(]*[\w>]\([^{}]*\);$")
ASSIGNMENT = re.compile(r"^ +[^\s(]+ [-+*|&]?= [^{}]*;$")
# The object that a call or an assignment changes.
CHANGED = re.compile(r" +([\w.>-]+?)(?:\(\))?(?:(?:\.|->)\w+(?:<[^(]*>)?\(| [-+*|&]?= )")
# A call of a C function, which changes its arguments and `errno` alone; one of a function of ours may change anything.
C_CALL = re.compile(r" +(?:::|std::|[a-z]+_)\w+\((.*)\);$")
# A name, but of a type or a constant, which nothing changes.
NAME = re.compile(r"\b(?!(?:k[A-Z]\w*|[A-Z_\d]+|std|int|auto|sizeof|nullptr|\w+_(?:cast|t))\b)[A-Za-z_]\w*(?:(?:\.|->)[A-Za-z_]\w*)*")
SETTER = re.compile(r" +([\w.>-]*?)\bset(?![a-z])\w*\(")
# What stands in a member until it is set, so that nothing is undefined; most are always set.
UNSET = re.compile(r"(?<= =) (?:0|false)(?=[,;])")
# The length of an array that is declared: a longer one holds as much.
ARRAY = re.compile(r"^ *(?!return\b)(?:[\w:<>]+ )+\w+\[(\w+)\](?= =|;)", re.M)


def masked(text):
    """The text with blanks for what is no code, and in strings and characters."""

    def blank(match):
        quoted = match[0][0] in "R\"'" and len(match[0]) > 1
        inner = re.sub(r"[^\n]", " ", match[0][1:-1] if quoted else match[0])
        return match[0][0] + inner + match[0][-1] if quoted else inner

    return NO_CODE.sub(blank, text)


def end_of_operand(code, start, step, stops):
    """Where an operand of a condition ends that starts at `start` and is read in steps of 1 or -1."""
    opening, closing = ("([{", ")]}") if step > 0 else (")]}", "([{")
    depth, at = 0, start
    while 0 <= at < len(code):
        depth += (code[at] in opening) - (code[at] in closing)
        here = code[at:] if step > 0 else code[: at + 1]
        if depth < 0 or (depth == 0 and any(here.startswith(stop) if step > 0 else here.endswith(stop) for stop in stops)):
            break
        at += step
    return at if step > 0 else at + 1


def conditions(code):
    """A condition that always or never holds; one that never holds in front of a failure is an error ignored."""
    for match in re.finditer(r"\b(if|while) \(", code):
        start, end = match.end(), end_of_operand(code, match.end(), 1, ())
        if re.search(r";|[^=!<>]=[^=]", code[start:end]):
            continue  # A declaration or an assignment: its value is used.
        ignored = match[1] == "if" and FAILURE.match(code, end + 1)
        yield "error" if ignored else "condition", start, end, "false"
        if match[1] == "if" and not ignored:
            yield "condition", start, end, "true"
    for match in re.finditer(r"throw [^;]*;", code):
        yield "error", match.start(), match.end(), ";"
    for match in re.finditer(r"\s(&&|\|\|)\s+", code):
        others = ("||", ";", "?", ",") if match[1] == "||" else ("&&", "||", ";", "?", ",")
        yield "condition", match.start(), end_of_operand(code, match.end(), 1, others), ""
        starts = (*others, "return ", " = ", ": ", "{")
        yield "condition", end_of_operand(code, match.start(), -1, starts), match.end(), " "


def is_member(code, at):
    """Whether a declaration stands in a class, not in a function."""
    start = end_of_operand(code, at, -1, ())
    head = code[max(code.rfind(end, 0, start - 1) for end in ";{}") + 1 : start]
    return re.search(r"\b(class|struct|union)\b", head) is not None


def values(code, text):
    unset = {match.start() + 1 for match in UNSET.finditer(code) if is_member(code, match.start())}
    lengths = {match.start(1) for match in ARRAY.finditer(code)}
    for match in re.finditer(r"(?<= )([<>]=?|[=!]=)(?=\s)", code):
        yield "comparison", *match.span(), COMPARISONS[match[0]]
    for match in INTEGER.finditer(code):
        if match.start() in unset:
            continue
        number = int(match[1].replace("'", ""), 0) if match[1][1:2] in ("x", "X") else int(match[1].replace("'", ""))
        for kind, faulty in (("off by one", number + 1), ("off by one", number - 1), ("constant", 2 * number), ("constant", 0)):
            if faulty not in (-1, number) and not (match.start() in lengths and faulty > number):
                yield kind, *match.span(), str(faulty)
    for match in INDEX.finditer(code):
        for step in (" - 1",) if match.start() in lengths else (" + 1", " - 1"):
            yield "off by one", *match.span(), match[0] + step
    for match in re.finditer(r"\b(true|false)\b", code):
        if match.start() not in unset:
            yield "constant", *match.span(), "false" if match[0] == "true" else "true"
    for match in re.finditer(r"(['\"])( +)\1", code):
        inner = text[match.start(2) : match.end(2)]
        if match[1] == "'" and len(inner) == 1:
            yield "constant", *match.span(2), chr(ord(inner) + 1)
        elif match[1] == '"' and WORD.fullmatch(inner) and "\\" not in inner:
            yield "constant", *match.span(2), inner[:-1]


def are_ordered(first, second):
    """Whether two statements may differ in the other order: not two settings, nor objects that neither shares with the other."""
    setters = SETTER.match(first), SETTER.match(second)
    if all(setters) and setters[0][1] == setters[1][1]:
        return False
    changed = changed_names(first), changed_names(second)
    if None in changed:
        return True
    return any(
        f"{name}.".startswith(f"{one}.") or f"{one}.".startswith(f"{name}.")
        for ones, names in ((changed[0], names_in(second)), (changed[1], names_in(first)))
        for one in ones
        for name in names
    )


def names_in(line):
    return {found[0].replace("->", ".") for found in NAME.finditer(line)} | ({"errno"} if C_CALL.match(line) else set())


def changed_names(line):
    """What a statement on a line of its own changes; None when that cannot be told."""
    call, changed = C_CALL.match(line), CHANGED.match(line)
    if call:
        return names_in(call[1]) or None
    return {changed[1].replace("->", ".")} if changed else None


def statements(code):
    """A call that is dropped, and two statements in the wrong order; each on a line of its own."""
    start, lines = 0, code.split("\n")
    for before, line, following in zip(["", *lines], lines, [*lines[1:], ""]):
        end = start + len(line)
        is_call = CALL.match(line) and ".reserve(" not in line
        if is_call and before.rstrip().endswith((";", "{", "}", ")", "else", ":")):
            yield "dropped", start + len(line) - len(line.lstrip()), end, ";"
        is_pair = re.match(" *", line)[0] == re.match(" *", following)[0]
        if is_pair and ".reserve(" not in line + following and before.rstrip().endswith((";", "{", "}")):
            kinds = [bool(CALL.match(one)) + 2 * bool(ASSIGNMENT.match(one)) for one in (line, following)]
            if all(kinds) and 1 in kinds and are_ordered(line, following):
                yield "swapped", start, end + 1 + len(following), None
        start = end + 1


def faults_of(path, text):
    """All the faults that can be made in the text of a file, in no order that means anything."""
    code = masked(text)
    for kind, start, end, replacement in (*conditions(code), *values(code, text), *statements(code)):
        if kind == "swapped":
            replacement = "\n".join(reversed(text[start:end].split("\n")))
        if replacement != text[start:end]:
            yield Fault(kind, path, text.count("\n", 0, start) + 1, start, end, replacement)


def is_aimed(fault, text):
    """Whether a fault is one of errors, limits, processes, files or wiring."""
    line = text.split("\n")[fault.line - 1]
    return fault.kind == "error" or WIRING.search(fault.path) or SYSTEM.search(text) or LIMIT.search(line)


def choose(sources, count, seed, only=(), aimed=False):
    """`count` faults of {path: text}, at most all: a file by its lines, then a kind, then one of these."""
    found = {}
    for path, text in sorted(sources.items()):
        users = sum(f'"{path}"' in other for other in sources.values()) if path.endswith(".hpp") else 0
        is_product = path.startswith(tuple(floor + "/" for floor in FLOORS)) and pathlib.PurePath(path).suffix in (".cpp", ".hpp")
        if not is_product or users > MOST_USERS or (only and not path.startswith(tuple(only))):
            continue
        found[path] = [fault for fault in faults_of(path, text) if not aimed or is_aimed(fault, text)]
    chance = random.Random(seed)
    while count > 0 and (left := {path: faults for path, faults in found.items() if faults}):
        path = chance.choices(list(left), [len({fault.line for fault in faults}) for faults in left.values()])[0]
        kind = chance.choice(sorted({fault.kind for fault in left[path]}))
        fault = chance.choice([fault for fault in left[path] if fault.kind == kind])
        found[path].remove(fault)
        count -= 1
        yield fault


def apply(text, fault):
    return text[: fault.start] + fault.replacement + text[fault.end :]
