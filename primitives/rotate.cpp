// Rotation of a region: quarter turns copy pixels; any other turn fills, row by row, the span of pixels
// that the turned region covers, and looks each of them up in the source.
#include "primitives/rotate.h"

#include "primitives/rotation_map.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace orvane::generic {
namespace {

struct RotateFrame {
    const uint8* src;
    ImageSize srcSize;
    int32 srcStep;
    ImageRect srcRoi; // clipped to the source
    uint8* dst;
    int32 dstStep;
    ImageRect dstRoi;
    RotationMap map;
};

template <int32 Channels>
const uint8* SourcePixel(const RotateFrame& f, int32 x, int32 y) {
    return RowAt(f.src, f.srcStep, y) + static_cast<std::ptrdiff_t>(x) * Channels;
}

template <int32 Channels>
uint8* DestinationPixel(const RotateFrame& f, int32 x, int32 y) {
    return RowAt(f.dst, f.dstStep, y) + static_cast<std::ptrdiff_t>(x) * Channels;
}

// --- quarter turns ---

bool IsWhole(double value) { return std::trunc(value) == value; }

/// The first and the last of the positions that a coefficient row sends a rectangle's corners to, cut to
/// a destination range.
struct Range {
    int64 first;
    int64 last;
};

Range CutRange(int64 a, int64 b, int32 origin, int32 length) {
    return {std::max<int64>(std::min(a, b), origin), std::min<int64>(std::max(a, b), int64{origin} + length - 1)};
}

/// Copies the region by transposition or reversal. Destination columns are taken in blocks, so that the
/// source rows that a block runs along stay in the cache.
template <int32 Channels>
int32 RotateExactly(RotateFrame f) {
    constexpr double kFarthest = 1e12; // no 32-bit position gets there
    if (std::abs(f.map.xShift) > kFarthest || std::abs(f.map.yShift) > kFarthest) return kNoIntersection;
    const auto cosine = static_cast<int32>(f.map.cosine), sine = static_cast<int32>(f.map.sine);
    const auto xShift = static_cast<int64>(f.map.xShift), yShift = static_cast<int64>(f.map.yShift);
    const int64 x0 = f.srcRoi.x, x1 = x0 + f.srcRoi.width - 1;
    const int64 y0 = f.srcRoi.y, y1 = y0 + f.srcRoi.height - 1;
    const Range columns =
        CutRange(cosine * x0 + sine * y0 + xShift, cosine * x1 + sine * y1 + xShift, f.dstRoi.x, f.dstRoi.width);
    const Range rows =
        CutRange(-sine * x0 + cosine * y0 + yShift, -sine * x1 + cosine * y1 + yShift, f.dstRoi.y, f.dstRoi.height);
    if (columns.first > columns.last || rows.first > rows.last) return kNoIntersection;

    constexpr int64 kBlock = 64;
    const std::ptrdiff_t along = std::ptrdiff_t{cosine} * Channels + std::ptrdiff_t{sine} * f.srcStep;
    for (int64 left = columns.first; left <= columns.last; left += kBlock) {
        const int64 right = std::min(left + kBlock - 1, columns.last);
        for (int64 y = rows.first; y <= rows.last; ++y) {
            const auto u = static_cast<int32>(cosine * (left - xShift) - sine * (y - yShift));
            const auto v = static_cast<int32>(sine * (left - xShift) + cosine * (y - yShift));
            const uint8* from = SourcePixel<Channels>(f, u, v);
            uint8* to = DestinationPixel<Channels>(f, static_cast<int32>(left), static_cast<int32>(y));
            for (int64 i = 0; i <= right - left; ++i, to += Channels) {
                for (int32 c = 0; c < Channels; ++c) to[c] = from[i * along + c];
            }
        }
    }
    return kOk;
}

// --- any other turn ---

/// Pixels `first` to `last` of a destination row; none when `last` is below `first`.
struct Span {
    int32 first;
    int32 last;
};

/// The whole numbers from `low` to `high`, cut to a destination range. None where a bound is no number.
Span WholeNumbers(double low, double high, int32 origin, int32 length) {
    const double first = std::max(std::ceil(low), static_cast<double>(origin));
    const double last = std::min(std::floor(high), static_cast<double>(int64{origin} + length - 1));
    if (!(first <= last)) return {0, -1};
    return {static_cast<int32>(first), static_cast<int32>(last)};
}

/// Where the quad's outline crosses row `y`: from the leftmost to the rightmost point.
Span SpanOfRow(const double quad[4][2], int32 y, ImageRect dstRoi) {
    double left = std::numeric_limits<double>::infinity(), right = -left;
    const auto touch = [&](double x) {
        left = std::min(left, x);
        right = std::max(right, x);
    };
    for (int32 i = 0; i < 4; ++i) {
        const double* a = quad[i];
        const double* b = quad[(i + 1) % 4];
        if (a[1] == y) touch(a[0]); // corners as they are, so that straight outlines stay exact
        if ((a[1] < y && y < b[1]) || (b[1] < y && y < a[1])) {
            touch(a[0] + (b[0] - a[0]) * ((y - a[1]) / (b[1] - a[1])));
        }
    }
    return WholeNumbers(left, right, dstRoi.x, dstRoi.width);
}

/// The pixel at position `p` along an axis of `length` pixels, rounded half up. Rounding errors of the
/// map may lead to positions just outside; those of very large shifts also further.
int32 NearestIndex(double p, int32 length) {
    const double raised = p + 0.5;
    if (!(raised > 0.0)) return 0;
    return raised < length ? static_cast<int32>(raised) : length - 1;
}

/// A pair of neighbours along an axis, and the way from the first to the second.
struct Between {
    int32 index;
    double fraction;
};

Between LinearPosition(double p, int32 length) {
    constexpr double kNudge = 0.0000001;
    if (!(p > -0.000001)) return {0, 0.0}; // farther out than rounding leads on any real picture
    if (p + kNudge >= length - 1) return {length - 2, 1.0};
    const auto index = static_cast<int32>(p + kNudge);
    return {index, p - index};
}

template <int32 Channels>
void SampleNearest(const RotateFrame& f, double u, double v, uint8* to) {
    const uint8* from = SourcePixel<Channels>(f, NearestIndex(u, f.srcSize.width), NearestIndex(v, f.srcSize.height));
    for (int32 c = 0; c < Channels; ++c) to[c] = from[c];
}

template <int32 Channels>
void SampleLinear(const RotateFrame& f, double u, double v, uint8* to) {
    const Between x = LinearPosition(u, f.srcSize.width), y = LinearPosition(v, f.srcSize.height);
    const uint8* p0 = SourcePixel<Channels>(f, x.index, y.index);
    const uint8* p1 = p0 + f.srcStep;
    for (int32 c = 0; c < Channels; ++c) {
        const double top = p0[c] + (p0[c + Channels] - p0[c]) * x.fraction;
        const double bottom = p1[c] + (p1[c + Channels] - p1[c]) * x.fraction;
        // Fractions lie within 1e-6 of 0 to 1, so this stays above 0 and below 256.
        to[c] = static_cast<uint8>(0.5 + top + (bottom - top) * y.fraction);
    }
}

template <int32 Channels, auto Sample>
int32 RotateBySpans(RotateFrame f) {
    double quad[4][2];
    MapCorners(f.map, f.srcRoi, quad);
    const auto [top, bottom] = std::minmax({quad[0][1], quad[1][1], quad[2][1], quad[3][1]});
    const Span rows = WholeNumbers(top, bottom, f.dstRoi.y, f.dstRoi.height);
    bool landed = false;
    for (int64 row = rows.first; row <= rows.last; ++row) {
        const auto y = static_cast<int32>(row);
        const Span span = SpanOfRow(quad, y, f.dstRoi);
        if (span.first > span.last) continue;
        landed = true;
        const double fromX = span.first - f.map.xShift, fromY = y - f.map.yShift;
        double u = f.map.cosine * fromX - f.map.sine * fromY;
        double v = f.map.sine * fromX + f.map.cosine * fromY;
        uint8* to = DestinationPixel<Channels>(f, span.first, y);
        for (int64 x = span.first; x <= span.last; ++x, to += Channels) {
            Sample(f, u, v, to);
            u += f.map.cosine;
            v += f.map.sine;
        }
    }
    return landed ? kOk : kEmptyResult;
}

// --- the entries ---

bool IsUsable(ImageRect rect) { return rect.x >= 0 && rect.y >= 0 && rect.width >= 1 && rect.height >= 1; }

int32 CheckFrame(const RotateFrame& f, int32 interpolation) {
    if (f.src == nullptr || f.dst == nullptr) return kNullPointer;
    if (!HasPixels(f.srcSize) || !IsUsable(f.srcRoi) || !IsUsable(f.dstRoi)) return kBadSize;
    if (f.srcStep < 1 || f.dstStep < 1) return kStepTooSmall;
    if (interpolation != kNearest && interpolation != kLinear && interpolation != kCubic) return kBadInterpolation;
    if (f.srcRoi.x >= f.srcSize.width || f.srcRoi.y >= f.srcSize.height) return kNoIntersection;
    return kOk;
}

/// True when the map has no inverse to speak of; of rotations only that of an angle which is no number.
bool IsDegenerate(const RotationMap& map) {
    const double m = map.cosine * map.cosine;
    const double n = map.sine * map.sine;
    const double measure = std::abs(m) < 1e-200 ? n : (m + n) / m;
    return !(std::abs(measure) >= 1e-12);
}

template <int32 Channels>
int32 Rotate(RotateFrame f, double angle, double xShift, double yShift, int32 interpolation) {
    const int32 status = CheckFrame(f, interpolation);
    if (status != kOk) return status;
    f.srcRoi.width = std::min(f.srcRoi.width, f.srcSize.width - f.srcRoi.x);
    f.srcRoi.height = std::min(f.srcRoi.height, f.srcSize.height - f.srcRoi.y);

    const double reduced = ReducedAngle(angle);
    f.map = MakeRotationMap(reduced, xShift, yShift);
    if (IsExactTurn(reduced) && IsWhole(xShift) && IsWhole(yShift)) return RotateExactly<Channels>(f);
    if (IsDegenerate(f.map)) return kDegenerateTransform;
    if (f.srcRoi.width < 2 || f.srcRoi.height < 2) return kSourceTooSmall;
    if (interpolation == kNearest) return RotateBySpans<Channels, SampleNearest<Channels>>(f);
    return RotateBySpans<Channels, SampleLinear<Channels>>(f);
}

} // namespace

int32 primRotate_8u_C1(const uint8* src, ImageSize srcSize, int32 srcStep, ImageRect srcRoi, uint8* dst, int32 dstStep,
                       ImageRect dstRoi, double angle, double xShift, double yShift, int32 interpolation) {
    return Rotate<1>({src, srcSize, srcStep, srcRoi, dst, dstStep, dstRoi, {}}, angle, xShift, yShift, interpolation);
}

int32 primRotate_8u_C3(const uint8* src, ImageSize srcSize, int32 srcStep, ImageRect srcRoi, uint8* dst, int32 dstStep,
                       ImageRect dstRoi, double angle, double xShift, double yShift, int32 interpolation) {
    return Rotate<3>({src, srcSize, srcStep, srcRoi, dst, dstStep, dstRoi, {}}, angle, xShift, yShift, interpolation);
}

int32 primRotateCenter_8u_C1(const uint8* src, ImageSize srcSize, int32 srcStep, ImageRect srcRoi, uint8* dst,
                             int32 dstStep, ImageRect dstRoi, double angle, double xCenter, double yCenter,
                             int32 interpolation) {
    double xShift, yShift;
    primGetRotateShift(xCenter, yCenter, angle, &xShift, &yShift);
    return primRotate_8u_C1(src, srcSize, srcStep, srcRoi, dst, dstStep, dstRoi, angle, xShift, yShift, interpolation);
}

int32 primRotateCenter_8u_C3(const uint8* src, ImageSize srcSize, int32 srcStep, ImageRect srcRoi, uint8* dst,
                             int32 dstStep, ImageRect dstRoi, double angle, double xCenter, double yCenter,
                             int32 interpolation) {
    double xShift, yShift;
    primGetRotateShift(xCenter, yCenter, angle, &xShift, &yShift);
    return primRotate_8u_C3(src, srcSize, srcStep, srcRoi, dst, dstStep, dstRoi, angle, xShift, yShift, interpolation);
}

} // namespace orvane::generic
