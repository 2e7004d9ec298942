#include "tools/support/tiff_block.h"

#include <iterator>

namespace orvane::tools {
namespace {

constexpr unsigned kShortNumber = 3;
constexpr unsigned kLongNumber = 4;
constexpr unsigned kFraction = 5;
constexpr std::size_t kEntryBytes = 12;

/// Bytes of a value of each type, from 1 on.
constexpr std::size_t kTypeBytes[] = {0, 1, 1, 2, 4, 8, 1, 1, 2, 4, 8, 4, 8};

} // namespace

TiffBlock::TiffBlock(const std::string& bytes) : bytes_(bytes), highFirst_(bytes.compare(0, 2, "MM") == 0) {}

std::optional<std::size_t> TiffBlock::FirstList() const {
    if ((!highFirst_ && bytes_.compare(0, 2, "II") != 0) || Number(2, 2) != 42) return std::nullopt;
    return Number(4, 4);
}

std::vector<TiffBlock::Entry> TiffBlock::Entries(std::size_t list) const {
    std::vector<Entry> entries;
    const std::size_t count = Number(list, 2);
    for (std::size_t i = 0; i < count; ++i) {
        const std::size_t at = list + 2 + i * kEntryBytes;
        if (at > bytes_.size() || bytes_.size() - at < kEntryBytes) break;
        Entry entry;
        entry.tag = Number(at, 2);
        entry.type = Number(at + 2, 2);
        entry.count = Number(at + 4, 4);
        if (entry.type == 0 || entry.type >= std::size(kTypeBytes)) continue;
        if (entry.count > bytes_.size()) continue;
        entry.bytes = entry.count * kTypeBytes[entry.type];
        entry.at = entry.bytes <= 4 ? at + 8 : Number(at + 8, 4);
        if (entry.at > bytes_.size() || bytes_.size() - entry.at < entry.bytes) continue;
        entries.push_back(entry);
    }
    return entries;
}

std::optional<std::uint32_t> TiffBlock::Value(unsigned tag) const {
    const std::optional<std::size_t> list = FirstList();
    if (!list) return std::nullopt;
    for (const Entry& entry : Entries(*list)) {
        if (entry.tag != tag || entry.count == 0) continue;
        if (entry.type == kShortNumber) return Number(entry.at, 2);
        if (entry.type == kLongNumber) return Number(entry.at, 4);
    }
    return std::nullopt;
}

std::optional<double> TiffBlock::Fraction(unsigned tag) const {
    const std::optional<std::size_t> list = FirstList();
    if (!list) return std::nullopt;
    for (const Entry& entry : Entries(*list)) {
        if (entry.tag != tag || entry.type != kFraction || entry.count == 0) continue;
        const std::uint32_t below = Number(entry.at + 4, 4);
        if (below != 0) return static_cast<double>(Number(entry.at, 4)) / below;
    }
    return std::nullopt;
}

std::uint32_t TiffBlock::Number(std::size_t at, std::size_t count) const {
    if (at > bytes_.size() || bytes_.size() - at < count) return 0;
    std::uint32_t value = 0;
    for (std::size_t i = 0; i < count; ++i) {
        const std::size_t place = highFirst_ ? at + i : at + count - 1 - i;
        value = value << 8 | static_cast<unsigned char>(bytes_[place]);
    }
    return value;
}

} // namespace orvane::tools
