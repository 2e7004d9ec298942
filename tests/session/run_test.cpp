// The run of a session without a window: from the picture handed in to the output bitmap.
#include "actions/action_settings.h"
#include "detect/candidates.h"
#include "image/packed_dib.h"
#include "tests/reference/pipeline.h"
#include "tests/session/session_fixture.h"
#include "tests/support/heap_limit.h"
#include "tests/support/host_block.h"
#include "tests/support/pictures.h"
#include "tests/support/scene_image.h"

#include <algorithm>
#include <cstdlib>

namespace orvane {
namespace {

/// The requests of the library for memory while it lives.
class Requests {
public:
    Requests() {
        largest_ = 0;
        SetHeapAllocator([](std::size_t bytes) -> void* {
            largest_ = std::max(largest_, bytes);
            return std::calloc(bytes, 1);
        });
    }
    ~Requests() { SetHeapAllocator(nullptr); }
    Requests(const Requests&) = delete;
    Requests& operator=(const Requests&) = delete;

    static std::size_t Largest() { return largest_; }

private:
    static inline std::size_t largest_ = 0;
};

class SessionRun : public test::SessionTest {
protected:
    int32 Run(const test::Scene& scene) { return session.DetectFacePicture(test::HostBlock(scene).Handle()); }

    /// The output of a final run on the present state, by the plain form.
    static void ExpectOutput(const Bitmap& output, ImageSize requested, const ActionFlags& enabled) {
        const int32 width = g_outputWidth, height = g_outputHeight;
        SetOutputGeometry(requested.width, requested.height);
        test::reference::PipelineState expected;
        expected.TakePresent();
        expected.MakeSource(test::SmallFaceScene());
        test::reference::RunPipeline(expected, enabled);
        g_outputWidth = width;
        g_outputHeight = height;
        ImageBuffer result;
        Take(output, result);
        EXPECT_SAME_PICTURE(result, expected.work);
    }
};

TEST_F(SessionRun, BeginSessionSetsEverythingBack) {
    SetSource(test::SmallFaceScene());
    session.m_previewOffsetX = session.m_previewOffsetY = 0;
    session.m_rotation = 30;
    session.m_tolerance = 55;
    session.m_stage = 2;
    session.m_anchorLeft = session.m_anchorRight = session.m_markLeft = 5; // must not pass for the operator's
    EXPECT_EQ(session.BeginSession(), kSuccess);
    EXPECT_EQ(session.m_previewOffsetX, 11);
    EXPECT_EQ(session.m_previewOffsetY, 12);
    EXPECT_EQ(session.m_rotation, 0);
    EXPECT_EQ(session.m_tolerance, 55) << "the tolerance survives";
    EXPECT_EQ(session.m_stage, 1);
    EXPECT_EQ(session.m_bitmapHeader.biWidth, 640) << "the header is that of the work picture";
    EXPECT_EQ(session.m_bitmapHeader.biHeight, 480);
    EXPECT_GT(session.m_anchorRight - session.m_anchorLeft, 25);
}

TEST_F(SessionRun, TheOriginalSizeIsKeptFrom75Upward) {
    struct Case {
        ImageSize picture, original;
    };
    for (const Case& c : {Case{{75, 75}, {75, 75}}, Case{{74, 200}, {11, 12}}, Case{{200, 74}, {11, 12}}}) {
        g_originalWidth = 11;
        g_originalHeight = 12;
        SetSource(test::BlankScene(c.picture.width, c.picture.height));
        session.BeginSession();
        EXPECT_EQ(g_originalWidth, c.original.width);
        EXPECT_EQ(g_originalHeight, c.original.height);
    }
}

TEST_F(SessionRun, BeginSessionAnswersWithTheDetection) {
    SetSource(test::BlankScene(160, 120));
    EXPECT_EQ(session.BeginSession(), kNoFace);
    SetSource(test::BlankScene(640, 20));
    EXPECT_EQ(session.BeginSession(), kBadCall);
    g_detectorParams->loadStatus = kNoClassifier;
    SetSource(test::SmallFaceScene());
    EXPECT_EQ(session.BeginSession(), kNoClassifier);
}

TEST_F(SessionRun, TheWorkPictureIsTheSourceAtTheWorkSize) {
    struct Case {
        ImageSize picture, work;
    };
    for (const Case& c :
         {Case{{160, 120}, {640, 480}}, Case{{403, 401}, {504, 501}}, Case{{1500, 1000}, {1200, 800}}}) {
        SCOPED_TRACE(::testing::Message() << c.picture.width << " by " << c.picture.height);
        test::Random random(4);
        test::Scene scene = test::BlankScene(c.picture.width, c.picture.height, 128);
        test::AddTexture(scene, 100, random);
        SetSource(scene);
        session.ReadBitmapHeader(session.m_sourceBitmap);
        session.ComputeWorkSize();
        g_actionEnabled = {1, 2, 3, 4, 5, 6};
        g_rotationAngle = 17;
        session.MakeWorkingPicture();
        EXPECT_EQ(g_actionEnabled, (ActionFlags{1, 2, 3, 4, 5, 6})) << "flags come out as they went in";
        EXPECT_EQ(g_rotationAngle, 0);
        EXPECT_EQ(g_outputWidth, 480) << "the requested size stands again";
        EXPECT_EQ(g_outputHeight, 860);
        EXPECT_EQ(session.m_resultBitmap.Width(), c.work.width);
        EXPECT_EQ(session.m_resultBitmap.Height(), c.work.height);
        EXPECT_EQ(session.m_bitmapHeader.biWidth, c.work.width);
        EXPECT_EQ(g_sourceImage.width, c.picture.width);
        ExpectOutput(session.m_resultBitmap, c.work, {0, 0, 0, 0, 0, 1});
    }
}

TEST_F(SessionRun, TheWorkPictureLeavesNoSnapshotOfThePictureBefore) {
    test::MakeRandomPicture(g_colourStageImage, 50, 40, 3, 1);
    test::MakeRandomPicture(g_colourStageMask, 50, 40, 1, 1);
    SetSource(test::SmallFaceScene());
    session.MakeWorkingPicture();
    EXPECT_EQ(g_colourStageImage.data, nullptr);
    EXPECT_EQ(g_colourStageMask.data, nullptr);
}

TEST_F(SessionRun, AWorkSizeUnder75LeavesTheGeometryOfBefore) {
    g_outputWidth = 100;
    g_outputHeight = 80;
    SetSource(test::BlankScene(18, 18)); // its work size would be 72 by 72
    session.ReadBitmapHeader(session.m_sourceBitmap);
    session.ComputeWorkSize();
    session.MakeWorkingPicture();
    EXPECT_EQ(session.m_resultBitmap.Width(), 100);
    EXPECT_EQ(session.m_resultBitmap.Height(), 100);
}

TEST_F(SessionRun, WithAFaceItEndsWithTheCropAtTheRequestedSize) {
    g_actionEnabled[kSlotCrop] = 1;
    session.m_outputWidth = 120;
    session.m_outputHeight = 160;
    EXPECT_EQ(Run(test::SmallFaceScene()), kSuccess);
    // Source and face are still those of the final run.
    EXPECT_EQ(g_sourceImage.width, 640);
    ExpectOutput(session.m_resultBitmap, {120, 160}, {1, 0, 0, 0, 0, 1});
    EXPECT_GE(session.m_resultBitmap.Width(), 120);
    EXPECT_GE(session.m_resultBitmap.Height(), 160);
    EXPECT_LE(session.m_resultBitmap.Width() * session.m_resultBitmap.Height(), 125 * 165);
    EXPECT_EQ(g_actionEnabled, (ActionFlags{1, 0, 0, 0, 0, 1}));
}

TEST_F(SessionRun, WithAFaceNeitherThePhotoIsCopiedNorTheWorkPictureMade) {
    g_actionEnabled[kSlotCrop] = 1;
    session.m_outputWidth = 120;
    session.m_outputHeight = 160;
    const test::Scene scene = test::FaceScene(1600, 1200, 700, 500, 150);
    const Requests requests;
    EXPECT_EQ(Run(scene), kSuccess);
    EXPECT_GT(Requests::Largest(), 1'600U * 1'200) << "the grey plane";
    EXPECT_LT(Requests::Largest(), 2'000'000U) << "the photo has 5.8 million bytes, the work picture 3.7";
    EXPECT_EQ(g_sourceImage.width, 1280);
    EXPECT_EQ(g_sourceImage.data, nullptr);
}

TEST_F(SessionRun, WithoutAFaceTheWorkPictureIsTheOutput) {
    for (const ImageSize& size : {ImageSize{160, 120}, {403, 401}, {1500, 1000}}) {
        test::Random random(4);
        test::Scene scene = test::BlankScene(size.width, size.height, 128);
        test::AddTexture(scene, 100, random);
        ASSERT_EQ(Run(scene), kNoFace);
        ImageBuffer photo, expected, output;
        ASSERT_TRUE(test::ToImage(scene, photo));
        ImageSize work = g_sourceImage.Size();
        ASSERT_EQ(test::reference::OutputScaling(photo, work, expected), kSuccess);
        Take(session.m_resultBitmap, output);
        EXPECT_SAME_PICTURE(output, expected);
        EXPECT_EQ(session.m_bitmapHeader.biWidth, work.width);
    }
}

TEST_F(SessionRun, AWorkPictureThatIsTheOutputAndHasNoMemoryIsMinus50) {
    int32 refused = 0;
    for (int32 allowed = 0;; ++allowed) {
        ASSERT_LT(allowed, 1000);
        SetSource(test::BlankScene(160, 120));
        int32 result;
        {
            const test::HeapLimit limit(allowed);
            ::testing::internal::CaptureStdout(); // refused resizes say so
            result = session.BeginSession();
            ::testing::internal::GetCapturedStdout();
        }
        if (result == kNoFace) break;
        ASSERT_EQ(result, kOutOfMemory);
        EXPECT_TRUE(session.m_resultBitmap.IsEmpty());
        ++refused;
    }
    EXPECT_GT(refused, 5);
    EXPECT_EQ(session.m_resultBitmap.Width(), 640);
}

TEST_F(SessionRun, AFaceSetAfterwardsIsCroppedFromTheSamePicture) {
    for (const FaceRecord& face : {FaceRecord{320, 240, 120, 120}, {1, 1, 90, 90}, {639, 479, 300, 200}}) {
        SetSource(test::SmallFaceScene());
        ASSERT_EQ(session.BeginSession(), kSuccess);
        g_faceRecord = face;
        for (const ActionFlags& flags : {ActionFlags{1, 0, 0, 0, 0, 1}, {0, 0, 1, 0, 0, 1}, {1, 0, 1, 0, 0, 1}}) {
            g_actionEnabled = flags;
            const ImageSize requested = flags[kSlotCrop] != 0 ? ImageSize{480, 860} : ImageSize{160, 120};
            ASSERT_EQ(session.ProduceOutput(40, true), kSuccess);
            ExpectOutput(session.m_resultBitmap, requested, flags);
        }
    }
}

TEST_F(SessionRun, WithCropOffTheOutputHasTheSourcesSizeWhateverWasRequested) {
    for (const ImageSize& picture : {ImageSize{160, 120}, ImageSize{162, 121}}) {
        session.m_outputWidth = 480;
        session.m_outputHeight = 860;
        EXPECT_EQ(Run(test::FaceScene(picture.width, picture.height, 60, 40, 40)), kSuccess);
        EXPECT_EQ(session.m_resultBitmap.Width(), picture.width);
        EXPECT_EQ(session.m_resultBitmap.Height(), picture.height);
    }
}

TEST_F(SessionRun, ASourceUnder75PixelsWithCropOffTakesTheRequestedSize) {
    SetSource(test::BlankScene(60, 50));
    session.m_outputWidth = 80;
    session.m_outputHeight = 100;
    EXPECT_EQ(session.BeginSession(), kNoFace);
    EXPECT_EQ(session.ProduceOutput(40, true), kSuccess);
    EXPECT_EQ(session.m_resultBitmap.Width(), 120); // 100 rows in the proportions of 60 by 50
    EXPECT_EQ(session.m_resultBitmap.Height(), 100);
}

TEST_F(SessionRun, ARequestUnder75LeavesTheGeometryOfTheWorkPicture) {
    g_actionEnabled[kSlotCrop] = 1;
    session.m_outputWidth = 74;
    session.m_outputHeight = 500;
    EXPECT_EQ(Run(test::SmallFaceScene()), kSuccess);
    ExpectOutput(session.m_resultBitmap, {640, 480}, {1, 0, 0, 0, 0, 1});
}

TEST_F(SessionRun, AFinalRunTakesTheRequestedWidthInFours) {
    g_actionEnabled[kSlotCrop] = 1;
    session.m_outputWidth = 483;
    session.m_outputHeight = 500;
    SetSource(test::SmallFaceScene());
    ASSERT_EQ(session.BeginSession(), kSuccess);
    g_faceRecord = {320, 240, 120, 120}; // with room for a crop of the very proportions
    ASSERT_EQ(session.ProduceOutput(40, true), kSuccess);
    ExpectOutput(session.m_resultBitmap, {480, 500}, {1, 0, 0, 0, 0, 1});
}

TEST_F(SessionRun, ARunThatIsNotFinalKeepsThePicturesOwnSize) {
    g_actionEnabled[kSlotCrop] = 1;
    SetSource(test::SmallFaceScene());
    ASSERT_EQ(session.BeginSession(), kSuccess);
    EXPECT_EQ(session.ProduceOutput(40, false), kSuccess);
    EXPECT_EQ(g_actionEnabled[kSlotOutputScaling], 0);
    ExpectOutput(session.m_resultBitmap, {480, 860}, {1, 0, 0, 0, 0, 0});
    EXPECT_EQ(session.m_bitmapHeader.biWidth, session.m_resultBitmap.Width());

    EXPECT_EQ(session.ProduceOutput(40, true), kSuccess);
    EXPECT_EQ(g_actionEnabled[kSlotOutputScaling], 1);
}

TEST_F(SessionRun, AFailingSlotDoesNotStopIt) {
    SetSource(test::SmallFaceScene());
    ASSERT_EQ(session.BeginSession(), kSuccess);
    g_actionEnabled = {0, 0, 0, 0, 1, 0}; // the slot that has no action
    EXPECT_EQ(session.ProduceOutput(40, true), kSuccess);
    EXPECT_EQ(session.m_resultBitmap.Width(), 640) << "the scaling was not reached";

    g_actionEnabled = {1, 0, 0, 0, 0, 0};
    g_faceRecord = {};
    EXPECT_EQ(session.ProduceOutput(40, true), kSuccess);
    EXPECT_EQ(session.m_resultBitmap.Width(), 640) << "an uncropped picture comes out";
}

TEST_F(SessionRun, ACropWithoutPixelsLeavesNoOutput) {
    g_actionEnabled[kSlotCrop] = 1;
    g_cropRatio = 0.0F;
    EXPECT_EQ(Run(test::SmallFaceScene()), kSuccess);
    EXPECT_TRUE(session.m_resultBitmap.IsEmpty());
}

TEST_F(SessionRun, TheConfirmationCropsAloneAndGivesTheFlagsBack) {
    SetSource(test::SmallFaceScene());
    ASSERT_EQ(session.BeginSession(), kSuccess);
    g_actionEnabled = {0, 1, 1, 1, 1, 1};
    g_rotationAngle = 5;
    session.ShowConfirmation();
    EXPECT_EQ(g_actionEnabled, (ActionFlags{0, 1, 1, 1, 1, 1}));
    EXPECT_EQ(g_rotationAngle, 0);
    ExpectOutput(session.m_resultBitmap, {480, 860}, {1, 0, 0, 0, 0, 0});
}

TEST_F(SessionRun, TheRotationReachesThePipeline) {
    SetSource(test::SmallFaceScene());
    ASSERT_EQ(session.BeginSession(), kSuccess);
    session.m_rotation = 123;
    ASSERT_EQ(session.ProduceOutput(40, true), kSuccess);
    EXPECT_EQ(g_rotationAngle, 123);
    ASSERT_EQ(session.BeginSession(), kSuccess);
    EXPECT_EQ(session.m_rotation, 0) << "a new session starts upright";
}

TEST_F(SessionRun, ALiveRunPlacesTheFaceByItsMarksAndKeepsTheFramesHeader) {
    test::MakeRandomPicture(g_sourceImage, 200, 100, 3, 1);
    session.m_sourceMode = 2;
    session.m_bitmapHeader = OutgoingHeader(200, 100);
    session.m_markLeft = 50; // from any corner
    session.m_markTop = 80;
    session.m_markRight = 10;
    session.m_markBottom = 20;
    EXPECT_EQ(session.ProduceOutput(40, false), kSuccess);
    EXPECT_EQ(g_faceRecord.centreX, 30);
    EXPECT_EQ(g_faceRecord.centreY, 50);
    EXPECT_EQ(g_faceRecord.faceWidth, 40);
    EXPECT_EQ(g_faceRecord.faceHeight, 60);
    EXPECT_EQ(session.m_bitmapHeader.biWidth, 200);
    EXPECT_EQ(session.m_bitmapHeader.biHeight, 100);
}

TEST_F(SessionRun, EndSessionKeepsTheOutputAlone) {
    SetSource(test::SmallFaceScene());
    ASSERT_EQ(session.BeginSession(), kSuccess);
    ASSERT_EQ(session.ProduceOutput(40, true), kSuccess);
    session.m_stage = 2;
    session.EndSession();
    EXPECT_TRUE(session.m_sourceBitmap.IsEmpty());
    EXPECT_EQ(session.m_resultBitmap.Width(), 160);
    EXPECT_EQ(session.m_stage, 1);
    ExpectNoMarks();
    void* block = nullptr;
    EXPECT_EQ(PackedDibFromBitmap(session.m_resultBitmap, &block), kSuccess);
    orv_BlockFree(block);
}

TEST_F(SessionRun, WithoutAFaceTheResultIs10AndTheVisibleModeStays) {
    for (const bool visible : {false, true}) {
        session.m_visible = visible;
        EXPECT_EQ(Run(test::BlankScene(160, 120)), kNoFace);
        EXPECT_EQ(session.m_visible, visible);
        ExpectNoMarks();
        EXPECT_TRUE(session.m_sourceBitmap.IsEmpty());
        EXPECT_EQ(g_faceRecord.faceWidth, 0);
    }
}

TEST_F(SessionRun, AskedToBeVisibleItRunsHiddenWhereNoWindowOpens) {
    session.m_visible = true;
    EXPECT_EQ(Run(test::SmallFaceScene()), kSuccess);
    EXPECT_EQ(session.m_resultBitmap.Width(), 160);
}

TEST_F(SessionRun, TheToleranceSurvivesWholeSessions) {
    session.m_tolerance = 73;
    EXPECT_EQ(Run(test::SmallFaceScene()), kSuccess);
    EXPECT_EQ(Run(test::BlankScene(200, 100)), kNoFace);
    EXPECT_EQ(session.m_tolerance, 73);
}

TEST_F(SessionRun, AnUnusableBlockIsNoPictureAndEndsNothing) {
    ASSERT_EQ(Run(test::SmallFaceScene()), kSuccess);
    session.m_stage = 2;
    session.m_markLeft = 9;
    EXPECT_EQ(session.DetectFacePicture(nullptr), kNoPicture);
    EXPECT_EQ(session.m_stage, 2);
    EXPECT_EQ(session.m_markLeft, 9);
    EXPECT_EQ(session.m_resultBitmap.Width(), 160) << "the output of the session before stays";
}

TEST_F(SessionRun, ALiveSessionWithoutADeviceIsRefusedAndEnded) {
    session.m_outputWidth = 201;
    session.m_outputHeight = 300;
    session.m_stage = 2;
    session.m_markLeft = 9;
    for (const int32 device : {0, 1, -1, 1000}) {
        EXPECT_EQ(session.DetectFaceLive(device), kCaptureFailed);
        EXPECT_EQ(session.m_deviceIndex, 0) << "only a device that opens is kept";
    }
    EXPECT_EQ(session.m_sourceMode, 2);
    EXPECT_FALSE(session.m_visible) << "only a capture that runs turns the window on";
    EXPECT_EQ(g_outputWidth, 200);
    EXPECT_EQ(g_outputHeight, 300);
    EXPECT_EQ(session.m_stage, 1);
    ExpectNoMarks();
    EXPECT_EQ(Run(test::SmallFaceScene()), kSuccess) << "and a picture goes as ever";
}

} // namespace
} // namespace orvane
