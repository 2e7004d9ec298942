#include "tools/support/windows/command_line.h"

namespace orvane::tools {

std::string CommandLine(const std::vector<std::string>& arguments) {
    std::string line;
    for (const std::string& argument : arguments) {
        if (!line.empty()) line += ' ';
        line += '"';
        std::size_t slashes = 0; // count double before a quote
        for (const char c : argument) {
            if (c == '"') line.append(slashes + 1, '\\');
            slashes = c == '\\' ? slashes + 1 : 0;
            line += c;
        }
        line.append(slashes, '\\') += '"';
    }
    return line;
}

} // namespace orvane::tools
