#include "tools/batch/output_pattern.h"

#include "tools/support/picture_io.h"

#include <cstdio>

namespace orvane::tools {
namespace {

/// Puts values in place of the words; false at a word that is none.
bool Fill(const std::string& pattern, const PatternValues& values, std::string* name) {
    name->clear();
    for (std::size_t at = 0; at < pattern.size();) {
        if (pattern[at] == '}') return false;
        if (pattern[at] != '{') {
            *name += pattern[at++];
            continue;
        }
        const std::size_t end = pattern.find('}', at);
        const std::string word = pattern.substr(at, end == std::string::npos ? end : end + 1 - at);
        if (word == "{stem}") {
            *name += values.stem;
        } else if (word == "{folder}") {
            *name += values.folder;
        } else if (word == "{number}") {
            char digits[32];
            std::snprintf(digits, sizeof digits, "%06zu", values.number);
            *name += digits;
        } else {
            return false;
        }
        at += word.size();
    }
    return true;
}

/// The parts between slashes that are not empty, with one slash between them. False where one leads upwards.
bool Tidy(const std::string& name, std::string* tidied) {
    tidied->clear();
    for (std::size_t at = 0; at < name.size();) {
        const std::size_t slash = name.find('/', at);
        const std::string part = name.substr(at, slash == std::string::npos ? slash : slash - at);
        if (part == ".." || part == ".") return false;
        if (!part.empty()) *tidied += (tidied->empty() ? "" : "/") + part;
        at = slash == std::string::npos ? name.size() : slash + 1;
    }
    return true;
}

} // namespace

bool CheckPattern(const std::string& pattern, std::string* error) {
    std::string name;
    std::string tidied;
    if (!Fill(pattern, {"s", "f", 1}, &name)) {
        *error = "--output-name knows {stem}, {folder} and {number}, not '" + pattern + "'";
    } else if (pattern[0] == '/' || name.find_first_of("\\:") != std::string::npos || !Tidy(name, &tidied)) {
        *error = "--output-name wants a name below the folder of -o, not '" + pattern + "'";
    } else if (!IsWritablePictureName(name)) {
        *error = "--output-name: '" + pattern + "' " + kUnwritableName;
    } else {
        return true;
    }
    return false;
}

std::string NameByPattern(const std::string& pattern, const PatternValues& values) {
    std::string name;
    std::string tidied;
    Fill(pattern, values, &name);
    Tidy(name, &tidied);
    return tidied;
}

} // namespace orvane::tools
