# SPDX-License-Identifier: Apache-2.0
"""Runs a command where a faulty program can neither reach other processes nor write to a disk.

`confined` starts this file as a program, in namespaces of its own. Everything is read-only but temporary folders in
memory, and the folder `top`, whose changes stay in memory, too; the network is a loopback that nobody else uses.
"""

import ctypes
import fcntl
import os
import resource
import socket
import struct
import sys

TEMPORARY = ("/tmp", "/var/tmp", "/dev/shm", "/run")
SCRATCH = "/run/scratch"
TEMPORARY_OPTIONS = b"mode=1777,size=1g"
WRITABLE_BYTES_PER_PROCESS = 6 << 30

# Of mount(2), netdevice(7) and statvfs(3).
MS_RDONLY, MS_NOSUID, MS_NODEV, MS_NOEXEC, MS_NOATIME, MS_NODIRATIME = 1, 2, 4, 8, 1024, 2048
MS_REMOUNT, MS_BIND, MS_RELATIME = 32, 4096, 1 << 21
ST_RELATIME = 4096
SIOCGIFFLAGS, SIOCSIFFLAGS, IFF_UP = 0x8913, 0x8914, 1


def confined(top, command):
    """The command line that runs the command so, with the caller's user and group."""
    namespaces = ["--mount", "--pid", "--fork", "--kill-child", "--mount-proc", "--ipc", "--net"]
    if os.getuid() != 0:  # Who is root stays it, and may become others.
        namespaces += ["--user", "--map-root-user"]
    program = [sys.executable, "-B", __file__, str(top), str(os.getuid()), str(os.getgid())]
    return ["unshare", *namespaces, *program, *command]


def mount(source, target, kind, flags, options=None):
    libc = ctypes.CDLL(None, use_errno=True)
    if libc.mount(source, target, kind, ctypes.c_ulong(flags), options) != 0:
        error = ctypes.get_errno()
        raise OSError(error, os.strerror(error), target.decode("utf-8", "replace"))


def make_read_only(point):
    state = os.statvfs(point).f_flag
    flags = state & (MS_NOSUID | MS_NODEV | MS_NOEXEC | MS_NOATIME | MS_NODIRATIME)
    flags |= MS_RELATIME if state & ST_RELATIME else 0
    mount(None, point, None, flags | MS_REMOUNT | MS_BIND | MS_RDONLY)


def mount_points():
    """What is mounted, but for what the kernel keeps there."""
    with open("/proc/self/mounts", "rb") as file:
        for line in file:
            point = line.split()[1].decode("unicode_escape").encode("latin-1")
            if not point.startswith(b"/proc"):
                yield point


def hide_disks(top):
    folder = os.open(top, os.O_PATH | os.O_DIRECTORY)
    for point in mount_points():
        try:
            make_read_only(point)
        except (FileNotFoundError, PermissionError):
            pass  # It lies under another one, or nobody here may see it.
    for point in filter(os.path.isdir, TEMPORARY):
        mount(b"none", os.fsencode(os.path.realpath(point)), b"tmpfs", MS_NOSUID | MS_NODEV, TEMPORARY_OPTIONS)
    if not os.path.isdir(top):
        os.makedirs(top)
        mount(b"/proc/self/fd/%d" % folder, os.fsencode(top), None, MS_BIND)
    os.close(folder)
    # What is written below the folder stays in memory, too.
    os.makedirs(SCRATCH + "/written")
    os.makedirs(SCRATCH + "/work")
    layers = f"lowerdir={top},upperdir={SCRATCH}/written,workdir={SCRATCH}/work"
    mount(b"overlay", os.fsencode(top), b"overlay", MS_NOSUID | MS_NODEV, os.fsencode(layers))


def start_loopback():
    with socket.socket(socket.AF_INET, socket.SOCK_DGRAM) as one:
        request = bytearray(fcntl.ioctl(one, SIOCGIFFLAGS, struct.pack("16sH14x", b"lo", 0)))
        request[16] |= IFF_UP
        fcntl.ioctl(one, SIOCSIFFLAGS, bytes(request))


def wait_as_first_process(child):
    """Takes the orphans' statuses, ends as the child does, and everything in the namespace with it."""
    while True:
        ended, status = os.wait()
        if ended == child:
            sys.exit(os.WEXITSTATUS(status) if os.WIFEXITED(status) else 128 + os.WTERMSIG(status))


def main():
    top, user, group, *command = sys.argv[1:]
    folder = os.getcwd()
    hide_disks(top)
    start_loopback()
    os.chdir(folder)
    home = "/run/home"  # A path that is not taken for a temporary one.
    os.makedirs(home + "/run", mode=0o700)
    for name in [name for name in os.environ if name.startswith("XDG_")]:
        del os.environ[name]
    os.environ.update(HOME=home, XDG_RUNTIME_DIR=home + "/run")
    resource.setrlimit(resource.RLIMIT_DATA, (WRITABLE_BYTES_PER_PROCESS, WRITABLE_BYTES_PER_PROCESS))
    resource.setrlimit(resource.RLIMIT_CORE, (0, 0))
    if user != "0":
        command = ["unshare", "--user", f"--map-user={user}", f"--map-group={group}", *command]
    child = os.fork()
    if child == 0:
        os.execvp(command[0], command)
    wait_as_first_process(child)


if __name__ == "__main__":
    main()
