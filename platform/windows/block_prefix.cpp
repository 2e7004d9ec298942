#include "platform/block_prefix.h"

namespace orvane {

bool MayBeBlock(const void*) { return true; } // GlobalLock refuses what is none

} // namespace orvane
