#include "tools/support/quality_search.h"

#include <algorithm>
#include <cmath>

namespace orvane::tools {
namespace {

constexpr int32 kBest = 100;
constexpr int kGuesses = 4; // then halves, so that no odd picture takes long

/// How coarsely a quality stores: encoders scale their tables by this.
double Coarseness(int32 quality) { return quality < 50 ? 5000.0 / quality : std::max(200.0 - 2.0 * quality, 1.0); }

int32 QualityOf(double coarseness) {
    return static_cast<int32>(coarseness > 100 ? 5000.0 / coarseness : (200.0 - coarseness) / 2);
}

/// A quality and the size that it gave.
struct Tried {
    int32 quality = 0;
    double bytes = 0;
};

/// Over coarseness the size falls nearly as a power does.
int32 Guess(const Tried& a, const Tried& b, double bytes) {
    double power = -0.6; // of most portraits
    if (a.quality != b.quality && a.bytes > 0 && b.bytes > 0) {
        power = std::log(a.bytes / b.bytes) / std::log(Coarseness(a.quality) / Coarseness(b.quality));
    }
    if (!(power < -0.05)) power = -0.05;
    return QualityOf(Coarseness(b.quality) * std::pow(bytes / b.bytes, 1 / power));
}

/// Downwards from a quality that gave too large a file.
bool SearchBelow(std::uint64_t most, Tried large, const EncodeAtQuality& encode, std::string* encoded,
                 std::string* error) {
    Tried last;
    Tried fits;
    std::string trial;
    for (int tries = 0; large.quality - fits.quality > 1; ++tries) {
        int32 quality = (large.quality + fits.quality) / 2;
        if (tries < kGuesses) {
            const Tried& other = fits.quality > 0 ? fits : tries > 0 ? last : large;
            quality = Guess(other, large, static_cast<double>(most));
        }
        quality = std::clamp(quality, fits.quality + 1, large.quality - 1);
        if (!encode(quality, &trial, error)) return false;
        const Tried tried{quality, static_cast<double>(trial.size())};
        if (trial.size() > most) {
            last = large;
            large = tried;
        } else {
            fits = tried;
            encoded->swap(trial);
        }
    }
    if (fits.quality > 0) return true;
    *error = TooManyBytesText(static_cast<std::uint64_t>(large.bytes), most) + " even at quality 1";
    return false;
}

/// Upwards from one that gave too small a file, which `*encoded` holds.
bool SearchAbove(const SizeBounds& bounds, int32 wanted, const EncodeAtQuality& encode, std::string* encoded,
                 std::string* error) {
    int32 small = wanted;
    int32 reaches = kBest + 1;
    std::string best;
    std::string trial;
    while (reaches - small > 1) {
        const int32 quality = reaches > kBest && small == wanted ? kBest : (small + reaches) / 2;
        if (!encode(quality, &trial, error)) return false;
        if (trial.size() >= bounds.least) {
            reaches = quality;
            best.swap(trial);
        } else {
            small = quality;
            encoded->swap(trial);
        }
    }
    if (reaches <= kBest && best.size() <= bounds.most) encoded->swap(best);
    return true;
}

} // namespace

std::string TooManyBytesText(std::uint64_t bytes, std::uint64_t most) {
    return "would have " + std::to_string(bytes) + " bytes, more than " + std::to_string(most) + ",";
}

bool EncodeWithin(const SizeBounds& bounds, int32 wanted, const EncodeAtQuality& encode, std::string* encoded,
                  std::string* error) {
    if (!encode(wanted, encoded, error)) return false;
    if (encoded->size() > bounds.most) {
        const Tried large{wanted, static_cast<double>(encoded->size())};
        return SearchBelow(bounds.most, large, encode, encoded, error);
    }
    return encoded->size() >= bounds.least || SearchAbove(bounds, wanted, encode, encoded, error);
}

} // namespace orvane::tools
