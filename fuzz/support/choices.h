// A fuzzer's bytes as a row of choices: what a target would refuse at once is never made of them, so that its time goes
// where it aims. Behind the end of the bytes every choice is zero.
#pragma once

#include "primitives/types.h"

#include <algorithm>
#include <bit>
#include <cstddef>
#include <initializer_list>
#include <limits>
#include <string>

namespace orvane::fuzz {

class Choices {
public:
    Choices(const uint8* bytes, std::size_t size) : at_(bytes), left_(size) {}

    bool AtEnd() const { return left_ == 0; }

    uint8 Byte() {
        if (left_ == 0) return 0;
        --left_;
        return *at_++;
    }
    bool Flag() { return (Byte() & 1) != 0; }
    uint32 Bits() {
        uint32 bits = 0;
        for (int32 i = 0; i < 4; ++i) bits = bits << 8 | Byte();
        return bits;
    }

    /// A number from `low` to `high`, both included, of as few bytes as the range needs.
    int32 Int(int32 low, int32 high) {
        const uint64 count = static_cast<uint64>(int64{high} - low) + 1;
        uint64 bits = 0;
        for (uint64 reach = 1; reach < count; reach <<= 8) bits = bits << 8 | Byte();
        return static_cast<int32>(low + static_cast<int64>(bits % count));
    }

    /// Any number: one at a limit, a small one, or whatever comes.
    int32 AnyInt() {
        constexpr int32 kLimits[] = {std::numeric_limits<int32>::min(), std::numeric_limits<int32>::max(), -1, 0, 1};
        const uint8 kind = Byte();
        if (kind < 64) return kLimits[kind % 5];
        return kind < 160 ? Int(-300, 3000) : std::bit_cast<int32>(Bits());
    }

    /// Any float: a usual one, or any bits, which may be no number.
    float AnyFloat() { return Flag() ? std::bit_cast<float>(Bits()) : static_cast<float>(Int(-2000, 2000)) / 256.0F; }

    template <typename T>
    T OneOf(std::initializer_list<T> values) {
        return values.begin()[Int(0, static_cast<int32>(values.size()) - 1)];
    }

    /// Up to `most` bytes as they are.
    std::string Text(std::size_t most) {
        const std::size_t size = std::min(left_, most);
        std::string text(reinterpret_cast<const char*>(at_), size);
        at_ += size;
        left_ -= size;
        return text;
    }
    std::string Rest() { return Text(left_); }

private:
    const uint8* at_;
    std::size_t left_;
};

} // namespace orvane::fuzz
