// Face crops for training: 48x48 grey pictures around a face box, and the jittered windows cut out of them.
#pragma once

#include "tools/train/feature.h"
#include "tools/train/random.h"

#include <map>
#include <string>
#include <vector>

namespace orvane::train {

inline constexpr int32 kCropSide = 48;
inline constexpr double kCropBoxSide = 32.0; // the annotated face box: the crop's middle

struct FaceCrop {
    std::vector<uint8> pixels; // kCropSide rows, lowest row first
    double draw = 1.0;         // how often it is drawn, relative to the others
    std::size_t source = 0;    // crops of like origin bear the same number
    bool held = false;         // kept apart for setting stage thresholds
};

/// How a window is cut: the face as the window shows it, and how far samples stray from that.
struct Framing {
    double windowToBox = 0.85; // window side over face box side
    double shift = 0.06;       // positions stray by this share of the window, each way
    double scale = 0.08;       // sizes by this, natural logarithm
    double roll = 9.0;         // degrees, on top of the face's own: the standard deviation
    double yaw = 0.036;        // faces are made narrower by up to this share, and one half of a face the wider
    double relit = 0.105;      // so many are put in hard light
    double covered = 0.075;    // so many get glasses, a beard, a hat or a scarf
};

struct CropSet {
    std::vector<FaceCrop> crops;
    std::string error; // not empty: nothing was read
};

/// Numbers by the names of sources.
using SourceNumbers = std::map<std::string, double>;

/// Reads "name=number,name=number"; numbers are above 0. False where anything is not so.
bool ReadSourceNumbers(const std::string& text, SourceNumbers& numbers);

struct CropChoice {
    std::string classes;  // licence classes that are taken, "ABC"
    double balance = 1.0; // crops of a source are drawn with this power of their number: 1 keeps the proportions,
                          // 0 makes sources equal
    SourceNumbers favour; // sources that are drawn so many times as often then
    SourceNumbers most;   // at most so many crops of a source; those of a smaller number are among those of a larger
};

/// Reads `positives.csv` and `positives.bin` of a data folder: split `train`, without crops whose box leaves the
/// picture or that were enlarged. Persons are kept together when a fifth of them is held apart.
CropSet ReadCrops(const std::string& folder, const CropChoice& choice);

/// Whether a comma-separated list names `name`.
bool Names(const std::string& list, const std::string& name);

/// Draws crops by their `draw`, held ones or the others.
class CropLottery {
public:
    CropLottery(const std::vector<FaceCrop>& crops, bool held);
    bool Empty() const { return members_.empty(); }
    const FaceCrop& Draw(Random& random) const;

private:
    const std::vector<FaceCrop>* crops_;
    std::vector<std::size_t> members_;
    std::vector<double> cumulated_;
};

/// One window out of a crop: strayed, perhaps mirrored, covered or in hard light, with changed contrast, sharpness
/// and noise, and sampled as roughly as the detector samples.
Window CutWindow(const FaceCrop& crop, const Framing& framing, ImageSize windowSize, Random& random);

} // namespace orvane::train
