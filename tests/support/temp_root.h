// While one lives, folders of tests are made inside a folder of its own, those of child processes too: what a process
// that ends early leaves goes with it.
#pragma once

#include "tests/support/temp_folder.h"

#include <cstdlib>
#include <string>

namespace orvane::test {

class TempRoot {
public:
    TempRoot() : before_(Get()) { Set(folder_.Path().string()); }
    ~TempRoot() { Set(before_); }
    TempRoot(const TempRoot&) = delete;
    TempRoot& operator=(const TempRoot&) = delete;

private:
#ifdef _WIN32
    static constexpr const char* kVariable = "TMP";
    static void Set(const std::string& value) { _putenv_s(kVariable, value.c_str()); }
#else
    static constexpr const char* kVariable = "TMPDIR";
    static void Set(const std::string& value) {
        if (value.empty()) {
            unsetenv(kVariable);
        } else {
            setenv(kVariable, value.c_str(), 1);
        }
    }
#endif
    static std::string Get() {
        const char* value = std::getenv(kVariable);
        return value == nullptr ? "" : value;
    }

    TempFolder folder_;
    std::string before_;
};

} // namespace orvane::test
