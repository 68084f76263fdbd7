# SPDX-License-Identifier: Apache-2.0
"""The calls to the helper over its named connection."""

import contextlib
import enum
import os
import signal
import socket
import struct
import time
from collections.abc import Iterator, Mapping
from typing import Any, Optional, TypeVar

from . import plist, runtime
from .plist import Data
from .runtime import StrPath

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

_Kind = TypeVar("_Kind", dict[str, Any], bytes, bool)


class ErrorCode(enum.IntEnum):
    """Why an answer is None, or not whole; later helpers may know more codes."""

    OTHER = 1
    NO_SUCH_FILE = 2
    UNREADABLE = 3  # It may not be read, is a folder or no regular file, or its disk fails.
    TOO_LARGE = 4
    UNSUPPORTED_TYPE = 5  # Nothing in the helper reads content of this kind.
    DAMAGED = 6
    LOCKED = 7  # It needs a password.
    TIME_LIMIT = 8
    MEMORY_LIMIT = 9
    INCOMPLETE = 10  # It is empty, or a part of it or of the answer is left out.


class HelperError(Exception):
    """What goes wrong between this client and the helper."""


class HelperUnreachable(HelperError):
    """No helper is registered and none could be started."""


class HelperTimeout(HelperError):
    """No reply within the time limit."""


class HelperDied(HelperError):
    """The helper ended, or closed the connection, before it replied."""


class RemoteException(HelperError):
    """The operation raised an exception in the helper: its name, and its reason for people."""

    def __init__(self, name: Optional[str], reason: Optional[str]) -> None:
        super().__init__(name, reason)
        self.name = name
        self.reason = reason

    def __str__(self) -> str:
        return f"{self.name}: {self.reason}"


class Helper:
    """The helper, started when none is registered. Used from one thread at a time.

    `timeout` is for one call, request and reply together, in seconds. A helper that lets a call time out is ended unless
    `ends_hung_helper` is false, so that the next call meets a fresh one; so does the call after a helper's death. `name`
    is the name of its connection.

    `path` is the helper's program. By default it is $QUIVERLEAF_HELPER, else the one installed in this package's own prefix
    (in a checkout, the one built there), else the one that the installation names or that of /usr/local or /usr, else
    `quiverleaf-helper` in PATH. A relative one counts from the working directory of the moment.

    The operations have the names of the helper's own. Files are named by str, bytes or os.PathLike, relative ones from
    this process's working directory; names that are not UTF-8 work. An answer that is nil is None: the operation could not
    do its work, and `reason` and `code` may say why. A dictionary comes as dict, data as bytes, a date as datetime in UTC,
    null as None. Each operation raises RemoteException, HelperTimeout, HelperDied or HelperUnreachable, HelperError itself
    for an answer of the wrong kind, ValueError for arguments that cannot be sent, and FileNotFoundError for a relative name
    in a working directory that is gone.
    """

    reason: Optional[str]
    """Why the last call answered None, or why its answer is not whole, as a text for people.

    None when the helper gave no reason, when the last call raised, and before the first one.
    """

    code: Optional[int]
    """The same for programs: one of the numbers of ErrorCode, or a later one, which counts as ErrorCode.OTHER."""

    def __init__(
        self,
        *,
        timeout: float = 15.0,
        starts_helper: bool = True,
        ends_hung_helper: bool = True,
        name: str = CONNECTION_NAME,
        path: Optional[StrPath] = None,
    ) -> None:
        self.timeout = timeout
        self.reason = None
        self.code = None
        self._starts_helper = starts_helper
        self._ends_hung_helper = ends_hung_helper
        self._name = name
        self._path = runtime.absolute(path) if path else None
        self._connection: Optional[runtime.Connection] = None
        self._serial = 0

    def __enter__(self) -> "Helper":
        return self

    def __exit__(self, *_: object) -> None:
        self.close()

    def close(self) -> None:
        """Closes the connection; the helper goes on. The next call opens another one."""
        if self._connection:
            self._connection.close()
            self._connection = None

    def metaDataForFile(self, path: StrPath) -> Optional[dict[str, Any]]:
        """The file's metadata attributes by their kMDItem names, its text among them; None when no importer reads it."""
        return self._ask(dict, "metaDataForFile:", _path(path))

    def searchableTextOfWebArchive(self, path: StrPath) -> Optional[dict[str, Any]]:
        """The text of a web archive: "String", and when they are known "Source", the markup, and "URL", its base.

        A file that is no archive has none of them, or the answer is None.
        """
        return self._ask(dict, "searchableTextOfWebArchive:", _path(path))

    def attributedStringWithPDF(self, attributed: bool, pdf: Data) -> Optional[dict[str, Any]]:
        """The text and facts of a PDF that is given as its bytes; None when they are no PDF.

        "String" is the text, missing when there are no pages; with `attributed` it is wanted as RTFD data, and missing
        when the helper makes none. "PageCount" is an integer. "Locked" is True, and there is no text, when the PDF needs a
        password. The document's own attributes stand beside them, as "Title" and "Producer".
        """
        return self._ask(dict, "attributed:stringWithPDF:", attributed, pdf)

    def attributedStringWithContentsOfFile(self, path: StrPath) -> Optional[dict[str, Any]]:
        """A document as rich text: "Rtfd", its RTFD data, and "DocumentAttributes", a dict. None when it is unreadable."""
        return self._ask(dict, "attributedStringWithContentsOfFile:", _path(path))

    def writeRTFDData(self, rtfd: Data, to_file: StrPath) -> Optional[bool]:
        """Writes RTFD data as a file package, and answers whether it was written; None counts as not."""
        return self._ask(bool, "writeRTFDData:toFile:", rtfd, _path(to_file))

    def RTFDWithHTML(
        self, html: Data, base_url: Optional[str] = None, allow_remote_request: bool = False
    ) -> Optional[bytes]:
        """A page as RTFD data, None when it cannot be rendered.

        `html` is its bytes; `base_url`, an absolute URL, completes the relative ones in it. What the page refers to is
        loaded from the network only with `allow_remote_request`.
        """
        selector = "RTFDWithHTML:baseURL:allowRemoteRequest:"
        return self._ask(bytes, selector, html, base_url, allow_remote_request)

    def PDFImageRepOfFile(self, path: StrPath) -> Optional[bytes]:
        """The PDF data of a file that is a PDF or can become one, as PostScript; None for all others."""
        return self._ask(bytes, "PDFImageRepOfFile:", _path(path))

    def posterImageForMovieWithFile(self, path: StrPath) -> Optional[dict[str, Any]]:
        """A movie's poster: "Duration" in seconds, "Size", its natural size as the text "{width, height}", and
        "Thumbnail", the picture as TIFF data, missing when there is none. None when the file is unreadable."""
        return self._ask(dict, "posterImageForMovieWithFile:", _path(path))

    def imageWithContentsOfFile(
        self, path: StrPath, string_from_pdf: bool = False, can_use_spotlight: bool = False
    ) -> Optional[dict[str, Any]]:
        """The picture of an image or a PDF: "Thumbnail", TIFF data within 256 x 256 pixels; None when there is none.

        Beside it stand "Properties", or else "Size" in points and "PixelSize" in pixels, both as the text "{width,
        height}", and "Alpha", a bool. With `string_from_pdf` the entries of `attributedStringWithPDF` are added for a PDF;
        with `can_use_spotlight` the metadata importers may provide its text.
        """
        selector = "imageWithContentsOfFile:stringFromPDF:canUseSpotlight:"
        return self._ask(dict, selector, _path(path), string_from_pdf, can_use_spotlight)

    def call(self, selector: str, arguments: Mapping[str, Any]) -> Any:
        """Calls an operation by its full selector; `arguments` are keyed by its keywords, None is left out.

        Answers whatever the operation does, None for nil; `reason` and `code` then tell of this call. Paths have to be absolute.
        Raises RemoteException, HelperTimeout, HelperDied or HelperUnreachable, and ValueError for arguments that cannot
        be sent.
        """
        self.reason = self.code = None
        present = {keyword: value for keyword, value in arguments.items() if value is not None}
        self._serial += 1
        body = plist.dumps({"Request": self._serial, "Selector": selector, "Arguments": present})
        if len(body) > MAXIMUM_MESSAGE_BYTES:
            raise ValueError("the arguments are too large")
        connection = self._connect()
        deadline = time.monotonic() + self.timeout
        try:
            _limit(connection.socket, deadline)
            connection.socket.sendall(_LENGTH.pack(len(body)))
            _limit(connection.socket, deadline)
            connection.socket.sendall(body)
            reply = self._read_reply(connection.socket, deadline)
        except (TimeoutError, socket.timeout):
            if self._ends_hung_helper:
                connection.end_process(END_SECONDS, signal.SIGKILL)
            self.close()
            raise HelperTimeout(f"no answer to {selector} within {self.timeout:g} seconds") from None
        except (OSError, EOFError, plist.PropertyListError) as error:
            connection.wait_until_ended(DEATH_SECONDS)
            self.close()
            raise HelperDied(f"the helper ended before it answered {selector}") from error
        except BaseException:
            self.close()
            raise
        exception = reply.get("Exception")
        if exception is not None:
            raise RemoteException(exception.get("Name"), exception.get("Reason"))
        self.reason = reply.get("Reason")
        self.code = reply.get("Code")
        return reply.get("Result")

    def ping(self) -> int:
        """The helper's process number; a helper is started if need be. Raises HelperUnreachable or HelperTimeout."""
        return self._connect().process

    def stop(self) -> bool:
        """Ends the helper that is registered and waits until it is gone. False when there is none."""
        self.close()
        with _folder() as folder:
            connection = runtime.connect(folder, self._name, self.timeout)
        if not connection:
            return False
        with contextlib.closing(connection):
            return connection.end_process(END_SECONDS)

    def _ask(self, kind: type[_Kind], selector: str, *values: Any) -> Optional[_Kind]:
        """Calls an operation with the values of its keywords in their order, and makes sure of the answer's kind."""
        answer = self.call(selector, dict(zip(selector.split(":"), values)))
        if answer is not None and not isinstance(answer, kind):
            raise HelperError(f"the answer to {selector} is no {kind.__name__} but {type(answer).__name__}")
        return answer

    def _connect(self) -> runtime.Connection:
        if self._connection and self._connection.is_stale():
            self.close()
        if self._connection:
            return self._connection
        try:
            with _folder() as folder:
                self._connection = runtime.connect(folder, self._name, self.timeout) or self._start(folder)
        except BlockingIOError:
            raise HelperTimeout(f"the helper takes no connection for {self.timeout:g} seconds") from None
        except (OSError, ValueError) as error:
            raise HelperUnreachable(str(error)) from error
        return self._connection

    def _start(self, folder: int) -> runtime.Connection:
        if not self._starts_helper:
            raise HelperUnreachable("no helper is registered")
        path = self._path or runtime.find_helper()
        deadline = time.monotonic() + START_SECONDS
        with runtime.start_lock(folder, self._name, deadline):
            connection = runtime.connect(folder, self._name, START_SECONDS)
            return connection or runtime.start_helper(path, folder, self._name, deadline)

    def _read_reply(self, connected: socket.socket, deadline: float) -> dict[str, Any]:
        length = _LENGTH.unpack(_receive(connected, _LENGTH.size, deadline))[0]
        if length > MAXIMUM_MESSAGE_BYTES:
            raise EOFError("the reply is too large")
        reply = plist.loads(_receive(connected, length, deadline))
        if not isinstance(reply, dict) or reply.get("Reply") != self._serial:
            raise EOFError("the reply belongs to no request")
        for key, kind in (("Exception", dict), ("Reason", str), ("Code", int)):
            if not isinstance(reply.get(key, kind()), kind):
                raise EOFError(f"the reply's {key} is none")
        return reply


def _limit(connected: socket.socket, deadline: float) -> None:
    remaining = deadline - time.monotonic()
    if remaining <= 0:
        raise TimeoutError
    connected.settimeout(remaining)


def _receive(connected: socket.socket, count: int, deadline: float) -> bytes:
    data = bytearray()
    while len(data) < count:
        _limit(connected, deadline)
        part = connected.recv(min(count - len(data), _READ_BYTES))
        if not part:
            raise EOFError("the connection was closed")
        data += part
    return bytes(data)


@contextlib.contextmanager
def _folder() -> Iterator[int]:
    folder = runtime.open_folder()
    try:
        yield folder
    finally:
        os.close(folder)


def _path(path: StrPath) -> str:
    """The absolute path as text; each byte that is not UTF-8 as the lone surrogate by which the helper knows it."""
    return os.fsencode(runtime.absolute(path)).decode("utf-8", "surrogateescape")
