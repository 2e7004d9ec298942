#include "tools/check/luminance.h"

#include <algorithm>

namespace orvane::tools {

Luminance LuminanceOf(const Picture& picture, const ImageRect& part) {
    const auto inside = [](int64 at, int32 limit) { return static_cast<int32>(std::clamp<int64>(at, 0, limit)); };
    const int32 left = inside(part.x, picture.width);
    const int32 right = inside(int64{part.x} + part.width, picture.width);
    const int32 top = inside(part.y, picture.height);
    const int32 bottom = inside(int64{part.y} + part.height, picture.height);
    Luminance plane;
    if (right <= left || bottom <= top) return plane;
    plane.width = right - left;
    plane.height = bottom - top;
    plane.levels.reserve(static_cast<std::size_t>(plane.width) * static_cast<std::size_t>(plane.height));
    for (int32 y = top; y < bottom; ++y) {
        const auto row = static_cast<std::ptrdiff_t>(picture.height - 1 - y);
        const uint8* pixel = picture.pixels.data() + row * picture.step + std::ptrdiff_t{3} * left;
        for (int32 x = left; x < right; ++x, pixel += 3) {
            const int32 sum = 114 * pixel[0] + 587 * pixel[1] + 299 * pixel[2];
            plane.levels.push_back(static_cast<uint8>((sum + 500) / 1000));
        }
    }
    return plane;
}

} // namespace orvane::tools
