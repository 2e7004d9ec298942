// The exports before, in and after a session, and the settings that outlive one.
#include "tests/exports/exports_fixture.h"

#include <fstream>

namespace orvane {
namespace {

class Lifecycle : public test::ExportsTest {
protected:
    /// Every export that needs a session.
    void ExpectNoSession() {
        EXPECT_EQ(lib.orv_SetLanguageFile("texts.txt"), ORV_NO_SESSION);
        EXPECT_EQ(lib.orv_SetLanguageFile(nullptr), ORV_NO_SESSION);
        EXPECT_EQ(lib.orv_SetOwnerWindow(SomeWindow()), ORV_NO_SESSION);
        EXPECT_EQ(lib.orv_SetOwnerWindow(nullptr), ORV_NO_SESSION);
        EXPECT_EQ(lib.orv_SetVisibleMode(0), ORV_NO_SESSION);
        EXPECT_EQ(lib.orv_SetVisibleMode(1), ORV_NO_SESSION);
        EXPECT_EQ(lib.orv_SetSizeOutputImage(480, 860), ORV_NO_SESSION);
        const test::HostBlock picture(test::SmallFaceScene());
        EXPECT_EQ(lib.orv_DetectFacePicture(picture.Handle()), ORV_NO_SESSION);
        EXPECT_EQ(lib.orv_DetectFacePicture(nullptr), ORV_NO_SESSION);
        EXPECT_EQ(lib.orv_DetectFaceLive(0), ORV_NO_SESSION);
        ExpectNoOutput();
        EXPECT_EQ(lib.orv_GetOutputImage(nullptr), ORV_NO_SESSION);
        EXPECT_EQ(lib.orv_ReleaseDLL(), ORV_NO_SESSION);
    }
    /// Those that do not.
    void ExpectSessionlessWork() {
        EXPECT_EQ(lib.orv_EnableAction(ORV_CROP, 1), ORV_OK);
        EXPECT_EQ(lib.orv_EnableAction(6, 1), ORV_BAD_ARGUMENT);
        EXPECT_EQ(lib.orv_SetFaceCropRatio(0.75F), ORV_OK);
        EXPECT_EQ(lib.orv_SetFaceCropRatio(0.0F), ORV_BAD_ARGUMENT);
        EXPECT_EQ(lib.orv_SetFaceCropRatio(0.75F), ORV_OK);
        EXPECT_EQ(lib.orv_GetBitDepth(test::HostBlock(test::BlankScene(4, 4)).Handle()), 24);
    }

    static orv_Window SomeWindow() {
#ifdef _WIN32
        return GetDesktopWindow();
#else
        static int window;
        return &window;
#endif
    }
};

TEST_F(Lifecycle, WithoutASessionMostExportsAreRefused) {
    ExpectNoSession();
    ExpectSessionlessWork();
}

TEST_F(Lifecycle, AfterReleaseTheyAreRefusedAgain) {
    OpenHidden();
    ASSERT_EQ(Detect(test::SmallFaceScene()), ORV_OK);
    EXPECT_EQ(lib.orv_ReleaseDLL(), ORV_OK);
    ExpectNoSession();
    ExpectSessionlessWork();
}

TEST_F(Lifecycle, InASessionTheSettersWork) {
    ASSERT_EQ(lib.orv_InitDLL(), ORV_OK);
    EXPECT_EQ(lib.orv_SetOwnerWindow(SomeWindow()), ORV_OK);
    EXPECT_EQ(lib.orv_SetOwnerWindow(nullptr), ORV_NO_SESSION);
    EXPECT_EQ(lib.orv_SetVisibleMode(1), ORV_OK);
    EXPECT_EQ(lib.orv_SetVisibleMode(0), ORV_OK);
    EXPECT_EQ(lib.orv_SetSizeOutputImage(480, 860), ORV_OK);
    ExpectSessionlessWork();
    EXPECT_EQ(lib.orv_ReleaseDLL(), ORV_OK);
}

TEST_F(Lifecycle, ReleasingTwiceDoesNoHarm) {
    EXPECT_EQ(lib.orv_ReleaseDLL(), ORV_NO_SESSION);
    ASSERT_EQ(lib.orv_InitDLL(), ORV_OK);
    EXPECT_EQ(lib.orv_ReleaseDLL(), ORV_OK);
    EXPECT_EQ(lib.orv_ReleaseDLL(), ORV_NO_SESSION);
}

TEST_F(Lifecycle, SessionsMayFollowEachOther) {
    for (int i = 0; i < 3; ++i) {
        OpenHidden();
        EXPECT_EQ(Detect(test::SmallFaceScene()), ORV_OK);
        EXPECT_EQ(Detect(test::BlankScene(160, 120)), ORV_NO_FACE) << "two detections of one session";
        EXPECT_EQ(Detect(test::SmallFaceScene()), ORV_OK);
        EXPECT_EQ(lib.orv_ReleaseDLL(), ORV_OK);
    }
}

TEST_F(Lifecycle, AnOutputGoesWithItsSession) {
    OpenHidden();
    ExpectNoOutput();
    ASSERT_EQ(Detect(test::SmallFaceScene()), ORV_OK);
    EXPECT_GT(OutputHeader().width, 0);
    EXPECT_EQ(lib.orv_ReleaseDLL(), ORV_OK);
    ASSERT_EQ(lib.orv_InitDLL(), ORV_OK);
    ExpectNoOutput();
}

TEST_F(Lifecycle, FlagsSetBeforeInitAreLost) {
    EXPECT_EQ(lib.orv_EnableAction(ORV_CROP, 1), ORV_OK);
    ASSERT_EQ(lib.orv_InitDLL(), ORV_OK);
    ASSERT_EQ(lib.orv_SetVisibleMode(0), ORV_OK);
    ASSERT_EQ(Detect(test::SmallFaceScene()), ORV_OK);
    EXPECT_EQ(OutputHeader().width, 160) << "without the crop the output has the source's size";
}

TEST_F(Lifecycle, InitOnAnOpenSessionClearsTheFlagsAndKeepsTheRest) {
    OpenHidden();
    ASSERT_EQ(lib.orv_SetSizeOutputImage(120, 160), ORV_OK);
    ASSERT_EQ(Detect(test::SmallFaceScene()), ORV_OK);
    const test::DibHeader cropped = OutputHeader();
    EXPECT_NE(cropped.width, 160);

    PutClassifier("no classifier any more");
    EXPECT_EQ(lib.orv_InitDLL(), ORV_OK);
    EXPECT_EQ(OutputHeader().width, cropped.width) << "the output stays";
    EXPECT_EQ(Detect(test::SmallFaceScene()), ORV_OK) << "the classifier is read once a session";
    EXPECT_EQ(OutputHeader().width, 160) << "the crop is off";

    ASSERT_EQ(lib.orv_EnableAction(ORV_CROP, 1), ORV_OK);
    EXPECT_EQ(Detect(test::SmallFaceScene()), ORV_OK);
    EXPECT_EQ(OutputHeader().width, cropped.width) << "the requested size stays";
    EXPECT_EQ(lib.orv_ReleaseDLL(), ORV_OK);
    EXPECT_EQ(lib.orv_ReleaseDLL(), ORV_NO_SESSION) << "two inits are one session";
}

TEST_F(Lifecycle, ANewSessionReadsTheClassifierAnew) {
    OpenHidden();
    EXPECT_EQ(Detect(test::SmallFaceScene()), ORV_OK);
    EXPECT_EQ(lib.orv_ReleaseDLL(), ORV_OK);
    PutClassifier("no classifier any more");
    OpenHidden();
    EXPECT_EQ(Detect(test::SmallFaceScene()), ORV_NO_CLASSIFIER);
    EXPECT_EQ(lib.orv_ReleaseDLL(), ORV_OK);
    PutClassifier(test::FaceCascade().Bytes());
    OpenHidden();
    EXPECT_EQ(Detect(test::SmallFaceScene()), ORV_OK);
}

TEST_F(Lifecycle, TheCropRatioOutlivesTheSessionAndTheRequestedSizeDoesNot) {
    OpenHidden();
    // So large a ratio takes the whole picture, less its first column and row: 636 by 479 of 640 by 480.
    ASSERT_EQ(lib.orv_SetFaceCropRatio(20.0F), ORV_OK);
    ASSERT_EQ(lib.orv_SetSizeOutputImage(120, 160), ORV_OK);
    ASSERT_EQ(Detect(test::SmallFaceScene()), ORV_OK);
    EXPECT_EQ(OutputHeader().width, 212);
    EXPECT_EQ(OutputHeader().height, 160);
    EXPECT_EQ(lib.orv_ReleaseDLL(), ORV_OK);

    OpenHidden();
    ASSERT_EQ(Detect(test::SmallFaceScene()), ORV_OK);
    EXPECT_EQ(OutputHeader().width, 1142) << "860 rows in the proportions of 636 by 479";
    EXPECT_EQ(OutputHeader().height, 860);
}

TEST_F(Lifecycle, ALanguageFileLiesBesideTheLibrary) {
    std::ofstream(lib.Folder() / "texts.txt", std::ios::binary) << "3 Gut\n";
    ASSERT_EQ(lib.orv_InitDLL(), ORV_OK);
    EXPECT_EQ(lib.orv_SetLanguageFile("texts.txt"), ORV_OK);
    EXPECT_EQ(lib.orv_SetLanguageFile("absent.txt"), ORV_BAD_ARGUMENT);
    EXPECT_EQ(lib.orv_SetLanguageFile((lib.Folder() / "texts.txt").string().c_str()), ORV_BAD_ARGUMENT);
    EXPECT_EQ(lib.orv_SetLanguageFile(""), ORV_BAD_ARGUMENT);
    EXPECT_EQ(lib.orv_SetLanguageFile(nullptr), ORV_BAD_ARGUMENT);
}

#ifdef _WIN32
TEST(LifecycleUnderAnotherName, TheLibraryDoesNotFindItself) {
    const test::HostLibrary lib("Other.dll");
    EXPECT_EQ(lib.orv_InitDLL(), ORV_NO_SESSION);
    EXPECT_EQ(lib.orv_SetVisibleMode(0), ORV_NO_SESSION);
    EXPECT_EQ(lib.orv_ReleaseDLL(), ORV_NO_SESSION) << "and a release after a failed init does no harm";
}
#endif

} // namespace
} // namespace orvane
