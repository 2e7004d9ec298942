// Sizes are drawn so that any part of the picture looks like any other part enlarged.
#include "tools/train/drawn.h"

#include <algorithm>
#include <cmath>

namespace orvane::train {
namespace {

struct Shape {
    double x, y; // the middle
    double a, b; // half its sides
    double cosine, sine;
    bool round;
    double grey; // in its middle
    double slopeX, slopeY;
    double stripes;   // their depth
    double frequency; // of the stripes
    double grain;
};

Shape RandomShape(ImageSize size, Random& random) {
    Shape s{};
    const double largest = 0.3 * std::min(size.width, size.height);
    const double side = largest * std::pow(random.Between(0.2, 1.0), 2.5);
    const double degrees = random.Below(2) != 0 ? 4.0 * random.Normal() : random.Between(0.0, 180.0);
    s.x = random.Between(0.0, size.width);
    s.y = random.Between(0.0, size.height);
    s.a = std::max(1.0, side * std::exp(random.Between(-0.9, 0.9)));
    s.b = std::max(1.0, side * std::exp(random.Between(-0.9, 0.9)));
    s.cosine = std::cos(degrees * 3.14159265358979323846 / 180.0);
    s.sine = std::sin(degrees * 3.14159265358979323846 / 180.0);
    s.round = random.Below(2) != 0;
    s.grey = random.Between(0.0, 255.0);
    s.slopeX = random.Between(-60.0, 60.0) / s.a;
    s.slopeY = random.Between(-60.0, 60.0) / s.b;
    s.stripes = random.Below(4) == 0 ? random.Between(10.0, 80.0) : 0.0;
    s.frequency = random.Between(2.0, 14.0) / s.b;
    s.grain = random.Below(2) != 0 ? random.Between(0.0, 12.0) : 0.0;
    return s;
}

void Draw(GreyPicture& picture, const Shape& s, Random& random) {
    const double reach = std::hypot(s.a, s.b);
    const auto from = [](double at) { return std::max(0, static_cast<int32>(at)); };
    const int32 right = std::min(picture.size.width, from(s.x + reach + 2.0));
    const int32 top = std::min(picture.size.height, from(s.y + reach + 2.0));
    for (int32 y = from(s.y - reach); y < top; ++y) {
        for (int32 x = from(s.x - reach); x < right; ++x) {
            const double u = s.cosine * (x - s.x) + s.sine * (y - s.y);
            const double v = s.cosine * (y - s.y) - s.sine * (x - s.x);
            const double p = u / s.a;
            const double q = v / s.b;
            if (s.round ? p * p + q * q > 1.0 : std::fabs(p) > 1.0 || std::fabs(q) > 1.0) continue;
            double grey = s.grey + s.slopeX * u + s.slopeY * v;
            if (s.stripes > 0.0) grey += s.stripes * std::sin(s.frequency * v);
            if (s.grain > 0.0) grey += s.grain * random.Normal();
            picture.pixels[PixelIndex(x, y, picture.size.width)] =
                static_cast<uint8>(std::clamp(grey + 0.5, 0.0, 255.0));
        }
    }
}

} // namespace

GreyPicture DrawnPicture(ImageSize size, Random random) {
    GreyPicture picture{size, std::vector<uint8>(PixelCount(size), static_cast<uint8>(random.Below(256)))};
    const auto shapes = 300 + random.Below(700);
    for (std::uint32_t i = 0; i < shapes; ++i) {
        Shape shape = RandomShape(size, random);
        Draw(picture, shape, random);
        if (random.Below(3) != 0) continue;
        // The same once more or in a row, level or upright.
        const bool level = random.Below(3) != 0;
        const double gap = random.Between(2.1, 5.0) * (level ? shape.a : shape.b);
        for (auto more = 1 + (random.Below(4) == 0 ? random.Below(6) : 0); more > 0; --more) {
            (level ? shape.x : shape.y) += gap;
            Draw(picture, shape, random);
        }
    }
    return picture;
}

} // namespace orvane::train
