// A picture as a host hands it in: a packed bitmap in a memory block.
#pragma once

#include "orvane/orvane.h"
#include "tests/support/face_scene.h"

#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <utility>
#include <vector>

namespace orvane::test {

/// The 40 bytes before the pixels, in the order of memory.
struct DibHeader {
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
static_assert(sizeof(DibHeader) == 40);

/// The header of a 24-bit picture of this size.
inline DibHeader HeaderFor(std::int32_t width, std::int32_t height) {
    DibHeader header;
    header.width = width;
    header.height = height;
    header.sizeImage = static_cast<std::uint32_t>((3 * width + 3) / 4 * 4) * static_cast<std::uint32_t>(height);
    return header;
}

/// Owns a block, its own or one that the library made. Bytes beyond those given do not exist, so that the
/// address sanitizer sees a read behind the block's end.
class HostBlock {
public:
    HostBlock() = default;
    explicit HostBlock(const std::vector<std::uint8_t>& bytes) : handle_(orv_BlockAlloc(bytes.size())) {
        if (handle_ == nullptr) std::abort(); // no test without a block
        if (!bytes.empty()) std::memcpy(orv_BlockLock(handle_), bytes.data(), bytes.size());
        orv_BlockUnlock(handle_);
    }
    HostBlock(const DibHeader& header, const std::vector<std::uint8_t>& pixels) : HostBlock(Joined(header, pixels)) {}
    explicit HostBlock(const Scene& scene) : HostBlock(HeaderFor(scene.width, scene.height), scene.rows) {}
    ~HostBlock() { orv_BlockFree(handle_); }
    HostBlock(HostBlock&& other) noexcept : handle_(std::exchange(other.handle_, nullptr)) {}
    HostBlock& operator=(HostBlock&& other) noexcept {
        std::swap(handle_, other.handle_);
        return *this;
    }

    orv_Handle Handle() const { return handle_; }
    /// Where an export stores the block that it made; one that is here already is freed.
    orv_Handle* Receive() {
        orv_BlockFree(std::exchange(handle_, nullptr));
        return &handle_;
    }

    std::vector<std::uint8_t> Bytes() const {
        const auto* first = static_cast<const std::uint8_t*>(orv_BlockLock(handle_));
        if (first == nullptr) return {};
        std::vector<std::uint8_t> bytes(first, first + orv_BlockSize(handle_));
        orv_BlockUnlock(handle_);
        return bytes;
    }

    /// The header of a block that holds one; all zero otherwise.
    DibHeader Header() const {
        DibHeader header{0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0};
        const std::vector<std::uint8_t> bytes = Bytes();
        if (bytes.size() >= sizeof header) std::memcpy(&header, bytes.data(), sizeof header);
        return header;
    }

private:
    static std::vector<std::uint8_t> Joined(const DibHeader& header, const std::vector<std::uint8_t>& pixels) {
        std::vector<std::uint8_t> bytes(sizeof header);
        std::memcpy(bytes.data(), &header, sizeof header);
        bytes.insert(bytes.end(), pixels.begin(), pixels.end());
        return bytes;
    }

    orv_Handle handle_ = nullptr;
};

} // namespace orvane::test
