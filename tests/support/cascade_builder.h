// Classifier files for tests: a cascade described as stages of weak classifiers becomes the bytes of
// "Orvane.dat". The file form stays open to changes, so that a test can let single numbers lie.
#pragma once

#include "primitives/types.h"

#include <array>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

namespace orvane::test {

/// A rectangle of a weak classifier in window coordinates, y from the window's top.
struct WeightedRect {
    ImageRect rect;
    float weight;
};

/// Gives `val1` where the weighted sum of its rectangles is below `threshold` times the window's
/// standard deviation, else `val2`. The sum is divided by the window's inner area.
struct WeakClassifier {
    std::vector<WeightedRect> rects;
    float threshold;
    float val1 = 0.0F;
    float val2 = 1.0F;
};

/// A window passes where the sum of the classifiers' values reaches `threshold`.
struct CascadeStage {
    std::vector<WeakClassifier> classifiers;
    float threshold = 0.5F;
};

/// The numbers of a classifier file in their order.
struct CascadeFile {
    std::array<int32, 5> header{}; // window width and height, stages, classifiers, rectangles
    std::vector<float> stageThreshold;
    std::vector<int32> stageClassifierCount, stageReserved, stageClassifierStart, stageFeatureStart;
    std::vector<int32> classifierFeatureCount;
    std::vector<float> classifierThreshold, classifierVal1, classifierVal2;
    std::vector<ImageRect> featureRect;
    std::vector<float> featureWeight;

    std::string Bytes() const {
        std::string bytes;
        Append(bytes, header.data(), header.size());
        const auto array = [&](const auto& values) { Append(bytes, values.data(), values.size()); };
        array(stageThreshold);
        array(stageClassifierCount);
        array(stageReserved);
        array(stageClassifierStart);
        array(stageFeatureStart);
        array(classifierFeatureCount);
        array(classifierThreshold);
        array(classifierVal1);
        array(classifierVal2);
        array(featureRect);
        array(featureWeight);
        return bytes;
    }

private:
    /// All elements are 32-bit numbers or made of such, and all systems of the tests are little-endian.
    template <typename T>
    static void Append(std::string& bytes, const T* values, std::size_t count) {
        if (count > 0) bytes.append(reinterpret_cast<const char*>(values), count * sizeof(T));
    }
};

inline CascadeFile BuildCascade(ImageSize window, const std::vector<CascadeStage>& stages) {
    CascadeFile file;
    for (const CascadeStage& stage : stages) {
        file.stageThreshold.push_back(stage.threshold);
        file.stageClassifierCount.push_back(static_cast<int32>(stage.classifiers.size()));
        file.stageReserved.push_back(0);
        file.stageClassifierStart.push_back(static_cast<int32>(file.classifierThreshold.size()));
        file.stageFeatureStart.push_back(static_cast<int32>(file.featureRect.size()));
        for (const WeakClassifier& classifier : stage.classifiers) {
            file.classifierFeatureCount.push_back(static_cast<int32>(classifier.rects.size()));
            file.classifierThreshold.push_back(classifier.threshold);
            file.classifierVal1.push_back(classifier.val1);
            file.classifierVal2.push_back(classifier.val2);
            for (const WeightedRect& weighted : classifier.rects) {
                file.featureRect.push_back(weighted.rect);
                file.featureWeight.push_back(weighted.weight);
            }
        }
    }
    file.header = {window.width, window.height, static_cast<int32>(stages.size()),
                   static_cast<int32>(file.classifierThreshold.size()), static_cast<int32>(file.featureRect.size())};
    return file;
}

/// Writes "Orvane.dat" into a folder. False when that fails.
inline bool WriteClassifier(const std::filesystem::path& folder, const std::string& bytes) {
    std::ofstream out(folder / "Orvane.dat", std::ios::binary | std::ios::trunc);
    out.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
    out.close();
    return !out.fail();
}

} // namespace orvane::test
