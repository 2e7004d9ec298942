// What an authority asks of a portrait: one row of the table of documents.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace orvane::tools {

/// From a least to a greatest value, either of which may be open.
struct Band {
    std::optional<double> low;
    std::optional<double> high;

    bool IsOpen() const { return !low && !high; }
    bool Has(double value) const { return (!low || value >= *low) && (!high || value <= *high); }
};

enum class BackgroundRule { any, plainLight, white };

/// Where a head ends above; a rule that does not say so is read as the skull.
enum class HeadTop { unsaid, skull, hair };

struct Document {
    std::string name;        ///< What `--document` takes: "schengen-visa".
    std::string title;       ///< "Schengen visa".
    std::string authority;   ///< Who says so.
    std::string source;      ///< Where it was read, and whether in the authority's own words.
    std::string read;        ///< The date when the rule was read, as year-month-day.
    double width = 0;        ///< Millimetres.
    double height = 0;       ///< Millimetres.
    double resolution = 300; ///< Pixels an inch.
    Band head;               ///< Chin to crown, millimetres.
    HeadTop headTop = HeadTop::unsaid;
    Band eyes;  ///< The line of the eyes above the lower edge, millimetres.
    Band above; ///< From the head's top to the upper edge, millimetres.
    BackgroundRule background = BackgroundRule::any;
    bool forbidsEdits = false; ///< No removal of the background, no change of contrast.
    std::optional<std::uint64_t> leastBytes;
    std::optional<std::uint64_t> mostBytes;
    std::vector<std::string> remarks; ///< Where sources differ, and how sure they are.
};

/// Pixels of a length.
constexpr int PixelsOf(double millimetres, double resolution) {
    return static_cast<int>(millimetres / 25.4 * resolution + 0.5);
}

} // namespace orvane::tools
