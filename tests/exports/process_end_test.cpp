// A process that ends with its session open ends with the code that the host gave it, wherever the library is.
#include "tests/exports/exports_fixture.h"
#include "tests/support/temp_root.h"

#include <cstdlib>
#include <thread>

namespace orvane {
namespace {

constexpr int kCode = 7;

/// Each test's statement runs in a process of its own.
class ProcessEnd : test::TempRoot, public test::ExportsTest {
protected:
    ProcessEnd() { GTEST_FLAG_SET(death_test_style, "threadsafe"); }

    void OpenWithAnOutput() {
        OpenHidden();
        EXPECT_EQ(Detect(test::SmallFaceScene()), ORV_OK);
    }
    /// Detections until they are refused, on a thread that nobody waits for.
    void KeepDetecting() {
        std::thread([this] {
            const test::HostBlock photo(test::FaceScene(640, 480, 200, 150, 160));
            while (lib.orv_DetectFacePicture(photo.Handle()) != ORV_NO_SESSION) {
            }
        }).detach();
        std::this_thread::sleep_for(std::chrono::milliseconds(50)); // right into one
    }
};

TEST_F(ProcessEnd, WithASessionOpenKeepsTheHostsCode) {
    EXPECT_EXIT(
        {
            OpenWithAnOutput();
            std::exit(kCode);
        },
        ::testing::ExitedWithCode(kCode), "");
}

TEST_F(ProcessEnd, OnAnotherThreadThanTheSessionsKeepsTheHostsCode) {
    EXPECT_EXIT(
        {
            std::thread([&] { OpenWithAnOutput(); }).join();
            std::exit(kCode);
        },
        ::testing::ExitedWithCode(kCode), "");
}

TEST_F(ProcessEnd, AfterAReleaseKeepsTheHostsCode) {
    EXPECT_EXIT(
        {
            OpenWithAnOutput();
            lib.orv_ReleaseDLL();
            std::exit(kCode);
        },
        ::testing::ExitedWithCode(kCode), "");
}

TEST_F(ProcessEnd, DuringADetectionOfAnotherThreadKeepsTheHostsCode) {
    for (int times = 0; times < 3; ++times) {
        EXPECT_EXIT(
            {
                OpenWithAnOutput();
                KeepDetecting();
                std::exit(kCode);
            },
            ::testing::ExitedWithCode(kCode), "");
    }
}

#ifndef _WIN32
TEST_F(ProcessEnd, AtOnceKeepsTheHostsCode) {
    EXPECT_EXIT(
        {
            OpenWithAnOutput();
            KeepDetecting();
            std::_Exit(kCode);
        },
        ::testing::ExitedWithCode(kCode), "");
}
#endif

} // namespace
} // namespace orvane
