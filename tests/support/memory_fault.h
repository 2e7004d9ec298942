// A process whose memory fails when a test says so: both what operator new gives and the storage of pixels and tables.
// For programs that are built with memory_fault.cpp, which replaces the operators.
#pragma once

#include "primitives/types.h"

namespace orvane::test {

enum class Fault {
    once,    // one request is refused
    lasting, // that one and all later ones
};

/// While it lives the request that follows `before` others is refused. One at a time.
class MemoryFault {
public:
    MemoryFault(int32 before, Fault kind);
    ~MemoryFault();
    MemoryFault(const MemoryFault&) = delete;
    MemoryFault& operator=(const MemoryFault&) = delete;

    /// Whether so many requests came that one was refused.
    static bool Happened();
};

/// While it lives no request is refused or counted: for what only the test asks for.
class Unlimited {
public:
    Unlimited();
    ~Unlimited();
    Unlimited(const Unlimited&) = delete;
    Unlimited& operator=(const Unlimited&) = delete;
};

/// How many of the blocks that operator new gave were not given back.
int32 BlocksAlive();

} // namespace orvane::test
