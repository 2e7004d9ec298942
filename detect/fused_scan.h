// One scale of the scan in a few walks: sample, integral images and edges row by row, then the cascade over the windows
// that the edges leave. The same windows survive as when the primitives run one after the other.
#pragma once

#include "detect/candidates.h"
#include "detect/scale_rows.h"
#include "detect/window_cascade.h"

namespace orvane {

/// The work of the passes over a picture, and over one after the other.
class FusedScan {
public:
    /// Whether scales of up to this size can be scanned this way.
    static bool Serves(const ClassifierTables& classifier, ImageSize scaled) {
        return WindowCascade::Serves(classifier, scaled);
    }

    /// @param grey the picture; must stay while the scan does
    FusedScan(const ScanKernels& kernels, const ClassifierTables& classifier, const ImageBuffer& grey)
        : classifier_(&classifier), rows_(kernels, grey), cascade_(kernels, classifier) {}

    /// Goes over to another picture, with the storage that it has.
    void Use(const ScanKernels& kernels, const ClassifierTables& classifier, const ImageBuffer& grey) {
        classifier_ = &classifier;
        rows_.Use(kernels, grey);
        cascade_.Use(kernels, classifier);
    }

    /// Makes room for the first scale, which is the largest. False when memory is exhausted.
    [[nodiscard]] bool Reserve(ImageSize scaled);

    /// Scans a scale and places its hits, by rows and in them by columns. Their number. Throws std::bad_alloc.
    /// @param scale pixels of the picture to a pixel of the scale
    int32 ScanScale(ImageSize scaled, float scale, CandidateList& hits);

    /// How often single precision could not decide a window's stage.
    int64 Doubts() const { return cascade_.Doubts(); }

private:
    const ClassifierTables* classifier_;
    ScaleRows rows_;
    WindowCascade cascade_;
};

} // namespace orvane
