#include "tools/support/json_members.h"

#include <cstddef>

namespace orvane::tools {
namespace {

class Scanner {
public:
    explicit Scanner(const std::string& line) : line_(line) {}

    std::optional<std::map<std::string, std::string>> Members() {
        std::map<std::string, std::string> members;
        Blanks();
        if (!Take('{')) return std::nullopt;
        Blanks();
        if (!Take('}')) {
            do {
                std::string key;
                std::string value;
                Blanks();
                if (!Value(&key) || key[0] != '"') return std::nullopt;
                Blanks();
                if (!Take(':')) return std::nullopt;
                Blanks();
                if (!Value(&value)) return std::nullopt;
                members[JsonValueText(key)] = value;
                Blanks();
            } while (Take(','));
            if (!Take('}')) return std::nullopt;
        }
        Blanks();
        if (at_ != line_.size()) return std::nullopt;
        return members;
    }

private:
    void Blanks() {
        while (at_ < line_.size() && (line_[at_] == ' ' || line_[at_] == '\t' || line_[at_] == '\r')) ++at_;
    }
    bool Take(char c) {
        if (at_ >= line_.size() || line_[at_] != c) return false;
        ++at_;
        return true;
    }

    /// Up to the end of the value: the quote that closes it, the bracket that closes it, or what follows a plain one.
    bool Value(std::string* value) {
        const std::size_t start = at_;
        int open = 0;
        bool quoted = false;
        for (; at_ < line_.size(); ++at_) {
            const char c = line_[at_];
            if (quoted) {
                if (c == '\\') ++at_;
                quoted = c != '"';
                if (!quoted && open == 0) return Done(start, at_ + 1, value);
            } else if (c == '"') {
                quoted = true;
            } else if (c == '{' || c == '[') {
                ++open;
            } else if (open > 0) {
                if ((c == '}' || c == ']') && --open == 0) return Done(start, at_ + 1, value);
            } else if (c == ',' || c == '}' || c == ':' || c == ' ') {
                break;
            }
        }
        return !quoted && open == 0 && Done(start, at_, value);
    }
    bool Done(std::size_t start, std::size_t end, std::string* value) {
        if (end > line_.size() || end == start) return false;
        *value = line_.substr(start, end - start);
        at_ = end;
        return true;
    }

    const std::string& line_;
    std::size_t at_ = 0;
};

} // namespace

std::optional<std::map<std::string, std::string>> JsonMembers(const std::string& line) {
    return Scanner(line).Members();
}

std::string JsonValueText(const std::string& value) {
    if (value.size() < 2 || value.front() != '"') return value;
    std::string text;
    for (std::size_t at = 1; at + 1 < value.size(); ++at) {
        if (value[at] == '\\' && at + 2 < value.size() && value[at + 1] != 'u') ++at;
        text += value[at];
    }
    return text;
}

} // namespace orvane::tools
