// In a file of its own, so that no call of the replaced operators is inlined.
#include "tests/support/memory_fault.h"

#include "primitives/memory.h"

#include <cstddef>
#include <cstdlib>
#include <new>

namespace {

using orvane::test::Fault;

bool g_limited = false;
bool g_refused = false;
bool g_lasts = false;
orvane::int32 g_before = 0;
orvane::int32 g_unlimited = 0;
orvane::int32 g_alive = 0;

bool IsRefused() {
    if (!g_limited || g_unlimited > 0) return false;
    if (g_before > 0) {
        --g_before;
        return false;
    }
    const bool refused = g_lasts || !g_refused;
    g_refused = true;
    return refused;
}

} // namespace

void* operator new(std::size_t bytes) {
    void* block = IsRefused() ? nullptr : std::malloc(bytes == 0 ? 1 : bytes);
    if (block == nullptr) throw std::bad_alloc();
    ++g_alive;
    return block;
}
void operator delete(void* block) noexcept {
    g_alive -= block == nullptr ? 0 : 1;
    std::free(block);
}
void operator delete(void* block, std::size_t) noexcept { operator delete(block); }

namespace orvane::test {

MemoryFault::MemoryFault(int32 before, Fault kind) {
    g_limited = true;
    g_refused = false;
    g_lasts = kind == Fault::lasting;
    g_before = before;
    SetHeapAllocator([](std::size_t bytes) -> void* { return IsRefused() ? nullptr : std::calloc(bytes, 1); });
}
MemoryFault::~MemoryFault() {
    g_limited = false;
    SetHeapAllocator(nullptr);
}

bool MemoryFault::Happened() { return g_refused; }

Unlimited::Unlimited() { ++g_unlimited; }
Unlimited::~Unlimited() { --g_unlimited; }

int32 BlocksAlive() { return g_alive; }

} // namespace orvane::test
