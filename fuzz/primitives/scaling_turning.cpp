// Scaling and turning, and the parts of either that the library asks for alone.
#include "fuzz/primitives/judge.h"
#include "tests/reference/resize.h"
#include "tests/reference/rotate.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace orvane::fuzz {
namespace {

namespace reference = test::reference;
using Bytes = Plane<uint8>;

/// A rectangle that begins in a picture, and may end beyond it.
ImageRect AnyRegion(Choices& choices, ImageSize size) {
    if (choices.Flag()) return {0, 0, size.width, size.height};
    const int32 x = choices.Int(0, size.width - 1), y = choices.Int(0, size.height - 1);
    const int32 width = choices.Int(1, size.width + 3);
    return {x, y, width, choices.Int(1, size.height + 3)};
}

/// Plain factors, those just beside a whole number of pixels, and any.
double AnyFactor(Choices& choices, bool reducing) {
    const double factor = choices.Flag() ? choices.OneOf({1.0, 0.5, 1.0 / 3, 0.25, 0.7, 0.999999999, 0.49999999, 2.0,
                                                          1.5, 3.0, 4.0 / 3, 1.999999999})
                                         : choices.Int(1, 4000) / 1000.0;
    return reducing ? std::min(factor, 1.0) : factor;
}

void JudgeResize(Judge& j, int32 channels) {
    const ImageSize size = j.AnySize();
    const ImageRect region = AnyRegion(j.choices, size);
    const int32 interpolation = j.choices.OneOf({int32{kNearest}, int32{kLinear}, int32{kCubic}, int32{kBoxAverage}});
    const double xFactor = AnyFactor(j.choices, interpolation == kBoxAverage);
    const double yFactor = j.choices.Flag() ? xFactor : AnyFactor(j.choices, interpolation == kBoxAverage);
    const auto room = [&](int32 length, double factor) {
        return std::max(1, static_cast<int32>(length * factor) + j.choices.Int(-2, 3));
    };
    const int32 columns = room(std::min(region.width, size.width - region.x), xFactor);
    const ImageSize dst{columns, room(std::min(region.height, size.height - region.y), yFactor)};
    const Bytes src = j.Source<uint8>(channels * size.width, size.height);
    Bytes result = j.Output<uint8>(channels * dst.width, dst.height), expected = result;
    const auto entry = channels == 1 ? primResize_8u_C1 : primResize_8u_C3;
    const int32 status = entry(j.At(src.Data()), j.Roi(size), src.Step(), region, j.At(result.Data()), result.Step(),
                               dst, xFactor, yFactor, interpolation);
    Bytes plain = expected;
    const auto geometry = reference::MakeGeometry(size, region, dst, xFactor, yFactor, channels);
    const int32 plainStatus = reference::Resize(src, plain, geometry, interpolation);
    const bool did = j.Did(status, plainStatus);
    Judge::Same(result, did ? plain : expected);

    // Of the whole picture any part is the same.
    if (!did || channels != 3 || region.x != 0 || region.y != 0 || region.width < size.width ||
        region.height < size.height || xFactor != yFactor) {
        return;
    }
    const ImageSize written{geometry.x.Written(), geometry.y.Written()};
    const int32 left = j.choices.Int(0, written.width - 1), bottom = j.choices.Int(0, written.height - 1);
    const ImageRect part{left, bottom, j.choices.Int(1, written.width - left),
                         j.choices.Int(1, written.height - bottom)};
    Bytes cut = j.Output<uint8>(3 * part.width, part.height), whole = cut;
    Expect(ResizePart_8u_C3(src.Data(), size, src.Step(), cut.Data(), cut.Step(), dst, part, xFactor, interpolation) ==
               kOk,
           "a part of what was written is written");
    for (int32 y = 0; y < part.height; ++y) {
        for (int32 x = 0; x < 3 * part.width; ++x) whole.At(x, y) = plain.At(3 * left + x, bottom + y);
    }
    Judge::Same(cut, whole);
}

/// Odd calls whose answers are told: factors and codes that are none.
void JudgeResizeRefusals(Judge& j) {
    const uint8 src[12] = {};
    uint8 dst[12] = {};
    const double factor = j.choices.OneOf({0.0, -1.0, std::numeric_limits<double>::quiet_NaN()});
    Expect(primResize_8u_C1(src, {3, 4}, 3, {0, 0, 3, 4}, dst, 3, {3, 4}, factor, 1.0, kLinear) == kBadFactor,
           "a factor is above zero");
    const int32 code = j.choices.OneOf({0, 3, 5, 7, 9, -1});
    Expect(primResize_8u_C1(src, {3, 4}, 3, {0, 0, 3, 4}, dst, 3, {3, 4}, 1.0, 1.0, code) == kBadInterpolation,
           "a code is known");
    Expect(primResize_8u_C1(src, {3, 4}, 3, {3, 0, 1, 1}, dst, 3, {3, 4}, 1.0, 1.0, kLinear) == kNoIntersection,
           "a region lies in its source");
}

reference::Turn AnyTurn(Judge& j, int32 channels) {
    reference::Turn t{};
    t.srcSize.width = j.choices.Int(1, 150);
    t.srcSize.height = j.choices.Int(1, 150);
    t.srcRoi = AnyRegion(j.choices, t.srcSize);
    t.dstRoi.x = j.choices.Int(0, 5);
    t.dstRoi.y = j.choices.Int(0, 5);
    t.dstRoi.width = j.choices.Int(1, 150);
    t.dstRoi.height = j.choices.Int(1, 150);
    t.angle = j.choices.Flag() ? j.choices.Int(-8, 8) * 90.0 : j.choices.Int(-80000, 80000) / 100.0;
    t.xShift = j.choices.Int(-60, 60);
    t.yShift = j.choices.Int(-60, 60);
    if (j.choices.Flag()) {
        t.xShift += j.choices.Byte() / 256.0;
        t.yShift += j.choices.Byte() / 256.0;
    }
    t.interpolation = j.choices.OneOf({int32{kNearest}, int32{kLinear}, int32{kCubic}});
    t.channels = channels;
    return t;
}

void JudgeTurn(Judge& j, int32 channels, bool aroundCentre) {
    reference::Turn t = AnyTurn(j, channels);
    const double xCentre = t.xShift, yCentre = t.yShift;
    if (aroundCentre) {
        Expect(primGetRotateShift(xCentre, yCentre, t.angle, &t.xShift, &t.yShift) == kOk, "a shift is found");
    }
    const Bytes src = j.Source<uint8>(channels * t.srcSize.width, t.srcSize.height);
    Bytes result = j.Output<uint8>(channels * (t.dstRoi.x + t.dstRoi.width), t.dstRoi.y + t.dstRoi.height);
    Bytes plain = result;
    const Bytes before = result;
    const int32 plainStatus = reference::PlainTurn(src, plain, t).Run();
    const auto turn = channels == 1 ? primRotate_8u_C1 : primRotate_8u_C3;
    const auto turnAround = channels == 1 ? primRotateCenter_8u_C1 : primRotateCenter_8u_C3;
    const uint8* from = j.At(src.Data());
    uint8* to = j.At(result.Data());
    const ImageSize size = j.Roi(t.srcSize);
    const int32 step = j.Step(src.Step());
    const int32 status = aroundCentre ? turnAround(from, size, step, t.srcRoi, to, result.Step(), t.dstRoi, t.angle,
                                                   xCentre, yCentre, t.interpolation)
                                      : turn(from, size, step, t.srcRoi, to, result.Step(), t.dstRoi, t.angle, t.xShift,
                                             t.yShift, t.interpolation);
    const bool did = j.Did(status, plainStatus);
    Judge::Same(result, did ? plain : before);
}

/// A part of a turned whole picture.
void JudgeTurnedPart(Judge& j, int32 channels) {
    reference::Turn t = AnyTurn(j, channels);
    t.srcRoi = {0, 0, t.srcSize.width, t.srcSize.height};
    t.dstRoi.x = t.dstRoi.y = 0;
    t.interpolation = kLinear;
    const Bytes src = j.Source<uint8>(channels * t.srcSize.width, t.srcSize.height);
    Bytes whole(channels * t.dstRoi.width, t.dstRoi.height, 0, 0, 0);
    const int32 plainStatus = reference::PlainTurn(src, whole, t).Run();
    const int32 left = j.choices.Int(0, t.dstRoi.width - 1), top = j.choices.Int(0, t.dstRoi.height - 1);
    const ImageRect part{left, top, j.choices.Int(1, t.dstRoi.width - left), j.choices.Int(1, t.dstRoi.height - top)};
    Bytes cut = j.Output<uint8>(channels * part.width, part.height), expected = cut;
    const int32 status = RotatePart(channels, src.Data(), t.srcSize, src.Step(), cut.Data(), cut.Step(),
                                    {t.dstRoi.width, t.dstRoi.height}, part, t.angle, t.xShift, t.yShift);
    Expect(status == plainStatus, "a part answers as the whole");
    for (int32 y = 0; y < part.height; ++y) {
        for (int32 x = 0; x < channels * part.width; ++x) {
            expected.At(x, y) = status == kOk ? whole.At(channels * left + x, top + y) : uint8{0};
        }
    }
    Judge::Same(cut, expected);
}

bool IsNear(double a, double b) { return std::abs(a - b) <= 1e-9 * std::max(1.0, std::abs(b)); }

} // namespace

void Judge_primResize_8u_C1(Judge& j) {
    JudgeResizeRefusals(j);
    JudgeResize(j, 1);
}
void Judge_primResize_8u_C3(Judge& j) { JudgeResize(j, 3); }

void Judge_primRotate_8u_C1(Judge& j) {
    if (j.choices.Int(0, 3) == 3) return JudgeTurnedPart(j, 1);
    JudgeTurn(j, 1, false);
}
void Judge_primRotate_8u_C3(Judge& j) {
    if (j.choices.Int(0, 3) == 3) return JudgeTurnedPart(j, 3);
    JudgeTurn(j, 3, false);
}
void Judge_primRotateCenter_8u_C1(Judge& j) { JudgeTurn(j, 1, true); }
void Judge_primRotateCenter_8u_C3(Judge& j) { JudgeTurn(j, 3, true); }

void Judge_primGetRotateShift(Judge& j) {
    const double x = j.choices.Int(-500, 500) / 4.0, y = j.choices.Int(-500, 500) / 4.0;
    const double angle = j.choices.Int(-80000, 80000) / 100.0;
    double xShift = 0, yShift = 0;
    if (!j.Did(primGetRotateShift(x, y, angle, j.At(&xShift), j.At(&yShift)))) return;
    const double turn = angle / 180 * 3.141592653589793;
    Expect(IsNear(std::cos(turn) * x + std::sin(turn) * y + xShift, x) &&
               IsNear(-std::sin(turn) * x + std::cos(turn) * y + yShift, y),
           "the centre stays in place");
}

void Judge_primGetRotateQuad(Judge& j) {
    const ImageSize size = j.AnySize();
    ImageRect region{j.choices.Int(0, 50), j.choices.Int(0, 50), size.width, size.height};
    const double angle = j.choices.Int(-80000, 80000) / 100.0;
    const double xShift = j.choices.Int(-500, 500) / 4.0, yShift = j.choices.Int(-500, 500) / 4.0;
    double quad[4][2] = {};
    const ImageSize told = j.Roi(size);
    region.width = told.width;
    region.height = told.height;
    if (!j.Did(primGetRotateQuad(region, j.At(quad), angle, xShift, yShift))) return;
    const double turn = angle / 180 * 3.141592653589793, c = std::cos(turn), s = std::sin(turn);
    const double right = region.x + region.width - 1, bottom = region.y + region.height - 1;
    const double corners[4][2] = {
        {double(region.x), double(region.y)}, {right, double(region.y)}, {right, bottom}, {double(region.x), bottom}};
    for (int32 k = 0; k < 4; ++k) {
        Expect(IsNear(quad[k][0], c * corners[k][0] + s * corners[k][1] + xShift) &&
                   IsNear(quad[k][1], -s * corners[k][0] + c * corners[k][1] + yShift),
               "a corner goes where the map takes it");
    }
}

void Judge_primGetRotateBound(Judge& j) {
    const ImageSize size = j.AnySize();
    ImageRect region{j.choices.Int(0, 50), j.choices.Int(0, 50), size.width, size.height};
    const double angle = j.choices.Int(-80000, 80000) / 100.0;
    double quad[4][2] = {}, bound[2][2] = {};
    Expect(primGetRotateQuad(region, quad, angle, 1.5, -2.0) == kOk, "a quad is found");
    const ImageSize told = j.Roi(size);
    region.width = told.width;
    region.height = told.height;
    if (!j.Did(primGetRotateBound(region, j.At(bound), angle, 1.5, -2.0))) return;
    for (int32 axis = 0; axis < 2; ++axis) {
        const auto [least, most] = std::minmax({quad[0][axis], quad[1][axis], quad[2][axis], quad[3][axis]});
        Expect(bound[0][axis] == least && bound[1][axis] == most, "a bound is that of the quad");
    }
}

} // namespace orvane::fuzz
