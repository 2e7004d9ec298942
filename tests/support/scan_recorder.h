// Looks over the scan's shoulder: which scales it makes and which windows survive each of them.
#pragma once

#include "tests/support/slot_guard.h"

#include <vector>

namespace orvane::test {

/// One scale of a scan; `mask` holds the window positions row by row without padding.
struct RecordedScale {
    ImageSize scaled;
    double factor;
    ImageSize positions;
    std::vector<uint8> mask;
    int32 stages;
};

/// While it lives, every scale of every scan is recorded. One at a time.
class ScanRecorder {
public:
    ScanRecorder() { scales_.clear(); }

    const std::vector<RecordedScale>& Scales() const { return scales_; }
    void Forget() { scales_.clear(); }

private:
    static int32 Resize(const uint8* src, ImageSize srcSize, int32 srcStep, ImageRect srcRoi, uint8* dst, int32 dstStep,
                        ImageSize dstRoiSize, double xFactor, double yFactor, int32 interpolation) {
        scales_.push_back({dstRoiSize, xFactor, {0, 0}, {}, 0});
        return generic::primResize_8u_C1(src, srcSize, srcStep, srcRoi, dst, dstStep, dstRoiSize, xFactor, yFactor,
                                         interpolation);
    }

    static int32 Apply(const float* src, int32 srcStep, const float* norm, int32 normStep, uint8* mask, int32 maskStep,
                       ImageSize roi, int32* positive, float threshold, const HaarClassifier* state) {
        const int32 status = generic::primApplyHaarClassifier_32f_C1(src, srcStep, norm, normStep, mask, maskStep, roi,
                                                                     positive, threshold, state);
        RecordedScale& scale = scales_.back();
        scale.positions = roi;
        scale.mask.clear();
        for (int32 y = 0; y < roi.height; ++y) {
            const uint8* row = RowAt(mask, maskStep, y);
            scale.mask.insert(scale.mask.end(), row, row + roi.width);
        }
        ++scale.stages;
        return status;
    }

    static inline std::vector<RecordedScale> scales_;
    SlotGuard<decltype(generic::primResize_8u_C1)> resize_{primResize_8u_C1, Resize};
    SlotGuard<decltype(generic::primApplyHaarClassifier_32f_C1)> apply_{primApplyHaarClassifier_32f_C1, Apply};
};

} // namespace orvane::test
