#include "tools/orvane/watch_run.h"

#include "image/result_codes.h"
#include "tools/batch/arrivals.h"
#include "tools/batch/journal.h"
#include "tools/batch/output_pattern.h"
#include "tools/orvane/commands.h"
#include "tools/orvane/failed_photos.h"
#include "tools/orvane/host.h"
#include "tools/orvane/photo_pool.h"
#include "tools/orvane/report_file.h"
#include "tools/support/folder_entries.h"
#include "tools/support/folder_watch.h"
#include "tools/support/interrupt.h"
#include "tools/support/status_text.h"
#include "tools/support/whole_file.h"

#include <algorithm>
#include <list>
#include <map>
#include <optional>

namespace orvane::tools {
namespace {

using Clock = std::chrono::steady_clock;
using std::chrono::milliseconds;

/// How often what went away, or is full, is tried again.
constexpr milliseconds kBetweenTries{1000};
/// How often the whole folder is looked at: what other machines put into a shared one is told by no event.
constexpr milliseconds kBetweenLooks{10000};
/// How long a photograph that gave no portrait must have stayed the same before it is moved: a program may be adding
/// to it piece by piece.
constexpr milliseconds kBeforeMoving{2000};

/// One line when something begins to be in the way, and one when it ends.
class Trouble {
public:
    void Begin(const std::string& text) {
        if (!is_) PrintError(text);
        is_ = true;
    }
    void End(const std::string& text) {
        if (is_) PrintError(text);
        is_ = false;
    }
    bool Is() const { return is_; }

private:
    bool is_ = false;
};

class WatchRun : public PoolClient {
public:
    WatchRun(const Options& options, const WorkSettings& settings, Journal& journal, ReportFile& report)
        : options_(options), settings_(settings), journal_(journal), report_(report), input_(options.photos[0]),
          arrivals_({[this](const std::string& name) { return StampOf(InFolder(input_, name)); },
                     [this](const std::string& name) { return WritersOf(InFolder(input_, name)); }}),
          outputFolder_(IdentifyFile(options.output)) {}

    /// False gives `*error` one line.
    bool Open(std::string* error) {
        if (watch_.Open(input_, error)) return LookAtAll(error);
        *error = "the folder '" + input_ + "' " + *error;
        return false;
    }

    bool NextJob(std::size_t* number, std::string* bytes) override {
        // With something in the way one photograph at a time tries whether it still is.
        if (!watch_.IsOpen() || !hasOutput_ || (output_.Is() && (!working_.empty() || Clock::now() < nextTry_))) {
            return false;
        }
        for (Arrivals::Arrival arrival; arrivals_.Next(Clock::now(), &arrival);) {
            PhotoJob job;
            PhotoReport report;
            if (!Plan(arrival.name, &job, &report.error)) {
                report.photo = job.photo;
                Hold(arrival, report);
                continue;
            }
            *number = next_++;
            *bytes = Packed(job);
            working_.emplace(*number, Work{std::move(arrival), std::move(job)});
            return true;
        }
        return false;
    }

    bool AwaitsJobs() override { return true; }

    std::string Answer(std::size_t, const std::string& question) override {
        JournalEntry entry;
        std::string error;
        if (!ReadJournalLine(question.substr(0, question.size() - (question.empty() ? 0 : 1)), &entry)) {
            return "its worker asked for nothing known";
        }
        return journal_.Add(entry, &error) ? "" : "the journal " + error;
    }

    void Finish(std::size_t number, const JobOutcome& outcome) override {
        const Work work = std::move(working_.extract(number).mapped());
        if (outcome.end != JobEnd::done && outcome.worker != 0) {
            RemoveTemporaries(work.job.output, outcome.worker);
            RemoveTemporaries(InFolder(options_.output, "portrait"), outcome.worker);
        }
        if (outcome.end == JobEnd::stopped) return; // untouched, and not told
        const PhotoReport report = ReportOf(outcome, work.job.photo, settings_);
        if (report.passing) {
            output_.Begin(report.error + "; trying again");
            nextTry_ = Clock::now() + kBetweenTries;
            arrivals_.Return(work.arrival, Clock::now());
            return;
        }
        if (!report.error.empty() || report.status == kNoFace) {
            Hold(work.arrival, report);
            return;
        }
        output_.End("the folder '" + options_.output + "' takes portraits again");
        arrivals_.Finish(work.arrival, Clock::now());
        Tell(report, "");
    }

    bool Tick() override {
        const Clock::time_point now = Clock::now();
        TakeChanges();
        if (now >= nextCheck_) {
            nextCheck_ = now + kBetweenTries;
            CheckOutput();
            CheckInput();
        }
        SetFailedAside(now);
        return IsInterrupted();
    }

private:
    struct Work {
        Arrivals::Arrival arrival;
        PhotoJob job;
    };
    struct Failure {
        Arrivals::Arrival arrival;
        PhotoReport report;
    };

    /// False where the photograph can't have a portrait.
    bool Plan(const std::string& name, PhotoJob* job, std::string* error) {
        const std::string pattern = options_.outputName.empty() ? kPlainPattern : options_.outputName;
        job->photo = InFolder(input_, name);
        job->folder = options_.output;
        job->name = NameByPattern(pattern, {Stem(name), "", 0});
        job->output = InFolder(options_.output, job->name);
        job->known = journal_.Find(job->name);
        if (IdentifyFile(job->output.substr(0, NameStart(job->output))) == IdentifyFile(input_)) {
            *error = "the portrait '" + job->output + "' would lie among the photographs";
            return false;
        }
        const auto owner = owners_.try_emplace(NameKey(job->name), name).first;
        if (owner->second != name && IsNameTaken(InFolder(input_, owner->second))) {
            *error = "the portrait '" + job->output + "' is that of '" + owner->second + "'";
            return false;
        }
        owner->second = name;
        return true;
    }

    bool LookAtAll(std::string* error) {
        std::vector<FolderEntry> entries;
        nextLook_ = Clock::now() + kBetweenLooks;
        if (!ListFolder(input_, &entries, error)) {
            *error = "the folder '" + input_ + "' " + *error;
            return false;
        }
        std::vector<std::string> names;
        for (const FolderEntry& entry : entries) {
            if (!entry.isFolder && settings_.options.shard.Has(entry.name)) names.push_back(entry.name);
        }
        arrivals_.NoticeAll(names, Clock::now());
        std::erase_if(owners_,
                      [&](const auto& owner) { return !std::binary_search(names.begin(), names.end(), owner.second); });
        return true;
    }

    void TakeChanges() {
        if (!watch_.IsOpen()) return;
        std::vector<FolderChange> changes;
        bool missed = false;
        const bool isThere = watch_.Take(&changes, &missed);
        for (const FolderChange& change : changes) {
            if (options_.shard.Has(change.name)) arrivals_.Notice(change, Clock::now());
        }
        if (!isThere) {
            folder_.Begin("the folder '" + input_ + "' has gone; waiting for it");
        } else if (missed) {
            nextLook_ = Clock::now();
            nextCheck_ = nextLook_;
        }
    }

    void CheckInput() {
        std::string error;
        if (!watch_.IsOpen()) {
            if (!watch_.Open(input_, &error)) return;
            nextLook_ = Clock::now();
        }
        if (Clock::now() < nextLook_) return;
        if (LookAtAll(&error)) {
            folder_.End("the folder '" + input_ + "' is back");
        } else {
            folder_.Begin(error + "; trying again");
            nextLook_ = Clock::now();
        }
    }

    /// Another folder may come to have the path: then its journal counts.
    void CheckOutput() {
        const std::optional<FileIdentity> folder = IdentifyFile(options_.output);
        if (hasOutput_ && folder == outputFolder_) return;
        hasOutput_ = false;
        if (!folder) {
            output_.Begin("the folder '" + options_.output + "' has gone; waiting for it");
            return;
        }
        std::string remark;
        std::string error;
        if (!journal_.Open(options_.output, options_.shard, &remark, &error)) {
            output_.Begin(error + "; trying again");
            return;
        }
        if (!remark.empty()) PrintError(remark);
        hasOutput_ = true;
        outputFolder_ = folder;
        output_.End("the folder '" + options_.output + "' is back");
        arrivals_.Forget();
        nextLook_ = Clock::now();
    }

    void Hold(const Arrivals::Arrival& arrival, const PhotoReport& report) {
        arrivals_.Finish(arrival, Clock::now());
        failures_.push_back({arrival, report});
    }

    void SetFailedAside(Clock::time_point now) {
        if (!hasOutput_ || !watch_.IsOpen() || (output_.Is() && now < nextTry_)) return;
        for (auto failure = failures_.begin(); failure != failures_.end();) {
            if (now < failure->arrival.since + kBeforeMoving) {
                ++failure;
                continue;
            }
            const std::string path = InFolder(input_, failure->arrival.name);
            // One that goes on growing, or is replaced, is another photograph.
            if (StampOf(path) == failure->arrival.stamp) {
                const std::string reason = failure->report.error.empty() ? StatusText(kNoFace) : failure->report.error;
                std::string place;
                const SetAsideEnd end = SetAside(path, options_.output, reason, &place);
                if (end == SetAsideEnd::later) {
                    output_.Begin(place + "; trying again");
                    nextTry_ = now + kBetweenTries;
                    return;
                }
                output_.End("the folder '" + options_.output + "' takes files again");
                Tell(failure->report, end == SetAsideEnd::good ? "moved to '" + place + "'" : place);
            }
            failure = failures_.erase(failure);
        }
    }

    /// `whereabouts` tells of a photograph that failed what became of it.
    void Tell(const PhotoReport& report, const std::string& whereabouts) {
        const std::string failure = ErrorLine(report);
        if (!failure.empty()) PrintError(failure + "; " + whereabouts);
        const std::string warning = WarningLine(report);
        if (!warning.empty()) PrintError(warning);
        std::string line = options_.json ? JsonLine(report) : "";
        // What was done before is no news.
        if (!options_.json && !options_.quiet && !report.kept) line = TextLine(report);
        if (!line.empty() && !hasNoReader_ && !Print(line + "\n")) hasNoReader_ = true;
        std::string error;
        if (!report_.Add(++told_, report, &error)) PrintError(error);
    }

    const Options& options_;
    const WorkSettings& settings_;
    Journal& journal_;
    ReportFile& report_;
    const std::string input_;
    Arrivals arrivals_;
    FolderWatch watch_;
    std::optional<FileIdentity> outputFolder_;
    bool hasOutput_ = true;
    Trouble folder_;                            ///< With the photographs' folder.
    Trouble output_;                            ///< With that of the portraits.
    std::map<std::string, std::string> owners_; ///< Photographs by the names of their portraits.
    std::map<std::size_t, Work> working_;
    std::list<Failure> failures_; ///< Not moved yet.
    std::size_t next_ = 0;
    std::size_t told_ = 0;
    bool hasNoReader_ = false;
    Clock::time_point nextTry_{};
    Clock::time_point nextCheck_ = Clock::now();
    Clock::time_point nextLook_{};
};

/// Whether the folders can be used together. False gives `*error` one line.
bool CheckFolders(const Options& options, std::string* error) {
    const std::string& input = options.photos[0];
    if (!IsFolder(input)) {
        *error = "'watch' wants an existing folder, and '" + input + "' is none";
    } else if (!IsFolder(options.output)) {
        *error = "'watch' wants an existing folder for -o, and '" + options.output + "' is none";
    } else if (IdentifyFile(input) == IdentifyFile(options.output)) {
        *error = "the portraits can't lie in the folder that is watched; give another one for -o";
    } else if (IdentifyFile(input) == IdentifyFile(InFolder(options.output, kFailedFolder))) {
        *error = "the folder '" + input + "' takes the photographs that fail and can't be watched";
    } else {
        return true;
    }
    return false;
}

/// Without a classifier every photograph would fail.
bool CheckLibrary(std::string* error) {
    const Host host;
    if (host.Status() != kSuccess) {
        *error = "the library did not start: " + StatusText(host.Status());
        return false;
    }
    const int32 status = host.Info().classifierStatus;
    if (status != kSuccess) *error = StatusText(status);
    return status == kSuccess;
}

} // namespace

ExitCode RunWatch(const Options& options) {
    std::string error;
    std::string remark;
    WorkSettings settings;
    settings.options = options;
    settings.options.command = Command::portrait;
    settings.options.resume = true;
    settings.memory = options.memory.value_or(kPlainMemory);
    settings.journal = true;
    settings.fingerprint = FingerprintOfRun(options);
    Journal journal;
    ReportFile report;
    if (!CheckFolders(options, &error) || !CheckLibrary(&error) ||
        !journal.Open(options.output, options.shard, &remark, &error) ||
        (!options.report.empty() && !report.Open(options.report, options.force, &error))) {
        PrintError(error);
        return kExitError;
    }
    if (!remark.empty()) PrintError(remark);
    CatchInterrupts();
    WatchRun run(options, settings, journal, report);
    if (!run.Open(&error)) {
        PrintError(error);
        return kExitError;
    }
    if (!options.quiet) PrintError("watching '" + options.photos[0] + "'");
    RunPool(PoolOf(settings), run);
    return kExitGood;
}

} // namespace orvane::tools
