// Counts of pictures and the groups that fall behind.
#include "tools/train/tally.h"

#include <gtest/gtest.h>

namespace orvane::train {
namespace {

const SquareMapping kSame{1.0, 0.0};
const FaceSquare kTruth{100, 100, 50};
const Outcome kRight{0, 1.0, {100, 100, 50}, false};
const Outcome kWrong{0, 1.0, {10, 10, 50}, true};
const Outcome kNone{10, 1.0, {}, true};

void Add(TallyTable& table, int count, const Outcome& outcome, const char* group) {
    for (int i = 0; i < count; ++i) table.AddPortrait(outcome, kTruth, kSame, {{0, 0, group}});
}

TEST(Tally, CountsReportedAndRightFaces) {
    Tally tally;
    for (const Outcome& outcome : {kRight, kWrong, kNone, kRight}) tally.AddPortrait(outcome, kTruth, kSame);
    EXPECT_EQ(tally.pictures, 4);
    EXPECT_EQ(tally.reported, 3);
    EXPECT_EQ(tally.finer, 1) << "a second pass without a face reports none";
    EXPECT_EQ(tally.right, 2);
    EXPECT_EQ(tally.ReportedPerCent(), 75.0);
    EXPECT_EQ(tally.RightPerCent(), 50.0);
}

TEST(Tally, MeasuresErrorsInPerCentOfTheFace) {
    Tally tally;
    tally.AddPortrait({0, 1.0, {103, 104, 50}, false}, kTruth, kSame);
    tally.AddPortrait({0, 1.0, {105, 105, 40}, false}, kTruth, kSame);
    EXPECT_EQ(tally.centreErrors, (std::vector<double>{10.0, 0.0}));
    EXPECT_EQ(tally.sizeErrors, (std::vector<double>{0.0, 20.0}));
}

TEST(GroupsBelow, NamesThoseOfTwentyAndMoreThatLieMoreThanTwoPointsBelow) {
    TallyTable table;
    Add(table, 900, kRight, "most");
    Add(table, 10, kNone, "small");
    Add(table, 19, kRight, "near");
    Add(table, 1, kNone, "near");
    Add(table, 37, kRight, "misplaced");
    Add(table, 3, kWrong, "misplaced");
    Add(table, 30, kRight, "fine");
    EXPECT_EQ(GroupsBelow(table), (std::vector<std::string>{"misplaced (92.5)", "near (95.0)"}));
}

TEST(GroupsBelow, IsEmptyForAGroupJustTwoPointsBelow) {
    TallyTable table;
    Add(table, 49, kRight, "a");
    Add(table, 1, kNone, "a");
    Add(table, 50, kRight, "b");
    EXPECT_TRUE(GroupsBelow(table).empty()) << "99 % in all, 98 % in a";
}

TEST(GroupsBelow, TakesTheLargerOfBothShares) {
    TallyTable table;
    Add(table, 95, kRight, "a");
    Add(table, 5, kWrong, "a");
    Add(table, 100, kRight, "b");
    EXPECT_NEAR(table.groups.begin()->second.PointsBehind(table.all), 2.5, 1e-9) << "97.5 % right in all, 95 % in a";
    EXPECT_EQ(GroupsBelow(table, 2.4), (std::vector<std::string>{"a (95.0)"}));
    EXPECT_TRUE(GroupsBelow(table, 2.6).empty());
}

TEST(GroupsAbove, NamesThoseWithMoreFalseFaces) {
    TallyTable table;
    for (int i = 0; i < 100; ++i) table.AddFaceFree(kNone, {{0, 0, "rooms"}});
    for (int i = 0; i < 20; ++i) table.AddFaceFree(i < 2 ? kRight : kNone, {{0, 0, "dogs"}});
    for (int i = 0; i < 19; ++i) table.AddFaceFree(kRight, {{0, 0, "few"}});
    table.all.reported = 5; // the few are many of the whole
    EXPECT_EQ(GroupsAbove(table), (std::vector<std::string>{"dogs (10.0)"}));
}

} // namespace
} // namespace orvane::train
