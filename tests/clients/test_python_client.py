#!/usr/bin/env python3
# SPDX-License-Identifier: Apache-2.0
"""The Python client: its property lists, its agreement with the contract, its manners with a bad and with the real helper."""

import concurrent.futures
import contextlib
import datetime
import os
import pathlib
import pickle
import plistlib
import random
import re
import struct
import subprocess
import sys
import tempfile
import unittest
from unittest import mock

import documents
from quiverleaf import CONNECTION_NAME, OPERATIONS, ErrorCode, Helper, client, plist
from quiverleaf import HelperDied, HelperError, HelperTimeout, HelperUnreachable, RemoteException

TOP = pathlib.Path(__file__).resolve().parents[2]
FAKE_HELPER = pathlib.Path(__file__).with_name("fake_helper.py")
REAL_HELPER = os.environ["QUIVERLEAF_HELPER"]

SAMPLE = {
    "integers": [0, 1, 255, 256, 65535, 65536, 1 << 32, (1 << 63) - 1, -1, -(1 << 63)],
    "reals": [0.0, -1.5, 1e300],
    "booleans": [True, False],
    "data": [b"", b"\x00\xff" * 200],
    "strings": ["", "plain", "caf\u00e9", "\U0001f600", "long " * 5000, "with \x00 inside"],
    "nested": {"a": {"b": [[], {}]}},
}


def raw_list(*objects, top=0, offsets=None):
    """A property list of objects that are given as bytes, with one-byte references."""
    body = b"bplist00" + b"".join(objects)
    offsets = offsets or [8 + sum(map(len, objects[:index])) for index in range(len(objects))]
    table = b"".join(struct.pack(">I", offset) for offset in offsets)
    return body + table + struct.pack(">6xBBQQQ", 4, 1, len(offsets), top, len(body))


class PropertyListTest(unittest.TestCase):
    def test_agrees_with_the_standard_library(self):
        self.assertEqual(plistlib.loads(plist.dumps(SAMPLE)), SAMPLE)
        self.assertEqual(plist.loads(plistlib.dumps(SAMPLE, fmt=plistlib.FMT_BINARY)), SAMPLE)
        naive = datetime.datetime(1999, 12, 31, 23, 59, 58, 500000)
        aware = naive.replace(tzinfo=datetime.timezone.utc)
        self.assertEqual(plist.loads(plistlib.dumps(naive, fmt=plistlib.FMT_BINARY)), aware)
        value = {"null": None, "surrogates": "\ud800 \udcff x", "list": [None, "\udc80"]}
        self.assertEqual(plist.loads(plist.dumps(value)), value)
        for moment in (naive, aware, aware.astimezone(datetime.timezone(datetime.timedelta(hours=5)))):
            self.assertEqual(plistlib.loads(plist.dumps(moment)), naive)

    def test_refuses_values_that_no_list_can_hold(self):
        endless = []
        endless.append(endless)
        for value in (object(), {1: 2}, 1 << 63, endless, {"a": {1, 2}}):
            with self.subTest(value=type(value)), self.assertRaises(plist.PropertyListError):
                plist.dumps(value)

    def test_refuses_hostile_bytes(self):
        text = b"\x51x"
        doubling = [b"\xa2" + bytes([index + 1] * 2) for index in range(60)] + [text]
        cases = {
            "a circle": raw_list(b"\xa1\x01", b"\xa1\x00"),
            "reference outside": raw_list(b"\xa1\x07"),
            "top outside": raw_list(text, top=9),
            "count beyond the data": raw_list(b"\xaf\x13" + b"\x7f" * 8),
            "text beyond the data": raw_list(b"\x5f\x12\x7f\xff\xff\xff"),
            "length that is no integer": raw_list(b"\x5f\x51"),
            "key that is no string": raw_list(b"\xd1\x01\x01", b"\x10\x01"),
            "unknown kind": raw_list(b"\x70"),
            "unfolds without end": raw_list(*doubling),
            "objects that overlap": raw_list(b"\xa3\x01\x02\x03", b"\x4f\x10\x40" + bytes(64), offsets=[8, 12, 12, 12]),
            "nothing": b"",
        }
        for name, data in cases.items():
            with self.subTest(name), self.assertRaises(plist.PropertyListError):
                plist.loads(data)

    def test_limits_depth_without_recursion(self):
        deep = "x"
        for _ in range(plist.MAXIMUM_DEPTH - 1):
            deep = [deep]
        self.assertEqual(plist.loads(plist.dumps(deep)), deep)
        with self.assertRaises(plist.PropertyListError):
            plist.dumps([deep])
        with mock.patch.object(plist, "MAXIMUM_DEPTH", 10_000):
            too_deep = plist.dumps([deep])
        with self.assertRaises(plist.PropertyListError):
            plist.loads(too_deep)

    def test_survives_damage_everywhere(self):
        whole = plist.dumps({key: value for key, value in SAMPLE.items() if key != "strings"})
        chance = random.Random(7)
        for length in range(len(whole)):
            with self.assertRaises(plist.PropertyListError):
                plist.loads(whole[:length])
        for _ in range(5000):
            damaged = bytearray(whole)
            for _ in range(chance.randint(1, 4)):
                damaged[chance.randrange(8, len(damaged))] = chance.randrange(256)
            with contextlib.suppress(plist.PropertyListError):
                plist.loads(bytes(damaged))


class ContractTest(unittest.TestCase):
    def test_agrees_with_the_helper(self):
        header = (TOP / "helper" / "NimboImExport.hpp").read_text("utf-8")
        self.assertEqual(CONNECTION_NAME, re.search(r'kHelperConnectionName = u"([^"]+)"', header)[1])
        operations = {
            selector: re.findall(r'u"(\w+)", RemoteKind', arguments)
            for selector, arguments in re.findall(r'\{u"([\w:]+:)",\s*\{\{(.*?)\}\}\s*,\s*RemoteKind', header, re.DOTALL)
        }
        self.assertEqual(set(OPERATIONS), set(operations))

        calls = {}
        helper = Helper()
        helper.call = lambda selector, arguments: calls.__setitem__(selector, list(arguments))
        helper.attributedStringWithPDF(True, b"")
        helper.writeRTFDData(b"", "f")
        helper.RTFDWithHTML(b"")
        for selector in set(operations) - set(calls):
            getattr(helper, selector.partition(":")[0])("f")
        self.assertEqual(calls, operations)

    def test_knows_the_codes_of_the_helper(self):
        header = (TOP / "platform" / "Foundation" / "NSError.hpp").read_text("utf-8")
        codes = re.findall(r"^  (\w+) = (\d+),", re.search(r"enum class ErrorCode .*?\n};", header, re.DOTALL)[0], re.MULTILINE)
        self.assertGreater(len(codes), 5)
        names = {re.sub("([A-Z])", r"_\1", name).upper(): int(code) for name, code in codes if name != "none"}
        self.assertEqual({code.name: code.value for code in ErrorCode}, names)


class HelperTestCase(unittest.TestCase):
    """Gives each test a runtime folder of its own and ends what it started."""

    helper_program = REAL_HELPER

    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.folder = folder.name
        settings = {"QUIVERLEAF_RUNTIME_DIR": self.folder, "QUIVERLEAF_HELPER": str(self.helper_program)}
        patch = mock.patch.dict(os.environ, settings)
        patch.start()
        self.addCleanup(patch.stop)
        self.addCleanup(lambda: Helper().stop())
        self.helper = Helper()
        self.addCleanup(self.helper.close)


class BadHelperTest(HelperTestCase):
    helper_program = FAKE_HELPER

    def test_values_cross_both_ways(self):
        value = {"text": "\udcff\ud800", "data": bytes(1 << 20), "number": -1, "nothing": None}
        answer = self.helper.call("echo:", value)
        del value["nothing"]
        self.assertEqual(answer, value)
        with mock.patch.object(client, "MAXIMUM_MESSAGE_BYTES", 1000), self.assertRaises(ValueError):
            self.helper.call("echo:", value)
        self.assertEqual(self.helper.call("trickle:", {"a": "b" * 500}), {"a": "b" * 500})
        with self.assertRaises(RemoteException) as raised:
            self.helper.call("raise:", {})
        for error in (raised.exception, pickle.loads(pickle.dumps(raised.exception))):
            self.assertEqual((error.name, error.reason), ("NSRangeException", "too far"))
            self.assertEqual(str(error), "NSRangeException: too far")
        with self.assertRaisesRegex(HelperError, "no bool but dict"):
            with mock.patch.object(self.helper, "call", return_value={}):
                self.helper.writeRTFDData(b"", "f")

    def test_tells_the_reason_of_the_last_answer_alone(self):
        told = {"nil:": (None, "no such file", ErrorCode.NO_SUCH_FILE), "partly:": ({"a": 1}, "two pages are damaged", 99)}
        for selector, expected in told.items():
            self.assertEqual((self.helper.call(selector, {"a": 1}), self.helper.reason, self.helper.code), expected)
            for failing in ("raise:", "die:"):
                with self.assertRaises(HelperError):
                    self.helper.call(failing, {})
                self.assertEqual((self.helper.reason, self.helper.code), (None, None))
            self.helper.call(selector, {})
            self.helper.call("echo:", {})
            self.assertEqual((self.helper.reason, self.helper.code), (None, None))

    def test_files_are_named_from_the_working_directory(self):
        self.addCleanup(os.chdir, os.getcwd())
        os.chdir(self.folder)
        here = os.fsencode(os.getcwd())
        names = {
            "x/../y": here + b"/x/../y",
            "caf\u00e9": here + "/caf\u00e9".encode(),
            b"caf\xe9": here + b"/caf\xe9",
            b"/tmp/\xff\xc3\xa9": b"/tmp/\xff\xc3\xa9",
            pathlib.Path("x"): here + b"/x",
            pathlib.Path("/tmp/x"): b"/tmp/x",
            "": b"",
        }
        calls = {"writeRTFDData:toFile:": lambda name: self.helper.writeRTFDData(b"", name)}
        for selector in OPERATIONS:
            if "File:" in selector or "Archive:" in selector:
                calls.setdefault(selector, getattr(self.helper, selector.partition(":")[0]))
        self.assertEqual(len(calls), 7)
        for selector, call in calls.items():
            keyword = "toFile" if "toFile" in selector else selector.partition(":")[0]
            for name, meant in names.items():
                with self.subTest(selector, name=name), mock.patch.object(self.helper, "call", return_value=None) as sent:
                    call(name)
                    self.assertEqual(sent.call_args.args[1][keyword].encode("utf-8", "surrogateescape"), meant)
        os.mkdir("gone")
        os.chdir("gone")
        os.rmdir("../gone")
        self.assertEqual(self.helper.metaDataForFile("/x"), {"metaDataForFile": "/x"})
        with self.assertRaises(FileNotFoundError):
            self.helper.metaDataForFile("x")

    def test_the_program_is_named_from_the_working_directory(self):
        self.addCleanup(os.chdir, os.getcwd())
        os.chdir(FAKE_HELPER.parent)
        with mock.patch.dict(os.environ, {"QUIVERLEAF_HELPER": FAKE_HELPER.name}):
            self.assertEqual(self.helper.call("echo:", {}), {})
        self.helper.stop()
        with mock.patch.dict(os.environ, {"QUIVERLEAF_HELPER": "/nonexistent"}):
            for path in (FAKE_HELPER.name, os.fsencode(FAKE_HELPER.name), pathlib.Path(FAKE_HELPER.name)):
                os.chdir(FAKE_HELPER.parent)
                with Helper(path=path) as helper:
                    os.chdir("/")
                    self.assertEqual(helper.call("echo:", {}), {})
                    helper.stop()

    def test_a_helper_that_fails_costs_one_call(self):
        cases = {"die:": HelperDied, "hang:": HelperTimeout}
        cases.update(dict.fromkeys(("close:", "garbage:", "stray:", "huge:", "reason:", "code:"), HelperDied))
        for selector, error in cases.items():
            with self.subTest(selector):
                before = self.helper.ping()
                self.helper.timeout = 0.3 if selector == "hang:" else 15
                with self.assertRaises(error):
                    self.helper.call(selector, {})
                self.helper.timeout = 15
                self.assertEqual(self.helper.call("echo:", {"a": 1}), {"a": 1})
                self.assertEqual(self.helper.ping() == before, selector not in ("die:", "hang:"))

    def test_helpers_that_begin_nothing_are_given_up_soon(self):
        (pathlib.Path(self.folder) / f"{CONNECTION_NAME}.record").touch()  # Of a helper that would say that it begins.
        for selector, message in (("close:", "closed the connection before it began close:, 10 times"), ("die:", "ended before .* 3 times")):
            with self.subTest(selector), mock.patch.object(client, "DEATHS", 3), self.assertRaisesRegex(HelperUnreachable, message):
                self.helper.call(selector, {})
        with Helper(path=FAKE_HELPER, waiting=0.5) as hasty, self.assertRaisesRegex(HelperTimeout, "did not begin within 0.5"):
            hasty.call("close:", {})

    def test_a_helper_that_ended_between_calls_is_replaced(self):
        before = self.helper.ping()
        self.assertTrue(Helper().stop())
        self.assertEqual(self.helper.call("echo:", {}), {})
        self.assertNotEqual(self.helper.ping(), before)

    def test_clients_start_one_helper_together(self):
        def ping(_):
            with Helper() as helper:
                return helper.ping()

        with concurrent.futures.ThreadPoolExecutor(6) as pool:
            self.assertEqual(len(set(pool.map(ping, range(6)))), 1)

    def test_no_helper_can_be_reached(self):
        for helper in (Helper(starts_helper=False), Helper(path="/nonexistent")):
            with self.assertRaises(HelperUnreachable):
                helper.ping()
        with mock.patch.dict(os.environ, {"FAKE_HELPER_DOES": "end"}), self.assertRaisesRegex(HelperUnreachable, "status 7"):
            self.helper.ping()
        os.chmod(self.folder, 0o777)
        with self.assertRaisesRegex(HelperUnreachable, "others may write"):
            self.helper.ping()
        os.chmod(self.folder, 0o700)
        # Of a user that this one is not.
        with mock.patch("os.geteuid", return_value=65534), self.assertRaisesRegex(HelperUnreachable, "another user"):
            self.helper.ping()
        with mock.patch.dict(os.environ, {"QUIVERLEAF_RUNTIME_DIR": "relative"}), self.assertRaises(HelperUnreachable):
            self.helper.ping()


class RealHelperTest(HelperTestCase):
    def test_the_example(self):
        path = pathlib.Path(self.folder) / "sample.pdf"
        path.write_bytes(documents.pdf(("Words of an example",)))
        example = TOP / "clients" / "python" / "example.py"
        done = subprocess.run([sys.executable, example, path], capture_output=True, text=True, check=False)
        self.assertEqual((done.returncode, done.stdout), (0, "1 pages\nWords of an example\n"), done.stderr)

    def test_options_of_a_pdf(self):
        pdf = documents.pdf(("One", "Two"))
        answer = self.helper.stringWithPDF(pdf, ByPage=True, FirstPage=2, Password=None)
        self.assertEqual((answer["Pages"], answer["PageCount"]), (["Two\n"], 2))
        for wrong in ([1], {"Password": None}, {"ByPage": {}}, {"FirstPage": [1]}, {"Other": 1}, "ByPage"):
            with self.subTest(wrong), self.assertRaisesRegex(RemoteException, "NSInvalidArgumentException"):
                self.helper.call("stringWithPDF:options:", {"stringWithPDF": pdf, "options": wrong})


if __name__ == "__main__":
    unittest.main()
