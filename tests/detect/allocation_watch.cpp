// Replaces the program's `new` by one that remembers. In a file of its own, so that it is never inlined.
#include "tests/detect/allocation_watch.h"

#include <algorithm>
#include <cstdlib>
#include <new>

namespace orvane::test {

std::size_t& LargestRequest() {
    static std::size_t largest = 0;
    return largest;
}

} // namespace orvane::test

void* operator new(std::size_t bytes) {
    std::size_t& largest = orvane::test::LargestRequest();
    largest = std::max(largest, bytes);
    if (void* p = std::malloc(bytes > 0 ? bytes : 1)) return p;
    throw std::bad_alloc();
}
void operator delete(void* p) noexcept { std::free(p); }
void operator delete(void* p, std::size_t) noexcept { std::free(p); }
