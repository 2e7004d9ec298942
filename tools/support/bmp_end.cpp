#include "tools/support/bmp_end.h"

#include "tools/support/byte_order.h"

#include <cstddef>
#include <cstdint>

namespace orvane::tools {
namespace {

constexpr std::size_t kPixelsAt = 10;
constexpr std::size_t kHeaderSizeAt = 14;
constexpr std::size_t kHeaderAt = 18;    // behind the header's own size
constexpr std::uint64_t kOldHeader = 12; // with 16-bit sizes, never compressed
constexpr std::uint64_t kSign = 1U << 31;

/// Bytes from the first row to the end of the last one's pixels.
std::uint64_t RowsBytes(std::uint64_t width, std::uint64_t height, std::uint64_t bits) {
    if (height == 0) return 0;
    return (width * bits + 31) / 32 * 4 * (height - 1) + (width * bits + 7) / 8;
}

} // namespace

bool IsBmp(const std::string& data) { return data.size() >= 2 && data[0] == 'B' && data[1] == 'M'; }

bool BmpReachesItsEnd(const std::string& data) {
    if (!IsBmp(data) || data.size() < kHeaderAt + 8) return false;
    const std::uint64_t first = LowFirst(data, kPixelsAt, 4);
    const std::uint64_t headerSize = LowFirst(data, kHeaderSizeAt, 4);
    if (headerSize == kOldHeader) {
        const std::uint64_t rows =
            RowsBytes(LowFirst(data, kHeaderAt, 2), LowFirst(data, kHeaderAt + 2, 2), LowFirst(data, kHeaderAt + 6, 2));
        return first + rows <= data.size();
    }
    if (data.size() < kHeaderSizeAt + 40) return false;
    const std::uint64_t width = LowFirst(data, kHeaderAt, 4);
    std::uint64_t height = LowFirst(data, kHeaderAt + 4, 4);
    if (height >= kSign) height = 2 * kSign - height; // negative: the top row comes first
    const std::uint64_t bits = LowFirst(data, kHeaderAt + 10, 2);
    const std::uint64_t compression = LowFirst(data, kHeaderAt + 12, 4);
    const bool runs = compression == 1 || compression == 2;
    // With these bounds a row has less than 2^33 bytes, and the product of at most 2^31 rows fits.
    if (width >= kSign || bits > 32) return false;
    const bool hasPalette = bits <= 8; // others may tell of colours that they do not have
    const std::uint64_t palette = hasPalette ? std::uint64_t{4} * LowFirst(data, kHeaderAt + 28, 4) : 0;
    if (kHeaderSizeAt + headerSize + palette > data.size()) return false;
    return first + (runs ? LowFirst(data, kHeaderAt + 16, 4) : RowsBytes(width, height, bits)) <= data.size();
}

} // namespace orvane::tools
