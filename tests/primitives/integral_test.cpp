#include "primitives/integral.h"

#include "primitives/primitives.h"
#include "tests/reference/integral.h"

#include <limits>
#include <vector>

namespace orvane::test {
namespace {

constexpr float kScanInit = -16777216.0f;

/// The two integral planes of a picture, each ending with its last element.
struct Integral {
    Integral(const Plane<uint8>& src, ImageSize roi, float sumInit, double squaresInit, Random& random)
        : sum(Plane<float>::Source(roi.width + 1, roi.height + 1, random)),
          squares(Plane<double>::Source(roi.width + 1, roi.height + 1, random)) {
        EXPECT_EQ(kOk, primSqrIntegral_8u32f64f_C1(src.Data(), src.Step(), sum.Data(), sum.Step(), squares.Data(),
                                                   squares.Step(), roi, sumInit, squaresInit));
    }
    Plane<float> sum;
    Plane<double> squares;
};

TEST(SqrIntegral, EqualsThePlainFormAtEveryWidth) {
    Random random;
    for (int32 width = 1; width <= 100; ++width) {
        const ImageSize roi{width, random.Int(1, 12)};
        const auto src = Plane<uint8>::Source(width, roi.height, random);
        auto sum = Plane<float>::Output(width + 1, roi.height + 1, random);
        auto squares = Plane<double>::Output(width + 1, roi.height + 1, random);
        auto expectedSum = sum;
        auto expectedSquares = squares;
        const float sumInit = width % 2 == 0 ? kScanInit : static_cast<float>(random.Real(-1e9, 1e9));
        const double squaresInit = width % 3 == 0 ? 0.0 : random.Real(-1e17, 1e17);
        ASSERT_EQ(kOk, primSqrIntegral_8u32f64f_C1(src.Data(), src.Step(), sum.Data(), sum.Step(), squares.Data(),
                                                   squares.Step(), roi, sumInit, squaresInit));
        reference::SqrIntegral(src, expectedSum, expectedSquares, roi, sumInit, squaresInit);
        ASSERT_PRED_FORMAT2(Plane<float>::Same, sum, expectedSum) << "width " << width;
        ASSERT_PRED_FORMAT2(Plane<double>::Same, squares, expectedSquares) << "width " << width;
    }
}

TEST(SqrIntegral, EqualsThePlainFormWhereSumsAreRoundedAndWhereNot) {
    // White pixels raise a sum as far as any, and from 2^24 on a float is rounded.
    Random random;
    const ImageSize roi{70, 9};
    Plane<uint8> src(roi.width, roi.height, 0, 0, 0);
    src.FillRegion(255);
    const float highest = 16777216.0f - 255 * 70 * 9;
    for (const float init : {kScanInit, kScanInit - 2, -16777215.0f, 0.5f, 0.1f, 1e-10f, -1e-38f, 1e30f, -0.0f, 0.0f,
                             highest, highest + 1, 16777216.0f, std::numeric_limits<float>::infinity()}) {
        const Integral planes(src, roi, init, 0.25, random);
        auto sum = planes.sum;
        auto squares = planes.squares;
        reference::SqrIntegral(src, sum, squares, roi, init, 0.25);
        EXPECT_PRED_FORMAT2(Plane<float>::Same, planes.sum, sum) << "from " << init;
        EXPECT_PRED_FORMAT2(Plane<double>::Same, planes.squares, squares) << "from " << init;
    }
}

TEST(SqrIntegral, EqualsThePlainFormOfRowsWhoseSquaresFit32BitsAndLongerOnes) {
    Random random;
    for (const int32 width : {33023, 33024, 33025, 33040}) {
        Plane<uint8> src(width, 1, 0, 0, 0);
        src.FillRegion(255);
        const Integral planes(src, {width, 1}, kScanInit, 0.0, random);
        EXPECT_EQ(65025.0 * width, planes.squares.At(width, 1)) << width;
        EXPECT_EQ(kScanInit + 255.0 * width, planes.sum.At(width, 1)) << width;
    }
}

TEST(SqrIntegral, OnePixelGivesInitValuesAndInitPlusThePixel) {
    Random random;
    Plane<uint8> src(1, 1, 0, 0, 0);
    src.At(0, 0) = 7;
    const Integral planes(src, {1, 1}, kScanInit, 3.0, random);
    for (const auto& [x, y] : {std::pair{0, 0}, {1, 0}, {0, 1}}) {
        EXPECT_EQ(kScanInit, planes.sum.At(x, y));
        EXPECT_EQ(3.0, planes.squares.At(x, y));
    }
    EXPECT_EQ(kScanInit + 7, planes.sum.At(1, 1));
    EXPECT_EQ(52.0, planes.squares.At(1, 1));
}

TEST(SqrIntegral, WithTheScansInitSumsAreExactUpToTwiceTheRangeOfAFloat) {
    Random random;
    const ImageSize roi{512, 256}; // 33,423,360 when white, just below 2^25
    Plane<uint8> src(roi.width, roi.height, 0, 0, 0);
    src.FillRegion(255);
    const Integral planes(src, roi, kScanInit, 0.0, random);
    for (int32 y = 0; y <= roi.height; ++y) {
        for (int32 x = 0; x <= roi.width; ++x)
            ASSERT_EQ(255.0 * x * y - 16777216.0, planes.sum.At(x, y)) << x << ", " << y;
    }
}

TEST(SqrIntegral, ASumThatAFloatCannotHoldIsRoundedOnceOnItsWayIn) {
    Random random;
    const ImageSize roi{3, 2};
    Plane<uint8> src(3, 2, 0, 0, 0);
    src.FillRegion(1);
    const Integral planes(src, roi, 16777216.0f, 0.0, random); // from here on floats are even
    EXPECT_EQ(16777216.0f, planes.sum.At(1, 1)) << "2^24 + 1 rounds to even";
    EXPECT_EQ(16777218.0f, planes.sum.At(2, 1));
    EXPECT_EQ(16777220.0f, planes.sum.At(3, 1)) << "the running sum itself is not rounded";
    EXPECT_EQ(16777216.0f, planes.sum.At(1, 2));
}

TEST(SqrIntegral, AVeryWideWhiteRowIsSummedWithoutOverflowOrEarlyRounding) {
    Random random;
    Plane<uint8> src(70000, 1, 0, 0, 0); // 255 * 255 * 70000 passes 2^32
    src.FillRegion(255);
    const Integral planes(src, {70000, 1}, 0.0f, 0.0, random);
    EXPECT_EQ(255.0 * 255.0 * 70000.0, planes.squares.At(70000, 1));
    EXPECT_EQ(255.0f * 70000.0f, planes.sum.At(70000, 1));

    // Here the row's own sum passes 2^24, and what the plane holds is still exact.
    const Integral scan(src, {70000, 1}, kScanInit, 0.0, random);
    for (int32 x = 65000; x <= 70000; ++x) ASSERT_EQ(255.0 * x - 16777216.0, scan.sum.At(x, 1)) << x;
}

TEST(SqrIntegral, FailuresAreTestedInOrder) {
    const uint8 src[4] = {};
    float sum[16] = {7};
    double squares[16] = {7};
    const auto run = [&](const uint8* s, int32 sStep, float* a, int32 aStep, double* q, int32 qStep, ImageSize roi) {
        return primSqrIntegral_8u32f64f_C1(s, sStep, a, aStep, q, qStep, roi, 0.0f, 0.0);
    };
    EXPECT_EQ(-8, run(nullptr, 0, sum, 1, squares, 1, {0, 0}));
    EXPECT_EQ(-8, run(src, 0, nullptr, 1, squares, 1, {0, 0}));
    EXPECT_EQ(-8, run(src, 0, sum, 1, nullptr, 1, {0, 0}));
    EXPECT_EQ(-6, run(src, 0, sum, 1, squares, 1, {0, 2}));
    EXPECT_EQ(-6, run(src, 0, sum, 1, squares, 1, {2, 0}));
    EXPECT_EQ(-14, run(src, 1, sum, 13, squares, 25, {2, 2}));
    EXPECT_EQ(-14, run(src, 2, sum, 11, squares, 25, {2, 2}));
    EXPECT_EQ(-14, run(src, 2, sum, 13, squares, 23, {2, 2}));
    EXPECT_EQ(-14, run(src, 0x7fffffff, sum, 0x7fffffff, squares, 0x7fffffff, {0x7fffffff, 1}));
    EXPECT_EQ(-108, run(src, 2, sum, 13, squares, 24, {2, 2}));
    EXPECT_EQ(-108, run(src, 2, sum, 12, squares, 28, {2, 2}));
    EXPECT_EQ(7.0f, sum[0]);
    EXPECT_EQ(7.0, squares[0]);
    EXPECT_EQ(kOk, run(src, 2, sum, 12, squares, 24, {2, 2}));
}

TEST(RectStdDev, EqualsThePlainFormWithAndWithoutAMask) {
    Random random;
    for (int32 width = 3; width <= 100; ++width) {
        const ImageSize size{width, random.Int(3, 20)};
        const auto src = Plane<uint8>::Source(width, size.height, random);
        const Integral planes(src, size, kScanInit, 0.0, random);
        // The rectangle lies inside the window; the last positions touch the planes' last row and column.
        ImageRect rect;
        rect.x = random.Int(0, 1);
        rect.y = random.Int(0, 1);
        rect.width = random.Int(1, width - rect.x);
        rect.height = random.Int(1, size.height - rect.y);
        const ImageSize roi{width + 1 - rect.x - rect.width, size.height + 1 - rect.y - rect.height};

        auto result = Plane<float>::Output(roi.width, roi.height, random);
        auto expected = result;
        auto masked = result;
        auto expectedMasked = result;
        auto mask = Plane<uint8>::Source(roi.width, roi.height, random);
        for (int32 y = 0; y < roi.height; ++y) {
            for (int32 x = 0; x < roi.width; ++x) {
                if (random.Int(0, 2) != 0) mask.At(x, y) = 0;
                expected.At(x, y) = reference::StdDevAt(planes.sum, planes.squares, rect, x, y);
                if (mask.At(x, y) != 0) expectedMasked.At(x, y) = expected.At(x, y);
            }
        }
        ASSERT_EQ(kOk, primRectStdDev_32f_C1(planes.sum.Data(), planes.sum.Step(), planes.squares.Data(),
                                             planes.squares.Step(), result.Data(), result.Step(), roi, rect));
        ASSERT_PRED_FORMAT2(Plane<float>::Same, result, expected) << "width " << width;
        ASSERT_EQ(kOk, RectStdDevUnderMask(planes.sum.Data(), planes.sum.Step(), planes.squares.Data(),
                                           planes.squares.Step(), masked.Data(), masked.Step(), roi, rect, mask.Data(),
                                           mask.Step()));
        ASSERT_PRED_FORMAT2(Plane<float>::Same, masked, expectedMasked) << "width " << width << ", masked";
    }
}

TEST(RectStdDev, IsTheStandardDeviationOfThePixels) {
    Random random;
    Plane<uint8> src(2, 2, 0, 0, 0);
    src.At(0, 0) = 2;
    src.At(1, 0) = 4;
    src.At(0, 1) = 4;
    src.At(1, 1) = 6; // mean 4, variance 2
    const Integral planes(src, {2, 2}, kScanInit, 0.0, random);
    float dst = 0;
    ASSERT_EQ(kOk, primRectStdDev_32f_C1(planes.sum.Data(), planes.sum.Step(), planes.squares.Data(),
                                         planes.squares.Step(), &dst, 4, {1, 1}, {0, 0, 2, 2}));
    EXPECT_EQ(std::sqrt(2.0f), dst);
}

TEST(RectStdDev, AVarianceThatRoundsBelowZeroIsExactlyZero) {
    // Sums that no picture has: a mean of 1 over squares whose mean is a little less than 1.
    const float sum[4] = {0, 0, 0, 1};
    double squares[4] = {0, 0, 0, 1.0 - 1e-12};
    float dst = 9;
    ASSERT_EQ(kOk, primRectStdDev_32f_C1(sum, 8, squares, 16, &dst, 4, {1, 1}, {0, 0, 1, 1}));
    EXPECT_EQ(0.0f, dst);

    Random random;
    Plane<uint8> src(90, 40, 0, 0, 0);
    src.FillRegion(253);
    const Integral planes(src, {90, 40}, kScanInit, 0.0, random);
    Plane<float> norms(67, 17, 0, 0, 0);
    ASSERT_EQ(kOk, primRectStdDev_32f_C1(planes.sum.Data(), planes.sum.Step(), planes.squares.Data(),
                                         planes.squares.Step(), norms.Data(), norms.Step(), {67, 17}, {1, 1, 22, 22}));
    for (int32 i = 0; i < 67 * 17; ++i) ASSERT_EQ(0.0f, norms.Data()[i]);
}

TEST(RectStdDev, FailuresAreTestedInOrderWithAndWithoutAMask) {
    const float sum[64] = {};
    const double squares[64] = {};
    const uint8 mask[4] = {};
    float dst[4] = {7};
    struct Row {
        int32 status;
        const float* sum;
        int32 sumStep;
        const double* squares;
        int32 squaresStep;
        float* dst;
        int32 dstStep;
        ImageSize roi;
        ImageRect rect;
    };
    // n = 2 + 1 + 2 = 5: steps of 20, 8 and 40 at least.
    const Row rows[] = {
        {-8, nullptr, 0, squares, 0, dst, 0, {0, 0}, {-1, 0, 0, 0}},
        {-8, sum, 0, nullptr, 0, dst, 0, {0, 0}, {-1, 0, 0, 0}},
        {-8, sum, 0, squares, 0, nullptr, 0, {0, 0}, {-1, 0, 0, 0}},
        {-6, sum, 0, squares, 0, dst, 0, {0, 2}, {1, -1, 2, 2}},
        {-6, sum, 0, squares, 0, dst, 0, {2, 0}, {1, -1, 2, 2}},
        {-14, sum, 19, squares, 41, dst, 9, {2, 2}, {1, -1, 2, 2}},
        {-14, sum, 21, squares, 41, dst, 7, {2, 2}, {1, -1, 2, 2}},
        {-14, sum, 21, squares, 39, dst, 9, {2, 2}, {1, -1, 2, 2}},
        {-14, sum, 0x7ffffffc, squares, 0x7ffffff8, dst, 8, {2, 2}, {0x7fffffff, 0, 0x7fffffff, 2}},
        {-108, sum, 21, squares, 40, dst, 8, {2, 2}, {1, -1, 2, 2}},
        {-108, sum, 20, squares, 40, dst, 9, {2, 2}, {1, -1, 2, 2}},
        {-108, sum, 20, squares, 44, dst, 8, {2, 2}, {1, -1, 2, 2}},
        {-6, sum, 20, squares, 40, dst, 8, {2, 2}, {-1, 1, 2, 2}},
        {-6, sum, 20, squares, 40, dst, 8, {2, 2}, {1, -1, 2, 2}},
        {-6, sum, 20, squares, 40, dst, 8, {2, 2}, {1, 1, 0, 2}},
        {-6, sum, 20, squares, 40, dst, 8, {2, 2}, {1, 1, 2, 0}},
    };
    for (const Row& r : rows) {
        const auto number = &r - rows;
        EXPECT_EQ(r.status,
                  primRectStdDev_32f_C1(r.sum, r.sumStep, r.squares, r.squaresStep, r.dst, r.dstStep, r.roi, r.rect))
            << "row " << number;
        EXPECT_EQ(r.status, RectStdDevUnderMask(r.sum, r.sumStep, r.squares, r.squaresStep, r.dst, r.dstStep, r.roi,
                                                r.rect, mask, 2))
            << "row " << number << ", masked";
    }
    EXPECT_EQ(-8, RectStdDevUnderMask(sum, 20, squares, 40, dst, 8, {0, 0}, {1, 1, 2, 2}, nullptr, 2));
    EXPECT_EQ(7.0f, dst[0]);
}

} // namespace
} // namespace orvane::test
