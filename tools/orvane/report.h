// What one photo came to, and the lines that tell it.
#pragma once

#include "primitives/types.h"
#include "tools/check/measure.h"
#include "tools/support/face_box.h"
#include "tools/support/json.h"

#include <optional>
#include <string>
#include <vector>

namespace orvane::tools {

/// What the program returns; the worse end counts: an error wins over a missing face, and that over a value out of its
/// band.
enum ExitCode : int { kExitGood = 0, kExitError = 1, kExitNoFace = 10, kExitOutOfBand = 11, kExitInterrupted = 130 };

/// Milliseconds of the stages that ran.
struct StageMilliseconds {
    std::optional<double> decode;
    std::optional<double> scale;
    std::optional<double> detect;
    std::optional<double> crop;
    std::optional<double> output;
    std::optional<double> encode;
};

/// Hits that the detector gathered.
struct FaceGroup {
    FaceBox mean; ///< Of the hits.
    int32 hits = 0;
    int32 face = 0;      ///< The face that it goes into, from 1 in the detector's order; 0 where it has too few hits.
    bool chosen = false; ///< That face is the one that was taken.
};

struct PhotoReport {
    std::string photo;
    int32 width = 0; ///< Of the upright photo; 0 where it could not be read.
    int32 height = 0;
    std::optional<int32> status; ///< Result code of the library; none where it was not asked.
    std::optional<FaceBox> face;
    std::vector<FaceGroup> groups{};    ///< All that were formed, where they were asked for.
    std::optional<Measures> measures{}; ///< Where they were asked for, and there is a face.
    std::string document;               ///< The name of that by which the portrait is framed; else empty.
    std::string output;                 ///< The file that was written; empty where none was.
    StageMilliseconds milliseconds;
    std::string error;    ///< One line; empty where nothing failed. A missing face is no error.
    std::string warning;  ///< One line on a photo that was read but may not show what it should; else empty.
    bool kept = false;    ///< The output was there from an earlier run, of the same photo and settings.
    bool passing = false; ///< The error is none of the photo's, such as a full disk: the same photo may do later.
};

/// Add `width` and `height`, `face`, and `milliseconds`, as every line of JSON has them.
void AddSize(const PhotoReport& report, JsonObject* line);
void AddFace(const PhotoReport& report, JsonObject* line);
void AddTimes(const PhotoReport& report, JsonObject* line);

/// "183,77, 80x80"
std::string FaceText(const FaceBox& face);

/// The report as one line of JSON.
std::string JsonLine(const PhotoReport& report);

/// The report as one line for people, or, with groups or measures, as several; empty where something failed, which
/// standard error tells.
std::string TextLine(const PhotoReport& report);

/// Of a report with values out of their bands these alone; else empty.
std::string OutOfBandText(const PhotoReport& report);

/// The line for standard error, empty where all went well.
std::string ErrorLine(const PhotoReport& report);

/// The line for standard error on a photo that is worth a look; mostly empty.
std::string WarningLine(const PhotoReport& report);

/// Adds one to those of a report; an empty one adds nothing.
void AddWarning(const std::string& warning, PhotoReport* report);

/// What became of a photo, in a word or two: "portrait", "kept", "face", "no face" or "failed".
const char* Outcome(const PhotoReport& report);

/// One of the stages, in the order in which they run.
struct Stage {
    const char* name;
    std::optional<double> StageMilliseconds::*value;
};

inline constexpr Stage kStages[] = {{"decode", &StageMilliseconds::decode}, {"scale", &StageMilliseconds::scale},
                                    {"detect", &StageMilliseconds::detect}, {"crop", &StageMilliseconds::crop},
                                    {"output", &StageMilliseconds::output}, {"encode", &StageMilliseconds::encode}};

/// The program's exit code after one more photo.
ExitCode Worse(ExitCode before, const PhotoReport& report);

} // namespace orvane::tools
