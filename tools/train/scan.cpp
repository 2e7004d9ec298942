// The scale loop follows the detector's to the last float; a test compares the two.
#include "tools/train/scan.h"

#include "detect/cascade_detector.h"
#include "detect/edge_pruning.h"
#include "primitives/primitives.h"
#include "tools/support/picture_io.h"

#include <algorithm>

namespace orvane::train {
namespace {

/// The planes of one scale. Windows have the full window size: a trained cascade reaches its last row and
/// column, so that is the largest bound of its rectangles too.
struct Planes {
    std::vector<uint8> scaled;
    std::vector<float> sum;
    std::vector<double> squares;
    std::vector<float> norm;
    std::vector<uint8> mask;
    EdgeWorkspace edges;
};

void ScanScale(const GreyPicture& picture, const CompiledCascade& cascade, float scale, float inverse, ImageSize scaled,
               Planes& planes, const std::function<void(const Survivor&)>& visit) {
    const ImageSize window = cascade.WindowSize();
    const ImageSize positions{scaled.width - window.width + 1, scaled.height - window.height + 1};
    const auto pixels = PixelCount(scaled);
    const auto entries = PixelCount({scaled.width + 1, scaled.height + 1});
    planes.scaled.assign(pixels, 0);
    planes.sum.resize(entries);
    planes.squares.resize(entries);
    planes.norm.resize(pixels);
    planes.mask.assign(pixels, 0);

    primResize_8u_C1(picture.pixels.data(), picture.size, picture.size.width,
                     {0, 0, picture.size.width, picture.size.height}, planes.scaled.data(), scaled.width, scaled,
                     inverse, inverse, kNearest);
    if (PruneByEdges(planes.scaled.data(), scaled.width, planes.mask.data(), scaled.width, positions.width,
                     positions.height, 0, planes.edges) != kOk) {
        return;
    }
    const int32 sumStep = 4 * (scaled.width + 1);
    primSqrIntegral_8u32f64f_C1(planes.scaled.data(), scaled.width, planes.sum.data(), sumStep, planes.squares.data(),
                                2 * sumStep, scaled, -16777216.0f, 0.0);
    RectStdDevUnderMask(planes.sum.data(), sumStep, planes.squares.data(), 2 * sumStep, planes.norm.data(),
                        4 * scaled.width, positions, {1, 1, window.width - 2, window.height - 2}, planes.mask.data(),
                        scaled.width);
    int32 alive = positions.width * positions.height;
    for (const CompiledCascade::CompiledStage& stage : cascade.Stages()) {
        primApplyHaarClassifier_32f_C1(planes.sum.data(), sumStep, planes.norm.data(), 4 * scaled.width,
                                       planes.mask.data(), scaled.width, positions, &alive, stage.threshold,
                                       stage.object.get());
        if (alive == 0) return;
    }
    for (int32 y = 0; y < positions.height; ++y) {
        for (int32 x = 0; x < positions.width; ++x) {
            const auto at = PixelIndex(x, y, scaled.width);
            if (planes.mask[at] == 0) continue;
            visit({planes.scaled.data() + at, scaled.width, static_cast<double>(x) * scale,
                   static_cast<double>(y) * scale, static_cast<double>(window.width) * scale});
        }
    }
}

} // namespace

bool ReadGrey(const std::string& path, GreyPicture& picture, std::string& error) {
    tools::Picture colour;
    if (!tools::ReadPicture(path, &colour, &error)) return false;
    picture.size = {colour.width, colour.height};
    picture.pixels.resize(PixelCount(picture.size));
    primRGBToGray_8u_C3C1(colour.pixels.data(), colour.step, picture.pixels.data(), colour.width, picture.size);
    return true;
}

GreyPicture Turned(const GreyPicture& picture, int quarters, bool mirrored) {
    GreyPicture turned;
    const int32 w = picture.size.width;
    const int32 h = picture.size.height;
    turned.size = quarters % 2 != 0 ? ImageSize{h, w} : picture.size;
    turned.pixels.resize(picture.pixels.size());
    auto out = turned.pixels.begin();
    for (int32 y = 0; y < turned.size.height; ++y) {
        for (int32 x = 0; x < turned.size.width; ++x) {
            const int32 column = mirrored ? turned.size.width - 1 - x : x;
            const ImagePoint from = quarters == 0   ? ImagePoint{column, y}
                                    : quarters == 1 ? ImagePoint{y, h - 1 - column}
                                    : quarters == 2 ? ImagePoint{w - 1 - column, h - 1 - y}
                                                    : ImagePoint{w - 1 - y, column};
            *out++ = picture.pixels[PixelIndex(from.x, from.y, w)];
        }
    }
    return turned;
}

CompiledCascade::CompiledCascade(const Cascade& cascade) : windowSize_(cascade.windowSize) {
    const float norm = AreaNorm(windowSize_);
    for (std::size_t s = 0; s < cascade.stages.size(); ++s) {
        std::vector<ImageRect> rects;
        std::vector<float> weights;
        std::vector<float> thresholds;
        std::vector<float> below;
        std::vector<float> above;
        std::vector<int32> counts;
        for (const Stump* stump : StumpsOf(cascade, s)) {
            for (std::size_t i = 0; i < static_cast<std::size_t>(stump->feature.rectCount); ++i) {
                rects.push_back(stump->feature.rects[i]);
                weights.push_back(stump->feature.weights[i] * norm);
            }
            thresholds.push_back(stump->threshold);
            below.push_back(stump->below);
            above.push_back(stump->above);
            counts.push_back(stump->feature.rectCount);
        }
        HaarClassifier* object = nullptr;
        primHaarClassifierInitAlloc_32f(&object, rects.data(), weights.data(), thresholds.data(), below.data(),
                                        above.data(), counts.data(), static_cast<int32>(counts.size()));
        stages_.push_back({{object, primHaarClassifierFree_32f}, cascade.stages[s].threshold - kThresholdBias});
    }
}

void VisitSurvivors(const GreyPicture& picture, const CompiledCascade& cascade, const ScaleChoice& choice,
                    const std::function<void(const Survivor&)>& visit) {
    const ImageSize window = cascade.WindowSize();
    const int32 width = picture.size.width;
    const auto largest = static_cast<int32>(static_cast<float>(width) * 0.95f + 0.5);
    const auto smallest = static_cast<int32>(static_cast<float>(width) * (width < 500 ? 0.05f : 0.07f));
    auto scale = static_cast<float>(InitialScale(width, smallest, window.width) * choice.shift);
    Planes planes;
    for (int index = 0;; ++index, scale *= 1.05f) {
        const float inverse = 1.0f / scale;
        const float scaledWidth = inverse * static_cast<float>(width);
        const float scaledHeight = static_cast<float>(picture.size.height) * inverse;
        if (!(scaledWidth > static_cast<float>(window.width + 5))) return;
        if (!(scaledHeight > static_cast<float>(window.height + 5))) return;
        if (!(static_cast<float>(largest) > static_cast<float>(window.width) * scale)) return;
        if (index % choice.every != choice.first) continue;
        ScanScale(picture, cascade, scale, inverse, {static_cast<int32>(scaledWidth), static_cast<int32>(scaledHeight)},
                  planes, visit);
    }
}

} // namespace orvane::train
