#include "tools/support/jpeg_bits.h"

#include <algorithm>

namespace orvane::tools {

namespace {

constexpr int kCoefficients = kLastCoefficient + 1;
constexpr int kBeyond = 2 * kCoefficients; // where the end of a block leads, from any coefficient
constexpr int kSixteenZeros = 0xF0;

} // namespace

JpegBits JpegBits::FilledByBytes(JpegBits bits) {
    while (bits.held_ < 32) bits.LoadByte();
    return bits;
}

/// A byte FF of the data is followed by a zero, which is none.
void JpegBits::LoadByte() {
    unsigned byte = 0;
    if (IsAtMarker()) {
        missing_ += 8;
    } else {
        byte = *at_;
        at_ += byte == 0xFF ? 2 : 1;
    }
    bits_ |= std::uint64_t{byte} << (56 - held_);
    held_ += 8;
}

bool JpegBits::ReachMarker(std::size_t* marker) {
    // Fewer than 8 bits fill up the last byte.
    if (HasRunDry() || held_ - missing_ >= 8 || !IsAtMarker()) return false;
    while (end_ - at_ > 1 && at_[0] == 0xFF && at_[1] == 0xFF) ++at_; // fill bytes
    if (end_ - at_ < 2) return false;
    *marker = static_cast<std::size_t>(at_ - begin_);
    return true;
}

bool JpegCode::Set(const unsigned char* counts, const unsigned char* symbols, std::size_t symbolCount) {
    set_ = false;
    quick_.fill(-1);
    std::size_t at = 0;
    std::int32_t code = 0;
    for (int length = 1; length <= kLongest; ++length) {
        const std::size_t count = counts[length - 1];
        if (at + count > std::min<std::size_t>(symbolCount, symbols_.size())) return false;
        shift_[static_cast<std::size_t>(length)] = static_cast<std::int32_t>(at) - code;
        for (std::size_t i = 0; i < count; ++i, ++code, ++at) {
            if (code >= 1 << length) return false;
            symbols_[at] = symbols[at];
            if (length > kQuick) continue;
            const int rest = kQuick - length;
            const auto entry = static_cast<std::int16_t>(length * 256 + symbols[at]);
            std::fill_n(quick_.begin() + (static_cast<std::ptrdiff_t>(code) << rest), std::size_t{1} << rest, entry);
        }
        end_[static_cast<std::size_t>(length)] = code;
        code <<= 1;
    }
    SetSteps();
    return set_ = true;
}

void JpegCode::SetSteps() {
    for (std::size_t i = 0; i < quick_.size(); ++i) {
        const int symbol = quick_[i] & 255, length = quick_[i] >> 8, own = symbol & 15;
        const bool ends = own == 0 && symbol != kSixteenZeros;
        const int step = ends ? kBeyond : (symbol >> 4) + 1;
        const bool plain = quick_[i] >= 0 && (ends || (own > 0 && own <= kLongestOther));
        steps_[i] = static_cast<std::uint16_t>(plain ? step << 8 | (length + own) : 0);
    }
}

bool JpegCode::TakeBand(JpegBits* bits) const {
    JpegBits own = *bits;
    int k = 1;
    bool good = true;
    while (good && k < kCoefficients) {
        own.Fill();
        const int step = steps_[own.Peek(kQuick)];
        if (step != 0) {
            own.Drop(step & 255);
            k += step >> 8;
            good = k <= kCoefficients || k >= kBeyond;
            continue;
        }
        const Symbol symbol = Next(own);
        own.Drop(symbol.length);
        const int size = symbol.value & 15;
        if (symbol.value < 0) {
            good = false;
        } else if (symbol.value == kSixteenZeros) {
            k += 16;
        } else if (size == 0) {
            k = kBeyond;
        } else {
            k += (symbol.value >> 4) + 1;
            good = k <= kCoefficients && size <= kLongestOther;
            own.Drop(size);
        }
    }
    *bits = own;
    return good;
}

JpegCode::Symbol JpegCode::LongSymbol(unsigned next) const {
    for (int length = kQuick + 1; length <= kLongest; ++length) {
        const auto code = static_cast<std::int32_t>(next >> (kLongest - length));
        if (code >= end_[static_cast<std::size_t>(length)]) continue;
        const std::int32_t place = code + shift_[static_cast<std::size_t>(length)];
        return {symbols_[static_cast<std::size_t>(place)], length};
    }
    return {-1, 0};
}

} // namespace orvane::tools
