#include "tools/support/kept_memory.h"

#include <malloc.h>

namespace orvane::tools {

void KeepFreedMemory() {
    constexpr int kMegabyte = 1 << 20;
    mallopt(M_MMAP_THRESHOLD, 32 * kMegabyte); // the most that it takes; larger blocks still go back at once
    mallopt(M_TRIM_THRESHOLD, 64 * kMegabyte);
}

} // namespace orvane::tools
