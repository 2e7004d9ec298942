// While one lives, a variable of the environment has a value, which child processes inherit.
#pragma once

#include <cstdlib>
#include <string>

namespace orvane::test {

class EnvironmentValue {
public:
    EnvironmentValue(const char* variable, const std::string& value) : variable_(variable), before_(Get()) {
        Set(value);
    }
    ~EnvironmentValue() { Set(before_); }
    EnvironmentValue(const EnvironmentValue&) = delete;
    EnvironmentValue& operator=(const EnvironmentValue&) = delete;

private:
    std::string Get() const {
        const char* value = std::getenv(variable_);
        return value == nullptr ? "" : value;
    }
    void Set(const std::string& value) const {
#ifdef _WIN32
        _putenv_s(variable_, value.c_str());
#else
        if (value.empty()) {
            unsetenv(variable_);
        } else {
            setenv(variable_, value.c_str(), 1);
        }
#endif
    }

    const char* variable_;
    std::string before_;
};

} // namespace orvane::test
