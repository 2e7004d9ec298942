"""NumPy arrays in and out. Loaded only once somebody has loaded NumPy."""

from __future__ import annotations

from typing import Any

import numpy as np

from ._rows import Rows, check_picture_size, row_bytes


def rows_from_array(array: "np.ndarray[Any, Any]") -> Rows:
    """Of height x width x 3, red first, or height x width (also x 1) for grey; the top row first. Strides are free."""
    if array.dtype != np.uint8:
        raise TypeError(f"an array of uint8 is needed, not of {array.dtype}: scale it to 0 to 255 and convert it")
    grey = array.ndim == 2 or (array.ndim == 3 and array.shape[2] == 1)
    if not grey and not (array.ndim == 3 and array.shape[2] == 3):
        hint = "; lay it over a background first" if array.ndim == 3 and array.shape[2] == 4 else ""
        raise ValueError(
            f"an array of height x width x 3 (RGB) or height x width (grey) is needed, not of {array.shape}{hint}"
        )
    height, width = array.shape[:2]
    check_picture_size(width, height)
    upwards = np.asarray(array)[::-1]
    if array.ndim == 2:
        upwards = upwards[:, :, np.newaxis]
    data = np.zeros((height, row_bytes(width)), np.uint8)
    for channel in range(3):
        data[:, channel : 3 * width : 3] = upwards[:, :, 0 if grey else 2 - channel]
    return Rows(width, height, data.data.cast("B"))


def array_from_rows(rows: Rows) -> "np.ndarray[Any, Any]":
    """Of height x width x 3, red first, contiguous and the caller's own."""
    stored = np.frombuffer(rows.data, np.uint8).reshape(rows.height, row_bytes(rows.width))[::-1]
    array = np.empty((rows.height, rows.width, 3), np.uint8)
    for channel in range(3):
        array[:, :, channel] = stored[:, 2 - channel : 3 * rows.width : 3]
    return array
