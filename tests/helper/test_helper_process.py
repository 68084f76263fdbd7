#!/usr/bin/env python3
# SPDX-License-Identifier: Apache-2.0
"""The helper's process as it is started, on the wire."""

import contextlib
import ctypes
import os
import pathlib
import plistlib
import re
import resource
import signal
import socket
import struct
import subprocess
import tempfile
import time
import unittest

from quiverleaf import CONNECTION_NAME, ErrorCode, Helper, plist

HELPER = os.environ["QUIVERLEAF_HELPER"]

# Of <sys/ptrace.h>.
PTRACE_TRACEME, PTRACE_SYSCALL = 0, 24


@contextlib.contextmanager
def started(*command, **options):
    """A process that is killed at the end, whatever failed before."""
    with subprocess.Popen(command, **options) as process:
        try:
            yield process
        finally:
            process.kill()


def receive(connection, count):
    data = b""
    while len(data) < count:
        part = connection.recv(count - len(data))
        if not part:
            raise EOFError(f"{len(data)} of {count} bytes")
        data += part
    return data


class HelperProcessTest(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.folder = pathlib.Path(folder.name)
        os.environ["QUIVERLEAF_RUNTIME_DIR"] = str(self.folder)
        self.helper = Helper(path=HELPER)
        self.addCleanup(self.helper.stop)
        self.process = self.helper.ping()

    def connect(self):
        connection = socket.socket(socket.AF_UNIX)
        self.addCleanup(connection.close)
        connection.settimeout(30)
        connection.connect(str(self.folder / CONNECTION_NAME))
        return connection

    def test_slow_clients_have_time(self):
        path = self.folder / "long.txt"
        path.write_text("many words " * 200_000, "utf-8")
        request = {"Request": 1, "Selector": "metaDataForFile:", "Arguments": {"metaDataForFile": str(path)}}
        body = plist.dumps(request)
        message = struct.pack(">I", len(body)) + body
        writer, reader = self.connect(), self.connect()
        writer.sendall(message[:10])
        reader.sendall(message)
        time.sleep(2)
        writer.sendall(message[10:])
        for connection in (reader, writer):
            greeting, begun, reply = (
                plist.loads(receive(connection, *struct.unpack(">I", receive(connection, 4)))) for _ in range(3)
            )
            self.assertEqual(greeting["Helper"]["Path"], os.path.realpath(HELPER))
            self.assertEqual(begun, {"Begun": 1})
            self.assertGreater(len(reply["Result"]["kMDItemTextContent"]), 2_000_000)

    def test_without_memory_an_answer_is_nil(self):
        if "libasan" in pathlib.Path(f"/proc/{self.process}/maps").read_text("utf-8"):
            self.skipTest("the address sanitizer needs more addresses than there could be a limit for")
        page = {"WebResourceData": b"<p>words" * 6_000_000, "WebResourceMIMEType": "text/html"}
        path = self.folder / "long.webarchive"
        path.write_bytes(plistlib.dumps({"WebMainResource": page}, fmt=plistlib.FMT_BINARY))
        pages = int(pathlib.Path(f"/proc/{self.process}/statm").read_text("ascii").split()[0])
        limit = pages * resource.getpagesize() + (64 << 20)
        resource.prlimit(self.process, resource.RLIMIT_AS, (limit, limit))
        self.assertIsNone(self.helper.searchableTextOfWebArchive(path))
        self.assertEqual(self.helper.code, ErrorCode.MEMORY_LIMIT)

    def test_another_one_stays_unreachable(self):
        with started(HELPER, stdin=subprocess.DEVNULL) as second, Helper(path=HELPER) as other:
            time.sleep(0.3)
            self.assertIsNone(second.poll())
            self.assertEqual(other.ping(), self.process)

    def test_starts_with_few_or_no_descriptors(self):
        self.helper.stop()
        cases = [("exec <&- >&- 2>&-", True), ("ulimit -n 64", True), ("ulimit -S -n 10", True), ("ulimit -n 20", False)]
        for setting, is_served in cases:
            with self.subTest(setting), Helper(path=HELPER, starts_helper=False) as client:
                with started("/bin/sh", "-c", f'{setting}; exec "$0"', HELPER, stderr=subprocess.PIPE) as process:
                    if not is_served:
                        self.assertIn(b"only 20 files may be open", process.communicate(timeout=30)[1])
                        continue
                    deadline = time.monotonic() + 30
                    while not (self.folder / CONNECTION_NAME).exists() and time.monotonic() < deadline:
                        time.sleep(0.05)
                    self.assertEqual(client.ping(), process.pid)
                    self.assertGreaterEqual(resource.prlimit(process.pid, resource.RLIMIT_NOFILE)[0], 64)
                    # Whatever a library prints reaches no file, socket or lock of the helper's own.
                    for stream in range(3):
                        self.assertNotRegex(os.readlink(f"/proc/{process.pid}/fd/{stream}"), "eventfd|socket|Quiverleaf")
                    client.stop()

    def test_heeds_the_signal_to_end_once_its_name_is_there(self):
        self.helper.stop()
        trace = ctypes.CDLL(None).ptrace
        trace.argtypes = [ctypes.c_long, ctypes.c_int, ctypes.c_void_p, ctypes.c_void_p]

        def be_traced():
            if trace(PTRACE_TRACEME, 0, None, None) != 0:
                raise PermissionError("no process can be traced here")

        with started(HELPER, stdin=subprocess.DEVNULL, preexec_fn=be_traced) as process:
            _, state = os.waitpid(process.pid, 0)
            while os.WIFSTOPPED(state) and not (self.folder / CONNECTION_NAME).exists():
                trace(PTRACE_SYSCALL, process.pid, None, None)
                _, state = os.waitpid(process.pid, 0)
            self.assertTrue(os.WIFSTOPPED(state))
            status = pathlib.Path(f"/proc/{process.pid}/status").read_text("utf-8")
            caught = int(re.search(r"SigCgt:\s*(\w+)", status).group(1), 16)
            self.assertTrue(caught & 1 << signal.SIGTERM - 1, status)

    def test_its_command_line(self):
        cases = [
            (["--help"], 0, "usage: quiverleaf-helper "),
            (["--version"], 0, "quiverleaf-helper "),
            (["--nonsense"], 1, "unknown argument: --nonsense"),
            (["file.pdf"], 1, "unknown argument: file.pdf"),
            (["--idle-minutes", "1e8", "--abandoned-work-seconds", "1e8", "--version"], 0, "quiverleaf-helper "),
            *((["--idle-minutes", *value], 1, "has to follow: --idle-minutes") for value in ([], ["0"], ["-1"], ["1x"], ["nan"], ["1e9"], ["100000001"])),
            (["--abandoned-work-seconds", "0"], 1, "has to follow: --abandoned-work-seconds"),
        ]
        for arguments, code, text in cases:
            with self.subTest(arguments):
                done = subprocess.run([HELPER, *arguments], capture_output=True, text=True, timeout=30, check=False)
                self.assertEqual(done.returncode, code)
                self.assertIn(text, done.stderr if code else done.stdout)
                self.assertEqual(done.stdout if code else done.stderr, "")

    def test_one_that_a_client_started_ends_when_idle(self):
        self.helper.stop()
        with Helper(path=HELPER, idle_minutes=0.005) as helper:
            process = helper.ping()
            command = pathlib.Path(f"/proc/{process}/cmdline").read_bytes().split(b"\0")
            self.assertIn(b"--abandoned-work-seconds", command)
            deadline = time.monotonic() + 30
            while os.path.exists(f"/proc/{process}/exe") and time.monotonic() < deadline:
                time.sleep(0.05)
            self.assertFalse((self.folder / CONNECTION_NAME).exists())


if __name__ == "__main__":
    unittest.main()
