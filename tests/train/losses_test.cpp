// A face is lost at the first step that it does not get through.
#include "tools/train/losses.h"

#include "detect/classifier_file.h"

#include <gtest/gtest.h>

namespace orvane::train {
namespace {

constexpr int32 kPictureHeight = 100;
constexpr ImageSize kPositions{30, 20};
const SquareMapping kSame{1.0, 0.0};

/// The window at (10, 5) of the plane at scale 2: its centre is (44, 34) from the bottom left, its size 48.
const FaceSquare kTruth{20.0, 42.0, 48.0};
const Candidate kNear{44, 34, 48};
const Candidate kBeside{82, 34, 48}; // in reach of a group, not near
const Candidate kFar{150, 34, 48};

using Points = std::vector<ImagePoint>;
using Members = std::vector<Candidate>;

class Tracer : public testing::Test {
protected:
    void SetUp() override {
        g_classifier = {};
        g_classifier.windowWidth = 24;
        g_classifier.windowHeight = 24;
        g_classifier.stageObject.resize(2);
        g_groupRadius = 40.0F;
    }
    void TearDown() override { g_classifier = {}; }

    static void Open(ImageBuffer& mask, const Points& open) {
        ASSERT_TRUE(mask.Create(kPositions.width + 23, kPositions.height + 23, 1, kDepth8u, 0));
        for (const ImagePoint& at : open) RowAt(mask.data, mask.Step(), at.y)[at.x] = 255;
    }

    /// One pass of one scale.
    static void Feed(FaceTracer& tracer, float scale, const Points& pruned, const Points& first, const Points& second,
                     const std::vector<Members>& groups) {
        ImageBuffer mask;
        tracer.OnPass();
        tracer.OnScale(scale);
        Open(mask, pruned);
        tracer.OnPruned(mask, kPositions);
        Open(mask, first);
        tracer.OnStage(0, mask);
        Open(mask, second);
        tracer.OnStage(1, mask);
        CandidateList hits;
        for (const Members& members : groups) hits.groups.emplace_back().members = members;
        tracer.OnHits(hits);
    }

    static PassTrace Trace(float scale, const Points& pruned, const Points& first, const Points& second,
                           const std::vector<Members>& groups) {
        FaceTracer tracer(kTruth, kSame, kPictureHeight);
        Feed(tracer, scale, pruned, first, second, groups);
        return tracer.Passes().at(0);
    }
};

const Points kFace{{10, 5}, {11, 5}, {10, 6}};

TEST_F(Tracer, SeesNoNearWindowAtAScaleFarFromTheFacesSize) {
    EXPECT_EQ(Trace(2.0F * 1.42F, kFace, kFace, kFace, {}).FirstLoss(), Loss::kScale);
    EXPECT_EQ(Trace(2.0F / 1.42F, kFace, kFace, kFace, {}).FirstLoss(), Loss::kScale);
    EXPECT_NE(Trace(2.0F * 1.39F, {}, {}, {}, {}).FirstLoss(), Loss::kScale);
}

TEST_F(Tracer, CountsNearWindowsAlone) {
    const PassTrace trace = Trace(2.0F, {{10, 5}, {25, 5}}, {{10, 5}, {25, 5}}, {{25, 5}}, {});
    EXPECT_GT(trace.scanned, 50) << "some places either way";
    EXPECT_LT(trace.scanned, 250);
    EXPECT_EQ(trace.pruned, 1);
    EXPECT_EQ(trace.stages, (std::vector<int64>{1, 0}));
}

TEST_F(Tracer, LosesAFaceWithoutEdgesToPruning) {
    EXPECT_EQ(Trace(2.0F, {{25, 5}}, {}, {}, {}).FirstLoss(), Loss::kPruning);
}

TEST_F(Tracer, LosesAFaceToTheStageThatItsLastWindowFails) {
    const PassTrace first = Trace(2.0F, kFace, {}, {}, {});
    EXPECT_EQ(first.FirstLoss(), Loss::kStages);
    EXPECT_EQ(first.LossName(), "stage 0");
    const PassTrace second = Trace(2.0F, kFace, kFace, {{25, 5}}, {{kFar, kFar, kFar}});
    EXPECT_EQ(second.FirstLoss(), Loss::kStages);
    EXPECT_EQ(second.LossName(), "stage 1");
}

TEST_F(Tracer, LosesAFaceOfTwoHitsToTheirNumber) {
    EXPECT_EQ(Trace(2.0F, kFace, kFace, kFace, {{kNear, kNear}, {kFar, kFar, kFar}}).FirstLoss(), Loss::kMembers);
}

TEST_F(Tracer, LosesAFaceToTheHitsBesideIt) {
    const PassTrace trace = Trace(2.0F, kFace, kFace, kFace, {{kNear, kBeside, kBeside}});
    EXPECT_EQ(trace.FirstLoss(), Loss::kGroupPlace);
    EXPECT_EQ(trace.groupsElsewhere, 1);
}

TEST_F(Tracer, LosesAFaceToTheGroupBesideIt) {
    const PassTrace trace = Trace(2.0F, kFace, kFace, kFace, {{kNear, kNear, kNear}, {kBeside, kBeside, kBeside}});
    EXPECT_EQ(trace.FirstLoss(), Loss::kMergedPlace);
}

TEST_F(Tracer, LosesAFaceToTheGroupOpenedLater) {
    const Members face{kNear, kNear, kNear};
    const Members other{kFar, kFar, kFar};
    EXPECT_EQ(Trace(2.0F, kFace, kFace, kFace, {face, other}).FirstLoss(), Loss::kChoice);
    const PassTrace chosen = Trace(2.0F, kFace, kFace, kFace, {other, face});
    EXPECT_EQ(chosen.FirstLoss(), Loss::kReport) << "nothing but the reported square is left to fail";
    EXPECT_TRUE(chosen.isChosen);
    EXPECT_EQ(chosen.groupsElsewhere, 1);
}

TEST_F(Tracer, KeepsPassesApart) {
    FaceTracer tracer(kTruth, kSame, kPictureHeight);
    Feed(tracer, 2.0F, kFace, {}, {}, {});
    Feed(tracer, 2.0F, kFace, kFace, kFace, {{kNear, kNear, kNear}});
    ASSERT_EQ(tracer.Passes().size(), 2u);
    EXPECT_EQ(tracer.Passes()[0].FirstLoss(), Loss::kStages);
    EXPECT_TRUE(tracer.Passes()[1].isChosen);
}

/// A trace that ends at a step.
PassTrace LostAt(Loss loss) {
    PassTrace trace;
    const auto reaches = [&](Loss step) { return loss > step; };
    trace.scanned = reaches(Loss::kScale) ? 9 : 0;
    trace.pruned = reaches(Loss::kPruning) ? 5 : 0;
    trace.stages = {3, reaches(Loss::kStages) ? 3 : 0};
    trace.hasMembers = reaches(Loss::kMembers);
    trace.hasGroup = reaches(Loss::kGroupPlace);
    trace.hasMerged = reaches(Loss::kMergedPlace);
    trace.isChosen = reaches(Loss::kChoice);
    return trace;
}

TEST(LossTable, CountsEveryPortraitThatIsNotRightOnceAndNoOther) {
    LossTable table;
    int wrong = 0;
    for (std::size_t i = 0; i < kLossCount; ++i) {
        const auto loss = static_cast<Loss>(i);
        ASSERT_EQ(LostAt(loss).FirstLoss(), loss);
        table.Add({LostAt(loss)}, false);                       // another place reported
        table.Add({LostAt(Loss::kScale), LostAt(loss)}, false); // or nothing twice
        table.Add({LostAt(loss), LostAt(Loss::kReport)}, true); // found by the finer pass
        table.Add({LostAt(loss)}, true);                        // found by other windows than near ones
        wrong += 2;
        EXPECT_EQ(table.InTheEnd(loss), 2) << "step " << i;
        EXPECT_EQ(table.Total(), wrong) << "step " << i;
    }
}

TEST(LossTable, OfNoPortraitIsPrintedToo) {
    std::FILE* out = std::tmpfile();
    ASSERT_NE(out, nullptr);
    LossTable().Print(out, "losses");
    EXPECT_GT(std::ftell(out), 0);
    std::fclose(out);
}

} // namespace
} // namespace orvane::train
