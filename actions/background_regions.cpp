#include "actions/background_regions.h"

#include "actions/assertion.h"
#include "actions/background_colours.h"
#include "actions/plane_painting.h"
#include "primitives/primitives.h"
#include "primitives/trunc.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>

namespace orvane {
namespace {

constexpr float kSmallestBackground = 0.2F; // of the picture

int64 Distance(int32 a, int32 b) { return std::abs(int64{a} - b); }
int32 Middle(int32 a, int32 b) { return TruncToInt32(static_cast<double>(int64{a} + b) * 0.5); }

/// The levels of up to 64 pixels.
void PaintWord(uint64 subject, uint64 background, uint8* levels, int32 count) {
    const bool allBackground = background == ~uint64{0}, noBackground = background == 0;
    if (allBackground || (noBackground && (subject == 0 || subject == ~uint64{0}))) { // most words, count is 64 or less
        const uint8 level = allBackground ? kMaskBackground : subject == 0 ? kMaskNeither : kMaskSubject;
        std::memset(levels, level, static_cast<std::size_t>(count));
        return;
    }
    for (int32 i = 0; i < count; i += 8, subject >>= 8, background >>= 8) {
        const uint64 eight =
            (kMaskNeither * uint64{0x0101010101010101} | BytesOfEightBits(subject)) & ~BytesOfEightBits(background);
        static_assert(kMaskSubject == 255 && kMaskBackground == 0);
        std::memcpy(levels + i, &eight, static_cast<std::size_t>(std::min(count - i, 8)));
    }
}

} // namespace

void RegionMask::PaintRow(int32 y, uint8* levels) const {
    const uint64 *inSubject = subject.Row(y), *inBackground = background.Row(y);
    for (int32 i = 0; i < subject.Words(); ++i, levels += 64) {
        PaintWord(inSubject[i], inBackground[i], levels, std::min(Size().width - 64 * i, 64));
    }
}

void RegionMask::Paint(ImageBuffer& mask) const {
    if (background.IsEmpty() || !mask.Remake(Size().width, Size().height, 1, kDepth8u)) return;
    for (int32 y = 0; y < Size().height; ++y) PaintRow(y, RowAt(mask.data, mask.Step(), y));
}

bool BuildRegionMask(const ImageBuffer& source, RegionMask& mask, const BackgroundAnalyzer& analyzer, int32 tolerance,
                     ImageRect face) {
    BitPlane others;
    if (!MarkAllSamples(source, analyzer, others, tolerance)) return false;
    const int32 left = TruncToInt32(face.x + 0.3 * face.width);
    const int32 top = TruncToInt32(face.y + 0.12 * face.height);
    const int32 right = TruncToInt32(face.x + 0.7 * face.width);
    const int32 bottom = TruncToInt32(face.y + 0.88 * face.height);
    return KeepFaceCore(others, left, top, right, bottom, mask.subject) &&
           ClearCornerRegion(mask.subject, mask.background);
}

bool KeepFaceCore(BitPlane& others, int32 left, int32 top, int32 right, int32 bottom, BitPlane& subject) {
    ReportStatus(MarkRect(others, {left, top, Distance(left, right), Distance(top, bottom)}));
    int64 area = 0;
    const int32 status = FloodBits(others, {Middle(left, right), Middle(top, bottom)}, 1, subject, area);
    if (status == kNoMemory) return false;
    ReportStatus(status); // a middle beyond the plane
    return true;
}

bool ClearCornerRegion(const BitPlane& subject, BitPlane& background) {
    const ImageSize size = subject.Size();
    int64 area = 0;
    const int32 status = FloodBits(subject, {size.width - 3, size.height - 3}, 0, background, area);
    if (status == kNoMemory) return false;
    ReportStatus(status); // a small plane
    return static_cast<double>(kSmallestBackground) * size.width * size.height <= static_cast<double>(area);
}

} // namespace orvane
