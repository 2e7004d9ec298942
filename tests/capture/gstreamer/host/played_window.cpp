// A module in the place of the operator's window, since live portraits are made before an operator's eyes only: an
// operator who looks at three pictures and cancels.
#include "tests/support/fake_window.h"

#include <chrono>
#include <thread>

using namespace orvane;
using namespace orvane::test;

namespace {

void Play(FakeWindow& window) {
    constexpr int kPictures = 3, kRounds = 2000;
    int pictures = 0;
    for (int round = 0; round < kRounds && pictures < kPictures; ++round) {
        std::this_thread::sleep_for(std::chrono::milliseconds(10));
        pictures += window.Pump();
    }
    std::printf("%s\n", pictures >= kPictures ? "pictures" : "no pictures");
    window.Click(kCancelButton);
}

} // namespace

extern "C" __attribute__((visibility("default"))) void* orvane_window_system(int32 version) {
    static FakeWindowSystem windows;
    windows.script = Play;
    return version == kWindowSeamVersion ? &windows : nullptr;
}
