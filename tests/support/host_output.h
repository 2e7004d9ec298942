// What a host program says when it is run.
#pragma once

#include <array>
#include <cstdio>
#include <fstream>
#include <string>

namespace orvane::test {

/// Its output, its status where that is not 0, and then what it said on standard error, line by line behind
/// "error: ". Standard error goes through the file `errors`; lines that begin with `foreign` are left out.
inline std::string HostOutput(const std::string& command, const std::string& errors, const std::string& foreign = "") {
    std::string output;
    std::FILE* pipe = popen((command + " 2>'" + errors + "'").c_str(), "r");
    if (pipe == nullptr) return "the host did not start";
    std::array<char, 256> part;
    while (std::fgets(part.data(), part.size(), pipe) != nullptr) output += part.data();
    const int status = pclose(pipe);
    if (status != 0) output += "status " + std::to_string(status) + "\n";
    std::ifstream file(errors);
    for (std::string line; std::getline(file, line);) {
        if (foreign.empty() || line.rfind(foreign, 0) != 0) output += "error: " + line + "\n";
    }
    return output;
}

} // namespace orvane::test
