// What a program that handles one picture after the other does with memory that a step no longer needs.
#pragma once

namespace orvane::tools {

/// Memory that was freed serves the next step and the next picture instead of going back to the system, which would
/// hand it out again page by page. To be called before anything large is allocated.
void KeepFreedMemory();

} // namespace orvane::tools
