// How a primitive is judged: planes of any shape, step and contents, a call of which an argument may be bad, and the
// comparison with a plain form, guard bytes included. Each entry of primitives/entries.h has a function of its own
// here, Judge_ and its name.
#pragma once

#include "fuzz/support/choices.h"
#include "fuzz/support/expect.h"
#include "primitives/primitives.h"
#include "tests/support/plane.h"

#include <type_traits>

namespace orvane::fuzz {

using test::Plane;

class Judge {
public:
    explicit Judge(const Choices& input)
        : choices(input), random(choices.Byte() * 256U + choices.Byte()), spoil_(SpoilOf(choices.Byte())),
          pointersLeft_(choices.Int(0, 3)) {}

    Choices choices;
    test::Random random;

    ImageSize AnySize(int32 most = 200) {
        const int32 width = choices.Int(1, most);
        return {width, choices.Int(1, 20)};
    }

    /// To read from, or to write to, filled from the choices.
    template <typename T>
    Plane<T> Source(int32 rowElements, int32 height) {
        Plane<T> plane = Plane<T>::Source(rowElements, height, random);
        Fill(plane);
        return plane;
    }
    template <typename T>
    Plane<T> Output(int32 rowElements, int32 height) {
        Plane<T> plane = Plane<T>::Output(rowElements, height, random);
        Fill(plane);
        return plane;
    }

    /// Arguments of the call, of which one may be spoilt: a step only of a primitive that tests it.
    template <typename T>
    T* At(T* pointer) {
        if (spoil_ != Spoil::pointer || pointersLeft_-- != 0) return pointer;
        spoilt_ = true;
        return nullptr;
    }
    ImageSize Roi(ImageSize roi) {
        if (spoil_ != Spoil::size) return roi;
        spoilt_ = true;
        (pointersLeft_ % 2 == 0 ? roi.width : roi.height) = pointersLeft_ < 2 ? 0 : -roi.height;
        return roi;
    }
    int32 Step(int32 step) {
        if (spoil_ != Spoil::step) return step;
        spoilt_ = true;
        return -pointersLeft_;
    }

    /// Whether the call did its work: after a good one the status is the expected one, after a spoilt one an error.
    bool Did(int32 status, int32 expected = kOk) {
        if (spoilt_) {
            Expect(status < 0, "a bad argument is refused");
            return false;
        }
        if (status != expected) std::fprintf(stderr, "status %d, expected %d\n", status, expected);
        Expect(status == expected, "a primitive answers as its plain form");
        return status == kOk;
    }

    template <typename T>
    static void Same(const Plane<T>& result, const Plane<T>& expected) {
        Expect(result.HasBytesOf(expected), "a primitive writes what its plain form writes and nothing beside");
    }

private:
    enum class Spoil { none, pointer, size, step };

    static Spoil SpoilOf(uint8 byte) {
        return byte >= 240 ? Spoil::pointer : byte >= 232 ? Spoil::size : byte >= 224 ? Spoil::step : Spoil::none;
    }

    /// Noise as it is, few levels, one level, or what the input holds.
    template <typename T>
    void Fill(Plane<T>& plane) {
        const int32 kind = choices.Int(0, 3);
        const uint8 low = choices.Byte(), high = choices.Byte();
        for (int32 y = 0; y < plane.Height() && kind != 0; ++y) {
            for (int32 x = 0; x < plane.RowElements(); ++x) {
                const uint8 level = kind == 1   ? (random.Bits() >> 31 != 0 ? high : low)
                                    : kind == 2 ? low
                                                : choices.Byte();
                plane.At(x, y) = static_cast<T>(level);
            }
        }
        if constexpr (std::is_same_v<T, int16>) Spread(plane, choices.Int(1, 128));
    }
    static void Spread(Plane<int16>& plane, int32 factor) {
        for (int32 y = 0; y < plane.Height(); ++y) {
            for (int32 x = 0; x < plane.RowElements(); ++x) {
                plane.At(x, y) = static_cast<int16>((plane.At(x, y) % 256 - 128) * factor);
            }
        }
    }

    Spoil spoil_;
    int32 pointersLeft_;
    bool spoilt_ = false;
};

#define ORVANE_DECLARE_JUDGE(name) void Judge_##name(Judge& j);
ORVANE_PRIMITIVE_ENTRIES(ORVANE_DECLARE_JUDGE)
#undef ORVANE_DECLARE_JUDGE

} // namespace orvane::fuzz
