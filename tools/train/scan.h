// The detector's scan over one grey picture, for harvesting: the same scales, the same sampling, the same
// positions. What survives a cascade there is what the detector would take for a face.
#pragma once

#include "detect/classifier_file.h"
#include "tools/train/cascade.h"

#include <functional>
#include <string>
#include <vector>

namespace orvane::train {

/// A grey picture, lowest row first, no padding.
struct GreyPicture {
    ImageSize size{0, 0};
    std::vector<uint8> pixels;
};

/// Reads a picture file and turns it to grey as the detector does. False with a reason.
bool ReadGrey(const std::string& path, GreyPicture& picture, std::string& error);

/// The picture turned by `quarters` quarter turns and, after that, mirrored left to right.
GreyPicture Turned(const GreyPicture& picture, int quarters, bool mirrored);

/// A cascade in the form that the detector evaluates.
class CompiledCascade {
public:
    explicit CompiledCascade(const Cascade& cascade);
    ImageSize WindowSize() const { return {tables_.windowWidth, tables_.windowHeight}; }
    /// As the detector has them after loading.
    const ClassifierTables& Tables() const { return tables_; }

private:
    ClassifierTables tables_;
};

/// A window that survived: its first pixel in the scaled plane, and the place of its square in the picture
/// (lowest row first).
struct Survivor {
    const uint8* pixels;
    int32 step;
    double x;
    double y;
    double side;
};

/// Which of the detector's scales are visited.
struct ScaleChoice {
    double shift = 1.0; // 1 to 1.05, multiplies all scales: another run of a picture then sees other samples
    int every = 1;      // one scale in so many,
    int first = 0;      // beginning with this one
};

/// Visits every window of the picture that the detector's normal pass evaluates and that passes all stages,
/// in the order of the detector's scan.
void VisitSurvivors(const GreyPicture& picture, const CompiledCascade& cascade, const ScaleChoice& choice,
                    const std::function<void(const Survivor&)>& visit);

} // namespace orvane::train
