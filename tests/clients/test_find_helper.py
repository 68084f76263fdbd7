#!/usr/bin/env python3
# SPDX-License-Identifier: Apache-2.0
"""Which helper the C++ client starts, seen from programs that are installed beside several of them."""

import os
import pathlib
import shutil
import subprocess
import tempfile
import unittest
from unittest import mock

from quiverleaf import runtime

PROGRAMS = pathlib.Path(os.environ["FIND_HELPER_PROGRAMS"])
INSTALLED = pathlib.Path(os.environ["FIND_HELPER_INSTALLED"])


class FindHelperTest(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.folder = pathlib.Path(folder.name).resolve()
        self.addCleanup(shutil.rmtree, INSTALLED, True)
        self.environment = {"PATH": f"{self.folder}/none::sub:/bin", "LD_LIBRARY_PATH": str(self.folder / "other/lib/arch")}
        for name, place in (("find-helper", "bin"), ("find-helper-shared", "bin"), ("libfind-helper-library.so", "other/lib/arch")):
            (self.folder / place).mkdir(parents=True, exist_ok=True)
            shutil.copy(PROGRAMS / name, self.folder / place)
        (self.folder / "link").symlink_to("bin/find-helper")

    def find(self, program, **environment):
        command = [self.folder / program]
        done = subprocess.run(command, env={**self.environment, **environment}, cwd=self.folder, capture_output=True, check=False)
        self.assertEqual(done.returncode == 0, not done.stderr)
        return os.fsdecode(done.stdout or done.stderr).strip()

    def test_the_order(self):
        inside = [INSTALLED, self.folder / "libexec/quiverleaf", self.folder / "bin"]
        cases = {
            "bin/find-helper": inside,
            "link": inside,
            "bin/find-helper-shared": [*inside, self.folder / "other/libexec/quiverleaf"],
        }
        for program, places in cases.items():
            message = self.find(program)
            listed = [f"{place}/quiverleaf-helper" for place in reversed(places)]
            with mock.patch.object(runtime, "helper_places", return_value=listed), self.assertRaises(FileNotFoundError) as raised:
                with mock.patch.dict(os.environ, self.environment, clear=True):
                    runtime.find_helper()
            self.assertEqual(message, str(raised.exception))
            # The likelier a place is, the later it is filled; a folder and a file that cannot be run are no programs.
            for place in (self.folder / "sub", self.folder, *places):
                helper = place / "quiverleaf-helper"
                before = self.find(program)
                helper.mkdir(parents=True)
                self.assertEqual(self.find(program), before, place)
                helper.rmdir()
                helper.touch(0o644)
                self.assertEqual(self.find(program), before, place)
                helper.chmod(0o755)
                self.assertEqual(self.find(program), str(helper), place)
            for named, meant in (("/nowhere/x", "/nowhere/x"), ("a/../b", f"{self.folder}/a/../b"), ("", str(helper))):
                self.assertEqual(self.find(program, QUIVERLEAF_HELPER=named), meant)
            for place in (self.folder / "sub", self.folder, *places):
                (place / "quiverleaf-helper").unlink()

    def test_an_empty_path_is_no_path(self):
        helper = self.folder / "quiverleaf-helper"
        helper.touch(0o755)
        self.assertIn("PATH ()", self.find("bin/find-helper", PATH=""))
        for folders in (":", "/none:", ":/none"):
            self.assertEqual(self.find("bin/find-helper", PATH=folders), str(helper))
        del self.environment["PATH"]
        self.assertIn("PATH (/bin:/usr/bin)", self.find("bin/find-helper"))

    def test_a_working_directory_that_is_gone(self):
        program = 'mkdir gone && cd gone && rmdir ../gone && QUIVERLEAF_HELPER="$1" exec "$0"'
        for named, answer in (("/x", "/x\n"), ("x", "The working directory cannot be found: No such file or directory\n")):
            command = ["sh", "-c", program, self.folder / "bin/find-helper", named]
            done = subprocess.run(command, cwd=self.folder, capture_output=True, text=True, check=False)
            self.assertEqual(done.stdout + done.stderr, answer)


if __name__ == "__main__":
    unittest.main()
