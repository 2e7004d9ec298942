// Many sessions in one process take no more than a few did. ORVANE_SOAK_SESSIONS tells how many; by default few
// enough for every run of the tests.
#include "tests/window/sessions/cameras.h"
#include "tests/window/sessions/flat.h"
#include "tests/window/sessions/window_host.h"

#include <cstdlib>
#include <functional>

namespace orvane::test {
namespace {

int SessionsToRun() {
    const char* wanted = std::getenv("ORVANE_SOAK_SESSIONS");
    return wanted == nullptr ? 20 : std::atoi(wanted);
}

/// One of the ways through a session, by its number.
void RunSession(WindowHost& host, const HostBlock& photo, int number) {
    constexpr int kWays = 10;
    const auto expect = [&](int32_t result, const std::function<void(Hand&)>& play) {
        EXPECT_EQ(host.Detect(photo, play), result) << "session " << number;
    };
    for (const int action : {ORV_CROP, ORV_REMOVE_BACKGROUND, ORV_CORRECT_COLOUR, ORV_ROTATE}) {
        host.lib.orv_EnableAction(action, 1);
    }
    switch (number % kWays) {
    case 1:
        return expect(ORV_OK, [](Hand& hand) {
            hand.Click(kPlainOk);
            hand.DragSlider(30);
            hand.Click(kTurnOn1);
            hand.Click(kPlainOk);
        });
    case 3:
        return expect(ORV_CANCELLED, [](Hand& hand) {
            hand.Click(kPlainClear);
            hand.Press(60, 40);
            for (int i = 0; i < 20; ++i) hand.Move(60 + 5 * i, 40 + 4 * i);
            hand.Release(160, 140);
            hand.CloseBox();
        });
    case 5:
        return expect(ORV_CANCELLED, [](Hand& hand) {
            hand.StartClick(kAboutButton);
            hand.CloseOthers();
            hand.Escape();
        });
    default:
        return expect(ORV_CANCELLED, [](Hand& hand) { hand.Click(kCancelButton); });
    }
}

TEST(Soak, SessionsOnPicturesKeepNothing) {
    WindowHost host;
    const HostBlock photo(PictureOf(ScenePicture::face));
    const int sessions = SessionsToRun();
    ASSERT_GE(sessions, 20) << "too few to go every way";
    ExpectFlat(sessions, [&](int number) { RunSession(host, photo, number); });
}

/// Half as many: they last longer.
TEST(Soak, LiveSessionsKeepNothing) {
    const Cameras cameras;
    WindowHost host;
    host.lib.orv_EnableAction(ORV_CROP, 1);
    const int32 camera = cameras.IndexOf(Camera::portrait);
    ExpectFlat(SessionsToRun() / 2, [&](int number) {
        const bool ok = number % 2 == 0;
        const int32_t result = host.DetectLive(camera, [&](Hand& hand) {
            if (number % 3 == 0) hand.Click(kPlainFreeze);
            hand.Click(ok ? kPlainOk : kCancelButton);
        });
        EXPECT_EQ(result, ok ? ORV_OK : ORV_CANCELLED) << "session " << number;
    });
}

/// Loads of the library, twice as many, with a session or two and every other time without a release.
TEST(Soak, LibrariesThatComeAndGoKeepNothing) {
    const Cameras cameras;
    const int32 camera = cameras.IndexOf(Camera::portrait);
    const HostBlock photo(PictureOf(ScenePicture::face));
    const LibraryFolder folder;
    WindowHost::PutFiles(folder.Folder());
    const auto cancel = [](Hand& hand) { hand.Click(kCancelButton); };
    ExpectFlat(2 * SessionsToRun(), [&](int number) {
        const LoadedLibrary lib(folder.File());
        EXPECT_EQ(lib.orv_InitDLL(), ORV_OK);
        const auto picture = [&] { return lib.orv_DetectFacePicture(photo.Handle()); };
        const auto live = [&] { return lib.orv_DetectFaceLive(camera); };
        EXPECT_EQ(WindowHost::During(picture, cancel), ORV_CANCELLED);
        if (number % 4 == 0) {
            EXPECT_EQ(WindowHost::During(live, cancel), ORV_CANCELLED);
        }
        if (number % 2 == 0) {
            EXPECT_EQ(lib.orv_ReleaseDLL(), ORV_OK);
        }
    });
}

} // namespace
} // namespace orvane::test
