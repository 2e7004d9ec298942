// Flood fill by words: a bit for each pixel, 64 of a row at once. What is filled of a row is offered to its two
// neighbours, in walks down and up the region, until no row takes any more.
//
// A row's bits are found when it is first offered something, and the pixels are written at the end. Rows that nothing
// waits for are passed by 64 at once, so that a way that turns a million times costs little more than a straight one.
#pragma once

#include "primitives/bit_runs.h"
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

/// Rows for which something waits, a bit each.
class WaitingRows {
public:
    static int32 WordsFor(int32 rows) { return (rows - 1) / 64 + 1; }

    /// @param bits WordsFor(rows) of them
    WaitingRows(uint64* bits, int32 rows) : bits_(bits), rows_(rows) { std::fill_n(bits_, WordsFor(rows), uint64{0}); }

    void Add(int32 y) { bits_[y / 64] |= uint64{1} << y % 64; }
    void Remove(int32 y) { bits_[y / 64] &= ~(uint64{1} << y % 64); }

    /// The first one from `y` on; the number of rows when there is none.
    int32 From(int32 y) const {
        if (y >= rows_) return rows_;
        int32 word = y / 64;
        uint64 rest = bits_[word] >> y % 64 << y % 64;
        while (rest == 0) {
            if (++word == WordsFor(rows_)) return rows_;
            rest = bits_[word];
        }
        return 64 * word + std::countr_zero(rest);
    }

    /// The last one up to `y`; -1 when there is none.
    int32 UpTo(int32 y) const {
        if (y < 0) return -1;
        int32 word = y / 64;
        uint64 rest = bits_[word] << (63 - y % 64) >> (63 - y % 64);
        while (rest == 0) {
            if (--word < 0) return -1;
            rest = bits_[word];
        }
        return 64 * word + 63 - std::countl_zero(rest);
    }

private:
    uint64* bits_;
    int32 rows_;
};

class WordFiller {
public:
    /// Narrower regions would not fit the caller's buffer: of 6 bytes a pixel this takes 16 a word, 24 a row and 2
    /// bits.
    static constexpr int32 kLeastWidth = 64;

    static int64 BytesFor(ImageSize roi) {
        const int64 words = int64{2} * Words(roi) * roi.height + int64{2} * WaitingRows::WordsFor(roi.height);
        return words * int64{sizeof(uint64)} + int64{sizeof(RowState)} * roi.height;
    }

    WordFiller(uint8* image, int32 step, ImageSize roi, uint8 oldValue, uint8 newValue, uint64* block)
        : image_(image), step_(step), roi_(roi), oldValue_(oldValue), newValue_(newValue), words_(Words(roi)),
          open_(block), filled_(open_ + Cells()), fromAbove_(filled_ + Cells(), roi.height),
          fromBelow_(filled_ + Cells() + WaitingRows::WordsFor(roi.height), roi.height),
          rows_(
              reinterpret_cast<RowState*>(filled_ + Cells() + std::ptrdiff_t{2} * WaitingRows::WordsFor(roi.height))) {
        std::fill_n(rows_, roi_.height, RowState{{0, 0}, {0, 0}, {0, kUnknown}});
    }

    /// `reach` is how far beyond its ends a run touches the runs of the next row: 0 or 1.
    void Run(ImagePoint seed, int32 reach) {
        Find(seed.y);
        const int32 word = seed.x / 64;
        Take(seed.y, {word, word + 1}, nullptr, [&](int32) { return uint64{1} << seed.x % 64; });
        while (fromAbove_.From(0) < roi_.height || fromBelow_.From(0) < roi_.height) {
            for (int32 y = fromAbove_.From(0); y < roi_.height; y = fromAbove_.From(y + 1)) {
                fromAbove_.Remove(y);
                Offer(y, y - 1, rows_[y].fromAbove, reach);
            }
            for (int32 y = fromBelow_.UpTo(roi_.height - 1); y >= 0; y = fromBelow_.UpTo(y - 1)) {
                fromBelow_.Remove(y);
                Offer(y, y + 1, rows_[y].fromBelow, reach);
            }
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
                const int32 whole = WholeWords(filled, filled, i, taken.end);
                if (whole > 0) {
                    std::memset(row + std::ptrdiff_t{64} * i, newValue_, std::size_t{64} * static_cast<uint32>(whole));
                    area += int64{64} * whole;
                    i += whole - 1;
                    continue;
                }
                area += std::popcount(filled[i]);
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

    /// How many words from `first` on have all bits set in both.
    static int32 WholeWords(const uint64* a, const uint64* b, int32 first, int32 end) {
        int32 i = first;
        while (i < end && (a[i] & b[i]) == ~uint64{0}) ++i;
        return i - first;
    }

    void Find(int32 y) {
        const uint8* row = RowAt(image_, step_, y);
        uint64* open = Open(y);
        for (int32 i = 0; i < words_; ++i) {
            open[i] = PixelsOfValue(row + std::ptrdiff_t{64} * i, PixelsOf(i), oldValue_);
        }
        std::fill_n(Filled(y), words_, uint64{0});
        rows_[y].taken = {0, 0};
    }

    /// Row `y` takes what its neighbour `from` has in `words`.
    void Offer(int32 y, int32 from, WordRange& words, int32 reach) {
        const WordRange offered = {std::max(words.first - reach, 0), std::min(words.end + reach, words_)};
        words = {0, 0};
        if (rows_[y].taken.end == kUnknown) Find(y);
        const uint64* bits = Filled(from);
        if (reach == 0) {
            Take(y, offered, bits, [bits](int32 i) { return bits[i]; });
        } else {
            Take(y, offered, bits, [bits, this](int32 i) {
                const uint64 before = i > 0 ? bits[i - 1] >> 63 : 0;
                const uint64 behind = i + 1 < words_ ? bits[i + 1] << 63 : 0;
                return bits[i] | bits[i] << 1 | bits[i] >> 1 | before | behind;
            });
        }
    }

    /// Takes the runs of open pixels that `seeds` touch, and tells the neighbours. A word of `bits`, where there are
    /// any, that is whole is a whole one of seeds too.
    template <typename Seeds>
    void Take(int32 y, WordRange words, const uint64* bits, Seeds seeds) {
        WordRange taken = {0, 0};
        bool entered = false; // from the word before
        for (int32 i = words.first; i < words.end || (entered && i < words_); ++i) {
            const int32 whole = bits != nullptr ? WholeWords(bits, Open(y), i, words.end) : 0;
            uint64 run = ~uint64{0};
            int32 last = i;
            if (whole > 0) {
                last += whole - 1;
                std::fill_n(Open(y) + i, whole, uint64{0});
                std::fill_n(Filled(y) + i, whole, ~uint64{0});
            } else {
                uint64 start = i < words.end ? seeds(i) : 0;
                if (entered) start |= 1;
                entered = false;
                const uint64 open = Open(y)[i];
                start &= open;
                if (start == 0) continue;
                run = start == open ? open : FillDownwards(open, FillUpwards(open, start));
                Fill(y, i, run);
            }
            entered = run >> 63 != 0;
            int32 first = i;
            for (bool leaves = (run & 1) != 0; leaves && first > 0 && Open(y)[first - 1] >> 63 != 0;) {
                --first;
                const uint64 end = FillDownwards(Open(y)[first], uint64{1} << 63);
                Fill(y, first, end);
                leaves = (end & 1) != 0;
            }
            taken.Include({first, last + 1});
            i = last;
        }
        if (taken.IsEmpty()) return;
        rows_[y].taken.Include(taken);
        if (y > 0) {
            rows_[y - 1].fromBelow.Include(taken);
            fromBelow_.Add(y - 1);
        }
        if (y + 1 < roi_.height) {
            rows_[y + 1].fromAbove.Include(taken);
            fromAbove_.Add(y + 1);
        }
    }

    void Fill(int32 y, int32 word, uint64 bits) {
        Open(y)[word] &= ~bits;
        Filled(y)[word] |= bits;
    }

    uint8* image_;
    int32 step_;
    ImageSize roi_;
    uint8 oldValue_, newValue_;
    int32 words_; // of a row
    uint64* open_;
    uint64* filled_;
    WaitingRows fromAbove_, fromBelow_;
    RowState* rows_;
};

} // namespace orvane
