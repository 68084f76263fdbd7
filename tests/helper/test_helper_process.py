#!/usr/bin/env python3
# SPDX-License-Identifier: Apache-2.0
"""The helper's process as it is started, on the wire."""

import os
import pathlib
import socket
import struct
import subprocess
import tempfile
import time
import unittest

from quiverleaf import CONNECTION_NAME, Helper, plist

HELPER = os.environ["QUIVERLEAF_HELPER"]


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
            reply = plist.loads(receive(connection, *struct.unpack(">I", receive(connection, 4))))
            self.assertGreater(len(reply["Result"]["kMDItemTextContent"]), 2_000_000)

    def test_another_one_stays_unreachable(self):
        with subprocess.Popen([HELPER], stdin=subprocess.DEVNULL) as second, Helper(path=HELPER) as other:
            self.addCleanup(second.kill)
            time.sleep(0.3)
            self.assertIsNone(second.poll())
            self.assertEqual(other.ping(), self.process)
            second.kill()


if __name__ == "__main__":
    unittest.main()
