// What a process holds of the system, to see that sessions give it back.
#pragma once

#include "primitives/types.h"

namespace orvane::test {

struct Held {
    int64 memory = 0;  // bytes of its own
    int64 handles = 0; // open files; on Windows handles of all kinds, windows and drawing objects
    int64 threads = 0;
};

Held HeldByThisProcess();

} // namespace orvane::test
