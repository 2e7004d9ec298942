// Places are in pixels of a crop from its middle, upwards positive: the eyes stand 6.7 to either side and 4.2 above,
// the mouth 9.9 below.
#include "tools/train/cover.h"

#include "tools/train/face_crops.h"

#include <algorithm>
#include <cmath>

namespace orvane::train {
namespace {

constexpr double kMiddle = 0.5 * (kCropSide - 1);
constexpr double kEyeAcross = 6.7;
constexpr double kEyeUp = 4.2;
constexpr double kMouthUp = -9.9;

/// Mixes each pixel with `shade(u, v, value)`, by the share that `share(u, v)` gives.
template <typename Share, typename Shade>
void Paint(CropPlane& crop, Share share, Shade shade) {
    for (int32 y = 0; y < kCropSide; ++y) {
        for (int32 x = 0; x < kCropSide; ++x) {
            double& value = crop[PixelIndex(x, y, kCropSide)];
            const double part = std::clamp(share(x - kMiddle, y - kMiddle), 0.0, 1.0);
            if (part > 0.0) value += part * (std::clamp(shade(x - kMiddle, y - kMiddle, value), 0.0, 255.0) - value);
        }
    }
}

/// Cloth: one grey with folds, stripes or none, and some grain.
class Cloth {
public:
    explicit Cloth(Random& random)
        : random_(random), grey_(random.Between(5.0, 250.0)), depth_(random.Below(2) != 0 ? random.Between(5, 50) : 0),
          across_(random.Between(-1.0, 1.0)), up_(random.Between(-1.0, 1.0)), phase_(random.Between(0.0, 6.0)),
          grain_(random.Between(0.0, 8.0)) {}
    double operator()(double u, double v, double) const {
        return grey_ + depth_ * std::sin(across_ * u + up_ * v + phase_) + grain_ * random_.Normal();
    }

private:
    Random& random_;
    double grey_, depth_, across_, up_, phase_, grain_;
};

void DrawGlasses(CropPlane& crop, Random& random) {
    const double width = random.Between(4.4, 6.2);
    const double height = random.Between(2.8, 4.8);
    const double drop = random.Between(0.0, 1.5);
    const double rim = random.Between(0.5, 1.3);
    const double roundness = random.Below(2) != 0 ? 2.0 : 4.0; // circles or nearly boxes
    const double grey = random.Below(4) == 0 ? random.Between(150.0, 255.0) : random.Between(0.0, 80.0);
    const bool dark = random.Below(5) == 0;
    const double lens = dark ? random.Between(0.1, 0.5) : random.Between(0.85, 1.1);
    const double glareAt = random.Below(3) == 0 ? random.Between(-0.7, 0.7) : 9.0;
    const double up = kEyeUp - drop;
    /// 1 on the rim, less inside, more outside.
    const auto from = [&](double u, double v) {
        const double a = std::fabs(std::fabs(u) - kEyeAcross) / width;
        const double b = std::fabs(v - up) / height;
        return std::pow(std::pow(a, roundness) + std::pow(b, roundness), 1.0 / roundness);
    };
    Paint(
        crop, [&](double u, double v) { return from(u, v) < 1.0 ? 1.0 : 0.0; },
        [&](double u, double v, double value) {
            const bool glare = std::fabs((std::fabs(u) - kEyeAcross) / width + (v - up) / height - glareAt) < 0.25;
            return glare ? 0.4 * value + 150.0 : lens * value;
        });
    Paint(
        crop,
        [&](double u, double v) {
            const double onRim = 1.0 - std::fabs(from(u, v) - 1.0) * 0.5 * (width + height) / rim;
            const bool bridge = std::fabs(u) < kEyeAcross - width && std::fabs(v - up - 0.8) < rim;
            const bool arm = std::fabs(u) > kEyeAcross + width && std::fabs(u) < 15.0 && std::fabs(v - up - 1.0) < rim;
            return bridge || arm ? 0.9 : 1.6 * onRim;
        },
        [&](double, double, double) { return grey; });
}

void DrawBeard(CropPlane& crop, Random& random) {
    const double lower = random.Between(0.25, 0.75);
    const double edge = random.Between(-8.5, -4.5); // up to here on the cheeks
    const bool lipOnly = random.Below(3) == 0;
    const double grain = random.Between(2.0, 14.0);
    const double lip = random.Between(1.6, 3.4);
    Paint(
        crop,
        [&](double u, double v) {
            const bool onLip = std::fabs(u) < 6.5 && std::fabs(v - kMouthUp - 2.6) < lip / 2;
            if (lipOnly) return onLip ? 0.9 : 0.0;
            const bool mouth = std::hypot(u / 4.0, (v - kMouthUp) / 1.3) < 1.0;
            const double round = std::hypot(u / 13.0, (v + 4.0) / 19.0);
            const double rises = edge + 0.045 * u * u; // along the jaw
            if (mouth || round > 1.05) return 0.0;
            return onLip ? 0.9 : std::clamp((rises - v) / 2.0, 0.0, 0.95);
        },
        [&](double, double, double value) { return lower * value + grain * random.Normal(); });
}

void DrawHat(CropPlane& crop, Random& random) {
    const double edge = random.Between(7.0, 13.0);
    const double bow = random.Between(-0.02, 0.03);
    const double lean = random.Between(-0.15, 0.15);
    const double shadow = random.Below(2) != 0 ? random.Between(0.4, 0.9) : 1.0;
    const double reach = random.Between(1.0, 5.0); // of the brim's shadow
    const Cloth cloth(random);
    const auto above = [&](double u, double v) { return v - (edge - bow * u * u + lean * u); };
    Paint(
        crop, [&](double u, double v) { return std::clamp((above(u, v) + reach) / reach, 0.0, 1.0); },
        [&](double, double, double value) { return shadow * value; });
    Paint(
        crop, [&](double u, double v) { return above(u, v) + 0.5; }, cloth);
}

void DrawScarf(CropPlane& crop, Random& random) {
    const double wide = random.Between(11.5, 15.0);
    const double high = random.Between(15.0, 19.0);
    const double centre = random.Between(-4.5, -1.5);
    const Cloth cloth(random);
    Paint(
        crop, [&](double u, double v) { return (std::hypot(u / wide, (v - centre) / high) - 1.0) * wide + 0.5; },
        cloth);
}

} // namespace

void Cover(CropPlane& crop, Random& random) {
    const auto chosen = random.Below(10);
    if (chosen < 2) DrawScarf(crop, random);
    if (chosen >= 2 && chosen < 5) DrawHat(crop, random);
    if (chosen >= 5 && chosen < 7) DrawBeard(crop, random);
    if (chosen >= 7 || random.Below(4) == 0) DrawGlasses(crop, random);
}

} // namespace orvane::train
