// The bytes in which a picture's rows lie: a block of its own, or one that its maker handed over, so that a decoder's
// rows and the session's output are never copied on the way.
#pragma once

#include "primitives/types.h"

#include <cstddef>
#include <memory>
#include <utility>

namespace orvane::tools {

/// A copy has bytes of its own; the moved-from block is empty.
class PixelBlock {
public:
    PixelBlock() = default;
    /// Zeroed bytes. Throws std::bad_alloc.
    explicit PixelBlock(std::size_t size);
    /// Bytes that were handed over: whoever made them lets go of them.
    PixelBlock(std::shared_ptr<uint8> bytes, std::size_t size) : bytes_(std::move(bytes)), size_(size) {}
    PixelBlock(const PixelBlock& other);
    PixelBlock& operator=(const PixelBlock& other);
    PixelBlock(PixelBlock&& other) noexcept;
    PixelBlock& operator=(PixelBlock&& other) noexcept;
    ~PixelBlock() = default;

    std::size_t size() const { return size_; }
    bool empty() const { return size_ == 0; }
    uint8* data() { return bytes_.get(); }
    const uint8* data() const { return bytes_.get(); }
    uint8* begin() { return data(); }
    uint8* end() { return data() + size_; }
    const uint8* begin() const { return data(); }
    const uint8* end() const { return data() + size_; }

    bool operator==(const PixelBlock& other) const;

private:
    std::shared_ptr<uint8> bytes_; // one owner; shared only for a deleter of any kind
    std::size_t size_ = 0;
};

} // namespace orvane::tools
