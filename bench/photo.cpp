#include "bench/photo.h"

#include "image/bitmap.h"
#include "primitives/primitives.h"
#include "tools/support/picture_io.h"

#include <cstdio>
#include <cstring>

namespace orvane::bench {
namespace {

ImageBuffer g_photo;

/// Soft waves and noise by integer arithmetic: edges of all kinds, the same bytes everywhere.
void MakePattern(ImageBuffer& picture) {
    picture.Create(800, 600, 3, kDepth8u, 0);
    uint32 noise = 1;
    for (int32 y = 0; y < picture.height; ++y) {
        uint8* row = RowAt(picture.data, picture.Step(), y);
        for (int32 x = 0; x < 3 * picture.width; ++x) {
            noise = noise * 1664525U + 1013904223U;
            const int32 wave = ((x / 3 * x / 900) ^ (y * y / 300)) & 127;
            row[x] = static_cast<uint8>(64 + wave + static_cast<int32>(noise >> 28));
        }
    }
}

void Scale(const ImageBuffer& photo, ImageSize size, ImageBuffer& picture) {
    picture.Create(size.width, size.height, 3, kDepth8u, 0);
    primResize_8u_C3(photo.data, photo.Size(), photo.Step(), {0, 0, photo.width, photo.height}, picture.data,
                     picture.Step(), size, (size.width + 0.5) / photo.width, (size.height + 0.5) / photo.height,
                     kLinear);
}

} // namespace

bool LoadPhoto(const std::string& path) {
    if (path.empty()) {
        MakePattern(g_photo);
        return true;
    }
    tools::Picture read;
    std::string error;
    if (!tools::ReadPicture(path, &read, &error)) {
        std::fprintf(stderr, "%s: %s\n", path.c_str(), error.c_str());
        return false;
    }
    if (!g_photo.Create(read.width, read.height, 3, kDepth8u, 0)) return false;
    std::memcpy(g_photo.data, read.pixels.data(), read.pixels.size());
    return true;
}

void MakePhoto(ImageSize size, ImageBuffer& picture) { Scale(g_photo, size, picture); }

void MakeFaceFree(ImageSize size, ImageBuffer& picture) {
    ImageBuffer pattern;
    MakePattern(pattern);
    Scale(pattern, size, picture);
}

orv_Handle PackedPhoto(ImageSize size) {
    ImageBuffer photo;
    MakePhoto(size, photo);
    return Packed(photo);
}

orv_Handle Packed(const ImageBuffer& photo) {
    const ImageSize size = photo.Size();
    const BitmapHeader header = OutgoingHeader(size.width, size.height);
    orv_Handle dib = orv_BlockAlloc(sizeof header + header.biSizeImage);
    auto* bytes = static_cast<uint8*>(orv_BlockLock(dib));
    std::memcpy(bytes, &header, sizeof header);
    std::memcpy(bytes + sizeof header, photo.data, header.biSizeImage);
    orv_BlockUnlock(dib);
    return dib;
}

} // namespace orvane::bench
