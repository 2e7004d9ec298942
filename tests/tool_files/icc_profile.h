// Colour profiles made byte by byte: three primaries, a white point and a power curve.
#pragma once

#include "tests/tools/picture_files.h"

#include <cmath>
#include <string>
#include <vector>

namespace orvane::tools {

/// X, Y and Z of red, green and blue, seen under the light of profiles.
struct Primaries {
    double xyz[3][3];
};

inline constexpr Primaries kDisplayP3{{{0.5151, 0.2412, -0.0011}, {0.2920, 0.6922, 0.0419}, {0.1571, 0.0666, 0.7841}}};
inline constexpr Primaries kSrgbPrimaries{
    {{0.4361, 0.2225, 0.0139}, {0.3851, 0.7169, 0.0971}, {0.1431, 0.0606, 0.7141}}};

inline std::string Fixed(double value) {
    return High32(static_cast<std::uint32_t>(static_cast<std::int32_t>(std::lround(value * 65536))));
}

inline std::string XyzTag(double x, double y, double z) {
    return "XYZ " + std::string(4, '\0') + Fixed(x) + Fixed(y) + Fixed(z);
}

inline std::string CurveTag(double power) {
    return "curv" + std::string(4, '\0') + High32(1) + High16(static_cast<std::uint32_t>(std::lround(power * 256))) +
           std::string(2, '\0');
}

struct IccTag {
    std::string name;
    std::string content;
};

/// Head, list and contents, of a display ("mntr") in `space` ("RGB " or "GRAY").
inline std::string IccFile(const std::string& space, const std::vector<IccTag>& tags) {
    std::string list = High32(static_cast<std::uint32_t>(tags.size()));
    std::string contents;
    const std::size_t begin = 128 + 4 + 12 * tags.size();
    for (const IccTag& tag : tags) {
        list += tag.name + High32(static_cast<std::uint32_t>(begin + contents.size())) +
                High32(static_cast<std::uint32_t>(tag.content.size()));
        contents += tag.content + std::string((4 - tag.content.size() % 4) % 4, '\0');
    }
    const auto size = static_cast<std::uint32_t>(begin + contents.size());
    const std::string date = High16(2026) + High16(1) + High16(1) + std::string(6, '\0');
    std::string head = High32(size) + std::string(4, '\0') + High32(0x02100000) + "mntr" + space + "XYZ " + date +
                       "acsp" + std::string(28, '\0') + Fixed(0.9642) + Fixed(1) + Fixed(0.8249);
    head.resize(128);
    return head + list + contents;
}

inline std::string TextTags(const std::string& kind, const std::string& text) {
    std::string content = kind + std::string(4, '\0');
    if (kind == "desc") {
        content +=
            High32(static_cast<std::uint32_t>(text.size() + 1)) + text + std::string(1 + 4 + 4 + 2 + 1 + 67, '\0');
    } else {
        content += text + '\0';
    }
    return content;
}

/// With a power curve of 563/256, which is 2.2 as profiles write it.
inline std::string ColourProfile(const Primaries& p, double power = 563.0 / 256) {
    return IccFile("RGB ", {{"desc", TextTags("desc", "test")},
                            {"cprt", TextTags("text", "none")},
                            {"wtpt", XyzTag(0.9642, 1, 0.8249)},
                            {"rXYZ", XyzTag(p.xyz[0][0], p.xyz[0][1], p.xyz[0][2])},
                            {"gXYZ", XyzTag(p.xyz[1][0], p.xyz[1][1], p.xyz[1][2])},
                            {"bXYZ", XyzTag(p.xyz[2][0], p.xyz[2][1], p.xyz[2][2])},
                            {"rTRC", CurveTag(power)},
                            {"gTRC", CurveTag(power)},
                            {"bTRC", CurveTag(power)}});
}

inline std::string GreyProfile(double power) {
    return IccFile("GRAY", {{"desc", TextTags("desc", "test")},
                            {"cprt", TextTags("text", "none")},
                            {"wtpt", XyzTag(0.9642, 1, 0.8249)},
                            {"kTRC", CurveTag(power)}});
}

/// A JPEG stream with the profile in as many segments as `part` bytes each make.
inline std::string WithProfile(const std::string& jpeg, const std::string& profile, std::size_t part = 65000) {
    const std::size_t count = (profile.size() + part - 1) / part;
    std::string file = jpeg;
    for (std::size_t i = count; i > 0; --i) { // each goes in front of the ones before
        const std::string numbers{static_cast<char>(i), static_cast<char>(count)};
        file =
            WithSegment(file, 0xE2, std::string("ICC_PROFILE\0", 12) + numbers + profile.substr((i - 1) * part, part));
    }
    return file;
}

} // namespace orvane::tools
