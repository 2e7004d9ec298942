#include "primitives/saturation.h"

#include "primitives/row_kernels.h"

namespace orvane {

void SplitValueAndSaturation(const uint8* src, int32 srcStep, uint8* values, uint8* saturations, int32 planeStep,
                             ImageSize roi) {
    const RowKernels& kernels = CurrentRowKernels();
    for (int32 y = 0; y < roi.height; ++y) {
        kernels.valueAndSaturation(RowAt(src, srcStep, y), RowAt(values, planeStep, y),
                                   RowAt(saturations, planeStep, y), roi.width);
    }
}

} // namespace orvane
