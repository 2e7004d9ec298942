#include "tools/orvane/output_names.h"

#include "tools/orvane/steps.h"
#include "tools/support/file_identity.h"
#include "tools/support/picture_io.h"

#include <map>
#include <optional>
#include <set>

namespace orvane::tools {
namespace {

/// The files that the photos are.
class PhotoFiles {
public:
    explicit PhotoFiles(const std::vector<std::string>& photos) {
        for (std::size_t i = 0; i < photos.size(); ++i) {
            const std::optional<FileIdentity> file = IdentifyFile(photos[i]);
            if (!file) continue;
            const auto [known, isNew] = first_.emplace(*file, i);
            if (!isNew) several_.insert(*file);
        }
    }

    /// Whether `path` leads to a photo that is not the one at `own`.
    bool HasAnother(const std::string& path, std::size_t own) const {
        const std::optional<FileIdentity> file = IdentifyFile(path);
        if (!file) return false;
        const auto known = first_.find(*file);
        return known != first_.end() && (known->second != own || several_.count(*file) != 0);
    }
    bool Has(const std::string& path) const {
        const std::optional<FileIdentity> file = IdentifyFile(path);
        return file && first_.count(*file) != 0;
    }

private:
    std::map<FileIdentity, std::size_t> first_; ///< The first photo that is this file.
    std::set<FileIdentity> several_;            ///< Files that more than one photo is.
};

/// Equal for two names of files in the same folder, however the folder is spelled.
using Place = std::pair<std::optional<FileIdentity>, std::string>;

Place PlaceOf(const std::string& path) {
    const std::size_t start = NameStart(path);
    return {IdentifyFile(start == 0 ? "." : path.substr(0, start)), NameKey(path.substr(start))};
}

} // namespace

std::string Stem(const std::string& path) {
    const std::string name = path.substr(NameStart(path));
    const std::size_t dot = name.rfind('.');
    return dot == std::string::npos || dot == 0 ? name : name.substr(0, dot);
}

std::string InFolder(const std::string& folder, const std::string& name) {
    return NameStart(folder) == folder.size() ? folder + name : folder + "/" + name;
}

bool PlanOutputs(const std::vector<std::string>& photos, const std::string& output, bool force,
                 std::vector<PlannedOutput>* planned, std::string* error, const OutputNaming& naming) {
    planned->clear();
    const bool folder = IsFolder(output);
    if (!folder && NameStart(output) == output.size()) {
        *error = "there is no folder '" + output + "'";
        return false;
    }
    if (!folder && photos.size() > 1) {
        *error = "several photos want a folder for -o, and '" + output + "' is none";
        return false;
    }
    if (!folder && !IsWritablePictureName(output)) {
        *error = "'" + output + "' " + kUnwritableName;
        return false;
    }
    const PhotoFiles files(photos);
    std::set<std::string> taken;
    for (std::size_t i = 0; i < photos.size(); ++i) {
        PlannedOutput plan;
        if (folder) plan.name = naming.nameOf ? naming.nameOf(i) : Stem(photos[i]) + ".png";
        plan.path = folder ? InFolder(output, plan.name) : output;
        if (!taken.insert(NameKey(plan.path)).second) {
            plan.error = "an earlier photo has the output '" + plan.path + "'";
        } else if (!force && !naming.mayExist && IsNameTaken(plan.path)) {
            plan.error = "the output '" + plan.path + "' exists already; --force replaces it";
        } else if ((force || naming.mayExist) && files.HasAnother(plan.path, i)) {
            plan.error = "the output '" + plan.path + "' is another one of the photos";
        }
        planned->push_back(plan);
    }
    return true;
}

bool PlanSteps(const std::vector<std::string>& photos, const std::string& folder, const std::vector<std::string>& steps,
               bool force, std::vector<PlannedOutput>* planned, std::string* error) {
    if (!IsFolder(folder)) {
        *error = "there is no folder '" + folder + "' for the steps";
        return false;
    }
    const PhotoFiles files(photos);
    std::set<Place> taken;
    for (const PlannedOutput& plan : *planned) taken.insert(PlaceOf(plan.path));
    for (std::size_t i = 0; i < photos.size(); ++i) {
        PlannedOutput& plan = (*planned)[i];
        if (!plan.error.empty()) continue;
        for (const std::string& step : steps) {
            const std::string path = StepFile(folder, photos[i], step);
            if (!taken.insert(PlaceOf(path)).second) {
                plan.error = "a portrait or an earlier photo has the step '" + path + "'";
            } else if (!force && IsNameTaken(path)) {
                plan.error = "the step '" + path + "' exists already; --force replaces it";
            } else if (files.Has(path)) {
                plan.error = "the step '" + path + "' is one of the photos";
            }
            if (!plan.error.empty()) break;
        }
    }
    return true;
}

} // namespace orvane::tools
