// Early thresholds are raised as far as the faces' windows that pass everything allow, and no further.
#include "tools/train/prune.h"

#include "tests/train/samples.h"

#include <gtest/gtest.h>

#include <algorithm>

namespace orvane::train {
namespace {

constexpr ImageSize kSize{14, 14};
constexpr float kAll = -100.0f; // a threshold that every window reaches

/// Four stages of five stumps each, of which the last alone refuses anything: half of the windows.
Cascade LateCascade() {
    Cascade cascade;
    cascade.windowSize = kSize;
    const std::vector<Feature> pool = MakeFeaturePool(kSize, 20, 3);
    for (std::size_t s = 0; s < 4; ++s) {
        Stage stage{s < 3 ? kAll : 0.5f, s > 0, {}};
        for (std::size_t i = 0; i < 5; ++i) {
            const float weight = 1.0f + 0.1f * static_cast<float>(5 * s + i);
            stage.stumps.push_back({pool[5 * s + i], 0.0f, -weight, weight});
        }
        cascade.stages.push_back(std::move(stage));
    }
    return cascade;
}

std::vector<FaceWindows> MadeUpFaces(std::size_t count, std::size_t windows) {
    std::vector<FaceWindows> faces(count);
    Random random({5});
    for (FaceWindows& face : faces) {
        for (std::size_t w = 0; w < windows; ++w) {
            face.windows.emplace_back(RandomWindow(kSize, random).data(), kSize);
        }
    }
    return faces;
}

int Passing(const Cascade& cascade, const FaceWindows& face) {
    const Evaluator evaluator(cascade);
    return static_cast<int>(std::count_if(face.windows.begin(), face.windows.end(),
                                          [&](const Patch& window) { return evaluator.Passes(window); }));
}

/// Faces with windows that pass, of which fewer than `keep` still do and not all.
int Lost(const Cascade& before, const Cascade& after, const std::vector<FaceWindows>& faces, int keep) {
    int lost = 0;
    for (const FaceWindows& face : faces) lost += Passing(after, face) < std::min(keep, Passing(before, face)) ? 1 : 0;
    return lost;
}

class Prune : public testing::Test {
protected:
    const Cascade cascade_ = LateCascade();
    const std::vector<FaceWindows> faces_ = MadeUpFaces(200, 10);
};

TEST_F(Prune, WithoutLossesEveryWindowThatPassedStillDoesAndOthersFallSooner) {
    const Cascade pruned = Pruned(cascade_, faces_, {3, 10, 0.0}, 2);
    for (std::size_t s = 0; s < 3; ++s) EXPECT_GT(pruned.stages[s].threshold, kAll) << "stage " << s;
    int sooner = 0;
    for (const FaceWindows& face : faces_) {
        EXPECT_EQ(Passing(pruned, face), Passing(cascade_, face));
        for (const Patch& window : face.windows) {
            sooner += Evaluator(pruned).StageSum(2, window) < pruned.stages[2].threshold - kThresholdBias ? 1 : 0;
        }
    }
    EXPECT_GT(sooner, 0);
}

TEST_F(Prune, EveryFaceKeepsWindowsEnoughAndOneWithFewAll) {
    const Cascade whole = Pruned(cascade_, faces_, {3, 10, 0.0}, 2);
    for (const int keep : {1, 2, 3}) {
        const Cascade pruned = Pruned(cascade_, faces_, {3, keep, 0.0}, 2);
        EXPECT_EQ(Lost(cascade_, pruned, faces_, keep), 0) << keep;
        EXPECT_GT(Lost(cascade_, pruned, faces_, 10), 0) << keep;
        EXPECT_GE(pruned.stages[0].threshold, whole.stages[0].threshold) << keep;
    }
    EXPECT_GT(Pruned(cascade_, faces_, {3, 1, 0.0}, 2).stages[0].threshold, whole.stages[0].threshold);
}

TEST_F(Prune, NoMoreFacesAreGivenUpThanAllowed) {
    const Cascade pruned = Pruned(cascade_, faces_, {3, 4, 0.1}, 2);
    const int lost = Lost(cascade_, pruned, faces_, 4);
    EXPECT_GT(lost, 0);
    EXPECT_LE(lost, 20);
}

TEST_F(Prune, AFewFacesOfOneSourceAreNotGivenUpForTheOthers) {
    std::vector<FaceWindows> faces = faces_;
    const std::vector<FaceWindows> more = MadeUpFaces(3000, 10); // easy ones: their best windows alone
    for (const FaceWindows& face : more) {
        const auto best =
            std::max_element(face.windows.begin(), face.windows.end(), [&](const Patch& a, const Patch& b) {
                return Evaluator(cascade_).StageSum(0, a) < Evaluator(cascade_).StageSum(0, b);
            });
        if (Evaluator(cascade_).Passes(*best)) faces.push_back({1, {*best}});
    }
    const Cascade pruned = Pruned(cascade_, faces, {3, 4, 0.02}, 2);
    EXPECT_LE(Lost(cascade_, pruned, faces_, 4), 20); // five times 0.02 of 200
    for (FaceWindows& face : faces) face.source = 0;
    EXPECT_GT(Lost(cascade_, Pruned(cascade_, faces, {3, 4, 0.02}, 2), faces_, 4), 20);
}

TEST_F(Prune, LaterStagesAndThresholdsThatAreHighAlreadyStay) {
    const Cascade pruned = Pruned(cascade_, faces_, {2, 4, 0.0}, 2);
    EXPECT_EQ(pruned.stages[2].threshold, kAll);
    EXPECT_EQ(pruned.stages[3].threshold, cascade_.stages[3].threshold);
    EXPECT_EQ(ToFile(Pruned(pruned, faces_, {2, 10, 0.0}, 1)), ToFile(pruned));
    EXPECT_EQ(ToFile(Pruned(cascade_, faces_, {9, 10, 0.0}, 1)), ToFile(Pruned(cascade_, faces_, {4, 10, 0.0}, 2)));
}

TEST_F(Prune, WithoutAFaceThatPassesNothingChanges) {
    EXPECT_EQ(ToFile(Pruned(cascade_, {}, {3}, 2)), ToFile(cascade_));
    Cascade strict = cascade_;
    strict.stages.back().threshold = 1000.0f;
    EXPECT_EQ(ToFile(Pruned(strict, faces_, {3}, 2)), ToFile(strict));
}

} // namespace
} // namespace orvane::train
