// The face between source, work and preview pixels.
#include "detect/candidates.h"
#include "image/packed_dib.h"
#include "tests/session/session_fixture.h"

namespace orvane {
namespace {

class FacePlacing : public test::SessionTest {
protected:
    /// A work picture of 800 by 600 under a preview of 450 by 337.
    void PrepareWork() {
        ASSERT_TRUE(session.m_resultBitmap.Create(800, 600));
        session.m_previewWidth = 450;
        session.m_previewHeight = 337;
    }
    void Mark(int32 left, int32 top, int32 right, int32 bottom) {
        session.m_anchorLeft = session.m_markLeft = left;
        session.m_anchorTop = session.m_markTop = top;
        session.m_anchorRight = session.m_markRight = right;
        session.m_anchorBottom = session.m_markBottom = bottom;
    }
    static void ExpectRecord(const FaceRecord& expected) {
        EXPECT_EQ(g_faceRecord.centreX, expected.centreX);
        EXPECT_EQ(g_faceRecord.centreY, expected.centreY);
        EXPECT_EQ(g_faceRecord.faceWidth, expected.faceWidth);
        EXPECT_EQ(g_faceRecord.faceHeight, expected.faceHeight);
    }
};

// 450 by 337 into 800 by 600: the factor is 16/9, the lesser of 800/450 and 600/337. So 100 becomes 178,
// 50 becomes 89, 200 becomes 356 and 180 becomes 320.
TEST_F(FacePlacing, MarksOfTheOperatorBecomeWorkPixels) {
    PrepareWork();
    Mark(100, 50, 200, 180);
    EXPECT_EQ(session.DetectAndPlaceFace(false), kSuccess);
    ExpectRecord({178 + 89, 600 - (89 + 115), 178, 231});
    EXPECT_EQ(g_sourceImage.width, 800) << "the record belongs to the work picture";
    EXPECT_EQ(g_sourceImage.height, 600);
    EXPECT_EQ(session.m_markLeft, 100) << "the marks stay in preview pixels";
    EXPECT_EQ(session.m_markTop, 50);
    EXPECT_EQ(session.m_markRight, 200);
    EXPECT_EQ(session.m_markBottom, 180);
}

TEST_F(FacePlacing, MarksMayBeDrawnFromAnyCorner) {
    PrepareWork();
    for (const ImageRect& corners : {ImageRect{200, 50, 100, 180}, {100, 180, 200, 50}, {200, 180, 100, 50}}) {
        g_faceRecord = {};
        Mark(corners.x, corners.y, corners.width, corners.height);
        EXPECT_EQ(session.DetectAndPlaceFace(false), kSuccess);
        ExpectRecord({267, 396, 178, 231});
    }
}

TEST_F(FacePlacing, MarksAreTakenWithoutAClassifierTooButTheResultTells) {
    PrepareWork();
    Mark(100, 50, 200, 180);
    FreeClassifier(g_classifier);
    g_classifier = {};
    EXPECT_EQ(session.DetectAndPlaceFace(false), kBadCall);
    ExpectRecord({267, 396, 178, 231});
}

TEST_F(FacePlacing, TheDetectorAnswersWhenItIsForcedOrAMarkIsMissing) {
    struct Case {
        const char* what;
        bool force;
        int32 COrvQuickViewDlg::*missing;
    };
    const Case cases[] = {{"forced", true, nullptr},
                          {"no left anchor", false, &COrvQuickViewDlg::m_anchorLeft},
                          {"no right anchor", false, &COrvQuickViewDlg::m_anchorRight},
                          {"no left mark", false, &COrvQuickViewDlg::m_markLeft}};
    for (const Case& c : cases) {
        SCOPED_TRACE(c.what);
        PrepareWork();
        SetSource(test::BlankScene(640, 480));
        Mark(100, 50, 200, 180);
        if (c.missing != nullptr) session.*c.missing = -1;
        EXPECT_EQ(session.DetectAndPlaceFace(c.force), kNoFace) << "the picture is blank";
        ExpectRecord({});
    }
}

TEST_F(FacePlacing, AFoundFaceGoesToAnchorsRecordAndMarksEachInItsOwnPixels) {
    const test::Scene scene = test::FaceScene(640, 480, 250, 180, 120);
    SetSource(scene);
    // What the detector itself says of the picture.
    ASSERT_TRUE(LoadBitmapIntoSource(session.m_sourceBitmap));
    ASSERT_EQ(RunDetection(false), kSuccess);
    int32 x, y, w, h;
    GetFaceRect(&x, &y, &w, &h);
    ASSERT_GT(w, 90);
    ASSERT_LT(w, 150);

    PrepareWork();
    EXPECT_EQ(session.DetectAndPlaceFace(false), kSuccess);
    EXPECT_EQ(session.m_anchorLeft, x);
    EXPECT_EQ(session.m_anchorTop, y);
    EXPECT_EQ(session.m_anchorRight, x + w);
    EXPECT_EQ(session.m_anchorBottom, y + h);

    // 640 by 480 into 800 by 600: five quarters, rounded to nearest.
    const auto work = [](int32 c) { return (5 * c + 2) / 4; };
    const int32 left = work(x), top = work(y), right = work(x + w), bottom = work(y + h);
    ExpectRecord({(2 * left + right - left) / 2, 600 - (2 * top + bottom - top) / 2, right - left, bottom - top});
    EXPECT_EQ(g_sourceImage.width, 800);
    EXPECT_EQ(g_sourceImage.height, 600);

    // 800 by 600 into 450 by 337: 337/600 is the lesser factor. Top holds the greater y.
    const auto preview = [](int32 c) { return (337 * c + 300) / 600; };
    EXPECT_EQ(session.m_markLeft, preview(left));
    EXPECT_EQ(session.m_markRight, preview(right));
    EXPECT_EQ(session.m_markTop, preview(bottom));
    EXPECT_EQ(session.m_markBottom, preview(top));
    EXPECT_GT(session.m_markTop, session.m_markBottom);
}

TEST_F(FacePlacing, WithoutAFaceNoAnchorStands) {
    PrepareWork();
    SetSource(test::BlankScene(640, 480));
    g_faceRecord = {5, 6, 7, 8};
    session.m_stage = 2;
    EXPECT_EQ(session.DetectAndPlaceFace(true), kNoFace);
    ExpectNoAnchors();
    // The wiped marks are converted to preview pixels like any others: -1 by 337/600 rounds to 0.
    for (const int32 mark : {session.m_markLeft, session.m_markTop, session.m_markRight, session.m_markBottom}) {
        EXPECT_EQ(mark, 0);
    }
    ExpectRecord({});
    EXPECT_EQ(session.m_stage, 1);
    EXPECT_EQ(g_sourceImage.width, 800) << "the work picture is loaded all the same";
}

TEST_F(FacePlacing, AFailedDetectionClearsAndLeavesTheRecord) {
    PrepareWork();
    SetSource(test::BlankScene(640, 480));
    g_faceRecord = {5, 6, 7, 8};
    g_detectorParams->loadStatus = kNoClassifier;
    EXPECT_EQ(session.DetectAndPlaceFace(true), kNoClassifier);
    ExpectNoAnchors();
    ExpectRecord({5, 6, 7, 8});
    EXPECT_EQ(g_sourceImage.width, 800);
}

TEST_F(FacePlacing, WithoutASourceThereIsNoPicture) {
    PrepareWork();
    EXPECT_EQ(session.DetectAndPlaceFace(true), kNoPicture);
}

TEST_F(FacePlacing, DetectFaceRectStoresTheCornersTopDown) {
    SetSource(test::FaceScene(640, 480, 250, 180, 120));
    ASSERT_TRUE(LoadBitmapIntoSource(session.m_sourceBitmap));
    int32 corners[4] = {-7, -7, -7, -7};
    EXPECT_EQ(session.DetectFaceRect(false, corners), kSuccess);
    int32 x, y, w, h;
    GetFaceRect(&x, &y, &w, &h);
    const int32 expected[4] = {x, y, x + w, y + h};
    const int32 anchors[4] = {session.m_anchorLeft, session.m_anchorTop, session.m_anchorRight, session.m_anchorBottom};
    for (int32 i = 0; i < 4; ++i) {
        EXPECT_EQ(corners[i], expected[i]) << i;
        EXPECT_EQ(anchors[i], expected[i]) << i;
    }
    // The face was drawn on rows 180 to 299 from the bottom: 180 to 299 from the top as well.
    EXPECT_NEAR(x, 250, 25);
    EXPECT_NEAR(y, 180, 25);
}

TEST_F(FacePlacing, DetectFaceRectStoresFourZerosWithoutAFace) {
    SetSource(test::BlankScene(320, 240));
    ASSERT_TRUE(LoadBitmapIntoSource(session.m_sourceBitmap));
    int32 corners[4] = {-7, -7, -7, -7};
    EXPECT_EQ(session.DetectFaceRect(true, corners), kNoFace);
    for (const int32 corner : corners) EXPECT_EQ(corner, 0);
    EXPECT_EQ(session.m_anchorLeft, 0);
    EXPECT_EQ(session.m_anchorBottom, 0);
}

TEST_F(FacePlacing, DetectFaceRectStoresNothingOnAFailure) {
    struct Case {
        int32 loadStatus, width, height, expected;
    };
    for (const Case& c : {Case{kNoClassifier, 320, 240, kNoClassifier}, Case{kSuccess, 19, 40, kBadCall},
                          Case{kSuccess, 640, 20, kBadCall}}) {
        SetSource(test::BlankScene(c.width, c.height));
        ASSERT_TRUE(LoadBitmapIntoSource(session.m_sourceBitmap));
        g_detectorParams->loadStatus = c.loadStatus;
        session.m_anchorLeft = 11;
        session.m_anchorTop = 12;
        session.m_anchorRight = 13;
        session.m_anchorBottom = 14;
        int32 corners[4] = {1, 2, 3, 4};
        EXPECT_EQ(session.DetectFaceRect(false, corners), c.expected);
        for (int32 i = 0; i < 4; ++i) EXPECT_EQ(corners[i], i + 1);
        EXPECT_EQ(session.m_anchorLeft, 11);
        EXPECT_EQ(session.m_anchorTop, 12);
        EXPECT_EQ(session.m_anchorRight, 13);
        EXPECT_EQ(session.m_anchorBottom, 14);
    }
}

} // namespace
} // namespace orvane
