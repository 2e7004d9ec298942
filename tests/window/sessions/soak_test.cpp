// Many sessions in one process take no more than a few did. ORVANE_SOAK_SESSIONS tells how many; by default few
// enough for every run of the tests.
#include "tests/window/sessions/held.h"
#include "tests/window/sessions/window_host.h"

#include <cstdlib>

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

TEST(Soak, MemoryAndHandlesStayFlat) {
    WindowHost host;
    const HostBlock photo(PictureOf(ScenePicture::face));
    Held before;
    const int sessions = SessionsToRun();
    const int warmUp = sessions / 2; // caches of the toolkit fill, each at its time
    ASSERT_GE(warmUp, 10) << "too few to go every way";
    for (int number = 0; number < sessions && !HasFailure(); ++number) {
        if (number == warmUp) before = HeldByThisProcess();
        RunSession(host, photo, number);
    }
    ASSERT_FALSE(HasFailure()) << "a session went wrong";
    const Held after = HeldByThisProcess();
    std::cout << sessions << " sessions: memory " << before.memory << " -> " << after.memory << " bytes, handles "
              << before.handles << " -> " << after.handles << "\n";
    constexpr int64 kLateCaches = 16;
    EXPECT_LE(after.handles, before.handles + kLateCaches);
#ifndef __SANITIZE_ADDRESS__            // which keeps freed memory back, and looks for leaks by itself
    constexpr int64 kSpread = 12 << 20; // of the allocators, not growing with the number of sessions
    EXPECT_LE(after.memory, before.memory + kSpread);
#endif
}

} // namespace
} // namespace orvane::test
