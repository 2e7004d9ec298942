#include "detect/edge_pruning.h"

#include "primitives/primitives.h"
#include "tests/reference/scan.h"
#include "tests/support/heap_limit.h"
#include "tests/support/slot_guard.h"

#include <gtest/gtest.h>

#include <limits>

namespace orvane::test {
namespace {

constexpr int32 kMax32 = std::numeric_limits<int32>::max();

/// An open mask with random bytes around it.
Plane<uint8> OpenMask(ImageSize roi, Random& random) {
    auto mask = Plane<uint8>::Output(roi.width, roi.height, random);
    mask.FillRegion(255);
    return mask;
}

using Prune = int32 (*)(uint8* mask, int32 maskStep, int32 width, int32 height, int32 gap);

/// Whether line `i` of `lines` stays open: one in gap + 1.
bool StaysOpen(int32 i, int32 lines, int32 gap) { return gap >= lines || i % (gap + 1) == gap; }

TEST(PruneLines, LeaveOneLineInGapPlusOneOpen) {
    Random random;
    for (int32 gap = 1; gap <= 8; ++gap) {
        for (int32 width = 1; width <= 9; ++width) {
            for (int32 height = 1; height <= 9; ++height) {
                auto rows = OpenMask({width, height}, random);
                auto columns = rows, both = rows;
                auto expectedRows = rows, expectedColumns = rows, expectedBoth = rows;
                for (int32 y = 0; y < height; ++y) {
                    for (int32 x = 0; x < width; ++x) {
                        const bool row = StaysOpen(y, height, gap), column = StaysOpen(x, width, gap);
                        expectedRows.At(x, y) = row ? 255 : 0;
                        expectedColumns.At(x, y) = column ? 255 : 0;
                        expectedBoth.At(x, y) = row && column ? 255 : 0;
                    }
                }
                EXPECT_EQ(0, PruneRows(rows.Data(), rows.Step(), width, height, gap));
                EXPECT_EQ(0, PruneColumns(columns.Data(), columns.Step(), width, height, gap));
                EXPECT_EQ(0, PruneRowsColumns(both.Data(), both.Step(), width, height, gap));
                EXPECT_SAME_PLANE(uint8, rows, expectedRows) << "gap " << gap;
                EXPECT_SAME_PLANE(uint8, columns, expectedColumns) << "gap " << gap;
                EXPECT_SAME_PLANE(uint8, both, expectedBoth) << "gap " << gap;
            }
        }
    }
}

TEST(PruneLines, ClearAndNeverOpen) {
    uint8 mask[] = {0, 7, 0, 9};
    EXPECT_EQ(0, PruneColumns(mask, 4, 4, 1, 1));
    EXPECT_EQ(0, mask[0]);
    EXPECT_EQ(7, mask[1]) << "an open byte keeps its value";
    EXPECT_EQ(0, mask[2]);
    EXPECT_EQ(9, mask[3]);
}

TEST(PruneLines, DoNothingWithoutLinesOrWithAGapOfAll) {
    Random random;
    const auto before = OpenMask({5, 4}, random);
    auto mask = before;
    for (const int32 gap : {4, 5, kMax32}) EXPECT_EQ(0, PruneRows(mask.Data(), mask.Step(), 5, 4, gap)) << gap;
    for (const int32 gap : {5, 6, kMax32}) EXPECT_EQ(0, PruneColumns(mask.Data(), mask.Step(), 5, 4, gap)) << gap;
    for (const int32 none : {0, -1}) {
        EXPECT_EQ(0, PruneRows(mask.Data(), mask.Step(), 5, none, -3));
        EXPECT_EQ(0, PruneColumns(mask.Data(), mask.Step(), none, 4, -3));
    }
    EXPECT_SAME_PLANE(uint8, mask, before);
}

TEST(PruneLines, OpenTheWholeMaskAgainWhenClearingFails) {
    // A gap of 0 or less makes a first band without rows, which the clearing refuses.
    Random random;
    for (const Prune prune : {Prune{PruneRows}, Prune{PruneColumns}, Prune{PruneRowsColumns}}) {
        for (const int32 gap : {0, -1, -kMax32}) {
            const auto open = OpenMask({5, 4}, random);
            auto mask = open;
            mask.At(2, 2) = 0;
            EXPECT_EQ(kBadSize, prune(mask.Data(), mask.Step(), 5, 4, gap)) << "gap " << gap;
            EXPECT_SAME_PLANE(uint8, mask, open) << "gap " << gap;
        }
    }
}

int g_callsUntilFailure;

/// primSet_8u_C1 that fails at one call of several.
int32 FailingSet(uint8 value, uint8* dst, int32 dstStep, ImageSize roi) {
    return g_callsUntilFailure-- == 0 ? kBadArgument : generic::primSet_8u_C1(value, dst, dstStep, roi);
}

TEST(PruneLines, OpenTheWholeMaskWhereverTheClearingFails) {
    Random random;
    for (int failing = 0; failing < 5; ++failing) { // three bands of columns, two of rows
        const auto open = OpenMask({5, 4}, random);
        auto mask = open;
        g_callsUntilFailure = failing;
        const SlotGuard slot(primSet_8u_C1, FailingSet);
        EXPECT_EQ(kBadArgument, PruneRowsColumns(mask.Data(), mask.Step(), 5, 4, 1)) << "call " << failing;
        EXPECT_SAME_PLANE(uint8, mask, open) << "call " << failing;
    }
}

/// Soft blobs, so that all variants see strong and weak edges.
Plane<uint8> Blobs(ImageSize size, Random& random) {
    auto plane = Plane<uint8>::Source(size.width, size.height, random);
    const int32 amplitude = random.Int(1, 60);
    const double cx = random.Real(0, size.width), cy = random.Real(0, size.height), r = random.Real(2, 20);
    for (int32 y = 0; y < size.height; ++y) {
        for (int32 x = 0; x < size.width; ++x) {
            const bool inside = (x - cx) * (x - cx) + (y - cy) * (y - cy) < r * r;
            plane.At(x, y) = static_cast<uint8>((inside ? 60 : 180) + plane.At(x, y) % amplitude);
        }
    }
    return plane;
}

TEST(PruneByEdges, LeavesTheEdgeMapOfTheRegionAndNothingElse) {
    Random random;
    EdgeWorkspace workspace; // one for all sizes: nothing of one call may show in the next
    for (int run = 0; run < 40; ++run) {
        for (int32 variant = 0; variant <= 2; ++variant) {
            const ImageSize roi{random.Int(1, 60), random.Int(1, 50)};
            const auto src = Blobs(roi, random);
            auto mask = Plane<uint8>::Output(roi.width, roi.height, random); // what it held plays no part
            auto expected = mask;
            reference::EdgeMap(src, expected, roi, variant);
            EXPECT_EQ(0, PruneByEdges(src.Data(), src.Step(), mask.Data(), mask.Step(), roi.width, roi.height, variant,
                                      workspace));
            EXPECT_SAME_PLANE(uint8, mask, expected)
                << "variant " << variant << ", " << roi.width << " by " << roi.height;
        }
    }
}

TEST(PruneByEdges, ClosesABlankRegion) {
    EdgeWorkspace workspace;
    for (int32 variant = 0; variant <= 2; ++variant) {
        Plane<uint8> src(30, 20, 0, 0, 0), mask(30, 20, 0, 0, 0), closed(30, 20, 0, 0, 0);
        src.FillRegion(90);
        mask.FillRegion(255);
        EXPECT_EQ(0, PruneByEdges(src.Data(), 30, mask.Data(), 30, 30, 20, variant, workspace));
        EXPECT_SAME_PLANE(uint8, mask, closed) << "variant " << variant;
    }
}

TEST(PruneByEdges, RefusesAnUnknownVariantAtOnce) {
    EdgeWorkspace workspace;
    for (const int32 variant : {-1, 3, kMax32}) {
        EXPECT_EQ(-2, PruneByEdges(nullptr, 0, nullptr, 0, 0, 0, variant, workspace)) << variant;
    }
}

TEST(PruneByEdges, GivesTheFailingPrimitivesStatus) {
    EdgeWorkspace workspace;
    Plane<uint8> src(30, 20, 0, 0, 0), mask(30, 20, 0, 0, 0);
    for (int32 variant = 0; variant <= 2; ++variant) {
        EXPECT_EQ(kNullPointer, PruneByEdges(nullptr, 30, mask.Data(), 30, 30, 20, variant, workspace));
        EXPECT_EQ(kNullPointer, PruneByEdges(src.Data(), 30, nullptr, 30, 30, 20, variant, workspace));
        EXPECT_EQ(kStepTooSmall, PruneByEdges(src.Data(), 29, mask.Data(), 30, 30, 20, variant, workspace));
        EXPECT_EQ(kStepTooSmall, PruneByEdges(src.Data(), 30, mask.Data(), 29, 30, 20, variant, workspace));
    }
}

TEST(PruneByEdges, RefusesARegionWithoutPixels) {
    EdgeWorkspace workspace;
    Plane<uint8> src(30, 20, 0, 0, 0), mask(30, 20, 0, 0, 0);
    for (const ImageSize roi : {ImageSize{0, 20}, {30, 0}, {-1, 20}, {30, -1}}) {
        EXPECT_GT(0, PruneByEdges(src.Data(), 30, mask.Data(), 30, roi.width, roi.height, 0, workspace))
            << roi.width << " by " << roi.height;
    }
}

TEST(PruneByEdges, SaysWhenMemoryIsExhaustedAndWorksAgainAfterwards) {
    Random random;
    const auto src = Blobs({30, 20}, random);
    Plane<uint8> expected(30, 20, 0, 0, 0);
    reference::EdgeMap(src, expected, {30, 20}, 0);
    int failures = 0;
    for (int allowed = 0;; ++allowed) {
        Plane<uint8> mask(30, 20, 0, 0, 0);
        EdgeWorkspace fresh;
        int32 status;
        {
            const HeapLimit limit(allowed);
            status = PruneByEdges(src.Data(), src.Step(), mask.Data(), 30, 30, 20, 0, fresh);
        }
        if (status == 0) break;
        EXPECT_EQ(kNoMemory, status) << allowed << " allocations succeed";
        ++failures;
        EXPECT_EQ(0, PruneByEdges(src.Data(), src.Step(), mask.Data(), 30, 30, 20, 0, fresh));
        EXPECT_SAME_PLANE(uint8, mask, expected) << "after a failure at allocation " << allowed;
    }
    EXPECT_GE(failures, 3) << "two gradient planes and at least one buffer";
}

} // namespace
} // namespace orvane::test
