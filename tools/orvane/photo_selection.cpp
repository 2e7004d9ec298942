#include "tools/orvane/photo_selection.h"

#include "tools/batch/output_pattern.h"
#include "tools/batch/photo_list.h"
#include "tools/orvane/corrections.h"
#include "tools/orvane/steps.h"
#include "tools/support/file_identity.h"
#include "tools/support/input_stream.h"
#include "tools/support/utf8.h"
#include "tools/support/whole_file.h"

#include <algorithm>

namespace orvane::tools {
namespace {

bool ReadList(const std::string& from, std::vector<std::string>* inputs, std::string* error) {
    std::string content;
    if (from == "-") {
        content = ReadAllInput();
    } else if (!ReadWholeFile(from, &content, error)) {
        *error = "the list '" + from + "' " + *error;
        return false;
    }
    const std::vector<std::string> paths = PathsOfList(content);
    inputs->insert(inputs->end(), paths.begin(), paths.end());
    return true;
}

bool Plan(const Options& options, const std::vector<ListedPhoto>& listed, std::vector<PlannedOutput>* outputs,
          std::string* error) {
    std::vector<std::string> paths;
    paths.reserve(listed.size());
    for (const ListedPhoto& photo : listed) paths.push_back(photo.path);
    const std::string pattern = options.outputName.empty() ? kPlainPattern : options.outputName;
    OutputNaming naming;
    naming.mayExist = options.resume;
    naming.nameOf = [&](std::size_t i) {
        return NameByPattern(pattern, {Stem(listed[i].path), listed[i].folder, i + 1});
    };
    return PlanOutputs(paths, options.output, options.force, outputs, error, naming) &&
           (options.steps.empty() ||
            PlanSteps(paths, options.steps, StepNames(options.actions), options.force, outputs, error));
}

/// The faces that were marked by hand, one for each photo that has one.
bool MarkFaces(const Options& options, const std::vector<ListedPhoto>& listed,
               std::vector<std::optional<FaceBox>>* faces, PhotoSelection* selection, std::string* error) {
    faces->assign(listed.size(), options.face);
    if (options.face && listed.size() > 1) {
        *error = "--face is for one photo; --corrections takes a face for each of many";
        return false;
    }
    if (options.corrections.empty()) return true;
    std::string content;
    const std::string file = "the corrections '" + options.corrections + "' ";
    if (!ReadWholeFile(options.corrections, &content, error)) {
        *error = file + *error;
        return false;
    }
    std::vector<std::string> paths;
    paths.reserve(listed.size());
    for (const ListedPhoto& photo : listed) paths.push_back(photo.path);
    std::vector<Correction> corrections;
    std::vector<std::string> errors;
    std::vector<std::string> strangers;
    ReadCorrections(content, &corrections, &errors);
    *faces = Correct(paths, corrections, &strangers, &errors);
    const auto tell = [&](const std::string& line) { selection->remarks.push_back(OneLine(file + line)); };
    for (const std::string& line : errors) tell(line);
    if (!errors.empty()) {
        *error = file + "can't be used; nothing was done";
        return false;
    }
    for (const std::string& line : strangers) tell(line);
    selection->isIncomplete = selection->isIncomplete || !strangers.empty();
    return true;
}

bool HasFile(const std::vector<ListedPhoto>& photos, const std::string& path) {
    const std::optional<FileIdentity> file = IdentifyFile(path);
    return file && std::any_of(photos.begin(), photos.end(),
                               [&](const ListedPhoto& photo) { return IdentifyFile(photo.path) == file; });
}

} // namespace

bool SelectPhotos(const Options& options, PhotoSelection* selection, std::string* error) {
    *selection = PhotoSelection();
    const bool portraits = options.command == Command::portrait;
    PhotoSources sources;
    sources.inputs = options.photos;
    sources.recursive = options.recursive;
    if (portraits) sources.output = options.output;
    if (!options.filesFrom.empty() && !ReadList(options.filesFrom, &sources.inputs, error)) return false;

    std::vector<ListedPhoto> listed;
    std::vector<ListRemark> remarks;
    ListPhotos(sources, &listed, &remarks);
    for (const ListRemark& remark : remarks) {
        selection->remarks.push_back(OneLine(remark.path) + ": " + (remark.isError ? "" : "warning: ") +
                                     OneLine(remark.text));
        selection->isIncomplete = selection->isIncomplete || remark.isError;
    }
    if (listed.empty()) {
        *error = remarks.empty() ? "no photos were found" : selection->remarks[0];
        selection->remarks.clear();
        return false;
    }
    const bool many = !options.filesFrom.empty() || std::any_of(options.photos.begin(), options.photos.end(), IsFolder);
    const bool intoFolder = portraits && IsFolder(options.output);
    if (!intoFolder && options.resume) {
        *error = "--resume wants an existing folder for -o, and '" + options.output + "' is none";
        return false;
    }
    if (!intoFolder && !options.outputName.empty()) {
        *error = "--output-name wants an existing folder for -o, and '" + options.output + "' is none";
        return false;
    }
    selection->keepsJournal = intoFolder && options.steps.empty() && (many || options.resume);
    if (!options.report.empty() && HasFile(listed, options.report)) {
        *error = "the report '" + options.report + "' is one of the photos";
        return false;
    }

    std::vector<std::optional<FaceBox>> faces;
    if (!MarkFaces(options, listed, &faces, selection, error)) return false;
    std::vector<PlannedOutput> outputs(listed.size());
    if (portraits && !Plan(options, listed, &outputs, error)) return false;
    for (std::size_t i = 0; i < listed.size(); ++i) {
        if (!options.shard.Has(listed[i].name)) continue;
        selection->photos.push_back({std::move(listed[i].path), i + 1, std::move(outputs[i]), faces[i]});
    }
    return true;
}

} // namespace orvane::tools
