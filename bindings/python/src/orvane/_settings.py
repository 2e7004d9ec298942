"""How a portrait is to be, checked before anything reaches the library."""

from __future__ import annotations

import ctypes
import math
import operator
import os
from typing import Any, FrozenSet, Iterable, NamedTuple, Optional, Tuple

from ._rows import MAX_PIXELS, MAX_SIDE

MIN_SIDE = 75
MAX_CROP_RATIO = 10.0

DEFAULT_SIZE = (480, 860)
DEFAULT_CROP_RATIO = 1.0  # leaves the hair whole, which the library's own 0.75 often does not
DEFAULT_ACTIONS = ("crop",)

# The slots of the library, by the words that its programs have for them.
ACTION_SLOTS = {"crop": 0, "background": 1, "colour": 2, "rotation": 3}


class Settings(NamedTuple):
    width: int
    height: int
    actions: FrozenSet[str]
    crop_ratio: float
    language: Optional[str]
    owner: Optional[int]
    visible: bool

    def has_asked_size(self, width: int, height: int) -> bool:
        """One side grown at the most. What fails after the detection is told by nothing else."""
        asked = self.width // 4 * 4
        return width >= asked and height >= self.height and (width == asked or height == self.height)


def integer(value: Any, what: str, least: int, most: int) -> int:
    if isinstance(value, bool):
        raise TypeError(f"{what} is an integer, not a bool")
    try:
        number = operator.index(value)
    except TypeError:
        raise TypeError(f"{what} is an integer, not {type(value).__name__}") from None
    if not least <= number <= most:
        raise ValueError(f"{what} is {least} to {most}, not {number}")
    return number


def _size(size: Any) -> Tuple[int, int]:
    try:
        width, height = size
    except TypeError:
        raise TypeError(f"size is a pair of integers, not {type(size).__name__}") from None
    except ValueError:
        raise ValueError("size is a pair: width and height") from None
    width = integer(width, "the width of size", MIN_SIDE, MAX_SIDE)
    height = integer(height, "the height of size", MIN_SIDE, MAX_SIDE)
    if width * height > MAX_PIXELS:
        raise ValueError(f"a portrait has at most {MAX_PIXELS} pixels, not {width}x{height}")
    return width, height


def _actions(actions: Any) -> FrozenSet[str]:
    if isinstance(actions, (str, bytes)):
        raise TypeError('actions are several names, such as ("crop", "colour"), not one string')
    try:
        names = list(actions)
    except TypeError:
        raise TypeError(f"actions are names, not {type(actions).__name__}") from None
    for name in names:
        if not isinstance(name, str):
            raise TypeError(f"the name of an action is a string, not {type(name).__name__}")
        if name not in ACTION_SLOTS:
            raise ValueError(f"the actions are {', '.join(ACTION_SLOTS)}, not {name!r}")
    return frozenset(names)


def _crop_ratio(ratio: Any) -> float:
    if isinstance(ratio, (bool, str, bytes)) or not hasattr(ratio, "__float__"):
        raise TypeError(f"crop_ratio is a number, not {type(ratio).__name__}")
    value = float(ratio)
    # As the library gets it: what is 0 in single precision is 0.
    if not math.isfinite(value) or value > MAX_CROP_RATIO or ctypes.c_float(value).value <= 0:
        raise ValueError(f"crop_ratio is above 0 and up to {MAX_CROP_RATIO:g}, not {value!r}")
    return value


def _language(language: Any) -> Optional[str]:
    if language is None:
        return None
    if not isinstance(language, (str, os.PathLike)):
        raise TypeError(f"language is the path of a file, not {type(language).__name__}")
    path = os.fsdecode(language)
    if not path or "\0" in path:
        raise ValueError("language is the path of a file")
    return path


def _owner(owner: Any) -> Optional[int]:
    return None if owner is None else integer(owner, "owner", 1, 2 ** (8 * ctypes.sizeof(ctypes.c_void_p)) - 1)


def settings(
    size: Any, actions: Iterable[str], crop_ratio: Any, language: Any, owner: Any, visible: Any
) -> Settings:
    """TypeError and ValueError tell what can't be."""
    width, height = _size(size)
    return Settings(
        width, height, _actions(actions), _crop_ratio(crop_ratio), _language(language), _owner(owner), bool(visible)
    )
