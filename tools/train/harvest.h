// Negatives for one stage: windows that the cascade so far takes for faces, out of pictures without a face
// and out of the face crops' wrong places.
#pragma once

#include "tools/train/face_crops.h"
#include "tools/train/scan.h"

namespace orvane::train {

struct PictureSet {
    std::vector<GreyPicture> pictures;
    std::string error; // not empty: nothing was read
};

/// Reads the pictures of `negatives.csv`, split `train`, of the licence classes named and of none of the sources in
/// the comma-separated list `without`.
PictureSet ReadPictures(const std::string& folder, const std::string& classes, const std::string& without, int threads);

/// Adds `count` drawn pictures.
void AddDrawnPictures(PictureSet& set, std::size_t count, uint64 seed, int threads);

struct Negatives {
    std::vector<Window> windows; // for boosting
    std::vector<Window> held;    // one in five pictures, for the stage's false-alarm rate
    std::vector<Window> refused; // for boosting too: those that the cascade refuses already, but only just
    std::size_t pictures = 0;    // scanned, turned ones counted again
    std::size_t fromCrops = 0;   // how many of all came out of face crops

    /// Without the refused ones.
    std::size_t Count() const { return windows.size() + held.size(); }
    void Add(Window window, bool isHeld) { (isHeld ? held : windows).push_back(std::move(window)); }
};

struct HarvestOptions {
    std::size_t wanted = 12000;  // windows in all
    double cropShare = 0.2;      // of these, at most so many out of face crops
    int perPicture = 24;         // windows of one picture in one pass, while they are plenty
    int passes = 50;             // over all pictures; four make a whole scan: as they are, mirrored, distorted
    int poolStage = 18;          // from this stage on every window of all passes is looked at
    std::size_t refused = 20000; // at most so many of the pool's windows that were refused already, nearest first
    int threads = 2;
    std::string poolFile; // the scan of all passes is kept here for a training that goes on; empty: nowhere
};

/// Told now and then: windows found, pictures scanned.
using HarvestProgress = std::function<void(std::size_t found, std::size_t pictures)>;

/// Harvests for one stage after the other. Early stages take what they need from wherever they find it. From
/// `poolStage` on windows are rare: all passes are scanned once, the face crops likewise, and every later stage
/// chooses among the survivors. That is the same as scanning again, since what passes the longer cascade passed
/// the shorter.
class Harvester {
public:
    /// The data must outlive the harvester.
    Harvester(const PictureSet& pictures, const std::vector<FaceCrop>& crops, const Framing& framing,
              const HarvestOptions& options, uint64 seed);

    /// The negatives of stage `cascade.stages.size()`: a function of the arguments and the data alone, whatever
    /// was harvested before. A pool file must come from the same data and options and from an earlier stage of
    /// the same cascade.
    Negatives Harvest(const Cascade& cascade, const HarvestProgress& progress);

private:
    struct Found {
        Window window;
        bool held;
        bool fromCrop;
    };
    /// The part of a number of windows that comes out of crops, or out of pictures.
    std::size_t Share(std::size_t whole, bool ofCrops) const;
    void AddFromCrops(const CompiledCascade& cascade, uint64 stage, Negatives& negatives) const;
    void AddFromPictures(const CompiledCascade& cascade, uint64 stage, Negatives& negatives,
                         const HarvestProgress& progress) const;
    bool LoadPool(ImageSize windowSize);
    bool SavePool() const;
    void FillPool(const CompiledCascade& cascade, const HarvestProgress& progress);
    void AddFromPool(const Cascade& cascade, Negatives& negatives) const;

    const PictureSet& pictures_;
    const std::vector<FaceCrop>& crops_;
    const Framing& framing_;
    const HarvestOptions& options_;
    uint64 seed_;
    bool pooled_ = false;
    std::vector<Found> pool_;
};

} // namespace orvane::train
