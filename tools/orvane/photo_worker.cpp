#include "tools/orvane/photo_worker.h"

#include "image/result_codes.h"
#include "session/stage_clock.h"
#include "tools/batch/worker_end.h"
#include "tools/orvane/commands.h"
#include "tools/support/child_process.h"
#include "tools/support/file_identity.h"
#include "tools/support/fingerprint.h"
#include "tools/support/folder_entries.h"
#include "tools/support/interrupt.h"
#include "tools/support/picture_io.h"
#include "tools/support/picture_remarks.h"
#include "tools/support/status_text.h"
#include "tools/support/whole_file.h"

#include <exception>
#include <new>
#include <optional>
#include <utility>

namespace orvane::tools {
namespace {

std::optional<std::uint64_t> FingerprintOfFile(const std::string& path) {
    std::string content;
    std::string ignored;
    if (!ReadWholeFile(path, &content, &ignored)) return std::nullopt;
    return ContentFingerprint(content);
}

/// What the journal says of the file that has the output's name now.
enum class Place {
    free,
    current, ///< The portrait of this very photo, with these settings.
    ours,    ///< A portrait that was made here, of another photo or with other settings.
    foreign
};

Place LookAtPlace(const WorkSettings& settings, const PhotoJob& job, std::uint64_t photo, std::string* note) {
    if (!IsNameTaken(job.output)) return Place::free;
    const std::optional<std::uint64_t> there = FingerprintOfFile(job.output);
    Place place = Place::foreign;
    for (const JournalEntry& entry : job.known) {
        if (entry.portrait != there) continue;
        place = Place::ours;
        if (entry.photo != photo || entry.settings != FingerprintOfJob(settings.fingerprint, job.face)) continue;
        *note = entry.note;
        return Place::current;
    }
    return place;
}

bool MakeItsFolders(const PhotoJob& job, PhotoReport* report) {
    std::string error;
    if (job.folder.empty() || MakeFoldersBelow(job.folder, job.name, &error)) return true;
    report->error = "the output '" + job.output + "' " + error;
    return false;
}

/// Whether the folder of the outputs can't take these bytes under any name.
bool IsFolderUnfit(const PhotoJob& job, const std::string& encoded) {
    std::string ignored;
    return !CanWriteWholeFile(job.folder + "/.orvane-trial", true, &ignored, encoded);
}

/// Encodes a portrait, has it written down and puts it in place.
class JournaledPlace : public PortraitPlace {
public:
    JournaledPlace(const PhotoJob& job, JournalEntry entry, bool replace, const AskForPlace& ask)
        : job_(job), entry_(std::move(entry)), replace_(replace), ask_(ask) {}

    void Put(Picture&& portrait, const PortraitFile& file, PhotoReport* report) override {
        double milliseconds = 0;
        {
            const StageClock clock(milliseconds);
            PutInPlace(std::move(portrait), file, report);
        }
        report->milliseconds.encode = milliseconds;
    }

private:
    void PutInPlace(Picture&& portrait, const PortraitFile& file, PhotoReport* report) {
        std::string encoded;
        std::string error;
        if (!EncodePicture(job_.output, std::move(portrait), file, &encoded, &error)) {
            report->error = "the output '" + job_.output + "' " + error;
            return;
        }
        if (!MakeItsFolders(job_, report)) {
            report->passing = IsFolderUnfit(job_, encoded);
            return;
        }
        entry_.portrait = ContentFingerprint(encoded);
        entry_.note = NoteOf(*report);
        report->error = ask_(entry_);
        report->passing = !report->error.empty();
        if (report->passing) return;
        if (WriteWholeFile(job_.output, encoded, replace_, &error)) {
            report->output = job_.output;
        } else {
            report->error = "the output '" + job_.output + "' " + error;
            report->passing = error != kNameTaken && IsFolderUnfit(job_, encoded);
        }
    }

    const PhotoJob& job_;
    JournalEntry entry_;
    const bool replace_;
    const AskForPlace& ask_;
};

PhotoReport JournaledPortrait(Host& host, const WorkSettings& settings, const Options& options, const PhotoJob& job,
                              std::uint64_t photo, const AskForPlace& ask) {
    PhotoReport report;
    report.photo = job.photo;
    std::string note;
    const Place place = LookAtPlace(settings, job, photo, &note);
    if (place == Place::current && settings.options.resume) {
        ReadNote(note, &report);
        report.status = kSuccess;
        report.output = job.output;
        report.kept = true;
        return report;
    }
    if (place == Place::foreign && !settings.options.force) {
        report.error = "the output '" + job.output + "' " + kNameTaken;
        return report;
    }
    const JournalEntry entry{photo, FingerprintOfJob(settings.fingerprint, job.face), 0, "", job.name};
    JournaledPlace journaled(job, entry, settings.options.force || place == Place::ours, ask);
    return PortraitOf(host, job.photo, {job.output, "", ""}, options, &journaled);
}

PhotoReport Work(Host& host, const WorkSettings& settings, const PhotoJob& job, const AskForPlace& ask) {
    Options options = settings.options;
    options.face = job.face;
    // What a decoder does not tell. A photo that can't be read is told by whoever reads its picture.
    std::string remark;
    std::uint64_t photo = 0;
    {
        std::string content;
        std::string ignored;
        if (ReadWholeFile(job.photo, &content, &ignored)) {
            remark = PictureRemark(content);
            if (settings.journal) photo = ContentFingerprint(content);
        }
    }
    PhotoReport report;
    report.photo = job.photo;
    if (settings.options.command == Command::detect) {
        report = FaceOf(host, job.photo, options);
    } else if (settings.options.command == Command::check) {
        report = CheckOf(host, job.photo, options, settings.document ? &*settings.document : nullptr);
    } else if (settings.journal) {
        report = JournaledPortrait(host, settings, options, job, photo, ask);
    } else if (MakeItsFolders(job, &report)) {
        report = PortraitOf(host, job.photo, {job.output, "", ""}, options, nullptr);
    }
    if (settings.options.frame) report.document = settings.options.frame->name;
    if (settings.document) report.document = settings.document->name;
    AddWarning(remark, &report);
    if (!report.error.empty()) report.warning.clear();
    return report;
}

} // namespace

PhotoReport WorkOnPhoto(Host& host, const WorkSettings& settings, const PhotoJob& job, const AskForPlace& ask) try {
    PhotoReport report = Work(host, settings, job, ask);
    if (report.status == kNoClassifier) report.passing = true;
    return report;
} catch (const std::bad_alloc&) {
    PhotoReport report;
    report.photo = job.photo;
    report.status = kOutOfMemory;
    report.error = StatusText(kOutOfMemory);
    return report;
}

ExitCode RunWorker() {
    IgnoreInterrupts();
    WorkerEnd run;
    std::string bytes;
    WorkSettings settings;
    if (!run.Take(FrameKind::greeting, &bytes) || !Unpack(bytes, &settings)) return kExitError;
    Host host;
    // The session comes first: a limit that is too small for it would fail every photo.
    if (settings.memory > 0) LimitOwnMemory(settings.memory);
    const AskForPlace ask = [&](const JournalEntry& entry) {
        std::string answer;
        run.Give(FrameKind::question, JournalLine(entry));
        return run.Take(FrameKind::answer, &answer) ? answer : "the run has ended";
    };
    while (run.Take(FrameKind::job, &bytes)) {
        PhotoJob job;
        PhotoReport report;
        if (!Unpack(bytes, &job)) return kExitError;
        if (host.Status() == kSuccess) {
            report = WorkOnPhoto(host, settings, job, ask);
        } else {
            report.photo = job.photo;
            report.error = "the library did not start: " + StatusText(host.Status());
            report.passing = true;
        }
        run.Give(FrameKind::result, Packed(report));
    }
    return kExitGood;
}

} // namespace orvane::tools
