// Groups of pictures out of the columns of a table.
#include "tools/train/groups.h"

#include "tools/train/cascade.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <set>

namespace orvane::train {
namespace {

Table TableOf(const std::string& text) {
    const std::string file = testing::TempDir() + "orvane_groups_test.csv";
    EXPECT_TRUE(WriteFile(file, {text.begin(), text.end()}));
    Table table;
    EXPECT_TRUE(table.Read(file));
    std::filesystem::remove(file);
    return table;
}

std::vector<std::string> NamesOf(const Groups& groups, std::size_t row) {
    std::vector<std::string> names;
    for (const Group& group : groups.Of(row)) names.push_back(group.name);
    return names;
}

using Names = std::vector<std::string>;

TEST(Groups, AnyColumnOfTextsMakesThemAndAnEmptyCellDoesNot) {
    const Table table = TableOf("file,glasses,x,skin\na.jpg,yes,1,dark\nb.jpg,,2,fair\nc.jpg,no,3,\n");
    const Groups groups(table);
    EXPECT_EQ(NamesOf(groups, 0), (Names{"glasses: yes", "skin: dark"}));
    EXPECT_EQ(NamesOf(groups, 1), (Names{"skin: fair"}));
    EXPECT_EQ(NamesOf(groups, 2), (Names{"glasses: no"}));
}

TEST(Groups, RollHasFixedLimitsAndNoSign) {
    const Table table = TableOf("file,roll_deg\na,-3.9\nb,4\nc,-12.9\nd,13\ne,\n");
    const Groups groups(table);
    EXPECT_EQ(NamesOf(groups, 0), (Names{"roll_deg: under 4"}));
    EXPECT_EQ(NamesOf(groups, 1), (Names{"roll_deg: 4 to 8"}));
    EXPECT_EQ(NamesOf(groups, 2), (Names{"roll_deg: 8 to 13"}));
    EXPECT_EQ(NamesOf(groups, 3), (Names{"roll_deg: from 13"}));
    EXPECT_EQ(NamesOf(groups, 4), Names{});
}

TEST(Groups, CoarseRollIsCutAtEightWithoutItsSign) {
    const Table table = TableOf("file,roll\na,-7.9\nb,-8\nc,15\n");
    const Groups groups(table);
    EXPECT_EQ(NamesOf(groups, 0), (Names{"roll: under 8"}));
    EXPECT_EQ(NamesOf(groups, 1), (Names{"roll: from 8"}));
    EXPECT_EQ(NamesOf(groups, 2), (Names{"roll: from 8"}));
}

TEST(Groups, ManyNumbersAreCutAtTheQuartersAndTheTopmostTenth) {
    std::string text = "age\n";
    for (int age = 0; age <= 100; ++age) text += std::to_string(age) + "\n";
    const Table table = TableOf(text);
    const Groups groups(table);
    EXPECT_EQ(NamesOf(groups, 0), (Names{"age: under 25"}));
    EXPECT_EQ(NamesOf(groups, 24), (Names{"age: under 25"}));
    EXPECT_EQ(NamesOf(groups, 25), (Names{"age: 25 to 50"}));
    EXPECT_EQ(NamesOf(groups, 74), (Names{"age: 50 to 75"}));
    EXPECT_EQ(NamesOf(groups, 89), (Names{"age: 75 to 90"}));
    EXPECT_EQ(NamesOf(groups, 100), (Names{"age: from 90"}));
}

TEST(Groups, YawIsTakenWithoutItsSign) {
    std::string text = "yaw\n";
    for (int i = -50; i <= 50; ++i) text += std::to_string(i) + "\n";
    const Table table = TableOf(text);
    const Groups groups(table);
    EXPECT_EQ(NamesOf(groups, 0), NamesOf(groups, 100));
    EXPECT_NE(NamesOf(groups, 0), NamesOf(groups, 50));
}

TEST(Groups, FewNumbersAreGroupsOfTheirOwn) {
    const Table table = TableOf("children\n0\n1\n2\n1\n");
    EXPECT_EQ(NamesOf(Groups(table), 1), (Names{"children: 1"}));
}

TEST(Groups, NamesAndPlacesAreNone) {
    std::string text = "file,note,person\n";
    for (int i = 0; i < 31; ++i) text += "f,note" + std::to_string(i) + ",7\n";
    const Table table = TableOf(text);
    EXPECT_EQ(NamesOf(Groups(table), 0), Names{});
}

TEST(Groups, FaceSizeCountsInPixelsAndAgainstTheSmallerSide) {
    const Table table = TableOf("file,x,y,w,h,width,height\na,0,0,79,79,200,400\nb,0,0,320,320,900,500\n");
    const Groups groups(table);
    EXPECT_EQ(NamesOf(groups, 0), (Names{"face pixels: under 80", "face share: 0.35 to 0.5"}));
    EXPECT_EQ(NamesOf(groups, 1), (Names{"face pixels: from 320", "face share: 0.5 to 0.65"}));
}

TEST(Groups, StandByColumnThenUpwards) {
    const Table table = TableOf("sex,roll_deg\nm,14\nf,5\nm,1\n");
    const Groups groups(table);
    std::set<Group> all;
    for (std::size_t row = 0; row < table.Rows(); ++row) {
        for (const Group& group : groups.Of(row)) all.insert(group);
    }
    Names names;
    for (const Group& group : all) names.push_back(group.name);
    EXPECT_EQ(names, (Names{"sex: f", "sex: m", "roll_deg: under 4", "roll_deg: 4 to 8", "roll_deg: from 13"}));
}

} // namespace
} // namespace orvane::train
