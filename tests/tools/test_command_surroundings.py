#!/usr/bin/env python3
# SPDX-License-Identifier: Apache-2.0
"""The quiverleaf command and what is around it: streams, time limits, folders, locales, and a helper that fails."""

import base64
import json
import os
import pathlib
import shutil
import signal
import socket
import subprocess
import time
import unittest

import documents
from command import COMMAND, CommandTestCase
from quiverleaf import CONNECTION_NAME

TOP = pathlib.Path(__file__).resolve().parents[2]
FAKE_HELPER = TOP / "tests" / "clients" / "fake_helper.py"
REAL_HELPER = pathlib.Path(os.environ["QUIVERLEAF_HELPER"])


class StreamsTest(CommandTestCase):
    def in_shell(self, script):
        """What a line of shell does, in which $0 is the command."""
        command = ["sh", "-c", script, COMMAND]
        return subprocess.run(command, env=self.environment, cwd=self.folder, capture_output=True, timeout=60, check=False)

    def test_input_that_comes_in_pieces_is_read_whole(self):
        words = "".join(f"{number} caf\u00e9\n" for number in range(30_000)).encode()
        pdf = documents.pdf([f"Page {number}" for number in range(700)])
        for command, data in (("decode", words), ("pdf", pdf)):
            process = subprocess.Popen([COMMAND, command, "-"], env=self.environment, stdin=subprocess.PIPE,
                                       stdout=subprocess.PIPE, stderr=subprocess.DEVNULL)  # fmt: skip
            rest = data
            for size in (1, 65_535, 1, 65_536, 7, len(data)):
                process.stdin.write(rest[:size])
                process.stdin.flush()
                rest = rest[size:]
                time.sleep(0.02)
            output = process.communicate()[0]
            self.assertEqual(json.loads(output)["PageCount"] if command == "pdf" else output, 700 if command == "pdf" else data)

    def test_streams_that_are_closed_or_full(self):
        self.file("a.pdf", documents.pdf())
        self.file("page", b"<p>\n" * 20_000)
        full, closed = rb"quiverleaf: cannot write to .*: No space left.*\n", rb"quiverleaf: .*: Bad file descriptor\n"
        cases = [
            (7, closed, '"$0" pdf - <&-'),
            (7, closed, '"$0" entities - <&-'),
            (6, closed, '"$0" pdf a.pdf >&-'),
            (0, rb"", '"$0" pdf a.pdf <&- 2>&- >out'),
            *((6, full, f'"$0" {call} >/dev/full') for call in ("pdf a.pdf", "help", "--version", "ping", "tags page")),
            *((code, rb"", f'{ignored} {{ "$0" tags page; echo $? >code; }} | head -c 1 >out; exit $(cat code)')
              for code, ignored in ((128 + signal.SIGPIPE, ""), (6, "trap '' PIPE;"))),
        ]
        for code, message, script in cases:
            with self.subTest(script):
                done = self.in_shell(script)
                self.assertEqual((done.returncode, done.stdout), (code, b""), done.stderr)
                self.assertRegex(done.stderr, rb"\A" + message + rb"\Z")

    def test_a_reader_that_has_gone_is_told_nothing(self):
        self.file("a.pdf", documents.pdf())
        reader, writer = os.pipe()
        os.close(reader)
        for code, *arguments in ((-signal.SIGPIPE, "pdf", "a.pdf"), (-signal.SIGPIPE, "help"), (-signal.SIGPIPE, "tags", "a.pdf"), (1, "frobnicate")):
            error = writer if code == 1 else subprocess.PIPE
            done = self.run_command(*arguments, capture_output=False, stdout=writer, stderr=error)
            self.assertEqual((done.returncode, done.stderr or b""), (code, b""))
        os.close(writer)

    def test_files_that_are_named_like_options(self):
        for name in ("-", "--", "--plist"):
            self.file(name, name.encode())
        for arguments, output in ((["./-"], b"-"), (["--", "--"], b"--"), (["--", "--plist"], b"--plist"), (["--", "-"], b"in")):
            self.assertEqual(self.run_command("decode", *arguments, input=b"in").stdout, output)

    def test_locales_change_nothing(self):
        shutil.copy(TOP / "examples" / "leaf.jpg", self.folder)
        calls = [
            ("url", "FILE://HI/I.GIF?I=1"),
            ("strip", "--tag", "title", "-"),
            ("entities", "--encode", "table", "\u0130\u0131\u00e9"),
            ("charset", "WINDOWS-1254", "ISO-8859-9"),
            ("metadata", "leaf.jpg"),
        ]
        outputs = set()
        for locale in ("C", "C.UTF-8", "de_DE.UTF-8", "tr_TR.UTF-8"):
            environment = {**self.environment, "LC_ALL": locale}
            page = b"<TITLE>i</TITLE><title>"
            done = [self.run_command(*call, environment=environment, input=page) for call in calls]
            outputs.add(tuple((one.returncode, one.stdout) for one in done))
            self.run_command("stop")
        self.assertEqual({code for code, _ in outputs.pop()}, {0})
        self.assertFalse(outputs)


class PlacesTest(CommandTestCase):
    def test_the_folder_of_the_connection(self):
        del self.environment["QUIVERLEAF_RUNTIME_DIR"]
        self.environment.pop("XDG_RUNTIME_DIR", None)
        self.environment["TMPDIR"] = str(self.folder)
        for variables, place in (({}, f"quiverleaf-{os.geteuid()}"), ({"XDG_RUNTIME_DIR": str(self.folder / "xdg")}, "xdg")):
            environment = {**self.environment, **variables}
            self.assertEqual(self.run_command("ping", environment=environment).returncode, 0)
            self.assertTrue((self.folder / place / CONNECTION_NAME).is_socket())
            self.assertEqual((self.folder / place).stat().st_mode & 0o777, 0o700)
            self.assertEqual(self.run_command("stop", environment=environment).returncode, 0)

    def test_importers_in_the_home_folder_are_found(self):
        self.file("letter.hwp", b"Some words")
        self.environment["HOME"] = str(self.folder)
        self.assert_fails(8, "no importer", "metadata", "letter.hwp")
        self.run_command("stop")
        bundle = self.folder / "Library" / "Spotlight" / "Mine.mdimporter"
        shutil.copytree(REAL_HELPER.parent / "importers" / "Text.mdimporter", bundle)
        information = bundle / "Contents" / "Info.plist"
        information.write_text(information.read_text("utf-8").replace("public.plain-text", "com.haansoft.hancomofficeviewer.hwp"), "utf-8")
        self.assertIn("Some words", self.answer("metadata", "letter.hwp")["kMDItemTextContent"])


class HelperTest(CommandTestCase):
    """With a helper that does what it is told."""

    def setUp(self):
        super().setUp()
        self.pdf = documents.pdf()
        self.file("a.pdf", self.pdf)
        self.environment["QUIVERLEAF_HELPER"] = str(FAKE_HELPER)

    def test_what_it_is_sent(self):
        content = base64.b64encode(self.pdf).decode()
        for arguments, sent in (
            (["pdf", "a.pdf"], {"attributed": False, "stringWithPDF": content}),
            (["pdf", "a.pdf", "--attributed"], {"attributed": True, "stringWithPDF": content}),
            (["metadata", "./x/../a.pdf"], {"metaDataForFile": f"{self.folder.resolve()}/./x/../a.pdf"}),
            (["metadata", "~"], {"metaDataForFile": f"{self.folder.resolve()}/~"}),
        ):
            self.assertEqual(self.answer(*arguments), sent)

    def test_it_cannot_be_started_or_fails(self):
        cases = [
            ("/nonexistent", "", 2, "Cannot start /nonexistent: No such file"),
            ("/bin/false", "", 2, "/bin/false ended before it answered"),
            (FAKE_HELPER, "die:", 5, "a.pdf: "),
            (FAKE_HELPER, "garbage:", 5, "a.pdf: The helper sent what is no reply"),
            (FAKE_HELPER, "code:", 5, "a.pdf: The helper sent what is no reply"),
            (FAKE_HELPER, "close:", 5, "a.pdf: The helper closed the connection before it replied"),
            (FAKE_HELPER, "huge:", 5, "a.pdf: "),
            (FAKE_HELPER, "raise:", 3, "NSRangeException: too far"),
            (FAKE_HELPER, "nil:", 7, "a.pdf: no such file"),
            (FAKE_HELPER, "silent:", 3, "a.pdf: the helper does not say why"),
        ]
        for program, failing, code, message in cases:
            with self.subTest(program=program, failing=failing):
                environment = {**self.environment, "QUIVERLEAF_HELPER": str(program), "FAKE_HELPER_DOES": failing}
                self.assert_fails(code, message, "pdf", "a.pdf", environment=environment)
                if code == 2:
                    self.assert_fails(2, f"no helper is registered and none could be started: {message}", "ping", environment=environment)
                self.run_command("stop")

    def test_an_answer_that_is_not_whole(self):
        self.environment["FAKE_HELPER_DOES"] = "partly:"
        done = self.run_command("pdf", "a.pdf")
        self.assertEqual((done.returncode, json.loads(done.stdout)["attributed"]), (0, False))
        self.assertEqual(done.stderr, b"quiverleaf: a.pdf: two pages are damaged\n")

    def test_an_input_that_does_not_come(self):
        os.mkfifo(self.folder / "silent")
        for command in ("pdf", "text", "strip", "tags", "decode"):
            self.assert_fails(4, "silent: nothing came within", "--timeout", "0.2", command, "silent")
        # Pauses shorter than that are no matter, nor is who writes how slowly before.
        with subprocess.Popen([COMMAND, "--timeout", "2", "text", "silent"], env=self.environment, cwd=self.folder,
                              stdout=subprocess.PIPE) as process:  # fmt: skip
            with open(self.folder / "silent", "wb") as writer:
                for word in (b"<p>one", b" two", b" three"):
                    writer.write(word)
                    writer.flush()
                    time.sleep(0.2)
            self.assertEqual(process.communicate()[0], b"one two three\n")

    def test_time_limits(self):
        self.environment["FAKE_HELPER_DOES"] = "slow:"
        self.assertIn("stringWithPDF", self.answer("pdf", "a.pdf"))
        for arguments in (["--timeout", "0.5", "pdf", "a.pdf"], ["pdf", "a.pdf", "--timeout=.5"]):
            self.assert_fails(4, "a.pdf: No reply within 0.5 seconds", *arguments)
        # One that takes no connection: its queue is full.
        self.run_command("stop")
        with socket.socket(socket.AF_UNIX) as listener, socket.socket(socket.AF_UNIX) as waiting:
            path = self.folder / "runtime" / CONNECTION_NAME
            path.unlink(missing_ok=True)
            listener.bind(str(path))
            path.chmod(0o600)
            listener.listen(0)
            waiting.connect(str(path))
            for arguments in (["ping"], ["pdf", "a.pdf"]):
                self.assert_fails(4, "did not begin within", "--timeout", "0.2", "--wait", "0.2", *arguments)
            path.unlink()


if __name__ == "__main__":
    unittest.main()
