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
import tempfile
import threading
import time

_POLL_SECONDS = 0.01
_PEER = struct.Struct("iII")


def open_folder():
    """A descriptor of the runtime folder, which is made when missing. Raises OSError when it is not safe to use."""
    path = os.environ.get("QUIVERLEAF_RUNTIME_DIR") or os.environ.get("XDG_RUNTIME_DIR")
    if not path:
        path = os.path.join(tempfile.gettempdir(), f"quiverleaf-{os.getuid()}")
    with contextlib.suppress(FileExistsError):
        os.mkdir(path, 0o700)
    folder = os.open(path, os.O_PATH | os.O_DIRECTORY | os.O_CLOEXEC)
    status = os.fstat(folder)
    if status.st_uid != os.getuid() or status.st_mode & (stat.S_IWGRP | stat.S_IWOTH):
        os.close(folder)
        raise PermissionError(f"the runtime folder {path} belongs to another user, or others may write to it")
    return folder


def connect(folder, name, seconds):
    """A socket to the process that serves `name`, or None when there is none. Raises OSError."""
    deadline = time.monotonic() + seconds
    connection = socket.socket(socket.AF_UNIX, socket.SOCK_STREAM | socket.SOCK_CLOEXEC)
    connection.setblocking(False)
    try:
        while True:
            try:
                # Through the descriptor, since a socket's path may only be about a hundred bytes long.
                connection.connect(f"/proc/self/fd/{folder}/{name}")
                break
            except BlockingIOError:  # The helper is so busy that its queue is full.
                if time.monotonic() >= deadline:
                    raise
                time.sleep(_POLL_SECONDS)
        process, user, _ = _PEER.unpack(connection.getsockopt(socket.SOL_SOCKET, socket.SO_PEERCRED, _PEER.size))
        if user != os.getuid():
            raise PermissionError(f"process {process} of another user answers under the name {name}")
    except (FileNotFoundError, ConnectionRefusedError):
        connection.close()
        return None
    except BaseException:
        connection.close()
        raise
    return connection


def peer_process(connection):
    """The number of the process that serves the connection."""
    return _PEER.unpack(connection.getsockopt(socket.SOL_SOCKET, socket.SO_PEERCRED, _PEER.size))[0]


def is_closed(connection):
    """Whether the other side has ended the connection."""
    return bool(select.select([connection], [], [], 0)[0])


def end_process(connection, seconds, first_signal=signal.SIGTERM):
    """Ends the process behind a connection, in the end by force, and waits until it is gone. False when it is not."""
    process = peer_process(connection)
    try:
        handle = os.pidfd_open(process)
    except ProcessLookupError:
        return True
    try:
        # While the connection stands, the number has not been given to another process.
        hangup = select.poll()
        hangup.register(connection, 0)
        if hangup.poll(0):
            return True
        gone = select.poll()
        gone.register(handle, select.POLLIN)
        for number in (first_signal, signal.SIGKILL):
            with contextlib.suppress(ProcessLookupError):
                signal.pidfd_send_signal(handle, number)
            if gone.poll(seconds * 1000):
                return True
        return False
    finally:
        os.close(handle)


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
            if peer_process(connection) != process.pid:
                process.terminate()
            return connection
        if process.returncode is not None:
            raise ChildProcessError(f"{path} ended with status {process.returncode} before it answered")
        if time.monotonic() >= deadline:
            process.kill()
            raise TimeoutError(f"{path} does not answer")
        time.sleep(_POLL_SECONDS)
