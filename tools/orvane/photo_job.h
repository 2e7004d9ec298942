// One photo's work as a run gives it to a worker, and what the worker asks and tells, as bytes.
#pragma once

#include "tools/batch/journal.h"
#include "tools/documents/document.h"
#include "tools/orvane/options.h"
#include "tools/orvane/report.h"

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace orvane::tools {

/// What holds for all photos of a run.
struct WorkSettings {
    Options options;               ///< Of these what a portrait depends on, `command`, `steps`, `force` and `resume`.
    std::uint64_t memory = 0;      ///< Bytes that the worker may take; 0 for no limit.
    bool journal = false;          ///< Whether finished portraits are written down.
    std::uint64_t fingerprint = 0; ///< Of all that a portrait depends on but its photo and a face marked by hand.
    std::optional<Document> document{}; ///< What pictures are checked against.
};

struct PhotoJob {
    std::string photo;
    std::string folder;              ///< Of the outputs; empty where the output is a file of its own.
    std::string name;                ///< Of the output, below the folder.
    std::string output;              ///< Its path; empty for a detection.
    std::vector<JournalEntry> known; ///< What the journal has of the output.
    std::optional<FaceBox> face{};   ///< Marked by hand.
};

std::string Packed(const WorkSettings& settings);
bool Unpack(const std::string& bytes, WorkSettings* settings);
std::string Packed(const PhotoJob& job);
bool Unpack(const std::string& bytes, PhotoJob* job);
std::string Packed(const PhotoReport& report);
bool Unpack(const std::string& bytes, PhotoReport* report);

/// The run's fingerprint, and with it a face that was marked by hand.
std::uint64_t FingerprintOfJob(std::uint64_t run, const std::optional<FaceBox>& face);

/// The fingerprint of all that a portrait depends on but its photo: options, version and classifier.
std::uint64_t SettingsFingerprint(const Options& options, const std::string& classifier);

/// The part of a report that is told again of a portrait that was kept, as text on one line; and back.
std::string NoteOf(const PhotoReport& report);
void ReadNote(const std::string& note, PhotoReport* report);

} // namespace orvane::tools
