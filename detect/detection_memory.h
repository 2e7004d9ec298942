// What a detection works in. Kept from one to the next it costs no new pages, which are a twelfth of a quick one.
#pragma once

#include "detect/fused_scan.h"
#include "image/image_buffer.h"

#include <optional>

namespace orvane {

struct DetectionMemory {
    ImageBuffer grey;              // the grey plane of the picture, as large as that
    std::optional<FusedScan> scan; // some megabytes, whatever the picture's size
};

} // namespace orvane
