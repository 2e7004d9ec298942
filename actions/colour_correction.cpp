// The bounds depend on how often each level occurs, and a stretched level on the level alone: one walk
// counts, one walk looks up.
#include "actions/colour_correction.h"

#include "actions/assertion.h"
#include "image/result_codes.h"
#include "primitives/primitives.h"

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
    uint32 counts[3][kLevels] = {};
    for (int32 y = 0; y < image.height; ++y) {
        const uint8* pixel = RowAt(image.data, image.Step(), y);
        for (int32 x = 0; x < image.width; ++x, pixel += 3) {
            ++counts[0][pixel[0]];
            ++counts[1][pixel[1]];
            ++counts[2][pixel[2]];
        }
    }
    for (int32 c = 0; c < 3; ++c) {
        for (int32 v = 1; v < kLevels - 1; ++v) sums.below[c][v + 1] = sums.below[c][v] + counts[c][v];
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
    }

    /// Writes the stretched pixels of `from` to `to`, which may be the same picture.
    void Apply(const ImageBuffer& from, ImageBuffer& to) const {
        for (int32 y = 0; y < from.height; ++y) {
            const uint8* in = RowAt(from.data, from.Step(), y);
            uint8* out = RowAt(to.data, to.Step(), y);
            for (std::ptrdiff_t i = 0; i < std::ptrdiff_t{3} * from.width; ++i) out[i] = results_[in[i]];
        }
    }

private:
    static constexpr int32 kPixels = kLevels / 3 + 1; // a row of pixels that holds all levels

    uint8 results_[3 * kPixels] = {};
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
    if (destination.Create(source.width, source.height, 3, kDepth8u, 0))
        StretchTable(low, high).Apply(source, destination);
    return kSuccess;
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
