#!/usr/bin/env python3
# SPDX-License-Identifier: Apache-2.0
"""test_answers.py FILE.answers: whether commands answer what stands in a file.

In it a line "$ quiverleaf text page.html" is a command, which a shell runs in a folder of the file's own; below it stands what
it printed, and what it said on standard error behind "! ". With QUIVERLEAF_APPROVE in the environment the answers are written
anew: read the difference before it is committed.
"""

import os
import pathlib
import subprocess
import sys
import unittest

from command import COMMAND, CommandTestCase

FILE = pathlib.Path(sys.argv.pop(1))
HERE = pathlib.Path(__file__).resolve().parent


class AnswersTest(CommandTestCase):
    def setUp(self):
        super().setUp()
        for name in ("DISPLAY", "WAYLAND_DISPLAY", "LANGUAGE"):
            self.environment.pop(name, None)
        places = f"{HERE}:{pathlib.Path(COMMAND).parent}:{self.environment['PATH']}"
        self.environment.update(PATH=places, TZ="CET-1CEST,M3.5.0,M10.5.0/3", LC_ALL="C.UTF-8", PYTHONDONTWRITEBYTECODE="1",
                                QUIVERLEAF_DEFAULTS=str(self.folder / "defaults.plist"))  # fmt: skip

    def answer_of(self, command):
        done = subprocess.run(["sh", "-c", command], cwd=self.folder, env=self.environment, capture_output=True, timeout=280, check=False)
        said = done.stderr.replace(bytes(self.folder), b"HERE")
        return b"".join([done.stdout, *(b"! " + line for line in said.splitlines(keepends=True))])

    def test_answers(self):
        for name, folder in (("data", HERE.parent / "data"), ("seeds", HERE.parents[1] / "fuzz" / "corpus")):
            (self.folder / name).symlink_to(folder)
        approved = FILE.read_bytes()
        made = b""
        for command in (line for line in approved.split(b"\n") if line.startswith(b"$ ")):
            answer = self.answer_of(command[2:])
            made += command + b"\n" + answer + (b"" if answer.endswith(b"\n") or not answer else b"\n")
        if os.environ.get("QUIVERLEAF_APPROVE"):
            FILE.write_bytes(made)
        self.assertMultiLineEqual(approved.decode("utf-8", "backslashreplace"), made.decode("utf-8", "backslashreplace"))


if __name__ == "__main__":
    unittest.main()
