// What the cascade is made of: integral images, standard deviations, stages.
#include "fuzz/primitives/judge.h"
#include "tests/reference/haar.h"
#include "tests/reference/integral.h"

#include <algorithm>
#include <vector>

namespace orvane::fuzz {
namespace {

namespace reference = test::reference;
using reference::Classifier;

/// A picture's two integral images, as the scan has them.
struct Integrals {
    Plane<float> sum;
    Plane<double> squares;

    Integrals(Judge& j, ImageSize size)
        : sum(Plane<float>::Source(size.width + 1, size.height + 1, j.random)),
          squares(Plane<double>::Source(size.width + 1, size.height + 1, j.random)) {
        const Plane<uint8> picture = j.Source<uint8>(size.width, size.height);
        Expect(primSqrIntegral_8u32f64f_C1(picture.Data(), picture.Step(), sum.Data(), sum.Step(), squares.Data(),
                                           squares.Step(), size, -16777216.0F, 0.0) == kOk,
               "there are integral images");
    }
};

/// Classifiers in a window of `side` pixels, which the first rectangle fills.
std::vector<Classifier> AnyStage(Judge& j, int32 side) {
    std::vector<Classifier> stage(static_cast<std::size_t>(j.choices.Int(1, 6)));
    const auto number = [&] { return static_cast<float>(j.choices.Int(-3000, 3000)) / 512.0F; };
    for (Classifier& classifier : stage) {
        classifier.threshold = number() * 16;
        classifier.val1 = number();
        classifier.val2 = number();
        classifier.rects.resize(static_cast<std::size_t>(j.choices.Int(1, 5)));
        for (reference::WeightedRect& r : classifier.rects) {
            const int32 x = j.choices.Int(0, side - 1), y = j.choices.Int(0, side - 1);
            r.rect = {x, y, j.choices.Int(1, side - x), j.choices.Int(1, side - y)};
            r.weight = number();
        }
    }
    stage[0].rects[0].rect = {0, 0, side, side};
    return stage;
}

/// A stage that is given back.
class Stage {
public:
    /// @param bad may hold a rectangle that is none
    Stage(Judge& j, const std::vector<Classifier>& classifiers, bool bad) {
        std::vector<ImageRect> rects;
        std::vector<float> weights, thresholds, below, above;
        std::vector<int32> counts;
        for (const Classifier& c : classifiers) {
            for (const reference::WeightedRect& r : c.rects) {
                rects.push_back(r.rect);
                weights.push_back(r.weight);
            }
            thresholds.push_back(c.threshold);
            below.push_back(c.val1);
            above.push_back(c.val2);
            counts.push_back(static_cast<int32>(c.rects.size()));
        }
        if (bad) (j.choices.Flag() ? rects.back().width : rects.back().x) = -j.choices.Int(1, 9);
        const int32 status = primHaarClassifierInitAlloc_32f(j.At(&state_), j.At(rects.data()), j.At(weights.data()),
                                                             thresholds.data(), below.data(), above.data(),
                                                             counts.data(), static_cast<int32>(counts.size()));
        made_ = j.Did(status, bad ? kBadArgument : kOk);
        Expect(made_ == (state_ != nullptr), "a stage that was refused is none");
    }
    ~Stage() {
        Expect(!made_ || primHaarClassifierFree_32f(state_) == kOk, "a stage is given back");
        Expect(primHaarClassifierFree_32f(nullptr) == kNullPointer, "none can't be");
    }
    Stage(const Stage&) = delete;
    Stage& operator=(const Stage&) = delete;

    const HaarClassifier* State() const { return state_; }

private:
    HaarClassifier* state_ = nullptr;
    bool made_ = false;
};

void JudgeMaking(Judge& j) {
    const std::vector<Classifier> classifiers = AnyStage(j, j.choices.Int(1, 12));
    const Stage stage(j, classifiers, j.choices.Int(0, 3) == 3);
    ImageSize bounds{-1, -1}, expected{0, 0};
    if (stage.State() == nullptr) return;
    Expect(primGetHaarClassifierSize_32f(stage.State(), &bounds) == kOk, "a stage has a size");
    for (const Classifier& c : classifiers) {
        for (const reference::WeightedRect& r : c.rects) {
            expected.width = std::max(expected.width, r.rect.x + r.rect.width);
            expected.height = std::max(expected.height, r.rect.y + r.rect.height);
        }
    }
    Expect(bounds.width == expected.width && bounds.height == expected.height, "which is that of its rectangles");
    Expect(primGetHaarClassifierSize_32f(stage.State(), nullptr) == kNullPointer, "it is told somewhere");
}

} // namespace

void Judge_primSqrIntegral_8u32f64f_C1(Judge& j) {
    const ImageSize roi = j.AnySize();
    const Plane<uint8> src = j.Source<uint8>(roi.width, roi.height);
    Plane<float> sum = j.Output<float>(roi.width + 1, roi.height + 1), plainSum = sum;
    Plane<double> squares = j.Output<double>(roi.width + 1, roi.height + 1), plainSquares = squares;
    const float sumInit = j.choices.Flag() ? -16777216.0F : static_cast<float>(j.choices.Int(-1000, 1000));
    const double squaresInit = j.choices.Int(-1000, 1000) / 4.0;
    const int32 status =
        primSqrIntegral_8u32f64f_C1(j.At(src.Data()), j.Step(src.Step()), j.At(sum.Data()), sum.Step(),
                                    j.At(squares.Data()), squares.Step(), j.Roi(roi), sumInit, squaresInit);
    if (j.Did(status)) reference::SqrIntegral(src, plainSum, plainSquares, roi, sumInit, squaresInit);
    Judge::Same(sum, plainSum);
    Judge::Same(squares, plainSquares);
}

void Judge_primRectStdDev_32f_C1(Judge& j) {
    const ImageSize roi = j.AnySize(60);
    const ImageRect rect{j.choices.Int(0, 3), j.choices.Int(0, 3), j.choices.Int(1, 20), j.choices.Int(1, 20)};
    const Integrals planes(j, {roi.width + rect.x + rect.width, roi.height + rect.y + rect.height});
    Plane<float> result = j.Output<float>(roi.width, roi.height), expected = result;
    const Plane<uint8> mask = j.Source<uint8>(roi.width, roi.height);
    const bool masked = j.choices.Flag();
    const float* sum = j.At(planes.sum.Data());
    const double* squares = j.At(planes.squares.Data());
    const ImageSize told = j.Roi(roi);
    const int32 status = masked
                             ? RectStdDevUnderMask(sum, planes.sum.Step(), squares, planes.squares.Step(),
                                                   result.Data(), result.Step(), told, rect, mask.Data(), mask.Step())
                             : primRectStdDev_32f_C1(sum, planes.sum.Step(), squares, planes.squares.Step(),
                                                     result.Data(), result.Step(), told, rect);
    if (j.Did(status)) {
        for (int32 y = 0; y < roi.height; ++y) {
            for (int32 x = 0; x < roi.width; ++x) {
                if (masked && mask.At(x, y) == 0) continue;
                expected.At(x, y) = reference::StdDevAt(planes.sum, planes.squares, rect, x, y);
            }
        }
    }
    Judge::Same(result, expected);
}

void Judge_primHaarClassifierInitAlloc_32f(Judge& j) { JudgeMaking(j); }
void Judge_primGetHaarClassifierSize_32f(Judge& j) { JudgeMaking(j); }
void Judge_primHaarClassifierFree_32f(Judge& j) { JudgeMaking(j); }

void Judge_primApplyHaarClassifier_32f_C1(Judge& j) {
    const int32 side = j.choices.Int(1, 12);
    const std::vector<Classifier> classifiers = AnyStage(j, side);
    const ImageSize roi = j.AnySize(60);
    const Integrals planes(j, {roi.width + side - 1, roi.height + side - 1});
    const Plane<float> norm = j.Source<float>(roi.width, roi.height);
    Plane<uint8> result = j.Output<uint8>(roi.width, roi.height), expected = result;
    Judge good(Choices(nullptr, 0)); // whose arguments are not the ones to be spoilt
    const Stage stage(good, classifiers, false);
    const float threshold = static_cast<float>(j.choices.Int(-3000, 3000)) / 1024.0F;
    int32 positive = -1, kept = 0;
    const int32 status = primApplyHaarClassifier_32f_C1(j.At(planes.sum.Data()), planes.sum.Step(), j.At(norm.Data()),
                                                        j.Step(norm.Step()), j.At(result.Data()), result.Step(),
                                                        j.Roi(roi), &positive, threshold, stage.State());
    if (j.Did(status)) {
        for (int32 y = 0; y < roi.height; ++y) {
            for (int32 x = 0; x < roi.width; ++x) {
                if (expected.At(x, y) == 0) continue;
                if (reference::PassesStage(planes.sum, classifiers, norm.At(x, y), threshold, x, y)) {
                    ++kept;
                } else {
                    expected.At(x, y) = 0;
                }
            }
        }
        Expect(positive == kept, "what is kept is counted");
    }
    Judge::Same(result, expected);
}

} // namespace orvane::fuzz
