// Values stay within those of a byte, as those of a photograph would.
#include "tools/train/relight.h"

#include "tools/train/face_crops.h"

#include <algorithm>
#include <cmath>

namespace orvane::train {
namespace {

constexpr double kMiddle = 0.5 * (kCropSide - 1);
constexpr double kLeastDeviation = 10.0; // a face in less contrast is left as it was: nothing of it would show

template <typename Change>
void ForEachPixel(CropPlane& crop, Change change) {
    for (int32 y = 0; y < kCropSide; ++y) {
        for (int32 x = 0; x < kCropSide; ++x) {
            double& value = crop[PixelIndex(x, y, kCropSide)];
            value = std::clamp(change(x - kMiddle, y - kMiddle, value), 0.0, 255.0);
        }
    }
}

/// 1 in the middle of a face, 0 in its surroundings, with a soft edge.
double FaceShare(double u, double v) {
    const double from = std::hypot(u / 12.5, (v + 1.0) / 17.0);
    return std::clamp((1.15 - from) / 0.3, 0.0, 1.0);
}

double DeviationOfFace(CropPlane& crop) {
    double weight = 0.0;
    double sum = 0.0;
    double squares = 0.0;
    ForEachPixel(crop, [&](double u, double v, double value) {
        const double share = FaceShare(u, v);
        weight += share;
        sum += share * value;
        squares += share * value * value;
        return value;
    });
    return std::sqrt(std::max(0.0, squares / weight - sum / weight * sum / weight));
}

void LightFromOneSide(CropPlane& crop, Random& random) {
    const double degrees = random.Between(0.0, 360.0) * 3.14159265358979323846 / 180.0;
    const double across = std::cos(degrees) / 10.0;
    const double up = 0.6 * std::sin(degrees) / 10.0;
    const double strength = random.Between(0.25, 0.9);
    const double edge = random.Between(-0.6, 0.6); // where the shadow begins
    ForEachPixel(crop, [&](double u, double v, double value) {
        return value * std::exp(strength * (std::tanh(across * u + up * v - edge) - 0.5));
    });
}

void BendScale(CropPlane& crop, Random& random) {
    const double gamma = std::exp((random.Below(3) == 0 ? -1.0 : 1.0) * random.Between(0.3, 0.75));
    ForEachPixel(crop, [&](double, double, double value) { return 255.0 * std::pow(value / 255.0, gamma); });
}

void DarkenFace(CropPlane& crop, Random& random) {
    double sum = 0.0;
    double weight = 0.0;
    ForEachPixel(crop, [&](double u, double v, double value) {
        sum += FaceShare(u, v) * value;
        weight += FaceShare(u, v);
        return value;
    });
    const double mean = sum / weight;
    const double whole = random.Between(0.35, 0.95);
    const double faint = random.Between(0.45, 0.95);
    const double shine = random.Between(0.9, 1.6);
    ForEachPixel(crop, [&](double u, double v, double value) {
        const double share = FaceShare(u, v);
        const double skin = whole * (mean + (value - mean) * (value < mean ? faint : shine));
        return value + share * (skin - value);
    });
}

void FlattenContrast(CropPlane& crop, Random& random) {
    const double base = random.Between(30.0, 200.0);
    const double left = random.Between(0.2, 0.5);
    const double noise = random.Between(0.3, 1.5);
    ForEachPixel(crop, [&](double, double, double value) {
        return std::floor(base + left * (value - base) + noise * random.Normal() + 0.5);
    });
}

} // namespace

void Relight(CropPlane& crop, Random& random) {
    const CropPlane before = crop;
    for (auto times = 1 + random.Below(2); times > 0; --times) {
        switch (random.Below(8)) {
        case 0:
        case 1:
            LightFromOneSide(crop, random);
            break;
        case 2:
        case 3:
            BendScale(crop, random);
            break;
        case 4:
            FlattenContrast(crop, random);
            break;
        default:
            DarkenFace(crop, random);
        }
    }
    if (DeviationOfFace(crop) < kLeastDeviation) crop = before;
}

} // namespace orvane::train
