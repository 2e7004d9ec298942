#include "actions/plane_painting.h"

#include "primitives/primitives.h"

#include <algorithm>

namespace orvane {

namespace {

/// The part of a rectangle that lies in a plane: columns from x0 to before x1, rows likewise.
struct PlanePart {
    int64 x0, x1, y0, y1;

    PlanePart(PaintedRect rect, ImageSize plane)
        : x0(std::max<int64>(rect.x, 0)), x1(std::min<int64>(rect.x + rect.width, plane.width)),
          y0(std::max<int64>(rect.y, 0)), y1(std::min<int64>(rect.y + rect.height, plane.height)) {}

    bool IsEmpty() const { return x0 >= x1 || y0 >= y1; }
};

} // namespace

int32 PaintRect(ImageBuffer& plane, PaintedRect rect, uint8 value) {
    if (plane.data == nullptr) return kNullPointer;
    if (rect.width < 1 || rect.height < 1) return kBadSize;
    const PlanePart part(rect, plane.Size());
    if (part.IsEmpty()) return kOk;
    const ImageSize size{static_cast<int32>(part.x1 - part.x0), static_cast<int32>(part.y1 - part.y0)};
    return primSet_8u_C1(value, RowAt(plane.data, plane.Step(), static_cast<int32>(part.y0)) + part.x0, plane.Step(),
                         size);
}

int32 MarkRect(BitPlane& plane, PaintedRect rect) {
    if (rect.width < 1 || rect.height < 1) return kBadSize;
    const PlanePart part(rect, plane.Size());
    if (part.IsEmpty()) return kOk;
    for (int64 y = part.y0; y < part.y1; ++y) {
        uint64* row = plane.Row(static_cast<int32>(y));
        for (int64 word = part.x0 / 64; word <= (part.x1 - 1) / 64; ++word) {
            uint64 bits = ~uint64{0};
            if (word == part.x0 / 64) bits &= ~uint64{0} << part.x0 % 64;
            if (word == (part.x1 - 1) / 64) bits &= ~uint64{0} >> (63 - (part.x1 - 1) % 64);
            row[word] |= bits;
        }
    }
    return kOk;
}

} // namespace orvane
