// Judging a classifier file by the whole detector: how many faces it reports, where, and what it reports
// where there is none.
#pragma once

#include "tools/train/square.h"

#include <cstdio>
#include <string>

namespace orvane::train {

struct EvaluateOptions {
    std::string classifier; // the file to judge
    std::string data;       // folder with portraits.csv, portraits/, nofaces.csv, nofaces/
    std::string misses;     // a table of every miss and every false face goes here; empty: nowhere
    std::string table;      // the figures as a comma-separated table; empty: nowhere
    std::string sheets;     // folder for pictures of every miss and every false face; empty: nowhere
    bool losses = false;    // print by which step of the detector faces are lost, and what a window costs
    bool quick = false;
    double mostBehind = -1.0; // points that a group of 20 and more may lie below the whole; negative: any
    SquareMapping mapping;
};

/// Runs the detector over the portraits and the face-free pictures and prints the tables. 0, or 1 after a
/// line that says what failed or which groups fall behind.
int Evaluate(const EvaluateOptions& options, std::FILE* out);

} // namespace orvane::train
