// Whether two pictures show the same scene from edge to edge, in whatever size each.
#pragma once

#include "primitives/types.h"
#include "tools/support/picture.h"

namespace orvane::tools {

/// 24-bit rows that somebody else owns, the bottom row first.
struct PixelRows {
    const uint8* pixels = nullptr;
    int32 width = 0;
    int32 height = 0;

    int32 Step() const { return PictureStep(width); }
};

/// Compares the mean colours of 16 by 16 fields. A crop shows something else, a scaled copy does not.
bool ShowSameScene(const PixelRows& a, const PixelRows& b);

} // namespace orvane::tools
