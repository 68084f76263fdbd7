# SPDX-License-Identifier: Apache-2.0
"""C++ source text as tokens, brackets and statements, as far as the makers of faults need it.

It is no parser: it relies on the layout that scripts/check-format keeps, such as blanks around a comparison and none
before the `<` of a template, and where it guesses wrong the fault does not compile.
"""

import bisect
import re
from collections import namedtuple

Token = namedtuple("Token", "kind text start end")

TOKEN = re.compile(
    r"""
    (?P<space>(?:\s|\\\n)+)
  | (?P<comment>//[^\n]*|/\*.*?\*/)
  | (?P<string>(?:u8|[uUL])?(?:R"(?P<delimiter>[^()\\\s]{0,16})\(.*?\)(?P=delimiter)"|"(?:[^"\\\n]|\\.)*")\w*)
  | (?P<char>(?:u8|[uUL])?'(?:[^'\\\n]|\\.)+'\w*)
  | (?P<number>\.?\d(?:[eEpP][+-]|'?\w|\.)*)
  | (?P<name>[A-Za-z_]\w*)
  | (?P<operator><=>|<<=|>>=|\.\.\.|->\*|::|->|\+\+|--|<<|>>|<=|>=|==|!=|&&|\|\||[-+*/%&|^]=|.)
    """,
    re.VERBOSE | re.DOTALL,
)
DIRECTIVE = re.compile(r"\#(?:[^\\\n]|\\.)*", re.DOTALL)

KEYWORDS = frozenset(
    "alignas auto bool break case catch char class co_await co_return co_yield concept const constexpr constinit "
    "continue default delete do double else enum explicit export extern float for friend goto if inline int long "
    "mutable namespace new noexcept operator private protected public requires return short signed sizeof static "
    "static_assert struct switch template throw try typedef typename union unsigned using virtual void volatile "
    "while".split()
)
ASSIGNMENTS = frozenset("= += -= *= /= %= &= |= ^= <<= >>=".split())
CLOSERS = {"(": ")", "[": "]", "{": "}"}
# What is for the compiler alone, checks the code itself, or only makes it faster, with its parentheses.
WITHOUT_EFFECT = frozenset("static_assert assert sizeof decltype alignas noexcept reserve shrink_to_fit".split())


class Source:
    """The tokens of a text without comments and preprocessor lines, with the bracket around each and its partner.

    `outer[i]` is the index of the innermost bracket open around token i, or None; `partner` goes from a bracket to its
    partner, either way; `outside` holds the tokens that no fault may touch.
    """

    def __init__(self, text):
        self.text = text
        self.tokens = list(tokens_of(text))
        self.outer, self.partner = [], {}
        opened = []
        for index, token in enumerate(self.tokens):
            if token.kind == "operator" and opened and token.text == CLOSERS[self.tokens[opened[-1]].text]:
                self.partner[index] = opened[-1]
                self.partner[opened.pop()] = index
            self.outer.append(opened[-1] if opened else None)
            if token.kind == "operator" and token.text in CLOSERS:
                opened.append(index)
        self.outside = set()
        for index in range(len(self.tokens)):
            self.outside.update(self.without_effect(index))
        self.line_starts = [0, *(match.end() for match in re.finditer("\n", text))]

    def line_of(self, position):
        return bisect.bisect_right(self.line_starts, position)

    def word(self, index):
        """The text of a token, "" beyond the ends."""
        return self.tokens[index].text if 0 <= index < len(self.tokens) else ""

    def kind(self, index):
        return self.tokens[index].kind if 0 <= index < len(self.tokens) else ""

    def is_spaced(self, index):
        """Whether white space stands on both sides, as around a binary operator."""
        start, end = self.tokens[index].start, self.tokens[index].end
        return self.text[start - 1 : start].isspace() and self.text[end : end + 1].isspace()

    def without_effect(self, index):
        """The tokens from this one on that no test can or should judge."""
        word, following = self.word(index), self.word(index + 1)
        last = None
        if word in WITHOUT_EFFECT and following == "(":
            last = self.partner.get(index + 1)
        elif word == "[" and following == "[":
            last = self.partner.get(index)
        elif word == "template" and following == "<":
            last = self.angle_end(index + 1)
        elif word in ("using", "typedef", "concept"):
            last = next((i for i in range(index, len(self.tokens)) if self.word(i) == ";"), None)
        elif word == "requires":
            last = next((i for i in range(index, len(self.tokens)) if self.word(i) in ("{", ";", "->")), None)
        elif word == "extern" and self.kind(index + 1) == "string":
            last = index + 1
        return range(index, last + 1) if last is not None else ()

    def angle_end(self, index):
        """The `>` to the `<` of a template, or None when there is none."""
        depth = 0
        while index < len(self.tokens) and self.word(index) not in (";", "{", "}", ")", "]"):
            word = self.word(index)
            depth += {"<": 1, ">": -1, ">>": -2}.get(word, 0)
            if depth <= 0:
                return index
            index = self.partner.get(index, index) + 1 if word in CLOSERS else index + 1
        return None

    def is_code(self, index):
        """Whether the brace opens a block of statements: not a class, a namespace, an enumeration or values."""
        if index is None or self.word(index) != "{":
            return False
        before, outer = self.word(index - 1), self.outer[index]
        if before in (")", "else", "do", "try", "const", "noexcept", "override", "mutable"):
            return True
        if before == "]":  # A lambda without parameters.
            opener = self.partner.get(index - 1, 0)
            return self.word(opener - 1) not in (")", "]") and self.kind(opener - 1) != "name"
        if before in (";", "{", ":"):
            return self.is_code(outer)
        if before == "}":  # A block after a block, or a constructor's after the values of its members.
            return self.is_code(outer) or self.word(self.partner.get(index - 1, 0) - 1) not in (")", ";", "{", "}")
        return self.ends_with_return_type(index)

    def ends_with_return_type(self, index):
        """Whether the tokens in front of this one are `-> TYPE`."""
        parts = ("::", "<", ">", ">>", "*", "&", ",")
        while index > 0 and (self.kind(index - 1) == "name" or self.word(index - 1) in parts):
            index -= 1
        return self.word(index - 1) == "->"

    def starts_statement(self, index):
        """Whether a statement may start here, be it a block's or the body of an `if` or a loop."""
        if not self.is_code(self.outer[index]):
            return False
        before = self.word(index - 1)
        if before == ")":
            opener = self.partner.get(index - 1, 0)
            return self.word(opener - 1) in ("if", "for", "while") or self.word(opener - 2) == "if"
        return before in (";", "{", "}", "else", "do") or (before == ":" and self.follows_label(index - 1))

    def follows_label(self, index):
        while index > 0 and self.word(index - 1) not in (";", "{", "}", "?", ":"):
            index -= 1
        return self.word(index) in ("case", "default")

    def statement_end(self, index):
        """The semicolon that ends the statement, or None."""
        while index < len(self.tokens) and self.word(index) not in ("}", ")", "]"):
            if self.word(index) == ";":
                return index
            index = self.partner.get(index, len(self.tokens)) + 1 if self.word(index) in CLOSERS else index + 1
        return None

    def expression_statement(self, index):
        """("call" or "assignment", its semicolon) when such a statement starts here, else None."""
        if self.word(index) in ("++", "--", "*", "::"):
            index += 1
        start, last = index, None
        while True:
            if self.kind(index) == "name" and self.word(index) not in KEYWORDS and last in (None, "::", ".", "->"):
                last = "name"
            elif self.word(index) in ("::", ".", "->") and last not in ("::", ".", "->"):
                last = self.word(index)
            elif self.word(index) in ("(", "[") and index in self.partner and last in ("name", "(", "[", "<"):
                last = self.word(index)
                index = self.partner[index]
            elif self.word(index) == "<" and last == "name" and not self.is_spaced(index) and self.angle_end(index):
                last = "<"
                index = self.angle_end(index)
            else:
                break
            index += 1
        word = self.word(index)
        if last is None:
            return None
        if word == ";":
            is_step = self.word(start - 1) in ("++", "--")
            return ("assignment", index) if is_step else ("call", index) if last == "(" else None
        if word in ASSIGNMENTS or word in ("++", "--", "<<"):
            end = self.statement_end(index)
            return ("call" if word == "<<" else "assignment", end) if end else None
        return None


def tokens_of(text):
    """The tokens of a text without white space, comments and preprocessor lines."""
    position, is_line_start = 0, True
    while position < len(text):
        match = (DIRECTIVE.match(text, position) if is_line_start else None) or TOKEN.match(text, position)
        kind = match.lastgroup or "directive"
        if kind == "space":
            is_line_start = is_line_start or "\n" in match[0]
        elif kind != "comment":
            is_line_start = False
            if kind != "directive":
                yield Token(kind, match[0], match.start(), match.end())
        position = match.end()
