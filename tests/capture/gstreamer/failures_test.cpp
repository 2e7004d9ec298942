// Devices that fail: at once, later, or by never answering.
#include "tests/capture/gstreamer/source_fixture.h"

namespace orvane::test {
namespace {

using Clock = std::chrono::steady_clock;

class Failures : public Source {
protected:
    void ExpectNothingOpen() {
        EXPECT_EQ(TestCamerasInUse(), 0);
        EXPECT_FALSE(source_->ConfigureWindow(1, sink_));
        EXPECT_FALSE(source_->Run());
        EXPECT_FALSE(source_->Pause());
        source_->Close();
    }

    /// Run, Pause and Close of a device that is gone: each returns, and no frame comes.
    void ExpectToBeGone() {
        const int count = sink_.Count();
        EXPECT_TRUE(source_->Pause());
        EXPECT_TRUE(source_->Run());
        Rest();
        EXPECT_TRUE(source_->Pause());
        source_->Close();
        EXPECT_EQ(sink_.Count(), count);
        EXPECT_EQ(TestCamerasInUse(), 0);
    }
};

TEST_F(Failures, DevicesThatCannotBeUsedDoNotOpenAndLeaveNothing) {
    for (const char* name : {kRefusingCamera, kBusyCamera, kBusyLaterCamera, kHugeCamera}) {
        SCOPED_TRACE(name);
        ASSERT_NE(Find(name), -1);
        EXPECT_FALSE(Open(name));
        ExpectNothingOpen();
    }
}

TEST_F(Failures, ADeviceThatFailsClosesTheOneBefore) {
    ASSERT_TRUE(Start(kPortraitCamera));
    ASSERT_TRUE(sink_.WaitForFrames(1));
    EXPECT_FALSE(Open(kBusyCamera));
    ExpectNothingOpen();
    EXPECT_TRUE(Start(kPortraitCamera)) << "and another opens as ever";
    EXPECT_TRUE(sink_.WaitForFrames(1));
}

TEST_F(Failures, ADeviceThatNeverDeliversIsOpen) {
    ASSERT_TRUE(Start(kSilentCamera));
    EXPECT_EQ(size_.width, 640);
    Rest();
    EXPECT_EQ(sink_.Count(), 0);
    ExpectToBeGone();
}

TEST_F(Failures, UnpluggingEndsTheFramesAndNothingElse) {
    for (const char* name : {kDyingCamera, kEndingCamera}) {
        SCOPED_TRACE(name);
        ASSERT_TRUE(Start(name));
        ASSERT_TRUE(sink_.WaitForFrames(kFramesBefore - 2));
        Rest();
        Rest();
        ExpectToBeGone();
    }
}

TEST_F(Failures, ADeviceThatDoesNotAnswerWhenOpenedIsGivenUp) {
    const auto before = Clock::now();
    EXPECT_FALSE(Open(kStuckOpeningCamera));
    EXPECT_FALSE(source_->Run());
    EXPECT_LT(Clock::now() - before, kLong);
    EXPECT_EQ(TestCamerasInUse(), 1) << "its own thread still waits for it";
    ASSERT_TRUE(Start(kPortraitCamera));
    EXPECT_TRUE(sink_.WaitForFrames(1));
    source_->Close();
    ReleaseStuckCameras();
    for (const auto begin = Clock::now(); TestCamerasInUse() > 0 && Clock::now() - begin < kLong;) Rest();
    EXPECT_EQ(TestCamerasInUse(), 0);
}

TEST_F(Failures, ADeviceThatStopsAnsweringHangsNobody) {
    ASSERT_TRUE(Start(kStuckRunningCamera));
    auto before = Clock::now();
    EXPECT_TRUE(source_->Pause());
    EXPECT_TRUE(source_->Run());
    EXPECT_TRUE(source_->Pause());
    source_->Close();
    EXPECT_LT(Clock::now() - before, kLong);
    const int count = sink_.Count();
    ReleaseStuckCameras();
    for (before = Clock::now(); TestCamerasInUse() > 0 && Clock::now() - before < kLong;) Rest();
    EXPECT_EQ(TestCamerasInUse(), 0);
    EXPECT_EQ(sink_.Count(), count) << "what it delivered at last came too late";
}

} // namespace
} // namespace orvane::test
