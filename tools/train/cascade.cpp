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

std::vector<const Stump*> StumpsOf(const Cascade& cascade, std::size_t stage) {
    std::size_t first = stage;
    while (first > 0 && cascade.stages[first].chained) --first;
    std::vector<const Stump*> stumps;
    for (std::size_t s = first; s <= stage; ++s) {
        for (const Stump& stump : cascade.stages[s].stumps) stumps.push_back(&stump);
    }
    return stumps;
}

Evaluator::Evaluator(const Cascade& cascade) : norm_(AreaNorm(cascade.windowSize)) {
    for (std::size_t s = 0; s < cascade.stages.size(); ++s) {
        std::vector<const Stump*> stumps = StumpsOf(cascade, s);
        std::stable_sort(stumps.begin(), stumps.end(),
                         [](const Stump* a, const Stump* b) { return OrderOf(*a) < OrderOf(*b); });
        stages_.push_back({std::move(stumps), cascade.stages[s].threshold - kThresholdBias});
    }
}

double Evaluator::StageSum(std::size_t stage, const Patch& patch) const {
    double sum = 0.0;
    for (const Stump* stump : stages_[stage].stumps) {
        const double bound = static_cast<double>(stump->threshold) * patch.Deviation();
        sum += patch.Measure(stump->feature, norm_) < bound ? stump->below : stump->above;
    }
    return sum;
}

bool Evaluator::Passes(const Patch& patch) const {
    for (std::size_t s = 0; s < stages_.size(); ++s) {
        if (StageSum(s, patch) < stages_[s].threshold) return false;
    }
    return true;
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
    std::vector<int32> counts;
    for (const Stage& stage : cascade.stages) {
        const bool chained = stage.chained && !starts.empty();
        starts.push_back(chained ? starts.back() : Start{static_cast<int32>(stumps.size()), rectCount});
        for (const Stump& stump : stage.stumps) {
            stumps.push_back(&stump);
            rectCount += stump.feature.rectCount;
        }
        counts.push_back(static_cast<int32>(stumps.size()) - starts.back().stump);
    }
    Writer out;
    out.Int(cascade.windowSize.width);
    out.Int(cascade.windowSize.height);
    out.Int(static_cast<int32>(cascade.stages.size()));
    out.Int(static_cast<int32>(stumps.size()));
    out.Int(rectCount);
    for (const Stage& stage : cascade.stages) out.Real(stage.threshold);
    for (const int32 count : counts) out.Int(count);
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
    for (int32 i = 0; i < stageCount; ++i) in.Int(); // reserved
    std::vector<int32> starts(read.stages.size());
    for (int32& start : starts) start = in.Int();
    for (int32 i = 0; i < stageCount; ++i) in.Int(); // rectangles begin where the stumps do
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
        read.stages[s].chained = s > 0 && starts[s] == starts[s - 1];
        if (starts[s] < 0 || (!read.stages[s].chained && static_cast<std::size_t>(starts[s]) != next)) return false;
        const int64 end = int64{starts[s]} + counts[s];
        if (end <= static_cast<int64>(next) || end > static_cast<int64>(stumps.size())) return false;
        const auto from = stumps.begin();
        read.stages[s].stumps.assign(from + static_cast<std::ptrdiff_t>(next), from + static_cast<std::ptrdiff_t>(end));
        next = static_cast<std::size_t>(end);
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
