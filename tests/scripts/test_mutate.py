#!/usr/bin/env python3
# SPDX-License-Identifier: Apache-2.0
"""The faults that scripts/mutate makes in sources, and which of them it chooses."""

import pathlib
import sys
import unittest

sys.path.insert(0, str(pathlib.Path(__file__).resolve().parents[2] / "scripts"))
from mutation.faults import apply, choose, faults_of  # noqa: E402

# A kind, a statement, and all that this kind of fault makes of it.
KINDS = (
    ("comparison", "x = a < b;", {"x = a <= b;"}),
    ("comparison", "x = a >= f<int>(b);", {"x = a > f<int>(b);"}),
    ("condition", "if (a) f();", {"if (true) f();", "if (false) f();"}),
    ("condition", "while (f(a)) g();", {"while (false) g();"}),
    ("condition", "return a < 1 && b || !c;", {"return b || !c;", "return a < 1 || !c;", "return !c;", "return a < 1 && b;"}),
    ("off by one", "x = 0x1fu;", {"x = 30u;", "x = 32u;"}),
    ("off by one", "x = 1'000;", {"x = 999;", "x = 1001;"}),
    ("off by one", "f(a[i]);", {"f(a[i + 1]);", "f(a[i - 1]);"}),
    ("constant", "f(64, true);", {"f(0, true);", "f(128, true);", "f(64, false);"}),
    ("constant", "f(u'a', u\"Key\"_ns);", {"f(u'b', u\"Key\"_ns);", "f(u'a', u\"Ke\"_ns);"}),
    ("swapped", "f(x);\n  x = g();\n  return y;", {"x = g();\n  f(x);\n  return y;"}),
    ("swapped", "a.f(b);\n  b.g();", {"b.g();\n  a.f(b);"}),
    ("swapped", "a.f(c);\n  b += g(c);", set()),
    ("swapped", "a.b.f();\n  a.c = d;", set()),
    ("swapped", "a->b.f();\n  d = g(a);", {"d = g(a);\n  a->b.f();"}),
    ("swapped", "a().f(c);\n  b = true;", set()),
    ("swapped", "::f(&a, kSize);\n  f_g(b, kSize);", set()),
    ("swapped", "::f(&a);\n  f_g(b, a);", {"f_g(b, a);\n  ::f(&a);"}),
    ("swapped", "::f(a);\n  errno = b;", {"errno = b;\n  ::f(a);"}),
    ("swapped", "f_g();\n  h_g();", {"h_g();\n  f_g();"}),
    ("swapped", "a.reserve(8);\n  f(a);", set()),
    ("swapped", "a.setX(b);\n  a.set(c);", set()),
    ("constant", "struct A { bool a = false, b = true; int c = 0; };", {"struct A { bool a = false, b = false; int c = 0; };"}),
    ("off by one", "for (int i = 0; a;) b;", {"for (int i = 1; a;) b;"}),
    ("off by one", "char a[8];", {"char a[7];", "char a[8 - 1];"}),
    ("off by one", "return a[n];", {"return a[n + 1];", "return a[n - 1];"}),
    ("dropped", "a.b->c<int>(x)(y);", {";"}),
    ("dropped", "a.reserve(f());", set()),
    ("error", "if (!a) return false;", {"if (false) return false;"}),
    ("error", "if (a) return a;", set()),
    ("error", "f();\n  throw E(a);", {"f();\n  ;"}),
)
NO_CODE = ("// if (a < 1) f(1);", "/* f(1);\n f(2); */", 'f_ = R"x(a)" < 1 && f(2); )x";', "static_assert(a < 1 && b == 2);")


def inside(statement):
    return f"void f() {{\n  {statement}\n}}\n"


SOURCES = {"Classes/A.cpp": "".join(inside(text) for _, text, _ in KINDS), "tests/ATest.cpp": inside("f(1);"),
           "platform/B.hpp": inside("if (a < 3) return false;")}  # fmt: skip


class FaultsTest(unittest.TestCase):
    def test_each_kind_is_made(self):
        for kind, statement, expected in KINDS:
            text = inside(statement)
            made = {"".join(apply(text, fault).split()) for fault in faults_of("a.cpp", text) if fault.kind == kind}
            with self.subTest(kind=kind, statement=statement):
                self.assertEqual(made, {"".join(inside(one).split()) for one in expected})
        for statement in NO_CODE:
            self.assertEqual(list(faults_of("a.cpp", inside(statement))), [], statement)

    def test_a_seed_gives_the_same_faults_again(self):
        first = list(choose(SOURCES, 20, "a"))
        self.assertEqual(first, list(choose(SOURCES, 20, "a")))
        self.assertNotEqual(first, list(choose(SOURCES, 20, "b")))
        everything = list(choose(SOURCES, 10000, "a"))
        self.assertEqual((len(everything), {fault.path for fault in everything}), (len(set(everything)), {*SOURCES} - {"tests/ATest.cpp"}))
        self.assertEqual({fault.path for fault in choose(SOURCES, 9, "a", ["platform"])}, {"platform/B.hpp"})
        self.assertEqual({fault.kind for fault in choose(SOURCES, 999, "a", aimed=True)}, {"error"})


if __name__ == "__main__":
    unittest.main()
