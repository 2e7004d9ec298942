// Comma-separated tables with one line of names at the head; no quoting, as none of our tables needs it.
#pragma once

#include <map>
#include <string>
#include <vector>

namespace orvane::train {

class Table {
public:
    /// False when the file cannot be read or is empty.
    bool Read(const std::string& path);
    /// The columns' names in the order of the file.
    const std::vector<std::string>& Names() const { return names_; }
    std::size_t Rows() const { return rows_.size(); }
    /// A cell; empty when the row is short or the table has no such column.
    std::string Text(std::size_t row, const std::string& column) const;
    /// A cell as a number; 0 when it is none.
    double Number(std::size_t row, const std::string& column) const;

private:
    std::vector<std::string> names_;
    std::map<std::string, std::size_t> columns_;
    std::vector<std::vector<std::string>> rows_;
};

} // namespace orvane::train
