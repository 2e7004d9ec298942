// Evaluation mirrors the detector's arithmetic: weights times norm in float, sums and bounds in double, one
// comparison sense.
#include "tools/train/cascade.h"

#include <algorithm>
#include <bit>
#include <cstdio>
#include <filesystem>

namespace orvane::train {
namespace {

int OrderOf(const Stump& s) { return s.feature.rectCount == 2 ? 0 : s.feature.rectCount == 3 ? 1 : 2; }

class Writer {
public:
    void Int(int32 v) { Bits(static_cast<uint32>(v)); }
    void Real(float v) { Bits(std::bit_cast<uint32>(v)); }
    std::vector<uint8> Take() { return std::move(bytes_); }

private:
    void Bits(uint32 v) {
        for (int shift = 0; shift < 32; shift += 8) bytes_.push_back(static_cast<uint8>(v >> shift));
    }
    std::vector<uint8> bytes_;
};

class Reader {
public:
    explicit Reader(const std::vector<uint8>& bytes) : bytes_(bytes) {}
    int32 Int() { return static_cast<int32>(Bits()); }
    float Real() { return std::bit_cast<float>(Bits()); }
    bool Ok() const { return ok_; }

private:
    uint32 Bits() {
        if (at_ + 4 > bytes_.size()) {
            ok_ = false;
            return 0;
        }
        uint32 v = 0;
        for (int shift = 0; shift < 32; shift += 8) v |= static_cast<uint32>(bytes_[at_++]) << shift;
        return v;
    }
    const std::vector<uint8>& bytes_;
    std::size_t at_ = 0;
    bool ok_ = true;
};

} // namespace

void SortForDetector(Stage& stage) {
    std::stable_sort(stage.stumps.begin(), stage.stumps.end(),
                     [](const Stump& a, const Stump& b) { return OrderOf(a) < OrderOf(b); });
}

double StageSum(const Stage& stage, const Patch& patch, float norm) {
    double sum = 0.0;
    for (const Stump& stump : stage.stumps) {
        const double bound = static_cast<double>(stump.threshold) * patch.Deviation();
        sum += patch.Measure(stump.feature, norm) < bound ? stump.below : stump.above;
    }
    return sum;
}

bool Passes(const Stage& stage, const Patch& patch, float norm) {
    const float threshold = stage.threshold - kThresholdBias;
    return !(StageSum(stage, patch, norm) < threshold);
}

bool Passes(const Cascade& cascade, const Patch& patch) {
    const float norm = AreaNorm(cascade.windowSize);
    return std::all_of(cascade.stages.begin(), cascade.stages.end(),
                       [&](const Stage& stage) { return Passes(stage, patch, norm); });
}

std::string FindFault(const Cascade& cascade) {
    if (cascade.stages.empty()) return "no stages";
    int32 right = 0;
    int32 top = 0;
    for (const Stage& stage : cascade.stages) {
        if (stage.stumps.empty()) return "a stage without classifiers";
        for (const Stump& stump : stage.stumps) {
            for (std::size_t i = 0; i < static_cast<std::size_t>(stump.feature.rectCount); ++i) {
                const ImageRect& r = stump.feature.rects[i];
                if (r.x < 0 || r.y < 0 || r.width < 1 || r.height < 1 || r.x + r.width > cascade.windowSize.width ||
                    r.y + r.height > cascade.windowSize.height) {
                    return "a rectangle outside the window";
                }
                right = std::max(right, r.x + r.width);
                top = std::max(top, r.y + r.height);
            }
        }
    }
    if (right != cascade.windowSize.width) return "no rectangle reaches the window's last column";
    if (top != cascade.windowSize.height) return "no rectangle reaches the window's last row";
    return {};
}

std::vector<uint8> ToFile(const Cascade& cascade) {
    std::vector<const Stump*> stumps;
    int32 rectCount = 0;
    struct Start {
        int32 stump;
        int32 rect;
    };
    std::vector<Start> starts;
    for (const Stage& stage : cascade.stages) {
        starts.push_back({static_cast<int32>(stumps.size()), rectCount});
        for (const Stump& stump : stage.stumps) {
            stumps.push_back(&stump);
            rectCount += stump.feature.rectCount;
        }
    }
    Writer out;
    out.Int(cascade.windowSize.width);
    out.Int(cascade.windowSize.height);
    out.Int(static_cast<int32>(cascade.stages.size()));
    out.Int(static_cast<int32>(stumps.size()));
    out.Int(rectCount);
    for (const Stage& stage : cascade.stages) out.Real(stage.threshold);
    for (const Stage& stage : cascade.stages) out.Int(static_cast<int32>(stage.stumps.size()));
    for (std::size_t i = 0; i < cascade.stages.size(); ++i) out.Int(0);
    for (const Start& start : starts) out.Int(start.stump);
    for (const Start& start : starts) out.Int(start.rect);
    for (const Stump* stump : stumps) out.Int(stump->feature.rectCount);
    for (const Stump* stump : stumps) out.Real(stump->threshold);
    for (const Stump* stump : stumps) out.Real(stump->below);
    for (const Stump* stump : stumps) out.Real(stump->above);
    for (const Stump* stump : stumps) {
        for (std::size_t i = 0; i < static_cast<std::size_t>(stump->feature.rectCount); ++i) {
            const ImageRect& r = stump->feature.rects[i];
            out.Int(r.x);
            out.Int(cascade.windowSize.height - r.height - r.y);
            out.Int(r.width);
            out.Int(r.height);
        }
    }
    for (const Stump* stump : stumps) {
        for (std::size_t i = 0; i < static_cast<std::size_t>(stump->feature.rectCount); ++i) {
            out.Real(stump->feature.weights[i]);
        }
    }
    return out.Take();
}

bool FromFile(const std::vector<uint8>& bytes, Cascade& cascade) {
    Reader in(bytes);
    Cascade read;
    read.windowSize.width = in.Int();
    read.windowSize.height = in.Int();
    const int32 stageCount = in.Int();
    const int32 stumpCount = in.Int();
    const int32 rectCount = in.Int();
    if (!in.Ok() || stageCount < 0 || stumpCount < 0 || rectCount < 0) return false;
    const int64 length = 20 + int64{20} * stageCount + int64{16} * stumpCount + int64{20} * rectCount;
    if (length != static_cast<int64>(bytes.size())) return false;

    read.stages.resize(static_cast<std::size_t>(stageCount));
    std::vector<int32> counts(read.stages.size());
    for (Stage& stage : read.stages) stage.threshold = in.Real();
    for (int32& count : counts) count = in.Int();
    for (int32 i = 0; i < 3 * stageCount; ++i) in.Int(); // reserved and starts: stages follow one another here
    std::vector<Stump> stumps(static_cast<std::size_t>(stumpCount));
    int64 rects = 0;
    for (Stump& stump : stumps) {
        stump.feature.rectCount = in.Int();
        if (stump.feature.rectCount < 1 || stump.feature.rectCount > kMaxRects) return false;
        rects += stump.feature.rectCount;
    }
    if (rects != rectCount) return false;
    for (Stump& stump : stumps) stump.threshold = in.Real();
    for (Stump& stump : stumps) stump.below = in.Real();
    for (Stump& stump : stumps) stump.above = in.Real();
    for (Stump& stump : stumps) {
        for (std::size_t i = 0; i < static_cast<std::size_t>(stump.feature.rectCount); ++i) {
            ImageRect& r = stump.feature.rects[i];
            r.x = in.Int();
            r.y = in.Int();
            r.width = in.Int();
            r.height = in.Int();
            r.y = read.windowSize.height - r.height - r.y;
        }
    }
    for (Stump& stump : stumps) {
        for (std::size_t i = 0; i < static_cast<std::size_t>(stump.feature.rectCount); ++i) {
            stump.feature.weights[i] = in.Real();
        }
    }
    std::size_t next = 0;
    for (std::size_t s = 0; s < read.stages.size(); ++s) {
        if (counts[s] < 1 || static_cast<std::size_t>(counts[s]) > stumps.size() - next) return false;
        const auto from = stumps.begin() + static_cast<std::ptrdiff_t>(next);
        read.stages[s].stumps.assign(from, from + counts[s]);
        next += static_cast<std::size_t>(counts[s]);
    }
    if (next != stumps.size()) return false;
    cascade = std::move(read);
    return true;
}

bool ReadFile(const std::string& path, std::vector<uint8>& bytes) {
    std::FILE* file = std::fopen(path.c_str(), "rb");
    if (file == nullptr) return false;
    bytes.clear();
    uint8 block[65536];
    for (std::size_t n; (n = std::fread(block, 1, sizeof block, file)) > 0;)
        bytes.insert(bytes.end(), block, block + n);
    const bool ok = std::ferror(file) == 0;
    std::fclose(file);
    return ok;
}

bool WriteFile(const std::string& path, const std::vector<uint8>& bytes) {
    const std::string temporary = path + ".part";
    std::FILE* file = std::fopen(temporary.c_str(), "wb");
    if (file == nullptr) return false;
    const bool written = std::fwrite(bytes.data(), 1, bytes.size(), file) == bytes.size();
    const bool closed = std::fclose(file) == 0;
    std::error_code error;
    if (written && closed) {
        std::filesystem::rename(temporary, path, error);
        if (!error) return true;
    }
    std::filesystem::remove(temporary, error);
    return false;
}

} // namespace orvane::train
