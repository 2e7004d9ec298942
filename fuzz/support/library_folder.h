// A folder that is the library's while the process lives: the file that a target fuzzes is written there.
#pragma once

#include "fuzz/support/expect.h"
#include "platform/module_folder.h"
#include "tests/support/temp_folder.h"

#include <fstream>
#include <string>

namespace orvane::fuzz {

class LibraryFolder {
public:
    LibraryFolder() { g_moduleFolder = folder_.Path().native(); }

    void Write(const std::string& name, const std::string& content) const {
        std::ofstream file(folder_.Path() / name, std::ios::binary | std::ios::trunc);
        file.write(content.data(), static_cast<std::streamsize>(content.size()));
        file.close();
        Expect(file.good(), "a file is written");
    }

    const std::filesystem::path& Path() const { return folder_.Path(); }

private:
    test::TempFolder folder_;
};

} // namespace orvane::fuzz
