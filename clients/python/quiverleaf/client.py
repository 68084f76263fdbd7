# SPDX-License-Identifier: Apache-2.0
"""The calls to the helper over its named connection."""

import contextlib
import os
import signal
import socket
import struct
import time

from . import plist, runtime

CONNECTION_NAME = "QuiverleafHelper_2.0pb8build4"

# The operations: the keywords of a selector are its parts.
OPERATIONS = (
    "metaDataForFile:",
    "searchableTextOfWebArchive:",
    "attributed:stringWithPDF:",
    "attributedStringWithContentsOfFile:",
    "writeRTFDData:toFile:",
    "RTFDWithHTML:baseURL:allowRemoteRequest:",
    "PDFImageRepOfFile:",
    "posterImageForMovieWithFile:",
    "imageWithContentsOfFile:stringFromPDF:canUseSpotlight:",
)

MAXIMUM_MESSAGE_BYTES = 512 << 20
START_SECONDS = 5.0
END_SECONDS = 2.0
DEATH_SECONDS = 1.0  # For the remains of a helper that closed a connection to be gone.

_LENGTH = struct.Struct(">I")
_READ_BYTES = 1 << 20


class HelperError(Exception):
    """What goes wrong between this client and the helper."""


class HelperUnreachable(HelperError):
    """No helper is registered and none could be started."""


class HelperTimeout(HelperError):
    """No reply within the time limit."""


class HelperDied(HelperError):
    """The helper ended, or closed the connection, before it replied."""


class RemoteException(HelperError):
    """The operation raised an exception in the helper."""

    def __init__(self, name, reason):
        super().__init__(f"{name}: {reason}")
        self.name = name
        self.reason = reason


class Helper:
    """The helper, started when none is registered. Used from one thread at a time.

    `timeout` is for one call, request and reply together, in seconds. A helper that lets a call time out is ended unless
    `ends_hung_helper` is false, so that the next call meets a fresh one; so does the call after a helper's death. `path`
    is the helper's program (default: $QUIVERLEAF_HELPER, else the installed one).

    The operations have the names of the helper's own. Files are named by str, bytes or os.PathLike; names that are not
    UTF-8 work. An answer that is nil is None; what goes wrong is raised as a subclass of HelperError. A dictionary comes
    as dict, data as bytes, a date as datetime in UTC, null as None.
    """

    def __init__(self, *, timeout=15.0, starts_helper=True, ends_hung_helper=True, name=CONNECTION_NAME, path=None):
        self.timeout = timeout
        self._starts_helper = starts_helper
        self._ends_hung_helper = ends_hung_helper
        self._name = name
        self._path = path
        self._connection = None
        self._serial = 0

    def __enter__(self):
        return self

    def __exit__(self, *_):
        self.close()

    def close(self):
        """Closes the connection; the helper goes on. The next call opens another one."""
        if self._connection:
            self._connection.close()
            self._connection = None

    def metaDataForFile(self, path):
        return self.call("metaDataForFile:", {"metaDataForFile": _path(path)})

    def searchableTextOfWebArchive(self, path):
        return self.call("searchableTextOfWebArchive:", {"searchableTextOfWebArchive": _path(path)})

    def attributedStringWithPDF(self, attributed, pdf):
        return self.call("attributed:stringWithPDF:", {"attributed": attributed, "stringWithPDF": pdf})

    def attributedStringWithContentsOfFile(self, path):
        return self.call("attributedStringWithContentsOfFile:", {"attributedStringWithContentsOfFile": _path(path)})

    def writeRTFDData(self, rtfd, to_file):
        return self.call("writeRTFDData:toFile:", {"writeRTFDData": rtfd, "toFile": _path(to_file)})

    def RTFDWithHTML(self, html, base_url=None, allow_remote_request=False):
        return self.call(
            "RTFDWithHTML:baseURL:allowRemoteRequest:",
            {"RTFDWithHTML": html, "baseURL": base_url, "allowRemoteRequest": allow_remote_request},
        )

    def PDFImageRepOfFile(self, path):
        return self.call("PDFImageRepOfFile:", {"PDFImageRepOfFile": _path(path)})

    def posterImageForMovieWithFile(self, path):
        return self.call("posterImageForMovieWithFile:", {"posterImageForMovieWithFile": _path(path)})

    def imageWithContentsOfFile(self, path, string_from_pdf=False, can_use_spotlight=False):
        return self.call(
            "imageWithContentsOfFile:stringFromPDF:canUseSpotlight:",
            {
                "imageWithContentsOfFile": _path(path),
                "stringFromPDF": string_from_pdf,
                "canUseSpotlight": can_use_spotlight,
            },
        )

    def call(self, selector, arguments):
        """Calls an operation by its full selector; `arguments` are keyed by its keywords, None is left out.

        Raises RemoteException, HelperTimeout, HelperDied or HelperUnreachable, and ValueError for arguments that cannot
        be sent.
        """
        present = {keyword: value for keyword, value in arguments.items() if value is not None}
        self._serial += 1
        body = plist.dumps({"Request": self._serial, "Selector": selector, "Arguments": present})
        if len(body) > MAXIMUM_MESSAGE_BYTES:
            raise ValueError("the arguments are too large")
        self._connect()
        deadline = time.monotonic() + self.timeout
        try:
            self._wait_until(deadline)
            self._connection.socket.sendall(_LENGTH.pack(len(body)))
            self._wait_until(deadline)
            self._connection.socket.sendall(body)
            reply = self._read_reply(deadline)
        except (TimeoutError, socket.timeout):
            if self._ends_hung_helper:
                self._connection.end_process(END_SECONDS, signal.SIGKILL)
            self.close()
            raise HelperTimeout(f"no answer to {selector} within {self.timeout:g} seconds") from None
        except (OSError, EOFError, plist.PropertyListError) as error:
            self._connection.wait_until_ended(DEATH_SECONDS)
            self.close()
            raise HelperDied(f"the helper ended before it answered {selector}") from error
        except BaseException:
            self.close()
            raise
        exception = reply.get("Exception")
        if exception is not None:
            raise RemoteException(exception.get("Name"), exception.get("Reason"))
        return reply.get("Result")

    def ping(self):
        """The helper's process number; a helper is started if need be. Raises HelperUnreachable."""
        self._connect()
        return self._connection.process

    def stop(self):
        """Ends the helper that is registered and waits until it is gone. False when there is none."""
        self.close()
        with _folder() as folder:
            connection = runtime.connect(folder, self._name, self.timeout)
        if not connection:
            return False
        with contextlib.closing(connection):
            return connection.end_process(END_SECONDS)

    def _connect(self):
        if self._connection and self._connection.is_stale():
            self.close()
        if self._connection:
            return
        try:
            with _folder() as folder:
                self._connection = runtime.connect(folder, self._name, self.timeout) or self._start(folder)
        except BlockingIOError:
            raise HelperTimeout(f"the helper takes no connection for {self.timeout:g} seconds") from None
        except (OSError, ValueError) as error:
            raise HelperUnreachable(str(error)) from error

    def _start(self, folder):
        if not self._starts_helper:
            raise HelperUnreachable("no helper is registered")
        path = self._path or runtime.find_helper()
        deadline = time.monotonic() + START_SECONDS
        with runtime.start_lock(folder, self._name, deadline):
            connection = runtime.connect(folder, self._name, START_SECONDS)
            return connection or runtime.start_helper(path, folder, self._name, deadline)

    def _wait_until(self, deadline):
        remaining = deadline - time.monotonic()
        if remaining <= 0:
            raise TimeoutError
        self._connection.socket.settimeout(remaining)

    def _read_reply(self, deadline):
        length = _LENGTH.unpack(self._read(_LENGTH.size, deadline))[0]
        if length > MAXIMUM_MESSAGE_BYTES:
            raise EOFError("the reply is too large")
        reply = plist.loads(self._read(length, deadline))
        if not isinstance(reply, dict) or reply.get("Reply") != self._serial:
            raise EOFError("the reply belongs to no request")
        if not isinstance(reply.get("Exception", {}), dict):
            raise EOFError("the reply's exception is none")
        return reply

    def _read(self, count, deadline):
        data = bytearray()
        while len(data) < count:
            self._wait_until(deadline)
            part = self._connection.socket.recv(min(count - len(data), _READ_BYTES))
            if not part:
                raise EOFError("the connection was closed")
            data += part
        return bytes(data)


@contextlib.contextmanager
def _folder():
    folder = runtime.open_folder()
    try:
        yield folder
    finally:
        os.close(folder)


def _path(path):
    """The absolute path as text; each byte that is not UTF-8 as the lone surrogate by which the helper knows it."""
    return os.path.join(os.getcwdb(), os.fsencode(path)).decode("utf-8", "surrogateescape")
