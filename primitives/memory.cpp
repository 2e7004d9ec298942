// Aligned storage: the heap's pointer stands in the word before each block, so that one word is all
// that a block costs beside its alignment.
#include "primitives/memory.h"

#include <cstdlib>
#include <cstring>
#include <limits>

namespace orvane {
namespace {

constexpr int32 kAlignment = 32;
// 4 bytes for the heap's pointer on a 32-bit system, 8 on a 64-bit one, and the way to the boundary.
constexpr std::size_t kOverhead = sizeof(void*) + kAlignment;

void* ZeroedFromHeap(std::size_t bytes) { return std::calloc(bytes, 1); }

HeapAllocator g_heapAllocator = ZeroedFromHeap;

void* UnsetFromHeap(std::size_t bytes) {
    return g_heapAllocator == ZeroedFromHeap ? std::malloc(bytes) : g_heapAllocator(bytes);
}

void* AlignedBlock(std::size_t length, HeapAllocator allocate = HeapAllocate) {
    auto* start = static_cast<unsigned char*>(allocate(length + kOverhead));
    if (start == nullptr) return nullptr;
    // The first boundary that leaves room for one pointer before it.
    const auto address = reinterpret_cast<std::uintptr_t>(start) + sizeof(void*) + kAlignment - 1;
    auto* block = start + (address / kAlignment * kAlignment - reinterpret_cast<std::uintptr_t>(start));
    std::memcpy(block - sizeof(void*), &start, sizeof(void*));
    return block;
}

template <typename T>
T* AllocatePixels(int32 width, int32 height, int32 pixelBytes, int32* step, HeapAllocator allocate = HeapAllocate) {
    if (step == nullptr) return nullptr;
    *step = 0;
    if (width < 1 || height < 1) return nullptr;
    const int64 row = (static_cast<int64>(width) * pixelBytes + kAlignment - 1) / kAlignment * kAlignment;
    // Divided, not multiplied: the product of the largest sizes leaves 64 bits.
    if (row > std::numeric_limits<int32>::max() / height) return nullptr;
    *step = static_cast<int32>(row);
    return static_cast<T*>(AlignedBlock(static_cast<std::size_t>(row * height), allocate));
}

} // namespace

void* HeapAllocate(std::size_t bytes) { return g_heapAllocator(bytes); }

void HeapFree(void* p) { std::free(p); }

void SetHeapAllocator(HeapAllocator allocator) { g_heapAllocator = allocator != nullptr ? allocator : ZeroedFromHeap; }

uint8* AllocateUnset(int32 width, int32 height, int32 channels) {
    int32 step;
    return AllocatePixels<uint8>(width, height, channels, &step, UnsetFromHeap);
}

namespace generic {

void* primMalloc(int32 length) { return length < 1 ? nullptr : AlignedBlock(static_cast<std::size_t>(length)); }

void primFree(void* p) {
    if (p == nullptr) return;
    void* start;
    std::memcpy(&start, static_cast<unsigned char*>(p) - sizeof(void*), sizeof(void*));
    HeapFree(start);
}

void primFreeImage(void* p) { primFree(p); }

uint8* primAlloc_8u_C1(int32 width, int32 height, int32* step) { return AllocatePixels<uint8>(width, height, 1, step); }

uint8* primAlloc_8u_C3(int32 width, int32 height, int32* step) { return AllocatePixels<uint8>(width, height, 3, step); }

int16* primAlloc_16s_C1(int32 width, int32 height, int32* step) {
    return AllocatePixels<int16>(width, height, 2, step);
}

int16* primAlloc_16s_C3(int32 width, int32 height, int32* step) {
    return AllocatePixels<int16>(width, height, 6, step);
}

uint16* primAlloc_16u_C1(int32 width, int32 height, int32* step) {
    return AllocatePixels<uint16>(width, height, 2, step);
}

uint16* primAlloc_16u_C3(int32 width, int32 height, int32* step) {
    return AllocatePixels<uint16>(width, height, 6, step);
}

float* primAlloc_32f_C1(int32 width, int32 height, int32* step) {
    return AllocatePixels<float>(width, height, 4, step);
}

float* primAlloc_32f_C3(int32 width, int32 height, int32* step) {
    return AllocatePixels<float>(width, height, 12, step);
}

float* primAlloc_32fc_C1(int32 width, int32 height, int32* step) {
    return AllocatePixels<float>(width, height, 8, step);
}

} // namespace generic
} // namespace orvane
