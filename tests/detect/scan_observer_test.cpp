// What a scan tells of itself is what it does.
#include "detect/scan_observer.h"

#include "detect/cascade_detector.h"
#include "tests/detect/scan_fixture.h"

#include <algorithm>

namespace orvane::test {
namespace {

struct ToldScale {
    float scale;
    ImageSize positions;
    std::vector<std::vector<uint8>> masks; // after pruning, then after each stage
};

class Watcher : public ScanObserver {
public:
    Watcher() { g_scanObserver = this; }
    ~Watcher() override { g_scanObserver = nullptr; }

    void OnPass() override {
        ++passes;
        scales.clear();
    }
    void OnScale(float scale) override { scales.push_back({scale, {0, 0}, {}}); }
    void OnPruned(const ImageBuffer& mask, ImageSize positions) override {
        scales.back().positions = positions;
        Keep(mask);
    }
    void OnStage(std::size_t stage, const ImageBuffer& mask) override {
        EXPECT_EQ(stage + 1, scales.back().masks.size());
        Keep(mask);
    }
    void OnHits(const CandidateList& list) override { hits = list; }

    int passes = 0;
    std::vector<ToldScale> scales; // of the last pass
    CandidateList hits;

private:
    void Keep(const ImageBuffer& mask) {
        const ImageSize positions = scales.back().positions;
        std::vector<uint8> bytes;
        for (int32 y = 0; y < positions.height; ++y) {
            const uint8* row = RowAt(mask.data, mask.Step(), y);
            bytes.insert(bytes.end(), row, row + positions.width);
        }
        scales.back().masks.push_back(std::move(bytes));
    }
};

class ObservedScan : public ScanFixture {
protected:
    void SetUp() override { ASSERT_EQ(0, files_.Load(FaceCascade())); }
};

TEST_F(ObservedScan, TellsTheScalesAndTheWindowsThatTheScanHas) {
    Watcher watcher;
    ASSERT_EQ(0, Scan(FaceScene(160, 120, 50, 30, 48)));
    ASSERT_GT(watcher.scales.size(), 5u);
    ASSERT_EQ(recorder_.Scales().size(), watcher.scales.size());
    std::size_t survivors = 0;
    for (std::size_t i = 0; i < watcher.scales.size(); ++i) {
        const ToldScale& told = watcher.scales[i];
        const RecordedScale& run = recorder_.Scales()[i];
        EXPECT_EQ(run.factor, 1.0F / told.scale) << "scale " << i;
        EXPECT_EQ(run.positions.width, told.positions.width) << "scale " << i;
        EXPECT_EQ(run.positions.height, told.positions.height) << "scale " << i;
        ASSERT_EQ(static_cast<std::size_t>(run.stages) + 1, told.masks.size()) << "scale " << i;
        EXPECT_TRUE(run.mask == told.masks.back()) << "scale " << i;
        survivors += run.mask.size() - static_cast<std::size_t>(std::count(run.mask.begin(), run.mask.end(), 0));
    }
    std::size_t hits = 0;
    for (const CandidateGroup& group : watcher.hits.groups) hits += group.members.size();
    EXPECT_EQ(survivors, hits);
    EXPECT_GT(hits, 0u);
}

TEST_F(ObservedScan, AWindowThatIsGoneStaysGone) {
    Watcher watcher;
    ASSERT_EQ(0, Scan(FaceScene(160, 120, 50, 30, 48)));
    for (const ToldScale& scale : watcher.scales) {
        for (std::size_t stage = 1; stage < scale.masks.size(); ++stage) {
            for (std::size_t i = 0; i < scale.masks[stage].size(); ++i) {
                ASSERT_TRUE(scale.masks[stage][i] == 0 || scale.masks[stage - 1][i] != 0);
            }
        }
    }
}

TEST_F(ObservedScan, ItsHitsGroupToTheFace) {
    Watcher watcher;
    ASSERT_EQ(0, Scan(FaceScene(160, 120, 50, 30, 48)));
    FaceRecord face;
    int32 found = 0;
    GroupCandidates(watcher.hits, &face, &found);
    EXPECT_EQ(static_cast<std::size_t>(found), MergeGroups(watcher.hits).groups.size());
    EXPECT_EQ(g_faceRecord.centreX, face.centreX);
    EXPECT_EQ(g_faceRecord.centreY, face.centreY);
    EXPECT_EQ(g_faceRecord.faceWidth, face.faceWidth);
    EXPECT_GT(face.faceWidth, 0);
}

TEST_F(ObservedScan, TellsEveryPass) {
    Watcher watcher;
    EXPECT_EQ(10, Run(BlankScene(120, 90), false));
    EXPECT_EQ(2, watcher.passes);
    watcher.passes = 0;
    EXPECT_EQ(10, Run(BlankScene(120, 90), true));
    EXPECT_EQ(1, watcher.passes);
    watcher.passes = 0;
    EXPECT_EQ(0, Run(FaceScene(160, 120, 50, 30, 48), false));
    EXPECT_EQ(1, watcher.passes);
}

TEST_F(ObservedScan, IsTheScanThatNobodyWatches) {
    const Scene scene = FaceScene(160, 120, 50, 30, 48);
    ASSERT_EQ(0, Scan(scene));
    const FaceRecord alone = g_faceRecord;
    Watcher watcher;
    ASSERT_EQ(0, Scan(scene));
    EXPECT_EQ(alone.centreX, g_faceRecord.centreX);
    EXPECT_EQ(alone.centreY, g_faceRecord.centreY);
    EXPECT_EQ(alone.faceWidth, g_faceRecord.faceWidth);
}

} // namespace
} // namespace orvane::test
