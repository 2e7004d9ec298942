#include "tools/support/jpeg_scans.h"

#include "tools/support/jpeg_bits.h"
#include "tools/support/jpeg_end.h"
#include "tools/support/picture.h"

#include <algorithm>
#include <cstdlib>
#include <vector>

namespace orvane::tools {
namespace {

/// Bits of the greatest difference of two first coefficients that 8-bit samples lead to.
constexpr int kLongestFirst = 11;
/// The mean of a block with all samples at an end, in the transform's scale.
constexpr int kGreatestFirst = 1024;

struct Component {
    unsigned id = 0;
    int across = 1; ///< Blocks in an MCU.
    int down = 1;
    unsigned table = 0;      ///< Of its quantisation.
    int dc = 0;              ///< First coefficient of the block before, as a scan codes it.
    std::size_t columns = 0; ///< Blocks of the whole MCUs, by which `nonzero` is laid out.
    /// By block: the coefficients that earlier scans of a progressive stream made other than zero, a bit each.
    std::vector<std::uint64_t> nonzero;
};

/// What a scan's header tells.
struct ScanPart {
    Component* component = nullptr;
    const JpegCode* dc = nullptr;
    const JpegCode* ac = nullptr;
    int greatestFirst = 0; ///< Of the component's first coefficients.
};

enum class Verdict { whole, damaged, unknown };

class Walker {
public:
    explicit Walker(const std::string& data) : data_(data) {}

    Verdict Run() {
        std::size_t at = 2;
        for (;;) {
            if (!ToMarker(&at)) return Verdict::unknown;
            const unsigned marker = Byte(at + 1);
            at += 2;
            if (marker == 0xD9) return Verdict::whole;
            if (marker == 0xD8 || marker == 0x01) continue;
            if (data_.size() - at < 2) return Verdict::unknown;
            const std::size_t length = Byte(at) << 8 | Byte(at + 1);
            if (length < 2 || data_.size() - at < length) return Verdict::unknown;
            const std::size_t end = at + length;
            if (!Segment(marker, at + 2, end)) return Verdict::unknown;
            at = end;
            if (marker != 0xDA) continue;
            const Verdict verdict = ReadScan(&at);
            if (verdict != Verdict::whole) return verdict;
        }
    }

private:
    unsigned Byte(std::size_t at) const { return static_cast<unsigned char>(data_[at]); }
    const unsigned char* Bytes(std::size_t at) const {
        return reinterpret_cast<const unsigned char*>(data_.data()) + at;
    }

    bool ToMarker(std::size_t* at) const {
        while (*at + 1 < data_.size() && Byte(*at) == 0xFF && Byte(*at + 1) == 0xFF) ++*at;
        return *at + 1 < data_.size() && Byte(*at) == 0xFF;
    }

    /// False for what is not read here.
    bool Segment(unsigned marker, std::size_t at, std::size_t end) {
        switch (marker) {
        case 0xC0: // baseline, extended, progressive
        case 0xC1:
        case 0xC2:
            progressive_ = marker == 0xC2;
            return ReadFrame(at, end);
        case 0xC4:
            return ReadCodes(at, end);
        case 0xDB:
            return ReadFirstSteps(at, end);
        case 0xDD:
            if (end - at < 2) return false;
            restart_ = Byte(at) << 8 | Byte(at + 1);
            return true;
        case 0xDA:
            return ReadScanHeader(at, end);
        default:
            return marker < 0xC0 || marker > 0xCF; // other frames
        }
    }

    bool ReadFrame(std::size_t at, std::size_t end) {
        if (end - at < 6 || !components_.empty()) return false;
        height_ = static_cast<int>(Byte(at + 1) << 8 | Byte(at + 2));
        width_ = static_cast<int>(Byte(at + 3) << 8 | Byte(at + 4));
        const std::size_t count = Byte(at + 5);
        if (Byte(at) != 8 || count < 1 || count > 4 || end - at < 6 + 3 * count) return false;
        if (!IsPictureSizeAllowed(width_, height_)) return false;
        for (std::size_t i = 0; i < count; ++i) {
            Component component;
            component.id = Byte(at + 6 + 3 * i);
            component.table = Byte(at + 8 + 3 * i) & 3;
            component.across = static_cast<int>(Byte(at + 7 + 3 * i) >> 4);
            component.down = static_cast<int>(Byte(at + 7 + 3 * i) & 15);
            if (component.across < 1 || component.across > 4 || component.down < 1 || component.down > 4) return false;
            mostAcross_ = std::max(mostAcross_, component.across);
            mostDown_ = std::max(mostDown_, component.down);
            components_.push_back(component);
        }
        mcuColumns_ = (width_ + 8 * mostAcross_ - 1) / (8 * mostAcross_);
        mcuRows_ = (height_ + 8 * mostDown_ - 1) / (8 * mostDown_);
        for (Component& component : components_) {
            component.columns = static_cast<std::size_t>(mcuColumns_) * static_cast<std::size_t>(component.across);
            const auto rows = static_cast<std::size_t>(mcuRows_) * static_cast<std::size_t>(component.down);
            if (progressive_) component.nonzero.assign(component.columns * rows, 0);
        }
        return true;
    }

    bool ReadCodes(std::size_t at, std::size_t end) {
        while (at < end) {
            if (end - at < 17) return false;
            const unsigned kind = Byte(at) >> 4;
            const unsigned place = Byte(at) & 15;
            if (kind > 1 || place > 3) return false;
            std::size_t count = 0;
            for (std::size_t i = 1; i <= 16; ++i) count += Byte(at + i);
            if (end - at - 17 < count || !codes_[kind][place].Set(Bytes(at + 1), Bytes(at + 17), count)) return false;
            at += 17 + count;
        }
        return true;
    }

    /// Of each quantisation the step of the first coefficient.
    bool ReadFirstSteps(std::size_t at, std::size_t end) {
        while (at < end) {
            const bool wide = Byte(at) >> 4 != 0;
            const std::size_t length = wide ? 129 : 65;
            if (end - at < length || (Byte(at) & 15) > 3) return false;
            firstSteps_[Byte(at) & 15] = static_cast<int>(wide ? Byte(at + 1) << 8 | Byte(at + 2) : Byte(at + 1));
            at += length;
        }
        return true;
    }

    bool ReadScanHeader(std::size_t at, std::size_t end) {
        const std::size_t count = at < end ? Byte(at) : 0;
        if (count < 1 || count > 4 || end - at < 4 + 2 * count) return false;
        first_ = static_cast<int>(Byte(at + 1 + 2 * count));
        last_ = static_cast<int>(Byte(at + 2 + 2 * count));
        refines_ = Byte(at + 3 + 2 * count) >> 4 != 0;
        shift_ = progressive_ ? static_cast<int>(Byte(at + 3 + 2 * count) & 15) : 0;
        if (!progressive_) {
            first_ = 0;
            last_ = kLastCoefficient;
            refines_ = false;
        }
        if (first_ > last_ || last_ > kLastCoefficient || (progressive_ && first_ > 0 && count > 1)) return false;
        parts_.clear();
        for (std::size_t i = 0; i < count; ++i) {
            const unsigned id = Byte(at + 1 + 2 * i);
            const unsigned tables = Byte(at + 2 + 2 * i);
            const auto found = std::find_if(components_.begin(), components_.end(),
                                            [&](const Component& component) { return component.id == id; });
            if (found == components_.end() || (tables >> 4) > 3 || (tables & 15) > 3) return false;
            const int step = std::max(firstSteps_[found->table], 1);
            // Half a step of rounding, and as much again for encoders that round otherwise.
            const int greatestFirst = (kGreatestFirst + step) / step + 1;
            const ScanPart part{&*found, &codes_[0][tables >> 4], &codes_[1][tables & 15], greatestFirst};
            if (first_ == 0 && !refines_ && !part.dc->IsSet()) return false;
            if (last_ > 0 && !part.ac->IsSet()) return false;
            parts_.push_back(part);
        }
        return true;
    }

    Verdict ReadScan(std::size_t* at) {
        const bool alone = parts_.size() == 1;
        int columns = mcuColumns_;
        int rows = mcuRows_;
        if (alone) { // then a scan has no blocks beyond the picture's edges
            const Component& component = *parts_[0].component;
            columns = Blocks(width_, component.across, mostAcross_);
            rows = Blocks(height_, component.down, mostDown_);
        }
        JpegBits bits(data_, *at);
        std::size_t left = restart_;
        int expected = 0;
        BeginInterval();
        for (int row = 0; row < rows; ++row) {
            for (int column = 0; column < columns; ++column) {
                if (restart_ > 0 && left == 0) {
                    if (!bits.ReachMarker(at) || Byte(*at + 1) != 0xD0U + static_cast<unsigned>(expected)) {
                        return Verdict::damaged;
                    }
                    bits.Restart(*at + 2);
                    left = restart_;
                    expected = (expected + 1) % 8;
                    BeginInterval();
                }
                --left;
                if (!ReadUnit(&bits, row, column, alone) || bits.HasRunDry()) return Verdict::damaged;
            }
        }
        return bits.ReachMarker(at) ? Verdict::whole : Verdict::damaged;
    }

    void BeginInterval() {
        endOfBands_ = 0;
        for (const ScanPart& part : parts_) part.component->dc = 0;
    }

    static int Blocks(int pixels, int own, int most) { return ((pixels * own + most - 1) / most + 7) / 8; }

    bool ReadUnit(JpegBits* bits, int row, int column, bool alone) {
        for (const ScanPart& part : parts_) {
            const int down = alone ? 1 : part.component->down;
            const int across = alone ? 1 : part.component->across;
            for (int y = 0; y < down; ++y) {
                for (int x = 0; x < across; ++x) {
                    const auto place = static_cast<std::size_t>(row * down + y) * part.component->columns +
                                       static_cast<std::size_t>(column * across + x);
                    if (!ReadBlock(bits, part, place)) return false;
                }
            }
        }
        return true;
    }

    bool ReadBlock(JpegBits* bits, const ScanPart& part, std::size_t place) {
        if (first_ == 0) {
            if (refines_) {
                bits->Take(1);
            } else if (!ReadFirst(bits, part)) {
                return false;
            }
        }
        if (last_ == 0) return true;
        if (!progressive_) return part.ac->TakeBand(bits);
        std::uint64_t* nonzero = &part.component->nonzero[place];
        return refines_ ? RefineBand(bits, *part.ac, nonzero) : BeginBand(bits, *part.ac, nonzero);
    }

    /// The first coefficient is a block's mean, which a stream that has lost its way drifts away from.
    bool ReadFirst(JpegBits* bits, const ScanPart& part) const {
        const int size = part.dc->Take(bits);
        if (size < 0 || size > kLongestFirst) return false;
        const auto value = static_cast<int>(bits->Take(size));
        int& dc = part.component->dc;
        dc += size > 0 && value < 1 << (size - 1) ? value - (1 << size) + 1 : value;
        return std::abs(dc) * (1 << shift_) <= part.greatestFirst;
    }

    /// The run of blocks whose rest of the band is zero, this one among them.
    unsigned EndOfBands(JpegBits* bits, int run) { return (1U << run) + bits->Take(run); }

    bool BeginBand(JpegBits* bits, const JpegCode& code, std::uint64_t* nonzero) {
        if (endOfBands_ > 0) {
            --endOfBands_;
            return true;
        }
        for (int k = std::max(first_, 1); k <= last_; ++k) {
            const int symbol = code.Take(bits);
            if (symbol < 0) return false;
            const int run = symbol >> 4;
            const int size = symbol & 15;
            if (size == 0 && run < 15) {
                endOfBands_ = EndOfBands(bits, run) - 1;
                return true;
            }
            k += run;
            if (size == 0) continue;
            if (k > last_ || size > kLongestOther) return false;
            bits->Drop(size);
            *nonzero |= std::uint64_t{1} << k;
        }
        return true;
    }

    /// Coefficients that are other than zero already have a bit each; new ones come between them.
    bool RefineBand(JpegBits* bits, const JpegCode& code, std::uint64_t* nonzero) {
        int k = std::max(first_, 1);
        const auto isNonzero = [&] { return (*nonzero >> k & 1) != 0; };
        for (; endOfBands_ == 0 && k <= last_; ++k) {
            const int symbol = code.Take(bits);
            if (symbol < 0) return false;
            int run = symbol >> 4;
            const bool isNew = (symbol & 15) != 0;
            if (!isNew && run < 15) {
                endOfBands_ = EndOfBands(bits, run);
                break;
            }
            if (isNew) bits->Take(1);
            for (; k <= last_; ++k) {
                if (isNonzero()) {
                    bits->Take(1);
                } else if (--run < 0) {
                    break;
                }
            }
            if (!isNew) continue;
            if (k > last_) return false;
            *nonzero |= std::uint64_t{1} << k;
        }
        if (endOfBands_ > 0) {
            for (; k <= last_; ++k) {
                if (isNonzero()) bits->Take(1);
            }
            --endOfBands_;
        }
        return true;
    }

    const std::string& data_;
    JpegCode codes_[2][4]; ///< For the first coefficient, for the others.
    std::vector<Component> components_;
    std::vector<ScanPart> parts_;
    bool progressive_ = false;
    bool refines_ = false;
    int shift_ = 0; ///< Bits that a scan leaves to later ones.
    int firstSteps_[4] = {1, 1, 1, 1};
    int first_ = 0; ///< The band of coefficients of a scan.
    int last_ = 0;
    int width_ = 0;
    int height_ = 0;
    int mostAcross_ = 1;
    int mostDown_ = 1;
    int mcuColumns_ = 0;
    int mcuRows_ = 0;
    std::size_t restart_ = 0; ///< MCUs between two restart markers; 0 for none.
    unsigned endOfBands_ = 0;
};

} // namespace

bool JpegScansAreWhole(const std::string& data) { return !IsJpeg(data) || Walker(data).Run() != Verdict::damaged; }

} // namespace orvane::tools
