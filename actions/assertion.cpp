#include "actions/assertion.h"

#include <cstdio>

namespace orvane {

void PrintAssertion(int32 status) { std::printf("Assertion Failed %d \n", static_cast<int>(status)); }

} // namespace orvane
