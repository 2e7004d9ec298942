#include "primitives/memory.h"

#include "primitives/heap_array.h"
#include "primitives/primitives.h"
#include "tests/support/heap_limit.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <limits>

namespace orvane::test {
namespace {

constexpr int32 kMost = std::numeric_limits<int32>::max();

bool IsAligned(const void* p) { return reinterpret_cast<std::uintptr_t>(p) % 32 == 0; }

bool IsZero(const void* p, std::size_t bytes) {
    const auto* first = static_cast<const uint8*>(p);
    return std::all_of(first, first + bytes, [](uint8 byte) { return byte == 0; });
}

TEST(Malloc, BlocksBeginAtA32ByteBoundaryAndAreZeroed) {
    for (int32 round = 0; round < 3; ++round) { // later rounds meet memory that was used before
        for (const int32 length : {1, 2, 31, 32, 33, 4095, 100000}) {
            void* p = primMalloc(length);
            ASSERT_NE(nullptr, p) << length;
            EXPECT_TRUE(IsAligned(p)) << length;
            EXPECT_TRUE(IsZero(p, static_cast<std::size_t>(length))) << length;
            std::memset(p, 0xEE, static_cast<std::size_t>(length));
            primFree(p);
        }
    }
}

TEST(Malloc, LengthsBelowOneGiveNull) {
    EXPECT_EQ(nullptr, primMalloc(0));
    EXPECT_EQ(nullptr, primMalloc(-1));
    EXPECT_EQ(nullptr, primMalloc(std::numeric_limits<int32>::min()));
}

TEST(Malloc, AnExhaustedHeapGivesNull) {
    const HeapLimit limit(0);
    EXPECT_EQ(nullptr, primMalloc(1));
    EXPECT_EQ(nullptr, primMalloc(kMost));
}

TEST(Malloc, TheLargestLengthAsksForMoreThanItselfWithoutOverflow) {
    static std::size_t asked;
    SetHeapAllocator([](std::size_t bytes) -> void* {
        asked = bytes;
        return nullptr;
    });
    EXPECT_EQ(nullptr, primMalloc(kMost));
    SetHeapAllocator(nullptr);
    EXPECT_EQ(static_cast<std::size_t>(kMost) + 32 + sizeof(void*), asked);
}

TEST(AllocateUnset, HasTheBytesOfAnImageAtABoundaryOrNone) {
    for (const int32 channels : {1, 3}) {
        uint8* p = AllocateUnset(33, 5, channels);
        ASSERT_NE(nullptr, p);
        EXPECT_TRUE(IsAligned(p));
        std::memset(p, 0xEE, static_cast<std::size_t>(channels == 1 ? 64 : 128) * 5); // all is writable
        primFreeImage(p);
        EXPECT_EQ(nullptr, AllocateUnset(0, 5, channels));
        EXPECT_EQ(nullptr, AllocateUnset(kMost, kMost, channels));
        const HeapLimit limit(0);
        EXPECT_EQ(nullptr, AllocateUnset(33, 5, channels));
    }
}

TEST(Free, IgnoresNull) {
    primFree(nullptr);
    primFreeImage(nullptr);
    HeapFree(nullptr);
}

TEST(HeapAllocator, NullRestoresTheHeap) {
    { const HeapLimit limit(0); }
    void* p = primMalloc(10);
    EXPECT_NE(nullptr, p);
    primFree(p);
}

/// An image allocator with its element type taken away.
struct Allocator {
    const char* name;
    int64 pixelBytes;
    void* (*allocate)(int32 width, int32 height, int32* step);
};

#define ORVANE_TEST_ALLOCATOR(name, bytes)                                                                             \
    Allocator {                                                                                                        \
#name, bytes, [](int32 width, int32 height, int32 * step) -> void* { return name(width, height, step); }       \
    }

const Allocator kAllocators[] = {
    ORVANE_TEST_ALLOCATOR(primAlloc_8u_C1, 1),   ORVANE_TEST_ALLOCATOR(primAlloc_16s_C1, 2),
    ORVANE_TEST_ALLOCATOR(primAlloc_16u_C1, 2),  ORVANE_TEST_ALLOCATOR(primAlloc_8u_C3, 3),
    ORVANE_TEST_ALLOCATOR(primAlloc_32f_C1, 4),  ORVANE_TEST_ALLOCATOR(primAlloc_16s_C3, 6),
    ORVANE_TEST_ALLOCATOR(primAlloc_16u_C3, 6),  ORVANE_TEST_ALLOCATOR(primAlloc_32fc_C1, 8),
    ORVANE_TEST_ALLOCATOR(primAlloc_32f_C3, 12),
};
#undef ORVANE_TEST_ALLOCATOR

TEST(ImageAllocators, RowsAreRoundedUpTo32BytesAndEverythingIsZero) {
    for (const Allocator& a : kAllocators) {
        for (const int32 width : {1, 2, 3, 5, 8, 10, 11, 16, 31, 32, 33, 100}) {
            int32 step = -1;
            void* p = a.allocate(width, 7, &step);
            ASSERT_NE(nullptr, p) << a.name << " of " << width;
            EXPECT_EQ((width * a.pixelBytes + 31) / 32 * 32, step) << a.name << " of " << width;
            EXPECT_TRUE(IsAligned(p)) << a.name;
            EXPECT_TRUE(IsZero(p, static_cast<std::size_t>(step) * 7)) << a.name;
            std::memset(p, 0xEE, static_cast<std::size_t>(step) * 7);
            primFreeImage(p);
        }
    }
}

TEST(ImageAllocators, ThreeChannelsOfTenPixelsFitOneStepAndOfElevenTwo) {
    int32 step = 0;
    primFreeImage(primAlloc_8u_C3(10, 1, &step));
    EXPECT_EQ(32, step);
    primFreeImage(primAlloc_8u_C3(11, 1, &step));
    EXPECT_EQ(64, step);
}

TEST(ImageAllocators, ASizeBelowOneGivesNullAndAStepOfZero) {
    for (const Allocator& a : kAllocators) {
        for (const auto& [width, height] : {std::pair{0, 5}, {5, 0}, {-1, 5}, {5, -1}, {0, 0}}) {
            int32 step = 77;
            EXPECT_EQ(nullptr, a.allocate(width, height, &step)) << a.name;
            EXPECT_EQ(0, step) << a.name << " of " << width << "x" << height;
        }
    }
}

TEST(ImageAllocators, WithoutAPlaceForTheStepThereIsNoImage) {
    for (const Allocator& a : kAllocators) EXPECT_EQ(nullptr, a.allocate(5, 5, nullptr)) << a.name;
}

TEST(ImageAllocators, SizesBeyondTheLargestBlockGiveNull) {
    for (const Allocator& a : kAllocators) {
        for (const auto& [width, height] : {std::pair{kMost, kMost}, {kMost, 2}, {65536, 65536}, {1, kMost / 32 + 1}}) {
            int32 step = 77;
            EXPECT_EQ(nullptr, a.allocate(width, height, &step)) << a.name << " of " << width << "x" << height;
        }
    }
}

TEST(ImageAllocators, AnExhaustedHeapGivesNull) {
    const HeapLimit limit(0);
    for (const Allocator& a : kAllocators) {
        int32 step = 77;
        EXPECT_EQ(nullptr, a.allocate(5, 5, &step)) << a.name;
    }
}

TEST(HeapArray, HoldsZeroedElementsOrSaysThatItDoesNot) {
    HeapArray<double> array;
    EXPECT_EQ(nullptr, array.data());
    ASSERT_TRUE(array.Allocate(100));
    EXPECT_TRUE(IsZero(array.data(), 800));
    array[99] = 1.0;

    for (const int64 count : {int64{0}, int64{-1}, std::numeric_limits<int64>::max()}) {
        HeapArray<double> refused;
        EXPECT_FALSE(refused.Allocate(count)) << count;
        EXPECT_EQ(nullptr, refused.data());
    }
    const HeapLimit limit(0);
    HeapArray<uint8> none;
    EXPECT_FALSE(none.Allocate(1));
}

} // namespace
} // namespace orvane::test
