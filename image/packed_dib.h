// Packed bitmaps in and out, and the way between bitmaps and the session's pictures.
#pragma once

#include "image/bitmap.h"
#include "image/result_codes.h"
#include "platform/memory_block.h"

namespace orvane {

/// Most pixels a side of a picture that the host hands in.
inline constexpr int32 kMaxPictureSide = 32767;

/// The bitmap in a memory block of the host, which stays the host's. A `biSizeImage` below the
/// picture's true size copies that many bytes and leaves the rest black.
/// 0; -1 for a block that can't be locked; -60 for one shorter than header and pixels say, for a header
/// that is not that of an uncompressed 24-bit bottom-up bitmap, sizes out of range, or a `biSizeImage`
/// beyond the picture's true size; -50 when memory is exhausted. On failure `bitmap` is empty.
int32 BitmapFromPackedDib(void* dib, Bitmap& bitmap);

/// The same for a block that is held locked, whose pixels are not copied: they must stay as long as `bitmap` shows
/// them. Only a picture whose pixels the block does not hold to the end becomes one of its own.
int32 BitmapOverBlock(const LockedBlock& block, Bitmap& bitmap);

/// A bitmap as a new block in `*out`, owned by the host; row padding is zero.
/// 0; -80 for an empty bitmap; -50 when memory is exhausted. On failure `*out` stays.
int32 PackedDibFromBitmap(const Bitmap& bitmap, void** out);

/// Notes the form of a picture in g_pictureWidth and the three beside it.
void NotePicture(int32 width, int32 height, int32 channels, int32 bits);

/// Sets up g_sourceImage and g_workImage for a picture. `mode` must be 1; g_sourceImage takes
/// `channels`, g_workImage always 3; their pixels are for the caller to fill.
/// 0; -40 for another mode; -50 without storage.
int32 InitPicture(int32 mode, int32 width, int32 height, int32 channels, int32 bits);

/// Copies a bitmap into g_sourceImage, padding included. False for an empty bitmap, another mode than
/// 1, or when there is no storage for the picture.
bool LoadBitmapIntoSource(const Bitmap& bitmap, int32 mode = 1);

/// Replaces the bitmap by g_workImage. 0, also for a g_workImage of no size, which leaves the bitmap
/// empty; -50 when g_workImage has a size but no storage, or memory is exhausted.
int32 StoreWorkIntoBitmap(Bitmap& bitmap);

} // namespace orvane
