"""Where the library lies: named by the environment, beside this package, or in the system; in this order."""

from __future__ import annotations

import ctypes
import ctypes.util
import os
import sys
from typing import Any, Iterator, List, Tuple

from .errors import LibraryNotFoundError

VARIABLE = "ORVANE_LIBRARY"

FUNCTIONS = (
    "orv_InitDLL",
    "orv_ReleaseDLL",
    "orv_SetLanguageFile",
    "orv_SetOwnerWindow",
    "orv_SetVisibleMode",
    "orv_SetSizeOutputImage",
    "orv_SetFaceCropRatio",
    "orv_EnableAction",
    "orv_GetBitDepth",
    "orv_DetectFacePicture",
    "orv_DetectFaceLive",
    "orv_GetOutputImage",
)


def _file_names() -> Tuple[str, ...]:
    return ("Orvane.dll",) if sys.platform == "win32" else ("liborvane.so.1", "liborvane.so")


def _in_folder(folder: str) -> List[str]:
    return [os.path.join(folder, name) for name in _file_names()]


def _candidates() -> Iterator[Tuple[str, str]]:
    """Pairs of a place in words and what is loaded from there. A file that is named is the only one looked for."""
    named = os.environ.get(VARIABLE)
    if named:
        for file in _in_folder(named) if os.path.isdir(named) else [named]:
            yield VARIABLE, os.path.abspath(file)
        return
    for file in _in_folder(os.path.dirname(os.path.abspath(__file__))):
        yield "beside the package", file
    found = ctypes.util.find_library("orvane")  # only now: it starts other programs to find out
    if found:
        yield "in the system", found
    for name in _file_names():
        if name != found:
            yield "in the system", name


def _why_not(place: str, name: str) -> Tuple[Any, str]:
    """The library, or None and what stands against this candidate."""
    if os.path.dirname(name) and not os.path.exists(name):
        return None, f"{name} ({place}): no such file"
    try:
        library = ctypes.CDLL(name)
    except OSError as error:
        return None, f"{name} ({place}): {error}"
    missing = [function for function in FUNCTIONS if not hasattr(library, function)]
    if missing:
        return None, f"{name} ({place}): it is not this library, it has no {missing[0]}"
    return library, ""


def load_library() -> ctypes.CDLL:
    """Loads the first one that is found; LibraryNotFoundError tells of every place."""
    reasons = []
    for place, name in _candidates():
        library, reason = _why_not(place, name)
        if library is not None:
            return library  # type: ignore[no-any-return]
        reasons.append(reason)
    looked = "\n".join(f"  {reason}" for reason in reasons)
    raise LibraryNotFoundError(
        f"the Orvane library was not found; it was looked for at\n{looked}\n"
        f"Set {VARIABLE} to its file or folder, or install a wheel of this package that brings it."
    )
