#include "primitives/statistics.h"

#include "primitives/primitives.h"
#include "tests/support/plane.h"

#include <algorithm>
#include <limits>
#include <vector>

namespace orvane::test {
namespace {

using Bytes = Plane<uint8>;

TEST(CountInRange, CountsBothEndsOfEachChannelsRange) {
    Random random;
    for (int32 width = 1; width <= 100; ++width) {
        const ImageSize roi{width, random.Int(1, 5)};
        const Bytes src = Bytes::Source(3 * width, roi.height, random);
        uint8 lower[3], upper[3];
        for (int32 c = 0; c < 3; ++c) {
            // Bounds that occur in the picture, so that the ends count.
            const uint8 a = src.At(c, 0), b = src.At(3 * (width - 1) + c, roi.height - 1);
            lower[c] = std::min(a, b);
            upper[c] = std::max(a, b);
        }
        int32 counts[5] = {-1, 11, 22, 33, -1}, expected[3] = {0, 0, 0};
        for (int32 y = 0; y < roi.height; ++y) {
            for (int32 i = 0; i < 3 * width; ++i) {
                if (lower[i % 3] <= src.At(i, y) && src.At(i, y) <= upper[i % 3]) ++expected[i % 3];
            }
        }
        ASSERT_EQ(kOk, primCountInRange_8u_C3(src.Data(), src.Step(), roi, counts + 1, lower, upper));
        for (int32 c = 0; c < 3; ++c) ASSERT_EQ(expected[c], counts[c + 1]) << "channel " << c << ", width " << width;
        ASSERT_EQ(-1, counts[0]);
        ASSERT_EQ(-1, counts[4]);
    }
}

TEST(CountInRange, TestsPointersThenStepThenSizeThenRange) {
    const uint8 src[3] = {5, 5, 5}, low[3] = {1, 1, 1}, high[3] = {9, 9, 9};
    int32 counts[3] = {7, 7, 7};
    EXPECT_EQ(kNullPointer, primCountInRange_8u_C3(nullptr, 0, {0, 0}, counts, high, low));
    EXPECT_EQ(kNullPointer, primCountInRange_8u_C3(src, 3, {1, 1}, nullptr, low, high));
    EXPECT_EQ(kNullPointer, primCountInRange_8u_C3(src, 3, {1, 1}, counts, nullptr, high));
    EXPECT_EQ(kNullPointer, primCountInRange_8u_C3(src, 3, {1, 1}, counts, low, nullptr));
    EXPECT_EQ(kStepTooSmall, primCountInRange_8u_C3(src, 0, {0, 0}, counts, high, low));
    EXPECT_EQ(kBadSize, primCountInRange_8u_C3(src, 3, {1, 0}, counts, high, low));
    for (int32 c = 0; c < 3; ++c) {
        uint8 lower[3] = {1, 1, 1};
        lower[c] = 10;
        EXPECT_EQ(kBadRange, primCountInRange_8u_C3(src, 3, {1, 1}, counts, lower, high)) << "channel " << c;
    }
    EXPECT_EQ(7, counts[0]) << "a refused call wrote";
}

/// A row that holds v + 1 pixels of each value v.
struct Ramp {
    std::vector<uint8> pixels;
    Ramp() {
        for (int32 v = 0; v < 256; ++v)
            pixels.insert(pixels.end(), static_cast<std::size_t>(v) + 1, static_cast<uint8>(v));
    }
    ImageSize Roi() const { return {static_cast<int32>(pixels.size()), 1}; }
};

TEST(HistogramEven, FullRangeHasABinAValueAndNoneFor255) {
    const Ramp ramp;
    std::vector<int32> hist(256, -7), levels(256, -7);
    ASSERT_EQ(kOk, primHistogramEven_8u_C1(ramp.pixels.data(), 1, ramp.Roi(), hist.data(), levels.data(), 256, 0, 255));
    for (int32 v = 0; v < 256; ++v) ASSERT_EQ(v, levels[v]);
    for (int32 v = 0; v < 255; ++v) ASSERT_EQ(v + 1, hist[v]) << "bin " << v;
    EXPECT_EQ(-7, hist[255]) << "there are levelCount - 1 bins";
}

TEST(HistogramEven, TwoLevelsAreOneBin) {
    const Ramp ramp;
    int32 hist[2] = {-7, -7}, levels[3] = {-7, -7, -7};
    ASSERT_EQ(kOk, primHistogramEven_8u_C1(ramp.pixels.data(), 1, ramp.Roi(), hist, levels, 2, 10, 13));
    EXPECT_EQ(10, levels[0]);
    EXPECT_EQ(13, levels[1]);
    EXPECT_EQ(-7, levels[2]);
    EXPECT_EQ(11 + 12 + 13, hist[0]);
    EXPECT_EQ(-7, hist[1]);
}

TEST(HistogramEven, TheFirstIntervalsTakeTheRemainder) {
    const Ramp ramp;
    int32 hist[4], levels[5];
    ASSERT_EQ(kOk, primHistogramEven_8u_C1(ramp.pixels.data(), 1, ramp.Roi(), hist, levels, 5, 0, 10));
    const int32 expected[5] = {0, 3, 6, 8, 10}; // 10 in 4 intervals: 2 each, and 2 of them one more
    for (int32 k = 0; k < 5; ++k) EXPECT_EQ(expected[k], levels[k]) << "level " << k;
}

TEST(HistogramEven, EqualsTheRuleOverManyLevels) {
    Random random;
    for (int32 round = 0; round < 200; ++round) {
        const ImageSize roi{random.Int(1, 60), random.Int(1, 5)};
        const Bytes src = Bytes::Source(roi.width, roi.height, random);
        const int32 levelCount = random.Int(2, 300), lower = random.Int(-300, 300), upper = lower + random.Int(0, 600);
        std::vector<int32> hist(levelCount - 1, -7), levels(levelCount, -7);
        ASSERT_EQ(kOk, primHistogramEven_8u_C1(src.Data(), src.Step(), roi, hist.data(), levels.data(), levelCount,
                                               lower, upper));
        const int32 q = (upper - lower) / (levelCount - 1), r = (upper - lower) % (levelCount - 1);
        int32 level = lower;
        for (int32 k = 0; k < levelCount; ++k) {
            ASSERT_EQ(level, levels[k]) << "level " << k << " of " << levelCount;
            level += q + (k < r ? 1 : 0);
        }
        for (int32 k = 0; k + 1 < levelCount; ++k) {
            int32 expected = 0;
            for (int32 y = 0; y < roi.height; ++y) {
                for (int32 x = 0; x < roi.width; ++x) {
                    if (levels[k] <= src.At(x, y) && src.At(x, y) < levels[k + 1]) ++expected;
                }
            }
            ASSERT_EQ(expected, hist[k]) << "bin " << k << " of " << levelCount - 1 << ", " << lower << " to " << upper;
        }
    }
}

TEST(HistogramEven, ExtremeAndFallingLevelsStayInRange) {
    const uint8 src[2] = {0, 255};
    constexpr int32 kMin = std::numeric_limits<int32>::min(), kMax = std::numeric_limits<int32>::max();
    int32 hist[2], levels[3];
    ASSERT_EQ(kOk, primHistogramEven_8u_C1(src, 2, {2, 1}, hist, levels, 3, kMin, kMax));
    EXPECT_EQ(kMin, levels[0]);
    EXPECT_EQ(0, levels[1]);
    EXPECT_EQ(kMax, levels[2]);
    EXPECT_EQ(0, hist[0]);
    EXPECT_EQ(2, hist[1]);
    ASSERT_EQ(kOk, primHistogramEven_8u_C1(src, 2, {2, 1}, hist, levels, 3, kMax, kMin));
    EXPECT_EQ(0, hist[0]);
    EXPECT_EQ(0, hist[1]);
}

TEST(HistogramEven, TestsPointersSizeStepThenLevels) {
    const uint8 src[1] = {5};
    int32 hist[2] = {7, 7}, levels[2] = {7, 7};
    EXPECT_EQ(kNullPointer, primHistogramEven_8u_C1(nullptr, 0, {0, 0}, hist, levels, 1, 0, 255));
    EXPECT_EQ(kNullPointer, primHistogramEven_8u_C1(src, 1, {1, 1}, nullptr, levels, 2, 0, 255));
    EXPECT_EQ(kNullPointer, primHistogramEven_8u_C1(src, 1, {1, 1}, hist, nullptr, 2, 0, 255));
    EXPECT_EQ(kBadSize, primHistogramEven_8u_C1(src, 0, {1, 0}, hist, levels, 1, 0, 255));
    EXPECT_EQ(kStepTooSmall, primHistogramEven_8u_C1(src, 0, {1, 1}, hist, levels, 1, 0, 255));
    EXPECT_EQ(kTooFewLevels, primHistogramEven_8u_C1(src, 1, {1, 1}, hist, levels, 1, 0, 255));
    EXPECT_EQ(kTooFewLevels, primHistogramEven_8u_C1(src, 1, {1, 1}, hist, levels, -5, 0, 255));
    EXPECT_EQ(7, hist[0]) << "a refused call wrote";
    EXPECT_EQ(7, levels[0]) << "a refused call wrote";
}

} // namespace
} // namespace orvane::test
