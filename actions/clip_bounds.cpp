// A band grows until it holds enough, so a bound is right when its band does and the one before does not. Some rows
// say where that may be; then the pixels of all rows are counted, but only from the few levels that this depends on,
// which vectors do many times as fast as a histogram. Where the rows misled, the histogram decides.
#include "actions/clip_bounds.h"

#include "actions/assertion.h"
#include "image/result_codes.h"
#include "primitives/row_kernels.h"

#include <optional>

namespace orvane {
namespace {

constexpr int32 kLevels = 256;
constexpr int32 kStep = 2;                     // by which a band is widened
constexpr int32 kFirstLow = 2, kFirstHigh = 5; // widths of the first bands
constexpr int32 kEnd = 255;                    // wider than any band

/// How wide the first bands are that hold enough: of levels 1 to `low`, and of 254 - `high` to 254. kEnd or the width
/// that would come first beyond it where none does.
struct Bands {
    int32 low;
    int32 high;
};

/// Whether a part of what a channel has is as much. Of nothing no part is.
bool Holds(int64 part, int64 all, float fraction) {
    return static_cast<double>(part) / static_cast<double>(all) >= fraction;
}

// --- all levels ---

/// below[c][v]: the pixels whose channel c is from 1 up to but excluding v.
struct LevelSums {
    int64 below[3][kLevels] = {};

    /// Whether in any channel the levels `from` to `to` hold `fraction` of those from 1 to 254. A channel
    /// without such levels never does.
    bool AnyHolds(int32 from, int32 to, float fraction) const {
        for (const auto& sums : below) {
            if (Holds(sums[to + 1] - sums[from], sums[kLevels - 1], fraction)) return true;
        }
        return false;
    }
};

/// Of every `each`-th row.
void SumLevels(const ImageBuffer& image, int32 each, LevelSums& sums) {
    // By turns in two tables: neighbours are often alike, and a count waits for the one before it in its place.
    uint32 counts[2][3][kLevels] = {};
    const auto count = [](uint32(&levels)[3][kLevels], const uint8* pixel) {
        ++levels[0][pixel[0]];
        ++levels[1][pixel[1]];
        ++levels[2][pixel[2]];
    };
    for (int64 y = each / 2; y < image.height; y += each) {
        const uint8* pixel = RowAt(image.data, image.Step(), static_cast<int32>(y));
        int32 x = 0;
        for (; x < image.width - 1; x += 2, pixel += 6) {
            count(counts[0], pixel);
            count(counts[1], pixel + 3);
        }
        if (x < image.width) count(counts[0], pixel);
    }
    for (int32 c = 0; c < 3; ++c) {
        for (int32 v = 1; v < kLevels - 1; ++v) {
            sums.below[c][v + 1] = sums.below[c][v] + int64{counts[0][c][v]} + counts[1][c][v];
        }
    }
}

Bands FindBands(const LevelSums& sums, float fraction) {
    Bands bands{kFirstLow, kFirstHigh};
    while (bands.high < kEnd && !sums.AnyHolds(254 - bands.high, 254, fraction)) bands.high += kStep;
    while (bands.low < kEnd && !sums.AnyHolds(1, bands.low, fraction)) bands.low += kStep;
    return bands;
}

// --- few levels ---

/// How many pixels have the levels that two bands, and those before them, begin or end at.
class BandCounts {
public:
    BandCounts(const ImageBuffer& image, Bands bands) : bands_(bands) {
        // From the first level of the bands; from those behind the low ones; from the first of the high ones; from
        // that behind them. A first band has none before it, so that its count is not looked at.
        const auto level = [](int32 v) { return static_cast<uint8>(v); };
        const uint8 levels[kCountedLevels] = {1,
                                              level(bands.low + 1 - kStep),
                                              level(bands.low + 1),
                                              level(254 - bands.high),
                                              level(254 - bands.high + kStep),
                                              255};
        const auto countFrom = CurrentRowKernels().countFrom;
        for (int32 y = 0; y < image.height; ++y) {
            countFrom(RowAt(image.data, image.Step(), y), image.width, levels, from_);
        }
    }

    /// Which way the width of the first band that holds enough lies: 0 where that is this one.
    int32 LowWay(float fraction) const {
        return Way(AnyHolds(0, 1, fraction), AnyHolds(0, 2, fraction), bands_.low == kFirstLow);
    }
    int32 HighWay(float fraction) const {
        return Way(AnyHolds(4, 5, fraction), AnyHolds(3, 5, fraction), bands_.high == kFirstHigh);
    }

private:
    static int32 Way(bool before, bool here, bool isFirst) { return !here ? 1 : before && !isFirst ? -1 : 0; }

    /// Whether a channel's pixels from one of the counted levels up to another hold enough.
    bool AnyHolds(int32 first, int32 end, float fraction) const {
        for (int32 c = 0; c < 3; ++c) {
            const int64 held = int64{from_[first][c]} - from_[end][c], all = int64{from_[0][c]} - from_[5][c];
            if (Holds(held, all, fraction)) return true;
        }
        return false;
    }

    Bands bands_;
    uint32 from_[kCountedLevels][3] = {};
};

/// The bands by what some rows have, proved by counts of all. None where that takes longer than a histogram.
std::optional<Bands> FindBandsFromSomeRows(const ImageBuffer& image, float fraction) {
    constexpr int32 kEach = 16, kTrials = 4;
    if (image.height < 2 * kEach) return {};
    LevelSums some;
    SumLevels(image, kEach, some);
    Bands bands = FindBands(some, fraction);
    for (int32 trial = 0; trial < kTrials; ++trial) {
        const bool exist = bands.low >= kFirstLow && bands.low < kEnd && bands.high >= kFirstHigh && bands.high < kEnd;
        if (!exist) break;
        const BandCounts counts(image, bands);
        const int32 lowWay = counts.LowWay(fraction), highWay = counts.HighWay(fraction);
        if (lowWay == 0 && highWay == 0) return bands;
        bands.low += kStep * lowWay;
        bands.high += kStep * highWay;
    }
    return {};
}

Bands FindBands(const ImageBuffer& image, float fraction) {
    LevelSums sums;
    if (image.data != nullptr) {
        if (const std::optional<Bands> bands = FindBandsFromSomeRows(image, fraction)) return *bands;
        SumLevels(image, 1, sums);
    }
    return FindBands(sums, fraction);
}

} // namespace

int32 FindClipBounds(const ImageBuffer& image, float fraction, int32& low, int32& high) {
    if (image.data == nullptr) PrintAssertion(kNullPointer);
    if (image.channels != 3 || image.depth != kDepth8u || image.planar != 0) return kSuccess;
    const Bands bands = FindBands(image, fraction);
    const auto stepPast = [](int32 width) { return width < kEnd ? width + kStep : width; };
    high = 254 - stepPast(bands.high);
    low = stepPast(bands.low);
    return kSuccess;
}

} // namespace orvane
