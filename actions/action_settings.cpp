#include "actions/action_settings.h"

#include "image/result_codes.h"

namespace orvane {

ActionFlags g_actionEnabled{};
int32 g_outputWidth = 240;
int32 g_outputHeight = 430;
// These two stand only until the first SetOutputGeometry, hence not tied to the size above.
float g_cropWidthFactor = 0.6F;
float g_cropHeightFactor = 0.8F;
float g_cropRatio = 0.75F;
int32 g_fillLevel = 255;
int32 g_rotationAngle = 0;
int32 g_originalWidth = 0;
int32 g_originalHeight = 0;

int32 SetOutputGeometry(int32 width, int32 height) {
    constexpr int32 kSmallestSide = 75;
    if (width < kSmallestSide || height < kSmallestSide) return kBadCall;
    g_outputWidth = width - width % 4;
    g_outputHeight = height;
    g_cropHeightFactor = g_cropRatio;
    g_cropWidthFactor = static_cast<float>(static_cast<double>(g_outputWidth) * g_cropRatio / height);
    return kSuccess;
}

} // namespace orvane
