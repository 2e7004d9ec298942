// Whole sessions of an operator on the real window, through the library as a host has it. They end as they do on
// a played window, to the last byte of the output.
#include "tests/support/sha256.h"
#include "tests/window/sessions/window_host.h"

#include <algorithm>
#include <ostream>

namespace orvane::test {

void PrintTo(const WindowScenario& scenario, std::ostream* out) { *out << scenario.name; }

namespace {

class OperatorSession : public ::testing::TestWithParam<WindowScenario> {
protected:
    WindowHost host;
};

TEST_P(OperatorSession, EndsAsOnThePlayedWindow) {
    const WindowScenario& scenario = GetParam();
    for (int action = 0; action < 4; ++action) {
        host.lib.orv_EnableAction(action, scenario.actions[static_cast<std::size_t>(action)] ? 1 : 0);
    }
    host.lib.orv_SetSizeOutputImage(scenario.output.width, scenario.output.height);
    host.lib.orv_SetVisibleMode(scenario.visible ? 1 : 0);
    const HostBlock photo(PictureOf(scenario.picture));
    const int32_t result =
        scenario.steps.empty() ? host.lib.orv_DetectFacePicture(photo.Handle()) : host.Detect(photo, [&](Hand& hand) {
            for (const WindowStep& step : scenario.steps) Play(hand, step);
        });
    EXPECT_EQ(result, scenario.result);
    HostBlock output;
    const bool expected = *scenario.sum != 0;
    EXPECT_EQ(host.lib.orv_GetOutputImage(output.Receive()), expected ? ORV_OK : ORV_NO_SESSION);
    std::vector<std::uint8_t> bytes = output.Bytes();
    bytes.resize(std::min(bytes.size(), sizeof(DibHeader) + output.Header().sizeImage)); // a block may be longer
    EXPECT_EQ(bytes.empty() ? "" : Sha256(bytes), scenario.sum);
}

INSTANTIATE_TEST_SUITE_P(Scenarios, OperatorSession, ::testing::ValuesIn(WindowScenarios()),
                         [](const auto& scenario) { return scenario.param.name; });

} // namespace
} // namespace orvane::test
