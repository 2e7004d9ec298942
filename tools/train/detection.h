// The whole detector on one picture after the other. Its state is module-wide, so there is no second at a time.
#pragma once

#include "tools/support/picture.h"
#include "tools/train/square.h"

#include <string>

namespace orvane::train {

/// What the detector answers to a picture.
struct Outcome {
    int status = 0; // 0: a face, 10: none
    double milliseconds = 0.0;
    FaceSquare square;  // empty without a face
    bool finer = false; // the first pass found none, so a second one with finer steps answered

    bool HasFace() const { return status == 0; }
};

/// Makes a file the detector's classifier. False with a reason.
bool UseClassifier(const std::string& file, std::string& error);

/// Runs the detector over a picture. False with a reason when it fails; no face is no failure.
bool Detect(const tools::Picture& picture, bool quick, Outcome& outcome, std::string& error);

} // namespace orvane::train
