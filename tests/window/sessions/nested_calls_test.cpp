// A host's handlers, which the window's loop serves, and its other threads call what they like during a detect call:
// what would disturb it is refused, and the session goes on.
#include "tests/window/sessions/cameras.h"
#include "tests/window/sessions/window_host.h"

#include "tests/support/sha256.h"

namespace orvane::test {
namespace {

class NestedCalls : public ::testing::Test {
protected:
    NestedCalls() { SetUpSession(); }

    void SetUpSession() {
        EXPECT_EQ(host.lib.orv_InitDLL(), ORV_OK);
        EXPECT_EQ(host.lib.orv_EnableAction(ORV_CROP, 1), ORV_OK);
        EXPECT_EQ(host.lib.orv_SetSizeOutputImage(120, 160), ORV_OK);
    }
    std::string OutputSum() {
        HostBlock output;
        EXPECT_EQ(host.lib.orv_GetOutputImage(output.Receive()), ORV_OK);
        return Sha256(output.Bytes());
    }
    void ExpectRefused() {
        const HostBlock other(PictureOf(ScenePicture::face));
        EXPECT_EQ(host.lib.orv_InitDLL(), ORV_NO_SESSION);
        EXPECT_EQ(host.lib.orv_DetectFacePicture(other.Handle()), ORV_NO_SESSION);
        EXPECT_EQ(host.lib.orv_DetectFacePicture(nullptr), ORV_NO_SESSION);
        EXPECT_EQ(host.lib.orv_DetectFaceLive(0), ORV_NO_SESSION);
        EXPECT_EQ(host.lib.orv_ReleaseDLL(), ORV_NO_SESSION);
    }
    void ExpectServed() {
        const HostBlock other(PictureOf(ScenePicture::face));
        EXPECT_EQ(host.lib.orv_GetBitDepth(other.Handle()), 24);
        EXPECT_EQ(host.lib.orv_SetLanguageFile("absent.txt"), ORV_BAD_ARGUMENT);
        EXPECT_EQ(host.lib.orv_SetOwnerWindow(nullptr), ORV_NO_SESSION);
        EXPECT_EQ(host.lib.orv_SetVisibleMode(1), ORV_OK);
        EXPECT_EQ(host.lib.orv_SetFaceCropRatio(0.75F), ORV_OK);
        EXPECT_EQ(host.lib.orv_SetSizeOutputImage(120, 160), ORV_OK);
        EXPECT_EQ(host.lib.orv_EnableAction(6, 1), ORV_BAD_ARGUMENT);
    }

    WindowHost host;
    HostBlock photo{PictureOf(ScenePicture::face)};
};

TEST_F(NestedCalls, InAHandlerOfTheHostLeaveTheSessionAsItIs) {
    const auto accept = [](Hand& hand) { hand.Click(kPlainOk); };
    ASSERT_EQ(host.Detect(photo, accept), ORV_OK);
    const std::string undisturbed = OutputSum();
    const int32_t result = host.Detect(photo, [&](Hand& hand) {
        hand.OnWindowsThread([&] {
            for (int times = 0; times < 20; ++times) {
                ExpectRefused();
                ExpectServed();
            }
            HostBlock work;
            EXPECT_EQ(host.lib.orv_GetOutputImage(work.Receive()), ORV_OK) << "the picture as it stands by now";
            photo.Receive(); // frees the block that the call was given
        });
        EXPECT_TRUE(hand.IsOpen());
        hand.Click(kPlainOk);
    });
    EXPECT_EQ(result, ORV_OK);
    EXPECT_EQ(OutputSum(), undisturbed);
    EXPECT_EQ(host.lib.orv_ReleaseDLL(), ORV_OK);
}

TEST_F(NestedCalls, InAHandlerDuringALiveSessionLeaveItAsItIs) {
    const Cameras cameras;
    const int32_t result = host.DetectLive(cameras.IndexOf(Camera::portrait), [&](Hand& hand) {
        for (int times = 0; times < 20; ++times) {
            hand.OnWindowsThread([&] {
                ExpectRefused();
                ExpectServed();
            });
            std::this_thread::sleep_for(std::chrono::milliseconds(20));
        }
        EXPECT_TRUE(hand.IsOpen());
        hand.Click(kPlainOk);
    });
    EXPECT_EQ(result, ORV_OK);
    EXPECT_FALSE(OutputSum().empty());
    EXPECT_EQ(host.lib.orv_ReleaseDLL(), ORV_OK);
}

TEST_F(NestedCalls, OfAnotherThreadAreRefusedAsWell) {
    const int32_t result = host.Detect(photo, [&](Hand& hand) {
        ExpectRefused();
        hand.Click(kPlainOk);
    });
    EXPECT_EQ(result, ORV_OK);
    EXPECT_EQ(host.lib.orv_ReleaseDLL(), ORV_OK);
}

} // namespace
} // namespace orvane::test
