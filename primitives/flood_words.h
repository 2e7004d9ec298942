// Flood fill by words: a bit for each pixel, 64 of a row at once. What is filled of a row is offered to its two
// neighbours, in walks down and up the region, until no row takes any more.
//
// A row's bits are found when it is first offered something, and the pixels are written at the end.
#pragma once

#include "primitives/flood_fill.h"

#include <algorithm>
#include <bit>
#include <cstring>
#include <limits>
#ifdef __SSE2__
#include <emmintrin.h>
#endif

namespace orvane {

/// The bits of up to 64 pixels that hold the value, the first pixel's lowest.
inline uint64 PixelsOfValue(const uint8* pixels, int32 count, uint8 value) {
    uint64 bits = 0;
    int32 i = 0;
#ifdef __SSE2__
    const __m128i wanted = _mm_set1_epi8(static_cast<char>(value));
    for (; count - i >= 16; i += 16) {
        const __m128i bytes = _mm_loadu_si128(reinterpret_cast<const __m128i*>(pixels + i));
        const auto found = static_cast<uint32>(_mm_movemask_epi8(_mm_cmpeq_epi8(bytes, wanted)));
        bits |= uint64{found} << i;
    }
#endif
    for (; i < count; ++i) bits |= uint64{pixels[i] == value ? 1U : 0U} << i;
    return bits;
}

/// Gives the pixels of the set bits the value.
inline void PaintPixels(uint8* pixels, int32 count, uint64 bits, uint8 value) {
    if (bits == ~uint64{0}) {
        std::memset(pixels, value, 64);
        return;
    }
    int32 i = 0;
    for (; count - i >= 8 && bits >> i != 0; i += 8) {
        // Each byte keeps its own bit of eight, which then fills it.
        const uint64 own = (bits >> i & 0xFF) * 0x0101010101010101 & 0x8040201008040201;
        const uint64 mask = ((own + 0x7F7F7F7F7F7F7F7F) >> 7 & 0x0101010101010101) * 0xFF;
        uint64 eight;
        std::memcpy(&eight, pixels + i, sizeof eight);
        eight = (eight & ~mask) | (value * uint64{0x0101010101010101} & mask);
        std::memcpy(pixels + i, &eight, sizeof eight);
    }
    for (; i < count; ++i) pixels[i] = (bits >> i & 1) != 0 ? value : pixels[i];
}

/// Words `first` up to but excluding `end`.
struct WordRange {
    int32 first;
    int32 end;

    bool IsEmpty() const { return first >= end; }
    void Include(WordRange other) {
        if (other.IsEmpty()) return;
        *this = IsEmpty() ? other : WordRange{std::min(first, other.first), std::max(end, other.end)};
    }
};

class WordFiller {
public:
    /// Narrower regions would not fit the caller's buffer: of 6 bytes a pixel this takes 16 a word and 24 a row.
    static constexpr int32 kLeastWidth = 64;

    static int64 BytesFor(ImageSize roi) {
        return (int64{2} * Words(roi) * int64{sizeof(uint64)} + int64{sizeof(RowState)}) * roi.height;
    }

    WordFiller(uint8* image, int32 step, ImageSize roi, uint8 oldValue, uint8 newValue, uint64* block)
        : image_(image), step_(step), roi_(roi), oldValue_(oldValue), newValue_(newValue), words_(Words(roi)),
          open_(block), filled_(open_ + Cells()), rows_(reinterpret_cast<RowState*>(filled_ + Cells())) {
        std::fill_n(rows_, roi_.height, RowState{{0, 0}, {0, 0}, {0, kUnknown}});
    }

    /// `reach` is how far beyond its ends a run touches the runs of the next row: 0 or 1.
    void Run(ImagePoint seed, int32 reach) {
        Find(seed.y);
        const int32 word = seed.x / 64;
        Take(seed.y, {word, word + 1}, [&](int32) { return uint64{1} << seed.x % 64; });
        for (bool more = true; more;) {
            more = false;
            for (int32 y = 1; y < roi_.height; ++y) more = Offer(y, y - 1, rows_[y].fromAbove, reach) || more;
            for (int32 y = roi_.height - 2; y >= 0; --y) more = Offer(y, y + 1, rows_[y].fromBelow, reach) || more;
        }
    }

    /// Writes the pixels; what they are together.
    ConnectedRegion Paint() {
        int64 area = 0;
        int32 left = std::numeric_limits<int32>::max(), right = -1, top = left, bottom = -1;
        for (int32 y = 0; y < roi_.height; ++y) {
            const WordRange taken = rows_[y].taken;
            if (taken.IsEmpty()) continue;
            top = std::min(top, y);
            bottom = y;
            const uint64* filled = Filled(y);
            left = std::min(left, taken.first * 64 + std::countr_zero(filled[taken.first]));
            right = std::max(right, taken.end * 64 - 1 - std::countl_zero(filled[taken.end - 1]));
            uint8* row = RowAt(image_, step_, y);
            for (int32 i = taken.first; i < taken.end; ++i) {
                if (filled[i] == 0) continue;
                area += filled[i] == ~uint64{0} ? 64 : std::popcount(filled[i]);
                PaintPixels(row + std::ptrdiff_t{64} * i, PixelsOf(i), filled[i], newValue_);
            }
        }
        return {static_cast<double>(area),
                {static_cast<double>(newValue_), 0.0, 0.0},
                {left, top, right - left + 1, bottom - top + 1}};
    }

private:
    static constexpr int32 kUnknown = -1; // as the end of what was taken: the row's bits are still to be found

    struct RowState {
        WordRange fromAbove, fromBelow; // words in which a neighbour took something since it was looked at last
        WordRange taken;                // words from the first to the last with filled bits
    };

    static int32 Words(ImageSize roi) { return (roi.width - 1) / 64 + 1; }
    std::size_t Cells() const { return static_cast<std::size_t>(words_) * static_cast<std::size_t>(roi_.height); }
    uint64* Open(int32 y) const { return open_ + static_cast<std::ptrdiff_t>(y) * words_; }
    uint64* Filled(int32 y) const { return filled_ + static_cast<std::ptrdiff_t>(y) * words_; }
    int32 PixelsOf(int32 word) const { return std::min(roi_.width - word * 64, 64); }

    void Find(int32 y) {
        const uint8* row = RowAt(image_, step_, y);
        uint64* open = Open(y);
        for (int32 i = 0; i < words_; ++i) {
            open[i] = PixelsOfValue(row + std::ptrdiff_t{64} * i, PixelsOf(i), oldValue_);
        }
        std::fill_n(Filled(y), words_, uint64{0});
        rows_[y].taken = {0, 0};
    }

    /// Row `y` takes what its neighbour `from` has in `words`. False where nothing was waiting.
    bool Offer(int32 y, int32 from, WordRange& words, int32 reach) {
        if (words.IsEmpty()) return false;
        const WordRange offered = {std::max(words.first - reach, 0), std::min(words.end + reach, words_)};
        words = {0, 0};
        if (rows_[y].taken.end == kUnknown) Find(y);
        const uint64* bits = Filled(from);
        if (reach == 0) {
            Take(y, offered, [bits](int32 i) { return bits[i]; });
        } else {
            Take(y, offered, [bits, this](int32 i) {
                const uint64 before = i > 0 ? bits[i - 1] >> 63 : 0;
                const uint64 behind = i + 1 < words_ ? bits[i + 1] << 63 : 0;
                return bits[i] | bits[i] << 1 | bits[i] >> 1 | before | behind;
            });
        }
        return true;
    }

    /// Takes the runs of open pixels that `seeds` touch, and tells the neighbours.
    template <typename Seeds>
    void Take(int32 y, WordRange words, Seeds seeds) {
        WordRange taken = {0, 0};
        bool entered = false; // from the word before
        for (int32 i = words.first; i < words.end || (entered && i < words_); ++i) {
            uint64 start = i < words.end ? seeds(i) : 0;
            if (entered) start |= 1;
            entered = false;
            const uint64 open = Open(y)[i];
            start &= open;
            if (start == 0) continue;
            const uint64 run = start == open ? open : Downwards(open, Upwards(open, start));
            entered = run >> 63 != 0;
            Fill(y, i, run);
            taken.Include({i, i + 1});
            int32 first = i;
            for (bool leaves = (run & 1) != 0; leaves && first > 0 && Open(y)[first - 1] >> 63 != 0;) {
                --first;
                const uint64 end = Downwards(Open(y)[first], uint64{1} << 63);
                Fill(y, first, end);
                leaves = (end & 1) != 0;
            }
            taken.Include({first, i + 1});
        }
        if (taken.IsEmpty()) return;
        rows_[y].taken.Include(taken);
        if (y > 0) rows_[y - 1].fromBelow.Include(taken);
        if (y + 1 < roi_.height) rows_[y + 1].fromAbove.Include(taken);
    }

    void Fill(int32 y, int32 word, uint64 bits) {
        Open(y)[word] &= ~bits;
        Filled(y)[word] |= bits;
    }

    /// Runs of open bits from the start bits to higher ones: a carry goes through a run.
    static uint64 Upwards(uint64 open, uint64 start) { return (((open + start) ^ open) & open) | start; }

    /// Likewise to lower ones, in steps of doubled length.
    static uint64 Downwards(uint64 open, uint64 start) {
        for (int32 length = 1; length < 64; length *= 2) {
            start |= start >> length & open;
            open &= open >> length;
        }
        return start;
    }

    uint8* image_;
    int32 step_;
    ImageSize roi_;
    uint8 oldValue_, newValue_;
    int32 words_; // of a row
    uint64* open_;
    uint64* filled_;
    RowState* rows_;
};

} // namespace orvane
