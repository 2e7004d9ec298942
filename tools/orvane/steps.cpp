#include "tools/orvane/steps.h"

#include "image/session_images.h"
#include "session/session_state.h"
#include "tools/orvane/output_names.h"

#include <cstring>

namespace orvane::tools {
namespace {

constexpr const char* kSlotNames[kActionCount] = {"0-crop", "1-background", "2-colour", "3-rotation", "", "5-output"};
constexpr const char* kMaskName = "1-mask";

/// Three channels as they are, one channel as grey.
Picture ToPicture(const ImageBuffer& image) {
    Picture picture;
    picture.width = image.width;
    picture.height = image.height;
    picture.step = PictureStep(image.width);
    picture.pixels = PixelBlock(PictureBytes(image.width, image.height));
    for (int32 y = 0; y < image.height; ++y) {
        const uint8* from = image.data + static_cast<std::ptrdiff_t>(image.Step()) * y;
        uint8* to = picture.pixels.data() + static_cast<std::ptrdiff_t>(picture.step) * y;
        if (image.channels == 3) {
            std::memcpy(to, from, static_cast<std::size_t>(image.width) * 3);
        } else {
            for (int32 x = 0; x < image.width; ++x) std::memset(to + std::ptrdiff_t{3} * x, from[x], 3);
        }
    }
    return picture;
}

void Add(const std::string& name, const ImageBuffer& image, Steps* steps) {
    if (image.data != nullptr && image.depth == kDepth8u) steps->push_back({name, ToPicture(image)});
}

} // namespace

std::vector<std::string> StepNames(const Actions& actions) {
    std::vector<std::string> names;
    if (actions.crop) names.emplace_back(kSlotNames[kSlotCrop]);
    if (actions.background) {
        names.emplace_back(kSlotNames[kSlotBackground]);
        names.emplace_back(kMaskName);
    }
    if (actions.colour) names.emplace_back(kSlotNames[kSlotColour]);
    if (actions.rotation) names.emplace_back(kSlotNames[kSlotRotation]);
    names.emplace_back(kSlotNames[kSlotOutputScaling]); // always runs
    return names;
}

SlotObserver AddTo(Steps* steps) {
    return [steps](int32 slot, const ImageBuffer& picture) {
        Add(kSlotNames[slot], picture, steps);
        // A mask of another size is that of a photo before: this one's background was not looked for.
        const bool ownMask = g_maskImage.width == picture.width && g_maskImage.height == picture.height;
        if (slot == kSlotBackground && ownMask) Add(kMaskName, g_maskImage, steps);
    };
}

std::string StepFile(const std::string& folder, const std::string& photo, const std::string& step) {
    return InFolder(folder, Stem(photo) + "-" + step + ".png");
}

} // namespace orvane::tools
