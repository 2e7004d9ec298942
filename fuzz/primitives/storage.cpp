// Storage: aligned, zeroed, of the size that was asked for, and given back.
#include "fuzz/primitives/judge.h"

#include <algorithm>
#include <cstring>

namespace orvane::fuzz {
namespace {

constexpr int32 kAlignment = 32;

void ExpectZeroed(const void* block, std::size_t bytes) {
    const auto* first = static_cast<const uint8*>(block);
    Expect(reinterpret_cast<std::uintptr_t>(block) % kAlignment == 0, "storage is aligned");
    Expect(std::all_of(first, first + bytes, [](uint8 byte) { return byte == 0; }), "storage is zeroed");
}

void JudgeBlock(Judge& j) {
    const int32 length = j.choices.Int(0, 3) == 3 ? -j.choices.Int(0, 3) : j.choices.Int(1, 5000);
    void* block = primMalloc(length);
    Expect((block != nullptr) == (length >= 1), "there is a block where a length is");
    if (block == nullptr) return;
    ExpectZeroed(block, static_cast<std::size_t>(length));
    std::memset(block, 0xA5, static_cast<std::size_t>(length));
    primFree(block);
    primFree(nullptr);
}

/// @param bytes of a pixel
template <typename T>
void JudgeImage(Judge& j, T* (*allocate)(int32, int32, int32*), int32 bytes) {
    const bool usual = j.choices.Int(0, 3) != 3;
    const int32 width = usual ? j.choices.Int(0, 100) : j.choices.AnyInt();
    const int32 height = usual ? j.choices.Int(0, 40) : j.choices.AnyInt();
    const int64 row = (int64{std::max(width, 0)} * bytes + kAlignment - 1) / kAlignment * kAlignment;
    const bool fits = width >= 1 && height >= 1 && row <= 0x7FFFFFFF / height;
    if (fits && row * height > (1 << 20)) return; // would take the fuzzer's time
    int32 step = -1;
    T* image = allocate(width, height, &step);
    Expect((image != nullptr) == fits, "there is an image where its bytes can be counted");
    Expect(allocate(1, 1, nullptr) == nullptr, "without a step there is none");
    if (image == nullptr) return;
    Expect(step == row, "a step is rounded up");
    ExpectZeroed(image, static_cast<std::size_t>(row * height));
    std::memset(static_cast<void*>(image), 0xA5, static_cast<std::size_t>(row * height));
    primFreeImage(image);
    primFreeImage(nullptr);
}

} // namespace

void Judge_primMalloc(Judge& j) { JudgeBlock(j); }
void Judge_primFree(Judge& j) { JudgeBlock(j); }
void Judge_primFreeImage(Judge& j) { JudgeImage(j, primAlloc_8u_C1, 1); }
void Judge_primAlloc_8u_C1(Judge& j) { JudgeImage(j, primAlloc_8u_C1, 1); }
void Judge_primAlloc_8u_C3(Judge& j) { JudgeImage(j, primAlloc_8u_C3, 3); }
void Judge_primAlloc_16s_C1(Judge& j) { JudgeImage(j, primAlloc_16s_C1, 2); }
void Judge_primAlloc_16s_C3(Judge& j) { JudgeImage(j, primAlloc_16s_C3, 6); }
void Judge_primAlloc_16u_C1(Judge& j) { JudgeImage(j, primAlloc_16u_C1, 2); }
void Judge_primAlloc_16u_C3(Judge& j) { JudgeImage(j, primAlloc_16u_C3, 6); }
void Judge_primAlloc_32f_C1(Judge& j) { JudgeImage(j, primAlloc_32f_C1, 4); }
void Judge_primAlloc_32f_C3(Judge& j) { JudgeImage(j, primAlloc_32f_C3, 12); }
void Judge_primAlloc_32fc_C1(Judge& j) { JudgeImage(j, primAlloc_32fc_C1, 8); }

} // namespace orvane::fuzz
