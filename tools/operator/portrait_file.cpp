#include "tools/operator/portrait_file.h"

#include "tools/operator/packed_picture.h"
#include "tools/support/picture_io.h"
#include "tools/support/result_stream.h"
#include "tools/support/utf8.h"
#include "tools/support/whole_file.h"

namespace orvane::tools {
namespace {

OperatorExit FailToWrite(const OperatorOptions& options, const std::string& why) {
    return Fail("the output '" + options.output + "' " + why);
}

} // namespace

bool CanWritePortrait(const OperatorOptions& options) {
    if (!IsWritablePictureName(options.output)) {
        PrintOperatorError("'" + options.output + "' " + kUnwritableName);
        return false;
    }
    std::string error;
    if (CanWriteWholeFile(options.output, options.force, &error)) return true;
    FailToWrite(options, error);
    return false;
}

int32 FetchPortrait(Picture* portrait) {
    Block output;
    const int32 status = orv_GetOutputImage(output.Receive());
    if (status == ORV_OK) *portrait = UnpackPicture(output.Handle());
    return status;
}

OperatorExit FailWithoutPortrait(const std::string& what, int32 status) {
    return Fail(what + ": there is no portrait to write (" + std::to_string(status) + ")");
}

OperatorExit WritePortrait(const OperatorOptions& options, const Picture& portrait, int32 result,
                           const std::string& remark) {
    std::string error;
    if (!WritePicture(options.output, portrait, options.force, &error)) return FailToWrite(options, error);
    const std::string line = OneLine(options.output) + ": " + std::to_string(portrait.width) + "x" +
                             std::to_string(portrait.height) + ", result " + std::to_string(result) + remark;
    return WriteResult(line + "\n") ? kOperatorDone : Fail(kNoStandardOutput);
}

} // namespace orvane::tools
