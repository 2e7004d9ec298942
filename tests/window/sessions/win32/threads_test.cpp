// A host whose threads share a session: each detect call has its window, and its camera, on its own thread.
#include "tests/window/sessions/cameras.h"
#include "tests/window/sessions/window_host.h"

#include <objbase.h>

namespace orvane::test {
namespace {

class HostThreads : public ::testing::Test {
protected:
    HostThreads() { EXPECT_EQ(host.lib.orv_EnableAction(ORV_CROP, 1), ORV_OK); }

    void ExpectPortraits() {
        const auto accept = [](Hand& hand) {
            std::this_thread::sleep_for(std::chrono::milliseconds(600)); // a frame has come
            hand.Click(kPlainOk);
        };
        EXPECT_EQ(host.DetectLive(cameras.IndexOf(Camera::portrait), accept), ORV_OK);
        EXPECT_EQ(host.Detect(photo, accept), ORV_OK);
        HostBlock output;
        EXPECT_EQ(host.lib.orv_GetOutputImage(output.Receive()), ORV_OK);
    }

    const Cameras cameras;
    const HostBlock photo{PictureOf(ScenePicture::face)};
    WindowHost host;
};

TEST_F(HostThreads, ThatKnowNothingOfComAreServed) {
    std::thread([&] { ExpectPortraits(); }).join();
}

TEST_F(HostThreads, OfBothKindsOfApartmentsAreServed) {
    for (const DWORD kind : {COINIT_APARTMENTTHREADED, COINIT_MULTITHREADED}) {
        std::thread([&] {
            EXPECT_EQ(CoInitializeEx(nullptr, kind), S_OK);
            ExpectPortraits();
            CoUninitialize();
        }).join();
    }
}

TEST_F(HostThreads, MayEachDoOneOfTheCalls) {
    host.lib.orv_ReleaseDLL();
    std::thread([&] {
        EXPECT_EQ(host.lib.orv_InitDLL(), ORV_OK);
        EXPECT_EQ(host.lib.orv_EnableAction(ORV_CROP, 1), ORV_OK);
    }).join();
    std::thread([&] { ExpectPortraits(); }).join();
    std::thread([&] { EXPECT_EQ(host.lib.orv_ReleaseDLL(), ORV_OK); }).join();
    EXPECT_EQ(host.lib.orv_ReleaseDLL(), ORV_NO_SESSION);
}

} // namespace
} // namespace orvane::test
