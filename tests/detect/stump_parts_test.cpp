// Which stumps can be compared in sums of 16 bits, and with which weights.
#include "detect/stump_parts.h"

#include <gtest/gtest.h>

#include <cctype>
#include <ostream>
#include <string>
#include <vector>

namespace orvane::test {
namespace {

struct Case {
    const char* what;
    std::vector<ImageRect> rects;
    std::vector<float> weights;
    StumpKind kind;
    bool fits;
    std::vector<int32> multiples; // where it fits
};

void PrintTo(const Case& c, std::ostream* out) { *out << c.what; }

class StumpPartsTest : public ::testing::TestWithParam<Case> {};

/// In a plane of sums whose elements tell rows and columns apart.
void ExpectCornersThatSumTheRectangles(const Case& c) {
    constexpr int32 kStride = 300, kHeight = 30;
    const auto sumAt = [](int32 offset) {
        return int64{offset % kStride} * (offset % kStride) * (offset / kStride + 7);
    };
    int32 corners[kMostCorners];
    FindCorners(c.kind, c.rects.data(), kStride, corners);
    for (int32 i = 0; i < kCornersOfKind[c.kind]; ++i) {
        ASSERT_GE(corners[i], 0);
        ASSERT_LT(corners[i], kStride * kHeight);
    }
    const auto between = [&](int32 i) { return sumAt(corners[i]) - sumAt(corners[i + 1]); };
    for (std::size_t r = 0; r < c.rects.size(); ++r) {
        const ImageRect& rect = c.rects[r];
        const int32 top = rect.y * kStride + rect.x, bottom = top + rect.height * kStride;
        const int64 within = sumAt(bottom + rect.width) - sumAt(bottom) - sumAt(top + rect.width) + sumAt(top);
        const int32 own = 4 * static_cast<int32>(r), other = c.kind == kRectsAlongASide ? 2 : own + 2;
        EXPECT_EQ(within, between(own) - between(other)) << "rectangle " << r;
    }
}

TEST_P(StumpPartsTest, AreFoundWhereTheyFit) {
    const Case& c = GetParam();
    const auto count = static_cast<int32>(c.rects.size());
    EXPECT_EQ(c.kind, KindOf(c.rects.data(), count));
    if (c.kind != kOtherRects) ExpectCornersThatSumTheRectangles(c);
    PartWeights parts{};
    ASSERT_EQ(c.fits, FindPartWeights(c.rects.data(), c.weights.data(), count, parts));
    for (std::size_t i = 0; i < c.multiples.size(); ++i) EXPECT_EQ(c.multiples[i], parts.multiples[i]) << i;
    if (c.fits && c.multiples[0] != 0) {
        EXPECT_EQ(c.weights[0], parts.unit * static_cast<float>(c.multiples[0]));
    }
}

const float kThird = 1.0F / 484.0F; // no binary fraction, as prepared weights are none

const Case kCases[] = {
    {"one", {{0, 0, 4, 4}}, {1.0F}, kOneRect, false, {}},
    {"one without weight", {{0, 0, 4, 4}}, {0.0F}, kOneRect, false, {}},
    {"nested", {{1, 0, 23, 15}, {1, 5, 23, 5}}, {-kThird, 3.0F * kThird}, kNestedRects, true, {-1, 2}},
    {"along a side, all of the first", {{0, 0, 4, 4}, {0, 0, 4, 4}}, {-1.0F, 1.0F}, kRectsAlongASide, true, {-1, 0}},
    {"along a side, 256 pixels around",
     {{0, 0, 24, 16}, {0, 0, 8, 16}},
     {-1.0F, 3.0F},
     kRectsAlongASide,
     true,
     {-1, 2}},
    {"along a side, too many pixels around",
     {{0, 0, 24, 17}, {0, 0, 8, 17}},
     {-1.0F, 3.0F},
     kRectsAlongASide,
     false,
     {}},
    {"along a side, too many pixels within",
     {{0, 0, 24, 24}, {0, 0, 24, 12}},
     {-1.0F, 2.0F},
     kRectsAlongASide,
     false,
     {}},
    {"along the left side", {{2, 3, 6, 4}, {2, 3, 2, 4}}, {-1.0F, 3.0F}, kRectsAlongASide, true, {-1, 2}},
    {"along the right side", {{2, 3, 6, 4}, {6, 3, 2, 4}}, {-1.0F, 3.0F}, kRectsAlongASide, true, {-1, 2}},
    {"along the top", {{2, 3, 6, 4}, {2, 3, 6, 2}}, {-1.0F, 2.0F}, kRectsAlongASide, true, {-1, 1}},
    {"along the bottom", {{2, 3, 6, 4}, {2, 5, 6, 2}}, {-1.0F, 2.0F}, kRectsAlongASide, true, {-1, 1}},
    {"nested between two sides", {{2, 3, 6, 4}, {4, 3, 2, 4}}, {-1.0F, 3.0F}, kNestedRects, true, {-1, 2}},
    {"nested in a corner", {{2, 3, 6, 4}, {2, 3, 3, 2}}, {-1.0F, 4.0F}, kNestedRects, true, {-1, 3}},
    {"nested the other way", {{2, 2, 2, 2}, {0, 0, 4, 4}}, {4.0F, -1.0F}, kTwoRects, true, {4, -1}},
    {"two", {{0, 0, 4, 4}, {8, 0, 4, 4}}, {1.0F, -1.0F}, kTwoRects, true, {1, -1}},
    {"two of 256 pixels", {{0, 0, 16, 16}, {8, 0, 16, 16}}, {1.0F, -1.0F}, kTwoRects, true, {1, -1}},
    {"two of 257 pixels", {{0, 0, 257, 1}, {0, 1, 257, 1}}, {1.0F, -1.0F}, kTwoRects, false, {}},
    {"two out of balance", {{0, 0, 4, 4}, {8, 0, 4, 5}}, {1.0F, -1.0F}, kTwoRects, false, {}},
    {"two without weight", {{0, 0, 4, 4}, {8, 0, 4, 5}}, {0.0F, 0.0F}, kTwoRects, true, {0, 0}},
    {"no multiple", {{0, 0, 4, 6}, {8, 0, 4, 4}}, {1.0F, -1.5F}, kTwoRects, false, {}},
    {"hardly a multiple", {{0, 0, 4, 6}, {8, 0, 4, 3}}, {1.0F, -2.000001F}, kTwoRects, false, {}},
    {"a large multiple", {{0, 0, 16, 16}, {20, 0, 1, 1}}, {1.0F, -256.0F}, kTwoRects, false, {}},
    {"three", {{0, 0, 4, 4}, {4, 0, 4, 4}, {8, 0, 4, 4}}, {1.0F, -2.0F, 1.0F}, kThreeRects, true, {1, -2, 1}},
    {"four",
     {{0, 0, 4, 4}, {4, 0, 4, 4}, {0, 4, 4, 4}, {4, 4, 4, 4}},
     {kThird, -kThird, -kThird, kThird},
     kFourRects,
     true,
     {1, -1, -1, 1}},
    {"sums that a float holds",
     std::vector<ImageRect>(4, {0, 0, 16, 16}),
     {254.0F, -254.0F, 1.0F, -1.0F},
     kFourRects,
     true,
     {254, -254, 1, -1}},
    {"sums of 2 to 24",
     std::vector<ImageRect>(4, {0, 0, 16, 16}),
     {255.0F, -255.0F, 1.0F, -1.0F},
     kFourRects,
     false,
     {}},
    {"five", std::vector<ImageRect>(5, {0, 0, 4, 4}), std::vector<float>(5, 0.0F), kOtherRects, false, {}},
};

INSTANTIATE_TEST_SUITE_P(All, StumpPartsTest, ::testing::ValuesIn(kCases),
                         [](const ::testing::TestParamInfo<Case>& tested) {
                             std::string name;
                             for (const char* c = tested.param.what; *c != 0; ++c) {
                                 if (std::isalnum(static_cast<unsigned char>(*c)) != 0) name += *c;
                             }
                             return name;
                         });

} // namespace
} // namespace orvane::test
