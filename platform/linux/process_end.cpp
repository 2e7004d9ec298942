#include "platform/process_end.h"

namespace orvane {

bool IsProcessEnding() { return false; }

} // namespace orvane
