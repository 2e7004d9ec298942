#include "tools/support/tiff_block.h"

namespace orvane::tools {
namespace {

constexpr unsigned kShortNumber = 3;
constexpr unsigned kLongNumber = 4;
constexpr std::size_t kEntryBytes = 12;

} // namespace

TiffBlock::TiffBlock(const std::string& bytes) : bytes_(bytes), highFirst_(bytes.compare(0, 2, "MM") == 0) {}

std::optional<std::uint32_t> TiffBlock::Value(unsigned tag) const {
    if ((!highFirst_ && bytes_.compare(0, 2, "II") != 0) || Number(2, 2) != 42) return std::nullopt;
    const std::size_t list = Number(4, 4);
    const std::size_t count = Number(list, 2);
    for (std::size_t i = 0; i < count; ++i) {
        const std::size_t entry = list + 2 + i * kEntryBytes;
        if (entry > bytes_.size() || bytes_.size() - entry < kEntryBytes) break;
        if (Number(entry, 2) != tag) continue;
        const unsigned type = Number(entry + 2, 2);
        if (type == kShortNumber) return Number(entry + 8, 2);
        if (type == kLongNumber) return Number(entry + 8, 4);
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
