// Quarter turns of pictures that are all of their memory.
#include "primitives/primitives.h"
#include "primitives/rotate.h"
#include "tests/support/random.h"

#include <gtest/gtest.h>

#include <vector>

namespace orvane::test {
namespace {

TEST(QuarterTurn, TouchesNothingBesideThePictures) {
    // Blocks of exactly the pictures' bytes, so that an address sanitizer sees one too many.
    Random random;
    for (const ImageSize size : {ImageSize{2, 9}, {5, 8}, {6, 4}, {7, 8}, {9, 16}, {40, 20}, {70, 33}}) {
        for (const int32 channels : {1, 3}) {
            for (const bool back : {false, true}) {
                const auto w = size.width, h = size.height;
                std::vector<uint8> src(static_cast<std::size_t>(channels * w * h)), dst(src.size());
                for (uint8& byte : src) byte = static_cast<uint8>(random.Int(0, 255));
                const auto turn = channels == 3 ? primRotate_8u_C3 : primRotate_8u_C1;
                ASSERT_EQ(kOk, turn(src.data(), size, channels * w, {0, 0, w, h}, dst.data(), channels * h,
                                    {0, 0, h, w}, back ? 270 : 90, back ? h - 1 : 0, back ? 0 : w - 1, kNearest));
                for (int32 i = 0; i < channels * w * h; ++i) {
                    const int32 c = i % channels, x = i / channels % w, y = i / channels / w;
                    const int32 toX = back ? h - 1 - y : y, toY = back ? x : w - 1 - x;
                    ASSERT_EQ(src[static_cast<std::size_t>(i)],
                              dst[static_cast<std::size_t>((toY * h + toX) * channels + c)])
                        << w << "x" << h << ", " << channels << " channels, " << (back ? "back" : "forth");
                }
            }
        }
    }
}

} // namespace
} // namespace orvane::test
