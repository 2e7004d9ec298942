// Sessions with every choice of slots as a host asks for them, whose outputs are recorded: the same bytes on
// every system, compiler and processor. A host gives no turn, so slot 3 copies, and slot 5 is always on.
//
// A sum changes only with a change of the results that is meant. To record anew, run the test and take the
// sums that it prints; all builds must print the same.
#include "tests/exports/exports_fixture.h"
#include "tests/support/portrait_scene.h"
#include "tests/support/sha256.h"

#include <cstdint>
#include <set>
#include <string>
#include <vector>

namespace orvane {
namespace {

constexpr std::int32_t kSlots = 6;

struct Photo {
    const char* what;
    int32 width, height, face;
    test::Backdrop backdrop;
    const char* sum; // of the sums of the outputs, in the order of the flags, bit i for slot i
};

const Photo kPhotos[] = {
    {"plain backdrop", 84, 96, 28, test::Backdrop::plain,
     "7c2aea0c75684b9f0870df386092b72a58fa9e031039887f39579335ef4b6179"},
    {"graded backdrop", 98, 77, 26, test::Backdrop::graded,
     "8ccc3aed9423e2575a8f573558a595748e489f3f925215d291568b7b61a77717"},
    {"rubble", 81, 82, 24, test::Backdrop::rubble, "cc2a212ceb338c03a40cda62f53f3edf8fe5831c3bb324f6370c7703cf257612"},
};

class GoldenSlots : public test::ExportsTest {
protected:
    std::string OutputSum() {
        test::HostBlock output;
        EXPECT_EQ(lib.orv_GetOutputImage(output.Receive()), ORV_OK);
        const test::DibHeader header = output.Header();
        std::vector<std::uint8_t> bytes = output.Bytes();
        bytes.resize(sizeof header + header.sizeImage); // a system may round blocks up
        return test::Sha256(bytes);
    }
};

TEST_F(GoldenSlots, GiveTheRecordedOutputsWithAllChoices) {
    OpenHidden();
    ASSERT_EQ(lib.orv_SetSizeOutputImage(80, 100), ORV_OK);
    for (const Photo& photo : kPhotos) {
        SCOPED_TRACE(photo.what);
        const test::Scene scene = test::PortraitScene(photo.width, photo.height, photo.face, photo.backdrop, 2);
        std::vector<std::uint8_t> sums;
        std::set<std::string> different;
        for (std::int32_t flags = 0; flags < 1 << kSlots; ++flags) {
            for (std::int32_t slot = 0; slot < kSlots; ++slot) lib.orv_EnableAction(slot, flags >> slot & 1);
            ASSERT_EQ(Detect(scene), ORV_OK) << "flags " << flags;
            const std::string sum = OutputSum();
            sums.insert(sums.end(), sum.begin(), sum.end());
            different.insert(sum);
        }
        EXPECT_EQ(test::Sha256(sums), photo.sum);
        EXPECT_EQ(different.size(), 16U) << "crop, background, colour, and the end at slot 4 each make a difference";
    }
}

} // namespace
} // namespace orvane
