"""Memory blocks that cross the library's border. Whoever receives a block owns it and frees it.

On Windows a block is a movable global block; elsewhere a pointer with a tag and the size in front, in storage of the
C library's own malloc, as ``include/orvane/orvane.h`` makes it.
"""

from __future__ import annotations

import ctypes
import sys
from typing import Any, Optional, Tuple

from ._rows import Buffer
from .errors import LockError, OutOfMemoryError

_TAG = b"orvblock"
_PREFIX = 16


class TaggedBlocks:
    """Blocks with a tag in front."""

    def __init__(self) -> None:
        system = ctypes.CDLL(None)  # the process's own malloc, whichever that is
        self._calloc = system.calloc
        self._calloc.restype = ctypes.c_void_p
        self._calloc.argtypes = (ctypes.c_size_t, ctypes.c_size_t)
        self._free = system.free
        self._free.restype = None
        self._free.argtypes = (ctypes.c_void_p,)

    def allocate(self, size: int) -> Optional[int]:
        start = self._calloc(1, size + _PREFIX)
        if start is None:
            return None
        ctypes.memmove(start, _TAG, len(_TAG))
        ctypes.c_uint64.from_address(start + 8).value = size
        return int(start) + _PREFIX

    def lock(self, block: int) -> Optional[int]:
        tagged = block != 0 and ctypes.string_at(block - _PREFIX, len(_TAG)) == _TAG
        return block if tagged else None

    def unlock(self, block: int) -> None:
        pass

    def size(self, block: int) -> int:
        return 0 if self.lock(block) is None else int(ctypes.c_uint64.from_address(block - 8).value)

    def free(self, block: int) -> None:
        if self.lock(block) is None:
            return
        ctypes.memset(block - _PREFIX, 0, _PREFIX)
        self._free(block - _PREFIX)


class GlobalBlocks:
    """Movable global blocks of Windows."""

    _MOVEABLE_AND_ZEROED = 0x0002 | 0x0040

    def __init__(self, kernel32: Any) -> None:
        handle, size = ctypes.c_void_p, ctypes.c_size_t
        self._alloc = self._function(kernel32.GlobalAlloc, handle, ctypes.c_uint, size)
        self._lock = self._function(kernel32.GlobalLock, handle, handle)
        self._unlock = self._function(kernel32.GlobalUnlock, ctypes.c_int, handle)
        self._size = self._function(kernel32.GlobalSize, size, handle)
        self._free = self._function(kernel32.GlobalFree, handle, handle)

    @staticmethod
    def _function(function: Any, result: Any, *arguments: Any) -> Any:
        function.restype = result
        function.argtypes = arguments
        return function

    def allocate(self, size: int) -> Optional[int]:
        block: Optional[int] = self._alloc(self._MOVEABLE_AND_ZEROED, size)
        return block

    def lock(self, block: int) -> Optional[int]:
        place: Optional[int] = self._lock(block) if block else None
        return place

    def unlock(self, block: int) -> None:
        self._unlock(block)

    def size(self, block: int) -> int:
        return int(self._size(block)) if block else 0

    def free(self, block: int) -> None:
        if block:
            self._free(block)


def system_blocks() -> Any:
    """The blocks of this system."""
    if sys.platform == "win32":
        return GlobalBlocks(ctypes.WinDLL("kernel32"))
    return TaggedBlocks()


class Block:
    """One block, freed at the end of a ``with``."""

    def __init__(self, blocks: Any, handle: int) -> None:
        self._blocks = blocks
        self.handle = handle

    @classmethod
    def holding(cls, blocks: Any, *parts: Buffer) -> "Block":
        """A new block with these parts one after the other."""
        handle = blocks.allocate(sum(len(part) for part in parts))
        if handle is None:
            raise OutOfMemoryError("no memory for the picture")
        block = cls(blocks, handle)
        try:
            block._write(parts)
        except BaseException:
            block.free()
            raise
        return block

    def _write(self, parts: Tuple[Buffer, ...]) -> None:
        place = self._place()
        try:
            for part in parts:
                if isinstance(part, bytes):
                    ctypes.memmove(place, part, len(part))
                else:  # what may be written is moved without a copy in between
                    ctypes.memmove(place, (ctypes.c_char * len(part)).from_buffer(part), len(part))
                place += len(part)
        finally:
            self._blocks.unlock(self.handle)

    def read(self) -> bytes:
        place = self._place()
        try:
            return ctypes.string_at(place, self._blocks.size(self.handle))
        finally:
            self._blocks.unlock(self.handle)

    def _place(self) -> int:
        place: Optional[int] = self._blocks.lock(self.handle)
        if place is None:
            raise LockError("a memory block could not be locked")
        return place

    def free(self) -> None:
        handle, self.handle = self.handle, 0
        if handle:
            self._blocks.free(handle)

    def __enter__(self) -> "Block":
        return self

    def __exit__(self, *_: object) -> None:
        self.free()
