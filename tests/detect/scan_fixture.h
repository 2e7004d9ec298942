// What all tests of the scan share: a library folder, start values, a recorder, and scenes as pictures.
#pragma once

#include "tests/support/detector_settings.h"
#include "tests/support/module_files.h"
#include "tests/support/scan_recorder.h"
#include "tests/support/scene_image.h"

#include "image/session_images.h"

#include <gtest/gtest.h>

namespace orvane::test {

class ScanFixture : public ::testing::Test {
protected:
    ~ScanFixture() override {
        g_sourceImage.Reset();
        g_workImage.Reset();
    }

    static DetectorParams Params(float scaleFactor, int32 pruneMode) {
        DetectorParams params;
        params.scaleFactor = scaleFactor;
        params.pruneMode = pruneMode;
        return params;
    }

    /// One pass over the scene.
    static int32 Scan(const Scene& scene, float scaleFactor = 1.09F, int32 pruneMode = 4) {
        DetectorParams params = Params(scaleFactor, pruneMode);
        EXPECT_TRUE(ToImage(scene, g_sourceImage));
        return ScanScales(g_workImage, params, g_sourceImage);
    }

    /// The whole detection with new settings.
    static int32 Run(const Scene& scene, bool quick) {
        g_detectorParams = std::make_unique<DetectorParams>();
        EXPECT_TRUE(ToImage(scene, g_sourceImage));
        return RunDetection(quick);
    }

    ModuleFiles files_;
    DetectorSettings settings_;
    ScanRecorder recorder_;
};

} // namespace orvane::test
