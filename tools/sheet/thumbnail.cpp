#include "tools/sheet/thumbnail.h"

#include <algorithm>
#include <cstddef>

namespace orvane::tools {
namespace {

/// Where the pixels begin that output pixel `i` of `to` stands for.
int32 StartOf(int32 i, int32 from, int32 to) { return static_cast<int32>(int64{i} * from / to); }

} // namespace

Picture Thumbnail(const Picture& picture, int32 width, int32 height) {
    Picture small;
    small.width = std::min(picture.width, width);
    small.height = std::min(picture.height, height);
    // The side that is too long by more decides, the other one keeps the proportions.
    if (int64{picture.width} * small.height > int64{picture.height} * small.width) {
        small.height = static_cast<int32>(std::max<int64>(int64{picture.height} * small.width / picture.width, 1));
    } else {
        small.width = static_cast<int32>(std::max<int64>(int64{picture.width} * small.height / picture.height, 1));
    }
    small.step = PictureStep(small.width);
    small.pixels = PixelBlock(PictureBytes(small.width, small.height));
    for (int32 y = 0; y < small.height; ++y) {
        const int32 firstRow = StartOf(y, picture.height, small.height);
        const int32 endRow = StartOf(y + 1, picture.height, small.height);
        uint8* to = small.pixels.data() + std::ptrdiff_t{small.step} * y;
        for (int32 x = 0; x < small.width; ++x, to += 3) {
            const int32 first = StartOf(x, picture.width, small.width);
            const int32 end = StartOf(x + 1, picture.width, small.width);
            int64 sums[3] = {};
            for (int32 row = firstRow; row < endRow; ++row) {
                const uint8* from =
                    picture.pixels.data() + std::ptrdiff_t{picture.step} * row + std::ptrdiff_t{3} * first;
                for (int32 column = first; column < end; ++column, from += 3) {
                    for (int32 channel = 0; channel < 3; ++channel) sums[channel] += from[channel];
                }
            }
            const int64 count = int64{endRow - firstRow} * (end - first);
            for (int32 channel = 0; channel < 3; ++channel) {
                to[channel] = static_cast<uint8>((sums[channel] + count / 2) / count);
            }
        }
    }
    return small;
}

} // namespace orvane::tools
