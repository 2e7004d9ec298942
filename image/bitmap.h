// A 24-bit bitmap, header and pixels: what the host hands in, what the preview shows and what
// goes out. Its rows have the form of a three-channel ImageBuffer, so pixels move in one block copy.
#pragma once

#include "image/image_buffer.h"

namespace orvane {

/// The 40-byte header of a device-independent bitmap (BITMAPINFOHEADER), little-endian in memory.
struct BitmapHeader {
    uint32 biSize;
    int32 biWidth;
    int32 biHeight;
    uint16 biPlanes;
    uint16 biBitCount;
    uint32 biCompression;
    uint32 biSizeImage;
    int32 biXPelsPerMeter;
    int32 biYPelsPerMeter;
    uint32 biClrUsed;
    uint32 biClrImportant;
};
inline constexpr int32 kBitmapHeaderBytes = 40;
static_assert(sizeof(BitmapHeader) == kBitmapHeaderBytes);

/// Bytes of a 24-bit row, padded to a multiple of 4; `width` from 1 to kMaxImageSide.
int32 BitmapRowBytes(int32 width);

/// The header that leaves the library for a picture of this size.
BitmapHeader OutgoingHeader(int32 width, int32 height);

class Bitmap {
public:
    Bitmap() = default;
    ~Bitmap();
    Bitmap(const Bitmap&) = delete;
    Bitmap& operator=(const Bitmap&) = delete;
    /// The moved-from bitmap is empty.
    Bitmap(Bitmap&& other) noexcept;
    Bitmap& operator=(Bitmap&& other) noexcept;

    /// A black picture of this size, in place of what the bitmap held. False, and empty, for a size
    /// out of range or when memory is exhausted.
    bool Create(int32 width, int32 height);

    /// A bitmap over rows that belong to somebody else, for reading: they must stay as long as the bitmap shows them.
    void Borrow(const uint8* bits, int32 width, int32 height);

    /// Copies rows that belong to somebody else, so that they may go. False when memory is exhausted: the bitmap is
    /// empty then.
    bool Own();

    /// Forgets header and pixels; the bitmap is empty then.
    void Delete();

    bool IsEmpty() const { return bits_ == nullptr; }
    int32 Width() const { return header_.biWidth; }
    int32 Height() const { return header_.biHeight; }
    ImageSize Size() const { return {Width(), Height()}; }

    /// All zero in an empty bitmap.
    const BitmapHeader& Header() const { return header_; }

    /// `Header().biSizeImage` bytes, bottom row first; null in an empty bitmap.
    uint8* Bits() { return bits_; }
    const uint8* Bits() const { return bits_; }

private:
    BitmapHeader header_{};
    uint8* bits_ = nullptr;
    bool borrowed_ = false;
};

} // namespace orvane
