// What is measured of a photograph or a portrait: the list of all measures, and a value of one with the band in which
// it should lie. docs/checks.md tells what each is and where its band is from.
#pragma once

#include "tools/documents/document.h"

#include <array>
#include <cstddef>
#include <optional>
#include <string>

namespace orvane::tools {

enum class MeasureKind : std::size_t {
    faces,
    faceSize,
    faceX,
    headHeight,
    eyeLine,
    aboveHead,
    roomAbove,
    roomBelow,
    roomLeft,
    roomRight,
    eyeDistance,
    sharpness,
    shadows,
    highlights,
    backgroundLevel,
    backgroundSpread,
};

inline constexpr std::size_t kMeasureCount = 16;

struct MeasureWords {
    const char* name; ///< In JSON and in the columns of reports.
    const char* text; ///< For people.
    const char* unit; ///< May be empty.
    int decimals;
};

/// In the order of the kinds, which is that in which they are told.
inline constexpr MeasureWords kMeasureWords[kMeasureCount] = {
    {"faces", "faces found", "", 0},
    {"face_size", "face size", "pixels", 0},
    {"face_x", "face centre from the left", "% of the width", 1},
    {"head_height", "head, from the chin", "mm", 1},
    {"eye_line", "eyes above the lower edge", "mm", 1},
    {"above_head", "above the head", "mm", 1},
    {"room_above", "room above the crown", "faces", 2},
    {"room_below", "room below the chin", "faces", 2},
    {"room_left", "room left of the face", "faces", 2},
    {"room_right", "room right of the face", "faces", 2},
    {"eye_distance", "distance between the eyes", "pixels", 0},
    {"sharpness", "sharpness in the face", "", 0},
    {"shadows", "lost in shadow in the face", "%", 2},
    {"highlights", "burnt out in the face", "%", 2},
    {"background_level", "brightness beside the head", "of 255", 0},
    {"background_spread", "unevenness beside the head", "of 255", 0},
};

enum class Verdict { ok, low, high, notMeasured };

/// "ok", "low", "high" or "not measured".
const char* VerdictWord(Verdict verdict);

struct Measure {
    std::optional<double> value;
    Band band;
    std::string reason; ///< Why there is no value; else empty.

    Verdict Judge() const;
};

using Measures = std::array<Measure, kMeasureCount>;

inline Measure& At(Measures& measures, MeasureKind kind) { return measures[static_cast<std::size_t>(kind)]; }
inline const Measure& At(const Measures& measures, MeasureKind kind) {
    return measures[static_cast<std::size_t>(kind)];
}

/// Whether no measured value leaves its band.
bool AreInBand(const Measures& measures);

} // namespace orvane::tools
