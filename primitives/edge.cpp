// The Canny edge detector, in bits where it can be. Else its map has a cell more than the region on every side, so that
// a pixel's neighbours need no test: 0 no edge, 128 a candidate, 255 an edge.
#include "primitives/edge.h"

#include "primitives/edge_bits.h"
#include "primitives/heap_array.h"
#include "primitives/row_kernels.h"

#include <algorithm>
#include <bit>
#include <cstdlib>
#include <cstring>
#include <limits>

namespace orvane::generic {
namespace {

constexpr uint8 kCandidate = 128;
constexpr uint8 kEdge = 255;

struct Gradients {
    const int16* dx;
    int32 dxStep;
    const int16* dy;
    int32 dyStep;
    ImageSize roi;
    int32 low;
    int32 high;
};

/// A threshold for whole magnitudes: what is above the threshold is above its whole part.
int32 WholeThreshold(float threshold) {
    constexpr float kLargestMagnitude = 65536.0f; // |-32768| + |-32768|
    return static_cast<int32>(std::min(threshold, kLargestMagnitude));
}

// The loops below run over whole rows without a branch: no prediction could follow a picture's noise,
// and the compiler makes vector code of them.

/// Magnitudes of a row, 0 where at or below the low threshold.
void FillMagnitudes(const int16* __restrict dx, const int16* __restrict dy, int32 width, int32 low,
                    int32* __restrict magnitude) {
    for (int32 x = 0; x < width; ++x) {
        const int32 m = std::abs(int32{dx[x]}) + std::abs(int32{dy[x]});
        magnitude[x] = m > low ? m : 0;
    }
}

/// Direction of a gradient, by eighths of a turn.
enum Direction : int32 {
    kAlongX,
    kAlongY,
    kRising,  // dx and dy have different signs
    kFalling, // dx and dy have the same sign
};

void FillDirections(const int16* __restrict dx, const int16* __restrict dy, int32 width, int32* __restrict direction) {
    for (int32 x = 0; x < width; ++x) {
        const int32 a = std::abs(int32{dx[x]});
        const int32 b = std::abs(int32{dy[x]});
        const int32 diagonal = (dx[x] ^ dy[x]) < 0 ? kRising : kFalling;
        const int32 flat = b < 0.41421356237309503 * a ? kAlongX : diagonal;
        direction[x] = b > 2.414213562373095 * a ? kAlongY : flat;
    }
}

/// Marks the pixels that are the largest along their gradients. Of an axial plateau the first pixel
/// stays, of a diagonal one none.
void MarkRidges(const int32* __restrict above, const int32* __restrict here, const int32* __restrict below,
                const int32* __restrict direction, int32 width, int32 high, uint8* __restrict mark) {
    for (int32 x = 0; x < width; ++x) {
        const int32 m = here[x];
        // Every neighbour is read, wanted or not; each row has a cell more at both ends.
        const int32 left = here[x - 1], right = here[x + 1];
        const int32 aboveLeft = above[x - 1], straightAbove = above[x], aboveRight = above[x + 1];
        const int32 belowLeft = below[x - 1], straightBelow = below[x], belowRight = below[x + 1];
        const int32 d = direction[x];
        const int32 first = d == kAlongX ? left : d == kAlongY ? straightAbove : d == kRising ? aboveRight : aboveLeft;
        const int32 second = d == kAlongX   ? right
                             : d == kAlongY ? straightBelow
                             : d == kRising ? belowLeft
                                            : belowRight;
        const int32 mayTie = d < kRising ? 1 : 0;
        int32 value = m > high ? kEdge : kCandidate;
        value = m > first ? value : 0;
        value = m > second - mayTie ? value : 0;
        mark[x] = static_cast<uint8>(value);
    }
}

/// The working data inside one block: the stack of map cells still to visit, the rows, the map. A cell is stacked once
/// at most. `Cell` is wide enough to number all cells of the map.
template <typename Cell>
class EdgeTracer {
public:
    /// More than any memory holds where the product leaves 64 bits.
    static int64 BytesFor(ImageSize roi) {
        constexpr int64 kMost = std::numeric_limits<int64>::max();
        constexpr int64 kCellBytes = sizeof(Cell) + 1;
        const int64 rest = kSlack + kRows * int64{sizeof(int32)} * Stride(roi);
        const int64 cells = CellCount(roi);
        return cells > (kMost - rest) / kCellBytes ? kMost : cells * kCellBytes + rest;
    }

    EdgeTracer(ImageSize roi, uint8* block) : stride_(static_cast<std::ptrdiff_t>(Stride(roi))) {
        const auto cells = static_cast<std::size_t>(CellCount(roi));
        block += (kSlack - reinterpret_cast<std::uintptr_t>(block) % kSlack) % kSlack;
        stack_ = top_ = reinterpret_cast<Cell*>(block);
        rows_ = reinterpret_cast<int32*>(block + cells * sizeof(Cell));
        map_ = reinterpret_cast<uint8*>(rows_ + kRows * stride_);
        std::fill_n(rows_, kRows * stride_, 0);
        std::memset(map_, 0, cells);
    }

    void Mark(const Gradients& g) {
        int32* above = rows_ + 1;
        int32* here = above + stride_;
        int32* below = here + stride_;
        int32* const direction = below + stride_;
        FillMagnitudes(g.dx, g.dy, g.roi.width, g.low, here);
        for (int32 y = 0; y < g.roi.height; ++y) {
            if (y + 1 < g.roi.height) {
                FillMagnitudes(RowAt(g.dx, g.dxStep, y + 1), RowAt(g.dy, g.dyStep, y + 1), g.roi.width, g.low, below);
            } else {
                std::fill_n(below, g.roi.width, 0);
            }
            FillDirections(RowAt(g.dx, g.dxStep, y), RowAt(g.dy, g.dyStep, y), g.roi.width, direction);
            MarkRidges(above, here, below, direction, g.roi.width, g.high, MapRow(y));
            PushEdges(MapRow(y), g.roi.width);
            int32* const oldest = above;
            above = here;
            here = below;
            below = oldest;
        }
    }

    void Follow() {
        while (top_ != stack_) {
            uint8* cell = map_ + *--top_;
            uint8* const above = cell - stride_ - 1;
            uint8* const below = cell + stride_ - 1;
            uint64 outer = Candidates(MarksAt(above) | MarksAt(below) << 32);
            uint64 beside = Candidates(MarksAt(cell - 1));
            if ((outer | beside) == 0) continue;
            for (; outer != 0; outer &= outer - 1) {
                const int32 byte = std::countr_zero(outer) / 8;
                Push(byte < 4 ? above + byte : below + (byte - 4));
            }
            for (; beside != 0; beside &= beside - 1) Push(cell - 1 + std::countr_zero(beside) / 8);
        }
    }

    void Write(uint8* dst, int32 dstStep, ImageSize roi) const {
        for (int32 y = 0; y < roi.height; ++y) {
            CurrentRowKernels().keepEdges(MapRow(y), RowAt(dst, dstStep, y), roi.width);
        }
    }

private:
    static constexpr int32 kRows = 4;           // three of magnitudes, one of directions
    static constexpr std::uintptr_t kSlack = 8; // to the boundary of a cell number

    static int64 Stride(ImageSize roi) { return int64{roi.width} + 2; }
    static int64 CellCount(ImageSize roi) { return Stride(roi) * (int64{roi.height} + 2); }

    uint8* MapRow(int32 y) const { return map_ + stride_ * (std::ptrdiff_t{y} + 1) + 1; }

    /// Four neighbouring cells, of which three are looked at: behind the map is always room for one more.
    static uint64 MarksAt(const uint8* cells) {
        uint32 marks = 0;
        std::memcpy(&marks, cells, sizeof marks);
        return marks;
    }

    /// The top bit of each candidate, whose mark has it alone.
    static uint64 Candidates(uint64 marks) { return marks & ~(marks << 7) & 0x0080808000808080; }

    /// The slot above the top is always there to be written: the map has more cells than pixels.
    void PushEdges(const uint8* mark, int32 width) {
        const auto cell = static_cast<Cell>(mark - map_);
        const auto push = [&](int32 x) {
            *top_ = cell + static_cast<Cell>(x);
            top_ += mark[x] == kEdge ? 1 : 0;
        };
        int32 x = 0;
        for (; width - x >= 8; x += 8) {
            uint64 marks;
            std::memcpy(&marks, mark + x, sizeof marks);
            marks &= 0x0101010101010101; // only an edge's mark is odd
            for (; marks != 0; marks &= marks - 1) push(x + std::countr_zero(marks) / 8);
        }
        for (; x < width; ++x) push(x);
    }

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

/// The same in bits, 64 pixels at a time, inside one block: ridges and edges, a byte a row, and three rows of
/// magnitudes of 16 bits, which are enough for all but the steepest gradients.
class BitTracer {
public:
    static int64 BytesFor(ImageSize roi) {
        return kSlack + (int64{16} * WordsOf(roi.width) + 1) * roi.height + 3 * int64{sizeof(int16)} * Stride(roi);
    }

    BitTracer(ImageSize roi, uint8* block) : words_(WordsOf(roi.width)), stride_(Stride(roi)) {
        const std::ptrdiff_t cells = std::ptrdiff_t{words_} * roi.height;
        block += (kSlack - reinterpret_cast<std::uintptr_t>(block) % kSlack) % kSlack;
        ridges_ = reinterpret_cast<uint64*>(block);
        edges_ = ridges_ + cells;
        rows_ = reinterpret_cast<int16*>(edges_ + cells);
        marks_ = reinterpret_cast<uint8*>(rows_ + 3 * stride_);
        std::fill_n(rows_, 3 * stride_, int16{0});
    }

    /// False for gradients that are too steep. How steep those of a row are goes with its magnitudes.
    bool Mark(const Gradients& g) {
        const RowKernels& kernels = CurrentRowKernels();
        constexpr int32 kMost = std::numeric_limits<int16>::max();
        const int32 low = std::min(g.low, kMost), high = std::min(g.high, kMost);
        int16* above = rows_ + 1;
        int16* here = above + stride_;
        int16* below = here + stride_;
        int32 steepness = FindMagnitudes(g, 0, low, here);
        if (steepness > kSteepest) return false;
        for (int32 y = 0; y < g.roi.height; ++y) {
            const bool isGentle = steepness <= kMostGentle;
            if (y + 1 == g.roi.height) {
                std::fill_n(below, g.roi.width, int16{0});
            } else {
                steepness = FindMagnitudes(g, y + 1, low, below);
                if (steepness > kSteepest) return false;
            }
            const std::ptrdiff_t row = std::ptrdiff_t{y} * words_;
            kernels.ridgeBits({RowAt(g.dx, g.dxStep, y), RowAt(g.dy, g.dyStep, y), above, here, below, isGentle},
                              g.roi.width, high, ridges_ + row, edges_ + row);
            int16* const oldest = above;
            above = here;
            here = below;
            below = oldest;
        }
        return true;
    }

    void Follow(int32 height) { FollowRidges(ridges_, edges_, words_, height, marks_); }

    void Write(uint8* dst, int32 dstStep, ImageSize roi) const {
        for (int32 y = 0; y < roi.height; ++y)
            CurrentRowKernels().spreadBits(edges_ + std::ptrdiff_t{y} * words_, RowAt(dst, dstStep, y), roi.width);
    }

private:
    static constexpr std::uintptr_t kSlack = 8; // to the boundary of a word
    static constexpr int32 kSteepest = 16383;   // a component of which 16 bits hold a magnitude

    /// A row goes on for all of its words and has one more at both ends.
    static std::ptrdiff_t Stride(ImageSize roi) { return std::ptrdiff_t{64} * WordsOf(roi.width) + 2; }

    /// The bits of all components' magnitudes; above kSteepest, the row's magnitudes are not to be used.
    static int32 FindMagnitudes(const Gradients& g, int32 y, int32 low, int16* to) {
        const RowKernels& kernels = CurrentRowKernels();
        const int16 *dx = RowAt(g.dx, g.dxStep, y), *dy = RowAt(g.dy, g.dyStep, y);
        return kernels.magnitudes(dx, dy, g.roi.width, low, to);
    }

    int32 words_;
    std::ptrdiff_t stride_;
    uint64* ridges_;
    uint64* edges_;
    int16* rows_;
    uint8* marks_;
};

/// Takes the way of bits where the given buffer holds them, which it does unless the region is small or one pixel wide.
bool DetectInBits(const Gradients& g, uint8* dst, int32 dstStep, uint8* buffer) {
    int32 given;
    primCannyGetBufferSize(g.roi, &given);
    // At its limit the size is not that of the buffer.
    if (given == std::numeric_limits<int32>::max() || BitTracer::BytesFor(g.roi) > given) return false;
    BitTracer tracer(g.roi, buffer);
    if (!tracer.Mark(g)) return false;
    tracer.Follow(g.roi.height);
    tracer.Write(dst, dstStep, g.roi);
    return true;
}

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

    const Gradients gradients = {
        dx, dxStep, dy, dyStep, roi, WholeThreshold(lowThreshold), WholeThreshold(highThreshold)};
    if (DetectInBits(gradients, dst, dstStep, buffer)) return kOk;
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
