# SPDX-License-Identifier: Apache-2.0
"""The tests that CTest knows, run as whole programs, quickest first, until one notices something."""

import json
import os
import pathlib
import re
import signal
import subprocess
import tempfile
import threading
import time
from collections import namedtuple

from mutation.confine import confined

# `command` runs all the tests of a program at once.
Suite = namedtuple("Suite", "name command folder environment")
Outcome = namedtuple("Outcome", "suite failure seconds")

LARGEST_OUTPUT = 64 << 20
POLL_SECONDS = 0.05
LONGEST_SECONDS = 600
# What a suite says as soon as one of its tests has failed.
FAILURE = re.compile(rb"^\[  FAILED  \] |\.\.\. (?:FAIL|ERROR)$", re.MULTILINE)
# The names of tests, of GoogleTest and of Python's unittest, whose documentation may stand on a line of its own.
UNIT_TEST = r"^ *(\w+) \((?:(?! \.\.\. ).)*(?:\n(?:(?! \.\.\. ).)*)? \.\.\. "
STARTED_TEST = re.compile(r"^\[ RUN      \] (\S+)|" + UNIT_TEST, re.MULTILINE)
FAILED_TEST = re.compile(r"^\[  FAILED  \] ([\w/]+\.[\w/]+)|" + UNIT_TEST + "(?:FAIL|ERROR)$", re.MULTILINE)


def suites_of(build):
    """The suites of a build folder. The tests of one GoogleTest program in one environment are one suite."""
    command = ["ctest", "--test-dir", build, "--show-only=json-v1"]
    found = {}
    for test in json.loads(subprocess.run(command, check=True, stdout=subprocess.PIPE).stdout)["tests"]:
        command = test["command"]
        properties = {one["name"]: one["value"] for one in test.get("properties", ())}
        folder, environment = properties.get("WORKING_DIRECTORY", build), properties.get("ENVIRONMENT", [])
        name = test["name"]
        if any(argument.startswith("--gtest_filter=") for argument in command):
            command, name = command[:1], os.path.basename(command[0])
        found.setdefault((*command, folder, *environment), Suite(name, command, str(folder), environment))
    return list(found.values())


def affected(suites, changed, programs, build):
    """The suites that run, load or start one of the changed files: what names a file is taken to use it."""
    names = set().union(*(names_of(path, build) for path in changed))
    others = {path: pathlib.Path(path).read_bytes() for path in programs if path not in changed}
    while True:
        users = [path for path, content in others.items() if any(name in content for name in names)]
        if not users:
            break
        for path in users:
            names |= names_of(path, build)
            del others[path]
    return [
        suite
        for suite in suites
        if any(name in os.fsencode("\n".join([*suite.command, *suite.environment])) for name in names)
    ]


def names_of(path, build):
    """How others may call a built file: by its name, without a version, or by the folder that it is in."""
    parts = os.path.relpath(path, build).split(os.sep)
    names = {part.partition(".so")[0] for part in parts if part not in ("bin", "lib", "libexec")}
    return {name.encode(encoding) for name in names for encoding in ("utf-8", "utf-16-le")}


class Runner:
    """Runs suites in a copy's folder, `jobs` at a time; `seconds` knows how long each takes without a fault."""

    def __init__(self, folder, jobs, is_confined):
        self.folder, self.jobs, self.is_confined = folder, jobs, is_confined
        self.seconds = {}

    def measure(self, suites):
        """Takes the time of each suite; returns what fails without any fault."""
        outcomes = [self.run(suite, threading.Event(), LONGEST_SECONDS) for suite in suites]
        self.seconds = {outcome.suite.name: outcome.seconds for outcome in outcomes}
        return [outcome.failure for outcome in outcomes if outcome.failure]

    def first_failure(self, suites):
        """The outcome of the first suite that fails, else None."""
        waiting = iter(sorted(suites, key=lambda suite: self.seconds[suite.name]))
        stop, failures, errors = threading.Event(), [], []

        def work():
            try:
                for suite in waiting:
                    if stop.is_set():
                        return
                    outcome = self.run(suite, stop, patience(self.seconds[suite.name]))
                    if outcome.failure:
                        failures.append(outcome)
                        stop.set()
            except Exception as error:  # Else the thread would end unnoticed, and the fault pass for survived.
                errors.append(error)
                stop.set()

        threads = [threading.Thread(target=work) for _ in range(self.jobs)]
        try:
            for thread in threads:
                thread.start()
            for thread in threads:
                thread.join()
        finally:
            stop.set()
            for thread in threads:
                thread.join()
        if errors:
            raise errors[0]
        return failures[0] if failures else None

    def run(self, suite, stop, limit):
        """Runs a suite until it ends, says that a test failed, takes too long, or others need it no more."""
        command = confined(self.folder, suite.command) if self.is_confined else suite.command
        environment = {**os.environ, "GTEST_FAIL_FAST": "1", "PYTHONDONTWRITEBYTECODE": "1"}
        environment.update(assignment.split("=", 1) for assignment in suite.environment)
        began = time.monotonic()
        with tempfile.TemporaryFile(dir=self.folder) as output:
            process = subprocess.Popen(
                command,
                cwd=suite.folder,
                env=environment,
                stdin=subprocess.DEVNULL,
                stdout=output,
                stderr=subprocess.STDOUT,
                start_new_session=True,
            )
            try:
                said, reason = watch(process, output, stop, began + limit)
            finally:
                end(process)
        failure = reason and describe(suite, said.decode("utf-8", "replace"), reason)
        return Outcome(suite, failure, time.monotonic() - began)


def watch(process, output, stop, deadline):
    """What the process has written, and what is wrong; None when it ended well or is needed no more."""
    said = b""
    while True:
        has_ended = process.poll() is not None
        said += os.pread(output.fileno(), LARGEST_OUTPUT - len(said), len(said))
        if FAILURE.search(said):
            return said, "fails"
        if has_ended and process.returncode != 0:
            return said, "exit status {}".format(process.returncode)
        if has_ended or stop.is_set():
            return said, None
        if len(said) >= LARGEST_OUTPUT:
            return said, "writes without end"
        if time.monotonic() > deadline:
            return said, "takes too long"
        try:
            process.wait(POLL_SECONDS)
        except subprocess.TimeoutExpired:
            pass


def patience(seconds):
    """How long a suite that takes so long without a fault may take; longer when others keep the machine busy."""
    crowd = os.getloadavg()[0] / (os.cpu_count() or 1)
    return (20 + 5 * seconds) * min(max(crowd, 1), 3)


def end(process):
    """Ends the process with its session, and waits."""
    try:
        os.killpg(process.pid, signal.SIGKILL)
    except ProcessLookupError:
        pass
    process.wait()


def describe(suite, said, reason):
    """The suite, the test in it that failed or ran last, and what went wrong when it did not just fail."""
    failed, started = FAILED_TEST.search(said), list(STARTED_TEST.finditer(said))
    match = failed or (started[-1] if started else None)
    name = f"{suite.name} {match[1] or match[2]}" if match else suite.name
    return name if failed else f"{name} ({reason})"
