// Filters over windows, and flood fills.
#include "fuzz/primitives/judge.h"
#include "tests/reference/flood_fill.h"
#include "tests/reference/morphology.h"

#include <algorithm>
#include <vector>

namespace orvane::fuzz {
namespace {

namespace reference = test::reference;
using Bytes = Plane<uint8>;
using reference::Window;

Window AnyWindow(Judge& j) {
    const int32 most = j.choices.Int(0, 15) == 15 ? 100 : 9; // above 90 by 90 the division is another one
    Window w{j.AnySize(), {j.choices.Int(1, most), j.choices.Int(1, most)}, {0, 0}};
    w.anchor = {j.choices.Int(0, w.mask.width - 1), j.choices.Int(0, w.mask.height - 1)};
    return w;
}

/// All that the windows of a region see.
Bytes PlaneFor(Judge& j, const Window& w) {
    return j.Output<uint8>(w.roi.width + w.mask.width - 1, w.roi.height + w.mask.height - 1);
}

uint8* RegionOf(Bytes& plane, const Window& w) { return &plane.At(w.anchor.x, w.anchor.y); }

void JudgeFlood(Judge& j, int32 neighbours) {
    const ImageSize roi = j.AnySize();
    const ImagePoint seed{j.choices.Int(0, roi.width - 1), j.choices.Int(0, roi.height - 1)};
    const uint8 value = j.choices.Byte();
    Bytes result = j.Output<uint8>(roi.width, roi.height), expected = result;
    int32 bytes = 0;
    Expect(primFloodFillGetSize(roi, &bytes) == kOk, "a buffer's size is told");
    std::vector<uint8> buffer(static_cast<std::size_t>(bytes) + 1, 0xA5);
    ConnectedRegion region{-1, {-1, -1, -1}, {-1, -1, -1, -1}};
    const auto entry = neighbours == 4 ? primFloodFill4_8u_C1I : primFloodFill8_8u_C1I;
    const int32 status = entry(j.At(result.Data()), j.Step(result.Step()), j.Roi(roi), seed, value, j.At(&region),
                               j.At(buffer.data() + 1));
    const bool did = j.Did(status);
    if (!did || result.HasBytesOf(expected)) {
        Judge::Same(result, expected);
        const bool same = did && expected.At(seed.x, seed.y) == value;
        Expect(!same || region.area == -1, "a seed that has the value already changes not even the region");
        Expect(!did || same, "every other seed changes something");
        return;
    }
    const ConnectedRegion plain = reference::FloodFill(expected, roi, seed, value, neighbours);
    Judge::Same(result, expected);
    Expect(region.area == plain.area && region.value[0] == plain.value[0] && region.rect.x == plain.rect.x &&
               region.rect.y == plain.rect.y && region.rect.width == plain.rect.width &&
               region.rect.height == plain.rect.height,
           "a region is told as it is");
}

} // namespace

void Judge_primErode3x3_8u_C1I(Judge& j) {
    Window w{j.AnySize(), {3, 3}, {1, 1}};
    Bytes result = PlaneFor(j, w), expected = result;
    const std::vector<uint8> all(9, 1);
    const int32 status = primErode3x3_8u_C1I(j.At(RegionOf(result, w)), j.Step(result.Step()), j.Roi(w.roi));
    if (j.Did(status)) reference::Erode(expected, w, all.data());
    Judge::Same(result, expected);
}

void Judge_primErode_8u_C1I(Judge& j) {
    const Window w = AnyWindow(j);
    Bytes result = PlaneFor(j, w), expected = result;
    std::vector<uint8> mask(static_cast<std::size_t>(w.mask.width) * static_cast<std::size_t>(w.mask.height));
    const int32 share = j.choices.Int(0, 8);
    for (uint8& cell : mask) cell = j.random.Int(0, 7) < share ? static_cast<uint8>(j.random.Int(1, 255)) : uint8{0};
    const bool empty = std::all_of(mask.begin(), mask.end(), [](uint8 cell) { return cell == 0; });
    const int32 status = primErode_8u_C1I(j.At(RegionOf(result, w)), j.Step(result.Step()), j.Roi(w.roi),
                                          j.At(mask.data()), w.mask, w.anchor);
    if (j.Did(status, empty ? kEmptyMask : kOk)) reference::Erode(expected, w, mask.data());
    Judge::Same(result, expected);
}

void Judge_primFilterBox_8u_C1I(Judge& j) {
    const Window w = AnyWindow(j);
    Bytes result = PlaneFor(j, w), expected = result;
    const int32 status =
        primFilterBox_8u_C1I(j.At(RegionOf(result, w)), j.Step(result.Step()), j.Roi(w.roi), w.mask, w.anchor);
    if (j.Did(status)) reference::Box(expected, w);
    Judge::Same(result, expected);
}

void Judge_primFloodFill4_8u_C1I(Judge& j) { JudgeFlood(j, 4); }
void Judge_primFloodFill8_8u_C1I(Judge& j) { JudgeFlood(j, 8); }
void Judge_primFloodFillGetSize(Judge& j) {
    const ImageSize roi{j.choices.AnyInt(), j.choices.AnyInt()};
    int32 size = 0;
    const int32 status = primFloodFillGetSize(roi, &size);
    Expect(status == (HasPixels(roi) ? kOk : kBadSize), "a region without pixels is refused");
    const auto told = static_cast<int32>(
        static_cast<uint32>(6 * static_cast<uint64>(roi.width) * static_cast<uint64>(roi.height) + 32));
    Expect(status != kOk || size == told, "a size is six bytes a pixel and 32, cut to 32 bits");
    Expect(primFloodFillGetSize({1, 1}, nullptr) == kNullPointer, "it is told somewhere");
}

} // namespace orvane::fuzz
