// Photographs that arrive in a folder one by one, and when each of them is complete. Every state of a file is given out
// once, and none before nobody writes to it any more.
#pragma once

#include "tools/support/file_stamp.h"
#include "tools/support/folder_watch.h"

#include <chrono>
#include <functional>
#include <map>
#include <optional>
#include <set>
#include <string>
#include <utility>
#include <vector>

namespace orvane::tools {

/// How files of the folder are looked at, by their names.
struct FileEyes {
    std::function<std::optional<FileStamp>(const std::string& name)> stampOf;
    std::function<Writers(const std::string& name)> writersOf;
};

class Arrivals {
public:
    using Time = std::chrono::steady_clock::time_point;

    struct Arrival {
        std::string name;
        FileStamp stamp;
        Time since; ///< When this state was first seen.
    };

    explicit Arrivals(FileEyes eyes) : eyes_(std::move(eyes)) {}

    /// Something happened to a file.
    void Notice(const FolderChange& change, Time now);

    /// These are all files of the folder; the others are forgotten.
    void NoticeAll(const std::vector<std::string>& names, Time now);

    /// The next photograph that is complete, until it is finished or returned.
    bool Next(Time now, Arrival* arrival);

    /// Its state is done with.
    void Finish(const Arrival& arrival, Time now);
    /// It is to be given out again.
    void Return(const Arrival& arrival, Time now);

    /// Nothing is known of any file, but which ones are given out.
    void Forget();

private:
    struct File {
        std::optional<FileStamp> seen;
        Time since;
        std::optional<FileStamp> done;
        std::optional<Time> due; ///< Of the next look; none when nothing is expected.
        bool isComplete = false; ///< What was seen last was said to be.
        bool isGivenOut = false;
        bool isNoticed = false;   ///< While it was given out.
        bool isForgotten = false; ///< While it was given out.
        bool isListed = false;
    };
    using Files = std::map<std::string, File>;

    void LookAt(Files::iterator file, Time when);
    void StopLooking(Files::iterator file);
    /// Whether the file is complete; else it is looked at later, or never.
    bool IsReady(Files::iterator file, Time now);

    FileEyes eyes_;
    Files files_;
    std::set<std::pair<Time, std::string>> due_;
};

/// Whether a file of this name in a watched folder is a photograph: programs that write bit by bit do so under names
/// with a dot in front or another extension.
bool IsArrivalName(const std::string& name);

} // namespace orvane::tools
