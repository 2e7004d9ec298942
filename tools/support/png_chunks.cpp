#include "tools/support/png_chunks.h"

#include "tools/support/byte_order.h"
#include "tools/support/png_end.h"

namespace orvane::tools {
namespace {

constexpr std::size_t kSignature = 8;

std::uint32_t Checksum(const std::string& bytes) {
    std::uint32_t sum = 0xFFFFFFFF;
    for (const char byte : bytes) {
        sum ^= static_cast<unsigned char>(byte);
        for (int bit = 0; bit < 8; ++bit) sum = (sum & 1) != 0 ? sum >> 1 ^ 0xEDB88320 : sum >> 1;
    }
    return ~sum;
}

std::optional<PngChunk> ChunkAt(const std::string& png, std::size_t at) {
    if (at == 0) {
        if (!IsPng(png)) return std::nullopt;
        at = kSignature;
    }
    if (png.size() - at < kPngChunkFrame) return std::nullopt;
    const std::size_t size = HighFirst(png, at, 4);
    if (png.size() - at - kPngChunkFrame < size) return std::nullopt;
    return PngChunk{png.substr(at + 4, 4), at, at + 8, size};
}

} // namespace

FileParts<PngChunk> PngChunks(const std::string& png) { return {png, ChunkAt}; }

void SetPngChunk(const std::string& type, const std::string& content, std::string* png) {
    std::size_t at = 0;
    std::size_t replaced = 0;
    for (const PngChunk& chunk : PngChunks(*png)) {
        if (at == 0) at = chunk.End();
        if (chunk.type == "IDAT") break;
        if (chunk.type != type) continue;
        at = chunk.at;
        replaced = kPngChunkFrame + chunk.size;
        break;
    }
    if (at == 0) return;
    const std::string body = type + content;
    png->replace(at, replaced,
                 HighFirst(static_cast<std::uint32_t>(content.size()), 4) + body + HighFirst(Checksum(body), 4));
}

} // namespace orvane::tools
