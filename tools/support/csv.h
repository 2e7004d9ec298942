// Comma-separated values as RFC 4180 has them, written and read.
#pragma once

#include <cstddef>
#include <string>
#include <vector>

namespace orvane::tools {

/// A record, written field by field.
class CsvRecord {
public:
    /// In quotes where a comma, a quote or a line's end asks for them. Bytes that are no UTF-8, as file names may hold,
    /// become U+FFFD each.
    CsvRecord& Text(const std::string& bytes);

    /// The record with its line's end.
    std::string Line() const { return line_ + "\r\n"; }

private:
    std::string line_;
    bool first_ = true;
};

/// Reads the record that starts at `*at` and leaves `*at` behind it; line ends may be of either kind. False at the
/// content's end, and where a record breaks off or is none.
bool ReadCsvRecord(const std::string& content, std::size_t* at, std::vector<std::string>* fields);

} // namespace orvane::tools
