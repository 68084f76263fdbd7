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
from typing import Any, Optional, TypeVar, Union

from . import plist, runtime
from .plist import Data
from .runtime import StrPath

CONNECTION_NAME = "QuiverleafHelper_2.0pb8build4"

# The one that waits for what a page refers to.
PAGE_SELECTOR = "RTFDWithHTML:baseURL:allowRemoteRequest:"

# The operations: the keywords of a selector are its parts.
OPERATIONS = (
    "metaDataForFile:",
    "searchableTextOfWebArchive:",
    "attributed:stringWithPDF:",
    "attributedStringWithContentsOfFile:",
    "writeRTFDData:toFile:",
    PAGE_SELECTOR,
    "PDFImageRepOfFile:",
    "posterImageForMovieWithFile:",
    "imageWithContentsOfFile:stringFromPDF:canUseSpotlight:",
    "stringWithPDF:options:",
)

MAXIMUM_MESSAGE_BYTES = 512 << 20
PAGE_LOAD_SECONDS = 15.0  # A page waits so long for its style sheets and images.
START_SECONDS = 5.0
END_SECONDS = 2.0
DEATH_SECONDS = 1.0  # For the remains of a helper that closed a connection to be gone.
ATTEMPT_PAUSE_SECONDS = 0.1  # The same before the next attempt of a call, which meets a living helper more often.
ABANDONED_WORK_SECONDS = 60.0  # A helper that is started ends when it works so long for a caller that has gone.
REFUSALS = 10  # How often a request is sent to helpers that live on and close the connection before they begin it.
DEATHS = 50  # How often to helpers that end before they begin it, mostly over somebody else's request.

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
    """No helper is registered and none could be started, or none lived until it began."""


class HelperTimeout(HelperError):
    """Not begun, or no reply, within the time limit."""


class HelperDied(HelperError):
    """The helper ended, or closed the connection, after it had begun the request."""


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

    `timeout` is for the work on one call, reply included, in seconds from the moment that the helper begins it; a page
    that becomes rich text has PAGE_LOAD_SECONDS more, in which it waits for its style sheets and images; `waiting`
    is how long a call may wait for its beginning, while others are served or a helper starts. A helper that lets a call
    time out is ended unless `ends_hung_helper` is false, so that the next call meets a fresh one; so does the call after a
    helper's death. A call that had not begun when the helper ended is made again. A helper that is started ends after
    `idle_minutes` in which nobody asked for anything; 0 is never. `name` is the name of its connection.

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
        waiting: float = 300.0,
        idle_minutes: float = 10.0,
        starts_helper: bool = True,
        ends_hung_helper: bool = True,
        name: str = CONNECTION_NAME,
        path: Optional[StrPath] = None,
    ) -> None:
        self.timeout = timeout
        self.waiting = waiting
        self._idle_minutes = idle_minutes
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

        For a file that is no archive or cannot be read the answer has none of them, and `reason` says why.
        """
        return self._ask(dict, "searchableTextOfWebArchive:", _path(path))

    def attributedStringWithPDF(self, attributed: bool, pdf: Data) -> Optional[dict[str, Any]]:
        """The text and facts of a PDF that is given as its bytes; None when they are no PDF.

        "String" is the text, missing when there are no pages; with `attributed` it is RTFD data, with the fonts, colours
        and links of the text. "PageCount" is an integer. "Locked" is True, and there is no text, when the PDF needs a
        password. The document's own attributes stand beside them, as "Title" and "Producer".
        """
        return self._ask(dict, "attributed:stringWithPDF:", attributed, pdf)

    def attributedStringWithContentsOfFile(self, path: StrPath) -> Optional[dict[str, Any]]:
        """A document as rich text: "Rtfd", its RTFD data, and "DocumentAttributes", a dict. None when it is unreadable.

        Parts of a page are loaded from this machine and its local network alone.
        """
        return self._ask(dict, "attributedStringWithContentsOfFile:", _path(path))

    def writeRTFDData(self, rtfd: Data, to_file: StrPath) -> Optional[bool]:
        """Writes RTFD data as a file package, and answers whether it was written; None counts as not."""
        return self._ask(bool, "writeRTFDData:toFile:", rtfd, _path(to_file))

    def RTFDWithHTML(
        self, html: Data, base_url: Optional[str] = None, allow_remote_request: bool = False
    ) -> Optional[bytes]:
        """A page as RTFD data; its scripts are not run.

        `html` is its bytes; `base_url`, an absolute URL, completes the relative ones in it. What the page refers to is
        loaded from beyond the local network only with `allow_remote_request`; `reason` tells what is missing.
        """
        return self._ask(bytes, PAGE_SELECTOR, html, base_url, allow_remote_request)

    def PDFImageRepOfFile(self, path: StrPath) -> Optional[bytes]:
        """A file that is PDF or PostScript, as a PDF."""
        return self._ask(bytes, "PDFImageRepOfFile:", _path(path))

    def posterImageForMovieWithFile(self, path: StrPath) -> Optional[dict[str, Any]]:
        """A frame of a movie: "Duration" in seconds, "Size" in points, as "{640, 360}", and "Thumbnail", when there is one.

        The frame is TIFF data in that size. It is the one in the middle, but not behind the 15th second.
        """
        return self._ask(dict, "posterImageForMovieWithFile:", _path(path))

    def imageWithContentsOfFile(
        self, path: StrPath, string_from_pdf: bool = False, can_use_spotlight: bool = False
    ) -> Optional[dict[str, Any]]:
        """The picture of an image, a PDF or PostScript: "Thumbnail", TIFF data of at most 256 pixels a side.

        An image has "Properties" besides, what the file says of itself; other files, and all with `string_from_pdf`, have
        "Size" in points, "PixelSize" and "Alpha". With `string_from_pdf`, of PDF and PostScript, what
        attributedStringWithPDF answers, too; with `can_use_spotlight` the metadata importers are asked for the text first.
        """
        selector = "imageWithContentsOfFile:stringFromPDF:canUseSpotlight:"
        return self._ask(dict, selector, _path(path), string_from_pdf, can_use_spotlight)

    def stringWithPDF(self, pdf: Data, **options: Union[str, int, bool, None]) -> Optional[dict[str, Any]]:
        """The text and facts of a PDF that is given as its bytes, or of some of its pages.

        The options are `Password`, a str; `FirstPage` and `LastPage`, numbers from 1 on; `Attributed`, for RTFD data; and
        `ByPage`, for "Pages", a list with a str for each page, in place of "String". `reason` then names pages without text.
        An option that is None is left out.
        All else is as attributedStringWithPDF answers it.
        """
        given = {option: value for option, value in options.items() if value is not None}
        return self._ask(dict, "stringWithPDF:options:", pdf, given)

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
        reply = self._request(selector, _LENGTH.pack(len(body)) + body)
        exception = reply.get("Exception")
        if exception is not None:
            raise RemoteException(exception.get("Name"), exception.get("Reason"))
        self.reason = reply.get("Reason")
        self.code = reply.get("Code")
        return reply.get("Result")

    def ping(self) -> int:
        """The helper's process number; a helper is started if need be. Raises HelperUnreachable or HelperTimeout."""
        return self._connect(time.monotonic() + self.timeout).process

    def stop(self) -> bool:
        """Ends the helper that is registered when its request under way is done, and waits until it is gone.

        One that is not gone after END_SECONDS is killed. False when there is none.
        """
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

    def _request(self, selector: str, message: bytes) -> dict[str, Any]:
        """Sends a request, again to the next helper when one ends before it has begun it, and awaits the reply."""
        waiting = time.monotonic() + self.waiting
        limit = self.timeout + (PAGE_LOAD_SECONDS if selector == PAGE_SELECTOR else 0)
        refusals = deaths = 0
        while refusals < REFUSALS and deaths < DEATHS:
            work = _Work(waiting, limit)
            connection = self._connect(waiting)
            if not connection.tells_begin:
                work.begin()
            try:
                return self._exchange(connection.socket, message, work)
            except (TimeoutError, socket.timeout):
                if not work.has_begun:
                    if self._ends_hung_helper and not self._is_working(connection):
                        connection.end_process(END_SECONDS, signal.SIGKILL)
                    self.close()
                    raise self._waited_too_long() from None
                if self._ends_hung_helper:
                    connection.end_process(END_SECONDS, signal.SIGKILL)
                self.close()
                raise HelperTimeout(f"no answer to {selector} within {limit:g} seconds") from None
            except (OSError, EOFError, plist.PropertyListError) as error:
                has_ended = connection.wait_until_ended(DEATH_SECONDS if work.has_begun else ATTEMPT_PAUSE_SECONDS)
                self.close()
                if work.has_begun or not isinstance(error, (OSError, EOFError)):
                    raise HelperDied(f"the helper ended before it answered {selector}") from error
                deaths += has_ended
                refusals += not has_ended
                if time.monotonic() >= waiting:
                    raise self._waited_too_long() from None
            except BaseException:
                self.close()
                raise
        if refusals < REFUSALS:
            raise HelperUnreachable(f"helpers ended before they began {selector}, {DEATHS} times")
        raise HelperUnreachable(f"the helper closed the connection before it began {selector}, {REFUSALS} times")

    def _exchange(self, connected: socket.socket, message: bytes, work: "_Work") -> dict[str, Any]:
        _limit(connected, work.deadline)
        connected.sendall(message)
        while True:
            answer = _read_message(connected, work)
            if "Helper" in answer and self._connection and not self._connection.tells_begin:
                # It is of the present version after all: nothing was begun.
                self._connection.tells_begin = True
                work.wait_again()
            elif answer.get("Begun") == self._serial and not work.has_begun:
                work.begin()
            elif "Reply" in answer:
                return self._checked(answer)

    def _waited_too_long(self) -> HelperTimeout:
        return HelperTimeout(f"the helper did not begin within {self.waiting:g} seconds")

    def _connect(self, deadline: float) -> runtime.Connection:
        if self._connection and not self._connection.is_stale():
            return self._connection
        self.close()
        try:
            with _folder() as folder:
                connection = self._open(folder, deadline)
                while self._starts_helper and connection.is_program_gone() and self._program():
                    # Its work for others is done first.
                    with contextlib.closing(connection):
                        if not connection.end_orderly(deadline - time.monotonic()):
                            raise BlockingIOError
                    connection = self._open(folder, deadline)
                self._connection = connection
        except BlockingIOError:
            raise self._waited_too_long() from None
        except (OSError, ValueError) as error:
            raise HelperUnreachable(str(error)) from error
        return self._connection

    def _open(self, folder: int, deadline: float) -> runtime.Connection:
        connection = runtime.connect(folder, self._name, deadline - time.monotonic()) or self._start(folder)
        record = runtime.record(folder, self._name)
        connection.tells_begin = record is not None
        if record and record.get("Process") == connection.process:
            connection.program = record.get("Path")
        return connection

    def _is_working(self, connection: runtime.Connection) -> bool:
        """Whether the helper works, as it has written down; one that has written nothing counts as working."""
        with _folder() as folder:
            record = runtime.record(folder, self._name)
        return not record or record.get("Process") != connection.process or bool(record["IsWorking"])

    def _program(self) -> Optional[str]:
        with contextlib.suppress(FileNotFoundError):
            return self._path or runtime.find_helper()
        return None

    def _start(self, folder: int) -> runtime.Connection:
        if not self._starts_helper:
            raise HelperUnreachable("no helper is registered")
        path = self._path or runtime.find_helper()
        deadline = time.monotonic() + START_SECONDS
        with runtime.start_lock(folder, self._name, deadline):
            connection = runtime.connect(folder, self._name, START_SECONDS)
            return connection or runtime.start_helper([path, *self._arguments()], folder, self._name, deadline)

    def _arguments(self) -> list[str]:
        idle = ["--idle-minutes", f"{self._idle_minutes:g}"] if self._idle_minutes > 0 else []
        return ["--abandoned-work-seconds", f"{ABANDONED_WORK_SECONDS:g}", *idle]

    def _checked(self, reply: dict[str, Any]) -> dict[str, Any]:
        if reply["Reply"] != self._serial:
            raise plist.PropertyListError("the reply belongs to no request")
        for key, kind in (("Exception", dict), ("Reason", str), ("Code", int)):
            if not isinstance(reply.get(key, kind()), kind):
                raise plist.PropertyListError(f"the reply's {key} is none")
        return reply


class _Work:
    """Until when the helper's work on a request, or the wait for its beginning, may last."""

    def __init__(self, waiting: float, seconds: float) -> None:
        self.deadline = self._waiting = waiting
        self.has_begun = False
        self._seconds = seconds

    def begin(self) -> None:
        self.deadline = time.monotonic() + self._seconds
        self.has_begun = True

    def wait_again(self) -> None:
        self.deadline = self._waiting
        self.has_begun = False


def _read_message(connected: socket.socket, work: _Work) -> dict[str, Any]:
    length = _LENGTH.unpack(_receive(connected, _LENGTH.size, work.deadline))[0]
    if length > MAXIMUM_MESSAGE_BYTES:
        raise plist.PropertyListError("the message is too large")
    message = plist.loads(_receive(connected, length, work.deadline))
    if not isinstance(message, dict):
        raise plist.PropertyListError("the message is no dictionary")
    return message


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
