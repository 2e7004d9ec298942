#include "primitives/edge.h"

#include "primitives/primitives.h"
#include "tests/reference/edge.h"
#include "tests/support/heap_limit.h"

#include <limits>
#include <vector>

namespace orvane::test {
namespace {

using Kernel = std::vector<int32>;

/// A gradient filter with its mask code bound, so that all go through one table.
struct Filter {
    const char* name;
    int32 (*apply)(const uint8* src, int32 srcStep, int16* dst, int32 dstStep, ImageSize roi, int32 borderType,
                   uint8 borderValue, uint8* buffer);
    int32 (*bufferSize)(ImageSize roi, int32* size);
    Kernel column;
    Kernel row;
};

template <int32 Code>
int32 SobelHoriz(const uint8* src, int32 srcStep, int16* dst, int32 dstStep, ImageSize roi, int32 border, uint8 value,
                 uint8* buffer) {
    return primFilterSobelHorizBorder_8u16s_C1(src, srcStep, dst, dstStep, roi, Code, border, value, buffer);
}

template <int32 Code>
int32 SobelNegVert(const uint8* src, int32 srcStep, int16* dst, int32 dstStep, ImageSize roi, int32 border, uint8 value,
                   uint8* buffer) {
    return primFilterSobelNegVertBorder_8u16s_C1(src, srcStep, dst, dstStep, roi, Code, border, value, buffer);
}

template <int32 Code>
int32 SobelHorizSize(ImageSize roi, int32* size) {
    return primFilterSobelHorizGetBufferSize(roi, Code, size);
}

template <int32 Code>
int32 SobelNegVertSize(ImageSize roi, int32* size) {
    return primFilterSobelNegVertGetBufferSize(roi, Code, size);
}

const std::vector<Filter>& Filters() {
    static const std::vector<Filter> filters = {
        {"SobelHoriz 33", SobelHoriz<33>, SobelHorizSize<33>, {-1, 0, 1}, {1, 2, 1}},
        {"SobelHoriz 55", SobelHoriz<55>, SobelHorizSize<55>, {-1, -2, 0, 2, 1}, {1, 4, 6, 4, 1}},
        {"SobelNegVert 33", SobelNegVert<33>, SobelNegVertSize<33>, {1, 2, 1}, {-1, 0, 1}},
        {"SobelNegVert 55", SobelNegVert<55>, SobelNegVertSize<55>, {1, 4, 6, 4, 1}, {-1, -2, 0, 2, 1}},
        {"ScharrHoriz",
         primFilterScharrHorizBorder_8u16s_C1,
         primFilterScharrHorizGetBufferSize,
         {-1, 0, 1},
         {3, 10, 3}},
        {"ScharrVert", primFilterScharrVertBorder_8u16s_C1, primFilterScharrVertGetBufferSize, {3, 10, 3}, {-1, 0, 1}},
    };
    return filters;
}

void JudgeGradient(const Filter& filter, ImageSize roi, int32 border, Random& random) {
    const auto src = Plane<uint8>::Source(roi.width, roi.height, random);
    auto result = Plane<int16>::Output(roi.width, roi.height, random);
    auto expected = result;
    const auto value = static_cast<uint8>(random.Int(0, 255));
    int32 bytes = 0;
    ASSERT_EQ(kOk, filter.bufferSize(roi, &bytes)) << filter.name;
    ASSERT_GE(bytes, 1) << filter.name;
    std::vector<uint8> buffer(static_cast<std::size_t>(bytes));
    ASSERT_EQ(kOk,
              filter.apply(src.Data(), src.Step(), result.Data(), result.Step(), roi, border, value, buffer.data()))
        << filter.name;
    reference::Gradient(src, expected, roi, filter.column, filter.row, border == 0, value);
    ASSERT_PRED_FORMAT2(Plane<int16>::Same, result, expected)
        << filter.name << ", " << roi.width << "x" << roi.height << ", border " << border << " of " << +value;
}

TEST(Gradient, EqualsThePlainCorrelationAtEverySizeAndBorder) {
    Random random;
    for (const Filter& filter : Filters()) {
        for (int32 width = 1; width <= 100; ++width) {
            JudgeGradient(filter, {width, random.Int(1, 9)}, random.Int(0, 4), random);
            if (HasFatalFailure()) return;
        }
        for (int32 border = 0; border <= 4; ++border) {
            for (int32 height = 1; height <= 6; ++height) JudgeGradient(filter, {5, height}, border, random);
        }
    }
}

TEST(Gradient, EqualsThePlainCorrelationOnLongRows) {
    Random random;
    for (const Filter& filter : Filters()) {
        for (const int32 width : {509, 510, 511, 512, 513, 514, 515, 1023, 1024, 1025, 1026, 1300}) {
            JudgeGradient(filter, {width, 4}, random.Int(0, 1), random);
        }
    }
}

TEST(Gradient, GrowsDownwardsForHorizAndToTheRightForVert) {
    const uint8 down[9] = {0, 0, 0, 10, 10, 10, 20, 20, 20};
    const uint8 right[9] = {0, 10, 20, 0, 10, 20, 0, 10, 20};
    struct Row {
        std::size_t filter;
        const uint8* src;
        int16 centre;
    };
    for (const Row& r : {Row{0, down, 80},
                         {0, right, 0},
                         {2, right, 80},
                         {2, down, 0},
                         {4, down, 320},
                         {4, right, 0},
                         {5, right, 320},
                         {5, down, 0}}) {
        const Filter& filter = Filters()[r.filter];
        int16 dst[9];
        uint8 buffer[1];
        ASSERT_EQ(kOk, filter.apply(r.src, 3, dst, 6, {3, 3}, 1, 0, buffer));
        EXPECT_EQ(r.centre, dst[4]) << filter.name;
    }
}

TEST(Gradient, ReachesItsLargestValuesWithoutOverflow) {
    // White over black: the largest sums are the smoothing kernel's gain times the difference's.
    Plane<uint8> src(9, 9, 0, 0, 0);
    for (int32 y = 0; y < 9; ++y) {
        for (int32 x = 0; x < 9; ++x) src.At(x, y) = y < 4 ? 255 : 0;
    }
    int16 dst[81];
    uint8 buffer[1];
    const int16 steepest[] = {-1020, -255 * 48, 0, 0, -255 * 16, 0};
    for (std::size_t f = 0; f < Filters().size(); ++f) {
        ASSERT_EQ(kOk, Filters()[f].apply(src.Data(), 9, dst, 18, {9, 9}, 1, 0, buffer));
        EXPECT_EQ(steepest[f], *std::min_element(dst, dst + 81)) << Filters()[f].name;
    }
}

TEST(Gradient, BorderTypesTwoToFourReplicateAsOneDoes) {
    Random random;
    const auto src = Plane<uint8>::Source(11, 7, random);
    uint8 buffer[1];
    for (const Filter& filter : Filters()) {
        Plane<int16> replicated(11, 7, 0, 0, 0);
        ASSERT_EQ(kOk, filter.apply(src.Data(), src.Step(), replicated.Data(), 22, {11, 7}, 1, 200, buffer));
        for (const int32 border : {2, 3, 4}) {
            Plane<int16> dst(11, 7, 0, 0, 0);
            ASSERT_EQ(kOk, filter.apply(src.Data(), src.Step(), dst.Data(), 22, {11, 7}, border, 33, buffer));
            ASSERT_PRED_FORMAT2(Plane<int16>::Same, dst, replicated) << filter.name << ", border " << border;
        }
    }
}

TEST(Gradient, FailuresAreTestedInOrder) {
    const uint8 src[16] = {};
    int16 dst[16] = {7};
    uint8 buffer[1];
    for (const Filter& filter : Filters()) {
        SCOPED_TRACE(filter.name);
        EXPECT_EQ(-8, filter.apply(nullptr, 3, dst, 7, {0, 0}, 9, 0, buffer));
        EXPECT_EQ(-8, filter.apply(src, 3, nullptr, 7, {0, 0}, 9, 0, buffer));
        EXPECT_EQ(-8, filter.apply(src, 3, dst, 7, {0, 0}, 9, 0, nullptr));
        EXPECT_EQ(-6, filter.apply(src, 3, dst, 7, {0, 4}, 9, 0, buffer));
        EXPECT_EQ(-6, filter.apply(src, 3, dst, 7, {4, -1}, 9, 0, buffer));
        EXPECT_EQ(-14, filter.apply(src, 3, dst, 9, {4, 4}, 9, 0, buffer));
        EXPECT_EQ(-14, filter.apply(src, 4, dst, 7, {4, 4}, 9, 0, buffer));
        EXPECT_EQ(-14, filter.apply(src, 0x7fffffff, dst, 0x7ffffffe, {0x40000000, 1}, 9, 0, buffer));
        EXPECT_EQ(-108, filter.apply(src, 4, dst, 9, {4, 4}, 9, 0, buffer));
        EXPECT_EQ(-5, filter.apply(src, 4, dst, 8, {4, 4}, 5, 0, buffer));
        EXPECT_EQ(-5, filter.apply(src, 4, dst, 8, {4, 4}, -1, 0, buffer));
    }
    for (const int32 code : {0, 3, 35, 53, 77}) {
        EXPECT_EQ(-5, primFilterSobelHorizBorder_8u16s_C1(src, 4, dst, 8, {4, 4}, code, 5, 0, buffer));
        EXPECT_EQ(-33, primFilterSobelHorizBorder_8u16s_C1(src, 4, dst, 8, {4, 4}, code, 1, 0, buffer));
        EXPECT_EQ(-33, primFilterSobelNegVertBorder_8u16s_C1(src, 4, dst, 8, {4, 4}, code, 1, 0, buffer));
    }
    EXPECT_EQ(7, dst[0]) << "a refused call wrote";
}

TEST(Gradient, BufferQueriesFailInOrderAndAnswerAtLeastOne) {
    for (const Filter& filter : Filters()) {
        SCOPED_TRACE(filter.name);
        int32 size = -1;
        EXPECT_EQ(-8, filter.bufferSize({0, 0}, nullptr));
        EXPECT_EQ(-6, filter.bufferSize({0, 1}, &size));
        EXPECT_EQ(-6, filter.bufferSize({1, 0}, &size));
        EXPECT_EQ(-1, size) << "a refused query wrote";
        for (const ImageSize roi : {ImageSize{1, 1}, {350, 260}, {0x7fffffff, 0x7fffffff}}) {
            EXPECT_EQ(kOk, filter.bufferSize(roi, &size));
            EXPECT_GE(size, 1) << roi.width << "x" << roi.height;
        }
    }
    int32 size = -1;
    EXPECT_EQ(-6, primFilterSobelHorizGetBufferSize({0, 1}, 44, &size));
    EXPECT_EQ(-33, primFilterSobelHorizGetBufferSize({4, 4}, 44, &size));
    EXPECT_EQ(-33, primFilterSobelNegVertGetBufferSize({4, 4}, 44, &size));
    EXPECT_EQ(-1, size);
}

/// Runs the detector with a buffer of exactly the reported size, which begins at an odd address.
int32 RunCanny(const Plane<int16>& dx, const Plane<int16>& dy, Plane<uint8>& dst, ImageSize roi, float low,
               float high) {
    int32 bytes = 0;
    EXPECT_EQ(kOk, primCannyGetBufferSize(roi, &bytes));
    std::vector<uint8> block(static_cast<std::size_t>(bytes) + 1, 0xA5);
    return primCanny_16s8u_C1(dx.Data(), dx.Step(), dy.Data(), dy.Step(), dst.Data(), dst.Step(), roi, low, high,
                              block.data() + 1);
}

void JudgeCanny(const Plane<int16>& dx, const Plane<int16>& dy, ImageSize roi, float low, float high, Random& random) {
    auto result = Plane<uint8>::Output(roi.width, roi.height, random);
    auto expected = result;
    ASSERT_EQ(kOk, RunCanny(dx, dy, result, roi, low, high));
    reference::Canny(dx, dy, expected, roi, low, high);
    ASSERT_PRED_FORMAT2(Plane<uint8>::Same, result, expected)
        << roi.width << "x" << roi.height << ", thresholds " << low << ", " << high;
}

TEST(Canny, EqualsThePlainFormOnGradientsOfPictures) {
    Random random;
    for (int32 width = 1; width <= 100; ++width) {
        const ImageSize roi{width, random.Int(1, 60)};
        auto picture = Plane<uint8>::Source(width, roi.height, random);
        const int32 discX = random.Int(0, width);
        const int32 discY = random.Int(0, roi.height);
        const int32 noise = random.Int(1, 60);
        for (int32 y = 0; y < roi.height; ++y) {
            for (int32 x = 0; x < width; ++x) {
                const int32 distance = (x - discX) * (x - discX) + (y - discY) * (y - discY);
                picture.At(x, y) = static_cast<uint8>((distance < 200 ? 150 : 20) + picture.At(x, y) % noise);
            }
        }
        auto dx = Plane<int16>::Output(width, roi.height, random);
        auto dy = Plane<int16>::Output(width, roi.height, random);
        uint8 buffer[1];
        ASSERT_EQ(kOk, SobelNegVert<33>(picture.Data(), picture.Step(), dx.Data(), dx.Step(), roi, 1, 0, buffer));
        ASSERT_EQ(kOk, SobelHoriz<33>(picture.Data(), picture.Step(), dy.Data(), dy.Step(), roi, 1, 0, buffer));
        const auto low = static_cast<float>(random.Real(0, 80));
        JudgeCanny(dx, dy, roi, low, low * static_cast<float>(random.Real(1, 4)), random);
        JudgeCanny(dx, dy, roi, 8.0f, 24.0f, random);
        if (HasFatalFailure()) return;
    }
}

TEST(Canny, EqualsThePlainFormOnAnyGradients) {
    Random random;
    const int32 ranges[] = {1, 2, 5, 300, 32767};
    for (int32 n = 0; n < 400; ++n) {
        const ImageSize roi{random.Int(1, 40), random.Int(1, 25)};
        auto dx = Plane<int16>::Source(roi.width, roi.height, random);
        auto dy = Plane<int16>::Source(roi.width, roi.height, random);
        const int32 range = ranges[n % 5];
        const int32 least = range == 32767 ? -32768 : -range;
        for (int32 y = 0; y < roi.height; ++y) {
            for (int32 x = 0; x < roi.width; ++x) {
                dx.At(x, y) = static_cast<int16>(random.Int(least, range));
                dy.At(x, y) = static_cast<int16>(random.Int(least, range));
            }
        }
        const auto low = static_cast<float>(random.Real(0, range));
        JudgeCanny(dx, dy, roi, low, low + static_cast<float>(random.Real(0, range)), random);
        if (HasFatalFailure()) return;
    }
}

TEST(Canny, EqualsThePlainFormWhereOneGradientAloneIsSteep) {
    // Up to 16383 pixels are taken as bits, and what a steeper one finds begun is begun anew.
    Random random;
    for (const int32 steepest : {16383, 16384, 32767, -16383, -16384, -32768}) {
        for (const bool alongY : {false, true}) {
            const ImageSize roi{random.Int(30, 150), random.Int(20, 30)};
            auto dx = Plane<int16>::Source(roi.width, roi.height, random);
            auto dy = Plane<int16>::Source(roi.width, roi.height, random);
            for (int32 y = 0; y < roi.height; ++y) {
                for (int32 x = 0; x < roi.width; ++x) {
                    dx.At(x, y) = static_cast<int16>(random.Int(-40, 40));
                    dy.At(x, y) = static_cast<int16>(random.Int(-40, 40));
                }
            }
            (alongY ? dy : dx).At(random.Int(0, roi.width - 1), roi.height - 1) = static_cast<int16>(steepest);
            JudgeCanny(dx, dy, roi, 8.0f, 24.0f, random);
        }
    }
}

TEST(Canny, AWidthThatShortCellNumbersCannotCountWorks) {
    Random random;
    for (const ImageSize roi : {ImageSize{65532, 2}, {65533, 2}, {70000, 1}, {2, 65533}}) {
        auto dx = Plane<int16>::Source(roi.width, roi.height, random);
        const auto dy = Plane<int16>::Source(roi.width, roi.height, random);
        JudgeCanny(dx, dy, roi, 40.0f, 300.0f, random);
    }
}

/// One row or column of magnitudes as a gradient plane; `down` lays them along y.
std::vector<uint8> CannyOfLine(const std::vector<int16>& values, bool down, float low, float high) {
    const auto count = static_cast<int32>(values.size());
    const ImageSize roi = down ? ImageSize{1, count} : ImageSize{count, 1};
    Plane<int16> along(roi.width, roi.height, 0, 0, 0);
    std::copy(values.begin(), values.end(), along.Data());
    const Plane<int16> across(roi.width, roi.height, 0, 0, 0);
    Plane<uint8> dst(roi.width, roi.height, 0, 0, 0);
    EXPECT_EQ(kOk, down ? RunCanny(across, along, dst, roi, low, high) : RunCanny(along, across, dst, roi, low, high));
    return {dst.Data(), dst.Data() + count};
}

TEST(Canny, ZeroGradientsGiveAnEmptyMap) {
    EXPECT_EQ((std::vector<uint8>{0, 0, 0}), CannyOfLine({0, 0, 0}, false, 0, 0));
}

TEST(Canny, AMagnitudeAtTheLowThresholdIsNoCandidate) {
    EXPECT_EQ((std::vector<uint8>{0, 0, 0}), CannyOfLine({0, 8, 0}, false, 8.0f, 8.0f));
    EXPECT_EQ((std::vector<uint8>{0, 0, 0}), CannyOfLine({0, 8, 0}, false, 8.9f, 8.9f)) << "the whole part counts";
    EXPECT_EQ((std::vector<uint8>{0, 255, 0}), CannyOfLine({0, 9, 0}, false, 8.9f, 8.9f));
}

TEST(Canny, AMagnitudeAtTheHighThresholdStartsNoEdgeButIsReachedByOne) {
    EXPECT_EQ((std::vector<uint8>{0, 0, 0}), CannyOfLine({0, 24, 0}, false, 8.0f, 24.0f));
    // Column of a vertical edge: gradient along x, so the neighbours above and below do not suppress.
    Plane<int16> dx(3, 3, 0, 0, 0);
    const Plane<int16> dy(3, 3, 0, 0, 0);
    Plane<uint8> dst(3, 3, 0, 0, 0);
    dx.At(1, 0) = 24;
    dx.At(1, 1) = 24;
    dx.At(1, 2) = 25;
    ASSERT_EQ(kOk, RunCanny(dx, dy, dst, {3, 3}, 8.0f, 24.0f));
    EXPECT_EQ((std::vector<uint8>{0, 255, 0, 0, 255, 0, 0, 255, 0}), std::vector<uint8>(dst.Data(), dst.Data() + 9));
}

TEST(Canny, AnEdgeReachesCandidatesAcrossAllEightNeighbours) {
    for (int32 v = 0; v < 3; ++v) {
        for (int32 u = 0; u < 3; ++u) {
            if (u == 1 && v == 1) continue;
            // The middle starts the edge; its direction is chosen so that the neighbour survives.
            Plane<int16> dx(5, 5, 0, 0, 0);
            Plane<int16> dy(5, 5, 0, 0, 0);
            Plane<uint8> dst(5, 5, 0, 0, 0);
            auto& gradient = v == 1 ? dy : dx; // beside each other: gradient along y, else along x
            gradient.At(2, 2) = 50;
            gradient.At(u + 1, v + 1) = 10;
            ASSERT_EQ(kOk, RunCanny(dx, dy, dst, {5, 5}, 8.0f, 24.0f));
            EXPECT_EQ(255, dst.At(2, 2));
            EXPECT_EQ(255, dst.At(u + 1, v + 1)) << "neighbour " << u - 1 << ", " << v - 1;
        }
    }
}

TEST(Canny, APlateauAlongAnAxisKeepsItsFirstPixel) {
    EXPECT_EQ((std::vector<uint8>{0, 255, 0, 0, 0}), CannyOfLine({0, 50, 50, 50, 0}, false, 8, 24));
    EXPECT_EQ((std::vector<uint8>{0, 255, 0, 0, 0}), CannyOfLine({0, 50, 50, 50, 0}, true, 8, 24));
}

TEST(Canny, ADiagonalPlateauKeepsNone) {
    for (const bool sameSign : {true, false}) {
        Plane<int16> dx(3, 3, 0, 0, 0);
        Plane<int16> dy(3, 3, 0, 0, 0);
        Plane<uint8> dst(3, 3, 0, 0, 0);
        // Two equal pixels along the gradient's own direction.
        dx.At(1, 1) = dy.At(1, 1) = 30;
        const int32 neighbour = sameSign ? 2 : 0;
        dx.At(neighbour, 2) = 60; // gradient along x there, so it survives
        if (!sameSign) dy.At(1, 1) = -30;
        ASSERT_EQ(kOk, RunCanny(dx, dy, dst, {3, 3}, 8, 24));
        EXPECT_EQ(0, dst.At(1, 1)) << (sameSign ? "same signs" : "different signs");
        EXPECT_EQ(255, dst.At(neighbour, 2));
    }
}

TEST(Canny, ThePlaneHasNoNeighboursBeyondItsEdges) {
    EXPECT_EQ((std::vector<uint8>{255}), CannyOfLine({-30}, false, 8, 24));
    EXPECT_EQ((std::vector<uint8>{255, 0, 255}), CannyOfLine({30, 10, 30}, true, 8, 24));
}

TEST(Canny, TheLargestMagnitudeIsCountedInFull) {
    Plane<int16> dx(1, 1, 0, 0, 0);
    Plane<int16> dy(1, 1, 0, 0, 0);
    dx.At(0, 0) = dy.At(0, 0) = -32768;
    struct Row {
        float low, high;
        uint8 edge;
    };
    constexpr float kInfinite = std::numeric_limits<float>::infinity();
    for (const Row& r : {Row{65535, 65535, 255},
                         {65535, 65536, 0},
                         {65536, 65536, 0},
                         {1e30f, 1e30f, 0},
                         {0, kInfinite, 0},
                         {kInfinite, kInfinite, 0}}) {
        Plane<uint8> dst(1, 1, 0, 0, 0);
        ASSERT_EQ(kOk, RunCanny(dx, dy, dst, {1, 1}, r.low, r.high));
        EXPECT_EQ(r.edge, dst.At(0, 0)) << "thresholds " << r.low << ", " << r.high;
    }
}

TEST(Canny, FailuresAreTestedInOrder) {
    const int16 dx[16] = {};
    const int16 dy[16] = {};
    uint8 dst[16] = {7};
    uint8 buffer[2000];
    constexpr float kNaN = std::numeric_limits<float>::quiet_NaN();
    const auto run = [&](const int16* x, int32 xStep, const int16* y, int32 yStep, uint8* out, int32 outStep,
                         ImageSize roi, float low, float high, uint8* work) {
        return primCanny_16s8u_C1(x, xStep, y, yStep, out, outStep, roi, low, high, work);
    };
    EXPECT_EQ(-8, run(nullptr, 1, dy, 1, dst, 1, {0, 0}, -1, -2, buffer));
    EXPECT_EQ(-8, run(dx, 1, nullptr, 1, dst, 1, {0, 0}, -1, -2, buffer));
    EXPECT_EQ(-8, run(dx, 1, dy, 1, nullptr, 1, {0, 0}, -1, -2, buffer));
    EXPECT_EQ(-8, run(dx, 1, dy, 1, dst, 1, {0, 0}, -1, -2, nullptr));
    EXPECT_EQ(-6, run(dx, 1, dy, 1, dst, 1, {0, 4}, -1, -2, buffer));
    EXPECT_EQ(-6, run(dx, 1, dy, 1, dst, 1, {4, 0}, -1, -2, buffer));
    EXPECT_EQ(-14, run(dx, 7, dy, 9, dst, 4, {4, 4}, -1, -2, buffer));
    EXPECT_EQ(-14, run(dx, 9, dy, 7, dst, 4, {4, 4}, -1, -2, buffer));
    EXPECT_EQ(-14, run(dx, 9, dy, 9, dst, 3, {4, 4}, -1, -2, buffer));
    EXPECT_EQ(-14, run(dx, 0x7ffffffe, dy, 0x7ffffffe, dst, 0x7fffffff, {0x40000000, 1}, -1, -2, buffer));
    EXPECT_EQ(-108, run(dx, 9, dy, 8, dst, 4, {4, 4}, -1, -2, buffer));
    EXPECT_EQ(-108, run(dx, 8, dy, 9, dst, 4, {4, 4}, -1, -2, buffer));
    EXPECT_EQ(-5, run(dx, 8, dy, 8, dst, 4, {4, 4}, -1, 24, buffer));
    EXPECT_EQ(-5, run(dx, 8, dy, 8, dst, 4, {4, 4}, 24, 23.9f, buffer));
    EXPECT_EQ(-5, run(dx, 8, dy, 8, dst, 4, {4, 4}, kNaN, 24, buffer));
    EXPECT_EQ(-5, run(dx, 8, dy, 8, dst, 4, {4, 4}, 8, kNaN, buffer));
    EXPECT_EQ(7, dst[0]) << "a refused call wrote";
}

TEST(Canny, ARegionBeyondTheLargestBufferTakesStorageOfItsOwnOrFails) {
    // The heap is asked before any pixel is touched, so that a small block can stand for the planes.
    const int16 gradient[4] = {};
    uint8 dst[4] = {7};
    uint8 buffer[4];
    const HeapLimit limit(0);
    for (const ImageSize roi : {ImageSize{20800, 20800}, {0x3fffffff, 0x7fffffff}}) {
        const int32 step = 2 * roi.width;
        EXPECT_EQ(-9, primCanny_16s8u_C1(gradient, step, gradient, step, dst, step, roi, 8, 24, buffer));
    }
    EXPECT_EQ(7, dst[0]);
}

TEST(Canny, BufferSizeFollowsItsFormulasAndEndsAtTheLargestNumber) {
    struct Row {
        ImageSize roi;
        int32 bytes;
    };
    constexpr int32 kMost = std::numeric_limits<int32>::max();
    const Row rows[] = {
        {{1, 1}, 15 * 3 + 28 * 4 + 64},
        {{349, 261}, (5 * 261 + 10) * 351 + (4 * 349 + 24) * 4 + 64},
        {{65532, 1}, 15 * 65534 + (4 * 65532 + 24) * 4 + 64},
        {{65533, 1}, 9 * 3 * 65533 + 18 * 3 + (4 * 65533 + 24) * 4 + 64},
        {{1, 65532}, (5 * 65532 + 10) * 3 + 28 * 4 + 64},
        {{1, 65533}, 9 * 65535 + 18 * 65535 + 28 * 4 + 64},
        {{20700, 20700}, (5 * 20700 + 10) * 20702 + (4 * 20700 + 24) * 4 + 64},
        {{20800, 20800}, kMost},
        {{65532, 65532}, kMost},
        {{kMost, 1}, kMost},
        {{1, kMost}, kMost},
        {{kMost, kMost}, kMost},
    };
    for (const Row& r : rows) {
        int32 bytes = -1;
        EXPECT_EQ(kOk, primCannyGetBufferSize(r.roi, &bytes));
        EXPECT_EQ(r.bytes, bytes) << r.roi.width << "x" << r.roi.height;
    }
}

TEST(Canny, BufferQueryFailsInOrder) {
    int32 bytes = -1;
    EXPECT_EQ(-8, primCannyGetBufferSize({0, 0}, nullptr));
    EXPECT_EQ(-6, primCannyGetBufferSize({0, 4}, &bytes));
    EXPECT_EQ(-6, primCannyGetBufferSize({4, -3}, &bytes));
    EXPECT_EQ(-1, bytes);
}

} // namespace
} // namespace orvane::test
