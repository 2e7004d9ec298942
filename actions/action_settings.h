// The settings that the pipeline's actions read. They keep their values from session to session.
#pragma once

#include "primitives/types.h"

#include <array>

namespace orvane {

inline constexpr int32 kActionCount = 6;

/// The pipeline's slots, by the position of their flag. The numbers are part of the interface.
enum ActionSlot : int32 {
    kSlotCrop = 0,
    kSlotBackground = 1,
    kSlotColour = 2,
    kSlotRotation = 3,
    kSlotNone = 4, // no action: ends the pipeline
    kSlotOutputScaling = 5,
};

using ActionFlags = std::array<uint8, kActionCount>;

extern ActionFlags g_actionEnabled; // 0 or not 0

extern int32 g_outputWidth; // output size; output scaling enlarges one side of it
extern int32 g_outputHeight;
extern float g_cropWidthFactor;  // crop width per face width, before the factor of three
extern float g_cropHeightFactor; // crop height likewise
extern float g_cropRatio;        // the host's crop ratio
extern int32 g_fillLevel;        // pad value of crop, background removal and output scaling
extern int32 g_rotationAngle;    // degrees for the rotation
extern int32 g_originalWidth;    // picture size passed to the background removal
extern int32 g_originalHeight;

/// Where output size and crop factors meet. The width is rounded down to a multiple of 4; the crop takes
/// the output's proportions. 0; -10 for a side under 75, which changes nothing.
int32 SetOutputGeometry(int32 width, int32 height);

} // namespace orvane
