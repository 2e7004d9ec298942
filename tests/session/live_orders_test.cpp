// The rounds of the live threads and what the operator does, in many orders: a seed tells who comes next, in the middle
// of a detection too. Whatever the order, marks belong to a frame that was shown, no frame comes back, and the end is
// reached. ORVANE_ORDERS tells how many orders; there are 400 otherwise.
#include "tests/session/live_fixture.h"

#include <cstdlib>
#include <cstring>
#include <map>
#include <string>

namespace orvane {
namespace {

using test::Random;

constexpr ImageSize kFrame{64, 56};
constexpr int32 kFaceSide = 36;
constexpr Corners kZeros{0, 0, 0, 0};

class LiveOrders : public test::LiveTest {
protected:
    LiveOrders() { video.devices[0].size = kFrame; }

    void PlayOrder(uint32 seed) {
        random_ = Random(seed);
        newest_ = shown_ = misses_ = 0;
        faceLeft_.clear();
        ended_ = false;
        session.m_stage = COrvQuickViewDlg::kMarking;
        session.m_missCount = 0;
        StartWithoutThreads();
        DuringDetection inside([this] { AtDetection(); });
        for (int32 left = random_.Int(4, 24); left > 0 && !HasFailure(); --left) Act();
        End();
        inside_ = false;
        const bool frameFirst = random_.Int(0, 1) == 0;
        if (frameFirst) {
            EXPECT_FALSE(session.FrameThreadStep());
        }
        EXPECT_FALSE(session.DetectThreadStep()) << "the detection outlives the marking stage";
        if (!frameFirst) {
            EXPECT_FALSE(session.FrameThreadStep());
        }
        ExpectShownFrame();
        session.EndSession();
        EXPECT_TRUE(session.m_sourceBitmap.IsEmpty());
    }

private:
    using DuringDetection = test::DuringDetection;

    bool IsRunning() const { return session.m_capture->m_playState == kRunning; }

    void Act() {
        switch (random_.Int(0, 6)) {
        case 0:
        case 1:
            Deliver();
            break;
        case 2:
        case 3:
            StepFrame();
            break;
        case 4:
            session.m_capture->Pause();
            break;
        case 5:
            session.m_capture->Run();
            break;
        default:
            StepDetection();
        }
    }

    /// A frame that tells its number in its first pixels, with a face or without.
    void Deliver() {
        const bool hasFace = random_.Int(0, 2) > 0;
        const int32 left = random_.Int(4, kFrame.width - kFaceSide - 4);
        test::Scene frame = hasFace ? test::FaceScene(kFrame.width, kFrame.height, left, 8, kFaceSide)
                                    : test::BlankScene(kFrame.width, kFrame.height);
        const int32 number = newest_ + 1;
        std::memcpy(frame.rows.data(), &number, sizeof number);
        if (!video.Deliver(frame)) return; // nobody takes frames in a pause
        newest_ = number;
        faceLeft_[number] = hasFace ? left : -1;
    }

    void StepFrame() {
        const bool running = IsRunning();
        EXPECT_TRUE(session.FrameThreadStep() || ended_);
        if (running && !ended_) shown_ = newest_;
        ExpectShownFrame();
    }

    void ExpectShownFrame() const {
        if (session.m_sourceBitmap.IsEmpty()) return;
        int32 number = 0;
        std::memcpy(&number, session.m_sourceBitmap.Bits(), sizeof number);
        EXPECT_EQ(number, shown_) << "another frame than the last one that was taken";
    }

    void StepDetection() {
        if (inside_) return;
        const bool hasPicture = !ended_ && IsRunning() && !session.m_sourceBitmap.IsEmpty();
        const Corners before = Marks();
        detected_ = shown_;
        inside_ = true;
        EXPECT_TRUE(session.DetectThreadStep() || ended_);
        inside_ = false;
        const Corners after = Marks();
        if (!hasPicture || !IsRunning()) {
            EXPECT_EQ(after, before) << "a round in a pause moved the marks";
            if (!hasPicture) return;
        } else {
            ExpectMarks(before, after);
        }
        EXPECT_EQ(Anchors(), after) << "anchors are not where the marks are";
    }

    void ExpectMarks(const Corners& before, const Corners& after) {
        const auto found = faceLeft_.find(detected_);
        const bool hasFace = found != faceLeft_.end() && found->second >= 0;
        misses_ = hasFace ? 0 : misses_ + 1;
        EXPECT_EQ(session.m_missCount, misses_);
        if (hasFace) {
            EXPECT_NEAR(after.left, found->second, 8) << "marks of another frame";
            EXPECT_NEAR(after.right, found->second + kFaceSide, 8);
        } else {
            EXPECT_EQ(after, misses_ <= COrvQuickViewDlg::MaxMissedDetections ? before : kZeros);
        }
    }

    /// What happens while the detector works, on other threads' behalf.
    void AtDetection() {
        for (int32 left = random_.Int(0, 3); left > 0; --left) {
            if (random_.Int(0, 15) == 0) {
                End();
            } else {
                Act();
            }
        }
    }

    void End() {
        session.m_stage = COrvQuickViewDlg::kAdjusting;
        ended_ = true;
    }

    Random random_{1};
    int32 newest_ = 0;   // frame that came last
    int32 shown_ = 0;    // and that was taken last
    int32 detected_ = 0; // and that the detection under way reads
    int32 misses_ = 0;
    bool ended_ = false;
    bool inside_ = false; // in a detection
    std::map<int32, int32> faceLeft_;
};

TEST_F(LiveOrders, OfRoundsAndEventsAllKeepTheRules) {
    const char* const wanted = std::getenv("ORVANE_ORDERS");
    const uint32 orders = wanted == nullptr ? 400 : static_cast<uint32>(std::stoul(wanted));
    for (uint32 seed = 1; seed <= orders && !HasFailure(); ++seed) {
        SCOPED_TRACE(::testing::Message() << "order " << seed);
        PlayOrder(seed);
    }
}

} // namespace
} // namespace orvane
