// A reader of JSON for the tests: strict, so that what it takes every reader takes.
#pragma once

#include <cctype>
#include <cstdlib>
#include <map>
#include <stdexcept>
#include <string>
#include <vector>

namespace orvane::tools {

/// A value: an object's members, or an array's elements, or a string's bytes, or the text of a number, true, false
/// or null.
struct JsonValue {
    char kind = 0; ///< '{', '[', '"', '0' for a number, 'b' for true or false, 'n' for null
    std::string text;
    std::vector<JsonValue> elements;
    std::map<std::string, JsonValue> members;

    double Number() const { return std::strtod(text.c_str(), nullptr); }
    bool Has(const std::string& key) const { return members.count(key) != 0; }
    const JsonValue& operator[](const std::string& key) const { return members.at(key); }
};

class JsonReader {
public:
    /// The value that `line` holds and nothing else; throws std::runtime_error otherwise.
    static JsonValue Read(const std::string& line) {
        JsonReader reader(line);
        JsonValue value = reader.Value();
        if (reader.at_ != line.size()) reader.Fail("something behind the value");
        return value;
    }

private:
    explicit JsonReader(const std::string& line) : line_(line) {}

    [[noreturn]] void Fail(const std::string& what) const {
        throw std::runtime_error(what + " at " + std::to_string(at_) + " of " + line_);
    }
    char Peek() const { return at_ < line_.size() ? line_[at_] : '\0'; }
    bool Take(char c) { return Peek() == c && ++at_ != 0; }
    void Want(char c) {
        if (!Take(c)) Fail(std::string("no ") + c);
    }

    JsonValue Value() {
        JsonValue value;
        if (Peek() == '{') return Object();
        if (Peek() == '[') return Array();
        if (Peek() == '"') {
            value.kind = '"';
            value.text = Text();
        } else if (line_.compare(at_, 4, "null") == 0) {
            value.kind = 'n';
            at_ += 4;
        } else if (line_.compare(at_, 4, "true") == 0 || line_.compare(at_, 5, "false") == 0) {
            value.kind = 'b';
            value.text = line_.substr(at_, line_[at_] == 't' ? 4 : 5);
            at_ += value.text.size();
        } else {
            value.kind = '0';
            value.text = NumberText();
        }
        return value;
    }

    JsonValue Object() {
        JsonValue value;
        value.kind = '{';
        Want('{');
        if (Take('}')) return value;
        do {
            const std::string key = Text();
            Want(':');
            if (!value.members.emplace(key, Value()).second) Fail("a member twice");
        } while (Take(','));
        Want('}');
        return value;
    }

    JsonValue Array() {
        JsonValue value;
        value.kind = '[';
        Want('[');
        if (Take(']')) return value;
        do value.elements.push_back(Value());
        while (Take(','));
        Want(']');
        return value;
    }

    std::string NumberText() {
        const std::size_t start = at_;
        Take('-');
        const std::size_t digits = at_;
        while (std::isdigit(static_cast<unsigned char>(Peek())) != 0) ++at_;
        if (at_ == digits || (line_[digits] == '0' && at_ > digits + 1)) Fail("no number");
        if (Take('.')) {
            const std::size_t decimals = at_;
            while (std::isdigit(static_cast<unsigned char>(Peek())) != 0) ++at_;
            if (at_ == decimals) Fail("no decimals");
        }
        return line_.substr(start, at_ - start);
    }

    std::string Text() {
        std::string text;
        Want('"');
        while (!Take('"')) {
            const char c = Peek();
            if (at_ >= line_.size() || static_cast<unsigned char>(c) < 0x20) Fail("a string that does not end");
            ++at_;
            text += c == '\\' ? Escape() : std::string(1, c);
        }
        return text;
    }

    std::string Escape() {
        const char c = Peek();
        ++at_;
        if (c == '"' || c == '\\') return {c};
        if (c != 'u' || line_.size() - at_ < 4) Fail("an unknown escape");
        const unsigned long code = std::stoul(line_.substr(at_, 4), nullptr, 16);
        at_ += 4;
        if (code < 0x80) return {static_cast<char>(code)};
        if (code == 0xFFFD) return "\xEF\xBF\xBD";
        Fail("an escape that is not used here");
    }

    const std::string& line_;
    std::size_t at_ = 0;
};

} // namespace orvane::tools
