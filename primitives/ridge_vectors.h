// Vectors of 16-bit numbers and the search for ridges in them, for the kernels' texts.
#pragma once

#include "primitives/byte_vectors.h"

namespace orvane::ORVANE_KERNELS {
namespace {

constexpr int64 kWords = kBytes / 2;

#if ORVANE_WIDE
inline Vector AreAbove(Vector a, Vector b) { return _mm256_cmpgt_epi16(a, b); }
inline Vector EqualWords(Vector a, Vector b) { return _mm256_cmpeq_epi16(a, b); }
inline Vector SplatWord(int16 v) { return _mm256_set1_epi16(v); }
inline Vector PackMasks(Vector low, Vector high) {
    return _mm256_permute4x64_epi64(_mm256_packs_epi16(low, high), 0xD8); // packing works within halves
}
#else
inline Vector AreAbove(Vector a, Vector b) { return _mm_cmpgt_epi16(a, b); }
inline Vector EqualWords(Vector a, Vector b) { return _mm_cmpeq_epi16(a, b); }
inline Vector SplatWord(int16 v) { return _mm_set1_epi16(v); }
inline Vector PackMasks(Vector low, Vector high) { return _mm_packs_epi16(low, high); }
#endif

/// tan(22.5 degrees) of 65536. The whole part of a product with it is that of the true product for all components up to
/// kMostGentle, as a test finds that tries them.
constexpr int32 kFlat = 27146;

/// Pixels by the direction of their gradients: along an axis, along x, along the rising diagonal; neither of the first
/// and the last is along the falling one.
struct DirectionMasks {
    Vector axial, alongX, rising;
};

/// Whether the magnitudes at `here` are the largest along their gradients, as masks. Of an axial plateau the first
/// pixel stays, of a diagonal one none.
inline Vector AreRidges(const int16* above, const int16* here, const int16* below, const DirectionMasks& d) {
    const auto at = [](const int16* row) { return LoadBytes(row); };
    const Vector first =
        Choose(d.axial, Choose(d.alongX, at(here - 1), at(above)), Choose(d.rising, at(above + 1), at(above - 1)));
    const Vector second =
        Choose(d.axial, Choose(d.alongX, at(here + 1), at(below)), Choose(d.rising, at(below - 1), at(below + 1)));
    const Vector m = at(here);
    return Both(AreAbove(m, first), AreAbove(m, AddWords(second, d.axial)));
}

} // namespace
} // namespace orvane::ORVANE_KERNELS
