# SPDX-License-Identifier: Apache-2.0
"""Binary property lists, as the helper's messages hold them.

The standard library's plistlib can carry neither null nor strings with lone surrogates, and its reader trusts its input
too much for what another process sent. None stands for null, bytes for data, and a datetime is in UTC.
"""

import datetime
import math
import struct
from collections.abc import Collection, Iterator
from typing import Any, Optional, Union

Data = Union[bytes, bytearray, memoryview]

MAXIMUM_DEPTH = 512
MAXIMUM_OBJECTS = 4_000_000

_HEADER = b"bplist00"
_TRAILER = struct.Struct(">6xBBQQQ")
_REFERENCE_DATE = datetime.datetime(2001, 1, 1, tzinfo=datetime.timezone.utc)
_INT64 = range(-(1 << 63), 1 << 63)


class PropertyListError(ValueError):
    """Bytes that are no property list, or a value that none can hold."""


def dumps(value: Any) -> bytes:
    """The binary property list of a value; a datetime without a time zone counts as UTC.

    Raises PropertyListError for what no list can hold and for more than MAXIMUM_DEPTH levels or MAXIMUM_OBJECTS values.
    """
    return _Writer(value).data()


def loads(data: Data) -> Any:
    """The value of a binary property list. Data comes as bytes, a date as datetime in UTC, null as None.

    A date that datetime cannot hold is None. Raises PropertyListError and nothing else, whatever the bytes are.
    """
    return _Reader(bytes(data)).value()


class _Writer:
    """Numbers the objects breadth first; equal strings share a number."""

    def __init__(self, top: Any) -> None:
        self._objects = [top]
        self._depths = [1]
        self._strings: dict[str, int] = {}

    def data(self) -> bytes:
        children: dict[int, list[int]] = {}
        for index, value in enumerate(self._objects):  # which grows meanwhile
            if isinstance(value, dict):
                if not all(isinstance(key, str) for key in value):
                    raise PropertyListError("a key is not a string")
                children[index] = [*self._number(index, value), *self._number(index, value.values())]
            elif isinstance(value, (list, tuple)):
                children[index] = self._number(index, value)

        reference_size = _integer_size(len(self._objects) - 1)
        parts = [_HEADER]
        offsets = []
        position = len(_HEADER)
        for index, value in enumerate(self._objects):
            offsets.append(position)
            part = _scalar(value) if index not in children else _container(value, children[index], reference_size)
            parts.append(part)
            position += len(part)
        offset_size = _integer_size(position)
        parts.extend(offset.to_bytes(offset_size, "big") for offset in offsets)
        parts.append(_TRAILER.pack(offset_size, reference_size, len(offsets), 0, position))
        return b"".join(parts)

    def _number(self, parent: int, values: Collection[Any]) -> list[int]:
        depth = self._depths[parent] + 1
        if depth > MAXIMUM_DEPTH and values:
            raise PropertyListError("the value is nested too deeply")
        return [self._append(value, depth) for value in values]

    def _append(self, value: Any, depth: int) -> int:
        if isinstance(value, str) and value in self._strings:
            return self._strings[value]
        number = len(self._objects)
        if number >= MAXIMUM_OBJECTS:
            raise PropertyListError("the value holds too many objects")
        self._objects.append(value)
        self._depths.append(depth)
        if isinstance(value, str):
            self._strings[value] = number
        return number


def _integer_size(value: int) -> int:
    return next(size for size in (1, 2, 4, 8) if value < 1 << 8 * size)


def _integer(value: int) -> bytes:
    if value < 0:
        return b"\x13" + value.to_bytes(8, "big", signed=True)
    size = _integer_size(value)
    return bytes([0x10 | size.bit_length() - 1]) + value.to_bytes(size, "big")


def _marker(kind: int, count: int) -> bytes:
    return bytes([kind | count]) if count < 15 else bytes([kind | 15]) + _integer(count)


def _container(value: Collection[Any], references: list[int], reference_size: int) -> bytes:
    kind = 0xD0 if isinstance(value, dict) else 0xA0
    return _marker(kind, len(value)) + b"".join(number.to_bytes(reference_size, "big") for number in references)


def _scalar(value: Any) -> bytes:
    if value is None:
        return b"\x00"
    if isinstance(value, bool):
        return b"\x09" if value else b"\x08"
    if isinstance(value, int):
        if value not in _INT64:
            raise PropertyListError("an integer needs more than 64 bits")
        return _integer(value)
    if isinstance(value, float):
        return b"\x23" + struct.pack(">d", value)
    if isinstance(value, datetime.datetime):
        moment = value if value.tzinfo else value.replace(tzinfo=datetime.timezone.utc)
        return b"\x33" + struct.pack(">d", (moment - _REFERENCE_DATE).total_seconds())
    if isinstance(value, (bytes, bytearray, memoryview)):
        data = bytes(value)
        return _marker(0x40, len(data)) + data
    if isinstance(value, str):
        if value.isascii():
            return _marker(0x50, len(value)) + value.encode("ascii")
        units = value.encode("utf-16-be", "surrogatepass")
        return _marker(0x60, len(units) // 2) + units
    raise PropertyListError(f"a property list cannot hold {type(value).__name__}")


_Done = dict[int, tuple[Any, int]]  # number: (value, how many values it unfolds to)
_OpenContainer = tuple[int, int, list[int], Iterator[int]]  # number, kind, references, those not yet read


class _Reader:
    """Reads each object once, depth first and without recursion.

    Two budgets keep hostile input cheap: objects that overlap (their bytes together exceed the data's own), and shared
    containers that would unfold to more than MAXIMUM_OBJECTS values.
    """

    def __init__(self, data: bytes) -> None:
        if len(data) < len(_HEADER) + _TRAILER.size or not data.startswith(_HEADER):
            raise PropertyListError("no binary property list")
        offset_size, self._reference_size, count, self._top, table = _TRAILER.unpack(data[-_TRAILER.size :])
        self._table_end = len(data) - _TRAILER.size
        if not (1 <= offset_size <= 8 and 1 <= self._reference_size <= 8):
            raise PropertyListError("wrong sizes of references")
        if not len(_HEADER) <= table <= self._table_end or count * offset_size > self._table_end - table:
            raise PropertyListError("the table of objects lies outside")
        self._data = data
        self._offset_size, self._count, self._table = offset_size, count, table
        self._budget = len(data)

    def value(self) -> Any:
        done: _Done = {}
        open_containers: list[_OpenContainer] = []
        open_numbers: set[int] = set()
        self._open(self._top, done, open_containers)
        while open_containers:
            number, kind, references, remaining = open_containers[-1]
            child = next(remaining, None)
            if child is None:
                open_containers.pop()
                open_numbers.discard(number)
                done[number] = self._close(kind, references, done)
            elif child not in done:
                open_numbers.add(number)
                if child in open_numbers:
                    raise PropertyListError("an object contains itself")
                if len(open_containers) >= MAXIMUM_DEPTH:
                    raise PropertyListError("nested too deeply")
                self._open(child, done, open_containers)
        return done[self._top][0]

    def _open(self, number: int, done: _Done, open_containers: list[_OpenContainer]) -> None:
        """Reads an object: a scalar goes to `done`, a container to the end of `open_containers`."""
        position = self._position(number)
        marker = self._data[position]
        kind, low = marker & 0xF0, marker & 0x0F
        if kind in (0xA0, 0xD0):
            count, position = self._length(low, position + 1)
            references = self._references(position, count * 2 if kind == 0xD0 else count)
            open_containers.append((number, kind, references, iter(references)))
        else:
            done[number] = (self._scalar(kind, low, position + 1), 1)

    def _close(self, kind: int, references: list[int], done: _Done) -> tuple[Any, int]:
        weight = 1 + sum(done[reference][1] for reference in references)
        if weight > MAXIMUM_OBJECTS:
            raise PropertyListError("too many objects")
        values = [done[reference][0] for reference in references]
        if kind == 0xA0:
            return values, weight
        keys = values[: len(values) // 2]
        if not all(isinstance(key, str) for key in keys):
            raise PropertyListError("a key is not a string")
        return dict(zip(keys, values[len(keys) :])), weight

    def _position(self, number: int) -> int:
        if number >= self._count:
            raise PropertyListError("a reference lies outside")
        start = self._table + number * self._offset_size
        position = int.from_bytes(self._data[start : start + self._offset_size], "big")
        if not len(_HEADER) <= position < self._table:
            raise PropertyListError("an object lies outside")
        return position

    def _bytes(self, position: int, count: int) -> bytes:
        if count > self._table - position:
            raise PropertyListError("an object is cut off")
        self._budget -= count
        if self._budget < 0:
            raise PropertyListError("objects overlap")
        return self._data[position : position + count]

    def _length(self, low: int, position: int) -> tuple[int, int]:
        if low != 15:
            return low, position
        marker = self._bytes(position, 1)[0]
        if marker & 0xF0 != 0x10 or marker & 0x0F > 3:
            raise PropertyListError("a length is no integer")
        size = 1 << (marker & 0x0F)
        return int.from_bytes(self._bytes(position + 1, size), "big"), position + 1 + size

    def _references(self, position: int, count: int) -> list[int]:
        size = self._reference_size
        raw = self._bytes(position, count * size)
        return [int.from_bytes(raw[start : start + size], "big") for start in range(0, len(raw), size)]

    def _scalar(self, kind: int, low: int, position: int) -> Any:
        if kind == 0x00 and low in (0x0, 0x8, 0x9):
            return {0x0: None, 0x8: False, 0x9: True}[low]
        if kind == 0x10 and low <= 4:
            return int.from_bytes(self._bytes(position, 1 << low), "big", signed=low >= 3)
        if kind == 0x20 and low in (2, 3):
            return struct.unpack(">f" if low == 2 else ">d", self._bytes(position, 1 << low))[0]
        if kind == 0x30 and low == 3:
            return _date(struct.unpack(">d", self._bytes(position, 8))[0])
        if kind in (0x40, 0x50, 0x60):
            count, position = self._length(low, position)
            raw = self._bytes(position, count * 2 if kind == 0x60 else count)
            if kind == 0x40:
                return raw
            # A string in one-byte units is ASCII; other bytes would be some Latin text.
            return raw.decode("latin-1") if kind == 0x50 else raw.decode("utf-16-be", "surrogatepass")
        raise PropertyListError("an object of unknown kind")


def _date(seconds: float) -> Optional[datetime.datetime]:
    if not math.isfinite(seconds):
        return None
    try:
        return _REFERENCE_DATE + datetime.timedelta(seconds=seconds)
    except OverflowError:
        return None
