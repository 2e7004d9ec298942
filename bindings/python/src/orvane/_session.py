"""A session for each call: opened, set, run, collected and closed, so that nothing of a call reaches the next."""

from __future__ import annotations

import ctypes
import os
import sys
from contextlib import contextmanager
from typing import Iterator, Optional

from ._blocks import Block
from ._gate import gate
from ._library import Library, the_library
from ._marked import is_marked_portrait
from ._rows import Rows, bitmap_header, rows_of_bitmap
from ._settings import ACTION_SLOTS, Settings
from .errors import NoFaceError, NoPictureError, NoSessionError, StepError, check, error_for

_NO_FACE = NoFaceError.code
_FAILED = "no portrait was made"


@contextmanager
def _session(chosen: Settings) -> Iterator[Library]:
    library = the_library()
    functions = library.functions
    try:
        check(functions.orv_InitDLL(), "the session was not opened")
        _apply(library, chosen)
        yield library
    finally:
        functions.orv_ReleaseDLL()


def _apply(library: Library, chosen: Settings) -> None:
    functions = library.functions
    check(functions.orv_SetVisibleMode(1 if chosen.visible else 0), "visible was not set")
    check(functions.orv_SetSizeOutputImage(chosen.width, chosen.height), "size was not set")
    check(functions.orv_SetFaceCropRatio(chosen.crop_ratio), "crop_ratio was not set")
    for name, slot in ACTION_SLOTS.items():
        check(functions.orv_EnableAction(slot, 1 if name in chosen.actions else 0), f"the action {name} was not set")
    if chosen.language is not None:
        path = _language_path(library, chosen.language)
        check(functions.orv_SetLanguageFile(path), f"the language file {chosen.language!r} was not opened")
    if chosen.owner is not None:
        check(functions.orv_SetOwnerWindow(chosen.owner), "owner was not set")


def _language_path(library: Library, language: str) -> bytes:
    """The library takes every path from its own folder, one letter a byte on Windows."""
    if os.path.isabs(language):
        language = os.path.relpath(language, library.folder)
    return language.encode("latin-1") if sys.platform == "win32" else os.fsencode(language)


def _output(library: Library) -> Rows:
    handle = ctypes.c_void_p()
    check(library.functions.orv_GetOutputImage(ctypes.byref(handle)), "there is no portrait")
    with Block(library.blocks, handle.value or 0) as block:
        packed = block.read()
    try:
        return rows_of_bitmap(packed)
    except ValueError as error:
        raise NoPictureError(f"the library's output is of no use: {error}") from error


def _output_if_any(library: Library) -> Optional[Rows]:
    """None where the library kept none: a correction failed, or it found no face and nobody was asked."""
    try:
        return _output(library)
    except NoSessionError:
        return None


def picture_session(photo: Rows, chosen: Settings) -> Rows:
    """The portrait of a photograph."""
    with gate.entered(), _session(chosen) as library:
        with Block.holding(library.blocks, bitmap_header(photo.width, photo.height), photo.data) as block:
            result = library.functions.orv_DetectFacePicture(block.handle)
        if result not in (0, _NO_FACE):
            raise error_for(result, _FAILED)
        output = _output_if_any(library)
        if result == _NO_FACE:
            if output is None or not is_marked_portrait(output, photo, chosen):
                raise error_for(result, _FAILED)
            return output
        # In a window the operator saw what they took.
        cropped = "crop" in chosen.actions and not chosen.visible
        if output is None or (cropped and not chosen.has_asked_size(output.width, output.height)):
            raise StepError(f"{_FAILED}: a correction failed; a greater crop_ratio may help (-40)")
        return output


def live_session(device: int, chosen: Settings) -> Rows:
    """The portrait out of a camera's live picture."""
    with gate.entered(), _session(chosen) as library:
        check(library.functions.orv_DetectFaceLive(device), _FAILED)
        return _output(library)
