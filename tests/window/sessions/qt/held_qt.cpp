#include "tests/window/sessions/held.h"

#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <iterator>

namespace orvane::test {

Held HeldByThisProcess() {
    int64 whole = 0, resident = 0, shared = 0;
    std::ifstream("/proc/self/statm") >> whole >> resident >> shared;
    const std::filesystem::directory_iterator files("/proc/self/fd");
    return {(resident - shared) * sysconf(_SC_PAGESIZE), std::distance(begin(files), end(files))};
}

} // namespace orvane::test
