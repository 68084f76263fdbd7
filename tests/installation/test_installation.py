#!/usr/bin/env python3
# SPDX-License-Identifier: Apache-2.0
"""What others can do with an installation that was moved: build programs by CMake and by pkg-config, and run them."""

import os
import pathlib
import re
import shutil
import subprocess
import tempfile
import unittest
import zipfile

import documents
from commands import ENVIRONMENT, run

TOP = pathlib.Path(__file__).resolve().parents[2]
BUILD = pathlib.Path(os.environ["QUIVERLEAF_BUILD"])
EXAMPLES = TOP / "examples" / "cpp"
COMPILER = (os.environ["CXX"], "-std=c++20", *os.environ.get("CXXFLAGS", "").split())
STRICT = ("-fsyntax-only", "-Wall", "-Wextra", "-Werror")

PAGE = """<html><head><meta charset=iso-8859-1><title>None</title></head>
<body><p>Caf\u00e9 <a href="/a?b&amp;c=1">one</a><br>line<!-- <a href=no> --></p><A CLASS=x HREF='two'>two</A></body>"""
# The programs, what they are given, and what they print.
PROGRAMS = {
    "links": (("page.html",), "/a?b&c=1\ntwo"),
    "plain-text": (("page.html",), "Caf\u00e9 one\nline\n\ntwo"),
    "tidy-url": (("../b c?utm_source=x&copy=1#e", "https://Example.org:443/a/"), "https://example.org/b%20c?copy=1"),
    "metadata": (("letter.pdf",), "kMDItemTitle: A letter"),
}
NEEDS = {"metadata": {"libnimbo-client", "libnimbo-text"}}
# Of the language and the system; all else costs those who start the program.
SYSTEM = {"libstdc++", "libgcc_s", "libc", "libm", "libasan", "libubsan", "ld-linux-x86-64"}


def needed(path):
    """The shared libraries that a file itself asks for."""
    return set(re.findall(r"\(NEEDED\).*\[(.*?)\.so", run("readelf", "--dynamic", path)))


class InstallationTest(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        folder = tempfile.TemporaryDirectory()
        cls.addClassCleanup(folder.cleanup)
        cls.folder = pathlib.Path(folder.name).resolve()
        run("cmake", "--install", BUILD, "--prefix", cls.folder / "first")
        cls.prefix = (cls.folder / "first").rename(cls.folder / "moved")
        cls.libraries = next(cls.prefix.rglob("libnimbo-text.so")).parent
        cls.includes = next(cls.prefix.rglob("nimbo")).parent
        cls.command = next(path for path in cls.prefix.rglob("quiverleaf") if path.is_file() and os.access(path, os.X_OK))
        cls.settings = {"PKG_CONFIG_PATH": str(cls.libraries / "pkgconfig"), "QUIVERLEAF_RUNTIME_DIR": str(cls.folder)}
        (cls.folder / "page.html").write_text(PAGE, "iso-8859-1")
        (cls.folder / "letter.pdf").write_bytes(documents.pdf(title="A letter"))

    def run_here(self, *command, **options):
        return run(*command, folder=self.folder, **options, **self.settings)

    def check_programs(self, folder):
        """The programs work, with libraries, helper and importers of the installation alone."""
        self.addCleanup(self.run_here, self.command, "stop")
        for name, (arguments, expected) in PROGRAMS.items():
            with self.subTest(name):
                self.assertIn(expected, self.run_here(folder / name, *arguments))
                self.assertEqual(needed(folder / name) - SYSTEM, NEEDS.get(name, {"libnimbo-text"}))
        process = re.search(r"\d+", self.run_here(self.command, "ping"))[0]
        mapped = pathlib.Path("/proc", process, "maps").read_text("utf-8")
        ours = {path for path in re.findall(r"/\S+", mapped) if re.search(r"nimbo|quiverleaf|mdimporter", path)}
        self.assertEqual({path for path in ours if not path.startswith(f"{self.prefix}/")}, set())
        self.assertIn("PDF.so", {pathlib.Path(path).name for path in ours})

    def test_programs_built_with_cmake(self):
        build = self.folder / "cmake"
        self.run_here("cmake", "-G", "Ninja", "-S", EXAMPLES, "-B", build, f"-DCMAKE_PREFIX_PATH={self.prefix}")
        self.run_here("cmake", "--build", build, "--parallel", "2")
        self.check_programs(build)

    def test_programs_built_with_pkg_config(self):
        build = self.folder / "pkg-config"
        build.mkdir()
        for name in PROGRAMS:
            library = "nimbo-client" if name == "metadata" else "nimbo-text"
            flags = self.run_here("pkg-config", "--cflags", "--libs", library).split()
            place = (f"-Wl,-rpath,{self.libraries}", "-Wl,--as-needed")
            self.run_here(*COMPILER, EXAMPLES / f"{name}.cpp", "-o", build / name, *flags, *place)
        self.check_programs(build)
        flags = self.run_here("pkg-config", "--cflags", "--libs", "nimbo-client").split()
        for page, *options in (("README.md",), ("docs/handlers.md", "-c", "-Wall", "-Werror")):
            source = build / "page.cpp"
            source.write_text("".join(re.findall(r"```cpp\n(.*?)```", (TOP / page).read_text("utf-8"), re.DOTALL)))
            self.run_here(*COMPILER, source, *options, "-o", build / "page", *flags)

    def test_an_importer_built_outside(self):
        bundle = self.folder / "data" / "quiverleaf" / "importers" / "Mail.mdimporter"
        shutil.copytree(TOP / "examples" / "importer" / bundle.name, bundle)
        (bundle / "Contents" / "Linux").mkdir()
        run("chmod", "-R", "go-w", bundle.parent)
        flags = self.run_here("pkg-config", "--cflags", "nimbo-media").split()
        source = TOP / "examples" / "importer" / "MailImporter.c"
        target = bundle / "Contents" / "Linux" / "Mail.so"
        self.run_here(os.environ["CC"], "-Wall", "-Werror", "-shared", "-fPIC", "-fvisibility=hidden", *flags, source, "-o", target)
        (self.folder / "a.eml").write_text("Received: here\nSubject: A mail\nFrom: Ann\n\nSubject: text\n", "ascii")
        own = self.settings | {"XDG_DATA_HOME": str(self.folder / "data"), "QUIVERLEAF_RUNTIME_DIR": str(self.folder / "own")}
        self.addCleanup(run, self.command, "stop", **own)
        metadata = run(self.command, "metadata", "a.eml", folder=self.folder, **own)
        self.assertEqual(metadata, '{"kMDItemTitle":"A mail","kMDItemAuthors":["Ann"]}')

    def test_what_is_loaded(self):
        libraries = {path.name: path for path in self.prefix.rglob("*.so*") if not path.is_symlink()}
        version = run("pkg-config", "--modversion", "nimbo-text", **self.settings)
        major = version.split(".", maxsplit=1)[0]
        self.assertEqual(needed(libraries[f"libnimbo-client.so.{version}"]) - SYSTEM, {"libnimbo-text"})
        for path in (*libraries.values(), self.command, next(self.prefix.rglob("quiverleaf-helper"))):
            with self.subTest(path.name):
                # It measures the processor's clock at every start.
                self.assertNotIn("libhwy", needed(path))
                if path.name.startswith("libnimbo-"):
                    soname = re.search(r"\(SONAME\).*\[(.*)\]", run("readelf", "--dynamic", path))[1]
                    self.assertEqual(soname, path.name.removesuffix(version) + major)
                    self.assertEqual((path.parent / soname).resolve(), path)
                if path != self.command and "libexec" not in str(path):
                    linked = path.with_name(path.name.removesuffix(f".{version}"))
                    self.assertEqual(linked.exists(), path.parent == self.libraries)
        engines = {"libnimbo-imagecodec", "libnimbo-imageio", "libnimbo-qtkit"}
        self.assertFalse(engines & needed(libraries[f"libnimbo-media.so.{version}"]))

    def test_the_program_for_archives(self):
        self.run_here(next(self.prefix.rglob("quiverleaf-archive")), "-c", "-k", "--sequesterRsrc", "page.html", "a.zip")
        self.assertEqual(zipfile.ZipFile(self.folder / "a.zip").namelist(), ["page.html"])

    def find_package(self, arguments, **options):
        source = pathlib.Path(tempfile.mkdtemp(dir=self.folder))
        (source / "CMakeLists.txt").write_text(
            f"cmake_minimum_required(VERSION 3.23)\nproject(Stranger LANGUAGES NONE)\nfind_package(Quiverleaf {arguments})\n"
            'message("found ${Quiverleaf_FOUND} text ${Quiverleaf_text_FOUND} sound ${Quiverleaf_sound_FOUND}")\n'
            "foreach(name text media client)\n  if(TARGET nimbo::${name})\n    message(target-${name})\n  endif()\n"
            "endforeach()\n"
        )
        command = ("cmake", "-G", "Ninja", "-S", source, "-B", source / "build", f"-DCMAKE_PREFIX_PATH={self.prefix}")
        done = subprocess.run(command, env=ENVIRONMENT, capture_output=True, text=True, check=False)
        return done.returncode, " ".join(done.stderr.split())

    def test_components(self):
        everything = "target-text target-media target-client"
        cases = {
            "REQUIRED": (0, f"found 1 text TRUE sound {everything}"),
            "2.0 REQUIRED COMPONENTS client": (0, "found 1 text TRUE sound target-text target-client"),
            "COMPONENTS text OPTIONAL_COMPONENTS sound": (0, "found 1 text TRUE sound FALSE target-text"),
            "REQUIRED COMPONENTS text sound": (1, 'has no component "sound": there are text, media and client.'),
            "COMPONENTS sound": (0, "found 0 text TRUE sound FALSE"),
            "1 REQUIRED": (1, 'compatible with requested version "1"'),
            "3 REQUIRED": (1, 'compatible with requested version "3"'),
        }
        for arguments, (code, message) in cases.items():
            with self.subTest(arguments):
                result, output = self.find_package(arguments)
                self.assertEqual(result, code, output)
                self.assertIn(message, output)
        media = self.libraries / "cmake" / "Quiverleaf" / "Quiverleaf-media.cmake"
        media.rename(media.with_suffix(".gone"))
        self.addCleanup(media.with_suffix(".gone").rename, media)
        self.assertIn('was built without the component "media"', self.find_package("REQUIRED COMPONENTS media")[1])
        self.assertIn("target-text target-client", self.find_package("REQUIRED")[1])

    def test_headers(self):
        """All together as strangers see them; alone those that no source includes first, which shows it of the others."""
        installed = self.includes / "nimbo"
        headers = {str(path.relative_to(installed)) for path in installed.rglob("*.h*")}
        sources = (path for floor in ("platform", "Classes", "clients") for path in (TOP / floor).rglob("*.cpp"))
        first = (re.search('#include [<"](.*?)[">]', path.read_text("utf-8")) for path in sources)
        alone = sorted(headers - {match[1] for match in first if match})
        self.assertLess(len(alone), len(headers) / 2)
        flags = (f"-I{self.includes}", f"-I{installed}")
        whole = self.folder / "whole.cpp"
        whole.write_text("".join(f"#include <nimbo/{name}.hpp>\n" for name in ("client", "media", "text")))
        lines = {"whole.cpp": whole}
        for header in alone:
            lines[header] = self.folder / "alone" / (header.replace("/", "_") + ".cpp")
            lines[header].parent.mkdir(exist_ok=True)
            lines[header].write_text(f'#include "{header}"\n')
        for name, path in lines.items():
            with self.subTest(name):
                run(*COMPILER, *STRICT, *flags, path)
        if shutil.which("clang++"):
            run("clang++", "-std=c++20", *STRICT, *flags, whole)
        importer = self.folder / "importer.c"
        importer.write_text("#include <quiverleaf/MDImporter.h>\n")
        run(os.environ["CC"], "-std=c99", "-pedantic", *STRICT, flags[0], importer)

    def test_licences(self):
        documents_folder = next(path.parent for path in self.prefix.rglob("AUTHORS"))
        self.assertEqual({path.name for path in documents_folder.iterdir()}, {"AUTHORS", "LICENSE", "LICENSE-BINARIES"})


if __name__ == "__main__":
    unittest.main()
