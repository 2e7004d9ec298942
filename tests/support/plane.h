// Pixel planes for tests, each in a heap block of its own.
//
// An output plane has guard bytes before, behind and between its rows. The way to judge an operation:
// copy the plane, let the operation work on one and the reference on the other, and compare the whole
// blocks: a byte written beside the region then shows as a difference. A source plane ends exactly with
// its last row's last element, so that the address sanitizer sees any read behind it.
#pragma once

#include "primitives/types.h"
#include "tests/support/random.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <cstring>
#include <string>
#include <vector>

namespace orvane::test {

template <typename T>
class Plane {
public:
    /// `rowElements` is width times channels; `padding`, `before` and `behind` count elements.
    Plane(int32 rowElements, int32 height, int32 padding, int32 before, int32 behind)
        : rowElements_(rowElements), height_(height), stride_(rowElements + padding), before_(before),
          block_(static_cast<std::size_t>(before) + static_cast<std::size_t>(stride_) * (height - 1) + rowElements +
                 behind) {}

    /// A plane to write to: random odd padding, offset and guards, filled with random bytes.
    static Plane Output(int32 rowElements, int32 height, Random& random) {
        Plane plane(rowElements, height, random.Int(0, 9), random.Int(1, 40), 40);
        plane.FillRandom(random);
        return plane;
    }

    /// A plane to read from: nothing before its first and behind its last element.
    static Plane Source(int32 rowElements, int32 height, Random& random) {
        Plane plane(rowElements, height, random.Int(0, 9), 0, 0);
        plane.FillRandom(random);
        return plane;
    }

    /// Random whole numbers of the element's range, 0..255 for a floating-point element.
    void FillRandom(Random& random) {
        for (T& element : block_) element = static_cast<T>(random.Bits() >> 24);
    }
    void FillRegion(T value) {
        for (int32 y = 0; y < height_; ++y) {
            for (int32 x = 0; x < rowElements_; ++x) At(x, y) = value;
        }
    }

    T* Data() { return block_.data() + before_; }
    const T* Data() const { return block_.data() + before_; }
    int32 Step() const { return stride_ * static_cast<int32>(sizeof(T)); }
    int32 RowElements() const { return rowElements_; }
    int32 Height() const { return height_; }

    /// Element `x` (channels counted one by one) of row `y`.
    T& At(int32 x, int32 y) { return Data()[static_cast<std::ptrdiff_t>(stride_) * y + x]; }
    const T& At(int32 x, int32 y) const { return Data()[static_cast<std::ptrdiff_t>(stride_) * y + x]; }

    /// Whether both blocks agree in every byte, guards too.
    bool HasBytesOf(const Plane& other) const {
        return block_.size() == other.block_.size() &&
               std::memcmp(block_.data(), other.block_.data(), block_.size() * sizeof(T)) == 0;
    }

    /// Success when both blocks agree in every element, guards too; else the first difference.
    static ::testing::AssertionResult Same(const char*, const char*, const Plane& result, const Plane& expected) {
        if (result.block_.size() != expected.block_.size()) return ::testing::AssertionFailure() << "unequal blocks";
        for (std::size_t i = 0; i < result.block_.size(); ++i) {
            if (result.block_[i] == expected.block_[i]) continue;
            const auto at = static_cast<std::ptrdiff_t>(i) - result.before_;
            const std::ptrdiff_t row = at >= 0 ? at / result.stride_ : -1;
            const std::ptrdiff_t column = at >= 0 ? at % result.stride_ : at;
            const bool inside = row >= 0 && row < result.height_ && column < result.rowElements_;
            return ::testing::AssertionFailure()
                   << (inside ? "element " : "guard ") << column << " of row " << row << " is " << +result.block_[i]
                   << ", expected " << +expected.block_[i] << " (" << result.rowElements_ << " by " << result.height_
                   << " elements)";
        }
        return ::testing::AssertionSuccess();
    }

private:
    int32 rowElements_, height_, stride_, before_;
    std::vector<T> block_;
};

} // namespace orvane::test

/// Expects two planes of one element type to agree in every byte of their blocks.
#define EXPECT_SAME_PLANE(T, result, expected) EXPECT_PRED_FORMAT2((::orvane::test::Plane<T>::Same), result, expected)
#define ASSERT_SAME_PLANE(T, result, expected) ASSERT_PRED_FORMAT2((::orvane::test::Plane<T>::Same), result, expected)
