#include "tools/orvane/failed_photos.h"

#include "tools/orvane/output_names.h"
#include "tools/support/file_identity.h"
#include "tools/support/folder_entries.h"
#include "tools/support/move_file.h"
#include "tools/support/utf8.h"
#include "tools/support/whole_file.h"

#include <algorithm>

namespace orvane::tools {
namespace {

/// Leaves room for a number and for the text's extension within what file systems allow.
constexpr std::size_t kLongestStem = 200;
constexpr int kMostNames = 1000000;
constexpr int kMostAttempts = 100;

/// "a.jpg", "a-2.jpg", "a-3.jpg"...
std::string NumberedName(const std::string& path, int number) {
    const std::string stem = Stem(path);
    std::string name = stem.substr(0, kLongestStem);
    if (number > 1) name.append("-").append(std::to_string(number));
    return name + path.substr(NameStart(path) + stem.size());
}

/// Of names in a row that are taken from the first on, the first that is free is found without asking for each: a
/// photograph that comes and fails again and again may have left thousands.
int FirstFreeNumber(const std::string& path, const std::string& folder) {
    const auto isTaken = [&](int number) { return IsNameTaken(InFolder(folder, NumberedName(path, number))); };
    int taken = 0;
    int free = 1;
    while (free < kMostNames && isTaken(free)) {
        taken = free;
        free = std::min(free * 2, kMostNames);
    }
    while (free - taken > 1) {
        const int middle = taken + (free - taken) / 2;
        (isTaken(middle) ? taken : free) = middle;
    }
    return free;
}

} // namespace

SetAsideEnd SetAside(const std::string& path, const std::string& output, const std::string& reason,
                     std::string* place) {
    const std::string folder = InFolder(output, kFailedFolder);
    std::string error;
    if (!MakeFoldersBelow(output, std::string(kFailedFolder) + "/photo", &error)) {
        *place = "the folder '" + folder + "' " + error;
        return SetAsideEnd::later;
    }
    for (int attempt = 0; attempt < kMostAttempts; ++attempt) {
        const std::string target = InFolder(folder, NumberedName(path, FirstFreeNumber(path, folder)));
        const std::string text = target + ".txt";
        // First, so that no photograph lies there without one. One that is there lost its photograph.
        if (!WriteWholeFile(text, OneLine(reason) + "\n", true, &error)) {
            *place = "the text '" + text + "' " + error;
            return SetAsideEnd::later;
        }
        switch (MoveToFreeName(path, target, &error)) {
        case MoveEnd::good:
            *place = target;
            return SetAsideEnd::good;
        case MoveEnd::taken: // by whoever was faster
            RemoveFile(text);
            break;
        case MoveEnd::notNow:
            *place = "it " + error;
            return SetAsideEnd::later;
        case MoveEnd::failed:
            *place = "it " + error;
            return SetAsideEnd::unmovable;
        }
    }
    *place = "the folder '" + folder + "' takes no more names";
    return SetAsideEnd::later;
}

} // namespace orvane::tools
