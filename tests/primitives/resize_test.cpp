#include "primitives/resize.h"

#include "primitives/primitives.h"
#include "tests/reference/resize.h"
#include "tests/support/heap_limit.h"

#include <limits>
#include <vector>

namespace orvane::test {
namespace {

struct Case {
    ImageSize src;
    ImageRect roi;
    ImageSize dst;
    double xFactor, yFactor;
    int32 interpolation;
    int32 channels;
};

std::ostream& operator<<(std::ostream& out, const Case& c) {
    return out << "code " << c.interpolation << ", " << c.channels << " channels, source " << c.src.width << "x"
               << c.src.height << ", region " << c.roi.x << "," << c.roi.y << " " << c.roi.width << "x" << c.roi.height
               << ", room " << c.dst.width << "x" << c.dst.height << ", factors " << c.xFactor << ", " << c.yFactor;
}

int32 RunCase(const Case& c, const Plane<uint8>& src, Plane<uint8>& dst) {
    const auto entry = c.channels == 1 ? primResize_8u_C1 : primResize_8u_C3;
    return entry(src.Data(), c.src, src.Step(), c.roi, dst.Data(), dst.Step(), c.dst, c.xFactor, c.yFactor,
                 c.interpolation);
}

/// Result and reference, judged with everything around the result.
void Judge(const Case& c, const Plane<uint8>& src, Random& random) {
    auto result = Plane<uint8>::Output(c.channels * c.dst.width, c.dst.height, random);
    auto expected = result;
    const auto geometry = reference::MakeGeometry(c.src, c.roi, c.dst, c.xFactor, c.yFactor, c.channels);
    const int32 status = reference::Resize(src, expected, geometry, c.interpolation);
    EXPECT_EQ(status, RunCase(c, src, result)) << c;
    EXPECT_SAME_PLANE(uint8, result, expected) << c;
}

/// Over random pixels.
void Judge(const Case& c, Random& random) {
    Judge(c, Plane<uint8>::Source(c.channels * c.src.width, c.src.height, random), random);
}

double RandomFactor(Random& random, int32 interpolation) {
    // Those of many digits lie just beside a whole number of pixels.
    const double plain[] = {1.0,          0.5,         1.0 / 3,    0.25, 0.7, 0.9, 2.0 / 3, 0.500000001,
                            0.3333333334, 0.999999999, 0.49999999, 2.0,  1.5, 3.0, 4.0 / 3, 1.999999999};
    const bool reducing = interpolation == kBoxAverage;
    if (random.Int(0, 1) == 0) return plain[random.Int(0, reducing ? 10 : 15)];
    return random.Real(0.02, reducing ? 1.0 : 4.0);
}

/// Room below, at and above what the factor fills.
int32 RandomRoom(Random& random, int32 length, double factor) {
    return std::max(1, static_cast<int32>(length * factor) + random.Int(-2, 3));
}

class ResizeByCode : public ::testing::TestWithParam<int32> {};

TEST_P(ResizeByCode, EqualsThePlainFormAtEverySize) {
    Random random(static_cast<std::uint32_t>(GetParam()));
    for (int32 width = 1; width <= 100; ++width) {
        for (const int32 channels : {1, 3}) {
            for (int32 n = 0; n < 4; ++n) {
                Case c{{width, random.Int(1, 30)}, {}, {}, 0, 0, GetParam(), channels};
                c.xFactor = RandomFactor(random, c.interpolation);
                c.yFactor = random.Int(0, 2) == 0 ? c.xFactor : RandomFactor(random, c.interpolation);
                c.roi = {0, 0, c.src.width, c.src.height};
                if (n >= 2) { // a part, which may stick out at the far edges
                    c.roi.x = random.Int(0, c.src.width - 1);
                    c.roi.y = random.Int(0, c.src.height - 1);
                    c.roi.width = random.Int(1, c.src.width);
                    c.roi.height = random.Int(1, c.src.height);
                }
                const int32 columns = std::min(c.roi.width, c.src.width - c.roi.x);
                const int32 rows = std::min(c.roi.height, c.src.height - c.roi.y);
                c.dst = {RandomRoom(random, columns, c.xFactor), RandomRoom(random, rows, c.yFactor)};
                Judge(c, random);
                if (HasFailure()) return;
            }
        }
    }
}

TEST_P(ResizeByCode, EqualsThePlainFormOnALargerPicture) {
    Random random;
    for (const double factor : {0.7, 0.31, 1.0}) {
        for (const int32 channels : {1, 3}) {
            Judge({{701, 257}, {0, 0, 701, 257}, {720, 300}, factor, factor, GetParam(), channels}, random);
        }
    }
}

TEST_P(ResizeByCode, LessRoomCutsTheResultOffAndNeverRescales) {
    Random random;
    const auto src = Plane<uint8>::Source(40, 30, random);
    Plane<uint8> whole(28, 21, 0, 0, 0);
    ASSERT_EQ(kOk, RunCase({{40, 30}, {0, 0, 40, 30}, {28, 21}, 0.7, 0.7, GetParam(), 1}, src, whole));
    Plane<uint8> part(9, 5, 0, 0, 0);
    ASSERT_EQ(kOk, RunCase({{40, 30}, {0, 0, 40, 30}, {9, 5}, 0.7, 0.7, GetParam(), 1}, src, part));
    for (int32 y = 0; y < 5; ++y) {
        for (int32 x = 0; x < 9; ++x) EXPECT_EQ(whole.At(x, y), part.At(x, y)) << x << ", " << y;
    }
}

/// Parts of the result of a source of `size`, in a room that may be less or more than the factor fills.
void JudgeParts(ImageSize size, double factor, int32 interpolation, Random& random) {
    const Case whole{size,
                     {0, 0, size.width, size.height},
                     {RandomRoom(random, size.width, factor), RandomRoom(random, size.height, factor)},
                     factor,
                     factor,
                     interpolation,
                     3};
    const auto src = Plane<uint8>::Source(3 * size.width, size.height, random);
    Plane<uint8> expected(3 * whole.dst.width, whole.dst.height, 0, 0, 0);
    const ImageSize written{std::min(whole.dst.width, static_cast<int32>(size.width * factor + 1e-7)),
                            std::min(whole.dst.height, static_cast<int32>(size.height * factor + 1e-7))};
    if (RunCase(whole, src, expected) != kOk || written.width < 1 || written.height < 1) return;
    for (int32 n = 0; n < 6; ++n) {
        const int32 x = random.Int(0, written.width - 1), y = random.Int(0, written.height - 1);
        const ImageRect part{x, y, random.Int(1, whole.dst.width + 2 - x), random.Int(1, whole.dst.height + 2 - y)};
        auto result = Plane<uint8>::Output(3 * part.width, part.height, random);
        auto judged = result;
        for (int32 row = 0; row < std::min(part.height, written.height - y); ++row) {
            const int32 made = 3 * std::min(part.width, written.width - x);
            for (int32 i = 0; i < made; ++i) judged.At(i, row) = expected.At(3 * x + i, y + row);
        }
        ASSERT_EQ(kOk, ResizePart_8u_C3(src.Data(), size, src.Step(), result.Data(), result.Step(), whole.dst, part,
                                        factor, interpolation));
        ASSERT_PRED_FORMAT2(Plane<uint8>::Same, result, judged)
            << whole << ", part " << x << "," << y << " " << part.width << "x" << part.height;
    }
}

TEST_P(ResizeByCode, APartIsThatPartOfTheWholeAndNothingBesideItIsTouched) {
    Random random(static_cast<std::uint32_t>(100 + GetParam()));
    for (int32 n = 0; n < 400 && !HasFatalFailure(); ++n) {
        JudgeParts({random.Int(1, 90), random.Int(1, 60)}, RandomFactor(random, GetParam()), GetParam(), random);
    }
    JudgeParts({1501, 207}, 0.7, GetParam(), random); // sums of very many steps
}

TEST_P(ResizeByCode, APartWithoutPixelsIsRefused) {
    const std::vector<uint8> src(3 * 16, 5);
    uint8 dst[3] = {7, 7, 7};
    const auto part = [&](ImageRect rect) {
        return ResizePart_8u_C3(src.data(), {4, 4}, 12, dst, 3, {2, 2}, rect, 0.5, GetParam());
    };
    for (const ImageRect& rect : {ImageRect{-1, 0, 1, 1}, {0, -1, 1, 1}, {0, 0, 0, 1}, {0, 0, 1, 0}}) {
        EXPECT_EQ(kBadSize, part(rect));
    }
    EXPECT_EQ(kNothingToWrite, part({2, 0, 1, 1})) << "beyond what is written";
    EXPECT_EQ(kNothingToWrite, part({0, 2, 1, 1}));
    EXPECT_EQ(7, dst[0]);
    EXPECT_EQ(kOk, part({1, 1, 1, 1}));
    EXPECT_EQ(5, dst[0]);
}

TEST_P(ResizeByCode, RoomBeyondTheResultStaysAsItWas) {
    Random random;
    const auto src = Plane<uint8>::Source(10, 10, random);
    auto dst = Plane<uint8>::Output(20, 20, random);
    const auto before = dst;
    ASSERT_EQ(kOk, RunCase({{10, 10}, {0, 0, 10, 10}, {20, 20}, 0.75, 0.75, GetParam(), 1}, src, dst));
    for (int32 y = 0; y < 20; ++y) {
        for (int32 x = y < 7 ? 7 : 0; x < 20; ++x) ASSERT_EQ(before.At(x, y), dst.At(x, y)) << x << ", " << y;
    }
}

TEST_P(ResizeByCode, AFlatPlaneStaysFlat) {
    Random random;
    for (const uint8 value : {0, 1, 127, 254, 255}) {
        for (int32 n = 0; n < 60; ++n) {
            const ImageSize size{random.Int(1, 60), random.Int(1, 60)};
            auto src = Plane<uint8>::Source(size.width, size.height, random);
            src.FillRegion(value);
            Case c{size, {0, 0, size.width, size.height}, {80, 80}, 0, 0, GetParam(), 1};
            c.xFactor = random.Real(0.6 / size.width, 1.0);
            c.yFactor = random.Real(0.6 / size.height, 1.0);
            Plane<uint8> dst(80, 80, 0, 0, 0);
            dst.FillRegion(value);
            ASSERT_EQ(kOk, RunCase(c, src, dst)) << c;
            for (int32 i = 0; i < 80 * 80; ++i) ASSERT_EQ(value, dst.Data()[i]) << c << ", element " << i;
        }
    }
}

TEST_P(ResizeByCode, APartOfAPixelIsNothingOrOnePixelAndStaysInsideTheRegion) {
    Random random;
    // From one half (less the nudge) on one pixel is written, below it none.
    for (const double product : {0.5 - 0.5e-7, 0.5, 0.5 + 1e-9, 0.6, 0.75, 1.0 - 1e-9}) {
        for (const int32 side : {1, 2, 3, 7, 10, 64}) {
            Judge({{side, side}, {0, 0, side, side}, {3, 3}, product / side, product / side, GetParam(), 3}, random);
        }
    }
    const auto src = Plane<uint8>::Source(4, 4, random);
    Plane<uint8> dst(1, 1, 0, 0, 0);
    dst.At(0, 0) = 77;
    Case c{{4, 4}, {0, 0, 4, 4}, {2, 2}, 0.1, 1.0, GetParam(), 1};
    EXPECT_EQ(kNothingToWrite, RunCase(c, src, dst));
    std::swap(c.xFactor, c.yFactor);
    EXPECT_EQ(kNothingToWrite, RunCase(c, src, dst));
    EXPECT_EQ(77, dst.At(0, 0));
}

TEST_P(ResizeByCode, AProductJustUnderAWholeNumberStaysInsideTheRegion) {
    Random random;
    for (int32 side = 1; side <= 40; ++side) {
        for (int32 written = 1; written <= side; ++written) {
            const double factor = (written - 0.9e-7) / side;
            Judge({{side, 5}, {0, 0, side, 5}, {written + 1, 6}, factor, 1.0, GetParam(), 1}, random);
            Judge({{5, side}, {0, 0, 5, side}, {6, written + 1}, 1.0, factor, GetParam(), 3}, random);
        }
    }
}

TEST_P(ResizeByCode, ARowThatBeginsAfterTheOneBelowItInMemoryWorks) {
    Random random;
    const auto src = Plane<uint8>::Source(12, 9, random);
    Plane<uint8> flipped(12, 9, 0, 0, 0);
    for (int32 y = 0; y < 9; ++y) {
        for (int32 x = 0; x < 12; ++x) flipped.At(x, y) = src.At(x, 8 - y);
    }
    Plane<uint8> expected(8, 6, 0, 0, 0);
    Plane<uint8> result(8, 6, 0, 0, 0);
    ASSERT_EQ(kOk, RunCase({{12, 9}, {0, 0, 12, 9}, {8, 6}, 0.66667, 0.66667, GetParam(), 1}, flipped, expected));
    ASSERT_EQ(kOk, primResize_8u_C1(&src.At(0, 8), {12, 9}, -src.Step(), {0, 0, 12, 9}, result.Data(), result.Step(),
                                    {8, 6}, 0.66667, 0.66667, GetParam()));
    EXPECT_SAME_PLANE(uint8, result, expected);
}

TEST_P(ResizeByCode, WithoutMemoryNothingIsWritten) {
    Random random;
    const auto src = Plane<uint8>::Source(30, 20, random);
    auto dst = Plane<uint8>::Output(15, 10, random);
    const auto before = dst;
    const Case c{{10, 20}, {0, 0, 10, 20}, {5, 10}, 0.5, 0.5, GetParam(), 3};
    int32 allowed = 0;
    int32 status = kNoMemory;
    for (; status != kOk && allowed < 20; ++allowed) {
        ASSERT_EQ(kNoMemory, status);
        ASSERT_PRED_FORMAT2(Plane<uint8>::Same, dst, before) << "after " << allowed << " allocations";
        const HeapLimit limit(allowed);
        status = RunCase(c, src, dst);
    }
    EXPECT_EQ(kOk, status);
    EXPECT_GE(allowed, 3) << "two tables at least";
}

TEST_P(ResizeByCode, FailuresAreTestedInOrder) {
    const std::vector<uint8> src(16, 5);
    uint8 dst[16] = {};
    constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();
    constexpr double kInfinite = std::numeric_limits<double>::infinity();
    struct Row {
        const char* what;
        int32 status;
        const uint8* src;
        ImageSize srcSize;
        ImageRect roi;
        uint8* dst;
        ImageSize dstSize;
        double xFactor, yFactor;
        int32 code;
    };
    // Each row has every failure that is tested later as well, as far as they can be together.
    const int32 code = GetParam();
    const Row rows[] = {
        {"source null", -8, nullptr, {0, 0}, {-1, 0, 0, 0}, dst, {0, 0}, 0, 0, 3},
        {"destination null", -8, src.data(), {0, 0}, {-1, 0, 0, 0}, nullptr, {0, 0}, 0, 0, 3},
        {"source width", -6, src.data(), {0, 4}, {0, 0, 4, 4}, dst, {4, 4}, 0, 0, 3},
        {"source height", -6, src.data(), {4, -1}, {0, 0, 4, 4}, dst, {4, 4}, 0, 0, 3},
        {"room width", -6, src.data(), {4, 4}, {0, 0, 4, 4}, dst, {0, 4}, 0, 0, 3},
        {"room height", -6, src.data(), {4, 4}, {0, 0, 4, 4}, dst, {4, 0}, 0, 0, 3},
        {"region x", -6, src.data(), {4, 4}, {-1, 0, 4, 4}, dst, {4, 4}, 0, 0, 3},
        {"region y", -6, src.data(), {4, 4}, {0, -1, 4, 4}, dst, {4, 4}, 0, 0, 3},
        {"region width", -6, src.data(), {4, 4}, {0, 0, 0, 4}, dst, {4, 4}, 0, 0, 3},
        {"region height", -6, src.data(), {4, 4}, {0, 0, 4, 0}, dst, {4, 4}, 0, 0, 3},
        {"x factor zero", -23, src.data(), {4, 4}, {9, 0, 4, 4}, dst, {4, 4}, 0, 2, 3},
        {"y factor negative", -23, src.data(), {4, 4}, {9, 0, 4, 4}, dst, {4, 4}, 2, -1, 3},
        {"x factor no number", -23, src.data(), {4, 4}, {9, 0, 4, 4}, dst, {4, 4}, kNaN, 1, 3},
        {"y factor no number", -23, src.data(), {4, 4}, {9, 0, 4, 4}, dst, {4, 4}, 1, kNaN, 3},
        {"x factor infinite", -23, src.data(), {4, 4}, {9, 0, 4, 4}, dst, {4, 4}, kInfinite, 1, 3},
        {"y factor infinite", -23, src.data(), {4, 4}, {9, 0, 4, 4}, dst, {4, 4}, 1, kInfinite, 3},
        {"code 0", -22, src.data(), {4, 4}, {4, 0, 4, 4}, dst, {4, 4}, 0.1, 0.1, 0},
        {"code 3", -22, src.data(), {4, 4}, {4, 0, 4, 4}, dst, {4, 4}, 0.1, 0.1, 3},
        {"code 16", -22, src.data(), {4, 4}, {4, 0, 4, 4}, dst, {4, 4}, 0.1, 0.1, 16},
        {"region right of the source", 29, src.data(), {4, 4}, {4, 0, 4, 4}, dst, {4, 4}, 0.1, 0.1, code},
        {"region above the source", 29, src.data(), {4, 4}, {0, 4, 4, 4}, dst, {4, 4}, 0.1, 0.1, code},
        {"nothing to write", -201, src.data(), {4, 4}, {0, 0, 4, 4}, dst, {4, 4}, 0.1, 0.1, code},
        {"a factor of almost zero", -201, src.data(), {4, 4}, {0, 0, 4, 4}, dst, {4, 4}, 5e-324, 1, code},
    };
    const HeapLimit limit(0); // no memory: tested last of all
    for (const Row& r : rows) {
        EXPECT_EQ(r.status,
                  primResize_8u_C1(r.src, r.srcSize, 4, r.roi, r.dst, 4, r.dstSize, r.xFactor, r.yFactor, r.code))
            << r.what << ", one channel";
        EXPECT_EQ(r.status,
                  primResize_8u_C3(r.src, r.srcSize, 4, r.roi, r.dst, 4, r.dstSize, r.xFactor, r.yFactor, r.code))
            << r.what << ", three channels";
    }
    EXPECT_EQ(std::vector<uint8>(16, 0), std::vector<uint8>(dst, dst + 16)) << "a refused call wrote";
    EXPECT_EQ(-9, primResize_8u_C1(src.data(), {4, 4}, 4, {0, 0, 4, 4}, dst, 4, {4, 4}, 1, 1, code));
}

TEST_P(ResizeByCode, EqualsThePlainFormInPicturesOfManyPixels) {
    // So many that some lie where the floats of the fast forms would round another way.
    Random random(9);
    const bool reducing = GetParam() == kBoxAverage;
    for (const double factor : {0.8, 0.63, 0.45}) {
        for (const int32 channels : {1, 3}) {
            const double taken = reducing ? factor : 1.9 * factor;
            const ImageSize room{static_cast<int32>(401 * taken), static_cast<int32>(300 * taken)};
            Judge({{401, 300}, {0, 0, 401, 300}, room, taken, taken, GetParam(), channels}, random);
        }
    }
}

TEST_P(ResizeByCode, EqualsThePlainFormInPicturesOfBlackAndWhitePixels) {
    // Cubic swings furthest past both.
    Random random(10);
    const bool reducing = GetParam() == kBoxAverage;
    for (const double factor : {0.93, 0.7, 0.5, 0.41}) {
        for (const int32 channels : {1, 3}) {
            const double taken = reducing ? factor : 2.2 * factor;
            const Case c{{201, 90}, {0, 0, 201, 90}, {450, 200}, taken, taken, GetParam(), channels};
            auto src = Plane<uint8>::Source(channels * c.src.width, c.src.height, random);
            for (int32 y = 0; y < c.src.height; ++y) {
                for (int32 x = 0; x < channels * c.src.width; ++x) {
                    src.At(x, y) = static_cast<uint8>(255 * random.Int(0, 1));
                }
            }
            Judge(c, src, random);
        }
    }
}

INSTANTIATE_TEST_SUITE_P(AllCodes, ResizeByCode, ::testing::Values(kNearest, kLinear, kCubic, kBoxAverage));

/// Resizes a whole plane of one channel into exactly `room`.
std::vector<uint8> ResizeWhole(const std::vector<uint8>& src, ImageSize size, ImageSize room, double xFactor,
                               double yFactor, int32 interpolation) {
    std::vector<uint8> dst(static_cast<std::size_t>(room.width) * room.height, 99);
    EXPECT_EQ(kOk, primResize_8u_C1(src.data(), size, size.width, {0, 0, size.width, size.height}, dst.data(),
                                    room.width, room, xFactor, yFactor, interpolation));
    return dst;
}

std::vector<uint8> RandomBytes(std::size_t count) {
    Random random;
    std::vector<uint8> bytes(count);
    for (uint8& byte : bytes) byte = static_cast<uint8>(random.Bits() >> 24);
    return bytes;
}

TEST(ResizeNearest, AFactorOfOneCopiesTheRegion) {
    Random random;
    const auto src = Plane<uint8>::Source(3 * 20, 10, random);
    Plane<uint8> dst(3 * 7, 4, 0, 0, 0);
    ASSERT_EQ(kOk, RunCase({{20, 10}, {11, 5, 7, 4}, {7, 4}, 1, 1, kNearest, 3}, src, dst));
    for (int32 y = 0; y < 4; ++y) {
        for (int32 x = 0; x < 21; ++x) EXPECT_EQ(src.At(33 + x, 5 + y), dst.At(x, y));
    }
}

TEST(ResizeNearest, OnePixelByOneHalfIsThatPixel) {
    EXPECT_EQ(std::vector<uint8>{200}, ResizeWhole({200}, {1, 1}, {1, 1}, 0.5, 0.5, kNearest));
}

TEST(ResizeNearest, TwiceTheSizeDoublesEveryPixel) {
    EXPECT_EQ((std::vector<uint8>{1, 1, 2, 2, 1, 1, 2, 2}), ResizeWhole({1, 2}, {2, 1}, {4, 2}, 2, 2, kNearest));
}

TEST(ResizeNearest, PositionsAreAddedNotMultiplied) {
    // Position 5 lies within a rounding error of 5 - 1e-7: 5.5 / factor would reach column 5, the sum
    // of the steps does not.
    EXPECT_EQ((std::vector<uint8>{0, 1, 2, 3, 4, 4, 5, 6}),
              ResizeWhole({0, 1, 2, 3, 4, 5, 6, 7}, {8, 1}, {8, 1}, 1.1000000220000006, 1, kNearest));
}

TEST(ResizeNearest, AnEnormousFactorRepeatsTheFirstPixel) {
    for (const int32 code : {kNearest, kLinear, kCubic}) {
        EXPECT_EQ((std::vector<uint8>{10, 10, 10, 10, 10, 10}),
                  ResizeWhole({10, 60, 10, 60, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0}, {4, 4}, {3, 2}, 1e300, 1e300, code))
            << "code " << code;
    }
}

TEST(ResizeCubic, TheFirstAndLastGridPointsReproduceTheCornerPixels) {
    const auto src = RandomBytes(9 * 7);
    for (const double factor : {1.0, 2.0, 3.0, 5.0}) {
        const ImageSize room{static_cast<int32>(9 * factor), static_cast<int32>(7 * factor)};
        const auto dst = ResizeWhole(src, {9, 7}, room, factor, factor, kCubic);
        const auto width = static_cast<std::size_t>(room.width);
        EXPECT_EQ(src[0], dst[0]) << factor;
        EXPECT_EQ(src[8], dst[width - 1]) << factor;
        EXPECT_EQ(src[54], dst[dst.size() - width]) << factor;
        EXPECT_EQ(src[62], dst.back()) << factor;
    }
}

TEST(ResizeCubic, AFactorOfOneCopies) {
    const auto src = RandomBytes(23 * 11);
    EXPECT_EQ(src, ResizeWhole(src, {23, 11}, {23, 11}, 1, 1, kCubic));
}

TEST(ResizeCubic, OvershootIsClampedToBlackAndWhite) {
    const std::vector<uint8> src = {0, 0, 0, 255, 255, 255, 0, 0, 0, 255, 255, 255,
                                    0, 0, 0, 255, 255, 255, 0, 0, 0, 255, 255, 255};
    const auto dst = ResizeWhole(src, {6, 4}, {12, 4}, 2, 1, kCubic);
    // Positions 5/11 apart. Columns 3, 4 and 7, 8 swing past black and white; the first and last cells of
    // the grid take the polynomial of the cell beside them, which ripples inside the range.
    EXPECT_EQ((std::vector<uint8>{0, 16, 4, 0, 0, 66, 189, 255, 255, 251, 239, 255}),
              std::vector<uint8>(dst.begin(), dst.begin() + 12));
}

TEST(ResizeCubic, ASmallSourceTakesLinearAndATinyOneNearest) {
    for (const ImageSize size : {ImageSize{3, 9}, {9, 3}, {2, 2}, {3, 3}}) {
        const auto src = RandomBytes(static_cast<std::size_t>(size.width) * size.height);
        const ImageSize room{size.width * 2, size.height * 2};
        EXPECT_EQ(ResizeWhole(src, size, room, 2, 2, kLinear), ResizeWhole(src, size, room, 2, 2, kCubic))
            << size.width << "x" << size.height;
    }
    for (const ImageSize size : {ImageSize{1, 9}, {9, 1}, {1, 1}}) {
        const auto src = RandomBytes(static_cast<std::size_t>(size.width) * size.height);
        const ImageSize room{size.width * 2, size.height * 2};
        const auto nearest = ResizeWhole(src, size, room, 2, 2, kNearest);
        EXPECT_EQ(nearest, ResizeWhole(src, size, room, 2, 2, kCubic)) << size.width << "x" << size.height;
        EXPECT_EQ(nearest, ResizeWhole(src, size, room, 2, 2, kLinear)) << size.width << "x" << size.height;
    }
}

TEST(ResizeLinear, TheLastGridPointReproducesTheLastPixel) {
    const auto src = RandomBytes(8 * 5);
    const auto dst = ResizeWhole(src, {8, 5}, {24, 15}, 3, 3, kLinear);
    EXPECT_EQ(src.front(), dst.front());
    EXPECT_EQ(src.back(), dst.back());
}

TEST(ResizeLinear, HalfWayIsTheRoundedMean) {
    // Grid of 3 points over 2 pixels: xi = 1/2.
    EXPECT_EQ((std::vector<uint8>{10, 21, 31, 10, 21, 31}),
              ResizeWhole({10, 31, 10, 31}, {2, 2}, {3, 2}, 1.5, 1, kLinear));
}

TEST(ResizeLinear, ARegionOfTheLastColumnReadsThePairThatEndsThere) {
    const std::vector<uint8> src = {1, 2, 3, 4, 5, 6};
    uint8 dst[2] = {};
    ASSERT_EQ(kOk, primResize_8u_C1(src.data(), {3, 2}, 3, {2, 0, 1, 2}, dst, 1, {1, 2}, 1, 1, kLinear));
    EXPECT_EQ(3, dst[0]);
    EXPECT_EQ(6, dst[1]);
}

TEST(ResizeBoxAverage, OneHalfIsTheRoundedMeanOfTwoByTwoBlocks) {
    const auto src = RandomBytes(20 * 12);
    const auto dst = ResizeWhole(src, {20, 12}, {10, 6}, 0.5, 0.5, kBoxAverage);
    for (std::size_t y = 0; y < 6; ++y) {
        for (std::size_t x = 0; x < 10; ++x) {
            const uint8* p = &src[40 * y + 2 * x];
            EXPECT_EQ((p[0] + p[1] + p[20] + p[21] + 2) / 4, dst[10 * y + x]) << x << ", " << y;
        }
    }
}

TEST(ResizeBoxAverage, BoxesOfTwoOrFourPixelsThatCutSomeEqualThePlainForm) {
    // Their area is a power of two, as that of boxes of whole pixels, whose sums are exact.
    Random random;
    for (const int32 channels : {1, 3}) {
        Judge({{400, 300}, {0, 0, 400, 300}, {400, 300}, 0.8, 0.625, kBoxAverage, channels}, random);
        Judge({{400, 300}, {0, 0, 400, 300}, {400, 300}, 0.625, 0.4, kBoxAverage, channels}, random);
    }
}

TEST(ResizeBoxAverage, PartialPixelsCountByTheCoveredFraction) {
    // Boxes of 1.5 pixels: (100 + 0.5*40)/1.5 = 80 and (0.5*40 + 10)/1.5 = 20.
    EXPECT_EQ((std::vector<uint8>{80, 20}), ResizeWhole({100, 40, 10}, {3, 1}, {2, 1}, 2.0 / 3, 1, kBoxAverage));
}

TEST(ResizeBoxAverage, ABoxThatReachesPastTheRegionRepeatsItsLastPixel) {
    // A box of 10/3 pixels over three: (0 + 0 + 90 + 90/3)*0.3 = 36.
    EXPECT_EQ(std::vector<uint8>{36}, ResizeWhole({0, 0, 90}, {3, 1}, {1, 1}, 0.3, 1, kBoxAverage));
}

TEST(ResizeBoxAverage, ABoxThatEndsOnAPixelsEdgeTakesThatPixelWhole) {
    // The last box is 6 2/3 to 8, up to rounding: (155/3 + 45)*0.75 = 72.5, which rounds up.
    EXPECT_EQ((std::vector<uint8>{150, 107, 182, 198, 138, 73}),
              ResizeWhole({191, 26, 188, 180, 224, 121, 155, 45}, {8, 1}, {6, 1}, 0.75, 1, kBoxAverage));
}

TEST(ResizeBoxAverage, ARemainderOfAlmostNothingIsPassedOver) {
    // Boxes a little under three pixels: what they leave of the third is less than counts.
    const double factor = 1.0 / 3 + 1e-9;
    EXPECT_EQ((std::vector<uint8>{30, 10, 20}),
              ResizeWhole({0, 0, 90, 0, 0, 30, 0, 0, 60}, {9, 1}, {3, 1}, factor, 1, kBoxAverage));
    EXPECT_EQ((std::vector<uint8>{30, 10, 20}),
              ResizeWhole({0, 0, 90, 0, 0, 30, 0, 0, 60}, {1, 9}, {1, 3}, 1, factor, kBoxAverage));
}

TEST(ResizeBoxAverage, AVeryLargeWhiteBoxStaysWhite) {
    // From 2^25 on the float sum grows by 256 for every 255: the mean passes white and is held there.
    const std::vector<uint8> src(1000000, 255);
    EXPECT_EQ(std::vector<uint8>{255}, ResizeWhole(src, {1000000, 1}, {1, 1}, 1e-6, 1, kBoxAverage));
    EXPECT_EQ(std::vector<uint8>{255}, ResizeWhole(src, {1, 1000000}, {1, 1}, 1, 1e-6, kBoxAverage));
}

TEST(ResizeBoxAverage, RefusesFactorsAboveOne) {
    const uint8 src[4] = {};
    uint8 dst[4] = {};
    EXPECT_EQ(kBadInterpolation, primResize_8u_C1(src, {2, 2}, 2, {0, 0, 2, 2}, dst, 2, {2, 2}, 1.0000001, 1, 8));
    EXPECT_EQ(kBadInterpolation, primResize_8u_C3(src, {1, 1}, 3, {0, 0, 1, 1}, dst, 3, {1, 1}, 1, 2, 8));
    EXPECT_EQ(kBadFactor, primResize_8u_C1(src, {2, 2}, 2, {0, 0, 2, 2}, dst, 2, {2, 2}, 2, 0, 8));
}

} // namespace
} // namespace orvane::test
