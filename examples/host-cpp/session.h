// The library's one session: open as long as the object lives. All calls come from one thread.
#pragma once

#include "block.h"

#include <cstdint>
#include <stdexcept>
#include <string>

namespace host {

enum class Result : std::int32_t {
    ok = ORV_OK,
    noFace = ORV_NO_FACE,
    cancelled = ORV_CANCELLED,
    lockFailed = ORV_LOCK_FAILED,
    badArgument = ORV_BAD_ARGUMENT,
    captureFailed = ORV_CAPTURE_FAILED,
    stepFailed = ORV_STEP_FAILED,
    noMemory = ORV_NO_MEMORY,
    noPicture = ORV_NO_PICTURE,
    noClassifier = ORV_NO_CLASSIFIER,
    noSession = ORV_NO_SESSION,
};

/// What a result says.
const char* Words(Result result);

enum class Action : std::int32_t {
    crop = ORV_CROP,
    removeBackground = ORV_REMOVE_BACKGROUND,
    correctColour = ORV_CORRECT_COLOUR,
    rotate = ORV_ROTATE,
};

/// A call failed: its result is below zero.
class Failure : public std::runtime_error {
public:
    Failure(const std::string& call, Result result);
    Result Code() const { return result_; }

private:
    Result result_;
};

/// Every function throws Failure where the library fails.
class Session {
public:
    Session();
    ~Session();
    Session(const Session&) = delete;
    Session& operator=(const Session&) = delete;

    /// Texts of the operator's window, of a file in the library's folder. False when there is none of that name.
    bool SetLanguage(const std::string& file);
    void SetOwner(orv_Window owner);
    /// Hidden, the operator's window opens only where no face is found.
    void ShowWindow(bool visible);
    void SetSize(int width, int height);
    /// How much is left around the face: the crop is three times `ratio` face heights high.
    void SetCropRatio(float ratio);
    void Enable(Action action, bool enabled = true);
    void DisableAll();

    /// Finds the face of a packed bitmap: ok, noFace or cancelled.
    Result Detect(const Block& photo);
    /// The same of a camera's live picture, in the operator's window: ok or cancelled.
    Result DetectLive(int camera);
    /// What the last detection made, as a packed bitmap.
    Block Output() const;
};

} // namespace host
