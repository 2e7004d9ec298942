// A folder of a test's own that goes away with everything in it. Names are bytes, UTF-8 on Windows.
#pragma once

#include "tests/support/temp_folder.h"

#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

namespace orvane::tools {

class TempFolder {
public:
    const std::string& Path() const { return path_; }
    std::string operator/(const std::string& name) const { return path_ + "/" + name; }

    /// Writes a file and gives its path.
    std::string Put(const std::string& name, const std::string& content) const {
        std::ofstream(Native(*this / name), std::ios::binary) << content;
        return *this / name;
    }

    std::string Get(const std::string& name) const {
        std::ifstream file(Native(*this / name), std::ios::binary);
        return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
    }

    /// Names of all that lies in the folder, dot files too.
    std::vector<std::string> Names() const {
        std::vector<std::string> names;
        for (const auto& entry : std::filesystem::directory_iterator(path_)) {
            const std::u8string name = entry.path().filename().u8string();
            names.emplace_back(name.begin(), name.end());
        }
        return names;
    }

    /// A path for the standard library.
    static std::filesystem::path Native(const std::string& path) {
        return std::filesystem::path(std::u8string(path.begin(), path.end()));
    }

private:
    test::TempFolder folder_;
    std::string path_ = folder_.Path().string();
};

} // namespace orvane::tools
