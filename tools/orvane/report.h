// What one photo came to, and the lines that tell it.
#pragma once

#include "primitives/types.h"

#include <optional>
#include <string>

namespace orvane::tools {

/// What the program returns; the greater word for the worse end: an error wins over a missing face.
enum ExitCode : int { kExitGood = 0, kExitError = 1, kExitNoFace = 10 };

/// A face in pixels of the photo, y from its top.
struct FaceBox {
    int32 x = 0;
    int32 y = 0;
    int32 width = 0;
    int32 height = 0;
};

/// Milliseconds of the stages that ran.
struct StageMilliseconds {
    std::optional<double> decode;
    std::optional<double> scale;
    std::optional<double> detect;
    std::optional<double> crop;
    std::optional<double> output;
    std::optional<double> encode;
};

struct PhotoReport {
    std::string photo;
    int32 width = 0; ///< Of the upright photo; 0 where it could not be read.
    int32 height = 0;
    std::optional<int32> status; ///< Result code of the library; none where it was not asked.
    std::optional<FaceBox> face;
    std::string output; ///< The file that was written; empty where none was.
    StageMilliseconds milliseconds;
    std::string error; ///< One line; empty where nothing failed. A missing face is no error.
};

/// The report as one line of JSON.
std::string JsonLine(const PhotoReport& report);

/// The report as one line for people; empty where something failed, which standard error tells.
std::string TextLine(const PhotoReport& report);

/// The line for standard error, empty where all went well.
std::string ErrorLine(const PhotoReport& report);

/// The program's exit code after one more photo.
ExitCode Worse(ExitCode before, const PhotoReport& report);

} // namespace orvane::tools
