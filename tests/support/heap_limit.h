// An exhausted heap for tests, one that fails once, and one that is watched.
#pragma once

#include "primitives/memory.h"

#include <cstddef>
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

/// While it lives, the one request that follows `before` others fails. One at a time.
class HeapFault {
public:
    explicit HeapFault(int before) {
        left_ = before;
        SetHeapAllocator([](std::size_t bytes) -> void* { return left_-- != 0 ? std::calloc(bytes, 1) : nullptr; });
    }
    ~HeapFault() { SetHeapAllocator(nullptr); }
    HeapFault(const HeapFault&) = delete;
    HeapFault& operator=(const HeapFault&) = delete;

    /// Whether so many requests came that one was refused.
    static bool Happened() { return left_ < 0; }

private:
    static inline int left_ = 0;
};

/// While it lives, counts the requests for at least so many bytes. One at a time.
class HeapWatch {
public:
    explicit HeapWatch(std::size_t least) {
        least_ = least;
        count_ = 0;
        SetHeapAllocator([](std::size_t bytes) -> void* {
            count_ += bytes >= least_ ? 1 : 0;
            return std::calloc(bytes, 1);
        });
    }
    ~HeapWatch() { SetHeapAllocator(nullptr); }
    HeapWatch(const HeapWatch&) = delete;
    HeapWatch& operator=(const HeapWatch&) = delete;

    static int Count() { return count_; }

private:
    static inline std::size_t least_ = 0;
    static inline int count_ = 0;
};

} // namespace orvane::test
