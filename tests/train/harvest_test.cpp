// Harvests: which windows are brought, and that they are what the cascade takes for faces.
#include "tools/train/harvest.h"

#include "tests/train/samples.h"

#include <gtest/gtest.h>

#include <set>
#include <string>

namespace orvane::train {
namespace {

class Harvest : public testing::Test {
protected:
    Harvest() {
        for (uint64 i = 0; i < 10; ++i) set_.pictures.push_back(MadeUpPicture({70, 60}, i));
        options_.wanted = 1000000;
        options_.poolStage = 0;
        options_.cropShare = 0.0;
    }
    Negatives Bring(const Cascade& cascade, uint64 seed = 1) {
        Harvester harvester(set_, crops_, Framing{}, options_, seed);
        return harvester.Harvest(cascade, [](std::size_t, std::size_t) {});
    }
    using Set = std::set<std::string>; // windows by their bytes
    static std::string BytesOf(const Window& window) { return {window.begin(), window.end()}; }
    static Set SetOf(std::initializer_list<const std::vector<Window>*> parts) {
        Set set;
        for (const std::vector<Window>* windows : parts) {
            for (const Window& window : *windows) set.insert(BytesOf(window));
        }
        return set;
    }
    /// A stage that takes windows whose lower half is the darker one.
    static Cascade DarkBelow() {
        Feature halves;
        halves.rectCount = 2;
        halves.rects = {ImageRect{0, 0, 24, 24}, ImageRect{0, 0, 24, 12}};
        halves.weights = {-1.0f, 2.0f};
        return {{24, 24}, {{0.5f, false, {{halves, -0.5f, 1.0f, -1.0f}}}}};
    }

    PictureSet set_;
    std::vector<FaceCrop> crops_ = MadeUpCrops(4);
    HarvestOptions options_;
};

TEST_F(Harvest, EveryWindowPassesTheCascade) {
    options_.passes = 24;
    const Cascade cascade = DarkBelow();
    const Negatives negatives = Bring(cascade);
    const Evaluator evaluator(cascade);
    ASSERT_GT(negatives.Count(), 100u);
    for (const Window& window : negatives.windows) ASSERT_TRUE(evaluator.Passes(Patch(window.data(), {24, 24})));
}

TEST_F(Harvest, EachFurtherScanBringsWindowsThatNoneBroughtBefore) {
    Set known;
    for (const int passes : {4, 8, 12, 16, 20, 24, 28}) {
        options_.passes = passes;
        const Negatives negatives = Bring(DarkBelow());
        const Set all = SetOf({&negatives.windows, &negatives.held});
        std::size_t further = 0;
        for (const std::string& window : all) further += known.count(window) == 0 ? 1 : 0;
        EXPECT_GT(further, 50u) << passes << " passes";
        EXPECT_EQ(all.size() - further, known.size()) << "the first " << passes - 4 << " passes changed";
        known = all;
    }
}

TEST_F(Harvest, OnePictureInFiveIsHeldApartInEveryForm) {
    options_.passes = 24;
    const Negatives negatives = Bring(DarkBelow());
    const Set boosted = SetOf({&negatives.windows});
    ASSERT_GT(negatives.held.size(), 20u);
    std::size_t shared = 0;
    for (const Window& window : negatives.held) shared += boosted.count(BytesOf(window));
    EXPECT_EQ(shared, 0u);
    set_.pictures[0] = GreyPicture{{70, 60}, std::vector<uint8>(70 * 60, 100)}; // the held ones
    set_.pictures[5] = set_.pictures[0];
    const Negatives others = Bring(DarkBelow());
    EXPECT_EQ(others.held.size(), 0u);
    EXPECT_EQ(others.windows.size(), negatives.windows.size());
}

TEST_F(Harvest, TheNearestOfTheRefusedComeAlongForBoosting) {
    options_.passes = 4;
    Cascade cascade = DarkBelow();
    const Negatives whole = Bring(cascade);
    EXPECT_TRUE(whole.refused.empty());
    const Set held = SetOf({&whole.held});
    Harvester harvester(set_, crops_, Framing{}, options_, 1);
    const auto quiet = [](std::size_t, std::size_t) {};
    const Negatives before = harvester.Harvest(cascade, quiet);
    Feature halves;
    halves.rectCount = 2;
    halves.rects = {ImageRect{0, 0, 24, 24}, ImageRect{0, 0, 12, 24}};
    halves.weights = {-1.0f, 2.0f};
    cascade.stages.push_back({1.5f, true, {{halves, 0.0f, 1.0f, -1.0f}}});
    const Negatives after = harvester.Harvest(cascade, quiet);
    EXPECT_GT(after.Count(), 10u);
    EXPECT_GT(after.refused.size(), 10u);
    EXPECT_EQ(after.windows.size() + after.refused.size(), before.windows.size());
    const Evaluator evaluator(cascade);
    for (const Window& window : after.refused) {
        EXPECT_FALSE(evaluator.Passes(Patch(window.data(), {24, 24})));
        EXPECT_EQ(held.count(BytesOf(window)), 0u) << "held ones are not boosted against";
    }
    options_.refused = 5;
    EXPECT_EQ(harvester.Harvest(cascade, quiet).refused.size(), 5u);
    options_.refused = 0;
    EXPECT_TRUE(harvester.Harvest(cascade, quiet).refused.empty());
}

TEST_F(Harvest, DoesNotDependOnTheNumberOfThreads) {
    options_.passes = 24;
    options_.threads = 3;
    const Negatives three = Bring(DarkBelow());
    options_.threads = 1;
    EXPECT_EQ(Bring(DarkBelow()).windows, three.windows);
    EXPECT_FALSE(Bring(DarkBelow(), 2).windows == three.windows);
}

} // namespace
} // namespace orvane::train
