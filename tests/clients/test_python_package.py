#!/usr/bin/env python3
# SPDX-License-Identifier: Apache-2.0
"""The Python client as a package: what is built and installed, and which helper an installed one finds."""

import base64
import csv
import email
import hashlib
import json
import os
import pathlib
import re
import shutil
import sys
import tempfile
import unittest
import zipfile

import documents
from commands import run

TOP = pathlib.Path(__file__).resolve().parents[2]
SOURCE = TOP / "clients" / "python"
REAL_HELPER = pathlib.Path(os.environ["QUIVERLEAF_HELPER"])
BUILD = REAL_HELPER.parents[2]
VERSION = re.search(r"^project\(\w+ VERSION ([\d.]+)", (TOP / "CMakeLists.txt").read_text("utf-8"), re.MULTILINE)[1]


class PackageTestCase(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.folder = pathlib.Path(folder.name).resolve()


class BuildTest(PackageTestCase):
    def build(self, hook, source):
        """The distribution that a hook of the backend makes of a source tree."""
        folder = pathlib.Path(tempfile.mkdtemp(dir=self.folder))
        program = "import sys, quiverleaf_build; print(getattr(quiverleaf_build, sys.argv[1])(sys.argv[2]))"
        return folder / run(sys.executable, "-c", program, hook, folder, folder=source, PYTHONPATH="backend")

    def test_distributions_are_whole_and_reproducible(self):
        wheel = self.build("build_wheel", SOURCE)
        self.assertEqual(wheel.name, f"quiverleaf-{VERSION}-py3-none-any.whl")
        information = f"quiverleaf-{VERSION}.dist-info"
        with zipfile.ZipFile(wheel) as archive:
            files = {name: archive.read(name) for name in archive.namelist()}
            self.assertLess(max(member.date_time for member in archive.infolist()), (2000,))
        modules = [name for name in files if name.startswith("quiverleaf/")]
        self.assertEqual(modules, sorted(modules))
        for name, checksum, size in csv.reader(files[f"{information}/RECORD"].decode().splitlines()):
            data = files.pop(name)
            digest = base64.urlsafe_b64encode(hashlib.sha256(data).digest()).decode().rstrip("=")
            expected = ("", "") if name.endswith("/RECORD") else (f"sha256={digest}", str(len(data)))
            self.assertEqual((checksum, size), expected, name)
            if name == f"{information}/METADATA":
                metadata = email.message_from_bytes(data)
            if name == f"{information}/licenses/LICENSE":
                self.assertEqual(data, (TOP / "LICENSE").read_bytes())
            if name.startswith("quiverleaf/"):
                self.assertEqual(data, (SOURCE / name).read_bytes())
        self.assertEqual(files, {})  # Each stands in RECORD.
        self.assertEqual((metadata["Name"], metadata["Version"]), ("quiverleaf", VERSION))
        self.assertEqual((metadata["License-Expression"], metadata["License-File"]), ("Apache-2.0", "LICENSE"))
        self.assertIn("maintainers", metadata["Author"])
        self.assertEqual(metadata.get_payload(decode=True), (SOURCE / "README.md").read_bytes())

        archive = self.build("build_sdist", SOURCE)
        shutil.unpack_archive(archive, self.folder)
        unpacked = self.folder / f"quiverleaf-{VERSION}"
        (unpacked / "quiverleaf" / "__pycache__").mkdir()
        (unpacked / "quiverleaf" / "__pycache__" / "client.pyc").write_bytes(b"x")
        for path in unpacked.rglob("*.py"):
            path.chmod(0o600)
        self.assertEqual(self.build("build_wheel", unpacked).read_bytes(), wheel.read_bytes())
        self.assertEqual(self.build("build_sdist", unpacked).read_bytes(), archive.read_bytes())

    def test_pip_installs_into_a_fresh_environment(self):
        before = self.source_files()
        run(sys.executable, "-m", "venv", self.folder / "venv")
        python = self.folder / "venv" / "bin" / "python"
        install = (python, "-m", "pip", "--isolated", "--disable-pip-version-check", "install", "--quiet", "--no-index")
        run(*install, "./clients/python", folder=TOP)
        document = self.folder / "letter.pdf"
        document.write_bytes(documents.pdf(("Words of a letter",), title="A letter"))
        program = """if True:
            import importlib.metadata, json, quiverleaf
            with quiverleaf.Helper() as helper:
                facts = helper.metaDataForFile("letter.pdf")
                helper.stop()
            version = importlib.metadata.version("quiverleaf")
            print(json.dumps([quiverleaf.__file__, quiverleaf.__version__, version, facts["kMDItemTitle"]]))"""
        settings = {"QUIVERLEAF_HELPER": str(REAL_HELPER), "QUIVERLEAF_RUNTIME_DIR": str(self.folder)}

        def use():
            return json.loads(run(python, "-c", program, folder=self.folder, **settings))

        place, *facts = use()
        self.assertEqual(facts, [VERSION, VERSION, "A letter"])
        self.assertTrue(place.startswith(str(self.folder)), place)
        self.assertTrue(pathlib.Path(place).with_name("py.typed").exists())
        run(*install, "--editable", "./clients/python", folder=TOP)
        self.assertEqual(use(), [str(SOURCE / "quiverleaf" / "__init__.py"), *facts])
        self.assertEqual(self.source_files(), before)

    def source_files(self):
        return {path for path in SOURCE.rglob("*") if "__pycache__" not in path.parts}


class FindHelperTest(PackageTestCase):
    def find(self, packages, **environment):
        program = "from quiverleaf import runtime; print(runtime.find_helper())"
        return run(sys.executable, "-c", program, folder=self.folder, PYTHONPATH=str(packages), **environment)

    def helper(self, place):
        path = self.folder / place / "quiverleaf-helper"
        path.parent.mkdir(parents=True)
        path.touch(0o755)
        return str(path)

    def test_an_installed_package_finds_the_nearest_helper(self):
        packages = self.folder / "prefix" / "lib" / "python3.9" / "site-packages"
        shutil.copytree(SOURCE / "quiverleaf", packages / "quiverleaf", ignore=shutil.ignore_patterns("__pycache__"))
        own = self.folder / "prefix" / "libexec" / "quiverleaf"
        # The folders that every package looks in may hold a helper on this machine, so this one is told of another.
        named = self.folder / "named"
        (packages / "quiverleaf" / "_installation.py").write_text(f"LIBEXEC_FOLDER = {str(named)!r}\n", "utf-8")
        settings = {"PATH": f"{self.folder}/none:bin"}
        with self.assertRaisesRegex(AssertionError, "FileNotFoundError") as raised:
            self.find(packages, **settings)
        for place in (own, named, settings["PATH"], "QUIVERLEAF_HELPER", "no path"):
            self.assertIn(str(place), str(raised.exception))
        for place in ("bin", "named", own):
            if place == "named":
                (named / "quiverleaf-helper").mkdir(parents=True)  # A folder is no program.
                self.assertEqual(self.find(packages, **settings), str(self.folder / "bin" / "quiverleaf-helper"))
                shutil.rmtree(named)
            path = self.helper(place)
            self.assertEqual(self.find(packages, **settings), path)
        self.assertEqual(self.find(packages, QUIVERLEAF_HELPER="x/y"), str(self.folder / "x" / "y"))

    def test_a_checkout_finds_what_was_built_in_it(self):
        packages = self.folder / "clients" / "python"
        shutil.copytree(SOURCE / "quiverleaf", packages / "quiverleaf", ignore=shutil.ignore_patterns("__pycache__"))
        path = self.helper("build/release/libexec/quiverleaf")
        self.assertEqual(self.find(packages), path)
        program = "from quiverleaf import runtime; print(*runtime.helper_places(), sep='\\n')"
        customary = [f"{prefix}/libexec/quiverleaf/quiverleaf-helper" for prefix in ("/usr/local", "/usr")]
        self.assertEqual(run(sys.executable, "-c", program, folder=packages).splitlines(), [path, *customary])

    def test_an_installation_by_cmake_says_where_the_helper_is(self):
        script = BUILD / "packaging" / "python" / "cmake_install.cmake"
        run("cmake", "-DCMAKE_INSTALL_PREFIX=/opt/a b", "-P", script, DESTDIR=str(self.folder))
        package = next((self.folder / "opt" / "a b" / "lib").glob("python3*/dist-packages/quiverleaf"))
        cache = (BUILD / "CMakeCache.txt").read_text("utf-8")
        libexec = re.search(r"^CMAKE_INSTALL_LIBEXECDIR:\w+=(.*)$", cache, re.MULTILINE)[1]
        stated = (package / "_installation.py").read_text("utf-8")
        self.assertIn(f'"{pathlib.Path("/opt/a b", libexec, "quiverleaf")}"', stated)
        installed, modules = ({path.name for path in place.iterdir()} for place in (package, SOURCE / "quiverleaf"))
        self.assertEqual(installed, modules - {"__pycache__"} | {"_installation.py"})


if __name__ == "__main__":
    unittest.main()
