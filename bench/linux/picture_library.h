// What a portrait's file costs without a portrait: the photograph decoded, scaled to the portrait's size and encoded by
// the picture library alone.
#pragma once

#include "primitives/types.h"

#include <string>

namespace orvane::bench {

/// Processor seconds of the three steps.
struct PlainTimes {
    double decode = 0, scale = 0, encode = 0;

    double Sum() const { return decode + scale + encode; }
};

/// Scales the picture file `from` to `size` and writes it to `to`, .png or .jpg, with the options that the tool's
/// encoder has. False when the picture library fails.
bool ScalePlainly(const std::string& from, const std::string& to, ImageSize size, PlainTimes* times);

} // namespace orvane::bench
