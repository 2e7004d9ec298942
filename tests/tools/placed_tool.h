// The program in a folder of its own, with a classifier of the test's choice beside it, and a folder to work in.
#pragma once

#include "tests/tools/bright_square.h"
#include "tests/tools/json_reader.h"
#include "tests/tools/process.h"
#include "tests/tools/temp_folder.h"

#include <algorithm>
#include <filesystem>
#include <string>
#include <vector>

namespace orvane::tools {

class PlacedTool {
public:
    explicit PlacedTool(const char* program) : file_(home_ / std::filesystem::path(program).filename().string()) {
        // The program goes by its own file when it looks for the classifier, so a link with a soft
        // destination would not do.
        std::error_code failed;
        std::filesystem::create_hard_link(program, TempFolder::Native(file_), failed);
        if (failed) std::filesystem::copy_file(program, TempFolder::Native(file_));
        home_.Put("Orvane.dat", BrightSquareClassifier());
        const auto table = std::filesystem::path(program).replace_filename("documents.toml");
        std::filesystem::copy_file(table, TempFolder::Native(home_ / "documents.toml"));
    }

    const std::string& File() const { return file_; }
    const TempFolder& Home() const { return home_; }
    const TempFolder& Work() const { return work_; }

    ProcessResult RunTool(const std::vector<std::string>& arguments) const {
        return RunProcess(file_, arguments, work_.Path());
    }

    void Make(const std::string& folder) const {
        std::filesystem::create_directories(TempFolder::Native(work_ / folder));
    }
    bool Has(const std::string& name) const { return std::filesystem::exists(TempFolder::Native(work_ / name)); }
    void Remove(const std::string& name) const { std::filesystem::remove_all(TempFolder::Native(work_ / name)); }

    /// A photo whose face lies where `place` tells, so that each has another portrait; encoded once a place.
    void PutPhoto(const std::string& name, int place = 0) const { work_.Put(name, PhotoBytes(place)); }
    static std::string PhotoBytes(int place) { return Encoded(".png", PhotoWithSquare(240, 200, 40 + place, 60)); }
    void PutFaceless(const std::string& name) const { work_.Put(name, Encoded(".png", PhotoWithoutFace())); }

    /// Names of all that lies in a folder of the work, in order.
    std::vector<std::string> Names(const std::string& folder) const {
        std::vector<std::string> names;
        for (const auto& entry : std::filesystem::directory_iterator(TempFolder::Native(work_ / folder))) {
            const std::u8string name = entry.path().filename().u8string();
            names.emplace_back(name.begin(), name.end());
        }
        std::sort(names.begin(), names.end());
        return names;
    }

    static std::vector<JsonValue> Objects(const std::string& lines) {
        std::vector<JsonValue> objects;
        for (const std::string& line : ProcessResult::Lines(lines)) objects.push_back(JsonReader::Read(line));
        return objects;
    }

private:
    TempFolder home_;
    TempFolder work_;
    std::string file_;
};

} // namespace orvane::tools
