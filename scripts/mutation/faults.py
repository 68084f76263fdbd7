# SPDX-License-Identifier: Apache-2.0
"""The single faults that can be made in a C++ source. Each replaces one stretch of its text and moves no other line."""

import itertools
import re
from collections import namedtuple

from mutation.source import Source

# `text[start:end]` becomes `replacement`; `line` counts from 1.
Fault = namedtuple("Fault", "kind line start end replacement")

COMPARISONS = {"<": "<=", "<=": "<", ">": ">=", ">=": ">", "==": "!=", "!=": "=="}
INTEGER = re.compile(r"(0[xX][\dA-Fa-f']+|0[bB][01']+|[\d']+)([uUlLzZ]*)")
CHARACTER = re.compile(r"((?:u8|[uUL])?)'([ -~])'")
# A key, a name, an option: not what people read.
WORD = re.compile(r'((?:u8|[uUL])?")([\w./:=~-]+)("\w*)')
# Values that are set under keys, in any order.
KEYED = re.compile(r".*(?:\.|->)set\w*\(.*\"")
# What a function answers when it cannot do its work.
FAILURE = re.compile(
    r'(return( (nil|false|nullptr|\w*::nullopt|-1|\{\}|u?""\w*|\w+(\(\)|\{\})|\w*([eE]rror|[fF]ail|NotFound|Exit).*))?'
    r"|throw.*);"
)
CASTS = frozenset("static_cast reinterpret_cast const_cast dynamic_cast".split())
STATEMENT_WORDS = frozenset("return throw case co_return else".split())
NO_ARRAYS = frozenset("auto return delete new operator case throw".split())


def faults_of(text):
    """All the faults that can be made in the text, in no order that means anything."""
    source = Source(text)
    for maker in (comparisons, conditions, operands, numbers, indexes, constants, statements):
        for kind, start, end, replacement in maker(source):
            if replacement != text[start:end]:
                lines = text.count("\n", start, end) - replacement.count("\n")
                yield Fault(kind, source.line_of(start), start, end, replacement + "\n" * lines)


def tokens(source, kind):
    """The tokens of a kind that may be touched, with their indexes."""
    for index, token in enumerate(source.tokens):
        if token.kind == kind and index not in source.outside:
            yield index, token


def comparisons(source):
    for index, token in tokens(source, "operator"):
        is_operation = source.is_spaced(index) and source.word(index - 1) not in ("operator", "template")
        if token.text in COMPARISONS and is_operation:
            yield "comparison", token.start, token.end, COMPARISONS[token.text]


def conditions(source):
    """A condition that always or never holds; one that never holds in front of a failure is an error ignored."""
    for index, token in tokens(source, "name"):
        opener = index + 1
        if token.text not in ("if", "while") or source.word(opener) != "(" or opener not in source.partner:
            continue
        closer = source.partner[opener]
        inner = [i for i in range(opener + 1, closer) if source.outer[i] == opener]
        first = max([i + 1 for i in inner if source.word(i) == ";"], default=opener + 1)
        if first >= closer or any(source.word(i) == "=" for i in inner if i >= first):
            continue  # A declaration or an assignment: its value is used.
        start, end = source.tokens[first].start, source.tokens[closer - 1].end
        if token.text == "while":
            yield "condition", start, end, "false"
            continue
        yield "condition", start, end, "true"
        if not guards_against_error(source, closer + 1):
            yield "condition", start, end, "false"
        elif calls(source, first, closer):
            yield "error", start, end, f"(static_cast<void>({source.text[start:end]}), false)"
        else:
            yield "error", start, end, "false"


def guards_against_error(source, body):
    """Whether the statement or block that starts here does little more than return a failure or throw."""
    last = source.partner.get(body) if source.word(body) == "{" else source.statement_end(body)
    if last is None or source.word(last + 1) == "else":
        return False
    inner = range(body, last + 1)
    semicolons = [i for i in inner if source.word(i) == ";"]
    starts = [i for i in inner if source.word(i) in ("return", "throw")]
    if len(starts) != 1 or not 1 <= len(semicolons) <= 3 or semicolons[-1] < starts[0]:
        return False
    answer = source.text[source.tokens[starts[0]].start : source.tokens[semicolons[-1]].end]
    return re.fullmatch(FAILURE, " ".join(answer.split())) is not None


def calls(source, first, last):
    openers = [i for i in range(first + 1, last) if source.word(i) == "("]
    return any(source.kind(i - 1) == "name" and source.word(i - 1) not in CASTS for i in openers)


def operands(source):
    """One operand of `&&` or `||` left out."""
    for index, token in tokens(source, "operator"):
        if token.text not in ("&&", "||") or not source.is_spaced(index):
            continue
        start = operand_edge(source, index, -1)
        end = operand_edge(source, index, 1)
        if start is not None and end is not None:
            yield "condition", source.tokens[start].start, source.tokens[index + 1].start, ""
            yield "condition", source.tokens[index - 1].end, source.tokens[end].end, ""


def operand_edge(source, operator, step):
    """The outermost token of the operand on one side of the operator, or None when there is none."""
    stops = {",", ";", "?", ":", "=", "||"} | ({"&&"} if source.word(operator) == "&&" else set())
    jumps, ends = (("(", "[", "{"), (")", "]", "}"))[::step]
    edge, index = None, operator + step
    while 0 <= index < len(source.tokens):
        word = source.word(index)
        if word in jumps:
            index = source.partner.get(index, index)
        elif word in stops or word in ends or word in STATEMENT_WORDS:
            break
        edge = index
        index += step
    return edge


def numbers(source):
    """Whole numbers off by one, and other numbers in their place."""
    for index, token in tokens(source, "number"):
        match = INTEGER.fullmatch(token.text)
        is_pure = source.word(index - 1) == "=" and source.word(index - 2) in (")", "const", "override", "noexcept")
        if not match or is_pure:
            continue
        digits, suffix = match[1].replace("'", ""), match[2]
        base = {"x": 16, "b": 2}.get(digits[1:2].lower(), 8 if digits[0] == "0" else 10)
        value = int(digits, base)
        written = {2: "0b{:b}", 8: "0{:o}", 10: "{}", 16: "0x{:x}"}[base if value else 10]
        others = [("off by one", value + 1)]
        others += [("off by one", value - 1)] if value > 0 else []
        others += [("constant", 0), ("constant", 2 * value)] if value > 1 else []
        for kind, other in others:
            yield kind, token.start, token.end, (written.format(other) if other else "0") + suffix


def indexes(source):
    for index, token in tokens(source, "operator"):
        closer = source.partner.get(index)
        is_subscript = source.word(index - 1) in (")", "]") or (
            source.kind(index - 1) == "name" and source.word(index - 1) not in NO_ARRAYS
        )
        if token.text != "[" or closer is None or not is_subscript or closer == index + 1:
            continue
        inner = [source.kind(i) for i in range(index + 1, closer)]
        if inner != ["number"] and "string" not in inner:
            end = source.tokens[closer].start
            for replacement in (" + 1", " - 1"):
                yield "off by one", end, end, replacement


def constants(source):
    for _, token in tokens(source, "name"):
        if token.text in ("true", "false"):
            yield "constant", token.start, token.end, "false" if token.text == "true" else "true"
    for _, token in tokens(source, "char"):
        match = CHARACTER.fullmatch(token.text)
        other = chr(ord(match[2]) + 1) if match else ""
        if match and other not in "'\\\x7f":
            yield "constant", token.start, token.end, f"{match[1]}'{other}'"
    for index, token in tokens(source, "string"):
        match = WORD.fullmatch(token.text)
        if match and "string" not in (source.kind(index - 1), source.kind(index + 1)):
            yield "constant", token.start, token.end, match[1] + (match[2][:-1] or match[2] + "x") + match[3]


def statements(source):
    """Calls left out, exceptions not thrown, and neighbours that have something in common the other way round."""
    previous = None  # The statement in front: where it starts, its semicolon.
    for index, token in enumerate(source.tokens):
        if index in source.outside or not source.starts_statement(index):
            continue
        if token.text == "throw" and source.word(index - 1) != ")" and source.statement_end(index):
            yield "error", token.start, source.tokens[source.statement_end(index)].start, ""
        found = source.expression_statement(index)
        if not found or found[1] - 1 in source.outside:
            continue
        kind, semicolon = found
        if kind == "call":
            yield "dropped", token.start, source.tokens[semicolon].start, ""
        is_block_level = source.word(index - 1) in (";", "{", "}")
        if previous and previous[1] == index - 1 and is_order_relevant(source, previous, (index, semicolon)):
            start, end = source.tokens[previous[0]].start, source.tokens[semicolon].end
            first = source.text[start : source.tokens[previous[1]].end]
            second = source.text[token.start : end]
            yield "swapped", start, end, second + source.text[start + len(first) : token.start] + first
        previous = (index, semicolon) if is_block_level else None


def is_order_relevant(source, first, second):
    """Whether one of two statements seems to use what the other changes."""
    a, b = ([source.word(i) for i in range(*one) if source.word(i) not in ("++", "--", "*")] for one in (first, second))
    if KEYED.match("".join(a)) and KEYED.match("".join(b)):
        return False
    return changes(a, b) or changes(b, a)


def changes(words, others):
    """Whether one statement changes what stands in the other: assigns to it, calls its method or hands it on."""
    chain = list(itertools.takewhile(lambda word: word.isidentifier() or word in (".", "->", "::"), words))
    if "".join(words[len(chain) :]).startswith("("):
        methods = [i for i, word in enumerate(chain) if word in (".", "->")]
        if not methods:
            return not {word for word in words[len(chain) :] if word.isidentifier()}.isdisjoint(others)
        chain = chain[: methods[-1]]
    for i, word in enumerate(others):
        is_whole = word == chain[0] and others[i + 1 : i + 2] not in ([], ["."], ["->"])
        if is_whole or others[i : i + len(chain)] == chain:
            return True
    return False
