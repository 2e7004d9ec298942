#include "image/bitmap.h"

#include "primitives/memory.h"

#include <cstring>
#include <utility>

namespace orvane {

int32 BitmapRowBytes(int32 width) { return (24 * width + 31) / 32 * 4; }

BitmapHeader OutgoingHeader(int32 width, int32 height) {
    BitmapHeader header{};
    header.biSize = kBitmapHeaderBytes;
    header.biWidth = width;
    header.biHeight = height;
    header.biPlanes = 1;
    header.biBitCount = 24;
    header.biSizeImage = static_cast<uint32>(BitmapRowBytes(width)) * static_cast<uint32>(height);
    return header;
}

Bitmap::~Bitmap() { Delete(); }

Bitmap::Bitmap(Bitmap&& other) noexcept
    : header_(std::exchange(other.header_, {})), bits_(std::exchange(other.bits_, nullptr)),
      borrowed_(std::exchange(other.borrowed_, false)) {}

Bitmap& Bitmap::operator=(Bitmap&& other) noexcept {
    if (this != &other) {
        Delete();
        header_ = std::exchange(other.header_, {});
        bits_ = std::exchange(other.bits_, nullptr);
        borrowed_ = std::exchange(other.borrowed_, false);
    }
    return *this;
}

bool Bitmap::Create(int32 width, int32 height) {
    Delete();
    if (!IsImageSize(width, height)) return false;
    const BitmapHeader header = OutgoingHeader(width, height);
    bits_ = static_cast<uint8*>(HeapAllocate(header.biSizeImage));
    if (bits_ == nullptr) return false;
    header_ = header;
    return true;
}

void Bitmap::Borrow(const uint8* bits, int32 width, int32 height) {
    Delete();
    header_ = OutgoingHeader(width, height);
    bits_ = const_cast<uint8*>(bits); // read, and no more
    borrowed_ = true;
}

bool Bitmap::Own() {
    if (!borrowed_) return true;
    const uint8* rows = bits_;
    if (!Create(Width(), Height())) return false;
    std::memcpy(bits_, rows, header_.biSizeImage);
    return true;
}

void Bitmap::Delete() {
    if (!borrowed_) HeapFree(bits_);
    bits_ = nullptr;
    borrowed_ = false;
    header_ = {};
}

} // namespace orvane
