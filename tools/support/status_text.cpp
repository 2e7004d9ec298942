#include "tools/support/status_text.h"

#include "image/result_codes.h"

namespace orvane::tools {

std::string StatusText(int32 status) {
    switch (status) {
    case kSuccess:
        return "done";
    case kNoFace:
        return "no face was found";
    case kCancelled:
        return "the operator cancelled";
    case kLockFailed:
        return "a memory block could not be locked";
    case kBadCall:
        return "the picture is too small";
    case kCaptureFailed:
        return "the capture could not be started";
    case kStepFailed:
        return "a step of the detection failed";
    case kOutOfMemory:
        return "not enough memory";
    case kNoPicture:
        return "no usable picture";
    case kNoClassifier:
        return "the classifier Orvane.dat beside the program is missing or unusable";
    case kNoSession:
        return "the library is not ready";
    default:
        return "the library answered " + std::to_string(status);
    }
}

} // namespace orvane::tools
