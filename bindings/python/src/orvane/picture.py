"""A picture without Pillow and without NumPy."""

from __future__ import annotations

import operator
from typing import Any

from ._rows import Rows, check_picture_size, row_bytes


class Picture:
    """Pixels in plain bytes: red, green, blue, the top row first, nothing between the rows.

    ``pixels`` may be any object with the buffer protocol and has exactly ``3 * width * height`` bytes. A picture
    doesn't change; two are equal when their sizes and pixels are.
    """

    __slots__ = ("_width", "_height", "_pixels")

    def __init__(self, width: int, height: int, pixels: Any) -> None:
        self._width = operator.index(width)
        self._height = operator.index(height)
        check_picture_size(self._width, self._height)
        if isinstance(pixels, (int, str)):
            raise TypeError(f"pixels are bytes, not {type(pixels).__name__}")
        self._pixels = bytes(memoryview(pixels))
        wanted = 3 * self._width * self._height
        if len(self._pixels) != wanted:
            raise ValueError(
                f"{self._width}x{self._height} pixels of three bytes are {wanted} bytes, not {len(self._pixels)}"
            )

    @property
    def width(self) -> int:
        return self._width

    @property
    def height(self) -> int:
        return self._height

    @property
    def pixels(self) -> bytes:
        return self._pixels

    def __eq__(self, other: object) -> bool:
        if not isinstance(other, Picture):
            return NotImplemented
        return (self.width, self.height, self.pixels) == (other.width, other.height, other.pixels)

    def __hash__(self) -> int:
        return hash((self.width, self.height, self.pixels))

    def __repr__(self) -> str:
        return f"<orvane.Picture {self.width}x{self.height}>"

    def __reduce__(self) -> Any:
        return Picture, (self.width, self.height, self.pixels)


def _swap_red_and_blue(pixels: Any) -> bytearray:
    swapped = bytearray(pixels)
    swapped[0::3] = pixels[2::3]
    swapped[2::3] = pixels[0::3]
    return swapped


def rows_from_picture(picture: Picture) -> Rows:
    pixels = memoryview(_swap_red_and_blue(picture.pixels))
    used = 3 * picture.width
    step = row_bytes(picture.width)
    data = bytearray(step * picture.height)
    for y in range(picture.height):
        at = (picture.height - 1 - y) * step
        data[at : at + used] = pixels[y * used : (y + 1) * used]
    return Rows(picture.width, picture.height, data)


def picture_from_rows(rows: Rows) -> Picture:
    used = 3 * rows.width
    step = row_bytes(rows.width)
    pixels = b"".join(bytes(rows.data[y * step : y * step + used]) for y in reversed(range(rows.height)))
    return Picture(rows.width, rows.height, _swap_red_and_blue(pixels))
