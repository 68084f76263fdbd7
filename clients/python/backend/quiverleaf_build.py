# SPDX-License-Identifier: Apache-2.0
"""Builds the package's wheel and source archive with the standard library alone, so that pip needs no index for it.

The hooks of PEP 517 and PEP 660; they run in the folder of pyproject.toml and write nowhere but to the folder they are
given. Equal sources make equal bytes: files are sorted, their times and modes fixed.
"""

import base64
import gzip
import hashlib
import io
import json
import os
import pathlib
import re
import tarfile
import zipfile
from typing import Any, Optional

_PACKAGE = "quiverleaf"
_MODULES = (f"{_PACKAGE}/*.py", f"{_PACKAGE}/py.typed")
_EARLIEST_ZIP_TIME = (1980, 1, 1, 0, 0, 0)
_EARLIEST_ZIP_SECONDS = 315532800
_WHEEL_MODE = 0o100644

_Settings = Optional[dict[str, Any]]
_Files = dict[str, bytes]


def build_wheel(
    wheel_directory: str, config_settings: _Settings = None, metadata_directory: Optional[str] = None
) -> str:
    """Writes the wheel and answers its file name."""
    return _write_wheel(wheel_directory, _read(*_MODULES))


def build_editable(
    wheel_directory: str, config_settings: _Settings = None, metadata_directory: Optional[str] = None
) -> str:
    """Writes a wheel that leads to the sources in this folder, and answers its file name."""
    return _write_wheel(wheel_directory, {f"{_PACKAGE}.pth": os.fsencode(os.getcwd()) + b"\n"})


def build_sdist(sdist_directory: str, config_settings: _Settings = None) -> str:
    """Writes the source archive and answers its file name."""
    files = _read("pyproject.toml", "README.md", "LICENSE", "*.py", "backend/*.py", *_MODULES)
    files["PKG-INFO"] = _metadata()
    top = f"{_PACKAGE}-{_version()}"
    buffer = io.BytesIO()
    with tarfile.open(fileobj=buffer, mode="w", format=tarfile.PAX_FORMAT) as archive:
        for name, data in sorted(files.items()):
            member = tarfile.TarInfo(f"{top}/{name}")
            member.size, member.mtime = len(data), _EARLIEST_ZIP_SECONDS
            archive.addfile(member, io.BytesIO(data))
    pathlib.Path(sdist_directory, f"{top}.tar.gz").write_bytes(
        gzip.compress(buffer.getvalue(), mtime=_EARLIEST_ZIP_SECONDS)
    )
    return f"{top}.tar.gz"


def _read(*patterns: str) -> _Files:
    paths = [path for pattern in patterns for path in pathlib.Path().glob(pattern)]
    return {path.as_posix(): path.read_bytes() for path in paths}


def _write_wheel(folder: str, files: _Files) -> str:
    version = _version()
    information = f"{_PACKAGE}-{version}.dist-info"
    files = dict(sorted(files.items()))
    files[f"{information}/licenses/LICENSE"] = pathlib.Path("LICENSE").read_bytes()
    files[f"{information}/METADATA"] = _metadata()
    files[f"{information}/WHEEL"] = (
        f"Wheel-Version: 1.0\nGenerator: {_PACKAGE} {version}\nRoot-Is-Purelib: true\nTag: py3-none-any\n".encode()
    )
    record = "".join(f"{name},sha256={_digest(data)},{len(data)}\n" for name, data in files.items())
    files[f"{information}/RECORD"] = f"{record}{information}/RECORD,,\n".encode()

    wheel = f"{_PACKAGE}-{version}-py3-none-any.whl"
    with zipfile.ZipFile(pathlib.Path(folder, wheel), "w") as archive:
        for name, data in files.items():
            member = zipfile.ZipInfo(name, _EARLIEST_ZIP_TIME)
            member.external_attr = _WHEEL_MODE << 16
            archive.writestr(member, data, zipfile.ZIP_DEFLATED)
    return wheel


def _digest(data: bytes) -> str:
    return base64.urlsafe_b64encode(hashlib.sha256(data).digest()).rstrip(b"=").decode()


def _version() -> str:
    source = pathlib.Path(_PACKAGE, "__init__.py").read_text("utf-8")
    found = re.search(r'^__version__ = "([\d.]+)"$', source, re.MULTILINE)
    if not found:
        raise ValueError("the package states no version")
    return found[1]


def _metadata() -> bytes:
    tables = _pyproject()
    project = tables["project"]
    fields = [
        ("Metadata-Version", "2.4"),
        ("Name", project["name"]),
        ("Version", _version()),
        ("Summary", project["description"]),
        ("Author", tables["project.authors"]["name"]),
        ("License-Expression", project["license"]),
        *(("License-File", name) for name in project["license-files"]),
        *(("Classifier", name) for name in project["classifiers"]),
        ("Requires-Python", project["requires-python"]),
        ("Description-Content-Type", "text/markdown"),
    ]
    head = "".join(f"{name}: {value}\n" for name, value in fields)
    return f"{head}\n{pathlib.Path(project['readme']).read_text('utf-8')}".encode()


def _pyproject() -> dict[str, dict[str, Any]]:
    """The tables of pyproject.toml, whose values are JSON, since Python has a parser of TOML only from 3.11 on."""
    tables: dict[str, dict[str, Any]] = {}
    table: dict[str, Any] = {}
    for line in pathlib.Path("pyproject.toml").read_text("utf-8").splitlines():
        header = re.fullmatch(r"\[+([\w.-]+)\]+", line)
        if header:
            table = tables.setdefault(header[1], {})
        elif line and not line.startswith("#"):
            key, _, value = line.partition(" = ")
            table[key] = json.loads(value)
    return tables
