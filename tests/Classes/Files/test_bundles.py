#!/usr/bin/env python3
# SPDX-License-Identifier: Apache-2.0
"""A program in a bundle: what it knows of itself, and its looking for new versions on a real server."""

import http.server
import os
import pathlib
import plistlib
import shutil
import subprocess
import tempfile
import threading
import unittest

OFFERED, UP_TO_DATE = 10, 11
UP_TO_DATE_TEXT = "Your software is up-to-date\n"
OFFER_TEXT = (
    "A New Version is Available\nA new version of App is available (2.0). Would you like to download the new version now? "
    "https://example.org/get\n"
)
LIST = plistlib.dumps({"App": "2.0", "Download": "https://example.org/get"})


class Server(http.server.ThreadingHTTPServer):
    """Serves a folder; has what never answers, what never ends and what is wrong besides."""

    def __init__(self, folder):
        class Handler(http.server.SimpleHTTPRequestHandler):
            def __init__(self, *arguments):
                super().__init__(*arguments, directory=folder)

            def do_GET(self):
                behaviour = self.server.behaviour
                if behaviour == "never":
                    self.server.is_over.wait(60)
                elif behaviour == "slow":
                    self.send_response(200)
                    self.end_headers()
                    while not self.server.is_over.wait(0.1):
                        self.wfile.write(b"{ ")
                elif behaviour == "huge":
                    self.send_response(200)
                    self.end_headers()
                    while not self.server.is_over.is_set():
                        self.wfile.write(b" " * 100_000)
                elif behaviour == "error":
                    self.send_response(500)
                    self.end_headers()
                    self.wfile.write(LIST)
                elif behaviour == "cut":
                    self.send_response(200)
                    self.send_header("Content-Length", str(len(LIST) + 1))
                    self.end_headers()
                    self.wfile.write(LIST)
                else:
                    super().do_GET()

            def handle(self):
                try:
                    super().handle()
                except OSError:
                    pass  # The other side has seen enough.

            def log_message(self, *_):
                pass

        super().__init__(("127.0.0.1", 0), Handler)
        self.behaviour = "folder"
        self.is_over = threading.Event()
        threading.Thread(target=self.serve_forever, daemon=True).start()

    def stop(self):
        self.is_over.set()
        self.shutdown()
        self.server_close()


class BundleTest(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.folder = pathlib.Path(folder.name).resolve()
        self.bundle = self.folder / "App.app"
        program = self.bundle / "Contents/Linux/App"
        program.parent.mkdir(parents=True)
        shutil.copy(os.environ["BUNDLE_PROBE"], program)
        self.program = program
        self.information(
            CFBundleName="App",
            CFBundleVersion="1.0",
            CFBundleIdentifier="org.example.App",
            CFBundleShortVersionString="1",
            CFBundleGetInfoString="App 1, by all",
            NSMainNibFile="Main",
        )

    def information(self, **entries):
        (self.bundle / "Contents/Info.plist").write_bytes(plistlib.dumps(entries))

    def run_program(self, *arguments, **environment):
        gone = ("DBUS_", "XDG_", "QUIVERLEAF_", "LC_", "LANG", "http_proxy", "HTTP_PROXY", "all_proxy", "ALL_PROXY")
        own = {key: value for key, value in os.environ.items() if not key.startswith(gone)}
        own |= {"HOME": str(self.folder), **environment}
        return subprocess.run([self.program, *arguments], env=own, capture_output=True, text=True, check=False, timeout=60)

    def test_a_program_knows_its_bundle(self):
        plugins = self.bundle / "Contents/PlugIns"
        for name in ("a.bundle", "b.bundle"):
            (plugins / name / "Contents").mkdir(parents=True)
            (plugins / name / "Contents/Info.plist").write_bytes(plistlib.dumps({}))
        (plugins / "none").mkdir()
        texts = self.bundle / "Contents/Resources/de.lproj/InfoPlist.strings"
        texts.parent.mkdir(parents=True)
        texts.write_text('CFBundleName = "Programm";', "utf-8")
        log = f"{self.folder}/Library/Logs/org.example.App.log"
        names = ["App", "Programm", "1", "App 1, by all", "Main", log]
        done = self.run_program(LANGUAGE="de_DE:en", LC_ALL="C.UTF-8")
        path, *lines = done.stdout.splitlines()
        self.assertEqual((path, lines[:6]), (str(self.bundle), names))
        self.assertEqual(sorted(lines[6:]), [f"{plugins}/a.bundle", f"{plugins}/b.bundle"])
        # As long as the name of a file may be, and a byte longer.
        longest = "\u00e9" * 125 + "x"
        for identifier, log in ((longest, f"{self.folder}/Library/Logs/{longest}.log"), (longest + "x", "nil"), ("../x", "nil")):
            self.information(CFBundleIdentifier=identifier)
            self.assertEqual(self.run_program(LC_ALL="C.UTF-8").stdout.splitlines()[1:7], ["nil"] * 5 + [log])

    def test_new_versions_are_looked_for_on_a_server(self):
        served = self.folder / "served"
        served.mkdir()
        defaults = self.folder / "defaults.plist"
        server = Server(served)
        self.addCleanup(server.stop)

        def check(behaviour="folder", seconds=20, place=defaults, **environment):
            server.behaviour = behaviour
            host = f"http://127.0.0.1:{server.server_port}"
            place.parent.mkdir(parents=True, exist_ok=True)
            place.write_bytes(plistlib.dumps({"UpdateHost": host, "UpdateTimeLimit": seconds}))
            done = self.run_program("check", **(environment or {"QUIVERLEAF_DEFAULTS": str(place)}))
            return done.returncode, done.stderr

        self.assertEqual(check(), (UP_TO_DATE, UP_TO_DATE_TEXT))
        (served / "Updates.plist").write_bytes(LIST)
        self.assertEqual(check(), (OFFERED, OFFER_TEXT))
        for environment, folder in (
            ({"XDG_CONFIG_HOME": str(self.folder / "configuration")}, "configuration"),
            ({"XDG_CONFIG_HOME": "relative"}, ".config"),
            ({"XDG_CONFIG_HOME": "", "QUIVERLEAF_DEFAULTS": ""}, ".config"),
        ):
            with self.subTest(environment):
                place = self.folder / folder / "quiverleaf/defaults.plist"
                self.assertEqual(check(place=place, **environment)[0], OFFERED)
                place.unlink()
        for behaviour, seconds in (("never", 0.3), ("slow", 0.5), ("huge", 20), ("error", 20), ("cut", 20)):
            with self.subTest(behaviour):
                self.assertEqual(check(behaviour, seconds), (UP_TO_DATE, UP_TO_DATE_TEXT))
        (served / "Updates.plist").write_bytes(plistlib.dumps({"App": "2.0"}, fmt=plistlib.FMT_BINARY))
        self.assertEqual(check(), (OFFERED, ""))
        for version, verdict in (("2.0", UP_TO_DATE), ("2.0b", OFFERED)):
            self.information(CFBundleName="App", CFBundleVersion=version)
            self.assertEqual(check()[0], verdict)
        server.stop()
        self.assertEqual(check(), (UP_TO_DATE, UP_TO_DATE_TEXT))
        defaults.unlink()
        self.assertEqual(self.run_program("check").returncode, UP_TO_DATE)


if __name__ == "__main__":
    unittest.main()
