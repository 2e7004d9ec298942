#include "detect/edge_pruning.h"

#include "image/result_codes.h"
#include "primitives/primitives.h"

#include <algorithm>

namespace orvane {
namespace {

constexpr int32 kBorderReplicate = 1;
constexpr uint8 kOpen = 255;

/// Clears bands of `gap` lines with one line left open between them.
/// @param lineStep bytes from one line to the next
/// @param band     region of `n` lines
template <typename Band>
int32 ClearBands(uint8* mask, int32 maskStep, int32 width, int32 height, int32 gap, int32 lines, int32 lineStep,
                 Band band) {
    if (lines <= 0 || gap >= lines) return kOk;
    for (int64 i = 0; i < lines; i += int64{gap} + 1) {
        const int32 n = static_cast<int32>(std::min<int64>(gap, lines - i));
        const int32 status = primSet_8u_C1(0, RowAt(mask, lineStep, static_cast<int32>(i)), maskStep, band(n));
        if (status != kOk) {
            primSet_8u_C1(kOpen, mask, maskStep, {width, height});
            return status;
        }
    }
    return kOk;
}

int32 RunFilters(const uint8* src, int32 srcStep, ImageSize roi, int32 variant, EdgeWorkspace& w) {
    auto* dx = reinterpret_cast<int16*>(w.dx.data);
    auto* dy = reinterpret_cast<int16*>(w.dy.data);
    int32 dxBytes = 0, dyBytes = 0, status;
    if (variant == 2) {
        if ((status = primFilterScharrVertGetBufferSize(roi, &dxBytes)) != kOk) return status;
        if ((status = primFilterScharrHorizGetBufferSize(roi, &dyBytes)) != kOk) return status;
        uint8* buffer = w.ReserveBuffer(std::max(dxBytes, dyBytes));
        if (buffer == nullptr) return kNoMemory;
        status = primFilterScharrVertBorder_8u16s_C1(src, srcStep, dx, w.dx.Step(), roi, kBorderReplicate, 0, buffer);
        if (status != kOk) return status;
        return primFilterScharrHorizBorder_8u16s_C1(src, srcStep, dy, w.dy.Step(), roi, kBorderReplicate, 0, buffer);
    }
    const int32 maskCode = variant == 0 ? 33 : 55;
    if ((status = primFilterSobelNegVertGetBufferSize(roi, maskCode, &dxBytes)) != kOk) return status;
    if ((status = primFilterSobelHorizGetBufferSize(roi, maskCode, &dyBytes)) != kOk) return status;
    uint8* buffer = w.ReserveBuffer(std::max(dxBytes, dyBytes));
    if (buffer == nullptr) return kNoMemory;
    status = primFilterSobelNegVertBorder_8u16s_C1(src, srcStep, dx, w.dx.Step(), roi, maskCode, kBorderReplicate, 0,
                                                   buffer);
    if (status != kOk) return status;
    return primFilterSobelHorizBorder_8u16s_C1(src, srcStep, dy, w.dy.Step(), roi, maskCode, kBorderReplicate, 0,
                                               buffer);
}

} // namespace

int32 PruneRows(uint8* mask, int32 maskStep, int32 width, int32 height, int32 gap) {
    return ClearBands(mask, maskStep, width, height, gap, height, maskStep, [&](int32 n) {
        return ImageSize{width, n};
    });
}

int32 PruneColumns(uint8* mask, int32 maskStep, int32 width, int32 height, int32 gap) {
    return ClearBands(mask, maskStep, width, height, gap, width, 1, [&](int32 n) { return ImageSize{n, height}; });
}

int32 PruneRowsColumns(uint8* mask, int32 maskStep, int32 width, int32 height, int32 gap) {
    const int32 status = PruneColumns(mask, maskStep, width, height, gap);
    return status != kOk ? status : PruneRows(mask, maskStep, width, height, gap);
}

EdgeWorkspace::~EdgeWorkspace() { primFree(buffer_); }

bool EdgeWorkspace::ReservePlanes(int32 width, int32 height) {
    for (ImageBuffer* plane : {&dx, &dy}) {
        plane->channels = 1;
        plane->depth = kDepth16s;
        if (!plane->Reshape(width, height)) return false;
    }
    return true;
}

uint8* EdgeWorkspace::ReserveBuffer(int32 bytes) {
    if (bytes > bufferBytes_ || buffer_ == nullptr) {
        primFree(buffer_);
        buffer_ = static_cast<uint8*>(primMalloc(bytes));
        bufferBytes_ = buffer_ != nullptr ? bytes : 0;
    }
    return buffer_;
}

int32 PruneByEdges(const uint8* src, int32 srcStep, uint8* mask, int32 maskStep, int32 width, int32 height,
                   int32 variant, EdgeWorkspace& workspace) {
    struct Thresholds {
        float low, high;
    };
    constexpr Thresholds kThresholds[] = {{8.0F, 24.0F}, {96.0F, 288.0F}, {32.0F, 96.0F}};
    if (variant < 0 || variant > 2) return kUnknownVariant;
    const ImageSize roi{width, height};
    if (!workspace.ReservePlanes(width, height)) return kNoMemory;
    int32 status = RunFilters(src, srcStep, roi, variant, workspace);
    if (status != kOk) return status;
    int32 bytes = 0;
    if ((status = primCannyGetBufferSize(roi, &bytes)) != kOk) return status;
    uint8* buffer = workspace.ReserveBuffer(bytes);
    if (buffer == nullptr) return kNoMemory;
    return primCanny_16s8u_C1(reinterpret_cast<const int16*>(workspace.dx.data), workspace.dx.Step(),
                              reinterpret_cast<const int16*>(workspace.dy.data), workspace.dy.Step(), mask, maskStep,
                              roi, kThresholds[variant].low, kThresholds[variant].high, buffer);
}

} // namespace orvane
