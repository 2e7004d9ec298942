#include "detect/fused_scan.h"

#include "detect/classifier_file.h"

#include <bit>

namespace orvane {

bool FusedScan::Reserve(ImageSize scaled) {
    return rows_.Reserve(scaled) && cascade_.Reserve(rows_.Stride(), scaled.height);
}

int32 FusedScan::ScanScale(ImageSize scaled, float scale, CandidateList& hits) {
    const ImageSize positions{scaled.width - classifier_->maxFeatureWidth + 1,
                              scaled.height - classifier_->maxFeatureHeight + 1};
    rows_.Make(scaled, 1.0F / scale, positions);
    cascade_.Decide(rows_, positions.height);
    int32 count = 0;
    for (int32 y = 0; y < positions.height; ++y) {
        const uint64* alive = rows_.EdgeRow(y);
        for (int32 word = 0; word < rows_.Words(); ++word) {
            for (uint64 rest = alive[word]; rest != 0; rest &= rest - 1, ++count)
                hits.Place(CandidateOfWindow(64 * word + std::countr_zero(rest), y, classifier_->windowWidth, scale));
        }
    }
    return count;
}

} // namespace orvane
