#!/usr/bin/env python3
# SPDX-License-Identifier: Apache-2.0
"""Whatever a PDF does, the helper answers before its caller gives up, and is none the worse for it."""

import os
import pathlib
import tempfile
import unittest

from documents import pdf
from hostile_pdfs import DOCUMENTS, outcome
from processes import resident_megabytes
from quiverleaf import Helper

MEMORY_KEPT_MEGABYTES = 48


class HostilePDFTest(unittest.TestCase):
    def test_each_gets_an_answer(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        os.environ["QUIVERLEAF_RUNTIME_DIR"] = folder.name
        helper = Helper(path=os.environ["QUIVERLEAF_HELPER"])
        self.addCleanup(helper.stop)
        process = helper.ping()
        helper.attributedStringWithPDF(False, pdf())
        memory = resident_megabytes(process)
        is_sanitized = "libasan" in pathlib.Path(f"/proc/{process}/maps").read_text("utf-8")
        for make, expected in DOCUMENTS.items():
            with self.subTest(make.__name__):
                answer = helper.attributedStringWithPDF(False, make())
                # A machine with much else to do runs out of time before the limits of work are reached.
                if "takes too long" not in (helper.reason or ""):
                    self.assertEqual(outcome(answer, helper.reason), expected, helper.reason)
                before, process = process, helper.ping()
                self.assertEqual(process, before)
                # The address sanitizer keeps freed memory for a while.
                if not is_sanitized:
                    self.assertLess(resident_megabytes(process), memory + MEMORY_KEPT_MEGABYTES)
        self.assertEqual(helper.attributedStringWithPDF(False, pdf())["String"], "Hello\n\n")


if __name__ == "__main__":
    unittest.main()
