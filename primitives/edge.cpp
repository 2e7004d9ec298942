// The Canny edge detector. Its map has a cell more than the region on every side, so that a pixel's
// neighbours need no test: 0 no edge, 128 a candidate, 255 an edge.
#include "primitives/edge.h"

#include "primitives/heap_array.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <limits>

namespace orvane::generic {
namespace {

constexpr uint8 kCandidate = 128;
constexpr uint8 kEdge = 255;
constexpr int32 kLargestMagnitude = 65536; // |-32768| + |-32768|

struct Gradients {
    const int16* dx;
    int32 dxStep;
    const int16* dy;
    int32 dyStep;
    ImageSize roi;
    int32 low;
    float high;
};

/// Magnitudes of row `y`, 0 where at or below the low threshold and where the row is outside.
void MagnitudeRow(const Gradients& g, int32 y, int32* magnitude) {
    if (y >= g.roi.height) {
        std::fill_n(magnitude, g.roi.width, 0);
        return;
    }
    const int16* dx = RowAt(g.dx, g.dxStep, y);
    const int16* dy = RowAt(g.dy, g.dyStep, y);
    for (int32 x = 0; x < g.roi.width; ++x) {
        const int32 m = std::abs(int32{dx[x]}) + std::abs(int32{dy[x]});
        magnitude[x] = m > g.low ? m : 0;
    }
}

/// True when the pixel is the largest along its gradient. Of an axial plateau the first pixel stays,
/// of a diagonal one none.
bool IsRidge(int32 dx, int32 dy, const int32* above, const int32* here, const int32* below) {
    const int32 m = *here;
    const int32 a = std::abs(dx);
    const int32 b = std::abs(dy);
    if (b > 2.414213562373095 * a) return m > *above && m >= *below;
    if (b >= 0.41421356237309503 * a) {
        // Neither component is 0 here, so each has a sign.
        const int32 side = (dx < 0) != (dy < 0) ? 1 : -1;
        return m > above[side] && m > below[-side];
    }
    return m > here[-1] && m >= here[1];
}

/// The working data inside one block: the stack of map cells still to visit, three rows of magnitudes,
/// the map. A cell is stacked once at most. `Cell` is wide enough to number all cells of the map.
template <typename Cell>
class EdgeTracer {
public:
    /// More than any memory holds where the product leaves 64 bits.
    static int64 BytesFor(ImageSize roi) {
        constexpr int64 kMost = std::numeric_limits<int64>::max();
        constexpr int64 kCellBytes = sizeof(Cell) + 1;
        const int64 rest = kSlack + 3 * int64{sizeof(int32)} * Stride(roi);
        const int64 cells = CellCount(roi);
        return cells > (kMost - rest) / kCellBytes ? kMost : cells * kCellBytes + rest;
    }

    EdgeTracer(ImageSize roi, uint8* block) : stride_(static_cast<std::ptrdiff_t>(Stride(roi))) {
        const auto cells = static_cast<std::size_t>(CellCount(roi));
        block += (kSlack - reinterpret_cast<std::uintptr_t>(block) % kSlack) % kSlack;
        stack_ = top_ = reinterpret_cast<Cell*>(block);
        rows_ = reinterpret_cast<int32*>(block + cells * sizeof(Cell));
        map_ = reinterpret_cast<uint8*>(rows_ + 3 * stride_);
        std::fill_n(rows_, 3 * stride_, 0);
        std::memset(map_, 0, cells);
    }

    void Mark(const Gradients& g) {
        int32* above = rows_ + 1;
        int32* here = above + stride_;
        int32* below = here + stride_;
        MagnitudeRow(g, 0, here);
        for (int32 y = 0; y < g.roi.height; ++y) {
            MagnitudeRow(g, y + 1, below);
            const int16* dx = RowAt(g.dx, g.dxStep, y);
            const int16* dy = RowAt(g.dy, g.dyStep, y);
            uint8* mark = MapRow(y);
            for (int32 x = 0; x < g.roi.width; ++x) {
                if (here[x] == 0 || !IsRidge(dx[x], dy[x], above + x, here + x, below + x)) continue;
                mark[x] = kCandidate;
                if (static_cast<float>(here[x]) > g.high) Push(mark + x);
            }
            int32* const oldest = above;
            above = here;
            here = below;
            below = oldest;
        }
    }

    void Follow() {
        const std::ptrdiff_t around[8] = {-stride_ - 1, -stride_, -stride_ + 1, -1, 1,
                                          stride_ - 1,  stride_,  stride_ + 1};
        while (top_ != stack_) {
            uint8* cell = map_ + *--top_;
            for (const std::ptrdiff_t offset : around) {
                if (cell[offset] == kCandidate) Push(cell + offset);
            }
        }
    }

    void Write(uint8* dst, int32 dstStep, ImageSize roi) const {
        for (int32 y = 0; y < roi.height; ++y) {
            const uint8* mark = MapRow(y);
            uint8* out = RowAt(dst, dstStep, y);
            for (int32 x = 0; x < roi.width; ++x) out[x] = mark[x] == kEdge ? kEdge : 0;
        }
    }

private:
    static constexpr std::uintptr_t kSlack = 8; // to the boundary of a cell number

    static int64 Stride(ImageSize roi) { return int64{roi.width} + 2; }
    static int64 CellCount(ImageSize roi) { return Stride(roi) * (int64{roi.height} + 2); }

    uint8* MapRow(int32 y) const { return map_ + stride_ * (std::ptrdiff_t{y} + 1) + 1; }

    void Push(uint8* cell) {
        *cell = kEdge;
        *top_++ = static_cast<Cell>(cell - map_);
    }

    std::ptrdiff_t stride_;
    Cell* stack_;
    Cell* top_;
    int32* rows_;
    uint8* map_;
};

/// True where 32 bits number every cell; the size query draws the same line.
bool FitsShortCells(ImageSize roi) {
    constexpr int32 kLimit = 65535 - 2;
    return roi.width < kLimit && roi.height < kLimit;
}

template <typename Cell>
int32 Detect(const Gradients& g, uint8* dst, int32 dstStep, uint8* buffer) {
    int32 given;
    primCannyGetBufferSize(g.roi, &given);
    const int64 wanted = EdgeTracer<Cell>::BytesFor(g.roi);
    HeapArray<uint8> own;
    if (wanted > given) {
        if (!own.Allocate(wanted)) return kNoMemory;
        buffer = own.data();
    }
    EdgeTracer<Cell> tracer(g.roi, buffer);
    tracer.Mark(g);
    tracer.Follow();
    tracer.Write(dst, dstStep, g.roi);
    return kOk;
}

} // namespace

int32 primCanny_16s8u_C1(const int16* dx, int32 dxStep, const int16* dy, int32 dyStep, uint8* dst, int32 dstStep,
                         ImageSize roi, float lowThreshold, float highThreshold, uint8* buffer) {
    if (dx == nullptr || dy == nullptr || dst == nullptr || buffer == nullptr) return kNullPointer;
    if (!HasPixels(roi)) return kBadSize;
    const int64 gradientBytes = int64{2} * roi.width;
    if (dxStep < gradientBytes || dyStep < gradientBytes || dstStep < roi.width) return kStepTooSmall;
    if (dxStep % 2 != 0 || dyStep % 2 != 0) return kStepNotMultiple;
    if (!(lowThreshold >= 0.0f) || !(highThreshold >= lowThreshold)) return kBadArgument;

    const auto low = static_cast<int32>(std::min(lowThreshold, static_cast<float>(kLargestMagnitude)));
    const Gradients gradients = {dx, dxStep, dy, dyStep, roi, low, highThreshold};
    return FitsShortCells(roi) ? Detect<uint32>(gradients, dst, dstStep, buffer)
                               : Detect<uint64>(gradients, dst, dstStep, buffer);
}

int32 primCannyGetBufferSize(ImageSize roi, int32* size) {
    if (size == nullptr) return kNullPointer;
    if (!HasPixels(roi)) return kBadSize;
    constexpr int64 kMost = std::numeric_limits<int32>::max();
    const int64 width = roi.width;
    const int64 height = roi.height;
    const int64 base = (4 * width + 24) * 4 + 64;
    int64 bytes = kMost;
    if (FitsShortCells(roi)) {
        bytes = (5 * height + 10) * (width + 2) + base;
    } else if (width * height < kMost) { // 9 times a larger product could leave 64 bits
        bytes = 9 * (height + 2) * width + 18 * (height + 2) + base;
    }
    *size = static_cast<int32>(std::min(bytes, kMost));
    return kOk;
}

} // namespace orvane::generic
