// A TIFF block: the head of a TIFF file, and what an EXIF segment holds. Reads nothing outside its bytes,
// whatever they claim.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace orvane::tools {

class TiffBlock {
public:
    /// One entry of a list, whose value lies within the block.
    struct Entry {
        unsigned tag = 0;
        unsigned type = 0;
        std::uint32_t count = 0;
        std::size_t at = 0;    ///< Of the value.
        std::size_t bytes = 0; ///< Of the value.
    };

    /// `bytes` must live as long as this.
    explicit TiffBlock(const std::string& bytes);

    bool IsHighFirst() const { return highFirst_; }

    /// Where the first list lies; none where the bytes are no TIFF block.
    std::optional<std::size_t> FirstList() const;

    /// The entries of a list, without those of unknown types and those that reach beyond the block.
    std::vector<Entry> Entries(std::size_t list) const;

    /// The single 16-bit or 32-bit number with this tag in the first list.
    std::optional<std::uint32_t> Value(unsigned tag) const;

    /// The fraction with this tag in the first list; none where its denominator is zero.
    std::optional<double> Fraction(unsigned tag) const;

    /// Zero for what lies outside.
    std::uint32_t Number(std::size_t at, std::size_t count) const;

private:
    const std::string& bytes_;
    bool highFirst_;
};

} // namespace orvane::tools
