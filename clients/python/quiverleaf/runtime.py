# SPDX-License-Identifier: Apache-2.0
"""Where named connections live, and the processes behind them."""

import contextlib
import fcntl
import importlib
import os
import pathlib
import select
import shutil
import signal
import socket
import stat
import struct
import subprocess
import threading
import time
from collections.abc import Iterator
from typing import Any, Optional, Union

from . import plist

StrPath = Union[str, bytes, os.PathLike[str], os.PathLike[bytes]]

HELPER_PROGRAM = "quiverleaf-helper"

_CUSTOMARY_FOLDERS = ("/usr/local/libexec/quiverleaf", "/usr/libexec/quiverleaf")
_POLL_SECONDS = 0.01
_PEER = struct.Struct("iII")
_RECORD_HEADER_BYTES = 12
_RECORD_BYTES = 1 << 17
_RECORD_ATTEMPTS = 100


def open_folder() -> int:
    """A descriptor of the runtime folder, which is made when missing; the caller closes it.

    Raises OSError when the folder is not safe to use, ValueError when it is named by a relative path.
    """
    path = os.environ.get("QUIVERLEAF_RUNTIME_DIR") or os.environ.get("XDG_RUNTIME_DIR")
    flags = os.O_PATH | os.O_DIRECTORY | os.O_CLOEXEC
    if not path:
        path = os.path.join(os.environ.get("TMPDIR") or "/tmp", f"quiverleaf-{os.geteuid()}")
        flags |= os.O_NOFOLLOW  # Anybody may put a link into the temporary folder.
    if not os.path.isabs(path):
        raise ValueError(f"the runtime folder {path} is a relative path")
    with contextlib.suppress(FileExistsError):
        os.mkdir(path, 0o700)
    folder = os.open(path, flags)
    status = os.fstat(folder)
    if status.st_uid != os.geteuid() or status.st_mode & (stat.S_IWGRP | stat.S_IWOTH):
        os.close(folder)
        raise PermissionError(f"the runtime folder {path} belongs to another user, or others may write to it")
    return folder


class Connection:
    """A socket and the process at its other end: its number, and a descriptor that never means a later process."""

    def __init__(self, connected: socket.socket) -> None:
        """Takes the socket over. Raises ConnectionRefusedError when the process has ended, ConnectionAbortedError when it
        has closed the connection, PermissionError when it is another user's; the socket is then left to the caller."""
        self.socket = connected
        self.program: Optional[str] = None
        """The path of its program, when it has written it down."""
        self.tells_begin = False
        """Whether the process says when it begins a request; one that does not counts as having begun all it was sent."""
        peer = _PEER.unpack(connected.getsockopt(socket.SOL_SOCKET, socket.SO_PEERCRED, _PEER.size))
        self.process: int = peer[0]
        user = peer[1]
        if user != os.geteuid():
            raise PermissionError(f"process {self.process} of another user answers under the name")
        try:
            self._handle = os.pidfd_open(self.process)
        except ProcessLookupError:
            raise ConnectionRefusedError from None
        # While the connection stands, the number has not been given to another process.
        if self.is_stale():
            os.close(self._handle)
            raise ConnectionAbortedError

    def close(self) -> None:
        """Closes the connection; the process goes on."""
        self.socket.close()
        os.close(self._handle)

    def is_stale(self) -> bool:
        """Whether the other side has ended the connection; what it sent before may still be there to read."""
        state = select.poll()
        state.register(self.socket, 0)
        return bool(state.poll(0))

    def is_program_gone(self) -> bool:
        """Whether the file that the process says it was started from has been removed, moved or replaced."""
        if not self.program:
            return False
        try:
            running = os.stat(f"/proc/{self.process}/exe")
        except OSError:
            return False
        try:
            return not os.path.samestat(running, os.stat(self.program))
        except OSError:
            return True

    def end_orderly(self, seconds: float) -> bool:
        """Tells the process to end when the request under way is done; false when it still runs after that time."""
        with contextlib.suppress(ProcessLookupError):
            signal.pidfd_send_signal(self._handle, signal.SIGTERM)
        return self.wait_until_ended(max(seconds, 0))

    def wait_until_ended(self, seconds: float) -> bool:
        """Waits for the end of the process; false when it still runs after that time."""
        ended = select.poll()
        ended.register(self._handle, select.POLLIN)
        return bool(ended.poll(seconds * 1000))

    def end_process(self, seconds: float, first_signal: signal.Signals = signal.SIGTERM) -> bool:
        """Ends the process, by force when it has not heeded the first signal after `seconds`, and waits as long again.

        False when it still runs.
        """
        for number in (first_signal, signal.SIGKILL):
            with contextlib.suppress(ProcessLookupError):
                signal.pidfd_send_signal(self._handle, number)
            if self.wait_until_ended(seconds):
                return True
        return False


def connect(folder: int, name: str, seconds: float) -> Optional[Connection]:
    """The connection to the process that serves `name`, or None when there is none.

    `folder` is a descriptor of the runtime folder. Raises BlockingIOError when the process takes no connection for that
    many seconds, PermissionError when the socket or the process is not this user's alone, and other OSErrors.
    """
    deadline = time.monotonic() + seconds
    while True:
        connected = socket.socket(socket.AF_UNIX, socket.SOCK_STREAM | socket.SOCK_CLOEXEC)
        connected.setblocking(False)
        try:
            status = os.stat(name, dir_fd=folder, follow_symlinks=False)
            if status.st_mode != stat.S_IFSOCK | 0o600 or status.st_uid != os.geteuid():
                raise PermissionError(f"{name} is no socket of this user alone")
            # Through the descriptor, since a socket's path may only be about a hundred bytes long.
            connected.connect(f"/proc/self/fd/{folder}/{name}")
            return Connection(connected)
        except (FileNotFoundError, ConnectionRefusedError):
            connected.close()
            return None
        except (BlockingIOError, ConnectionAbortedError) as error:
            # So busy that its queue is full, in such demand that this connection had to make way, or ending.
            connected.close()
            if time.monotonic() >= deadline:
                if isinstance(error, ConnectionAbortedError):
                    return None
                raise
            time.sleep(_POLL_SECONDS)
        except BaseException:
            connected.close()
            raise


def record(folder: int, name: str) -> Optional[dict[str, Any]]:
    """What the process that serves the name has written beside its socket: empty when it cannot be read, None when there
    is nothing at all, as beside a helper of an older version."""
    flags = os.O_RDONLY | os.O_NONBLOCK | os.O_CLOEXEC | os.O_NOFOLLOW
    try:
        file = os.open(f"{name}.record", flags, dir_fd=folder)
    except FileNotFoundError:
        return None
    except OSError:
        return {}
    try:
        for _ in range(_RECORD_ATTEMPTS):
            content = os.pread(file, _RECORD_BYTES, 0)
            length = int.from_bytes(content[4:8], "big")
            body = content[_RECORD_HEADER_BYTES:][:length]
            if body and int.from_bytes(content[8:12], "big") == _checksum(body):
                values = plist.loads(body)
                return {**values, "IsWorking": any(content[:4])} if isinstance(values, dict) else {}
    except (OSError, plist.PropertyListError):
        pass
    finally:
        os.close(file)
    return {}


def _checksum(body: bytes) -> int:
    """FNV-1a of 32 bits. A reader may meet a record that is half written."""
    checksum = 2166136261
    for byte in body:
        checksum = (checksum ^ byte) * 16777619 & 0xFFFFFFFF
    return checksum


@contextlib.contextmanager
def start_lock(folder: int, name: str, deadline: float) -> Iterator[None]:
    """Lets one client at a time start a helper. Raises TimeoutError at `deadline`, a moment of time.monotonic()."""
    flags = os.O_RDWR | os.O_CREAT | os.O_CLOEXEC | os.O_NOFOLLOW
    lock = os.open(f"{name}.start", flags, 0o600, dir_fd=folder)
    try:
        while True:
            try:
                fcntl.flock(lock, fcntl.LOCK_EX | fcntl.LOCK_NB)
                break
            except BlockingIOError:
                if time.monotonic() >= deadline:
                    raise TimeoutError("another client is starting a helper") from None
                time.sleep(_POLL_SECONDS)
        yield
    finally:
        os.close(lock)


def absolute(path: StrPath) -> str:
    """The path with the working directory of this moment in front when it is relative; its parts stay as they are, and
    nothing stays nothing.

    Raises FileNotFoundError when the working directory is gone.
    """
    name = os.fsdecode(path)
    return os.path.join(os.getcwd(), name) if name and not os.path.isabs(name) else name


def find_helper() -> str:
    """The absolute path of the helper's program: $QUIVERLEAF_HELPER, else the first of `helper_places`, else in PATH.

    Raises FileNotFoundError, which says all these places.
    """
    named = os.environ.get("QUIVERLEAF_HELPER")
    if named:
        return absolute(named)
    places = helper_places()
    for place in places:
        if os.path.isfile(place) and os.access(place, os.X_OK):
            return place
    found = shutil.which(HELPER_PROGRAM)
    if found:
        return absolute(found)
    raise FileNotFoundError(
        f"{HELPER_PROGRAM} was not found: no path to it is given, $QUIVERLEAF_HELPER is not set, and it is not at "
        f"{', '.join(places)}, nor in PATH ({os.environ.get('PATH', os.defpath)})"
    )


def helper_places() -> list[str]:
    """Where the helper's program may be installed, the likeliest first.

    It is first looked for in the prefix in which this package is installed, or in the checkout of which it is a part.
    An installation of both together says in `_installation` where it has put the program.
    """
    folder = pathlib.Path(__file__).resolve().parent
    folders = []
    if folder.parts[-3:-1] == ("clients", "python"):
        folders.append(folder.parents[2] / "build" / "release" / "libexec" / "quiverleaf")
    elif folder.parent.name in ("site-packages", "dist-packages") and len(folder.parents) > 3:
        folders.append(folder.parents[3] / "libexec" / "quiverleaf")
    try:
        folders.append(pathlib.Path(importlib.import_module("._installation", __package__).LIBEXEC_FOLDER))
    except ModuleNotFoundError:
        folders.extend(map(pathlib.Path, _CUSTOMARY_FOLDERS))
    return [str(place / HELPER_PROGRAM) for place in dict.fromkeys(folders)]


def start_helper(command: list[str], folder: int, name: str, deadline: float) -> Connection:
    """Starts the helper's program, whose absolute path begins the command, and connects to it.

    `folder` is a descriptor of the runtime folder, `deadline` a moment of time.monotonic(). Raises TimeoutError when the
    helper does not answer until then, ChildProcessError when it ends, and other OSErrors.
    """
    process = subprocess.Popen(
        command, stdin=subprocess.DEVNULL, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL, cwd="/",
        start_new_session=True,
    )  # fmt: skip
    # The helper outlives this client; the thread takes its exit status if it does not.
    threading.Thread(target=process.wait, daemon=True).start()
    while True:
        connection = connect(folder, name, deadline - time.monotonic())
        if connection:
            if connection.process != process.pid:
                process.kill()  # Another helper was first; this one would idle for ever.
            return connection
        if process.returncode is not None:
            raise ChildProcessError(f"{command[0]} ended with status {process.returncode} before it answered")
        if time.monotonic() >= deadline:
            process.kill()
            raise TimeoutError(f"{command[0]} does not answer")
        time.sleep(_POLL_SECONDS)
