// What the session keeps of a bitmap's header, and the preview and work sizes that follow from it.
#include "tests/session/session_fixture.h"

namespace orvane {
namespace {

class SessionSizes : public test::SessionTest {
protected:
    void SetHeader(int32 width, int32 height) {
        session.m_bitmapHeader = {};
        session.m_bitmapHeader.biWidth = width;
        session.m_bitmapHeader.biHeight = height;
    }
};

TEST_F(SessionSizes, TheWorkSizeGoesByThePicturesArea) {
    struct Case {
        ImageSize picture, work;
    };
    const Case cases[] = {
        {{640, 480}, {800, 600}},         {{400, 400}, {1600, 1600}}, // exactly 160,000 pixels
        {{401, 400}, {501, 500}},         {{160'000, 1}, {640'000, 4}},
        {{160'001, 1}, {200'001, 1}},                                  // one pixel more
        {{1280, 1024}, {1600, 1280}},                                  // exactly 1,310,720 pixels
        {{1'310'721, 1}, {1'048'577, 1}}, {{1600, 1200}, {1280, 960}}, // exactly 1,920,000 pixels
        {{1600, 1201}, {1120, 841}},      {{2000, 1500}, {1400, 1050}},
        {{4000, 3000}, {2800, 2100}},     {{1, 1}, {4, 4}},
        {{32'767, 1}, {131'068, 4}},      {{32'767, 8'000}, {22'937, 5'600}}, // the area passes 2^27
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(::testing::Message() << c.picture.width << " by " << c.picture.height);
        SetHeader(c.picture.width, c.picture.height);
        EXPECT_EQ(session.ComputeWorkSize(), 0);
        EXPECT_EQ(session.m_workWidth, c.work.width);
        EXPECT_EQ(session.m_workHeight, c.work.height);
    }
}

TEST_F(SessionSizes, ThePreviewFitsItsBoundWithThePicturesProportions) {
    struct Case {
        int32 bound;
        ImageSize picture, preview;
    };
    const Case cases[] = {
        {450, {640, 480}, {450, 337}}, {450, {480, 640}, {337, 450}}, {450, {500, 500}, {450, 450}},
        {400, {640, 480}, {400, 300}}, {400, {600, 800}, {300, 400}}, {400, {10'000, 1}, {400, 0}},
        {400, {1, 10'000}, {0, 400}},  {450, {1, 1}, {450, 450}},     {400, {3000, 1000}, {400, 133}},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(::testing::Message() << c.picture.width << " by " << c.picture.height << " within " << c.bound);
        session.m_previewMaxWidth = session.m_previewMaxHeight = c.bound;
        session.m_previewWidth = session.m_previewHeight = 7; // what an earlier picture left
        SetHeader(c.picture.width, c.picture.height);
        EXPECT_EQ(session.ComputeWorkSize(), 0);
        EXPECT_EQ(session.m_previewWidth, c.preview.width);
        EXPECT_EQ(session.m_previewHeight, c.preview.height);
    }
}

TEST_F(SessionSizes, AHeaderWithoutASizeLeavesTheWorkSize) {
    SetHeader(0, 0);
    EXPECT_EQ(session.ComputeWorkSize(), 0);
    EXPECT_EQ(session.m_workWidth, 450);
    EXPECT_EQ(session.m_workHeight, 860);
    EXPECT_EQ(session.m_previewWidth, 450);
    EXPECT_EQ(session.m_previewHeight, 450);
}

TEST_F(SessionSizes, TheHeaderOfABitmapIsThatOfAnOutgoingOne) {
    ASSERT_TRUE(session.m_sourceBitmap.Create(101, 90));
    session.m_bitmapHeader.biXPelsPerMeter = 5;
    EXPECT_EQ(session.ReadBitmapHeader(session.m_sourceBitmap), 1);
    const BitmapHeader& header = session.m_bitmapHeader;
    EXPECT_EQ(header.biSize, 40u);
    EXPECT_EQ(header.biWidth, 101);
    EXPECT_EQ(header.biHeight, 90);
    EXPECT_EQ(header.biPlanes, 1);
    EXPECT_EQ(header.biBitCount, 24);
    EXPECT_EQ(header.biCompression, 0u);
    EXPECT_EQ(header.biSizeImage, 304u * 90u);
    EXPECT_EQ(header.biXPelsPerMeter, 0);
    EXPECT_EQ(header.biYPelsPerMeter, 0);
    EXPECT_EQ(header.biClrUsed, 0u);
    EXPECT_EQ(header.biClrImportant, 0u);
}

TEST_F(SessionSizes, AnEmptyBitmapIsRefusedAndTheHeaderStays) {
    SetHeader(12, 34);
    EXPECT_EQ(session.ReadBitmapHeader(session.m_sourceBitmap), -1);
    EXPECT_EQ(session.m_bitmapHeader.biWidth, 12);
    EXPECT_EQ(session.m_bitmapHeader.biHeight, 34);
}

TEST_F(SessionSizes, ALiveSessionKeepsTheHeaderOfItsFrames) {
    ASSERT_TRUE(session.m_sourceBitmap.Create(101, 90));
    SetHeader(640, 480);
    session.m_sourceMode = 2;
    EXPECT_EQ(session.ReadBitmapHeader(session.m_sourceBitmap), 1);
    EXPECT_EQ(session.ReadBitmapHeader(Bitmap()), 1);
    EXPECT_EQ(session.m_bitmapHeader.biWidth, 640);
    EXPECT_EQ(session.m_bitmapHeader.biHeight, 480);
}

TEST_F(SessionSizes, ANewSessionObjectStartsAsDocumented) {
    const COrvQuickViewDlg made(windows, video);
    EXPECT_EQ(made.m_previewWidth, 450);
    EXPECT_EQ(made.m_previewHeight, 450);
    EXPECT_EQ(made.m_previewMaxWidth, 450);
    EXPECT_EQ(made.m_previewMaxHeight, 450);
    EXPECT_EQ(made.m_workWidth, 450);
    EXPECT_EQ(made.m_workHeight, 860);
    EXPECT_EQ(made.m_outputWidth, 480);
    EXPECT_EQ(made.m_outputHeight, 860);
    EXPECT_EQ(made.m_rotation, 0);
    EXPECT_EQ(made.m_tolerance, 40);
    EXPECT_TRUE(made.m_visible);
    EXPECT_EQ(made.m_stage, 1);
    EXPECT_EQ(made.m_resultCode, 0);
    for (const int32 unset : {made.m_markLeft, made.m_markTop, made.m_markRight, made.m_markBottom, made.m_anchorLeft,
                              made.m_anchorTop, made.m_anchorRight, made.m_anchorBottom}) {
        EXPECT_EQ(unset, -1);
    }
    EXPECT_TRUE(made.m_sourceBitmap.IsEmpty());
    EXPECT_TRUE(made.m_resultBitmap.IsEmpty()) << "before any run there is no output";
}

} // namespace
} // namespace orvane
