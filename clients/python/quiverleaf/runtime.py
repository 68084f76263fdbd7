# SPDX-License-Identifier: Apache-2.0
"""Where named connections live, and the processes behind them."""

import contextlib
import fcntl
import os
import select
import shutil
import signal
import socket
import stat
import struct
import subprocess
import threading
import time

_POLL_SECONDS = 0.01
_PEER = struct.Struct("iII")


def open_folder():
    """A descriptor of the runtime folder, which is made when missing. Raises OSError when it is not safe to use."""
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

    def __init__(self, connected):
        self.socket = connected
        self.process, user, _ = _PEER.unpack(connected.getsockopt(socket.SOL_SOCKET, socket.SO_PEERCRED, _PEER.size))
        if user != os.geteuid():
            raise PermissionError(f"process {self.process} of another user answers under the name")
        try:
            self._handle = os.pidfd_open(self.process)
        except ProcessLookupError:
            raise ConnectionRefusedError from None
        # While the connection stands, the number has not been given to another process.
        if self.is_stale():
            os.close(self._handle)
            raise ConnectionRefusedError

    def close(self):
        self.socket.close()
        os.close(self._handle)

    def is_stale(self):
        """Whether the other side has ended the connection, or sent what nobody asked for."""
        state = select.poll()
        state.register(self.socket, select.POLLIN)
        return bool(state.poll(0))

    def wait_until_ended(self, seconds):
        """Waits for the end of the process; false when it still runs after that time."""
        ended = select.poll()
        ended.register(self._handle, select.POLLIN)
        return bool(ended.poll(seconds * 1000))

    def end_process(self, seconds, first_signal=signal.SIGTERM):
        """Ends the process, in the end by force, and waits until it is gone. False when it is not."""
        for number in (first_signal, signal.SIGKILL):
            with contextlib.suppress(ProcessLookupError):
                signal.pidfd_send_signal(self._handle, number)
            if self.wait_until_ended(seconds):
                return True
        return False


def connect(folder, name, seconds):
    """The connection to the process that serves `name`, or None when there is none.

    Raises BlockingIOError when it takes no connection for that time, and other OSErrors.
    """
    deadline = time.monotonic() + seconds
    connected = socket.socket(socket.AF_UNIX, socket.SOCK_STREAM | socket.SOCK_CLOEXEC)
    connected.setblocking(False)
    try:
        status = os.stat(name, dir_fd=folder, follow_symlinks=False)
        if status.st_mode != stat.S_IFSOCK | 0o600 or status.st_uid != os.geteuid():
            raise PermissionError(f"{name} is no socket of this user alone")
        while True:
            try:
                # Through the descriptor, since a socket's path may only be about a hundred bytes long.
                connected.connect(f"/proc/self/fd/{folder}/{name}")
                return Connection(connected)
            except BlockingIOError:  # The helper is so busy that its queue is full.
                if time.monotonic() >= deadline:
                    raise
                time.sleep(_POLL_SECONDS)
    except (FileNotFoundError, ConnectionRefusedError):
        connected.close()
        return None
    except BaseException:
        connected.close()
        raise


@contextlib.contextmanager
def start_lock(folder, name, deadline):
    """Lets one client at a time start a helper. Raises TimeoutError."""
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


def find_helper():
    """The helper's program: $QUIVERLEAF_HELPER, else the one that was installed with the `quiverleaf` command."""
    named = os.environ.get("QUIVERLEAF_HELPER")
    if named:
        return named
    command = shutil.which("quiverleaf")
    prefixes = [os.path.dirname(os.path.dirname(os.path.realpath(command)))] if command else []
    for prefix in [*prefixes, "/usr/local", "/usr"]:
        path = os.path.join(prefix, "libexec", "quiverleaf", "quiverleaf-helper")
        if os.access(path, os.X_OK):
            return path
    raise FileNotFoundError("the program quiverleaf-helper was not found; set QUIVERLEAF_HELPER")


def start_helper(path, folder, name, deadline):
    """Starts a helper and connects to it. Raises OSError."""
    process = subprocess.Popen(
        [path], stdin=subprocess.DEVNULL, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL, cwd="/",
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
            raise ChildProcessError(f"{path} ended with status {process.returncode} before it answered")
        if time.monotonic() >= deadline:
            process.kill()
            raise TimeoutError(f"{path} does not answer")
        time.sleep(_POLL_SECONDS)
