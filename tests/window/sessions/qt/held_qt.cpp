#include "tests/window/sessions/held.h"

#include <malloc.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <iterator>

namespace orvane::test {

Held HeldByThisProcess() {
    malloc_trim(0); // what lies free between blocks of many sizes is no session's
    int64 whole = 0, resident = 0, shared = 0;
    std::ifstream("/proc/self/statm") >> whole >> resident >> shared;
    const auto entries = [](const char* folder) {
        const std::filesystem::directory_iterator files(folder);
        return std::distance(begin(files), end(files));
    };
    return {(resident - shared) * sysconf(_SC_PAGESIZE), entries("/proc/self/fd"), entries("/proc/self/task")};
}

} // namespace orvane::test
