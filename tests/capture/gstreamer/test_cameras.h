// Cameras for tests, since machines that build seldom have one: a GStreamer device provider inside the test program,
// with the vices that cameras have. The module finds them like any other, in the program that registered them.
#pragma once

#include "primitives/types.h"

#include <string>
#include <vector>

namespace orvane::test {

// The names by which tests find their cameras; a developer's machine may have others beside them.

/// A portrait that moves a little, with noise: 640x480, 30 frames a second. The first of all cameras.
inline constexpr const char* kPortraitCamera = "Orvane test: portrait";
/// TestPattern, 322x242.
inline constexpr const char* kPatternCamera = "Orvane test: pattern \u00e9\u4e16\U0001F4F7";
/// TestPattern in many forms; 1280x720 is the one to choose.
inline constexpr const char* kManyFormsCamera = "Orvane test: many forms";
/// TestPattern, which tells nothing of its forms.
inline constexpr const char* kSecretiveCamera = "Orvane test: secretive";
/// TestPattern as JPEG pictures; it can't be used where GStreamer's jpegenc is missing.
inline constexpr const char* kJpegCamera = "Orvane test: JPEG";
/// TestPattern, not a live source: it fills the pipeline before it runs.
inline constexpr const char* kRecordedCamera = "Orvane test: recorded";
/// Has no element.
inline constexpr const char* kRefusingCamera = "Orvane test: refuses to open";
/// Is held by another program, and says so when it is opened.
inline constexpr const char* kBusyCamera = "Orvane test: busy";
/// Says so when the form is settled, as drivers do.
inline constexpr const char* kBusyLaterCamera = "Orvane test: busy later";
/// Opens and never delivers.
inline constexpr const char* kSilentCamera = "Orvane test: silent";
/// Is unplugged after kFramesBefore frames.
inline constexpr const char* kDyingCamera = "Orvane test: dies";
/// Ends after kFramesBefore frames.
inline constexpr const char* kEndingCamera = "Orvane test: ends";
/// Is a 640x480 TestPattern, and after kFramesBefore frames one of 320x240.
inline constexpr const char* kResizingCamera = "Orvane test: changes its size";
/// Its only form is larger than any picture may be.
inline constexpr const char* kHugeCamera = "Orvane test: huge";
/// Does not answer when it is opened, until ReleaseStuckCameras.
inline constexpr const char* kStuckOpeningCamera = "Orvane test: stuck in opening";
/// Does not answer when it shall deliver or stop, until ReleaseStuckCameras.
inline constexpr const char* kStuckRunningCamera = "Orvane test: stuck in running";

inline constexpr int32 kFramesBefore = 5;

/// Makes all cameras known to this process; starts GStreamer. Any number of calls.
void RegisterTestCameras();

/// From now on exactly these are plugged in; all are at first. What is open stays open.
void PlugTestCameras(const std::vector<std::string>& names);
void PlugAllTestCameras();

/// Position of a camera among all of the system, as the module numbers them; -1 where it is not plugged in.
int32 TestCameraIndex(const std::string& name);

/// Lets go on what is stuck, and whatever would come to be.
void ReleaseStuckCameras();
/// Cameras may stick again.
void HoldStuckCameras();

/// How many test cameras exist as elements at the moment.
int32 TestCamerasInUse();

/// A colour, as the levels of a frame.
struct TestColour {
    uint8 blue, green, red;
};

/// The pattern's colour at a place, counted from the upper left: red, green, blue and white in the quarters of the
/// picture, from left to right and then the lower two; its upper left ninth of a quarter is black.
TestColour TestPattern(ImageSize size, int32 x, int32 y);

/// Where kPortraitCamera has its face in its first frame, y counted from the lowest row; it moves by up to
/// kFaceMotion pixels.
inline constexpr ImageRect kPortraitFace{224, 144, 192, 192};
inline constexpr int32 kFaceMotion = 6;

} // namespace orvane::test
