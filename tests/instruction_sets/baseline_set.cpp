// The linker leads every question for the widest instructions here: whatever this is linked into has none but the
// baseline's.
#include "primitives/instruction_set.h"

extern "C" orvane::InstructionSet __wrap__ZN6orvane18BestInstructionSetEv();
extern "C" orvane::InstructionSet __wrap__ZN6orvane18BestInstructionSetEv() { return orvane::InstructionSet::baseline; }
