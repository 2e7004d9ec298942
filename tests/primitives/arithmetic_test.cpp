#include "primitives/arithmetic.h"

#include "primitives/primitives.h"
#include "tests/reference/arithmetic.h"
#include "tests/support/plane.h"

#include <algorithm>
#include <limits>
#include <vector>

namespace orvane::test {
namespace {

using Bytes = Plane<uint8>;
using Floats = Plane<float>;

constexpr int32 kNearestEven = 1, kTruncate = 0;

/// Three-channel regions of every width 1..60 and of a few rows.
template <typename Body>
void ForManySizes(Body body) {
    Random random;
    for (int32 width = 1; width <= 60; ++width) {
        body(ImageSize{width, random.Int(1, 4)}, random);
        if (::testing::Test::HasFatalFailure()) FAIL() << "at width " << width;
    }
}

void FillWithFractions(Floats& plane, Random& random) {
    for (int32 y = 0; y < plane.Height(); ++y) {
        for (int32 i = 0; i < plane.RowElements(); ++i) plane.At(i, y) = static_cast<float>(random.Real(-20, 280));
    }
}

uint8 ByteOf(float v, int32 roundMode) {
    const float src[3] = {v, v, v};
    uint8 dst[3] = {};
    EXPECT_EQ(kOk, primConvert_32f8u_C3(src, 12, dst, 3, {1, 1}, roundMode));
    EXPECT_EQ(dst[0], dst[2]);
    return dst[0];
}

TEST(ConvertToFloat, IsExactAndWritesNothingBeside) {
    ForManySizes([](ImageSize roi, Random& random) {
        const Bytes src = Bytes::Source(3 * roi.width, roi.height, random);
        Floats result = Floats::Output(3 * roi.width, roi.height, random);
        Floats expected = result;
        ASSERT_EQ(kOk, primConvert_8u32f_C3(src.Data(), src.Step(), result.Data(), result.Step(), roi));
        for (int32 y = 0; y < roi.height; ++y) {
            for (int32 i = 0; i < 3 * roi.width; ++i) expected.At(i, y) = src.At(i, y);
        }
        ASSERT_SAME_PLANE(float, result, expected);
    });
}

TEST(ConvertToFloat, TestsPointersThenSizeThenSteps) {
    const uint8 src[3] = {1, 2, 3};
    float dst[3] = {7, 7, 7};
    EXPECT_EQ(kNullPointer, primConvert_8u32f_C3(nullptr, 0, dst, 0, {0, 0}));
    EXPECT_EQ(kNullPointer, primConvert_8u32f_C3(src, 3, nullptr, 12, {1, 1}));
    EXPECT_EQ(kBadSize, primConvert_8u32f_C3(src, 0, dst, 0, {1, 0}));
    EXPECT_EQ(kStepTooSmall, primConvert_8u32f_C3(src, 0, dst, 12, {1, 1}));
    EXPECT_EQ(kStepTooSmall, primConvert_8u32f_C3(src, 3, dst, 0, {1, 1}));
    EXPECT_EQ(7, dst[0]) << "a refused call wrote";
}

TEST(ConvertToByte, RoundsToNearestWithTiesToEven) {
    const struct {
        float v;
        uint8 nearest, truncated;
    } table[] = {
        {0.5f, 0, 0},
        {1.5f, 2, 1},
        {2.5f, 2, 2},
        {254.9f, 255, 254},
        {-3, 0, 0},
        {300, 255, 255},
        {0, 0, 0},
        {-0.0f, 0, 0},
        {0.49999997f, 0, 0},
        {0.50000006f, 1, 0},
        {254.5f, 254, 254},
        {253.5f, 254, 253},
        {255, 255, 255},
        {1e-30f, 0, 0},
        {127, 127, 127},
        {std::numeric_limits<float>::infinity(), 255, 255},
        {-std::numeric_limits<float>::infinity(), 0, 0},
        {std::numeric_limits<float>::quiet_NaN(), 0, 0},
    };
    for (const auto& row : table) {
        EXPECT_EQ(row.nearest, ByteOf(row.v, kNearestEven)) << row.v;
        EXPECT_EQ(row.truncated, ByteOf(row.v, kTruncate)) << row.v;
        EXPECT_EQ(row.truncated, ByteOf(row.v, 2)) << row.v << ": every other mode truncates";
    }
}

TEST(ConvertToByte, RoundsEveryEighthAsTheRuleSays) {
    for (int32 eighth = -16; eighth <= 256 * 8; ++eighth) {
        const float v = static_cast<float>(eighth) / 8;
        ASSERT_EQ(reference::FloatToByte(v, kNearestEven), ByteOf(v, kNearestEven)) << v;
        ASSERT_EQ(reference::FloatToByte(v, kTruncate), ByteOf(v, kTruncate)) << v;
    }
}

TEST(ConvertToByte, WritesTheRegionAndNothingBeside) {
    ForManySizes([](ImageSize roi, Random& random) {
        for (const int32 roundMode : {kTruncate, kNearestEven}) {
            Floats src = Floats::Source(3 * roi.width, roi.height, random);
            FillWithFractions(src, random);
            Bytes result = Bytes::Output(3 * roi.width, roi.height, random);
            Bytes expected = result;
            ASSERT_EQ(kOk, primConvert_32f8u_C3(src.Data(), src.Step(), result.Data(), result.Step(), roi, roundMode));
            for (int32 y = 0; y < roi.height; ++y) {
                for (int32 i = 0; i < 3 * roi.width; ++i) {
                    expected.At(i, y) = reference::FloatToByte(src.At(i, y), roundMode);
                }
            }
            ASSERT_SAME_PLANE(uint8, result, expected);
        }
    });
}

TEST(ConvertToByte, TestsPointersThenSizeThenSteps) {
    const float src[3] = {1, 2, 3};
    uint8 dst[3] = {7, 7, 7};
    EXPECT_EQ(kNullPointer, primConvert_32f8u_C3(nullptr, 0, dst, 0, {0, 0}, 1));
    EXPECT_EQ(kNullPointer, primConvert_32f8u_C3(src, 12, nullptr, 3, {1, 1}, 1));
    EXPECT_EQ(kBadSize, primConvert_32f8u_C3(src, 0, dst, 0, {0, 1}, 1));
    EXPECT_EQ(kStepTooSmall, primConvert_32f8u_C3(src, 0, dst, 3, {1, 1}, 1));
    EXPECT_EQ(kStepTooSmall, primConvert_32f8u_C3(src, 12, dst, 0, {1, 1}, 1));
    EXPECT_EQ(7, dst[0]) << "a refused call wrote";
}

TEST(Multiply, RoundsEachProductToFloatAndWritesNothingBeside) {
    ForManySizes([](ImageSize roi, Random& random) {
        Floats result = Floats::Output(3 * roi.width, roi.height, random);
        FillWithFractions(result, random);
        Floats expected = result;
        const float factors[3] = {1.1f, 0.3f, static_cast<float>(random.Real(-2, 2))};
        ASSERT_EQ(kOk, primMulC_32f_C3I(factors, result.Data(), result.Step(), roi));
        for (int32 y = 0; y < roi.height; ++y) {
            for (int32 i = 0; i < 3 * roi.width; ++i) {
                // The double product of two floats is exact, so this rounds once.
                const double product = static_cast<double>(expected.At(i, y)) * factors[i % 3];
                expected.At(i, y) = static_cast<float>(product);
            }
        }
        ASSERT_SAME_PLANE(float, result, expected);
    });
}

TEST(Multiply, TestsPointersThenSizeAndNoStep) {
    const float factors[3] = {2, 3, 4};
    float pixel[3] = {1, 1, 1};
    EXPECT_EQ(kNullPointer, primMulC_32f_C3I(nullptr, pixel, 12, {0, 0}));
    EXPECT_EQ(kNullPointer, primMulC_32f_C3I(factors, nullptr, 12, {1, 1}));
    EXPECT_EQ(kBadSize, primMulC_32f_C3I(factors, pixel, 12, {1, 0}));
    EXPECT_EQ(1, pixel[0]) << "a refused call wrote";
    EXPECT_EQ(kOk, primMulC_32f_C3I(factors, pixel, 0, {1, 1}));
    EXPECT_EQ(4, pixel[2]);
}

TEST(FloatRows, MayStartAtAnyByte) {
    const ImageSize roi{5, 3};
    const uint8 src[15 * 3] = {1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15, 200};
    constexpr int32 kOddStep = 61;
    std::vector<uint8> floats(kOddStep * 2 + 60);
    uint8 back[15 * 3] = {};
    auto* plane = reinterpret_cast<float*>(floats.data());
    const float twice[3] = {2, 2, 2};
    ASSERT_EQ(kOk, primConvert_8u32f_C3(src, 15, plane, kOddStep, roi));
    ASSERT_EQ(kOk, primMulC_32f_C3I(twice, plane, kOddStep, roi));
    ASSERT_EQ(kOk, primConvert_32f8u_C3(plane, kOddStep, back, 15, roi, kNearestEven));
    for (int32 i = 0; i < 45; ++i) ASSERT_EQ(std::min(2 * src[i], 255), back[i]) << "element " << i;
}

TEST(Subtract, NeverWrapsBelowZero) {
    uint8 pixel[3] = {10, 20, 30};
    const uint8 value[3] = {20, 20, 20};
    ASSERT_EQ(kOk, primSubC_8u_C3ISfs(value, pixel, 3, {1, 1}, 0));
    EXPECT_EQ(0, pixel[0]);
    EXPECT_EQ(0, pixel[1]);
    EXPECT_EQ(10, pixel[2]);
}

TEST(Subtract, ScalesEveryDifferenceByEveryFactor) {
    constexpr int32 kFarDown = std::numeric_limits<int32>::min(), kFarUp = std::numeric_limits<int32>::max();
    std::vector<int32> factors = {kFarDown, kFarUp};
    for (int32 s = -10; s <= 10; ++s) factors.push_back(s);
    for (const int32 s : factors) {
        uint8 row[3 * 256];
        for (int32 i = 0; i < 3 * 256; ++i) row[i] = static_cast<uint8>(i / 3);
        const uint8 value[3] = {0, 17, 255};
        ASSERT_EQ(kOk, primSubC_8u_C3ISfs(value, row, 768, {256, 1}, s));
        for (int32 i = 0; i < 3 * 256; ++i) {
            ASSERT_EQ(reference::SubtractScaled(i / 3, value[i % 3], s), row[i])
                << i / 3 << " minus " << +value[i % 3] << ", factor " << s;
        }
    }
}

TEST(Subtract, AHalfGoesToTheEvenNeighbour) {
    uint8 row[12] = {1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12};
    const uint8 nothing[3] = {0, 0, 0};
    ASSERT_EQ(kOk, primSubC_8u_C3ISfs(nothing, row, 12, {4, 1}, 2)); // quarters
    const uint8 expected[12] = {0, 0, 1, 1, 1, 2, 2, 2, 2, 2, 3, 3};
    for (int32 i = 0; i < 12; ++i) EXPECT_EQ(expected[i], row[i]) << i + 1 << " quarters";
}

TEST(Subtract, WritesTheRegionAndNothingBeside) {
    ForManySizes([](ImageSize roi, Random& random) {
        Bytes result = Bytes::Output(3 * roi.width, roi.height, random);
        Bytes expected = result;
        const uint8 value[3] = {static_cast<uint8>(random.Int(0, 255)), 9, 100};
        const int32 s = random.Int(-9, 9);
        ASSERT_EQ(kOk, primSubC_8u_C3ISfs(value, result.Data(), result.Step(), roi, s));
        for (int32 y = 0; y < roi.height; ++y) {
            for (int32 i = 0; i < 3 * roi.width; ++i) {
                expected.At(i, y) = reference::SubtractScaled(expected.At(i, y), value[i % 3], s);
            }
        }
        ASSERT_SAME_PLANE(uint8, result, expected);
    });
}

TEST(Subtract, TestsPointersThenSizeAndNoStep) {
    const uint8 value[3] = {1, 1, 1};
    uint8 pixel[3] = {7, 7, 7};
    EXPECT_EQ(kNullPointer, primSubC_8u_C3ISfs(nullptr, pixel, 3, {0, 0}, 0));
    EXPECT_EQ(kNullPointer, primSubC_8u_C3ISfs(value, nullptr, 3, {1, 1}, 0));
    EXPECT_EQ(kBadSize, primSubC_8u_C3ISfs(value, pixel, 3, {0, 1}, 0));
    EXPECT_EQ(7, pixel[0]) << "a refused call wrote";
    EXPECT_EQ(kOk, primSubC_8u_C3ISfs(value, pixel, 0, {1, 1}, 0));
    EXPECT_EQ(6, pixel[0]);
}

} // namespace
} // namespace orvane::test
