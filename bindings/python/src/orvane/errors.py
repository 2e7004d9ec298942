"""What can go wrong, one class for each result code of the library."""

from __future__ import annotations

from typing import Dict, Optional, Type


class OrvaneError(Exception):
    """The base of all errors of this package.

    ``code`` is the library's result code, or ``None`` where the library was not asked.
    """

    code: Optional[int] = None


class LibraryNotFoundError(OrvaneError):
    """The library was not found, or what was found is none; the message lists where it was looked for."""


class NoFaceError(OrvaneError):
    """No face was found in the picture, and no operator marked one."""

    code = 10


class CancelledError(OrvaneError):
    """The operator cancelled."""

    code = 20


class LockError(OrvaneError):
    """A memory block could not be locked."""

    code = -1


class BadArgumentError(OrvaneError):
    """The library refuses an argument: a picture too small to look for a face, a language file that can't be opened."""

    code = -10


class CaptureError(OrvaneError):
    """The camera could not be started: there is none of that number, another program has it, or no window opens."""

    code = -30


class StepError(OrvaneError):
    """A step of the detection or a correction failed."""

    code = -40


class OutOfMemoryError(OrvaneError, MemoryError):
    """The library had not enough memory."""

    code = -50


class NoPictureError(OrvaneError):
    """The library found no usable picture in what it got."""

    code = -60


class NoClassifierError(OrvaneError):
    """The classifier ``Orvane.dat`` is missing beside the library, or unusable."""

    code = -70


class NoSessionError(OrvaneError):
    """No session, no output, or a bad window handle; also a call from inside another call of the same thread."""

    code = -80


_BY_CODE: Dict[int, Type[OrvaneError]] = {
    kind.code: kind
    for kind in (
        NoFaceError,
        CancelledError,
        LockError,
        BadArgumentError,
        CaptureError,
        StepError,
        OutOfMemoryError,
        NoPictureError,
        NoClassifierError,
        NoSessionError,
    )
    if kind.code is not None
}

_MEANINGS: Dict[int, str] = {
    10: "no face was found",
    20: "the operator cancelled",
    -1: "a memory block could not be locked",
    -10: "bad argument or size",
    -30: "the camera could not be started",
    -40: "a step of the detection failed",
    -50: "out of memory",
    -60: "no usable picture",
    -70: "the classifier Orvane.dat is missing beside the library or unusable",
    -80: "no session, bad window handle or no output",
}


def error_for(code: int, what: str) -> OrvaneError:
    """The error for a result code that is not 0; ``what`` names what was being done."""
    error = _BY_CODE.get(code, OrvaneError)(f"{what}: {_MEANINGS.get(code, 'unknown result')} ({code})")
    error.code = code
    return error


def check(code: int, what: str) -> None:
    """Raises the error for a result code, unless it is 0."""
    if code != 0:
        raise error_for(code, what)
