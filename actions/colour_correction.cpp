// A stretched level depends on the level alone: what becomes of each is found once.
#include "actions/colour_correction.h"

#include "actions/assertion.h"
#include "actions/clip_bounds.h"
#include "image/result_codes.h"
#include "primitives/primitives.h"
#include "primitives/row_kernels.h"

#include <algorithm>

namespace orvane {
namespace {

constexpr float kClippedFraction = 0.05F;
constexpr int32 kLevels = 256;

bool IsPicture(const ImageBuffer& image) { return image.channels == 3 && image.depth == kDepth8u && image.planar == 0; }

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
    /// The stretch as a formula in whole numbers, which processors apply to many bytes at once. It rounds a tie up, not
    /// to the even number, and its factor is a little off; so it stands for the table only where it agrees with it in
    /// every level, which it does for all bounds that FindClipBounds finds, but for crossed ones.
    void FindOutWhetherComputed(uint8 low, float factor) {
        constexpr double kOne = 65536.0;
        const double rounded = static_cast<double>(factor) * kOne + 0.5;
        if (!(factor > 0.0F && rounded < kOne * (ByteFactor::kMostWhole + 1))) return;
        const auto parts = static_cast<uint32>(rounded);
        low_ = low;
        factor_ = {static_cast<uint16>(parts >> 16), static_cast<uint16>(parts & 0xFFFF)};
        uint8 levels[kLevels];
        for (int32 v = 0; v < kLevels; ++v) levels[v] = static_cast<uint8>(v);
        CurrentRowKernels().stretch(levels, levels, kLevels, low_, factor_);
        computed_ = std::equal(levels, levels + kLevels, results_);
    }

    static constexpr int32 kPixels = kLevels / 3 + 1; // a row of pixels that holds all levels

    uint8 results_[3 * kPixels] = {};
    bool computed_ = false;
    uint8 low_ = 0;
    ByteFactor factor_ = {};
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

int32 StretchLevels(ImageBuffer& image, int32 low, int32 high) {
    if (image.data == nullptr) PrintAssertion(kNullPointer);
    if (image.data != nullptr && IsPicture(image)) StretchTable(low, high).Apply(image, image);
    return kSuccess;
}

} // namespace orvane
