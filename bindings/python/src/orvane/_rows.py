"""Pixels as the library has them: blue, green, red; the bottom row first; each row padded to 4 bytes."""

from __future__ import annotations

import struct
from typing import NamedTuple, Union

MAX_SIDE = 32767
MAX_PIXELS = 268_000_000

HEADER_BYTES = 40
_HEADER = struct.Struct("<IiiHHIIiiII")

Buffer = Union[bytes, bytearray, memoryview]


class Rows(NamedTuple):
    """A picture on its way in or out; ``data`` has ``row_bytes(width) * height`` bytes."""

    width: int
    height: int
    data: Buffer


def row_bytes(width: int) -> int:
    return (3 * width + 3) // 4 * 4


def check_picture_size(width: int, height: int) -> None:
    """Raises ValueError for a picture that no library could take."""
    if width < 1 or height < 1:
        raise ValueError(f"a picture of {width}x{height} pixels is empty")
    if width > MAX_SIDE or height > MAX_SIDE or width * height > MAX_PIXELS:
        raise ValueError(
            f"a picture of {width}x{height} pixels is too large: at most {MAX_SIDE} a side and {MAX_PIXELS} in all"
        )


def bitmap_header(width: int, height: int) -> bytes:
    """The 40 bytes in front of the rows in a packed bitmap."""
    return _HEADER.pack(HEADER_BYTES, width, height, 1, 24, 0, row_bytes(width) * height, 0, 0, 0, 0)


def rows_of_bitmap(packed: bytes) -> Rows:
    """The rows of a packed bitmap; ValueError where it is none, or shorter than its header tells."""
    if len(packed) < HEADER_BYTES:
        raise ValueError("a packed bitmap has at least 40 bytes")
    size, width, height, _, bits, compression = _HEADER.unpack_from(packed)[:6]
    if size != HEADER_BYTES or bits != 24 or compression != 0 or width < 1 or height < 1:
        raise ValueError("not a packed 24-bit bitmap")
    length = row_bytes(width) * height
    if len(packed) < HEADER_BYTES + length:
        raise ValueError("the packed bitmap is shorter than its header tells")
    return Rows(width, height, memoryview(packed)[HEADER_BYTES : HEADER_BYTES + length])
