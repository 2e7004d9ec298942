// The module-wide values of the detector, as they are at the start of the process.
#pragma once

#include "detect/cascade_detector.h"

namespace orvane::test {

/// Sets the start values when it is made and when it goes.
class DetectorSettings {
public:
    DetectorSettings() { Reset(); }
    ~DetectorSettings() { Reset(); }
    DetectorSettings(const DetectorSettings&) = delete;
    DetectorSettings& operator=(const DetectorSettings&) = delete;

private:
    static void Reset() {
        g_faceRecord = {};
        g_minGroupMembers = 3;
        g_groupRadius = 40.0F;
        g_groupSizeRatio = 2.5F;
        g_minFaceRatio = 0.07F;
        g_maxFaceRatio = 0.95F;
        g_maxFaceSize = 0;
        g_positiveCount = 0;
        g_pruneParameter = 0;
        g_detectorParams.reset();
    }
};

} // namespace orvane::test
