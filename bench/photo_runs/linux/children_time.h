// Processor time of the programs that were run, so that a busy machine distorts no figure.
#pragma once

namespace orvane::bench {

/// Seconds of all programs that this one has started and waited for, and of theirs.
double ChildrenSeconds();

} // namespace orvane::bench
