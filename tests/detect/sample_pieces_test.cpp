// Samples by pieces are the pixels of their columns, whatever lies between them.
#include "detect/sample_pieces.h"

#include "tests/detect/kernel_sets.h"
#include "tests/support/random.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <set>
#include <vector>

namespace orvane::test {
namespace {

/// Columns of about `step` pixels each.
std::vector<int32> Columns(int32 width, double step, int32 extent) {
    std::vector<int32> columns;
    for (int32 x = 0; x < width; ++x) columns.push_back(std::min(static_cast<int32>(x * step), extent - 1));
    return columns;
}

std::vector<uint8> Row(int32 extent, Random& random) {
    std::vector<uint8> row;
    for (int32 x = 0; x < extent; ++x) row.push_back(static_cast<uint8>(random.Int(0, 255)));
    return row;
}

/// What a plan says, sample by sample.
uint8 SampleOf(const SamplePieces& p, const std::vector<uint8>& row, int32 sample) {
    uint8 level = 0;
    const std::ptrdiff_t first = std::ptrdiff_t{sample / kPiece} * p.pieces;
    for (std::ptrdiff_t piece = first; piece < first + p.pieces; ++piece) {
        const uint8 place = p.places[kPiece * piece + sample % kPiece];
        if (place != kNowhere) level |= row[static_cast<std::size_t>(p.offsets[piece] + place)];
    }
    return level;
}

TEST(SamplePieces, AreThePixelsOfTheColumns) {
    Random random(7);
    std::set<int32> pieceCounts;
    int32 byKernel = 0;
    for (int32 n = 0; n < 600; ++n) {
        const int32 width = random.Int(1, 70);
        const double step = random.Real(1.0, 16.0);
        const int32 extent = std::max(kPiece, static_cast<int32>(width * step) + random.Int(0, 3));
        const std::vector<int32> columns = Columns(width, step, extent);
        const std::vector<uint8> row = Row(extent, random);
        SamplePlan plan;
        ASSERT_TRUE(plan.Reserve(70));
        ASSERT_TRUE(plan.Make(columns.data(), width, extent));
        const SamplePieces pieces = plan.Pieces();
        pieceCounts.insert(pieces.pieces);
        ASSERT_EQ((width + kPiece - 1) / kPiece, pieces.groups);
        for (int32 i = 0; i < pieces.groups * pieces.pieces; ++i) {
            ASSERT_GE(pieces.offsets[i], 0);
            ASSERT_LE(pieces.offsets[i] + kPiece, extent);
        }
        for (int32 x = 0; x < width; ++x) {
            ASSERT_EQ(row[static_cast<std::size_t>(columns[static_cast<std::size_t>(x)])], SampleOf(pieces, row, x))
                << width << " columns, step " << step << ", column " << x;
        }
        for (const KernelSet& set : KernelSets()) {
            if (set.kernels.samplePieces == nullptr) continue;
            ++byKernel;
            std::vector<uint8> samples(static_cast<std::size_t>(kPiece) * static_cast<std::size_t>(pieces.groups),
                                       uint8{77});
            set.kernels.samplePieces(row.data(), pieces, samples.data());
            for (int32 x = 0; x < kPiece * pieces.groups; ++x)
                ASSERT_EQ(SampleOf(pieces, row, x), samples[static_cast<std::size_t>(x)]) << set.name << ", " << x;
        }
    }
    EXPECT_EQ(16U, pieceCounts.size()) << "not every number of pieces came up";
    EXPECT_EQ(600 * static_cast<int32>(KernelSets().size() - 1), byKernel); // all but the baseline
}

TEST(SamplePieces, AreRefusedWhereColumnsLieFarApartOrTheRowIsShort) {
    SamplePlan plan;
    ASSERT_TRUE(plan.Reserve(32));
    EXPECT_TRUE(plan.Make(Columns(32, 16.0, 512).data(), 32, 512));
    EXPECT_FALSE(plan.Make(Columns(32, 17.1, 560).data(), 32, 560));
    EXPECT_TRUE(plan.Make(Columns(8, 1.0, 16).data(), 8, 16));
    EXPECT_FALSE(plan.Make(Columns(8, 1.0, 15).data(), 8, 15));
}

} // namespace
} // namespace orvane::test
