// The background removal once more, in plain form: every band walks the whole picture, every pixel that is
// painted asks whether it lies in the plane. Filters and resizes are the primitives, which have judges of
// their own. All that would be told on standard output is collected.
#pragma once

#include "detect/candidates.h"
#include "image/image_buffer.h"
#include "primitives/primitives.h"
#include "tests/reference/flood_fill.h"
#include "tests/reference/pixel.h"
#include "tests/support/plane.h"

#include <cmath>
#include <string>
#include <vector>

namespace orvane::test::reference {

class PlainBackground {
public:
    PlainBackground(const ImageBuffer& source, int32 tolerance, const FaceRecord& face)
        : size(source.Size()), mask(NewPlane()), value_(NewPlane()), saturation_(NewPlane()), a_(NewPlane()),
          b_(NewPlane()) {
        Split(source);
        mask.FillRegion(154);
        MarkSamples(tolerance);
        KeepCore(face);
        found = ClearCorner();
    }

    /// What follows when a background was found.
    void Refine(const ImageBuffer& source, ImageBuffer& destination, int32 fillLevel, ImageSize original) {
        const ImageSize work = WorkSize(original);
        const double fx = static_cast<double>(work.width) / size.width;
        const double fy = static_cast<double>(work.height) / size.height;
        Plane<uint8> framed(work.width + 2, work.height + 2, 0, 0, 0);
        uint8* inner = framed.Data() + framed.Step() + 1;
        generic::primResize_8u_C1(mask.Data(), size, mask.Step(), {0, 0, size.width, size.height}, inner, framed.Step(),
                                  work, fx, fy, kNearest);
        const uint8 x[9] = {1, 0, 1, 0, 1, 0, 1, 0, 1}, plus[9] = {0, 1, 0, 1, 1, 1, 0, 1, 0};
        const uint8 all[9] = {1, 1, 1, 1, 1, 1, 1, 1, 1};
        FillFrame(framed, 255);
        for (const uint8* shape : {x, plus, all, x, plus, all, x, plus}) {
            generic::primErode_8u_C1I(inner, framed.Step(), work, shape, {3, 3}, {1, 1});
        }
        FillFrame(framed, 0);
        for (int32 i = 0; i < 13; ++i) generic::primFilterBox_8u_C1I(inner, framed.Step(), work, {3, 3}, {1, 1});
        generic::primResize_8u_C1(inner, work, framed.Step(), {0, 0, work.width, work.height}, mask.Data(), mask.Step(),
                                  size, 1 / fx, 1 / fy, kLinear);
        destination.Create(size.width, size.height, 3, kDepth8u, 0);
        for (int32 y = 0; y < size.height; ++y) {
            for (int32 i = 0; i < 3 * size.width; ++i) {
                const bool stays = mask.At(i / 3, y) != 0;
                RowAt(destination.data, destination.Step(), y)[i] =
                    stays ? RowAt(source.data, source.Step(), y)[i] : static_cast<uint8>(fillLevel);
            }
        }
    }

    static ImageSize WorkSize(ImageSize original) {
        const int32 w = original.width, h = original.height;
        if (w < 300 || h < 300) return {300, 300};
        if (w < 800 || h < 600) return {w + w / 2, h + h / 2};
        const double f = 0.3033333F;
        return {static_cast<int32>(w * f + 0.5), static_cast<int32>(h * f + 0.5)};
    }

    const ImageSize size;
    Plane<uint8> mask;
    bool found = false;
    std::string told;

private:
    Plane<uint8> NewPlane() const { return {size.width, size.height, 0, 0, 0}; }

    void Tell(int32 status) {
        if (status != 0) told += "Assertion Failed " + std::to_string(status) + " \n";
    }

    bool Holds(int64 x, int64 y) const { return x >= 0 && y >= 0 && x < size.width && y < size.height; }

    void Split(const ImageBuffer& source) {
        for (int32 y = 0; y < size.height; ++y) {
            for (int32 x = 0; x < size.width; ++x) {
                const uint8* bgr = RowAt(source.data, source.Step(), y) + std::ptrdiff_t{3} * x;
                const Pixel hsv = Hsv({bgr[2], bgr[1], bgr[0]});
                saturation_.At(x, y) = hsv[1];
                value_.At(x, y) = hsv[2];
            }
        }
    }

    void MarkSamples(int32 tolerance) {
        const int32 start = (size.height + 1) / 2 - 2;
        const int32 stepY = std::abs(2 - start) / 14, stepX = std::abs(3 - size.width) / 14;
        std::vector<ImagePoint> points;
        for (int32 i = 0; i < 15; ++i) {
            int32 y = size.height - std::max(start - i * stepY, 0);
            if (y < 1) y = 1;
            if (y >= size.height) y = size.height - 1;
            points.push_back({1, y});
        }
        for (int32 i = 0; i < 15; ++i) points.push_back({1 + i * stepX, size.height - 1});
        for (int32 i = 0; i < 15; ++i) points.push_back({size.width - 2, size.height - (2 + i * stepY)});
        const auto radius = static_cast<int32>(std::max(tolerance, 1) * 0.6 + 0.5);
        for (ImagePoint p : points) {
            if (p.x < 0 || p.y < 0 || p.x > size.width || p.y > size.height) continue;
            if (p.x == size.width) --p.x;
            if (p.y == size.height) --p.y;
            const int32 v = value_.At(p.x, p.y), s = saturation_.At(p.x, p.y);
            MarkBand(static_cast<int32>(v - 1.5 * radius + 0.5), v + radius, static_cast<int32>(s - 0.5 * radius + 0.5),
                     static_cast<int32>(s + 0.5 * radius + 0.5));
        }
    }

    /// Moves bounds beyond the byte by 255 and sorts them. Whether one was moved.
    static bool Wrap(int32& low, int32& high) {
        bool wrapped = false;
        if (low < 0) {
            low += 255;
            wrapped = true;
        }
        if (high > 255) {
            high -= 255;
            wrapped = true;
        }
        if (low > high) std::swap(low, high);
        return wrapped;
    }

    void MarkBand(int32 valueLow, int32 valueHigh, int32 saturationLow, int32 saturationHigh) {
        const int32 step = mask.Step();
        bool wrapped = Wrap(valueLow, valueHigh);
        Tell(generic::primThresholdLTValGTVal_8u_C1(value_.Data(), step, a_.Data(), step, size,
                                                    static_cast<uint8>(valueLow), 0, static_cast<uint8>(valueHigh), 0));
        if (wrapped) {
            generic::primCompareC_8u_C1(a_.Data(), step, 0, b_.Data(), step, size, kEqual);
            a_ = b_;
            b_.FillRegion(0);
        }
        wrapped = Wrap(saturationLow, saturationHigh);
        Tell(generic::primThresholdLTValGTVal_8u_C1(saturation_.Data(), step, b_.Data(), step, size,
                                                    static_cast<uint8>(saturationLow), 0,
                                                    static_cast<uint8>(saturationHigh), 0));
        if (wrapped) {
            generic::primCompareC_8u_C1(b_.Data(), step, 0, a_.Data(), step, size, kEqual);
            b_ = a_;
        }
        generic::primAnd_8u_C1I(b_.Data(), step, a_.Data(), step, size);
        generic::primSetMasked_8u_C1(0, mask.Data(), step, size, a_.Data(), step);
    }

    void KeepCore(const FaceRecord& face) {
        const double x = static_cast<double>(face.centreX) + std::trunc(-0.5 * face.faceWidth);
        const double y = static_cast<double>(face.centreY) + std::trunc(-0.5 * face.faceHeight);
        const double left = std::trunc(x + 0.3 * face.faceWidth), right = std::trunc(x + 0.7 * face.faceWidth);
        const double top = std::trunc(y + 0.12 * face.faceHeight), bottom = std::trunc(y + 0.88 * face.faceHeight);
        const double width = std::abs(left - right), height = std::abs(top - bottom);
        if (width < 1 || height < 1) Tell(-6);
        for (int32 j = 0; j < size.height; ++j) {
            for (int32 i = 0; i < size.width; ++i) {
                if (i >= left && i < left + width && j >= top && j < top + height) mask.At(i, j) = 154;
            }
        }
        const double seedX = std::trunc((left + right) * 0.5), seedY = std::trunc((top + bottom) * 0.5);
        if (Holds(static_cast<int64>(seedX), static_cast<int64>(seedY))) {
            FloodFill(mask, size, {static_cast<int32>(seedX), static_cast<int32>(seedY)}, 255, 8);
        } else {
            Tell(-11);
        }
        for (int32 j = 0; j < size.height; ++j) {
            for (int32 i = 0; i < size.width; ++i) {
                if (mask.At(i, j) < 255) mask.At(i, j) = 100;
            }
        }
    }

    bool ClearCorner() {
        double area = 0;
        if (Holds(size.width - 3, size.height - 3)) {
            area = FloodFill(mask, size, {size.width - 3, size.height - 3}, 0, 4).area;
        } else {
            Tell(-11);
        }
        return static_cast<double>(0.2F) * size.width * size.height <= area;
    }

    static void FillFrame(Plane<uint8>& framed, uint8 level) {
        const int32 w = framed.RowElements(), h = framed.Height();
        for (int32 y = 0; y < h; ++y) {
            for (int32 x = 0; x < w; ++x) {
                if (x == 0 || y == 0 || x == w - 1 || y == h - 1) framed.At(x, y) = level;
            }
        }
    }

    Plane<uint8> value_, saturation_, a_, b_;
};

/// The whole action. `mask` and `destination` come out as they should; what is told is added to `told`.
inline void RemoveBackground(const ImageBuffer& source, ImageBuffer& destination, ImageBuffer& mask, int32 tolerance,
                             int32 fillLevel, const FaceRecord& face, ImageSize original, std::string& told) {
    mask.Fill(154.0);
    destination.CopyFrom(source);
    if (tolerance < 5 || source.data == nullptr) return;
    PlainBackground plain(source, tolerance, face);
    told += plain.told;
    if (plain.found) plain.Refine(source, destination, fillLevel, original);
    mask.Create(source.width, source.height, 1, kDepth8u, 0);
    for (int32 y = 0; y < source.height; ++y) {
        for (int32 x = 0; x < source.width; ++x) RowAt(mask.data, mask.Step(), y)[x] = plain.mask.At(x, y);
    }
}

} // namespace orvane::test::reference
