// Stage evaluation once more: one window at a time, from the rectangles as they were given.
#pragma once

#include "primitives/types.h"
#include "tests/support/plane.h"

#include <vector>

namespace orvane::test::reference {

struct WeightedRect {
    ImageRect rect;
    float weight;
};

struct Classifier {
    std::vector<WeightedRect> rects;
    float threshold, val1, val2;
};

inline bool PassesStage(const Plane<float>& sum, const std::vector<Classifier>& stage, float norm, float threshold,
                        int32 X, int32 Y) {
    double stageSum = 0;
    const auto evaluate = [&](const Classifier& c) {
        double e = 0;
        for (const WeightedRect& r : c.rects) {
            const auto s = [&](int32 row, int32 column) { return static_cast<double>(sum.At(X + column, Y + row)); };
            const int32 right = r.rect.x + r.rect.width;
            const int32 bottom = r.rect.y + r.rect.height;
            e += (s(bottom, right) - s(bottom, r.rect.x) - s(r.rect.y, right) + s(r.rect.y, r.rect.x)) * r.weight;
        }
        stageSum += e < static_cast<double>(c.threshold) * norm ? c.val1 : c.val2;
    };
    // Those of two rectangles are summed first, then those of three, then all others.
    for (const Classifier& c : stage) {
        if (c.rects.size() == 2) evaluate(c);
    }
    for (const Classifier& c : stage) {
        if (c.rects.size() == 3) evaluate(c);
    }
    for (const Classifier& c : stage) {
        if (c.rects.size() != 2 && c.rects.size() != 3) evaluate(c);
    }
    return !(stageSum < threshold);
}

} // namespace orvane::test::reference
