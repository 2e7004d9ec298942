"""The functions of the package."""

from __future__ import annotations

import os
from pathlib import Path
from typing import TYPE_CHECKING, Any, Iterable, NamedTuple, Optional, Tuple, Union, overload

from . import _settings
from ._kinds import best_kind, taken
from ._library import the_library
from ._session import live_session, picture_session
from ._version import VERSION
from .picture import Picture

if TYPE_CHECKING:
    import numpy as np
    from PIL import Image

_File = Union[str, "os.PathLike[str]", bytes, bytearray, memoryview]
_Path = Union[str, "os.PathLike[str]"]


@overload
def portrait(
    image: Picture,
    size: Tuple[int, int] = ...,
    actions: Iterable[str] = ...,
    crop_ratio: float = ...,
    *,
    language: Optional[_Path] = ...,
    visible: bool = ...,
    owner: Optional[int] = ...,
) -> Picture: ...


@overload
def portrait(
    image: "np.ndarray[Any, Any]",
    size: Tuple[int, int] = ...,
    actions: Iterable[str] = ...,
    crop_ratio: float = ...,
    *,
    language: Optional[_Path] = ...,
    visible: bool = ...,
    owner: Optional[int] = ...,
) -> "np.ndarray[Any, Any]": ...


@overload
def portrait(
    image: Union["Image.Image", _File],
    size: Tuple[int, int] = ...,
    actions: Iterable[str] = ...,
    crop_ratio: float = ...,
    *,
    language: Optional[_Path] = ...,
    visible: bool = ...,
    owner: Optional[int] = ...,
) -> "Image.Image": ...


def portrait(
    image: Any,
    size: Tuple[int, int] = _settings.DEFAULT_SIZE,
    actions: Iterable[str] = _settings.DEFAULT_ACTIONS,
    crop_ratio: float = _settings.DEFAULT_CROP_RATIO,
    *,
    language: Optional[_Path] = None,
    visible: bool = False,
    owner: Optional[int] = None,
) -> Any:
    """Finds the face in a photograph and makes the portrait.

    ``image`` is an image of Pillow, a NumPy array of uint8 (height x width x 3, red first, or height x width for
    grey), a :class:`Picture`, a path, or a picture file's bytes. The portrait is of the same kind; for a path and
    for bytes, which Pillow reads, an image of Pillow. The image itself stays as it is. Of an image of Pillow the
    camera's orientation is applied, and what is transparent is laid over white.

    ``size`` is the portrait's width and height, each from 75 to 32767. The width is brought down to a multiple of 4;
    where the crop has other proportions, because the face is near the photo's edge, one side grows.

    ``actions`` are what is done, of ``"crop"``, ``"background"``, ``"colour"`` and ``"rotation"``, whatever their
    order. Without ``"crop"`` the portrait keeps the photo's size. ``"rotation"`` is the operator's: without a window
    it changes nothing.

    ``crop_ratio`` is how much is left around the face, above 0 and up to 10: the crop is three times as many face
    heights high.

    ``visible`` shows the operator's window, where the library can open one; ``language`` is a file with its texts,
    an absolute path or one in the library's folder; ``owner`` is the native handle of the window that it belongs to.
    Without a face the operator is asked also where ``visible`` is false, if a window can be opened.

    Raises :class:`NoFaceError` without a face, :class:`CancelledError` when the operator cancels, another
    :class:`OrvaneError` when something fails; TypeError and ValueError for arguments that can't be.
    """
    chosen = _settings.settings(size, actions, crop_ratio, language, owner, visible)
    rows, back = taken(image)
    return back(picture_session(rows, chosen))


def review(
    image: Any,
    size: Tuple[int, int] = _settings.DEFAULT_SIZE,
    actions: Iterable[str] = _settings.DEFAULT_ACTIONS,
    crop_ratio: float = _settings.DEFAULT_CROP_RATIO,
    *,
    language: Optional[_Path] = None,
    owner: Optional[int] = None,
) -> Any:
    """:func:`portrait` with the operator's window, in which the operator confirms or marks the face and adjusts
    what ``actions`` allow. Where no window can be opened it works without one.
    """
    return portrait(image, size, actions, crop_ratio, language=language, visible=True, owner=owner)


def live(
    device: int = 0,
    size: Tuple[int, int] = _settings.DEFAULT_SIZE,
    actions: Iterable[str] = _settings.DEFAULT_ACTIONS,
    crop_ratio: float = _settings.DEFAULT_CROP_RATIO,
    *,
    language: Optional[_Path] = None,
    owner: Optional[int] = None,
) -> Any:
    """Makes a portrait out of a camera's live picture, always with the operator's window.

    ``device`` is the camera's number, from 0; the rest is as of :func:`portrait`. What the operator accepts is given
    as it is, as an image of Pillow where Pillow is installed, else as a :class:`Picture`.

    Raises :class:`CaptureError` when the camera can't be started or no window can be opened.
    """
    number = _settings.integer(device, "device", 0, 2**31 - 1)
    chosen = _settings.settings(size, actions, crop_ratio, language, owner, True)
    rows = live_session(number, chosen)
    return best_kind()(rows)


class Info(NamedTuple):
    """What :func:`info` tells. A classifier that is missing fails the first portrait."""

    version: str
    library: Path
    classifier: Path
    has_classifier: bool


def info() -> Info:
    """The package's version, the library's file and the classifier's. Raises LibraryNotFoundError without a library."""
    library = the_library()
    classifier = Path(library.folder, "Orvane.dat")
    return Info(VERSION, Path(library.file), classifier, classifier.is_file())


def version() -> str:
    """The version of this package, which is that of the library it was made with."""
    return VERSION
