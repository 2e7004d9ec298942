#include "primitives/morphology.h"

#include "primitives/primitives.h"
#include "tests/reference/morphology.h"
#include "tests/support/heap_limit.h"

#include <algorithm>
#include <vector>

namespace orvane::test {
namespace {

using Bytes = Plane<uint8>;
using reference::Window;

/// A plane that holds the region and what its windows reach, and ends with it on every side.
Bytes PlaneFor(const Window& w, Random& random) {
    Bytes plane = Bytes::Source(w.roi.width + w.mask.width - 1, w.roi.height + w.mask.height - 1, random);
    return plane;
}

uint8* RegionOf(Bytes& plane, const Window& w) { return &plane.At(w.anchor.x, w.anchor.y); }

int32 RunErode(Bytes& plane, const Window& w, const uint8* mask) {
    return primErode_8u_C1I(RegionOf(plane, w), plane.Step(), w.roi, mask, w.mask, w.anchor);
}

int32 RunBox(Bytes& plane, const Window& w) {
    return primFilterBox_8u_C1I(RegionOf(plane, w), plane.Step(), w.roi, w.mask, w.anchor);
}

Window RandomWindow(int32 width, Random& random) {
    const ImageSize mask{random.Int(1, 7), random.Int(1, 7)};
    return {{width, random.Int(1, 12)}, mask, {random.Int(0, mask.width - 1), random.Int(0, mask.height - 1)}};
}

/// A mask of zeros and of any other value, with at least one cell set.
std::vector<uint8> RandomMask(ImageSize size, Random& random) {
    std::vector<uint8> mask(static_cast<std::size_t>(size.width) * size.height);
    for (uint8& cell : mask) cell = random.Int(0, 1) == 0 ? 0 : static_cast<uint8>(random.Int(1, 255));
    mask[random.Bits() % mask.size()] = 1;
    return mask;
}

TEST(Erode3x3, IsTheSmallestOfNineAndWritesOnlyTheRegion) {
    Random random;
    const std::vector<uint8> all(9, 1);
    for (int32 width = 1; width <= 100; ++width) {
        const Window w{{width, random.Int(1, 9)}, {3, 3}, {1, 1}};
        Bytes result = PlaneFor(w, random);
        Bytes expected = result;
        ASSERT_EQ(kOk, primErode3x3_8u_C1I(RegionOf(result, w), result.Step(), w.roi)) << w;
        reference::Erode(expected, w, all.data());
        ASSERT_SAME_PLANE(uint8, result, expected) << w;
    }
}

TEST(FilterBox, OfThreeByThreeIsTheMeanAtEveryWidth) {
    Random random;
    for (int32 width = 1; width <= 100; ++width) {
        const Window w{{width, random.Int(1, 9)}, {3, 3}, {random.Int(0, 2), random.Int(0, 2)}};
        Bytes result = PlaneFor(w, random);
        if (width % 4 == 0) result.FillRegion(static_cast<uint8>(255 - width % 3)); // the largest sums
        Bytes expected = result;
        ASSERT_EQ(kOk, RunBox(result, w)) << w;
        reference::Box(expected, w);
        ASSERT_SAME_PLANE(uint8, result, expected) << w;
    }
}

TEST(FilterBox, OfThreeByThreeDividesEverySumAlike) {
    Random random;
    for (int32 sum = 0; sum <= 9 * 255; ++sum) {
        const Window w{{17, 1}, {3, 3}, {1, 1}};
        Bytes result(19, 3, 0, 0, 0);
        for (int32 cell = 0; cell < 9; ++cell) { // the same in every window: columns repeat by three
            for (int32 x = cell % 3; x < 19; x += 3) {
                result.At(x, cell / 3) = static_cast<uint8>(sum / 9 + (cell < sum % 9 ? 1 : 0));
            }
        }
        Bytes expected = result;
        ASSERT_EQ(kOk, RunBox(result, w));
        reference::Box(expected, w);
        ASSERT_SAME_PLANE(uint8, result, expected) << "sum " << sum;
    }
}

TEST(Erode3x3, TestsPointerStepSizeRoomThenMemory) {
    std::vector<uint8> plane(7 * 7, 7);
    uint8* region = plane.data() + 8;
    EXPECT_EQ(kNullPointer, primErode3x3_8u_C1I(nullptr, 0, {0, 0}));
    EXPECT_EQ(kStepTooSmall, primErode3x3_8u_C1I(region, 0, {0, 0}));
    EXPECT_EQ(kBadSize, primErode3x3_8u_C1I(region, 1, {0, 5}));
    EXPECT_EQ(kBadSize, primErode3x3_8u_C1I(region, 1, {5, 0}));
    EXPECT_EQ(kStepTooSmallForMask, primErode3x3_8u_C1I(region, 6, {5, 5}));
    EXPECT_EQ(kStepTooSmallForMask, primErode3x3_8u_C1I(region, 6, {2147483647, 1}));
    {
        const HeapLimit none(0);
        EXPECT_EQ(kNoMemory, primErode3x3_8u_C1I(region, 7, {5, 5}));
    }
    EXPECT_EQ(std::vector<uint8>(49, 7), plane) << "a refused call wrote";
    EXPECT_EQ(kOk, primErode3x3_8u_C1I(region, 7, {5, 5})) << "a step of width + 2 is enough";
}

TEST(Erode, IsTheSmallestUnderTheMaskAndWritesOnlyTheRegion) {
    Random random;
    for (int32 width = 1; width <= 100; ++width) {
        const Window w = RandomWindow(width, random);
        const std::vector<uint8> mask = RandomMask(w.mask, random);
        Bytes result = PlaneFor(w, random);
        Bytes expected = result;
        ASSERT_EQ(kOk, RunErode(result, w, mask.data())) << w;
        reference::Erode(expected, w, mask.data());
        ASSERT_SAME_PLANE(uint8, result, expected) << w;
    }
}

TEST(Erode, OneCellIsAShiftedCopy) {
    Random random;
    const ImageSize size{3, 5};
    for (int32 cell = 0; cell < 15; ++cell) {
        const Window w{{20, 11}, size, {1, 2}};
        std::vector<uint8> mask(15, 0);
        mask[cell] = 200;
        Bytes result = PlaneFor(w, random);
        const Bytes before = result;
        ASSERT_EQ(kOk, RunErode(result, w, mask.data()));
        for (int32 y = 0; y < w.roi.height; ++y) {
            for (int32 x = 0; x < w.roi.width; ++x) {
                ASSERT_EQ(before.At(x + cell % 3, y + cell / 3), result.At(x + 1, y + 2)) << "cell " << cell;
            }
        }
    }
}

TEST(Erode, InPlaceEqualsTheSameFilterIntoASecondPlane) {
    // A falling ramp: were a result read as a source, minima would run on down the plane.
    const Window w{{9, 40}, {3, 3}, {0, 0}};
    const std::vector<uint8> all(9, 1);
    Bytes plane(11, 42, 0, 0, 0);
    for (int32 y = 0; y < 42; ++y) {
        for (int32 x = 0; x < 11; ++x) plane.At(x, y) = static_cast<uint8>(250 - 5 * y - x / 2);
    }
    for (const ImagePoint anchor : {ImagePoint{0, 0}, ImagePoint{2, 2}, ImagePoint{1, 1}}) {
        const Window anchored{w.roi, w.mask, anchor};
        Bytes result = plane;
        ASSERT_EQ(kOk, RunErode(result, anchored, all.data()));
        for (int32 y = 0; y < w.roi.height; ++y) {
            for (int32 x = 0; x < w.roi.width; ++x) {
                ASSERT_EQ(plane.At(x + 2, y + 2), result.At(x + anchor.x, y + anchor.y)) << anchored;
            }
        }
    }
}

TEST(Erode, MasksHigherThanTheRegionWork) {
    Random random;
    const Window w{{4, 2}, {2, 31}, {1, 30}};
    const std::vector<uint8> all(62, 1);
    Bytes result = PlaneFor(w, random);
    Bytes expected = result;
    ASSERT_EQ(kOk, RunErode(result, w, all.data()));
    reference::Erode(expected, w, all.data());
    EXPECT_SAME_PLANE(uint8, result, expected);
}

TEST(Erode, TestsInItsOrder) {
    std::vector<uint8> plane(9 * 9, 7);
    uint8* region = plane.data() + 10;
    const uint8 mask[9] = {0, 1, 0, 0, 0, 0, 0, 0, 0}, zeros[9] = {};
    EXPECT_EQ(kNullPointer, primErode_8u_C1I(nullptr, 0, {0, 0}, mask, {0, 0}, {-1, 0}));
    EXPECT_EQ(kNullPointer, primErode_8u_C1I(region, 9, {5, 5}, nullptr, {3, 3}, {1, 1}));
    EXPECT_EQ(kStepTooSmall, primErode_8u_C1I(region, 0, {0, 0}, zeros, {0, 0}, {-1, 0}));
    EXPECT_EQ(kBadSize, primErode_8u_C1I(region, 1, {5, 0}, zeros, {0, 0}, {-1, 0}));
    EXPECT_EQ(kBadMaskSize, primErode_8u_C1I(region, 1, {5, 5}, zeros, {0, 3}, {-1, 0}));
    EXPECT_EQ(kBadMaskSize, primErode_8u_C1I(region, 1, {5, 5}, zeros, {3, -1}, {-1, 0}));
    EXPECT_EQ(kEmptyMask, primErode_8u_C1I(region, 1, {5, 5}, zeros, {3, 3}, {-1, 0}));
    for (const ImagePoint outside : {ImagePoint{-1, 0}, ImagePoint{0, -1}, ImagePoint{3, 0}, ImagePoint{0, 3}}) {
        EXPECT_EQ(kBadAnchor, primErode_8u_C1I(region, 1, {5, 5}, mask, {3, 3}, outside))
            << outside.x << "," << outside.y;
    }
    EXPECT_EQ(kStepTooSmallForMask, primErode_8u_C1I(region, 6, {5, 5}, mask, {3, 3}, {1, 1}));
    EXPECT_EQ(kStepTooSmallForMask, primErode_8u_C1I(region, 9, {2147483647, 5}, mask, {3, 3}, {1, 1}));
    {
        const HeapLimit none(0);
        EXPECT_EQ(kNoMemory, primErode_8u_C1I(region, 9, {5, 5}, mask, {3, 3}, {1, 1}));
    }
    EXPECT_EQ(std::vector<uint8>(81, 7), plane) << "a refused call wrote";
}

TEST(Box, IsTheMeanOfTheWindowAndWritesOnlyTheRegion) {
    Random random;
    for (int32 width = 1; width <= 100; ++width) {
        const Window w = RandomWindow(width, random);
        Bytes result = PlaneFor(w, random);
        Bytes expected = result;
        ASSERT_EQ(kOk, RunBox(result, w)) << w;
        reference::Box(expected, w);
        ASSERT_SAME_PLANE(uint8, result, expected) << w;
    }
}

TEST(Box, ABoxMeanOfAFlatPlaneIsThatPlane) {
    for (const ImageSize mask : {ImageSize{3, 3}, ImageSize{1, 1}, ImageSize{2, 1}, ImageSize{5, 5}, ImageSize{90, 90},
                                 ImageSize{8100, 1}, ImageSize{91, 90}}) {
        const Window w{{3, 2}, mask, {mask.width / 2, mask.height / 2}};
        Bytes plane(w.roi.width + mask.width - 1, w.roi.height + mask.height - 1, 0, 0, 0);
        for (int32 v = 0; v<256; v += mask.height> 50 ? 15 : 1) {
            plane.FillRegion(static_cast<uint8>(v));
            const Bytes before = plane;
            ASSERT_EQ(kOk, RunBox(plane, w));
            ASSERT_SAME_PLANE(uint8, plane, before) << w << ", value " << v;
        }
    }
}

/// The box result for a window of the given size whose pixels add up to `sum`.
int32 MeanOfSum(ImageSize mask, int32 sum) {
    std::vector<uint8> window(static_cast<std::size_t>(mask.width) * mask.height);
    for (uint8& pixel : window) {
        pixel = static_cast<uint8>(std::min(sum, 255));
        sum -= pixel;
    }
    EXPECT_EQ(kOk, primFilterBox_8u_C1I(window.data(), mask.width, {1, 1}, mask, {0, 0}));
    return window[0];
}

TEST(Box, DividesNineBy3641And15AndTwentyFiveBy2622And16) {
    for (int32 sum = 0; sum <= 9 * 255; ++sum) ASSERT_EQ(3641 * sum >> 15, MeanOfSum({3, 3}, sum)) << "sum " << sum;
    for (int32 sum = 0; sum <= 25 * 255; ++sum) ASSERT_EQ(2622 * sum >> 16, MeanOfSum({5, 5}, sum)) << "sum " << sum;
}

TEST(Box, TheFixedPointDivisionHoldsForEveryAreaOfItsPath) {
    Random random;
    for (int32 area = 1; area <= 8100; area += area < 300 ? 1 : 13) {
        const reference::FixedPoint f = reference::FixedPointOf(area);
        for (const int32 sum : {255 * area, 255 * area - 1, random.Int(0, 255 * area)}) {
            ASSERT_EQ(f.multiplier * static_cast<uint64>(sum) >> f.shift, MeanOfSum({area, 1}, sum))
                << "area " << area << ", sum " << sum;
        }
    }
    const reference::FixedPoint largest = reference::FixedPointOf(8100);
    EXPECT_EQ(largest.multiplier * uint64{255 * 8100} >> largest.shift, MeanOfSum({90, 90}, 255 * 8100));
}

TEST(Box, MasksAbove8100TruncateTheExactMean) {
    Random random;
    const Window w{{7, 5}, {101, 83}, {50, 82}};
    Bytes result = PlaneFor(w, random);
    Bytes expected = result;
    ASSERT_EQ(kOk, RunBox(result, w));
    reference::Box(expected, w);
    EXPECT_SAME_PLANE(uint8, result, expected);
    EXPECT_EQ(254, MeanOfSum({8101, 1}, 255 * 8101 - 1));
    EXPECT_EQ(255, MeanOfSum({8101, 1}, 255 * 8101));
}

TEST(Box, InPlaceReadsTheValuesBeforeTheCall) {
    // One bright pixel spreads over one window's width and no further.
    const Window w{{9, 9}, {3, 3}, {1, 1}};
    Bytes plane(11, 11, 0, 0, 0);
    plane.At(5, 5) = 90;
    ASSERT_EQ(kOk, RunBox(plane, w));
    for (int32 y = 0; y < 11; ++y) {
        for (int32 x = 0; x < 11; ++x) {
            const bool near = std::abs(x - 5) <= 1 && std::abs(y - 5) <= 1;
            ASSERT_EQ(near ? 10 : 0, plane.At(x, y)) << x << "," << y;
        }
    }
}

TEST(Box, TestsInItsOrder) {
    std::vector<uint8> plane(9 * 9, 7);
    uint8* region = plane.data() + 10;
    EXPECT_EQ(kNullPointer, primFilterBox_8u_C1I(nullptr, 0, {0, 0}, {0, 0}, {-1, 0}));
    EXPECT_EQ(kStepTooSmall, primFilterBox_8u_C1I(region, 0, {0, 0}, {0, 0}, {-1, 0}));
    EXPECT_EQ(kBadSize, primFilterBox_8u_C1I(region, 9, {0, 5}, {0, 0}, {-1, 0}));
    EXPECT_EQ(kBadMaskSize, primFilterBox_8u_C1I(region, 9, {5, 5}, {3, 0}, {-1, 0}));
    EXPECT_EQ(kBadMaskSize, primFilterBox_8u_C1I(region, 9, {5, 5}, {0, 3}, {-1, 0}));
    for (const ImagePoint outside : {ImagePoint{-1, 0}, ImagePoint{0, -1}, ImagePoint{3, 0}, ImagePoint{0, 3}}) {
        EXPECT_EQ(kBadAnchor, primFilterBox_8u_C1I(region, 9, {5, 5}, {3, 3}, outside))
            << outside.x << "," << outside.y;
    }
    for (int allowed = 0; allowed < 2; ++allowed) {
        const HeapLimit limit(allowed);
        EXPECT_EQ(kNoMemory, primFilterBox_8u_C1I(region, 9, {5, 5}, {2, 3}, {1, 1})) << allowed << " requests";
    }
    {
        const HeapLimit none(0);
        EXPECT_EQ(kNoMemory, primFilterBox_8u_C1I(region, 9, {5, 5}, {3, 3}, {1, 1}));
    }
    EXPECT_EQ(std::vector<uint8>(81, 7), plane) << "a refused call wrote";
}

} // namespace
} // namespace orvane::test
