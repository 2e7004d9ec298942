// Reading of comma-separated tables.
#include "tools/train/table.h"

#include <cstdlib>
#include <fstream>

namespace orvane::train {
namespace {

std::vector<std::string> Cells(std::string line) {
    if (!line.empty() && line.back() == '\r') line.pop_back();
    std::vector<std::string> cells;
    std::size_t from = 0;
    for (std::size_t comma; (comma = line.find(',', from)) != std::string::npos; from = comma + 1) {
        cells.push_back(line.substr(from, comma - from));
    }
    cells.push_back(line.substr(from));
    return cells;
}

} // namespace

bool Table::Read(const std::string& path) {
    names_.clear();
    columns_.clear();
    rows_.clear();
    std::ifstream in(path);
    std::string line;
    if (!std::getline(in, line)) return false;
    names_ = Cells(line);
    for (std::size_t i = 0; i < names_.size(); ++i) columns_[names_[i]] = i;
    while (std::getline(in, line)) {
        if (!line.empty()) rows_.push_back(Cells(line));
    }
    return true;
}

std::string Table::Text(std::size_t row, const std::string& column) const {
    const auto at = columns_.find(column);
    if (at == columns_.end() || row >= rows_.size() || at->second >= rows_[row].size()) return {};
    return rows_[row][at->second];
}

double Table::Number(std::size_t row, const std::string& column) const {
    return std::strtod(Text(row, column).c_str(), nullptr);
}

} // namespace orvane::train
