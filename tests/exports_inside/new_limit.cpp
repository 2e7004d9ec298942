// In a file of its own, so that no call of the replaced operators is inlined.
#include "tests/exports_inside/new_limit.h"

#include <cstddef>
#include <cstdlib>
#include <new>

namespace {

bool g_limited = false;
bool g_refused = false;
int g_grants = 0;

} // namespace

void* operator new(std::size_t bytes) {
    if (g_limited && g_grants-- <= 0) {
        g_grants = 0;
        g_refused = true;
        throw std::bad_alloc();
    }
    if (void* p = std::malloc(bytes == 0 ? 1 : bytes)) return p;
    throw std::bad_alloc();
}
void operator delete(void* p) noexcept { std::free(p); }
void operator delete(void* p, std::size_t) noexcept { std::free(p); }

namespace orvane::test {

NewLimit::NewLimit(int grants) {
    g_limited = true;
    g_refused = false;
    g_grants = grants;
}
NewLimit::~NewLimit() { g_limited = false; }

bool NewLimit::Refused() { return g_refused; }

} // namespace orvane::test
