#include "tools/train/detection.h"

#include "detect/candidates.h"
#include "detect/cascade_detector.h"
#include "detect/classifier_file.h"
#include "image/session_images.h"

#include <algorithm>
#include <chrono>
#include <filesystem>

namespace orvane::train {

bool UseClassifier(const std::string& file, std::string& error) {
    const std::filesystem::path path = std::filesystem::absolute(file);
    g_moduleFolder = path.parent_path().native();
    FreeClassifier(g_classifier);
    g_detectorParams = std::make_unique<DetectorParams>();
    if (ReadClassifierFile(path.filename().native(), g_classifier) != 0) {
        error = "cannot read the classifier " + file;
        return false;
    }
    if (PrepareClassifier(1, 0.0001f, g_classifier) != 0) {
        error = "the classifier is damaged: " + file;
        return false;
    }
    return true;
}

bool Detect(const tools::Picture& picture, bool quick, Outcome& outcome, std::string& error) {
    outcome = {};
    if (!g_sourceImage.Create(picture.width, picture.height, 3, kDepth8u, 0)) {
        error = "no memory";
        return false;
    }
    for (int32 y = 0; y < picture.height; ++y) {
        std::copy_n(picture.pixels.data() + static_cast<std::ptrdiff_t>(y) * picture.step, 3 * picture.width,
                    RowAt(g_sourceImage.data, g_sourceImage.Step(), y));
    }
    const auto start = std::chrono::steady_clock::now();
    outcome.status = RunDetection(quick);
    outcome.milliseconds = std::chrono::duration<double, std::milli>(std::chrono::steady_clock::now() - start).count();
    if (outcome.status < 0) {
        error = "the detector answers " + std::to_string(outcome.status);
        return false;
    }
    outcome.finer = g_detectorParams->passTag == 1;
    if (outcome.HasFace()) {
        int32 x = 0;
        int32 y = 0;
        int32 w = 0;
        int32 h = 0;
        GetFaceRect(&x, &y, &w, &h);
        outcome.square = {static_cast<double>(x), static_cast<double>(y), static_cast<double>(w)};
    }
    return true;
}

} // namespace orvane::train
