// Picture files made byte by byte, so that the reader is judged by something else than the writer.
#pragma once

#include "tools/support/picture_io.h"

#include <array>
#include <cstdint>
#include <gtest/gtest.h>
#include <string>
#include <vector>

namespace orvane::tools {

struct Colour {
    int red;
    int green;
    int blue;
};

inline constexpr Colour kRed{220, 30, 30};
inline constexpr Colour kGreen{30, 200, 40};
inline constexpr Colour kBlue{20, 40, 230};
inline constexpr Colour kYellow{240, 220, 20};

/// All rows of a picture, as they lie.
inline std::vector<uint8> AllRowsOf(const Picture& picture) { return {picture.pixels.begin(), picture.pixels.end()}; }

/// Pixel of a picture, y counted from the top.
inline Colour PixelAt(const Picture& picture, int32 x, int32 y) {
    const uint8* pixel = RowAt(picture.pixels.data(), picture.step, picture.height - 1 - y) + std::ptrdiff_t{x} * 3;
    return {pixel[2], pixel[1], pixel[0]};
}

inline void SetPixel(Picture& picture, int32 x, int32 y, Colour colour) {
    uint8* pixel = RowAt(picture.pixels.data(), picture.step, picture.height - 1 - y) + std::ptrdiff_t{x} * 3;
    pixel[0] = static_cast<uint8>(colour.blue);
    pixel[1] = static_cast<uint8>(colour.green);
    pixel[2] = static_cast<uint8>(colour.red);
}

inline Picture BlackPicture(int32 width, int32 height) {
    Picture picture;
    picture.width = width;
    picture.height = height;
    picture.step = PictureStep(width);
    picture.pixels = PixelBlock(PictureBytes(width, height));
    return picture;
}

/// Every pixel another colour.
inline Picture ColourfulPicture(int32 width, int32 height) {
    Picture picture = BlackPicture(width, height);
    for (int32 y = 0; y < height; ++y) {
        for (int32 x = 0; x < width; ++x) SetPixel(picture, x, y, {x * 5 % 256, y * 7 % 256, (x + y * 3) % 256});
    }
    return picture;
}

/// Four flat quarters: red and green above, blue and yellow below.
inline Picture QuarteredPicture(int32 width, int32 height) {
    Picture picture = BlackPicture(width, height);
    for (int32 y = 0; y < height; ++y) {
        for (int32 x = 0; x < width; ++x) {
            const bool left = x < width / 2;
            SetPixel(picture, x, y, y < height / 2 ? (left ? kRed : kGreen) : (left ? kBlue : kYellow));
        }
    }
    return picture;
}

inline testing::AssertionResult IsNear(Colour is, Colour wanted, int tolerance) {
    const auto isFar = [&](int a, int b) { return a > b + tolerance || b > a + tolerance; };
    if (!isFar(is.red, wanted.red) && !isFar(is.green, wanted.green) && !isFar(is.blue, wanted.blue)) {
        return testing::AssertionSuccess();
    }
    return testing::AssertionFailure() << "red, green, blue " << is.red << ", " << is.green << ", " << is.blue
                                       << " instead of " << wanted.red << ", " << wanted.green << ", " << wanted.blue;
}

/// `value` in `count` bytes, the highest first or last.
inline std::string Number(std::uint32_t value, int count, bool highFirst) {
    std::string bytes;
    for (int i = 0; i < count; ++i) {
        const int shift = 8 * (highFirst ? count - 1 - i : i);
        bytes += static_cast<char>(value >> shift & 0xFF);
    }
    return bytes;
}

inline std::string High16(std::uint32_t value) { return Number(value, 2, true); }
inline std::string High32(std::uint32_t value) { return Number(value, 4, true); }
inline std::string Low16(std::uint32_t value) { return Number(value, 2, false); }
inline std::string Low32(std::uint32_t value) { return Number(value, 4, false); }

/// A TIFF block with nothing but the orientation: what an EXIF segment holds.
inline std::string OrientationBlock(int orientation, bool highFirst) {
    const auto n16 = [&](std::uint32_t value) { return Number(value, 2, highFirst); };
    const auto n32 = [&](std::uint32_t value) { return Number(value, 4, highFirst); };
    return (highFirst ? "MM" : "II") + n16(42) + n32(8) + n16(1) + n16(0x0112) + n16(3) + n32(1) +
           n16(static_cast<std::uint32_t>(orientation)) + n16(0) + n32(0);
}

/// `jpeg` with a segment of the given marker and content right after its start.
inline std::string WithSegment(const std::string& jpeg, int marker, const std::string& content) {
    const auto length = static_cast<std::uint32_t>(content.size() + 2);
    return jpeg.substr(0, 2) + "\xFF" + static_cast<char>(marker) + High16(length) + content + jpeg.substr(2);
}

inline std::string WithExif(const std::string& jpeg, int orientation, bool highFirst) {
    return WithSegment(jpeg, 0xE1, std::string("Exif\0\0", 6) + OrientationBlock(orientation, highFirst));
}

inline std::uint32_t Crc32(const std::string& bytes) {
    std::uint32_t crc = 0xFFFFFFFFU;
    for (const char c : bytes) {
        crc ^= static_cast<unsigned char>(c);
        for (int bit = 0; bit < 8; ++bit) crc = (crc & 1) != 0 ? crc >> 1 ^ 0xEDB88320U : crc >> 1;
    }
    return ~crc;
}

inline std::string PngChunk(const std::string& type, const std::string& content) {
    return High32(static_cast<std::uint32_t>(content.size())) + type + content + High32(Crc32(type + content));
}

/// PNG colour types.
enum PngKind : std::uint32_t { kPngGrey = 0, kPngColour = 2, kPngPalette = 3, kPngGreyAlpha = 4, kPngColourAlpha = 6 };

struct PngShape {
    std::uint32_t width;
    std::uint32_t height;
    std::uint32_t bits;
    PngKind kind;
};

/// A zlib stream of at most 65535 bytes, without compression.
inline std::string Stored(const std::string& bytes) {
    std::uint32_t a = 1;
    std::uint32_t b = 0;
    for (const char c : bytes) {
        a = (a + static_cast<unsigned char>(c)) % 65521;
        b = (b + a) % 65521;
    }
    const auto length = static_cast<std::uint32_t>(bytes.size());
    return "\x78\x01\x01" + Low16(length) + Low16(~length & 0xFFFF) + bytes + High32(b << 16 | a);
}

/// A PNG file of the rows in `samples`, top row first, stored without compression. `palette` holds
/// red, green and blue of each entry. The header may lie about what follows.
inline std::string PngFile(PngShape shape, const std::string& samples, const std::string& palette = "") {
    std::string rows;
    const std::size_t rowBytes = samples.size() / shape.height;
    for (std::uint32_t y = 0; y < shape.height && rowBytes > 0; ++y) {
        rows += '\0' + samples.substr(y * rowBytes, rowBytes);
    }
    const std::string header = High32(shape.width) + High32(shape.height) + static_cast<char>(shape.bits) +
                               static_cast<char>(shape.kind) + std::string(3, '\0');
    return "\x89PNG\r\n\x1A\n" + PngChunk("IHDR", header) + (palette.empty() ? "" : PngChunk("PLTE", palette)) +
           PngChunk("IDAT", Stored(rows)) + PngChunk("IEND", "");
}

/// A file in the format of `extension`, by the writer under test.
inline std::string Encoded(const std::string& extension, const Picture& picture) {
    std::string content;
    std::string error;
    EXPECT_TRUE(EncodePicture("x" + extension, picture, &content, &error)) << error;
    return content;
}

} // namespace orvane::tools
