// Marking a face by hand: the three states of the corners, and what each press, move and release does.
#include "image/session_images.h"
#include "tests/session/window_fixture.h"

#include <climits>

namespace orvane {
namespace {

using test::FakeWindow;

class Marking : public test::WindowTest {
protected:
    /// A session on 160 by 120 pixels without a face: the work picture has 640 by 480, the preview 400 by
    /// 300, so that a preview pixel is 1.6 work pixels.
    int32 OnBlank(const Script& script) {
        return Run(test::BlankScene(160, 120), [&](FakeWindow& window) {
            window.Pump();
            ASSERT_EQ(session.m_previewWidth, 400);
            ASSERT_EQ(session.m_previewHeight, 300);
            script(window);
        });
    }
    void ExpectAnchors(int32 left, int32 top, int32 right, int32 bottom) const {
        EXPECT_EQ(session.m_anchorLeft, left);
        EXPECT_EQ(session.m_anchorTop, top);
        EXPECT_EQ(session.m_anchorRight, right);
        EXPECT_EQ(session.m_anchorBottom, bottom);
    }
    void ExpectMarks(int32 left, int32 top, int32 right, int32 bottom) const {
        EXPECT_EQ(session.m_markLeft, left);
        EXPECT_EQ(session.m_markTop, top);
        EXPECT_EQ(session.m_markRight, right);
        EXPECT_EQ(session.m_markBottom, bottom);
    }
    static void ExpectRecord(int32 left, int32 top, int32 right, int32 bottom) {
        EXPECT_EQ(g_faceRecord.faceWidth, right - left);
        EXPECT_EQ(g_faceRecord.faceHeight, bottom - top);
        EXPECT_EQ(g_faceRecord.centreX, (left + right) / 2);
        EXPECT_EQ(g_faceRecord.centreY, 480 - (top + bottom) / 2);
        EXPECT_EQ(g_sourceImage.width, 640) << "the record belongs to the work picture";
    }
};

TEST_F(Marking, TwoClicksMarkAFace) {
    OnBlank([this](FakeWindow& window) {
        window.Press(100, 50);
        window.Release(100, 50);
        ExpectAnchors(100, 50, -1, -1);
        EXPECT_FALSE(window.CanUse(kPlainOk));
        window.Press(200, 150);
        ExpectAnchors(100, 50, 200, 150);
        ExpectMarks(100, 50, 200, 150);
        ExpectRecord(160, 80, 320, 240);
        EXPECT_TRUE(window.CanUse(kPlainOk));
        EXPECT_TRUE(window.CanUse(kPlainClear));
        EXPECT_FALSE(window.IsShown(kPrompt));
        window.Release(300, 300);
        ExpectAnchors(100, 50, 200, 150);
    });
}

TEST_F(Marking, OneDragMarksAFace) {
    OnBlank([this](FakeWindow& window) {
        window.Press(100, 50);
        window.Move(150, 100);
        ExpectMarks(100, 50, 150, 100);
        window.Release(200, 150);
        ExpectAnchors(100, 50, 200, 150);
        ExpectMarks(100, 50, 200, 150);
        ExpectRecord(160, 80, 320, 240);
        EXPECT_TRUE(window.CanUse(kPlainOk));
    });
}

TEST_F(Marking, ARectangleDraggedUpAndLeftEndsSorted) {
    OnBlank([this](FakeWindow& window) {
        window.Press(200, 150);
        window.Move(100, 50);
        ExpectMarks(200, 150, 100, 50); // as it is drawn
        window.Release(100, 50);
        ExpectAnchors(200, 150, 100, 50);
        ExpectMarks(100, 50, 200, 150);
        ExpectRecord(160, 80, 320, 240);
    });
}

TEST_F(Marking, AReleaseWithinFivePixelsInEitherDirectionIsAClick) {
    struct Case {
        int32 dx, dy;
        bool finishes;
    };
    const Case kCases[] = {{0, 0, false},   {5, 5, false},     {6, 5, false},    {5, 6, false},
                           {100, 3, false}, {3, 100, false},   {6, 6, true},     {-6, -6, true},
                           {-6, 6, true},   {-5, -100, false}, {-100, 5, false}, {6, -50, true}};
    for (const Case& c : kCases) {
        SCOPED_TRACE(::testing::Message() << c.dx << ", " << c.dy);
        OnBlank([&](FakeWindow& window) {
            window.Press(200, 150);
            window.Release(200 + c.dx, 150 + c.dy);
            EXPECT_EQ(session.m_anchorRight != -1, c.finishes);
            EXPECT_EQ(window.CanUse(kPlainOk), c.finishes);
            window.Press(250, 190);
            if (!c.finishes) ExpectAnchors(200, 150, 250, 190); // the next press does
        });
    }
}

TEST_F(Marking, APressCountsUpToThePreviewsSizeAndNoFurther) {
    struct Case {
        int32 x, y;
        bool counts;
    };
    const Case kCases[] = {{400, 300, true}, {401, 300, false}, {400, 301, false}, {0, 0, true},
                           {-20, 10, true},  {10, -20, true},   {-2, -2, true},    {INT_MAX - 20, 0, false}};
    for (const Case& c : kCases) {
        SCOPED_TRACE(::testing::Message() << c.x << ", " << c.y);
        OnBlank([&](FakeWindow& window) {
            window.Press(c.x, c.y);
            if (c.counts) {
                ExpectAnchors(c.x, c.y, -1, -1);
            } else {
                ExpectNoAnchors();
            }
        });
    }
}

TEST_F(Marking, TheSecondCornerHasTheSameBounds) {
    OnBlank([this](FakeWindow& window) {
        window.Press(100, 100);
        window.Press(401, 200);
        ExpectAnchors(100, 100, -1, -1);
        window.Press(400, 300);
        ExpectAnchors(100, 100, 400, 300);
    });
}

TEST_F(Marking, ADragMayEndOutsideThePreview) {
    OnBlank([this](FakeWindow& window) {
        window.Press(100, 100);
        window.Release(500, -30);
        ExpectMarks(100, -30, 500, 100);
    });
}

TEST_F(Marking, ThePressAfterACompleteRectangleBeginsANewOne) {
    Run([this](FakeWindow& window) {
        window.Pump();
        ASSERT_NE(session.m_anchorRight, -1) << "the detector's";
        const test::ShownPicture before = window.Preview();
        window.Press(30, 40);
        ExpectAnchors(30, 40, -1, -1);
        ExpectMarks(-1, -1, -1, -1);
        EXPECT_EQ(session.m_stage, 1);
        EXPECT_EQ(window.Pump(), 0);
        EXPECT_TRUE(window.Preview() == before) << "the old rectangle stays until the mouse moves";
        window.Move(90, 100);
        EXPECT_EQ(window.Pump(), 1);
        EXPECT_FALSE(window.Preview() == before);
        window.Release(90, 100);
        ExpectMarks(30, 40, 90, 100);
        ExpectRecord(48, 64, 144, 160);
    });
}

TEST_F(Marking, TheLastRubberBandStaysOnTheScreen) {
    OnBlank([](FakeWindow& window) {
        window.Press(100, 50);
        window.Move(199, 149);
        EXPECT_EQ(window.Pump(), 1);
        window.Press(200, 150);
        EXPECT_EQ(window.Pump(), 0) << "no new overlay";
    });
}

TEST_F(Marking, EachMoveOfARubberBandPostsAPicture) {
    OnBlank([](FakeWindow& window) {
        window.Move(10, 10);
        EXPECT_EQ(window.Waiting(), 0U) << "nothing is begun";
        window.Press(100, 50);
        for (int32 i = 0; i < 7; ++i) window.Move(110 + i, 60);
        EXPECT_EQ(window.Pump(), 7) << "they are not merged";
        window.Press(200, 150);
        window.Move(10, 10);
        EXPECT_EQ(window.Waiting(), 0U);
    });
}

TEST_F(Marking, TheCursorIsACrossUntilTheRectangleIsComplete) {
    OnBlank([this](FakeWindow& window) {
        window.Move(10, 10);
        EXPECT_EQ(window.Pointer(), Cursor::cross);
        EXPECT_EQ(session.m_mouseX, 10);
        EXPECT_EQ(session.m_mouseY, 10);
        window.Press(100, 50);
        window.Move(110, 60);
        EXPECT_EQ(window.Pointer(), Cursor::cross);
        window.Press(200, 150);
        window.Move(210, 160);
        EXPECT_EQ(window.Pointer(), Cursor::arrow);
    });
}

TEST_F(Marking, ClearBringsBackTheEmptyStateFromAnyState) {
    for (int32 corners = 0; corners < 3; ++corners) {
        Run([&](FakeWindow& window) {
            window.Pump(); // the detector's rectangle stands
            if (corners > 0) window.Press(100, 100);
            if (corners > 1) window.Press(200, 200);
            windows.texts.clear();
            EXPECT_TRUE(window.Click(kPlainClear));
            ExpectNoMarks();
            EXPECT_EQ(session.m_stage, 1);
            EXPECT_TRUE(window.IsShown(kPrompt));
            EXPECT_FALSE(window.IsEnabled(kPlainOk));
            EXPECT_FALSE(window.IsEnabled(kPlainClear));
            EXPECT_EQ(window.Pump(), 1);
            ASSERT_EQ(windows.texts.size(), 1U);
            EXPECT_EQ(windows.texts[0].text, L"?");
            window.Press(100, 50);
            EXPECT_TRUE(window.IsShown(kPrompt)) << "until a rectangle is finished";
            window.Press(200, 150);
            EXPECT_FALSE(window.IsShown(kPrompt));
            EXPECT_TRUE(window.CanUse(kPlainOk));
            ExpectRecord(160, 80, 320, 240);
        });
    }
}

TEST_F(Marking, ACornerJustLeftOfThePreviewCountsAsNoneAndTheDetectorAnswers) {
    OnBlank([this](FakeWindow& window) {
        window.Press(100, 50);
        window.Release(-1, 150);
        ExpectNoAnchors();
        EXPECT_FALSE(window.IsEnabled(kPlainOk)) << "there is no face";
        EXPECT_TRUE(window.IsShown(kPrompt));
    });
    Run([this](FakeWindow& window) {
        window.Press(100, 50);
        window.Release(-1, 150);
        EXPECT_GT(session.m_anchorRight, 0) << "the detector's face";
        EXPECT_TRUE(window.CanUse(kPlainOk));
        EXPECT_FALSE(window.IsShown(kPrompt));
    });
}

TEST_F(Marking, NothingIsMarkedByHandInALiveSession) {
    OnBlank([this](FakeWindow& window) {
        session.m_sourceMode = COrvQuickViewDlg::kLiveMode;
        window.Press(100, 50);
        ExpectNoAnchors();
        session.m_sourceMode = COrvQuickViewDlg::kPictureMode;
    });
}

TEST_F(Marking, TheCropFollowsTheMarks) {
    g_actionEnabled = test::kCropAlone;
    const auto portrait = [this](int32 x) {
        OnBlank([x](FakeWindow& window) {
            window.Press(x, 50);
            window.Press(x + 100, 150);
            window.Click(kPlainOk);
        });
        return session.m_resultBitmap.Size();
    };
    const ImageSize middle = portrait(150);
    EXPECT_GE(middle.width, 120);
    EXPECT_GE(middle.height, 160);
}

} // namespace
} // namespace orvane
