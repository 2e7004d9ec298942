// Where each photo's portrait goes, and which photos can't have one there: decided for all photos
// before the first is opened, so that no photo is replaced before it was read.
#pragma once

#include <cstddef>
#include <functional>
#include <string>
#include <vector>

namespace orvane::tools {

struct PlannedOutput {
    std::string path;
    std::string error;  ///< One line when nothing may be written at `path`; else empty.
    std::string name{}; ///< Of the portrait below the folder; empty where the output is a file of its own.
};

/// How portraits in a folder are named.
struct OutputNaming {
    /// A photo's name for its portrait, by its place among the photos; none for the photo's own one with .png.
    std::function<std::string(std::size_t photo)> nameOf;
    /// Whether names may be taken, since it is looked at later what has them.
    bool mayExist = false;
};

/// The file's name without folders and without its last extension.
std::string Stem(const std::string& path);

/// The path of a file in a folder.
std::string InFolder(const std::string& folder, const std::string& name);

/// Plans the outputs of `photos`, one each and in their order. `output` is a folder when it is one on
/// the disk or ends with a slash; a portrait then takes the photo's name with the extension .png, or as `naming` tells.
/// Refused are a name that an earlier photo has taken, an existing file without `force`, and, even
/// with it, a file that is another one of the photos.
/// False with one line in `*error` when no photo can be done: several photos for one file, a file name
/// whose extension names no known format, a folder that does not exist.
bool PlanOutputs(const std::vector<std::string>& photos, const std::string& output, bool force,
                 std::vector<PlannedOutput>* planned, std::string* error, const OutputNaming& naming = {});

/// Refuses among `planned`, as PlanOutputs made it, the photos whose steps can't have their files in `folder`,
/// by the same rules; `steps` are the names of the steps. Nor may a step be the portrait of any of the photos.
/// False with one line in `*error` when there is no such folder.
bool PlanSteps(const std::vector<std::string>& photos, const std::string& folder, const std::vector<std::string>& steps,
               bool force, std::vector<PlannedOutput>* planned, std::string* error);

} // namespace orvane::tools
