// Classifier files out of choices: the bytes as they are, a cascade of choices, or one that finds drawn faces; of the
// latter two any number may be a lie.
#pragma once

#include "fuzz/support/choices.h"
#include "tests/support/face_scene.h"

#include <cstring>
#include <string>
#include <vector>

namespace orvane::fuzz {

inline test::CascadeFile AnyCascade(Choices& choices) {
    const ImageSize window{choices.Int(3, 34), choices.Int(3, 34)};
    const auto number = [&] { return static_cast<float>(choices.Int(-100, 100)) / 32.0F; };
    std::vector<test::CascadeStage> stages(static_cast<std::size_t>(choices.Int(0, 5)));
    for (test::CascadeStage& stage : stages) {
        stage.threshold = number();
        stage.classifiers.resize(static_cast<std::size_t>(choices.Int(0, 5)));
        for (test::WeakClassifier& classifier : stage.classifiers) {
            classifier.threshold = number();
            classifier.val1 = number();
            classifier.val2 = number();
            classifier.rects.resize(static_cast<std::size_t>(choices.Int(1, 5)));
            for (test::WeightedRect& weighted : classifier.rects) {
                weighted.weight = number();
                // Beyond the window too, on the sides where that is allowed and on those where it is not.
                const int32 x = choices.Int(-1, window.width), y = choices.Int(-8, window.height);
                weighted.rect = {x, y, choices.Int(0, window.width + 8 - x), choices.Int(0, window.height - y + 1)};
            }
        }
    }
    return test::BuildCascade(window, stages);
}

inline std::string AnyClassifier(Choices& choices) {
    const int32 kind = choices.Int(0, 3);
    if (kind == 0) return choices.Rest();
    std::string file = (kind == 1 ? test::FaceCascade() : AnyCascade(choices)).Bytes();
    const int32 lies = kind == 2 ? 0 : choices.Int(0, 4);
    for (int32 n = 0; n < lies && file.size() >= 4; ++n) {
        const std::size_t at = static_cast<std::size_t>(choices.Int(0, static_cast<int32>(file.size() / 4) - 1)) * 4;
        const int32 lie = choices.AnyInt();
        std::memcpy(file.data() + at, &lie, sizeof lie);
    }
    if (kind == 3 && choices.Flag()) file.resize(static_cast<std::size_t>(choices.Int(0, 2000)));
    return file;
}

} // namespace orvane::fuzz
