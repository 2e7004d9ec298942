"""The kinds of pictures that are taken, and what each gets back."""

from __future__ import annotations

import os
import sys
from typing import Any, Callable, Optional, Tuple

from ._rows import Rows
from .picture import Picture, picture_from_rows, rows_from_picture

_Back = Callable[[Rows], Any]


def taken(image: Any) -> Tuple[Rows, _Back]:
    """The image's rows, and what turns the portrait's rows into the same kind."""
    if isinstance(image, Picture):
        return rows_from_picture(image), picture_from_rows
    # Whoever holds an image of Pillow or an array has loaded its module.
    pillow = sys.modules.get("PIL.Image")
    if pillow is not None and isinstance(image, pillow.Image):
        from ._pillow import image_from_rows, rows_from_image

        return rows_from_image(image), image_from_rows
    numpy = sys.modules.get("numpy")
    if numpy is not None and isinstance(image, numpy.ndarray):
        from ._numpy import array_from_rows, rows_from_array

        return rows_from_array(image), array_from_rows
    if isinstance(image, (str, os.PathLike, bytes, bytearray, memoryview)):
        pillow_module = _pillow()
        if pillow_module is None:
            raise ImportError("picture files are read by Pillow, which is not installed (pip install Pillow)")
        return pillow_module.rows_from_file(image), pillow_module.image_from_rows
    raise TypeError(
        "a picture is an image of Pillow, a NumPy array, a path, the bytes of a file or an orvane.Picture, "
        f"not {type(image).__name__}"
    )


def best_kind() -> _Back:
    """For a picture that comes from no host: an image of Pillow where there is Pillow, else a Picture."""
    pillow_module = _pillow()
    if pillow_module is None:
        return picture_from_rows
    back: _Back = pillow_module.image_from_rows
    return back


def _pillow() -> Optional[Any]:
    try:
        from . import _pillow as module
    except ImportError:
        return None
    return module
