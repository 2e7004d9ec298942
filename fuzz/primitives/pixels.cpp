// Operations on single pixels and counting over them.
#include "fuzz/primitives/judge.h"
#include "tests/reference/arithmetic.h"
#include "tests/reference/pixel.h"

#include <algorithm>
#include <bit>
#include <limits>
#include <vector>

namespace orvane::fuzz {
namespace {

namespace reference = test::reference;
using Bytes = Plane<uint8>;

template <typename Body>
void ForEachElement(ImageSize roi, int32 channels, Body body) {
    reference::ForEachPixel({channels * roi.width, roi.height}, body);
}

/// The histogram's even levels.
std::vector<int32> EvenLevels(int32 count, int32 lower, int32 upper) {
    std::vector<int32> levels(static_cast<std::size_t>(count), lower);
    const int32 steps = count - 1, whole = (upper - lower) / steps, longer = (upper - lower) % steps;
    for (int32 k = 1; k < count; ++k) {
        levels[static_cast<std::size_t>(k)] = levels[static_cast<std::size_t>(k) - 1] + whole + (k <= longer ? 1 : 0);
    }
    return levels;
}

} // namespace

void Judge_primSetMasked_8u_C1(Judge& j) {
    const ImageSize roi = j.AnySize();
    const Bytes mask = j.Source<uint8>(roi.width, roi.height);
    Bytes result = j.Output<uint8>(roi.width, roi.height), expected = result;
    const uint8 value = j.choices.Byte();
    const int32 status = primSetMasked_8u_C1(value, j.At(result.Data()), j.Step(result.Step()), j.Roi(roi),
                                             j.At(mask.Data()), mask.Step());
    if (j.Did(status)) reference::SetMasked(value, expected, roi, mask);
    Judge::Same(result, expected);
}

void Judge_primCopyMasked_8u_C3(Judge& j) {
    const ImageSize roi = j.AnySize();
    const Bytes src = j.Source<uint8>(3 * roi.width, roi.height), mask = j.Source<uint8>(roi.width, roi.height);
    Bytes result = j.Output<uint8>(3 * roi.width, roi.height), expected = result;
    const int32 status = primCopyMasked_8u_C3(j.At(src.Data()), src.Step(), j.At(result.Data()), result.Step(),
                                              j.Roi(roi), j.At(mask.Data()), mask.Step());
    if (j.Did(status)) reference::CopyMasked3(src, expected, roi, mask);
    Judge::Same(result, expected);
}

void Judge_primCopy_8u_C3P3(Judge& j) {
    const ImageSize roi = j.AnySize();
    const Bytes src = j.Source<uint8>(3 * roi.width, roi.height);
    const Bytes before = j.Output<uint8>(roi.width, roi.height);
    Bytes result[3] = {before, before, before}, expected[3] = {before, before, before};
    uint8* const planes[3] = {j.At(result[0].Data()), j.At(result[1].Data()), result[2].Data()};
    const int32 status = primCopy_8u_C3P3(j.At(src.Data()), src.Step(), planes, before.Step(), j.Roi(roi));
    if (j.Did(status)) {
        ForEachElement(roi, 3, [&](int32 x, int32 y) { expected[x % 3].At(x / 3, y) = src.At(x, y); });
    }
    for (int32 c = 0; c < 3; ++c) Judge::Same(result[c], expected[c]);
}

void Judge_primSwapChannels_8u_C3(Judge& j) {
    const ImageSize roi = j.AnySize();
    const Bytes src = j.Source<uint8>(3 * roi.width, roi.height);
    Bytes result = j.Output<uint8>(3 * roi.width, roi.height), expected = result;
    int32 order[3];
    for (int32& channel : order) channel = j.choices.Int(0, 15) == 15 ? j.choices.AnyInt() : j.choices.Int(0, 2);
    const bool known = std::all_of(order, order + 3, [](int32 c) { return c >= 0 && c <= 2; });
    const int32 status = primSwapChannels_8u_C3(j.At(src.Data()), j.Step(src.Step()), j.At(result.Data()),
                                                result.Step(), j.Roi(roi), j.At(order));
    if (j.Did(status, known ? kOk : kBadChannelOrder)) reference::SwapChannels(src, expected, roi, order);
    Judge::Same(result, expected);
}

void Judge_primAnd_8u_C1I(Judge& j) {
    const ImageSize roi = j.AnySize();
    const Bytes src = j.Source<uint8>(roi.width, roi.height);
    Bytes result = j.Output<uint8>(roi.width, roi.height), expected = result;
    const int32 status =
        primAnd_8u_C1I(j.At(src.Data()), j.Step(src.Step()), j.At(result.Data()), result.Step(), j.Roi(roi));
    if (j.Did(status)) {
        ForEachElement(roi, 1, [&](int32 x, int32 y) { expected.At(x, y) &= src.At(x, y); });
    }
    Judge::Same(result, expected);
}

void Judge_primThresholdLTValGTVal_8u_C1(Judge& j) {
    const ImageSize roi = j.AnySize();
    const Bytes src = j.Source<uint8>(roi.width, roi.height);
    Bytes result = j.Output<uint8>(roi.width, roi.height), expected = result;
    const uint8 low = j.choices.Byte(), lowValue = j.choices.Byte();
    const uint8 high = j.choices.Byte(), highValue = j.choices.Byte();
    const int32 status = primThresholdLTValGTVal_8u_C1(j.At(src.Data()), j.Step(src.Step()), j.At(result.Data()),
                                                       result.Step(), j.Roi(roi), low, lowValue, high, highValue);
    if (j.Did(status, high < low ? kThresholdOrder : kOk)) {
        ForEachElement(roi, 1, [&](int32 x, int32 y) {
            expected.At(x, y) = reference::ThresholdBoth(src.At(x, y), low, lowValue, high, highValue);
        });
    }
    Judge::Same(result, expected);
}

void Judge_primThresholdVal_8u_C1I(Judge& j) {
    const ImageSize roi = j.AnySize();
    Bytes result = j.Output<uint8>(roi.width, roi.height), expected = result;
    const uint8 threshold = j.choices.Byte(), value = j.choices.Byte();
    const int32 op = j.choices.OneOf({int32{kLess}, int32{kGreater}, j.choices.Int(-1, 6)});
    const int32 status =
        primThresholdVal_8u_C1I(j.At(result.Data()), j.Step(result.Step()), j.Roi(roi), threshold, value, op);
    if (j.Did(status, op == kLess || op == kGreater ? kOk : kUnknownCode)) {
        ForEachElement(roi, 1, [&](int32 x, int32 y) {
            if (reference::Compares(expected.At(x, y), threshold, op)) expected.At(x, y) = value;
        });
    }
    Judge::Same(result, expected);
}

void Judge_primCompareC_8u_C1(Judge& j) {
    const ImageSize roi = j.AnySize();
    const Bytes src = j.Source<uint8>(roi.width, roi.height);
    Bytes result = j.Output<uint8>(roi.width, roi.height), expected = result;
    const uint8 value = j.choices.Byte();
    const int32 op = j.choices.Int(-1, 6);
    const int32 status = primCompareC_8u_C1(j.At(src.Data()), j.Step(src.Step()), value, j.At(result.Data()),
                                            result.Step(), j.Roi(roi), op);
    if (j.Did(status) && op >= kLess && op <= kGreater) {
        ForEachElement(roi, 1, [&](int32 x, int32 y) {
            expected.At(x, y) = reference::Compares(src.At(x, y), value, op) ? 255 : 0;
        });
    }
    Judge::Same(result, expected);
}

void Judge_primConvert_8u32f_C3(Judge& j) {
    const ImageSize roi = j.AnySize();
    const Bytes src = j.Source<uint8>(3 * roi.width, roi.height);
    Plane<float> result = j.Output<float>(3 * roi.width, roi.height), expected = result;
    const int32 status =
        primConvert_8u32f_C3(j.At(src.Data()), j.Step(src.Step()), j.At(result.Data()), result.Step(), j.Roi(roi));
    if (j.Did(status)) ForEachElement(roi, 3, [&](int32 x, int32 y) { expected.At(x, y) = src.At(x, y); });
    Judge::Same(result, expected);
}

void Judge_primConvert_32f8u_C3(Judge& j) {
    const ImageSize roi = j.AnySize();
    Plane<float> src = j.Source<float>(3 * roi.width, roi.height);
    for (int32 odd = j.choices.Int(0, 8); odd > 0; --odd) {
        const int32 x = j.choices.Int(0, 3 * roi.width - 1), y = j.choices.Int(0, roi.height - 1);
        src.At(x, y) = j.choices.AnyFloat();
    }
    Bytes result = j.Output<uint8>(3 * roi.width, roi.height), expected = result;
    const int32 mode = j.choices.Int(0, 2);
    const int32 status = primConvert_32f8u_C3(j.At(src.Data()), j.Step(src.Step()), j.At(result.Data()), result.Step(),
                                              j.Roi(roi), mode);
    if (j.Did(status)) {
        ForEachElement(roi, 3,
                       [&](int32 x, int32 y) { expected.At(x, y) = reference::FloatToByte(src.At(x, y), mode); });
    }
    Judge::Same(result, expected);
}

void Judge_primMulC_32f_C3I(Judge& j) {
    const ImageSize roi = j.AnySize();
    Plane<float> result = j.Output<float>(3 * roi.width, roi.height), expected = result;
    float value[3];
    for (float& factor : value) {
        factor = j.choices.AnyFloat();
        if (factor != factor) factor = 1.0F; // the bits of a product that is no number are the processor's
    }
    const int32 status = primMulC_32f_C3I(j.At(value), j.At(result.Data()), result.Step(), j.Roi(roi));
    // Nor those of 0 times infinity.
    const auto product = [](float a, float b) { return static_cast<float>(static_cast<double>(a) * b); };
    if (j.Did(status)) {
        ForEachElement(roi, 3, [&](int32 x, int32 y) {
            const float p = product(expected.At(x, y), value[x % 3]);
            expected.At(x, y) = p;
            if (p != p) {
                Expect(result.At(x, y) != result.At(x, y), "what is no number is none");
                result.At(x, y) = p;
            }
        });
    }
    Judge::Same(result, expected);
}

void Judge_primSubC_8u_C3ISfs(Judge& j) {
    const ImageSize roi = j.AnySize();
    Bytes result = j.Output<uint8>(3 * roi.width, roi.height), expected = result;
    const uint8 value[3] = {j.choices.Byte(), j.choices.Byte(), j.choices.Byte()};
    const int32 scale = j.choices.Flag() ? j.choices.Int(-10, 10) : j.choices.AnyInt();
    const int32 status = primSubC_8u_C3ISfs(j.At(value), j.At(result.Data()), result.Step(), j.Roi(roi), scale);
    if (j.Did(status)) {
        ForEachElement(roi, 3, [&](int32 x, int32 y) {
            expected.At(x, y) = reference::SubtractScaled(expected.At(x, y), value[x % 3], scale);
        });
    }
    Judge::Same(result, expected);
}

void Judge_primRGBToGray_8u_C3C1(Judge& j) {
    const ImageSize roi = j.AnySize();
    const Bytes src = j.Source<uint8>(3 * roi.width, roi.height);
    Bytes result = j.Output<uint8>(roi.width, roi.height), expected = result;
    const int32 status =
        primRGBToGray_8u_C3C1(j.At(src.Data()), src.Step(), j.At(result.Data()), result.Step(), j.Roi(roi));
    if (j.Did(status)) {
        ForEachElement(roi, 1, [&](int32 x, int32 y) {
            expected.At(x, y) = reference::Grey({src.At(3 * x, y), src.At(3 * x + 1, y), src.At(3 * x + 2, y)});
        });
    }
    Judge::Same(result, expected);
}

void Judge_primRGBToHSV_8u_C3(Judge& j) {
    const ImageSize roi = j.AnySize();
    const Bytes src = j.Source<uint8>(3 * roi.width, roi.height);
    Bytes result = j.Output<uint8>(3 * roi.width, roi.height), expected = result;
    const int32 status =
        primRGBToHSV_8u_C3(j.At(src.Data()), src.Step(), j.At(result.Data()), result.Step(), j.Roi(roi));
    if (j.Did(status)) {
        ForEachElement(roi, 1, [&](int32 x, int32 y) {
            const auto hsv = reference::Hsv({src.At(3 * x, y), src.At(3 * x + 1, y), src.At(3 * x + 2, y)});
            for (int32 c = 0; c < 3; ++c) expected.At(3 * x + c, y) = hsv[static_cast<std::size_t>(c)];
        });
    }
    Judge::Same(result, expected);
}

void Judge_primCountInRange_8u_C3(Judge& j) {
    const ImageSize roi = j.AnySize();
    const Bytes src = j.Source<uint8>(3 * roi.width, roi.height);
    uint8 lower[3], upper[3];
    for (int32 c = 0; c < 3; ++c) {
        lower[c] = j.choices.Byte();
        upper[c] = j.choices.Flag() ? j.choices.Byte() : static_cast<uint8>(j.choices.Int(lower[c], 255));
    }
    const bool inOrder = lower[0] <= upper[0] && lower[1] <= upper[1] && lower[2] <= upper[2];
    int32 counts[3] = {-1, -1, -1}, expected[3] = {};
    const int32 status = primCountInRange_8u_C3(j.At(src.Data()), j.Step(src.Step()), j.Roi(roi), j.At(counts),
                                                j.At(lower), j.At(upper));
    if (!j.Did(status, inOrder ? kOk : kBadRange)) return Expect(counts[0] == -1, "a refused call writes nothing");
    ForEachElement(roi, 3, [&](int32 x, int32 y) {
        expected[x % 3] += src.At(x, y) >= lower[x % 3] && src.At(x, y) <= upper[x % 3] ? 1 : 0;
    });
    Expect(std::equal(counts, counts + 3, expected), "a count is right");
}

void Judge_primHistogramEven_8u_C1(Judge& j) {
    const ImageSize roi = j.AnySize();
    const Bytes src = j.Source<uint8>(roi.width, roi.height);
    const int32 count = j.choices.Int(0, 300);
    const int32 lower = j.choices.Int(-20, 255), upper = j.choices.Int(lower, 300);
    std::vector<int32> hist(static_cast<std::size_t>(std::max(count - 1, 1)), -1);
    std::vector<int32> levels(static_cast<std::size_t>(std::max(count, 1)), -1);
    const int32 status = primHistogramEven_8u_C1(j.At(src.Data()), j.Step(src.Step()), j.Roi(roi), j.At(hist.data()),
                                                 j.At(levels.data()), count, lower, upper);
    if (!j.Did(status, count < 2 ? kTooFewLevels : kOk)) return;
    Expect(levels == EvenLevels(count, lower, upper), "levels are even");
    for (std::size_t bin = 0; bin + 1 < levels.size(); ++bin) {
        int32 expected = 0;
        ForEachElement(roi, 1, [&](int32 x, int32 y) {
            expected += src.At(x, y) >= levels[bin] && src.At(x, y) < levels[bin + 1] ? 1 : 0;
        });
        Expect(hist[bin] == expected, "a bin is right");
    }
}

} // namespace orvane::fuzz
