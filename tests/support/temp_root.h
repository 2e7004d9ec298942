// While one lives, folders of tests are made inside a folder of its own, those of child processes too: what a process
// that ends early leaves goes with it.
#pragma once

#include "tests/support/environment_value.h"
#include "tests/support/temp_folder.h"

namespace orvane::test {

class TempRoot {
#ifdef _WIN32
    static constexpr const char* kVariable = "TMP";
#else
    static constexpr const char* kVariable = "TMPDIR";
#endif
    TempFolder folder_;
    EnvironmentValue value_{kVariable, folder_.Path().string()};
};

} // namespace orvane::test
