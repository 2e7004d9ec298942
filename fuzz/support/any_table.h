// Tables of documents out of choices: rows with all that a document must have, whose numbers, words and further keys
// may be wrong.
#pragma once

#include "fuzz/support/choices.h"

#include <cstdio>
#include <string>

namespace orvane::fuzz {

/// A length within the bounds, mostly; or any number, or none.
inline std::string AnyLength(Choices& choices, int32 least, int32 most) {
    char text[64];
    switch (choices.Int(0, 15)) {
    case 0:
        return choices.OneOf(
            {"0", "0.0", "-0.0", "1e-300", "inf", "nan", "1e308", "true", "\"5\"", "9223372036854775807"});
    case 1:
        std::snprintf(text, sizeof text, "%d", choices.AnyInt());
        return text;
    case 2:
        std::snprintf(text, sizeof text, "%.4f", choices.Int(0, 65535) / 65536.0);
        return text;
    default:
        std::snprintf(text, sizeof text, "%.1f", choices.Int(10 * least, 10 * most) / 10.0);
        return text;
    }
}

inline std::string AnyBand(Choices& choices, int32 most) {
    const int32 ends = choices.Int(0, 15) == 0 ? 0 : choices.Int(1, 3);
    std::string band = "{ ";
    if ((ends & 1) != 0) band += "from = " + AnyLength(choices, 0, most);
    if (ends == 3) band += ", ";
    if ((ends & 2) != 0) band += "to = " + AnyLength(choices, most, 2 * most);
    return band + " }";
}

inline std::string AnyDocument(Choices& choices, int32 number) {
    std::string row =
        "[d" + std::to_string(number) + "]\ntitle = \"t\"\nauthority = \"a\"\nsource = \"s\"\nread = 2026-11-22\n";
    row += "width = " + AnyLength(choices, 5, 60) + "\nheight = " + AnyLength(choices, 5, 60) + "\n";
    if (choices.Flag()) row += "resolution = " + AnyLength(choices, 50, 400) + "\n";
    if (choices.Flag()) row += "head = " + AnyBand(choices, 20) + "\n";
    if (choices.Flag()) row += "eyes = " + AnyBand(choices, 20) + "\n";
    if (choices.Flag()) row += "above = " + AnyBand(choices, 6) + "\n";
    if (choices.Flag())
        row += choices.OneOf({"head-top = \"hair\"\n", "head-top = \"skull\"\n", "head-top = \"hat\"\n"});
    if (choices.Flag()) row += choices.OneOf({"background = \"white\"\n", "edits = \"forbidden\"\n", "edits = 1\n"});
    if (choices.Flag()) row += "least-kb = " + std::to_string(choices.AnyInt()) + "\n";
    if (choices.Flag()) row += "most-kb = " + std::to_string(choices.AnyInt()) + "\n";
    if (choices.Flag()) row += choices.OneOf({"remarks = []\n", "remarks = [ \"r\", \"s\" ]\n", "remarks = [ 1 ]\n"});
    return row + "\n";
}

inline std::string AnyTable(Choices& choices) {
    std::string table;
    for (int32 number = choices.Int(1, 3); number > 0; --number) table += AnyDocument(choices, number);
    return table;
}

} // namespace orvane::fuzz
