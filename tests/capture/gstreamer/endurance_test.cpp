// Many openings take no more than a few did.
#include "tests/capture/gstreamer/source_fixture.h"

#include <iterator>

namespace orvane::test {
namespace {

using Folder = std::filesystem::directory_iterator;

std::ptrdiff_t Entries(const char* folder) { return std::distance(Folder(folder), Folder()); }

class Endurance : public Source {
protected:
    void OpenAndClose(int times, const std::vector<const char*>& names) {
        for (int round = 0; round < times && !HasFailure(); ++round) {
            const char* name = names[static_cast<std::size_t>(round) % names.size()];
            ASSERT_TRUE(Start(name));
            ASSERT_TRUE(sink_.WaitForFrames(1));
            source_->Close();
        }
    }
};

TEST_F(Endurance, ThreadsAndDescriptorsStayFlat) {
    std::vector<const char*> names = {kPatternCamera, kPortraitCamera, kSecretiveCamera};
    if (Open(kJpegCamera)) names.push_back(kJpegCamera);
    OpenAndClose(8, names);
    const auto threads = Entries("/proc/self/task"), files = Entries("/proc/self/fd");
    OpenAndClose(50, names);
    // The toolkit keeps threads that have nothing to do for a while, as many as were busy at a time.
    constexpr std::ptrdiff_t kAtATime = 3;
    EXPECT_LE(Entries("/proc/self/task"), threads + kAtATime);
    EXPECT_LE(Entries("/proc/self/fd"), files);
    EXPECT_EQ(TestCamerasInUse(), 0);
}

TEST_F(Endurance, FailuresLeaveNothingEither) {
    const auto fail = [&](int times) {
        for (int round = 0; round < times; ++round) {
            EXPECT_FALSE(Open(kBusyCamera));
            EXPECT_FALSE(Open(kRefusingCamera));
            EXPECT_FALSE(Open(kBusyLaterCamera));
        }
    };
    fail(5);
    const auto threads = Entries("/proc/self/task"), files = Entries("/proc/self/fd");
    fail(20);
    constexpr std::ptrdiff_t kAtATime = 3;
    EXPECT_LE(Entries("/proc/self/task"), threads + kAtATime);
    EXPECT_LE(Entries("/proc/self/fd"), files);
}

} // namespace
} // namespace orvane::test
