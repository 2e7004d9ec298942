// A folder of a test's own that goes away with everything in it.
#pragma once

#include <cstdlib>
#include <filesystem>
#include <random>
#include <string>

namespace orvane::test {

class TempFolder {
public:
    TempFolder() {
        std::random_device chance;
        const auto base = std::filesystem::temp_directory_path();
        std::error_code error;
        do {
            path_ = base / ("orvane-test-" + std::to_string(chance()));
        } while (!std::filesystem::create_directory(path_, error) && !error);
        if (error) std::abort(); // without a folder no test can say anything
    }
    ~TempFolder() {
        std::error_code ignored;
        std::filesystem::remove_all(path_, ignored);
    }
    TempFolder(const TempFolder&) = delete;
    TempFolder& operator=(const TempFolder&) = delete;

    const std::filesystem::path& Path() const { return path_; }

private:
    std::filesystem::path path_;
};

} // namespace orvane::test
