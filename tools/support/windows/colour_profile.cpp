#include "tools/support/colour_profile.h"

#include "tools/support/srgb_grid.h"

#include <windows.h>

#include <icm.h>

#include <array>
#include <new>
#include <vector>

namespace orvane::tools {
namespace {

constexpr DWORD kSrgb = 0x73524742; // LCS_sRGB, whose four letters in one compilers warn of

class Profile {
public:
    Profile(DWORD type, void* data, DWORD size) {
        PROFILE profile{type, data, size};
        handle_ = OpenColorProfileW(&profile, PROFILE_READ, FILE_SHARE_READ, OPEN_EXISTING);
    }
    ~Profile() {
        if (handle_ != nullptr) CloseColorProfile(handle_);
    }
    Profile(const Profile&) = delete;
    Profile& operator=(const Profile&) = delete;
    HPROFILE Get() const { return handle_; }

private:
    HPROFILE handle_ = nullptr;
};

/// From a profile's colours into sRGB, as the system's file tells those.
class Transform {
public:
    explicit Transform(const Profile& from) {
        std::array<wchar_t, MAX_PATH> path{};
        DWORD bytes = sizeof(path);
        if (from.Get() == nullptr || !GetStandardColorSpaceProfileW(nullptr, kSrgb, path.data(), &bytes)) return;
        const Profile srgb(PROFILE_FILENAME, path.data(), bytes);
        if (srgb.Get() == nullptr) return;
        std::array<HPROFILE, 2> profiles{from.Get(), srgb.Get()};
        std::array<DWORD, 2> intents{INTENT_RELATIVE_COLORIMETRIC, INTENT_RELATIVE_COLORIMETRIC};
        handle_ = CreateMultiProfileTransform(profiles.data(), 2, intents.data(), 2, BEST_MODE, INDEX_DONT_CARE);
    }
    ~Transform() {
        if (handle_ != nullptr) DeleteColorTransform(handle_);
    }
    Transform(const Transform&) = delete;
    Transform& operator=(const Transform&) = delete;

    bool IsOpen() const { return handle_ != nullptr; }

    /// Translates colours where they lie. Calls for whole bitmaps do not say in which order their samples are.
    bool Translate(std::vector<COLOR>* colours) const {
        return TranslateColors(handle_, colours->data(), static_cast<DWORD>(colours->size()), COLOR_RGB,
                               colours->data(), COLOR_RGB) != FALSE;
    }

private:
    HTRANSFORM handle_ = nullptr;
};

constexpr WORD Wide(uint8 level) { return static_cast<WORD>(level * 257); }
constexpr uint8 Narrow(WORD level) { return static_cast<uint8>((level + 128) / 257); }

bool IsSrgb(const Transform& transform) {
    return KeepsColours([&](const ColourLevels& from) {
        std::vector<COLOR> colour(1);
        colour[0].rgb = {Wide(from[0]), Wide(from[1]), Wide(from[2])};
        if (!transform.Translate(&colour)) return ColourLevels{};
        return ColourLevels{Narrow(colour[0].rgb.red), Narrow(colour[0].rgb.green), Narrow(colour[0].rgb.blue)};
    });
}

/// What a profile's head tells.
bool IsOfColours(const std::string& profile) { return profile.size() > 128 && profile.compare(16, 4, "RGB ") == 0; }

} // namespace

bool ConvertToSrgb(const std::string& bytes, const ColourRows& rows) {
    if (!IsOfColours(bytes)) return false;
    std::string copy = bytes;
    const Profile profile(PROFILE_MEMBUFFER, copy.data(), static_cast<DWORD>(copy.size()));
    const Transform transform(profile);
    if (!transform.IsOpen()) return false;
    if (IsSrgb(transform)) return true;
    const std::ptrdiff_t red = rows.redFirst ? 0 : 2;
    std::vector<COLOR> colours(static_cast<std::size_t>(rows.width));
    for (int32 y = 0; y < rows.height; ++y) {
        uint8* pixel = rows.pixels + rows.row * y;
        for (COLOR& colour : colours) {
            colour.rgb = {Wide(pixel[red]), Wide(pixel[1]), Wide(pixel[2 - red])};
            pixel += rows.pixel;
        }
        if (!transform.Translate(&colours)) throw std::bad_alloc(); // what it can do was tried above
        pixel = rows.pixels + rows.row * y;
        for (const COLOR& colour : colours) {
            pixel[red] = Narrow(colour.rgb.red);
            pixel[1] = Narrow(colour.rgb.green);
            pixel[2 - red] = Narrow(colour.rgb.blue);
            pixel += rows.pixel;
        }
    }
    return true;
}

} // namespace orvane::tools
