#include "tools/check/measure.h"

#include <algorithm>

namespace orvane::tools {

const char* VerdictWord(Verdict verdict) {
    switch (verdict) {
    case Verdict::ok:
        return "ok";
    case Verdict::low:
        return "low";
    case Verdict::high:
        return "high";
    default:
        return "not measured";
    }
}

Verdict Measure::Judge() const {
    if (!value) return Verdict::notMeasured;
    if (band.low && *value < *band.low) return Verdict::low;
    return band.high && *value > *band.high ? Verdict::high : Verdict::ok;
}

bool AreInBand(const Measures& measures) {
    return std::none_of(measures.begin(), measures.end(), [](const Measure& measure) {
        const Verdict verdict = measure.Judge();
        return verdict == Verdict::low || verdict == Verdict::high;
    });
}

} // namespace orvane::tools
