#include "tools/orvane/photo_pool.h"

#include "image/result_codes.h"
#include "tools/orvane/program_files.h"
#include "tools/support/child_process.h"
#include "tools/support/status_text.h"
#include "tools/support/whole_file.h"

#include <algorithm>

namespace orvane::tools {
namespace {

std::string MemoryText(std::uint64_t bytes) {
    const std::uint64_t megabytes = bytes / kMegabyte;
    return megabytes % 1024 == 0 ? std::to_string(megabytes / 1024) + "G" : std::to_string(megabytes) + "M";
}

} // namespace

PoolSettings PoolOf(const WorkSettings& settings) {
    PoolSettings pool;
    pool.command = {ProgramPath(), kWorkerCommand};
    pool.greeting = Packed(settings);
    pool.workers = settings.options.jobs.value_or(std::min(ProcessorCount(), kMaxJobs));
    pool.timeout = std::chrono::seconds(settings.options.timeout.value_or(kPlainTimeout));
    return pool;
}

PhotoReport ReportOf(const JobOutcome& outcome, const std::string& photo, const WorkSettings& settings) {
    PhotoReport report;
    if (outcome.end == JobEnd::done && Unpack(outcome.result, &report)) {
        if (report.error == StatusText(kOutOfMemory) && settings.memory > 0) {
            report.error += " within --memory " + MemoryText(settings.memory);
        }
        return report;
    }
    report = PhotoReport();
    report.photo = photo;
    switch (outcome.end) {
    case JobEnd::timedOut:
        report.error = "took longer than --timeout " + std::to_string(settings.options.timeout.value_or(kPlainTimeout));
        break;
    case JobEnd::notStarted:
        report.error = "no worker for it: " + outcome.result;
        report.passing = true;
        break;
    default:
        report.error = "its worker crashed (" + (outcome.result.empty() ? "without a word" : outcome.result) + ")";
    }
    return report;
}

std::uint64_t FingerprintOfRun(const Options& options) {
    std::string classifier;
    std::string error;
    // Without one every photo fails, and tells so.
    if (!ReadWholeFile(ClassifierPath(), &classifier, &error)) classifier.clear();
    return SettingsFingerprint(options, classifier);
}

} // namespace orvane::tools
