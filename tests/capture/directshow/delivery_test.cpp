// The frames that come, and when they come.
#include "capture/video_capture.h"
#include "capture/video_system.h"
#include "tests/capture/directshow/capture_fixture.h"

namespace orvane::test {
namespace {

using DirectShowDelivery = DirectShow;

/// A picture whose fields have colours of their own: blue below left, green below right, red above left.
Scene FourFields(int32 width, int32 height) {
    Scene scene = BlankScene(width, height);
    const uint8 colours[4][3] = {{255, 0, 0}, {0, 255, 0}, {0, 0, 255}, {255, 255, 255}};
    for (int32 y = 0; y < height; ++y) {
        for (int32 x = 0; x < width; ++x) {
            const uint8* const colour = colours[(2 * x >= width ? 1 : 0) + (2 * y >= height ? 2 : 0)];
            std::copy_n(colour, 3, scene.Pixel(x, y));
        }
    }
    return scene;
}

TEST_F(DirectShowDelivery, HandsOverEveryByteBottomRowFirst) {
    const Scene scene = FourFields(323, 202); // rows of 969 bytes, padded to 972
    Plug({TestCamera::previewAndCapture, TestCamera::captureOnly});
    cameras_->Show({scene});
    for (const int32 index : {first_, first_ + 1}) {
        ASSERT_TRUE(source_.Open(index, &size_));
        ASSERT_TRUE(source_.ConfigureWindow(1, sink_));
        ASSERT_TRUE(source_.Run());
        ASSERT_TRUE(sink_.Wait(2));
        source_.Close();
        EXPECT_EQ(sink_.Frame(), scene.rows);
    }
}

TEST_F(DirectShowDelivery, PausesAndGoesOn) {
    ASSERT_TRUE(OpenAndRun(TestCamera::previewAndCapture));
    for (int round = 0; round < 3; ++round) {
        ASSERT_TRUE(sink_.Wait(3));
        EXPECT_TRUE(source_.Pause());
        Sleep(50);
        EXPECT_FALSE(sink_.Wait(1, 200));
        EXPECT_TRUE(source_.Run());
    }
    EXPECT_TRUE(sink_.Wait(3));
}

TEST_F(DirectShowDelivery, BeginsWithRunAlone) {
    ASSERT_TRUE(Open(TestCamera::previewAndCapture));
    ASSERT_TRUE(source_.ConfigureWindow(1, sink_));
    EXPECT_FALSE(sink_.Wait(1, 200));
    EXPECT_TRUE(source_.Run());
    EXPECT_TRUE(sink_.Wait(1));
}

TEST_F(DirectShowDelivery, OfADeviceThatDoesNotRestIsHeldBack) {
    ASSERT_TRUE(OpenAndRun(TestCamera::eager));
    ASSERT_TRUE(sink_.Wait(3));
    EXPECT_TRUE(source_.Pause());
    Sleep(50);
    EXPECT_FALSE(sink_.Wait(2, 200)) << "one frame may wait in the renderer";
    EXPECT_TRUE(source_.Run());
    EXPECT_TRUE(sink_.Wait(3));
    EXPECT_TRUE(source_.Pause());
    Sleep(50);
    source_.Close(); // with a frame that waits
    ExpectNothingLeft();
}

TEST_F(DirectShowDelivery, OfASilentDeviceNeverBegins) {
    ASSERT_TRUE(OpenAndRun(TestCamera::silent));
    EXPECT_FALSE(sink_.Wait(1, 300));
    source_.Close();
    ExpectNothingLeft();
}

TEST_F(DirectShowDelivery, EndsWhereTheDeviceIsUnplugged) {
    ASSERT_TRUE(OpenAndRun(TestCamera::unplugged));
    ASSERT_TRUE(sink_.Wait(KindOf(TestCamera::unplugged).framesUntilGone - sink_.Count()));
    EXPECT_FALSE(sink_.Wait(1, 200));
    EXPECT_TRUE(source_.Pause());
    EXPECT_TRUE(source_.Run());
    EXPECT_FALSE(sink_.Wait(1, 200));
    source_.Close();
    ExpectNothingLeft();
}

TEST_F(DirectShowDelivery, PassesFramesOfOtherLengthsOnAsTheyAre) {
    ASSERT_TRUE(OpenAndRun(TestCamera::shortFrames));
    ASSERT_TRUE(sink_.Wait(1));
    EXPECT_EQ(sink_.Frame().size(), 320U * 240 * 3 / 2);
    ASSERT_TRUE(OpenAndRun(TestCamera::longFrames));
    ASSERT_TRUE(sink_.Wait(2));
    EXPECT_EQ(sink_.Frame().size(), 320U * 241 * 3);
}

/// The whole way that a session's frames take.
class DirectShowCapture : public DirectShow {
protected:
    /// The first frame that shows something; the whole picture is black before.
    static Bitmap Grab(CVideoCapture& capture) {
        for (int i = 0; i < 200; ++i) {
            Bitmap frame = capture.GrabFrame();
            if (!frame.IsEmpty() && frame.Bits()[0] != 0) return frame;
            Sleep(10);
        }
        return {};
    }
};

TEST_F(DirectShowCapture, GrabsWhatTheCameraShows) {
    Plug({TestCamera::silent, TestCamera::captureOnly});
    const Scene scene = FourFields(322, 240);
    cameras_->Show({scene});
    CVideoCapture capture(ThisVideoSystem(), true);
    ASSERT_EQ(capture.DeviceCount(), first_ + 2);
    EXPECT_EQ(capture.m_devices[static_cast<std::size_t>(first_) + 1].friendlyName, L"Played capture");
    EXPECT_FALSE(capture.m_devices[static_cast<std::size_t>(first_) + 1].description.has_value());
    EXPECT_TRUE(first_ > 0 || capture.m_openDevice == 0) << "the first one opens with the list";
    ASSERT_TRUE(capture.OpenDevice(first_ + 1));
    EXPECT_EQ(capture.m_width, 322);
    EXPECT_EQ(capture.m_height, 240);
    ASSERT_TRUE(capture.ConfigureWindow(1));
    EXPECT_TRUE(capture.GrabFrame().IsEmpty()) << "not started";
    capture.Run();
    const Bitmap frame = Grab(capture);
    ASSERT_FALSE(frame.IsEmpty());
    EXPECT_TRUE(std::equal(scene.rows.begin(), scene.rows.end(), frame.Bits()));
    EXPECT_FALSE(capture.OpenDevice(first_ + 2)) << "beyond the list";
    EXPECT_EQ(capture.m_openDevice, first_ + 1) << "and the running graph stays";
    capture.Pause();
    EXPECT_TRUE(capture.GrabFrame().IsEmpty()) << "frozen";
}

TEST_F(DirectShowCapture, GrabsNoMoreThanAFrameFromFramesOfOtherLengths) {
    Plug({TestCamera::shortFrames, TestCamera::longFrames});
    cameras_->Show({BlankScene(320, 240, 77)});
    CVideoCapture capture(ThisVideoSystem(), true);
    for (const int32 index : {first_, first_ + 1}) {
        ASSERT_TRUE(capture.OpenDevice(index));
        ASSERT_TRUE(capture.ConfigureWindow(1));
        capture.Run();
        const Bitmap frame = Grab(capture);
        ASSERT_FALSE(frame.IsEmpty());
        EXPECT_EQ(frame.Bits()[0], 77);
        EXPECT_EQ(frame.Header().biSizeImage, 320U * 240 * 3);
    }
}

} // namespace
} // namespace orvane::test
