#!/usr/bin/env python3
# SPDX-License-Identifier: Apache-2.0
"""A helper that misbehaves on demand, to see what its callers make of it; the selector, or FAKE_HELPER_DOES, says how."""

import os
import signal
import socket
import struct
import sys
import time

from quiverleaf import plist

NAME = "QuiverleafHelper_2.0pb8build4"
DOES = os.environ.get("FAKE_HELPER_DOES")


def serve(connection):
    stream = connection.makefile("rb")
    while length := stream.read(4):
        request = plist.loads(stream.read(struct.unpack(">I", length)[0]))
        selector = DOES or request["Selector"]
        reply = {"Reply": request["Request"], "Result": request["Arguments"]}
        if selector == "die:":
            os.kill(os.getpid(), signal.SIGKILL)
        elif selector == "hang:":
            time.sleep(60)
        elif selector == "slow:":
            time.sleep(2)
        elif selector == "close:":
            return
        elif selector == "nil:":
            del reply["Result"]
            reply.update(Reason="no such file", Code=2)
        elif selector == "silent:":
            del reply["Result"]
        elif selector == "partly:":
            reply.update(Reason="two pages are damaged", Code=99)
        elif selector == "reason:":
            reply["Reason"] = 1
        elif selector == "code:":
            reply["Code"] = "1"
        elif selector == "raise:":
            reply = {"Reply": request["Request"], "Exception": {"Name": "NSRangeException", "Reason": "too far"}}
        elif selector == "stray:":
            reply["Reply"] += 1
        body = b"no property list" if selector == "garbage:" else plist.dumps(reply)
        message = struct.pack(">I", (1 << 32) - 1 if selector == "huge:" else len(body)) + body
        step = 1 if selector == "trickle:" else len(message)
        for start in range(0, len(message), step):
            connection.sendall(message[start : start + step])


def main():
    if DOES == "end":
        sys.exit(7)
    path = os.path.join(os.environ["QUIVERLEAF_RUNTIME_DIR"], NAME)
    if os.path.exists(path):
        os.unlink(path)
    os.umask(0o177)
    listener = socket.socket(socket.AF_UNIX)
    listener.bind(path)
    listener.listen()
    while True:
        connection, _ = listener.accept()
        with connection:
            try:
                serve(connection)
            except OSError:
                continue


main()
