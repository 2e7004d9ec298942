// Pictures are scanned in blocks by several threads and taken over in order, so that the harvest depends on
// the seed alone.
#include "tools/train/harvest.h"

#include "tools/train/distort.h"
#include "tools/train/drawn.h"
#include "tools/train/parallel.h"
#include "tools/train/square.h"
#include "tools/train/table.h"

#include <algorithm>
#include <cmath>
#include <cstdio>

namespace orvane::train {
namespace {

constexpr std::size_t kHeldShare = 5;
constexpr int kScaleShare = 4;
constexpr int kFormShare = 6;  // of six scans one sees the pictures as they are, one mirrored, the others distorted
constexpr int kCropPasses = 4; // over all face crops, each time in another form and at another scale, for the pool
constexpr int kHeldKind = 1;   // in the pool's file
constexpr int kCropKind = 2;
constexpr double kLargestShift = 1.05; // the detector's scale step
constexpr double kFaceOverlap = 0.5;   // a square that meets the face's by more is no negative

Window CopyWindow(const Survivor& s, ImageSize size) {
    Window window;
    window.reserve(PixelCount(size));
    for (int32 y = 0; y < size.height; ++y) {
        const uint8* row = RowAt(s.pixels, s.step, y);
        window.insert(window.end(), row, row + size.width);
    }
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
            const auto at = [&](int i, int j) { return crop.pixels[PixelIndex(x0 + i, y0 + j, kCropSide)]; };
            const double low = at(0, 0) + (at(1, 0) - at(0, 0)) * (u - x0);
            const double high = at(0, 1) + (at(1, 1) - at(0, 1)) * (u - x0);
            picture.pixels[PixelIndex(x, y, side)] = static_cast<uint8>(low + (high - low) * (v - y0) + 0.5);
        }
    }
    return picture;
}

/// Visits the windows of a crop that the cascade takes for faces though they are not at the face's place. Half of the
/// crops are jumbled first: there no window is a face.
void VisitCrop(const FaceCrop& crop, const Framing& framing, const CompiledCascade& cascade, Random random,
               const std::function<void(const Survivor&)>& visit) {
    const auto zoom = static_cast<int32>(1 + random.Below(2));
    const double side = kCropBoxSide * framing.windowToBox * zoom;
    const double corner = 0.5 * (kCropSide * zoom - side);
    const double shift = random.Between(1.0, kLargestShift);
    const bool jumbled = random.Below(2) != 0;
    GreyPicture picture = AsPicture(crop, zoom);
    if (jumbled) picture = Jumbled(picture, random);
    VisitSurvivors(picture, cascade, {shift, 1, 0}, [&](const Survivor& s) {
        if (jumbled || OverlapOf({s.x, s.y, s.side}, {corner, corner, side}) < kFaceOverlap) visit(s);
    });
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

/// Whether the picture of this number is kept apart, in every form.
bool IsHeld(std::size_t picture) { return picture % kHeldShare == 0; }

enum class Form { AsItIs, Mirrored, Distorted };

/// What a picture is seen as: whole scans take turns.
Form FormOf(int pass) {
    const int scan = pass / kScaleShare % kFormShare;
    return scan == 0 ? Form::AsItIs : scan == 1 ? Form::Mirrored : Form::Distorted;
}

/// One pass over a picture: one scale in four, so that windows that are plenty come from many pictures at little
/// cost. Four passes see it as it is, four mirrored and sixteen distorted, each of these in another way; some of the
/// distorted ones are put together with another picture, of those that are held apart like itself.
void VisitPass(const std::vector<GreyPicture>& pictures, std::size_t index, const CompiledCascade& cascade, int pass,
               Random random, const std::function<void(const Survivor&)>& visit) {
    const GreyPicture& picture = pictures[index];
    const ScaleChoice choice{random.Between(1.0, kLargestShift), kScaleShare, pass % kScaleShare};
    const Form form = FormOf(pass);
    if (form == Form::AsItIs) return VisitSurvivors(picture, cascade, choice, visit);
    if (form == Form::Mirrored) return VisitSurvivors(Turned(picture, 0, true), cascade, choice, visit);
    GreyPicture changed = Distorted(picture, random);
    Random other({random.Next(), 1});
    if (other.Below(3) == 0) {
        std::size_t with = other.Below(static_cast<std::uint32_t>(pictures.size()));
        while (IsHeld(with) != IsHeld(index)) with = (with + 1) % pictures.size();
        changed = Combined(changed, Distorted(pictures[with], other), other);
    }
    VisitSurvivors(changed, cascade, choice, visit);
}

} // namespace

PictureSet ReadPictures(const std::string& folder, const std::string& classes, const std::string& without,
                        int threads) {
    Table table;
    if (!table.Read(folder + "/negatives.csv")) return {{}, "cannot read negatives.csv"};
    std::vector<std::string> paths;
    for (std::size_t i = 0; i < table.Rows(); ++i) {
        if (table.Text(i, "split") != "train" || classes.find(table.Text(i, "class")) == std::string::npos) continue;
        if (Names(without, table.Text(i, "source"))) continue;
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

void AddDrawnPictures(PictureSet& set, std::size_t count, uint64 seed, int threads) {
    constexpr ImageSize kDrawnSize{320, 240};
    const std::size_t before = set.pictures.size();
    set.pictures.resize(before + count);
    ForEachIndex(count, threads, [&](std::size_t i) {
        set.pictures[before + i] = DrawnPicture(kDrawnSize, Random({seed, 8, i}));
    });
}

Harvester::Harvester(const PictureSet& pictures, const std::vector<FaceCrop>& crops, const Framing& framing,
                     const HarvestOptions& options, uint64 seed)
    : pictures_(pictures), crops_(crops), framing_(framing), options_(options), seed_(seed) {}

Negatives Harvester::Harvest(const Cascade& cascade, const HarvestProgress& progress) {
    Negatives negatives;
    const uint64 stage = cascade.stages.size();
    const CompiledCascade compiled(cascade);
    if (stage < static_cast<uint64>(options_.poolStage)) {
        AddFromCrops(compiled, stage, negatives);
        AddFromPictures(compiled, stage, negatives, progress);
        return negatives;
    }
    if (!pooled_ && !LoadPool(cascade.windowSize)) {
        FillPool(compiled, progress);
        if (!SavePool()) std::fprintf(stderr, "cannot write %s\n", options_.poolFile.c_str());
    }
    pooled_ = true;
    AddFromPool(cascade, negatives);
    return negatives;
}

std::size_t Harvester::Share(std::size_t whole, bool ofCrops) const {
    const auto share = static_cast<std::size_t>(static_cast<double>(whole) * options_.cropShare);
    return ofCrops ? share : whole - share;
}

void Harvester::AddFromCrops(const CompiledCascade& cascade, uint64 stage, Negatives& negatives) const {
    const std::size_t wanted = Share(options_.wanted, true);
    if (wanted == 0) return;
    const std::vector<std::size_t> order = Shuffled(crops_.size(), Random({seed_, stage, 1}));
    InOrder(
        order.size(), options_.threads,
        [&](std::size_t i) {
            const Random random({seed_, stage, 2, i});
            Reservoir reservoir(2, cascade.WindowSize(), random);
            VisitCrop(crops_[order[i]], framing_, cascade, random, [&](const Survivor& s) { reservoir.Offer(s); });
            return reservoir.Take();
        },
        [&](std::size_t i, std::vector<Window> windows) {
            for (Window& window : windows) negatives.Add(std::move(window), crops_[order[i]].held);
            return negatives.Count() < wanted;
        });
    negatives.fromCrops = negatives.Count();
}

void Harvester::AddFromPictures(const CompiledCascade& cascade, uint64 stage, Negatives& negatives,
                                const HarvestProgress& progress) const {
    for (int pass = 0; pass < options_.passes && negatives.Count() < options_.wanted; ++pass) {
        const auto p = static_cast<uint64>(pass);
        const std::vector<std::size_t> order = Shuffled(pictures_.pictures.size(), Random({seed_, stage, 3, p}));
        InOrder(
            order.size(), options_.threads,
            [&](std::size_t i) {
                Random random({seed_, stage, 4, p, i});
                Reservoir reservoir(static_cast<std::size_t>(options_.perPicture), cascade.WindowSize(), random);
                VisitPass(pictures_.pictures, order[i], cascade, pass, random,
                          [&](const Survivor& s) { reservoir.Offer(s); });
                return reservoir.Take();
            },
            [&](std::size_t i, std::vector<Window> windows) {
                for (Window& window : windows) negatives.Add(std::move(window), IsHeld(order[i]));
                if (++negatives.pictures % 500 == 0) progress(negatives.Count(), negatives.pictures);
                return negatives.Count() < options_.wanted;
            });
    }
}

bool Harvester::LoadPool(ImageSize windowSize) {
    std::vector<uint8> bytes;
    const auto pixels = PixelCount(windowSize);
    if (options_.poolFile.empty() || !ReadFile(options_.poolFile, bytes) || bytes.size() % (pixels + 1) != 0)
        return false;
    for (auto at = bytes.begin(); at != bytes.end();) {
        const uint8 kind = *at++;
        const auto end = at + static_cast<std::ptrdiff_t>(pixels);
        pool_.push_back({Window(at, end), (kind & kHeldKind) != 0, (kind & kCropKind) != 0});
        at = end;
    }
    return true;
}

bool Harvester::SavePool() const {
    if (options_.poolFile.empty()) return true;
    std::vector<uint8> bytes; // for each window: its kind, then its pixels
    for (const Found& found : pool_) {
        bytes.push_back(static_cast<uint8>((found.held ? kHeldKind : 0) | (found.fromCrop ? kCropKind : 0)));
        bytes.insert(bytes.end(), found.window.begin(), found.window.end());
    }
    return WriteFile(options_.poolFile, bytes);
}

void Harvester::FillPool(const CompiledCascade& cascade, const HarvestProgress& progress) {
    for (int pass = 0; pass < kCropPasses && Share(options_.wanted, true) != 0; ++pass) {
        InOrder(
            crops_.size(), options_.threads,
            [&](std::size_t i) {
                std::vector<Window> windows;
                VisitCrop(crops_[i], framing_, cascade, Random({seed_, 7, static_cast<uint64>(pass), i}),
                          [&](const Survivor& s) { windows.push_back(CopyWindow(s, cascade.WindowSize())); });
                return windows;
            },
            [&](std::size_t i, std::vector<Window> windows) {
                for (Window& window : windows) pool_.push_back({std::move(window), crops_[i].held, true});
                return true;
            });
    }
    std::size_t scanned = 0;
    for (int pass = 0; pass < options_.passes; ++pass) {
        InOrder(
            pictures_.pictures.size(), options_.threads,
            [&](std::size_t i) {
                // Nothing here may depend on the stage at which the pool is filled.
                const Random random({seed_, 5, static_cast<uint64>(pass), i});
                std::vector<Window> windows;
                VisitPass(pictures_.pictures, i, cascade, pass, random,
                          [&](const Survivor& s) { windows.push_back(CopyWindow(s, cascade.WindowSize())); });
                return windows;
            },
            [&](std::size_t i, std::vector<Window> windows) {
                for (Window& window : windows) pool_.push_back({std::move(window), IsHeld(i), false});
                if (++scanned % 500 == 0) progress(pool_.size(), scanned);
                return true;
            });
    }
}

void Harvester::AddFromPool(const Cascade& cascade, Negatives& negatives) const {
    const Evaluator evaluator(cascade);
    std::vector<char> passes(pool_.size());
    std::vector<double> sums(pool_.size());
    ForEachIndex(pool_.size(), options_.threads, [&](std::size_t i) {
        const Patch patch(pool_[i].window.data(), cascade.windowSize);
        passes[i] = evaluator.Passes(patch) ? 1 : 0;
        if (passes[i] == 0) sums[i] = evaluator.StageSum(cascade.stages.size() - 1, patch);
    });
    negatives.pictures = pictures_.pictures.size() * static_cast<std::size_t>(options_.passes);
    std::vector<std::size_t> refused;
    std::size_t fromPictures = 0;
    for (const std::size_t i : Shuffled(pool_.size(), Random({seed_, cascade.stages.size(), 6}))) {
        const bool fromCrop = pool_[i].fromCrop;
        std::size_t& count = fromCrop ? negatives.fromCrops : fromPictures;
        if (passes[i] == 0) {
            if (!pool_[i].held) refused.push_back(i);
        } else if (count < Share(options_.wanted, fromCrop)) {
            negatives.Add(pool_[i].window, pool_[i].held);
            ++count;
        }
    }
    std::stable_sort(refused.begin(), refused.end(), [&](std::size_t a, std::size_t b) { return sums[a] > sums[b]; });
    std::size_t taken[2] = {};
    for (const std::size_t i : refused) {
        const bool fromCrop = pool_[i].fromCrop;
        if (taken[fromCrop ? 1 : 0]++ < Share(options_.refused, fromCrop)) negatives.refused.push_back(pool_[i].window);
    }
}

} // namespace orvane::train
