// How the library goes, for code that runs as it does.
#pragma once

namespace orvane {

/// Whether the process ends, on a system that ends its other threads first: wherever they stood they hold locks, and
/// nobody answers. False while the library is unloaded, and where threads run on to the very end.
bool IsProcessEnding();

} // namespace orvane
