#include "tools/orvane/face_options.h"

#include "tools/sheet/contact_sheet.h"
#include "tools/support/picture.h"
#include "tools/support/portrait_options.h"

#include <vector>

namespace orvane::tools {
namespace {

constexpr auto kFarthest = static_cast<int32>(kMaxPictureSide);

std::vector<std::string> SplitAtCommas(const std::string& text) {
    std::vector<std::string> parts;
    std::size_t start = 0;
    for (std::size_t comma = text.find(','); comma != std::string::npos; comma = text.find(',', start)) {
        parts.push_back(text.substr(start, comma - start));
        start = comma + 1;
    }
    parts.push_back(text.substr(start));
    return parts;
}

} // namespace

std::optional<FaceBox> FaceBoxOf(const std::string& x, const std::string& y, const std::string& width,
                                 const std::string& height) {
    const auto left = NumberWithin(x, -kFarthest, kFarthest);
    const auto top = NumberWithin(y, -kFarthest, kFarthest);
    const auto across = NumberWithin(width, 1, kFarthest);
    const auto down = NumberWithin(height, 1, kFarthest);
    if (!left || !top || !across || !down) return std::nullopt;
    return FaceBox{*left, *top, *across, *down};
}

bool SetFace(const std::string& text, FaceSettings* settings, std::string* error) {
    const std::vector<std::string> parts = SplitAtCommas(text);
    if (parts.size() == 4) settings->face = FaceBoxOf(parts[0], parts[1], parts[2], parts[3]);
    if (parts.size() == 4 && settings->face) return true;
    *error = "--face wants X,Y,WIDTH,HEIGHT in pixels of the photo, such as 183,77,80,80, not '" + text + "'";
    return false;
}

bool SetCorrections(const std::string& text, FaceSettings* settings, std::string* error) {
    settings->corrections = text;
    if (text.empty()) *error = "--corrections wants a file";
    return !text.empty();
}

bool SetSheet(const std::string& text, FaceSettings* settings, std::string* error) {
    settings->sheet = text;
    return CheckSheetName(text, error);
}

bool LiesWithin(const FaceBox& face, int32 width, int32 height) {
    return face.x >= 0 && face.y >= 0 && face.width <= width - face.x && face.height <= height - face.y;
}

} // namespace orvane::tools
