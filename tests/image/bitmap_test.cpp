#include "image/bitmap.h"

#include "tests/support/heap_limit.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <limits>
#include <utility>

namespace orvane::test {
namespace {

void ExpectEmpty(const Bitmap& bitmap) {
    const BitmapHeader zero{};
    EXPECT_TRUE(bitmap.IsEmpty());
    EXPECT_EQ(nullptr, bitmap.Bits());
    EXPECT_EQ(0, bitmap.Width());
    EXPECT_EQ(0, bitmap.Height());
    EXPECT_EQ(0, std::memcmp(&zero, &bitmap.Header(), sizeof zero));
}

TEST(BitmapRow, IsPaddedToFourBytes) {
    struct {
        int32 width, bytes;
    } const cases[] = {{1, 4},  {2, 8},     {3, 12},     {4, 12},        {5, 16},
                       {8, 24}, {101, 304}, {640, 1920}, {32767, 98304}, {kMaxImageSide, 3 * kMaxImageSide}};
    for (const auto& c : cases) EXPECT_EQ(c.bytes, BitmapRowBytes(c.width)) << "width " << c.width;
}

TEST(BitmapRow, HasTheStepOfAThreeChannelImage) {
    for (int32 width = 1; width <= 300; ++width) {
        ImageBuffer image;
        image.width = width;
        image.channels = 3;
        image.depth = kDepth8u;
        EXPECT_EQ(image.Step(), BitmapRowBytes(width)) << "width " << width;
    }
}

TEST(Bitmap, BorrowedRowsAreShownAndNeverFreed) {
    uint8 rows[16] = {1, 2, 3};
    Bitmap bitmap;
    bitmap.Borrow(rows, 2, 2);
    EXPECT_EQ(rows, bitmap.Bits());
    EXPECT_EQ(2, bitmap.Width());
    EXPECT_EQ(16u, bitmap.Header().biSizeImage);
    Bitmap moved(std::move(bitmap));
    ExpectEmpty(bitmap); // NOLINT(bugprone-use-after-move): moved-from bitmaps are empty
    EXPECT_EQ(rows, moved.Bits());
    bitmap = std::move(moved);
    EXPECT_EQ(rows, bitmap.Bits());
    bitmap.Delete(); // the address sanitizer would see a free
    ExpectEmpty(bitmap);
    ASSERT_TRUE(bitmap.Create(2, 2));
    EXPECT_NE(rows, bitmap.Bits());
}

TEST(Bitmap, OwnCopiesBorrowedRowsAndNothingElse) {
    uint8 rows[16] = {1, 2, 3};
    rows[15] = 9;
    Bitmap bitmap;
    EXPECT_TRUE(bitmap.Own()) << "an empty one has nothing to copy";
    bitmap.Borrow(rows, 2, 2);
    ASSERT_TRUE(bitmap.Own());
    ASSERT_NE(rows, bitmap.Bits());
    EXPECT_EQ(0, std::memcmp(rows, bitmap.Bits(), sizeof rows));
    const uint8* own = bitmap.Bits();
    EXPECT_TRUE(bitmap.Own());
    EXPECT_EQ(own, bitmap.Bits());
    bitmap.Borrow(rows, 2, 2);
    {
        const HeapLimit limit(0);
        EXPECT_FALSE(bitmap.Own());
    }
    ExpectEmpty(bitmap);
}

TEST(OutgoingHeader, HasSizeDepthAndBytesAndNothingElse) {
    const BitmapHeader header = OutgoingHeader(101, 7);
    EXPECT_EQ(40u, header.biSize);
    EXPECT_EQ(101, header.biWidth);
    EXPECT_EQ(7, header.biHeight);
    EXPECT_EQ(1, header.biPlanes);
    EXPECT_EQ(24, header.biBitCount);
    EXPECT_EQ(0u, header.biCompression);
    EXPECT_EQ(304u * 7, header.biSizeImage);
    EXPECT_EQ(0, header.biXPelsPerMeter);
    EXPECT_EQ(0, header.biYPelsPerMeter);
    EXPECT_EQ(0u, header.biClrUsed);
    EXPECT_EQ(0u, header.biClrImportant);
}

TEST(OutgoingHeader, LiesInMemoryAsInTheBlock) {
    const BitmapHeader header = OutgoingHeader(101, 7);
    const uint8 bytes[kBitmapHeaderBytes] = {40, 0, 0, 0, 101, 0, 0, 0, 7, 0, 0, 0, 1, 0, 24, 0, 0, 0, 0, 0, 0x50, 8};
    EXPECT_EQ(0, std::memcmp(bytes, &header, sizeof bytes));
}

TEST(Bitmap, IsEmptyAtFirst) { ExpectEmpty(Bitmap()); }

TEST(Bitmap, IsBlackAfterCreate) {
    Bitmap bitmap;
    ASSERT_TRUE(bitmap.Create(5, 4));
    EXPECT_FALSE(bitmap.IsEmpty());
    EXPECT_EQ(5, bitmap.Width());
    EXPECT_EQ(4, bitmap.Height());
    EXPECT_EQ(5, bitmap.Size().width);
    EXPECT_EQ(4, bitmap.Size().height);
    ASSERT_EQ(64u, bitmap.Header().biSizeImage);
    EXPECT_TRUE(std::all_of(bitmap.Bits(), bitmap.Bits() + 64, [](uint8 byte) { return byte == 0; }));
    std::memset(bitmap.Bits(), 9, 64);
    ASSERT_TRUE(bitmap.Create(5, 4));
    EXPECT_EQ(0, bitmap.Bits()[63]) << "old pixels show through";
}

TEST(Bitmap, RefusesSizesOutOfRangeAndIsEmptyThen) {
    constexpr int32 kMax32 = std::numeric_limits<int32>::max();
    const ImageSize sizes[] = {{0, 4},        {4, 0},      {-1, 4},          {4, -1},
                               {kMax32, 1},   {1, kMax32}, {kMax32, kMax32}, {kMaxImageSide + 1, 1},
                               {16371, 16371}};
    for (const auto& size : sizes) {
        Bitmap bitmap;
        ASSERT_TRUE(bitmap.Create(5, 4));
        EXPECT_FALSE(bitmap.Create(size.width, size.height)) << size.width << " by " << size.height;
        ExpectEmpty(bitmap);
    }
}

TEST(Bitmap, IsEmptyWhenMemoryIsExhausted) {
    Bitmap bitmap;
    ASSERT_TRUE(bitmap.Create(5, 4));
    {
        const HeapLimit none(0);
        EXPECT_FALSE(bitmap.Create(5, 4));
    }
    ExpectEmpty(bitmap);
    EXPECT_TRUE(bitmap.Create(5, 4)) << "not usable again";
}

TEST(Bitmap, MayBeDeletedTwice) {
    Bitmap bitmap;
    ASSERT_TRUE(bitmap.Create(5, 4));
    bitmap.Delete();
    ExpectEmpty(bitmap);
    bitmap.Delete();
    ExpectEmpty(bitmap);
}

TEST(Bitmap, LeavesAnEmptyOneBehindWhenMoved) {
    Bitmap first;
    ASSERT_TRUE(first.Create(5, 4));
    const uint8* bits = first.Bits();
    Bitmap second(std::move(first));
    ExpectEmpty(first);
    EXPECT_EQ(bits, second.Bits());
    EXPECT_EQ(5, second.Width());

    Bitmap third;
    ASSERT_TRUE(third.Create(9, 9));
    third = std::move(second);
    ExpectEmpty(second);
    EXPECT_EQ(bits, third.Bits());
    EXPECT_EQ(4, third.Height());
    EXPECT_TRUE(second.Create(2, 2)) << "a moved-from bitmap may be used again";
}

} // namespace
} // namespace orvane::test
