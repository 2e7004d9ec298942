// Rotation once more, straight from its rules: quarter turns pixel by pixel forwards; other turns by filling the
// quad's polygon row by row, as far as the destination goes. The polygon itself stays whole: a corner that clipping
// made would move an edge by a rounding, and a pixel that lies on the edge out of it. Only sine and cosine come from
// the code under test; they have tests of their own.
#pragma once

#include "primitives/sine_cosine.h"
#include "tests/support/plane.h"

#include <algorithm>
#include <cmath>
#include <ostream>
#include <vector>

namespace orvane::test::reference {

struct Turn {
    ImageSize srcSize;
    ImageRect srcRoi;
    ImageRect dstRoi;
    double angle, xShift, yShift;
    int32 interpolation;
    int32 channels;
};

inline std::ostream& operator<<(std::ostream& out, const ImageRect& r) {
    return out << r.width << "x" << r.height << " at " << r.x << "," << r.y;
}

inline std::ostream& operator<<(std::ostream& out, const Turn& t) {
    out << "source " << t.srcSize.width << "x" << t.srcSize.height << ", region ";
    operator<<(out, t.srcRoi) << ", into ";
    return operator<<(out, t.dstRoi) << ", angle " << t.angle << ", shift " << t.xShift << ", " << t.yShift << ", code "
                                     << t.interpolation << ", channels " << t.channels;
}

struct Point {
    double x, y;
};

class PlainTurn {
public:
    PlainTurn(const Plane<uint8>& src, Plane<uint8>& dst, const Turn& turn) : src_(src), dst_(dst), t_(turn) {
        t_.srcRoi.width = std::min(t_.srcRoi.width, t_.srcSize.width - t_.srcRoi.x);
        t_.srcRoi.height = std::min(t_.srcRoi.height, t_.srcSize.height - t_.srcRoi.y);
        double a = t_.angle - std::trunc(t_.angle / 360) * 360;
        if (a < 0) a += 360;
        exact_ = (a == 90 || a == 180 || a == 270) && t_.xShift == std::floor(t_.xShift) &&
                 t_.yShift == std::floor(t_.yShift);
        const SineCosine direction = SineCosineOf(a / 180 * 3.141592653589793);
        cos_ = a == 90 || a == 270 ? 0 : a == 180 ? -1 : direction.cosine;
        sin_ = a == 90 ? 1 : a == 270 ? -1 : a == 180 ? 0 : direction.sine;
    }

    int32 Run() {
        if (exact_) return RunExact();
        if (t_.srcRoi.width < 2 || t_.srcRoi.height < 2) return kSourceTooSmall;
        return RunSpans();
    }

private:
    int32 RunExact() {
        bool landed = false;
        for (int32 y = t_.srcRoi.y; y < t_.srcRoi.y + t_.srcRoi.height; ++y) {
            for (int32 x = t_.srcRoi.x; x < t_.srcRoi.x + t_.srcRoi.width; ++x) {
                const auto toX = static_cast<int32>(cos_ * x + sin_ * y + t_.xShift);
                const auto toY = static_cast<int32>(-sin_ * x + cos_ * y + t_.yShift);
                const ImageRect& d = t_.dstRoi;
                if (toX < d.x || toY < d.y || toX >= d.x + d.width || toY >= d.y + d.height) continue;
                landed = true;
                for (int32 c = 0; c < t_.channels; ++c) dst_.At(toX * t_.channels + c, toY) = Source(x, y, c);
            }
        }
        return landed ? kOk : kNoIntersection;
    }

    int32 RunSpans() {
        const ImageRect r = t_.srcRoi, d = t_.dstRoi;
        const double x1 = r.x + r.width - 1, y1 = r.y + r.height - 1;
        std::vector<Point> polygon;
        for (const Point p : {Point{double(r.x), double(r.y)}, {x1, double(r.y)}, {x1, y1}, {double(r.x), y1}}) {
            polygon.push_back({cos_ * p.x + sin_ * p.y + t_.xShift, -sin_ * p.x + cos_ * p.y + t_.yShift});
        }
        double top = polygon[0].y, bottom = top;
        for (const Point p : polygon) {
            top = std::min(top, p.y);
            bottom = std::max(bottom, p.y);
        }
        bool landed = false;
        const double lastRow = std::min(std::floor(bottom), d.y + d.height - 1.0);
        for (double y = std::max(std::ceil(top), double(d.y)); y <= lastRow; ++y) {
            if (FillRow(polygon, static_cast<int32>(y))) landed = true;
        }
        return landed ? kOk : kEmptyResult;
    }

    bool FillRow(const std::vector<Point>& polygon, int32 y) {
        double left = 1e9, right = -1e9;
        const auto add = [&](double x) {
            left = std::min(left, x);
            right = std::max(right, x);
        };
        for (std::size_t i = 0; i < polygon.size(); ++i) {
            const Point p = polygon[i], q = polygon[(i + 1) % polygon.size()];
            if (p.y == y) add(p.x);
            if ((p.y - y) * (q.y - y) < 0) add(p.x + (y - p.y) / (q.y - p.y) * (q.x - p.x));
        }
        left = std::max(std::ceil(left), double(t_.dstRoi.x));
        right = std::min(std::floor(right), t_.dstRoi.x + t_.dstRoi.width - 1.0);
        if (!(left <= right)) return false;
        const auto first = static_cast<int32>(left), last = static_cast<int32>(right);
        double u = cos_ * (first - t_.xShift) - sin_ * (y - t_.yShift);
        double v = sin_ * (first - t_.xShift) + cos_ * (y - t_.yShift);
        for (int32 x = first; x <= last; ++x) {
            for (int32 c = 0; c < t_.channels; ++c) {
                dst_.At(x * t_.channels + c, y) = t_.interpolation == 1 ? Nearest(u, v, c) : Linear(u, v, c);
            }
            u += cos_;
            v += sin_;
        }
        return true;
    }

    uint8 Source(int32 x, int32 y, int32 c) const { return src_.At(x * t_.channels + c, y); }

    uint8 Nearest(double u, double v, int32 c) const {
        return Source(static_cast<int32>(std::trunc(u + 0.5)), static_cast<int32>(std::trunc(v + 0.5)), c);
    }

    uint8 Linear(double u, double v, int32 c) const {
        int32 iu = static_cast<int32>(std::trunc(u + 0.0000001)), iv = static_cast<int32>(std::trunc(v + 0.0000001));
        double fu = u - iu, fv = v - iv;
        if (iu >= t_.srcSize.width - 1) {
            iu = t_.srcSize.width - 2;
            fu = 1.0;
        }
        if (iv >= t_.srcSize.height - 1) {
            iv = t_.srcSize.height - 2;
            fv = 1.0;
        }
        const int32 p00 = Source(iu, iv, c), p10 = Source(iu + 1, iv, c);
        const int32 p01 = Source(iu, iv + 1, c), p11 = Source(iu + 1, iv + 1, c);
        const double top = p00 + (p10 - p00) * fu, bottom = p01 + (p11 - p01) * fu;
        return static_cast<uint8>(std::trunc(0.5 + top + (bottom - top) * fv));
    }

    const Plane<uint8>& src_;
    Plane<uint8>& dst_;
    Turn t_;
    bool exact_;
    double cos_, sin_;
};

} // namespace orvane::test::reference
