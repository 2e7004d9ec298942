// The scale loop follows the detector's to the last float; a test compares the two.
#include "tools/train/scan.h"

#include "detect/cascade_detector.h"
#include "detect/edge_pruning.h"
#include "detect/window_cascade.h"
#include "primitives/primitives.h"
#include "tools/support/picture_io.h"

#include <algorithm>
#include <new>

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
    const ClassifierTables& tables = cascade.Tables();
    for (std::size_t stage = 0; stage < tables.stageObject.size(); ++stage) {
        primApplyHaarClassifier_32f_C1(planes.sum.data(), sumStep, planes.norm.data(), 4 * scaled.width,
                                       planes.mask.data(), scaled.width, positions, &alive,
                                       tables.stageThreshold[stage], tables.stageObject[stage].get());
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

/// The same in one go, as the detector scans with a cascade that it can plan.
class OneGo {
public:
    OneGo(const GreyPicture& picture, const CompiledCascade& cascade)
        : picture_(picture), cascade_(cascade), rows_(CurrentScanKernels(), grey_),
          decisions_(CurrentScanKernels(), cascade.Tables()) {}

    /// Makes ready for scales of up to this size. False where they must be scanned step by step.
    bool Reserve(ImageSize scaled) {
        const ImageSize size = picture_.size;
        if (!WindowCascade::Serves(cascade_.Tables(), scaled)) return false;
        if (!grey_.Create(size.width, size.height, 1, kDepth8u, 0)) return false;
        for (int32 y = 0; y < size.height; ++y) {
            std::copy_n(picture_.pixels.data() + PixelIndex(0, y, size.width), size.width,
                        RowAt(grey_.data, grey_.Step(), y));
        }
        return rows_.Reserve(scaled) && decisions_.Reserve(rows_.Stride(), scaled.height);
    }

    void ScanScale(float scale, float inverse, ImageSize scaled, const std::function<void(const Survivor&)>& visit) {
        const ImageSize window = cascade_.WindowSize();
        const ImageSize positions{scaled.width - window.width + 1, scaled.height - window.height + 1};
        rows_.Make(scaled, inverse, positions);
        decisions_.Decide(rows_, positions.height);
        bool sampled = false; // few scales have survivors
        for (int32 y = 0; y < positions.height; ++y) {
            const uint64* alive = rows_.EdgeRow(y);
            for (int32 x = 0; x < positions.width; ++x) {
                if ((alive[x / 64] >> (x % 64) & 1) == 0) continue;
                if (!sampled) Sample(inverse, scaled);
                sampled = true;
                visit({scaled_.data() + PixelIndex(x, y, scaled.width), scaled.width, static_cast<double>(x) * scale,
                       static_cast<double>(y) * scale, static_cast<double>(window.width) * scale});
            }
        }
    }

private:
    void Sample(float inverse, ImageSize scaled) {
        scaled_.assign(PixelCount(scaled), 0);
        primResize_8u_C1(picture_.pixels.data(), picture_.size, picture_.size.width,
                         {0, 0, picture_.size.width, picture_.size.height}, scaled_.data(), scaled.width, scaled,
                         inverse, inverse, kNearest);
    }

    const GreyPicture& picture_;
    const CompiledCascade& cascade_;
    ImageBuffer grey_;
    ScaleRows rows_;
    WindowCascade decisions_;
    std::vector<uint8> scaled_;
};

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

CompiledCascade::CompiledCascade(const Cascade& cascade) {
    tables_.windowWidth = cascade.windowSize.width;
    tables_.windowHeight = cascade.windowSize.height;
    tables_.stageCount = static_cast<int32>(cascade.stages.size());
    int32 rects = 0;
    for (const Stage& stage : cascade.stages) {
        const bool chained = stage.chained && !tables_.stageClassifierStart.empty();
        tables_.stageThreshold.push_back(stage.threshold);
        tables_.stageClassifierStart.push_back(chained ? tables_.stageClassifierStart.back()
                                                       : static_cast<int32>(tables_.classifierThreshold.size()));
        tables_.stageFeatureStart.push_back(chained ? tables_.stageFeatureStart.back() : rects);
        for (const Stump& stump : stage.stumps) {
            for (std::size_t i = 0; i < static_cast<std::size_t>(stump.feature.rectCount); ++i) {
                ImageRect r = stump.feature.rects[i];
                r.y = cascade.windowSize.height - r.height - r.y; // the tables count from the window's top
                tables_.featureRect.push_back(r);
                tables_.featureWeight.push_back(stump.feature.weights[i]);
            }
            tables_.classifierFeatureCount.push_back(stump.feature.rectCount);
            tables_.classifierThreshold.push_back(stump.threshold);
            tables_.classifierVal1.push_back(stump.below);
            tables_.classifierVal2.push_back(stump.above);
            rects += stump.feature.rectCount;
        }
        tables_.stageClassifierCount.push_back(static_cast<int32>(tables_.classifierThreshold.size()) -
                                               tables_.stageClassifierStart.back());
    }
    tables_.classifierCount = static_cast<int32>(tables_.classifierThreshold.size());
    tables_.featureCount = rects;
    tables_.stageObject.resize(cascade.stages.size());
    // Stages are for the scales that cannot be scanned in one go.
    if (PrepareClassifier(1, kThresholdBias, tables_) != kOk || MakeStages(tables_) != kOk) throw std::bad_alloc();
}

void VisitSurvivors(const GreyPicture& picture, const CompiledCascade& cascade, const ScaleChoice& choice,
                    const std::function<void(const Survivor&)>& visit) {
    const ImageSize window = cascade.WindowSize();
    const int32 width = picture.size.width;
    const auto largest = static_cast<int32>(static_cast<float>(width) * 0.95f + 0.5);
    const auto smallest = static_cast<int32>(static_cast<float>(width) * (width < 500 ? 0.05f : 0.07f));
    auto scale = static_cast<float>(InitialScale(width, smallest, window.width) * choice.shift);
    Planes planes;
    OneGo oneGo(picture, cascade);
    bool first = true;
    bool inOneGo = false;
    for (int index = 0;; ++index, scale *= 1.05f) {
        const float inverse = 1.0f / scale;
        const float scaledWidth = inverse * static_cast<float>(width);
        const float scaledHeight = static_cast<float>(picture.size.height) * inverse;
        if (!(scaledWidth > static_cast<float>(window.width + 5))) return;
        if (!(scaledHeight > static_cast<float>(window.height + 5))) return;
        if (!(static_cast<float>(largest) > static_cast<float>(window.width) * scale)) return;
        if (index % choice.every != choice.first) continue;
        const ImageSize scaled{static_cast<int32>(scaledWidth), static_cast<int32>(scaledHeight)};
        if (first) inOneGo = oneGo.Reserve(scaled);
        first = false;
        if (inOneGo) {
            oneGo.ScanScale(scale, inverse, scaled, visit);
        } else {
            ScanScale(picture, cascade, scale, inverse, scaled, planes, visit);
        }
    }
}

} // namespace orvane::train
