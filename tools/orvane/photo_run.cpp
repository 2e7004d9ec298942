#include "tools/orvane/photo_run.h"

#include "image/result_codes.h"
#include "tools/batch/journal.h"
#include "tools/batch/progress.h"
#include "tools/batch/worker_pool.h"
#include "tools/documents/documents.h"
#include "tools/orvane/commands.h"
#include "tools/orvane/photo_job.h"
#include "tools/orvane/photo_pool.h"
#include "tools/orvane/photo_selection.h"
#include "tools/orvane/photo_worker.h"
#include "tools/orvane/report_file.h"
#include "tools/orvane/run_sheet.h"
#include "tools/support/interrupt.h"
#include "tools/support/status_text.h"
#include "tools/support/utf8.h"
#include "tools/support/whole_file.h"

#include <algorithm>
#include <map>
#include <optional>

namespace orvane::tools {
namespace {

/// Reports that may wait for that of an earlier photo.
constexpr std::size_t kMostWaiting = 4096;
/// Workers that can't be started one after the other, until the run gives up.
constexpr int kMostFailedStarts = 3;

class PhotoRun : public PoolClient {
public:
    PhotoRun(const Options& options, const PhotoSelection& selection, const WorkSettings& settings, Journal& journal,
             ReportFile& report, RunSheet& sheet)
        : options_(options), selection_(selection), settings_(settings), journal_(journal), report_(report),
          sheet_(sheet), progress_(!options.quiet && selection.photos.size() > 1) {
        counts_.total = selection.photos.size();
        // What can't be done is told before anything is.
        for (const SelectedPhoto& photo : selection.photos) {
            if (!photo.output.error.empty()) PrintError(OneLine(photo.path) + ": " + OneLine(photo.output.error));
        }
    }

    /// All photos one after the other in this process.
    void RunHere() {
        Host host;
        std::size_t number = 0;
        for (PhotoJob job; !IsInterrupted() && NextPhoto(&number, &job);) {
            PhotoReport report;
            report.photo = job.photo;
            if (host.Status() == kSuccess) {
                report = WorkOnPhoto(host, settings_, job, [&](const JournalEntry& entry) { return WriteDown(entry); });
            } else {
                report.error = "the library did not start: " + StatusText(host.Status());
            }
            Take(number, report);
        }
    }

    bool NextJob(std::size_t* number, std::string* bytes) override {
        PhotoJob job;
        if (!fatal_.empty() || !NextPhoto(number, &job)) return false;
        *bytes = Packed(job);
        return true;
    }

    std::string Answer(std::size_t, const std::string& question) override {
        JournalEntry entry;
        if (!ReadJournalLine(question.substr(0, question.size() - (question.empty() ? 0 : 1)), &entry)) {
            return "its worker asked for nothing known";
        }
        return WriteDown(entry);
    }

    void Finish(std::size_t number, const JobOutcome& outcome) override {
        const SelectedPhoto& photo = selection_.photos[number];
        if (outcome.end != JobEnd::done) RemoveWhatIsLeft(photo, outcome.worker);
        if (outcome.end == JobEnd::stopped) { // not done, and so not told
            Skip(number);
            return;
        }
        const PhotoReport report = ReportOf(outcome, photo.path, settings_);
        failedStarts_ = outcome.end == JobEnd::notStarted ? failedStarts_ + 1 : 0;
        if (failedStarts_ >= kMostFailedStarts) fatal_ = "the workers " + outcome.result;
        Take(number, report);
    }

    bool Tick() override {
        progress_.Show(counts_);
        return IsInterrupted() || !fatal_.empty();
    }

    ExitCode End() {
        // A photo that was stopped leaves a gap; those behind it are done all the same.
        for (auto& [number, report] : waiting_) {
            if (report) Tell(number, *report);
        }
        waiting_.clear();
        progress_.Hide();
        if (!fatal_.empty()) PrintError(fatal_);
        const std::size_t open = counts_.total - counts_.done;
        if (IsInterrupted()) {
            if (open > 0) PrintError("interrupted; " + std::to_string(open) + " photos are not done");
            return kExitInterrupted;
        }
        if (std::string error; !sheet_.Write(&error)) {
            PrintError(error);
            return kExitError;
        }
        return open > 0 ? kExitError : code_;
    }

private:
    bool NextPhoto(std::size_t* number, PhotoJob* job) {
        while (next_ < selection_.photos.size() && next_ < told_ + kMostWaiting) {
            const SelectedPhoto& photo = selection_.photos[next_];
            *number = next_++;
            if (!photo.output.error.empty()) {
                PhotoReport report;
                report.photo = photo.path;
                report.error = photo.output.error;
                Take(*number, report);
                continue;
            }
            *job = {
                photo.path, photo.output.name.empty() ? "" : options_.output, photo.output.name, photo.output.path, {},
                photo.face};
            if (settings_.journal) job->known = journal_.Find(photo.output.name);
            return true;
        }
        return false;
    }

    std::string WriteDown(const JournalEntry& entry) {
        std::string error;
        return journal_.Add(entry, &error) ? "" : "the journal " + error;
    }

    void RemoveWhatIsLeft(const SelectedPhoto& photo, std::uint64_t worker) const {
        if (worker == 0 || photo.output.path.empty()) return;
        RemoveTemporaries(photo.output.path, worker);
        if (!options_.steps.empty()) RemoveTemporaries(InFolder(options_.steps, "step"), worker);
    }

    void Take(std::size_t number, PhotoReport report) {
        waiting_.emplace(number, std::move(report));
        TellInOrder();
    }
    void Skip(std::size_t number) {
        waiting_.emplace(number, std::nullopt);
        TellInOrder();
    }
    void TellInOrder() {
        for (auto first = waiting_.begin(); first != waiting_.end() && first->first == told_; ++told_) {
            if (first->second) Tell(first->first, *first->second);
            first = waiting_.erase(first);
        }
    }

    void Tell(std::size_t number, const PhotoReport& report) {
        ++counts_.done;
        if (!report.error.empty()) ++counts_.failed;
        if (report.kept) ++counts_.kept;
        if (report.error.empty() && report.status == kNoFace) ++counts_.faceless;
        code_ = Worse(code_, report);
        const SelectedPhoto& photo = selection_.photos[number];
        if (photo.output.error.empty()) { // else it was told before the first photo
            for (const std::string& line : {ErrorLine(report), WarningLine(report)}) {
                if (line.empty()) continue;
                progress_.Hide();
                PrintError(line);
            }
        }
        const std::string line = options_.json    ? JsonLine(report)
                                 : options_.quiet ? OutOfBandText(report)
                                                  : TextLine(report);
        if (!line.empty()) {
            progress_.Hide();
            if (!Print(line + "\n")) code_ = kExitError;
        }
        sheet_.Add(report);
        std::string error;
        if (!report_.Add(photo.number, report, &error)) {
            progress_.Hide();
            PrintError(error);
            code_ = kExitError;
        }
    }

    const Options& options_;
    const PhotoSelection& selection_;
    const WorkSettings& settings_;
    Journal& journal_;
    ReportFile& report_;
    RunSheet& sheet_;
    ProgressLine progress_;
    RunCounts counts_;
    std::size_t next_ = 0;                                      ///< The next photo to be given out.
    std::size_t told_ = 0;                                      ///< The next one to be told.
    std::map<std::size_t, std::optional<PhotoReport>> waiting_; ///< None for one that is not told.
    ExitCode code_ = kExitGood;
    int failedStarts_ = 0;
    std::string fatal_;
};

/// Opens what a run writes besides portraits. False tells why.
bool OpenFiles(const Options& options, const PhotoSelection& selection, WorkSettings* settings, Journal* journal,
               ReportFile* report) {
    std::string error;
    std::string remark;
    settings->journal = options.command == Command::portrait && selection.keepsJournal;
    if (settings->journal) {
        settings->fingerprint = FingerprintOfRun(options);
        if (!journal->Open(options.output, options.shard, &remark, &error)) {
            PrintError(error);
            return false;
        }
        if (!remark.empty()) PrintError(remark);
    }
    const ReportKind kind = options.command == Command::check ? ReportKind::checks : ReportKind::plain;
    if (options.report.empty() || report->Open(options.report, options.force || options.resume, &error, kind)) {
        return true;
    }
    PrintError(error);
    return false;
}

} // namespace

ExitCode RunOverPhotos(const Options& options) {
    PhotoSelection selection;
    std::string error;
    WorkSettings settings;
    const bool checksDocument = options.command == Command::check && !options.document.empty();
    if (checksDocument && !FindDocument(options.document, &settings.document.emplace(), &error)) {
        PrintError(error);
        return kExitError;
    }
    const bool isSelected = SelectPhotos(options, &selection, &error);
    for (const std::string& remark : selection.remarks) PrintError(remark);
    if (!isSelected) {
        PrintError(error);
        return kExitError;
    }
    settings.options = options;
    Journal journal;
    ReportFile report;
    RunSheet sheet;
    if (!sheet.Open(options, selection, &error)) {
        PrintError(error);
        return kExitError;
    }
    if (!OpenFiles(options, selection, &settings, &journal, &report)) return kExitError;

    CatchInterrupts();
    PhotoRun run(options, selection, settings, journal, report, sheet);
    const bool asksForWorkers = options.jobs || options.timeout || options.memory;
    if (selection.photos.size() == 1 && !asksForWorkers) {
        settings.memory = 0;
        run.RunHere();
    } else {
        settings.memory = options.memory.value_or(kPlainMemory);
        RunPool(PoolOf(settings), run);
    }
    const ExitCode code = run.End();
    return code != kExitInterrupted && selection.isIncomplete ? kExitError : code;
}

} // namespace orvane::tools
