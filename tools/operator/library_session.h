// The library's session as the tool opens it, and the settings that go in before a detect call.
#pragma once

#include "primitives/types.h"
#include "tools/operator/options.h"

#include <string>

namespace orvane::tools {

/// The library's session, open as long as this lives.
class LibrarySession {
public:
    LibrarySession();
    ~LibrarySession();
    LibrarySession(const LibrarySession&) = delete;
    LibrarySession& operator=(const LibrarySession&) = delete;

    /// False where the library did not start, which was told on standard error.
    bool IsOpen() const { return open_; }

private:
    bool open_;
};

/// Whether the library took a setting. Otherwise a line on standard error names the setting.
bool Accepted(int32 status, const std::string& setting);

/// Sets the texts and all that concerns the portrait. False after a line on standard error.
bool ConfigurePortrait(const OperatorOptions& options);

} // namespace orvane::tools
