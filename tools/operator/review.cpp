#include "tools/operator/review.h"

#include "orvane/orvane.h"
#include "tools/operator/library_session.h"
#include "tools/operator/packed_picture.h"
#include "tools/operator/portrait_file.h"
#include "tools/support/picture_io.h"
#include "tools/support/status_text.h"

namespace orvane::tools {
namespace {

/// The photo as a block; null, with a line on standard error, where there is none.
orv_Handle PackPhoto(const std::string& path) {
    Picture photo;
    std::string error;
    orv_Handle block = nullptr;
    if (ReadPicture(path, &photo, &error)) {
        block = PackPicture(photo);
        if (block == nullptr) error = StatusText(ORV_NO_MEMORY);
    }
    if (block == nullptr) PrintOperatorError(path + ": " + error);
    return block;
}

/// Whether the output after a detection without a face is a portrait that the operator made by marking one.
/// Where nobody was asked the library's output is the photo, scaled for the work on it.
bool IsMarkedPortrait(const OperatorOptions& options, const Picture& output, const PixelRows& photo) {
    if (!options.actions.crop) {
        PortraitSettings ofPhoto;
        ofPhoto.width = photo.width;
        ofPhoto.height = photo.height;
        return HasAskedSize(output.width, output.height, ofPhoto);
    }
    return HasAskedSize(output.width, output.height, options) &&
           !ShowSameScene({output.pixels.data(), output.width, output.height}, photo);
}

/// After a detect call that gave 0 or 10.
OperatorExit TakeOutput(const OperatorOptions& options, orv_Handle photo, int32 result) {
    Picture portrait;
    const int32 status = FetchPortrait(&portrait);
    const bool made = !portrait.pixels.empty();
    if (result == ORV_NO_FACE &&
        (status == ORV_NO_SESSION || (made && !IsMarkedPortrait(options, portrait, PackedRows(photo).Rows())))) {
        return EndWithResult(options.photo, result);
    }
    if (!made) return FailWithoutPortrait(options.photo, status);
    // In a window the operator saw what they took.
    if (options.hidden && options.actions.crop && !HasAskedSize(portrait.width, portrait.height, options)) {
        return Fail(options.photo + ": " + kCorrectionFailed);
    }
    return WritePortrait(options, portrait, result,
                         result == ORV_NO_FACE ? ", no face was found and the operator marked it" : "");
}

} // namespace

OperatorExit RunReview(const OperatorOptions& options) {
    if (!CanWritePortrait(options)) return kOperatorError;
    const Block photo(PackPhoto(options.photo));
    if (photo.Handle() == nullptr) return kOperatorError;
    const LibrarySession session;
    if (!session.IsOpen() || !Accepted(orv_SetVisibleMode(options.hidden ? 0 : 1), "--hidden") ||
        !ConfigurePortrait(options)) {
        return kOperatorError;
    }
    const int32 result = orv_DetectFacePicture(photo.Handle());
    if (result == ORV_OK || result == ORV_NO_FACE) return TakeOutput(options, photo.Handle(), result);
    return EndWithResult(options.photo, result);
}

} // namespace orvane::tools
