#include "tools/print/lengths.h"

#include <charconv>
#include <cmath>
#include <cstdio>

namespace orvane::tools {
namespace {

struct Unit {
    const char* name;
    double millimetres;
};
constexpr Unit kUnits[] = {{"mm", 1}, {"cm", 10}, {"in", 25.4}};

struct NamedPaper {
    const char* name;
    PaperSize size;
};
constexpr NamedPaper kPapers[] = {
    {"A4", {210, 297}}, {"A5", {148, 210}}, {"A6", {105, 148}}, {"letter", {215.9, 279.4}}};

std::optional<double> NumberOf(const std::string& text) {
    double value = 0;
    const char* end = text.data() + text.size();
    const auto [stop, code] = std::from_chars(text.data(), end, value, std::chars_format::fixed);
    if (code != std::errc() || stop != end || !std::isfinite(value) || value < 0) return std::nullopt;
    return value;
}

/// Takes the unit off the end of a text.
std::optional<double> TakeUnit(std::string* text) {
    if (text->size() < 3) return std::nullopt;
    const std::string end = text->substr(text->size() - 2);
    for (const Unit& unit : kUnits) {
        if (end != unit.name) continue;
        text->resize(text->size() - 2);
        return unit.millimetres;
    }
    return std::nullopt;
}

} // namespace

std::optional<double> LengthOf(const std::string& text) {
    if (text == "0") return 0;
    std::string number = text;
    const std::optional<double> unit = TakeUnit(&number);
    const std::optional<double> value = NumberOf(number);
    if (!unit || !value) return std::nullopt;
    return *value * *unit;
}

std::optional<PaperSize> SizeOf(const std::string& text) {
    std::string numbers = text;
    const std::optional<double> unit = TakeUnit(&numbers);
    const std::size_t cross = numbers.find('x');
    if (!unit || cross == std::string::npos) return std::nullopt;
    const std::optional<double> width = NumberOf(numbers.substr(0, cross));
    const std::optional<double> height = NumberOf(numbers.substr(cross + 1));
    if (!width || !height || *width == 0 || *height == 0) return std::nullopt;
    return PaperSize{*width * *unit, *height * *unit};
}

std::optional<PaperSize> PaperOf(const std::string& text) {
    for (const NamedPaper& paper : kPapers) {
        if (text == paper.name) return paper.size;
    }
    return SizeOf(text);
}

std::string SizeText(const PaperSize& size) {
    char text[64];
    std::snprintf(text, sizeof text, "%.6gx%.6g mm", std::round(size.width * 100) / 100,
                  std::round(size.height * 100) / 100);
    return text;
}

} // namespace orvane::tools
