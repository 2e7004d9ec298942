// Whole sessions on good pictures, from outside: results, output sizes and the form of the output.
#include "tests/exports/exports_fixture.h"

#include <cstddef>
#include <cstdint>
#include <vector>

namespace orvane {
namespace {

using test::DibHeader;
using test::HostBlock;
using Bytes = std::vector<std::uint8_t>;

class Picture : public test::ExportsTest {
protected:
    Bytes Output() {
        HostBlock output;
        EXPECT_EQ(lib.orv_GetOutputImage(output.Receive()), ORV_OK);
        return output.Bytes();
    }
    void ExpectOutputSize(std::int32_t width, std::int32_t height) {
        const DibHeader header = OutputHeader();
        EXPECT_EQ(header.width, width);
        EXPECT_EQ(header.height, height);
    }
};

/// The share of dark pixels of a packed bitmap, in percent: that of the drawn face in a light picture.
int DarkShare(const Bytes& bytes, const DibHeader& header) {
    const std::int32_t step = (3 * header.width + 3) / 4 * 4;
    int dark = 0;
    for (std::int32_t y = 0; y < header.height; ++y) {
        for (std::int32_t x = 0; x < header.width; ++x) {
            if (bytes[40 + static_cast<std::size_t>(step) * y + 3 * static_cast<std::size_t>(x)] < 128) ++dark;
        }
    }
    return 100 * dark / (header.width * header.height);
}

TEST_F(Picture, WithAFaceGivesAPortraitOfTheRequestedSizeOneSideMayGrow) {
    OpenHidden();
    ASSERT_EQ(lib.orv_SetSizeOutputImage(120, 160), ORV_OK);
    ASSERT_EQ(Detect(test::SmallFaceScene()), ORV_OK);
    const DibHeader header = OutputHeader();
    EXPECT_TRUE(header.width == 120 || header.height == 160) << header.width << " by " << header.height;
    EXPECT_GE(header.width, 120);
    EXPECT_LE(header.width, 126);
    EXPECT_GE(header.height, 160);
    EXPECT_LE(header.height, 166);
}

TEST_F(Picture, TheOutputsHeaderIsComplete) {
    OpenHidden();
    ASSERT_EQ(lib.orv_EnableAction(ORV_CROP, 0), ORV_OK);
    ASSERT_EQ(Detect(test::FaceScene(161, 120, 60, 40, 40)), ORV_OK);
    HostBlock output;
    ASSERT_EQ(lib.orv_GetOutputImage(output.Receive()), ORV_OK);
    const DibHeader header = output.Header();
    EXPECT_EQ(header.size, 40u);
    EXPECT_EQ(header.width, 161);
    EXPECT_EQ(header.height, 120);
    EXPECT_EQ(header.planes, 1);
    EXPECT_EQ(header.bitCount, 24);
    EXPECT_EQ(header.compression, 0u);
    EXPECT_EQ(header.sizeImage, 484u * 120u);
    EXPECT_EQ(header.xPelsPerMetre, 0);
    EXPECT_EQ(header.yPelsPerMetre, 0);
    EXPECT_EQ(header.coloursUsed, 0u);
    EXPECT_EQ(header.coloursImportant, 0u);
    EXPECT_GE(output.Bytes().size(), std::size_t{40} + header.sizeImage);
    EXPECT_EQ(lib.orv_GetBitDepth(output.Handle()), 24);
}

TEST_F(Picture, TheOutputCanBeTakenAgainAndAgain) {
    OpenHidden();
    ASSERT_EQ(Detect(test::SmallFaceScene()), ORV_OK);
    HostBlock first, second;
    ASSERT_EQ(lib.orv_GetOutputImage(first.Receive()), ORV_OK);
    ASSERT_EQ(lib.orv_GetOutputImage(second.Receive()), ORV_OK);
    EXPECT_NE(first.Handle(), second.Handle());
    EXPECT_EQ(first.Bytes(), second.Bytes());
    EXPECT_EQ(lib.orv_GetOutputImage(nullptr), ORV_NO_SESSION);
}

TEST_F(Picture, AnOutputCanBeHandedInAgain) {
    OpenHidden();
    ASSERT_EQ(lib.orv_EnableAction(ORV_CROP, 0), ORV_OK);
    ASSERT_EQ(Detect(test::SmallFaceScene()), ORV_OK);
    HostBlock output;
    ASSERT_EQ(lib.orv_GetOutputImage(output.Receive()), ORV_OK);
    EXPECT_EQ(lib.orv_DetectFacePicture(output.Handle()), ORV_OK) << "the face is still there";
    ExpectOutputSize(160, 120);
}

TEST_F(Picture, TheHostsBlockStaysAsItIs) {
    OpenHidden();
    const HostBlock block(test::SmallFaceScene());
    const Bytes before = block.Bytes();
    ASSERT_EQ(lib.orv_DetectFacePicture(block.Handle()), ORV_OK);
    EXPECT_EQ(block.Bytes(), before);
    EXPECT_EQ(lib.orv_DetectFacePicture(block.Handle()), ORV_OK) << "and can be handed in again";
}

TEST_F(Picture, TheRowPaddingOfTheOutputIsZeroWhateverCameIn) {
    OpenHidden();
    ASSERT_EQ(lib.orv_EnableAction(ORV_CROP, 0), ORV_OK);
    test::Scene scene = test::FaceScene(161, 120, 60, 40, 40);
    for (int32 y = 0; y < scene.height; ++y) scene.Pixel(160, y)[3] = 0xCC; // the first padding byte
    ASSERT_EQ(Detect(scene), ORV_OK);
    const Bytes output = Output();
    ASSERT_GE(output.size(), 40u + 484u * 120u);
    for (std::size_t y = 0; y < 120; ++y) ASSERT_EQ(output[40 + 484 * y + 483], 0) << "row " << y;
}

TEST_F(Picture, WithoutAFaceTheResultIs10HiddenOrVisible) {
    OpenHidden();
    for (const int32_t visible : {0, 1, 0}) {
        ASSERT_EQ(lib.orv_SetVisibleMode(visible), ORV_OK);
        EXPECT_EQ(Detect(test::BlankScene(160, 120)), ORV_NO_FACE);
        ExpectOutputSize(640, 480); // the work picture is there to be marked
        EXPECT_EQ(Detect(test::UpsideDown(test::SmallFaceScene())), ORV_NO_FACE);
    }
}

TEST_F(Picture, HiddenAndVisibleSessionsGiveTheSamePortraitWhereNoWindowOpens) {
    OpenHidden();
    ASSERT_EQ(Detect(test::SmallFaceScene()), ORV_OK);
    const Bytes hidden = Output();
    ASSERT_EQ(lib.orv_SetVisibleMode(1), ORV_OK);
    ASSERT_EQ(Detect(test::SmallFaceScene()), ORV_OK);
    EXPECT_EQ(Output(), hidden);
}

TEST_F(Picture, WithCropOffTheOutputHasTheSourcesSizeWhateverWasRequested) {
    OpenHidden();
    ASSERT_EQ(lib.orv_EnableAction(ORV_CROP, 0), ORV_OK);
    ASSERT_EQ(lib.orv_SetSizeOutputImage(480, 860), ORV_OK);
    for (const test::Scene& scene :
         {test::SmallFaceScene(), test::FaceScene(163, 121, 60, 40, 40), test::FaceScene(430, 401, 150, 150, 100)}) {
        ASSERT_EQ(Detect(scene), ORV_OK);
        ExpectOutputSize(scene.width, scene.height);
    }
}

TEST_F(Picture, ARequestUnder75LeavesTheGeometryOfBefore) {
    OpenHidden();
    EXPECT_EQ(lib.orv_SetSizeOutputImage(74, 500), ORV_OK);
    ASSERT_EQ(Detect(test::SmallFaceScene()), ORV_OK);
    // What stood before is the size of the work picture, 640 by 480.
    const DibHeader header = OutputHeader();
    EXPECT_TRUE(header.width == 640 || header.height == 480) << header.width << " by " << header.height;
}

TEST_F(Picture, ARequestedWidthIsTakenInFours) {
    OpenHidden();
    ASSERT_EQ(lib.orv_SetFaceCropRatio(0.5F), ORV_OK);
    Bytes expected;
    for (const std::int32_t width : {480, 481, 482, 483}) {
        EXPECT_EQ(lib.orv_SetSizeOutputImage(width, 500), ORV_OK);
        ASSERT_EQ(Detect(test::SmallFaceScene()), ORV_OK);
        const DibHeader header = OutputHeader();
        EXPECT_TRUE(header.width == 480 || header.height == 500) << header.width << " by " << header.height;
        if (expected.empty()) expected = Output();
        EXPECT_EQ(Output(), expected) << width << " gives what 480 gives";
    }
}

TEST_F(Picture, AGreaterCropRatioTakesInMoreOfTheSurroundings) {
    OpenHidden();
    ASSERT_EQ(lib.orv_SetSizeOutputImage(120, 120), ORV_OK);
    int share = 101;
    for (const float ratio : {0.3F, 0.5F, 0.75F, 0.9F}) {
        ASSERT_EQ(lib.orv_SetFaceCropRatio(ratio), ORV_OK);
        ASSERT_EQ(Detect(test::SmallFaceScene()), ORV_OK);
        const int now = DarkShare(Output(), OutputHeader());
        EXPECT_LT(now, share) << "ratio " << ratio;
        share = now;
    }
    EXPECT_GT(share, 5) << "the face is in the crop";
}

TEST_F(Picture, TheRatioOfOneThirdCropsTheFaceItself) {
    OpenHidden();
    ASSERT_EQ(lib.orv_SetSizeOutputImage(120, 120), ORV_OK);
    ASSERT_EQ(lib.orv_SetFaceCropRatio(1.0F / 3.0F), ORV_OK);
    ASSERT_EQ(Detect(test::SmallFaceScene()), ORV_OK);
    // Three quarters of the drawn face are dark.
    EXPECT_NEAR(DarkShare(Output(), OutputHeader()), 75, 15);
}

TEST_F(Picture, OnlyTheLowByteOfABooleanCounts) {
    OpenHidden();
    EXPECT_EQ(lib.orv_EnableAction(ORV_CROP, 0x100), ORV_OK); // off
    ASSERT_EQ(Detect(test::SmallFaceScene()), ORV_OK);
    ExpectOutputSize(160, 120);
    EXPECT_EQ(lib.orv_EnableAction(ORV_CROP, 0x1280), ORV_OK); // on
    ASSERT_EQ(Detect(test::SmallFaceScene()), ORV_OK);
    EXPECT_NE(OutputHeader().width, 160);
}

TEST_F(Picture, AllActionsTogetherEndBeforeTheScalingAndTheHostSeesSuccess) {
    OpenHidden();
    ASSERT_EQ(lib.orv_SetSizeOutputImage(120, 120), ORV_OK);
    ASSERT_EQ(lib.orv_SetFaceCropRatio(20.0F), ORV_OK); // the whole picture less its first column and row
    ASSERT_EQ(lib.orv_EnableAction(ORV_ALL_ACTIONS, 1), ORV_OK);
    EXPECT_EQ(Detect(test::SmallFaceScene()), ORV_OK);
    ExpectOutputSize(636, 479);
}

TEST_F(Picture, AllActionsCanBeTurnedOffAndOneOnAgain) {
    OpenHidden();
    ASSERT_EQ(lib.orv_EnableAction(ORV_ALL_ACTIONS, 1), ORV_OK);
    ASSERT_EQ(lib.orv_EnableAction(ORV_ALL_ACTIONS, 0), ORV_OK);
    ASSERT_EQ(lib.orv_EnableAction(ORV_CORRECT_COLOUR, 1), ORV_OK);
    ASSERT_EQ(Detect(test::SmallFaceScene()), ORV_OK);
    ExpectOutputSize(160, 120); // neither the crop nor the slot without action is on
}

TEST_F(Picture, TheScalingsFlagIsNotTheHostsToKeep) {
    OpenHidden();
    EXPECT_EQ(lib.orv_EnableAction(ORV_SCALE_OUTPUT, 0), ORV_OK);
    ASSERT_EQ(lib.orv_EnableAction(ORV_CROP, 0), ORV_OK);
    ASSERT_EQ(Detect(test::SmallFaceScene()), ORV_OK);
    ExpectOutputSize(160, 120); // and not the work picture's 640 by 480
    EXPECT_EQ(lib.orv_EnableAction(ORV_SCALE_OUTPUT, 1), ORV_OK);
    ASSERT_EQ(Detect(test::SmallFaceScene()), ORV_OK);
    ExpectOutputSize(160, 120);
}

TEST_F(Picture, AHeaderThatNamesNoPixelBytesGivesABlackPicture) {
    OpenHidden();
    DibHeader header = test::HeaderFor(160, 120);
    header.sizeImage = 0;
    EXPECT_EQ(lib.orv_DetectFacePicture(HostBlock(header, {}).Handle()), ORV_NO_FACE);
    const Bytes output = Output(); // the work picture
    ASSERT_GE(output.size(), 40u + 1920u * 480u);
    for (std::size_t i = 40; i < 40 + std::size_t{1920} * 480; ++i) ASSERT_EQ(output[i], 0) << "byte " << i;
}

TEST_F(Picture, AHeaderThatNamesSomePixelBytesLeavesTheRestBlack) {
    OpenHidden();
    test::Scene scene = test::BlankScene(160, 120, 200);
    DibHeader header = test::HeaderFor(160, 120);
    header.sizeImage = 480 * 60; // the lower half
    EXPECT_EQ(lib.orv_DetectFacePicture(HostBlock(header, scene.rows).Handle()), ORV_NO_FACE);
    const Bytes output = Output();
    ASSERT_GE(output.size(), 40u + 1920u * 480u);
    for (std::size_t x = 0; x < 1920; ++x) {
        ASSERT_EQ(output[40 + x], 200) << "bottom row";
        ASSERT_EQ(output[40 + 1920 * 200 + x], 200);
        ASSERT_EQ(output[40 + 1920 * 280 + x], 0);
        ASSERT_EQ(output[40 + 1920 * 479 + x], 0) << "top row";
    }
}

TEST_F(Picture, BytesBehindThePixelsPlayNoPart) {
    OpenHidden();
    ASSERT_EQ(Detect(test::SmallFaceScene()), ORV_OK);
    const Bytes expected = Output();
    test::Scene scene = test::SmallFaceScene();
    scene.rows.resize(scene.rows.size() + 1000, 0x55);
    ASSERT_EQ(Detect(scene), ORV_OK);
    EXPECT_EQ(Output(), expected);
}

TEST_F(Picture, EverySessionStandsForItself) {
    OpenHidden();
    ASSERT_EQ(Detect(test::SmallFaceScene()), ORV_OK);
    const Bytes expected = Output();
    Detect(test::BlankScene(300, 200, 90));
    Detect(test::BlankScene(1, 1));
    lib.orv_DetectFaceLive(0);
    lib.orv_DetectFacePicture(nullptr);
    ASSERT_EQ(Detect(test::FaceScene(200, 300, 90, 100, 60)), ORV_OK);
    EXPECT_NE(Output(), expected);
    ASSERT_EQ(Detect(test::SmallFaceScene()), ORV_OK);
    EXPECT_EQ(Output(), expected) << "nothing of the sessions between shows";
}

} // namespace
} // namespace orvane
