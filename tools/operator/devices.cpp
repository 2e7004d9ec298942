#include "tools/operator/devices.h"

#include "platform/thread_apartment.h"
#include "tools/operator/camera_line.h"
#include "tools/support/result_stream.h"

#include <memory>

namespace orvane::tools {

OperatorExit RunDevices(const OperatorOptions& options, VideoSystem& video) {
    const ThreadApartment apartment; // outlives the source
    const std::unique_ptr<VideoSource> source(video.CreateVideoSource());
    if (source == nullptr) return Fail("no camera can be reached: there is no video here");
    std::string lines;
    for (const Camera& camera : ListCameras(*source)) {
        lines += (options.json ? CameraJson(camera) : CameraLine(camera)) + "\n";
    }
    if (lines.empty()) return Fail("no camera was found");
    return WriteResult(lines) ? kOperatorDone : Fail(kNoStandardOutput);
}

} // namespace orvane::tools
