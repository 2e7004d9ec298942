#include "image/session_images.h"

namespace orvane {

ImageBuffer g_sourceImage;
ImageBuffer g_workImage;
ImageBuffer g_maskImage;
ImageBuffer g_colourStageImage;
ImageBuffer g_colourStageMask;

int32 g_pictureWidth, g_pictureHeight, g_pictureChannels, g_pictureBits;

} // namespace orvane
