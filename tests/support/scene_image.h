// Scenes as the session's pictures.
#pragma once

#include "image/image_buffer.h"
#include "tests/support/face_scene.h"

#include <algorithm>

namespace orvane::test {

/// Fills `image` with the scene. False when there is no storage for it.
inline bool ToImage(const Scene& scene, ImageBuffer& image) {
    if (!image.Create(scene.width, scene.height, 3, kDepth8u, 0)) return false;
    std::copy(scene.rows.begin(), scene.rows.end(), image.data); // rows of equal form
    return true;
}

} // namespace orvane::test
