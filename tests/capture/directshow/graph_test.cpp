// Which devices open, by which way, and at which size.
#include "tests/capture/directshow/capture_fixture.h"

namespace orvane::test {
namespace {

using DirectShowGraph = DirectShow;

TEST_F(DirectShowGraph, HasTheSizeOfTheFrames) {
    Plug({TestCamera::previewAndCapture, TestCamera::captureOnly});
    cameras_->Show({BlankScene(322, 201)});
    for (const int32 index : {first_, first_ + 1}) {
        ASSERT_TRUE(source_.Open(index, &size_));
        EXPECT_EQ(size_.width, 322);
        EXPECT_EQ(size_.height, 201);
    }
    source_.Close();
    ExpectNothingLeft();
}

TEST_F(DirectShowGraph, PrefersThePreview) {
    ASSERT_TRUE(OpenAndRun(TestCamera::previewAndCapture));
    ASSERT_TRUE(sink_.Wait(3));
    EXPECT_EQ(sink_.Time(), 0.0) << "frames of a preview carry no time";
}

TEST_F(DirectShowGraph, OfADeviceThatOnlyRecordsDelivers) {
    ASSERT_TRUE(OpenAndRun(TestCamera::captureOnly));
    EXPECT_TRUE(sink_.Wait(3));
}

TEST_F(DirectShowGraph, TakesWhatIsRecordedWhereThePreviewRefuses) {
    ASSERT_TRUE(OpenAndRun(TestCamera::refusedPreview));
    ASSERT_TRUE(sink_.Wait(3));
    EXPECT_NE(sink_.Time(), 0.0) << "frames of a recording carry their time";
}

TEST_F(DirectShowGraph, TakesInterleavedVideoFirst) {
    ASSERT_TRUE(Open(TestCamera::interleaved));
    EXPECT_EQ(size_.width, 320) << "the pin before it has 160";
    EXPECT_EQ(size_.height, 240);
    source_.Close();
    ExpectNothingLeft();
}

TEST_F(DirectShowGraph, OfADeviceWithAVideoPortHasNoWindow) {
    const LONG before = TestCameras::Counters().controls;
    ASSERT_TRUE(Open(TestCamera::videoPort));
    EXPECT_EQ(TestCameras::Counters().controls, before + 1) << "the port's control is asked for";
    EXPECT_FALSE(source_.ConfigureWindow(1, sink_)) << "there is no renderer's window to put away";
    EXPECT_TRUE(source_.Run());
    EXPECT_FALSE(sink_.Wait(1, 200));
    source_.Close();
    ExpectNothingLeft();
}

TEST_F(DirectShowGraph, IsNotThereForUnusableDevices) {
    for (const TestCamera camera :
         {TestCamera::noFilter, TestCamera::noConnection, TestCamera::topDown, TestCamera::noSize}) {
        const testing::ScopedTrace trace(__FILE__, __LINE__, static_cast<int>(camera));
        EXPECT_FALSE(Open(camera));
        EXPECT_FALSE(source_.ConfigureWindow(1, sink_));
        EXPECT_FALSE(source_.Run());
        EXPECT_FALSE(source_.Pause());
        ExpectNothingLeft();
    }
}

TEST_F(DirectShowGraph, GoesWhenAnotherDeviceIsAskedFor) {
    Plug({TestCamera::previewAndCapture, TestCamera::noFilter});
    ASSERT_TRUE(source_.Open(first_, &size_));
    EXPECT_FALSE(source_.Open(first_ + 1, &size_));
    EXPECT_FALSE(source_.Run()) << "nothing is open";
    ASSERT_TRUE(source_.Open(first_, &size_));
    EXPECT_FALSE(source_.Open(first_ + 2, &size_));
    EXPECT_FALSE(source_.Run()) << "nothing is open";
    ExpectNothingLeft();
}

TEST_F(DirectShowGraph, StaysWhileDevicesAreListed) {
    ASSERT_TRUE(OpenAndRun(TestCamera::previewAndCapture));
    ASSERT_TRUE(sink_.Wait(1));
    source_.EnumerateDevices();
    EXPECT_TRUE(sink_.Wait(3));
}

TEST_F(DirectShowGraph, WithNothingOpenEveryCallIsHarmless) {
    EXPECT_FALSE(source_.ConfigureWindow(1, sink_));
    EXPECT_FALSE(source_.Run());
    EXPECT_FALSE(source_.Pause());
    source_.Close();
    source_.Close();
    Plug({TestCamera::previewAndCapture});
    EXPECT_FALSE(source_.Open(first_, nullptr));
}

} // namespace
} // namespace orvane::test
