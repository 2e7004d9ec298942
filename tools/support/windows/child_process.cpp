#include "tools/support/child_process.h"

#include "tools/support/windows/command_line.h"
#include "tools/support/windows/system_call.h"
#include "tools/support/windows/wide_text.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <utility>
#include <windows.h>

namespace orvane::tools {
namespace {

HANDLE HandleOf(long long number) { return reinterpret_cast<HANDLE>(static_cast<INT_PTR>(number)); }
long long NumberOf(HANDLE handle) { return reinterpret_cast<INT_PTR>(handle); }

void CloseNumber(long long& number) {
    if (number != -1) CloseHandle(HandleOf(number));
    number = -1;
}

/// A pipe of which neither end goes to a child by itself.
struct Pipe {
    HANDLE reads = INVALID_HANDLE_VALUE;
    HANDLE writes = INVALID_HANDLE_VALUE;
    Pipe() {
        if (CreatePipe(&reads, &writes, nullptr, 0) == 0) reads = writes = INVALID_HANDLE_VALUE;
    }
    ~Pipe() {
        for (const HANDLE end : {reads, writes}) {
            if (end != INVALID_HANDLE_VALUE) CloseHandle(end);
        }
    }
    Pipe(const Pipe&) = delete;
    Pipe& operator=(const Pipe&) = delete;

    bool IsOpen() const { return reads != INVALID_HANDLE_VALUE; }
    static HANDLE Take(HANDLE& end) { return std::exchange(end, INVALID_HANDLE_VALUE); }
};

/// A job whose processes end with the last handle to it, so with this process; 0 for none.
HANDLE JobThatEndsWithUs() {
    const HANDLE job = CreateJobObjectW(nullptr, nullptr);
    JOBOBJECT_EXTENDED_LIMIT_INFORMATION limits{};
    limits.BasicLimitInformation.LimitFlags = JOB_OBJECT_LIMIT_KILL_ON_JOB_CLOSE;
    if (job != nullptr) SetInformationJobObject(job, JobObjectExtendedLimitInformation, &limits, sizeof limits);
    return job;
}

/// Ends of pipes may be inherited only while one child is being made: another one would keep them open.
std::mutex g_making;

} // namespace

ChildProcess::~ChildProcess() {
    Kill();
    Wait();
}

bool ChildProcess::Start(const std::vector<std::string>& command, std::string* error) {
    Wait();
    const std::lock_guard<std::mutex> making(g_making);
    Pipe input;
    Pipe output;
    const SystemHandle nowhere(
        CreateFileW(L"NUL", GENERIC_WRITE, FILE_SHARE_READ | FILE_SHARE_WRITE, nullptr, OPEN_EXISTING, 0, nullptr));
    PROCESS_INFORMATION child{};
    BOOL made = FALSE;
    if (input.IsOpen() && output.IsOpen()) {
        STARTUPINFOW start{};
        start.cb = sizeof start;
        start.dwFlags = STARTF_USESTDHANDLES;
        start.hStdInput = input.reads;
        start.hStdOutput = output.writes;
        start.hStdError = nowhere.Get();
        for (const HANDLE stream : {start.hStdInput, start.hStdOutput, start.hStdError}) {
            SetHandleInformation(stream, HANDLE_FLAG_INHERIT, HANDLE_FLAG_INHERIT);
        }
        std::wstring line = Wide(CommandLine(command));
        // Suspended until it is in its job.
        made = CreateProcessW(Wide(command[0]).c_str(), line.data(), nullptr, nullptr, TRUE, CREATE_SUSPENDED, nullptr,
                              nullptr, &start, &child);
    }
    if (made == 0) {
        *error = "cannot start: " + SystemErrorText(GetLastError());
        return false;
    }
    const HANDLE job = JobThatEndsWithUs();
    if (job != nullptr) AssignProcessToJobObject(job, child.hProcess);
    ResumeThread(child.hThread);
    CloseHandle(child.hThread);
    const std::lock_guard<std::mutex> lock(mutex_);
    id_ = child.dwProcessId;
    process_ = NumberOf(child.hProcess);
    fate_ = job != nullptr ? NumberOf(job) : -1;
    toChild_ = NumberOf(Pipe::Take(input.writes));
    fromChild_ = NumberOf(Pipe::Take(output.reads));
    return true;
}

bool ChildProcess::IsStarted() const { return id_ != 0; }

bool ChildProcess::IsAlive() const { return id_ != 0 && WaitForSingleObject(HandleOf(process_), 0) == WAIT_TIMEOUT; }

std::uint64_t ChildProcess::Id() const {
    const std::lock_guard<std::mutex> lock(mutex_);
    return id_;
}

bool ChildProcess::Write(const std::string& bytes) {
    std::size_t done = 0;
    while (done < bytes.size()) {
        DWORD n = 0;
        if (WriteFile(HandleOf(toChild_), bytes.data() + done, static_cast<DWORD>(bytes.size() - done), &n, nullptr) ==
            0) {
            return false;
        }
        done += n;
    }
    return true;
}

bool ChildProcess::Read(char* bytes, std::size_t size) {
    while (size > 0) {
        DWORD n = 0;
        if (ReadFile(HandleOf(fromChild_), bytes, static_cast<DWORD>(size), &n, nullptr) == 0 || n == 0) return false;
        bytes += n;
        size -= n;
    }
    return true;
}

void ChildProcess::Kill() {
    const std::lock_guard<std::mutex> lock(mutex_);
    if (id_ != 0) TerminateProcess(HandleOf(process_), 1);
}

std::string ChildProcess::Wait() {
    if (id_ == 0) return "";
    CloseNumber(toChild_);
    WaitForSingleObject(HandleOf(process_), INFINITE);
    const std::lock_guard<std::mutex> lock(mutex_);
    DWORD code = 0;
    GetExitCodeProcess(HandleOf(process_), &code);
    CloseNumber(process_);
    CloseNumber(fromChild_);
    CloseNumber(fate_);
    id_ = 0;
    if (code == 0) return "";
    char text[32];
    std::snprintf(text, sizeof text, code >= 0xC0000000 ? "exception %08lX" : "exit code %lu", code);
    return text;
}

bool LimitOwnMemory(std::uint64_t bytes) {
    const HANDLE job = CreateJobObjectW(nullptr, nullptr); // open as long as this process lives
    if (job == nullptr) return false;
    JOBOBJECT_EXTENDED_LIMIT_INFORMATION limits{};
    limits.BasicLimitInformation.LimitFlags = JOB_OBJECT_LIMIT_PROCESS_MEMORY;
    limits.ProcessMemoryLimit = static_cast<SIZE_T>(std::min<std::uint64_t>(bytes, SIZE_MAX));
    return SetInformationJobObject(job, JobObjectExtendedLimitInformation, &limits, sizeof limits) != 0 &&
           AssignProcessToJobObject(job, GetCurrentProcess()) != 0;
}

int ProcessorCount() {
    SYSTEM_INFO about{};
    GetSystemInfo(&about);
    return about.dwNumberOfProcessors > 0 ? static_cast<int>(about.dwNumberOfProcessors) : 1;
}

void EndAtOnce(int exitCode) {
    TerminateProcess(GetCurrentProcess(), static_cast<UINT>(exitCode));
    std::abort(); // not reached
}

} // namespace orvane::tools
