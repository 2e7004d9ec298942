// What happens to the files of one folder, as the system tells it while it happens.
#pragma once

#include <memory>
#include <string>
#include <vector>

namespace orvane::tools {

struct FolderChange {
    std::string name;        ///< Bytes, on Windows UTF-8.
    bool isComplete = false; ///< Whoever wrote the file closed it, or moved it into the folder as a whole.
};

class FolderWatch {
public:
    FolderWatch();
    ~FolderWatch();
    FolderWatch(const FolderWatch&) = delete;
    FolderWatch& operator=(const FolderWatch&) = delete;

    /// Begins to watch, from now on. False gives `*error` one line without the path.
    bool Open(const std::string& path, std::string* error);
    void Close();
    bool IsOpen() const { return system_ != nullptr; }

    /// Adds to `*changes` what happened since the last call, without waiting for more. `*missed` becomes true where
    /// the system could not keep it all: then the whole folder is to be looked at. False when the folder has gone, or
    /// another one has its path now; the watch is closed then.
    bool Take(std::vector<FolderChange>* changes, bool* missed);

private:
    struct System;
    std::unique_ptr<System> system_;
};

} // namespace orvane::tools
