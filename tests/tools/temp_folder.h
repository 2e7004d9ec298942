// A folder of a test's own that goes away with everything in it.
#pragma once

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

namespace orvane::tools {

class TempFolder {
public:
    TempFolder() {
        std::string name = std::filesystem::temp_directory_path().string() + "/orvane-test-XXXXXX";
        if (::mkdtemp(name.data()) == nullptr) std::abort();
        path_ = name;
    }
    ~TempFolder() {
        std::error_code ignored;
        std::filesystem::remove_all(path_, ignored);
    }
    TempFolder(const TempFolder&) = delete;
    TempFolder& operator=(const TempFolder&) = delete;

    const std::string& Path() const { return path_; }
    std::string operator/(const std::string& name) const { return path_ + "/" + name; }

    /// Writes a file and gives its path.
    std::string Put(const std::string& name, const std::string& content) const {
        std::ofstream(*this / name, std::ios::binary) << content;
        return *this / name;
    }

    std::string Get(const std::string& name) const {
        std::ifstream file(*this / name, std::ios::binary);
        return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
    }

    /// Names of all that lies in the folder, dot files too.
    std::vector<std::string> Names() const {
        std::vector<std::string> names;
        for (const auto& entry : std::filesystem::directory_iterator(path_)) names.push_back(entry.path().filename());
        return names;
    }

private:
    std::string path_;
};

} // namespace orvane::tools
