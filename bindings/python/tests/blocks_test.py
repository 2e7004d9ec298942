"""Memory blocks are laid out as the library's header does it."""

from __future__ import annotations

import ctypes

import pytest

from orvane import LockError, OutOfMemoryError
from orvane._blocks import Block, GlobalBlocks, TaggedBlocks
from orvane._library import the_library


def test_a_tagged_block_has_tag_and_size_in_front():
    blocks = TaggedBlocks()
    block = blocks.allocate(5)
    assert ctypes.string_at(block - 16, 16) == b"orvblock" + (5).to_bytes(8, "little")
    assert ctypes.string_at(block, 5) == bytes(5)
    assert blocks.lock(block) == block and blocks.size(block) == 5
    blocks.free(block)
    blocks.free(0)


def test_a_foreign_pointer_is_no_block():
    blocks = TaggedBlocks()
    foreign = ctypes.create_string_buffer(64)
    place = ctypes.addressof(foreign) + 16
    assert blocks.lock(place) is None and blocks.size(place) == 0
    assert blocks.lock(0) is None and blocks.size(0) == 0
    blocks.free(place)
    with pytest.raises(LockError):
        Block(blocks, place).read()


def test_the_library_takes_a_block_for_its_own():
    library = the_library()
    header = bytearray(40)
    header[14] = 24
    with Block.holding(library.blocks, bytes(header)) as block:
        assert library.functions.orv_GetBitDepth(block.handle) == 24
    with Block.holding(library.blocks, bytes(15)) as block:
        assert library.functions.orv_GetBitDepth(block.handle) == -1


def test_parts_of_all_buffers_follow_each_other():
    with Block.holding(TaggedBlocks(), b"ab", bytearray(b"cd"), memoryview(bytearray(b"ef"))) as block:
        assert block.read() == b"abcdef"


class PlayedKernel:
    """Global blocks as Windows has them: a handle is no address, and a block may be larger than asked for."""

    class Function:
        def __init__(self, call):
            self.call = call

        def __call__(self, *arguments):
            assert len(arguments) == len(self.argtypes)
            return self.call(*arguments)

    def __init__(self, memory=True):
        self.blocks, self.locked, self.calls = {}, [], []
        self.memory = memory
        for name in ("GlobalAlloc", "GlobalLock", "GlobalUnlock", "GlobalSize", "GlobalFree"):
            setattr(self, name, self.Function(getattr(self, "_" + name)))

    def _GlobalAlloc(self, flags, size):
        assert flags == 0x42  # movable, zeroed
        if not self.memory:
            return None
        self.blocks[77] = ctypes.create_string_buffer(size + 8)
        return 77

    def _GlobalLock(self, handle):
        self.locked.append(handle)
        return ctypes.addressof(self.blocks[handle])

    def _GlobalUnlock(self, handle):
        self.locked.remove(handle)
        return 0

    def _GlobalSize(self, handle):
        return len(self.blocks[handle])

    def _GlobalFree(self, handle):
        del self.blocks[handle]


def test_a_global_block_is_locked_while_it_is_used_and_freed_after():
    kernel = PlayedKernel()
    with Block.holding(GlobalBlocks(kernel), b"ab", b"cd") as block:
        assert block.handle == 77
        assert block.read()[:4] == b"abcd"
        assert kernel.locked == []
    assert kernel.blocks == {}


def test_no_memory_for_a_block():
    with pytest.raises(OutOfMemoryError):
        Block.holding(GlobalBlocks(PlayedKernel(memory=False)), b"ab")
    with pytest.raises(MemoryError):
        Block.holding(GlobalBlocks(PlayedKernel(memory=False)), b"ab")
