// The module-wide settings of the actions, as they are when the library is loaded.
#pragma once

#include "actions/action_settings.h"
#include "detect/candidates.h"

namespace orvane::test {

/// Sets the start values when it comes and when it goes, so that no test sees what another left.
class FreshSettings {
public:
    FreshSettings() { Reset(); }
    ~FreshSettings() { Reset(); }
    FreshSettings(const FreshSettings&) = delete;
    FreshSettings& operator=(const FreshSettings&) = delete;

private:
    static void Reset() {
        g_actionEnabled.fill(0);
        g_outputWidth = 240;
        g_outputHeight = 430;
        g_cropWidthFactor = 0.6F;
        g_cropHeightFactor = 0.8F;
        g_cropRatio = 0.75F;
        g_fillLevel = 255;
        g_rotationAngle = 0;
        g_originalWidth = 0;
        g_originalHeight = 0;
        g_faceRecord = {};
    }
};

} // namespace orvane::test
