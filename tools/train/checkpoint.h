// What a training leaves in its work folder: the stages so far as a classifier file, a table of how they
// went, and what was trained on.
#pragma once

#include "tools/train/trainer.h"

namespace orvane::train {

/// Writes `stages.dat`, `stages.csv` and `settings.txt`. False when that fails.
bool SaveCheckpoint(const std::string& folder, const std::string& fingerprint, const Cascade& cascade,
                    const std::vector<StageReport>& reports);

/// Reads them back; an empty folder or none leaves the cascade as it is. The result is empty, or says why
/// the folder cannot be gone on with: other settings or data, or files that do not fit one another.
std::string LoadCheckpoint(const std::string& folder, const std::string& fingerprint, Cascade& cascade,
                           std::vector<StageReport>& reports);

} // namespace orvane::train
