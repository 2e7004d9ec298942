// Rotation of a region: quarter turns copy pixels; any other turn fills, row by row, the span of pixels
// that the turned region covers, and looks each of them up in the source. A part of a destination has the
// pixels that it would have in the whole: positions advance from the span's own first pixel.
#include "primitives/rotate.h"

#include "primitives/rotate_linear.h"
#include "primitives/rotation_map.h"
#include "primitives/row_kernels.h"

#include <algorithm>
#include <cmath>
#include <cstring>
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
    ImageRect part;      // of dstRoi, which alone is written; the status is that of dstRoi
    ImagePoint dstPixel; // that `dst` points to
    bool blanks;         // pixels of the part that nothing lands on become 0
    RotationMap map;
};

template <int32 Channels>
const uint8* SourcePixel(const RotateFrame& f, int32 x, int32 y) {
    return RowAt(f.src, f.srcStep, y) + static_cast<std::ptrdiff_t>(x) * Channels;
}

template <int32 Channels>
uint8* DestinationPixel(const RotateFrame& f, int32 x, int32 y) {
    return RowAt(f.dst, f.dstStep, y - f.dstPixel.y) + static_cast<std::ptrdiff_t>(x - f.dstPixel.x) * Channels;
}

/// Zeroes pixels `first` to before `end` of a row of the part, where that is asked for.
template <int32 Channels>
void Blank(const RotateFrame& f, int64 y, int64 first, int64 end) {
    if (!f.blanks || first >= end) return;
    std::memset(DestinationPixel<Channels>(f, static_cast<int32>(first), static_cast<int32>(y)), 0,
                static_cast<std::size_t>(end - first) * Channels);
}

/// All pixels of rows `first` to before `end`, as far as they are the part's.
template <int32 Channels>
void BlankRows(const RotateFrame& f, int64 first, int64 end) {
    end = std::min(end, int64{f.part.y} + f.part.height);
    for (int64 y = std::max<int64>(first, f.part.y); y < end; ++y) {
        Blank<Channels>(f, y, f.part.x, int64{f.part.x} + f.part.width);
    }
}

// --- quarter turns ---

bool IsWhole(double value) { return std::trunc(value) == value; }

/// The first and the last of the positions that a coefficient row sends a rectangle's corners to, cut to
/// a destination range.
struct Range {
    int64 first;
    int64 last;
};

Range CutRange(Range range, int32 origin, int32 length) {
    return {std::max<int64>(range.first, origin), std::min<int64>(range.last, int64{origin} + length - 1)};
}

Range RangeBetween(int64 a, int64 b) { return {std::min(a, b), std::max(a, b)}; }

/// Pixels of a destination, which a quarter turn fills.
struct TurnedBlock {
    Range columns, rows;

    bool IsEmpty() const { return columns.first > columns.last || rows.first > rows.last; }
};

/// Fills a block; of a row of pixels that lie side by side in the source, from the last to the first, whole vectors.
template <int32 Channels>
void FillExactly(const RotateFrame& f, const TurnedBlock& block) {
    const auto cosine = static_cast<int64>(f.map.cosine), sine = static_cast<int64>(f.map.sine);
    const auto xShift = static_cast<int64>(f.map.xShift), yShift = static_cast<int64>(f.map.yShift);
    const std::ptrdiff_t along = static_cast<std::ptrdiff_t>(cosine * Channels + sine * f.srcStep);
    const int64 count = block.columns.last - block.columns.first + 1;
    for (int64 y = block.rows.first; y <= block.rows.last; ++y) {
        const int64 x = block.columns.first;
        const auto u = static_cast<int32>(cosine * (x - xShift) - sine * (y - yShift));
        const auto v = static_cast<int32>(sine * (x - xShift) + cosine * (y - yShift));
        const uint8* from = SourcePixel<Channels>(f, u, v);
        uint8* to = DestinationPixel<Channels>(f, static_cast<int32>(x), static_cast<int32>(y));
        if (Channels == 3 && along == -3) {
            CurrentRowKernels().reverse(from, to, count);
            continue;
        }
        for (int64 i = 0; i < count; ++i, to += Channels) {
            for (int32 c = 0; c < Channels; ++c) to[c] = from[i * along + c];
        }
    }
}

/// Fills a block by columns of the source, tile by tile, so that what one column has beside the next stays in the
/// cache.
template <int32 Channels>
void Transpose(const RotateFrame& f, const TurnedBlock& block) {
    constexpr int64 kColumns = 64, kRows = 32;
    const RowKernels& kernels = CurrentRowKernels();
    const auto sine = static_cast<int64>(f.map.sine);
    const auto xShift = static_cast<int64>(f.map.xShift), yShift = static_cast<int64>(f.map.yShift);
    for (int64 left = block.columns.first; left <= block.columns.last; left += kColumns) {
        for (int64 top = block.rows.first; top <= block.rows.last; top += kRows) {
            const Transposition tile = {
                SourcePixel<Channels>(f, static_cast<int32>(-sine * (top - yShift)),
                                      static_cast<int32>(sine * (left - xShift))),
                static_cast<std::ptrdiff_t>(sine * f.srcStep),
                static_cast<std::ptrdiff_t>(-sine * Channels),
                static_cast<int32>(std::min(kColumns, block.columns.last - left + 1)),
                static_cast<int32>(std::min(kRows, block.rows.last - top + 1)),
                DestinationPixel<Channels>(f, static_cast<int32>(left), static_cast<int32>(top)),
                f.dstStep};
            (Channels == 3 ? kernels.transpose3 : kernels.transpose1)(tile);
        }
    }
}

/// Whole numbers lead to whole numbers, so every pixel of the destination is one of the source.
template <int32 Channels>
int32 RotateExactly(RotateFrame f) {
    constexpr double kFarthest = 1e12; // no 32-bit position gets there
    if (std::abs(f.map.xShift) > kFarthest || std::abs(f.map.yShift) > kFarthest) return kNoIntersection;
    const auto cosine = static_cast<int32>(f.map.cosine), sine = static_cast<int32>(f.map.sine);
    const auto xShift = static_cast<int64>(f.map.xShift), yShift = static_cast<int64>(f.map.yShift);
    const int64 x0 = f.srcRoi.x, x1 = x0 + f.srcRoi.width - 1;
    const int64 y0 = f.srcRoi.y, y1 = y0 + f.srcRoi.height - 1;
    const Range landedColumns = RangeBetween(cosine * x0 + sine * y0 + xShift, cosine * x1 + sine * y1 + xShift);
    const Range landedRows = RangeBetween(-sine * x0 + cosine * y0 + yShift, -sine * x1 + cosine * y1 + yShift);
    const Range seenColumns = CutRange(landedColumns, f.dstRoi.x, f.dstRoi.width);
    const Range seenRows = CutRange(landedRows, f.dstRoi.y, f.dstRoi.height);
    if (seenColumns.first > seenColumns.last || seenRows.first > seenRows.last) return kNoIntersection;
    const Range columns = CutRange(seenColumns, f.part.x, f.part.width);
    const Range rows = CutRange(seenRows, f.part.y, f.part.height);
    BlankRows<Channels>(f, f.part.y, int64{f.part.y} + f.part.height);

    TurnedBlock block{columns, rows};
    if (block.IsEmpty()) return kOk;
    if (sine == 0) {
        FillExactly<Channels>(f, block);
        return kOk;
    }
    // Pixels at the ends of the source's rows, of which vectors would read more than there is, have rows of their own.
    constexpr int64 kBehind = 2;
    const int64 whole = f.srcSize.width - 1 - kBehind; // the last pixel behind which as many can be read
    TurnedBlock ends = block;
    if (sine > 0) {
        block.rows.first = std::max(block.rows.first, yShift - whole);
        ends.rows.last = std::min(ends.rows.last, block.rows.first - 1);
    } else {
        block.rows.last = std::min(block.rows.last, yShift + whole);
        ends.rows.first = std::max(ends.rows.first, block.rows.last + 1);
    }
    if (!ends.IsEmpty()) FillExactly<Channels>(f, ends);
    if (!block.IsEmpty()) Transpose<Channels>(f, block);
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

template <int32 Channels>
void SampleNearest(const RotateFrame& f, SourcePosition& at, int64 count, uint8* to) {
    for (; count > 0; --count, to += Channels) {
        const uint8* from =
            SourcePixel<Channels>(f, NearestIndex(at.u, f.srcSize.width), NearestIndex(at.v, f.srcSize.height));
        for (int32 c = 0; c < Channels; ++c) to[c] = from[c];
        at.u += f.map.cosine;
        at.v += f.map.sine;
    }
}

template <int32 Channels>
void SampleLinear(const RotateFrame& f, SourcePosition& at, int64 count, uint8* to) {
    SampleLinearly<Channels>({f.src, f.srcSize, f.srcStep, {f.map.cosine, f.map.sine}}, at, count, to);
}

/// What is still to be written of a row: the pixels from `x` up to but excluding `end`.
struct RowRest {
    int32 y;
    int64 x, end;
    SourcePosition at; // of pixel `x`
};

/// What a span and the part share.
RowRest RestOfSpan(const RotateFrame& f, Span span, int32 y) {
    const int32 first = std::max(span.first, f.part.x);
    const int64 end = std::min(int64{span.last} + 1, int64{f.part.x} + f.part.width);
    const double fromX = span.first - f.map.xShift, fromY = y - f.map.yShift;
    SourcePosition at{f.map.cosine * fromX - f.map.sine * fromY, f.map.sine * fromX + f.map.cosine * fromY};
    for (int64 x = span.first; x < first && first < end; ++x) {
        at.u += f.map.cosine;
        at.v += f.map.sine;
    }
    return {y, first, end, at};
}

/// Some rows that are filled together, block by block: a row alone runs across so many source rows that the
/// next one would find none of them in the cache.
template <int32 Channels, auto SampleRow, bool Together>
class Band {
public:
    bool IsFull() const { return count_ == kRows; }
    void Add(const RowRest& row) { rows_[count_++] = row; }

    void Fill(const RotateFrame& f) {
        int64 left = std::numeric_limits<int64>::max(), right = 0;
        for (int32 i = 0; i < count_; ++i) {
            left = std::min(left, rows_[i].x);
            right = std::max(right, rows_[i].end);
        }
        for (; left < right; left += kColumns) {
            int32 i = 0;
            for (; Together && count_ - i >= kTurnedRows; i += kTurnedRows) {
                FillTogether(f, rows_ + i, left + kColumns);
            }
            for (; i < count_; ++i) FillBlock(f, rows_[i], left + kColumns);
        }
        count_ = 0;
    }

private:
    static constexpr int32 kRows = 32;
    static constexpr int64 kColumns = 1024;

    static void FillBlock(const RotateFrame& f, RowRest& row, int64 blockEnd) {
        const int64 count = std::min(row.end, blockEnd) - row.x;
        if (count <= 0) return;
        SampleRow(f, row.at, count, DestinationPixel<Channels>(f, static_cast<int32>(row.x), row.y));
        row.x += count;
    }

    /// Fills what kTurnedRows rows have in common of a block together, and the rest row by row.
    static void FillTogether(const RotateFrame& f, RowRest* rows, int64 blockEnd) {
        int64 first = 0, end = blockEnd;
        for (int32 i = 0; i < kTurnedRows; ++i) {
            first = std::max(first, rows[i].x);
            end = std::min(end, rows[i].end);
        }
        if (first < end) FillCommon(f, rows, first, end);
        for (int32 i = 0; i < kTurnedRows; ++i) FillBlock(f, rows[i], blockEnd);
    }

    static void FillCommon(const RotateFrame& f, RowRest* rows, int64 first, int64 end) {
        TurnedStart starts[kTurnedRows];
        for (int32 i = 0; i < kTurnedRows; ++i) {
            RowRest& row = rows[i];
            FillBlock(f, row, first);
            uint8* const to = DestinationPixel<Channels>(f, static_cast<int32>(first), row.y);
            starts[i] = {row.at.u, row.at.v, to, row.end - end};
        }
        SampleRowsLinearly<Channels>({f.src, f.srcSize, f.srcStep, {f.map.cosine, f.map.sine}}, starts, end - first);
        for (int32 i = 0; i < kTurnedRows; ++i) {
            rows[i].x = end;
            rows[i].at = {starts[i].u, starts[i].v};
        }
    }

    RowRest rows_[kRows];
    int32 count_ = 0;
};

template <int32 Channels, auto SampleRow, bool Together>
int32 RotateBySpans(RotateFrame f) {
    double quad[4][2];
    MapCorners(f.map, f.srcRoi, quad);
    const auto [top, bottom] = std::minmax({quad[0][1], quad[1][1], quad[2][1], quad[3][1]});
    const Span rows = WholeNumbers(top, bottom, f.dstRoi.y, f.dstRoi.height);
    bool landed = false;
    Band<Channels, SampleRow, Together> band;
    BlankRows<Channels>(f, f.part.y, rows.first);
    BlankRows<Channels>(f, std::max<int64>(f.part.y, int64{rows.last} + 1), int64{f.part.y} + f.part.height);
    for (int64 row = rows.first; row <= rows.last; ++row) {
        const auto y = static_cast<int32>(row);
        const bool written = y >= f.part.y && row < int64{f.part.y} + f.part.height;
        if (landed && !written) continue;
        const Span span = SpanOfRow(quad, y, f.dstRoi);
        if (span.first > span.last) {
            BlankRows<Channels>(f, y, row + 1);
            continue;
        }
        landed = true;
        if (!written) continue;
        const RowRest rest = RestOfSpan(f, span, y);
        const int64 partEnd = int64{f.part.x} + f.part.width, first = std::min(rest.x, partEnd);
        Blank<Channels>(f, y, f.part.x, first);
        Blank<Channels>(f, y, std::max(first, rest.end), partEnd);
        band.Add(rest);
        if (band.IsFull()) band.Fill(f);
    }
    band.Fill(f);
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
    if (interpolation == kNearest) return RotateBySpans<Channels, SampleNearest<Channels>, false>(f);
    return RotateBySpans<Channels, SampleLinear<Channels>, true>(f);
}

/// A frame that writes all of `dstRoi`, from the destination's first pixel on.
RotateFrame WholeFrame(const uint8* src, ImageSize srcSize, int32 srcStep, ImageRect srcRoi, uint8* dst, int32 dstStep,
                       ImageRect dstRoi) {
    return {src, srcSize, srcStep, srcRoi, dst, dstStep, dstRoi, dstRoi, {0, 0}, false, {}};
}

} // namespace

int32 primRotate_8u_C1(const uint8* src, ImageSize srcSize, int32 srcStep, ImageRect srcRoi, uint8* dst, int32 dstStep,
                       ImageRect dstRoi, double angle, double xShift, double yShift, int32 interpolation) {
    return Rotate<1>(WholeFrame(src, srcSize, srcStep, srcRoi, dst, dstStep, dstRoi), angle, xShift, yShift,
                     interpolation);
}

int32 primRotate_8u_C3(const uint8* src, ImageSize srcSize, int32 srcStep, ImageRect srcRoi, uint8* dst, int32 dstStep,
                       ImageRect dstRoi, double angle, double xShift, double yShift, int32 interpolation) {
    return Rotate<3>(WholeFrame(src, srcSize, srcStep, srcRoi, dst, dstStep, dstRoi), angle, xShift, yShift,
                     interpolation);
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

namespace orvane {

int32 RotatePart(int32 channels, const uint8* src, ImageSize srcSize, int32 srcStep, uint8* dst, int32 dstStep,
                 ImageSize whole, ImageRect part, double angle, double xShift, double yShift) {
    uint8 nowhere = 0; // to which no pixel goes
    if (!HasPixels({part.width, part.height})) {
        dst = &nowhere;
        dstStep = 1;
    }
    const generic::RotateFrame frame{src,
                                     srcSize,
                                     srcStep,
                                     {0, 0, srcSize.width, srcSize.height},
                                     dst,
                                     dstStep,
                                     {0, 0, whole.width, whole.height},
                                     part,
                                     {part.x, part.y},
                                     true,
                                     {}};
    const auto rotate = channels == 3 ? generic::Rotate<3> : generic::Rotate<1>;
    const int32 status = rotate(frame, angle, xShift, yShift, kLinear);
    const auto blankRows = channels == 3 ? generic::BlankRows<3> : generic::BlankRows<1>;
    if (status != kOk && dst != nullptr && dstStep > 0) blankRows(frame, part.y, int64{part.y} + part.height);
    return status;
}

} // namespace orvane
