// Pictures are scanned in blocks by several threads and taken over in order, so that the harvest depends on
// the seed alone.
#include "tools/train/harvest.h"

#include "tools/train/parallel.h"
#include "tools/train/table.h"

#include <algorithm>
#include <cmath>

namespace orvane::train {
namespace {

constexpr std::size_t kHeldShare = 5;
constexpr double kFaceOverlap = 0.4; // a square that meets the face's by more is no negative

Window CopyWindow(const Survivor& s, ImageSize size) {
    Window window;
    window.reserve(static_cast<std::size_t>(size.width * size.height));
    for (int32 y = 0; y < size.height; ++y)
        window.insert(window.end(), s.pixels + y * s.step, s.pixels + y * s.step + size.width);
    return window;
}

/// A fair choice of at most `capacity` out of a stream of unknown length.
class Reservoir {
public:
    Reservoir(std::size_t capacity, ImageSize size, Random random)
        : capacity_(capacity), size_(size), random_(random) {}
    void Offer(const Survivor& s) {
        ++seen_;
        if (kept_.size() < capacity_) {
            kept_.push_back(CopyWindow(s, size_));
        } else if (const auto at = random_.Below(static_cast<std::uint32_t>(seen_)); at < capacity_) {
            kept_[at] = CopyWindow(s, size_);
        }
    }
    std::vector<Window> Take() { return std::move(kept_); }

private:
    std::size_t capacity_;
    ImageSize size_;
    Random random_;
    std::size_t seen_ = 0;
    std::vector<Window> kept_;
};

std::vector<std::size_t> Shuffled(std::size_t count, Random random) {
    std::vector<std::size_t> order(count);
    for (std::size_t i = 0; i < count; ++i) order[i] = i;
    for (std::size_t i = count; i > 1; --i) std::swap(order[i - 1], order[random.Below(static_cast<std::uint32_t>(i))]);
    return order;
}

double Overlap(double ax, double ay, double aSide, double bx, double by, double bSide) {
    const double w = std::min(ax + aSide, bx + bSide) - std::max(ax, bx);
    const double h = std::min(ay + aSide, by + bSide) - std::max(ay, by);
    if (w <= 0.0 || h <= 0.0) return 0.0;
    return w * h / (aSide * aSide + bSide * bSide - w * h);
}

/// The crop as a picture, at its own size or twice as large.
GreyPicture AsPicture(const FaceCrop& crop, int32 zoom) {
    const int32 side = kCropSide * zoom;
    GreyPicture picture{{side, side},
                        std::vector<uint8>(static_cast<std::size_t>(side) * static_cast<std::size_t>(side))};
    for (int32 y = 0; y < side; ++y) {
        for (int32 x = 0; x < side; ++x) {
            const double u = std::clamp((x + 0.5) / zoom - 0.5, 0.0, kCropSide - 1.0);
            const double v = std::clamp((y + 0.5) / zoom - 0.5, 0.0, kCropSide - 1.0);
            const int x0 = std::min(static_cast<int>(u), kCropSide - 2);
            const int y0 = std::min(static_cast<int>(v), kCropSide - 2);
            const auto at = [&](int i, int j) {
                return crop.pixels[static_cast<std::size_t>((y0 + j) * kCropSide + x0 + i)];
            };
            const double low = at(0, 0) + (at(1, 0) - at(0, 0)) * (u - x0);
            const double high = at(0, 1) + (at(1, 1) - at(0, 1)) * (u - x0);
            picture.pixels[static_cast<std::size_t>(y * side + x)] =
                static_cast<uint8>(low + (high - low) * (v - y0) + 0.5);
        }
    }
    return picture;
}

std::vector<Window> FromCrop(const FaceCrop& crop, const Framing& framing, const CompiledCascade& cascade,
                             Random random) {
    const auto zoom = static_cast<int32>(1 + random.Below(2));
    const double side = kCropBoxSide * framing.windowToBox * zoom;
    const double corner = 0.5 * (kCropSide * zoom - side);
    const double shift = random.Between(1.0, 1.05);
    Reservoir reservoir(2, cascade.WindowSize(), random);
    VisitSurvivors(AsPicture(crop, zoom), cascade, shift, [&](const Survivor& s) {
        if (Overlap(s.x, s.y, s.side, corner, corner, side) < kFaceOverlap) reservoir.Offer(s);
    });
    return reservoir.Take();
}

/// Runs `work` over 0 .. count - 1 in blocks and hands each result over in order until `take` says stop.
template <typename Work, typename Take>
void InOrder(std::size_t count, int threads, Work work, Take take) {
    constexpr std::size_t kBlock = 48;
    for (std::size_t from = 0; from < count; from += kBlock) {
        const std::size_t size = std::min(kBlock, count - from);
        std::vector<std::vector<Window>> results(size);
        ForEachIndex(size, threads, [&](std::size_t i) { results[i] = work(from + i); });
        for (std::size_t i = 0; i < size; ++i) {
            if (!take(from + i, std::move(results[i]))) return;
        }
    }
}

} // namespace

PictureSet ReadPictures(const std::string& folder, const std::string& classes, int threads) {
    Table table;
    if (!table.Read(folder + "/negatives.csv")) return {{}, "cannot read negatives.csv"};
    std::vector<std::string> paths;
    for (std::size_t i = 0; i < table.Rows(); ++i) {
        if (table.Text(i, "split") != "train" || classes.find(table.Text(i, "class")) == std::string::npos) continue;
        paths.push_back(folder + "/negatives/" + table.Text(i, "file"));
    }
    PictureSet set;
    set.pictures.resize(paths.size());
    std::vector<std::string> errors(paths.size());
    ForEachIndex(paths.size(), threads, [&](std::size_t i) {
        if (std::string why; !ReadGrey(paths[i], set.pictures[i], why)) errors[i] = paths[i] + ": " + why;
    });
    for (const std::string& error : errors) {
        if (!error.empty()) return {{}, error};
    }
    if (set.pictures.empty()) set.error = "no face-free picture of these classes";
    return set;
}

Negatives Harvest(const PictureSet& pictures, const std::vector<FaceCrop>& crops, const Framing& framing,
                  const CompiledCascade& cascade, const HarvestOptions& options, uint64 seed, uint64 stage,
                  const std::function<void(std::size_t, std::size_t)>& progress) {
    Negatives negatives;
    const auto found = [&] { return negatives.windows.size() + negatives.held.size(); };
    const auto keep = [&](std::vector<Window> windows, bool held) {
        auto& into = held ? negatives.held : negatives.windows;
        for (Window& window : windows) into.push_back(std::move(window));
    };

    const auto fromCrops = static_cast<std::size_t>(static_cast<double>(options.wanted) * options.cropShare);
    const std::vector<std::size_t> cropOrder = Shuffled(crops.size(), Random({seed, stage, 1}));
    InOrder(
        fromCrops == 0 ? 0 : crops.size(), options.threads,
        [&](std::size_t i) {
            return FromCrop(crops[cropOrder[i]], framing, cascade, Random({seed, stage, 2, i}));
        },
        [&](std::size_t i, std::vector<Window> windows) {
            keep(std::move(windows), crops[cropOrder[i]].held);
            return found() < fromCrops;
        });
    negatives.fromCrops = found();

    for (int pass = 0; pass < options.passes && found() < options.wanted; ++pass) {
        const auto p = static_cast<uint64>(pass);
        const std::vector<std::size_t> order = Shuffled(pictures.pictures.size(), Random({seed, stage, 3, p}));
        InOrder(
            order.size(), options.threads,
            [&](std::size_t i) {
                Random random({seed, stage, 4, p, i});
                const double shift = random.Between(1.0, 1.05);
                Reservoir reservoir(static_cast<std::size_t>(options.perPicture), cascade.WindowSize(), random);
                const GreyPicture& picture = pictures.pictures[order[i]];
                // Upright pictures come first; mirrored ones next, then the turned ones.
                const GreyPicture turned = pass == 0 ? GreyPicture{} : Turned(picture, pass / 2 % 4, pass % 2 != 0);
                VisitSurvivors(pass == 0 ? picture : turned, cascade, shift,
                               [&](const Survivor& s) { reservoir.Offer(s); });
                return reservoir.Take();
            },
            [&](std::size_t i, std::vector<Window> windows) {
                keep(std::move(windows), order[i] % kHeldShare == 0);
                if (++negatives.pictures % 200 == 0) progress(found(), negatives.pictures);
                return found() < options.wanted;
            });
    }
    return negatives;
}

} // namespace orvane::train
