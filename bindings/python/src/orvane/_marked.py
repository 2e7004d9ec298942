"""Whether an output after "no face" is a portrait all the same, of a face that the operator marked.

Where nobody was asked the library's output is the photo, scaled for the work on it.
"""

from __future__ import annotations

from typing import List

from ._rows import Rows, row_bytes
from ._settings import Settings

_FIELDS = 16
_SAME_LEVELS = 4  # mean difference; scaling makes less, another part of a photo a multiple


def is_marked_portrait(output: Rows, photo: Rows, chosen: Settings) -> bool:
    if "crop" not in chosen.actions:
        whole = chosen._replace(width=photo.width, height=photo.height)
        return whole.has_asked_size(output.width, output.height)
    return chosen.has_asked_size(output.width, output.height) and not show_same_scene(output, photo)


def show_same_scene(one: Rows, other: Rows) -> bool:
    """By the mean colours of 16 by 16 fields: a crop shows something else, a scaled copy does not."""
    pairs = zip(_field_means(one), _field_means(other))
    difference = sum(abs(a - b) for a, b in pairs)
    return difference <= _SAME_LEVELS * 3 * _FIELDS * _FIELDS


def _field_means(rows: Rows) -> List[float]:
    step = row_bytes(rows.width)
    means = []
    for field_y in range(_FIELDS):
        top = field_y * rows.height // _FIELDS
        end = -(-(field_y + 1) * rows.height // _FIELDS)
        for field_x in range(_FIELDS):
            left = field_x * rows.width // _FIELDS
            right = -(-(field_x + 1) * rows.width // _FIELDS)
            sums = [0, 0, 0]
            for y in range(top, end):
                pixels = bytes(rows.data[y * step + 3 * left : y * step + 3 * right])
                for channel in range(3):
                    sums[channel] += sum(pixels[channel::3])
            count = (right - left) * (end - top)
            means += [total / count for total in sums]
    return means
