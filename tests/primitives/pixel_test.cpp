#include "primitives/pixel.h"

#include "primitives/primitives.h"
#include "tests/reference/pixel.h"
#include "tests/support/checksum.h"

#include <vector>

namespace orvane::test {
namespace {

using reference::ForEachPixel;
using reference::Pixel;
using Bytes = Plane<uint8>;

/// Regions of every width 1..100 and of a few rows.
template <typename Body>
void ForManySizes(Body body) {
    Random random;
    for (int32 width = 1; width <= 100; ++width) {
        body(ImageSize{width, random.Int(1, 4)}, random);
        if (::testing::Test::HasFatalFailure()) FAIL() << "at width " << width;
    }
}

/// A mask of zeros and of any other value.
Bytes RandomMask(ImageSize roi, Random& random) {
    Bytes mask = Bytes::Source(roi.width, roi.height, random);
    ForEachPixel(roi, [&](int32 x, int32 y) {
        if (random.Int(0, 1) == 0) mask.At(x, y) = 0;
    });
    return mask;
}

TEST(SetMasked, WritesTheValueWhereTheMaskIsNotZeroAndNothingBeside) {
    ForManySizes([](ImageSize roi, Random& random) {
        const Bytes mask = RandomMask(roi, random);
        Bytes result = Bytes::Output(roi.width, roi.height, random);
        Bytes expected = result;
        const auto value = static_cast<uint8>(random.Int(0, 255));
        ASSERT_EQ(kOk, primSetMasked_8u_C1(value, result.Data(), result.Step(), roi, mask.Data(), mask.Step()));
        reference::SetMasked(value, expected, roi, mask);
        ASSERT_SAME_PLANE(uint8, result, expected);
    });
}

TEST(SetMasked, TestsPointersThenSizeThenSteps) {
    uint8 dst[1] = {7};
    const uint8 mask[1] = {1};
    EXPECT_EQ(kNullPointer, primSetMasked_8u_C1(1, nullptr, 0, {0, 0}, mask, 0));
    EXPECT_EQ(kNullPointer, primSetMasked_8u_C1(1, dst, 1, {1, 1}, nullptr, 1));
    EXPECT_EQ(kBadSize, primSetMasked_8u_C1(1, dst, 0, {0, 1}, mask, 1));
    EXPECT_EQ(kBadSize, primSetMasked_8u_C1(1, dst, 1, {1, 0}, mask, 0));
    EXPECT_EQ(kStepTooSmall, primSetMasked_8u_C1(1, dst, 0, {1, 1}, mask, 1));
    EXPECT_EQ(kStepTooSmall, primSetMasked_8u_C1(1, dst, 1, {1, 1}, mask, -1));
    EXPECT_EQ(7, dst[0]) << "a refused call wrote";
}

TEST(CopyMasked, CopiesWholePixelsWhereTheMaskIsNotZeroAndNothingBeside) {
    ForManySizes([](ImageSize roi, Random& random) {
        const Bytes mask = RandomMask(roi, random);
        const Bytes src = Bytes::Source(3 * roi.width, roi.height, random);
        Bytes result = Bytes::Output(3 * roi.width, roi.height, random);
        Bytes expected = result;
        ASSERT_EQ(kOk, primCopyMasked_8u_C3(src.Data(), src.Step(), result.Data(), result.Step(), roi, mask.Data(),
                                            mask.Step()));
        reference::CopyMasked3(src, expected, roi, mask);
        ASSERT_SAME_PLANE(uint8, result, expected);
    });
}

TEST(CopyMasked, CopiesLongRunsLikeSinglePixels) {
    ForManySizes([](ImageSize roi, Random& random) {
        Bytes mask = Bytes::Source(roi.width, roi.height, random);
        int32 rest = 0, level = 0;
        ForEachPixel(roi, [&](int32 x, int32 y) {
            if (rest-- == 0) {
                rest = random.Int(0, 30);
                const int32 levels[] = {0, 1, 127, 128, 255};
                level = levels[random.Int(0, 1) * random.Int(1, 4)];
            }
            mask.At(x, y) = static_cast<uint8>(level);
        });
        const Bytes src = Bytes::Source(3 * roi.width, roi.height, random);
        Bytes result = Bytes::Output(3 * roi.width, roi.height, random);
        Bytes expected = result;
        ASSERT_EQ(kOk, primCopyMasked_8u_C3(src.Data(), src.Step(), result.Data(), result.Step(), roi, mask.Data(),
                                            mask.Step()));
        reference::CopyMasked3(src, expected, roi, mask);
        ASSERT_SAME_PLANE(uint8, result, expected);
    });
}

TEST(CopyMasked, TestsPointersThenSizeAndNoSteps) {
    const uint8 src[3] = {1, 2, 3};
    uint8 dst[3] = {7, 7, 7};
    const uint8 mask[1] = {1};
    EXPECT_EQ(kNullPointer, primCopyMasked_8u_C3(nullptr, 3, dst, 3, {0, 0}, mask, 1));
    EXPECT_EQ(kNullPointer, primCopyMasked_8u_C3(src, 3, nullptr, 3, {1, 1}, mask, 1));
    EXPECT_EQ(kNullPointer, primCopyMasked_8u_C3(src, 3, dst, 3, {1, 1}, nullptr, 1));
    EXPECT_EQ(kBadSize, primCopyMasked_8u_C3(src, 3, dst, 3, {1, -1}, mask, 1));
    EXPECT_EQ(7, dst[0]) << "a refused call wrote";
    EXPECT_EQ(kOk, primCopyMasked_8u_C3(src, 0, dst, 0, {1, 1}, mask, 0));
    EXPECT_EQ(3, dst[2]);
}

TEST(SplitPlanes, GivesEachPlaneItsChannelAndWritesNothingBeside) {
    ForManySizes([](ImageSize roi, Random& random) {
        const Bytes src = Bytes::Source(3 * roi.width, roi.height, random);
        const int32 padding = random.Int(0, 5);
        std::vector<Bytes> results, expected;
        for (int32 c = 0; c < 3; ++c) {
            results.emplace_back(roi.width, roi.height, padding, 16, 16);
            results[c].FillRandom(random);
            expected.push_back(results[c]);
            ForEachPixel(roi, [&](int32 x, int32 y) { expected[c].At(x, y) = src.At(3 * x + c, y); });
        }
        uint8* const planes[3] = {results[0].Data(), results[1].Data(), results[2].Data()};
        ASSERT_EQ(kOk, primCopy_8u_C3P3(src.Data(), src.Step(), planes, results[0].Step(), roi));
        for (int32 c = 0; c < 3; ++c) ASSERT_SAME_PLANE(uint8, results[c], expected[c]);
    });
}

TEST(SplitPlanes, TestsPointersThenSizeAndNoSteps) {
    const uint8 src[3] = {1, 2, 3};
    uint8 a[1] = {7}, b[1] = {7}, c[1] = {7};
    uint8* const planes[3] = {a, b, c};
    EXPECT_EQ(kNullPointer, primCopy_8u_C3P3(nullptr, 3, planes, 1, {0, 0}));
    EXPECT_EQ(kNullPointer, primCopy_8u_C3P3(src, 3, nullptr, 1, {1, 1}));
    for (int32 missing = 0; missing < 3; ++missing) {
        uint8* holed[3] = {a, b, c};
        holed[missing] = nullptr;
        EXPECT_EQ(kNullPointer, primCopy_8u_C3P3(src, 3, holed, 1, {1, 1})) << "plane " << missing;
    }
    EXPECT_EQ(kBadSize, primCopy_8u_C3P3(src, 3, planes, 1, {0, 1}));
    EXPECT_EQ(7, a[0]) << "a refused call wrote";
    EXPECT_EQ(kOk, primCopy_8u_C3P3(src, 0, planes, 0, {1, 1}));
    EXPECT_EQ(3, c[0]);
}

TEST(SwapChannels, FollowsEveryOrderAndWritesNothingBeside) {
    ForManySizes([](ImageSize roi, Random& random) {
        for (int32 code = 0; code < 27; ++code) {
            const int32 order[3] = {code % 3, code / 3 % 3, code / 9};
            const Bytes src = Bytes::Source(3 * roi.width, roi.height, random);
            Bytes result = Bytes::Output(3 * roi.width, roi.height, random);
            Bytes expected = result;
            ASSERT_EQ(kOk, primSwapChannels_8u_C3(src.Data(), src.Step(), result.Data(), result.Step(), roi, order));
            reference::SwapChannels(src, expected, roi, order);
            ASSERT_SAME_PLANE(uint8, result, expected);
        }
    });
}

TEST(SwapChannels, TestsPointersSizeStepsThenOrder) {
    const uint8 src[3] = {1, 2, 3};
    uint8 dst[3] = {7, 7, 7};
    const int32 order[3] = {2, 1, 0}, wrong[3] = {2, 3, 0}, negative[3] = {0, 1, -1};
    EXPECT_EQ(kNullPointer, primSwapChannels_8u_C3(nullptr, 0, dst, 3, {0, 0}, wrong));
    EXPECT_EQ(kNullPointer, primSwapChannels_8u_C3(src, 3, nullptr, 3, {1, 1}, order));
    EXPECT_EQ(kNullPointer, primSwapChannels_8u_C3(src, 3, dst, 3, {1, 1}, nullptr));
    EXPECT_EQ(kBadSize, primSwapChannels_8u_C3(src, 0, dst, 0, {1, 0}, wrong));
    EXPECT_EQ(kStepTooSmall, primSwapChannels_8u_C3(src, 0, dst, 3, {1, 1}, wrong));
    EXPECT_EQ(kStepTooSmall, primSwapChannels_8u_C3(src, 3, dst, 0, {1, 1}, wrong));
    EXPECT_EQ(kBadChannelOrder, primSwapChannels_8u_C3(src, 3, dst, 3, {1, 1}, wrong));
    EXPECT_EQ(kBadChannelOrder, primSwapChannels_8u_C3(src, 3, dst, 3, {1, 1}, negative));
    EXPECT_EQ(7, dst[0]) << "a refused call wrote";
}

TEST(And, MeetsBitByBitAndWritesNothingBeside) {
    ForManySizes([](ImageSize roi, Random& random) {
        const Bytes src = Bytes::Source(roi.width, roi.height, random);
        Bytes result = Bytes::Output(roi.width, roi.height, random);
        Bytes expected = result;
        ASSERT_EQ(kOk, primAnd_8u_C1I(src.Data(), src.Step(), result.Data(), result.Step(), roi));
        ForEachPixel(roi, [&](int32 x, int32 y) { expected.At(x, y) &= src.At(x, y); });
        ASSERT_SAME_PLANE(uint8, result, expected);
    });
}

TEST(And, OfBytesWithoutACommonBitIsZero) {
    const uint8 src[1] = {128};
    uint8 dst[1] = {64};
    ASSERT_EQ(kOk, primAnd_8u_C1I(src, 1, dst, 1, {1, 1}));
    EXPECT_EQ(0, dst[0]);
}

TEST(And, TestsPointersThenStepsThenSize) {
    const uint8 src[1] = {0};
    uint8 dst[1] = {7};
    EXPECT_EQ(kNullPointer, primAnd_8u_C1I(nullptr, 0, dst, 0, {0, 0}));
    EXPECT_EQ(kNullPointer, primAnd_8u_C1I(src, 1, nullptr, 1, {1, 1}));
    EXPECT_EQ(kStepTooSmall, primAnd_8u_C1I(src, 0, dst, 1, {0, 0}));
    EXPECT_EQ(kStepTooSmall, primAnd_8u_C1I(src, 1, dst, 0, {0, 0}));
    EXPECT_EQ(kBadSize, primAnd_8u_C1I(src, 1, dst, 1, {0, 1}));
    EXPECT_EQ(7, dst[0]) << "a refused call wrote";
}

TEST(ThresholdBothWays, FollowsItsRuleAndWritesNothingBeside) {
    ForManySizes([](ImageSize roi, Random& random) {
        const Bytes src = Bytes::Source(roi.width, roi.height, random);
        Bytes result = Bytes::Output(roi.width, roi.height, random);
        Bytes expected = result;
        const auto low = static_cast<uint8>(random.Int(0, 255)), high = static_cast<uint8>(random.Int(low, 255));
        ASSERT_EQ(kOk, primThresholdLTValGTVal_8u_C1(src.Data(), src.Step(), result.Data(), result.Step(), roi, low, 3,
                                                     high, 201));
        ForEachPixel(roi, [&](int32 x, int32 y) {
            expected.At(x, y) = reference::ThresholdBoth(src.At(x, y), low, 3, high, 201);
        });
        ASSERT_SAME_PLANE(uint8, result, expected);
    });
}

TEST(ThresholdBothWays, EqualThresholdsLeaveOnlyPixelsOfThatValue) {
    uint8 src[256], dst[256];
    for (int32 v = 0; v < 256; ++v) src[v] = static_cast<uint8>(v);
    for (const int32 threshold : {0, 1, 127, 128, 254, 255}) {
        const auto t = static_cast<uint8>(threshold);
        ASSERT_EQ(kOk, primThresholdLTValGTVal_8u_C1(src, 256, dst, 256, {256, 1}, t, 9, t, 9));
        for (int32 v = 0; v < 256; ++v) ASSERT_EQ(v == threshold ? v : 9, dst[v]) << "threshold " << threshold;
    }
}

TEST(ThresholdBothWays, TestsPointersSizeStepsThenTheThresholds) {
    const uint8 src[1] = {0};
    uint8 dst[1] = {7};
    EXPECT_EQ(kNullPointer, primThresholdLTValGTVal_8u_C1(nullptr, 0, dst, 0, {0, 0}, 2, 0, 1, 0));
    EXPECT_EQ(kNullPointer, primThresholdLTValGTVal_8u_C1(src, 1, nullptr, 1, {1, 1}, 1, 0, 2, 0));
    EXPECT_EQ(kBadSize, primThresholdLTValGTVal_8u_C1(src, 0, dst, 0, {1, 0}, 2, 0, 1, 0));
    EXPECT_EQ(kStepTooSmall, primThresholdLTValGTVal_8u_C1(src, 0, dst, 1, {1, 1}, 2, 0, 1, 0));
    EXPECT_EQ(kStepTooSmall, primThresholdLTValGTVal_8u_C1(src, 1, dst, 0, {1, 1}, 2, 0, 1, 0));
    EXPECT_EQ(kThresholdOrder, primThresholdLTValGTVal_8u_C1(src, 1, dst, 1, {1, 1}, 2, 0, 1, 0));
    EXPECT_EQ(7, dst[0]) << "a refused call wrote";
}

TEST(ThresholdOneWay, ReplacesWhatLiesStrictlyBeyondAndWritesNothingBeside) {
    ForManySizes([](ImageSize roi, Random& random) {
        for (const int32 compareOp : {kLess, kGreater}) {
            Bytes result = Bytes::Output(roi.width, roi.height, random);
            Bytes expected = result;
            // A threshold that occurs, so that strictness shows.
            const uint8 threshold = result.At(random.Int(0, roi.width - 1), 0);
            ASSERT_EQ(kOk, primThresholdVal_8u_C1I(result.Data(), result.Step(), roi, threshold, 77, compareOp));
            ForEachPixel(roi, [&](int32 x, int32 y) {
                if (reference::Compares(expected.At(x, y), threshold, compareOp)) expected.At(x, y) = 77;
            });
            ASSERT_SAME_PLANE(uint8, result, expected);
        }
    });
}

TEST(ThresholdOneWay, TestsTheCodeThenPointerSizeAndStep) {
    uint8 plane[1] = {7};
    for (const int32 code : {-1, 1, 2, 3, 5, 1 << 30}) {
        EXPECT_EQ(kUnknownCode, primThresholdVal_8u_C1I(nullptr, 0, {0, 0}, 9, 1, code)) << "code " << code;
    }
    EXPECT_EQ(kNullPointer, primThresholdVal_8u_C1I(nullptr, 0, {0, 0}, 9, 1, kLess));
    EXPECT_EQ(kBadSize, primThresholdVal_8u_C1I(plane, 0, {0, 1}, 9, 1, kLess));
    EXPECT_EQ(kStepTooSmall, primThresholdVal_8u_C1I(plane, 0, {1, 1}, 9, 1, kGreater));
    EXPECT_EQ(7, plane[0]) << "a refused call wrote";
}

TEST(Compare, MarksWhereTheComparisonHoldsAndWritesNothingBeside) {
    ForManySizes([](ImageSize roi, Random& random) {
        for (int32 compareOp = 0; compareOp <= 4; ++compareOp) {
            const Bytes src = Bytes::Source(roi.width, roi.height, random);
            Bytes result = Bytes::Output(roi.width, roi.height, random);
            Bytes expected = result;
            const uint8 value = src.At(random.Int(0, roi.width - 1), 0);
            ASSERT_EQ(kOk,
                      primCompareC_8u_C1(src.Data(), src.Step(), value, result.Data(), result.Step(), roi, compareOp));
            ForEachPixel(roi, [&](int32 x, int32 y) {
                expected.At(x, y) = reference::Compares(src.At(x, y), value, compareOp) ? 255 : 0;
            });
            ASSERT_SAME_PLANE(uint8, result, expected);
        }
    });
}

TEST(Compare, AnUnknownCodeDoesNothingAndSucceeds) {
    const uint8 src[2] = {1, 2};
    for (const int32 code : {7, 5, -1}) {
        uint8 dst[2] = {7, 7};
        EXPECT_EQ(kOk, primCompareC_8u_C1(src, 2, 1, dst, 2, {2, 1}, code));
        EXPECT_EQ(7, dst[0]) << "code " << code;
        EXPECT_EQ(7, dst[1]) << "code " << code;
    }
}

TEST(Compare, TestsPointersThenStepsThenSize) {
    const uint8 src[1] = {0};
    uint8 dst[1] = {7};
    EXPECT_EQ(kNullPointer, primCompareC_8u_C1(nullptr, 0, 0, dst, 0, {0, 0}, 7));
    EXPECT_EQ(kNullPointer, primCompareC_8u_C1(src, 1, 0, nullptr, 1, {1, 1}, 0));
    EXPECT_EQ(kStepTooSmall, primCompareC_8u_C1(src, 0, 0, dst, 1, {0, 0}, 0));
    EXPECT_EQ(kStepTooSmall, primCompareC_8u_C1(src, 1, 0, dst, 0, {0, 0}, 0));
    EXPECT_EQ(kBadSize, primCompareC_8u_C1(src, 1, 0, dst, 1, {1, 0}, 0));
    EXPECT_EQ(7, dst[0]) << "a refused call wrote";
}

TEST(Grey, EqualsTheFormulaAtEveryWidthAndWritesNothingBeside) {
    ForManySizes([](ImageSize roi, Random& random) {
        const Bytes src = Bytes::Source(3 * roi.width, roi.height, random);
        Bytes result = Bytes::Output(roi.width, roi.height, random);
        Bytes expected = result;
        ASSERT_EQ(kOk, primRGBToGray_8u_C3C1(src.Data(), src.Step(), result.Data(), result.Step(), roi));
        ForEachPixel(roi, [&](int32 x, int32 y) {
            expected.At(x, y) = reference::Grey({src.At(3 * x, y), src.At(3 * x + 1, y), src.At(3 * x + 2, y)});
        });
        ASSERT_SAME_PLANE(uint8, result, expected);
    });
}

TEST(Grey, WhiteStaysWhiteAndOneStaysOne) {
    const uint8 src[] = {255, 255, 255, 1, 1, 1, 0, 0, 0};
    uint8 dst[3] = {9, 9, 9};
    ASSERT_EQ(kOk, primRGBToGray_8u_C3C1(src, 9, dst, 3, {3, 1}));
    EXPECT_EQ(255, dst[0]);
    EXPECT_EQ(1, dst[1]);
    EXPECT_EQ(0, dst[2]);
}

TEST(Grey, TestsPointersThenSize) {
    const uint8 src[3] = {};
    uint8 dst[1] = {7};
    EXPECT_EQ(kNullPointer, primRGBToGray_8u_C3C1(nullptr, 3, dst, 1, {0, 0}));
    EXPECT_EQ(kNullPointer, primRGBToGray_8u_C3C1(src, 3, nullptr, 1, {1, 1}));
    EXPECT_EQ(kBadSize, primRGBToGray_8u_C3C1(src, 3, dst, 1, {0, 1}));
    EXPECT_EQ(kBadSize, primRGBToGray_8u_C3C1(src, 3, dst, 1, {1, -1}));
    EXPECT_EQ(7, dst[0]) << "a refused call wrote";
}

Pixel HsvOf(Pixel pixel) {
    EXPECT_EQ(kOk, primRGBToHSV_8u_C3(pixel.data(), 3, pixel.data(), 3, {1, 1}));
    return pixel;
}

TEST(Hsv, HasItsNamedColours) {
    const struct {
        Pixel colour, hsv;
    } table[] = {
        {{0, 0, 0}, {0, 0, 0}},           {{77, 77, 77}, {0, 0, 77}},       {{255, 255, 255}, {0, 0, 255}},
        {{255, 0, 0}, {0, 255, 255}},     {{0, 255, 0}, {85, 255, 255}},    {{0, 0, 255}, {170, 255, 255}},
        {{255, 0, 1}, {255, 255, 255}},  // nearly a full circle: stays 255, not folded to 0
        {{200, 200, 0}, {42, 255, 200}}, // first and second channel tie: the second counts
        {{0, 200, 200}, {127, 255, 200}}, {{200, 0, 200}, {212, 255, 200}},
    };
    for (const auto& row : table) {
        EXPECT_EQ(row.hsv, HsvOf(row.colour))
            << "of " << +row.colour[0] << ", " << +row.colour[1] << ", " << +row.colour[2];
    }
}

TEST(Hsv, EqualsTheFormulaAtEveryWidthAndWritesNothingBeside) {
    ForManySizes([](ImageSize roi, Random& random) {
        const Bytes src = Bytes::Source(3 * roi.width, roi.height, random);
        Bytes result = Bytes::Output(3 * roi.width, roi.height, random);
        Bytes expected = result;
        ASSERT_EQ(kOk, primRGBToHSV_8u_C3(src.Data(), src.Step(), result.Data(), result.Step(), roi));
        ForEachPixel(roi, [&](int32 x, int32 y) {
            const Pixel hsv = reference::Hsv({src.At(3 * x, y), src.At(3 * x + 1, y), src.At(3 * x + 2, y)});
            for (int32 c = 0; c < 3; ++c) expected.At(3 * x + c, y) = hsv[c];
        });
        ASSERT_SAME_PLANE(uint8, result, expected);
    });
}

TEST(Hsv, EqualsTheFormulaAllOverTheColourCubeAndIsTheSameOnEveryBuild) {
    std::uint64_t sum = Checksum(nullptr, 0);
    std::vector<uint8> row(3 * 256), hsv(3 * 256);
    for (int32 c0 = 0; c0 < 256; c0 += 5) {
        for (int32 c1 = 0; c1 < 256; c1 += 3) {
            for (int32 c2 = 0; c2 < 256; ++c2) {
                row[3 * c2] = static_cast<uint8>(c0);
                row[3 * c2 + 1] = static_cast<uint8>(c1);
                row[3 * c2 + 2] = static_cast<uint8>(c2);
            }
            ASSERT_EQ(kOk, primRGBToHSV_8u_C3(row.data(), 768, hsv.data(), 768, {256, 1}));
            for (int32 c2 = 0; c2 < 256; ++c2) {
                const Pixel result = {hsv[3 * c2], hsv[3 * c2 + 1], hsv[3 * c2 + 2]};
                ASSERT_EQ(reference::Hsv({row[3 * c2], row[3 * c2 + 1], row[3 * c2 + 2]}), result)
                    << "of " << c0 << ", " << c1 << ", " << c2;
            }
            sum = Checksum(hsv.data(), hsv.size(), sum);
        }
    }
    EXPECT_EQ(10870288437341297471u, sum);
}

TEST(Hsv, TestsPointersThenSize) {
    uint8 pixel[3] = {7, 8, 9};
    EXPECT_EQ(kNullPointer, primRGBToHSV_8u_C3(nullptr, 3, pixel, 3, {0, 0}));
    EXPECT_EQ(kNullPointer, primRGBToHSV_8u_C3(pixel, 3, nullptr, 3, {1, 1}));
    EXPECT_EQ(kBadSize, primRGBToHSV_8u_C3(pixel, 3, pixel, 3, {-1, 1}));
    EXPECT_EQ(7, pixel[0]) << "a refused call wrote";
}

} // namespace
} // namespace orvane::test
