#include "tools/operator/packed_picture.h"

#include <cstdint>
#include <cstring>

namespace orvane::tools {
namespace {

/// The 40 bytes in front of the pixels, in the order of memory.
struct Header {
    std::uint32_t size = 40;
    std::int32_t width = 0;
    std::int32_t height = 0;
    std::uint16_t planes = 1;
    std::uint16_t bitCount = 24;
    std::uint32_t compression = 0;
    std::uint32_t sizeImage = 0;
    std::int32_t xPelsPerMetre = 0;
    std::int32_t yPelsPerMetre = 0;
    std::uint32_t coloursUsed = 0;
    std::uint32_t coloursImportant = 0;
};
static_assert(sizeof(Header) == 40);

} // namespace

orv_Handle PackPicture(const Picture& picture) {
    orv_Handle block = orv_BlockAlloc(sizeof(Header) + picture.pixels.size());
    auto* bytes = static_cast<std::uint8_t*>(orv_BlockLock(block));
    if (bytes == nullptr) {
        orv_BlockFree(block);
        return nullptr;
    }
    Header header;
    header.width = picture.width;
    header.height = picture.height;
    header.sizeImage = static_cast<std::uint32_t>(picture.pixels.size()); // below 2^30 within the caps
    std::memcpy(bytes, &header, sizeof header);
    std::memcpy(bytes + sizeof header, picture.pixels.data(), picture.pixels.size());
    orv_BlockUnlock(block);
    return block;
}

bool UnpackPicture(orv_Handle block, Picture* picture) {
    *picture = Picture();
    const std::size_t size = orv_BlockSize(block);
    const auto* bytes = static_cast<const std::uint8_t*>(orv_BlockLock(block));
    if (bytes == nullptr) return false;
    Header header;
    bool good = size >= sizeof header;
    if (good) std::memcpy(&header, bytes, sizeof header);
    good = good && header.bitCount == 24 && IsPictureSizeAllowed(header.width, header.height);
    if (good) {
        const auto rows = static_cast<std::size_t>(header.height);
        const std::size_t length = static_cast<std::size_t>(PictureStep(header.width)) * rows;
        good = size - sizeof header >= length;
        if (good) {
            picture->width = header.width;
            picture->height = header.height;
            picture->step = PictureStep(header.width);
            picture->pixels.assign(bytes + sizeof header, bytes + sizeof header + length);
        }
    }
    orv_BlockUnlock(block);
    return good;
}

} // namespace orvane::tools
