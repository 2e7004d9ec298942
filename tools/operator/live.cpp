#include "tools/operator/live.h"

#include "orvane/orvane.h"
#include "tools/operator/library_session.h"
#include "tools/operator/portrait_file.h"

namespace orvane::tools {
namespace {

/// After a session that the operator ended with Ok. Whether a face stands in the portrait was theirs to see: the
/// library's result does not tell, and there is no photo to compare it with.
OperatorExit TakeOutput(const OperatorOptions& options, const std::string& camera) {
    Picture portrait;
    const int32 status = FetchPortrait(&portrait);
    if (status == ORV_NO_SESSION) {
        return Fail(camera +
                    ": no picture had come from it when the operator pressed Ok; there is no portrait to write");
    }
    return portrait.pixels.empty() ? FailWithoutPortrait(camera, status) : WritePortrait(options, portrait, ORV_OK);
}

} // namespace

OperatorExit RunLive(const OperatorOptions& options) {
    if (!CanWritePortrait(options)) return kOperatorError;
    const LibrarySession session;
    if (!session.IsOpen() || !ConfigurePortrait(options)) return kOperatorError;
    const std::string camera = "camera " + std::to_string(options.device);
    const int32 result = orv_DetectFaceLive(options.device);
    if (result == ORV_OK) return TakeOutput(options, camera);
    if (result == ORV_CAPTURE_FAILED) {
        return Fail(camera + ": it can't be started, or there is none, or no window can be opened; "
                             "'orvane-operator devices' lists the cameras");
    }
    return EndWithResult(camera, result);
}

} // namespace orvane::tools
