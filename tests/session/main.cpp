// A session test selects no primitives: without a word they would run with the baseline's instructions, wherever.
#include "tests/support/every_instruction_set.h"

int main(int argc, char** argv) { return orvane::test::RunOnWidestInstructionSet(argc, argv); }
