// The inner loops of the primitives over the pixels of a row, each in a form for every instruction set that it pays
// for. All forms have the same results to the bit. Rows may lie at any address; nothing beside them is touched.
#pragma once

#include "primitives/types.h"

namespace orvane {

/// What is above `most` becomes `aboveMost`, else what is below `least` becomes `belowLeast`.
struct ByteLimits {
    uint8 least;
    uint8 belowLeast;
    uint8 most;
    uint8 aboveMost;
};

/// What bytes are multiplied by: a whole number and 65536ths.
struct ByteFactor {
    uint16 whole; // up to kMostWhole, so that a product and a byte together stay below 2^15
    uint16 fraction;

    static constexpr int32 kMostWhole = 127;
};

/// Levels that pixels are counted from at once.
inline constexpr int32 kCountedLevels = 6;

/// Rows around one of a picture's edges. Those of magnitudes have a 0 at both ends and no component above 16383.
struct EdgeRows16 {
    const int16* dx;
    const int16* dy;
    const int16* above;
    const int16* here;
    const int16* below;
    bool isGentle; // no component of dx and dy is above kMostGentle
};

/// Whose directions multiply in 16 bits.
inline constexpr int32 kMostGentle = 1023;

/// Pixels of a row of which 32 bits hold the sum of squares.
inline constexpr int32 kMostIntegralPixels = 33024;

/// Rows of integral images, after their first columns.
struct IntegralRows {
    const float* sumAbove;
    float* sum;
    const double* squaresAbove;
    double* squares;
};

/// The four corner rows of a rectangle that slides along one row of positions.
struct RectRows {
    const float* sumTop;
    const float* sumBottom;
    const double* squareTop;
    const double* squareBottom;
    int32 width;
    double area;
};

/// Kernels of the gradient filters; entry k meets the element at offset k - radius.
enum GradientKernel : int32 { kDifference3, kSobelSmooth3, kScharrSmooth3, kDifference5, kSobelSmooth5 };
inline constexpr int32 kGradientKernels = 5;

/// Some neighbouring elements of a scaled row whose source lies within kColumnReach bytes from `base` on.
inline constexpr int32 kColumnBlock = 8;
inline constexpr int32 kColumnReach = 16;
inline constexpr std::ptrdiff_t kNoColumnBlock = PTRDIFF_MIN; // as base: their source lies too far apart
struct ColumnBlock {
    std::ptrdiff_t base;
    uint8 places[kColumnBlock]; // from the base
};

/// Such elements whose second pixels lie within that reach as well: the places of the first and the second of each.
struct ColumnPairs {
    std::ptrdiff_t base;
    uint8 places[2 * kColumnBlock];
};

/// Where each element of a scaled row comes from, alone and in blocks; of the first ones in pairs too.
struct ColumnPlan {
    const std::ptrdiff_t* offsets;
    const ColumnBlock* blocks;
    const ColumnPairs* pairs;
    int64 pairElements; // a multiple of two blocks
};

/// Of each element of a row: of the differences.
struct CubicWeights {
    const double* a;
    const double* b;
    const double* c;
};

/// The four pixels from `first` on, and the weights of their differences.
struct CubicPoint {
    int32 first;
    double a;
    double b;
    double c;
};

/// Four rows of the source, interpolated along themselves, and the place of the row between them.
struct CubicRows {
    const float* lines[4];
    CubicPoint down;
};

struct WeightedRow {
    const uint8* row;
    double weight;
};

/// The part of an axis that one result pixel covers: `head` of pixel `first` (unless 0), then `whole`
/// pixels, then `tail` (unless 0) of the pixel after them.
struct BoxSpan {
    int64 first;
    int64 whole;
    double head;
    double tail;

    int64 FirstWhole() const { return first + (head > 0.0 ? 1 : 0); }
    int64 Tail() const { return FirstWhole() + whole; }
    int64 End() const { return Tail() + (tail > 0.0 ? 1 : 0); }
};

/// Rows and columns of a box that BoxMeans takes, together.
inline constexpr int32 kMostBoxLines = 13;

/// One row of means of small boxes, three channels.
struct BoxMeans {
    const WeightedRow* rows;
    int32 rowCount;
    int32 columns; // of the region
    int32 beyond;  // columns that boxes reach past it, where its last one goes on
    float* sums;   // of all of these, in which kMostBoxLines columns more can be read
    const BoxSpan* spans;
    const float* weights; // of each two pixels in turn `taps` pairs: those of a column from each one's first on
    int32 taps;
    int32 count;
    double scale;
};

/// Result pixels of which a kernel of scaled means knows where they begin; and that it makes at once.
inline constexpr int32 kMeanBlock = 8;
inline constexpr int32 kMeanPixels = 32;

/// First columns of a block's pixels lie less than this apart: in one of two vectors.
inline constexpr int32 kMeanReach = 16;
inline constexpr int32 kFurtherMean = INT32_MIN; // in a place: in the second one

/// One row of weighted means of some rows' columns. A channel's sums down the rows stand in a plane, behind which a
/// block's reach and `taps` more can be read.
struct ScaledMeans {
    const WeightedRow* rows; // from the first column on
    const float* rowWeights;
    int32 rowCount;
    int32 firstColumn; // of the region
    int32 columns;     // of the rows
    int32 beyond;      // columns that means reach past them, where the last one goes on
    float* planes;
    std::ptrdiff_t planeStep;
    const int32* bases;   // of each block its first column
    const int32* places;  // of each pixel, from the base
    const float* weights; // of each block, `taps` times one of each pixel
    int32 taps;
    bool isFar; // whether any place lies further than the first vector
    int32 count;
    int32 doubt; // by how much a byte may be off, in 2^-15
    float raise; // what all means are raised by
};

/// The way through a picture from one sample of a turned row to the next; offsets in the picture fit 32 bits.
struct TurnedPath {
    const uint8* src;
    ImageSize srcSize;
    int32 srcStep;
    double uStep;
    double vStep;
    std::ptrdiff_t ahead; // from a sample to one that a later row will read
    /// Takes a sample in doubles.
    void (*exactly)(const TurnedPath& path, double u, double v, uint8* to);
};

/// Some samples of a turned row: where the first one lies, and goes; how many of the row follow, whose bytes may be
/// written before their turn.
struct TurnedStart {
    double u;
    double v;
    uint8* to;
    int64 behind;
};

/// Neighbouring rows that a kernel takes at once.
inline constexpr int32 kTurnedRows = 2;

/// A rectangle of pixels, of which one lies `along` bytes from the next of its row and `down`, a pixel's bytes or less
/// than nothing by as much, from that below it; as rows `toStep` apart.
struct Transposition {
    const uint8* from;
    std::ptrdiff_t along;
    std::ptrdiff_t down;
    int32 columns;
    int32 rows;
    uint8* to;
    std::ptrdiff_t toStep;
};

struct RowKernels {
    /// Hue, saturation and value of three interleaved channels; `dst` may be `src`.
    void (*hsv)(const uint8* src, uint8* dst, int32 width);

    /// Value and saturation alone.
    void (*valueAndSaturation)(const uint8* src, uint8* values, uint8* saturations, int32 width);

    /// A bit for each pixel, as in a BitPlane: what a table of noughts and ones has by 256 times the pixel's largest
    /// channel plus how far the smallest lies below.
    void (*markColours)(const uint8* src, const uint8* table, uint64* to, int32 width);

    void (*grey)(const uint8* src, uint8* dst, int32 width);

    void (*split)(const uint8* src, uint8* const (&planes)[3], int32 width);

    /// Pixels of three channels, the first of them at `from`, the next ones before it.
    void (*reverse)(const uint8* from, uint8* to, int64 count);

    /// Pixels of one channel, or of three, behind each of which two more can be read.
    void (*transpose1)(const Transposition& transposition);
    void (*transpose3)(const Transposition& transposition);

    /// `order` holds numbers from 0 to 2.
    void (*swap)(const uint8* src, uint8* dst, const int32* order, int32 width);

    void (*copyMasked)(const uint8* from, uint8* to, const uint8* mask, int32 width);

    /// Pixels of three channels where the mask is not 0, the level in all channels elsewhere.
    void (*cutOut)(const uint8* from, uint8* to, const uint8* mask, uint8 level, int32 width);

    /// The value where the mask is not 0.
    void (*setMasked)(uint8 value, uint8* to, const uint8* mask, int32 width);

    void (*bitAnd)(const uint8* from, uint8* to, int32 width);

    /// `to` may be `from`.
    void (*limit)(const uint8* from, uint8* to, const ByteLimits& limits, int32 width);

    /// Three channels less their values, 0 at least.
    void (*subtract)(const uint8 (&value)[3], uint8* row, int32 width);

    /// Adds how many pixels lie within the bounds, a channel at a time.
    void (*countInRange)(const uint8* row, int32 width, const uint8* lower, const uint8* upper, uint32 (&found)[3]);

    /// Adds, a channel at a time, how many pixels have each of the levels, which are not 0, or a higher one.
    void (*countFrom)(const uint8* row, int32 width, const uint8 (&levels)[kCountedLevels],
                      uint32 (&found)[kCountedLevels][3]);

    /// Floats to the nearest byte, a tie to the even one; 0 for what is not a number.
    void (*roundToBytes)(const uint8* floats, uint8* to, int64 count);

    /// Each level less `low`, times the factor, rounded half up, from 0 to 255. `to` may be `from`.
    void (*stretch)(const uint8* from, uint8* to, int64 count, uint8 low, ByteFactor factor);

    /// The smallest of `count` rows, element by element; `result` may be one of them.
    void (*lowest)(const uint8* const* rows, int32 count, uint8* result, int64 width);

    /// The same of the first `count` of one row more, and of the last; 3 or 5 of them.
    void (*lowestOfTwo)(const uint8* const* rows, int32 count, uint8* first, uint8* last, int64 width);

    /// Sums of three rows, element by element.
    void (*sumOfThree)(const uint8* const (&rows)[3], uint16* sums, int64 width);

    /// Means of nine: of three sums of three each.
    void (*meanOfNine)(const uint16* const (&sums)[3], uint8* result, int64 width);

    /// Weighted sums of rows, and of neighbours in a line of them, by each of the gradient kernels.
    void (*columnSums[kGradientKernels])(const uint8* const* rows, int16* to, int32 count);
    void (*rowSums[kGradientKernels])(const int16* line, int16* to, int32 count);

    /// |dx| + |dy|; 0 where at or below `low`. Gives the bits of all components' magnitudes, which are no less than the
    /// largest and below the next power of two; beyond 16383 the sums are not to be used.
    int32 (*magnitudes)(const int16* dx, const int16* dy, int32 width, int32 low, int16* to);

    /// Marks the pixels that are the largest along their gradients, as bits: all in `ridges`, those above `high` in
    /// `strong` as well. Writes whole words of 64; rows of magnitudes go on with zeros for as many pixels and one more.
    void (*ridgeBits)(const EdgeRows16& rows, int32 width, int32 high, uint64* ridges, uint64* strong);

    /// 255 for each bit that is set, else 0.
    void (*spreadBits)(const uint64* bits, uint8* to, int32 width);

    /// 255 where the mark is that, else 0.
    void (*keepEdges)(const uint8* mark, uint8* to, int32 width);

    /// Of up to kMostIntegralPixels.
    void (*integral)(const uint8* pixels, int32 width, const IntegralRows& rows);
    void (*stdDevs)(const RectRows& rows, int32 width, float* to);

    /// Linear interpolation along a row, two weights an element, and between two such rows.
    void (*linearColumns)(const uint8* row, const ColumnPlan& plan, int32 channels, const int16* weights, int64 count,
                          int16* to);
    void (*linearRows)(const int16* row0, const int16* row1, int32 weight, int64 count, uint8* to);

    /// Cubic interpolation likewise.
    void (*cubicColumns)(const uint8* row, const ColumnPlan& plan, int32 channels, const CubicWeights& weights,
                         int64 count, float* to);
    void (*cubicRows)(const CubicRows& rows, int64 count, uint8* to);

    /// The same at once. Null where the plain form is as fast.
    void (*cubicMeans1)(const ScaledMeans& means, const CubicPoint* along, const CubicPoint& down, uint8* to);
    void (*cubicMeans3)(const ScaledMeans& means, const CubicPoint* along, const CubicPoint& down, uint8* to);

    /// Weighted sums of rows, rounded to float after each row; when `goesOn`, added to the sums that are there.
    void (*boxRows)(const WeightedRow* rows, int32 rowCount, bool goesOn, float* sums, int64 count);

    /// Means along rows of such sums, behind which one more can be read.
    void (*boxColumns1)(const float* sums, const BoxSpan* spans, int32 count, double scale, uint8* out);
    void (*boxColumns3)(const float* sums, const BoxSpan* spans, int32 count, double scale, uint8* out);

    /// The same means at once, where there are few rows and columns in a box. Null where the plain form is as fast.
    void (*boxMeans3)(const BoxMeans& means, uint8* out);
    void (*nearBoxMeans1)(const ScaledMeans& means, const BoxSpan* spans, double scale, uint8* to);
    void (*nearBoxMeans3)(const ScaledMeans& means, const BoxSpan* spans, double scale, uint8* to);

    /// Samples most of a piece that lies so far inside that eight bytes from each pixel on can be read; how many are
    /// left, the first of them at `u`, `v`. Null where the plain form is as fast.
    int64 (*turnedRow1)(const TurnedPath& path, double& u, double& v, int64 count, uint8* to);
    int64 (*turnedRow3)(const TurnedPath& path, double& u, double& v, int64 count, uint8* to);

    /// Samples all of such a piece of each row, and leaves where the next sample lies, if any follow.
    /// False, with nothing done, where rows taken one by one are as fast; null where they always are.
    bool (*turnedRows1)(const TurnedPath& path, TurnedStart (&rows)[kTurnedRows], int64 count);
    bool (*turnedRows3)(const TurnedPath& path, TurnedStart (&rows)[kTurnedRows], int64 count);
};

/// For every processor, and for those with AVX2 and FMA.
extern const RowKernels kRowKernels128;
extern const RowKernels kRowKernels256;
#if defined(__x86_64__)
/// What is faster on those with AVX-512.
struct WidestRowKernels {
    decltype(RowKernels::hsv) hsv;
    decltype(RowKernels::magnitudes) magnitudes;
    decltype(RowKernels::ridgeBits) ridgeBits;
    decltype(RowKernels::cubicMeans1) cubicMeans1;
    decltype(RowKernels::cubicMeans3) cubicMeans3;
    decltype(RowKernels::boxMeans3) boxMeans3;
    decltype(RowKernels::nearBoxMeans1) nearBoxMeans1;
    decltype(RowKernels::nearBoxMeans3) nearBoxMeans3;
    decltype(RowKernels::turnedRow3) turnedRow3;
    decltype(RowKernels::turnedRows3) turnedRows3;
};
extern const WidestRowKernels kRowKernels512;
#endif

/// Those for the instruction set in use.
const RowKernels& CurrentRowKernels();

} // namespace orvane
