// Lengths on paper, as people write them; everything here counts in millimetres.
#pragma once

#include <optional>
#include <string>

namespace orvane::tools {

struct PaperSize {
    double width = 0;
    double height = 0;
};

/// A length with mm, cm or in behind it, or a plain 0; not negative.
std::optional<double> LengthOf(const std::string& text);

/// Two lengths with one unit: "35x45mm", "10x15cm", "4x6in"; none of them 0.
std::optional<PaperSize> SizeOf(const std::string& text);

/// A size, or one of A4, A5, A6 and letter.
std::optional<PaperSize> PaperOf(const std::string& text);

/// A size in words: "101.6x152.4 mm".
std::string SizeText(const PaperSize& size);

} // namespace orvane::tools
