// A session whose window is played by the test.
#pragma once

#include "actions/action_settings.h"
#include "detect/candidates.h"
#include "tests/session/session_fixture.h"
#include "tests/support/fake_window.h"
#include "tests/support/host_block.h"

#include <functional>
#include <utility>
#include <vector>

namespace orvane::test {

/// The preview is 400 pixels wide and high at the most, as the exports ask for.
class WindowTest : public SessionTestWith<FakeWindowSystem> {
protected:
    using Script = std::function<void(FakeWindow&)>;

    WindowTest() {
        session.m_visible = true;
        session.m_previewMaxWidth = session.m_previewMaxHeight = 400;
        session.m_outputWidth = 120;
        session.m_outputHeight = 160;
    }
    ~WindowTest() override {
        EXPECT_EQ(windows.callsOutside, 0) << "a window is not asked before and after it stands";
        EXPECT_EQ(windows.windowsAlive, 0) << "a window goes with its session";
    }

    /// A whole session on a picture; its result.
    int32 Run(const Scene& scene, Script script) {
        windows.script = std::move(script);
        return session.DetectFacePicture(HostBlock(scene).Handle());
    }
    /// The same on a picture with a face.
    int32 Run(Script script) { return Run(SmallFaceScene(), std::move(script)); }

    /// A session up to its adjusting stage, with these actions on (crop, background, colour, rotation).
    int32 Adjust(const ActionFlags& actions, const Script& script) {
        g_actionEnabled = actions;
        return Run([&](FakeWindow& window) {
            window.Pump();
            ASSERT_TRUE(window.Click(kPlainOk));
            ASSERT_EQ(session.m_stage, 2);
            window.Pump();
            script(window);
        });
    }

    /// The output's bytes; none without an output.
    std::vector<uint8> Output() const { return BytesOf(session.m_resultBitmap); }
    static std::vector<uint8> BytesOf(const Bitmap& bitmap) {
        return bitmap.IsEmpty() ? std::vector<uint8>()
                                : std::vector<uint8>(bitmap.Bits(), bitmap.Bits() + bitmap.Header().biSizeImage);
    }
};

inline constexpr ActionFlags kAllActions{1, 1, 1, 1, 0, 0};
inline constexpr ActionFlags kCropAlone{1, 0, 0, 0, 0, 0};

inline constexpr int32 kToleranceControls[] = {kToleranceGroup, kToleranceLabel, kToleranceEdit,  kTolerancePercent,
                                               kToleranceDown,  kToleranceUp,    kToleranceSlider};
inline constexpr int32 kRotationControls[] = {kRotationGroup, kTurnBackGroup,  kTurnOnGroup, kRotationLabel,
                                              kRotationEdit,  kRotationDegree, kTurnBack1,   kTurnBack90,
                                              kTurnOn1,       kTurnOn90};

} // namespace orvane::test
