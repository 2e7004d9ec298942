// Fills, copies, frames.
#include "fuzz/primitives/judge.h"

namespace orvane::fuzz {
namespace {

template <typename T>
void JudgeSet(Judge& j, int32 (*set)(T, T*, int32, ImageSize), T value) {
    const ImageSize roi = j.AnySize();
    Plane<T> result = j.Output<T>(roi.width, roi.height), expected = result;
    const int32 status = set(value, j.At(result.Data()), j.Step(result.Step()), j.Roi(roi));
    if (j.Did(status)) expected.FillRegion(value);
    Judge::Same(result, expected);
}

template <typename T>
void JudgeCopy(Judge& j, int32 (*copy)(const T*, int32, T*, int32, ImageSize), int32 channels) {
    const ImageSize roi = j.AnySize();
    const Plane<T> src = j.Source<T>(channels * roi.width, roi.height);
    Plane<T> result = j.Output<T>(channels * roi.width, roi.height), expected = result;
    const int32 status = copy(j.At(src.Data()), src.Step(), j.At(result.Data()), result.Step(), j.Roi(roi));
    if (j.Did(status)) {
        for (int32 y = 0; y < roi.height; ++y) {
            for (int32 x = 0; x < channels * roi.width; ++x) expected.At(x, y) = src.At(x, y);
        }
    }
    Judge::Same(result, expected);
}

template <typename T>
void JudgeFrame(Judge& j, int32 (*frame)(const T*, int32, ImageSize, T*, int32, ImageSize, int32, int32, T), T value) {
    const ImageSize size = j.AnySize();
    const int32 top = j.choices.Int(0, 5), left = j.choices.Int(0, 9);
    const ImageSize whole{left + size.width + j.choices.Int(0, 9), top + size.height + j.choices.Int(0, 5)};
    const Plane<T> src = j.Source<T>(size.width, size.height);
    Plane<T> result = j.Output<T>(whole.width, whole.height), expected = result;
    const int32 status = frame(j.At(src.Data()), j.Step(src.Step()), j.Roi(size), j.At(result.Data()), result.Step(),
                               whole, top, left, value);
    if (j.Did(status)) {
        expected.FillRegion(value);
        for (int32 y = 0; y < size.height; ++y) {
            for (int32 x = 0; x < size.width; ++x) expected.At(left + x, top + y) = src.At(x, y);
        }
    }
    Judge::Same(result, expected);
}

} // namespace

void Judge_primSet_8u_C1(Judge& j) { JudgeSet(j, primSet_8u_C1, j.choices.Byte()); }
void Judge_primSet_16s_C1(Judge& j) { JudgeSet(j, primSet_16s_C1, static_cast<int16>(j.choices.Bits())); }
void Judge_primSet_32f_C1(Judge& j) { JudgeSet(j, primSet_32f_C1, j.choices.AnyFloat()); }
void Judge_primSet_8u_C3(Judge& j) {
    const ImageSize roi = j.AnySize();
    const uint8 value[3] = {j.choices.Byte(), j.choices.Byte(), j.choices.Byte()};
    Plane<uint8> result = j.Output<uint8>(3 * roi.width, roi.height), expected = result;
    const int32 status = primSet_8u_C3(j.At(value), j.At(result.Data()), j.Step(result.Step()), j.Roi(roi));
    if (j.Did(status)) {
        for (int32 y = 0; y < roi.height; ++y) {
            for (int32 x = 0; x < 3 * roi.width; ++x) expected.At(x, y) = value[x % 3];
        }
    }
    Judge::Same(result, expected);
}

void Judge_primCopy_8u_C1(Judge& j) { JudgeCopy(j, primCopy_8u_C1, 1); }
void Judge_primCopy_8u_C3(Judge& j) { JudgeCopy(j, primCopy_8u_C3, 3); }
void Judge_primCopy_16u_C1(Judge& j) { JudgeCopy(j, primCopy_16u_C1, 1); }
void Judge_primCopy_32f_C1(Judge& j) { JudgeCopy(j, primCopy_32f_C1, 1); }

void Judge_primCopyConstBorder_8u_C1(Judge& j) { JudgeFrame(j, primCopyConstBorder_8u_C1, j.choices.Byte()); }
void Judge_primCopyConstBorder_16s_C1(Judge& j) {
    JudgeFrame(j, primCopyConstBorder_16s_C1, static_cast<int16>(j.choices.Bits()));
}

} // namespace orvane::fuzz
