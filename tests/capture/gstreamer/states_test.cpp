// Run, Pause and Close, and when the sink is called.
#include "tests/capture/gstreamer/source_fixture.h"

namespace orvane::test {
namespace {

class States : public Source {};

TEST_F(States, NothingOpenDoesNothing) {
    EXPECT_FALSE(source_->ConfigureWindow(1, sink_));
    EXPECT_FALSE(source_->Run());
    EXPECT_FALSE(source_->Pause());
    source_->Close();
    source_->Close();
}

TEST_F(States, NoFrameComesBeforeRun) {
    ASSERT_TRUE(Open(kPortraitCamera));
    ASSERT_TRUE(source_->ConfigureWindow(1, sink_));
    Rest();
    EXPECT_EQ(sink_.Count(), 0);
    EXPECT_TRUE(source_->Pause());
    Rest();
    EXPECT_EQ(sink_.Count(), 0);
    EXPECT_TRUE(source_->Run());
    EXPECT_TRUE(sink_.WaitForFrames(1));
}

TEST_F(States, ASinkMayComeLateAndMayChange) {
    ASSERT_TRUE(Open(kPortraitCamera));
    ASSERT_TRUE(source_->Run());
    ASSERT_TRUE(source_->ConfigureWindow(1, sink_));
    ASSERT_TRUE(sink_.WaitForFrames(1));
    KeepingSink other;
    ASSERT_TRUE(source_->ConfigureWindow(1, other));
    const int count = sink_.Count();
    EXPECT_TRUE(other.WaitForFrames(2));
    EXPECT_EQ(sink_.Count(), count);
    source_->Close(); // before `other` goes
}

TEST_F(States, PauseHoldsAndRunLetsGo) {
    for (const char* name : {kPortraitCamera, kRecordedCamera}) {
        ASSERT_TRUE(Start(name));
        for (int round = 0; round < 3; ++round) {
            ASSERT_TRUE(sink_.WaitForFrames(3)) << name << " " << round;
            ASSERT_TRUE(source_->Pause());
            const int count = sink_.Count();
            Rest();
            EXPECT_EQ(sink_.Count(), count) << name;
            EXPECT_TRUE(source_->Pause());
            EXPECT_TRUE(source_->Run());
            EXPECT_TRUE(source_->Run());
        }
    }
}

TEST_F(States, QuickChangesEndInTheLast) {
    ASSERT_TRUE(Start(kPortraitCamera));
    for (int round = 0; round < 100; ++round) {
        ASSERT_TRUE(source_->Pause());
        ASSERT_TRUE(source_->Run());
    }
    EXPECT_TRUE(sink_.WaitForFrames(2));
    for (int round = 0; round < 100; ++round) {
        ASSERT_TRUE(source_->Run());
        ASSERT_TRUE(source_->Pause());
    }
    const int count = sink_.Count();
    Rest();
    EXPECT_EQ(sink_.Count(), count);
}

TEST_F(States, NobodyCallsTheSinkAfterClose) {
    ASSERT_TRUE(Start(kPortraitCamera));
    ASSERT_TRUE(sink_.WaitForFrames(2));
    source_->Close();
    const int count = sink_.Count();
    EXPECT_EQ(TestCamerasInUse(), 0);
    Rest();
    EXPECT_EQ(sink_.Count(), count);
    EXPECT_FALSE(source_->Run());
    EXPECT_FALSE(source_->ConfigureWindow(1, sink_));
}

TEST_F(States, AnotherDeviceTakesThePlaceOfTheFirst) {
    ASSERT_TRUE(Start(kPortraitCamera));
    ASSERT_TRUE(sink_.WaitForFrames(1));
    ASSERT_TRUE(Open(kPatternCamera));
    EXPECT_EQ(size_.width, 322);
    EXPECT_EQ(TestCamerasInUse(), 1);
    const int count = sink_.Count();
    ASSERT_TRUE(source_->Run());
    Rest();
    EXPECT_EQ(sink_.Count(), count) << "the sink was the first device's";
    ASSERT_TRUE(source_->ConfigureWindow(1, sink_));
    EXPECT_TRUE(sink_.WaitForFrames(1));
    EXPECT_EQ(sink_.Last().size(), 968U * 242U);
}

TEST_F(States, ASourceThatGoesClosesWhatIsOpen) {
    ASSERT_TRUE(Start(kPortraitCamera));
    ASSERT_TRUE(sink_.WaitForFrames(1));
    source_.reset();
    const int count = sink_.Count();
    Rest();
    EXPECT_EQ(sink_.Count(), count);
    EXPECT_EQ(TestCamerasInUse(), 0);
}

TEST_F(States, TwoSourcesWorkSideBySide) {
    std::unique_ptr<VideoSource> other(GstVideo().CreateVideoSource());
    KeepingSink otherSink;
    ASSERT_TRUE(Start(kPortraitCamera));
    other->EnumerateDevices();
    ImageSize size{};
    ASSERT_TRUE(other->Open(Find(kPatternCamera), &size));
    ASSERT_TRUE(other->ConfigureWindow(1, otherSink));
    ASSERT_TRUE(other->Run());
    EXPECT_TRUE(otherSink.WaitForFrames(2));
    EXPECT_TRUE(sink_.WaitForFrames(2));
    other.reset();
    EXPECT_TRUE(sink_.WaitForFrames(2));
}

} // namespace
} // namespace orvane::test
