// The scan in one go finds the windows that it finds step by step, whatever the picture and the classifier.
#include "detect/fused_scan.h"

#include "detect/cascade_detector.h"
#include "detect/classifier_file.h"
#include "detect/detection_memory.h"
#include "image/session_images.h"
#include "tests/compare/hit_watcher.h"
#include "tests/compare/random_scene.h"
#include "tests/detect/kernel_sets.h"
#include "tests/support/detector_settings.h"
#include "tests/support/face_scene.h"
#include "tests/support/heap_limit.h"
#include "tests/support/module_files.h"
#include "tests/support/scene_image.h"

#include <fstream>
#include <iterator>

namespace orvane::test {
namespace {

class FusedScanTest : public ::testing::TestWithParam<KernelSet> {
protected:
    ~FusedScanTest() override {
        g_sourceImage.Reset();
        g_workImage.Reset();
    }

    /// Scans g_sourceImage both ways; the hits, which must be the same.
    static std::string BothScans(float scaleFactor, const std::string& what) {
        DetectorParams params;
        params.scaleFactor = scaleFactor;
        HitWatcher stepwise(true);
        const int32 status = ScanScales(g_workImage, params, g_sourceImage);
        const FaceRecord face = g_faceRecord;
        const int32 positive = g_positiveCount;
        EXPECT_GE(stepwise.steps, 1) << what;
        HitWatcher fused(false);
        g_positiveCount = -1;
        EXPECT_EQ(status, ScanScales(g_workImage, params, g_sourceImage)) << what;
        EXPECT_EQ(0, fused.steps) << what << ": it was not scanned in one go";
        const auto differ =
            std::mismatch(stepwise.text.begin(), stepwise.text.end(), fused.text.begin(), fused.text.end());
        EXPECT_TRUE(stepwise.text == fused.text)
            << what << ": step by step " << std::string(differ.first, stepwise.text.end()).substr(0, 60)
            << ", in one go " << std::string(differ.second, fused.text.end()).substr(0, 60);
        EXPECT_EQ(positive, g_positiveCount) << what;
        EXPECT_EQ(face.centreX, g_faceRecord.centreX) << what;
        EXPECT_EQ(face.faceWidth, g_faceRecord.faceWidth) << what;
        return fused.text;
    }

    ModuleFiles files_;
    DetectorSettings settings_;
    InstructionSetGuard set_{GetParam().set};
};

/// Stages of which each begins with all stumps of the one before, whose numbers they share.
CascadeFile ChainedFile(const std::vector<CascadeStage>& stages) {
    const CascadeFile file = BuildCascade({24, 24}, stages);
    const std::size_t longest = stages.size() - 1;
    CascadeFile shared = BuildCascade({24, 24}, {stages[longest]});
    shared.header[2] = file.header[2];
    shared.stageThreshold = file.stageThreshold;
    shared.stageReserved = file.stageReserved;
    shared.stageClassifierCount.clear();
    for (const CascadeStage& stage : stages)
        shared.stageClassifierCount.push_back(
            static_cast<int32>(std::min(stage.classifiers.size(), stages[longest].classifiers.size())));
    shared.stageClassifierStart.assign(stages.size(), 0);
    shared.stageFeatureStart.assign(stages.size(), 0);
    return shared;
}

/// A cascade of random stumps; its stages go on from each other or begin anew.
CascadeFile RandomCascade(Random& random, bool chained) {
    std::vector<CascadeStage> stages;
    for (int32 s = random.Int(1, 4); s > 0; --s) {
        CascadeStage stage;
        if (chained && !stages.empty()) stage.classifiers = stages.back().classifiers;
        for (int32 n = random.Int(1, 6); n > 0; --n) {
            WeakClassifier stump{{},
                                 static_cast<float>(random.Real(-0.4, 0.4)),
                                 static_cast<float>(random.Real(-1, 1)),
                                 static_cast<float>(random.Real(-1, 1))};
            for (int32 r = random.Int(1, 4); r > 0; --r) {
                const int32 w = random.Int(1, 24), h = random.Int(1, 24);
                stump.rects.push_back(
                    {{random.Int(0, 24 - w), random.Int(0, 24 - h), w, h}, static_cast<float>(random.Int(-3, 3))});
            }
            stage.classifiers.push_back(stump);
        }
        stage.threshold = static_cast<float>(random.Real(-1.5, 0.5));
        stages.push_back(stage);
    }
    // One that reaches the window's corners, without which the scan refuses the file.
    stages[0].classifiers.push_back({{{{0, 0, 24, 24}, 0.0F}}, 0.0F, 0.0F, 0.0F});
    return chained ? ChainedFile(stages) : BuildCascade({24, 24}, stages);
}

/// A stump of two nested rectangles, two, three or four of one size, whose weights make up for each other.
WeakClassifier BalancedStump(Random& random) {
    const int32 kind = random.Int(0, 4), parts = kind == 0 ? 2 : kind == 1 ? 3 : kind;
    const int32 w = random.Int(1, 24 / parts), h = random.Int(1, 24), n = parts * w;
    const int32 x = random.Int(0, 24 - n), y = random.Int(0, 24 - h);
    WeakClassifier stump{{},
                         static_cast<float>(random.Real(-0.2, 0.2)),
                         static_cast<float>(random.Real(-1, 1)),
                         static_cast<float>(random.Real(-1, 1))};
    if (kind < 2) {
        stump.rects = {{{x, y, n, h}, -1.0F}, {{x + w, y, w, h}, static_cast<float>(parts)}};
    } else {
        for (int32 r = 0; r < parts; ++r)
            stump.rects.push_back({{x + r * w, y, w, h},
                                   parts == 3 && r == 2       ? -2.0F
                                   : parts != 3 && r % 2 != 0 ? -1.0F
                                                              : 1.0F});
    }
    return stump;
}

TEST_P(FusedScanTest, FindsTheWindowsOfAScanByStepsWithAFirstStageThatTakesShortSums) {
    Random random(25);
    int32 withHits = 0, takeShortSums = 0, all = 0;
    for (int32 n = 0; n < 120; ++n) {
        std::vector<CascadeStage> stages(2);
        for (CascadeStage& stage : stages) {
            for (int32 i = random.Int(1, 8); i > 0; --i) stage.classifiers.push_back(BalancedStump(random));
            stage.threshold = static_cast<float>(random.Real(-1.5, 0.5));
        }
        // One that reaches the window's corners, without which the scan refuses the file.
        stages[0].classifiers.push_back({{{{0, 0, 1, 1}, 1.0F}, {{23, 23, 1, 1}, -1.0F}}, 0.0F, 0.0F, 0.0F});
        ASSERT_EQ(0, files_.Load(BuildCascade({24, 24}, stages))) << n;
        takeShortSums += g_classifier.plan.takesShortSums ? 1 : 0;
        ++all;
        ASSERT_TRUE(ToImage(RandomScene(random), g_sourceImage));
        withHits += BothScans(1.2F, "cascade " + std::to_string(n)).empty() ? 0 : 1;
        if (HasFailure()) return;
    }
    EXPECT_GT(withHits, 20);
    EXPECT_GT(takeShortSums, all / 2) << "short sums are hardly tried";
    EXPECT_LT(takeShortSums, all) << "sums that are not short are not tried";
}

TEST_P(FusedScanTest, FindsTheWindowsOfAScanByStepsWhereStagesPartNeighbours) {
    // Five stages, each of which goes on from the sums of the one before, and drops windows between others.
    Random random(29);
    int32 withHits = 0;
    for (int32 n = 0; n < 40; ++n) {
        std::vector<CascadeStage> stages(5);
        stages[0].classifiers.push_back({{{{0, 0, 1, 1}, 1.0F}, {{23, 23, 1, 1}, -1.0F}}, 0.0F, 0.0F, 0.0F});
        for (std::size_t s = 0; s < stages.size(); ++s) {
            if (s > 0) stages[s].classifiers = stages[s - 1].classifiers;
            for (int32 i = 0; i < 2; ++i) stages[s].classifiers.push_back(BalancedStump(random));
            stages[s].threshold = static_cast<float>(random.Real(-1.0, 0.0));
        }
        ASSERT_EQ(0, files_.Load(ChainedFile(stages))) << n;
        for (std::size_t s = 1; s < stages.size(); ++s) ASSERT_TRUE(g_classifier.plan.stages[s].continues) << s;
        Scene scene = BlankScene(120, 90, 128);
        AddTexture(scene, 100, random);
        ASSERT_TRUE(ToImage(scene, g_sourceImage));
        withHits += BothScans(1.5F, "cascade " + std::to_string(n)).empty() ? 0 : 1;
        if (HasFailure()) return;
    }
    EXPECT_GT(withHits, 10);
}

TEST_P(FusedScanTest, FindsTheWindowsOfAScanByStepsWhereLargeSumsAreRounded) {
    // Which of two pixels is lighter: where sums are rounded, some that are are not.
    const WeakClassifier lighter{{{{0, 0, 1, 1}, 1.0F}, {{23, 23, 1, 1}, -1.0F}}, 0.0F, -1.0F, 1.0F};
    ASSERT_EQ(0, files_.Load(BuildCascade({24, 24}, {{{lighter}, 0.0F}})));
    ASSERT_TRUE(g_classifier.plan.takesShortSums);
    Random random(26);
    Scene scene = BlankScene(350, 500, 245);
    AddTexture(scene, 20, random);
    ASSERT_TRUE(ToImage(scene, g_sourceImage));
    EXPECT_FALSE(BothScans(2.0F, "bright and high").empty());
}

TEST_P(FusedScanTest, FindsTheWindowsOfAScanByStepsWithTheDrawnFaces) {
    ASSERT_EQ(0, files_.Load(FaceCascade()));
    Random random(21);
    int32 withHits = 0;
    for (int32 n = 0; n < 150; ++n) {
        ASSERT_TRUE(ToImage(RandomScene(random), g_sourceImage));
        withHits += BothScans(1.09F, "scene " + std::to_string(n)).empty() ? 0 : 1;
        if (HasFailure()) return;
    }
    EXPECT_GT(withHits, 20);
}

TEST_P(FusedScanTest, FindsTheWindowsOfAScanByStepsWithAnyCascade) {
    Random random(22);
    int32 withHits = 0;
    for (int32 n = 0; n < 120; ++n) {
        ASSERT_EQ(0, files_.Load(RandomCascade(random, n % 2 == 0))) << n;
        ASSERT_TRUE(ToImage(RandomScene(random), g_sourceImage));
        withHits += BothScans(1.2F, "cascade " + std::to_string(n)).empty() ? 0 : 1;
        if (HasFailure()) return;
    }
    EXPECT_GT(withHits, 20);
}

TEST_P(FusedScanTest, FindsTheWindowsOfAScanByStepsWithTheShippedClassifier) {
    std::ifstream shipped(ORVANE_SHIPPED_CLASSIFIER, std::ios::binary);
    ASSERT_EQ(0, files_.Load(std::string(std::istreambuf_iterator<char>(shipped), {})));
    ASSERT_TRUE(g_classifier.plan.usable) << "the shipped classifier must be one that is scanned in one go";
    Random random(23);
    for (int32 n = 0; n < 60; ++n) {
        ASSERT_TRUE(ToImage(RandomScene(random), g_sourceImage));
        BothScans(1.05F, "scene " + std::to_string(n));
        if (HasFailure()) return;
    }
}

TEST_P(FusedScanTest, FindsTheWindowsOfAScanByStepsInBothPassesOfADetection) {
    ASSERT_EQ(0, files_.Load(FaceCascade()));
    g_detectorParams = std::make_unique<DetectorParams>();
    g_minGroupMembers = 1'000'000; // so that no pass has a face
    Random random(27);
    int32 withHitsOfTheFirstScale = 0;
    for (int32 n = 0; n < 60; ++n) {
        ASSERT_TRUE(ToImage(RandomScene(random), g_sourceImage));
        HitWatcher stepwise(true);
        ASSERT_EQ(10, RunDetection(false)) << n;
        HitWatcher fused(false);
        ASSERT_EQ(10, RunDetection(false)) << n;
        ASSERT_EQ(0, fused.steps) << n << ": it was not scanned in one go";
        ASSERT_EQ(stepwise.text, fused.text) << n;
        const float first = InitialScale(g_sourceImage.width, g_detectorParams->minFaceSize, 24);
        const Candidate hit = CandidateOfWindow(0, 0, 24, first);
        withHitsOfTheFirstScale += fused.text.find("," + std::to_string(hit.size) + " ") != std::string::npos ? 1 : 0;
    }
    EXPECT_GT(withHitsOfTheFirstScale, 5);
}

TEST_P(FusedScanTest, DetectionsInTheSameMemoryFindWhatFreshOnesFind) {
    ASSERT_EQ(0, files_.Load(FaceCascade()));
    g_detectorParams = std::make_unique<DetectorParams>();
    Random random(28);
    DetectionMemory memory;
    int32 faces = 0;
    for (int32 n = 0; n < 120; ++n) {
        // Sizes that come again, and others.
        Scene scene = n % 3 == 0 ? RandomScene(random) : BlankScene(n % 3 == 1 ? 360 : 300, 240, 200);
        if (n % 3 != 0) DrawFace(scene, random.Int(-20, 300), random.Int(-20, 200), random.Int(20, 120));
        AddTexture(scene, random.Int(0, 60), random);
        ASSERT_TRUE(ToImage(scene, g_sourceImage));
        const bool quick = random.Int(0, 1) != 0;
        HitWatcher fresh(false);
        DetectionMemory none;
        const int32 status = FindFace(quick, none);
        const FaceRecord face = g_faceRecord;
        HitWatcher kept(false);
        ASSERT_EQ(status, FindFace(quick, memory)) << n;
        ASSERT_EQ(0, kept.steps) << n << ": it was not scanned in one go";
        ASSERT_EQ(fresh.text, kept.text) << n;
        EXPECT_EQ(face.centreX, g_faceRecord.centreX) << n;
        EXPECT_EQ(face.faceWidth, g_faceRecord.faceWidth) << n;
        faces += status == kSuccess ? 1 : 0;
    }
    EXPECT_GT(faces, 20);
    EXPECT_LT(faces, 100);
}

TEST_P(FusedScanTest, MemoryThatCouldNotGrowServesTheNextDetection) {
    ASSERT_EQ(0, files_.Load(FaceCascade()));
    g_detectorParams = std::make_unique<DetectorParams>();
    for (int32 before = 0;; ++before) {
        DetectionMemory memory;
        ASSERT_TRUE(ToImage(BlankScene(200, 150, 90), g_sourceImage));
        ASSERT_EQ(kNoFace, FindFace(true, memory));
        Scene scene = BlankScene(320, 240, 200);
        DrawFace(scene, 100, 60, 80);
        ASSERT_TRUE(ToImage(scene, g_sourceImage));
        bool happened = false;
        {
            const HeapFault fault(before);
            const int32 status = FindFace(true, memory);
            happened = HeapFault::Happened();
            EXPECT_EQ(status, happened ? kOutOfMemory : kSuccess) << before;
        }
        EXPECT_EQ(kSuccess, FindFace(true, memory)) << before;
        if (!happened) break;
        ASSERT_LT(before, 1000);
    }
}

TEST_P(FusedScanTest, DecidesEveryWindowOfANoisyPictureAndHardlyAnyTwice) {
    std::ifstream shipped(ORVANE_SHIPPED_CLASSIFIER, std::ios::binary);
    ASSERT_EQ(0, files_.Load(std::string(std::istreambuf_iterator<char>(shipped), {})));
    Random random(24);
    ImageBuffer grey;
    ASSERT_TRUE(grey.Create(320, 240, 1, kDepth8u, 0));
    for (int32 i = 0; i < grey.Step() * grey.height; ++i) grey.data[i] = static_cast<uint8>(random.Int(0, 255));
    FusedScan scan(GetParam().kernels, g_classifier, grey);
    ASSERT_TRUE(scan.Reserve(grey.Size()));
    CandidateList hits;
    scan.ScanScale(grey.Size(), 1.0F, hits);
    RecordProperty("doubts", static_cast<int>(scan.Doubts()));
    EXPECT_GT(scan.Doubts(), 0) << "the margin is never met: is it zero?";
    EXPECT_LT(scan.Doubts(), 297 * 217 / 200) << "more than one in two hundred";
}

/// A stump of the whole window that gives 1 for every picture.
WeakClassifier Always() { return {{{{0, 0, 24, 24}, 1.0F}}, -1.0F, 0.0F, 1.0F}; }

TEST_P(FusedScanTest, LeavesClassifiersBeyondItsBoundsToTheSteps) {
    struct {
        const char* what;
        WeakClassifier stump;
        bool usable;
    } const cases[] = {
        {"a plain one", Always(), true},
        {"five rectangles", {std::vector<WeightedRect>(5, {{0, 0, 24, 24}, 1.0F}), 0.0F}, false},
        {"weights beyond all bounds", {{{{0, 0, 24, 24}, 1e38F}}, 0.0F}, false},
        {"a value finer than a sum is exact to", {{{{0, 0, 24, 24}, 1.0F}}, 0.0F, 1e-20F, 1.0F}, false},
        {"a value larger than a sum is exact to", {{{{0, 0, 24, 24}, 1.0F}}, 0.0F, 0.0F, 0x1p53F}, false},
        {"values large and fine beside each other", {{{{0, 0, 24, 24}, 1.0F}}, 0.0F, 0x1p-24F, 0x1p29F}, false},
        {"values as large as their finest allows", {{{{0, 0, 24, 24}, 1.0F}}, 0.0F, 0x1p-24F, 0x1p28F}, true},
        {"all zeros", {{{{0, 0, 24, 24}, 0.0F}}, 0.0F, 0.0F, 1.0F}, true},
    };
    for (const auto& c : cases) {
        ASSERT_EQ(0, files_.Load(BuildCascade({24, 24}, {{{c.stump}, 0.5F}}))) << c.what;
        EXPECT_EQ(c.usable, g_classifier.plan.usable) << c.what;
        EXPECT_EQ(c.usable, FusedScan::Serves(g_classifier, {350, 300})) << c.what;
        EXPECT_FALSE(FusedScan::Serves(g_classifier, {350, 3000})) << c.what << ": a strip is not exact any more";
        EXPECT_FALSE(FusedScan::Serves(g_classifier, {3000, 300})) << c.what << ": a strip is not exact any more";
    }
}

TEST_P(FusedScanTest, PassesWhatReachesTheThresholdExactly) {
    // Three stumps whose sum is the threshold, by the bias of a prepared classifier to the last bit.
    for (const float bias : {-0.0001F, 0.0F, 0.0001F, 0.0002F}) {
        WeakClassifier a = Always(), b = Always(), c = Always();
        a.val2 = 0.1F;
        b.val2 = 0.7F;
        c.val2 = -0.3F;
        ASSERT_EQ(0, files_.Load(BuildCascade({24, 24}, {{{a, b, c}, 0.5F + bias}})));
        Random random(4);
        Scene scene = BlankScene(60, 50);
        AddTexture(scene, 60, random);
        ASSERT_TRUE(ToImage(scene, g_sourceImage));
        const bool passes = 0.1F + static_cast<double>(0.7F) - 0.3F >= 0.5F + bias - 0.0001F;
        EXPECT_EQ(passes, !BothScans(1.2F, std::to_string(bias)).empty()) << bias;
    }
}

INSTANTIATE_TEST_SUITE_P(Kernels, FusedScanTest, ::testing::ValuesIn(KernelSets()), NameOfSet);

} // namespace
} // namespace orvane::test
