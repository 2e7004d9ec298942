// The words and bounds of the table.
#include "tools/documents/documents.h"
#include "tools/support/picture.h"
#include "tools/support/utf8.h"

// The parser reports damage behind assertions that damage breaks, and of which some compilers would make assumptions.
#undef NDEBUG
#define TOML_ASSERT(expression) static_assert(true)
#include <toml++/toml.h>

#include <algorithm>
#include <charconv>
#include <cstdio>

namespace orvane::tools {
namespace {

// A bound holds by either meaning of a kilobyte: a floor counts 1024 bytes, a ceiling 1000.
constexpr std::uint64_t kFloorKilobyte = 1024;
constexpr std::uint64_t kCeilingKilobyte = 1000;
constexpr double kMostKilobytes = 99999;
constexpr std::int64_t kFirstYear = 1990;
constexpr std::int64_t kLastYear = 2100;

std::string NumberText(double value) {
    char text[64];
    const auto [end, code] = std::to_chars(text, text + sizeof text, value);
    return code == std::errc() ? std::string(text, end) : "?";
}

std::string RangeText(double least, double most) { return NumberText(least) + " to " + NumberText(most); }

bool IsName(std::string_view text) {
    return !text.empty() && text.front() != '-' &&
           text.find_first_not_of("abcdefghijklmnopqrstuvwxyz0123456789-") == std::string_view::npos;
}

/// Keys and what the parser repeats of the table may hold line ends.
std::string ErrorAt(const std::string& file, const toml::source_region& place, const std::string& text) {
    return file + ":" + std::to_string(place.begin.line) + ": " + OneLine(text);
}

class RowReader {
public:
    RowReader(std::string file, std::string* error) : file_(std::move(file)), error_(error) {}

    bool Read(const toml::key& name, const toml::node& node, Document* document) {
        *document = Document();
        document->name = std::string(name.str());
        if (!IsName(name.str())) {
            return Fail(name.source(), "a document's name has small letters, digits and dashes, not '" +
                                           std::string(name.str()) + "'");
        }
        const toml::table* row = node.as_table();
        if (row == nullptr) return Fail(name.source(), "'" + document->name + "' stands outside of a document");
        for (const auto& [key, value] : *row) {
            if (!ReadKey(key, value, document)) return false;
        }
        for (const char* key : {"title", "authority", "source", "read", "width", "height"}) {
            if (!row->contains(key)) return Fail(name.source(), "'" + document->name + "' has no " + key);
        }
        return CheckTogether(name, *row, *document);
    }

private:
    bool Fail(const toml::source_region& place, const std::string& text) {
        *error_ = ErrorAt(file_, place, text);
        return false;
    }

    bool ReadKey(const toml::key& key, const toml::node& value, Document* document) {
        const std::string name(key.str());
        if (name == "title") return ReadText(name, value, &document->title);
        if (name == "authority") return ReadText(name, value, &document->authority);
        if (name == "source") return ReadText(name, value, &document->source);
        if (name == "read") return ReadDate(value, &document->read);
        if (name == "width") return ReadNumber(name, value, kLeastMillimetres, kMostMillimetres, &document->width);
        if (name == "height") return ReadNumber(name, value, kLeastMillimetres, kMostMillimetres, &document->height);
        if (name == "resolution") {
            return ReadNumber(name, value, kLeastResolution, kMostResolution, &document->resolution);
        }
        if (name == "head") return ReadBand(name, value, kLeastHead, &document->head);
        if (name == "head-top") return ReadHeadTop(value, &document->headTop);
        if (name == "eyes") return ReadBand(name, value, 0, &document->eyes);
        if (name == "above") return ReadBand(name, value, 0, &document->above);
        if (name == "background") return ReadBackground(value, &document->background);
        if (name == "edits") return ReadEdits(value, &document->forbidsEdits);
        if (name == "least-kb") return ReadKilobytes(name, value, kFloorKilobyte, &document->leastBytes);
        if (name == "most-kb") return ReadKilobytes(name, value, kCeilingKilobyte, &document->mostBytes);
        if (name == "remarks") return ReadRemarks(value, &document->remarks);
        return Fail(key.source(), "no document has a key '" + name + "'");
    }

    bool ReadText(const std::string& name, const toml::node& value, std::string* text) {
        *text = value.value_or(std::string());
        const bool isLine = !text->empty() && OneLine(*text) == *text;
        return (value.is_string() && isLine) || Fail(value.source(), name + " wants one line of text in quotes");
    }

    bool ReadDate(const toml::node& value, std::string* text) {
        const toml::date date = value.is_date() ? value.as_date()->get() : toml::date();
        if (date.year < kFirstYear || date.year > kLastYear) {
            return Fail(value.source(), "read wants the day when the rule was read, such as 2026-11-22");
        }
        char digits[16];
        std::snprintf(digits, sizeof digits, "%04d-%02d-%02d", int{date.year}, int{date.month}, int{date.day});
        *text = digits;
        return true;
    }

    bool ReadNumber(const std::string& name, const toml::node& value, double least, double most, double* number) {
        const bool isNumber = value.is_integer() || value.is_floating_point();
        *number = isNumber ? value.value_or(0.0) : 0.0;
        if (isNumber && *number >= least && *number <= most) return true;
        return Fail(value.source(), name + " wants a number, " + RangeText(least, most) +
                                        (isNumber ? ", not " + NumberText(*number) : ""));
    }

    bool ReadBand(const std::string& name, const toml::node& value, double least, Band* band) {
        const toml::table* ends = value.as_table();
        if (ends == nullptr || ends->empty()) {
            return Fail(value.source(), name + " wants a band such as { from = 32, to = 36 }");
        }
        for (const auto& [key, end] : *ends) {
            if (key.str() != "from" && key.str() != "to") {
                return Fail(key.source(), name + " knows from and to, not '" + std::string(key.str()) + "'");
            }
            double number = 0;
            if (!ReadNumber(name, end, least, kMostMillimetres, &number)) return false;
            (key.str() == "from" ? band->low : band->high) = number;
        }
        if (!band->low || !band->high || *band->low <= *band->high) return true;
        return Fail(value.source(),
                    name + " is upside down, from " + NumberText(*band->low) + " to " + NumberText(*band->high));
    }

    /// One of a few words.
    template <typename T, std::size_t count>
    bool ReadWord(const std::string& name, const toml::node& value, const std::pair<const char*, T> (&words)[count],
                  T* word) {
        const std::string text = value.value_or(std::string());
        std::string all;
        for (const auto& [known, meaning] : words) {
            if (text == known) {
                *word = meaning;
                return true;
            }
            all += (all.empty() ? "\"" : ", \"") + std::string(known) + "\"";
        }
        return Fail(value.source(), name + " wants one of " + all);
    }

    bool ReadHeadTop(const toml::node& value, HeadTop* top) {
        return ReadWord("head-top", value, {{"skull", HeadTop::skull}, {"hair", HeadTop::hair}}, top);
    }
    bool ReadBackground(const toml::node& value, BackgroundRule* rule) {
        return ReadWord("background", value,
                        {{"any", BackgroundRule::any},
                         {"plain light", BackgroundRule::plainLight},
                         {"white", BackgroundRule::white}},
                        rule);
    }
    bool ReadEdits(const toml::node& value, bool* forbidden) {
        return ReadWord("edits", value, {{"forbidden", true}, {"not mentioned", false}}, forbidden);
    }

    bool ReadKilobytes(const std::string& name, const toml::node& value, std::uint64_t kilobyte,
                       std::optional<std::uint64_t>* bytes) {
        double number = 0;
        if (!value.is_integer()) return Fail(value.source(), name + " wants a whole number of kilobytes");
        if (!ReadNumber(name, value, 1, kMostKilobytes, &number)) return false;
        *bytes = static_cast<std::uint64_t>(number) * kilobyte;
        return true;
    }

    bool ReadRemarks(const toml::node& value, std::vector<std::string>* remarks) {
        const toml::array* list = value.as_array();
        if (list == nullptr) return Fail(value.source(), "remarks wants a list of texts");
        for (const toml::node& remark : *list) {
            if (!ReadText("remarks", remark, &remarks->emplace_back())) return false;
        }
        return true;
    }

    /// What no single key tells.
    bool CheckTogether(const toml::key& name, const toml::table& row, const Document& document) {
        for (const auto& [key, band] : {std::pair{"head", &document.head}, std::pair{"eyes", &document.eyes},
                                        std::pair{"above", &document.above}}) {
            if (band->IsOpen()) continue;
            if (band->high.value_or(*band->low) <= document.height && band->low.value_or(0) < document.height) continue;
            return Fail(row.get(key)->source(),
                        std::string(key) + " reaches beyond the height of " + NumberText(document.height));
        }
        if (document.leastBytes && document.mostBytes && *document.leastBytes > *document.mostBytes) {
            return Fail(row.get("least-kb")->source(), "the floor least-kb is above the ceiling most-kb");
        }
        const int width = PixelsOf(document.width, document.resolution);
        const int height = PixelsOf(document.height, document.resolution);
        return IsPictureSizeAllowed(width, height) ||
               Fail(name.source(), "'" + document.name + "' has " + std::to_string(width) + "x" +
                                       std::to_string(height) + " pixels, more than a picture may have");
    }

    const std::string file_;
    std::string* error_;
};

/// Documents lie in a table by their names; people want the order in which they wrote them.
bool StandsBefore(const std::pair<const toml::key*, const toml::node*>& a,
                  const std::pair<const toml::key*, const toml::node*>& b) {
    return a.first->source().begin < b.first->source().begin;
}

} // namespace

bool ReadDocuments(const std::string& text, const std::string& file, std::vector<Document>* documents,
                   std::string* error) {
    documents->clear();
    const toml::parse_result result = toml::parse(text, file);
    if (!result) {
        *error = ErrorAt(file, result.error().source(), std::string(result.error().description()));
        return false;
    }
    std::vector<std::pair<const toml::key*, const toml::node*>> rows;
    for (const auto& [name, row] : result.table()) rows.emplace_back(&name, &row);
    std::sort(rows.begin(), rows.end(), StandsBefore);
    RowReader reader(file, error);
    for (const auto& [name, row] : rows) {
        if (!reader.Read(*name, *row, &documents->emplace_back())) return false;
    }
    if (!documents->empty()) return true;
    *error = file + ":1: holds no document";
    return false;
}

} // namespace orvane::tools
