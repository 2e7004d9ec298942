// The chunks of a PNG file. Reads nothing outside the file, whatever they claim.
#pragma once

#include "tools/support/file_parts.h"

#include <cstddef>
#include <string>

namespace orvane::tools {

/// Bytes that a chunk takes beside its content.
inline constexpr std::size_t kPngChunkFrame = 12;

struct PngChunk {
    std::string type;        ///< Four letters.
    std::size_t at = 0;      ///< Of its length.
    std::size_t content = 0; ///< Behind the type.
    std::size_t size = 0;    ///< Bytes of the content, all of them within the file.

    std::size_t End() const { return at + kPngChunkFrame + size; }
};

/// In their order, up to the end or the first one that is not there wholly.
FileParts<PngChunk> PngChunks(const std::string& png);

/// Puts a chunk behind the header, in the place of one of the same type that stands before the pixels.
void SetPngChunk(const std::string& type, const std::string& content, std::string* png);

} // namespace orvane::tools
