// Flood fill by words: a bit for each pixel, 64 of a row at once. What is filled of a row is offered to its two
// neighbours, in walks down and up the region, until no row takes any more.
//
// A row's open pixels are found when it is first offered something. Rows that nothing waits for are passed by 64 at
// once, so that a way that turns a million times costs little more than a straight one.
#pragma once

#include "primitives/bit_plane.h"
#include "primitives/bit_runs.h"

#include <algorithm>
#include <bit>

namespace orvane {

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

    uint64* End() const { return bits_ + WordsFor(rows_); }

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
    /// Words of the work space.
    static int64 WorkWords(ImageSize size) {
        return int64{BitPlane::WordsFor(size.width)} * size.height + int64{2} * WaitingRows::WordsFor(size.height) +
               int64{sizeof(RowState) / sizeof(uint64)} * size.height;
    }

    /// @param filled rows of words as in a BitPlane; those that the fill reaches are written
    /// @param work WorkWords(size) words
    WordFiller(ImageSize size, uint64* filled, uint64* work)
        : size_(size), words_(BitPlane::WordsFor(size.width)), filled_(filled), open_(work),
          fromAbove_(open_ + std::ptrdiff_t{words_} * size.height, size.height),
          fromBelow_(fromAbove_.End(), size.height), rows_(reinterpret_cast<RowState*>(fromBelow_.End())) {
        std::fill_n(rows_, size_.height, RowState{{0, 0}, {0, 0}, {0, kUnknown}});
    }

    /// `find(y, open)` writes the words of the open pixels of a row. `reach` is how far beyond its ends a run touches
    /// the runs of the next row: 0 or 1. The seed is open.
    template <typename FindRow>
    void Run(ImagePoint seed, int32 reach, const FindRow& find) {
        Find(seed.y, find);
        const int32 word = seed.x / 64;
        Take(seed.y, {word, word + 1}, nullptr, [&](int32) { return uint64{1} << seed.x % 64; });
        while (fromAbove_.From(0) < size_.height || fromBelow_.From(0) < size_.height) {
            for (int32 y = fromAbove_.From(0); y < size_.height; y = fromAbove_.From(y + 1)) {
                fromAbove_.Remove(y);
                Offer(y, y - 1, rows_[y].fromAbove, reach, find);
            }
            for (int32 y = fromBelow_.UpTo(size_.height - 1); y >= 0; y = fromBelow_.UpTo(y - 1)) {
                fromBelow_.Remove(y);
                Offer(y, y + 1, rows_[y].fromBelow, reach, find);
            }
        }
    }

    /// Calls `visit(y, words, filled)` for each row of which something was filled, with the words from the first to the
    /// last that have some, and the row's words.
    template <typename Visit>
    void VisitFilled(const Visit& visit) const {
        for (int32 y = 0; y < size_.height; ++y) {
            if (!rows_[y].taken.IsEmpty()) visit(y, rows_[y].taken, Filled(y));
        }
    }

    /// How many words from `first` on have all bits set in both.
    static int32 WholeWords(const uint64* a, const uint64* b, int32 first, int32 end) {
        int32 i = first;
        while (i < end && (a[i] & b[i]) == ~uint64{0}) ++i;
        return i - first;
    }

private:
    static constexpr int32 kUnknown = -1; // as the end of what was taken: the row's bits are still to be found

    struct RowState {
        WordRange fromAbove, fromBelow; // words in which a neighbour took something since it was looked at last
        WordRange taken;                // words from the first to the last with filled bits
    };

    uint64* Open(int32 y) const { return open_ + std::ptrdiff_t{words_} * y; }
    uint64* Filled(int32 y) const { return filled_ + std::ptrdiff_t{words_} * y; }

    template <typename FindRow>
    void Find(int32 y, const FindRow& find) {
        find(y, Open(y));
        std::fill_n(Filled(y), words_, uint64{0});
        rows_[y].taken = {0, 0};
    }

    /// Row `y` takes what its neighbour `from` has in `words`.
    template <typename FindRow>
    void Offer(int32 y, int32 from, WordRange& words, int32 reach, const FindRow& find) {
        const WordRange offered = {std::max(words.first - reach, 0), std::min(words.end + reach, words_)};
        words = {0, 0};
        if (rows_[y].taken.end == kUnknown) Find(y, find);
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
        if (y + 1 < size_.height) {
            rows_[y + 1].fromAbove.Include(taken);
            fromAbove_.Add(y + 1);
        }
    }

    void Fill(int32 y, int32 word, uint64 bits) {
        Open(y)[word] &= ~bits;
        Filled(y)[word] |= bits;
    }

    ImageSize size_;
    int32 words_; // of a row
    uint64* filled_;
    uint64* open_;
    WaitingRows fromAbove_, fromBelow_;
    RowState* rows_;
};

} // namespace orvane
