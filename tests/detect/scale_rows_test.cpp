// The fused walk over a scale gives what the primitives give one after the other, with each form of the kernels.
#include "detect/scale_rows.h"

#include "detect/edge_pruning.h"
#include "primitives/edge_bits.h"
#include "primitives/primitives.h"
#include "tests/detect/kernel_sets.h"
#include "tests/support/random.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <functional>
#include <iterator>
#include <string>
#include <vector>

namespace orvane::test {
namespace {

class ScaleRowsTest : public ::testing::TestWithParam<KernelSet> {};

constexpr int32 kBorder = 5; // rows and columns of a scale at whose pixels no window begins

/// A grey picture by a function of the place.
ImageBuffer Picture(int32 width, int32 height, const std::function<int32(int32, int32)>& level) {
    ImageBuffer picture;
    EXPECT_TRUE(picture.Create(width, height, 1, kDepth8u, 0));
    for (int32 y = 0; y < height; ++y) {
        for (int32 x = 0; x < width; ++x)
            RowAt(picture.data, picture.Step(), y)[x] = static_cast<uint8>(std::clamp(level(x, y), 0, 255));
    }
    return picture;
}

/// Noise, steps, slopes and plateaus of random strength.
ImageBuffer RandomPicture(int32 width, int32 height, Random& random) {
    const int32 noise = random.Int(0, 1) == 0 ? random.Int(0, 12) : random.Int(0, 255);
    const int32 slope = random.Int(-6, 6), rise = random.Int(-6, 6), cell = random.Int(2, 20),
                jump = random.Int(0, 200);
    return Picture(width, height, [&](int32 x, int32 y) {
        return 90 + slope * x / 4 + rise * y / 4 + ((x / cell + y / cell) % 2) * jump + random.Int(-noise, noise);
    });
}

struct Scale {
    ImageSize size;
    float factor;
    ImageSize positions;
};

/// What the primitives make of a scale.
struct Stepwise {
    ImageBuffer scaled, sum, squares, mask;
    std::vector<int64> exact; // sums of levels

    /// The sum of levels less 128, in 16 bits.
    uint16 Short(int32 x, int32 y) const {
        const auto at = static_cast<std::size_t>(y * (scaled.width + 1) + x);
        return static_cast<uint16>(exact[at] - int64{128} * x * y);
    }

    Stepwise(const ImageBuffer& grey, const Scale& scale) {
        const auto [width, height] = scale.size;
        EXPECT_TRUE(scaled.Create(width, height, 1, kDepth8u, 0));
        EXPECT_TRUE(sum.Create(width + 1, height + 1, 1, kDepth32f, 0));
        EXPECT_TRUE(squares.Create(width + 1, height + 1, 1, kDepth64f, 0));
        EXPECT_TRUE(mask.Create(width, height, 1, kDepth8u, 0));
        EXPECT_EQ(0, generic::primResize_8u_C1(grey.data, grey.Size(), grey.Step(), {0, 0, grey.width, grey.height},
                                               scaled.data, scaled.Step(), scale.size, scale.factor, scale.factor, 1));
        EXPECT_EQ(0, generic::primSqrIntegral_8u32f64f_C1(
                         scaled.data, scaled.Step(), reinterpret_cast<float*>(sum.data), sum.Step(),
                         reinterpret_cast<double*>(squares.data), squares.Step(), scale.size, -16777216.0F, 0.0));
        const auto stride = static_cast<std::size_t>(width) + 1;
        exact.resize(stride * (static_cast<std::size_t>(height) + 1));
        for (int32 y = 0; y < height; ++y) {
            int64 row = 0;
            for (int32 x = 0; x < width; ++x) {
                const std::size_t above = static_cast<std::size_t>(y) * stride + static_cast<std::size_t>(x) + 1;
                row += RowAt(scaled.data, scaled.Step(), y)[x];
                exact[above + stride] = exact[above] + row;
            }
        }
        EdgeWorkspace edges;
        EXPECT_EQ(0, PruneByEdges(scaled.data, scaled.Step(), mask.data, mask.Step(), scale.positions.width,
                                  scale.positions.height, 0, edges));
    }
};

bool HasEdges(const Stepwise& expected, const Scale& scale, int32 y) {
    const uint8* mask = RowAt(expected.mask.data, expected.mask.Step(), y);
    return std::any_of(mask, mask + scale.positions.width, [](uint8 open) { return open != 0; });
}

/// Sums of some rows, counted from the first of them.
void ExpectSameSums(const Stepwise& expected, const ScaleRows& rows, int32 first, int32 last, const std::string& what) {
    const auto sumRow = [&](int32 y) {
        return reinterpret_cast<const float*>(RowAt(expected.sum.data, expected.sum.Step(), y));
    };
    const auto squaresRow = [&](int32 y) {
        return reinterpret_cast<const double*>(RowAt(expected.squares.data, expected.squares.Step(), y));
    };
    for (int32 y = first; y <= last; ++y) {
        for (int32 x = 0; x <= expected.scaled.width; ++x) {
            ASSERT_EQ(sumRow(y)[x] - sumRow(first)[x], rows.SumRow(y)[x] - rows.SumRow(first)[x])
                << what << ": sum at " << x << ", " << y;
            const auto modulo = static_cast<uint32>(static_cast<uint64>(squaresRow(y)[x] - squaresRow(first)[x]));
            ASSERT_EQ(modulo, rows.SquaresRow(y)[x] - rows.SquaresRow(first)[x])
                << what << ": squares at " << x << ", " << y;
            ASSERT_EQ(static_cast<uint16>(expected.Short(x, y) - expected.Short(x, first)),
                      static_cast<uint16>(rows.ShortSumRow(y)[x] - rows.ShortSumRow(first)[x]))
                << what << ": short sum at " << x << ", " << y;
        }
    }
}

/// Of the sums, those of windows that the edges leave.
void ExpectSame(const Stepwise& expected, ScaleRows& rows, const Scale& scale, const std::string& what) {
    const int32 reach = scale.size.height - scale.positions.height + 1;
    for (int32 y = 0; y < scale.positions.height; ++y) {
        if (HasEdges(expected, scale, y)) ExpectSameSums(expected, rows, y, y + reach, what);
        if (::testing::Test::HasFatalFailure()) return;
    }
    for (int32 y = 0; y < scale.positions.height; ++y) {
        const uint8* mask = RowAt(expected.mask.data, expected.mask.Step(), y);
        for (int32 x = 0; x < 64 * rows.Words(); ++x) {
            const bool edge = x < scale.positions.width && mask[x] != 0;
            ASSERT_EQ(edge, (rows.EdgeRow(y)[x / 64] >> x % 64 & 1) != 0) << what << ": edge at " << x << ", " << y;
        }
    }
}

TEST_P(ScaleRowsTest, AreWhatThePrimitivesMakeOfRandomPictures) {
    Random random(11);
    for (int32 n = 0; n < 400; ++n) {
        const ImageBuffer grey = RandomPicture(random.Int(8, 260), random.Int(8, 60), random);
        ScaleRows rows(GetParam().kernels, grey);
        ASSERT_TRUE(rows.Reserve(grey.Size()));
        // Two scales, so that the second one meets what the first has left.
        float factor = 1.0F;
        for (int32 i = 0; i < 2; ++i, factor /= static_cast<float>(random.Real(1.01, 1.4))) {
            const ImageSize size{static_cast<int32>(factor * static_cast<float>(grey.width)),
                                 static_cast<int32>(factor * static_cast<float>(grey.height))};
            if (size.width < kBorder + 1 || size.height < kBorder + 1) break;
            const Scale scale{
                size, factor, {size.width - random.Int(0, kBorder), size.height - random.Int(0, kBorder)}};
            rows.Make(scale.size, scale.factor, scale.positions);
            ExpectSame(Stepwise(grey, scale), rows, scale,
                       std::to_string(size.width) + " by " + std::to_string(size.height) + ", picture " +
                           std::to_string(n));
            if (HasFatalFailure()) return;
        }
    }
}

TEST_P(ScaleRowsTest, RoundSumsBeyond2To24AsThePrimitiveDoes) {
    const ImageBuffer grey = Picture(351, 480, [](int32 x, int32 y) { return 255 - (x + y) % 2; });
    ScaleRows rows(GetParam().kernels, grey);
    ASSERT_TRUE(rows.Reserve(grey.Size()));
    const Scale scale{grey.Size(), 1.0F, {grey.width - 24, grey.height - 24}};
    rows.Make(scale.size, scale.factor, scale.positions);
    ASSERT_GT(rows.SumRow(480)[351], 16777216.0F);
    EXPECT_FALSE(rows.SumsAreExact());
    const Stepwise expected(grey, scale);
    ExpectSame(expected, rows, scale, "bright");
    EXPECT_EQ(-16777216.0F, rows.SumRow(0)[351]);
    ExpectSameSums(expected, rows, 0, 480, "bright");
}

TEST_P(ScaleRowsTest, SumOnlyWhatWindowsOfEdgesReach) {
    // Two bars, whose edges' windows do not reach each other.
    const ImageBuffer grey =
        Picture(120, 200, [](int32, int32 y) { return (y >= 40 && y < 44) || (y >= 120 && y < 124) ? 200 : 60; });
    const Scale scale{grey.Size(), 1.0F, {97, 177}};
    const Stepwise expected(grey, scale);
    ScaleRows rows(GetParam().kernels, grey);
    ASSERT_TRUE(rows.Reserve(grey.Size()));
    rows.Make(scale.size, scale.factor, scale.positions);
    ExpectSame(expected, rows, scale, "bars");
    EXPECT_TRUE(rows.SumsAreExact());
    // What is not made is as the storage came, with zeros.
    int32 begun = 0, made = 0;
    for (int32 y = 0; y <= scale.size.height; ++y) {
        const float* row = rows.SumRow(y);
        const bool isMade = row[0] != 0.0F;
        made += isMade ? 1 : 0;
        begun += isMade && std::all_of(row, row + scale.size.width + 1, [&](float sum) { return sum == row[0]; });
        bool reached = false;
        for (int32 top = std::max(0, y - 24); top <= std::min(y, scale.positions.height - 1); ++top)
            reached = reached || HasEdges(expected, scale, top);
        EXPECT_EQ(reached, isMade) << "row " << y;
    }
    EXPECT_EQ(2, begun);
    EXPECT_LT(made, 80);
}

TEST_P(ScaleRowsTest, KnowWhetherTheLastSumIsBelow2To24) {
    // The float plane begins at -2^24, so that the last sum may be 2^25 less one.
    for (const int32 missing : {-1, 0, 1}) {
        int32 rest = 255 * 365 * 365 - (1 << 25) + missing;
        const ImageBuffer grey = Picture(365, 365, [&rest](int32, int32) {
            const int32 less = std::min(rest, 255);
            rest -= less;
            return 255 - less;
        });
        ScaleRows rows(GetParam().kernels, grey);
        ASSERT_TRUE(rows.Reserve(grey.Size()));
        rows.Make(grey.Size(), 1.0, {340, 340});
        EXPECT_EQ(missing > 0, rows.SumsAreExact()) << missing;
    }
}

TEST_P(ScaleRowsTest, StayBlackWhereARoundedUpScaleHasNoPicture) {
    // 1 / 1.1 of 253 columns is 229.99999 in double and 230 in float.
    Random random(3);
    int32 unfilled = 0;
    for (int32 width = 40; width < 350; ++width) {
        const float factor = 1.0F / 1.1F;
        const Scale scale{{static_cast<int32>(factor * static_cast<float>(width)), 30},
                          factor,
                          {static_cast<int32>(factor * static_cast<float>(width)), 30}};
        const ImageBuffer grey = RandomPicture(width, 34, random);
        unfilled += static_cast<int32>(width * static_cast<double>(factor) + 1e-7) < scale.size.width ? 1 : 0;
        ScaleRows rows(GetParam().kernels, grey);
        ASSERT_TRUE(rows.Reserve(scale.size));
        rows.Make(scale.size, scale.factor, scale.positions);
        ExpectSame(Stepwise(grey, scale), rows, scale, std::to_string(width) + " columns");
        if (HasFatalFailure()) return;
    }
    EXPECT_GT(unfilled, 0) << "no width shows it any more";
}

/// Patches of 3 by 3 pixels in a row, those with all pairs of axial differences to 255 and the given diagonal ones.
struct Patches {
    static constexpr int32 kSide = 256;
    std::vector<uint8> rows[3];
    std::vector<int32> dx, dy;

    Patches(int32 horizontal, int32 towardsUpperRight, int32 towardsLowerRight, bool mirrored, bool turned) {
        const auto set = [&](int32 patch, int32 x, int32 y, int32 difference) {
            x = mirrored ? 2 - x : x;
            y = turned ? 2 - y : y;
            rows[y][static_cast<std::size_t>(3 * patch + x)] = static_cast<uint8>(std::max(difference, 0));
            rows[2 - y][static_cast<std::size_t>(3 * patch + 2 - x)] = static_cast<uint8>(std::max(-difference, 0));
        };
        for (auto& row : rows) row.assign(3 * kSide + 64, 0);
        for (int32 vertical = 0; vertical < kSide; ++vertical) {
            set(vertical, 2, 1, horizontal);
            set(vertical, 1, 2, vertical);
            set(vertical, 2, 0, towardsUpperRight);
            set(vertical, 2, 2, towardsLowerRight);
            const int32 x = towardsLowerRight + towardsUpperRight + 2 * horizontal;
            const int32 y = towardsLowerRight - towardsUpperRight + 2 * vertical;
            dx.push_back(mirrored ? -x : x);
            dy.push_back(turned ? -y : y);
        }
    }
};

int16 DirectionOf(int32 dx, int32 dy) {
    const double a = std::abs(dx), b = std::abs(dy);
    if (b > 2.414213562373095 * a) return kAlongY;
    if (b <= 0.41421356237309503 * a) return kAlongX; // equal at 0 alone
    return (dx < 0) == (dy < 0) ? kFalling : kRising;
}

TEST_P(ScaleRowsTest, TellDirectionsAsRealNumbersWouldForAllGradients) {
    // Of all gradients of pixels the sum of dx and dy is even.
    constexpr struct {
        int32 towardsUpperRight, towardsLowerRight;
    } kDiagonals[] = {{0, 0}, {0, 1}, {0, 254}, {0, 255}, {255, 255}, {255, 254}, {254, 255}, {-255, 255}, {-255, 254}};
    std::vector<bool> seen(1021 * 1021);
    std::vector<int16> magnitude(3 * Patches::kSide + 64), direction(magnitude.size());
    for (int32 n = 0; n < 4 * static_cast<int32>(std::size(kDiagonals)); ++n) {
        const auto& diagonal = kDiagonals[n / 4];
        for (int32 horizontal = 0; horizontal < Patches::kSide; ++horizontal) {
            const Patches patches(horizontal, diagonal.towardsUpperRight, diagonal.towardsLowerRight, n % 2 != 0,
                                  n % 4 / 2 != 0);
            const auto& rows = patches.rows;
            GetParam().kernels.gradients({rows[0].data(), rows[1].data(), rows[2].data(), 3 * Patches::kSide}, 0,
                                         {magnitude.data(), direction.data()});
            for (std::size_t i = 0; i < Patches::kSide; ++i) {
                const int32 dx = patches.dx[i], dy = patches.dy[i];
                const std::string gradient = std::to_string(dx) + ", " + std::to_string(dy);
                ASSERT_EQ(std::abs(dx) + std::abs(dy), magnitude[3 * i]) << gradient;
                ASSERT_EQ(DirectionOf(dx, dy), direction[3 * i]) << gradient;
                seen[static_cast<std::size_t>(std::abs(dx) * 1021 + std::abs(dy))] = true;
            }
        }
    }
    EXPECT_GT(std::count(seen.begin(), seen.end(), true), 390'000);
}

TEST_P(ScaleRowsTest, KnowNormsToWhatThePlanAllows) {
    Random random(5);
    constexpr ImageRect kInner{1, 1, 22, 22};
    for (int32 n = 0; n < 60; ++n) {
        const ImageBuffer grey = RandomPicture(random.Int(40, 200), random.Int(30, 60), random);
        const Scale scale{grey.Size(), 1.0F, {grey.width - 23, grey.height - 23}};
        const Stepwise expected(grey, scale);
        std::vector<float> exact(static_cast<std::size_t>(grey.width)), norms(exact.size() + 2 * kMostLanes);
        ScaleRows rows(GetParam().kernels, grey);
        ASSERT_TRUE(rows.Reserve(grey.Size()));
        rows.Make(scale.size, scale.factor, scale.positions);
        for (int32 y = 0; y < scale.positions.height; ++y) {
            const auto* sum = reinterpret_cast<const float*>(RowAt(expected.sum.data, expected.sum.Step(), y));
            const auto* squares =
                reinterpret_cast<const double*>(RowAt(expected.squares.data, expected.squares.Step(), y));
            ASSERT_EQ(0,
                      generic::primRectStdDev_32f_C1(sum, expected.sum.Step(), squares, expected.squares.Step(),
                                                     exact.data(), 4 * grey.width, {scale.positions.width, 1}, kInner));
            for (const bool areExact : {true, false}) { // sums that are may be taken for others
                GetParam().kernels.norms({rows.SumRow(y + 1) + 1, rows.SumRow(y + 23) + 1, rows.SquaresRow(y + 1) + 1,
                                          rows.SquaresRow(y + 23) + 1, 22, 484.0F, areExact},
                                         scale.positions.width, norms.data());
                for (int32 x = 0; x < scale.positions.width; ++x) {
                    const double norm = exact[static_cast<std::size_t>(x)];
                    ASSERT_NEAR(norm, norms[static_cast<std::size_t>(x)], std::max(norm * 5.0 / (1 << 24), 1e-5))
                        << x << ", " << y;
                }
            }
        }
    }
}

TEST_P(ScaleRowsTest, KnowTheLargestAndSmallestNormsOfWindowsOfEverySize) {
    // A window's sums stand in its last corner alone.
    constexpr int32 kWidth = 64 + 4 * kMostLanes;
    std::vector<float> none(kWidth), levels(kWidth), norms(kWidth);
    std::vector<uint32> noSquares(kWidth), squares(kWidth);
    for (const int32 width : {1, 2, 18, 22, 27, 32, 62}) {
        for (const int32 height : {1, 19, 22, 62}) {
            const int32 area = width * height;
            for (const int32 white : {0, 1, area / 3, area / 2, area - 1, area}) {
                std::fill_n(levels.begin(), width, 0.0F);
                std::fill_n(squares.begin(), width, 0U);
                std::fill(levels.begin() + width, levels.end(), static_cast<float>(255 * white));
                std::fill(squares.begin() + width, squares.end(), 65025U * static_cast<uint32>(white));
                for (const bool areExact : {true, false}) {
                    GetParam().kernels.norms({none.data(), levels.data(), noSquares.data(), squares.data(), width,
                                              static_cast<float>(area), areExact},
                                             width, norms.data());
                    const double share = static_cast<double>(white) / area;
                    const double norm = 255 * std::sqrt(share * (1 - share));
                    for (int32 x = 0; x < width; ++x)
                        ASSERT_NEAR(norm, norms[static_cast<std::size_t>(x)], norm * 4.0 / (1 << 24) + 1e-9)
                            << width << "x" << height << ", " << white << " of them white";
                }
            }
        }
    }
}

TEST_P(ScaleRowsTest, KnowNoNormOfLessThanZeroWhereSumsWereRounded) {
    const std::vector<float> none(64), levels(64, 0.0F);
    std::vector<float> rounded(64, 22 * 22 * 100.0F + 2), norms(64);
    const std::vector<uint32> noSquares(64), squares(64, 22 * 22 * 100 * 100);
    std::fill_n(rounded.begin(), 22, 0.0F);
    GetParam().kernels.norms({none.data(), rounded.data(), noSquares.data(), squares.data(), 22, 484.0F, false}, 1,
                             norms.data());
    EXPECT_LT(norms[0], 1e-3F);
}

INSTANTIATE_TEST_SUITE_P(Kernels, ScaleRowsTest, ::testing::ValuesIn(KernelSets()), NameOfSet);

} // namespace
} // namespace orvane::test
