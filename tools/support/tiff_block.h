// A TIFF block: the head of a TIFF file, and what an EXIF segment holds. Reads nothing outside its bytes,
// whatever they claim.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>

namespace orvane::tools {

class TiffBlock {
public:
    /// `bytes` must live as long as this.
    explicit TiffBlock(const std::string& bytes);

    /// The single 16-bit or 32-bit number with this tag in the first list.
    std::optional<std::uint32_t> Value(unsigned tag) const;

private:
    /// Zero for what lies outside.
    std::uint32_t Number(std::size_t at, std::size_t count) const;

    const std::string& bytes_;
    bool highFirst_;
};

} // namespace orvane::tools
