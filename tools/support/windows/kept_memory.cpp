#include "tools/support/kept_memory.h"

namespace orvane::tools {

void KeepFreedMemory() {} // the heap does so by itself

} // namespace orvane::tools
