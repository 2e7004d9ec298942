// Aligned storage for pixels: every block starts at a 32-byte boundary and comes zeroed, so that no
// result ever depends on what the heap held before. Who is about to write all of it may do without the zeros.
#pragma once

#include "primitives/types.h"

namespace orvane {
namespace generic {

/// A zeroed block of at least `length` bytes at a 32-byte boundary; null when `length` is below 1 or
/// the heap is exhausted. Owned by the caller, who gives it back with `primFree`.
void* primMalloc(int32 length);

/// Gives a block of `primMalloc` back; null is ignored.
void primFree(void* p);

/// Gives the storage of an image allocator back; null is ignored.
void primFreeImage(void* p);

/// The image allocators: zeroed storage for `width` by `height` pixels. `*step` receives the bytes
/// of a row, rounded up to a multiple of 32. Null when `step` is null or memory is exhausted, also
/// where step times height passes 2^31 - 1 bytes; null with `*step` 0 when a size is below 1.
uint8* primAlloc_8u_C1(int32 width, int32 height, int32* step);
uint8* primAlloc_8u_C3(int32 width, int32 height, int32* step);
int16* primAlloc_16s_C1(int32 width, int32 height, int32* step);
int16* primAlloc_16s_C3(int32 width, int32 height, int32* step);
uint16* primAlloc_16u_C1(int32 width, int32 height, int32* step);
uint16* primAlloc_16u_C3(int32 width, int32 height, int32* step);
float* primAlloc_32f_C1(int32 width, int32 height, int32* step);
float* primAlloc_32f_C3(int32 width, int32 height, int32* step);
float* primAlloc_32fc_C1(int32 width, int32 height, int32* step);

} // namespace generic

/// Zeroed memory from the heap behind all pixel storage, or null. `HeapFree` gives it back.
void* HeapAllocate(std::size_t bytes);
void HeapFree(void* p);

/// Storage for 8-bit pixels of 1 or 3 channels as from primAlloc_8u, but not zeroed: for whoever writes every byte.
uint8* AllocateUnset(int32 width, int32 height, int32 channels);

/// Replaces the allocator behind all of these (null restores the heap's). It must return zeroed
/// memory that `std::free` takes, or null: tests let it fail to play an exhausted heap.
using HeapAllocator = void* (*)(std::size_t bytes);
void SetHeapAllocator(HeapAllocator allocator);

} // namespace orvane
