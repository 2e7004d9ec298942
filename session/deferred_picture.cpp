#include "session/deferred_picture.h"

#include "image/packed_dib.h"
#include "image/session_images.h"

namespace orvane {

void DeferredPicture::Promise(const Bitmap& photo, const OutputScaling& scaling) {
    photo_.Borrow(photo.Bits(), photo.Width(), photo.Height(), 3);
    scaling_ = scaling;
}

void DeferredPicture::Present() {
    NotePicture(scaling_.size.width, scaling_.size.height, 3, 24);
    g_sourceImage.Borrow(nullptr, scaling_.size.width, scaling_.size.height, 3);
}

bool DeferredPicture::IsPending() const {
    return IsPromised() && g_sourceImage.data == nullptr && g_sourceImage.width == scaling_.size.width &&
           g_sourceImage.height == scaling_.size.height;
}

int32 DeferredPicture::MakeWhole() const {
    ImageBuffer whole;
    const int32 status = MakePart({0, 0, scaling_.size.width, scaling_.size.height}, whole);
    if (status == kSuccess) g_sourceImage.Swap(whole);
    return status;
}

int32 DeferredPicture::MakePart(const ImageRect& part, ImageBuffer& destination) const {
    if (!destination.Create(part.width, part.height, 3, kDepth8u, 0)) return kOutOfMemory;
    if (ScalePart(photo_, scaling_, part, destination) == kSuccess) return kSuccess;
    destination.Release(); // half a picture must not pass for one
    return kOutOfMemory;
}

int32 DeferredPicture::MakeBitmap(Bitmap& bitmap) const {
    const auto [width, height] = scaling_.size;
    if (!bitmap.Create(width, height)) return kOutOfMemory;
    ImageBuffer rows;
    rows.Borrow(bitmap.Bits(), width, height, 3);
    if (ScalePart(photo_, scaling_, {0, 0, width, height}, rows) == kSuccess) return kSuccess;
    bitmap.Delete();
    return kOutOfMemory;
}

} // namespace orvane
