// Kernels that no primitive shows by itself, beside plain loops.
#include "primitives/row_kernels.h"

#include "tests/support/random.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
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

TEST(Magnitudes, AreRightInRowsOfEveryWidth) {
    Random random;
    for (int32 width = 1; width <= 100; ++width) {
        const auto length = static_cast<std::size_t>(width);
        std::vector<int16> dx(length), dy(length), found(length + 1, int16{-7}), expected(length + 1, int16{-7});
        int32 bits = 0;
        for (std::size_t x = 0; x < length; ++x) {
            dx[x] = static_cast<int16>(random.Int(-500, 500));
            dy[x] = static_cast<int16>(random.Int(-500, 500));
        }
        // A bit that no other component has, anywhere in the row.
        std::vector<int16>& steep = width % 2 == 0 ? dx : dy;
        steep[static_cast<std::size_t>(random.Int(0, width - 1))] = width % 3 == 0 ? -8192 : 8192;
        for (std::size_t x = 0; x < length; ++x) {
            const int32 a = std::abs(dx[x]), b = std::abs(dy[x]);
            bits |= a | b;
            expected[x] = static_cast<int16>(a + b > 300 ? a + b : 0);
        }
        EXPECT_EQ(bits, CurrentRowKernels().magnitudes(dx.data(), dy.data(), width, 300, found.data())) << width;
        EXPECT_EQ(expected, found) << width;
    }
}

TEST(Magnitudes, TellOfTheLeastNumberOf16Bits) {
    for (const int32 width : {1, 16, 33}) {
        std::vector<int16> dx(static_cast<std::size_t>(width)), dy(dx), to(dx);
        dx.back() = -32768;
        EXPECT_EQ(32768, CurrentRowKernels().magnitudes(dx.data(), dy.data(), width, 0, to.data())) << width;
    }
}

TEST(SpreadBits, FillsRowsOfEveryWidth) {
    Random random;
    for (int32 width = 1; width <= 300; ++width) {
        std::vector<uint64> bits;
        for (int32 x = 0; x < width; x += 8) {
            if (x % 64 == 0) bits.push_back(0);
            bits.back() |= static_cast<uint64>(random.Int(0, 255)) << x % 64;
        }
        std::vector<uint8> found(static_cast<std::size_t>(width) + 1, uint8{7}), expected(found);
        for (std::size_t x = 0; x + 1 < expected.size(); ++x) expected[x] = (bits[x / 64] >> x % 64 & 1) != 0 ? 255 : 0;
        CurrentRowKernels().spreadBits(bits.data(), found.data(), width);
        EXPECT_EQ(expected, found) << width;
    }
}

/// Magnitudes around every fourth pixel of a row, from `at` on, that is a ridge in one direction alone.
struct RidgesOfOneDirection {
    static constexpr int32 kWidth = kMostGentle + 1;
    std::vector<int16> above, here, below;

    /// @param direction 0 along x, 1 along y, 2 rising, 3 falling
    RidgesOfOneDirection(int32 direction, int32 at) {
        const bool x = direction == 0, y = direction == 1, rising = direction == 2, falling = direction == 3;
        Fill(above, at, {falling, y, rising});
        Fill(here, at, {x, false, x});
        Fill(below, at, {rising, y, falling});
        for (int32 i = 1 + at; i <= kWidth; i += 4) here[static_cast<std::size_t>(i)] = 10;
    }

private:
    struct Lower {
        bool before, same, behind;
    };
    static void Fill(std::vector<int16>& row, int32 at, const Lower& lower) {
        row.assign(kWidth + 2, 20);
        for (int32 i = 1 + at; i <= kWidth; i += 4) {
            const auto place = static_cast<std::size_t>(i);
            row[place - 1] = lower.before ? 5 : 20;
            row[place] = lower.same ? 5 : 20;
            row[place + 1] = lower.behind ? 5 : 20;
        }
    }
};

TEST(RidgeBits, TellDirectionsAsWholeNumbersDoForAllGentleGradients) {
    constexpr int32 kWidth = RidgesOfOneDirection::kWidth;
    std::vector<int16> dx(kWidth), dy(kWidth);
    for (int32 direction = 0; direction < 4; ++direction) {
        for (int32 at = 0; at < 4; ++at) {
            const RidgesOfOneDirection m(direction, at);
            for (int32 a = 0; a < kWidth; ++a) {
                const int32 sign = (a + at) % 2 == 0 ? 1 : -1;
                for (int32 b = 0; b < kWidth; ++b) {
                    dx[static_cast<std::size_t>(b)] = static_cast<int16>(a);
                    dy[static_cast<std::size_t>(b)] = static_cast<int16>(sign * b);
                }
                for (const bool isGentle : {false, true}) {
                    uint64 ridges[kWidth / 64], strong[kWidth / 64];
                    CurrentRowKernels().ridgeBits(
                        {dx.data(), dy.data(), m.above.data() + 1, m.here.data() + 1, m.below.data() + 1, isGentle},
                        kWidth, 7, ridges, strong);
                    for (int32 b = at; b < kWidth; b += 4) {
                        if (a == 0 && b == 0) continue;
                        const int32 sum = (a + b) * (a + b);
                        const int32 diagonal = sign < 0 && a > 0 && b > 0 ? 2 : 3;
                        const int32 expected = sum < 2 * a * a ? 0 : sum < 2 * b * b ? 1 : diagonal;
                        ASSERT_EQ(expected == direction, (ridges[b / 64] >> b % 64 & 1) != 0)
                            << a << ", " << sign * b << ", direction " << direction << (isGentle ? ", gentle" : "");
                    }
                }
            }
        }
    }
}

} // namespace
} // namespace orvane
