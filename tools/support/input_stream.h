// Standard input as bytes.
#pragma once

#include <cstddef>
#include <string>

namespace orvane::tools {

/// Reads exactly `size` bytes. False at the end of the input.
bool ReadInput(char* bytes, std::size_t size);

/// Reads up to the end of the input.
std::string ReadAllInput();

} // namespace orvane::tools
