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

TEST_P(StumpPartsTest, AreFoundWhereTheyFit) {
    const Case& c = GetParam();
    const auto count = static_cast<int32>(c.rects.size());
    EXPECT_EQ(c.kind, KindOf(c.rects.data(), count));
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
    {"nested, all of the first", {{0, 0, 4, 4}, {0, 0, 4, 4}}, {-1.0F, 1.0F}, kNestedRects, true, {-1, 0}},
    {"nested, 256 pixels around", {{0, 0, 24, 16}, {0, 0, 8, 16}}, {-1.0F, 3.0F}, kNestedRects, true, {-1, 2}},
    {"nested, too many pixels around", {{0, 0, 24, 17}, {0, 0, 8, 17}}, {-1.0F, 3.0F}, kNestedRects, false, {}},
    {"nested, too many pixels within", {{0, 0, 24, 24}, {0, 0, 24, 12}}, {-1.0F, 2.0F}, kNestedRects, false, {}},
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
