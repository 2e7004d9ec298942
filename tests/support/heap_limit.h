// An exhausted heap for tests.
#pragma once

#include "primitives/memory.h"

#include <cstdlib>

namespace orvane::test {

/// While it lives, the first `allowed` requests behind all pixel storage and tables succeed and every
/// later one fails. One at a time.
class HeapLimit {
public:
    explicit HeapLimit(int allowed) {
        left_ = allowed;
        SetHeapAllocator([](std::size_t bytes) -> void* { return left_-- > 0 ? std::calloc(bytes, 1) : nullptr; });
    }
    ~HeapLimit() { SetHeapAllocator(nullptr); }
    HeapLimit(const HeapLimit&) = delete;
    HeapLimit& operator=(const HeapLimit&) = delete;

private:
    static inline int left_ = 0;
};

} // namespace orvane::test
