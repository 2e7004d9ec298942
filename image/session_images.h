// The pictures of the session. They live as long as the library is loaded; opening and closing a
// session leaves them alone.
#pragma once

#include "image/image_buffer.h"

namespace orvane {

extern ImageBuffer g_sourceImage;      // the picture as loaded
extern ImageBuffer g_workImage;        // the pipeline's picture; after a run its result
extern ImageBuffer g_maskImage;        // background mask
extern ImageBuffer g_colourStageImage; // g_workImage after pipeline slot 2
extern ImageBuffer g_colourStageMask;  // g_maskImage after pipeline slot 2

/// The arguments of the last InitPicture.
extern int32 g_pictureWidth, g_pictureHeight, g_pictureChannels, g_pictureBits;

} // namespace orvane
