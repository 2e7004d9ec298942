// Runs a program and gathers what it says.
#pragma once

#include "tests/tools/temp_folder.h"

#include <fcntl.h>
#include <sstream>
#include <string>
#include <sys/wait.h>
#include <unistd.h>
#include <vector>

namespace orvane::tools {

struct ProcessResult {
    int exitCode = -1; ///< -1 when a signal ended it
    std::string out;
    std::string err;

    static std::vector<std::string> Lines(const std::string& text) {
        std::vector<std::string> lines;
        std::istringstream stream(text);
        for (std::string line; std::getline(stream, line);) lines.push_back(line);
        return lines;
    }
};

/// Runs `program` with `arguments` in the folder `in`; standard output goes to the file `outTo` where
/// that is given.
inline ProcessResult RunProcess(const std::string& program, const std::vector<std::string>& arguments,
                                const std::string& in, const std::string& outTo = "") {
    const TempFolder log;
    const std::string outFile = outTo.empty() ? log / "out" : outTo;
    const std::string errFile = log / "err";
    std::vector<char*> pointers{const_cast<char*>(program.c_str())};
    for (const std::string& argument : arguments) pointers.push_back(const_cast<char*>(argument.c_str()));
    pointers.push_back(nullptr);
    const pid_t child = ::fork();
    if (child == 0) {
        const int out = ::open(outFile.c_str(), O_WRONLY | O_CREAT, 0600);
        const int err = ::open(errFile.c_str(), O_WRONLY | O_CREAT, 0600);
        const int in0 = ::open("/dev/null", O_RDONLY);
        if (::chdir(in.c_str()) == 0 && ::dup2(in0, 0) == 0 && ::dup2(out, 1) == 1 && ::dup2(err, 2) == 2) {
            ::execv(program.c_str(), pointers.data());
        }
        ::_exit(127);
    }
    int status = 0;
    ::waitpid(child, &status, 0);
    return {WIFEXITED(status) ? WEXITSTATUS(status) : -1, outTo.empty() ? log.Get("out") : "", log.Get("err")};
}

} // namespace orvane::tools
