// Whole live sessions on the real window, with cameras that this system's video offers.
#include "tests/window/sessions/cameras.h"
#include "tests/window/sessions/window_host.h"

#include <chrono>
#include <climits>

namespace orvane::test {
namespace {

using namespace std::chrono_literals;

constexpr ColourRef kYellow = 0x00FFFF;       // the rectangle's
constexpr ColourRef kQuestionMark = 0xFF3232; // that of "?"

class LiveOperator : public ::testing::Test {
protected:
    LiveOperator() {
        host.lib.orv_EnableAction(ORV_CROP, 1);
        host.lib.orv_SetSizeOutputImage(120, 160);
    }

    int32_t Live(Camera camera, const std::function<void(Hand&)>& play) {
        const int32 index = cameras.IndexOf(camera);
        EXPECT_GE(index, 0) << "no such camera";
        return host.DetectLive(index, play);
    }
    static bool Within(std::chrono::milliseconds time, const std::function<bool()>& what) {
        const auto end = std::chrono::steady_clock::now() + time;
        while (!what()) {
            if (std::chrono::steady_clock::now() > end) return false;
            std::this_thread::sleep_for(20ms);
        }
        return true;
    }
    static bool ShowsFace(Hand& hand) { return hand.Preview().Shows(kYellow); }
    /// How many different pictures the preview shows in this time, at some forty looks a second.
    static int PicturesIn(Hand& hand, std::chrono::milliseconds time) {
        int pictures = 0;
        ShownPicture last;
        Within(time, [&] {
            ShownPicture now = hand.Preview();
            pictures += now == last ? 0 : 1;
            last = std::move(now);
            return false;
        });
        return pictures;
    }
    void ExpectPortrait() {
        HostBlock output;
        ASSERT_EQ(host.lib.orv_GetOutputImage(output.Receive()), ORV_OK);
        EXPECT_GE(output.Header().width, 120); // one of the sides may grow
        EXPECT_GE(output.Header().height, 160);
    }
    void ExpectNoOutput() {
        HostBlock output;
        EXPECT_EQ(host.lib.orv_GetOutputImage(output.Receive()), ORV_NO_SESSION);
    }

    Cameras cameras;
    WindowHost host;
};

TEST_F(LiveOperator, TheRectangleComesWithinThreeSecondsAndOkGivesThePortrait) {
    EXPECT_EQ(Live(Camera::portrait,
                   [&](Hand& hand) {
                       EXPECT_TRUE(Within(3s, [&] { return ShowsFace(hand); })) << "no rectangle on the portrait";
                       EXPECT_EQ(hand.TextOf(kPlainFreeze), L"Freeze");
                       EXPECT_TRUE(hand.IsShown(kPlainFreeze));
                       EXPECT_FALSE(hand.IsEnabled(kPlainClear));
                       EXPECT_GT(PicturesIn(hand, 1s), 3) << "it is a video";
                       hand.Click(kPlainOk);
                   }),
              ORV_OK);
    ExpectPortrait();
}

TEST_F(LiveOperator, FreezeHoldsThePictureAndUnfreezeLetsGo) {
    EXPECT_EQ(Live(Camera::portrait,
                   [&](Hand& hand) {
                       EXPECT_TRUE(Within(10s, [&] { return ShowsFace(hand); }));
                       hand.Click(kPlainFreeze);
                       EXPECT_EQ(hand.TextOf(kPlainFreeze), L"Unfreeze");
                       std::this_thread::sleep_for(200ms); // what was under way
                       const ShownPicture frozen = hand.Preview();
                       std::this_thread::sleep_for(500ms);
                       EXPECT_TRUE(hand.Preview() == frozen);
                       EXPECT_TRUE(ShowsFace(hand));
                       hand.Click(kPlainFreeze);
                       EXPECT_EQ(hand.TextOf(kPlainFreeze), L"Freeze");
                       EXPECT_TRUE(Within(10s, [&] { return hand.Preview() != frozen; })) << "it does not run on";
                       hand.Click(kPlainFreeze);
                       hand.Click(kPlainOk);
                   }),
              ORV_OK);
    ExpectPortrait();
}

TEST_F(LiveOperator, TheAdjustingStageWorksOnTheLastFrame) {
    host.lib.orv_EnableAction(ORV_ROTATE, 1);
    EXPECT_EQ(Live(Camera::portrait,
                   [&](Hand& hand) {
                       EXPECT_TRUE(Within(10s, [&] { return ShowsFace(hand); }));
                       hand.Click(kPlainOk);
                       EXPECT_FALSE(hand.IsShown(kPlainFreeze));
                       hand.Type(kRotationEdit, L"5");
                       EXPECT_TRUE(Within(10s, [&] { return !ShowsFace(hand); })) << "the portrait has no rectangle";
                       hand.Click(kPlainOk);
                   }),
              ORV_OK);
    ExpectPortrait();
}

TEST_F(LiveOperator, CancelAndTheCloseBoxEndItWithoutAnOutput) {
    EXPECT_EQ(Live(Camera::portrait, [](Hand& hand) { hand.Click(kCancelButton); }), ORV_CANCELLED);
    ExpectNoOutput();
    EXPECT_EQ(Live(Camera::portrait,
                   [](Hand& hand) {
                       hand.Click(kPlainFreeze);
                       hand.CloseBox();
                   }),
              ORV_CANCELLED);
    ExpectNoOutput();
}

TEST_F(LiveOperator, WithoutAFaceAQuestionMarkStandsOnTheVideo) {
    host.FindNoFaces();
    EXPECT_EQ(Live(Camera::pattern,
                   [&](Hand& hand) {
                       EXPECT_TRUE(Within(10s, [&] { return hand.Preview().Shows(kQuestionMark); }));
                       EXPECT_FALSE(ShowsFace(hand));
                       hand.Escape();
                   }),
              ORV_CANCELLED);
}

TEST_F(LiveOperator, ACameraThatIsNotThereOpensNoWindow) {
    for (const int32 index : {-1, -2, 1000, INT_MAX, INT_MIN}) {
        EXPECT_EQ(host.lib.orv_DetectFaceLive(index), ORV_CAPTURE_FAILED) << index;
    }
    EXPECT_EQ(host.lib.orv_DetectFaceLive(cameras.IndexOf(Camera::broken)), ORV_CAPTURE_FAILED);
    EXPECT_EQ(Live(Camera::portrait, [](Hand& hand) { hand.Escape(); }), ORV_CANCELLED) << "another one still opens";
}

TEST_F(LiveOperator, ACameraThatNeverDeliversCanBeCancelled) {
    EXPECT_EQ(Live(Camera::silent,
                   [&](Hand& hand) {
                       std::this_thread::sleep_for(600ms);
                       EXPECT_TRUE(hand.Preview().Shows(kQuestionMark));
                       hand.Click(kPlainFreeze);
                       hand.Click(kPlainFreeze);
                       hand.Click(kCancelButton);
                   }),
              ORV_CANCELLED);
}

TEST_F(LiveOperator, ACameraThatDiesLeavesItsLastPicture) {
    EXPECT_EQ(Live(Camera::mortal,
                   [&](Hand& hand) {
                       hand.TakePicture(L"Orvane  -  Kelmont", "/tmp/m1.bmp");
                       hand.TakePicture(L"Orvane  -  Kelmont", "/tmp/m2.bmp");
                       hand.TakePicture(L"Orvane  -  Kelmont", "/tmp/m3.bmp");
                       EXPECT_TRUE(Within(10s, [&] { return PicturesIn(hand, 1s) == 1; })) << "it does not die";
                       hand.Click(kPlainFreeze);
                       hand.Click(kPlainFreeze);
                       hand.Click(kPlainOk);
                   }),
              ORV_OK);
    ExpectPortrait(); // whether a face stands in it is the camera's affair
}

} // namespace
} // namespace orvane::test
