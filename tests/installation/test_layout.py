#!/usr/bin/env python3
# SPDX-License-Identifier: Apache-2.0
"""Where things are installed, and what a project gets that has this one as a part. The builds are of empty objects."""

import json
import os
import pathlib
import re
import shlex
import stat
import subprocess
import tempfile
import unittest

from commands import ENVIRONMENT, run

TOP = pathlib.Path(__file__).resolve().parents[2]
HOLLOW = TOP / "tests" / "installation" / "hollow-compiler"

RELATIVE = {
    "BINDIR": "programs",
    "LIBDIR": "lib/x86_64-linux-gnu",
    "LIBEXECDIR": "lib/x86_64-linux-gnu/private",
    "INCLUDEDIR": "deep/headers",
    "MANDIR": "manual",
    "DATADIR": "data",
    "DOCDIR": "papers",
}
ABSOLUTE = {**RELATIVE, "LIBDIR": "/opt/q/lib", "LIBEXECDIR": "/opt/q/exec", "INCLUDEDIR": "/opt/q/include"}


class HollowTestCase(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.folder = pathlib.Path(folder.name).resolve()
        self.build = self.folder / "build"
        self.settings = {"HOLLOW_OBJECTS": str(self.folder)}

    def make(self, source, **variables):
        launchers = (f"-DCMAKE_{language}_COMPILER_LAUNCHER={HOLLOW}" for language in ("C", "CXX"))
        options = (f"-D{name}={value}" for name, value in variables.items())
        run("cmake", "-G", "Ninja", "-S", source, "-B", self.build, *launchers, *options)
        run("cmake", "--build", self.build, "--parallel", "2", **self.settings)


class LayoutTest(HollowTestCase):
    def install(self, folders, prefix):
        """Installs under a folder that stands for the root, as somebody would whose umask is careless."""
        named = {f"CMAKE_INSTALL_{name}": folder for name, folder in folders.items()}
        self.make(TOP, QUIVERLEAF_TESTS="OFF", CMAKE_INSTALL_PREFIX="/usr/wherever", **named)
        command = ("cmake", "--install", self.build, "--prefix", prefix)
        root = self.folder / f"root{len(list(self.folder.glob('root*')))}"
        environment = {**ENVIRONMENT, "DESTDIR": str(root)}
        subprocess.run(command, check=True, capture_output=True, env=environment, umask=0o002)
        return root

    def check(self, root, prefix, folders):
        place = {name: root / str(pathlib.PurePath(prefix, folder)).lstrip("/") for name, folder in folders.items()}
        libraries, helper = place["LIBDIR"], place["LIBEXECDIR"] / "quiverleaf"
        names = [information.parent.name for information in (TOP / "importers").glob("*/Info.plist")]
        importers = {f"importers/{name}.mdimporter/Contents/Linux/{name}.so" for name in names}
        programs = {helper / f"quiverleaf-{name}" for name in ("archive", "helper", "office", "pasteboard", "pictures")}
        self.assertEqual(
            self.files(root, ".hpp", ".py"),
            {place["BINDIR"] / "quiverleaf", *programs}
            | {helper / name for name in importers}
            | {(helper / name).parents[1] / "Info.plist" for name in importers}
            | {libraries / f"libnimbo-{name}.so{end}" for name in ("text", "media", "client") for end in ("", ".2", ".2.0.0")}
            | {libraries / "quiverleaf" / f"libnimbo-{name}.so{end}" for name in ("imagecodec", "imageio", "qtkit") for end in (".2", ".2.0.0")}
            | {libraries / "pkgconfig" / f"nimbo-{name}.pc" for name in ("text", "media", "client")}
            | {libraries / "cmake" / "Quiverleaf" / name for name in self.package_files()}
            | {place["INCLUDEDIR"] / name / "MDImporter.h" for name in ("quiverleaf", "nimbo/platform/CoreServices")}
            | {place["MANDIR"] / name for name in ("man1/quiverleaf.1", "man8/quiverleaf-helper.8")}
            | {place["DATADIR"] / "bash-completion/completions/quiverleaf", place["DATADIR"] / "zsh/site-functions/_quiverleaf"}
            | {place["DATADIR"] / "quiverleaf" / "feed.css"}
            | {place["DOCDIR"] / name for name in ("AUTHORS", "LICENSE", "LICENSE-BINARIES")},
        )
        self.assertTrue((place["INCLUDEDIR"] / "nimbo" / "text.hpp").exists())
        self.assertTrue((place["INCLUDEDIR"] / "nimbo" / "platform" / "Foundation" / "NSString.hpp").exists())

        private = libraries / "quiverleaf"
        reached = {
            place["BINDIR"] / "quiverleaf": {libraries},
            helper / "quiverleaf-helper": {libraries},
            libraries / "libnimbo-media.so.2": {libraries, private},
            **{private / f"libnimbo-{name}.so.2": {libraries} for name in ("imagecodec", "imageio", "qtkit")},
            **{helper / name: {libraries, private} for name in importers},
        }
        for path, folders_reached in reached.items():
            with self.subTest(path.name):
                linked = run("readelf", "--dynamic", "--program-headers", path)
                self.assertIn("GNU_RELRO", linked)
                flags = set(re.search(r"\(FLAGS_1\).*Flags: (.*)", linked)[1].split())
                self.assertEqual(flags, {"NOW"} if ".so" in path.name else {"NOW", "PIE"})
                runpath = re.search(r"\(RUNPATH\).*\[(.*)\]", linked)[1].split(":")
                parts = (part.replace("$ORIGIN", str(path.parent)) if part[0] == "$" else f"{root}{part}" for part in runpath)
                self.assertEqual(set(map(os.path.normpath, parts)), set(map(str, folders_reached)))

        if not pathlib.PurePath(folders["LIBDIR"]).is_absolute():
            settings = {"PKG_CONFIG_PATH": str(libraries / "pkgconfig")}
            for name in ("LIBDIR", "INCLUDEDIR"):
                stated = run("pkg-config", f"--variable={name.lower()}", "nimbo-client", **settings)
                self.assertEqual(os.path.normpath(stated), str(place[name]))
        stated = next(root.rglob("_installation.py")).read_text("utf-8")
        self.assertIn(f'"{pathlib.PurePath("/", helper.relative_to(root))}"', stated)

        # A helper refuses importers that others may change.
        for path in (helper, *helper.rglob("*")):
            self.assertFalse(path.stat().st_mode & (stat.S_IWGRP | stat.S_IWOTH), path)

    def files(self, root, *but):
        return {path for path in root.rglob("*") if not path.is_dir() and not path.name.endswith((*but, "py.typed"))}

    def package_files(self):
        yield from ("QuiverleafConfig.cmake", "QuiverleafConfigVersion.cmake")
        for name in ("text", "media", "client"):
            yield from (f"Quiverleaf-{name}.cmake", f"Quiverleaf-{name}-relwithdebinfo.cmake")

    def test_folders_of_all_kinds(self):
        for folders, prefix in ((RELATIVE, "/usr/elsewhere"), (ABSOLUTE, "/usr/wherever")):
            with self.subTest(folders["LIBDIR"]):
                self.check(self.install(folders, prefix), prefix, folders)


PARENT = """
cmake_minimum_required(VERSION 3.25)
project(Parent VERSION 1.0 LANGUAGES C CXX)
macro(remember when)
  foreach(scope VARIABLES CACHE_VARIABLES)
    get_cmake_property(names ${scope})
    foreach(name IN LISTS names)
      if(name MATCHES "^(CMAKE|BUILD|PROJECT|CTEST)_")
        file(APPEND ${CMAKE_BINARY_DIR}/${when}.txt "${name}=${${name}}\\n")
      endif()
    endforeach()
  endforeach()
  foreach(property COMPILE_OPTIONS COMPILE_DEFINITIONS INCLUDE_DIRECTORIES LINK_OPTIONS LINK_LIBRARIES TESTS)
    get_directory_property(value ${property})
    file(APPEND ${CMAKE_BINARY_DIR}/${when}.txt "${property}=${value}\\n")
  endforeach()
endmacro()
set(CMAKE_EXPORT_COMPILE_COMMANDS ON)
remember(before)
add_subdirectory(${QUIVERLEAF} part)
remember(after)
add_executable(parent main.cpp)
target_link_libraries(parent PRIVATE nimbo::text nimbo::client)
"""
PARENT_PROGRAM = """
#include <nimbo/client.hpp>
#include <nimbo/text.hpp>
using namespace nimbo;
int main() { return stringByConvertingHtml2PlainText(u"<p>text"_ns).length() == 4 ? 0 : 1; }
"""


class PartTest(HollowTestCase):
    def test_a_part_of_another_project(self):
        source = self.folder / "source"
        source.mkdir()
        (source / "CMakeLists.txt").write_text(PARENT)
        (source / "main.cpp").write_text(PARENT_PROGRAM)
        self.make(source, QUIVERLEAF=TOP, QUIVERLEAF_MEDIA="OFF", CMAKE_BUILD_TYPE="")

        before, after = ((self.build / f"{when}.txt").read_text("utf-8").splitlines() for when in ("before", "after"))
        self.assertEqual(sorted(set(after) - set(before)), [])
        self.assertFalse((self.build / "CTestTestfile.cmake").exists())
        run("cmake", "--install", self.build, "--prefix", self.folder / "prefix")
        self.assertFalse((self.folder / "prefix").exists())

        # The text libraries take none of the heavy ones, nor look for them.
        cache = (self.build / "CMakeCache.txt").read_text("utf-8")
        self.assertEqual(re.findall(r"^\w*(?:MAGIC|VIPS|EXIV2|LCMS|json)\w*:.*", cache, re.MULTILINE), [])
        self.assertNotRegex((self.build / "build.ninja").read_text("utf-8"), "mupdf|vips|exiv2|lcms|magic|nlohmann")
        commands = json.loads((self.build / "compile_commands.json").read_text("utf-8"))
        commands = {pathlib.Path(entry["file"]): shlex.split(entry["command"]) for entry in commands}
        own = commands.pop(source / "main.cpp")
        self.assertNotIn("-O2", own)
        self.assertNotIn("ccache", " ".join(own))
        for words in commands.values():
            self.assertIn("-O2", words)
        run(*own[own.index(os.environ["CXX"]) :], "-fsyntax-only", folder=self.build)


if __name__ == "__main__":
    unittest.main()
