// The exports inside the test program, where the test commands what no host can: the choice of the
// primitives (the linker leads its calls here) and the general heap.
#define ORV_API
#include "orvane/orvane.h"

#include "detect/cascade_detector.h"
#include "detect/classifier_file.h"
#include "primitives/dispatch.h"
#include "session/session_state.h"
#include "tests/support/fresh_session.h"
#include "tests/support/host_block.h"
#include "tests/support/memory_fault.h"
#ifdef _WIN32
#include "tests/exports/host_library.h"
#endif

#include <gtest/gtest.h>

#include <cstdint>

namespace {

int g_selection = 0; // what the choice of the primitives answers

} // namespace

// The linker leads every call of orvane::SelectPrimitiveColumn here.
extern "C" std::int32_t __wrap__ZN6orvane21SelectPrimitiveColumnEv();
extern "C" std::int32_t __wrap__ZN6orvane21SelectPrimitiveColumnEv() { return g_selection; }

namespace orvane {
namespace {

class ExportsInside : public ::testing::Test {
protected:
    ~ExportsInside() override {
        g_selection = 0;
        orv_ReleaseDLL();
    }

private:
#ifdef _WIN32
    test::HostLibrary named_; // the library finds its folder by the name of this module
#endif
    test::FreshSession fresh_;
};

using HalfSession = ExportsInside;
using ExhaustedMemory = ExportsInside;

TEST_F(HalfSession, WithoutPrimitivesThereIsNoSessionButAClassifier) {
    g_selection = -1;
    EXPECT_EQ(orv_InitDLL(), ORV_NO_SESSION);
    EXPECT_NE(g_detectorParams, nullptr);
    EXPECT_EQ(g_dialog, nullptr);
    EXPECT_EQ(orv_SetVisibleMode(0), ORV_NO_SESSION);
    EXPECT_EQ(orv_SetSizeOutputImage(480, 860), ORV_NO_SESSION);
    EXPECT_EQ(orv_SetLanguageFile("texts.txt"), ORV_NO_SESSION);
    EXPECT_EQ(orv_DetectFacePicture(test::HostBlock(test::BlankScene(40, 30)).Handle()), ORV_NO_SESSION);
    EXPECT_EQ(orv_DetectFaceLive(0), ORV_NO_SESSION);
    orv_Handle out = nullptr;
    EXPECT_EQ(orv_GetOutputImage(&out), ORV_NO_SESSION);
}

TEST_F(HalfSession, ALaterInitGoesOnFromThereAndKeepsTheClassifier) {
    g_selection = -1;
    ASSERT_EQ(orv_InitDLL(), ORV_NO_SESSION);
    const DetectorParams* params = g_detectorParams.get();
    ASSERT_EQ(orv_InitDLL(), ORV_NO_SESSION);
    g_selection = 0;
    EXPECT_EQ(orv_InitDLL(), ORV_OK);
    EXPECT_EQ(g_detectorParams.get(), params);
    EXPECT_EQ(orv_SetVisibleMode(0), ORV_OK);
}

TEST_F(HalfSession, IsReleasedOnce) {
    g_selection = -1;
    ASSERT_EQ(orv_InitDLL(), ORV_NO_SESSION);
    EXPECT_EQ(orv_ReleaseDLL(), ORV_OK);
    EXPECT_EQ(g_detectorParams, nullptr);
    EXPECT_EQ(orv_ReleaseDLL(), ORV_NO_SESSION);
}

TEST_F(HalfSession, AnOpenSessionOutlivesAFailedInitWithItsFlagsClear) {
    ASSERT_EQ(orv_InitDLL(), ORV_OK);
    ASSERT_EQ(orv_EnableAction(ORV_CROP, 1), ORV_OK);
    const COrvQuickViewDlg* dialog = g_dialog.get();
    g_selection = -1;
    EXPECT_EQ(orv_InitDLL(), ORV_NO_SESSION);
    EXPECT_EQ(g_dialog.get(), dialog);
    EXPECT_EQ(g_actionEnabled, ActionFlags{});
    EXPECT_EQ(orv_SetVisibleMode(0), ORV_OK);
}

TEST_F(ExportsInside, InitSetsTheFreshDetectorAndThePreviewsBound) {
    ASSERT_EQ(orv_InitDLL(), ORV_OK);
    ASSERT_NE(g_dialog, nullptr);
    EXPECT_EQ(g_dialog->m_previewWidth, 400);
    EXPECT_EQ(g_dialog->m_previewHeight, 400);
    EXPECT_EQ(g_dialog->m_previewMaxWidth, 400);
    EXPECT_EQ(g_dialog->m_previewMaxHeight, 400);
    EXPECT_EQ(g_detectorParams->minFaceSize, 0);
    EXPECT_EQ(g_detectorParams->reservedSize, 0);
    EXPECT_EQ(g_detectorParams->scaleFactor, 1.05F);
    EXPECT_EQ(g_detectorParams->pruneMode, 4);
    EXPECT_EQ(g_detectorParams->passTag, 0);

    g_dialog->m_previewMaxWidth = g_dialog->m_previewWidth = 90;
    ASSERT_EQ(orv_InitDLL(), ORV_OK);
    EXPECT_EQ(g_dialog->m_previewMaxWidth, 400) << "a second init resets the bound";
    EXPECT_EQ(g_dialog->m_previewWidth, 400);
}

TEST_F(ExportsInside, TheCropRatioSetsTheFactorsByThePresentGeometry) {
    EXPECT_EQ(orv_SetFaceCropRatio(1.0F), ORV_OK);
    EXPECT_EQ(g_cropHeightFactor, 1.0F);
    EXPECT_EQ(g_cropWidthFactor, static_cast<float>(240.0 / 430.0));
    EXPECT_EQ(g_cropRatio, 1.0F);
    EXPECT_EQ(orv_SetFaceCropRatio(-2.0F), ORV_BAD_ARGUMENT);
    EXPECT_EQ(g_cropHeightFactor, 1.0F) << "the factors stay";
    EXPECT_EQ(g_cropWidthFactor, static_cast<float>(240.0 / 430.0));
    EXPECT_EQ(g_cropRatio, -2.0F) << "the ratio does not";
}

TEST_F(ExportsInside, EnableActionSetsTheFlagsItNames) {
    EXPECT_EQ(orv_EnableAction(ORV_ALL_ACTIONS, 1), ORV_OK);
    EXPECT_EQ(g_actionEnabled, (ActionFlags{1, 1, 1, 1, 1, 1}));
    EXPECT_EQ(orv_EnableAction(ORV_ALL_ACTIONS, 0), ORV_OK);
    EXPECT_EQ(orv_EnableAction(ORV_CORRECT_COLOUR, 1), ORV_OK);
    EXPECT_EQ(g_actionEnabled, (ActionFlags{0, 0, 1, 0, 0, 0}));
    EXPECT_EQ(orv_EnableAction(ORV_SCALE_OUTPUT, 1), ORV_OK);
    EXPECT_EQ(orv_EnableAction(6, 1), ORV_BAD_ARGUMENT);
    EXPECT_EQ(g_actionEnabled, (ActionFlags{0, 0, 1, 0, 0, 1}));
}

TEST_F(ExportsInside, TheWidthOfAFinalRunIsAMultipleOfFour) {
    ASSERT_EQ(orv_InitDLL(), ORV_OK);
    ASSERT_EQ(orv_SetSizeOutputImage(481, 500), ORV_OK);
    EXPECT_EQ(orv_DetectFaceLive(0), ORV_CAPTURE_FAILED); // the live road sets the geometry first
    EXPECT_EQ(g_outputWidth, 480);
    EXPECT_EQ(g_outputHeight, 500);
}

TEST_F(ExhaustedMemory, AtInitGivesOutOfMemoryAndLaterInitsWork) {
    ASSERT_EQ(orv_InitDLL(), ORV_OK);
    const std::int32_t goodLoad = g_detectorParams->loadStatus;
    bool failed = false, done = false;
    for (int grants = 0; grants < 1000 && !done; ++grants) {
        SCOPED_TRACE(::testing::Message() << grants << " requests granted");
        orv_ReleaseDLL();
        std::int32_t result;
        {
            const test::MemoryFault fault(grants, test::Fault::lasting);
            result = orv_InitDLL();
            done = !test::MemoryFault::Happened();
        }
        EXPECT_TRUE(result == ORV_OK || result == ORV_NO_MEMORY) << result;
        if (result == ORV_OK) continue;
        failed = true;
        EXPECT_EQ(g_dialog, nullptr);
        ASSERT_EQ(orv_InitDLL(), ORV_OK);
        EXPECT_EQ(g_detectorParams->loadStatus, goodLoad);
        EXPECT_EQ(g_classifier.windowWidth > 0, goodLoad == 0) << "a classifier that counts as loaded is there";
    }
    EXPECT_TRUE(failed);
    EXPECT_TRUE(done);
}

TEST_F(ExhaustedMemory, InASessionGivesACode) {
    ASSERT_EQ(orv_InitDLL(), ORV_OK);
    ASSERT_EQ(orv_SetVisibleMode(0), ORV_OK);
    const test::HostBlock block(test::FaceScene(160, 120, 60, 40, 40));
    const std::int32_t good = orv_DetectFacePicture(block.Handle());
    bool done = false;
    for (int grants = 0; grants < 1000 && !done; ++grants) {
        std::int32_t result;
        {
            const test::MemoryFault fault(grants, test::Fault::lasting);
            result = orv_DetectFacePicture(block.Handle());
            done = !test::MemoryFault::Happened();
        }
        EXPECT_TRUE(result == good || result == ORV_NO_MEMORY) << result << " with " << grants << " requests granted";
        EXPECT_EQ(orv_DetectFacePicture(block.Handle()), good);
    }
    EXPECT_TRUE(done);
    {
        const test::MemoryFault none(0, test::Fault::lasting);
        EXPECT_EQ(orv_SetLanguageFile("a name that is long enough to need memory of its own.txt"), ORV_NO_MEMORY);
    }
    EXPECT_EQ(orv_SetLanguageFile("absent.txt"), ORV_BAD_ARGUMENT);
}

} // namespace
} // namespace orvane
