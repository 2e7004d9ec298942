// A cascade while it grows, and its classifier file. The file's rectangles count rows from the window's
// top; everything else here counts them from the bottom, as pictures lie in memory.
#pragma once

#include "tools/train/feature.h"

#include <string>
#include <vector>

namespace orvane::train {

/// A boosted classifier: `below` where the feature measures under threshold * deviation, else `above`.
struct Stump {
    Feature feature;
    float threshold = 0.0f;
    float below = 0.0f;
    float above = 0.0f;
};

/// Stumps and the least sum that passes. Stumps stand in the detector's order of summation: two
/// rectangles, three, then others.
struct Stage {
    float threshold = 0.0f; // as in the file: the detector takes kThresholdBias off
    std::vector<Stump> stumps;
};

struct Cascade {
    ImageSize windowSize{24, 24};
    std::vector<Stage> stages;
};

inline constexpr float kThresholdBias = 0.0001f;

/// Brings stumps into the detector's order of summation.
void SortForDetector(Stage& stage);

/// The sum that the detector computes for this window, to the last bit.
double StageSum(const Stage& stage, const Patch& patch, float norm);

/// Whether the detector lets the window through this stage; likewise through the whole cascade.
bool Passes(const Stage& stage, const Patch& patch, float norm);
bool Passes(const Cascade& cascade, const Patch& patch);

/// Why a cascade cannot be used by the detector, or an empty text: a rectangle outside the window, a stage
/// without stumps, or no rectangle that reaches the window's last column or last row (the detector sizes its
/// planes by the rectangles and refuses to scan then).
std::string FindFault(const Cascade& cascade);

/// The classifier file's bytes, and back. Reading gives false for anything but a whole well-formed file.
std::vector<uint8> ToFile(const Cascade& cascade);
bool FromFile(const std::vector<uint8>& bytes, Cascade& cascade);

/// Whole files; false on failure. Writing goes through a temporary file beside the target, so that a stop
/// never leaves half a file.
bool ReadFile(const std::string& path, std::vector<uint8>& bytes);
bool WriteFile(const std::string& path, const std::vector<uint8>& bytes);

} // namespace orvane::train
