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

PackedRows::PackedRows(orv_Handle block) : block_(block) {
    const std::size_t size = orv_BlockSize(block);
    const auto* bytes = static_cast<const std::uint8_t*>(orv_BlockLock(block));
    Header header;
    if (bytes == nullptr || size < sizeof header) return;
    std::memcpy(&header, bytes, sizeof header);
    if (header.bitCount != 24 || !IsPictureSizeAllowed(header.width, header.height)) return;
    const auto rows = static_cast<std::size_t>(header.height);
    if (size - sizeof header < static_cast<std::size_t>(PictureStep(header.width)) * rows) return;
    rows_ = {bytes + sizeof header, header.width, header.height};
}

PackedRows::~PackedRows() {
    if (block_ != nullptr) orv_BlockUnlock(block_);
}

Picture UnpackPicture(orv_Handle block) {
    const PackedRows packed(block);
    const PixelRows& rows = packed.Rows();
    Picture picture;
    if (rows.pixels == nullptr) return picture;
    picture.width = rows.width;
    picture.height = rows.height;
    picture.step = rows.Step();
    picture.pixels = PixelBlock(PictureBytes(rows.width, rows.height));
    std::memcpy(picture.pixels.data(), rows.pixels, picture.pixels.size());
    return picture;
}

} // namespace orvane::tools
