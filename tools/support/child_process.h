// A program that runs beside this one and talks with it over its standard input and output. Its standard error goes
// nowhere. Whatever becomes of it, it takes nothing with it.
#pragma once

#include <cstddef>
#include <cstdint>
#include <mutex>
#include <string>
#include <vector>

namespace orvane::tools {

/// One thread starts, writes, reads and waits; `Kill` may come from another one.
class ChildProcess {
public:
    ChildProcess() = default;
    ~ChildProcess(); ///< Kills it.
    ChildProcess(const ChildProcess&) = delete;
    ChildProcess& operator=(const ChildProcess&) = delete;

    /// Starts the program that `command` names first, with the others as arguments. False gives `*error` one line.
    bool Start(const std::vector<std::string>& command, std::string* error);

    bool IsStarted() const;
    /// Whether it was started and has not ended by itself.
    bool IsAlive() const;
    /// Its number, which stands in the names of its temporary files too; 0 where none runs.
    std::uint64_t Id() const;

    /// False when it no longer listens.
    bool Write(const std::string& bytes);
    /// Reads exactly `size` bytes. False when it has closed its output before.
    bool Read(char* bytes, std::size_t size);

    void Kill();
    /// Closes its input, waits for its end and says how it ended: "" for exit code 0.
    std::string Wait();

private:
    mutable std::mutex mutex_; ///< Guards the number against a kill that comes when it was given back.
    std::uint64_t id_ = 0;
    long long process_ = -1; ///< Handles of the system.
    long long toChild_ = -1;
    long long fromChild_ = -1;
    long long fate_ = -1; ///< On Windows the job that takes the child along when this process ends.
};

/// Lets every later request for memory of this process fail that goes beyond `bytes` of data. False where the system
/// can't.
bool LimitOwnMemory(std::uint64_t bytes);

/// Number of processors that this process may use, at least 1.
int ProcessorCount();

/// Ends this process at once, without a word.
[[noreturn]] void EndAtOnce(int exitCode);

} // namespace orvane::tools
