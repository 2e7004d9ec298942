// Quarter turns move pixels; any other turn resamples onto a larger canvas, of which only the rectangle
// between the turned corners is ever made.
#include "actions/rotation.h"

#include "actions/action_settings.h"
#include "actions/assertion.h"
#include "image/result_codes.h"
#include "image/session_images.h"
#include "primitives/primitives.h"
#include "primitives/trunc.h"

#include <algorithm>
#include <cmath>

namespace orvane {
namespace {

constexpr double kLargestSide = kMaxImageSide + 1.0; // more than any image takes

int32 Middle(int32 length) { return TruncToInt32((length + 1.0) * 0.5); }

ImageRect WholeOf(const ImageBuffer& image) { return {0, 0, image.width, image.height}; }

void RotateExactly(const ImageBuffer& source, ImageBuffer& result, int32 angle) {
    // For quarter turns a centre on the diagonal puts the picture onto one of exchanged sides.
    const int32 centreX = Middle(angle == 270 ? source.height : source.width);
    const int32 centreY = Middle(angle == 90 ? source.width : source.height);
    if (angle == 180) {
        result.CopyFrom(source);
    } else {
        result.Create(source.height, source.width, source.channels, kDepth8u, 0);
    }
    const auto rotate = source.channels == 3 ? primRotateCenter_8u_C3 : primRotateCenter_8u_C1;
    ReportStatus(rotate(source.data, source.Size(), source.Step(), WholeOf(source), result.data, result.Step(),
                        WholeOf(result), angle, centreX, centreY, kNearest));
}

/// Tells of a source without storage, whose result has none either.
bool IsWithoutStorage(const ImageBuffer& source, ImageBuffer& result) {
    if (source.data != nullptr) return false;
    PrintAssertion(kNullPointer);
    result.Reset();
    return true;
}

/// The place of the turned picture on the canvas.
struct Placing {
    double xShift = 0.0;
    double yShift = 0.0;
    ImageSize canvas = {0, 0};
};

/// Both limits by their absolute values: a box that lies wholly to one side counts from the origin.
int32 CanvasSide(double smallest, double largest) {
    return TruncToInt32(std::min(std::abs(smallest) + std::abs(largest) + 0.5, kLargestSide));
}

/// Turned about its middle, in the middle of a canvas that holds it.
Placing PlaceOnCanvas(const ImageBuffer& source, int32 angle) {
    const ImagePoint centre{Middle(source.width), Middle(source.height)};
    Placing placing;
    ReportStatus(primGetRotateShift(centre.x, centre.y, angle, &placing.xShift, &placing.yShift));
    double bound[2][2] = {};
    ReportStatus(primGetRotateBound(WholeOf(source), bound, angle, placing.xShift, placing.yShift));
    placing.canvas = {CanvasSide(bound[0][0], bound[1][0]), CanvasSide(bound[0][1], bound[1][1])};
    placing.xShift += Middle(placing.canvas.width) - centre.x;
    placing.yShift += Middle(placing.canvas.height) - centre.y;
    return placing;
}

/// One axis of the inner rectangle.
struct InnerRange {
    int32 start;
    int32 length;
};

/// From the second smallest to the second largest of four coordinates: the smallest are overwritten by the
/// largest, then the largest by the smallest. Corners that truncate alike go together, so that small turns
/// of small pictures end with a start beyond the end.
InnerRange BetweenCorners(double (&p)[4]) {
    const int32 smallest = TruncToInt32(*std::min_element(p, p + 4));
    const int32 largest = TruncToInt32(*std::max_element(p, p + 4));
    const auto overwrite = [&p](int32 value, int32 by) {
        for (double& coordinate : p) {
            if (TruncToInt32(coordinate) == value) coordinate = by;
        }
    };
    overwrite(smallest, largest);
    const int32 start = TruncToInt32(*std::min_element(p, p + 4));
    overwrite(largest, smallest);
    const int32 end = TruncToInt32(*std::max_element(p, p + 4));
    return {start, std::abs(end - start)};
}

ImageRect InnerRectangle(const ImageBuffer& source, int32 angle, const Placing& placing) {
    double quad[4][2] = {};
    ReportStatus(primGetRotateQuad(WholeOf(source), quad, angle, placing.xShift, placing.yShift));
    double x[4], y[4];
    for (int32 i = 0; i < 4; ++i) {
        x[i] = quad[i][0];
        y[i] = quad[i][1];
    }
    const InnerRange columns = BetweenCorners(x), rows = BetweenCorners(y);
    return {columns.start, rows.start, columns.length, rows.length};
}

/// What the rectangle and the canvas share; without pixels where they do not meet.
ImageRect OnCanvas(ImageRect rect, ImageSize canvas) {
    const int32 x0 = std::max(rect.x, 0), x1 = std::min(rect.x + rect.width, canvas.width);
    const int32 y0 = std::max(rect.y, 0), y1 = std::min(rect.y + rect.height, canvas.height);
    if (x1 <= x0 || y1 <= y0) return {0, 0, 0, 0};
    return {x0, y0, x1 - x0, y1 - y0};
}

/// Turns what `inner` shows of the canvas into `result`, which has its size.
int32 TurnInto(const ImageBuffer& source, ImageBuffer& result, int32 angle, const Placing& placing, ImageRect inner) {
    const ImageRect part = OnCanvas(inner, placing.canvas);
    ImagePoint at{0, 0};
    if (HasPixels({part.width, part.height})) at = {part.x - inner.x, part.y - inner.y};
    uint8* to = nullptr;
    if (result.data != nullptr) {
        to = RowAt(result.data, result.Step(), at.y) + static_cast<std::ptrdiff_t>(at.x) * result.channels;
    }
    return RotatePart(source.channels, source.data, source.Size(), source.Step(), to, result.Step(), placing.canvas,
                      to != nullptr ? part : ImageRect{}, angle, placing.xShift, placing.yShift);
}

} // namespace

int32 ActionRotate(const ImageBuffer& source, ImageBuffer& destination, int32 angle) {
    if (source.data != nullptr) {
        g_rotationAngle = angle;
        RotateImage(source, destination, angle);
    }
    return g_workImage.data != nullptr ? kSuccess : kNoPicture;
}

void RotateImage(const ImageBuffer& source, ImageBuffer& result, int32 angle) {
    if (angle == 0) {
        result.CopyFrom(source);
    } else if (angle == 90 || angle == 180 || angle == 270) {
        if (!IsWithoutStorage(source, result)) RotateExactly(source, result, angle);
    } else {
        RotateFree(source, result, angle);
    }
}

void RotateFree(const ImageBuffer& source, ImageBuffer& result, int32 angle) {
    if (IsWithoutStorage(source, result)) return;
    const Placing placing = PlaceOnCanvas(source, angle);
    // A canvas that no image could be counts as one without memory: there is nothing to turn onto.
    const bool possible =
        IsImageSize(placing.canvas.width, placing.canvas.height) && (source.channels == 1 || source.channels == 3);
    if (!possible) ReportStatus(kNullPointer);
    const ImageRect inner = InnerRectangle(source, angle, placing);
    const ImageRect part = OnCanvas(inner, placing.canvas);
    if (possible && part.width == inner.width && part.height == inner.height) {
        result.Remake(inner.width, inner.height, source.channels, kDepth8u); // the turn writes every pixel
    } else {
        result.Create(inner.width, inner.height, source.channels, kDepth8u, 0);
    }
    if (possible) ReportStatus(TurnInto(source, result, angle, placing, inner));
    if (!possible || result.data == nullptr) ReportStatus(kNullPointer);
    // A black sheet must not pass for the picture.
    if (!possible && HasPixels(placing.canvas)) result.Release();
}

} // namespace orvane
