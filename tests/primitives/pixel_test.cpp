#include "primitives/pixel.h"

#include "primitives/primitives.h"
#include "tests/reference/pixel.h"

namespace orvane::test {
namespace {

TEST(Grey, EqualsTheFormulaAtEveryWidthAndWritesNothingBeside) {
    Random random;
    for (int32 width = 1; width <= 100; ++width) {
        const ImageSize roi{width, random.Int(1, 4)};
        const auto src = Plane<uint8>::Source(3 * width, roi.height, random);
        auto result = Plane<uint8>::Output(width, roi.height, random);
        auto expected = result;
        ASSERT_EQ(kOk, primRGBToGray_8u_C3C1(src.Data(), src.Step(), result.Data(), result.Step(), roi));
        reference::Grey(src, expected, roi);
        ASSERT_PRED_FORMAT2(Plane<uint8>::Same, result, expected) << "width " << width;
    }
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

} // namespace
} // namespace orvane::test
