// The vector instructions that the wider forms of inner loops may use, chosen once with the primitives.
#pragma once

namespace orvane {

enum class InstructionSet { // each has those before it
    baseline,               // what the library is compiled for: SSE2 on x86
    avx2,                   // AVX2 and FMA
    avx512,                 // and AVX-512 with bytes, words and vectors of all lengths
};

/// The widest that processor and system have.
InstructionSet BestInstructionSet();

/// The one in use; the baseline until SelectPrimitiveColumn has chosen.
InstructionSet CurrentInstructionSet();

/// For that selection, and for tests, which try each of them.
void UseInstructionSet(InstructionSet set);

} // namespace orvane
