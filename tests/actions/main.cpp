#include "tests/support/every_instruction_set.h"

int main(int argc, char** argv) { return orvane::test::RunOnEveryInstructionSet(argc, argv); }
