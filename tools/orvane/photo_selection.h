// The photos that the command line means, each with its output: listed whole and then cut down to this machine's shard,
// so that all machines agree on numbers and names.
#pragma once

#include "tools/orvane/options.h"
#include "tools/orvane/output_names.h"

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

namespace orvane::tools {

struct SelectedPhoto {
    std::string path;
    std::size_t number = 0;        ///< Among all photos of all shards, from 1.
    PlannedOutput output;          ///< Without a path for a detection.
    std::optional<FaceBox> face{}; ///< Marked by hand.
};

struct PhotoSelection {
    std::vector<SelectedPhoto> photos;
    std::vector<std::string> remarks; ///< Lines on what could not be listed or was passed over.
    bool isIncomplete = false;        ///< A folder could not be listed, or a correction is of none of the photos.
    bool keepsJournal = false;        ///< A folder or a list is worked into a folder, or an earlier run is resumed.
};

/// False gives `*error` one line: there is nothing to do, or nothing can be done; remarks may say more.
bool SelectPhotos(const Options& options, PhotoSelection* selection, std::string* error);

} // namespace orvane::tools
