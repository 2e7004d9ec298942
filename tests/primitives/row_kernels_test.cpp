// Kernels that no primitive shows by itself, beside plain loops.
#include "primitives/row_kernels.h"

#include "tests/support/random.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <vector>

namespace orvane {
namespace {

using test::Random;

std::vector<uint8> RandomBytes(Random& random, int32 count, int32 least = 0) {
    std::vector<uint8> bytes;
    for (int32 i = 0; i < count; ++i) bytes.push_back(static_cast<uint8>(random.Int(least, 255)));
    return bytes;
}

TEST(CountFrom, AddsWhatALoopFinds) {
    Random random;
    for (const int32 width : {1, 15, 16, 31, 32, 33, 47, 64, 100, 255 * 16 + 20, 255 * 32 + 50, 3 * 255 * 32}) {
        for (const int32 least : {0, 120, 255}) {
            const std::vector<uint8> row = RandomBytes(random, 3 * width, least);
            uint8 levels[kCountedLevels];
            uint32 found[kCountedLevels][3], expected[kCountedLevels][3];
            for (int32 k = 0; k < kCountedLevels; ++k) {
                levels[k] = static_cast<uint8>(k == 0 ? 1 : k == 1 ? 255 : random.Int(1, 255));
                for (int32 c = 0; c < 3; ++c) {
                    found[k][c] = expected[k][c] = static_cast<uint32>(random.Int(0, 9));
                    for (int32 x = 0; x < width; ++x) expected[k][c] += row[3 * x + c] >= levels[k] ? 1U : 0U;
                }
            }
            CurrentRowKernels().countFrom(row.data(), width, levels, found);
            for (int32 k = 0; k < kCountedLevels; ++k) {
                for (int32 c = 0; c < 3; ++c) {
                    ASSERT_EQ(expected[k][c], found[k][c]) << width << " pixels from level " << +levels[k];
                }
            }
        }
    }
}

TEST(StretchKernel, RoundsHalfUpAndStaysAByte) {
    Random random;
    for (int32 round = 0; round < 400; ++round) {
        const std::vector<uint8> row = RandomBytes(random, random.Int(1, 100));
        const auto low = static_cast<uint8>(random.Int(0, 255));
        const ByteFactor factor = {static_cast<uint16>(random.Int(0, random.Int(0, 1) * ByteFactor::kMostWhole)),
                                   static_cast<uint16>(random.Int(0, 65535))};
        std::vector<uint8> stretched(row.size());
        CurrentRowKernels().stretch(row.data(), stretched.data(), static_cast<int64>(row.size()), low, factor);
        for (std::size_t i = 0; i < row.size(); ++i) {
            const int64 above = std::max(row[i] - low, 0), whole = factor.whole * 65536 + factor.fraction;
            ASSERT_EQ(std::min<int64>((above * whole + 32768) >> 16, 255), stretched[i])
                << +row[i] << " less " << +low << " times " << whole << " / 65536";
        }
    }
}

} // namespace
} // namespace orvane
