// A face as a rectangle of its photograph.
#pragma once

#include "primitives/types.h"

namespace orvane::tools {

/// A face in pixels of the photo, y from its top.
struct FaceBox {
    int32 x = 0;
    int32 y = 0;
    int32 width = 0;
    int32 height = 0;

    bool operator==(const FaceBox&) const = default;
};

} // namespace orvane::tools
