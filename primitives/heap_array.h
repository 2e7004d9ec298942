// A row or table of plain elements from the heap, for the length of one call.
#pragma once

#include "primitives/memory.h"

#include <limits>
#include <type_traits>

namespace orvane {

/// Owns zeroed elements. Holds nothing until `Allocate` has said that it does.
template <typename T>
class HeapArray {
    static_assert(std::is_trivial_v<T>, "elements are zeroed, not constructed");

public:
    HeapArray() = default;
    HeapArray(const HeapArray&) = delete;
    HeapArray& operator=(const HeapArray&) = delete;
    ~HeapArray() { HeapFree(elements_); }

    /// Takes `count` zeroed elements, once. False when they are not to be had.
    [[nodiscard]] bool Allocate(int64 count) {
        constexpr auto kMost = static_cast<uint64>(std::numeric_limits<std::ptrdiff_t>::max()) / sizeof(T);
        if (count < 1 || static_cast<uint64>(count) > kMost) return false;
        elements_ = static_cast<T*>(HeapAllocate(static_cast<std::size_t>(count) * sizeof(T)));
        count_ = elements_ != nullptr ? count : 0;
        return elements_ != nullptr;
    }

    /// Takes `count` elements, again and again: those that it has, as they are, where they are as many, else zeroed
    /// ones. False when they are not to be had, and it holds none.
    [[nodiscard]] bool Ensure(int64 count) {
        if (elements_ != nullptr && count == count_) return true;
        HeapFree(elements_);
        elements_ = nullptr;
        return Allocate(count);
    }

    T* data() { return elements_; }
    const T* data() const { return elements_; }
    T& operator[](int64 i) { return elements_[i]; }
    const T& operator[](int64 i) const { return elements_[i]; }

private:
    T* elements_ = nullptr;
    int64 count_ = 0;
};

} // namespace orvane
