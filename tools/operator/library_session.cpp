#include "tools/operator/library_session.h"

#include "orvane/orvane.h"
#include "tools/operator/outcome.h"
#include "tools/support/status_text.h"

namespace orvane::tools {
namespace {

bool AcceptedLanguage(const std::string& name) {
    const int32 status = orv_SetLanguageFile(name.c_str());
    if (status != ORV_BAD_ARGUMENT) return Accepted(status, "--language");
    PrintOperatorError("--language: '" + name + "' cannot be opened in the library's folder");
    return false;
}

} // namespace

LibrarySession::LibrarySession() {
    const int32 status = orv_InitDLL();
    open_ = status == ORV_OK;
    if (!open_) PrintOperatorError("the library did not start: " + StatusText(status));
}

LibrarySession::~LibrarySession() { orv_ReleaseDLL(); }

bool Accepted(int32 status, const std::string& setting) {
    if (status == ORV_OK) return true;
    const std::string why =
        status == ORV_BAD_ARGUMENT ? "the library refuses it (" + std::to_string(status) + ")" : StatusText(status);
    PrintOperatorError(setting + ": " + why);
    return false;
}

bool ConfigurePortrait(const OperatorOptions& options) {
    return (options.language.empty() || AcceptedLanguage(options.language)) &&
           Accepted(orv_SetSizeOutputImage(options.width, options.height), "--size") &&
           Accepted(orv_SetFaceCropRatio(options.cropRatio), "--crop-ratio") &&
           Accepted(orv_EnableAction(ORV_CROP, options.actions.crop ? 1 : 0), "the action crop") &&
           Accepted(orv_EnableAction(ORV_REMOVE_BACKGROUND, options.actions.background ? 1 : 0),
                    "the action background") &&
           Accepted(orv_EnableAction(ORV_CORRECT_COLOUR, options.actions.colour ? 1 : 0), "the action colour") &&
           Accepted(orv_EnableAction(ORV_ROTATE, options.actions.rotation ? 1 : 0), "the action rotation");
}

} // namespace orvane::tools
