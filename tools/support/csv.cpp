#include "tools/support/csv.h"

#include "tools/support/utf8.h"

namespace orvane::tools {

CsvRecord& CsvRecord::Text(const std::string& bytes) {
    if (!first_) line_ += ',';
    first_ = false;
    const std::string text = WholeUtf8(bytes);
    if (text.find_first_of(",\"\r\n") == std::string::npos) {
        line_ += text;
        return *this;
    }
    line_ += '"';
    for (const char c : text) {
        if (c == '"') line_ += '"';
        line_ += c;
    }
    line_ += '"';
    return *this;
}

bool ReadCsvRecord(const std::string& content, std::size_t* at, std::vector<std::string>* fields) {
    fields->assign(1, "");
    std::size_t i = *at;
    if (i >= content.size()) return false;
    bool quoted = false;
    for (; i < content.size(); ++i) {
        const char c = content[i];
        if (quoted) {
            if (c != '"') {
                fields->back() += c;
            } else if (i + 1 < content.size() && content[i + 1] == '"') {
                fields->back() += content[++i];
            } else {
                quoted = false;
            }
        } else if (c == '"') {
            quoted = true;
        } else if (c == ',') {
            fields->emplace_back();
        } else if (c == '\n') {
            *at = i + 1;
            return true;
        } else if (c != '\r') {
            fields->back() += c;
        }
    }
    return false; // no line's end: cut off
}

} // namespace orvane::tools
