// A library whose answers a test chooses: it plays the operator too, who may cancel or mark a face.
#pragma once

#include "orvane/orvane.h"

#include <string>
#include <vector>

namespace orvane::test {

/// What each function answers, and what it was asked.
struct PlayedLibrary {
    int32_t init = ORV_OK;
    int32_t language = ORV_OK;
    int32_t visible = ORV_OK;
    int32_t size = ORV_OK;
    int32_t ratio = ORV_OK;
    int32_t action = ORV_OK;
    int32_t detect = ORV_OK;
    int32_t live = ORV_OK;
    int32_t output = ORV_OK;
    int outputWidth = 0; ///< Of the portrait, a grey one; 0 gives a block of 40 zero bytes.
    int outputHeight = 0;

    std::vector<std::string> calls; ///< Functions with their arguments, in their order.
    std::vector<unsigned char> photo;
};

extern PlayedLibrary g_played;

} // namespace orvane::test
