#include "actions/plane_painting.h"

#include "primitives/primitives.h"

#include <algorithm>

namespace orvane {

int32 PaintRect(ImageBuffer& plane, PaintedRect rect, uint8 value) {
    if (plane.data == nullptr) return kNullPointer;
    if (rect.width < 1 || rect.height < 1) return kBadSize;
    const int64 x0 = std::max<int64>(rect.x, 0), x1 = std::min<int64>(rect.x + rect.width, plane.width);
    const int64 y0 = std::max<int64>(rect.y, 0), y1 = std::min<int64>(rect.y + rect.height, plane.height);
    if (x0 >= x1 || y0 >= y1) return kOk;
    const ImageSize size{static_cast<int32>(x1 - x0), static_cast<int32>(y1 - y0)};
    return primSet_8u_C1(value, RowAt(plane.data, plane.Step(), static_cast<int32>(y0)) + x0, plane.Step(), size);
}

} // namespace orvane
