#include "session.h"

namespace host {
namespace {

/// The result of a call that may say no; below zero it is thrown.
Result Expect(const char* call, std::int32_t code) {
    const auto result = static_cast<Result>(code);
    if (code < 0) throw Failure(call, result);
    return result;
}

} // namespace

const char* Words(Result result) {
    switch (result) {
    case Result::ok:
        return "done";
    case Result::noFace:
        return "no face was found";
    case Result::cancelled:
        return "the operator cancelled";
    case Result::lockFailed:
        return "a memory block could not be locked";
    case Result::badArgument:
        return "an argument is bad, or the picture too small";
    case Result::captureFailed:
        return "the camera could not be started";
    case Result::stepFailed:
        return "a step of the detection failed";
    case Result::noMemory:
        return "there is not enough memory";
    case Result::noPicture:
        return "the picture can't be used";
    case Result::noClassifier:
        return "Orvane.dat beside the library is missing or unusable";
    case Result::noSession:
        return "there is no session, no such window or no output";
    }
    return "a result that this program does not know";
}

Failure::Failure(const std::string& call, Result result)
    : std::runtime_error(call + ": " + Words(result) + " (" + std::to_string(static_cast<std::int32_t>(result)) + ")"),
      result_(result) {}

Session::Session() { Expect("orv_InitDLL", orv_InitDLL()); }

Session::~Session() { orv_ReleaseDLL(); }

bool Session::SetLanguage(const std::string& file) {
    const std::int32_t code = orv_SetLanguageFile(file.c_str());
    if (code == ORV_BAD_ARGUMENT) return false;
    Expect("orv_SetLanguageFile", code);
    return true;
}

void Session::SetOwner(orv_Window owner) { Expect("orv_SetOwnerWindow", orv_SetOwnerWindow(owner)); }

void Session::ShowWindow(bool visible) { Expect("orv_SetVisibleMode", orv_SetVisibleMode(visible ? 1 : 0)); }

void Session::SetSize(int width, int height) {
    Expect("orv_SetSizeOutputImage", orv_SetSizeOutputImage(width, height));
}

void Session::SetCropRatio(float ratio) { Expect("orv_SetFaceCropRatio", orv_SetFaceCropRatio(ratio)); }

void Session::Enable(Action action, bool enabled) {
    Expect("orv_EnableAction", orv_EnableAction(static_cast<std::int32_t>(action), enabled ? 1 : 0));
}

void Session::DisableAll() { Expect("orv_EnableAction", orv_EnableAction(ORV_ALL_ACTIONS, 0)); }

Result Session::Detect(const Block& photo) {
    return Expect("orv_DetectFacePicture", orv_DetectFacePicture(photo.Handle()));
}

Result Session::DetectLive(int camera) { return Expect("orv_DetectFaceLive", orv_DetectFaceLive(camera)); }

Block Session::Output() const {
    Block output;
    Expect("orv_GetOutputImage", orv_GetOutputImage(output.Receive()));
    return output;
}

} // namespace host
