// What a scan answers when it can't be done, and what it leaves behind then.
#include "tests/detect/scan_fixture.h"
#include "tests/support/heap_limit.h"

namespace orvane::test {
namespace {

class ScanFailures : public ScanFixture {
protected:
    void SetUp() override {
        ASSERT_EQ(0, files_.Load(FaceCascade()));
        g_faceRecord = {11, 12, 13, 14};
    }

    static void ExpectRecordUntouched(const std::string& what) {
        EXPECT_EQ(11, g_faceRecord.centreX) << what;
        EXPECT_EQ(12, g_faceRecord.centreY) << what;
        EXPECT_EQ(13, g_faceRecord.faceWidth) << what;
        EXPECT_EQ(14, g_faceRecord.faceHeight) << what;
    }
};

/// A work picture of an earlier scan, by which one sees whether it was touched.
void MarkWork() {
    ASSERT_TRUE(g_workImage.Create(3, 2, 3, kDepth8u, 0));
    g_workImage.Fill(77.0);
}

void ExpectWorkUntouched(const std::string& what) {
    EXPECT_EQ(3, g_workImage.width) << what;
    ASSERT_NE(nullptr, g_workImage.data) << what;
    EXPECT_EQ(77, g_workImage.data[0]) << what;
}

TEST_F(ScanFailures, WithoutClassifierGiveTheLoadStatusAndTouchNothing) {
    ASSERT_TRUE(ToImage(FaceScene(100, 90, 20, 10, 60), g_sourceImage));
    for (const int32 status : {-70, -5, -1}) {
        MarkWork();
        DetectorParams params = Params(1.05F, 4);
        params.loadStatus = status;
        EXPECT_EQ(status, ScanScales(g_workImage, params, g_sourceImage));
        ExpectWorkUntouched("status " + std::to_string(status));
        ExpectRecordUntouched("status " + std::to_string(status));
    }
    EXPECT_TRUE(recorder_.Scales().empty());
}

TEST_F(ScanFailures, TheLoadStatusComesBeforeThePicture) {
    g_sourceImage.Reset();
    DetectorParams params = Params(1.05F, 4);
    params.loadStatus = -70;
    EXPECT_EQ(-70, ScanScales(g_workImage, params, g_sourceImage));
}

TEST_F(ScanFailures, WithoutSettingsThereIsNoSession) {
    g_detectorParams.reset();
    EXPECT_EQ(-80, RunDetection(false));
    EXPECT_EQ(-80, RunDetection(true));
}

TEST_F(ScanFailures, APictureWithoutSizeOrPixelsIsNone) {
    for (const ImageSize size : {ImageSize{0, 0}, {0, 50}, {50, 0}, {50, 50}}) {
        g_sourceImage.Reset();
        g_sourceImage.width = size.width;
        g_sourceImage.height = size.height;
        g_sourceImage.channels = 3;
        g_sourceImage.depth = kDepth8u;
        MarkWork();
        DetectorParams params = Params(1.05F, 4);
        const std::string what = std::to_string(size.width) + " by " + std::to_string(size.height);
        EXPECT_EQ(-60, ScanScales(g_workImage, params, g_sourceImage)) << what;
        ExpectWorkUntouched(what);
        ExpectRecordUntouched(what);
    }
}

TEST_F(ScanFailures, APictureTooSmallForTheStoreIsABadCall) {
    const ImageSize sizes[] = {{1, 1},     {1, 100},  {19, 19},  {19, 500},  {1, 32767},
                               {32767, 1}, {640, 43}, {500, 34}, {32767, 20}};
    for (const ImageSize size : sizes) {
        const std::string what = std::to_string(size.width) + " by " + std::to_string(size.height);
        for (const bool quick : {false, true}) EXPECT_EQ(-10, Run(BlankScene(size.width, size.height), quick)) << what;
        ExpectRecordUntouched(what);
        EXPECT_EQ(size.width, g_workImage.width) << "the work copy comes first, " << what;
    }
    EXPECT_TRUE(recorder_.Scales().empty());
}

TEST_F(ScanFailures, APictureJustLargeEnoughForTheStoreIsScanned) {
    for (const ImageSize size : {ImageSize{20, 1}, {20, 20}, {640, 44}, {500, 35}}) {
        EXPECT_EQ(10, Run(BlankScene(size.width, size.height), true)) << size.width << " by " << size.height;
    }
}

TEST_F(ScanFailures, AStripOf32767ByThousandsIsScannedAsSmallAsAnyOther) {
    // One 32,767 wide that the store takes must be 2,293 high; its scaled planes are no larger than others'.
    ASSERT_TRUE(g_sourceImage.Create(32767, 2400, 1, kDepth8u, 0));
    DetectorParams params = Params(1.09F, 4);
    EXPECT_EQ(10, ScanScales(g_workImage, params, g_sourceImage)) << "25 rows are not more than 29";
    EXPECT_TRUE(recorder_.Scales().empty());
}

/// A stage of one rectangle that no window passes.
CascadeStage Closed(ImageRect rect) { return {{{{{rect, 1.0F}}, 0.0F, 0.0F, 0.0F}}}; }

TEST_F(ScanFailures, ACascadeThatEndsBeforeTheWindowDoesIsRefusedAtTheFirstScale) {
    struct {
        const char* what;
        std::vector<CascadeStage> stages;
        int32 status;
    } const cases[] = {
        {"whole window", {Closed({0, 0, 24, 24})}, 10},
        {"one column short: the inner rectangle still fits", {Closed({0, 0, 23, 24})}, 10},
        {"one row short: the inner rectangle still fits", {Closed({0, 1, 24, 23})}, 10},
        {"width and height by different stages", {Closed({0, 20, 24, 4}), Closed({0, 0, 4, 24})}, 10},
        {"two columns short", {Closed({0, 0, 22, 24})}, -40},
        {"two rows short", {Closed({0, 2, 24, 22})}, -40},
        {"one pixel", {Closed({0, 23, 1, 1})}, -40},
        {"no stages", {}, -40},
        {"five columns beyond the window: the last scale has that margin", {Closed({5, 0, 24, 24})}, 10},
        {"more columns than the last scale has", {Closed({10, 0, 24, 24})}, -40},
        {"five rows beyond the window", {Closed({0, -5, 24, 24})}, 10},
    };
    for (const auto& c : cases) {
        ASSERT_EQ(0, files_.Load(BuildCascade({24, 24}, c.stages))) << c.what;
        for (const int32 pruneMode : {0, 4}) {
            g_faceRecord = {11, 12, 13, 14};
            EXPECT_EQ(c.status, Scan(FaceScene(100, 90, 20, 10, 60), 1.09F, pruneMode)) << c.what;
            if (c.status < 0) ExpectRecordUntouched(c.what);
        }
    }
}

TEST_F(ScanFailures, OfAnyPrimitiveEndTheScanAtOnce) {
    constexpr auto fail = [](auto...) -> int32 { return kBadArgument; };
    const Scene scene = FaceScene(100, 90, 20, 10, 60);
    const auto expect = [&](int32 status, const char* what) {
        recorder_.Forget();
        EXPECT_EQ(status, Scan(scene)) << what;
        EXPECT_EQ(status, Run(scene, false)) << what;
        EXPECT_LE(recorder_.Scales().size(), 2u) << what << ": more scales after the failure";
        ExpectRecordUntouched(what);
    };
    {
        const SlotGuard<decltype(generic::primResize_8u_C1)> slot(primResize_8u_C1, fail);
        expect(-40, "resize");
    }
    {
        const SlotGuard<decltype(generic::primSqrIntegral_8u32f64f_C1)> slot(primSqrIntegral_8u32f64f_C1, fail);
        expect(-40, "integral");
    }
    {
        const SlotGuard<decltype(generic::primApplyHaarClassifier_32f_C1)> slot(primApplyHaarClassifier_32f_C1, fail);
        expect(-40, "stage");
    }
    {
        const SlotGuard<decltype(generic::primSet_8u_C1)> slot(primSet_8u_C1, fail);
        expect(-40, "opening of the mask");
    }
    {
        const SlotGuard<decltype(generic::primCopy_8u_C3)> slot(primCopy_8u_C3, fail);
        expect(-60, "copy");
    }
    {
        const SlotGuard<decltype(generic::primRGBToGray_8u_C3C1)> slot(primRGBToGray_8u_C3C1, fail);
        expect(-60, "grey conversion");
    }
}

TEST_F(ScanFailures, OfLinePruningEndTheScan) {
    // g_pruneParameter is 0 and makes bands without lines.
    for (int32 mode = 1; mode <= 3; ++mode) {
        EXPECT_EQ(-40, Scan(FaceScene(100, 90, 20, 10, 60), 1.09F, mode)) << "mode " << mode;
        ExpectRecordUntouched("mode " + std::to_string(mode));
    }
}

TEST_F(ScanFailures, OfEdgePruningScanAnOpenMask) {
    const Scene scene = FaceScene(100, 90, 20, 10, 60);
    const int32 status = Scan(scene, 1.09F, 0);
    const auto open = recorder_.Scales();
    const FaceRecord face = g_faceRecord;
    const auto expectOpen = [&](const char* what) {
        recorder_.Forget();
        EXPECT_EQ(status, Scan(scene, 1.09F, 4)) << what;
        EXPECT_EQ(face.centreX, g_faceRecord.centreX) << what;
        EXPECT_EQ(face.faceWidth, g_faceRecord.faceWidth) << what;
        ASSERT_EQ(open.size(), recorder_.Scales().size()) << what;
        for (std::size_t i = 0; i < open.size(); ++i) {
            EXPECT_TRUE(open[i].mask == recorder_.Scales()[i].mask) << what << ", scale " << i;
        }
    };
    g_pruneParameter = 3;
    expectOpen("a variant that does not exist");
    g_pruneParameter = 0;
    {
        const SlotGuard<decltype(generic::primCanny_16s8u_C1)> slot(
            primCanny_16s8u_C1,
            [](const int16*, int32, const int16*, int32, uint8* dst, int32, ImageSize, float, float, uint8*) -> int32 {
                dst[0] = 0; // half done
                return kBadArgument;
            });
        expectOpen("a failing edge detector");
    }
}

int g_failingAllocation;

/// The status of a scan during which one allocation alone fails, and how many it asked for.
int32 ScanWithOneFailure(const Scene& scene, int failing, bool& failed) {
    EXPECT_TRUE(ToImage(scene, g_sourceImage));
    g_workImage.Reset();
    DetectorParams params;
    params.scaleFactor = 1.09F;
    g_failingAllocation = failing;
    SetHeapAllocator(
        [](std::size_t bytes) -> void* { return g_failingAllocation-- == 0 ? nullptr : std::calloc(bytes, 1); });
    const int32 status = ScanScales(g_workImage, params, g_sourceImage);
    SetHeapAllocator(nullptr);
    failed = g_failingAllocation < 0;
    return status;
}

TEST_F(ScanFailures, OfAnyOneAllocationAreMinus50OrAnUnprunedScale) {
    const Scene scene = FaceScene(60, 50, 10, 5, 40);
    ASSERT_EQ(0, Scan(scene, 1.09F, 0)) << "a face with every mask open";
    ASSERT_EQ(0, Scan(scene));
    bool failed = true;
    int outOfMemory = 0;
    for (int allocation = 0; failed; ++allocation) {
        g_faceRecord = {11, 12, 13, 14};
        const int32 status = ScanWithOneFailure(scene, allocation, failed);
        EXPECT_TRUE(status == 0 || status == -50) << "allocation " << allocation << " gives " << status;
        if (status != 0) ExpectRecordUntouched("allocation " + std::to_string(allocation));
        outOfMemory += status == -50 ? 1 : 0;
        ASSERT_LT(allocation, 1000);
    }
    EXPECT_GE(outOfMemory, 7) << "work copy, grey plane and five planes at least";
}

TEST_F(ScanFailures, OfTheStagesThatTheFirstScanByStepsMakesAreMinus50) {
    const Scene scene = FaceScene(60, 50, 10, 5, 40);
    const auto stages = static_cast<int>(g_classifier.stageObject.size());
    ASSERT_GE(stages, 2);
    int minus50 = 0;
    // The work picture and the grey plane come first.
    for (int made = 0; made < stages; ++made) {
        ASSERT_EQ(0, files_.Load(FaceCascade()));
        bool failed = false;
        g_faceRecord = {11, 12, 13, 14};
        minus50 += ScanWithOneFailure(scene, 2 + made, failed) == -50 ? 1 : 0;
        EXPECT_TRUE(failed);
        ExpectRecordUntouched("stage " + std::to_string(made));
        EXPECT_EQ(made, std::count_if(g_classifier.stageObject.begin(), g_classifier.stageObject.end(),
                                      [](const HaarStage& stage) { return stage != nullptr; }));
        EXPECT_EQ(0, Scan(scene)) << "the next scan makes the others";
    }
    EXPECT_EQ(stages, minus50);
}

TEST_F(ScanFailures, OfAllAllocationsFromOneOnAreMinus50OrAnUnprunedScan) {
    const Scene scene = FaceScene(60, 50, 10, 5, 40);
    ASSERT_TRUE(ToImage(scene, g_sourceImage));
    int allowed = 0;
    int32 status = -50;
    for (; allowed < 1000; ++allowed) {
        g_faceRecord = {11, 12, 13, 14};
        g_workImage.Reset();
        DetectorParams params = Params(1.09F, 4);
        {
            const HeapLimit limit(allowed);
            status = ScanScales(g_workImage, params, g_sourceImage);
        }
        if (status != -50) break;
        ExpectRecordUntouched(std::to_string(allowed) + " allocations succeed");
    }
    EXPECT_EQ(0, status) << allowed << " allocations succeed";
    EXPECT_GE(allowed, 7);
    EXPECT_EQ(0, Scan(scene)) << "after failures a scan works as ever";
}

} // namespace
} // namespace orvane::test
