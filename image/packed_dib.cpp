// One block copy each way: a 24-bit bitmap and a three-channel picture have the same rows.
#include "image/packed_dib.h"

#include "image/session_images.h"

#include <cstring>

namespace orvane {
namespace {

/// Zeroes what lies between the last pixel and the end of each row.
void ClearRowPadding(uint8* rows, int32 width, int32 height) {
    const int32 step = BitmapRowBytes(width);
    const int32 used = 3 * width;
    if (used == step) return;
    for (int32 y = 0; y < height; ++y)
        std::memset(RowAt(rows, step, y) + used, 0, static_cast<std::size_t>(step - used));
}

/// Makes an 8-bit picture of this shape, in the storage at hand where that is large enough: pictures of
/// one session follow each other in like sizes. Whoever shapes a picture fills it wholly afterwards.
bool Shape(ImageBuffer& image, int32 width, int32 height, int32 channels) {
    if (image.depth != kDepth8u || image.channels != channels || image.planar != 0) {
        return image.Create(width, height, channels, kDepth8u, 0);
    }
    return image.Reshape(width, height);
}

bool IsSupported(const BitmapHeader& header) {
    return header.biSize == kBitmapHeaderBytes && header.biBitCount == 24 && header.biCompression == 0 &&
           header.biWidth <= kMaxPictureSide && header.biHeight <= kMaxPictureSide &&
           IsImageSize(header.biWidth, header.biHeight);
}

} // namespace

int32 BitmapFromPackedDib(void* dib, Bitmap& bitmap) {
    const LockedBlock block(dib);
    const int32 status = BitmapOverBlock(block, bitmap);
    return status != kSuccess || bitmap.Own() ? status : kOutOfMemory;
}

int32 BitmapOverBlock(const LockedBlock& block, Bitmap& bitmap) {
    bitmap.Delete();
    if (block.Data() == nullptr) return kLockFailed;
    if (block.Size() < kBitmapHeaderBytes) return kNoPicture;
    BitmapHeader header;
    std::memcpy(&header, block.Data(), kBitmapHeaderBytes);
    if (!IsSupported(header)) return kNoPicture;
    const uint32 trueSize = OutgoingHeader(header.biWidth, header.biHeight).biSizeImage;
    if (header.biSizeImage > trueSize || header.biSizeImage > block.Size() - kBitmapHeaderBytes) return kNoPicture;
    const uint8* rows = static_cast<const uint8*>(block.Data()) + kBitmapHeaderBytes;
    if (header.biSizeImage == trueSize) {
        bitmap.Borrow(rows, header.biWidth, header.biHeight);
        return kSuccess;
    }
    if (!bitmap.Create(header.biWidth, header.biHeight)) return kOutOfMemory;
    std::memcpy(bitmap.Bits(), rows, header.biSizeImage);
    return kSuccess;
}

int32 PackedDibFromBitmap(const Bitmap& bitmap, void** out) {
    if (bitmap.IsEmpty()) return kNoSession;
    const BitmapHeader& header = bitmap.Header();
    void* handle = AllocateBlock(std::size_t{header.biSizeImage} + kBitmapHeaderBytes);
    if (handle == nullptr) return kOutOfMemory;
    {
        const LockedBlock block(handle);
        if (block.Data() == nullptr) {
            FreeBlock(handle);
            return kOutOfMemory;
        }
        auto* bytes = static_cast<uint8*>(block.Data());
        std::memcpy(bytes, &header, kBitmapHeaderBytes);
        std::memcpy(bytes + kBitmapHeaderBytes, bitmap.Bits(), header.biSizeImage);
        ClearRowPadding(bytes + kBitmapHeaderBytes, bitmap.Width(), bitmap.Height());
    }
    *out = handle;
    return kSuccess;
}

void NotePicture(int32 width, int32 height, int32 channels, int32 bits) {
    g_pictureWidth = width;
    g_pictureHeight = height;
    g_pictureChannels = channels;
    g_pictureBits = bits;
}

int32 InitPicture(int32 mode, int32 width, int32 height, int32 channels, int32 bits) {
    NotePicture(width, height, channels, bits);
    if (mode != 1) return kStepFailed;
    return Shape(g_sourceImage, width, height, channels) && Shape(g_workImage, width, height, 3) ? kSuccess
                                                                                                 : kOutOfMemory;
}

bool LoadBitmapIntoSource(const Bitmap& bitmap, int32 mode) {
    if (bitmap.IsEmpty()) return false;
    if (InitPicture(mode, bitmap.Width(), bitmap.Height(), 3, 24) != kSuccess) return false;
    std::memcpy(g_sourceImage.data, bitmap.Bits(), bitmap.Header().biSizeImage);
    return true;
}

int32 StoreWorkIntoBitmap(Bitmap& bitmap) {
    const bool fits = !bitmap.IsEmpty() && bitmap.Width() == g_workImage.width && bitmap.Height() == g_workImage.height;
    if (!fits || g_workImage.data == nullptr || g_workImage.channels != 3) bitmap.Delete();
    if (g_workImage.width < 1 || g_workImage.height < 1) return kSuccess;
    if (g_workImage.data == nullptr || g_workImage.channels != 3) return kOutOfMemory;
    // A bitmap of that size is kept: every byte of it is about to be overwritten.
    if (!fits && !bitmap.Create(g_workImage.width, g_workImage.height)) return kOutOfMemory;
    std::memcpy(bitmap.Bits(), g_workImage.data, bitmap.Header().biSizeImage);
    ClearRowPadding(bitmap.Bits(), bitmap.Width(), bitmap.Height());
    return kSuccess;
}

} // namespace orvane
