// A file that grows line by line while a program runs: a journal, a report.
#pragma once

#include <string>

namespace orvane::tools {

class AppendFile {
public:
    enum class Start {
        empty, ///< What the file held before goes.
        atEnd  ///< What it holds stays, and nobody else may write to it as long as this one is open.
    };

    AppendFile() = default;
    ~AppendFile() { Close(); }
    AppendFile(const AppendFile&) = delete;
    AppendFile& operator=(const AppendFile&) = delete;

    /// Opens the regular file at `path`, or makes it. False gives `*error` one line without the path.
    bool Open(const std::string& path, Start start, std::string* error);

    /// Writes `text` behind all that the file holds. False gives `*error` one line; a piece of the text may stand in
    /// the file then.
    bool Append(const std::string& text, std::string* error);

    /// Waits until what was written lies on the disk. False gives `*error` one line.
    bool Flush(std::string* error);

    bool IsOpen() const { return file_ != kNone; }
    void Close();

private:
    static constexpr long long kNone = -1;
    long long file_ = kNone; ///< The system's number or handle.
};

/// What is said of a file that another program is writing to.
inline constexpr const char* kInUse = "is in use by another run";

} // namespace orvane::tools
