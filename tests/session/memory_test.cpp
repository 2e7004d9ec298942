// Whole sessions on an exhausted heap: a code, never a crash, and the next session works.
#include "actions/action_settings.h"
#include "tests/session/session_fixture.h"
#include "tests/support/heap_limit.h"
#include "tests/support/host_block.h"
#include "tests/support/pictures.h"

#include <cstdio>
#include <string>
#include <vector>

namespace orvane {
namespace {

class SessionMemory : public test::SessionTest {
protected:
    SessionMemory() {
        session.m_outputWidth = 120;
        session.m_outputHeight = 160;
    }
    int32 Run() {
        ::testing::internal::CaptureStdout(); // refused resizes say so
        g_actionEnabled[kSlotCrop] = 1;
        const int32 result = session.DetectFacePicture(block_.Handle());
        std::fflush(stdout);
        ::testing::internal::GetCapturedStdout();
        return result;
    }
    /// The output's bytes; none without an output.
    std::vector<uint8> Output() const {
        const Bitmap& bitmap = session.m_resultBitmap;
        return bitmap.IsEmpty() ? std::vector<uint8>()
                                : std::vector<uint8>(bitmap.Bits(), bitmap.Bits() + bitmap.Header().biSizeImage);
    }
    /// A process in which no session has run yet.
    void StartAnew() {
        for (ImageBuffer* image :
             {&g_sourceImage, &g_workImage, &g_maskImage, &g_colourStageImage, &g_colourStageMask}) {
            image->Reset();
        }
        session.m_resultBitmap.Delete();
        session.m_detectionMemory.scan.reset();
    }

private:
    test::HostBlock block_{test::SmallFaceScene()};
};

TEST_F(SessionMemory, ExhaustedFromAnyRequestOnTheResultIsOutOfMemory) {
    ASSERT_EQ(Run(), kSuccess);
    const std::vector<uint8> good = Output();
    int32 requests = 0;
    for (bool done = false; !done; ++requests) {
        ASSERT_LT(requests, 10'000);
        StartAnew();
        int32 result;
        {
            const test::HeapLimit limit(requests);
            result = Run();
        }
        done = result == kSuccess;
        if (done) {
            EXPECT_EQ(Output(), good);
        } else {
            ASSERT_EQ(result, kOutOfMemory) << "with " << requests << " requests granted";
            ExpectNoMarks();
            EXPECT_TRUE(session.m_sourceBitmap.IsEmpty());
        }
    }
    EXPECT_GT(requests, 20) << "a session asks for more than that";
}

TEST_F(SessionMemory, OneRefusedRequestGivesACodeOrAPortrait) {
    ASSERT_EQ(Run(), kSuccess);
    const std::vector<uint8> good = Output();
    for (int32 refused = 0; refused < 10'000; ++refused) {
        SCOPED_TRACE("request " + std::to_string(refused) + " refused");
        StartAnew();
        int32 result;
        bool reached;
        {
            const test::HeapFault fault(refused);
            result = Run();
            reached = test::HeapFault::Happened();
        }
        if (result == kSuccess) {
            EXPECT_FALSE(Output().empty());
        }
        if (!reached) {
            EXPECT_EQ(Output(), good);
        }
        // A step of the scan that finds no memory fails as any other step does.
        EXPECT_TRUE(result == kSuccess || result == kOutOfMemory || result == kStepFailed) << result;
        if (!reached) return;
    }
    FAIL() << "the session never came to an end of its requests";
}

TEST_F(SessionMemory, AGoodSessionFollowsAFailedOne) {
    ASSERT_EQ(Run(), kSuccess);
    const std::vector<uint8> good = Output();
    for (const int32 granted : {0, 1, 2, 3, 5, 8, 13, 21, 34, 55}) {
        {
            const test::HeapLimit limit(granted);
            Run();
        }
        EXPECT_EQ(Run(), kSuccess) << "after one with " << granted << " requests granted";
        EXPECT_EQ(Output(), good) << "after one with " << granted << " requests granted";
    }
}

} // namespace
} // namespace orvane
