// A folder that is the library's while the process lives: the file that a target fuzzes is written there.
#pragma once

#include "fuzz/support/written_file.h"
#include "platform/module_folder.h"
#include "tests/support/temp_folder.h"

#include <string>

namespace orvane::fuzz {

class LibraryFolder {
public:
    LibraryFolder() { g_moduleFolder = folder_.Path().native(); }

    void Write(const std::string& name, const std::string& content) const {
        WriteFile((folder_.Path() / name).string(), content);
    }

    const std::filesystem::path& Path() const { return folder_.Path(); }

private:
    test::TempFolder folder_;
};

} // namespace orvane::fuzz
