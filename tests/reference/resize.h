// The resize operations once more: one result pixel at a time, straight from the formulas.
#pragma once

#include "primitives/types.h"
#include "tests/support/plane.h"

#include <algorithm>
#include <cmath>
#include <vector>

namespace orvane::test::reference {

/// One axis: `length` region pixels from `origin` on, of `extent` in the source; `room` in the result.
struct Axis {
    int32 extent, origin, length, room;
    double factor;

    double Product() const { return length * factor; }

    /// Result pixels; 0 when there is nothing to write.
    int32 Written() const {
        const double scaled = std::trunc(Product() + 0.0000001);
        if (!(room > scaled)) return room;
        if (scaled < 1) return Product() + 0.0000001 >= 0.5 ? 1 : 0;
        return static_cast<int32>(scaled);
    }

    /// `count` positions by repeated addition.
    static std::vector<double> Positions(double start, double step, int32 count) {
        std::vector<double> positions;
        for (double p = start; static_cast<int32>(positions.size()) < count; p += step) positions.push_back(p);
        return positions;
    }

    std::vector<double> CentredPositions() const { return Positions(0.5 * (1 / factor), 1 / factor, Written()); }

    std::vector<double> GridPositions() const {
        return Positions(0.0, Product() > 1 ? (length - 1) / (Product() - 1) : 0.0, Written());
    }
};

struct Geometry {
    Axis x, y;
    int32 channels;
};

inline Geometry MakeGeometry(ImageSize src, ImageRect roi, ImageSize dst, double xFactor, double yFactor,
                             int32 channels) {
    return {{src.width, roi.x, std::min(roi.width, src.width - roi.x), dst.width, xFactor},
            {src.height, roi.y, std::min(roi.height, src.height - roi.y), dst.height, yFactor},
            channels};
}

/// Channel `c` of the source pixel at (x, y) of the region.
inline int32 SourcePixel(const Plane<uint8>& src, const Geometry& g, int64 x, int64 y, int32 c) {
    return src.At(static_cast<int32>((g.x.origin + x) * g.channels + c), static_cast<int32>(g.y.origin + y));
}

/// Calls `value(i, j, c)` for every row, column and channel of the result and stores what it gives.
template <typename Value>
void StoreAll(Plane<uint8>& dst, const Geometry& g, Value value) {
    for (int32 i = 0; i < g.y.Written(); ++i) {
        for (int32 j = 0; j < g.x.Written(); ++j) {
            for (int32 c = 0; c < g.channels; ++c) dst.At(j * g.channels + c, i) = static_cast<uint8>(value(i, j, c));
        }
    }
}

inline void Nearest(const Plane<uint8>& src, Plane<uint8>& dst, const Geometry& g) {
    const auto xs = g.x.CentredPositions();
    const auto ys = g.y.CentredPositions();
    // Where the formula leaves the region its last pixel stands.
    const auto index = [](double p, const Axis& a) { return std::min(std::trunc(p + 0.0000001), a.length - 1.0); };
    StoreAll(dst, g, [&](int32 i, int32 j, int32 c) {
        return SourcePixel(src, g, static_cast<int64>(index(xs[j], g.x)), static_cast<int64>(index(ys[i], g.y)), c);
    });
}

inline void Linear(const Plane<uint8>& src, Plane<uint8>& dst, const Geometry& g) {
    struct Sample {
        int64 at, weight;
    };
    const auto sample = [](double p, const Axis& a) -> Sample {
        const auto ip = static_cast<int64>(p + 0.0000001);
        if (ip == a.extent - 1 - a.origin) return {ip - 1, 16384};
        return {ip, static_cast<int64>((p - static_cast<double>(ip)) * 16384 + 0.0000001)};
    };
    const auto xs = g.x.GridPositions();
    const auto ys = g.y.GridPositions();
    StoreAll(dst, g, [&](int32 i, int32 j, int32 c) {
        const Sample x = sample(xs[j], g.x);
        const Sample y = sample(ys[i], g.y);
        const auto across = [&](int64 row) {
            const int64 s0 = SourcePixel(src, g, x.at, row, c);
            const int64 s1 = SourcePixel(src, g, x.at + 1, row, c);
            return ((16384 - x.weight) * s0 + x.weight * s1 + 128) / 256;
        };
        return (across(y.at + 1) * y.weight + across(y.at) * (16384 - y.weight) + 524288) / 1048576;
    });
}

inline void Cubic(const Plane<uint8>& src, Plane<uint8>& dst, const Geometry& g) {
    struct Sample {
        int64 at;
        float t;
    };
    const auto sample = [](double p, const Axis& axis) -> Sample {
        auto ip = static_cast<int64>(p + 0.0000001);
        const int64 a = axis.origin + ip;
        if (a == axis.extent - 1) return {ip - 2, 2.0f};
        if (a == 0) {
            ip = ip + 1;
        } else if (a == axis.extent - 2) {
            ip = ip - 1;
        }
        return {ip, static_cast<float>(p - static_cast<double>(ip))};
    };
    const auto through = [](const double s[4], double t, bool shortC) {
        const double a = 1 + t;
        const double b = t * a / 2;
        double c = (t - 1) * b / 3;
        if (shortC) c = static_cast<float>(c);
        const double d1 = s[1] - s[0];
        const double d2 = (s[2] - s[1]) - d1;
        const double d3 = (s[1] - 2 * s[2] + s[3]) - d2;
        return s[0] + a * d1 + b * d2 + c * d3;
    };
    const auto xs = g.x.GridPositions();
    const auto ys = g.y.GridPositions();
    StoreAll(dst, g, [&](int32 i, int32 j, int32 c) {
        const Sample x = sample(xs[j], g.x);
        const Sample y = sample(ys[i], g.y);
        double lines[4];
        for (int32 row = 0; row < 4; ++row) {
            double s[4];
            for (int32 k = 0; k < 4; ++k) s[k] = SourcePixel(src, g, x.at - 1 + k, y.at - 1 + row, c);
            lines[row] = static_cast<float>(through(s, x.t, false));
        }
        return std::clamp(static_cast<int32>(through(lines, y.t, true) + 0.5000001), 0, 255);
    });
}

/// A source pixel's share of a box.
struct Share {
    int64 at;
    double weight;
};

/// The shares of each result pixel of an axis.
inline std::vector<std::vector<Share>> Boxes(const Axis& axis) {
    const double s = 1 / axis.factor;
    std::vector<std::vector<Share>> boxes;
    int64 at = 0;
    double f = 0;
    for (int32 i = 0; i < axis.Written(); ++i) {
        std::vector<Share> box;
        double rest = s;
        double n = std::floor(s);
        if (i > 0) {
            if (1 - f > 0.0000001) box.push_back({at, 1 - f});
            ++at;
            rest = s - (1 - f);
            n = std::floor(0.0000001 + s - (1 - f));
        }
        for (double whole = 0; whole < n; ++whole) box.push_back({at++, 1.0});
        f = rest - n;
        if (f > 0.0000001) box.push_back({at, f});
        for (Share& share : box) share.at = std::min<int64>(share.at, axis.length - 1); // never past the region
        boxes.push_back(box);
    }
    return boxes;
}

inline void BoxAverage(const Plane<uint8>& src, Plane<uint8>& dst, const Geometry& g) {
    const auto columns = Boxes(g.x);
    const auto rows = Boxes(g.y);
    StoreAll(dst, g, [&](int32 i, int32 j, int32 c) {
        float sum = 0;
        for (const Share& column : columns[j]) {
            float down = 0;
            for (const Share& row : rows[i]) {
                down = static_cast<float>(down + row.weight * SourcePixel(src, g, column.at, row.at, c));
            }
            sum = static_cast<float>(sum + column.weight * down);
        }
        return std::trunc(sum * (g.x.factor * g.y.factor) + 0.5);
    });
}

/// Resizes by the code's own rules for small sources. The status; only valid geometry is taken.
inline int32 Resize(const Plane<uint8>& src, Plane<uint8>& dst, const Geometry& g, int32 interpolation) {
    if (g.x.Written() < 1 || g.y.Written() < 1) return kNothingToWrite;
    if (interpolation == kCubic && (g.x.extent < 4 || g.y.extent < 4)) interpolation = kLinear;
    if (interpolation == kLinear && (g.x.extent < 2 || g.y.extent < 2)) interpolation = kNearest;
    switch (interpolation) {
    case kNearest:
        Nearest(src, dst, g);
        break;
    case kLinear:
        Linear(src, dst, g);
        break;
    case kCubic:
        Cubic(src, dst, g);
        break;
    default:
        BoxAverage(src, dst, g);
        break;
    }
    return kOk;
}

} // namespace orvane::test::reference
