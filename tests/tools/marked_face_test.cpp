// A face that is marked by hand on the command line gives the portrait that an operator's two corners give.
#include "tools/orvane/host.h"

#include "actions/action_settings.h"
#include "detect/cascade_detector.h"
#include "detect/classifier_file.h"
#include "detect/scan_observer.h"
#include "orvane/orvane.h"
#include "session/session_state.h"
#include "tests/support/fake_video.h"
#include "tests/support/fake_window.h"
#include "tests/tools/host_fixture.h"

#include <cstring>
#include <gtest/gtest.h>

namespace orvane::tools {
namespace {

constexpr int32 kPreviewSide = 400;

class MarkedFace : public HostFixture {
protected:
    /// What a session with a window gives whose operator clicks two corners on the preview; the settings of the
    /// portrait before hold.
    Picture ByOperator(const Picture& photo, const Options& options, ImagePoint first, ImagePoint second) const {
        test::FakeWindowSystem windows;
        test::FakeVideo video;
        COrvQuickViewDlg session(windows, video);
        session.m_previewMaxWidth = session.m_previewMaxHeight = kPreviewSide;
        session.m_outputWidth = g_dialog->m_outputWidth;
        session.m_outputHeight = g_dialog->m_outputHeight;
        session.m_tolerance = options.tolerance;
        windows.script = [&](test::FakeWindow& window) {
            window.Pump();
            window.Press(first.x, first.y);
            window.Press(second.x, second.y);
            window.Click(kPlainOk);
            window.Pump();
            if (!window.HasEnded()) window.Click(kPlainOk); // the adjustments stay as they are
        };
        orv_Handle block = Packed(photo);
        EXPECT_EQ(session.DetectFacePicture(block), 0);
        orv_BlockFree(block);
        Picture portrait;
        portrait.width = session.m_resultBitmap.Width();
        portrait.height = session.m_resultBitmap.Height();
        portrait.step = PictureStep(portrait.width);
        portrait.pixels = PixelBlock(PictureBytes(portrait.width, portrait.height));
        std::memcpy(portrait.pixels.data(), session.m_resultBitmap.Bits(), portrait.pixels.size());
        return portrait;
    }
};

TEST_F(MarkedFace, GivesThePortraitOfAnOperatorsTwoCorners) {
    const struct {
        int32 width, height, scale; // photo pixels to a pixel of the preview
        Actions actions;
    } cases[] = {{400, 200, 1, {true, false, false, false}},
                 {400, 300, 1, {true, true, true, false}},
                 {800, 400, 2, {true, false, true, false}},
                 {1600, 1200, 4, {true, true, false, false}}};
    for (const auto& c : cases) {
        SCOPED_TRACE(c.width);
        Picture photo = ColourfulPicture(c.width, c.height);
        Options options;
        options.width = 120;
        options.height = 160;
        options.actions = c.actions;
        const ImagePoint first{131, 61};
        const ImagePoint second{230, 147};
        options.face = FaceBox{first.x * c.scale, first.y * c.scale, (second.x - first.x) * c.scale,
                               (second.y - first.y) * c.scale};
        Picture portrait;
        const PhotoReport report = Make(photo, options, &portrait);
        ASSERT_EQ(report.status, 0) << report.error;
        EXPECT_EQ(report.face, options.face);
        const Picture byHand = ByOperator(photo, options, first, second);
        ASSERT_EQ(portrait.width, byHand.width);
        ASSERT_EQ(portrait.height, byHand.height);
        EXPECT_EQ(portrait.pixels, byHand.pixels);
        const Picture other = ByOperator(photo, options, {first.x + 3, first.y}, second);
        EXPECT_NE(portrait.pixels, other.pixels) << "the corners count";
    }
}

TEST_F(MarkedFace, WinsOverTheDetectorsAndTheNextPhotoIsDetectedAgain) {
    const Picture photo = PhotoWithSquare(323, 240, 100, 80);
    Options options;
    Picture detected;
    const PhotoReport found = Make(photo, options, &detected);
    options.face = FaceBox{10, 20, 70, 60};
    Picture marked;
    const PhotoReport report = Make(photo, options, &marked);
    EXPECT_EQ(report.face, options.face);
    EXPECT_NE(marked.pixels, detected.pixels);
    options.face.reset();
    Picture again;
    EXPECT_EQ(Make(photo, options, &again).face, found.face);
    EXPECT_EQ(again.pixels, detected.pixels) << "the marks of the photo before stayed";
}

TEST_F(MarkedFace, MakesAPortraitWhereNoneIsFound) {
    Options options;
    Picture portrait;
    ASSERT_EQ(Make(PhotoWithoutFace(), options, &portrait).status, 10);
    options.face = FaceBox{60, 60, 50, 50};
    const PhotoReport report = Make(PhotoWithoutFace(), options, &portrait);
    EXPECT_EQ(report.status, 0);
    EXPECT_FALSE(portrait.pixels.empty());
}

TEST_F(MarkedFace, WithoutAClassifierIsTheSameFailureAsAnyPortrait) {
    g_detectorParams->loadStatus = kNoClassifier;
    Options options;
    options.face = FaceBox{60, 60, 50, 50};
    Picture portrait;
    EXPECT_EQ(Make(PhotoWithoutFace(), options, &portrait).status, kNoClassifier);
    EXPECT_TRUE(portrait.pixels.empty());
}

/// Faces that lie in two places, of which the detector takes one.
Picture PhotoWithTwoSquares() {
    Picture picture = PhotoWithSquare(480, 300, 40, 150);
    for (int32 row = 60; row < 60 + kSquareSide; ++row) {
        for (int32 column = 300; column < 300 + kSquareSide; ++column) SetPixel(picture, column, row, {200, 200, 200});
    }
    return picture;
}

TEST_F(MarkedFace, AllGroupsOfHitsAreHeardInTheDetectorsOrder) {
    PhotoReport report;
    int32 faces = 0;
    host_.Detect(PhotoWithTwoSquares(), &report, &faces);
    ASSERT_EQ(report.status, 0);
    EXPECT_EQ(faces, 2);
    ASSERT_GE(report.groups.size(), 2U);
    // The face is the mean of its groups; here each has one.
    int32 chosen = 0;
    for (const FaceGroup& group : report.groups) {
        EXPECT_GT(group.hits, 0);
        EXPECT_EQ(group.face > 0, group.hits >= 3) << group.hits;
        if (!group.chosen) continue;
        ++chosen;
        EXPECT_EQ(group.face, faces) << "the last one is taken";
        EXPECT_EQ(group.mean, *report.face);
    }
    EXPECT_EQ(chosen, 1);
    PhotoReport none;
    host_.Detect(PhotoWithoutFace(), &none, &faces);
    EXPECT_EQ(faces, 0);
    EXPECT_TRUE(none.groups.empty());
    EXPECT_EQ(g_scanObserver, nullptr) << "nobody listens any longer";
}

TEST_F(MarkedFace, ListeningToGroupsDoesNotChangeTheFace) {
    PhotoReport report;
    host_.Detect(PhotoWithTwoSquares(), &report);
    Picture portrait;
    EXPECT_EQ(Make(PhotoWithTwoSquares(), Options(), &portrait).face, report.face);
}

} // namespace
} // namespace orvane::tools
