#include "tools/print/printed_portrait.h"

#include "tools/support/density.h"
#include "tools/support/orientation.h"
#include "tools/support/picture_io.h"
#include "tools/support/whole_file.h"

#include <cmath>
#include <utility>

namespace orvane::tools {
namespace {

/// Sides in whole pixels differ from a size in millimetres by less, or it is another size.
constexpr double kMostDistortion = 0.01;

constexpr double kLeastSide = 5;

/// By the file's own resolution.
std::optional<PaperSize> OwnSize(const Picture& picture, const std::string& content) {
    std::optional<Density> density = DensityOf(content);
    if (!density) return std::nullopt;
    constexpr int kFirstTurned = 5; // by these orientations rows became columns
    if (NotedOrientation(content) >= kFirstTurned) std::swap(density->across, density->down);
    return PaperSize{picture.width / density->across * kMillimetresAnInch,
                     picture.height / density->down * kMillimetresAnInch};
}

bool HasProportions(const Picture& picture, const PaperSize& size) {
    return std::abs(picture.width * size.height / (picture.height * size.width) - 1) <= kMostDistortion;
}

} // namespace

bool ReadPortrait(const std::string& path, const std::optional<PaperSize>& size, PrintedPortrait* portrait,
                  std::string* error) {
    PictureNotes notes;
    if (!ReadWholeFile(path, &portrait->content, error)) return false;
    if (!ReadPicture(path, &portrait->picture, &notes, error)) return false;
    portrait->path = path;
    portrait->warning = notes.warning;
    const Picture& picture = portrait->picture;
    const std::string pixels = std::to_string(picture.width) + "x" + std::to_string(picture.height) + " pixels";
    const std::optional<PaperSize> printed = size ? size : OwnSize(picture, portrait->content);
    if (!printed) {
        *error = "does not tell its resolution; --size, such as 35x45mm, tells how large it is";
    } else if (!HasProportions(picture, *printed) && size) {
        *error = "has " + pixels + ", which are not in the proportions of " + SizeText(*size);
    } else if (printed->width < kLeastSide || printed->height < kLeastSide) {
        *error = "would be " + SizeText(*printed) + " on paper, too small";
    } else {
        portrait->size = *printed;
        return true;
    }
    return false;
}

} // namespace orvane::tools
