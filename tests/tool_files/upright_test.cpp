// Rows turned over where they lie, as decoders and encoders need them.
#include "tools/support/upright.h"

#include <gtest/gtest.h>
#include <vector>

namespace orvane::tools {
namespace {

constexpr uint8 kPadding = 0xEE;

std::vector<uint8> Rows(int32 width, int32 height, int32 step) {
    std::vector<uint8> rows(static_cast<std::size_t>(step) * static_cast<std::size_t>(height), kPadding);
    for (int32 y = 0; y < height; ++y) {
        for (int32 i = 0; i < 3 * width; ++i) {
            rows[static_cast<std::size_t>(y * step + i)] = static_cast<uint8>(y * 31 + i * 7);
        }
    }
    return rows;
}

TEST(Upright, TurnedOverRowsStandTheOtherWayUpWithTheirPaddingInPlace) {
    for (const bool swapColours : {false, true}) {
        for (const int32 width : {1, 2, 5, 11, 32, 33, 100}) {
            for (const int32 height : {1, 2, 3, 8}) {
                SCOPED_TRACE(testing::Message() << width << "x" << height << (swapColours ? " swapped" : ""));
                const int32 step = 3 * width + width % 4;
                const std::vector<uint8> before = Rows(width, height, step);
                std::vector<uint8> after = before;
                TurnOver(after.data(), step, {width, height}, swapColours);
                std::vector<uint8> wanted = before;
                for (int32 y = 0; y < height; ++y) {
                    for (int32 i = 0; i < 3 * width; ++i) {
                        const int32 from = swapColours ? i + 2 - 2 * (i % 3) : i;
                        wanted[static_cast<std::size_t>(y * step + i)] =
                            before[static_cast<std::size_t>((height - 1 - y) * step + from)];
                    }
                }
                EXPECT_EQ(after, wanted);
            }
        }
    }
}

} // namespace
} // namespace orvane::tools
