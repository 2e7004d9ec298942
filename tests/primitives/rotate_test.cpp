#include "primitives/rotate.h"

#include "primitives/primitives.h"
#include "tests/reference/rotate.h"
#include "tests/support/checksum.h"

#include <cmath>
#include <limits>

namespace orvane::test {
namespace {

using Bytes = Plane<uint8>;
using reference::Turn;

int32 Run(const Turn& t, const Bytes& src, Bytes& dst) {
    const auto entry = t.channels == 1 ? primRotate_8u_C1 : primRotate_8u_C3;
    return entry(src.Data(), t.srcSize, src.Step(), t.srcRoi, dst.Data(), dst.Step(), t.dstRoi, t.angle, t.xShift,
                 t.yShift, t.interpolation);
}

Bytes SourceFor(const Turn& t, Random& random) {
    return Bytes::Source(t.channels * t.srcSize.width, t.srcSize.height, random);
}

/// Result and reference, judged with everything around the result; the status.
int32 Judge(const Turn& t, const Bytes& src, Random& random) {
    Bytes result = Bytes::Output(t.channels * (t.dstRoi.x + t.dstRoi.width), t.dstRoi.y + t.dstRoi.height, random);
    Bytes expected = result;
    const int32 expectedStatus = reference::PlainTurn(src, expected, t).Run();
    const int32 status = Run(t, src, result);
    EXPECT_EQ(expectedStatus, status) << t;
    EXPECT_SAME_PLANE(uint8, result, expected) << t;
    return status;
}

/// The same over random pixels.
int32 Judge(const Turn& t, Random& random) { return Judge(t, SourceFor(t, random), random); }

Turn RandomTurn(Random& random, int32 largest) {
    Turn t{};
    t.srcSize = {random.Int(2, largest), random.Int(2, largest)};
    t.srcRoi.x = random.Int(0, 3) == 0 ? random.Int(0, t.srcSize.width - 1) : 0;
    t.srcRoi.y = random.Int(0, 3) == 0 ? random.Int(0, t.srcSize.height - 1) : 0;
    t.srcRoi.width = random.Int(1, 2) * random.Int(1, t.srcSize.width); // also beyond the source
    t.srcRoi.height = random.Int(1, 2) * random.Int(1, t.srcSize.height);
    t.dstRoi = {random.Int(0, 5), random.Int(0, 5), random.Int(1, largest), random.Int(1, largest)};
    t.channels = random.Int(0, 1) == 0 ? 1 : 3;
    const int32 codes[] = {kNearest, kLinear, kCubic};
    t.interpolation = codes[random.Int(0, 2)];
    return t;
}

/// Shifts that bring the region's middle to the destination's, give or take `spread` pixels.
void AimAtDestination(Turn& t, double spread, Random& random) {
    const ImageRect seen{t.srcRoi.x, t.srcRoi.y, std::min(t.srcRoi.width, t.srcSize.width - t.srcRoi.x),
                         std::min(t.srcRoi.height, t.srcSize.height - t.srcRoi.y)};
    double quad[4][2];
    ASSERT_EQ(kOk, primGetRotateQuad(seen, quad, t.angle, 0, 0));
    t.xShift = t.dstRoi.x + 0.5 * t.dstRoi.width - 0.5 * (quad[0][0] + quad[2][0]) + random.Real(-spread, spread);
    t.yShift = t.dstRoi.y + 0.5 * t.dstRoi.height - 0.5 * (quad[0][1] + quad[2][1]) + random.Real(-spread, spread);
}

TEST(Rotate, EqualsThePlainFormAtAnyAngle) {
    Random random;
    int32 turned = 0, empty = 0, small = 0;
    for (int32 round = 0; round < 2000; ++round) {
        Turn t = RandomTurn(random, 50);
        t.angle = random.Real(-800, 800);
        AimAtDestination(t, 12, random);
        const int32 status = Judge(t, random);
        if (HasFailure()) return;
        turned += status == kOk;
        empty += status == kEmptyResult;
        small += status == kSourceTooSmall;
    }
    EXPECT_GT(turned, 1000);
    EXPECT_GT(empty, 50);
    EXPECT_GT(small, 20);
}

TEST(Rotate, EqualsThePlainFormWhereSamplesLieOnTheStepsOfRounding) {
    // Shifts by quarters and angles that are hardly turns: many samples lie within a float's error of n + 1/2.
    Random random;
    const double angles[] = {0, 360, 180.0000001, 1e-7, -1e-9, 359.9999999, 90.0000001, -270.0001, 0.001, 1e-4};
    for (int32 round = 0; round < 1500; ++round) {
        Turn t = RandomTurn(random, 70);
        t.interpolation = kLinear;
        t.angle = angles[round % 10];
        AimAtDestination(t, 12, random);
        t.xShift = std::trunc(4 * t.xShift) / 4 + random.Int(-1, 1) * 1e-7;
        t.yShift = std::trunc(4 * t.yShift) / 4 + random.Int(-1, 1) * 1e-7;
        Judge(t, random);
        if (HasFailure()) return;
    }
}

/// Turns by odd eighths and whole shifts, cut by the destination: which side of a pixel the outline passes is a matter
/// of the last bit.
TEST(Rotate, EqualsThePlainFormWherePixelsLieOnTheOutline) {
    Random random(45);
    for (int32 i = 0; i < 400; ++i) {
        Turn t = RandomTurn(random, 90);
        t.srcRoi = {0, 0, t.srcSize.width, t.srcSize.height};
        t.angle = 90.0 * random.Int(-8, 8) + 45.0;
        t.xShift = random.Int(-60, 60);
        t.yShift = random.Int(-60, 60);
        Judge(t, random);
    }
    const Turn found{{61, 64}, {0, 0, 61, 64}, {0, 2, 86, 76}, -585, 25, 32, kLinear, 3};
    EXPECT_EQ(Judge(found, random), kOk);
}

TEST(Rotate, EqualsThePlainFormOfBlackAndWhite) {
    Random random;
    for (int32 round = 0; round < 300; ++round) {
        Turn t = RandomTurn(random, 70);
        t.interpolation = kLinear;
        t.angle = random.Real(-800, 800);
        AimAtDestination(t, 12, random);
        Bytes src = SourceFor(t, random);
        for (int32 y = 0; y < src.Height(); ++y) {
            for (int32 x = 0; x < src.RowElements(); ++x) src.At(x, y) = src.At(x, y) < 128 ? 0 : 255;
        }
        Judge(t, src, random);
        if (HasFailure()) return;
    }
}

TEST(Rotate, BySmallAnglesEqualsThePlainFormOnEveryCourse) {
    // Rows of the result that run along those of the source, up and down, for up to hundreds of pixels.
    Random random;
    for (const double angle : {0.01, 0.1, -0.1, 0.5, -0.9, 2.0, -3.0, 5.0, -5.0, 9.0, 14.0, -14.0, 15.0, 357.0}) {
        for (const bool blackAndWhite : {false, true}) {
            Turn t{{400, 90}, {0, 0, 400, 90}, {0, 0, 640, 100}, angle, 0, 0, kLinear, 3};
            t.srcSize.width = t.srcRoi.width = random.Int(90, 700);
            AimAtDestination(t, 30, random);
            Bytes src = SourceFor(t, random);
            for (int32 y = 0; blackAndWhite && y < src.Height(); ++y) {
                for (int32 x = 0; x < src.RowElements(); ++x) src.At(x, y) = src.At(x, y) < 128 ? 0 : 255;
            }
            ASSERT_EQ(kOk, Judge(t, src, random)) << t;
            if (HasFailure()) return;
        }
    }
}

TEST(Rotate, ByVeryManyPixelsARowEqualsThePlainForm) {
    // A long row, along which the sums of the steps gather their errors.
    Random random;
    for (const double angle : {0.0, 0.00001, 0.0001, -0.00003, 180.00002}) {
        for (const int32 channels : {1, 3}) {
            Turn t{{20'000, 3}, {0, 0, 20'000, 3}, {0, 0, 20'000, 5}, angle, 0, 0, kLinear, channels};
            AimAtDestination(t, 1, random);
            ASSERT_EQ(kOk, Judge(t, random));
        }
    }
}

TEST(RotatePart, HasThePixelsAndTheStatusOfTheWhole) {
    Random random;
    int32 turned = 0, empty = 0;
    for (int32 round = 0; round < 2000; ++round) {
        Turn t = RandomTurn(random, 60);
        t.interpolation = kLinear;
        t.srcRoi = {0, 0, t.srcSize.width, t.srcSize.height};
        t.dstRoi.x = t.dstRoi.y = 0;
        t.angle = round % 8 == 0 ? 90.0 * random.Int(-4, 4) : random.Real(-800, 800);
        AimAtDestination(t, 12, random);
        if (round % 8 == 0) {
            t.xShift = std::trunc(t.xShift);
            t.yShift = std::trunc(t.yShift);
        }
        const ImageSize size{t.dstRoi.width, t.dstRoi.height};
        const Bytes src = SourceFor(t, random);
        Bytes whole = Bytes::Output(t.channels * size.width, size.height, random);
        ImageRect part{random.Int(0, size.width - 1), random.Int(0, size.height - 1), 0, 0};
        part.width = random.Int(0, size.width - part.x);
        part.height = random.Int(0, size.height - part.y);
        const bool any = part.width > 0 && part.height > 0;
        Bytes result = Bytes::Output(t.channels * (any ? part.width : 1), any ? part.height : 1, random);
        Bytes expected = result;
        for (int32 y = 0; y < part.height; ++y) { // what the turn leaves as it is
            for (int32 i = 0; i < t.channels * part.width; ++i) whole.At(t.channels * part.x + i, part.y + y) = 0;
        }
        const int32 status = test::Run(t, src, whole);
        for (int32 y = 0; y < part.height; ++y) {
            for (int32 i = 0; i < t.channels * part.width; ++i) {
                expected.At(i, y) = whole.At(t.channels * part.x + i, part.y + y);
            }
        }
        ASSERT_EQ(status, RotatePart(t.channels, src.Data(), t.srcSize, src.Step(), any ? result.Data() : nullptr,
                                     any ? result.Step() : 0, size, part, t.angle, t.xShift, t.yShift))
            << t;
        ASSERT_SAME_PLANE(uint8, result, expected)
            << t << ", part " << part.width << "x" << part.height << " at " << part.x << "," << part.y;
        turned += status == kOk;
        empty += status == kEmptyResult;
    }
    EXPECT_GT(turned, 1000);
    EXPECT_GT(empty, 20);
}

TEST(RotatePart, RefusesWhatTheWholeRefuses) {
    uint8 src[4] = {}, dst[4] = {7, 7, 7, 7};
    const double nan = std::numeric_limits<double>::quiet_NaN();
    EXPECT_EQ(kNullPointer, RotatePart(1, nullptr, {2, 2}, 2, dst, 2, {2, 2}, {0, 0, 2, 2}, 5, 0, 0));
    EXPECT_EQ(kNullPointer, RotatePart(1, src, {2, 2}, 2, nullptr, 2, {2, 2}, {0, 0, 1, 1}, 5, 0, 0));
    EXPECT_EQ(kBadSize, RotatePart(1, src, {2, 0}, 2, dst, 2, {2, 2}, {0, 0, 2, 2}, 5, 0, 0));
    EXPECT_EQ(kBadSize, RotatePart(1, src, {2, 2}, 2, nullptr, 0, {2, 0}, {0, 0, 0, 0}, 5, 0, 0));
    EXPECT_EQ(kStepTooSmall, RotatePart(1, src, {2, 2}, 0, dst, 2, {2, 2}, {0, 0, 2, 2}, 5, 0, 0));
    EXPECT_EQ(kDegenerateTransform, RotatePart(1, src, {2, 2}, 2, nullptr, 0, {2, 2}, {0, 0, 0, 0}, nan, 0, 0));
    EXPECT_EQ(kSourceTooSmall, RotatePart(1, src, {2, 1}, 2, nullptr, 0, {2, 2}, {0, 0, 0, 0}, 5, 0, 0));
    EXPECT_EQ(kEmptyResult, RotatePart(1, src, {2, 2}, 2, nullptr, 0, {2, 2}, {0, 0, 0, 0}, 5, 900, 0));
    EXPECT_EQ(0, dst[0] | dst[1] | dst[2] | dst[3]) << "a refused call leaves 0";
}

TEST(Rotate, QuarterTurnsByWholeShiftsCopyPixelsWhateverTheCode) {
    Random random;
    int32 turned = 0, missed = 0;
    for (int32 round = 0; round < 600; ++round) {
        Turn t = RandomTurn(random, 150);
        if (round % 3 == 0) t.srcRoi.width = 1; // one column is enough for a copy
        const int32 angles[] = {90, 180, 270, -90, -180, -270, 450, 630};
        t.angle = angles[round % 8];
        AimAtDestination(t, 25, random);
        t.xShift = std::trunc(t.xShift);
        t.yShift = std::trunc(t.yShift);
        const int32 status = Judge(t, random);
        if (HasFailure()) return;
        turned += status == kOk;
        missed += status == kNoIntersection;
    }
    EXPECT_GT(turned, 300);
    EXPECT_GT(missed, 20);
}

TEST(Rotate, AQuarterTurnAndBackIsThePicture) {
    Random random;
    const ImageSize size{70, 33};
    const Bytes src = Bytes::Source(3 * size.width, size.height, random);
    Bytes turned(3 * size.height, size.width, 0, 0, 0), back(3 * size.width, size.height, src.Step() - 210, 0, 0);
    // Column x goes to row 69 - x, row y to column y; then the other way round.
    ASSERT_EQ(kOk, primRotate_8u_C3(src.Data(), size, src.Step(), {0, 0, 70, 33}, turned.Data(), turned.Step(),
                                    {0, 0, 33, 70}, 90, 0, 69, kLinear));
    EXPECT_EQ(src.At(0, 0), turned.At(0, 69));
    EXPECT_EQ(src.At(3 * 69, 32), turned.At(3 * 32, 0));
    ASSERT_EQ(kOk, primRotate_8u_C3(turned.Data(), {33, 70}, turned.Step(), {0, 0, 33, 70}, back.Data(), back.Step(),
                                    {0, 0, 70, 33}, 270, 69, 0, kNearest));
    for (int32 y = 0; y < 33; ++y) {
        for (int32 i = 0; i < 210; ++i) ASSERT_EQ(src.At(i, y), back.At(i, y)) << i << " of row " << y;
    }
}

TEST(Rotate, QuarterTurnsByHalfAPixelInterpolate) {
    const uint8 src[4] = {10, 20, 30, 40};
    uint8 dst[9] = {};
    // Row y lands on column y + 0.5: only column 1 lies inside, halfway between the rows.
    ASSERT_EQ(kOk, primRotate_8u_C1(src, {2, 2}, 2, {0, 0, 2, 2}, dst, 3, {0, 0, 3, 3}, 90, 0.5, 1, kLinear));
    const uint8 expected[9] = {0, 30, 0, 0, 20, 0, 0, 0, 0};
    for (int32 i = 0; i < 9; ++i) EXPECT_EQ(expected[i], dst[i]) << "pixel " << i;
}

TEST(Rotate, NoTurnReachesTheLastColumnAndRowOfTheSource) {
    Random random;
    for (const int32 code : {kNearest, kLinear}) {
        const Bytes src = Bytes::Source(7, 5, random);
        Bytes result(7, 5, 0, 0, 0);
        ASSERT_EQ(kOk, primRotate_8u_C1(src.Data(), {7, 5}, src.Step(), {0, 0, 7, 5}, result.Data(), 7, {0, 0, 7, 5},
                                        360, 0, 0, code));
        for (int32 y = 0; y < 5; ++y) {
            for (int32 x = 0; x < 7; ++x) ASSERT_EQ(src.At(x, y), result.At(x, y)) << x << "," << y << " code " << code;
        }
    }
}

TEST(Rotate, AtTheLastColumnAndRowTheLastPairCountsWithItsSecondPixelAlone) {
    // Half a row down, column 1 lies exactly on the last column: (255 + 0) / 2 rounded half up. The same
    // with rows and columns exchanged.
    const uint8 columns[4] = {0, 255, 0, 0}, rows[4] = {0, 0, 255, 0};
    uint8 dst[4] = {7, 7, 7, 7};
    ASSERT_EQ(kOk, primRotate_8u_C1(columns, {2, 2}, 2, {0, 0, 2, 2}, dst, 2, {0, 0, 2, 2}, 0, 0, 0.5, kLinear));
    EXPECT_EQ(128, dst[3]);
    EXPECT_EQ(7, dst[1]) << "row 0 lies above the picture";
    ASSERT_EQ(kOk, primRotate_8u_C1(rows, {2, 2}, 2, {0, 0, 2, 2}, dst, 2, {0, 0, 2, 2}, 0, 0.5, 0, kLinear));
    EXPECT_EQ(128, dst[3]);
}

TEST(Rotate, WritesExactlyThePixelsInsideTheTurnedRectangle) {
    for (const ImageSize size : {ImageSize{20, 30}, ImageSize{4, 16}, ImageSize{2, 2}, ImageSize{41, 3}}) {
        for (int32 angle = 0; angle < 360; ++angle) {
            Bytes src(size.width, size.height, 0, 0, 0), dst(60, 60, 0, 0, 0);
            src.FillRegion(200);
            double xShift, yShift;
            ASSERT_EQ(kOk, primGetRotateShift(size.width / 2, size.height / 2, angle, &xShift, &yShift));
            xShift += 30 - size.width / 2 + 0.25;
            yShift += 30 - size.height / 2 + 0.125;
            const int32 status = primRotate_8u_C1(src.Data(), size, src.Step(), {0, 0, size.width, size.height},
                                                  dst.Data(), 60, {0, 0, 60, 60}, angle, xShift, yShift, kNearest);
            const bool mayLieBetweenPixels = size.width == 2;
            ASSERT_TRUE(status == kOk || (status == kEmptyResult && mayLieBetweenPixels)) << status;
            const double radians = angle * 3.141592653589793 / 180;
            for (int32 y = 0; y < 60; ++y) {
                for (int32 x = 0; x < 60; ++x) {
                    const double u = std::cos(radians) * (x - xShift) - std::sin(radians) * (y - yShift);
                    const double v = std::sin(radians) * (x - xShift) + std::cos(radians) * (y - yShift);
                    // How deep the pixel lies in the rectangle; on its outline either outcome is right.
                    const double depth = std::min({u, size.width - 1 - u, v, size.height - 1 - v});
                    if (std::abs(depth) < 1e-9) continue;
                    ASSERT_EQ(depth > 0 ? 200 : 0, dst.At(x, y))
                        << x << "," << y << ", angle " << angle << ", " << size.width << "x" << size.height;
                }
            }
        }
    }
}

TEST(Rotate, IsTheSameOnEveryBuild) {
    Random random(7);
    const ImageSize size{61, 47};
    const Bytes src(3 * size.width, size.height, 0, 0, 0);
    Bytes picture = src;
    picture.FillRandom(random);
    std::uint64_t sum = Checksum(nullptr, 0);
    for (int32 angle = 1; angle < 360; angle += 3) {
        for (const int32 code : {kNearest, kLinear}) {
            Bytes dst(3 * 80, 80, 0, 0, 0);
            double xShift, yShift;
            ASSERT_EQ(kOk, primGetRotateShift(31, 24, angle, &xShift, &yShift));
            ASSERT_EQ(kOk, primRotate_8u_C3(picture.Data(), size, picture.Step(), {0, 0, 61, 47}, dst.Data(), 240,
                                            {0, 0, 80, 80}, angle, xShift + 9, yShift + 16, code));
            sum = Checksum(dst.Data(), 240 * 80, sum);
        }
    }
    EXPECT_EQ(5654768427018035901u, sum);
}

TEST(Rotate, AroundACentreIsRotateWithThatShift) {
    Random random;
    for (const double angle : {0.0, 90.0, 180.0, 270.0, 33.0, -12.5}) {
        for (const int32 code : {kNearest, kLinear}) {
            const Bytes src = Bytes::Source(3 * 21, 17, random);
            Bytes result = Bytes::Output(3 * 30, 30, random);
            Bytes expected = result;
            double xShift, yShift;
            ASSERT_EQ(kOk, primGetRotateShift(11, 9, angle, &xShift, &yShift));
            const ImageRect all{0, 0, 21, 17}, into{1, 2, 29, 28};
            ASSERT_EQ(kOk, primRotateCenter_8u_C3(src.Data(), {21, 17}, src.Step(), all, result.Data(), result.Step(),
                                                  into, angle, 11, 9, code));
            ASSERT_EQ(kOk, primRotate_8u_C3(src.Data(), {21, 17}, src.Step(), all, expected.Data(), expected.Step(),
                                            into, angle, xShift, yShift, code));
            EXPECT_SAME_PLANE(uint8, result, expected) << angle;
            // The same bytes as one channel of 63 columns.
            Bytes one = Bytes::Output(3 * 30, 30, random);
            Bytes expectedOne = one;
            ASSERT_EQ(kOk, primRotateCenter_8u_C1(src.Data(), {63, 17}, src.Step(), {0, 0, 63, 17}, one.Data(),
                                                  one.Step(), into, angle, 11, 9, code));
            ASSERT_EQ(kOk, primRotate_8u_C1(src.Data(), {63, 17}, src.Step(), {0, 0, 63, 17}, expectedOne.Data(),
                                            expectedOne.Step(), into, angle, xShift, yShift, code));
            EXPECT_SAME_PLANE(uint8, one, expectedOne) << angle;
        }
    }
}

class RotateStatus : public ::testing::Test {
protected:
    uint8 src_[16] = {}, dst_[16];
    void SetUp() override { std::fill_n(dst_, 16, uint8{7}); }

    int32 Call(ImageSize srcSize, int32 srcStep, ImageRect srcRoi, int32 dstStep, ImageRect dstRoi, double angle,
               double xShift, double yShift, int32 code, bool withSrc = true, bool withDst = true) {
        const int32 one = primRotate_8u_C1(withSrc ? src_ : nullptr, srcSize, srcStep, srcRoi, withDst ? dst_ : nullptr,
                                           dstStep, dstRoi, angle, xShift, yShift, code);
        const int32 three = primRotate_8u_C3(withSrc ? src_ : nullptr, srcSize, srcStep, srcRoi,
                                             withDst ? dst_ : nullptr, dstStep, dstRoi, angle, xShift, yShift, code);
        EXPECT_EQ(one, three) << "one and three channels";
        for (const uint8 byte : dst_) EXPECT_EQ(7, byte) << "a refused call wrote";
        return one;
    }
};

constexpr ImageRect kAll{0, 0, 2, 2};
constexpr double kNan = std::numeric_limits<double>::quiet_NaN();
constexpr double kInfinity = std::numeric_limits<double>::infinity();

TEST_F(RotateStatus, NullPointersComeFirst) {
    EXPECT_EQ(kNullPointer, Call({0, 0}, 0, {-1, 0, 0, 0}, 0, {-1, 0, 0, 0}, kNan, 0, 0, 9, false, true));
    EXPECT_EQ(kNullPointer, Call({2, 2}, 2, kAll, 2, kAll, 5, 0, 0, kLinear, true, false));
}

TEST_F(RotateStatus, ThenSizesAndOrigins) {
    for (const ImageSize size : {ImageSize{0, 2}, ImageSize{2, 0}, ImageSize{-1, 2}}) {
        EXPECT_EQ(kBadSize, Call(size, 0, kAll, 0, kAll, kNan, 0, 0, 9));
    }
    for (const ImageRect rect : {ImageRect{-1, 0, 2, 2}, ImageRect{0, -1, 2, 2}, ImageRect{0, 0, 0, 2},
                                 ImageRect{0, 0, 2, 0}, ImageRect{0, 0, 2, -5}}) {
        EXPECT_EQ(kBadSize, Call({2, 2}, 0, rect, 0, kAll, kNan, 0, 0, 9));
        EXPECT_EQ(kBadSize, Call({2, 2}, 0, kAll, 0, rect, kNan, 0, 0, 9));
    }
}

TEST_F(RotateStatus, ThenStepsThenTheInterpolation) {
    EXPECT_EQ(kStepTooSmall, Call({2, 2}, 0, {5, 0, 1, 1}, 2, kAll, kNan, 0, 0, 9));
    EXPECT_EQ(kStepTooSmall, Call({2, 2}, 2, {5, 0, 1, 1}, -2, kAll, kNan, 0, 0, 9));
    for (const int32 code : {0, 3, 8, 16, -1}) {
        EXPECT_EQ(kBadInterpolation, Call({2, 2}, 6, {5, 0, 1, 1}, 6, kAll, 90, 0, 0, code)) << "code " << code;
    }
}

TEST_F(RotateStatus, ThenARegionOutsideTheSourceOrACopyThatMisses) {
    EXPECT_EQ(kNoIntersection, Call({2, 2}, 6, {2, 0, 1, 1}, 6, kAll, kNan, 0, 0, kLinear));
    EXPECT_EQ(kNoIntersection, Call({2, 2}, 6, {0, 2, 1, 1}, 6, kAll, 5, 0, 0, kLinear));
    EXPECT_EQ(kNoIntersection, Call({2, 2}, 6, {0, 0, 1, 1}, 6, kAll, 90, 5, 0, kLinear));
    for (const double far : {1e11, -1e11, 1e300, -1e300, kInfinity, -kInfinity}) {
        EXPECT_EQ(kNoIntersection, Call({2, 2}, 6, kAll, 6, kAll, 180, far, 0, kNearest)) << far;
        EXPECT_EQ(kNoIntersection, Call({2, 2}, 6, kAll, 6, kAll, 270, 0, far, kNearest)) << far;
    }
}

TEST_F(RotateStatus, ThenAnAngleThatIsNoNumberThenASmallSourceThenNothingToWrite) {
    for (const double angle : {kNan, kInfinity, -kInfinity}) {
        EXPECT_EQ(kDegenerateTransform, Call({2, 2}, 6, {1, 0, 2, 2}, 6, kAll, angle, 0, 0, kLinear)) << angle;
    }
    EXPECT_EQ(kSourceTooSmall, Call({2, 2}, 6, {1, 0, 2, 2}, 6, kAll, 5, 900, 0, kLinear));
    EXPECT_EQ(kSourceTooSmall, Call({2, 1}, 6, {0, 0, 2, 2}, 6, kAll, 5, 900, 0, kNearest));
    EXPECT_EQ(kSourceTooSmall, Call({2, 2}, 6, {0, 0, 1, 2}, 6, kAll, 90, 0.5, 0, kLinear));
    for (const double far : {900.0, -900.0, 1e15, 1e300, kInfinity, -kInfinity, kNan}) {
        EXPECT_EQ(kEmptyResult, Call({2, 2}, 6, kAll, 6, kAll, 5, far, 0, kLinear)) << far;
        EXPECT_EQ(kEmptyResult, Call({2, 2}, 6, kAll, 6, kAll, 5, 0, far, kNearest)) << far;
        EXPECT_EQ(kEmptyResult, Call({2, 2}, 6, kAll, 6, kAll, 5, far, far, kNearest)) << far;
    }
    // The quad lies between the pixels.
    EXPECT_EQ(kEmptyResult, Call({2, 2}, 6, kAll, 6, {0, 0, 1, 1}, 0, 0.25, 0.25, kLinear));
}

TEST_F(RotateStatus, AnAngleThatIsNoNumberIsDegenerateInEveryEntry) {
    uint8 to[2 * 6] = {};
    for (const double angle : {kNan, -kNan, kInfinity, -kInfinity}) {
        EXPECT_EQ(kDegenerateTransform, Call({2, 2}, 6, kAll, 6, kAll, angle, 0, 0, kNearest)) << angle;
        EXPECT_EQ(kDegenerateTransform, primRotateCenter_8u_C1(to, {2, 2}, 6, kAll, to, 6, kAll, angle, 1, 1, kLinear));
        EXPECT_EQ(kDegenerateTransform, primRotateCenter_8u_C3(to, {2, 2}, 6, kAll, to, 6, kAll, angle, 1, 1, kLinear));
        double x = 0, y = 0, quad[4][2], bound[2][2];
        EXPECT_EQ(kOk, primGetRotateShift(1, 1, angle, &x, &y));
        EXPECT_TRUE(std::isnan(x) && std::isnan(y)) << angle;
        EXPECT_EQ(kOk, primGetRotateQuad(kAll, quad, angle, 0, 0));
        EXPECT_TRUE(std::isnan(quad[2][0])) << angle;
        EXPECT_EQ(kOk, primGetRotateBound(kAll, bound, angle, 0, 0));
    }
}

TEST(Rotate, ByAHugeAngleIsByWhatIsLeftOfItAfterWholeTurns) {
    // Doubles, and their exact remainders of 360.
    const struct {
        double angle, remainder;
    } table[] = {{0x1p53, 32}, {0x1p60, 136}, {1e22, 280}, {1e27, 352}, {1e300, 0}};
    Random random;
    const Bytes src = Bytes::Source(3 * 9, 7, random);
    for (const auto& [angle, remainder] : table) {
        for (const double sign : {1.0, -1.0}) {
            Bytes turned = Bytes::Output(3 * 9, 9, random), expected = turned;
            const auto turn = [&](double by, Bytes& to) {
                return primRotateCenter_8u_C3(src.Data(), {9, 7}, src.Step(), {0, 0, 9, 7}, to.Data(), to.Step(),
                                              {0, 0, 9, 9}, by, 4, 3, kLinear);
            };
            EXPECT_EQ(turn(sign * remainder, expected), turn(sign * angle, turned)) << angle;
            ASSERT_SAME_PLANE(uint8, turned, expected) << angle;
        }
    }
}

TEST(Rotate, ReadsOnlyTheSourceHoweverFarTheShiftsAre) {
    // Positions near 2^31, where a double's steps are coarse: a few destination columns, far out.
    Random random;
    const Bytes src = Bytes::Source(5, 4, random);
    std::vector<uint8> column(4 * 8);
    constexpr int32 kFar = 2147483640;
    auto* origin = reinterpret_cast<uint8*>(reinterpret_cast<std::uintptr_t>(column.data()) - kFar);
    int32 landed = 0;
    for (const double part : {0.0, 0.1, 0.25, 0.4999999, 0.5, 0.75}) {
        for (const int32 code : {kNearest, kLinear}) {
            const int32 status = primRotate_8u_C1(src.Data(), {5, 4}, src.Step(), {0, 0, 5, 4}, origin, 8,
                                                  {kFar, 0, 7, 4}, 0, kFar + part, part, code);
            EXPECT_TRUE(status == kOk || status == kEmptyResult) << status;
            landed += status == kOk;
        }
    }
    EXPECT_GT(landed, 6);
}

TEST(RotateShift, KeepsTheCentreInPlaceAtEveryAngle) {
    for (int32 tenth = -4000; tenth <= 4000; tenth += 7) {
        const double angle = tenth / 10.0;
        double xShift, yShift, quad[4][2];
        ASSERT_EQ(kOk, primGetRotateShift(37, 21, angle, &xShift, &yShift));
        // The quad of the one pixel at the centre is that pixel four times.
        ASSERT_EQ(kOk, primGetRotateQuad({37, 21, 1, 1}, quad, angle, xShift, yShift));
        for (const auto& corner : quad) {
            EXPECT_NEAR(37, corner[0], 1e-12) << "angle " << angle;
            EXPECT_NEAR(21, corner[1], 1e-12) << "angle " << angle;
        }
    }
}

TEST(RotateShift, QuarterTurnsHaveExactShifts) {
    const struct {
        double angle, xShift, yShift;
    } table[] = {{0, 0, 0},         {90, 10.5 - 4, 4 + 10.5}, {180, 21, 8},      {270, 14.5, 4 - 10.5},
                 {360, 0, 0},       {-90, 14.5, 4 - 10.5},    {-270, 6.5, 14.5}, {-360, 0, 0},
                 {720 + 180, 21, 8}};
    for (const auto& row : table) {
        double xShift = -1, yShift = -1;
        ASSERT_EQ(kOk, primGetRotateShift(10.5, 4, row.angle, &xShift, &yShift));
        EXPECT_EQ(row.xShift, xShift) << "angle " << row.angle;
        EXPECT_EQ(row.yShift, yShift) << "angle " << row.angle;
    }
}

TEST(RotateShift, RefusesNullPointers) {
    double shift = -7;
    EXPECT_EQ(kNullPointer, primGetRotateShift(1, 2, 3, nullptr, &shift));
    EXPECT_EQ(kNullPointer, primGetRotateShift(1, 2, 3, &shift, nullptr));
    EXPECT_EQ(-7, shift) << "a refused call wrote";
}

TEST(RotateQuad, MapsTheCornerPixelsInTheirOrder) {
    double quad[4][2];
    ASSERT_EQ(kOk, primGetRotateQuad({2, 3, 5, 4}, quad, 90, 100, 200));
    // x' = y + 100, y' = -x + 200 of (2,3), (6,3), (6,6), (2,6).
    const double turned[4][2] = {{103, 198}, {103, 194}, {106, 194}, {106, 198}};
    for (int32 i = 0; i < 4; ++i) {
        EXPECT_EQ(turned[i][0], quad[i][0]) << "corner " << i;
        EXPECT_EQ(turned[i][1], quad[i][1]) << "corner " << i;
    }
    ASSERT_EQ(kOk, primGetRotateQuad({0, 0, 11, 21}, quad, 30, 0, 0));
    const double half = 0.5, root = 0.8660254037844386;
    EXPECT_NEAR(10 * root, quad[1][0], 1e-12);
    EXPECT_NEAR(-10 * half, quad[1][1], 1e-12);
    EXPECT_NEAR(10 * root + 20 * half, quad[2][0], 1e-12);
    EXPECT_NEAR(-10 * half + 20 * root, quad[2][1], 1e-12);
}

TEST(RotateQuad, TheLargestRegionDoesNotOverflow) {
    double quad[4][2];
    ASSERT_EQ(kOk, primGetRotateQuad({2147483647, 2147483647, 2147483647, 2147483647}, quad, 180, 0, 0));
    EXPECT_EQ(-4294967293.0, quad[2][0]);
    EXPECT_EQ(-4294967293.0, quad[2][1]);
}

TEST(RotateBound, TakesEachCoordinateByItself) {
    for (int32 angle = -30; angle < 400; angle += 10) {
        double quad[4][2], bound[2][2];
        ASSERT_EQ(kOk, primGetRotateQuad({1, 2, 30, 17}, quad, angle, 3.5, -4));
        ASSERT_EQ(kOk, primGetRotateBound({1, 2, 30, 17}, bound, angle, 3.5, -4));
        for (int32 axis = 0; axis < 2; ++axis) {
            double smallest = quad[0][axis], largest = smallest;
            for (const auto& corner : quad) {
                smallest = std::min(smallest, corner[axis]);
                largest = std::max(largest, corner[axis]);
            }
            EXPECT_EQ(smallest, bound[0][axis]) << "angle " << angle;
            EXPECT_EQ(largest, bound[1][axis]) << "angle " << angle;
        }
    }
}

TEST(RotateQuadAndBound, TestPointerThenRegion) {
    double quad[4][2] = {{-7, 0}}, bound[2][2] = {{-7, 0}};
    EXPECT_EQ(kNullPointer, primGetRotateQuad({-1, 0, 0, 0}, nullptr, 5, 0, 0));
    EXPECT_EQ(kNullPointer, primGetRotateBound({-1, 0, 0, 0}, nullptr, 5, 0, 0));
    for (const ImageRect rect :
         {ImageRect{-1, 0, 1, 1}, ImageRect{0, -1, 1, 1}, ImageRect{0, 0, 0, 1}, ImageRect{0, 0, 1, 0}}) {
        EXPECT_EQ(kBadSize, primGetRotateQuad(rect, quad, 5, 0, 0));
        EXPECT_EQ(kBadSize, primGetRotateBound(rect, bound, 5, 0, 0));
    }
    EXPECT_EQ(-7, quad[0][0]) << "a refused call wrote";
    EXPECT_EQ(-7, bound[0][0]) << "a refused call wrote";
}

} // namespace
} // namespace orvane::test
