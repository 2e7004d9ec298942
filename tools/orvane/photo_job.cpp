#include "tools/orvane/photo_job.h"

#include "tools/orvane/packed_findings.h"
#include "tools/support/fingerprint.h"

#include <bit>
#include <cstdio>

namespace orvane::tools {
namespace {

void PackPortrait(const Options& options, Packer* packer) {
    packer->Integer(options.width).Integer(options.height);
    packer->Integer(std::bit_cast<std::int32_t>(options.cropRatio));
    packer->Flag(options.actions.crop).Flag(options.actions.background);
    packer->Flag(options.actions.colour).Flag(options.actions.rotation);
    packer->Integer(options.tolerance).Integer(options.rotation);
    PackFrame(options.frame, packer);
}

void PackFile(const FileSettings& file, Packer* packer) {
    packer->Integer(file.quality.value_or(0)).Flag(file.chroma.has_value());
    packer->Integer(static_cast<std::int64_t>(file.chroma.value_or(Chroma::quarter))).Integer(file.dpi.value_or(0));
    for (const std::optional<std::uint64_t>& bytes : {file.leastBytes, file.mostBytes}) {
        packer->Flag(bytes.has_value()).Integer(static_cast<std::int64_t>(bytes.value_or(0)));
    }
    packer->Flag(file.keepMetadata);
}

int32 Small(Unpacker* unpacker) { return static_cast<int32>(unpacker->Integer()); }

void UnpackFile(Unpacker* unpacker, FileSettings* file) {
    *file = FileSettings();
    if (const int32 quality = Small(unpacker); quality != 0) file->quality = quality;
    const bool hasChroma = unpacker->Flag();
    const auto chroma = static_cast<Chroma>(Small(unpacker));
    if (hasChroma) file->chroma = chroma;
    if (const int32 dpi = Small(unpacker); dpi != 0) file->dpi = dpi;
    for (std::optional<std::uint64_t>* bytes : {&file->leastBytes, &file->mostBytes}) {
        const bool has = unpacker->Flag();
        const auto value = static_cast<std::uint64_t>(unpacker->Integer());
        if (has) *bytes = value;
    }
    file->keepMetadata = unpacker->Flag();
}

void PackEntry(const JournalEntry& entry, Packer* packer) {
    for (const std::uint64_t value : {entry.photo, entry.settings, entry.portrait}) {
        packer->Integer(std::bit_cast<std::int64_t>(value));
    }
    packer->Text(entry.note).Text(entry.output);
}

std::uint64_t Fingerprint(Unpacker* unpacker) { return std::bit_cast<std::uint64_t>(unpacker->Integer()); }

} // namespace

std::string Packed(const WorkSettings& settings) {
    Packer packer;
    packer.Integer(static_cast<std::int64_t>(settings.options.command)).Flag(settings.options.allGroups);
    PackPortrait(settings.options, &packer);
    packer.Text(settings.options.frame ? settings.options.frame->name : "");
    PackFile(settings.options, &packer);
    packer.Text(settings.options.steps).Flag(settings.options.force).Flag(settings.options.resume);
    packer.Integer(static_cast<std::int64_t>(settings.memory)).Flag(settings.journal);
    packer.Integer(std::bit_cast<std::int64_t>(settings.fingerprint));
    packer.Flag(settings.document.has_value());
    PackDocument(settings.document.value_or(Document()), &packer);
    return packer.Bytes();
}

bool Unpack(const std::string& bytes, WorkSettings* settings) {
    Unpacker unpacker(bytes);
    Options& options = settings->options;
    options.command = static_cast<Command>(unpacker.Integer());
    options.allGroups = unpacker.Flag();
    options.width = Small(&unpacker);
    options.height = Small(&unpacker);
    options.cropRatio = std::bit_cast<float>(Small(&unpacker));
    for (bool* action :
         {&options.actions.crop, &options.actions.background, &options.actions.colour, &options.actions.rotation}) {
        *action = unpacker.Flag();
    }
    options.tolerance = Small(&unpacker);
    options.rotation = Small(&unpacker);
    UnpackFrame(&unpacker, &options.frame);
    const std::string document = unpacker.Text();
    if (options.frame) options.frame->name = document;
    UnpackFile(&unpacker, &options);
    options.steps = unpacker.Text();
    options.force = unpacker.Flag();
    options.resume = unpacker.Flag();
    settings->memory = static_cast<std::uint64_t>(unpacker.Integer());
    settings->journal = unpacker.Flag();
    settings->fingerprint = Fingerprint(&unpacker);
    const bool hasDocument = unpacker.Flag();
    const Document checked = UnpackDocument(&unpacker);
    if (hasDocument) settings->document = checked;
    return unpacker.IsGood();
}

std::string Packed(const PhotoJob& job) {
    Packer packer;
    packer.Text(job.photo).Text(job.folder).Text(job.name).Text(job.output);
    packer.Integer(static_cast<std::int64_t>(job.known.size()));
    for (const JournalEntry& entry : job.known) PackEntry(entry, &packer);
    PackFace(job.face, &packer);
    return packer.Bytes();
}

bool Unpack(const std::string& bytes, PhotoJob* job) {
    Unpacker unpacker(bytes);
    job->photo = unpacker.Text();
    job->folder = unpacker.Text();
    job->name = unpacker.Text();
    job->output = unpacker.Text();
    job->known.clear();
    // Every entry takes bytes, so a count that is none ends with them.
    for (std::int64_t left = unpacker.Integer(); left > 0; --left) {
        if (job->known.size() > bytes.size()) return false;
        JournalEntry entry;
        for (std::uint64_t* value : {&entry.photo, &entry.settings, &entry.portrait}) *value = Fingerprint(&unpacker);
        entry.note = unpacker.Text();
        entry.output = unpacker.Text();
        job->known.push_back(entry);
    }
    job->face = UnpackFace(&unpacker);
    return unpacker.IsGood();
}

std::string Packed(const PhotoReport& report) {
    Packer packer;
    packer.Text(report.photo).Integer(report.width).Integer(report.height);
    packer.Flag(report.status.has_value()).Integer(report.status.value_or(0));
    PackFace(report.face, &packer);
    packer.Text(report.output);
    for (const Stage& stage : kStages) {
        const std::optional<double>& value = report.milliseconds.*stage.value;
        packer.Flag(value.has_value()).Real(value.value_or(0));
    }
    packer.Text(report.document);
    PackFindings(report, &packer);
    return packer.Text(report.error).Text(report.warning).Flag(report.kept).Flag(report.passing).Bytes();
}

bool Unpack(const std::string& bytes, PhotoReport* report) {
    Unpacker unpacker(bytes);
    *report = PhotoReport();
    report->photo = unpacker.Text();
    report->width = Small(&unpacker);
    report->height = Small(&unpacker);
    const bool hasStatus = unpacker.Flag();
    const int32 status = Small(&unpacker);
    if (hasStatus) report->status = status;
    report->face = UnpackFace(&unpacker);
    report->output = unpacker.Text();
    for (const Stage& stage : kStages) {
        const bool ran = unpacker.Flag();
        const double value = unpacker.Real();
        if (ran) report->milliseconds.*stage.value = value;
    }
    report->document = unpacker.Text();
    if (!UnpackFindings(&unpacker, report)) return false;
    report->error = unpacker.Text();
    report->warning = unpacker.Text();
    report->kept = unpacker.Flag();
    report->passing = unpacker.Flag();
    return unpacker.IsGood();
}

std::uint64_t FingerprintOfJob(std::uint64_t run, const std::optional<FaceBox>& face) {
    if (!face) return run;
    Packer packer;
    packer.Integer(std::bit_cast<std::int64_t>(run));
    PackFace(face, &packer);
    return ContentFingerprint(packer.Bytes());
}

std::uint64_t SettingsFingerprint(const Options& options, const std::string& classifier) {
    Packer packer;
    PackPortrait(options, &packer);
    PackFile(options, &packer);
    packer.Text(ORVANE_VERSION).Integer(std::bit_cast<std::int64_t>(ContentFingerprint(classifier)));
    return ContentFingerprint(packer.Bytes());
}

std::string NoteOf(const PhotoReport& report) {
    char text[128];
    const FaceBox face = report.face.value_or(FaceBox());
    std::snprintf(text, sizeof text, report.face ? "%dx%d,%d,%d,%d,%d" : "%dx%d", report.width, report.height, face.x,
                  face.y, face.width, face.height);
    return text;
}

void ReadNote(const std::string& note, PhotoReport* report) {
    FaceBox face;
    const int found = std::sscanf(note.c_str(), "%dx%d,%d,%d,%d,%d", &report->width, &report->height, &face.x, &face.y,
                                  &face.width, &face.height);
    if (found == 6) report->face = face;
}

} // namespace orvane::tools
