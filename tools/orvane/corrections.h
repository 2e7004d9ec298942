// A file of faces that were marked by hand, for a run over many photographs: CSV whose first record names the columns.
#pragma once

#include "tools/orvane/face_options.h"

#include <string>
#include <vector>

namespace orvane::tools {

struct Correction {
    std::string photo;
    FaceBox face;
    std::size_t row = 0; ///< Its record in the file, of which the columns' names are the first.
};

/// The columns that must be there, in any order; others are left alone.
inline constexpr const char* kCorrectionColumns[] = {"photograph", "x", "y", "width", "height"};

/// Reads the content of such a file. Each record that is none, and each that has the photograph of an earlier one,
/// gives a line in `*errors`; then nothing of the file counts.
void ReadCorrections(const std::string& file, std::vector<Correction>* corrections, std::vector<std::string>* errors);

/// Gives each photo the face of its correction, if there is one: by its path as it is written, else by the file that
/// it leads to. `selected` are the paths of a run. Each correction of none of them gives a line in `*strangers`; two of
/// one photo give one in `*errors`.
std::vector<std::optional<FaceBox>> Correct(const std::vector<std::string>& selected,
                                            const std::vector<Correction>& corrections,
                                            std::vector<std::string>* strangers, std::vector<std::string>* errors);

} // namespace orvane::tools
