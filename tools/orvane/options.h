// The command line, read and checked: what is nonsense is refused here, before any photo is touched.
#pragma once

#include "tools/batch/shard.h"
#include "tools/orvane/face_options.h"
#include "tools/orvane/frame_options.h"
#include "tools/orvane/print_options.h"
#include "tools/support/file_settings.h"
#include "tools/support/portrait_options.h"

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace orvane::tools {

enum class Command { help, version, info, detect, check, portrait, watch, joinReports, documents, print, worker };

/// How a run over many photographs is to go.
struct RunSettings {
    bool recursive = false;
    std::string filesFrom; ///< A list of paths, "-" for standard input; empty for none.
    std::string report;    ///< A file with one row a photo; empty for none.
    Shard shard;
    bool quiet = false;
    std::optional<int32> jobs;           ///< Worker processes; none for one a processor.
    std::optional<int32> timeout;        ///< Seconds a photo.
    std::optional<std::uint64_t> memory; ///< Bytes a worker.
};

inline constexpr int32 kMaxJobs = 256;
inline constexpr int32 kMaxTimeout = 86400;
inline constexpr int32 kPlainTimeout = 30;
inline constexpr std::uint64_t kMegabyte = 1U << 20;
inline constexpr std::uint64_t kLeastMemory = 64 * kMegabyte;
inline constexpr std::uint64_t kPlainMemory = 2048 * kMegabyte;

struct Options : PortraitSettings, RunSettings, FileSettings, FrameOptions, FaceSettings {
    Command command = Command::help;
    std::vector<std::string>
        photos; ///< Paths as bytes, in the order given: files and folders; a folder to watch; or reports to join.
    std::string output;
    std::string steps;      ///< Folder for the picture after each action; empty for none.
    int32 tolerance = 40;   ///< Percent, 0 to 99.
    int32 rotation = 0;     ///< Degrees clockwise, 0 to 359.
    std::string outputName; ///< Pattern for names in the output folder; empty for the plain one.
    bool json = false;
    bool force = false;
    bool resume = false;
    PrintOptions print; ///< All that `print` is told.
};

/// What the program starts itself with again, for the photos of a run.
inline constexpr const char* kWorkerCommand = "worker";

/// Most of --tolerance, as the help text tells it.
inline constexpr int32 kMaxTolerance = 99;

/// Reads the arguments that follow the program's name. False gives `*error` one line.
bool ParseOptions(const std::vector<std::string>& arguments, Options* options, std::string* error);

} // namespace orvane::tools
