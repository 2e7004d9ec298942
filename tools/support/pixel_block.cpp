#include "tools/support/pixel_block.h"

#include "primitives/memory.h"

#include <algorithm>
#include <new>
#include <utility>

namespace orvane::tools {

PixelBlock::PixelBlock(std::size_t size) : size_(size) {
    if (size == 0) return;
    bytes_.reset(static_cast<uint8*>(HeapAllocate(size)), HeapFree);
    if (bytes_ == nullptr) throw std::bad_alloc();
}

PixelBlock::PixelBlock(const PixelBlock& other) : PixelBlock(other.size_) {
    std::copy(other.begin(), other.end(), begin());
}

PixelBlock& PixelBlock::operator=(const PixelBlock& other) { return *this = PixelBlock(other); }

PixelBlock::PixelBlock(PixelBlock&& other) noexcept
    : bytes_(std::move(other.bytes_)), size_(std::exchange(other.size_, 0)) {}

PixelBlock& PixelBlock::operator=(PixelBlock&& other) noexcept {
    bytes_ = std::move(other.bytes_);
    size_ = std::exchange(other.size_, 0);
    return *this;
}

bool PixelBlock::operator==(const PixelBlock& other) const {
    return std::equal(begin(), end(), other.begin(), other.end());
}

} // namespace orvane::tools
