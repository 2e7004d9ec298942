// The scenarios of whole sessions, on the fake window. Their sums were recorded here and change only with a
// change of the results that is meant; a failed comparison prints the new one.
#include "tests/support/window_scenarios.h"

#include "image/packed_dib.h"
#include "tests/reference/pipeline.h"
#include "tests/session/window_fixture.h"
#include "tests/support/pictures.h"
#include "tests/support/sha256.h"

#include <map>
#include <string>

namespace orvane {
namespace {

using test::FakeWindow;
using test::WindowScenario;

/// Each step waits until the window has dealt with it.
class FakeDriver final : public test::WindowDriver {
public:
    explicit FakeDriver(FakeWindow& window) : window_(window) { window_.Pump(); }
    void Click(int32 id) override {
        EXPECT_TRUE(window_.Click(id)) << id;
        window_.Pump();
    }
    void Press(int32 x, int32 y) override {
        window_.Press(x, y);
        window_.Pump();
    }
    void Move(int32 x, int32 y) override {
        window_.Move(x, y);
        window_.Pump();
    }
    void Release(int32 x, int32 y) override {
        window_.Release(x, y);
        window_.Pump();
    }
    void Type(int32 id, const wchar_t* text) override {
        EXPECT_TRUE(window_.Type(id, text)) << id;
        window_.Pump();
    }
    void DragSlider(int32 position) override {
        window_.DragSlider(position);
        window_.Pump();
    }
    void Enter() override {
        window_.Enter();
        window_.Pump();
    }
    void Escape() override { window_.Escape(); }
    void CloseBox() override { window_.CloseBox(); }

private:
    FakeWindow& window_;
};

class Scenarios : public test::WindowTest {
protected:
    int32 RunScenario(const WindowScenario& scenario) {
        ForgetTheSessionBefore();
        for (std::size_t slot = 0; slot < scenario.actions.size(); ++slot) {
            g_actionEnabled[slot] = scenario.actions[slot] ? 1 : 0;
        }
        session.m_outputWidth = scenario.output.width;
        session.m_outputHeight = scenario.output.height;
        session.m_visible = scenario.visible;
        return Run(test::PictureOf(scenario.picture), [&](FakeWindow& window) {
            FakeDriver driver(window);
            for (const test::WindowStep& step : scenario.steps) {
                ASSERT_FALSE(window.HasEnded()) << "before its last step";
                test::Play(driver, step);
            }
            EXPECT_TRUE(window.HasEnded());
        });
    }
    /// Source, face and flags are still those of the final run.
    void ExpectPlainOutput(const WindowScenario& scenario) const {
        const bool cropped = g_actionEnabled[kSlotCrop] != 0;
        SetOutputGeometry(cropped ? scenario.output.width : 160, cropped ? scenario.output.height : 120);
        test::reference::PipelineState expected;
        expected.TakePresent();
        expected.MakeSource(test::PictureOf(scenario.picture));
        test::reference::RunPipeline(expected, g_actionEnabled, session.m_rotation, session.m_tolerance);
        ImageBuffer output;
        Take(session.m_resultBitmap, output);
        EXPECT_SAME_PICTURE(output, expected.work);
    }
    /// The sum of the packed output; empty without one.
    std::string Sum() const {
        test::HostBlock block;
        if (PackedDibFromBitmap(session.m_resultBitmap, reinterpret_cast<void**>(block.Receive())) != kSuccess)
            return "";
        return test::Sha256(block.Bytes());
    }

private:
    void ForgetTheSessionBefore() {
        for (ImageBuffer* image :
             {&g_sourceImage, &g_workImage, &g_maskImage, &g_colourStageImage, &g_colourStageMask}) {
            image->Reset();
        }
        g_actionEnabled.fill(0);
        session.m_resultBitmap.Delete();
        session.m_tolerance = 40;
    }
};

TEST_F(Scenarios, EndAsRecordedAndAsThePlainPipelineSays) {
    for (const WindowScenario& scenario : test::WindowScenarios()) {
        SCOPED_TRACE(scenario.name);
        EXPECT_EQ(RunScenario(scenario), scenario.result);
        EXPECT_EQ(Sum(), scenario.sum);
        if (*scenario.sum != 0) ExpectPlainOutput(scenario);
    }
}

TEST_F(Scenarios, AgreeAndDifferWhereTheyShould) {
    std::map<std::string, std::string> sums;
    for (const WindowScenario& scenario : test::WindowScenarios()) {
        EXPECT_TRUE(sums.emplace(scenario.name, scenario.sum).second) << "two of the name " << scenario.name;
    }
    const std::pair<const char*, const char*> kSame[] = {
        {"MarkByOneDrag", "MarkByTwoClicks"},
        {"MarkUpAndLeft", "MarkByTwoClicks"},
        {"HiddenWithoutAFaceAsksTheOperator", "MarkByTwoClicks"},
        {"HiddenWithAFace", "Ok"},
        {"OkByTheEnterKey", "OkWithAllActions"},
        {"CancelWhileAdjusting", "Ok"},
        {"ClearAndMarkAnew", "MarkOverTheDetectorsFace"},
        {"ToleranceByButtons", "ToleranceByTheSlider"},
        {"Rotation359And1", "Ok"},
        {"RotationNotTouched", "Ok"},
        {"RotationOf400Is359", "RotationBackByOne"},
        {"ColourOff", "Ok"},
        {"ColourOffAndOn", "ColourKept"},
    };
    for (const auto& [one, other] : kSame) EXPECT_EQ(sums.at(one), sums.at(other)) << one << ", " << other;
    const std::pair<const char*, const char*> kDifferent[] = {
        {"Ok", "OkWithAllActions"},
        {"Ok", "OkWithoutAnyAction"},
        {"Ok", "ColourKept"},
        {"Ok", "ClearAndMarkAnew"},
        {"Ok", "RotationBackByOne"},
        {"Ok", "RotationOnBy90"},
        {"Ok", "RotationByItsEdit"},
        {"ToleranceByItsEdit", "ToleranceByTheSlider"},
        {"ToleranceEmptied", "ToleranceByItsEdit"},
        {"OkWithAllActions", "EverythingAdjusted"},
    };
    for (const auto& [one, other] : kDifferent) EXPECT_NE(sums.at(one), sums.at(other)) << one << ", " << other;
    for (const WindowScenario& scenario : test::WindowScenarios()) {
        const bool given = scenario.result == kCancelled || std::string(scenario.name) == "HiddenWithoutAFaceCancelled";
        EXPECT_EQ(*scenario.sum == 0, given) << scenario.name;
    }
}

} // namespace
} // namespace orvane
