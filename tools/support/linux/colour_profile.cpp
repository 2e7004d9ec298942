#include "tools/support/colour_profile.h"

#include "tools/support/linux/colour_transform.h"
#include "tools/support/srgb_grid.h"

#include <array>

namespace orvane::tools {
namespace {

cmsUInt32Number FormatOf(const ColourRows& rows) {
    if (rows.pixel == 4) return rows.redFirst ? TYPE_RGBA_8 : TYPE_BGRA_8;
    return rows.redFirst ? TYPE_RGB_8 : TYPE_BGR_8;
}

bool IsSrgb(const ProfilePtr& profile) {
    const TransformPtr transform = IntoSrgb(profile, TYPE_RGB_8, TYPE_RGB_8);
    return transform != nullptr && KeepsColours([&](const ColourLevels& from) {
               ColourLevels to{};
               cmsDoTransform(transform.get(), from.data(), to.data(), 1);
               return to;
           });
}

template <typename Change>
bool ForEachRow(const ColourRows& rows, const Change& change) {
    for (int32 y = 0; y < rows.height; ++y) {
        if (!change(rows.pixels + rows.row * y)) return false;
    }
    return true;
}

bool ConvertColours(const ProfilePtr& profile, const ColourRows& rows) {
    const TransformPtr transform = IntoSrgb(profile, FormatOf(rows), FormatOf(rows));
    if (transform == nullptr) return false;
    if (IsSrgb(profile)) return true;
    return ForEachRow(rows, [&](uint8* row) {
        cmsDoTransform(transform.get(), row, row, static_cast<cmsUInt32Number>(rows.width));
        return true;
    });
}

/// A profile of grey, which only a picture without colours has.
bool ConvertGrey(const ProfilePtr& profile, const ColourRows& rows) {
    const TransformPtr transform = IntoSrgb(profile, TYPE_GRAY_8, TYPE_RGB_8);
    if (transform == nullptr) return false;
    const auto pixels = [&](uint8* row, auto&& each) {
        for (int32 x = 0; x < rows.width; ++x, row += rows.pixel) {
            if (!each(row)) return false;
        }
        return true;
    };
    const auto isGrey = [](const uint8* pixel) { return pixel[0] == pixel[1] && pixel[1] == pixel[2]; };
    if (!ForEachRow(rows, [&](uint8* row) { return pixels(row, isGrey); })) return false;
    std::array<uint8, 256> levels{};
    for (std::size_t i = 0; i < levels.size(); ++i) {
        const auto from = static_cast<uint8>(i);
        std::array<uint8, 3> to{};
        cmsDoTransform(transform.get(), &from, to.data(), 1);
        levels[i] = to[1];
    }
    return ForEachRow(rows, [&](uint8* row) {
        return pixels(row, [&](uint8* pixel) {
            pixel[0] = pixel[1] = pixel[2] = levels[pixel[0]];
            return true;
        });
    });
}

} // namespace

bool ConvertToSrgb(const std::string& bytes, const ColourRows& rows) {
    const ProfilePtr profile = OpenProfile(bytes);
    if (profile == nullptr) return false;
    if (cmsGetColorSpace(profile.get()) == cmsSigGrayData) return ConvertGrey(profile, rows);
    return ConvertColours(profile, rows);
}

} // namespace orvane::tools
