// The one class in which all pixels live: pictures, masks and numeric planes. It owns one block of
// rows, or shows one of somebody else's; whatever it describes with `data` not null has Step() * height addressable
// bytes.
#pragma once

#include "primitives/types.h"

namespace orvane {

/// The form of an element in one number: bits 0 to 5 hold the sample's bits, 0x100 says signed, 0x200
/// floating point, 0x400 two samples a pixel (complex).
using DepthCode = int32;
inline constexpr DepthCode kDepth8u = 8;
inline constexpr DepthCode kDepth16u = 0x10;
inline constexpr DepthCode kDepth16s = 0x110;
inline constexpr DepthCode kDepth32f = 0x220;
inline constexpr DepthCode kDepth64f = 0x240;
inline constexpr DepthCode kDepth32fc = 0x620;

/// Most pixels that an image takes, a side and in all. A thin picture's work picture may be longer
/// than any picture that the host may hand in, hence the wide limit of a side.
inline constexpr int32 kMaxImageSide = 1 << 20;
inline constexpr int64 kMaxImagePixels = 268'000'000;

/// True for sizes that an image takes.
inline bool IsImageSize(int32 width, int32 height) {
    return width >= 1 && height >= 1 && width <= kMaxImageSide && height <= kMaxImageSide &&
           static_cast<int64>(width) * height <= kMaxImagePixels;
}

/// Rows lie as in a 24-bit bitmap: row 0 is the bottom of the picture, pixels blue, green, red, each
/// row padded to a multiple of 4 bytes. New storage is zero, unless Remake says otherwise. Not safe for concurrent use
/// of one object.
class ImageBuffer {
public:
    ImageBuffer() = default;
    virtual ~ImageBuffer();
    ImageBuffer(const ImageBuffer&) = delete; // copies are explicit: CopyFrom
    ImageBuffer& operator=(const ImageBuffer&) = delete;
    /// The moved-from image is empty.
    ImageBuffer(ImageBuffer&& other) noexcept;
    ImageBuffer& operator=(ImageBuffer&& other) noexcept;

    /// Bytes from one row to the next; 0 where the fields describe no possible row.
    int32 Step() const;

    /// Gets zeroed storage for the present fields; what the image held before is released. `data` is
    /// null afterwards when memory is exhausted, a size is out of range, or `channels` and `depth`
    /// have no storage form (1 and 3 channels only, 3 not with 0x620).
    void Allocate();

    /// Releases, takes the five values and allocates. True when there is storage.
    bool Create(int32 newWidth, int32 newHeight, int32 newChannels, DepthCode newDepth, int32 newPlanar);

    /// Takes another size in the storage at hand, so that a loop over sizes allocates once; gets new
    /// storage where that is too small. The pixels are whatever the storage held. False without storage.
    bool Reshape(int32 newWidth, int32 newHeight);

    /// As Create for interleaved channels, but in the storage at hand where that is large enough, and new storage of
    /// 8 bits is not zeroed: the pixels are whatever it held, only the padding of the rows is zero. For whoever writes
    /// every pixel anyway.
    bool Remake(int32 newWidth, int32 newHeight, int32 newChannels, DepthCode newDepth);

    /// Shows 8-bit rows that belong to somebody else, Step() bytes apart, in place of what the image held. They must
    /// stay until the image shows or holds something else; they are never freed and never taken for new storage.
    void Borrow(const uint8* rows, int32 newWidth, int32 newHeight, int32 newChannels);

    /// Forgets the shape, but keeps the storage for Remake.
    void Retire();

    /// Deep copy. Without storage in `other` only the shape is taken. Pixels are copied for one channel
    /// of 8, 0x110 and 0x220 and for three channels of 8; other forms get zeroed storage.
    void CopyFrom(const ImageBuffer& other);

    /// Frees the storage; the shape stays. Harmless when repeated.
    void Release();

    /// Releases and forgets the shape.
    void Reset();

    void Swap(ImageBuffer& other) noexcept;

    /// Sets every pixel. One channel: the value truncated (8, 0x110) or narrowed to float (0x220).
    /// Three channels of 8: trunc(value + 0.5) in all three. Values beyond the element are limited to
    /// its range. 0, the fill's status, or -9999 for another depth.
    int32 Fill(double value);

    ImageSize Size() const { return {width, height}; }

    int32 width = 0;
    int32 height = 0;
    DepthCode depth = 0;
    int32 channels = 0; // interleaved channels of a pixel: 1 or 3
    int32 planar = 0;   // 0: interleaved; else a plane for each channel
    uint8* data = nullptr;

private:
    int64 RowBytes() const; // without padding
    int64 StorageBytes() const;
    void AllocateAs(bool zeroed);
    bool ReshapeAs(bool zeroed, int32 newWidth, int32 newHeight);
    bool IsBorrowed() const { return data != nullptr && storedDepth_ == 0; }

    int64 capacity_ = 0;        // bytes that `data` was allocated for
    DepthCode storedDepth_ = 0; // the depth that `data` was allocated with, which tells how to free it; 0 borrowed
};

} // namespace orvane
