// The bounds depend on how often each level occurs, and a stretched level on the level alone: one walk
// counts, one walk looks up.
#include "actions/colour_correction.h"

#include "actions/assertion.h"
#include "image/result_codes.h"
#include "primitives/primitives.h"
#include "primitives/row_kernels.h"

#include <algorithm>

namespace orvane {
namespace {

constexpr float kClippedFraction = 0.05F;
constexpr int32 kLevels = 256;

bool IsPicture(const ImageBuffer& image) { return image.channels == 3 && image.depth == kDepth8u && image.planar == 0; }

/// below[c][v]: the pixels whose channel c is from 1 up to but excluding v.
struct LevelSums {
    int64 below[3][kLevels] = {};

    /// Whether in any channel the levels `from` to `to` hold `fraction` of those from 1 to 254. A channel
    /// without such levels never does.
    bool AnyHolds(int32 from, int32 to, float fraction) const {
        for (const auto& sums : below) {
            const auto held = static_cast<double>(sums[to + 1] - sums[from]);
            if (held / static_cast<double>(sums[kLevels - 1]) >= fraction) return true;
        }
        return false;
    }
};

void SumLevels(const ImageBuffer& image, LevelSums& sums) {
    // By turns in two tables: neighbours are often alike, and a count waits for the one before it in its place.
    uint32 counts[2][3][kLevels] = {};
    const auto count = [](uint32(&levels)[3][kLevels], const uint8* pixel) {
        ++levels[0][pixel[0]];
        ++levels[1][pixel[1]];
        ++levels[2][pixel[2]];
    };
    for (int32 y = 0; y < image.height; ++y) {
        const uint8* pixel = RowAt(image.data, image.Step(), y);
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

/// What becomes of each level.
class StretchTable {
public:
    StretchTable(int32 low, int32 high) {
        for (int32 v = 0; v < kLevels; ++v) results_[v] = static_cast<uint8>(v);
        const auto subtracted = static_cast<uint8>(low);
        const uint8 lowPixel[3] = {subtracted, subtracted, subtracted};
        const auto factor = static_cast<float>(255.0 / static_cast<double>(int64{high} - low));
        const float factorPixel[3] = {factor, factor, factor};
        float wide[3 * kPixels];
        constexpr ImageSize kRow{kPixels, 1};
        ReportStatus(primSubC_8u_C3ISfs(lowPixel, results_, sizeof results_, kRow, 0));
        ReportStatus(primConvert_8u32f_C3(results_, sizeof results_, wide, sizeof wide, kRow));
        ReportStatus(primMulC_32f_C3I(factorPixel, wide, sizeof wide, kRow));
        ReportStatus(primConvert_32f8u_C3(wide, sizeof wide, results_, sizeof results_, kRow, 1));
        FindOutWhetherComputed(subtracted, factor);
    }

    /// Writes the stretched pixels of `from` to `to`, which may be the same picture.
    void Apply(const ImageBuffer& from, ImageBuffer& to) const {
        const auto stretch = CurrentRowKernels().stretch;
        for (int32 y = 0; y < from.height; ++y) {
            const uint8* in = RowAt(from.data, from.Step(), y);
            uint8* out = RowAt(to.data, to.Step(), y);
            const std::ptrdiff_t bytes = std::ptrdiff_t{3} * from.width;
            if (computed_) {
                stretch(in, out, bytes, low_, factor_);
            } else {
                for (std::ptrdiff_t i = 0; i < bytes; ++i) out[i] = results_[in[i]];
            }
        }
    }

private:
    /// The stretch as a formula, which processors apply to many bytes at once. It rounds a tie up, not to the even
    /// number, and a sum of floats is not that of doubles; so it stands for the table only where it agrees with
    /// it in every level.
    void FindOutWhetherComputed(uint8 low, float factor) {
        constexpr float kLargestFactor = 255.0F; // what would be below 0, or no number, is no byte
        if (!(factor > 0.0F && factor <= kLargestFactor)) return;
        low_ = low;
        factor_ = factor;
        uint8 levels[kLevels];
        for (int32 v = 0; v < kLevels; ++v) levels[v] = static_cast<uint8>(v);
        CurrentRowKernels().stretch(levels, levels, kLevels, low, factor);
        computed_ = std::equal(levels, levels + kLevels, results_);
    }

    static constexpr int32 kPixels = kLevels / 3 + 1; // a row of pixels that holds all levels

    uint8 results_[3 * kPixels] = {};
    bool computed_ = false;
    uint8 low_ = 0;
    float factor_ = 0.0F;
};

} // namespace

int32 ActionColourCorrection(const ImageBuffer& source, ImageBuffer& destination) {
    int32 low = 0, high = 0;
    FindClipBounds(source, kClippedFraction, low, high);
    if (!IsPicture(source) || source.data == nullptr) {
        destination.CopyFrom(source);
        return kSuccess;
    }
    // Not a copy that is stretched in place: the stretch writes every pixel anyway.
    if (destination.Remake(source.width, source.height, 3, kDepth8u))
        StretchTable(low, high).Apply(source, destination);
    return kSuccess;
}

void CorrectColours(ImageBuffer& image) {
    int32 low = 0, high = 0;
    FindClipBounds(image, kClippedFraction, low, high);
    if (IsPicture(image) && image.data != nullptr) StretchTable(low, high).Apply(image, image);
}

int32 FindClipBounds(const ImageBuffer& image, float fraction, int32& low, int32& high) {
    if (image.data == nullptr) PrintAssertion(kNullPointer);
    if (!IsPicture(image)) return kSuccess;
    LevelSums sums;
    if (image.data != nullptr) SumLevels(image, sums);

    int32 b = 5;
    bool found = false;
    while (!found && b < 255) {
        found = sums.AnyHolds(254 - b, 254, fraction);
        b += 2;
    }
    high = 254 - b;
    b = 2;
    found = false;
    while (!found && b < 255) {
        found = sums.AnyHolds(1, b, fraction);
        b += 2;
    }
    low = b;
    return kSuccess;
}

int32 StretchLevels(ImageBuffer& image, int32 low, int32 high) {
    if (image.data == nullptr) PrintAssertion(kNullPointer);
    if (image.data != nullptr && IsPicture(image)) StretchTable(low, high).Apply(image, image);
    return kSuccess;
}

} // namespace orvane
