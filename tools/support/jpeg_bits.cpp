#include "tools/support/jpeg_bits.h"

#include <algorithm>

namespace orvane::tools {

bool JpegBits::IsAtMarker() const {
    return at_ + 1 >= data_.size() || (data_[at_] == '\xFF' && data_[at_ + 1] != '\0');
}

/// Four bytes more where none of them is FF, else one. A byte FF of the data is followed by a zero, which is none.
void JpegBits::Load() {
    if (held_ <= 32 && at_ + 4 <= data_.size()) {
        std::uint32_t word = 0;
        for (std::size_t i = 0; i < 4; ++i) word = word << 8 | static_cast<unsigned char>(data_[at_ + i]);
        // A byte of the complement that is zero borrows into its own highest bit, which it has not itself.
        if (((~word - 0x01010101) & word & 0x80808080) == 0) {
            bits_ = bits_ << 32 | word;
            held_ += 32;
            real_ += 32;
            at_ += 4;
            return;
        }
    }
    unsigned byte = 0;
    if (!IsAtMarker()) {
        byte = static_cast<unsigned char>(data_[at_]);
        at_ += byte == 0xFF ? 2 : 1;
        real_ += 8;
    }
    bits_ = bits_ << 8 | byte;
    held_ += 8;
}

bool JpegBits::ReachMarker(std::size_t* marker) {
    // Fewer than 8 bits fill up the last byte.
    if (HasRunDry() || real_ >= 8 || !IsAtMarker()) return false;
    while (at_ + 1 < data_.size() && data_[at_] == '\xFF' && data_[at_ + 1] == '\xFF') ++at_; // fill bytes
    if (at_ + 1 >= data_.size()) return false;
    *marker = at_;
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
    return set_ = true;
}

int JpegCode::TakeLong(JpegBits* bits) const {
    const unsigned next = bits->Peek(kLongest);
    for (int length = kQuick + 1; length <= kLongest; ++length) {
        const auto code = static_cast<std::int32_t>(next >> (kLongest - length));
        if (code >= end_[static_cast<std::size_t>(length)]) continue;
        bits->Drop(length);
        const std::int32_t place = code + shift_[static_cast<std::size_t>(length)];
        return symbols_[static_cast<std::size_t>(place)];
    }
    return -1;
}

} // namespace orvane::tools
