// How a live session begins: which device, which sizes, what the window shows, and what is refused.
#include "image/packed_dib.h"
#include "tests/session/live_fixture.h"

#include <climits>
#include <set>

namespace orvane {
namespace {

using test::FakeDevice;
using test::FakeWindow;
using test::FrameWithFace;

class LiveOpening : public test::LiveTest {};

TEST_F(LiveOpening, ADeviceThatIsNotThereIsRefusedWithoutAWindow) {
    video.devices.resize(2);
    for (const int32 index : {2, 3, -1, -2, INT32_MAX, INT32_MIN}) {
        EXPECT_EQ(session.DetectFaceLive(index), kCaptureFailed) << index;
    }
    EXPECT_EQ(windows.Count("create"), 0);
    EXPECT_EQ(session.m_capture, nullptr);
    EXPECT_FALSE(session.m_visible) << "only a capture that runs turns the window on";
    EXPECT_EQ(session.m_deviceIndex, 0) << "only a device that opens is kept";
    EXPECT_EQ(session.m_stage, 1);
    ExpectNoMarks();
}

TEST_F(LiveOpening, WithoutDevicesOrVideoItIsRefused) {
    video.devices.clear();
    EXPECT_EQ(session.DetectFaceLive(0), kCaptureFailed);
    video.devices.resize(1);
    video.hasVideo = false;
    EXPECT_EQ(session.DetectFaceLive(0), kCaptureFailed);
    EXPECT_EQ(windows.Count("create"), 0);
}

TEST_F(LiveOpening, ADeviceThatCantBeUsedIsRefused) {
    video.devices = {FakeDevice{}, FakeDevice{{160, 120}, false}};
    EXPECT_EQ(session.DetectFaceLive(1), kCaptureFailed);
    EXPECT_EQ(session.m_capture, nullptr);
    EXPECT_EQ(windows.Count("create"), 0);
    EXPECT_EQ(session.DetectFaceLive(0), kCancelled) << "another one still can, up to its window";
}

TEST_F(LiveOpening, FramesWithoutASizeAreRefused) {
    for (const ImageSize size : {ImageSize{0, 120}, {160, 0}, {0, 0}, {-160, 120}}) {
        video.devices = {FakeDevice{size}};
        EXPECT_EQ(session.DetectFaceLive(0), kCaptureFailed);
        EXPECT_EQ(windows.Count("create"), 0);
    }
}

TEST_F(LiveOpening, WithoutAScreenNoCameraIsOpened) {
    windows.canOpen = false;
    EXPECT_EQ(session.DetectFaceLive(0), kCaptureFailed);
    EXPECT_TRUE(video.log.empty());
    EXPECT_FALSE(session.m_visible);
}

TEST_F(LiveOpening, AWindowThatDoesNotOpenGivesTheCameraBack) {
    windows.opens = false;
    EXPECT_EQ(session.DetectFaceLive(0), kCaptureFailed);
    EXPECT_EQ(video.log.back(), "close");
    windows.makes = false;
    EXPECT_EQ(session.DetectFaceLive(0), kCaptureFailed);
    EXPECT_EQ(session.m_capture, nullptr);
}

TEST_F(LiveOpening, OpenCaptureDoesNothingForAPicture) {
    session.m_sourceMode = COrvQuickViewDlg::kPictureMode;
    int32 width = 7, height = 8;
    EXPECT_EQ(session.OpenCapture(0, width, height), kSuccess);
    EXPECT_EQ(width, 7);
    EXPECT_EQ(height, 8);
    EXPECT_EQ(session.m_capture, nullptr);
    EXPECT_EQ(session.StopLiveThreads(), 1);
    EXPECT_EQ(session.StartLive(), -1);
}

TEST_F(LiveOpening, ACaptureLeftBehindIsRefusedAndGoes) {
    session.m_sourceMode = COrvQuickViewDlg::kLiveMode;
    int32 width = 0, height = 0;
    ASSERT_EQ(session.OpenCapture(0, width, height), kSuccess);
    EXPECT_EQ(width, 160);
    EXPECT_EQ(height, 120);
    EXPECT_EQ(session.OpenCapture(0, width, height), kCaptureFailed);
    EXPECT_EQ(session.m_capture, nullptr);
    EXPECT_EQ(width, 0);
}

TEST_F(LiveOpening, TheDeviceOfTheHostTakesThePlaceOfTheFirst) {
    video.devices = {FakeDevice{{64, 48}}, FakeDevice{{160, 120}}};
    windows.script = [this](FakeWindow&) {
        EXPECT_EQ(session.m_deviceIndex, 1);
        EXPECT_EQ(session.m_bitmapHeader.biWidth, 160);
    };
    EXPECT_EQ(session.DetectFaceLive(1), kCancelled) << "nobody decided";
    const std::vector<std::string> expected{"enumerate", "open 0", "close", "open 1", "configure 1", "run", "close"};
    EXPECT_EQ(video.log, expected);
}

TEST_F(LiveOpening, TheFrameGivesTheSizesOfTheSession) {
    video.devices = {FakeDevice{{640, 480}}};
    Run([this](FakeWindow&) {
        const BitmapHeader& header = session.m_bitmapHeader;
        EXPECT_EQ(header.biWidth, 640);
        EXPECT_EQ(header.biHeight, 480);
        EXPECT_EQ(header.biPlanes, 1);
        EXPECT_EQ(header.biBitCount, 24);
        EXPECT_EQ(session.m_previewWidth, 400);
        EXPECT_EQ(session.m_previewHeight, 300);
        EXPECT_EQ(session.m_workWidth, 800) << "1.25 of a picture of this area";
        EXPECT_EQ(g_originalWidth, 640);
        EXPECT_EQ(g_originalHeight, 480);
        EXPECT_EQ(session.m_stage, 1);
        EXPECT_TRUE(session.m_visible);
    });
    EXPECT_TRUE(session.m_visible) << "and it stays on";
}

TEST_F(LiveOpening, FramesUnder75PixelsLeaveTheOriginalSize) {
    g_originalWidth = 1000;
    g_originalHeight = 2000;
    video.devices = {FakeDevice{{160, 74}}};
    Run([](FakeWindow&) {});
    EXPECT_EQ(g_originalWidth, 1000);
    EXPECT_EQ(g_originalHeight, 2000);
}

TEST_F(LiveOpening, TheMarkingStageShowsFreezeAndADisabledClear) {
    Run([](FakeWindow& window) {
        std::set<int32> shown;
        for (const auto& [id, control] : window.Controls()) {
            if (control.shown) shown.insert(id);
        }
        EXPECT_EQ(shown, (std::set<int32>{kPreview, kPlainOk, kPlainClear, kPlainFreeze, kCancelButton, kAboutButton}));
        EXPECT_FALSE(window.IsEnabled(kPlainClear));
        EXPECT_TRUE(window.IsEnabled(kPlainOk));
        EXPECT_TRUE(window.IsEnabled(kPlainFreeze));
        EXPECT_EQ(window.Text(kPlainFreeze), L"Freeze");
    });
}

TEST_F(LiveOpening, WithoutTheSliderNoThreadStarts) {
    windows.hasSlider = false;
    windows.script = [this](FakeWindow& window) {
        EXPECT_TRUE(session.m_frameThreadStopped);
        EXPECT_FALSE(window.IsShown(kPlainFreeze));
        window.CloseBox();
    };
    EXPECT_EQ(session.DetectFaceLive(0), kCancelled);
}

TEST_F(LiveOpening, NothingOfThePictureBeforeIsLeft) {
    windows.script = [](FakeWindow& window) { window.Click(kPlainOk); };
    session.m_visible = true;
    ASSERT_EQ(session.DetectFacePicture(test::HostBlock(FrameWithFace()).Handle()), kSuccess);
    ASSERT_FALSE(session.m_resultBitmap.IsEmpty());
    Run([this](FakeWindow& window) {
        EXPECT_TRUE(session.m_resultBitmap.IsEmpty());
        EXPECT_TRUE(window.Click(kPlainOk)); // before the first frame
    });
    void* output = nullptr;
    EXPECT_TRUE(session.m_resultBitmap.IsEmpty()) << "someone else's portrait must not come out";
    EXPECT_EQ(PackedDibFromBitmap(session.m_resultBitmap, &output), kNoSession);
}

TEST_F(LiveOpening, OkBeforeTheFirstFrameHasNoOutputAndIsNotOutOfMemory) {
    for (const uint8 crop : {0, 1}) {
        g_actionEnabled = {crop, 0, 0, 0, 0, 0};
        EXPECT_EQ(Run([](FakeWindow& window) { EXPECT_TRUE(window.Click(kPlainOk)); }), kSuccess) << +crop;
        EXPECT_TRUE(session.m_resultBitmap.IsEmpty()) << +crop;
    }
}

TEST_F(LiveOpening, APictureGoesAsEverAfterALiveSession) {
    Run([](FakeWindow& window) { window.CloseBox(); });
    session.m_visible = false;
    EXPECT_EQ(session.DetectFacePicture(test::HostBlock(FrameWithFace()).Handle()), kSuccess);
    EXPECT_FALSE(session.m_resultBitmap.IsEmpty());
    EXPECT_EQ(session.m_sourceMode, COrvQuickViewDlg::kPictureMode);
}

} // namespace
} // namespace orvane
