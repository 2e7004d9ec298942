#include "tools/operator/review.h"

#include "orvane/orvane.h"
#include "tools/operator/packed_picture.h"
#include "tools/support/picture_io.h"
#include "tools/support/result_stream.h"
#include "tools/support/status_text.h"
#include "tools/support/utf8.h"
#include "tools/support/whole_file.h"

namespace orvane::tools {
namespace {

/// The library's session, open as long as this lives.
class Session {
public:
    Session() : status_(orv_InitDLL()) {}
    ~Session() { orv_ReleaseDLL(); }
    Session(const Session&) = delete;
    Session& operator=(const Session&) = delete;

    int32 Status() const { return status_; }

private:
    int32 status_;
};

OperatorExit Fail(const std::string& line) {
    PrintOperatorError(line);
    return kReviewError;
}

/// Says which setting was refused.
bool Accepted(int32 status, const std::string& setting) {
    if (status == ORV_OK) return true;
    const std::string why =
        status == ORV_BAD_ARGUMENT ? "the library refuses it (" + std::to_string(status) + ")" : StatusText(status);
    PrintOperatorError(setting + ": " + why);
    return false;
}

bool AcceptedLanguage(const std::string& name) {
    const int32 status = orv_SetLanguageFile(name.c_str());
    if (status != ORV_BAD_ARGUMENT) return Accepted(status, "--language");
    PrintOperatorError("--language: '" + name + "' cannot be opened in the library's folder");
    return false;
}

bool Configure(const OperatorOptions& options) {
    return Accepted(orv_SetVisibleMode(options.hidden ? 0 : 1), "--hidden") &&
           (options.language.empty() || AcceptedLanguage(options.language)) &&
           Accepted(orv_SetSizeOutputImage(options.width, options.height), "--size") &&
           Accepted(orv_SetFaceCropRatio(options.cropRatio), "--crop-ratio") &&
           Accepted(orv_EnableAction(ORV_CROP, options.actions.crop ? 1 : 0), "the action crop") &&
           Accepted(orv_EnableAction(ORV_REMOVE_BACKGROUND, options.actions.background ? 1 : 0),
                    "the action background") &&
           Accepted(orv_EnableAction(ORV_CORRECT_COLOUR, options.actions.colour ? 1 : 0), "the action colour") &&
           Accepted(orv_EnableAction(ORV_ROTATE, options.actions.rotation ? 1 : 0), "the action rotation");
}

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

OperatorExit WriteOutput(const OperatorOptions& options, const Picture& portrait, int32 result) {
    // In a window the operator saw what they took.
    if (options.hidden && options.actions.crop && !HasAskedSize(portrait.width, portrait.height, options)) {
        return Fail(options.photo + ": " + kCorrectionFailed);
    }
    std::string error;
    if (!WritePicture(options.output, portrait, options.force, &error)) {
        return Fail("the output '" + options.output + "' " + error);
    }
    std::string line = OneLine(options.output) + ": " + std::to_string(portrait.width) + "x" +
                       std::to_string(portrait.height) + ", result " + std::to_string(result);
    if (result == ORV_NO_FACE) line += ", no face was found and the operator marked it";
    return WriteResult(line + "\n") ? kReviewWritten : Fail("cannot write to standard output");
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
    int32 status = ORV_OK;
    {
        Block output;
        status = orv_GetOutputImage(output.Receive());
        if (status == ORV_OK) portrait = UnpackPicture(output.Handle());
    }
    const bool made = status == ORV_OK && !portrait.pixels.empty();
    if (result == ORV_NO_FACE &&
        (status == ORV_NO_SESSION || (made && !IsMarkedPortrait(options, portrait, PackedRows(photo).Rows())))) {
        PrintOperatorError(options.photo + ": " + StatusText(ORV_NO_FACE));
        return kReviewNoFace;
    }
    if (!made) return Fail(options.photo + ": there is no portrait to write (" + std::to_string(status) + ")");
    return WriteOutput(options, portrait, result);
}

} // namespace

void PrintOperatorError(const std::string& line) { WriteMessage("orvane-operator: " + OneLine(line) + "\n"); }

OperatorExit RunReview(const OperatorOptions& options) {
    // All that can be told of the output is told now: afterwards the operator's work would be lost.
    if (!IsWritablePictureName(options.output)) return Fail("'" + options.output + "' " + kUnwritableName);
    std::string error;
    if (!CanWriteWholeFile(options.output, options.force, &error)) {
        return Fail("the output '" + options.output + "' " + error);
    }
    const Block photo(PackPhoto(options.photo));
    if (photo.Handle() == nullptr) return kReviewError;
    const Session session;
    if (session.Status() != ORV_OK) return Fail("the library did not start: " + StatusText(session.Status()));
    if (!Configure(options)) return kReviewError;
    const int32 result = orv_DetectFacePicture(photo.Handle());
    if (result == ORV_OK || result == ORV_NO_FACE) return TakeOutput(options, photo.Handle(), result);
    PrintOperatorError(options.photo + ": " + StatusText(result));
    return result == ORV_CANCELLED ? kReviewCancelled : kReviewError;
}

} // namespace orvane::tools
