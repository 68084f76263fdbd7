# SPDX-License-Identifier: Apache-2.0
"""What tests of the quiverleaf command have in common."""

import json
import os
import pathlib
import subprocess
import tempfile
import unittest

COMMAND = os.environ["QUIVERLEAF_COMMAND"]


class CommandTestCase(unittest.TestCase):
    """Runs the command in a folder of the test's own, with a helper of its own."""

    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.folder = pathlib.Path(folder.name)
        runtime = self.folder / "runtime"
        self.environment = {**os.environ, "QUIVERLEAF_RUNTIME_DIR": str(runtime)}
        self.environment.pop("QUIVERLEAF_HELPER", None)
        self.addCleanup(self.run_command, "stop")

    def run_command(self, *arguments, environment=None, **options):
        options = {"capture_output": True, "timeout": 60, "cwd": self.folder, **options}
        return subprocess.run([COMMAND, *arguments], env=environment or self.environment, check=False, **options)

    def file(self, name, content):
        path = os.path.join(os.fsencode(self.folder), os.fsencode(name))
        with open(path, "wb") as stream:
            stream.write(content)
        return path

    def answer(self, *arguments, **options):
        done = self.run_command(*arguments, **options)
        self.assertEqual((done.returncode, done.stderr), (0, b""))
        return json.loads(done.stdout)

    def assert_fails(self, code, message, *arguments, **options):
        """The command fails with one line on standard error and nothing on standard output."""
        done = self.run_command(*arguments, **options)
        self.assertEqual(done.returncode, code, done.stderr)
        self.assertRegex(done.stderr.decode("utf-8", "replace"), rf"\Aquiverleaf: [^\n]*{message}[^\n]*\n\Z")
        self.assertFalse(done.stdout)
