"""Pillow images in and out, and picture files through it. Loaded only once Pillow is needed."""

from __future__ import annotations

import io
import os
import struct
from typing import Any, Union

from PIL import Image

from ._rows import Rows, check_picture_size, row_bytes

_ORIENTATION_TAG = 0x0112

# What brings the stored picture upright, by the orientation that the camera noted.
_UPRIGHT = {
    2: Image.FLIP_LEFT_RIGHT,
    3: Image.ROTATE_180,
    4: Image.FLIP_TOP_BOTTOM,
    5: Image.TRANSPOSE,
    6: Image.ROTATE_270,
    7: Image.TRANSVERSE,
    8: Image.ROTATE_90,
}

_WITH_ALPHA = ("RGBA", "LA", "PA", "RGBa", "La")
_MAY_HAVE_A_TRANSPARENT_COLOUR = ("1", "L", "P", "RGB")


def rows_from_image(image: Any) -> Rows:
    """Upright, over white, in eight bits a channel. The image stays as it is."""
    check_picture_size(image.width, image.height)
    _load(image)
    rgb = _rgb(_upright(image))
    data = rgb.tobytes("raw", "BGR", row_bytes(rgb.width), -1)
    return Rows(rgb.width, rgb.height, data)


def rows_from_file(file: Union[str, "os.PathLike[str]", bytes, bytearray, memoryview]) -> Rows:
    """The same of a path, or of a file's content in bytes."""
    source = io.BytesIO(file) if isinstance(file, (bytes, bytearray, memoryview)) else file
    with Image.open(source) as image:
        return rows_from_image(image)


def image_from_rows(rows: Rows) -> Any:
    return Image.frombytes("RGB", (rows.width, rows.height), bytes(rows.data), "raw", "BGR", row_bytes(rows.width), -1)


def _load(image: Any) -> None:
    try:
        image.load()
    except AttributeError as error:  # a closed image has lost its file
        raise ValueError("the image is closed") from error


def _upright(image: Any) -> Any:
    try:
        orientation = image.getexif().get(_ORIENTATION_TAG, 1)
    except (ValueError, TypeError, KeyError, IndexError, SyntaxError, OSError, struct.error):
        return image  # notes that can't be read tell nothing
    turn = _UPRIGHT.get(orientation) if isinstance(orientation, int) else None
    return image if turn is None else image.transpose(turn)


def _rgb(image: Any) -> Any:
    if image.mode == "RGB" and "transparency" not in image.info:
        return image
    if image.mode == "F":
        raise TypeError("an image of mode F has no scale of its own: convert it to L first")
    try:
        if image.mode == "I" or image.mode.startswith("I;16"):
            return _from_16_bits(image)
        if image.mode in _WITH_ALPHA:
            return _over_white(image)
        if image.mode in _MAY_HAVE_A_TRANSPARENT_COLOUR and "transparency" in image.info:
            return _over_white(image)
        return image.convert("RGB")
    except (ValueError, KeyError) as error:
        raise TypeError(f"an image of mode {image.mode} can't be converted: {error}") from error


def _over_white(image: Any) -> Any:
    if image.mode == "La":
        image = image.convert("LA")
    image = image.convert("RGBA")
    white = Image.new("RGB", image.size, (255, 255, 255))
    white.paste(image, mask=image.getchannel("A"))
    return white


def _from_16_bits(image: Any) -> Any:
    """The upper eight of sixteen bits; mode I holds 16-bit greys as well."""
    wide = image if image.mode == "I" else image.convert("I")
    return wide.point(lambda level: level * (1 / 256) + 0).convert("L").convert("RGB")
