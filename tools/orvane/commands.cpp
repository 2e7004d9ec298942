#include "tools/orvane/commands.h"

#include "image/result_codes.h"
#include "session/stage_clock.h"
#include "tools/check/checks.h"
#include "tools/orvane/host.h"
#include "tools/orvane/output_names.h"
#include "tools/orvane/steps.h"
#include "tools/support/json.h"
#include "tools/support/picture_io.h"
#include "tools/support/result_stream.h"
#include "tools/support/status_text.h"
#include "tools/support/utf8.h"

namespace orvane::tools {
namespace {

bool IsOpen(const Host& host) {
    if (host.Status() == kSuccess) return true;
    PrintError("the library did not start: " + StatusText(host.Status()));
    return false;
}

bool Decode(const std::string& photo, Picture* picture, std::string* metadata, PhotoReport* report) {
    report->photo = photo;
    PictureNotes notes;
    double milliseconds = 0;
    bool good = false;
    {
        const StageClock clock(milliseconds);
        good = ReadPicture(photo, picture, &notes, &report->error);
    }
    if (!good) {
        report->status = kNoPicture;
        return false;
    }
    report->milliseconds.decode = milliseconds;
    report->width = picture->width;
    report->height = picture->height;
    report->warning = notes.warning;
    *metadata = notes.metadata;
    return true;
}

/// False, with an error, for a face that was marked by hand and does not lie in the picture.
bool HasMarkedFace(const Options& options, const Picture& picture, PhotoReport* report) {
    if (!options.face || LiesWithin(*options.face, picture.width, picture.height)) return true;
    report->error = "the face " + FaceText(*options.face) + " does not lie in the photo, which has " +
                    std::to_string(picture.width) + "x" + std::to_string(picture.height) + " pixels";
    return false;
}

void Encode(const std::string& path, Picture&& portrait, const PortraitFile& file, bool force, PhotoReport* report) {
    double milliseconds = 0;
    {
        const StageClock clock(milliseconds);
        if (WritePicture(path, std::move(portrait), file, force, &report->error)) {
            report->output = path;
        } else {
            report->error = "the output '" + path + "' " + report->error;
        }
    }
    report->milliseconds.encode = milliseconds;
}

/// Files for the steps, which must be good for `report` to be.
void EncodeSteps(Steps& steps, const Options& options, PhotoReport* report) {
    for (Step& step : steps) {
        const std::string path = StepFile(options.steps, report->photo, step.name);
        if (!report->error.empty() || WritePicture(path, std::move(step.picture), options.force, &report->error))
            continue;
        report->error = "the step '" + path + "' " + report->error;
    }
}

} // namespace

PhotoReport FaceOf(Host& host, const std::string& photo, const Options& options) {
    PhotoReport report;
    Picture picture;
    std::string ignored;
    if (Decode(photo, &picture, &ignored, &report)) host.Detect(picture, &report);
    if (!options.allGroups) report.groups.clear();
    return report;
}

PhotoReport CheckOf(Host& host, const std::string& photo, const Options& options, const Document* document) {
    PhotoReport report;
    Picture picture;
    std::string ignored;
    if (!Decode(photo, &picture, &ignored, &report)) return report;
    std::optional<int32> faces;
    if (options.face) {
        if (!HasMarkedFace(options, picture, &report)) return report;
        report.status = kSuccess;
        report.face = options.face;
    } else {
        host.Detect(picture, &report, &faces.emplace());
        report.groups.clear();
    }
    if (report.face) report.measures = CheckFace(picture, *report.face, faces, document);
    return report;
}

PhotoReport PortraitOf(Host& host, const std::string& photo, const PlannedOutput& output, const Options& options,
                       PortraitPlace* place) {
    PhotoReport report;
    report.photo = photo;
    report.error = output.error;
    if (!output.error.empty()) return report;
    Picture portrait;
    Steps steps;
    PortraitFile file{options, ""};
    {
        Picture picture;
        if (!Decode(photo, &picture, &file.metadata, &report) || !HasMarkedFace(options, picture, &report))
            return report;
        host.MakePortrait(picture, options, &portrait, &report, options.steps.empty() ? nullptr : &steps);
    }
    if (place != nullptr && !portrait.pixels.empty()) {
        place->Put(std::move(portrait), file, &report);
        return report;
    }
    if (portrait.pixels.empty()) return report;
    Encode(output.path, std::move(portrait), file, options.force, &report);
    EncodeSteps(steps, options, &report);
    return report;
}

namespace {

std::string InfoJson(const LibraryInfo& info) {
    JsonObject classifier;
    classifier.Text("file", info.classifierFile).Integer("status", info.classifierStatus);
    if (info.classifierStatus == kSuccess) {
        classifier.Integer("windowWidth", info.windowWidth).Integer("windowHeight", info.windowHeight);
        classifier.Integer("stages", info.stages).Integer("stumps", info.stumps);
        classifier.Integer("rectangles", info.rectangles).Integer("bytes", info.bytes);
    }
    JsonObject processor;
    processor.Integer("class", info.processorClass).Integer("column", info.processorColumn);
    processor.Text("columnName", info.columnName);
    return JsonObject()
        .Text("version", info.version)
        .Object("library", JsonObject().Text("name", "Orvane").Text("version", info.version).Integer("bits", info.bits))
        .Object("classifier", classifier)
        .Object("processor", processor)
        .Line();
}

std::string InfoText(const LibraryInfo& info) {
    std::string text = "orvane " + info.version + "\n";
    text += "library     Orvane " + info.version + ", part of this program, " + std::to_string(info.bits) + " bit\n";
    text += "classifier  " + OneLine(info.classifierFile);
    if (info.classifierStatus == kSuccess) {
        text += ": window " + std::to_string(info.windowWidth) + "x" + std::to_string(info.windowHeight) + ", " +
                std::to_string(info.stages) + " stages, " + std::to_string(info.stumps) + " stumps, " +
                std::to_string(info.rectangles) + " rectangles, " + std::to_string(info.bytes) + " bytes";
    } else {
        text += ": missing or unusable";
    }
    return text + "\nprocessor   class " + std::to_string(info.processorClass) + ", column " +
           std::to_string(info.processorColumn) + " (" + info.columnName + ")\n";
}

} // namespace

bool Print(const std::string& text) {
    if (WriteResult(text)) return true;
    PrintError("cannot write to standard output");
    return false;
}

void PrintError(const std::string& line) { WriteMessage("orvane: " + OneLine(line) + "\n"); }

ExitCode RunInfo(const Options& options) {
    const Host host;
    if (!IsOpen(host)) return kExitError;
    const LibraryInfo info = host.Info();
    if (!Print(options.json ? InfoJson(info) + "\n" : InfoText(info))) return kExitError;
    if (info.classifierStatus == kSuccess) return kExitGood;
    PrintError(StatusText(info.classifierStatus));
    return kExitError;
}

} // namespace orvane::tools
