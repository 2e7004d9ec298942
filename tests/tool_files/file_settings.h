// Pictures and files for tests of what a portrait's file is like.
#pragma once

#include "tests/tools/picture_files.h"
#include "tools/support/picture_io.h"

#include <cstdint>
#include <string>

namespace orvane::tools {

/// Grain over a gradient: it takes as many bytes as a photograph does.
inline Picture GrainyPicture(int32 width, int32 height) {
    Picture picture = BlackPicture(width, height);
    std::uint32_t seed = 1;
    for (int32 y = 0; y < height; ++y) {
        for (int32 x = 0; x < width; ++x) {
            seed = seed * 1664525 + 1013904223;
            const int grain = static_cast<int>(seed >> 27);
            SetPixel(picture, x, y, {80 + x % 100 + grain, 60 + y % 90 + grain, 40 + (x + y) % 80 + grain});
        }
    }
    return picture;
}

/// A file in the format of `extension` with these settings.
inline std::string EncodedWith(const std::string& extension, Picture picture, const PortraitFile& file) {
    std::string content;
    std::string error;
    EXPECT_TRUE(EncodePicture("x" + extension, std::move(picture), file, &content, &error)) << error;
    return content;
}

/// Why there is no such file.
inline std::string Unencodable(const std::string& extension, Picture picture, const FileSettings& settings) {
    std::string content;
    std::string error;
    EXPECT_FALSE(EncodePicture("x" + extension, std::move(picture), {settings, ""}, &content, &error));
    EXPECT_EQ(error.find('\n'), std::string::npos) << error;
    return error;
}

} // namespace orvane::tools
