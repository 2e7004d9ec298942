// Every request of a session for memory fails in turn, on the road of a photograph, with a window and live: a
// documented code, nothing kept, and the next session works.
#include "orvane/orvane.h"

#include "fuzz/support/played_library.h"
#include "fuzz/support/played_threads.h"
#include "session/session_state.h"
#include "tests/support/memory_fault.h"
#include "tests/support/printed.h"
#include "tests/support/whole_session.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdio>
#include <new>
#include <optional>
#include <string>
#include <vector>

namespace orvane {
namespace {

using test::FakeWindow;
using test::Fault;
using test::MemoryFault;

struct Outcome {
    int32 result = 0;
    std::vector<uint8> output;

    bool operator==(const Outcome&) const = default;
};

/// A library whose operator and camera are played, and whose threads take their rounds where the session waits.
class Road : fuzz::PlayedThreads {
public:
    Road() {
        library_.video.devices.resize(1);
        library_.windows.logs = false;
        library_.windows.script = [this](FakeWindow& window) { Operate(window); };
        opened_ = orv_InitDLL();
        orv_EnableAction(ORV_ALL_ACTIONS, 1);
        orv_SetSizeOutputImage(120, 160);
        g_dialog->m_previewMaxWidth = g_dialog->m_previewMaxHeight = 100;
    }
    virtual ~Road() = default;
    Road(const Road&) = delete;
    Road& operator=(const Road&) = delete;

    bool IsOpen() const { return opened_ == ORV_OK; }
    virtual int32 Detect() = 0;
    virtual void Operate(FakeWindow& window) = 0;
    /// What a session may end with when memory fails.
    virtual std::vector<int32> Codes() const = 0;

    /// A session and its output.
    Outcome Run() {
        const int32 result = Detect();
        test::HostBlock block;
        const int32 given = orv_GetOutputImage(block.Receive());
        const test::Unlimited copy;
        EXPECT_TRUE(given == ORV_OK || given == ORV_NO_MEMORY || given == ORV_NO_SESSION) << given;
        EXPECT_EQ(block.Handle() != nullptr, given == ORV_OK);
        ForgetRecords();
        g_dialog->m_detectionMemory.scan.reset(); // so that the next session asks for all of it again
        return {result, block.Bytes()};
    }

protected:
    fuzz::PlayedLibrary library_;
    const test::Scene scene_ = test::FaceScene(80, 80, 25, 25, 30);
    const test::HostBlock block_{scene_};

    /// As the threads' own bodies do: a round that finds no memory is one that was lost.
    static void PlayRounds() {
        for (const auto step : {&COrvQuickViewDlg::FrameThreadStep, &COrvQuickViewDlg::DetectThreadStep}) {
            const bool stopped = step == &COrvQuickViewDlg::FrameThreadStep ? g_dialog->m_frameThreadStopped
                                                                            : g_dialog->m_detectThreadStopped;
            try {
                if (!stopped) ((*g_dialog).*step)();
            } catch (const std::bad_alloc&) {
            }
        }
    }

private:
    /// What window and cameras keep for a test to read.
    void ForgetRecords() {
        library_.windows.confirmations.clear();
        library_.windows.messages.clear();
        library_.windows.texts.clear();
        library_.windows.owners.clear();
        library_.video.log.clear();
    }

    void OnSleep() override {
        if (isInRound_) return;
        isInRound_ = true;
        PlayRounds();
        isInRound_ = false;
    }

    int32 opened_ = ORV_NO_SESSION;
    bool isInRound_ = false;
};

class PhotographRoad final : public Road {
    int32 Detect() override {
        orv_SetVisibleMode(0);
        return orv_DetectFacePicture(block_.Handle());
    }
    void Operate(FakeWindow& /*window*/) override {}
    std::vector<int32> Codes() const override { return {ORV_OK, ORV_NO_MEMORY, ORV_STEP_FAILED}; }
};

class WindowRoad final : public Road {
    int32 Detect() override {
        orv_SetVisibleMode(1);
        return orv_DetectFacePicture(block_.Handle());
    }
    void Operate(FakeWindow& window) override { test::WorkThroughSession(window, {20, 20}, {65, 65}); }
    std::vector<int32> Codes() const override { return {ORV_OK, ORV_NO_MEMORY, ORV_CANCELLED}; }
};

class LiveRoad final : public Road {
    int32 Detect() override { return orv_DetectFaceLive(0); }
    void Operate(FakeWindow& window) override {
        for (int32 frame = 0; frame < 3; ++frame) {
            library_.video.Deliver(frame_);
            PlayRounds();
            window.Pump();
        }
        window.Click(kPlainClear); // freezes
        window.Click(kPlainClear);
        library_.video.Deliver(frame_);
        PlayRounds();
        window.Pump();
        window.Click(kPlainOk);
        window.Pump();
        window.Click(kPlainOk);
    }
    std::vector<int32> Codes() const override { return {ORV_OK, ORV_NO_MEMORY, ORV_CANCELLED, ORV_CAPTURE_FAILED}; }

    const test::Scene frame_ = test::FaceScene(160, 120, 60, 40, 40);
};

template <typename SomeRoad>
void FailEachRequest(Fault kind) {
    SomeRoad some;
    Road& road = some;
    ASSERT_TRUE(road.IsOpen());
    const Outcome good = road.Run();
    ASSERT_EQ(good.result, ORV_OK);
    ASSERT_FALSE(good.output.empty());
    ASSERT_EQ(road.Run(), good);
    const std::vector<int32> codes = road.Codes();
    bool reached = true;
    int32 refused = 0;
    for (; reached; ++refused) {
        SCOPED_TRACE(testing::Message() << "request " << refused << " refused");
        ASSERT_LT(refused, 100'000);
        const int32 alive = test::BlocksAlive();
        std::optional<Outcome> outcome;
        {
            const MemoryFault fault(refused, kind);
            outcome = road.Run();
            reached = MemoryFault::Happened();
        }
        EXPECT_EQ(std::count(codes.begin(), codes.end(), outcome->result), 1) << outcome->result;
        if (!reached) {
            EXPECT_EQ(*outcome, good);
        }
        outcome.reset();
        ASSERT_EQ(road.Run(), good) << "the session after";
        ASSERT_EQ(test::BlocksAlive(), alive) << "something is kept";
    }
    EXPECT_GT(refused, 40) << "a session asks for more than that";
}

/// Refused primitives say so on the standard output; failures come out behind the test.
template <typename SomeRoad>
void FailQuietly(Fault kind) {
    const std::string printed = test::Printed([&] { FailEachRequest<SomeRoad>(kind); });
    if (testing::Test::HasFailure()) std::fputs(printed.c_str(), stdout);
}

TEST(ExhaustedMemory, OnceOnTheRoadOfAPhotograph) { FailQuietly<PhotographRoad>(Fault::once); }
TEST(ExhaustedMemory, FromThenOnOnTheRoadOfAPhotograph) { FailQuietly<PhotographRoad>(Fault::lasting); }
TEST(ExhaustedMemory, OnceWithAWindow) { FailQuietly<WindowRoad>(Fault::once); }
TEST(ExhaustedMemory, FromThenOnWithAWindow) { FailQuietly<WindowRoad>(Fault::lasting); }
TEST(ExhaustedMemory, OnceLive) { FailQuietly<LiveRoad>(Fault::once); }
TEST(ExhaustedMemory, FromThenOnLive) { FailQuietly<LiveRoad>(Fault::lasting); }

} // namespace
} // namespace orvane
