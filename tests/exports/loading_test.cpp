// A host that loads and unloads the library again and again keeps nothing of it, however it ends its sessions.
#include "tests/exports/exports_fixture.h"
#include "tests/window/sessions/held.h"

#include <fstream>
#include <functional>

namespace orvane {
namespace {

using test::LoadedLibrary;

#ifdef __SANITIZE_ADDRESS__ // which looks for leaks by itself
constexpr bool kKeepsFreedMemory = true;
#else
constexpr bool kKeepsFreedMemory = false;
#endif

/// Whether the process has a part of the file in its memory.
bool IsLoaded(const std::filesystem::path& file) {
#ifdef _WIN32
    return GetModuleHandleW(file.c_str()) != nullptr;
#else
    std::ifstream maps("/proc/self/maps");
    for (std::string line; std::getline(maps, line);) {
        if (line.ends_with(file.filename().string()) && line.find(file.parent_path().filename()) != std::string::npos) {
            return true;
        }
    }
    return false;
#endif
}

class Loading : public ::testing::Test {
protected:
    Loading() { EXPECT_TRUE(test::WriteClassifier(folder_.Folder(), test::FaceCascade().Bytes())); }

    /// The classifier as it is delivered: it knows no drawn faces, and is large enough to be missed.
    void PutDeliveredClassifier() {
        std::filesystem::copy_file(ORVANE_CLASSIFIER, folder_.Folder() / "Orvane.dat",
                                   std::filesystem::copy_options::overwrite_existing);
    }

    static void RunSession(const LoadedLibrary& library, std::int32_t expected = ORV_OK) {
        ASSERT_EQ(library.orv_InitDLL(), ORV_OK);
        ASSERT_EQ(library.orv_SetVisibleMode(0), ORV_OK);
        ASSERT_EQ(library.orv_EnableAction(ORV_CROP, 1), ORV_OK);
        ASSERT_EQ(library.orv_SetSizeOutputImage(120, 160), ORV_OK);
        EXPECT_EQ(library.orv_DetectFacePicture(test::HostBlock(test::SmallFaceScene()).Handle()), expected);
        test::HostBlock output;
        EXPECT_EQ(library.orv_GetOutputImage(output.Receive()), ORV_OK);
    }

    void LoadAndUse(int times, const std::function<void(const LoadedLibrary&)>& use) {
        for (int number = 0; number < times; ++number) {
            {
                const LoadedLibrary library(folder_.File());
                ASSERT_TRUE(IsLoaded(folder_.File()));
                use(library);
            }
            ASSERT_FALSE(HasFailure()) << "time " << number;
            ASSERT_FALSE(IsLoaded(folder_.File())) << "it stays in memory";
        }
    }

    /// Loads the library a hundred times, and looks at what the process holds once its own caches are full.
    void ExpectNothingStays(const std::function<void(const LoadedLibrary&)>& use) {
        test::HeldByThisProcess(); // the first look takes megabytes under Wine, and keeps them
        ASSERT_NO_FATAL_FAILURE(LoadAndUse(20, use));
        const test::Held before = test::HeldByThisProcess();
        // What is left behind each time, 40 kilobytes or more of it, would be seen in every hundred; a heap that grows
        // leaps in one of them.
        constexpr int64 kSpread = 4'000'000;
        const int most = kKeepsFreedMemory ? 1 : 3;
        int64 grown = 0;
        for (int hundreds = 0; hundreds < most; ++hundreds) {
            const int64 memory = test::HeldByThisProcess().memory;
            ASSERT_NO_FATAL_FAILURE(LoadAndUse(100, use));
            grown = test::HeldByThisProcess().memory - memory;
            if (grown <= kSpread) break;
        }
        const test::Held after = test::HeldByThisProcess();
        EXPECT_LE(after.handles, before.handles);
        EXPECT_LE(after.threads, before.threads);
        if (!kKeepsFreedMemory) {
            EXPECT_LE(grown, kSpread);
        }
    }

    test::LibraryFolder folder_;
};

TEST_F(Loading, AHundredTimesWithASessionEachLeavesNothing) {
    ExpectNothingStays([](const LoadedLibrary& library) {
        RunSession(library);
        EXPECT_EQ(library.orv_ReleaseDLL(), ORV_OK);
    });
}

TEST_F(Loading, AHundredTimesWithoutAReleaseLeavesNothing) {
    PutDeliveredClassifier();
    ExpectNothingStays([](const LoadedLibrary& library) { RunSession(library, ORV_NO_FACE); });
}

TEST_F(Loading, AHundredTimesWithReleasesTooManyLeavesNothing) {
    ExpectNothingStays([](const LoadedLibrary& library) {
        EXPECT_EQ(library.orv_ReleaseDLL(), ORV_NO_SESSION);
        RunSession(library);
        EXPECT_EQ(library.orv_ReleaseDLL(), ORV_OK);
        EXPECT_EQ(library.orv_ReleaseDLL(), ORV_NO_SESSION);
    });
}

TEST_F(Loading, AHundredTimesForNothingLeavesNothing) {
    ExpectNothingStays([](const LoadedLibrary&) {});
}

} // namespace
} // namespace orvane
