// Judging a classifier file by the whole detector: how many faces it reports, where, and what it reports
// where there is none.
#pragma once

#include "primitives/types.h"

#include <cstdio>
#include <string>

namespace orvane::train {

/// A square in pixels of a picture, rows counted from the top.
struct FaceSquare {
    double x = 0.0;
    double y = 0.0;
    double side = 0.0;
};

/// The fixed mapping from the detector's square to the annotated one: a side `boxToWindow` times as long, the
/// centre lower by `down` of the detector's side.
struct SquareMapping {
    double boxToWindow = 1.0 / 0.85;
    double down = 0.0;
};

FaceSquare Map(const FaceSquare& detected, const SquareMapping& mapping);

/// Intersection over union of two squares; 0 when one is empty.
double OverlapOf(const FaceSquare& a, const FaceSquare& b);

struct EvaluateOptions {
    std::string classifier; // the file to judge
    std::string data;       // folder with portraits.csv, portraits/, nofaces.csv, nofaces/
    std::string misses;     // a table of every miss and every false face goes here; empty: nowhere
    bool quick = false;
    SquareMapping mapping;
};

/// Runs the detector over the portraits and the face-free pictures and prints the tables. 0, or 1 after a
/// line that says what failed.
int Evaluate(const EvaluateOptions& options, std::FILE* out);

} // namespace orvane::train
