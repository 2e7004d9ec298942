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

/// Reads the pictures of `negatives.csv`, split `train`, of the licence classes named.
PictureSet ReadPictures(const std::string& folder, const std::string& classes, int threads);

struct Negatives {
    std::vector<Window> windows; // for boosting
    std::vector<Window> held;    // one in five pictures, for the stage's false-alarm rate
    std::size_t pictures = 0;    // scanned, turned ones counted again
    std::size_t fromCrops = 0;   // how many of all came out of face crops
};

struct HarvestOptions {
    std::size_t wanted = 12000; // windows in all
    double cropShare = 0.12;    // of these, at most so many out of face crops
    int passes = 16;            // over all pictures, each pass turned, mirrored and scaled in its own way
    int perPicture = 24;        // windows of one picture in one pass
    int threads = 2;
};

/// @param stream seed and stage: the same numbers give the same windows
/// @param progress told how many windows are there, now and then
Negatives Harvest(const PictureSet& pictures, const std::vector<FaceCrop>& crops, const Framing& framing,
                  const CompiledCascade& cascade, const HarvestOptions& options, uint64 seed, uint64 stage,
                  const std::function<void(std::size_t found, std::size_t pictures)>& progress);

} // namespace orvane::train
