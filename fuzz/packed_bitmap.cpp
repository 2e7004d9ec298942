// A packed bitmap of a host through the exports, with all slots and any settings, hidden or with an operator: a
// documented result, a good output, and the same bytes with each set of instructions.
#include "fuzz/support/played_library.h"

#include "fuzz/support/expect.h"
#include "fuzz/support/play_operator.h"
#include "primitives/instruction_set.h"

#include <optional>

using namespace orvane;
using fuzz::Expect;

namespace {

struct Outcome {
    int32 depth = 0, result = 0;
    std::vector<uint8> output;

    bool operator==(const Outcome&) const = default;
};

/// What the last byte chooses, so that what the bytes before it mean stays.
struct Setting {
    explicit Setting(int32 last)
        : failing(last % 8 == 7 ? last * 2 : -1), enlarging(last % 32 == 16 ? 4 : 1),
          mostPixels(last % 32 == 24 ? kMediumPicture : kSmallPicture) {}

    static constexpr int32 kSmallPicture = 64, kMediumPicture = 340; // whose mask is smoothed at another size

    int32 failing;    // the request for memory that does, unless negative
    int32 enlarging;  // how many times the output's size
    int32 mostPixels; // of a side of the picture
};

Outcome RunSession(fuzz::Choices choices, InstructionSet set, const Setting& setting) {
    fuzz::PlayedLibrary library;
    const fuzz::SmallHeap heap(setting.failing);
    Expect(orv_InitDLL() == ORV_OK, "a session opens");
    UseInstructionSet(set);
    fuzz::KeepPreviewSmall(choices);

    const int32 slots = choices.Int(0, 63);
    for (int32 slot = 0; slot < 6; ++slot) orv_EnableAction(slot, slots >> slot & 1);
    const int32 width = choices.Int(60, 260);
    orv_SetSizeOutputImage(setting.enlarging * width, setting.enlarging * choices.Int(60, 260));
    orv_SetFaceCropRatio(choices.Flag() ? choices.AnyFloat() : 1.0F);
    const bool visible = choices.Flag();
    orv_SetVisibleMode(visible);
    library.windows.canOpen = visible || choices.Flag();
    const test::HostBlock block = fuzz::AnyBlock(choices, setting.mostPixels);
    library.windows.script = [&](test::FakeWindow& window) { fuzz::PlayOperator(choices, window); };

    Outcome outcome;
    outcome.depth = orv_GetBitDepth(block.Handle());
    outcome.result = orv_DetectFacePicture(block.Handle());
    outcome.output = fuzz::TakeOutput();
    return outcome;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8* bytes, std::size_t size) {
    const fuzz::Choices choices(bytes, size);
    const Setting setting(size == 0 ? 0 : bytes[size - 1]);
    const Outcome plain = RunSession(choices, InstructionSet::baseline, setting);
    fuzz::ExpectOneOf(
        plain.result,
        {ORV_OK, ORV_NO_FACE, ORV_CANCELLED, ORV_BAD_ARGUMENT, ORV_STEP_FAILED, ORV_NO_MEMORY, ORV_NO_PICTURE},
        "a detect call ends with a documented result");
    if (BestInstructionSet() != InstructionSet::baseline) {
        const Outcome best = RunSession(choices, BestInstructionSet(), setting);
        Expect(best == plain || setting.failing >= 0, "each set of instructions gives the same");
    }
    return 0;
}
