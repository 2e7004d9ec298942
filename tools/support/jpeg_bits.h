// The coded data of a JPEG scan as bits, and the codes that stand in it.
#pragma once

#include "primitives/types.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <string>

namespace orvane::tools {

inline constexpr int kLastCoefficient = 63;
/// Bits of the greatest coefficient that 8-bit samples lead to, but for a block's first one.
inline constexpr int kLongestOther = 10;

/// Bits from one place of a stream up to the next marker. Beyond it they are zero, and the reader has run dry. A copy
/// reads on by itself: whoever takes many bits keeps one, which the compiler leaves in registers.
class JpegBits {
public:
    JpegBits(const std::string& data, std::size_t at)
        : begin_(reinterpret_cast<const unsigned char*>(data.data())), end_(begin_ + data.size()), at_(begin_ + at) {}

    /// Goes on behind a restart marker, with nothing of what came before it.
    void Restart(std::size_t at) {
        at_ = begin_ + at;
        bits_ = 0;
        held_ = 0;
        missing_ = 0;
    }

    /// Makes 32 bits ready, as much as a code and what follows it take.
    void Fill() {
        if (held_ < 32 && !LoadFour()) *this = FilledByBytes(*this);
    }
    /// The next `count` bits, without taking them; they must be ready.
    unsigned Peek(int count) const { return static_cast<unsigned>(bits_ >> 1 >> (63 - count)); }
    void Drop(int count) {
        bits_ <<= count;
        held_ -= count;
    }
    /// Takes up to 16 bits.
    unsigned Take(int count) {
        Fill();
        const unsigned value = Peek(count);
        Drop(count);
        return value;
    }

    bool HasRunDry() const { return held_ < missing_; }

    /// Goes to the marker behind the coded data and gives its place. False where more than the last byte's rest lies
    /// before it, or none follows.
    bool ReachMarker(std::size_t* marker);

private:
    /// False, with nothing loaded, where one of the next four bytes is FF, or none.
    bool LoadFour() {
        if (end_ - at_ < 4) return false;
        const std::uint32_t word = std::uint32_t{at_[0]} << 24 | std::uint32_t{at_[1]} << 16 |
                                   std::uint32_t{at_[2]} << 8 | std::uint32_t{at_[3]};
        // A byte of the complement that is zero borrows into its own highest bit, which it has not itself.
        if (((~word - 0x01010101) & word & 0x80808080) != 0) return false;
        bits_ |= std::uint64_t{word} << (32 - held_);
        held_ += 32;
        at_ += 4;
        return true;
    }
    static JpegBits FilledByBytes(JpegBits bits);
    void LoadByte();
    bool IsAtMarker() const { return end_ - at_ < 2 || (at_[0] == 0xFF && at_[1] != 0); }

    const unsigned char* begin_;
    const unsigned char* end_;
    const unsigned char* at_;
    std::uint64_t bits_ = 0;
    int held_ = 0;    ///< Bits in `bits_`, from the highest on.
    int missing_ = 0; ///< Of all that were held, as many of the last ones as the stream has not.
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
        const Symbol symbol = Next(*bits);
        bits->Drop(symbol.length);
        return symbol.value;
    }

    /// Takes the coefficients behind a block's first one, as a stream has them that is not progressive. False for bits
    /// that are no codes of 63 coefficients, each of which 8-bit samples can lead to.
    bool TakeBand(JpegBits* bits) const;

private:
    static constexpr int kQuick = 9;
    static constexpr int kLongest = 16;

    struct Symbol {
        int value;
        int length; ///< Of its code.
    };
    Symbol Next(const JpegBits& bits) const {
        const std::int16_t entry = quick_[bits.Peek(kQuick)];
        return entry < 0 ? LongSymbol(bits.Peek(kLongest)) : Symbol{entry & 255, entry >> 8};
    }
    /// The one that begins 16 bits, with a code of more than kQuick; -1 and none where there is none.
    Symbol LongSymbol(unsigned next) const;
    void SetSteps();

    bool set_ = false;
    std::array<std::int16_t, 1 << kQuick>
        quick_{}; ///< Length times 256 plus symbol by the next bits; -1 for longer ones.
    /// By the next bits, for a coefficient: 256 times how much further it leads, plus the bits of its code and its own.
    /// For the end of a block it leads beyond any; 0 where the symbol wants a closer look.
    std::array<std::uint16_t, 1 << kQuick> steps_{};
    std::array<std::int32_t, kLongest + 2> end_{};   ///< By length: the codes of it lie below.
    std::array<std::int32_t, kLongest + 1> shift_{}; ///< By length: from a code to the place of its symbol.
    std::array<std::uint8_t, 256> symbols_{};
};

} // namespace orvane::tools
