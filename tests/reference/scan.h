// The multi-scale scan once more: fresh planes for every scale, whole planes at a time, in the order in
// which it is told; nothing is skipped because of what comes later.
#pragma once

#include "tests/reference/candidates.h"
#include "tests/reference/edge.h"
#include "tests/reference/haar.h"
#include "tests/reference/integral.h"
#include "tests/reference/pixel.h"
#include "tests/reference/resize.h"
#include "tests/support/face_scene.h"

#include <algorithm>
#include <vector>

namespace orvane::test::reference {

/// One scale and the windows that survived it, row by row without padding.
struct ScaleTrace {
    ImageSize scaled;
    double factor;
    ImageSize positions;
    std::vector<uint8> mask;
};

struct ScanResult {
    int32 status = 0;
    Face face{0, 0, 0, 0};
    std::vector<ScaleTrace> scales;
};

/// Edge map of a grey plane with the constants of a variant: 0 and 1 Sobel of two sizes, 2 Scharr.
inline void EdgeMap(const Plane<uint8>& src, Plane<uint8>& mask, ImageSize roi, int32 variant) {
    Plane<int16> dx(roi.width, roi.height, 0, 0, 0), dy(roi.width, roi.height, 0, 0, 0);
    struct {
        std::vector<int32> smooth, slope;
        float low, high;
    } const variants[] = {{{1, 2, 1}, {-1, 0, 1}, 8.0F, 24.0F},
                          {{1, 4, 6, 4, 1}, {-1, -2, 0, 2, 1}, 96.0F, 288.0F},
                          {{3, 10, 3}, {-1, 0, 1}, 32.0F, 96.0F}};
    const auto& v = variants[variant];
    Gradient(src, dx, roi, v.smooth, v.slope, false, 0);
    Gradient(src, dy, roi, v.slope, v.smooth, false, 0);
    Canny(dx, dy, mask, roi, v.low, v.high);
}

/// The cascade as the scan wants it: rectangles from the bottom, weights by the window's inner area.
inline std::vector<std::vector<Classifier>> Prepared(const CascadeFile& file) {
    const int32 windowHeight = file.header[1];
    const auto norm = static_cast<float>(1.0 / ((windowHeight - 2) * (file.header[0] - 2)));
    std::vector<std::vector<Classifier>> stages;
    for (std::size_t s = 0; s < file.stageThreshold.size(); ++s) {
        auto feature = static_cast<std::size_t>(file.stageFeatureStart[s]);
        const auto first = static_cast<std::size_t>(file.stageClassifierStart[s]);
        std::vector<Classifier> stage;
        for (std::size_t c = first; c < first + static_cast<std::size_t>(file.stageClassifierCount[s]); ++c) {
            Classifier classifier{{}, file.classifierThreshold[c], file.classifierVal1[c], file.classifierVal2[c]};
            for (int32 r = 0; r < file.classifierFeatureCount[c]; ++r, ++feature) {
                ImageRect rect = file.featureRect[feature];
                rect.y = windowHeight - rect.height - rect.y;
                classifier.rects.push_back({rect, file.featureWeight[feature] * norm});
            }
            stage.push_back(classifier);
        }
        stages.push_back(stage);
    }
    return stages;
}

/// One pass over a three-channel picture.
inline ScanResult Scan(const Scene& scene, const CascadeFile& file, float scaleFactor, bool pruned = true) {
    ScanResult result;
    const int32 W = scene.width, H = scene.height;
    const int32 windowWidth = file.header[0], windowHeight = file.header[1];
    const Limits limits{W < 500 ? 30.0F : 40.0F, 2.5F, 3};
    const float minRatio = W < 500 ? 0.05F : 0.07F;
    Plane<uint8> source(3 * W, H, 0, 0, 0), grey(W, H, 0, 0, 0);
    for (int32 y = 0; y < H; ++y) {
        std::copy_n(scene.rows.begin() + std::ptrdiff_t{scene.Step()} * y, 3 * W, &source.At(0, y));
    }
    ForEachPixel({W, H}, [&](int32 x, int32 y) {
        const uint8* p = &source.At(3 * x, y);
        grey.At(x, y) = Grey({p[0], p[1], p[2]});
    });
    const auto maxFaceSize = static_cast<int32>(static_cast<double>(W) * 0.95F + 0.5);
    const auto minFaceSize = static_cast<int32>(static_cast<double>(W) * minRatio);

    const auto stages = Prepared(file);
    int32 right = 0, top = 0;
    for (const auto& stage : stages) {
        for (const auto& classifier : stage) {
            for (const auto& r : classifier.rects) {
                right = std::max(right, r.rect.x + r.rect.width);
                top = std::max(top, r.rect.y + r.rect.height);
            }
        }
    }

    std::vector<Group> groups;
    float s = W < 352 ? 1.0F : W < 500 ? 2.25F : static_cast<float>(minFaceSize / static_cast<double>(windowWidth));
    float inv = 1.0F / s;
    float sw = inv * static_cast<float>(W);
    while (sw > static_cast<float>(windowWidth + 5)) {
        const float sh = static_cast<float>(H) * inv;
        if (!(sh > static_cast<float>(windowHeight + 5))) break;
        if (!(maxFaceSize > static_cast<double>(windowWidth) * s)) break;
        const ImageSize e{static_cast<int32>(sw), static_cast<int32>(sh)};
        Plane<uint8> scaled(e.width, e.height, 0, 0, 0), mask(e.width, e.height, 0, 0, 0);
        Nearest(grey, scaled, MakeGeometry({W, H}, {0, 0, W, H}, e, inv, inv, 1));
        Plane<float> sum(e.width + 1, e.height + 1, 0, 0, 0);
        Plane<double> squares(e.width + 1, e.height + 1, 0, 0, 0);
        SqrIntegral(scaled, sum, squares, e, -16777216.0F, 0.0);
        const ImageSize r{e.width - right + 1, e.height - top + 1};
        for (int32 y = 0; y < r.height; ++y) std::fill_n(&mask.At(0, y), r.width, uint8{255});
        if (pruned) EdgeMap(scaled, mask, r, 0);
        for (std::size_t i = 0; i < stages.size(); ++i) {
            for (int32 y = 0; y < r.height; ++y) {
                for (int32 x = 0; x < r.width; ++x) {
                    if (mask.At(x, y) == 0) continue;
                    const float norm = StdDevAt(sum, squares, {1, 1, windowWidth - 2, windowHeight - 2}, x, y);
                    const float threshold = file.stageThreshold[i] - 0.0001F;
                    if (!PassesStage(sum, stages[i], norm, threshold, x, y)) mask.At(x, y) = 0;
                }
            }
        }
        ScaleTrace trace{e, inv, r, {}};
        for (int32 y = 0; y < r.height; ++y)
            trace.mask.insert(trace.mask.end(), &mask.At(0, y), &mask.At(0, y) + r.width);
        Harvest(trace.mask, r.width, r.height, windowWidth, s, groups, limits);
        result.scales.push_back(std::move(trace));
        s = s * scaleFactor;
        inv = 1.0F / s;
        sw = inv * static_cast<float>(W);
    }
    const int32 found = Merge(groups, result.face, limits);
    result.status = found != 0 && result.face.width > 0 ? 0 : 10;
    if (result.status != 0) result.face = {0, 0, 0, 0};
    return result;
}

} // namespace orvane::test::reference
