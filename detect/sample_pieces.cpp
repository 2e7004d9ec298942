#include "detect/sample_pieces.h"

#include <algorithm>

namespace orvane {
namespace {

constexpr int32 kMostPieces = 16; // with more, single samples are as fast

} // namespace

bool SamplePlan::Reserve(int32 width) {
    const int64 pieces = int64{kMostPieces} * ((width + kPiece - 1) / kPiece);
    return offsets_.Ensure(pieces) && places_.Ensure(kPiece * pieces);
}

bool SamplePlan::Make(const int32* columns, int32 width, int32 extent) {
    groups_ = (width + kPiece - 1) / kPiece;
    pieces_ = 0;
    if (extent < kPiece) return false;
    for (int32 x = 0; x < width; x += kPiece) {
        const int32 last = columns[std::min(x + kPiece, width) - 1];
        pieces_ = std::max(pieces_, (last - columns[x]) / kPiece + 1);
    }
    if (pieces_ > kMostPieces) return false;
    std::fill_n(places_.data(), int64{kPiece} * pieces_ * groups_, kNowhere);
    for (int32 x = 0; x < width; ++x) {
        const int32 first = x - x % kPiece;
        int32* offsets = offsets_.data() + std::ptrdiff_t{pieces_} * (x / kPiece);
        if (x == first) {
            // None reaches beyond the row.
            for (int32 i = 0; i < pieces_; ++i) offsets[i] = std::min(columns[x] + kPiece * i, extent - kPiece);
        }
        const int32 piece = (columns[x] - columns[first]) / kPiece;
        const std::ptrdiff_t places = std::ptrdiff_t{kPiece} * (std::ptrdiff_t{pieces_} * (x / kPiece) + piece);
        places_[places + x % kPiece] = static_cast<uint8>(columns[x] - offsets[piece]);
    }
    return true;
}

} // namespace orvane
