// The chain of the six slots, against a plain form of it.
#include "session/pipeline.h"

#include "actions/action_settings.h"
#include "detect/candidates.h"
#include "image/result_codes.h"
#include "tests/reference/pipeline.h"
#include "tests/support/fresh_session.h"
#include "tests/support/heap_limit.h"
#include "tests/support/pictures.h"
#include "tests/support/portrait.h"
#include "tests/support/printed.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <string>
#include <vector>

namespace orvane {
namespace {

class Pipeline : public ::testing::Test {
protected:
    /// A source with a face in it, a mask that a run left behind, and snapshots of an earlier one.
    Pipeline() {
        test::MakeRandomPicture(g_sourceImage, 101, 90, 3, 1);
        test::MakeRandomPicture(g_workImage, 5, 4, 3, 2);
        test::MakeRandomPicture(g_maskImage, 101, 90, 1, 3);
        test::MakeRandomPicture(g_colourStageImage, 6, 5, 3, 4);
        test::MakeRandomPicture(g_colourStageMask, 6, 5, 1, 5);
        g_faceRecord = {50, 40, 20, 20};
        SetOutputGeometry(76, 120);
    }

    static ActionFlags Flags(int32 bits) {
        ActionFlags flags{};
        for (std::size_t i = 0; i < flags.size(); ++i) flags[i] = static_cast<uint8>(bits >> i & 1);
        return flags;
    }

    /// Runs both forms on the present state and compares all that they leave.
    static void ExpectAsPlain(int32 angle = 0, int32 tolerance = 50) {
        test::reference::PipelineState expected;
        expected.TakePresent();
        const int32 expectedStatus = test::reference::RunPipeline(expected, g_actionEnabled, angle, tolerance);
        int32 status = 0;
        test::Printed([&] { status = RunActionPipeline(tolerance, angle); });
        EXPECT_EQ(status, expectedStatus);
        EXPECT_SAME_PICTURE(g_workImage, expected.work);
        EXPECT_SAME_PICTURE(g_sourceImage, expected.source);
        EXPECT_SAME_PICTURE(g_maskImage, expected.mask);
        EXPECT_SAME_PICTURE(g_colourStageImage, expected.colourStageImage);
        EXPECT_SAME_PICTURE(g_colourStageMask, expected.colourStageMask);
        EXPECT_EQ(g_outputWidth, expected.output.width);
        EXPECT_EQ(g_outputHeight, expected.output.height);
    }

    static void ExpectMaskIs100(const ImageBuffer& mask) {
        ImageBuffer expected;
        ASSERT_TRUE(expected.Create(101, 90, 1, kDepth8u, 0));
        expected.Fill(100.0);
        EXPECT_SAME_PICTURE(mask, expected);
    }

private:
    test::FreshSession fresh_;
};

TEST_F(Pipeline, DoesWithEveryChoiceOfSlotsWhatThePlainFormDoes) {
    for (int32 bits = 0; bits < 64; ++bits) {
        SCOPED_TRACE("flags " + std::to_string(bits));
        g_actionEnabled = Flags(bits);
        ExpectAsPlain();
        SetOutputGeometry(76, 120);
    }
}

TEST_F(Pipeline, TurnsPictureAndMaskAlike) {
    for (const int32 angle : {90, 180, 270, 5, 359, -90, 360}) {
        for (const int32 bits : {1 << kSlotRotation, 1 << kSlotRotation | 1 << kSlotCrop, 0x2D}) {
            SCOPED_TRACE("flags " + std::to_string(bits) + ", angle " + std::to_string(angle));
            g_faceRecord = {50, 40, 40, 30};
            test::MakeRandomPicture(g_maskImage, 101, 90, 1, 3);
            g_actionEnabled = Flags(bits);
            ExpectAsPlain(angle);
            SetOutputGeometry(76, 120);
        }
    }
    test::MakeRandomPicture(g_maskImage, 101, 90, 1, 3);
    g_actionEnabled = Flags(1 << kSlotRotation);
    ASSERT_EQ(RunActionPipeline(-1, 7), kSuccess);
    EXPECT_EQ(g_maskImage.width, g_workImage.width);
    EXPECT_EQ(g_maskImage.height, g_workImage.height);
    EXPECT_EQ(g_colourStageImage.width, 101) << "the snapshots are those before the turn";
    EXPECT_EQ(g_colourStageMask.width, 101);
}

TEST_F(Pipeline, TakesTheBackgroundAwayByTheToleranceGiven) {
    const test::Portrait portrait{.noise = 12};
    test::DrawPortrait(portrait, g_sourceImage);
    g_faceRecord = test::FaceOf(portrait);
    for (const int32 bits : {1 << kSlotBackground, 0x2F}) {
        for (const int32 tolerance : {5, 12, 40, 99}) {
            SCOPED_TRACE("flags " + std::to_string(bits) + ", tolerance " + std::to_string(tolerance));
            g_actionEnabled = Flags(bits);
            ExpectAsPlain(3, tolerance);
            SetOutputGeometry(76, 120);
        }
    }
}

TEST_F(Pipeline, MinusOneIsAToleranceOf50) {
    const test::Portrait portrait{.noise = 40};
    test::DrawPortrait(portrait, g_sourceImage);
    g_faceRecord = test::FaceOf(portrait);
    g_actionEnabled = Flags(1 << kSlotBackground);
    ImageBuffer results[3];
    const int32 tolerances[3] = {-1, 50, 5};
    for (int32 i = 0; i < 3; ++i) {
        ASSERT_EQ(RunActionPipeline(tolerances[i], 0), kSuccess);
        results[i].CopyFrom(g_workImage);
    }
    EXPECT_SAME_PICTURE(results[0], results[1]);
    EXPECT_FALSE(test::SamePicture("", "", results[0], results[2])) << "the tolerance must matter";
}

TEST_F(Pipeline, AToleranceUnderFivePassesThePictureOnWithAMaskOf154) {
    g_actionEnabled = Flags(1 << kSlotBackground);
    for (const int32 tolerance : {4, 0, -2, -1000}) {
        EXPECT_EQ(RunActionPipeline(tolerance, 0), kSuccess);
        EXPECT_SAME_PICTURE(g_workImage, g_sourceImage);
        ImageBuffer mask;
        ASSERT_TRUE(mask.Create(101, 90, 1, kDepth8u, 0));
        mask.Fill(154.0);
        EXPECT_SAME_PICTURE(g_maskImage, mask);
        EXPECT_SAME_PICTURE(g_colourStageMask, mask);
    }
}

TEST_F(Pipeline, TheSizeAsHandedInReachesTheSmoothingOfTheMask) {
    const test::Portrait portrait{.noise = 12};
    test::DrawPortrait(portrait, g_sourceImage);
    g_faceRecord = test::FaceOf(portrait);
    g_actionEnabled = Flags(1 << kSlotBackground);
    ImageBuffer small, large;
    ASSERT_EQ(RunActionPipeline(40, 0), kSuccess);
    small.CopyFrom(g_maskImage);
    g_originalWidth = 1600;
    g_originalHeight = 1200;
    ExpectAsPlain(0, 40);
    large.CopyFrom(g_maskImage);
    EXPECT_FALSE(test::SamePicture("", "", small, large));
}

TEST_F(Pipeline, ABackgroundWithoutAFaceEndsIt) {
    g_faceRecord = {};
    g_actionEnabled = Flags(0x2E);
    EXPECT_EQ(RunActionPipeline(-1, -1), kNoFace);
    EXPECT_SAME_PICTURE(g_workImage, g_sourceImage);
    EXPECT_EQ(g_colourStageImage.width, 6) << "the snapshot of an earlier run must stay";
    ExpectMaskIs100(g_maskImage);
}

TEST_F(Pipeline, TheSnapshotsAreThoseAfterTheColourAndBeforeTheTurn) {
    g_actionEnabled = Flags(0x0E);
    test::Printed([&] { ASSERT_EQ(RunActionPipeline(40, 30), kSuccess); });
    ImageBuffer picture, mask;
    picture.CopyFrom(g_colourStageImage);
    mask.CopyFrom(g_colourStageMask);
    g_actionEnabled = Flags(0x06);
    test::Printed([&] { ASSERT_EQ(RunActionPipeline(40, 30), kSuccess); });
    EXPECT_SAME_PICTURE(picture, g_workImage);
    EXPECT_SAME_PICTURE(mask, g_maskImage);
}

TEST_F(Pipeline, TellsAnObserverOfEachSlotThatRanAndOfNoOther) {
    g_actionEnabled = Flags(0x2D);
    std::vector<int32> slots;
    std::vector<ImageSize> sizes;
    const auto observe = [&](int32 slot, const ImageBuffer& picture) {
        slots.push_back(slot);
        sizes.push_back(picture.Size());
        EXPECT_NE(picture.data, nullptr);
    };
    ASSERT_EQ(RunActionPipeline(50, 90, Snapshots::taken, observe), kSuccess);
    EXPECT_EQ(slots, (std::vector<int32>{kSlotCrop, kSlotColour, kSlotRotation, kSlotOutputScaling}));
    ASSERT_EQ(sizes.size(), 4U);
    EXPECT_EQ(sizes[2].width, sizes[1].height) << "each picture is the one after its slot";
    EXPECT_EQ(sizes[3].width, g_workImage.width);
    EXPECT_EQ(sizes[3].height, g_workImage.height);

    slots.clear();
    g_actionEnabled = Flags(0x3D);
    EXPECT_EQ(RunActionPipeline(50, 90, Snapshots::taken, observe), kBadCall);
    EXPECT_EQ(slots, (std::vector<int32>{kSlotCrop, kSlotColour, kSlotRotation})) << "a slot that fails is not told";
}

TEST_F(Pipeline, RepeatsTheLastTurnWhenNoneIsGiven) {
    g_actionEnabled = Flags(1 << kSlotRotation);
    ASSERT_EQ(RunActionPipeline(-1, 90), kSuccess);
    ASSERT_EQ(RunActionPipeline(-1, -1), kSuccess);
    EXPECT_EQ(g_workImage.width, 90);
    EXPECT_EQ(g_workImage.height, 101);
}

TEST_F(Pipeline, ATurnForgetsAMaskWithoutStorage) {
    g_maskImage.Release(); // the shape stays
    g_actionEnabled = Flags(1 << kSlotRotation);
    EXPECT_EQ(RunActionPipeline(-1, 90), kSuccess);
    EXPECT_EQ(g_maskImage.width, 0);
    EXPECT_EQ(g_maskImage.channels, 0);
}

TEST_F(Pipeline, ATurnSucceedsByThePictureInHandWhateverTheRunBeforeLeft) {
    g_workImage.Reset();
    g_actionEnabled = Flags(1 << kSlotRotation);
    EXPECT_EQ(RunActionPipeline(-1, 90), kSuccess);
    EXPECT_EQ(g_workImage.width, 90);

    g_sourceImage.Reset();
    EXPECT_EQ(RunActionPipeline(-1, 90), kNoPicture);
    EXPECT_EQ(g_workImage.data, nullptr);
}

TEST_F(Pipeline, ATurnThatLeavesNothingEndsInABlankSheet) {
    test::MakeRandomPicture(g_sourceImage, 200, 200, 3, 1);
    test::MakeRandomPicture(g_maskImage, 200, 200, 1, 1);
    g_actionEnabled = Flags(1 << kSlotRotation);
    const std::string told = test::Printed([] {
        EXPECT_EQ(RunActionPipeline(-1, 45), kSuccess);
        g_actionEnabled[kSlotOutputScaling] = 1;
        EXPECT_EQ(g_workImage.data, nullptr);
        EXPECT_EQ(RunActionPipeline(-1, 45), kStepFailed);
    });
    EXPECT_EQ(told, "Assertion Failed -8 \nAssertion Failed -8 \nAssertion Failed -8 \nAssertion Failed -6 \n")
        << "picture and mask, then the picture alone, since the mask has gone, and the scaling";
    EXPECT_EQ(g_maskImage.data, nullptr);
    ASSERT_EQ(g_workImage.width, 76);
    ASSERT_EQ(g_workImage.height, 120);
    for (int32 i = 0; i < g_workImage.Step() * 120; ++i) ASSERT_EQ(g_workImage.data[i], g_fillLevel) << "byte " << i;
}

TEST_F(Pipeline, DoesTheSameWithoutAFace) {
    for (int32 bits = 0; bits < 64; ++bits) {
        SCOPED_TRACE("flags " + std::to_string(bits));
        g_faceRecord = {};
        g_actionEnabled = Flags(bits);
        test::MakeRandomPicture(g_colourStageImage, 6, 5, 3, 4);
        ExpectAsPlain();
        SetOutputGeometry(76, 120);
    }
}

TEST_F(Pipeline, DoesTheSameWithACropWithoutPixels) {
    for (int32 bits = 1; bits < 64; bits += 2) { // all choices with the crop
        SCOPED_TRACE("flags " + std::to_string(bits));
        g_faceRecord = {50, 40, 1, 1};
        g_actionEnabled = Flags(bits);
        test::MakeRandomPicture(g_colourStageImage, 6, 5, 3, 4);
        ExpectAsPlain();
        SetOutputGeometry(76, 120);
    }
}

TEST_F(Pipeline, ABackgroundRemovalMakesAMaskWhereThereIsNone) {
    g_maskImage.Reset();
    g_actionEnabled = Flags(0x0E);
    ExpectAsPlain(90);
    EXPECT_EQ(g_maskImage.width, 90);
    EXPECT_EQ(g_maskImage.height, 101);
    EXPECT_EQ(g_colourStageMask.width, 101);
}

TEST_F(Pipeline, DoesTheSameWithoutAMaskAndWithoutASource) {
    for (int32 bits = 0; bits < 64; ++bits) {
        SCOPED_TRACE("flags " + std::to_string(bits));
        g_actionEnabled = Flags(bits);
        g_maskImage.Reset();
        ExpectAsPlain(0, 4); // a tolerance that makes no mask either
        EXPECT_EQ(g_maskImage.data, nullptr);
        SetOutputGeometry(76, 120);
    }
    g_sourceImage.Reset();
    g_actionEnabled = Flags(0);
    EXPECT_EQ(RunActionPipeline(-1, -1), kSuccess);
    EXPECT_EQ(g_workImage.data, nullptr);
    EXPECT_EQ(g_colourStageImage.data, nullptr);
}

TEST_F(Pipeline, WithAllFlagsClearCopiesTheSourceAndTakesTheSnapshots) {
    ImageBuffer source;
    source.CopyFrom(g_sourceImage);
    EXPECT_EQ(RunActionPipeline(-1, -1), kSuccess);
    EXPECT_SAME_PICTURE(g_workImage, source);
    EXPECT_SAME_PICTURE(g_colourStageImage, source);
    ExpectMaskIs100(g_colourStageMask);
    EXPECT_SAME_PICTURE(g_sourceImage, source);
    EXPECT_NE(g_workImage.data, g_sourceImage.data) << "pictures never share pixels";
    EXPECT_NE(g_colourStageImage.data, g_workImage.data);
}

TEST_F(Pipeline, MinusOneKeepsTheLastRotation) {
    EXPECT_EQ(RunActionPipeline(-1, 33), kSuccess);
    EXPECT_EQ(g_rotationAngle, 33);
    EXPECT_EQ(RunActionPipeline(-1, -1), kSuccess);
    EXPECT_EQ(g_rotationAngle, 33);
}

TEST_F(Pipeline, AnyOtherRotationIsTakenAtOnceEvenWithItsSlotOff) {
    for (const int32 angle : {0, 1, 359, -2, 720}) {
        EXPECT_EQ(RunActionPipeline(40, angle), kSuccess);
        EXPECT_EQ(g_rotationAngle, angle);
    }
    g_faceRecord = {};
    g_actionEnabled = Flags(1 << kSlotCrop);
    EXPECT_EQ(RunActionPipeline(40, 5), kNoFace);
    EXPECT_EQ(g_rotationAngle, 5) << "also when the first slot fails";
}

TEST_F(Pipeline, SlotFourEndsItAndLeavesTheSource) {
    g_actionEnabled = Flags(1 << kSlotNone);
    EXPECT_EQ(RunActionPipeline(-1, -1), kBadCall);
    EXPECT_SAME_PICTURE(g_workImage, g_sourceImage);
    EXPECT_SAME_PICTURE(g_colourStageImage, g_sourceImage);
}

TEST_F(Pipeline, AllSlotsTogetherEndBeforeTheScaling) {
    g_actionEnabled = Flags(0x3F);
    test::Printed([] { EXPECT_EQ(RunActionPipeline(-1, -1), kBadCall); });
    ImageBuffer crop;
    ASSERT_EQ(test::reference::FaceCrop(g_sourceImage, crop), kSuccess);
    EXPECT_EQ(g_workImage.width, crop.width);
    EXPECT_EQ(g_workImage.height, crop.height);
    EXPECT_EQ(g_outputWidth, 76);
    EXPECT_EQ(g_outputHeight, 120);
}

TEST_F(Pipeline, ACropWithoutAFaceEndsItBeforeTheSnapshots) {
    g_faceRecord = {};
    g_actionEnabled = Flags(0x3F);
    EXPECT_EQ(RunActionPipeline(-1, -1), kNoFace);
    EXPECT_SAME_PICTURE(g_workImage, g_sourceImage);
    EXPECT_EQ(g_colourStageImage.width, 6) << "the snapshot of an earlier run must stay";
    EXPECT_EQ(g_colourStageMask.width, 6);
    EXPECT_EQ(g_outputWidth, 76);
}

TEST_F(Pipeline, ResetsTheMaskOfTheLastRunTo100) {
    for (const int32 bits : {0, 1 << kSlotCrop, 1 << kSlotNone}) {
        test::MakeRandomPicture(g_maskImage, 101, 90, 1, 3);
        g_actionEnabled = Flags(bits);
        RunActionPipeline(-1, -1);
        ExpectMaskIs100(g_maskImage);
    }
}

TEST_F(Pipeline, MakesNoMaskOfItsOwn) {
    g_maskImage.Reset();
    EXPECT_EQ(RunActionPipeline(-1, -1), kSuccess);
    EXPECT_EQ(g_maskImage.data, nullptr);
    EXPECT_EQ(g_colourStageMask.data, nullptr);
}

TEST_F(Pipeline, StartsFromTheSourceEveryTime) {
    g_actionEnabled = Flags(1 << kSlotCrop);
    ASSERT_EQ(RunActionPipeline(-1, -1), kSuccess);
    ImageBuffer first;
    first.CopyFrom(g_workImage);
    ASSERT_EQ(RunActionPipeline(-1, -1), kSuccess);
    EXPECT_SAME_PICTURE(g_workImage, first);
}

TEST_F(Pipeline, AnyNonzeroFlagIsOn) {
    g_actionEnabled[kSlotNone] = 0x80;
    EXPECT_EQ(RunActionPipeline(-1, -1), kBadCall);
}

TEST_F(Pipeline, OutOfMemoryShowsAsAResultOrAsAWorkPictureWithoutPixels) {
    g_actionEnabled = Flags(1 << kSlotCrop | 1 << kSlotOutputScaling);
    ASSERT_EQ(RunActionPipeline(-1, -1), kSuccess);
    ImageBuffer good;
    good.CopyFrom(g_workImage);
    ::testing::internal::CaptureStdout(); // the resize says so each time
    int32 allowed = 0;
    for (bool done = false; !done && allowed < 100; ++allowed) {
        SetOutputGeometry(76, 120);
        int32 status;
        {
            const test::HeapLimit limit(allowed);
            status = RunActionPipeline(-1, -1);
        }
        done = status == kSuccess;
        if (done) {
            EXPECT_SAME_PICTURE(g_workImage, good);
        } else {
            EXPECT_TRUE(status == kOutOfMemory || status == kStepFailed) << status << " with " << allowed;
            EXPECT_EQ(g_workImage.data, nullptr) << "with " << allowed << " allocations";
        }
    }
    std::fflush(stdout);
    ::testing::internal::GetCapturedStdout();
    EXPECT_GT(allowed, 2);
    EXPECT_LT(allowed, 100);
}

} // namespace
} // namespace orvane
