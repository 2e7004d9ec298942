// Small pictures of large ones.
#pragma once

#include "tools/support/picture.h"

namespace orvane::tools {

/// The picture shrunk so that it fits the box, each pixel the mean of those that it stands for; one that fits as it is
/// stays so.
Picture Thumbnail(const Picture& picture, int32 width, int32 height);

} // namespace orvane::tools
