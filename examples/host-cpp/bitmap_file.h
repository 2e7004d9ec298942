// Bitmap files to and from the blocks of the library. A block is what follows the 14 bytes of a file's header.
#pragma once

#include "block.h"

#include <cstdint>
#include <filesystem>
#include <stdexcept>

namespace host {

/// What is wrong with a file, as the rest of a sentence that begins with its name.
class FileProblem : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

struct PixelSize {
    std::int32_t width, height;
};

/// The file's 24-bit bitmap in a new block. Throws FileProblem.
Block ReadBitmap(const std::filesystem::path& name);

/// Writes a block of the library as a file. Throws FileProblem.
void WriteBitmap(const std::filesystem::path& name, const Block& dib);

/// The size of the bitmap in a block of the library.
PixelSize SizeOf(const Block& dib);

} // namespace host
