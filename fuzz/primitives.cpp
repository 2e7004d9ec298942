// Every primitive, on regions of any shape, step and offset and with bad arguments, with each set of instructions,
// against its plain form.
#include "fuzz/primitives/judge.h"
#include "primitives/dispatch.h"
#include "primitives/instruction_set.h"

#include <iterator>

using namespace orvane;

extern "C" int LLVMFuzzerTestOneInput(const uint8* bytes, std::size_t size) {
    static const bool ready = SelectPrimitiveColumn() == 0;
    fuzz::Expect(ready, "primitives are chosen");
    using JudgeEntry = void (*)(fuzz::Judge&);
    static constexpr JudgeEntry kJudges[] = {
#define ORVANE_NAME_JUDGE(name) fuzz::Judge_##name,
        ORVANE_PRIMITIVE_ENTRIES(ORVANE_NAME_JUDGE)
#undef ORVANE_NAME_JUDGE
    };
    fuzz::Choices choices(bytes, size);
    const JudgeEntry entry = kJudges[choices.Int(0, static_cast<int32>(std::size(kJudges)) - 1)];
    for (const InstructionSet set : {InstructionSet::baseline, BestInstructionSet()}) {
        UseInstructionSet(set);
        fuzz::Judge judge(choices);
        entry(judge);
    }
    return 0;
}
