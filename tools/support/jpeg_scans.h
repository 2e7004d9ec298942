// Whether the coded data of a JPEG stream are what an encoder wrote. Where they are damaged, a decoder finds its way
// back somehow, fills in what is missing and says nothing; whoever made the photograph should hear of it.
#pragma once

#include <string>

namespace orvane::tools {

/// Reads all scans of a stream code by code, without making a picture. False where one holds what is no code, has too
/// few or too many codes for the picture's size, or lacks a restart marker. True also for what is not read here:
/// streams with arithmetic or lossless coding, and what a decoder refuses by itself.
bool JpegScansAreWhole(const std::string& data);

} // namespace orvane::tools
