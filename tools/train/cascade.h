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

/// Stumps and the least sum that passes.
struct Stage {
    float threshold = 0.0f; // as in the file: the detector takes kThresholdBias off
    bool chained = false;   // the stage before it is part of its sum, with all that is chained to that one
    std::vector<Stump> stumps;
};

/// Stages may share stumps: a chained stage sums the stumps of the stages before it once more and adds its
/// own. The file says so by ranges that begin where the chain began; it costs no room there, and only the few
/// windows that come so far pay for the longer sum.
struct Cascade {
    ImageSize windowSize{24, 24};
    std::vector<Stage> stages;
};

inline constexpr float kThresholdBias = 0.0001f;

/// All stumps of one stage, chained ones included, in the order of the file.
std::vector<const Stump*> StumpsOf(const Cascade& cascade, std::size_t stage);

/// Evaluates windows as the detector does, to the last bit. The cascade must stay as it is meanwhile.
class Evaluator {
public:
    explicit Evaluator(const Cascade& cascade);
    /// The sum that a stage compares with its threshold.
    double StageSum(std::size_t stage, const Patch& patch) const;
    /// Whether the whole cascade lets the window through.
    bool Passes(const Patch& patch) const;

private:
    struct Ordered {
        std::vector<const Stump*> stumps; // in the detector's order of summation
        float threshold;                  // the bias taken off
    };
    std::vector<Ordered> stages_;
    float norm_;
};

/// Why a cascade cannot be used by the detector, or an empty text: a rectangle outside the window, a stage
/// without stumps, or no rectangle that reaches the window's last column or last row (the detector sizes its
/// planes by the rectangles and refuses to scan then).
std::string FindFault(const Cascade& cascade);

/// The classifier file's bytes, and back. Reading gives false for anything but a whole well-formed file whose
/// stages follow one another or are chained.
std::vector<uint8> ToFile(const Cascade& cascade);
bool FromFile(const std::vector<uint8>& bytes, Cascade& cascade);

/// Whole files; false on failure. Writing goes through a temporary file beside the target, so that a stop
/// never leaves half a file.
bool ReadFile(const std::string& path, std::vector<uint8>& bytes);
bool WriteFile(const std::string& path, const std::vector<uint8>& bytes);

} // namespace orvane::train
