#include "tools/train/groups.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <set>

namespace orvane::train {
namespace {

/// More different values than this are names, or numbers to be cut into bands.
constexpr std::size_t kMostTexts = 30;
constexpr std::size_t kMostNumbers = 8;

/// What a picture is, and where its face lies, are no kinds of pictures.
constexpr std::array kNoGroups = {"file", "split", "x", "y", "w", "h", "width", "height", "person", "index", "flags"};

std::string ShortNumber(double value) {
    char text[32];
    std::snprintf(text, sizeof text, "%.4g", value);
    return text;
}

std::string BandName(std::size_t band, const std::vector<double>& limits) {
    if (band == 0) return "under " + ShortNumber(limits.front());
    if (band == limits.size()) return "from " + ShortNumber(limits.back());
    return ShortNumber(limits[band - 1]) + " to " + ShortNumber(limits[band]);
}

bool IsNumber(const std::string& text) {
    char* end = nullptr;
    const double value = std::strtod(text.c_str(), &end);
    return !text.empty() && *end == '\0' && std::isfinite(value);
}

/// Limits at the quarters and at the topmost tenth, each once.
std::vector<double> BandLimits(std::vector<double> values) {
    std::sort(values.begin(), values.end());
    std::vector<double> limits;
    for (const double share : {0.25, 0.5, 0.75, 0.9}) {
        const double limit = values[static_cast<std::size_t>(share * static_cast<double>(values.size() - 1))];
        if (limit > values.front() && (limits.empty() || limit > limits.back())) limits.push_back(limit);
    }
    return limits;
}

} // namespace

Groups::Groups(const Table& table) : table_(table) {
    for (const std::string& name : table.Names()) {
        if (std::find(kNoGroups.begin(), kNoGroups.end(), name) == kNoGroups.end()) AddColumn(name);
    }
    AddFaceSize();
}

bool Groups::Has(const std::string& name) const {
    const std::vector<std::string>& names = table_.Names();
    return std::find(names.begin(), names.end(), name) != names.end();
}

void Groups::AddColumn(const std::string& name) {
    const bool isRoll = name == "roll_deg" || name == "roll";
    const bool isUnsigned = isRoll || name == "yaw";
    const auto text = [this, name](std::size_t row) { return table_.Text(row, name); };
    const auto number = [this, name, isUnsigned](std::size_t row) {
        const double value = table_.Number(row, name);
        return isUnsigned ? std::fabs(value) : value;
    };

    std::set<std::string> texts;
    for (std::size_t row = 0; row < table_.Rows(); ++row) texts.insert(text(row));
    texts.erase(std::string());
    const bool areNumbers = std::all_of(texts.begin(), texts.end(), IsNumber);
    std::vector<double> limits;
    if (areNumbers && isRoll) {
        limits = name == "roll" ? std::vector{8.0} : std::vector{4.0, 8.0, 13.0};
    } else if (areNumbers && texts.size() > kMostNumbers) {
        std::vector<double> numbers;
        for (std::size_t row = 0; row < table_.Rows(); ++row) {
            if (!text(row).empty()) numbers.push_back(number(row));
        }
        limits = BandLimits(std::move(numbers));
    }
    if (!limits.empty() || texts.size() <= kMostTexts) columns_.push_back({name, text, number, std::move(limits)});
}

void Groups::AddFaceSize() {
    if (!Has("w")) return;
    const auto side = [this](std::size_t row) { return table_.Number(row, "w"); };
    const auto sideText = [this](std::size_t row) { return table_.Text(row, "w"); };
    columns_.push_back({"face pixels", sideText, side, {80.0, 160.0, 240.0, 320.0}});
    if (!Has("width") || !Has("height")) return;
    const auto share = [this](std::size_t row) {
        const double smaller = std::min(table_.Number(row, "width"), table_.Number(row, "height"));
        return smaller > 0.0 ? table_.Number(row, "w") / smaller : 0.0;
    };
    columns_.push_back({"face share", sideText, share, {0.35, 0.5, 0.65}});
}

std::vector<Group> Groups::Of(std::size_t row) const {
    std::vector<Group> groups;
    for (std::size_t i = 0; i < columns_.size(); ++i) {
        const Column& column = columns_[i];
        const std::string text = column.text(row);
        if (text.empty()) continue;
        if (column.limits.empty()) {
            groups.push_back({i, 0, column.title + ": " + text});
            continue;
        }
        const auto above = std::upper_bound(column.limits.begin(), column.limits.end(), column.number(row));
        const auto band = static_cast<std::size_t>(above - column.limits.begin());
        groups.push_back({i, band, column.title + ": " + BandName(band, column.limits)});
    }
    return groups;
}

} // namespace orvane::train
