// Runs a program and gathers what it says, on Linux and on Windows.
#pragma once

#include "tests/tools/temp_folder.h"

#include <sstream>
#include <string>
#include <vector>

#ifdef _WIN32
#include <windows.h>
#else
#include <fcntl.h>
#include <sys/wait.h>
#include <unistd.h>
#endif

namespace orvane::tools {

struct ProcessResult {
    int exitCode = -1; ///< -1 when a signal ended it, or it did not start
    std::string out;
    std::string err;

    static std::vector<std::string> Lines(const std::string& text) {
        std::vector<std::string> lines;
        std::istringstream stream(text);
        for (std::string line; std::getline(stream, line);) lines.push_back(line);
        return lines;
    }
};

#ifdef _WIN32

/// One argument as a program's start-up code takes it apart again: backslashes count double before a quote.
inline std::string Quoted(const std::string& argument) {
    std::string text = "\"";
    std::size_t slashes = 0;
    for (const char c : argument) {
        if (c == '"') text.append(slashes + 1, '\\');
        slashes = c == '\\' ? slashes + 1 : 0;
        text += c;
    }
    return text.append(slashes, '\\') + "\"";
}

inline int RunIn(const std::string& program, const std::vector<std::string>& arguments, const std::string& in,
                 const std::string& outFile, const std::string& errFile) {
    std::string line = Quoted(program);
    for (const std::string& argument : arguments) line += " " + Quoted(argument);
    std::wstring commandLine = TempFolder::Native(line).native();
    SECURITY_ATTRIBUTES inherited{sizeof inherited, nullptr, TRUE};
    const auto open = [&](const std::string& name, DWORD access, DWORD how) {
        return CreateFileW(TempFolder::Native(name).c_str(), access, FILE_SHARE_READ | FILE_SHARE_WRITE, &inherited,
                           how, FILE_ATTRIBUTE_NORMAL, nullptr);
    };
    STARTUPINFOW start{};
    start.cb = sizeof start;
    start.dwFlags = STARTF_USESTDHANDLES;
    start.hStdInput = open("NUL", GENERIC_READ, OPEN_EXISTING);
    start.hStdOutput = open(outFile, GENERIC_WRITE, CREATE_ALWAYS);
    start.hStdError = open(errFile, GENERIC_WRITE, CREATE_ALWAYS);
    PROCESS_INFORMATION child{};
    DWORD code = static_cast<DWORD>(-1);
    if (CreateProcessW(TempFolder::Native(program).c_str(), commandLine.data(), nullptr, nullptr, TRUE, 0, nullptr,
                       TempFolder::Native(in).c_str(), &start, &child) != 0) {
        WaitForSingleObject(child.hProcess, INFINITE);
        GetExitCodeProcess(child.hProcess, &code);
        CloseHandle(child.hThread);
        CloseHandle(child.hProcess);
    }
    for (HANDLE stream : {start.hStdInput, start.hStdOutput, start.hStdError}) CloseHandle(stream);
    return static_cast<int>(code);
}

#else

inline int RunIn(const std::string& program, const std::vector<std::string>& arguments, const std::string& in,
                 const std::string& outFile, const std::string& errFile) {
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
    return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

#endif

/// Runs `program` with `arguments` in the folder `in`; standard output goes to the file `outTo` where
/// that is given.
inline ProcessResult RunProcess(const std::string& program, const std::vector<std::string>& arguments,
                                const std::string& in, const std::string& outTo = "") {
    const TempFolder log;
    const int code = RunIn(program, arguments, in, outTo.empty() ? log / "out" : outTo, log / "err");
    return {code, outTo.empty() ? log.Get("out") : "", log.Get("err")};
}

} // namespace orvane::tools
