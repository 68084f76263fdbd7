#!/usr/bin/env python3
# SPDX-License-Identifier: Apache-2.0
"""The faults that scripts/mutate makes in sources, which of them it chooses, and which tests it runs."""

import importlib.machinery
import importlib.util
import pathlib
import sys
import tempfile
import unittest

SCRIPTS = pathlib.Path(__file__).resolve().parents[2] / "scripts"
sys.path.insert(0, str(SCRIPTS))
from mutation.choice import candidates, choose  # noqa: E402
from mutation.faults import faults_of  # noqa: E402
from mutation.suites import FAILURE, Suite, affected, describe  # noqa: E402

loader = importlib.machinery.SourceFileLoader("mutate", str(SCRIPTS / "mutate"))
mutate = importlib.util.module_from_spec(importlib.util.spec_from_loader("mutate", loader))
loader.exec_module(mutate)

# A kind, a statement, and all that this kind of fault makes of it.
KINDS = (
    ("comparison", "x = a < b;", {"x = a <= b;"}),
    ("comparison", "x = a >= f<int>(b);", {"x = a > f<int>(b);"}),
    ("comparison", "x = a == b;", {"x = a != b;"}),
    ("condition", "if (a) f();", {"if (true) f();", "if (false) f();"}),
    ("condition", "if (auto x = f(); x) g();", {"if (auto x = f(); true) g();", "if (auto x = f(); false) g();"}),
    ("condition", "while (a) f();", {"while (false) f();"}),
    ("condition", "x = a == b && f({c, d})\n;", {"x = f({c, d})\n;", "x = a == b\n;"}),
    (
        "condition",
        "return a && b || !c;",
        {"return b || !c;", "return a || !c;", "return !c;", "return a && b;"},
    ),
    ("off by one", "x = 0x1fu;", {"x = 0x1eu;", "x = 0x20u;"}),
    ("off by one", "x = 0;", {"x = 1;"}),
    ("off by one", "x = 1'000;", {"x = 999;", "x = 1001;"}),
    ("off by one", "f(a[i][j]);", {"f(a[i + 1][j]);", "f(a[i - 1][j]);", "f(a[i][j + 1]);", "f(a[i][j - 1]);"}),
    ("constant", "f(64, true);", {"f(0, true);", "f(128, true);", "f(64, false);"}),
    ("constant", "f(u'a', u\"Key\"_ns);", {"f(u'b', u\"Key\"_ns);", "f(u'a', u\"Ke\"_ns);"}),
    ("swapped", "f(x);\n  x = g();\n  y();", {"x = g();\n  f(x);\n  y();"}),
    ("swapped", "a.append(x);\n  a.append(y);", {"a.append(y);\n  a.append(x);"}),
    ("swapped", 'a.set("x", x);\n  a.set("y", y);', set()),
    ("swapped", "h.x = a;\n  h.y = b;", set()),
    ("swapped", "if (a) f(x);\n  g(x);", set()),
    ("dropped", "a.b->c<int>(x)(y);", {";"}),
    ("dropped", "else f([&] { return 1; });", {"else ;"}),
    ("dropped", "for (;;) f();", {"for (;;) ;"}),
    ("dropped", "case A::b: f();", {"case A::b: ;"}),
    ("dropped", "Lock lock(mutex);\n  T x = f();\n  x = f();\n  return f();", set()),
    ("dropped", "a.reserve(f());", set()),
    ("error", "if (!a) return false;", {"if (false) return false;"}),
    ("error", "if (f() < 0) { g(); return {}; }", {"if ((static_cast<void>(f() < 0), false)) { g(); return {}; }"}),
    ("error", "if (a) return nil;\n  else g();", set()),
    ("error", "if (a) return a;", set()),
    ("error", "f();\n  throw E(a);", {"f();\n  ;"}),
)

# What no fault may be made in, inside a function and outside.
SILENT_INSIDE = (
    "// if (a < 1 && b) return false;",
    "/* f(1); */",
    'f_ = u8"a < 1 && f(2); \\" 3 == 4"_ns;',
    'f_ = R"x(a)" < 1 && f(2); )x";',
    "static_assert(a < 1 && b == 2);",
    "const std::vector<std::array<T, N>> x = y;",
    "auto &&[x, y] = z;",
    "return f(T &&x, sizeof(a[1]));",
)
SILENT_OUTSIDE = (
    '#include "a/1.hpp"\n#define F(x) \\\n  if (x < 1) f(true)\n',
    'extern "C" int f();\ntemplate <int N = 1, typename T = A<2>>\nclass A;\n',
    "class A final : public B<C> {\n public:\n  A();\n  explicit A(int x);\n  virtual void f() const = 0;\n};\n",
    "using A = B<1>;\n[[deprecated(\"A\")]] void f(int x);\n",
)

SAMPLE = "".join(f"bool f{i}() {{\n  {text}\n}}\n" for i, (_, text, _) in enumerate(KINDS))


def apply(text, fault):
    return text[: fault.start] + fault.replacement + text[fault.end :]


def inside(statement):
    return f"void f() {{\n  {statement}\n}}\n"


class FaultsTest(unittest.TestCase):
    def test_each_kind_is_made(self):
        for kind, statement, expected in KINDS:
            text = inside(statement)
            made = {apply(text, fault) for fault in faults_of(text) if fault.kind == kind}
            # A fault keeps the number of lines, with blanks where something was.
            made = {" ".join(one.split()) for one in made}
            with self.subTest(kind=kind, statement=statement):
                self.assertEqual(made, {" ".join(inside(one).split()) for one in expected})

    def test_statements_are_known_in_all_blocks(self):
        for block in (
            "A::A(int x) : a_(x), b_{x} {\n  f();\n}\n",
            "auto g() -> std::vector<int> {\n  f();\n}\n",
            "class A : public B {\n  A(int x);\n  void g() const override {\n  f();\n}\n};\n",
            "namespace a {\nT x = [&] {\n  f();\n};\n}\n",
            "void g() {\n  switch (a) {\n    default:\n  f();\n}\n}\n",
        ):
            with self.subTest(block):
                dropped = [fault for fault in faults_of(block) if fault.kind == "dropped"]
                self.assertEqual([apply(block, fault) for fault in dropped], [block.replace("  f();", "  ;")])

    def test_what_is_no_code_stays(self):
        for text in (*map(inside, SILENT_INSIDE), *SILENT_OUTSIDE):
            with self.subTest(text):
                self.assertEqual([apply(text, fault) for fault in faults_of(text)], [])

    def test_a_fault_changes_one_stretch_of_lines(self):
        old = SAMPLE.split("\n")
        for fault in faults_of(SAMPLE):
            new = apply(SAMPLE, fault).split("\n")
            changed = [i for i, pair in enumerate(zip(old, new), 1) if pair[0] != pair[1]]
            with self.subTest(fault):
                self.assertEqual(len(new), len(old))
                self.assertIn(fault.line, changed)
                self.assertEqual(changed, list(range(changed[0], changed[-1] + 1)))
                self.assertLess(len(changed), 4)


class ChoiceTest(unittest.TestCase):
    SOURCES = {
        "Classes/A.cpp": SAMPLE,
        "platform/Foundation/NSA.hpp": "inline int f() {\n  return 5;\n}\n",
        "platform/Foundation/NSA.cpp": '#include "platform/Foundation/NSA.hpp"\n#include <fcntl.h>\nint a = 1;\n',
        "platform/Foundation/NSB.cpp": '#include "NSA.hpp"\nconstexpr int kMost = 3;\nint a = 1;\nbool b = a > kMost;',
        "tests/ATest.cpp": SAMPLE,
    }

    def lines(self, *arguments, **options):
        found, _ = candidates(self.SOURCES, *arguments, **options)
        return {(path.split("/")[-1], fault.line) for path, faults in found.items() for fault in faults}

    def test_a_seed_gives_the_same_faults_again(self):
        found, _ = candidates(self.SOURCES)
        first = list(choose(found, 20, "a"))
        self.assertEqual(first, list(choose(found, 20, "a")))
        self.assertNotEqual(first, list(choose(found, 20, "b")))
        everything = list(choose(found, 10000, "a"))
        self.assertEqual(len(everything), len(set(everything)))
        self.assertEqual(len(everything), sum(map(len, found.values())))
        self.assertNotIn("tests/ATest.cpp", {choice.path for choice in everything})

    def test_places_are_chosen_and_left_out(self):
        self.assertEqual(self.lines(["platform/", "Classes/A.cpp:2"], ["platform/Foundation/NSB.cpp:3"]),
                         {("A.cpp", 2), ("NSA.hpp", 2), ("NSA.cpp", 3), ("NSB.cpp", 2), ("NSB.cpp", 4)})
        self.assertEqual(candidates(self.SOURCES, ["platform"], most_dependents=1)[1], ["platform/Foundation/NSA.hpp"])

    def test_aimed_faults(self):
        self.assertEqual(self.lines(["platform"], is_aimed=True),
                         {("NSA.hpp", 2), ("NSA.cpp", 3), ("NSB.cpp", 2), ("NSB.cpp", 4)})
        kinds = {fault.kind for fault in candidates(self.SOURCES, ["Classes"], is_aimed=True)[0]["Classes/A.cpp"]}
        self.assertEqual(kinds, {"error"})


class SuitesTest(unittest.TestCase):
    def test_the_test_that_failed_is_named(self):
        for said, failure in (
            ("[ RUN      ] A.b\n[       OK ] A.b\n[ RUN      ] A/C.d/3\n[  FAILED  ] A/C.d/3, where\n", "s A/C.d/3"),
            ("test_a (m.T.test_a) ... ok\ntest_b (m.T.test_b)\nSays b. ... FAIL\n", "s test_b"),
            ("test_a (m.T.test_a) ... \n  test_a (m.T.test_a) [one] ... ERROR\n", "s test_a"),
            ("[ RUN      ] A.b\n[       OK ] A.b\n[ RUN      ] A.c\n", "s A.c (takes too long)"),
            ("test_a (m.T.test_a) ... ok\n", "s test_a (takes too long)"),
            ("", "s (takes too long)"),
        ):
            with self.subTest(said):
                self.assertEqual(describe(Suite("s", [], "", []), said, "takes too long"), failure)
                self.assertEqual(bool(FAILURE.search(said.encode())), "too long" not in failure)

    def test_what_names_a_changed_file_is_run(self):
        commands = {"text": ["bin/text"], "media": ["bin/media"], "py": ["X=tool"]}
        suites = [Suite(name, command, "", []) for name, command in commands.items()]
        files = {"lib/libx.so.2": "", "bin/text": "libx.so.2", "bin/tool": "libx", "lib/parts/p.so": ""}
        files["bin/media"] = "parts".encode("utf-16-le").decode()
        with tempfile.TemporaryDirectory() as folder:
            for path, content in files.items():
                target = pathlib.Path(folder, path)
                target.parent.mkdir(parents=True, exist_ok=True)
                target.write_text(content)
            programs = [f"{folder}/{path}" for path in files]
            for changed, expected in (
                ("lib/libx.so.2", ["text", "py"]),
                ("bin/text", ["text"]),
                ("lib/parts/p.so", ["media"]),
            ):
                run = affected(suites, [f"{folder}/{changed}"], programs, folder)
                self.assertEqual([suite.name for suite in run], expected)


class LogTest(unittest.TestCase):
    def test_a_survivor_is_tried_again_after_a_change(self):
        with tempfile.TemporaryDirectory() as folder:
            path = pathlib.Path(folder, "log")
            for tree, verdict in (("1", mutate.SURVIVED), ("1", mutate.CAUGHT), ("2", mutate.SURVIVED)):
                mutate.Log(path, tree, False).add(key=tree + verdict, verdict=verdict)
            with path.open("a") as file:
                file.write('{"key": "1", "verd')  # A run was killed here.
            self.assertEqual(set(mutate.Log(path, "2", False).entries), {"1" + mutate.CAUGHT, "2" + mutate.SURVIVED})
            self.assertEqual(mutate.Log(path, "2", True).entries, {})


if __name__ == "__main__":
    unittest.main()
