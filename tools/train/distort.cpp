// One affine map and one table of grey values.
#include "tools/train/distort.h"

#include <algorithm>
#include <array>
#include <cmath>

namespace orvane::train {
namespace {

constexpr double kPi = 3.14159265358979323846;

/// Output pixels (x, y), counted from the middle, come from (a x + b y, c x + d y) there.
struct Affine {
    double a, b, c, d;
};

/// A turn about the middle, enlarged across and up.
Affine MapOf(double degrees, double across, double up) {
    const double cosine = std::cos(degrees * kPi / 180.0);
    const double sine = std::sin(degrees * kPi / 180.0);
    return {cosine / across, sine / across, -sine / up, cosine / up};
}

Affine RandomMap(Random& random) {
    // Small turns are the most useful: cameras are held nearly level, so that level pictures fool the detector.
    const double degrees = random.Below(3) != 0 ? 12.0 * random.Normal() : random.Between(-180.0, 180.0);
    const double zoom = std::exp(random.Between(-0.2, 0.3));
    const double stretch = std::exp(random.Between(-0.2, 0.2));
    const double across = (random.Below(2) != 0 ? -1.0 : 1.0) * zoom * stretch;
    const double up = zoom / stretch;
    return MapOf(degrees, across, up);
}

std::array<uint8, 256> RandomLight(Random& random) {
    const bool inverted = random.Below(4) == 0;
    const double gamma = std::exp(random.Between(-0.5, 0.5));
    const double gain = std::exp(random.Between(-0.5, 0.2));
    std::array<uint8, 256> table;
    for (std::size_t i = 0; i < table.size(); ++i) {
        const double grey = static_cast<double>(inverted ? 255 - i : i) / 255.0;
        table[i] = static_cast<uint8>(std::clamp(255.0 * gain * std::pow(grey, gamma) + 0.5, 0.0, 255.0));
    }
    return table;
}

/// A place on an axis of `size` pixels, reflected at its ends until it lies within.
double Reflected(double at, int32 size) {
    const double last = size - 1;
    at = std::fabs(at);
    if (at <= last) return at;
    if (last <= 0.0) return 0.0;
    at = std::fmod(at, 2.0 * last);
    return at <= last ? at : 2.0 * last - at;
}

uint8 Sample(const GreyPicture& picture, double x, double y, bool nearest) {
    const int32 width = picture.size.width;
    x = Reflected(x, width);
    y = Reflected(y, picture.size.height);
    if (nearest) return picture.pixels[PixelIndex(static_cast<int32>(x + 0.5), static_cast<int32>(y + 0.5), width)];
    const auto x0 = static_cast<int32>(x);
    const auto y0 = static_cast<int32>(y);
    const int32 x1 = std::min(x0 + 1, width - 1);
    const int32 y1 = std::min(y0 + 1, picture.size.height - 1);
    const double u = x - x0;
    const double v = y - y0;
    const double low =
        picture.pixels[PixelIndex(x0, y0, width)] * (1 - u) + picture.pixels[PixelIndex(x1, y0, width)] * u;
    const double high =
        picture.pixels[PixelIndex(x0, y1, width)] * (1 - u) + picture.pixels[PixelIndex(x1, y1, width)] * u;
    return static_cast<uint8>(low * (1 - v) + high * v + 0.5);
}

template <typename Light>
GreyPicture Mapped(const GreyPicture& picture, const Affine& map, bool nearest, Light light) {
    const double middleX = 0.5 * (picture.size.width - 1);
    const double middleY = 0.5 * (picture.size.height - 1);
    GreyPicture out{picture.size, std::vector<uint8>(picture.pixels.size())};
    for (int32 y = 0; y < picture.size.height; ++y) {
        for (int32 x = 0; x < picture.size.width; ++x) {
            const double u = x - middleX;
            const double v = y - middleY;
            out.pixels[PixelIndex(x, y, picture.size.width)] =
                light(Sample(picture, middleX + map.a * u + map.b * v, middleY + map.c * u + map.d * v, nearest));
        }
    }
    return out;
}

/// A new grey for every pixel, out of its place and the grey that it has.
template <typename Change>
GreyPicture Changed(const GreyPicture& picture, Change change) {
    GreyPicture out{picture.size, std::vector<uint8>(picture.pixels.size())};
    for (int32 y = 0; y < picture.size.height; ++y) {
        for (int32 x = 0; x < picture.size.width; ++x) {
            const auto at = PixelIndex(x, y, picture.size.width);
            out.pixels[at] = static_cast<uint8>(change(x, y, int32{picture.pixels[at]}));
        }
    }
    return out;
}

} // namespace

GreyPicture Distorted(const GreyPicture& picture, Random random) {
    const Affine map = RandomMap(random);
    const std::array<uint8, 256> light = RandomLight(random);
    const bool nearest = random.Below(2) != 0;
    return Mapped(picture, map, nearest, [&](uint8 grey) { return light[grey]; });
}

GreyPicture Combined(const GreyPicture& picture, const GreyPicture& other, Random random) {
    const auto kind = random.Below(5);
    const auto tile = static_cast<int32>(12 + random.Below(60));
    return Changed(picture, [&](int32 x, int32 y, int32 a) {
        const int32 b = other.pixels[PixelIndex(x % other.size.width, y % other.size.height, other.size.width)];
        switch (kind) {
        case 0:
            return (a + b) / 2;
        case 1:
            return a * b / 255;
        case 2:
            return std::max(a, b);
        case 3:
            return std::min(a, b);
        default:
            return (x / tile + y / tile) % 2 != 0 ? a : b;
        }
    });
}

GreyPicture Jumbled(const GreyPicture& picture, Random random) {
    const auto kind = random.Below(8);
    const int32 width = picture.size.width;
    const int32 height = picture.size.height;
    const auto same = [](uint8 grey) { return grey; };
    if (kind < 4) return Mapped(picture, MapOf(random.Between(55.0, 305.0), 1.0, 1.0), false, same);
    if (kind < 5) return Changed(picture, [](int32, int32, int32 grey) { return 255 - grey; });
    const bool across = kind == 7;
    return Changed(picture, [&](int32 x, int32 y, int32) {
        const int32 fromX = across ? (x + width / 2) % width : x;
        const int32 fromY = across ? y : (y + height / 2) % height;
        return int32{picture.pixels[PixelIndex(fromX, fromY, width)]};
    });
}

} // namespace orvane::train
