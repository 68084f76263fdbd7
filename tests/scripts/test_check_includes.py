#!/usr/bin/env python3
# SPDX-License-Identifier: Apache-2.0
"""The script that checks the include lines finds what it is there to find."""

import importlib.machinery
import importlib.util
import pathlib
import unittest

SCRIPT = pathlib.Path(__file__).resolve().parents[2] / "scripts" / "check-includes"
loader = importlib.machinery.SourceFileLoader("check_includes", str(SCRIPT))
check_includes = importlib.util.module_from_spec(importlib.util.spec_from_loader("check_includes", loader))
loader.exec_module(check_includes)

HOUSE = {
    "platform/Foundation/CMakeLists.txt": "quiverleaf_room(text\n  SOURCES\n    a.cpp\n  HEADERS\n    NSString.hpp\n)\n",
    "platform/Foundation/NSString.hpp": "#include <string>\n#include <sys/stat.h>\n",
    "platform/Foundation/Unicode/UTF8.hpp": "",
    "platform/Foundation/NSString.cpp": '#include "platform/Foundation/Unicode/UTF8.hpp"\n',
    "platform/CoreServices/Types.cpp": '#include <gio/gio.h>\n#include "platform/Foundation/NSString.hpp"\n',
    "platform/PDFKit/CMakeLists.txt": "quiverleaf_room(media HEADERS Page.hpp)\n",
    "platform/PDFKit/Engine.hpp": "#include <mupdf/fitz.h>\n",
    "platform/PDFKit/Page.hpp": '#include "platform/Foundation/NSString.hpp"\n',
    "platform/PDFKit/Page.cpp": '#include "platform/PDFKit/Engine.hpp"\n',
    "Classes/Strings/CMakeLists.txt": "quiverleaf_room(text HEADERS Group/Text.hpp)\n",
    "Classes/Strings/Group/Text.hpp": '#include "platform/Foundation/NSString.hpp"\n',
    "Classes/Strings/Worker.hpp": '#include "Classes/Strings/Group/Text.hpp"\n',
    "Classes/Paths/Path.cpp": '#include "Classes/Strings/Group/Text.hpp"\n#include "platform/PDFKit/Page.hpp"\n',
    "helper/NimboImExport.hpp": '#include "platform/Foundation/NSString.hpp"\n',
    "helper/Root.cpp": '#include "helper/NimboImExport.hpp"\n',
    "tools/Ask.cpp": '#include "helper/NimboImExport.hpp"\n#include <nlohmann/json.hpp>\n',
    "platform/CoreServices/Table.cpp": '#include "Table.inc"\n',
    "tests/Fixture.hpp": "#include <gtest/gtest.h>\n",
    "tests/Classes/Strings/TextTest.cpp": '#include "Classes/Strings/Worker.hpp"\n#include "tests/Fixture.hpp"\n',
    "bench/PageBench.cpp": "#include <mupdf/fitz.h>\n",
    "tests/platform/PDFKit/PageTest.cpp": '#include <gtest/gtest.h>\n#include "platform/PDFKit/Engine.hpp"\n',
}

WRONG = {
    "platform/Foundation/Up.cpp": ('#include "platform/PDFKit/Page.hpp"', "platform/Foundation/ must not know"),
    "platform/ImageIO/Up.cpp": ('  #  include "Classes/Strings/Group/Text.hpp"', "platform/ must not know"),
    "platform/ImageIO/Beside.cpp": ('#include "platform/PDFKit/Page.hpp"', "platform/ImageIO/ must not know"),
    "Classes/Strings/Up.cpp": ('#include "helper/NimboImExport.hpp"', "Classes/ must not know"),
    "Classes/Characters/Up.cpp": ('#include "Classes/Strings/Group/Text.hpp"', "Classes/Characters/ must not know"),
    "Classes/Text.cpp": ('#include "platform/Foundation/NSString.hpp"', "stands in no row"),
    "Classes/Attic/Text.cpp": ("#include <vector>", "stands in no row"),
    "platform/CoreServices/Attic/CMakeLists.txt": ("quiverleaf_room(text SOURCES Text.cpp)", "stands in no row"),
    "Classes/Strings/Group/Text.hpp": ('#include "Classes/Strings/Worker.hpp"', "is private, and this public header"),
    "tools/Root.cpp": ('#include "helper/Root.hpp"', "tools/ must not know"),
    "Classes/Strings/Lower.cpp": ("#include <unicode/uchar.h>", "belongs to platform/Foundation and"),
    "Classes/Paths/Worker.cpp": ('#include "Classes/Strings/Worker.hpp"', "is private to Classes/Strings"),
    "tests/Classes/Paths/PathTest.cpp": ('#include "Classes/Strings/Worker.hpp"', "is private to Classes/Strings"),
    "helper/Draw.cpp": ('#include "mupdf/fitz.h"', "belongs to platform/PDFKit"),
    "helper/Page.cpp": ('#include "platform/PDFKit/Engine.hpp"', "is private to platform/PDFKit"),
    "tests/helper/PageTest.cpp": ("#include <mupdf/fitz.h>", "belongs to platform/PDFKit"),
    "helper/New.cpp": ("#include <newlib/new.h>", "stands in no table"),
}


class CheckIncludesTest(unittest.TestCase):
    def test_a_house_in_order(self):
        self.assertEqual(check_includes.check(HOUSE), [])

    def test_each_fault_is_found(self):
        for path, (line, message) in WRONG.items():
            with self.subTest(path):
                faults = check_includes.check({**HOUSE, path: f"// one\n{line}\n"})
                self.assertEqual(len(faults), 1, faults)
                self.assertRegex(faults[0], rf"^{path}:[12]: .*{message}")

    def test_public_headers_are_there_and_show_no_library(self):
        self.assertRegex(check_includes.check({**HOUSE, "platform/PDFKit/Page.hpp": "#include <mupdf/fitz.h>\n"})[0], "shows")
        missing = {path: text for path, text in HOUSE.items() if path != "platform/PDFKit/Page.hpp"}
        self.assertIn("platform/PDFKit/Page.hpp:1: this public header is not there", check_includes.check(missing))


if __name__ == "__main__":
    unittest.main()
