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

/// One request of the session fails where `failing` is not negative; `enlarging` times the size is asked for.
Outcome RunSession(fuzz::Choices choices, InstructionSet set, int32 failing, int32 enlarging) {
    fuzz::PlayedLibrary library;
    const fuzz::SmallHeap heap(failing);
    Expect(orv_InitDLL() == ORV_OK, "a session opens");
    UseInstructionSet(set);
    fuzz::KeepPreviewSmall(choices);

    const int32 slots = choices.Int(0, 63);
    for (int32 slot = 0; slot < 6; ++slot) orv_EnableAction(slot, slots >> slot & 1);
    const int32 width = choices.Int(60, 260);
    orv_SetSizeOutputImage(enlarging * width, enlarging * choices.Int(60, 260));
    orv_SetFaceCropRatio(choices.Flag() ? choices.AnyFloat() : 1.0F);
    const bool visible = choices.Flag();
    orv_SetVisibleMode(visible);
    library.windows.canOpen = visible || choices.Flag();
    const test::HostBlock block = fuzz::AnyBlock(choices, 64);
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
    // The last byte, so that what the bytes before it mean stays.
    const int32 last = size == 0 ? 0 : bytes[size - 1];
    const int32 failing = last % 8 == 7 ? last * 2 : -1, enlarging = last % 32 == 16 ? 4 : 1;
    const Outcome plain = RunSession(choices, InstructionSet::baseline, failing, enlarging);
    fuzz::ExpectOneOf(
        plain.result,
        {ORV_OK, ORV_NO_FACE, ORV_CANCELLED, ORV_BAD_ARGUMENT, ORV_STEP_FAILED, ORV_NO_MEMORY, ORV_NO_PICTURE},
        "a detect call ends with a documented result");
    if (BestInstructionSet() != InstructionSet::baseline) {
        const Outcome best = RunSession(choices, BestInstructionSet(), failing, enlarging);
        Expect(best == plain || failing >= 0, "each set of instructions gives the same");
    }
    return 0;
}
