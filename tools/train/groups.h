// The groups that pictures are judged by, out of the columns of their table.
#pragma once

#include "tools/train/table.h"

#include <functional>
#include <string>
#include <tuple>
#include <vector>

namespace orvane::train {

/// A group of pictures. Groups stand in the order of their columns, bands of numbers upwards, texts by letter.
struct Group {
    std::size_t column = 0;
    std::size_t band = 0;
    std::string name; // "column: value"

    bool operator<(const Group& other) const {
        return std::tie(column, band, name) < std::tie(other.column, other.band, other.name);
    }
};

/// Tells every picture of a table its groups.
///
/// A column of texts makes a group of each text. A column of numbers with many values is cut into bands that
/// follow the data: quarters, and the topmost tenth. `roll_deg` and, coarser, `roll` are grouped by fixed limits and,
/// like `yaw`, without their sign; the face box makes groups by its pixels and by its share of the picture's smaller
/// side. Columns that tell pictures apart, as names do, make no groups, and an empty cell belongs to none.
class Groups {
public:
    /// The table must stay while the groups are in use.
    explicit Groups(const Table& table);

    /// The groups of one picture, in order.
    std::vector<Group> Of(std::size_t row) const;

private:
    /// A column of texts, or of numbers: then `limits` part the bands.
    struct Column {
        std::string title;
        std::function<std::string(std::size_t row)> text;
        std::function<double(std::size_t row)> number;
        std::vector<double> limits;
    };
    void AddColumn(const std::string& name);
    void AddFaceSize();
    bool Has(const std::string& name) const;

    const Table& table_;
    std::vector<Column> columns_;
};

} // namespace orvane::train
