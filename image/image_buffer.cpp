// Storage of ImageBuffer. 0x240 planes come from the plain heap, all others from the aligned
// allocators, whose own row step is dropped in favour of Step().
#include "image/image_buffer.h"

#include "primitives/primitives.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <limits>
#include <utility>

namespace orvane {
namespace {

/// The aligned allocator for a form, called for its block alone.
void* AllocateAligned(int32 channels, DepthCode depth, int32 width, int32 height) {
    int32 step;
    if (channels == 1) {
        switch (depth) {
        case kDepth8u:
            return primAlloc_8u_C1(width, height, &step);
        case kDepth16u:
            return primAlloc_16u_C1(width, height, &step);
        case kDepth16s:
            return primAlloc_16s_C1(width, height, &step);
        case kDepth32f:
            return primAlloc_32f_C1(width, height, &step);
        case kDepth32fc:
            return primAlloc_32fc_C1(width, height, &step);
        default:
            return nullptr;
        }
    }
    if (channels == 3) {
        switch (depth) {
        case kDepth8u:
            return primAlloc_8u_C3(width, height, &step);
        case kDepth16u:
            return primAlloc_16u_C3(width, height, &step);
        case kDepth16s:
            return primAlloc_16s_C3(width, height, &step);
        case kDepth32f:
            return primAlloc_32f_C3(width, height, &step);
        default:
            return nullptr;
        }
    }
    return nullptr;
}

/// The forms whose pixels CopyFrom copies.
bool CopiesPixels(int32 channels, DepthCode depth) {
    if (channels == 3) return depth == kDepth8u;
    return channels == 1 && (depth == kDepth8u || depth == kDepth16s || depth == kDepth32f);
}

template <typename T>
T Limited(double value) {
    if (!(value > std::numeric_limits<T>::min())) return value != value ? T{0} : std::numeric_limits<T>::min();
    return value < std::numeric_limits<T>::max() ? static_cast<T>(value) : std::numeric_limits<T>::max();
}

} // namespace

ImageBuffer::~ImageBuffer() { Release(); }

ImageBuffer::ImageBuffer(ImageBuffer&& other) noexcept { Swap(other); }

ImageBuffer& ImageBuffer::operator=(ImageBuffer&& other) noexcept {
    if (this != &other) {
        Reset();
        Swap(other);
    }
    return *this;
}

int64 ImageBuffer::RowBytes() const {
    const bool onePlaneRow = depth == kDepth64f || planar != 0; // the channels play no part
    const int64 samples = onePlaneRow ? int64{width} : int64{width} * channels;
    if (width < 0 || samples < 0 || samples > std::numeric_limits<int32>::max()) return 0;
    if (depth == kDepth64f) return 8 * samples;
    const bool complex = !onePlaneRow && (depth & 0x400) != 0;
    return (depth >> 3 & 0x1F) * samples * (complex ? 2 : 1);
}

int32 ImageBuffer::Step() const {
    int64 step = RowBytes();
    if (depth != kDepth64f) step = (step + 3) / 4 * 4;
    return step > std::numeric_limits<int32>::max() ? 0 : static_cast<int32>(step);
}

void ImageBuffer::Allocate() { AllocateAs(true); }

void ImageBuffer::AllocateAs(bool zeroed) {
    Release();
    if (!IsImageSize(width, height)) return;
    const int64 bytes = StorageBytes();
    if (depth == kDepth64f) {
        if (bytes > 0 && bytes <= std::numeric_limits<int32>::max()) {
            data = static_cast<uint8*>(HeapAllocate(static_cast<std::size_t>(bytes)));
        }
    } else if (!zeroed && depth == kDepth8u && (channels == 1 || channels == 3)) {
        data = AllocateUnset(width, height, channels);
    } else {
        data = static_cast<uint8*>(AllocateAligned(channels, depth, width, height));
    }
    storedDepth_ = depth;
    capacity_ = bytes;
}

int64 ImageBuffer::StorageBytes() const {
    constexpr auto kMax = std::numeric_limits<int64>::max();
    const int64 rows = depth == kDepth64f && planar != 0 ? int64{channels} * height : height;
    return rows > std::numeric_limits<int32>::max() ? kMax : Step() * rows;
}

bool ImageBuffer::Reshape(int32 newWidth, int32 newHeight) { return ReshapeAs(true, newWidth, newHeight); }

bool ImageBuffer::ReshapeAs(bool zeroed, int32 newWidth, int32 newHeight) {
    if (IsBorrowed()) Release();
    if (!IsImageSize(newWidth, newHeight)) return Create(newWidth, newHeight, channels, depth, planar);
    width = newWidth;
    height = newHeight;
    if (data == nullptr || StorageBytes() > capacity_) AllocateAs(zeroed);
    return data != nullptr;
}

bool ImageBuffer::Create(int32 newWidth, int32 newHeight, int32 newChannels, DepthCode newDepth, int32 newPlanar) {
    width = newWidth;
    height = newHeight;
    channels = newChannels;
    depth = newDepth;
    planar = newPlanar;
    Allocate();
    return data != nullptr;
}

bool ImageBuffer::Remake(int32 newWidth, int32 newHeight, int32 newChannels, DepthCode newDepth) {
    if (newDepth == kDepth64f || storedDepth_ == kDepth64f) { // of another allocator
        return Create(newWidth, newHeight, newChannels, newDepth, 0);
    }
    channels = newChannels;
    depth = newDepth;
    planar = 0;
    if (!ReshapeAs(false, newWidth, newHeight)) return false;
    const int64 used = RowBytes();
    const auto padding = static_cast<std::size_t>(Step() - used);
    if (padding == 0) return true;
    for (int32 y = 0; y < height; ++y) std::memset(RowAt(data, Step(), y) + used, 0, padding);
    return true;
}

void ImageBuffer::Borrow(const uint8* rows, int32 newWidth, int32 newHeight, int32 newChannels) {
    Release();
    width = newWidth;
    height = newHeight;
    channels = newChannels;
    depth = kDepth8u;
    planar = 0;
    data = const_cast<uint8*>(rows); // whoever borrows for reading hands the image on as const
    storedDepth_ = 0;
    capacity_ = 0;
}

void ImageBuffer::Retire() { width = height = depth = channels = planar = 0; }

void ImageBuffer::CopyFrom(const ImageBuffer& other) {
    if (this == &other) return;
    // Storage of the same shape is kept: every pixel is about to be overwritten.
    const bool reusable = data != nullptr && !IsBorrowed() && other.data != nullptr && width == other.width &&
                          height == other.height && depth == other.depth && channels == other.channels && planar == 0 &&
                          other.planar == 0 && CopiesPixels(channels, depth);
    if (!reusable) {
        Release();
        width = other.width;
        height = other.height;
        depth = other.depth;
        channels = other.channels;
        planar = other.planar;
        if (other.data == nullptr) return;
        Allocate();
        if (data == nullptr) return;
    }
    const int32 step = Step();
    if (channels == 1 && depth == kDepth8u) {
        primCopy_8u_C1(other.data, step, data, step, Size());
    } else if (channels == 1 && depth == kDepth16s) {
        primCopy_16u_C1(reinterpret_cast<const uint16*>(other.data), step, reinterpret_cast<uint16*>(data), step,
                        Size());
    } else if (channels == 1 && depth == kDepth32f) {
        primCopy_32f_C1(reinterpret_cast<const float*>(other.data), step, reinterpret_cast<float*>(data), step, Size());
    } else if (channels == 3 && depth == kDepth8u) {
        primCopy_8u_C3(other.data, step, data, step, Size());
    }
}

void ImageBuffer::Release() {
    if (data == nullptr) return;
    if (storedDepth_ == kDepth64f) {
        HeapFree(data);
    } else if (!IsBorrowed()) {
        primFreeImage(data);
    }
    data = nullptr;
}

void ImageBuffer::Reset() {
    Release();
    width = height = depth = channels = planar = 0;
}

void ImageBuffer::Swap(ImageBuffer& other) noexcept {
    std::swap(width, other.width);
    std::swap(height, other.height);
    std::swap(depth, other.depth);
    std::swap(channels, other.channels);
    std::swap(planar, other.planar);
    std::swap(data, other.data);
    std::swap(capacity_, other.capacity_);
    std::swap(storedDepth_, other.storedDepth_);
}

int32 ImageBuffer::Fill(double value) {
    if (data == nullptr) return kOk;
    if (channels == 1) {
        switch (depth) {
        case kDepth8u:
            return primSet_8u_C1(Limited<uint8>(value), data, Step(), Size());
        case kDepth16s:
            return primSet_16s_C1(Limited<int16>(value), reinterpret_cast<int16*>(data), Step(), Size());
        case kDepth32f:
            return primSet_32f_C1(static_cast<float>(value), reinterpret_cast<float*>(data), Step(), Size());
        default:
            return kUnknownCode;
        }
    }
    if (channels == 3) {
        const uint8 level = Limited<uint8>(value + 0.5);
        const uint8 pixel[3] = {level, level, level};
        switch (depth) {
        case kDepth8u:
            return primSet_8u_C3(pixel, data, Step(), Size());
        case kDepth16s:
        case kDepth32f:
            return kOk;
        default:
            return kUnknownCode;
        }
    }
    return kOk;
}

} // namespace orvane
