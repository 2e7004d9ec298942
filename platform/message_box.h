// An error message to whoever sits before the machine, without an owner window.
#pragma once

namespace orvane {

/// Beeps and shows `text` under `caption` until it is confirmed. Where no desktop is at hand the two
/// go to standard error, and nobody waits.
void ShowErrorBox(const char* caption, const char* text);

} // namespace orvane
