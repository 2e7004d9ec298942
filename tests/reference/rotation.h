// The turning of a picture once more: quarter turns pixel by pixel; a free turn by the rotation primitive,
// which has a judge of its own, the inner rectangle by its rule, the cut pixel by pixel.
#pragma once

#include "image/image_buffer.h"
#include "primitives/rotate.h"
#include "tests/support/plane.h"

#include <algorithm>
#include <cmath>

namespace orvane::test::reference {

inline void TurnExactly(const ImageBuffer& source, ImageBuffer& result, int32 angle) {
    const int32 middleX = (source.width + 1) / 2, middleY = (source.height + 1) / 2;
    if (angle == 180) {
        result.CopyFrom(source);
    } else {
        result.Create(source.height, source.width, source.channels, kDepth8u, 0);
    }
    for (int32 y = 0; y < source.height; ++y) {
        for (int32 x = 0; x < source.width; ++x) {
            const int32 toX = angle == 90 ? y : angle == 180 ? 2 * middleX - x : 2 * middleY - y;
            const int32 toY = angle == 90 ? 2 * middleX - x : angle == 180 ? 2 * middleY - y : x;
            if (toX >= result.width || toY >= result.height) continue;
            for (int32 c = 0; c < source.channels; ++c) {
                RowAt(result.data, result.Step(), toY)[toX * source.channels + c] =
                    RowAt(source.data, source.Step(), y)[x * source.channels + c];
            }
        }
    }
}

/// What the steps of a free turn lead to: the canvas, and the rectangle cut from it.
struct FreeTurn {
    double xShift, yShift;
    ImageSize canvas;
    int32 left, top, right, bottom;
};

inline FreeTurn PlanTurn(ImageSize size, int32 angle) {
    FreeTurn t{};
    const int32 centreX = static_cast<int32>((size.width + 1) * 0.5);
    const int32 centreY = static_cast<int32>((size.height + 1) * 0.5);
    const ImageRect whole{0, 0, size.width, size.height};
    generic::primGetRotateShift(centreX, centreY, angle, &t.xShift, &t.yShift);
    double bound[2][2], quad[4][2];
    generic::primGetRotateBound(whole, bound, angle, t.xShift, t.yShift);
    t.canvas.width = static_cast<int32>(std::abs(bound[0][0]) + std::abs(bound[1][0]) + 0.5);
    t.canvas.height = static_cast<int32>(std::abs(bound[0][1]) + std::abs(bound[1][1]) + 0.5);
    t.xShift += static_cast<int32>((t.canvas.width + 1) * 0.5) - centreX;
    t.yShift += static_cast<int32>((t.canvas.height + 1) * 0.5) - centreY;
    generic::primGetRotateQuad(whole, quad, angle, t.xShift, t.yShift);

    double xMin = quad[0][0], yMin = quad[0][1], xMax = xMin, yMax = yMin;
    const auto smallest = [&quad](int32 axis) {
        return std::min(std::min(quad[0][axis], quad[1][axis]), std::min(quad[2][axis], quad[3][axis]));
    };
    const auto largest = [&quad](int32 axis) {
        return std::max(std::max(quad[0][axis], quad[1][axis]), std::max(quad[2][axis], quad[3][axis]));
    };
    xMin = std::trunc(smallest(0));
    yMin = std::trunc(smallest(1));
    xMax = std::trunc(largest(0));
    yMax = std::trunc(largest(1));
    for (auto& corner : quad) {
        if (std::trunc(corner[0]) == xMin) corner[0] = xMax;
        if (std::trunc(corner[1]) == yMin) corner[1] = yMax;
    }
    t.left = static_cast<int32>(smallest(0));
    t.top = static_cast<int32>(smallest(1));
    for (auto& corner : quad) {
        if (std::trunc(corner[0]) == xMax) corner[0] = xMin;
        if (std::trunc(corner[1]) == yMax) corner[1] = yMin;
    }
    t.right = static_cast<int32>(largest(0));
    t.bottom = static_cast<int32>(largest(1));
    return t;
}

inline void TurnFreely(const ImageBuffer& source, ImageBuffer& result, int32 angle) {
    const FreeTurn t = PlanTurn(source.Size(), angle);
    const int32 width = std::abs(t.right - t.left), height = std::abs(t.bottom - t.top);
    result.Create(width, height, source.channels, kDepth8u, 0);
    if (result.data == nullptr || t.canvas.width < 1 || t.canvas.height < 1) return;
    Plane<uint8> canvas(t.canvas.width * source.channels, t.canvas.height, 0, 0, 0);
    canvas.FillRegion(0);
    const auto rotate = source.channels == 3 ? generic::primRotate_8u_C3 : generic::primRotate_8u_C1;
    rotate(source.data, source.Size(), source.Step(), {0, 0, source.width, source.height}, canvas.Data(), canvas.Step(),
           {0, 0, t.canvas.width, t.canvas.height}, angle, t.xShift, t.yShift, kLinear);
    for (int32 y = 0; y < height; ++y) {
        for (int32 x = 0; x < width; ++x) {
            const int32 fromX = t.left + x, fromY = t.top + y;
            const bool beyond = fromX < 0 || fromY < 0 || fromX >= t.canvas.width || fromY >= t.canvas.height;
            for (int32 c = 0; c < source.channels; ++c) {
                RowAt(result.data, result.Step(), y)[x * source.channels + c] =
                    beyond ? uint8{0} : canvas.At(fromX * source.channels + c, fromY);
            }
        }
    }
}

inline void TurnPicture(const ImageBuffer& source, ImageBuffer& result, int32 angle) {
    if (angle == 0) {
        result.CopyFrom(source);
    } else if (angle == 90 || angle == 180 || angle == 270) {
        TurnExactly(source, result, angle);
    } else {
        TurnFreely(source, result, angle);
    }
}

} // namespace orvane::test::reference
