// The coded data of a JPEG scan as bits, and the codes that stand in it.
#pragma once

#include "primitives/types.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <string>

namespace orvane::tools {

/// Bits from one place of a stream up to the next marker. Beyond it they are zero, and the reader has run dry.
class JpegBits {
public:
    JpegBits(const std::string& data, std::size_t at) : data_(data), at_(at) {}

    /// Goes on behind a restart marker, with nothing of what came before it.
    void Restart(std::size_t at) {
        at_ = at;
        bits_ = 0;
        held_ = 0;
        real_ = 0;
    }

    /// Makes 32 bits ready, as much as a code and what follows it take.
    void Fill() {
        while (held_ < 32) Load();
    }
    /// The next `count` bits, without taking them; they must be ready.
    unsigned Peek(int count) const { return static_cast<unsigned>(bits_ >> (held_ - count)) & ((1U << count) - 1); }
    void Drop(int count) {
        held_ -= count;
        real_ -= count;
    }
    /// Takes up to 16 bits.
    unsigned Take(int count) {
        Fill();
        const unsigned value = Peek(count);
        Drop(count);
        return value;
    }

    bool HasRunDry() const { return real_ < 0; }

    /// Goes to the marker behind the coded data and gives its place. False where more than the last byte's rest lies
    /// before it, or none follows.
    bool ReachMarker(std::size_t* marker);

private:
    void Load();
    bool IsAtMarker() const;

    const std::string& data_;
    std::size_t at_;
    std::uint64_t bits_ = 0;
    int held_ = 0; ///< Bits in `bits_`.
    int real_ = 0; ///< Of these the ones that the stream has; below zero when some were taken that it has not.
};

/// A Huffman table.
class JpegCode {
public:
    /// From the sixteen counts and the symbols of a table in the stream. False where they make none.
    bool Set(const unsigned char* counts, const unsigned char* symbols, std::size_t symbolCount);
    bool IsSet() const { return set_; }

    /// The next symbol; -1 for bits that are no code. Up to 16 bits behind it are ready then.
    int Take(JpegBits* bits) const {
        bits->Fill();
        const std::int16_t entry = quick_[bits->Peek(kQuick)];
        if (entry < 0) return TakeLong(bits);
        bits->Drop(entry >> 8);
        return entry & 255;
    }

private:
    static constexpr int kQuick = 9;
    static constexpr int kLongest = 16;

    /// The same for a code of more bits.
    int TakeLong(JpegBits* bits) const;

    bool set_ = false;
    std::array<std::int16_t, 1 << kQuick>
        quick_{}; ///< Length times 256 plus symbol by the next bits; -1 for longer ones.
    std::array<std::int32_t, kLongest + 2> end_{};   ///< By length: the codes of it lie below.
    std::array<std::int32_t, kLongest + 1> shift_{}; ///< By length: from a code to the place of its symbol.
    std::array<std::uint8_t, 256> symbols_{};
};

} // namespace orvane::tools
