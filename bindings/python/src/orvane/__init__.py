"""Portraits for identity cards out of photographs: the Orvane library from Python.

    >>> import orvane
    >>> orvane.portrait("photo.jpg").save("portrait.png")

The library has one session a process: calls from several threads wait for each other, several processes work at the
same time. Don't use the library through another binding or host in the same process.
"""

from __future__ import annotations

from .api import Info, info, live, portrait, review, version
from .errors import (
    BadArgumentError,
    CancelledError,
    CaptureError,
    LibraryNotFoundError,
    LockError,
    NoClassifierError,
    NoFaceError,
    NoPictureError,
    NoSessionError,
    OrvaneError,
    OutOfMemoryError,
    StepError,
)
from .picture import Picture

__version__ = version()

__all__ = [
    "BadArgumentError",
    "CancelledError",
    "CaptureError",
    "Info",
    "LibraryNotFoundError",
    "LockError",
    "NoClassifierError",
    "NoFaceError",
    "NoPictureError",
    "NoSessionError",
    "OrvaneError",
    "OutOfMemoryError",
    "Picture",
    "StepError",
    "info",
    "live",
    "portrait",
    "review",
    "version",
]
