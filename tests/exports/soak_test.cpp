// Many sessions without a window in one process. ORVANE_SOAK_PICTURES tells how many; by default few enough for every
// run of the tests.
#include "tests/exports/random_sessions.h"
#include "tests/window/sessions/flat.h"

#include <cstdlib>

namespace orvane::test {
namespace {

TEST(Soak, TheSecondRunOfTheSameSessionsTakesNoMoreAndGivesTheSame) {
    const char* wanted = std::getenv("ORVANE_SOAK_PICTURES");
    const int count = wanted == nullptr ? 150 : std::atoi(wanted);
    HostLibrary library;
    ASSERT_TRUE(WriteClassifier(library.Folder(), FaceCascade().Bytes()));
    ASSERT_EQ(library.orv_InitDLL(), ORV_OK);
    RandomSessions sessions(library);
    int outputs = 0;
    std::string first;
    ExpectFlat(2 * count, [&](int number) {
        if (number == count) {
            outputs = sessions.Outputs();
            first = sessions.Digest();
        }
        sessions.Run(number % count);
    });
    EXPECT_GT(outputs, count / 2) << "most sessions have an output";
    EXPECT_EQ(sessions.Digest(), first);
    std::cout << outputs << " outputs, digest " << first.substr(0, 64) << "\n";
}

} // namespace
} // namespace orvane::test
