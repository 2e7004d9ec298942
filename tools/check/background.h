// The background beside the head, above the shoulders.
#pragma once

#include "tools/support/face_box.h"
#include "tools/support/picture.h"

#include <optional>

namespace orvane::tools {

struct Background {
    double level = 0;  ///< Median luminance.
    double spread = 0; ///< Between the levels below which 5 % and 95 % of the pixels lie.
};

/// The strip on one side of the face: from the height of the crown down to the eyes, outwards from half of the room
/// between head and edge, but no nearer than a twentieth and no farther than 0.4 of the square's side, to the edge or
/// one side away. Without pixels where it would be narrower than a twentieth.
ImageRect StripLeftOf(const FaceBox& face, ImageSize picture);
ImageRect StripRightOf(const FaceBox& face, ImageSize picture);

/// Both strips together; none where the face leaves room for neither.
std::optional<Background> BackgroundOf(const Picture& picture, const FaceBox& face);

} // namespace orvane::tools
