// The results that leave the library or pass between its parts. Negative is a failure, positive a
// completed call with something to say.
#pragma once

#include "primitives/types.h"

namespace orvane {

enum ResultCode : int32 {
    kSuccess = 0,
    kNoFace = 10,         // no face was found; the face record is zero
    kCancelled = 20,      // the operator left the window with Cancel
    kLockFailed = -1,     // a memory block could not be locked
    kUnknownVariant = -2, // edge pruning asked for a variant that does not exist
    kFileNotOpened = -5,  // the classifier file could not be opened
    kBadCall = -10,       // bad argument or size
    kCopyFailed = -20,    // the crop could not be copied
    kCaptureFailed = -30, // the capture graph could not be started
    kStepFailed = -40,    // a primitive failed during the scan, or a picture set-up was refused
    kOutOfMemory = -50,
    kNoPicture = -60,    // no usable picture
    kNoClassifier = -70, // classifier file missing or unusable
    kNoSession = -80,    // no session, bad window handle, module not found, or no output
};

} // namespace orvane
