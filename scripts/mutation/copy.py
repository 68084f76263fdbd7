# SPDX-License-Identifier: Apache-2.0
"""A copy of the checkout with a build of its own, in which one file at a time is made faulty."""

import hashlib
import json
import os
import shlex
import shutil
import subprocess

# Quick to compile and to run; without debug information, whose lines would make equal code differ.
OPTIONS = (
    "-GNinja",
    "-DCMAKE_BUILD_TYPE=Debug",
    "-DCMAKE_C_FLAGS_DEBUG=-O1",
    "-DCMAKE_CXX_FLAGS_DEBUG=-O1",
    "-DQUIVERLEAF_TESTS=ON",
    # A fault in a library does not link the programs anew, nor runs them while building.
    "-DCMAKE_LINK_DEPENDS_NO_SHARED=ON",
    "-DCMAKE_GTEST_DISCOVER_TESTS_DISCOVERY_MODE=PRE_TEST",
)


class BuildError(Exception):
    """What the compiler or CMake said."""


def files_of(checkout):
    """{path: bytes} of what git knows or would take in, as it is on disk."""
    command = ["git", "ls-files", "-z", "--cached", "--others", "--exclude-standard"]
    names = subprocess.run(command, cwd=checkout, check=True, stdout=subprocess.PIPE).stdout
    paths = sorted({os.fsdecode(name) for name in names.split(b"\0") if name})
    return {path: (checkout / path).read_bytes() for path in paths if (checkout / path).is_file()}


class Copy:
    """`folder` holds `source`, `build` and whatever else a run leaves there."""

    def __init__(self, folder, files, jobs):
        self.source, self.build = folder / "source", folder / "build"
        self.files, self.jobs = files, jobs
        digest = hashlib.sha256()
        for path, content in files.items():
            digest.update(b"%s\0%d\0" % (os.fsencode(path), len(content)) + content)
        self.tree = digest.hexdigest()
        self.clean = {}  # The digests of objects and programs without a fault.
        self.known = {}  # {path: (time, size, digest)}: what has been read before.

    def synchronize(self, checkout):
        """Makes the sources those of the checkout, and touches only what differs: also after a run that was killed."""
        for path in list(self.source.rglob("*")):
            if not path.is_dir() and str(path.relative_to(self.source)) not in self.files:
                path.unlink()
        for path, content in self.files.items():
            target = self.source / path
            if not target.is_file() or target.read_bytes() != content:
                target.parent.mkdir(parents=True, exist_ok=True)
                target.write_bytes(content)
            shutil.copymode(checkout / path, target)

    def make(self):
        """Configures and builds without a fault."""
        run(["cmake", "-S", self.source, "-B", self.build, *OPTIONS])
        run(["ninja", "-C", self.build, f"-j{self.jobs}"])
        commands = json.loads((self.build / "compile_commands.json").read_text("utf-8"))
        self.objects = [os.path.join(command["directory"], output_of(command["command"])) for command in commands]
        self.clean = {path: self.digest(path) for path in [*self.objects, *self.programs()]}

    def programs(self):
        """The programs, libraries and plug-ins that were linked."""
        for folder, folders, names in os.walk(self.build):
            folders[:] = [name for name in folders if name != "CMakeFiles"]
            for path in (os.path.join(folder, name) for name in names):
                if not os.path.islink(path):
                    with open(path, "rb") as file:
                        if file.read(4) == b"\x7fELF":
                            yield path

    def digest(self, path):
        state = os.stat(path)
        known = self.known.get(path)
        if not known or known[:2] != (state.st_mtime_ns, state.st_size):
            with open(path, "rb") as file:
                content = hashlib.sha256(file.read()).digest()
            known = self.known[path] = (state.st_mtime_ns, state.st_size, content)
        return known[2]

    def changed(self, paths):
        return [path for path in paths if self.digest(path) != self.clean.get(path)]

    def make_faulty(self, choice):
        """Builds with the fault and returns what came out different, nothing when it changes no object.

        Throws BuildError when it does not compile or link. The source stays faulty until `restore`.
        """
        path, fault = choice
        text = self.files[path].decode("utf-8")
        (self.source / path).write_bytes((text[: fault.start] + fault.replacement + text[fault.end :]).encode())
        # What the faulty code compiles to is of no use to anyone later.
        environment = dict(os.environ, CCACHE_READONLY="1")
        ninja = ["ninja", "-C", self.build, f"-j{self.jobs}"]
        run([*ninja, *(os.path.relpath(one, self.build) for one in self.objects)], environment)
        if not self.changed(self.objects):
            return []
        run(ninja, environment)
        return self.changed(self.programs())

    def restore(self, path):
        (self.source / path).write_bytes(self.files[path])


def output_of(command):
    """What a compiler's command line writes."""
    words = shlex.split(command)
    return words[words.index("-o") + 1]


def run(command, environment=None):
    streams = {"stdin": subprocess.DEVNULL, "stdout": subprocess.PIPE, "stderr": subprocess.STDOUT}
    result = subprocess.run(command, env=environment, **streams)
    if result.returncode != 0:
        raise BuildError(result.stdout.decode("utf-8", "replace"))
