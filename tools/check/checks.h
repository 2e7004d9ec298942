// All measures of one picture.
#pragma once

#include "tools/check/measure.h"
#include "tools/support/face_box.h"
#include "tools/support/picture.h"

#include <optional>

namespace orvane::tools {

/// Measures the face of a picture. Bands are the document's, where there is one, and those of docs/checks.md.
/// @param faces how many were found; none for a face that was marked by hand
/// @param document null for none
Measures CheckFace(const Picture& picture, const FaceBox& face, std::optional<int32> faces, const Document* document);

} // namespace orvane::tools
