// Gradients and edges.
#include "fuzz/primitives/judge.h"
#include "tests/reference/edge.h"

#include <algorithm>
#include <vector>

namespace orvane::fuzz {
namespace {

namespace reference = test::reference;

/// Of the size that was asked for, at an odd address; the sanitizer watches its end.
class WorkBuffer {
public:
    explicit WorkBuffer(int32 bytes) : bytes_(static_cast<std::size_t>(bytes) + 1, 0xA5) {
        Expect(bytes >= 1, "a work buffer has a size");
    }
    uint8* Data() { return bytes_.data() + 1; }

private:
    std::vector<uint8> bytes_;
};

using Kernel = std::vector<int32>;
struct Mask {
    Kernel smooth, slope;
};
const Mask kSobel3{{1, 2, 1}, {-1, 0, 1}}, kSobel5{{1, 4, 6, 4, 1}, {-1, -2, 0, 2, 1}}, kScharr{{3, 10, 3}, {-1, 0, 1}};

/// @param filter of (src, srcStep, dst, dstStep, roi, mask code, border, value, buffer)
template <typename Filter, typename BufferSize>
void JudgeGradient(Judge& j, bool sobel, bool horizontal, Filter filter, BufferSize bufferSize) {
    const ImageSize roi = j.AnySize();
    const bool large = sobel && j.choices.Flag();
    const int32 code = large ? kMask5x5 : kMask3x3;
    const int32 border = j.choices.Int(0, 31) == 31 ? j.choices.AnyInt() : j.choices.Int(0, kLastBorderType);
    const uint8 value = j.choices.Byte();
    const Plane<uint8> src = j.Source<uint8>(roi.width, roi.height);
    Plane<int16> result = j.Output<int16>(roi.width, roi.height), expected = result;
    int32 bytes = 0;
    Expect(bufferSize(roi, code, &bytes) == kOk, "a buffer's size is told");
    WorkBuffer buffer(bytes);
    const int32 status = filter(j.At(src.Data()), j.Step(src.Step()), j.At(result.Data()), result.Step(), j.Roi(roi),
                                code, border, value, j.At(buffer.Data()));
    const Mask& mask = !sobel ? kScharr : large ? kSobel5 : kSobel3;
    if (j.Did(status, border < 0 || border > kLastBorderType ? kBadArgument : kOk)) {
        reference::Gradient(src, expected, roi, horizontal ? mask.slope : mask.smooth,
                            horizontal ? mask.smooth : mask.slope, border == kBorderConstant, value);
    }
    Judge::Same(result, expected);
}

void JudgeSobelHoriz(Judge& j) {
    JudgeGradient(j, true, true, primFilterSobelHorizBorder_8u16s_C1, primFilterSobelHorizGetBufferSize);
}
void JudgeSobelNegVert(Judge& j) {
    JudgeGradient(j, true, false, primFilterSobelNegVertBorder_8u16s_C1, primFilterSobelNegVertGetBufferSize);
}
void JudgeScharrHoriz(Judge& j) {
    JudgeGradient(
        j, false, true,
        [](const uint8* src, int32 srcStep, int16* dst, int32 dstStep, ImageSize roi, int32, int32 border, uint8 value,
           uint8* buffer) {
            return primFilterScharrHorizBorder_8u16s_C1(src, srcStep, dst, dstStep, roi, border, value, buffer);
        },
        [](ImageSize roi, int32, int32* size) { return primFilterScharrHorizGetBufferSize(roi, size); });
}
void JudgeScharrVert(Judge& j) {
    JudgeGradient(
        j, false, false,
        [](const uint8* src, int32 srcStep, int16* dst, int32 dstStep, ImageSize roi, int32, int32 border, uint8 value,
           uint8* buffer) {
            return primFilterScharrVertBorder_8u16s_C1(src, srcStep, dst, dstStep, roi, border, value, buffer);
        },
        [](ImageSize roi, int32, int32* size) { return primFilterScharrVertGetBufferSize(roi, size); });
}

/// Queries about regions of any size.
template <typename Query>
void JudgeQuery(Judge& j, Query query) {
    const ImageSize roi{j.choices.AnyInt(), j.choices.AnyInt()};
    int32 size = -1;
    const int32 status = query(roi, &size);
    Expect(status == (HasPixels(roi) ? kOk : kBadSize), "a region without pixels is refused");
    Expect((size >= 1) == (status == kOk), "a size is told of a good region alone");
    Expect(query({1, 1}, nullptr) == kNullPointer, "it is told somewhere");
}

void JudgeCanny(Judge& j) {
    const ImageSize roi = j.AnySize();
    const Plane<int16> dx = j.Source<int16>(roi.width, roi.height), dy = j.Source<int16>(roi.width, roi.height);
    Plane<uint8> result = j.Output<uint8>(roi.width, roi.height), expected = result;
    const float low = j.choices.Int(0, 31) == 31 ? j.choices.AnyFloat() : static_cast<float>(j.choices.Int(0, 900)) / 2;
    const float high =
        j.choices.Int(0, 31) == 31 ? j.choices.AnyFloat() : low + static_cast<float>(j.choices.Int(0, 9000)) / 4;
    int32 bytes = 0;
    Expect(primCannyGetBufferSize(roi, &bytes) == kOk, "a buffer's size is told");
    WorkBuffer buffer(bytes);
    const int32 status = primCanny_16s8u_C1(j.At(dx.Data()), j.Step(dx.Step()), j.At(dy.Data()), dy.Step(),
                                            j.At(result.Data()), result.Step(), j.Roi(roi), low, high, buffer.Data());
    if (j.Did(status, low >= 0 && high >= low ? kOk : kBadArgument)) reference::Canny(dx, dy, expected, roi, low, high);
    Judge::Same(result, expected);
}

} // namespace

void Judge_primFilterSobelHorizBorder_8u16s_C1(Judge& j) { JudgeSobelHoriz(j); }
void Judge_primFilterSobelNegVertBorder_8u16s_C1(Judge& j) { JudgeSobelNegVert(j); }
void Judge_primFilterScharrHorizBorder_8u16s_C1(Judge& j) { JudgeScharrHoriz(j); }
void Judge_primFilterScharrVertBorder_8u16s_C1(Judge& j) { JudgeScharrVert(j); }
void Judge_primFilterSobelHorizGetBufferSize(Judge& j) {
    JudgeQuery(j, [](ImageSize roi, int32* size) { return primFilterSobelHorizGetBufferSize(roi, kMask3x3, size); });
    int32 size = 0;
    Expect(primFilterSobelHorizGetBufferSize({4, 4}, 44, &size) == kBadMaskSize, "a mask code is known");
}
void Judge_primFilterSobelNegVertGetBufferSize(Judge& j) {
    JudgeQuery(j, [](ImageSize roi, int32* size) { return primFilterSobelNegVertGetBufferSize(roi, kMask5x5, size); });
}
void Judge_primFilterScharrHorizGetBufferSize(Judge& j) { JudgeQuery(j, primFilterScharrHorizGetBufferSize); }
void Judge_primFilterScharrVertGetBufferSize(Judge& j) { JudgeQuery(j, primFilterScharrVertGetBufferSize); }
void Judge_primCanny_16s8u_C1(Judge& j) { JudgeCanny(j); }
void Judge_primCannyGetBufferSize(Judge& j) { JudgeQuery(j, primCannyGetBufferSize); }

} // namespace orvane::fuzz
