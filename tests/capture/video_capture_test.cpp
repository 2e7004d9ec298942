// The capture over played cameras: its list, the device that is open, and the newest frame.
#include "capture/none/no_video.h"
#include "capture/video_capture.h"
#include "tests/support/fake_video.h"

#include <gtest/gtest.h>

#include <atomic>
#include <thread>

namespace orvane {
namespace {

using test::FakeDevice;
using test::FakeVideo;
using test::Scene;
using Log = std::vector<std::string>;

class VideoCapture : public ::testing::Test {
protected:
    ~VideoCapture() override { EXPECT_EQ(video.sourcesAlive, 0) << "a source goes with its capture"; }

    /// A capture whose first device delivers.
    void Start(CVideoCapture& capture) {
        ASSERT_TRUE(capture.OpenDevice(0));
        ASSERT_TRUE(capture.ConfigureWindow(1));
        capture.Run();
    }
    static std::vector<uint8> Bytes(const Bitmap& bitmap) {
        return {bitmap.Bits(), bitmap.Bits() + bitmap.Header().biSizeImage};
    }

    FakeVideo video;
};

TEST_F(VideoCapture, ANewOneIsAsDocumented) {
    const CVideoCapture capture(video, false);
    EXPECT_EQ(capture.DeviceCount(), 0);
    EXPECT_EQ(capture.m_width, 0);
    EXPECT_EQ(capture.m_height, 0);
    EXPECT_EQ(capture.m_openDevice, -1);
    EXPECT_EQ(capture.m_playState, 1);
    EXPECT_TRUE(video.log.empty()) << "nothing is asked of the system without enumeration";
}

TEST_F(VideoCapture, WithEnumerationTheFirstDeviceIsOpened) {
    video.devices = {FakeDevice{{160, 120}}, FakeDevice{{320, 240}}};
    const CVideoCapture capture(video, true);
    EXPECT_EQ(capture.DeviceCount(), 2);
    EXPECT_EQ(capture.m_openDevice, 0);
    EXPECT_EQ(capture.m_width, 160);
    EXPECT_EQ(capture.m_height, 120);
    EXPECT_EQ(capture.m_playState, kNotStarted);
    EXPECT_EQ(video.log, (Log{"enumerate", "open 0"}));
}

TEST_F(VideoCapture, WithoutACameraNothingOpens) {
    CVideoCapture capture(video, true);
    EXPECT_EQ(capture.m_openDevice, -1);
    EXPECT_FALSE(capture.OpenDevice(0));
    EXPECT_FALSE(capture.ConfigureWindow(1));
    EXPECT_EQ(video.log, Log{"enumerate"});
}

TEST_F(VideoCapture, ASystemWithoutVideoHasNoDevices) {
    video.hasVideo = false;
    CVideoCapture capture(video, true);
    EXPECT_EQ(capture.EnumerateDevices(), 0);
    EXPECT_FALSE(capture.OpenDevice(0));
    EXPECT_TRUE(capture.OpenDevice(-1)) << "there is nothing to give back";
    EXPECT_FALSE(capture.ConfigureWindow(1));
    capture.Run();
    EXPECT_TRUE(capture.GrabFrame().IsEmpty());
    NoVideo none;
    EXPECT_EQ(none.CreateVideoSource(), nullptr);
}

TEST_F(VideoCapture, ADeviceWithoutADescriptionHasNoneAndCounts) {
    video.devices = {FakeDevice{{160, 120}, true, L"Desk", L"Desk camera", L"/dev/video0"},
                     FakeDevice{{160, 120}, true, {}, {}, {}}, FakeDevice{{160, 120}, true, L"Wall", {}, L"usb-2"}};
    const CVideoCapture capture(video, true);
    ASSERT_EQ(capture.DeviceCount(), 3);
    EXPECT_EQ(capture.m_devices[0].friendlyName, L"Desk");
    EXPECT_EQ(capture.m_devices[0].description, L"Desk camera");
    EXPECT_EQ(capture.m_devices[0].devicePath, L"/dev/video0");
    EXPECT_FALSE(capture.m_devices[1].friendlyName || capture.m_devices[1].description ||
                 capture.m_devices[1].devicePath);
    EXPECT_EQ(capture.m_devices[2].friendlyName, L"Wall");
    EXPECT_FALSE(capture.m_devices[2].description);
}

TEST_F(VideoCapture, TheListIsMadeAnewEachTime) {
    video.devices.resize(2);
    CVideoCapture capture(video, true);
    video.devices.resize(5);
    EXPECT_EQ(capture.EnumerateDevices(), 5);
    video.devices.clear();
    EXPECT_EQ(capture.EnumerateDevices(), 0);
    EXPECT_EQ(capture.DeviceCount(), 0);
}

TEST_F(VideoCapture, AnIndexBeyondTheListLeavesTheOpenDeviceAlone) {
    video.devices.resize(2);
    CVideoCapture capture(video, true);
    Start(capture);
    const Log before = video.log;
    for (const int32 index : {2, 3, -2, INT32_MAX, INT32_MIN}) EXPECT_FALSE(capture.OpenDevice(index)) << index;
    EXPECT_EQ(video.log, before);
    EXPECT_EQ(capture.m_openDevice, 0);
    EXPECT_EQ(capture.m_playState, kRunning);
    EXPECT_TRUE(video.Deliver(test::BlankScene(160, 120))) << "it goes on";
}

TEST_F(VideoCapture, IndexMinusOneOnlyGivesTheDeviceBack) {
    video.devices.resize(1);
    CVideoCapture capture(video, true);
    Start(capture);
    EXPECT_TRUE(capture.OpenDevice(-1));
    EXPECT_EQ(capture.m_openDevice, -1);
    EXPECT_EQ(video.log.back(), "close");
    EXPECT_FALSE(video.Deliver(test::BlankScene(160, 120)));
    EXPECT_TRUE(capture.GrabFrame().IsEmpty());
    EXPECT_FALSE(capture.ConfigureWindow(1));
}

TEST_F(VideoCapture, ADeviceTakesThePlaceOfTheOneBefore) {
    video.devices = {FakeDevice{{160, 120}}, FakeDevice{{320, 240}}, FakeDevice{{640, 480}, false}};
    CVideoCapture capture(video, true);
    EXPECT_TRUE(capture.OpenDevice(1));
    EXPECT_EQ(capture.m_openDevice, 1);
    EXPECT_EQ(capture.m_width, 320);
    EXPECT_EQ(capture.m_height, 240);
    EXPECT_EQ(video.log, (Log{"enumerate", "open 0", "close", "open 1"}));
    EXPECT_FALSE(capture.OpenDevice(2)) << "it can't be used";
    EXPECT_EQ(capture.m_openDevice, -1) << "and the one before is given back already";
}

TEST_F(VideoCapture, FramesComeOnlyWhileItRuns) {
    video.devices.resize(1);
    CVideoCapture capture(video, true);
    ASSERT_TRUE(capture.ConfigureWindow(1));
    EXPECT_EQ(video.log.back(), "configure 1");
    EXPECT_TRUE(capture.GrabFrame().IsEmpty()) << "not started";
    capture.Run();
    EXPECT_EQ(capture.m_playState, kRunning);
    EXPECT_FALSE(capture.GrabFrame().IsEmpty());
    capture.Pause();
    EXPECT_EQ(capture.m_playState, kPaused);
    EXPECT_TRUE(capture.GrabFrame().IsEmpty()) << "frozen";
    capture.Run();
    EXPECT_FALSE(capture.GrabFrame().IsEmpty());
    EXPECT_EQ(video.log, (Log{"enumerate", "open 0", "configure 1", "run", "pause", "run"}));
}

TEST_F(VideoCapture, AGrabBeforeTheFirstFrameIsBlack) {
    video.devices.resize(1);
    CVideoCapture capture(video, true);
    Start(capture);
    const Bitmap bitmap = capture.GrabFrame();
    ASSERT_EQ(bitmap.Width(), 160);
    ASSERT_EQ(bitmap.Height(), 120);
    EXPECT_EQ(Bytes(bitmap), std::vector<uint8>(std::size_t{160} * 120 * 3, 0));
}

TEST_F(VideoCapture, AGrabIsACopyOfTheNewestFrame) {
    video.devices = {FakeDevice{{51, 7}}}; // rows with padding
    CVideoCapture capture(video, true);
    Start(capture);
    const Scene first = test::FaceScene(51, 7, 0, 0, 5, 1), second = test::FaceScene(51, 7, 2, 1, 5, 2);
    video.Deliver(first);
    const Bitmap grabbed = capture.GrabFrame();
    video.Deliver(second);
    EXPECT_EQ(Bytes(grabbed), first.rows);
    EXPECT_EQ(Bytes(capture.GrabFrame()), second.rows);
    EXPECT_EQ(Bytes(capture.GrabFrame()), second.rows) << "whether or not anybody has read it";
}

TEST_F(VideoCapture, AFrameOfTheWrongLengthFillsWhatItCan) {
    video.devices = {FakeDevice{{8, 4}}};
    CVideoCapture capture(video, true);
    Start(capture);
    const std::vector<uint8> whole(96, 7), half(48, 9), longer(1000, 5);
    video.Deliver(whole.data(), 96);
    video.Deliver(half.data(), 48);
    std::vector<uint8> expected = whole;
    std::fill_n(expected.begin(), 48, uint8{9});
    EXPECT_EQ(Bytes(capture.GrabFrame()), expected) << "behind a short one stands the end of the one before";
    video.Deliver(longer.data(), 1000);
    EXPECT_EQ(Bytes(capture.GrabFrame()), std::vector<uint8>(96, 5));
    video.Deliver(whole.data(), 96);
    EXPECT_EQ(Bytes(capture.GrabFrame()), whole);
}

TEST_F(VideoCapture, AFirstFrameThatIsTooShortEndsInBlack) {
    video.devices = {FakeDevice{{8, 4}}};
    CVideoCapture capture(video, true);
    Start(capture);
    const std::vector<uint8> half(48, 9);
    video.Deliver(half.data(), 48);
    std::vector<uint8> expected(96, 0);
    std::fill_n(expected.begin(), 48, uint8{9});
    EXPECT_EQ(Bytes(capture.GrabFrame()), expected);
}

TEST_F(VideoCapture, AFrameWithoutBytesChangesNothing) {
    video.devices = {FakeDevice{{8, 4}}};
    CVideoCapture capture(video, true);
    Start(capture);
    const std::vector<uint8> whole(96, 7);
    const struct {
        const uint8* bytes;
        int32 length;
    } none[] = {{whole.data(), 0}, {whole.data(), -96}, {nullptr, 96}, {whole.data(), INT32_MIN}};
    for (const auto& frame : none) {
        video.Deliver(whole.data(), 96);
        EXPECT_TRUE(video.Deliver(frame.bytes, frame.length));
        EXPECT_EQ(Bytes(capture.GrabFrame()), whole) << frame.length;
    }
}

TEST_F(VideoCapture, AFrameSizeThatNoPictureHasGivesNone) {
    for (const ImageSize size : {ImageSize{0, 0}, {-160, 120}, {160, -120}, {1 << 30, 1 << 30}}) {
        video.devices = {FakeDevice{size}};
        CVideoCapture capture(video, true);
        Start(capture);
        EXPECT_TRUE(capture.GrabFrame().IsEmpty()) << size.width << "x" << size.height;
    }
}

TEST_F(VideoCapture, TheNewestFrameAsABitmapFile) {
    video.devices = {FakeDevice{{51, 7}}};
    CVideoCapture capture(video, true);
    std::vector<uint8> file{1, 2, 3};
    EXPECT_FALSE(capture.GrabFrameFile(file)) << "not started";
    EXPECT_TRUE(file.empty());
    Start(capture);
    ASSERT_TRUE(capture.GrabFrameFile(file));
    EXPECT_EQ(file.size(), 54U) << "no frame yet: the headers alone";
    const Scene frame = test::FaceScene(51, 7, 0, 0, 5);
    video.Deliver(frame);
    ASSERT_TRUE(capture.GrabFrameFile(file));
    ASSERT_EQ(file.size(), 54 + frame.rows.size());
    const std::vector<uint8> headers{'B', 'M', 0x7A, 0x04, 0,  0, 0, 0, 0, 0, 54, 0, 0, 0, // 1146 bytes, pixels from 54
                                     40,  0,   0,    0,    51, 0, 0, 0, 7, 0, 0,  0, 1, 0, // 51 by 7, one plane
                                     0,   0,   0,    0,    0,  0, 0, 0, 0, 0, 0,  0, 0, 0,
                                     0,   0,   0,    0,    0,  0, // depth and image size are left out
                                     0,   0,   0,    0,    0,  0};
    EXPECT_EQ(std::vector<uint8>(file.begin(), file.begin() + 54), headers);
    EXPECT_EQ(std::vector<uint8>(file.begin() + 54, file.end()), frame.rows);
    capture.Pause();
    EXPECT_FALSE(capture.GrabFrameFile(file));
}

TEST_F(VideoCapture, FramesMayComeWhileOthersAreGrabbed) {
    video.devices = {FakeDevice{{64, 48}}};
    CVideoCapture capture(video, true);
    Start(capture);
    video.Deliver(test::BlankScene(64, 48, 0));
    std::atomic<bool> ended = false;
    std::thread camera([&] {
        for (int32 i = 0; i < 2000; ++i) video.Deliver(test::BlankScene(64, 48, static_cast<uint8>(i)));
        ended = true;
    });
    while (!ended) {
        const Bitmap bitmap = capture.GrabFrame();
        const std::vector<uint8> bytes = Bytes(bitmap);
        EXPECT_EQ(bytes, std::vector<uint8>(bytes.size(), bytes[0])) << "one frame, not parts of two";
    }
    camera.join();
}

TEST_F(VideoCapture, ItGivesTheDeviceBackWhenItGoes) {
    video.devices.resize(1);
    {
        CVideoCapture capture(video, true);
        Start(capture);
        capture.Pause();
    }
    EXPECT_EQ(video.log.back(), "close");
    EXPECT_FALSE(video.Deliver(test::BlankScene(160, 120)));
}

} // namespace
} // namespace orvane
