// The library as the tool uses it: what a photo comes to is what any host gets, and every setting
// arrives.
#include "tools/orvane/host.h"

#include "actions/action_settings.h"
#include "detect/cascade_detector.h"
#include "orvane/orvane.h"
#include "session/session_state.h"
#include "tests/support/heap_limit.h"
#include "tests/tools/host_fixture.h"

#include <gtest/gtest.h>

namespace orvane::tools {
namespace {

class HostTest : public HostFixture {
protected:
    Picture photo_ = PhotoWithSquare(323, 240, 100, 80);
};

TEST_F(HostTest, APortraitIsWhatAnyHostGets) {
    ASSERT_EQ(host_.Status(), 0);
    for (const bool crop : {true, false}) {
        Options options;
        options.actions.crop = crop;
        options.width = 122;
        options.height = 160;
        Picture portrait;
        const PhotoReport report = Make(photo_, options, &portrait);
        EXPECT_EQ(report.status, 0);
        EXPECT_EQ(report.error, "");

        orv_SetSizeOutputImage(122, 160);
        orv_EnableAction(ORV_CROP, crop);
        orv_Handle photo = Packed(photo_);
        ASSERT_EQ(orv_DetectFacePicture(photo), 0);
        orv_BlockFree(photo);
        orv_Handle block = nullptr;
        ASSERT_EQ(orv_GetOutputImage(&block), 0);
        const auto* bytes = static_cast<const uint8*>(orv_BlockLock(block));
        ASSERT_EQ(orv_BlockSize(block), sizeof(BitmapHeader) + portrait.pixels.size());
        EXPECT_EQ(std::memcmp(bytes + sizeof(BitmapHeader), portrait.pixels.data(), portrait.pixels.size()), 0);
        orv_BlockFree(block);
    }
}

TEST_F(HostTest, ThePortraitIsTheSessionsOwnOutput) {
    Picture portrait;
    ASSERT_EQ(Make(photo_, Options(), &portrait).status, 0);
    EXPECT_FALSE(portrait.pixels.empty());
    orv_Handle block = nullptr;
    EXPECT_EQ(orv_GetOutputImage(&block), ORV_NO_SESSION) << "it changed hands";
    const Picture copy = portrait;
    Picture next;
    ASSERT_EQ(Make(photo_, Options(), &next).status, 0);
    EXPECT_EQ(next.pixels, copy.pixels);
    EXPECT_EQ(portrait.pixels, copy.pixels) << "the next photo leaves it alone";
}

TEST_F(HostTest, DetectAndPortraitFindTheSameFace) {
    PhotoReport detected;
    host_.Detect(photo_, &detected);
    ASSERT_TRUE(detected.face);
    Picture portrait;
    const PhotoReport made = Make(photo_, Options(), &portrait);
    ASSERT_TRUE(made.face);
    EXPECT_EQ(detected.face->x, made.face->x);
    EXPECT_EQ(detected.face->y, made.face->y);
    EXPECT_EQ(detected.face->width, made.face->width);
    EXPECT_EQ(detected.face->height, made.face->height);
}

TEST_F(HostTest, EverySettingReachesTheLibrary) {
    Options options;
    options.actions = {true, true, true, true};
    options.rotation = 90;
    options.tolerance = 7;
    options.cropRatio = 0.5F;
    options.width = 200;
    options.height = 100;
    Picture portrait;
    EXPECT_EQ(Make(photo_, options, &portrait).status, 0);
    EXPECT_EQ(g_actionEnabled, (ActionFlags{1, 1, 1, 1, 0, 1}));
    EXPECT_EQ(g_rotationAngle, 90);
    EXPECT_EQ(g_dialog->m_tolerance, 7);
    EXPECT_EQ(g_cropRatio, 0.5F);
    EXPECT_EQ(g_dialog->m_outputWidth, 200);
    EXPECT_EQ(g_dialog->m_outputHeight, 100);

    EXPECT_EQ(Make(photo_, Options(), &portrait).status, 0);
    EXPECT_EQ(g_actionEnabled, (ActionFlags{1, 0, 0, 0, 0, 1})) << "flags of the photo before stayed";
    EXPECT_EQ(g_rotationAngle, 0) << "the turn of the photo before stayed";
    EXPECT_EQ(g_dialog->m_tolerance, 40);
}

TEST_F(HostTest, WithoutAFaceThereIsNoPortrait) {
    photo_ = PhotoWithoutFace();
    Picture portrait = BlackPicture(4, 4);
    const PhotoReport report = Make(photo_, Options(), &portrait);
    EXPECT_EQ(report.status, 10);
    EXPECT_FALSE(report.face);
    EXPECT_EQ(report.error, "");
    EXPECT_TRUE(portrait.pixels.empty());
    EXPECT_FALSE(report.milliseconds.crop || report.milliseconds.output) << "stages that did not run";
}

TEST_F(HostTest, ACropThatFailsIsAnErrorAndNotAnUncroppedPortrait) {
    Options options;
    options.cropRatio = 0.001F;
    Picture portrait;
    const PhotoReport report = Make(photo_, options, &portrait);
    EXPECT_EQ(report.error, "a correction failed; a greater --crop-ratio may help");
    EXPECT_TRUE(portrait.pixels.empty());
}

TEST_F(HostTest, ExhaustedMemoryIsAResultAndTheNextPhotoIsDone) {
    Picture portrait;
    for (int allowed = 0; allowed < 12; ++allowed) {
        PhotoReport report;
        {
            const test::HeapLimit limit(allowed);
            report = Make(photo_, Options(), &portrait);
        }
        SCOPED_TRACE(allowed);
        EXPECT_TRUE(report.status == 0 || report.status == -50 || report.status == -40) << *report.status;
        EXPECT_EQ(portrait.pixels.empty(), !report.error.empty());
    }
    EXPECT_EQ(Make(photo_, Options(), &portrait).status, 0);
    EXPECT_FALSE(portrait.pixels.empty());
}

} // namespace
} // namespace orvane::tools
