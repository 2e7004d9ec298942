// The colour management library's objects, and the one way in which they are used here.
#pragma once

#include <lcms2.h>
#include <memory>
#include <string>

namespace orvane::tools {

struct CloseProfile {
    void operator()(void* profile) const { cmsCloseProfile(profile); }
};
using ProfilePtr = std::unique_ptr<void, CloseProfile>;

struct DeleteTransform {
    void operator()(void* transform) const { cmsDeleteTransform(transform); }
};
using TransformPtr = std::unique_ptr<void, DeleteTransform>;

/// Null for bytes that are no profile.
inline ProfilePtr OpenProfile(const std::string& bytes) {
    return ProfilePtr(cmsOpenProfileFromMem(bytes.data(), static_cast<cmsUInt32Number>(bytes.size())));
}

/// Into sRGB. Null where the profile has no way there from samples in the format `from`.
inline TransformPtr IntoSrgb(const ProfilePtr& profile, cmsUInt32Number from, cmsUInt32Number to) {
    const ProfilePtr srgb(cmsCreate_sRGBProfile());
    return TransformPtr(cmsCreateTransform(profile.get(), from, srgb.get(), to, INTENT_RELATIVE_COLORIMETRIC,
                                           cmsFLAGS_BLACKPOINTCOMPENSATION));
}

} // namespace orvane::tools
