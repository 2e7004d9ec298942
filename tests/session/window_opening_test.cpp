// How the window opens, what it shows then, and which sessions open one.
#include "image/packed_dib.h"
#include "tests/session/window_fixture.h"

#include <algorithm>
#include <new>
#include <set>
#include <string>

namespace orvane {
namespace {

using test::FakeWindow;

class WindowOpening : public test::WindowTest {
protected:
    /// Where a call stands in the log; fails the test where it does not.
    std::ptrdiff_t Place(const std::string& line) const {
        const auto found = std::find(windows.log.begin(), windows.log.end(), line);
        EXPECT_NE(found, windows.log.end()) << "never: " << line;
        return found - windows.log.begin();
    }
    static std::set<int32> Shown(const FakeWindow& window) {
        std::set<int32> shown;
        for (const auto& [id, control] : window.Controls()) {
            if (control.shown) shown.insert(id);
        }
        return shown;
    }
};

TEST_F(WindowOpening, TheMarkingStageShowsPreviewOkClearCancelAndAbout) {
    Run([](FakeWindow& window) {
        EXPECT_EQ(Shown(window), (std::set<int32>{kPreview, kPlainOk, kPlainClear, kCancelButton, kAboutButton}));
        for (const int32 id : Shown(window)) EXPECT_TRUE(window.IsEnabled(id)) << id;
    });
}

TEST_F(WindowOpening, WithoutAFaceThePromptShowsAndOkAndClearAreDisabled) {
    Run(test::BlankScene(160, 120), [this](FakeWindow& window) {
        EXPECT_EQ(Shown(window),
                  (std::set<int32>{kPrompt, kPreview, kPlainOk, kPlainClear, kCancelButton, kAboutButton}));
        EXPECT_FALSE(window.IsEnabled(kPlainOk));
        EXPECT_FALSE(window.IsEnabled(kPlainClear));
        EXPECT_TRUE(window.IsEnabled(kCancelButton));
        ExpectNoAnchors();
    });
}

TEST_F(WindowOpening, ASecondSessionAfterOneWithoutAFaceStartsEnabled) {
    Run(test::BlankScene(160, 120), [](FakeWindow&) {});
    Run([](FakeWindow& window) {
        EXPECT_TRUE(window.CanUse(kPlainOk));
        EXPECT_TRUE(window.CanUse(kPlainClear));
        EXPECT_FALSE(window.IsShown(kPrompt));
    });
}

TEST_F(WindowOpening, TheControlsAreSetUpInTheirOrder) {
    session.m_tolerance = 37;
    Run([](FakeWindow& window) {
        EXPECT_EQ(window.SliderLeast(), 0);
        EXPECT_EQ(window.SliderGreatest(), 99);
        EXPECT_EQ(window.Slider(), 37);
        EXPECT_EQ(window.Text(kToleranceEdit), L"37");
        EXPECT_EQ(window.Text(kRotationEdit), L"0");
    });
    const char* const kOrder[] = {"title Orvane  -  Kelmont",
                                  "has 1005",
                                  "hide 1005",
                                  "range 0 99",
                                  "slider 37",
                                  "show 1016",
                                  "focus 1015",
                                  "show 1015",
                                  "text 1003 37",
                                  "text 1024 0"};
    for (std::size_t i = 1; i < std::size(kOrder); ++i) EXPECT_LT(Place(kOrder[i - 1]), Place(kOrder[i])) << kOrder[i];
    EXPECT_EQ(windows.Count("disable 1016"), 0);
}

TEST_F(WindowOpening, SettingTheEditsUpRunsNoPipeline) {
    session.m_tolerance = 37;
    g_actionEnabled[kSlotCrop] = 1;
    Run([this](FakeWindow&) {
        EXPECT_EQ(session.m_tolerance, 37);
        EXPECT_EQ(session.m_resultBitmap.Width(), 640) << "still the whole work picture";
        EXPECT_EQ(windows.Count("cursor wait"), 0);
    });
}

TEST_F(WindowOpening, TheAnimationBeginsWhenTheWindowShows) {
    windows.beforeInit = [](FakeWindow& window) {
        window.events.OnShowWindow(); // not open yet: nothing
        EXPECT_EQ(window.Waiting(), 0U);
    };
    Run([](FakeWindow& window) { EXPECT_EQ(window.Waiting(), 1U); });
}

TEST_F(WindowOpening, TheAnimationIsNotAskedForOnceTheSessionIsHidden) {
    Run([this](FakeWindow& window) {
        session.m_visible = false; // by a host's call from within its own messages
        window.events.OnShowWindow();
        EXPECT_EQ(window.Waiting(), 1U) << "the one of the opening";
        session.m_visible = true;
        window.events.OnShowWindow();
        EXPECT_EQ(window.Waiting(), 2U);
    });
}

TEST_F(WindowOpening, AWindowWithoutTheToleranceSliderIsLeftAsItIs) {
    windows.hasSlider = false;
    windows.beforeInit = [](FakeWindow& window) { EXPECT_FALSE(window.HasControl(kToleranceSlider)); };
    EXPECT_EQ(Run([this](FakeWindow& window) {
                  EXPECT_EQ(windows.log.back(), "has 1005") << "nothing further happens";
                  EXPECT_EQ(session.BeginSession(), kStepFailed);
                  window.CloseBox();
              }),
              kCancelled);
}

TEST_F(WindowOpening, PlainButtonsServeWithoutSkins) {
    Run([this](FakeWindow& window) {
        EXPECT_EQ(session.m_okButton, kPlainOk);
        EXPECT_EQ(session.m_clearButton, kPlainClear);
        EXPECT_EQ(session.m_colorButton, kPlainColor);
        EXPECT_EQ(window.skinFolder, files.Path());
    });
    EXPECT_LT(Place("skin 1008 Cancel.xyz 16777215"), Place("skin 1006 Contrast.bmp 16777215"));
    EXPECT_LT(Place("skin 1006 Contrast.bmp 16777215"), Place("hide 1015"));
    EXPECT_LT(Place("hide 1015"), Place("skin 1007 Ok.bmp 16777215"));
    EXPECT_EQ(windows.Count("reset skin 1007"), 0);
    EXPECT_EQ(windows.Count("default 1015"), 1);
}

TEST_F(WindowOpening, SkinnedButtonsTakeThePlacesOfTheirTwins) {
    windows.skins = {kSkinOk, kSkinClear, kSkinColor};
    g_actionEnabled = {1, 0, 1, 0, 0, 0};
    EXPECT_EQ(Run([this](FakeWindow& window) {
                  EXPECT_TRUE(window.CanUse(kSkinOk));
                  EXPECT_TRUE(window.CanUse(kSkinClear));
                  EXPECT_FALSE(window.IsShown(kSkinColor)) << "not before the adjusting stage";
                  for (const int32 id : {kPlainOk, kPlainClear, kPlainColor}) EXPECT_FALSE(window.IsShown(id)) << id;
                  window.Enter();
                  EXPECT_EQ(session.m_stage, 2) << "the Enter key clicks the button in use";
                  EXPECT_TRUE(window.CanUse(kSkinColor));
                  EXPECT_FALSE(window.IsShown(kSkinClear));
                  EXPECT_FALSE(window.IsEnabled(kSkinClear));
                  for (const int32 id : {kPlainOk, kPlainClear, kPlainColor}) EXPECT_FALSE(window.IsShown(id)) << id;
                  window.Click(kSkinColor);
                  EXPECT_EQ(g_actionEnabled[kSlotColour], 0);
                  window.Click(kSkinOk);
              }),
              kSuccess);
    for (const char* call : {"reset skin 1007", "default 1007", "focus 1007", "move 1007 to 1015", "move 1008 to 1016",
                             "move 1006 to 1017"}) {
        EXPECT_EQ(windows.Count(call), 1) << call;
    }
}

TEST_F(WindowOpening, EachSkinIsTriedForItself) {
    for (const int32 skin : {kSkinOk, kSkinClear, kSkinColor}) {
        windows.skins = {skin};
        Run([this, skin](FakeWindow&) {
            EXPECT_EQ(session.m_okButton == kSkinOk, skin == kSkinOk);
            EXPECT_EQ(session.m_clearButton == kSkinClear, skin == kSkinClear);
            EXPECT_EQ(session.m_colorButton == kSkinColor, skin == kSkinColor);
        });
    }
    windows.skins.clear();
    Run([this](FakeWindow&) { EXPECT_EQ(session.m_okButton, kPlainOk) << "a skin that is gone leaves no trace"; });
}

TEST_F(WindowOpening, TheOwnerGoesToTheWindow) {
    int owner = 0;
    session.m_ownerWindow = &owner;
    Run([](FakeWindow&) {});
    EXPECT_EQ(windows.owners, std::vector<void*>{&owner});
}

TEST_F(WindowOpening, AHiddenSessionWithAFaceOpensNoWindow) {
    session.m_visible = false;
    EXPECT_EQ(Run([](FakeWindow&) { ADD_FAILURE() << "a window opened"; }), kSuccess);
    EXPECT_EQ(windows.Count("create"), 0);
    EXPECT_EQ(windows.confirmations.size(), 1U) << "the face is confirmed all the same";
    EXPECT_FALSE(session.m_resultBitmap.IsEmpty());
}

TEST_F(WindowOpening, AHiddenSessionWithoutAFaceAsksTheOperatorAndIsHiddenAgain) {
    session.m_visible = false;
    g_actionEnabled = test::kCropAlone;
    EXPECT_EQ(Run(test::BlankScene(160, 120),
                  [this](FakeWindow& window) {
                      EXPECT_TRUE(session.m_visible);
                      EXPECT_TRUE(window.IsShown(kPrompt));
                      window.Press(100, 100);
                      window.Press(200, 200);
                      EXPECT_TRUE(window.Click(kPlainOk));
                  }),
              kNoFace)
        << "whatever the operator did";
    EXPECT_FALSE(session.m_visible);
    EXPECT_GE(session.m_resultBitmap.Height(), 160) << "and the portrait is there";

    EXPECT_EQ(Run(test::BlankScene(160, 120), [](FakeWindow& window) { window.CloseBox(); }), kNoFace);
    EXPECT_FALSE(session.m_visible);
    EXPECT_TRUE(session.m_resultBitmap.IsEmpty());
}

TEST_F(WindowOpening, AHiddenSessionThatFailsOtherwiseAsksNobody) {
    session.m_visible = false;
    g_detectorParams->loadStatus = kNoClassifier;
    EXPECT_EQ(Run([](FakeWindow&) {}), kNoClassifier);
    EXPECT_EQ(windows.Count("create"), 0);
}

TEST_F(WindowOpening, AVisibleSessionWithoutAClassifierLetsTheOperatorMark) {
    g_detectorParams->loadStatus = kNoClassifier;
    EXPECT_EQ(Run([](FakeWindow& window) {
                  EXPECT_TRUE(window.IsShown(kPrompt));
                  window.Press(100, 100);
                  window.Press(200, 200);
                  EXPECT_TRUE(window.Click(kPlainOk));
              }),
              kSuccess);
}

TEST_F(WindowOpening, AWindowThatDoesNotOpenLeavesASessionWithoutOne) {
    for (const bool made : {false, true}) {
        SCOPED_TRACE(made ? "made, not opened" : "not made");
        windows.makes = made;
        windows.opens = false;
        for (const bool visible : {false, true}) {
            session.m_visible = visible;
            EXPECT_EQ(Run([](FakeWindow&) {}), kSuccess);
            EXPECT_EQ(session.m_visible, visible);
            EXPECT_EQ(session.m_resultBitmap.Width(), 160);
            EXPECT_EQ(Run(test::BlankScene(160, 120), [](FakeWindow&) {}), kNoFace);
            EXPECT_EQ(session.m_visible, visible);
        }
    }
}

TEST_F(WindowOpening, WhereNoWindowCanOpenNoneIsMadeAndNothingConfirmed) {
    windows.canOpen = false;
    EXPECT_EQ(Run([](FakeWindow&) {}), kSuccess);
    EXPECT_EQ(Run(test::BlankScene(160, 120), [](FakeWindow&) {}), kNoFace);
    EXPECT_TRUE(windows.log.empty());
}

TEST_F(WindowOpening, MemoryExhaustedAtTheMakingOfAWindowLeavesTheSessionEnded) {
    session.m_visible = false;
    windows.exhaustedAt = "create";
    EXPECT_THROW(Run(test::BlankScene(160, 120), [](FakeWindow&) {}), std::bad_alloc); // the exports make it a code
    EXPECT_FALSE(session.m_visible);
    EXPECT_TRUE(session.m_sourceBitmap.IsEmpty());
    ExpectNoMarks();
}

TEST_F(WindowOpening, AnUnusablePictureIsToldAndOpensNothing) {
    test::DibHeader header = test::HeaderFor(16, 16);
    header.bitCount = 8;
    const test::HostBlock block(header, std::vector<std::uint8_t>(16 * 48));
    EXPECT_EQ(session.DetectFacePicture(block.Handle()), kNoPicture);
    EXPECT_EQ(windows.messages, std::vector<std::string>{"Error creating DIB"});
    EXPECT_EQ(session.DetectFacePicture(nullptr), kNoPicture);
    EXPECT_EQ(windows.messages.size(), 1U) << "a block that can't be locked is no picture, without a word";
    EXPECT_TRUE(windows.log.empty());
}

} // namespace
} // namespace orvane
