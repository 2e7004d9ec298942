#include "tools/support/file_padding.h"

#include "tools/support/jpeg_segments.h"
#include "tools/support/png_chunks.h"

#include <algorithm>

namespace orvane::tools {
namespace {

void PadJpeg(std::size_t missing, std::string* jpeg) {
    constexpr std::size_t kFrame = 4;
    std::string comments;
    while (comments.size() < missing) {
        const std::size_t left = missing - comments.size();
        std::size_t bytes = std::clamp(left, kFrame, kMostInJpegSegment + kFrame);
        // What is left then has room for a frame.
        if (left > bytes && left - bytes < kFrame) bytes -= kFrame;
        comments += JpegSegmentBytes(kCommentSegment, std::string(bytes - kFrame, ' '));
    }
    AddJpegSegments(comments, jpeg);
}

void PadPng(std::size_t missing, std::string* png) {
    const std::string name("Comment\0", 8);
    const std::size_t frame = kPngChunkFrame + name.size();
    SetPngChunk("tEXt", name + std::string(missing > frame ? missing - frame : 0, ' '), png);
}

} // namespace

void PadFile(PictureFormat format, std::size_t size, std::string* file) {
    if (file->size() >= size) return;
    const std::size_t missing = size - file->size();
    if (format == PictureFormat::jpeg) PadJpeg(missing, file);
    if (format == PictureFormat::png) PadPng(missing, file);
}

} // namespace orvane::tools
