#!/usr/bin/env python3
# SPDX-License-Identifier: Apache-2.0
"""Whatever an office document or a book does, the helper answers before its caller gives up, and is none the worse for it."""

import os
import pathlib
import tempfile
import unittest

from hostile_documents import DOCUMENTS
from processes import resident_megabytes
from quiverleaf import ErrorCode, Helper

MEMORY_KEPT_MEGABYTES = 48


class HostileDocumentTest(unittest.TestCase):
    def test_each_gets_an_answer(self):
        temporary = tempfile.TemporaryDirectory()
        self.addCleanup(temporary.cleanup)
        folder = pathlib.Path(temporary.name)
        os.environ["QUIVERLEAF_RUNTIME_DIR"] = temporary.name
        helper = Helper(path=os.environ["QUIVERLEAF_HELPER"])
        self.addCleanup(helper.stop)
        process = helper.ping()
        is_sanitized = "libasan" in pathlib.Path(f"/proc/{process}/maps").read_text("utf-8")
        for make, (extension, code, word) in DOCUMENTS.items():
            with self.subTest(make.__name__):
                document = folder / f"document.{extension}"
                document.write_bytes(make())
                answer = helper.metaDataForFile(document) or {}
                # A machine with much else to do runs out of time before the limits of size are reached.
                if helper.code != ErrorCode.TIME_LIMIT:
                    self.assertEqual(helper.code, code, helper.reason)
                    self.assertIn(word or "", answer.get("kMDItemTextContent", ""))
                self.assertEqual(helper.ping(), process)
                # The address sanitizer keeps freed memory for a while.
                if not is_sanitized:
                    self.assertLess(resident_megabytes(process), MEMORY_KEPT_MEGABYTES)


if __name__ == "__main__":
    unittest.main()
