#include "primitives/saturation.h"

#include "tests/reference/pixel.h"

namespace orvane::test {
namespace {

using reference::Bytes;

void Judge(const Bytes& src, ImageSize size, Random& random) {
    Bytes planes = Bytes::Output(2 * size.width, size.height, random); // both beside each other
    Bytes expected = planes;
    reference::ForEachPixel(size, [&](int32 x, int32 y) {
        const auto hsv = reference::Hsv({src.At(3 * x, y), src.At(3 * x + 1, y), src.At(3 * x + 2, y)});
        expected.At(x, y) = hsv[2];
        expected.At(size.width + x, y) = hsv[1];
    });
    SplitValueAndSaturation(src.Data(), src.Step(), planes.Data(), planes.Data() + size.width, planes.Step(), size);
    ASSERT_SAME_PLANE(uint8, planes, expected) << size.width << " by " << size.height;
}

TEST(ValueAndSaturation, AreThoseOfTheWholeConversionAtEveryWidth) {
    Random random;
    for (int32 width = 1; width <= 70; ++width) {
        const ImageSize size{width, random.Int(1, 6)};
        Judge(Bytes::Source(3 * size.width, size.height, random), size, random);
        if (::testing::Test::HasFailure()) return;
    }
}

TEST(ValueAndSaturation, AreThoseOfTheWholeConversionForEveryPairOfLargestAndSmallest) {
    Random random;
    Bytes src(3 * 256, 256, 0, 0, 0);
    for (int32 turn = 0; turn < 3; ++turn) { // which channel has which
        for (int32 y = 0; y < 256; ++y) {
            for (int32 x = 0; x < 256; ++x) {
                const int32 between = random.Int(std::min(x, y), std::max(x, y));
                src.At(3 * x + turn, y) = static_cast<uint8>(x);
                src.At(3 * x + (turn + 1) % 3, y) = static_cast<uint8>(y);
                src.At(3 * x + (turn + 2) % 3, y) = static_cast<uint8>(between);
            }
        }
        Judge(src, {256, 256}, random);
    }
}

} // namespace
} // namespace orvane::test
