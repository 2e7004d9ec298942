// Pictures for tests, painted by integer arithmetic alone: the same bytes on every system.
#pragma once

#include "image/image_buffer.h"
#include "tests/support/random.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <cstring>

namespace orvane::test {

/// A picture of random bytes, row padding included.
inline void MakeRandomPicture(ImageBuffer& picture, int32 width, int32 height, int32 channels, std::uint32_t seed) {
    if (!picture.Create(width, height, channels, kDepth8u, 0)) std::abort();
    Random random(seed);
    const auto bytes = static_cast<std::size_t>(picture.Step()) * static_cast<std::size_t>(height);
    for (std::size_t i = 0; i < bytes; ++i) picture.data[i] = static_cast<uint8>(random.Bits() >> 24);
}

/// Success when two pictures have the same shape and the same pixels; padding plays no part.
inline ::testing::AssertionResult SamePicture(const char* resultText, const char* expectedText,
                                              const ImageBuffer& result, const ImageBuffer& expected) {
    if (result.width != expected.width || result.height != expected.height || result.channels != expected.channels ||
        result.depth != expected.depth || (result.data == nullptr) != (expected.data == nullptr)) {
        return ::testing::AssertionFailure()
               << resultText << " is " << result.width << " by " << result.height << " by " << result.channels
               << (result.data ? "" : " without pixels") << ", " << expectedText << " is " << expected.width << " by "
               << expected.height << " by " << expected.channels << (expected.data ? "" : " without pixels");
    }
    if (result.data == nullptr) return ::testing::AssertionSuccess();
    const int32 rowBytes = result.width * result.channels;
    for (int32 y = 0; y < result.height; ++y) {
        const uint8* a = RowAt(result.data, result.Step(), y);
        const uint8* b = RowAt(expected.data, expected.Step(), y);
        for (int32 x = 0; x < rowBytes; ++x) {
            if (a[x] == b[x]) continue;
            return ::testing::AssertionFailure() << resultText << ": byte " << x << " of row " << y << " is " << +a[x]
                                                 << ", " << expectedText << " has " << +b[x];
        }
    }
    return ::testing::AssertionSuccess();
}

} // namespace orvane::test

/// Expects two ImageBuffers of equal shape and pixels.
#define EXPECT_SAME_PICTURE(result, expected) EXPECT_PRED_FORMAT2(::orvane::test::SamePicture, result, expected)
