#include "primitives/edge_bits.h"

#include "primitives/bit_runs.h"

#include <algorithm>
#include <cstddef>

namespace orvane {
namespace {

/// Fills the runs of a row from the seeds in it. A run goes on into the next word where a word's last bit is filled.
void FillRow(const uint64* ridges, uint64* edges, int32 words) {
    uint64 entered = 0;
    for (int32 i = 0; i < words; ++i) {
        edges[i] = FillUpwards(ridges[i], edges[i] | (ridges[i] & entered));
        entered = edges[i] >> 63;
    }
    entered = 0;
    for (int32 i = words - 1; i >= 0; --i) {
        const bool nothingToDo = edges[i] == ridges[i] || (edges[i] | entered) == 0;
        if (!nothingToDo) edges[i] = FillDownwards(ridges[i], edges[i] | (ridges[i] & entered << 63));
        entered = edges[i] & 1;
    }
}

/// Takes over what touches the neighbouring row's edges. True when that added any.
bool TakeOver(const uint64* from, const uint64* ridges, uint64* edges, int32 words) {
    uint64 added = 0;
    for (int32 i = 0; i < words; ++i) {
        const uint64 before = i > 0 ? from[i - 1] >> 63 : 0;
        const uint64 after = i + 1 < words ? from[i + 1] << 63 : 0;
        const uint64 touched = (from[i] | from[i] << 1 | from[i] >> 1 | before | after) & ridges[i] & ~edges[i];
        edges[i] |= touched;
        added |= touched;
    }
    return added != 0;
}

bool HasAny(const uint64* edges, int32 words) {
    uint64 all = 0;
    for (int32 i = 0; i < words; ++i) all |= edges[i];
    return all != 0;
}

constexpr uint8 kDown = 1, kUp = 2, kBoth = 3;

/// A sweep over the marked rows between two, each spread to the next one in the sweep's direction.
class Sweep {
public:
    Sweep(const uint64* ridges, uint64* edges, int32 words, int32 height, uint8* marks)
        : ridges_(ridges), edges_(edges), words_(words), height_(height), marks_(marks) {}

    /// The rows whose growth waits for the other direction.
    struct Rows {
        int32 first;
        int32 last;
    };

    Rows Down(Rows rows) {
        Rows grown{height_, -1};
        for (int32 y = rows.first; y < height_ - 1 && (y <= rows.last || (marks_[y] & kDown) != 0); ++y)
            Step(y, y + 1, kDown, grown);
        return grown;
    }

    Rows Up(Rows rows) {
        Rows grown{height_, -1};
        for (int32 y = rows.last; y > 0 && (y >= rows.first || (marks_[y] & kUp) != 0); --y) Step(y, y - 1, kUp, grown);
        return grown;
    }

private:
    void Step(int32 from, int32 to, uint8 direction, Rows& grown) {
        if ((marks_[from] & direction) == 0) return;
        marks_[from] = static_cast<uint8>(marks_[from] & ~direction);
        const std::ptrdiff_t row = std::ptrdiff_t{to} * words_;
        if (!TakeOver(edges_ + std::ptrdiff_t{from} * words_, ridges_ + row, edges_ + row, words_)) return;
        FillRow(ridges_ + row, edges_ + row, words_);
        marks_[to] = kBoth;
        grown = {std::min(grown.first, to), std::max(grown.last, to)};
    }

    const uint64* ridges_;
    uint64* edges_;
    int32 words_;
    int32 height_;
    uint8* marks_;
};

} // namespace

void FollowRidges(const uint64* ridges, uint64* edges, int32 words, int32 height, uint8* marks) {
    bool grows = false; // whether the row before has edges
    for (int32 y = 0; y < height; ++y) {
        const std::ptrdiff_t row = std::ptrdiff_t{y} * words;
        if (grows) TakeOver(edges + row - words, ridges + row, edges + row, words);
        grows = HasAny(edges + row, words);
        if (grows) FillRow(ridges + row, edges + row, words);
        marks[y] = grows ? kUp : 0;
    }
    // What a sweep adds is spread on by itself in its direction, and in the other one by the next.
    Sweep sweep(ridges, edges, words, height, marks);
    Sweep::Rows grown = sweep.Up({0, height - 1});
    while (grown.first <= grown.last) grown = sweep.Up(sweep.Down(grown));
}

} // namespace orvane
